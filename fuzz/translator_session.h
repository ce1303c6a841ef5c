// The translator with the shipped words and a device client, as a host starts it.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "fuzz/scratch.h"
#include "fuzz/tally.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "rpccommon/client/rtfclientinterface.h"

// The same translator for every input, as it was when it had read its words: to read them takes ten
// times as long as most inputs. There is one session at a time.
class TranslatorSession {
 public:
  explicit TranslatorSession(RtfClientInterface& client, bool read_configuration = true);

  EcrCmdCommand& translator();

  // Runs a line with the room that a host has to give, and looks at the answer.
  long Run(const std::string& line) {
    ++TheTally().lines;
    std::vector<char> command(line.c_str(), line.c_str() + line.size() + 1);
    const auto result = std::make_unique<char[]>(512);
    const long code = translator().EcrCmd(command.data(), result.get());
    Require(code != -1 && code != -2, "the inner signs of a line do not get out");
    Require(std::char_traits<char>::find(result.get(), 512, '\0') != nullptr,
            "the result string has an end");
    if (code != 0) Require(result[0] != '\0', "a failure has a text");
    return code;
  }
};
