// Small text helpers of the console.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace lorimat::console {

// The mark that some editors put in front of a text in UTF-8. No terminal shows it.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// The text as it may be shown on a terminal: control characters and the byte order mark become
// "\xNN" and a text longer than limit bytes is cut and ends in "...". A limit of 0 cuts nothing.
std::string Shown(std::string_view text, size_t limit = 0);

// The text without the blanks at its end.
std::string_view WithoutTrailingBlanks(std::string_view text);

// The message of an errno value, in the user's language for those that are likely, and as the
// system has it for others.
std::string SystemMessage(int error);

}  // namespace lorimat::console
