// "--follow": goes on with what comes, as "tail -f" does.
#pragma once

#include <functional>
#include <string>

#include "console/terminal/streams.h"

namespace lorimat::console {

// What there is to show behind a look, and whether more can come.
struct Following {
  std::string text = {};  // as it goes to standard output
  bool ended = false;     // nothing more will come
  bool more = false;      // there is more by now: the next look is at once
};

// Writes what `look` finds, and looks again now and then, until it says that it ends or somebody
// ends it: Ctrl-C, SIGTERM or SIGHUP, also while nobody reads what is written, or who read standard
// output has gone. Answers the exit code: 0 behind Ctrl-C, with which one ends it in order.
int Follow(const std::function<Following()>& look, Streams& streams);

}  // namespace lorimat::console
