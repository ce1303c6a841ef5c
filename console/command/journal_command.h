// "lorimat journal": the journal of a register's file, as a list, entry by entry, and checked
// against its chain of hashes.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/terminal/streams.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct JournalOptions {
  std::string register_file;
  bool json = false;
  // The list.
  std::string from;  // a closure, or a date of clock_text.h; empty: the first
  std::string to;    // the same; empty: the last
  std::vector<std::string> kinds;
  bool follow = false;
  // "show" and "verify" have --register and --json of their own.
  bool show = false;
  uint64_t place = 0;
  bool verify = false;
  std::string nested_register_file;
  size_t outer_registers = 0;  // --register in front of their names
};

void AddJournal(CLI::App& app, JournalOptions* options);

// Returns one of ExitCode. Throws Failure or RegisterError.
int JournalCommand(const JournalOptions& options, Streams& streams);

}  // namespace lorimat::console
