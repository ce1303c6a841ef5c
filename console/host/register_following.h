// Following a register's file ("--follow"), which a register may be selling on.
#pragma once

#include <functional>
#include <string>

#include "console/terminal/follow.h"
#include "console/terminal/streams.h"
#include "register/inspect/register_file.h"

namespace lorimat::console {

// Writes what `next` answers now and behind each change of the file, until the user ends it, or
// another file or none bears its name, of which a note tells. `next` answers an empty text for
// nothing new, and is asked again at once where it says that there is more. Answers the exit code.
int FollowRegister(lorimat::RegisterFile& file, const std::string& name,
                   const std::function<Following()>& next, Streams& streams);

}  // namespace lorimat::console
