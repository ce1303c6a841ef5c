// "lorimat restore": the tables of a backup, compared with a register and loaded back into it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

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

class TableSession;

// What became of the tables of a backup.
struct LoadedTables {
  std::string serial_number;              // of the register that the backup is of
  uint64_t rows = 0;                      // that are as in the backup now, and were not
  std::vector<std::string> not_restored;  // "vat.txt:3: not restored: ..."
  bool stopped = false;                   // by a signal
};

// Loads the tables of a backup. Throws Failure, before anything is changed, when the backup is not
// whole.
LoadedTables LoadTables(const std::string& folder, TableSession& session, Streams& streams);

void AddRestore(CLI::App& app, RestoreOptions* options);

// Returns one of ExitCode. Throws Failure or RegisterError when nothing could be restored.
int RunRestore(const RestoreOptions& options, Streams& streams);

}  // namespace lorimat::console
