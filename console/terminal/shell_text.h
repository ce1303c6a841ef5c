// Texts laid out for the shell: wrapped, cut and framed by the columns that they take on a screen.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace lorimat::console {

// The columns that a text takes: one for each character of UTF-8, and for each byte that is none.
size_t ColumnsOf(std::string_view text);

// The text cut to so many columns, with "..." at its end when something is missing; 0 cuts nothing.
std::string CutTo(std::string_view text, size_t columns);

// The text as it goes on in a line of so many columns that holds `column` of them already: broken
// between words, the further lines behind `indent` blanks. A longer word than a line stays whole.
// 0 columns break nothing.
std::string Flowed(std::string_view text, size_t column, size_t indent, size_t columns);

// The text in lines of at most so many columns, each behind `indent` blanks and ended by a line
// feed; a list's lines, which begin with "- ", hang behind the dash. 0 columns make one line.
std::string Wrapped(std::string_view text, size_t indent, size_t columns);

// A heading with its blanks, and a text that hangs behind it, or stands below it where there is
// too little room; each line ended by a line feed. 0 columns make one line.
std::string Entry(std::string_view heading, std::string_view text, size_t columns);

// The text in lines of so many columns with every character kept, each line ended by a line feed;
// 0 breaks nothing.
std::string Broken(std::string_view text, size_t columns);

// Words side by side in columns, as many as fit.
std::string InColumns(const std::vector<std::string>& words, size_t columns);

}  // namespace lorimat::console
