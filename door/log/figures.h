// What is counted, for whoever watches the door.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>

#include "door/log/job.h"

namespace lorimat::door {

// How long something took, how often.
struct Durations {
  // Seconds; what took longer than the last one is counted behind it.
  static constexpr std::array kBounds = {0.001, 0.003, 0.01, 0.03, 0.1,   0.3,   1.0,
                                         3.0,   10.0,  30.0, 100., 300.0, 1000.0};

  void Add(double seconds) {
    const auto* bound = std::lower_bound(kBounds.begin(), kBounds.end(), seconds);
    ++counts[static_cast<size_t>(bound - kBounds.begin())];
    sum += seconds;
  }

  std::array<int64_t, kBounds.size() + 1> counts{};
  double sum = 0;  // seconds
};

inline constexpr size_t kJobStates = static_cast<size_t>(JobState::kLast) + 1;

// Of a log; all but `jobs` since it was opened.
struct LogFigures {
  std::array<int64_t, kJobStates> jobs{};     // by state
  std::array<int64_t, kJobStates> entered{};  // by state
  std::array<Durations, kJobStates> left{};   // by the state that was left: how long it was in it
  Durations commits{};                        // that changed a job
  int64_t last_event = 0;
  int64_t oldest_queued = 0;  // milliseconds since 1970, when it was accepted; 0: none is queued
};

}  // namespace lorimat::door
