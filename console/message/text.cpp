#include "console/message/text.h"

#include <fmt/format.h>

#include <string_view>
#include <system_error>

#include "console/message/translate.h"

namespace lorimat::console {

std::string Shown(std::string_view text, size_t limit) {
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
  for (size_t at = 0; at < text.size(); ++at) {
    const char c = text[at];
    const unsigned char byte = static_cast<unsigned char>(c);
    if (text.substr(at, kByteOrderMark.size()) == kByteOrderMark) {
      out += "\\xEF\\xBB\\xBF";
      at += kByteOrderMark.size() - 1;
    } else if (byte < 0x20 || byte == 0x7F) {
      out += fmt::format("\\x{:02X}", byte);
    } else {
      out += c;
    }
  }
  if (cut) out += "...";
  return out;
}

std::string_view WithoutTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// The C library has them in other languages only where a package of languages is installed.
std::string SystemMessage(std::string_view english) {
  static constexpr std::string_view kMessages[] = {
      TR_TEXT("No such file or directory"),
      TR_TEXT("Permission denied"),
      TR_TEXT("Operation not permitted"),
      TR_TEXT("No space left on device"),
      TR_TEXT("Disk quota exceeded"),
      TR_TEXT("Read-only file system"),
      TR_TEXT("Is a directory"),
      TR_TEXT("Not a directory"),
      TR_TEXT("File exists"),
      TR_TEXT("File name too long"),
      TR_TEXT("File too large"),
      TR_TEXT("Bad file descriptor"),
      TR_TEXT("Too many open files"),
      TR_TEXT("Too many levels of symbolic links"),
      TR_TEXT("Input/output error"),
      TR_TEXT("Broken pipe"),
      TR_TEXT("Invalid argument"),
      TR_TEXT("No such device or address"),
      TR_TEXT("Device or resource busy"),
      TR_TEXT("Text file busy"),
      TR_TEXT("Resource temporarily unavailable"),
      TR_TEXT("Cannot allocate memory"),
  };
  return TrFinished(english, kMessages);
}

std::string SystemMessage(int error) {
  return SystemMessage(std::generic_category().message(error));
}

}  // namespace lorimat::console
