// What the handlers of the library read: each command's opcode and the numbers of the fields that
// it looks at. The definition file that ships is held against it, and so is every file that the
// console checks.
#pragma once

#include <vector>

namespace language {

struct CommandFields {
  int id;                   // opcode
  std::vector<int> fields;  // numbers that the handler reads, ascending
  int dumped_to = 0;        // dumps write the words of fields up to this number, read or not
};

inline const std::vector<CommandFields>& handler_fields() {
  static const std::vector<CommandFields> fields = {
      {1, {1}},  // read by row for the wrapper of dumps
      {2, {}},
      {3, {1, 2, 3, 4, 5, 7}},
      {4, {}},
      {5, {}},
      {8, {}},
      {9, {1, 2, 3, 4}},
      {10, {1, 2, 3, 4, 5, 6, 7, 14, 15, 16, 17, 18, 19}},
      {11, {1, 2}},
      {12, {1, 2, 3, 5}},
      {14, {5, 6, 7, 8}},
      {15, {1, 2, 3, 4, 5}},
      {16, {1, 2, 3, 5}},
      {17, {1, 2, 3, 5}},
      {18, {}},
      {19, {1, 2}},
      {20, {1}},
      {21, {1, 2, 3, 4, 6, 9, 12, 13, 25}},
      {22, {1, 2, 3, 4, 6, 8, 11, 14, 15, 30}},
      {23, {1, 2, 4, 5, 6, 7, 8}},
      {24, {1, 2, 3, 4}},
      {25, {}},
      {26, {1, 2, 3, 6, 7, 8, 9, 10, 20}},
      {27, {1}},
      {28, {}},
      {29, {1, 2}},
      {30, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14, 16, 17}},
      {31, {1, 2, 3, 4, 5, 6, 7, 16, 17, 21}},
      {32, {}},
      {33, {1, 2}},
      {34, {1, 2, 3, 4, 5, 6}, 40},
      {35, {}},
      {36, {1, 4, 7, 8, 13, 14, 16, 17, 19, 20, 28, 32, 33, 34, 35, 36, 37}},
      {37, {}},
      {38, {1, 2}},
      {39, {1, 2, 3, 4, 5, 6}},
      {40, {}},
      {41, {4, 5}},
      {43, {1, 2, 3, 4}},
      {45, {}},
      {46, {}},
      {47, {}},
      {48, {1, 2, 7, 8, 9}},
      {49, {1, 2}},
      {51, {}},
      {52, {}},
      {53, {1, 2, 3, 4, 5}},
      {54, {1, 2, 3, 4}},
      {55, {1, 2, 3, 8}},
      {60, {}},
      {61, {1, 2, 3}},  // dump lines: no handler, words read by row
      {63, {1, 2, 3, 4}},
      {71, {1, 4}},
      {72, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 14, 17, 18, 19, 20, 21}},
      {73, {1}},
      {74, {}},
      {75, {}},
      {80, {1, 2, 3, 5}},
      {120, {}},
      {121, {3, 4, 5, 6, 7, 8}},
      {122, {}},
      {123, {1, 2, 3, 4}},
      {124, {1, 2, 3, 4, 5}},
      {125, {1}},
      {126, {}},
      {127, {1, 2, 3, 4, 5, 7}},
  };
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
