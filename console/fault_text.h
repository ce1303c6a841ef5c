// Faults that wait in a register, in words and for programs.
#pragma once

#include <string>

#include "json_text.h"
#include "register/faults.h"

// "paper-end at the 3rd next operation of PrintRecItem (203)".
std::string fault_text(const lorimat::Fault& fault);

Json faults_json(const lorimat::FaultPlan& plan);
