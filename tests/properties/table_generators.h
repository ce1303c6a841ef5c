// Registers whose tables chance has programmed.
#pragma once

#include <string>
#include <vector>

#include "properties/property.h"
#include "register/client/virtual_register.h"

namespace lorimat {

// Settings of a register with articles by chance.
RegisterSettings TablesByChance();

// Writes records by chance into every table that a host can write: departments, groups, operators,
// subtenders, header, keyboards, rates, options. Texts have any printable byte, quotes often, and
// all lengths. What the register refuses stays. Generates: to be called in a property.
void ProgramByChance(VirtualRegister& device, Seen* seen);

}  // namespace lorimat
