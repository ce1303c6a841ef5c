// The events of the log as text/event-stream, for one reader.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>

#include "door/log/job_log.h"

namespace lorimat::door {

class EventStream {
 public:
  // What a reader who has seen all is sent from time to time, so that both sides know of a
  // connection that is gone.
  static constexpr const char* kHeartbeat = ": still here\n\n";
  // Events that are read at once: what a reader has not taken is not read any further.
  static constexpr int kAtOnce = 100;

  // Behind the event of that number, or from now on; those of the desk and those that are nobody's.
  EventStream(JobLog& log, std::optional<int64_t> after, std::optional<std::string> desk)
      : log_(log), last_(after ? *after : log.LastEvent()), desk_(std::move(desk)) {}

  // The next ones; empty where there are none yet. What the log does not have any more, or not yet,
  // is an event "reset", and those that come behind it follow. Throws RegisterError.
  std::string Next();
  // Whose events they are; of all desks without one.
  const std::optional<std::string>& desk() const { return desk_; }

 private:
  JobLog& log_;
  int64_t last_;
  std::optional<std::string> desk_;
};

// `id`, `event` and one line of `data`.
std::string EventText(const LogEvent& event);

}  // namespace lorimat::door
