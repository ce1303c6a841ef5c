// Colour on a terminal: text stays as it is where output goes to a file or a pipe, where NO_COLOR
// is set to anything but an empty text (https://no-color.org), or where TERM is "dumb" or unset.
#pragma once

#include <string>
#include <string_view>

namespace lorimat::console {

enum class Style { kError, kWarning, kNote, kGood, kStrong, kFaint };

// Whether text for a descriptor is coloured.
bool HasColours(int descriptor);

// The text in a style, or the text alone without colours.
std::string Styled(std::string_view text, Style style, bool colours);

}  // namespace lorimat::console
