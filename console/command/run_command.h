// "lorimat run": runs a file of command lines as a host does, and prints the paper.
#pragma once

#include <string>

#include "console/terminal/streams.h"

namespace lorimat::console {

struct RunOptions {
  std::string file;           // "-" is standard input
  std::string language;       // definition file; empty takes the one beside the program
  std::string paper;          // empty, or "-", is standard output
  std::string png;            // empty for no such picture of the paper; "-" is standard output
  std::string pdf;            // the same
  std::string library;        // empty takes the one beside the program
  std::string trace;          // empty discards the library's own lines; "-" is standard error
  std::string register_file;  // where the register is kept; empty keeps it in memory
  std::string clock;          // date and time; empty takes the computer's clock
  bool batch = false;
  bool stop_on_error = false;
  bool terse = false;  // failing lines without their explanation and the summary
  bool verbose = false;
};

// Returns one of ExitCode. Throws Failure when the run could not be done.
int RunCommand(const RunOptions& options, Streams& streams);

}  // namespace lorimat::console
