// Small text helpers of the console.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace lorimat::console {

// The mark that some editors put in front of a text in UTF-8. No terminal shows it.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// What stands at the beginning of a text: a character of UTF-8, or a byte that begins none.
struct Utf8Character {
  uint32_t code = 0;  // the byte itself where it begins none
  size_t size = 1;    // in bytes
};

// The text is not empty.
Utf8Character CharacterAt(std::string_view text);

// A text longer than limit bytes is cut between characters and ends in "...". A limit of 0 cuts
// nothing.
std::string CutText(std::string_view text, size_t limit);

// The text as it may be shown on a terminal: the bytes of control characters (U+0000 to U+001F and
// U+007F to U+009F, these also as single bytes), of marks that turn the direction of writing
// (U+202A to U+202E, U+2066 to U+2069) and of what nobody sees, such as the byte order mark, a
// joiner of no width or a tag, become "\xNN"; cut as CutText does.
std::string Shown(std::string_view text, size_t limit = 0);

// The same of each line of a text, with the line feeds that end them.
std::string ShownLines(std::string_view text);

// The text without the blanks at its end.
std::string_view WithoutTrailingBlanks(std::string_view text);

// The message of an errno value, in the user's language for those that are likely, and as the
// system has it for others.
std::string SystemMessage(int error);

}  // namespace lorimat::console
