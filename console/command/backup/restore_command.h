// "lorimat restore": the tables of a backup, compared with a register and loaded back into it.
#pragma once

#include <string>

#include "console/terminal/streams.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct RestoreOptions {
  std::string register_file;
  std::string folder;
  std::string language;
  std::string library;
  bool dry_run = false;
  bool json = false;
};

void add_restore(CLI::App& app, RestoreOptions* options);

// Returns one of ExitCode. Throws Failure or RegisterError when nothing could be restored.
int restore_command(const RestoreOptions& options, Streams& streams);

}  // namespace lorimat::console
