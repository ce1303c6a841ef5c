// What the register can test of itself.
#pragma once

#include "register/core/core.h"

namespace lorimat {

// The clock against what was registered last (RTF_EFPTR_CLOCK_ERROR), and the grand total against
// that of the last closing with the day since (RTF_EFPTR_FISCAL_TOTALS_ERROR).
int TestMemory(const RegisterCore& core);

// Prints a page with every character that the paper has; RTF_EFPTR_WRONG_STATE while a document
// is open.
int TestPrinter(RegisterCore& core);

// Fills the displays, or empties them.
int TestDisplays(RegisterCore& core, bool start);

// The test of a level of CheckHealth: inside (RTF_CH_INTERNAL), or with the printer
// (RTF_CH_EXTERNAL). What it found is kept as text for the host.
int TestHealth(RegisterCore& core, int level);

}  // namespace lorimat
