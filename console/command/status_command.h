// "lorimat status": what a register's file holds, without switching the register on.
#pragma once

#include <string>

#include "console/terminal/streams.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct StatusOptions {
  std::string register_file;
  bool json = false;
  bool follow = false;
};

void AddStatus(CLI::App& app, StatusOptions* options);

// Returns one of ExitCode. Throws Failure or RegisterError when the file cannot be read.
int StatusCommand(const StatusOptions& options, Streams& streams);

}  // namespace lorimat::console
