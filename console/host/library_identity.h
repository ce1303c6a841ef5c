// What a library does with lines, beside what the translator within this program does.
#pragma once

#include <string>

#include "console/host/library.h"

namespace lorimat::console {

// Runs some lines by both, each with a register in memory of its own. For the process of a trial:
// the library is started and not ended, and the settings of the installation are left out. Returns
// a text for ReadIdentity.
std::string IdentifyLibrary(void* handle);

LibraryIdentity ReadIdentity(const std::string& text);

}  // namespace lorimat::console
