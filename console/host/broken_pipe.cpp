#include "console/host/broken_pipe.h"

#include <csignal>
#include <cstdlib>

#include "console/message/failure.h"

namespace lorimat::console {

bool ignore_broken_pipe() { return std::signal(SIGPIPE, SIG_IGN) == SIG_IGN; }

void end_by_broken_pipe() {
  std::signal(SIGPIPE, SIG_DFL);
  std::raise(SIGPIPE);
  std::_Exit(kExitReaderGone);  // the signal is blocked
}

}  // namespace lorimat::console
