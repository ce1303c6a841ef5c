// ".fault" in the shell: a fault in words.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "register/faults.h"

// Reads "NAME [CODE] [next | nth N | every | times N] [on OPERATION]"; the words may have "--" in
// front, as the options of "lorimat fault" have. Throws Failure with the cause.
lorimat::Fault read_fault(std::string_view text);

// The words that may stand behind ".fault".
std::vector<std::string> fault_words();

// The faults there are, and those that wait, in lines of at most so many columns; 0 gives each one
// line.
std::string fault_list(const lorimat::FaultPlan& plan, size_t columns);
