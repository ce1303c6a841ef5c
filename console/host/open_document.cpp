#include "console/host/open_document.h"

#include "console/terminal/notices.h"

namespace lorimat::console {

void TellOpenDocument(const Device::LeftNote& note_of_left, const std::string& words,
                      const std::string& ended, Streams& streams) {
  if (words.empty()) return;
  const std::string note = note_of_left(ended, words);
  if (!note.empty()) TellNote(streams, note);
}

}  // namespace lorimat::console
