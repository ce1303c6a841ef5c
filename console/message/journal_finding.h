// What the check of a register's journal finds, in words.
#pragma once

#include <string>

#include "register/storage/finding.h"

namespace lorimat::console {

// "entry 42, receipt 0003-0007: its document is missing", in the user's language.
std::string JournalFindingText(const lorimat::Finding& finding);
// The finding's kind for programs: "document-missing".
std::string JournalFindingCode(const lorimat::Finding& finding);

}  // namespace lorimat::console
