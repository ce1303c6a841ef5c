#include "door/access/origin.h"

#include <algorithm>

namespace lorimat::door {
namespace {

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

struct Scheme {
  std::string_view begin;
  std::string_view port;
};
constexpr Scheme kSchemes[] = {{"http://", "80"}, {"https://", "443"}};

bool IsPort(std::string_view text) {
  constexpr size_t kMostDigits = 5;
  constexpr int kLast = 65535;
  if (text.empty() || text.size() > kMostDigits || text.front() == '0' ||
      !std::all_of(text.begin(), text.end(), IsDigit)) {
    return false;
  }
  int port = 0;
  for (const char digit : text) port = 10 * port + (digit - '0');
  return port <= kLast;
}

}  // namespace

std::string SmallLetters(std::string_view text) {
  std::string small(text);
  std::transform(small.begin(), small.end(), small.begin(),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  return small;
}

bool IsHostName(std::string_view name) {
  constexpr size_t kLongest = 253;
  if (name.empty() || name.size() > kLongest) return false;
  if (name.front() == '[') {
    constexpr size_t kShortest = 4;  // "[::]"
    return name.size() >= kShortest && name.back() == ']' &&
           name.substr(1, name.size() - 2).find_first_not_of("0123456789abcdefABCDEF:.") ==
               name.npos;
  }
  return name.front() != '.' && name.front() != '-' &&
         std::all_of(name.begin(), name.end(), [](char c) {
           return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || IsDigit(c) || c == '-' ||
                  c == '.';
         });
}

bool IsOrigin(std::string_view origin) {
  for (const Scheme& scheme : kSchemes) {
    if (!origin.starts_with(scheme.begin)) continue;
    origin.remove_prefix(scheme.begin.size());
    const size_t bracket = origin.find(']');
    const size_t colon = origin.find(':', bracket == origin.npos ? 0 : bracket);
    const std::string_view host = origin.substr(0, colon);
    if (!IsHostName(host) || SmallLetters(host) != host) return false;
    if (colon == origin.npos) return true;
    const std::string_view port = origin.substr(colon + 1);
    return IsPort(port) && port != scheme.port;
  }
  return false;
}

}  // namespace lorimat::door
