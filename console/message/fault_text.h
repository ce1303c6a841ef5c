// Faults that wait in a register, in words and for programs.
#pragma once

#include <string>
#include <string_view>

#include "console/message/json_text.h"
#include "register/fault/faults.h"

namespace lorimat::console {

// What the fault of this name is, and which operations it strikes; empty when there is none.
std::string FaultKindText(std::string_view name);
std::string FaultStrikesText(std::string_view name);

// "paper-end at the 3rd next operation of PrintRecItem (203)".
std::string FaultText(const lorimat::Fault& fault);

Json FaultsJson(const lorimat::FaultPlan& plan);

}  // namespace lorimat::console
