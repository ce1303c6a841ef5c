// "lorimat fault": the faults that a register can be made to suffer, and its plan of them.
#pragma once

#include <optional>
#include <string>

#include "console/terminal/streams.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct FaultOptions {
  std::string register_file;
  std::string name;         // of the fault; empty lists
  std::optional<int> code;  // behind the name "code"
  bool next = false;
  std::optional<int> nth;
  bool every = false;
  std::optional<int> times;
  std::string operation;
  bool clear = false;
  bool json = false;
};

void AddFault(CLI::App& app, FaultOptions* options);

// Returns one of ExitCode. Throws Failure or RegisterError.
int FaultCommand(const FaultOptions& options, Streams& streams);

}  // namespace lorimat::console
