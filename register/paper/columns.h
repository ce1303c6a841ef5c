// How many columns of the paper a text takes: a character of UTF-8 takes one, or two where it is a
// wide one, and so does a byte that begins none, which is a character of Windows-1252.
#pragma once

#include <cstddef>
#include <string_view>

namespace lorimat {

// The length of the character of UTF-8 at the start of the text, 2 to 4; 1 for a byte that begins
// none, or a character of seven bits.
size_t CharacterLength(std::string_view text);

size_t ColumnsOf(std::string_view text);
// How many bytes of the text fit into so many columns: whole characters.
size_t FittingBytes(std::string_view text, size_t columns);

}  // namespace lorimat
