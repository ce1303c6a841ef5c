#include "door/http/event_stream.h"

#include <fmt/format.h>

#include "door/http/api.h"

namespace lorimat::door {

std::string EventText(const LogEvent& event) {
  return fmt::format("id: {}\nevent: {}\ndata: {}\n\n", event.id, EventName(event.kind),
                     EventJson(event));
}

std::string EventStream::Next() {
  // A page may hold nothing that is for this desk.
  for (;;) {
    const EventPage page = log_.Events(last_, kAtOnce, desk_);
    if (page.has_gap) {
      const int64_t asked = std::exchange(last_, page.last);
      return fmt::format("id: {}\nevent: reset\ndata: {{\"after\":{},\"last\":{}}}\n\n", page.last,
                         asked, page.last);
    }
    const bool is_end = page.last == last_;
    last_ = page.last;
    std::string text;
    for (const LogEvent& event : page.events) text += EventText(event);
    if (is_end || !text.empty()) return text;
  }
}

}  // namespace lorimat::door
