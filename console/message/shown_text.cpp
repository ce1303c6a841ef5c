#include "console/message/shown_text.h"

#include <fmt/format.h>

#include <cerrno>
#include <cstdint>
#include <string_view>
#include <system_error>

#include "console/message/translate.h"

namespace lorimat::console {
namespace {

// Control characters, of which those above 0x80 begin sequences as ESC does, in UTF-8 or as a byte;
// marks that turn the direction of what follows; and the byte order mark, which nobody sees.
bool ActsOnTerminal(const Utf8Character& character) {
  constexpr uint32_t kByteOrderMarkCode = 0xFEFF;
  const uint32_t code = character.code;
  return code < 0x20 || (code >= 0x7F && code < 0xA0) || (code >= 0x202A && code <= 0x202E) ||
         (code >= 0x2066 && code <= 0x2069) || code == kByteOrderMarkCode;
}

}  // namespace

Utf8Character CharacterAt(std::string_view text) {
  const auto byte = [&](size_t at) { return static_cast<unsigned char>(text[at]); };
  const uint32_t lead = byte(0);
  const size_t size = lead >= 0xF0 && lead < 0xF8   ? 4
                      : lead >= 0xE0 && lead < 0xF0 ? 3
                      : lead >= 0xC2 && lead < 0xE0 ? 2
                                                    : 1;
  if (size == 1 || size > text.size()) return {lead, 1};
  uint32_t code = lead & (0xFFU >> (size + 1));
  for (size_t i = 1; i < size; ++i) {
    if ((byte(i) & 0xC0) != 0x80) return {lead, 1};
    code = code << 6 | (byte(i) & 0x3F);
  }
  return {code, size};
}

std::string CutText(std::string_view text, size_t limit) {
  if (limit == 0 || text.size() <= limit) return std::string(text);
  text = text.substr(0, limit);
  // A cut in the middle of a UTF-8 sequence would leave half a character.
  while (!text.empty() && (static_cast<unsigned char>(text.back()) & 0xC0) == 0x80) {
    text.remove_suffix(1);
  }
  if (!text.empty() && (static_cast<unsigned char>(text.back()) & 0x80) != 0) {
    text.remove_suffix(1);
  }
  return std::string(text) + "...";
}

std::string Shown(std::string_view text, size_t limit) {
  const std::string cut = CutText(text, limit);
  text = cut;
  std::string out;
  out.reserve(text.size());
  while (!text.empty()) {
    const Utf8Character character = CharacterAt(text);
    const std::string_view bytes = text.substr(0, character.size);
    if (ActsOnTerminal(character)) {
      for (const char c : bytes) out += fmt::format("\\x{:02X}", static_cast<unsigned char>(c));
    } else {
      out += bytes;
    }
    text.remove_prefix(character.size);
  }
  return out;
}

std::string_view WithoutTrailingBlanks(std::string_view text) {
  while (!text.empty() && text.back() == ' ') text.remove_suffix(1);
  return text;
}

// The C library has them in other languages only where a package of languages is installed.
std::string SystemMessage(int error) {
  struct Row {
    int error;
    const char* text;
  };
  static constexpr Row kMessages[] = {
      {ENOENT, TR_TEXT("No such file or directory")},
      {EACCES, TR_TEXT("Permission denied")},
      {EPERM, TR_TEXT("Operation not permitted")},
      {ENOSPC, TR_TEXT("No space left on device")},
      {EDQUOT, TR_TEXT("Disk quota exceeded")},
      {EROFS, TR_TEXT("Read-only file system")},
      {EISDIR, TR_TEXT("Is a directory")},
      {ENOTDIR, TR_TEXT("Not a directory")},
      {EEXIST, TR_TEXT("File exists")},
      {ENAMETOOLONG, TR_TEXT("File name too long")},
      {EFBIG, TR_TEXT("File too large")},
      {EBADF, TR_TEXT("Bad file descriptor")},
      {EMFILE, TR_TEXT("Too many open files")},
      {ELOOP, TR_TEXT("Too many levels of symbolic links")},
      {EIO, TR_TEXT("Input/output error")},
      {EPIPE, TR_TEXT("Broken pipe")},
      {EINVAL, TR_TEXT("Invalid argument")},
      {ENXIO, TR_TEXT("No such device or address")},
      {EBUSY, TR_TEXT("Device or resource busy")},
      {ETXTBSY, TR_TEXT("Text file busy")},
      {EAGAIN, TR_TEXT("Resource temporarily unavailable")},
      {ENOMEM, TR_TEXT("Cannot allocate memory")},
  };
  for (const Row& row : kMessages) {
    if (row.error == error) return std::string(Translated(row.text));
  }
  return std::generic_category().message(error);
}

}  // namespace lorimat::console
