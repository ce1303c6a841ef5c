// Long help, a page at a time.
#pragma once

#include <string>

#include "console/terminal/streams.h"

namespace lorimat::console {

// Writes a text to standard output. Where that is a terminal whose window has no room for the text,
// $PAGER shows it, or less; an empty PAGER, and one that is not installed, leave the text as it is.
// Throws Failure when the output cannot be written.
void ShowHelp(Streams& streams, const std::string& text);

}  // namespace lorimat::console
