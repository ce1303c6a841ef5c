// "lorimat copy": a whole register in another file.
#pragma once

#include <string>

#include "console/terminal/streams.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct CopyOptions {
  std::string from;
  std::string to;
};

void AddCopy(CLI::App& app, CopyOptions* options);

// Returns one of ExitCode. Throws Failure or RegisterError: then there is no copy.
int CopyCommand(const CopyOptions& options, Streams& streams);

}  // namespace lorimat::console
