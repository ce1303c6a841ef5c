// What is told to whoever follows the door: each event stands in the log since the commit of what
// it tells of.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "door/log/job.h"

namespace lorimat::door {

enum class EventKind : uint8_t {
  kJob,       // a job has come, or has gone into another state
  kDocument,  // a job is confirmed, with a document
  kDevice,    // the device is ready, or why it is not
  kWarning,   // what somebody should look at
  kLast = kWarning,
};
// "job", "document".
std::string_view EventName(EventKind kind);

struct LogEvent {
  int64_t id = 0;  // from 1, one more each time
  EventKind kind = EventKind::kJob;
  int64_t time = 0;  // milliseconds since 1970, UTC
  // Of a job and a document: the job as it was then, without lines and answers; its history is the
  // step that is told of.
  std::optional<Job> job = {};
  // Of the device: the code of its trouble, empty when it is ready. Of a warning: the names of all
  // that there are, with a blank between them; empty when none is left.
  std::string text = {};
};

struct EventPage {
  std::vector<LogEvent> events;
  // Up to here the log has been read, whoever the events are for.
  int64_t last = 0;
  // Behind the number that was asked for, events are there no more, or it is none of this log:
  // `last` is the newest one then, and there are no events.
  bool has_gap = false;
};

// How many of the newest events are kept at least.
inline constexpr int64_t kEventsKept = 10'000;

}  // namespace lorimat::door
