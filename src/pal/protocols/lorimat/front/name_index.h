// The rows of a table of names that a word matches: which is the same as the name over the shorter
// of the two, whatever the case of either. Only names with the word's first letter are looked at.
//
// The tables are arrays that anybody may fill, the definition file's reader, a host's code, a test.
// So the index keeps a copy of the names that it was made of, and is made anew whenever they
// differ.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/front/folded_text.h"
#include "pal/protocols/lorimat/lorimatenums.h"

template <size_t Rows>
class NameIndex {
 public:
  using Name = char[MAXSIMBLN + 1];

  // Compares the first rows of the table and learns what has changed; the rows behind them match
  // nothing until a call asks for them. Row 0 never does.
  void Follow(const Name* names, size_t rows) {
    const size_t size = rows * sizeof(Name);
    if (rows != rows_ || std::memcmp(names_.data(), names, size) != 0) Learn(names, rows);
  }

  // The matches of a word, in the order of the rows. The index must not change meanwhile.
  class Matches {
   public:
    Matches(const NameIndex& index, const char* word, size_t length)
        : index_(index),
          word_(word, length),
          chain_(length == 0 ? index.next_.data() : index.next_of_letter_.data()),
          next_(length == 0 ? index.next_[0] : index.first_of_letter_[LetterClass(word[0])]) {}

    // Goes to the next one; false when there is none.
    bool Next() {
      while (next_ != kNone) {
        row_ = next_;
        next_ = chain_[row_];
        if (index_.folded_[row_].Matches(word_, &compared_)) return true;
      }
      return false;
    }
    size_t row() const { return row_; }
    // The length of the shorter one of name and word.
    size_t compared() const { return compared_; }
    bool exact() const { return index_.folded_[row_].length() == word_.length(); }

   private:
    const NameIndex& index_;
    const FoldedText word_;
    const uint8_t* const chain_;  // by row: the next one to look at
    size_t next_;
    size_t row_ = kNone;
    size_t compared_ = 0;
  };

 private:
  static_assert(Rows <= 256);
  static constexpr uint8_t kNone = 0;
  static constexpr size_t kLetters = 32;

  // In ASCII both cases of a letter share one; some bytes that are no letters have it too.
  static size_t LetterClass(char c) { return static_cast<unsigned char>(c) % kLetters; }

  void Learn(const Name* names, size_t rows) {
    first_of_letter_ = {};
    next_[0] = kNone;
    std::memcpy(names_.data(), names, rows * sizeof(Name));
    rows_ = rows;
    // From the last row to the first, so that each chain goes the way of the table.
    uint8_t next = kNone;
    for (size_t row = rows; row-- > 1;) {
      if (names[row][0] == 0) continue;
      folded_[row] = FoldedText(names[row], RowLength(names[row], sizeof(Name)));
      uint8_t& first = first_of_letter_[LetterClass(names[row][0])];
      next_of_letter_[row] = first;
      next_[row] = next;
      next = first = static_cast<uint8_t>(row);
    }
    next_[0] = next;
  }

  size_t rows_ = 0;
  std::array<uint8_t, kLetters> first_of_letter_{};
  std::array<uint8_t, Rows> next_of_letter_{};
  std::array<uint8_t, Rows> next_{};  // with a name: an empty word is the beginning of each
  std::array<FoldedText, Rows> folded_{};
  std::array<char, Rows * sizeof(Name)> names_{};
};
