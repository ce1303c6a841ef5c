#include "console/message/shown_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <iterator>
#include <string_view>
#include <system_error>

#include "console/message/translate.h"

namespace lorimat::console {
namespace {

struct Range {
  uint32_t first;
  uint32_t last;
};

// Control characters, of which those above 0x80 begin sequences as ESC does, in UTF-8 or as a byte;
// marks that turn the direction of what follows; and what takes no room and has no look, so that
// two texts that look alike may differ.
constexpr Range kNotShown[] = {
    {0x0000, 0x001F}, {0x007F, 0x009F},   {0x034F, 0x034F},   {0x061C, 0x061C}, {0x115F, 0x1160},
    {0x17B4, 0x17B5}, {0x180B, 0x180F},   {0x200B, 0x200F},   {0x202A, 0x202E}, {0x2060, 0x2064},
    {0x2066, 0x206F}, {0x3164, 0x3164},   {0xFE00, 0xFE0F},   {0xFEFF, 0xFEFF}, {0xFFA0, 0xFFA0},
    {0xFFF9, 0xFFFB}, {0x1D173, 0x1D17A}, {0xE0000, 0xE0FFF},
};

bool IsVisibleAscii(char c) { return c >= ' ' && c <= '~'; }

bool IsNotShown(const Utf8Character& character) {
  // A single byte from 0xA0 on is a letter of a terminal that is not in UTF-8. The soft hyphen of
  // UTF-8 is not one.
  constexpr uint32_t kSoftHyphen = 0xAD;
  if (character.code == kSoftHyphen) return character.size > 1;
  return std::any_of(std::begin(kNotShown), std::end(kNotShown), [&](const Range& range) {
    return character.code >= range.first && character.code <= range.last;
  });
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
  for (;;) {
    // Mostly all of it.
    const auto plain = static_cast<size_t>(
        std::find_if_not(text.begin(), text.end(), IsVisibleAscii) - text.begin());
    out += text.substr(0, plain);
    text.remove_prefix(plain);
    if (text.empty()) break;
    const Utf8Character character = CharacterAt(text);
    const std::string_view bytes = text.substr(0, character.size);
    if (IsNotShown(character)) {
      for (const char c : bytes) out += fmt::format("\\x{:02X}", static_cast<unsigned char>(c));
    } else {
      out += bytes;
    }
    text.remove_prefix(character.size);
  }
  return out;
}

std::string ShownLines(std::string_view text) {
  std::string out;
  while (!text.empty()) {
    const size_t feed = text.find('\n');
    out += Shown(text.substr(0, feed));
    if (feed == std::string_view::npos) break;
    out += '\n';
    text.remove_prefix(feed + 1);
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
      {ENOLCK, TR_TEXT("No locks available")},
      {ENOMEM, TR_TEXT("Cannot allocate memory")},
      {EADDRINUSE, TR_TEXT("Address already in use")},
      {EADDRNOTAVAIL, TR_TEXT("Cannot assign requested address")},
  };
  for (const Row& row : kMessages) {
    if (row.error == error) return std::string(Translated(row.text));
  }
  return std::generic_category().message(error);
}

}  // namespace lorimat::console
