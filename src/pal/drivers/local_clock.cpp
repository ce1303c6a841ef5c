#include "pal/drivers/local_clock.h"

#include <cstdlib>
#include <cstring>

#include "pal/drivers/clock.h"

bool LocalClock::IsZone(const char* zone) const {
  if (zone == nullptr || !has_zone_) return zone == nullptr && !has_zone_;
  return std::strcmp(zone, zone_) == 0;
}

// One that is too long to be kept is never known again.
void LocalClock::KeepZone(const char* zone) {
  has_zone_ = zone != nullptr;
  const size_t length = has_zone_ ? std::strlen(zone) : 0;
  known_ = length <= kLongestZone;
  if (known_ && has_zone_) std::memcpy(zone_, zone, length + 1);
}

const struct tm* LocalClock::Now() {
  const time_t second = std::time(nullptr);
  const char* const zone = std::getenv("TZ");
  if (known_ && second == second_ && IsZone(zone)) return &time_;
  known_ = false;
  time_ = {};
  text_length_ = 0;
  if (second == -1 || !pal::BreakDownLocal(second, &time_)) return nullptr;
  second_ = second;
  KeepZone(zone);
  return &time_;
}

const char* LocalClock::NowText(size_t* length) {
  Now();
  if (text_length_ == 0) Print();
  *length = text_length_;
  return text_;
}

void LocalClock::Print() {
  text_length_ = std::strftime(text_, sizeof text_, "%Y-%m-%d %H:%M:%S", &time_);
  text_[text_length_] = 0;
}
