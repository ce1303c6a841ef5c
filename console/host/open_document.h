// What becomes of a document that is open when a program leaves its register.
#pragma once

#include <string>

#include "console/terminal/streams.h"

namespace lorimat {
class VirtualRegister;
}

namespace lorimat::console {

// Of the document that is open now, in a sentence. `kept` says that the register is kept in a file;
// one in memory is gone with the shell.
std::string OpenDocumentFate(const lorimat::VirtualRegister& device, bool kept);

// Once the register has been switched off: a note of what its file holds now or, where it was in
// memory, that the document is gone. `words` are those of OpenDocumentWords from before, nothing
// being told when they are empty; `ended` names what came to its end.
void TellOpenDocument(const std::string& register_file, const std::string& words,
                      const std::string& ended, Streams& streams);

}  // namespace lorimat::console
