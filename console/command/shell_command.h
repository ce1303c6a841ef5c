// "lorimat shell": lines typed by a person, or piped, one after the other to a virtual register.
#pragma once

#include <string>

#include "console/terminal/streams.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct ShellOptions {
  std::string language;       // definition file; empty takes the one beside the program
  std::string register_file;  // where the register is kept; empty keeps it in memory
  std::string clock;          // date and time; empty takes the computer's clock
  std::string library;        // empty takes the one beside the program
  bool terse = false;         // as a pipe: failing lines without explanation and summary
  bool json = false;          // requests and answers as lines of JSON
};

void AddShell(CLI::App& app, ShellOptions* options);

// Returns one of ExitCode; on a terminal failing lines make no difference to it. Throws Failure
// when the shell cannot start or its output cannot be written.
int ShellCommand(const ShellOptions& options, Streams& streams);

}  // namespace lorimat::console
