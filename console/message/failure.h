// A failure that ends the program: what could not be done, with its cause, ready to be
// shown to the user behind "lorimat: ".
#pragma once

#include <stdexcept>
#include <string>

namespace lorimat::console {

class Failure : public std::runtime_error {
 public:
  explicit Failure(const std::string& message) : std::runtime_error(message) {}
};

// A device did not come back from a call, and was given up.
class DeviceHung : public Failure {
 public:
  using Failure::Failure;
};

// A device cannot be opened now, by its own word, and may be there another time.
class DeviceAway : public Failure {
 public:
  using Failure::Failure;
};

// Nobody reads standard output any more.
class ReaderGone : public Failure {
 public:
  using Failure::Failure;
};

// The exit codes of the program. Behind a signal that stopped its work it is interrupt_exit().
enum ExitCode {
  kExitGood = 0,         // every line ran
  kExitLinesFailed = 1,  // at least one line answered a code other than 0
  kExitFaults = 1,       // what was looked at has faults
  kExitNotDone = 2,      // wrong use, or the run or its paper could not be done
  kExitUnknown = 3,      // what was asked of a door may have been done, or not
  kExitReaderGone = 141  // nobody reads standard output: SIGPIPE is to end the program
};

}  // namespace lorimat::console
