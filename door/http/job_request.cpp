#include "door/http/job_request.h"

#include <fmt/format.h>

#include <algorithm>
#include <string_view>

#include "door/http/target.h"

namespace lorimat::door {
namespace {

constexpr size_t kLongestKey = 64;

bool IsKey(std::string_view key) {
  return !key.empty() && key.size() <= kLongestKey &&
         std::all_of(key.begin(), key.end(), [](char c) {
           return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') ||
                  c == '_' || c == '.' || c == ':' || c == '-';
         });
}

}  // namespace

Reply JobReply(int status, const Job& job, bool replayed) {
  Reply reply;
  reply.status = status;
  reply.body = JobJson(job, replayed);
  if (status == 409) reply.headers.emplace_back("Retry-After", "2");
  return reply;
}

std::optional<Reply> KeyProblem(const std::optional<std::string>& key) {
  if (!key) return Problem(400, "no_key", "the request needs the header Idempotency-Key");
  if (!IsKey(*key)) {
    return Problem(400, "bad_key", "the key is not 1 to 64 of A-Z a-z 0-9 . _ : -");
  }
  return std::nullopt;
}

std::optional<int> WaitOf(const std::map<std::string, std::string>& query) {
  const auto wait = query.find("wait");
  if (wait == query.end()) return Api::kDefaultWait;
  const std::optional<int64_t> seconds = ReadCount(wait->second);
  if (!seconds || *seconds > Api::kMostWait) return std::nullopt;
  return static_cast<int>(*seconds);
}

Reply WaitProblem() {
  return Problem(400, "bad_field",
                 fmt::format("wait: is no whole number of 0 to {}", Api::kMostWait));
}

}  // namespace lorimat::door
