// A failure that ends the program: what could not be done, with its cause, ready to be
// shown to the user behind "lorimat: ".
#pragma once

#include <stdexcept>
#include <string>

class Failure : public std::runtime_error {
 public:
  explicit Failure(const std::string& message) : std::runtime_error(message) {}
};

// The exit codes of the program.
enum ExitCode {
  kExitGood = 0,          // every line ran
  kExitLinesFailed = 1,   // at least one line answered a code other than 0
  kExitFaults = 1,        // what was looked at has faults
  kExitNotDone = 2,       // wrong use, or the run or its paper could not be done
  kExitInterrupted = 130  // stopped by Ctrl-C; 128 plus the signal's number, as shells have it
};
