// What the program says of itself on standard error: its name with a colon, "lorimat: ", what kind
// of notice it is, and the text, with the name and the kind in colour on a terminal. A text is one
// in the user's language, without a line end.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "console/terminal/streams.h"

namespace lorimat::console {

// "lorimat: TEXT": something went wrong.
void TellError(Streams& streams, std::string_view text);
// "lorimat: warning: TEXT"
void TellWarning(Streams& streams, std::string_view text);
// "lorimat: note: TEXT"
void TellNote(Streams& streams, std::string_view text);
// "lorimat: TEXT": what is going on.
void Tell(Streams& streams, std::string_view text);

// Writes the report of work that is done and stays so. False when it could not be written; then
// `missing`, made of the cause, is told. Throws ReaderGone.
bool WriteReport(Streams& streams, const std::string& report,
                 const std::function<std::string(const char* cause)>& missing);

}  // namespace lorimat::console
