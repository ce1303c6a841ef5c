// The clock and the arithmetic of broken-down times. A tm is UTC unless an operation says
// local. There is no state but the time zone's name, which nothing converts by.
#pragma once

#include <cstdint>
#include <ctime>

class DateTime {
 public:
  enum TimeZone { kGMT_P00 = 0, kGMT_P01 = 1, kGMT_P02 = 2 };

  // When the library was built; true if that could be read. With date_only the time's fields
  // are not touched.
  static bool GetBuildDateTime(struct tm* time, bool date_only);

  // The clock; false if it cannot be read.
  static bool GetCurrentDateTime(struct tm* time);
  static bool GetLocalDateTime(struct tm* time);

  // The clock is the operating system's: it is not set from here. Always false.
  static bool SetCurrentDateTime(const struct tm* time);
  // Always 0, the system's own.
  static int GetSystemClockSource();

  // BCD date and time: a digit in each half byte, from the top 00 YY YY MM DD hh mm ss, the
  // month from 1, the year in full.
  static uint64_t GetCurrentBCDDateTime();
  // Each field gives its lowest digits (four for the year); nothing is checked. Always true.
  static bool ToBCDDateTime(const struct tm* time, uint64_t& bcd);
  // tm_wday, tm_yday and tm_isdst stay as they were; nothing is checked. Always true.
  static bool FromBCDDateTime(const uint64_t& bcd, struct tm* time);

  // The epoch, 1970-01-01 00:00:00, a Thursday, with tm_isdst -1. Always true.
  static bool GetDefaultDateTime(struct tm* time);

  // Whether the fields make a date and time from 1900 on; seconds end at 59. February goes by
  // tm_year, the years since 1900: a leap year is one whose tm_year divides by 4 and not by
  // 100, so 2000 is none, and every day of February 2000 and 2400 is refused. That is meant.
  static bool CheckDateTime(const struct tm* time);

  // UTC to local time, by pal::timegm, and local time to UTC. False, with *time unchanged,
  // where there is no such time.
  static bool ToLocalDateTime(struct tm* time);
  static bool FromLocalDateTime(struct tm* time);

  // Difference a - b of the first field that differs, from the year down to the second or to
  // the day; 0 when none does.
  static int CompareDateTime(const struct tm* a, const struct tm* b);
  static int CompareOnlyDate(const struct tm* a, const struct tm* b);
  // Days between two moments, each counted in whole UTC days; the broken-down ones are local
  // times. Two times of one local day differ by 1 where midnight UTC lies between them.
  static int CompareDate(const struct tm* a, const struct tm* b);
  static int CompareDate(time_t a, time_t b);
  // Difference a - b in seconds of the day.
  static int CompareTime(const struct tm* a, const struct tm* b);

  // Add the seconds since the epoch of another time, or a number of them. False, with *time
  // unchanged, where the sum has no broken-down form.
  static bool AddDateTime(struct tm* time, const struct tm* added);
  static bool AddSeconds(struct tm* time, int seconds);
  // Does nothing; always true.
  static bool AddLocalSeconds(struct tm* time, int seconds);

  // Parts of a device's clock that an operating system's lacks: they do nothing and are
  // always true.
  static bool ClockIsRunning();
  static bool CheckBattery();
  static bool Open();
  static bool Close();
  static bool SetCalendarAlarm(const struct tm* time, uint32_t options);

  // Milliseconds of the real-time clock, the low 32 bits; 0 if it cannot be read. In spite of
  // the name it wraps every 49.7 days, which is no whole number of seconds, and jumps when the
  // clock is set.
  static uint32_t GetUptime_ms();
  // The millisecond of the current second, 0 to 999; 0 if the real-time clock cannot be read.
  static unsigned GetMillisecond();

  // The device's zone, kept for those who ask; no conversion looks at it.
  static TimeZone GetTimeZone();
  static void SetTimeZone(TimeZone time_zone);

  static TimeZone time_zone_;  // kGMT_P01 at the start
};
