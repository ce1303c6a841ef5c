// Links that somebody else has put into a folder that everybody writes, such as /tmp.
#pragma once

#include <string>

namespace lorimat {

// Whether a path is a link of another user in a folder where everybody may make names and only
// remove his own: neither ours nor of the folder's owner. Whoever follows it writes where that user
// wants. Systems mostly refuse to follow such a link by themselves; not all do, and none where a
// program reads the link and goes on with what it says. False for what cannot be looked at.
bool IsPlantedLink(const std::string& path);

}  // namespace lorimat
