#include "door/log/iso_time.h"

#include <fmt/format.h>

#include <chrono>
#include <cstdlib>

namespace lorimat::door {
namespace {

std::string Text(const std::tm& time) {
  const long offset = time.tm_gmtoff / 60;
  const long distance = std::labs(offset);
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}:{:02}{}{:02}:{:02}", time.tm_year + 1900,
                     time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec,
                     offset < 0 ? '-' : '+', distance / 60, distance % 60);
}

// The digits that a text begins with, which are taken from it.
std::optional<int> TakeNumber(std::string_view* text, size_t digits) {
  if (text->size() < digits) return std::nullopt;
  int value = 0;
  for (const char c : text->substr(0, digits)) {
    if (c < '0' || c > '9') return std::nullopt;
    value = 10 * value + (c - '0');
  }
  text->remove_prefix(digits);
  return value;
}

bool Take(std::string_view* text, char sign) {
  if (text->empty() || text->front() != sign) return false;
  text->remove_prefix(1);
  return true;
}

// Two numbers with a sign between them, "18:03".
bool TakePair(std::string_view* text, char sign, int most, int* first, int* second) {
  const std::optional<int> one = TakeNumber(text, 2);
  if (!one || !Take(text, sign)) return false;
  const std::optional<int> other = TakeNumber(text, 2);
  *first = *one;
  *second = other.value_or(-1);
  return other && *one <= most && *other <= 59;
}

int64_t AsNumber(const std::tm& time) {
  int64_t number = time.tm_year + 1900;
  for (const int part : {time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec}) {
    number = number * 100 + part;
  }
  return number;
}

// Minutes from UTC; false for what is none.
bool ReadDistance(std::string_view text, int* minutes) {
  if (text == "Z") return true;
  const bool is_west = Take(&text, '-');
  int hours = 0;
  int rest = 0;
  if ((!is_west && !Take(&text, '+')) || !TakePair(&text, ':', 23, &hours, &rest)) return false;
  *minutes = (is_west ? -1 : 1) * (60 * hours + rest);
  return text.empty();
}

}  // namespace

std::optional<int64_t> ReadIsoTime(std::string_view text, bool to_end) {
  const std::optional<int> year = TakeNumber(&text, 4);
  int month = 0;
  int day = 0;
  if (!year || *year < 1970 || !Take(&text, '-') || !TakePair(&text, '-', 12, &month, &day) ||
      !(std::chrono::year(*year) / month / day).ok()) {
    return std::nullopt;
  }
  std::tm time{};
  time.tm_year = *year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  if (text.empty()) {
    time.tm_hour = to_end ? 23 : 0;
    time.tm_min = time.tm_sec = to_end ? 59 : 0;
    return AsNumber(time);
  }
  if (!Take(&text, 'T') || !TakePair(&text, ':', 23, &time.tm_hour, &time.tm_min)) {
    return std::nullopt;
  }
  if (to_end) time.tm_sec = 59;
  if (Take(&text, ':')) {
    const std::optional<int> second = TakeNumber(&text, 2);
    if (!second || *second > 59) return std::nullopt;
    time.tm_sec = *second;
  }
  if (text.empty()) return AsNumber(time);
  int minutes = 0;
  if (!ReadDistance(text, &minutes)) return std::nullopt;
  const std::time_t instant = timegm(&time) - std::time_t{60} * minutes;
  std::tm local{};
  if (instant < 0 || localtime_r(&instant, &local) == nullptr) return std::nullopt;
  return AsNumber(local);
}

std::string IsoTime(std::tm local) {
  // The hour that comes twice in autumn is taken as the system likes.
  std::tm known = local;
  known.tm_isdst = -1;
  std::mktime(&known);
  local.tm_gmtoff = known.tm_gmtoff;
  return Text(local);
}

std::string IsoTime(int64_t milliseconds) {
  const auto seconds = static_cast<std::time_t>(milliseconds / 1000);
  std::tm time{};
  localtime_r(&seconds, &time);
  return Text(time);
}

}  // namespace lorimat::door
