// What a register is, for programs. What "init" and "set" take stands in `settings` under the names
// of their options, each value as the option takes it.
#pragma once

#include "console/message/json_text.h"
#include "register/inspect/register_file.h"
#include "register/inspect/register_profile.h"

namespace lorimat::console {

// The members settings, setup, tables, memory and clock, in their order.
Json RegisterProfileJson(const lorimat::RegisterProfile& profile,
                         const lorimat::RegisterStatus& status);
// The sums of the day.
Json DayTotalsJson(const lorimat::DailyTotals& day);

}  // namespace lorimat::console
