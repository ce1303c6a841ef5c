#include "register/paper/columns.h"

#include <fmt/format.h>

namespace lorimat {
namespace {

// As fmt has it, which pads the lines: a wide character leaves no room in two columns.
size_t WidthOf(std::string_view character) {
  if (character.size() == 1) return 1;
  return fmt::formatted_size("{:<2}", character) == character.size() ? 2 : 1;
}

}  // namespace

size_t CharacterLength(std::string_view text) {
  const auto byte = [&](size_t at) { return static_cast<unsigned char>(text[at]); };
  const size_t length = byte(0) >= 0xF0 ? 4 : byte(0) >= 0xE0 ? 3 : 2;
  if (byte(0) < 0xC2 || byte(0) > 0xF4 || text.size() < length) return 1;
  for (size_t i = 1; i < length; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return 1;
  }
  // Overlong forms, surrogates, and what lies beyond the last character.
  const unsigned char second = byte(1);
  if (byte(0) == 0xE0 && second < 0xA0) return 1;
  if (byte(0) == 0xED && second > 0x9F) return 1;
  if (byte(0) == 0xF0 && second < 0x90) return 1;
  if (byte(0) == 0xF4 && second > 0x8F) return 1;
  return length;
}

size_t ColumnsOf(std::string_view text) {
  size_t columns = 0;
  while (!text.empty()) {
    const size_t length = CharacterLength(text);
    columns += WidthOf(text.substr(0, length));
    text.remove_prefix(length);
  }
  return columns;
}

size_t FittingBytes(std::string_view text, size_t columns) {
  size_t bytes = 0;
  size_t used = 0;
  while (bytes < text.size()) {
    const size_t length = CharacterLength(text.substr(bytes));
    used += WidthOf(text.substr(bytes, length));
    if (used > columns) break;
    bytes += length;
  }
  return bytes;
}

}  // namespace lorimat
