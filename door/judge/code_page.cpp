#include "door/judge/code_page.h"

#include <algorithm>
#include <array>
#include <cstdint>

#include "console/message/shown_text.h"

namespace lorimat::door {
namespace {

// 0x80 to 0x9F; 0 for the five bytes that the code page leaves out.
constexpr std::array<uint16_t, 32> kUpper = {
    0x20AC, 0,      0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0,      0x017D, 0,      0,      0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0,      0x017E, 0x0178};

// 0 for a character that it lacks.
unsigned ByteOf(uint32_t code) {
  if ((code >= 0x20 && code < 0x7F) || (code >= 0xA0 && code <= 0xFF)) return code;
  const auto found = std::find(kUpper.begin(), kUpper.end(), code);
  if (code == 0 || found == kUpper.end()) return 0;
  return 0x80 + static_cast<unsigned>(found - kUpper.begin());
}

void Append(std::string* text, uint32_t code) {
  if (code < 0x80) {
    *text += static_cast<char>(code);
  } else if (code < 0x800) {
    *text += static_cast<char>(0xC0 | (code >> 6));
    *text += static_cast<char>(0x80 | (code & 0x3F));
  } else {
    *text += static_cast<char>(0xE0 | (code >> 12));
    *text += static_cast<char>(0x80 | ((code >> 6) & 0x3F));
    *text += static_cast<char>(0x80 | (code & 0x3F));
  }
}

}  // namespace

DeviceText ToDevice(std::string_view utf8) {
  DeviceText text;
  size_t column = 0;
  while (!utf8.empty()) {
    ++column;
    const console::Utf8Character character = console::CharacterAt(utf8);
    // A byte that begins no character has no meaning here.
    const bool is_none = character.size == 1 && static_cast<unsigned char>(utf8.front()) >= 0x80;
    const bool is_control =
        character.code < 0x20 || (character.code >= 0x7F && character.code < 0xA0);
    const unsigned byte = is_none ? 0 : ByteOf(character.code);
    if (is_control && !is_none) return {{}, TextFault::kControl, column};
    if (byte == 0 && text.fault == TextFault::kNone) {
      text.fault = TextFault::kNotInCodePage;
      text.column = column;
    }
    text.bytes += static_cast<char>(byte);
    utf8.remove_prefix(character.size);
  }
  if (text.fault != TextFault::kNone) text.bytes.clear();
  return text;
}

std::string FromDevice(std::string_view bytes) {
  std::string text;
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    uint32_t code = byte;
    if (byte >= 0x80 && byte < 0xA0) code = kUpper[byte - 0x80];
    if (code < 0x20 || code == 0x7F) code = '?';
    Append(&text, code);
  }
  return text;
}

}  // namespace lorimat::door
