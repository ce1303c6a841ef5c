// What whoever goes on with a register should know of its day: that it was left open past midnight,
// that nothing was registered for some dates, and that a limit comes near.
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>

#include "register/state/day_state.h"
#include "register/storage/store.h"

namespace lorimat {

// The dates between those of two times; nothing when there is none.
std::optional<IdleDates> DatesBetween(const std::tm& earlier, const std::tm& later);

// "15/01/2024".
std::string DateText(int64_t time);

// `now` is the time of the register's clock. Looks at what is in memory.
DayNotice FindDayNotice(const RegisterStore& store, const std::tm& now);
// The limits alone.
DayNotice FindLimits(const RegisterStore& store);

// The dates between the last closing and the first document of the day, or `now` without one.
std::optional<IdleDates> IdleBefore(const RegisterStore& store, const std::tm& now);

// The same of a day that is closed, from its rows.
std::optional<IdleDates> IdleAheadOf(const RegisterStore& store, const Closure& closure);

// In sentences, for a person; empty when there is nothing to tell. At most 127 characters, which a
// property of the client takes.
std::string DayNoticeText(const DayNotice& notice);

}  // namespace lorimat
