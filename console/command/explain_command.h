// "lorimat explain": what a result code is, and what causes it.
#pragma once

#include <string>
#include <vector>

#include "console/terminal/streams.h"

namespace lorimat::console {

struct ExplainOptions {
  // Decimal, as an answer shows them ("1/9"), or whole answers, whose words may be apart.
  std::vector<std::string> codes;
  bool json = false;
};

// Returns kExitGood, or kExitFaults when a code is none that the library can give. Throws Failure
// for a text that is no code.
int ExplainCommand(const ExplainOptions& options, Streams& streams);

}  // namespace lorimat::console
