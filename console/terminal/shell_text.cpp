#include "console/terminal/shell_text.h"

#include <algorithm>

#include "console/message/shown_text.h"

namespace lorimat::console {
namespace {

// Of an entry's text: what has to be left beside its heading, or it stands below, behind a few
// blanks.
constexpr size_t kLeastBeside = 20;
constexpr size_t kBelow = 4;

size_t CharacterSize(std::string_view text, size_t at) { return CharacterAt(text.substr(at)).size; }

}  // namespace

size_t ColumnsOf(std::string_view text) {
  size_t columns = 0;
  for (size_t at = 0; at < text.size(); at += CharacterSize(text, at)) ++columns;
  return columns;
}

std::string CutTo(std::string_view text, size_t columns) {
  if (columns == 0 || ColumnsOf(text) <= columns) return std::string(text);
  constexpr size_t kDots = 3;
  if (columns <= kDots) return std::string(columns, '.');
  const size_t kept = columns - kDots;
  size_t end = 0;
  for (size_t i = 0; i < kept; ++i) end += CharacterSize(text, end);
  return std::string(text.substr(0, end)) + "...";
}

std::string Flowed(std::string_view text, size_t column, size_t indent, size_t columns) {
  if (columns == 0) return std::string(text);
  std::string out;
  bool begins_line = column <= indent;
  while (!text.empty()) {
    const size_t blanks = std::min(text.find_first_not_of(' '), text.size());
    text.remove_prefix(blanks);
    if (text.empty()) break;
    const std::string_view word = text.substr(0, text.find(' '));
    const size_t width = ColumnsOf(word);
    if (!begins_line && column + blanks + width > columns) {
      out += '\n';
      out.append(indent, ' ');
      column = indent;
    } else {
      out.append(blanks, ' ');
      column += blanks;
    }
    begins_line = false;
    out += word;
    column += width;
    text.remove_prefix(word.size());
  }
  return out;
}

std::string Wrapped(std::string_view text, size_t indent, size_t columns) {
  const size_t hanging = indent + (text.substr(0, 2) == "- " ? 2 : 0);
  return std::string(indent, ' ') + Flowed(text, indent, hanging, columns) + "\n";
}

std::string Entry(std::string_view heading, std::string_view text, size_t columns) {
  if (text.empty()) return std::string(WithoutTrailingBlanks(heading)) + "\n";
  const size_t beside = ColumnsOf(heading);
  if (columns == 0 || beside + kLeastBeside <= columns) {
    return std::string(heading) + Flowed(text, beside, beside, columns) + "\n";
  }
  return std::string(WithoutTrailingBlanks(heading)) + "\n" + Wrapped(text, kBelow, columns);
}

std::string Broken(std::string_view text, size_t columns) {
  std::string out;
  size_t column = 0;
  for (size_t at = 0; at < text.size();) {
    if (columns != 0 && column == columns) {
      out += '\n';
      column = 0;
    }
    const size_t size = CharacterSize(text, at);
    out += text.substr(at, size);
    at += size;
    ++column;
  }
  return out + "\n";
}

std::string InColumns(const std::vector<std::string>& words, size_t columns) {
  size_t widest = 0;
  for (const std::string& word : words) widest = std::max(widest, ColumnsOf(word));
  const size_t width = widest + 2;
  const size_t per_line = std::max<size_t>(1, columns / width);
  std::string out;
  for (size_t i = 0; i < words.size(); ++i) {
    const bool last = i + 1 == words.size() || (i + 1) % per_line == 0;
    out += words[i];
    if (last) {
      out += '\n';
    } else {
      out.append(width - ColumnsOf(words[i]), ' ');
    }
  }
  return out;
}

}  // namespace lorimat::console
