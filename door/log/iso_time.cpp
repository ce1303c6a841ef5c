#include "door/log/iso_time.h"

#include <fmt/format.h>

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

}  // namespace

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
