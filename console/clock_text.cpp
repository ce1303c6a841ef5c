#include "clock_text.h"

#include <chrono>

namespace {

// The number that the digits of this part of the text make; nothing when it holds others.
std::optional<int> digits(std::string_view text, size_t at, size_t count) {
  int number = 0;
  for (const char c : text.substr(at, count)) {
    if (c < '0' || c > '9') return std::nullopt;
    number = number * 10 + (c - '0');
  }
  return number;
}

}  // namespace

std::optional<std::tm> parse_clock(std::string_view text) {
  if (text.size() != 16 || text[4] != '-' || text[7] != '-' || text[10] != ' ' || text[13] != ':') {
    return std::nullopt;
  }
  const auto year = digits(text, 0, 4);
  const auto month = digits(text, 5, 2);
  const auto day = digits(text, 8, 2);
  const auto hour = digits(text, 11, 2);
  const auto minute = digits(text, 14, 2);
  if (!year || !month || !day || !hour || !minute || *hour > 23 || *minute > 59) {
    return std::nullopt;
  }
  const std::chrono::year_month_day date(std::chrono::year(*year),
                                         std::chrono::month(static_cast<unsigned>(*month)),
                                         std::chrono::day(static_cast<unsigned>(*day)));
  if (!date.ok()) return std::nullopt;
  const std::chrono::sys_days days(date);
  std::tm time = {};
  time.tm_year = *year - 1900;
  time.tm_mon = *month - 1;
  time.tm_mday = *day;
  time.tm_hour = *hour;
  time.tm_min = *minute;
  time.tm_wday = static_cast<int>(std::chrono::weekday(days).c_encoding());
  time.tm_yday = static_cast<int>(
      (days - std::chrono::sys_days(date.year() / std::chrono::January / 1)).count());
  time.tm_isdst = -1;
  return time;
}
