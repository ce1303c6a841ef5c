// The program lorimatd.
#pragma once

namespace lorimat::door {

// Behind a call of the device that did not come back: whoever starts the program again lets it
// resolve the job.
inline constexpr int kExitHung = 75;

int RunProgram(int argc, char** argv);

}  // namespace lorimat::door
