// How many requests may come at once, and how fast there is room for others.
#pragma once

#include <chrono>

namespace lorimat::door {

// Of one after the other there are `at_once`, and then one in each `pause`.
struct Rate {
  std::chrono::microseconds pause;
  int at_once = 1;
};

class RateLimit {
 public:
  using Time = std::chrono::steady_clock::time_point;

  explicit RateLimit(const Rate& rate) : rate_(rate) {}
  // Whether there is room for one more now, which then takes it. One thread at a time.
  bool Take(Time now);

 private:
  Rate rate_;
  Time due_{};  // when the room is as large as at first
};

}  // namespace lorimat::door
