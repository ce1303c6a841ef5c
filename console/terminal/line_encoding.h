// What a file of lines is written in, where it is not what the library reads.
#pragma once

#include <string>
#include <string_view>

#include "console/terminal/line_reader.h"

namespace lorimat::console {

bool BeginsWithByteOrderMark(std::string_view line);

// Whether the line shows that its file is UTF-16: by the mark of that, where it is the first, or
// because every second byte is NUL.
bool ShowsUtf16(const SourceLine& line);

// What to say behind the failure of such a line; empty for every other.
std::string EncodingHint(std::string_view line);

}  // namespace lorimat::console
