#include "register/desk/clock_check.h"

#include <fmt/format.h>

#include <algorithm>

#include "register/desk/layout.h"
#include "register/value/device_clock.h"
#include "register/value/refusal.h"
#include "register/value/row_encoding.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {

bool LiesBehind(int64_t time, int64_t latest) {
  return SecondsBetween(NumberTime(time), NumberTime(latest)) > kClockGrace;
}

int64_t LatestTime(const DeviceSetup& setup, const RegisterStore& store) {
  const ClockSetBack& back = setup.clock_set_back;
  int64_t latest = back.to;
  if (store.document_count() > back.document) {
    latest = std::max(latest, store.last_document_time());
  }
  if (store.last_closure() > back.closure) latest = std::max(latest, store.last_closure_time());
  return latest;
}

int64_t LatestTime(const RegisterCore& core) { return LatestTime(core.setup, core.store); }

std::optional<ClockBehind> FindClockBehind(const DeviceSetup& setup, const RegisterStore& store,
                                           const std::tm& now) {
  if (setup.training) return std::nullopt;
  const ClockBehind clock = {TimeNumber(now), LatestTime(setup, store)};
  if (clock.latest == 0 || !LiesBehind(clock.now, clock.latest)) return std::nullopt;
  return clock;
}

std::optional<ClockBehind> FindClockBehind(const RegisterCore& core) {
  return FindClockBehind(core.setup, core.store, core.Now());
}

int CheckClock(const RegisterCore& core) {
  const std::optional<ClockBehind> behind = FindClockBehind(core);
  if (!behind) return RTF_SUCCESS;
  return Refuse(RTF_EFPTR_CLOCK_ERROR, RefusalCause::kClockBehind, {behind->now, behind->latest});
}

std::string ClockNotice(const ClockBehind& behind) {
  return fmt::format(
      "The clock shows {}, more than an hour before the last document or closing, {}. Nothing is "
      "registered before the clock is right; SetDate sets it back, and the journal keeps that.",
      FormatDateTime(NumberTime(behind.now)), FormatDateTime(NumberTime(behind.latest)));
}

}  // namespace lorimat
