// The local time of now for those who ask for it often.
#pragma once

#include <cstddef>
#include <ctime>

// Gives what DateTime::GetLocalDateTime gives, and breaks the time down anew only where the second
// or the environment's zone has changed: to look for the zone costs calls of the system. A zone
// whose file is replaced is seen in the next second. Not for two threads at a time.
class LocalClock {
 public:
  // "2026-11-16 05:31:04": with a year of four digits 19 characters, and never more than 47.
  static constexpr size_t kTextSize = 48;

  // Null where the clock fails. The result stays until the next call.
  const struct tm* Now();
  // The same as a text by "%Y-%m-%d %H:%M:%S"; that of a clock that fails shows a time of zeros.
  // Its length is below kTextSize.
  const char* NowText(size_t* length);

 private:
  static constexpr size_t kLongestZone = 63;

  void Print();
  bool IsZone(const char* zone) const;
  void KeepZone(const char* zone);

  bool known_ = false;  // whether the second is the one broken down, in the zone kept
  bool has_zone_ = false;
  time_t second_ = 0;
  struct tm time_ = {};
  size_t text_length_ = 0;
  char text_[kTextSize] = {};
  char zone_[kLongestZone + 1] = {};
};
