#include "register/desk/day_notice.h"

#include <fmt/format.h>

#include "register/value/device_clock.h"
#include "register/value/row_encoding.h"

namespace lorimat {
namespace {

constexpr int64_t kSecondsOfADay = 86400;
constexpr int64_t kTimeOfDay = 1'000'000;  // the part of a number of a time that is no date

int64_t DateOf(const std::tm& time) { return TimeNumber(time) / kTimeOfDay * kTimeOfDay; }

std::tm Noon(std::tm time) {
  time.tm_hour = 12;
  time.tm_min = 0;
  time.tm_sec = 0;
  return time;
}

void Append(const std::string& sentence, std::string* text) {
  if (!text->empty()) *text += ' ';
  *text += sentence;
}

}  // namespace

std::string DateText(int64_t time) {
  const std::tm date = NumberTime(time);
  return fmt::format("{:02}/{:02}/{:04}", date.tm_mday, date.tm_mon + 1, 1900 + date.tm_year);
}

std::optional<IdleDates> DatesBetween(const std::tm& earlier, const std::tm& later) {
  const IdleDates dates = {DateOf(LaterBy(Noon(earlier), kSecondsOfADay)),
                           DateOf(LaterBy(Noon(later), -kSecondsOfADay))};
  return dates.from <= dates.to ? std::optional<IdleDates>(dates) : std::nullopt;
}

std::optional<IdleDates> IdleBefore(const RegisterStore& store, const std::tm& now) {
  const int64_t closed = store.last_closure_time();
  if (closed == 0) return std::nullopt;
  const int64_t first = store.first_of_day_time();
  return DatesBetween(NumberTime(closed), first != 0 ? NumberTime(first) : now);
}

std::optional<IdleDates> IdleAheadOf(const RegisterStore& store, const Closure& closure) {
  const std::vector<Closure> ahead = store.FindClosures(closure.number - 1, closure.number - 1);
  if (ahead.empty()) return std::nullopt;
  const std::optional<int64_t> first = store.FirstTimeOf(closure.number);
  return DatesBetween(ahead.front().time, first ? NumberTime(*first) : closure.time);
}

DayNotice FindLimits(const RegisterStore& store) {
  DayNotice notice;
  const auto left = [](int used) {
    return used < RegisterStore::kToldAhead ? std::nullopt
                                            : std::optional<int>(RegisterStore::kLastNumber - used);
  };
  notice.documents_left = left(store.counters().documents);
  notice.closings_left = left(store.last_closure());
  return notice;
}

DayNotice FindDayNotice(const RegisterStore& store, const std::tm& now) {
  DayNotice notice = FindLimits(store);
  const int64_t first = store.first_of_day_time();
  if (first == 0) {
    notice.idle = IdleBefore(store, now);
  } else if (first / kTimeOfDay < TimeNumber(now) / kTimeOfDay) {
    notice.opened = first;
  }
  return notice;
}

std::string DayNoticeText(const DayNotice& notice) {
  std::string text;
  if (notice.opened) {
    Append(fmt::format("The day of {} is not closed.", DateText(*notice.opened)), &text);
  }
  if (notice.idle) {
    Append(fmt::format("Nothing registered from {} to {}.", DateText(notice.idle->from),
                       DateText(notice.idle->to)),
           &text);
  }
  if (notice.documents_left) {
    Append(fmt::format("Documents left in the day: {}.", *notice.documents_left), &text);
  }
  if (notice.closings_left) {
    Append(fmt::format("Closings left in the memory: {}.", *notice.closings_left), &text);
  }
  return text;
}

}  // namespace lorimat
