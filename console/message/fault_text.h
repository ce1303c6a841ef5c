// Faults that wait in a register, in words and for programs.
#pragma once

#include <string>

#include "console/message/json_text.h"
#include "register/fault/faults.h"

namespace lorimat::console {

// "paper-end at the 3rd next operation of PrintRecItem (203)".
std::string FaultText(const lorimat::Fault& fault);

Json FaultsJson(const lorimat::FaultPlan& plan);

}  // namespace lorimat::console
