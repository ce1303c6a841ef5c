// What the handlers of the library read: each command's opcode and the numbers of the fields that
// it looks at. The definition file that ships is held against it, and so is every file that the
// console checks.
#pragma once

#include <algorithm>
#include <vector>

namespace language {

struct CommandFields {
  int id;                   // opcode
  std::vector<int> fields;  // numbers that the handler reads, ascending
  int dumped_to = 0;        // dumps write the words of fields up to this number, read or not
};

// By opcode, ascending.
inline const std::vector<CommandFields>& handler_fields() {
  static const std::vector<CommandFields> fields = [] {
    constexpr int kHeader = 34;
    constexpr int kDumpedHeaderLines = 40;
    std::vector<CommandFields> all = {
#define LORIMAT_COMMAND(Opcode, Handler, ...) {Opcode, {__VA_ARGS__}},
#include "pal/protocols/lorimat/commands.inc"
        // Lines of dumps: no handler, and words that are read by row.
        {61, {1, 2, 3}},
        {63, {1, 2, 3, 4}},
    };
    std::sort(all.begin(), all.end(),
              [](const CommandFields& a, const CommandFields& b) { return a.id < b.id; });
    for (CommandFields& command : all) {
      if (command.id == kHeader) command.dumped_to = kDumpedHeaderLines;
    }
    return all;
  }();
  return fields;
}

// The fields of an opcode; null when the library has no such command.
inline const CommandFields* find_handler_fields(int id) {
  for (const CommandFields& command : handler_fields()) {
    if (command.id == id) return &command;
  }
  return nullptr;
}

}  // namespace language
