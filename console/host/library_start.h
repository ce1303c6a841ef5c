// The library set to work: given a device client and its definition file.
#pragma once

#include <string>

#include "console/device/device.h"
#include "console/host/library.h"
#include "console/terminal/streams.h"

namespace lorimat::console {

// Hands client and definition file to the library. `language` is the option --language, or empty.
// Warns of a library that is not of this program's version. Tells on standard error when the
// registry overrides the definition file, or, with verbose, which file it is.
// Throws Failure with the cause when the library refuses the file.
void StartLibrary(const std::string& language, bool verbose, Library& library, Device& device,
                  Streams& streams);

}  // namespace lorimat::console
