// SIGPIPE: a reader of standard output that has gone.
#pragma once

namespace lorimat::console {

// Has the signal ignored from here on, so that it takes neither what goes elsewhere nor the
// register with it; writing fails instead. Answers whether the caller has it ignored already: then
// it wants to be told.
bool IgnoreBrokenPipe();

// Ends the program by the signal, as it ends others.
[[noreturn]] void EndByBrokenPipe();

}  // namespace lorimat::console
