// What a definition file binds, once it was read: words that cannot be found, fields that no
// handler reads, fields and commands without a word.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "console/check/finding.h"

namespace lorimat::console {

// The rows of a file that reach the library's tables. A slot is OPCOD, the internal messages, or
// the number of a section.
struct DefinitionRows {
  static constexpr int kCommandSlot = -1;
  static constexpr int kMessageSlot = -2;

  struct Row {
    uint64_t line = 0;
    uint64_t section_line = 0;  // of the header above it
    std::string name;
    std::string text;  // the whole entry
  };
  struct Symbol {
    uint64_t line = 0;
    bool is_key = false;
    std::string text;
  };

  std::map<std::pair<int, int>, Row> rows;  // by slot and row; the last one given
  std::vector<Symbol> symbols;
  std::map<int, uint64_t> section_lines;  // the last header of a slot

  const Row* Find(int slot, int row) const;
  size_t Count(int slot) const;
  size_t field_count() const;
  // A definition file of these rows alone, in the order of the file.
  std::string text() const;
};

// Adds what is wrong with the words. Every look-up is the library's own.
void CheckWords(const DefinitionRows& rows, Findings& findings);

}  // namespace lorimat::console
