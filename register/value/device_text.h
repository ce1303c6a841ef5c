// A text as the register keeps it.
#pragma once

#include <string>
#include <string_view>

namespace lorimat {

// Control characters become blanks: a kept text is given out in lines of a file. ESC stays, for
// the sequences that centre and widen on paper.
inline std::string DeviceText(std::string_view text) {
  constexpr char kEscape = 27;
  std::string kept(text);
  for (char& c : kept) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if ((byte < 0x20 && c != kEscape) || byte == 0x7F) c = ' ';
  }
  return kept;
}

}  // namespace lorimat
