// The commands of the language, each with the fields that it reads, from the one list of them.
#pragma once

#include <vector>

struct LanguageCommand {
  int opcode;
  std::vector<int> fields;
};

inline const std::vector<LanguageCommand>& LanguageCommands() {
  static const std::vector<LanguageCommand> commands = {
#define LORIMAT_COMMAND(Opcode, Handler, ...) {Opcode, {__VA_ARGS__}},
#include "pal/protocols/lorimat/commands.inc"
  };
  return commands;
}
