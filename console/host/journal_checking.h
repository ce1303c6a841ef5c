// The check of a register's journal, of whatever is left of the register.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include "register/inspect/journal_verdict.h"

namespace lorimat::console {

// As RegisterFile::VerifyJournal has it. A file that lacks what every register has, such as the row
// of its ledger, cannot be looked at as one: that is a finding too. Throws RegisterError where the
// file cannot be read for another reason.
lorimat::JournalCheck CheckJournalOf(
    const std::string& file, const std::function<bool(uint64_t done, uint64_t all)>& progress);

}  // namespace lorimat::console
