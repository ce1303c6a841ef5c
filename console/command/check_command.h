// "lorimat check": looks for faults in definition files and batch files, and runs nothing.
#pragma once

#include <string>
#include <vector>

#include "console/terminal/streams.h"

namespace lorimat::console {

struct CheckOptions {
  std::vector<std::string> files;  // "-" is standard input
  std::string language;            // the words of batch files; empty as a host would read them
  bool language_file = false;      // every file is a definition file
  bool batch_file = false;         // every file is a batch file; with neither it is found out
  bool notes = false;              // aliases are told, too
  bool json = false;
};

// Returns kExitGood, kExitFaults when a file has errors, or kExitNotDone when one cannot be
// read; the others are checked all the same. A signal ends it within a file, of which nothing is
// shown, and it returns interrupt_exit().
int CheckCommand(const CheckOptions& options, Streams& streams);

}  // namespace lorimat::console
