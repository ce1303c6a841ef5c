// What strftime prints, strptime reads back: every conversion that carries a whole field, over
// days of several centuries and every hour, minute and second.

#include <gtest/gtest.h>

#include <ctime>
#include <string>

#include "pal/strptime.h"

namespace {

struct tm Moment(int year, int month, int day, int hour, int minute, int second) {
  struct tm time = {};
  time.tm_year = year - 1900;
  time.tm_mon = month;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  return time;
}

// Prints a time, reads it into an empty one, and gives false when text is left over.
bool RoundTrip(const char* format, const struct tm& from, struct tm* to) {
  char text[128];
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wformat-nonliteral"
  if (std::strftime(text, sizeof text, format, &from) == 0) return false;
#pragma GCC diagnostic pop
  *to = {};
  const char* rest = pal::strptime(text, format, to);
  return rest != nullptr && *rest == 0;
}

TEST(StrptimeRoundTrip, DatesOfSeveralCenturies) {
  for (const char* format : {"%Y-%m-%d", "%d/%m/%Y", "%d %b %Y", "%B %d, %Y", "%Y%m%d"}) {
    for (int year = 1900; year <= 2199; ++year) {
      for (int month = 0; month < 12; ++month) {
        for (const int day : {1, 9, 10, 28}) {
          struct tm read;
          const struct tm written = Moment(year, month, day, 0, 0, 0);
          ASSERT_TRUE(RoundTrip(format, written, &read)) << format << ' ' << year << ' ' << month;
          ASSERT_EQ(read.tm_year, written.tm_year) << format;
          ASSERT_EQ(read.tm_mon, written.tm_mon) << format;
          ASSERT_EQ(read.tm_mday, written.tm_mday) << format;
        }
      }
    }
  }
}

TEST(StrptimeRoundTrip, YearsOfTwoDigitsReadFrom1969To2068) {
  for (int year = 1969; year <= 2068; ++year) {
    for (const char* format : {"%d-%m-%y", "%D", "%x"}) {
      struct tm read;
      ASSERT_TRUE(RoundTrip(format, Moment(year, 10, 24, 0, 0, 0), &read)) << format << year;
      ASSERT_EQ(read.tm_year, year - 1900) << format;
      ASSERT_EQ(read.tm_mon, 10);
      ASSERT_EQ(read.tm_mday, 24);
    }
  }
}

TEST(StrptimeRoundTrip, EverySecondOfADay) {
  for (const char* format : {"%H:%M:%S", "%T", "%X", "%I:%M:%S %p", "%r", "%H%M%S"}) {
    for (int second = 0; second < 24 * 60 * 60; second += 7) {
      const struct tm written = Moment(2024, 1, 29, second / 3600, second / 60 % 60, second % 60);
      struct tm read;
      ASSERT_TRUE(RoundTrip(format, written, &read)) << format << ' ' << second;
      ASSERT_EQ(read.tm_hour, written.tm_hour) << format << ' ' << second;
      ASSERT_EQ(read.tm_min, written.tm_min) << format << ' ' << second;
      ASSERT_EQ(read.tm_sec, written.tm_sec) << format << ' ' << second;
    }
  }
}

TEST(StrptimeRoundTrip, WeekdaysAndDaysOfTheYear) {
  for (int day = 0; day < 366; ++day) {
    struct tm written = Moment(2024, 0, 1, 0, 0, 0);
    written.tm_yday = day;
    written.tm_wday = day % 7;
    struct tm read;
    ASSERT_TRUE(RoundTrip("%a %j", written, &read)) << day;
    ASSERT_EQ(read.tm_yday, day);
    ASSERT_EQ(read.tm_wday, day % 7);
    ASSERT_TRUE(RoundTrip("%A %w", written, &read)) << day;
    ASSERT_EQ(read.tm_wday, day % 7);
  }
}

}  // namespace
