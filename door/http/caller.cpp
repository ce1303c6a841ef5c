// Who asks: the host that a request names, the page that it comes from, and whose token it has. And
// the route that it takes, for not everybody may take each.
#include <algorithm>
#include <utility>

#include "door/access/origin.h"
#include "door/http/api_path.h"
#include "door/http/api_route.h"
#include "door/http/target.h"

namespace lorimat::door {
namespace {

bool IsUnsafe(const std::string& method) {
  return method != "GET" && method != "HEAD" && method != "OPTIONS";
}

// Without its parameters and in small letters.
bool IsJson(const std::string& content_type) {
  std::string type = content_type.substr(0, content_type.find(';'));
  while (!type.empty() && type.back() == ' ') type.pop_back();
  return SmallLetters(type) == "application/json";
}

Reply NoToken(const std::string& detail) {
  Reply reply = Problem(401, "no_token", detail);
  reply.headers.emplace_back("WWW-Authenticate", "Bearer");
  return reply;
}

// What stands behind "Bearer"; nothing for another scheme.
std::optional<std::string_view> BearerOf(std::string_view text) {
  constexpr std::string_view kScheme = "bearer ";
  if (SmallLetters(text.substr(0, kScheme.size())) != kScheme) return std::nullopt;
  text.remove_prefix(kScheme.size());
  text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
  return text;
}

}  // namespace

Reply Preflight(const Request& request) {
  Reply reply;
  reply.status = 204;
  reply.headers = {{"Access-Control-Allow-Methods", "GET, POST, DELETE"},
                   {"Access-Control-Allow-Headers",
                    "Accept, Authorization, Content-Type, Idempotency-Key, Last-Event-ID"},
                   {"Access-Control-Max-Age", "600"}};
  if (request.asks_private_network) {
    reply.headers.emplace_back("Access-Control-Allow-Private-Network", "true");
  }
  return reply;
}

bool Api::IsAllowedOrigin(const Request& request) const {
  const auto& origins = parts_.access.origins;
  return request.origin &&
         std::find(origins.begin(), origins.end(), *request.origin) != origins.end();
}

void Api::AllowOrigin(const Request& request, Reply* reply) const {
  if (parts_.access.origins.empty()) return;
  reply->headers.emplace_back("Vary", "Origin");
  if (!IsAllowedOrigin(request)) return;
  reply->headers.emplace_back("Access-Control-Allow-Origin", *request.origin);
  reply->headers.emplace_back("Access-Control-Expose-Headers",
                              "Allow, Retry-After, WWW-Authenticate");
}

std::optional<Reply> Api::RefuseHead(const Request& request) const {
  const std::string host = SmallLetters(request.host);
  const bool is_ours =
      std::find(parts_.hosts.begin(), parts_.hosts.end(), host) != parts_.hosts.end() &&
      request.scheme.value_or(parts_.access.scheme) == parts_.access.scheme;
  if (!is_ours) return Problem(403, "foreign_host", "the request names another host");
  if (request.origin && !IsAllowedOrigin(request)) {
    const std::string begin = parts_.access.scheme + "://";
    const bool known =
        std::any_of(parts_.hosts.begin(), parts_.hosts.end(),
                    [&](const std::string& one) { return *request.origin == begin + one; });
    if (!known) return Problem(403, "foreign_origin", "the request comes from a foreign page");
  }
  if (request.preflight && request.method == "OPTIONS") return std::nullopt;
  std::optional<console::TokenHolder> caller;
  if (std::optional<Reply> refused = RefuseCaller(request, &caller)) return refused;
  if (IsUnsafe(request.method) && !IsJson(request.content_type)) {
    Path path;
    Reply problem;
    // Where no such request is taken, no content type would mend it.
    if (FindRoute(request, &path, &problem) == nullptr && problem.status != 400) return problem;
    return Problem(415, "not_json", "the request needs Content-Type: application/json");
  }
  return std::nullopt;
}

std::optional<Reply> Api::RefuseCaller(const Request& request,
                                       std::optional<console::TokenHolder>* caller) const {
  if (!parts_.access.find) return std::nullopt;
  if (request.authorization) {
    const std::optional<std::string_view> token = BearerOf(*request.authorization);
    if (token) *caller = parts_.access.find(*token);
    if (!*caller) return NoToken("the token is not known");
  }
  Path path;
  Reply problem;
  const Route* route = FindRoute(request, &path, &problem);
  Caller least = path.is_open ? Caller::kAnybody : Caller::kKnown;
  if (route != nullptr) least = route->caller;
  // A page of somewhere else is never taken for a program of this computer.
  const bool is_needed = parts_.access.needs_token || IsAllowedOrigin(request);
  if (!*caller && is_needed && least != Caller::kAnybody) {
    return NoToken("the request needs a token: Authorization: Bearer");
  }
  if (*caller && least == Caller::kOperator && (*caller)->role != console::TokenRole::kOperator) {
    return Problem(403, "not_allowed",
                   "the token is that of a desk; an operator alone may do this");
  }
  return std::nullopt;
}

std::optional<Reply> Api::RefuseDesk(const std::string& desk, const Path& path) {
  if (path.MaySee(desk)) return std::nullopt;
  return Problem(403, "foreign_desk", "desk: the token is that of another desk");
}

const Api::Route* Api::FindRoute(const Request& request, Path* path, Reply* problem) {
  const std::optional<Target> target = ReadTarget(request.target);
  if (!target) {
    *problem = Problem(400, "bad_target", "path and query cannot be read");
    return nullptr;
  }
  std::string allowed;
  for (const Route& route : Routes()) {
    size_t length = 0;
    int numbers = 0;
    bool fits = true;
    for (; length < route.segments.size() && route.segments[length] != nullptr; ++length) {
      if (length >= target->segments.size()) {
        fits = false;
        break;
      }
      const std::string& segment = target->segments[length];
      if (std::string_view(route.segments[length]) == "#") {
        const std::optional<int64_t> id = ReadCount(segment);
        fits = fits && id.has_value();
        (numbers++ == 0 ? path->id : path->number) = id.value_or(0);
      } else {
        fits = fits && segment == route.segments[length];
      }
      path->action = segment;
    }
    if (!fits || length != target->segments.size()) continue;
    path->is_open = path->is_open || route.caller == Caller::kAnybody;
    if (request.method != route.method) {
      allowed += allowed.empty() ? "" : ", ";
      allowed += route.method;
      continue;
    }
    path->query = target->query;
    for (const auto& [name, value] : path->query) {
      const bool known =
          std::any_of(route.query.begin(), route.query.end(),
                      [&name = name](const char* one) { return one != nullptr && name == one; });
      if (!known) {
        *problem =
            Problem(400, "unknown_field", "the query has a field that is not known: " + name);
        return nullptr;
      }
    }
    return &route;
  }
  if (allowed.empty()) {
    *problem = Problem(404, "not_found", "there is nothing of this name");
    return nullptr;
  }
  *problem = Problem(405, "wrong_method", "this takes " + allowed);
  problem->headers.emplace_back("Allow", allowed);
  return nullptr;
}

}  // namespace lorimat::door
