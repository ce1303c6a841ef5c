// The device's clock against what was registered last: fiscal documents and closings follow one
// another in time.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "register/core/core.h"

namespace lorimat {

// How far the clock may be behind what was registered last: an hour comes back each autumn, and
// clocks are put right by minutes.
inline constexpr int64_t kClockGrace = 3600;

// Whether a time lies further before another than that. Both are numbers, YYYYMMDDHHMMSS.
bool LiesBehind(int64_t time, int64_t latest);

// The time that the next document has to follow: of the last document or the last closing,
// whichever is later, or the one that the clock was set back to behind them. 0 when there is none.
int64_t LatestTime(const RegisterCore& core);
int64_t LatestTime(const DeviceSetup& setup, const RegisterStore& store);

// The clock, and the time that it is too far behind.
struct ClockBehind {
  int64_t now = 0;
  int64_t latest = 0;
};
// Nothing when all is well, and in training, which registers nothing.
std::optional<ClockBehind> FindClockBehind(const RegisterCore& core);
// The same of a register that is not switched on; `now` is the time of its own clock.
std::optional<ClockBehind> FindClockBehind(const DeviceSetup& setup, const RegisterStore& store,
                                           const std::tm& now);

// RTF_EFPTR_CLOCK_ERROR when the clock is behind.
int CheckClock(const RegisterCore& core);

// For the host, at a start.
std::string ClockNotice(const ClockBehind& behind);

}  // namespace lorimat
