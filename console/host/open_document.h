// What is told of a document that was open when a program left its device.
#pragma once

#include <string>

#include "console/device/device.h"
#include "console/terminal/streams.h"

namespace lorimat::console {

// Once the device has been closed: a note of what it keeps. `words` are those of OpenDocumentWords
// from before, nothing being told when they are empty; `ended` names what came to its end.
void TellOpenDocument(const Device::LeftNote& note_of_left, const std::string& words,
                      const std::string& ended, Streams& streams);

}  // namespace lorimat::console
