#include "shell_text.h"

#include <algorithm>

namespace {

// The bytes of the character that begins there; 1 for a byte that begins none.
size_t character_size(std::string_view text, size_t at) {
  const unsigned char lead = static_cast<unsigned char>(text[at]);
  const size_t size = lead >= 0xF0 && lead < 0xF8   ? 4
                      : lead >= 0xE0 && lead < 0xF0 ? 3
                      : lead >= 0xC2 && lead < 0xE0 ? 2
                                                    : 1;
  if (at + size > text.size()) return 1;
  for (size_t i = 1; i < size; ++i) {
    if ((static_cast<unsigned char>(text[at + i]) & 0xC0) != 0x80) return 1;
  }
  return size;
}

}  // namespace

size_t columns_of(std::string_view text) {
  size_t columns = 0;
  for (size_t at = 0; at < text.size(); at += character_size(text, at)) ++columns;
  return columns;
}

std::string cut_to(std::string_view text, size_t columns) {
  if (columns == 0 || columns_of(text) <= columns) return std::string(text);
  const size_t kept = columns > 3 ? columns - 3 : 0;
  size_t end = 0;
  for (size_t i = 0; i < kept; ++i) end += character_size(text, end);
  return std::string(text.substr(0, end)) + "...";
}

std::string wrapped(std::string_view text, size_t indent, size_t columns) {
  const size_t hanging = indent + (text.substr(0, 2) == "- " ? 2 : 0);
  std::string out(indent, ' ');
  size_t column = indent;
  bool first = true;
  while (!text.empty()) {
    const size_t blank = std::min(text.find(' '), text.size());
    const std::string_view word = text.substr(0, blank);
    const size_t width = columns_of(word);
    if (!first && columns != 0 && column + 1 + width > columns) {
      out += '\n';
      out.append(hanging, ' ');
      column = hanging;
    } else if (!first) {
      out += ' ';
      ++column;
    }
    first = false;
    out += word;
    column += width;
    text.remove_prefix(std::min(blank + 1, text.size()));
  }
  return out + "\n";
}

std::string in_columns(const std::vector<std::string>& words, size_t columns) {
  size_t widest = 0;
  for (const std::string& word : words) widest = std::max(widest, columns_of(word));
  const size_t width = widest + 2;
  const size_t per_line = std::max<size_t>(1, columns / width);
  std::string out;
  for (size_t i = 0; i < words.size(); ++i) {
    const bool last = i + 1 == words.size() || (i + 1) % per_line == 0;
    out += words[i];
    if (last) {
      out += '\n';
    } else {
      out.append(width - columns_of(words[i]), ' ');
    }
  }
  return out;
}
