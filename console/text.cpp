#include "text.h"

#include <fmt/format.h>

#include <system_error>

std::string shown(std::string_view text, size_t limit) {
  const bool cut = limit != 0 && text.size() > limit;
  if (cut) {
    text = text.substr(0, limit);
    // A cut in the middle of a UTF-8 sequence would leave half a character.
    while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80) {
      text.remove_suffix(1);
    }
    if (!text.empty() && (static_cast<unsigned char>(text.back()) & 0x80) != 0) {
      text.remove_suffix(1);
    }
  }
  std::string out;
  out.reserve(text.size());
  for (const char c : text) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte == 0x7F) {
      out += fmt::format("\\x{:02X}", byte);
    } else {
      out += c;
    }
  }
  if (cut) out += "...";
  return out;
}

std::string_view without_trailing_blanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

std::string system_message(int error) { return std::generic_category().message(error); }
