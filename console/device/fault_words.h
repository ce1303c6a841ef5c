// The faults of a register in words, as ".fault" of the shell takes and shows them.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "register/fault/faults.h"

namespace lorimat::console {

// Reads "NAME [CODE] [next | nth N | every | times N] [on OPERATION]"; the words may have "--" in
// front, as the options of "lorimat fault" have. Throws Failure with the cause.
lorimat::Fault ReadFault(std::string_view text);

// The words that may stand behind ".fault".
std::vector<std::string> FaultWords();

// The faults there are, and those that wait, in lines of at most so many columns; 0 gives each one
// line.
std::string FaultList(const lorimat::FaultPlan& plan, size_t columns);

}  // namespace lorimat::console
