// The translator beside which the model is put: its own definition file, and handlers that tell
// that they were reached, so that a line ends at their door.
#pragma once

#include <filesystem>
#include <string>

#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "support/null_client.h"

// What the handler of an opcode id answers.
constexpr int kReached = 100000;

class TranslatorUnderTest : public EcrCmdCommand {
 public:
  // With the default messages, ready for lines.
  TranslatorUnderTest();
  // Reads a file of these bytes, through file, which is written over.
  bool Read(const std::string& bytes, const std::filesystem::path& file);

#define DOOR(Name, id) \
  int Trad_##Name() override { return kReached + (id); }
#include "model/handlers.inc"
#undef DOOR

 private:
  NullClient client_;
};
