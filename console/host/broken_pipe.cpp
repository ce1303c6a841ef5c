#include "console/host/broken_pipe.h"

#include <csignal>
#include <cstdlib>

#include "console/message/failure.h"

namespace lorimat::console {

bool IgnoreBrokenPipe() { return std::signal(SIGPIPE, SIG_IGN) == SIG_IGN; }

void EndByBrokenPipe() {
  std::signal(SIGPIPE, SIG_DFL);
  std::raise(SIGPIPE);
  std::_Exit(kExitReaderGone);  // the signal is blocked
}

}  // namespace lorimat::console
