// Result codes as they stand in texts: as numbers, and in the answers of the library.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "console/message/message_texts.h"

namespace lorimat::console {

// The parts of a code that an answer shows as "class/index", the class shifted down.
inline constexpr int kCodeClassMask = 0xFFFF00;
inline constexpr int kCodeIndexMask = 0xFF;

// "265", or "1/9"; nothing for another text.
std::optional<int> ReadCodeNumber(const std::string& text);

// The codes of an answer that was pasted, with whatever stands in front of it:
//
//   ERROR 4/218
//   till.cmd:2: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND
//   ERROR 1/1 in line 7 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND
//   INSTRUCTION NOT FOUND
//
// Several for a text that several codes have; none for one that is no answer.
std::vector<int> CodesInAnswer(const std::string& text, MessageTexts& texts);

}  // namespace lorimat::console
