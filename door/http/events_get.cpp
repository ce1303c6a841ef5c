// GET /v1/events.

#include <fmt/format.h>

#include "door/http/api_path.h"
#include "door/http/event_stream.h"
#include "door/http/target.h"

namespace lorimat::door {

namespace {

// An operator's token, and who needs none, is told of all desks.
std::optional<std::string> ToldDesk(const std::optional<console::TokenHolder>& caller) {
  if (!caller || caller->role != console::TokenRole::kDesk) return std::nullopt;
  return caller->name;
}

}  // namespace

bool Api::MayFollow(const Request& request, const EventStream& events) const {
  std::optional<console::TokenHolder> caller;
  return !RefuseCaller(request, &caller) && ToldDesk(caller) == events.desk();
}

// The header wins: a browser that comes again keeps the address, and counts on by it.
Reply Api::GetEvents(const Request& request, const Path& path) {
  std::optional<std::string> given = request.last_event_id;
  const auto asked = path.query.find("after");
  if (!given && asked != path.query.end()) given = asked->second;
  std::optional<int64_t> after;
  if (given) {
    after = ReadCount(*given);
    if (!after) return Problem(400, "bad_field", "after: is no number of an event");
  }
  const auto follow = path.query.find("follow");
  const bool follows = follow == path.query.end() || follow->second == "true";
  if (!follows && follow->second != "false") {
    return Problem(400, "bad_field", "follow: is neither true nor false");
  }
  auto events = std::make_shared<EventStream>(parts_.log, after, ToldDesk(path.caller));
  Reply reply;
  reply.content_type = "text/event-stream";
  if (follows) {
    reply.events = std::move(events);
  } else {
    reply.body = events->Next();
  }
  return reply;
}

}  // namespace lorimat::door
