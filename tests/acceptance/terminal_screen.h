// A terminal's screen, as far as a line editor uses it: what a person would see of a program's
// output. Nothing scrolls away: all rows since the start are there.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

class TerminalScreen {
 public:
  TerminalScreen(size_t columns, size_t height) : columns_(columns), height_(height), rows_(1) {}

  void Take(std::string_view output);

  // All rows, without their trailing blanks.
  std::vector<std::string> rows() const;
  // The same in one text.
  std::string text() const;
  // What is in front of the cursor in its row.
  std::string before_cursor() const;
  size_t cursor_row() const { return row_; }
  // Control sequences that this screen does not know, as they came.
  const std::vector<std::string>& unknown() const { return unknown_; }

 private:
  using Row = std::vector<std::string>;  // a character each, as bytes; empty cells are blanks

  void TakeByte(char byte);
  void Put(std::string character);
  void LineFeed();
  void Control(char final);
  void EraseDisplay(int which);
  void EraseLine(int which);
  Row& row() { return rows_[row_]; }
  size_t top() const { return rows_.size() > height_ ? rows_.size() - height_ : 0; }

  size_t columns_;
  size_t height_;
  std::vector<Row> rows_;
  size_t row_ = 0;
  size_t column_ = 0;
  bool insert_ = false;
  std::string sequence_;   // that has begun with ESC
  std::string character_;  // of UTF-8 that has begun
  std::vector<std::string> unknown_;
};
