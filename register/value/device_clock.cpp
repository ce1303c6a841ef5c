#include "register/value/device_clock.h"

#include <chrono>

namespace lorimat {
namespace {

using std::chrono::days;
using std::chrono::months;
using std::chrono::seconds;
using std::chrono::sys_days;
using std::chrono::sys_seconds;

// Times that no calendar of this register has stay as they are: some ten thousand years.
constexpr int kLastYear = 9999 - 1900;
constexpr int64_t kFarthest = int64_t{86400} * 366 * 10000;

sys_seconds Point(const std::tm& time) {
  const std::chrono::year_month first = std::chrono::year{1900} / std::chrono::January +
                                        months{12 * int64_t{time.tm_year}} + months{time.tm_mon};
  return sys_days{first / 1} + days{int64_t{time.tm_mday} - 1} +
         seconds{3600 * int64_t{time.tm_hour} + 60 * int64_t{time.tm_min} + time.tm_sec};
}

}  // namespace

std::tm ComputerTime() {
  const std::time_t now = std::time(nullptr);
  std::tm local = {};
  tzset();  // localtime_r need not look at TZ again
  return localtime_r(&now, &local) != nullptr ? local : std::tm{};
}

int64_t SecondsBetween(const std::tm& from, const std::tm& to) {
  return (Point(to) - Point(from)).count();
}

std::tm LaterBy(const std::tm& time, int64_t by) {
  if (by == 0 || by > kFarthest || by < -kFarthest) return time;
  if (time.tm_year < 0 || time.tm_year > kLastYear) return time;
  const sys_seconds point = Point(time) + seconds{by};
  const sys_days day = std::chrono::floor<days>(point);
  const std::chrono::year_month_day date{day};
  const std::chrono::hh_mm_ss clock{point - day};
  std::tm later = time;
  later.tm_year = static_cast<int>(date.year()) - 1900;
  later.tm_mon = static_cast<int>(static_cast<unsigned>(date.month())) - 1;
  later.tm_mday = static_cast<int>(static_cast<unsigned>(date.day()));
  later.tm_hour = static_cast<int>(clock.hours().count());
  later.tm_min = static_cast<int>(clock.minutes().count());
  later.tm_sec = static_cast<int>(clock.seconds().count());
  later.tm_wday = static_cast<int>(std::chrono::weekday{day}.c_encoding());
  later.tm_yday =
      static_cast<int>((day - sys_days{date.year() / std::chrono::January / 1}).count());
  return later;
}

}  // namespace lorimat
