#include "terminal_screen.h"

#include <algorithm>
#include <cstdlib>

void TerminalScreen::Take(std::string_view output) {
  for (const char byte : output) TakeByte(byte);
}

void TerminalScreen::TakeByte(char byte) {
  const unsigned char value = static_cast<unsigned char>(byte);
  if (!sequence_.empty()) {
    sequence_ += byte;
    const bool csi = sequence_.size() > 1 && sequence_[1] == '[';
    if (csi && (sequence_.size() == 2 || value < 0x40)) return;
    if (!csi && sequence_.size() == 2 && (byte == '(' || byte == ')')) return;
    if (csi) {
      Control(byte);
    } else if (sequence_[1] != '(' && sequence_[1] != '=' && sequence_[1] != '>') {
      unknown_.push_back(sequence_);
    }
    sequence_.clear();
    return;
  }
  switch (byte) {
    case '\x1b':
      sequence_ = byte;
      return;
    case '\r':
      column_ = 0;
      return;
    case '\n':
      LineFeed();
      return;
    case '\b':
      if (column_ > 0) --column_;
      return;
    case '\a':
      return;
    default:
      break;
  }
  if (value < 0x20 || value == 0x7F) {
    unknown_.push_back(std::string(1, byte));
    return;
  }
  if (value >= 0x80) {
    character_ += byte;
    const unsigned char lead = static_cast<unsigned char>(character_.front());
    const size_t size = lead >= 0xF0 ? 4 : lead >= 0xE0 ? 3 : lead >= 0xC0 ? 2 : 1;
    if (character_.size() < size) return;
    Put(std::move(character_));
    character_.clear();
    return;
  }
  Put(std::string(1, byte));
}

// In the last column the cursor stays until the next character comes.
void TerminalScreen::Put(std::string character) {
  if (column_ == columns_) {
    column_ = 0;
    LineFeed();
  }
  if (row().size() <= column_) row().resize(column_ + 1, " ");
  if (insert_) {
    row().insert(row().begin() + static_cast<std::ptrdiff_t>(column_), " ");
    if (row().size() > columns_) row().resize(columns_);
  }
  row()[column_++] = std::move(character);
}

void TerminalScreen::LineFeed() {
  if (++row_ == rows_.size()) rows_.emplace_back();
}

void TerminalScreen::Control(char final) {
  const std::string parameters = sequence_.substr(2, sequence_.size() - 3);
  const int number = std::atoi(parameters.c_str());
  const size_t count = static_cast<size_t>(std::max(number, 1));
  const size_t at = std::min(column_, columns_ - 1);
  switch (final) {
    case 'A':
      row_ -= std::min(count, row_ - top());
      return;
    case 'B':
      row_ = std::min(row_ + count, std::max(rows_.size(), top() + height_) - 1);
      while (rows_.size() <= row_) rows_.emplace_back();
      return;
    case 'C':
      column_ = std::min(at + count, columns_ - 1);
      return;
    case 'D':
      column_ = at - std::min(count, at);
      return;
    case 'G':
      column_ = std::min(count, columns_) - 1;
      return;
    case 'H':
      row_ = top();
      column_ = 0;
      if (parameters.empty()) return;
      break;
    case 'J':
      return EraseDisplay(number);
    case 'K':
      return EraseLine(number);
    case 'P':
      if (at < row().size()) {
        const auto first = row().begin() + static_cast<std::ptrdiff_t>(at);
        row().erase(first, first + static_cast<std::ptrdiff_t>(std::min(count, row().size() - at)));
      }
      return;
    case '@':
      if (at < row().size()) {
        row().insert(row().begin() + static_cast<std::ptrdiff_t>(at), count, " ");
        if (row().size() > columns_) row().resize(columns_);
      }
      return;
    case 'X':
      for (size_t i = at; i < std::min(at + count, row().size()); ++i) row()[i] = " ";
      return;
    case 'm':
      return;
    case 'h':
    case 'l':
      if (parameters == "4") {
        insert_ = final == 'h';
        return;
      }
      if (!parameters.empty() && parameters.front() == '?') return;
      break;
    default:
      break;
  }
  unknown_.push_back(sequence_);
}

void TerminalScreen::EraseDisplay(int which) {
  if (which == 2 || which == 3) {
    for (size_t i = top(); i < rows_.size(); ++i) rows_[i].clear();
    return;
  }
  EraseLine(0);
  for (size_t i = row_ + 1; i < rows_.size(); ++i) rows_[i].clear();
}

void TerminalScreen::EraseLine(int which) {
  const size_t end = std::min(column_, row().size());
  if (which == 0) {
    row().resize(end);
  } else if (which == 2) {
    row().clear();
  } else {
    for (size_t i = 0; i < end; ++i) row()[i] = " ";
  }
}

std::vector<std::string> TerminalScreen::rows() const {
  std::vector<std::string> rows;
  for (const Row& row : rows_) {
    std::string text;
    for (const std::string& character : row) text += character;
    text.resize(text.find_last_not_of(' ') + 1);
    rows.push_back(std::move(text));
  }
  return rows;
}

std::string TerminalScreen::text() const {
  std::string text;
  for (const std::string& row : rows()) text += row + "\n";
  return text;
}

std::string TerminalScreen::before_cursor() const {
  std::string text;
  for (size_t i = 0; i < std::min(column_, rows_[row_].size()); ++i) text += rows_[row_][i];
  return text;
}
