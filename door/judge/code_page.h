// Texts between JSON, which has UTF-8, and the device, which has the code page Windows-1252.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lorimat::door {

enum class TextFault : uint8_t { kNone, kControl, kNotInCodePage };

struct DeviceText {
  std::string bytes;  // empty with a fault
  TextFault fault = TextFault::kNone;
  size_t column = 0;  // of the character that is no good, from 1
};

// A line or a name: without NUL and other control characters, which are told ahead of a character
// that is not in the code page, wherever they stand.
DeviceText ToDevice(std::string_view utf8);

// A byte that the code page leaves out, or a control character, becomes "?".
std::string FromDevice(std::string_view bytes);

}  // namespace lorimat::door
