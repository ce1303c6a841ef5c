// What a definition file binds, once it was read: words that cannot be found, fields that no
// handler reads, fields and commands without a word.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>

#include "console/check/finding.h"
#include "console/check/language.h"

namespace lorimat::console {

// The rows of a file that reach the library's tables. A slot is OPCOD, the internal messages, or
// the number of a section.
struct DefinitionRows {
  static constexpr int kCommandSlot = -1;
  static constexpr int kMessageSlot = -2;

  struct Row {
    uint64_t line = 0;
    std::string name;
  };

  std::map<std::pair<int, int>, Row> rows;  // by slot and row; the last one given
  std::map<int, uint64_t> section_lines;    // the last header of a slot

  const Row* Find(int slot, int row) const;
  size_t Count(int slot) const;
  size_t field_count() const;
};

// Adds what is wrong with the words, which the language has of these rows. Every look-up is the
// library's own.
void CheckWords(const DefinitionRows& rows, const Language& words, Findings& findings);

}  // namespace lorimat::console
