// A job asked for until its outcome is known, or the time is over: again and again with one key.
#pragma once

#include <chrono>
#include <string>
#include <string_view>

#include "console/message/json_text.h"
#include "console/remote/http_request.h"

namespace lorimat::console {

// Whether a text may be a key: 1 to 64 of A-Z a-z 0-9 . _ : -
bool IsKey(std::string_view text);

struct JobRequest {
  std::string path;             // "/v1/jobs"
  std::string key;              // one by IsKey
  std::string body;             // JSON
  std::chrono::seconds wait{};  // in all
};

enum class Asked {
  kConfirmed,  // its effect is there, once
  kFailed,     // rejected, expired or cancelled: it has no effect, for good
  kRefused,    // no such job is taken: nothing was done by this call
  kAway,       // no door took it in time: nothing was done by this call
  kUnknown,    // it may have been done: ask again with the same key
};
// Only kConfirmed and kFailed tell what became of a key that was sent before this call.

// The code of a problem: the key has a job already, that came with another body.
inline constexpr std::string_view kKeyReused = "key_reused";

// Moving JSON throws nothing, which its assertions hide.
// NOLINTNEXTLINE(bugprone-exception-escape)
struct JobOutcome {
  Asked asked = Asked::kAway;
  Json job;           // as the door has it; null where it did not tell
  Json problem;       // what the door told instead of a job; null for none
  std::string cause;  // of an answer that did not come
};

// Throws Failure as Ask does, as long as no request may have reached the door; behind one that may
// have, the failure is the cause of an outcome that is not known. Nor is it known behind
// std::bad_alloc. A signal that interrupt.h notes ends it early.
JobOutcome AskForJob(const DoorAddress& address, const JobRequest& request);

// One request and its JSON: of what changes nothing asked again until the time is over. Null, with
// the cause, where none came; *is_lost when what was asked for may have been done all the same.
struct DoorReply {
  int status = 0;
  Json body;
  std::string cause;
  bool is_lost = false;
};
DoorReply AskDoor(const DoorAddress& address, HttpRequest request, std::chrono::seconds wait);

// The text of a problem, or of its absence; and the last word of a job's history.
std::string ProblemText(const Json& problem, const std::string& cause);
std::string LastWhy(const Json& job);
// A member that is a text; empty where it is none.
std::string TextOf(const Json& json, const char* name);

}  // namespace lorimat::console
