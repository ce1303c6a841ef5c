// A register of a day that chance makes: its settings, with a clock that goes on, and what has to
// hold of it whatever was done.
#pragma once

#include <cstdint>
#include <string>

#include "register/client/virtual_register.h"

namespace lorimat {

// Everything but the clock is as it comes.
RegisterSettings DaySettings(const std::string& file);

// The minute that the clock shows, from its epoch.
extern int64_t day_minutes;

// What no refused operation may change.
std::string RegisterFacts(const VirtualRegister& device);

// What is wrong with the documents, the sums that are kept of them, and what went back of what was
// sold; empty when nothing is.
std::string WrongSums(const RegisterStore& store);

// What `lorimat journal verify` finds in a file that has so many documents and entries; empty when
// nothing. Throws RegisterError.
std::string WrongJournal(const std::string& file, int64_t documents, uint64_t entries);

}  // namespace lorimat
