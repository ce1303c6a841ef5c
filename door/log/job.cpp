#include "door/log/job.h"

#include <algorithm>
#include <iterator>

namespace lorimat::door {
namespace {

using State = JobState;

constexpr std::string_view kNames[] = {"queued",  "running",        "confirmed", "rejected",
                                       "unknown", "needs_operator", "expired",   "cancelled"};
static_assert(std::size(kNames) == static_cast<size_t>(State::kLast) + 1);

struct Way {
  State from;
  State to;
};

// Every way that there is. None leads from queued to a state that claims an effect, and none from
// unknown back to queued but by way of the device's own word.
constexpr Way kWays[] = {
    {State::kQueued, State::kRunning},         {State::kQueued, State::kRejected},
    {State::kQueued, State::kExpired},         {State::kQueued, State::kCancelled},
    {State::kQueued, State::kNeedsOperator},   {State::kRunning, State::kConfirmed},
    {State::kRunning, State::kRejected},       {State::kRunning, State::kUnknown},
    {State::kUnknown, State::kQueued},         {State::kUnknown, State::kConfirmed},
    {State::kUnknown, State::kRejected},       {State::kUnknown, State::kExpired},
    {State::kUnknown, State::kNeedsOperator},  {State::kNeedsOperator, State::kConfirmed},
    {State::kNeedsOperator, State::kRejected},
};

constexpr std::string_view kWhys[] = {
    "accepted",
    "a line cannot be understood; nothing was sent",
    "its lines are sent",
    "all its lines were answered",
    "a line was refused; what was open has been given up",
    "left_open: its lines left something open, which has been given up",
    "its lines were answered, and the device registered nothing",
    "an answer was lost",
    "the device does not answer",
    "the device's numbers do not fit its answers",
    "the program ended while it ran",
    "the device did not come back from a call",
    "asked: the device has its effect",
    "asked: the device has no effect of it",
    "asked: no effect, and it has been tried as often as may be",
    "the device has no number that would tell of it",
    "another device is there",
    "the device's numbers went back",
    "the device has registered more than one document since",
    "the device's next document is not known to be this job's",
    "a day closing came in between",
    "an operator says that it is done",
    "an operator says that it is not done",
    "its time was over before it began",
    "cancelled",
    "it was queued in a copy of the log, and may have run since",
    "the device is further on than the log, and it may have run since",
};
static_assert(std::size(kWhys) == static_cast<size_t>(Why::kLast) + 1);

}  // namespace

std::string_view JobStateName(JobState state) { return kNames[static_cast<size_t>(state)]; }

std::optional<JobState> FindJobState(std::string_view name) {
  const auto* found = std::find(std::begin(kNames), std::end(kNames), name);
  if (found == std::end(kNames)) return std::nullopt;
  return static_cast<JobState>(found - std::begin(kNames));
}

bool MayMove(JobState from, JobState to) {
  return std::any_of(std::begin(kWays), std::end(kWays),
                     [&](const Way& way) { return way.from == from && way.to == to; });
}

bool IsFinal(JobState state) {
  return std::none_of(std::begin(kWays), std::end(kWays),
                      [&](const Way& way) { return way.from == state; });
}

std::string_view WhyText(Why why) { return kWhys[static_cast<size_t>(why)]; }

}  // namespace lorimat::door
