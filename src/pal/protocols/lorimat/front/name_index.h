// Which rows of a table of names a word can match: those whose name begins with the word's first
// letter. A look-up that goes through these rows, in their order, comes to what it would come to by
// going through all.
//
// The tables are arrays that anybody may fill, the definition file's reader, a host's code, a test.
// So the index keeps a copy of the names that it was made of, and is made anew whenever they
// differ.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "pal/protocols/lorimat/lorimatenums.h"

template <size_t Rows>
class NameIndex {
 public:
  using Name = char[MAXSIMBLN + 1];
  // A bit for each row, 64 in each word.
  using RowSet = std::array<uint64_t, (Rows + 63) / 64>;

  // Compares the first rows of the table and learns what has changed; the rows behind them are in
  // no set until a call asks for them.
  void Follow(const Name* names, size_t rows) {
    const size_t size = rows * sizeof(Name);
    if (rows != rows_ || std::memcmp(names_.data(), names, size) != 0) Learn(names, rows);
  }

  // Of a word of this length, whose first letter may be of either case: every row with a name that
  // begins so, and others perhaps. An empty word is the beginning of every name.
  const RowSet& Candidates(const char* word, size_t length) const {
    return sets_[length == 0 ? kAny : LetterClass(word[0])];
  }

  // The first row of a set from row on; Rows when there is none.
  static size_t Next(const RowSet& set, size_t row) {
    for (size_t part = row / 64; part < set.size(); ++part) {
      const uint64_t behind = part == row / 64 ? ~uint64_t{0} << (row % 64) : ~uint64_t{0};
      const uint64_t rest = set[part] & behind;
      if (rest != 0) return part * 64 + static_cast<size_t>(std::countr_zero(rest));
    }
    return Rows;
  }

 private:
  static constexpr size_t kAny = 32;

  // In ASCII both cases of a letter share one; some bytes that are no letters have it too.
  static size_t LetterClass(char c) { return static_cast<unsigned char>(c) % kAny; }

  void Learn(const Name* names, size_t rows) {
    sets_ = {};
    std::memcpy(names_.data(), names, rows * sizeof(Name));
    rows_ = rows;
    for (size_t row = 0; row < rows; ++row) {
      if (names[row][0] == 0) continue;
      const uint64_t bit = uint64_t{1} << (row % 64);
      sets_[LetterClass(names[row][0])][row / 64] |= bit;
      sets_[kAny][row / 64] |= bit;
    }
  }

  std::array<char, Rows * sizeof(Name)> names_{};
  size_t rows_ = 0;
  std::array<RowSet, kAny + 1> sets_{};
};
