#include "door/http/accept.h"

#include <algorithm>
#include <optional>

namespace lorimat::door {
namespace {

constexpr int kWhole = 1000;  // thousandths

std::string_view Trimmed(std::string_view text) {
  while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) text.remove_prefix(1);
  while (!text.empty() && (text.back() == ' ' || text.back() == '\t')) text.remove_suffix(1);
  return text;
}

std::string_view TakePart(std::string_view* text, char separator) {
  const size_t end = text->find(separator);
  const std::string_view part = text->substr(0, end);
  text->remove_prefix(end == text->npos ? text->size() : end + 1);
  return Trimmed(part);
}

bool Same(std::string_view one, std::string_view other) {
  const auto small = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
  return one.size() == other.size() &&
         std::equal(one.begin(), one.end(), other.begin(),
                    [&](char a, char b) { return small(a) == small(b); });
}

// "0.5" as thousandths: 0 to 1, with three decimals at most.
std::optional<int> ReadQuality(std::string_view text) {
  if (text.empty() || text.size() > 5 || (text[0] != '0' && text[0] != '1')) return std::nullopt;
  if (text.size() > 1 && text[1] != '.') return std::nullopt;
  int value = text[0] - '0';
  for (size_t at = 2; at < 5; ++at) {
    const char digit = at < text.size() ? text[at] : '0';
    if (digit < '0' || digit > '9') return std::nullopt;
    value = 10 * value + (digit - '0');
  }
  return value <= kWhole ? std::optional(value) : std::nullopt;
}

// How closely a range names a type: 3 by its name, 2 by what stands ahead of the slash, 1 with all
// others; 0 not at all.
int Fit(std::string_view range, std::string_view type) {
  if (Same(range, type)) return 3;
  if (range == "*/*") return 1;
  const bool is_group = range.size() > 2 && range.substr(range.size() - 2) == "/*";
  const std::string_view group = range.substr(0, is_group ? range.size() - 1 : 0);
  return is_group && Same(group, type.substr(0, group.size())) ? 2 : 0;
}

struct Range {
  std::string_view type;
  int quality = kWhole;
};

std::vector<Range> ReadRanges(std::string_view accept) {
  std::vector<Range> ranges;
  while (!accept.empty()) {
    std::string_view part = TakePart(&accept, ',');
    Range range{TakePart(&part, ';')};
    bool good = !range.type.empty();
    while (!part.empty()) {
      const std::string_view parameter = TakePart(&part, ';');
      if (!Same(parameter.substr(0, 2), "q=")) continue;
      const std::optional<int> quality = ReadQuality(parameter.substr(2));
      good = good && quality;
      range.quality = quality.value_or(0);
    }
    if (good) ranges.push_back(range);
  }
  return ranges;
}

}  // namespace

std::string_view ChooseType(std::string_view accept, const std::vector<std::string_view>& types) {
  if (Trimmed(accept).empty()) return types.front();
  const std::vector<Range> ranges = ReadRanges(accept);
  std::string_view best;
  int best_quality = 0;
  for (const std::string_view type : types) {
    int fit = 0;
    int quality = 0;
    for (const Range& range : ranges) {
      const int one = Fit(range.type, type);
      if (one <= fit) continue;
      fit = one;
      quality = range.quality;
    }
    if (quality <= best_quality) continue;
    best = type;
    best_quality = quality;
  }
  return best;
}

}  // namespace lorimat::door
