// "lorimat backup": the programmable tables of a register's file, as dumps in a folder.
#pragma once

#include <string>

#include "console/terminal/streams.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct BackupOptions {
  std::string register_file;
  std::string folder;
  std::string language;
  std::string library;
  bool json = false;
};

void AddBackup(CLI::App& app, BackupOptions* options);

// Returns one of ExitCode. Throws Failure or RegisterError: then, and then alone, there is
// no backup.
int RunBackup(const BackupOptions& options, Streams& streams);

}  // namespace lorimat::console
