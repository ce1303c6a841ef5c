#include "console/device/clock_text.h"

#include <array>
#include <chrono>

namespace lorimat::console {
namespace {

// A letter stands for a digit of its number: year, month, day, hour, minute, second. '_' is a blank
// or a T, all else stands for itself.
constexpr std::string_view kLetters = "YMDhms";
constexpr std::string_view kDates[] = {"YYYY-MM-DD", "DD/MM/YYYY"};
constexpr std::string_view kTimes[] = {"", "_hh:mm", "_hh:mm:ss"};
constexpr std::string_view kPackedDates[] = {"DDMMYYYY"};
constexpr std::string_view kPackedTimes[] = {"", "hhmm", "hhmmss"};

using Numbers = std::array<int, kLetters.size()>;

// Reads what stands at the beginning of the text in this form.
bool ReadForm(std::string_view form, std::string_view text, Numbers* numbers) {
  if (text.size() < form.size()) return false;
  for (size_t i = 0; i < form.size(); ++i) {
    const char c = text[i];
    if (const size_t letter = kLetters.find(form[i]); letter != std::string_view::npos) {
      if (c < '0' || c > '9') return false;
      int& number = (*numbers)[letter];
      number = number * 10 + (c - '0');
    } else if (form[i] == '_' ? c != ' ' && c != 'T' : c != form[i]) {
      return false;
    }
  }
  return true;
}

std::optional<GivenDate> AsDate(const Numbers& numbers, bool has_time) {
  const auto [year, month, day, hour, minute, second] = numbers;
  if (hour > 23 || minute > 59 || second > 59) return std::nullopt;
  const std::chrono::year_month_day date(std::chrono::year{year},
                                         std::chrono::month(static_cast<unsigned>(month)),
                                         std::chrono::day(static_cast<unsigned>(day)));
  if (!date.ok()) return std::nullopt;
  const std::chrono::sys_days days(date);
  GivenDate given;
  given.has_time = has_time;
  given.time.tm_year = year - 1900;
  given.time.tm_mon = month - 1;
  given.time.tm_mday = day;
  given.time.tm_hour = hour;
  given.time.tm_min = minute;
  given.time.tm_sec = second;
  given.time.tm_wday = static_cast<int>(std::chrono::weekday(days).c_encoding());
  given.time.tm_yday = static_cast<int>(
      (days - std::chrono::sys_days(date.year() / std::chrono::January / 1)).count());
  given.time.tm_isdst = -1;
  return given;
}

template <size_t kDateForms, size_t kTimeForms>
std::optional<GivenDate> ReadForms(const std::string_view (&dates)[kDateForms],
                                   const std::string_view (&times)[kTimeForms],
                                   std::string_view text) {
  for (const std::string_view date : dates) {
    for (const std::string_view time : times) {
      Numbers numbers = {};
      if (text.size() == date.size() + time.size() && ReadForm(date, text, &numbers) &&
          ReadForm(time, text.substr(date.size()), &numbers)) {
        return AsDate(numbers, !time.empty());
      }
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<GivenDate> ParseDate(std::string_view text) {
  if (const auto given = ReadForms(kDates, kTimes, text)) return given;
  return ReadForms(kPackedDates, kPackedTimes, text);
}

}  // namespace lorimat::console
