#include "console/remote/job_request.h"

#include <fmt/format.h>
#include <poll.h>

#include <algorithm>
#include <iterator>
#include <string_view>

#include "console/message/failure.h"
#include "console/terminal/interrupt.h"

namespace lorimat::console {
namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;
using std::chrono::seconds;

constexpr milliseconds kFirstPause{100};
constexpr milliseconds kLongestPause{5000};
constexpr seconds kLongestWait{30};  // that one request waits for an outcome
constexpr seconds kAnswerTime{20};   // beside that

// What the door tells ahead of taking a job, and which passes.
constexpr std::string_view kNotNow[] = {"queue_full", "too_many_requests", "document_open",
                                        "device_away", "device_busy"};
constexpr std::string_view kFinal[] = {"rejected", "expired", "cancelled"};

template <typename Rows>
bool Has(const Rows& rows, const std::string& text) {
  return std::find(std::begin(rows), std::end(rows), text) != std::end(rows);
}

seconds Left(Clock::time_point end) {
  return std::max(std::chrono::duration_cast<seconds>(end - Clock::now()), seconds(0));
}

// Grows from pause to pause; what the door asks for counts, but nothing behind the end.
class Pauses {
 public:
  explicit Pauses(Clock::time_point end) : end_(end) {}
  bool IsOver() const { return interrupted != 0 || Clock::now() >= end_; }
  void Take(seconds asked) {
    pause_ = std::min(pause_ * 2, kLongestPause);
    const auto left = std::chrono::duration_cast<milliseconds>(end_ - Clock::now());
    const milliseconds time = std::min(std::max<milliseconds>(asked, pause_), left);
    // A signal ends it.
    if (time.count() > 0) poll(nullptr, 0, static_cast<int>(time.count()));
  }

 private:
  Clock::time_point end_;
  milliseconds pause_ = kFirstPause / 2;
};

// Null for what is no object.
Json ObjectOf(const std::string& text) {
  Json json = Json::parse(text, nullptr, false);
  return json.is_object() ? json : Json();
}

// *is_lost: from the first request on that may have reached the door, only a final answer tells.
JobOutcome AskUntilKnown(const DoorAddress& address, const JobRequest& request, bool* is_lost) {
  const Clock::time_point end = Clock::now() + request.wait;
  Pauses pauses(end);
  JobOutcome outcome;
  for (;;) {
    const seconds wait = std::min(Left(end), kLongestWait);
    const HttpAnswer answer =
        Ask(address, {"POST",
                      fmt::format("{}?wait={}", request.path, wait.count()),
                      {"Content-Type: application/json", "Idempotency-Key: " + request.key},
                      request.body,
                      wait + kAnswerTime});
    const Json body = ObjectOf(answer.body);
    const std::string state = TextOf(body, "state");
    outcome.cause = answer.cause;
    outcome.problem = Json();
    if (answer.status == 0) {
      *is_lost = *is_lost || answer.is_sent;
    } else if (!state.empty()) {
      *is_lost = true;
      outcome.job = body;
      if (state == "confirmed" || Has(kFinal, state) || state == "needs_operator") {
        outcome.asked = state == "confirmed"        ? Asked::kConfirmed
                        : state == "needs_operator" ? Asked::kUnknown
                                                    : Asked::kFailed;
        return outcome;
      }
    } else {
      outcome.problem = body;
      outcome.cause = fmt::format("HTTP {}", answer.status);
      const std::string code = TextOf(body, "code");
      const bool passes = Has(kNotNow, code) || answer.status == 429;
      const bool is_refusal = (answer.status >= 400 && answer.status < 500) || answer.status == 501;
      if (!passes && is_refusal) {
        outcome.asked = *is_lost || code == kKeyReused ? Asked::kUnknown : Asked::kRefused;
        return outcome;
      }
      // What failed may have done so behind the acceptance.
      *is_lost = *is_lost || !passes;
    }
    if (pauses.IsOver()) {
      outcome.asked = *is_lost ? Asked::kUnknown : Asked::kAway;
      return outcome;
    }
    pauses.Take(answer.retry_after);
  }
}

}  // namespace

bool IsKey(std::string_view text) {
  constexpr size_t kLongest = 64;
  return !text.empty() && text.size() <= kLongest &&
         std::all_of(text.begin(), text.end(), [](char c) {
           return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                  std::string_view("._:-").find(c) != std::string_view::npos;
         });
}

JobOutcome AskForJob(const DoorAddress& address, const JobRequest& request) {
  bool is_lost = false;
  JobOutcome unknown;
  unknown.asked = Asked::kUnknown;
  try {
    return AskUntilKnown(address, request, &is_lost);
  } catch (const Failure& failure) {
    if (!is_lost) throw;
    unknown.cause = failure.what();
  }
  return unknown;
}

DoorReply AskDoor(const DoorAddress& address, HttpRequest request, seconds wait) {
  Pauses pauses(Clock::now() + wait);
  const bool is_safe = request.method == "GET";
  if (!is_safe) request.heads.emplace_back("Content-Type: application/json");
  request.timeout = kAnswerTime;
  for (;;) {
    const HttpAnswer answer = Ask(address, request);
    DoorReply reply{answer.status, ObjectOf(answer.body), answer.cause, false};
    if (answer.status != 0 && reply.body.is_null()) {
      reply.cause = fmt::format("HTTP {}", answer.status);
    }
    const bool passes = answer.status == 0 || answer.status == 429 || answer.status == 503;
    reply.is_lost = !is_safe && (answer.status == 0 ? answer.is_sent : answer.status >= 500);
    if (!passes || reply.is_lost || pauses.IsOver()) return reply;
    pauses.Take(answer.retry_after);
  }
}

std::string TextOf(const Json& json, const char* name) {
  if (!json.is_object()) return {};
  const auto member = json.find(name);
  return member != json.end() && member->is_string() ? member->get<std::string>() : std::string();
}

std::string ProblemText(const Json& problem, const std::string& cause) {
  const std::string code = TextOf(problem, "code");
  if (code.empty()) return cause;
  std::string text = code;
  const std::string detail = TextOf(problem, "detail");
  const std::string pointer = TextOf(problem, "pointer");
  if (!detail.empty()) text += ": " + detail;
  if (!pointer.empty()) text += " (" + pointer + ")";
  return text;
}

std::string LastWhy(const Json& job) {
  if (!job.is_object()) return {};
  const auto history = job.find("history");
  if (history == job.end() || !history->is_array() || history->empty()) return {};
  return TextOf(history->back(), "why");
}

}  // namespace lorimat::console
