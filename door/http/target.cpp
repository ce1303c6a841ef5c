#include "door/http/target.h"

#include <algorithm>
#include <charconv>

#include "door/access/origin.h"

namespace lorimat::door {
namespace {

std::optional<std::string> Unescaped(std::string_view text) {
  std::string plain;
  for (size_t i = 0; i < text.size(); ++i) {
    if (text[i] != '%') {
      plain += text[i];
      continue;
    }
    unsigned value = 0;
    if (i + 2 >= text.size()) return std::nullopt;
    const char* begin = text.data() + i + 1;
    const auto [end, error] = std::from_chars(begin, begin + 2, value, 16);
    if (error != std::errc() || end != begin + 2) return std::nullopt;
    plain += static_cast<char>(value);
    i += 2;
  }
  return plain;
}

std::vector<std::string_view> Split(std::string_view text, char separator) {
  std::vector<std::string_view> parts;
  for (;;) {
    const size_t end = text.find(separator);
    parts.push_back(text.substr(0, end));
    if (end == text.npos) return parts;
    text.remove_prefix(end + 1);
  }
}

}  // namespace

std::optional<AddressTarget> ReadAddressTarget(std::string_view text) {
  constexpr std::string_view kBehindScheme = "://";
  const size_t end = text.find(kBehindScheme);
  if (end == text.npos) return std::nullopt;
  AddressTarget address;
  address.scheme = SmallLetters(text.substr(0, end));
  if (address.scheme != "http" && address.scheme != "https") return std::nullopt;
  text.remove_prefix(end + kBehindScheme.size());
  const size_t path = std::min(text.find_first_of("/?"), text.size());
  address.authority = text.substr(0, path);
  text.remove_prefix(path);
  if (text.empty() || text.front() != '/') address.target = '/';
  address.target += text;
  return address;
}

std::optional<Target> ReadTarget(std::string_view text) {
  if (text.empty() || text.front() != '/') return std::nullopt;
  Target target;
  const size_t mark = text.find('?');
  for (const std::string_view part :
       Split(text.substr(1, mark == text.npos ? mark : mark - 1), '/')) {
    std::optional<std::string> segment = Unescaped(part);
    if (!segment) return std::nullopt;
    target.segments.push_back(std::move(*segment));
  }
  if (mark == text.npos || mark + 1 == text.size()) return target;
  for (const std::string_view pair : Split(text.substr(mark + 1), '&')) {
    const size_t equals = pair.find('=');
    std::optional<std::string> name = Unescaped(pair.substr(0, equals));
    std::optional<std::string> value =
        Unescaped(equals == pair.npos ? std::string_view() : pair.substr(equals + 1));
    if (!name || !value || !target.query.emplace(*name, *value).second) return std::nullopt;
  }
  return target;
}

std::optional<int64_t> ReadCount(std::string_view text) {
  constexpr size_t kMostDigits = 18;
  if (text.empty() || text.size() > kMostDigits ||
      !std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; })) {
    return std::nullopt;
  }
  int64_t value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

}  // namespace lorimat::door
