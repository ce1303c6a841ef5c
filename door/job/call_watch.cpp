#include "door/job/call_watch.h"

#include <chrono>
#include <utility>

namespace lorimat::door {

int64_t SteadyTime() {
  return std::chrono::duration_cast<std::chrono::milliseconds>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
}

CallWatch::CallWatch(Clock clock) : clock_(clock ? std::move(clock) : Clock(&SteadyTime)) {}

std::optional<int64_t> CallWatch::Since() const {
  const int64_t begun = begun_;
  if (begun == kNone) return std::nullopt;
  return clock_() - begun;
}

}  // namespace lorimat::door
