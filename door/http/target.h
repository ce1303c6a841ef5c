// The target of a request: path and query.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace lorimat::door {

struct Target {
  std::vector<std::string> segments;         // "/v1/jobs/7": v1, jobs, 7
  std::map<std::string, std::string> query;  // each name once
};

// A target that is a whole address, "http://127.0.0.1:8577/v1/jobs?limit=1" (RFC 9112, 3.2.2).
struct AddressTarget {
  std::string scheme;     // "http" or "https", in small letters
  std::string authority;  // host and port, as they came
  std::string target;     // path and query: "/" where there is no path
};

// Nothing for any other target.
std::optional<AddressTarget> ReadAddressTarget(std::string_view text);

// Nothing for one that is no path with a query, has a bad escape, or a name twice.
std::optional<Target> ReadTarget(std::string_view text);

// A whole number without a sign, of at most 18 digits.
std::optional<int64_t> ReadCount(std::string_view text);

}  // namespace lorimat::door
