#include "register/value/device_clock.h"

#include <gtest/gtest.h>

namespace lorimat {
namespace {

// The eve of New Year's, a second before midnight.
std::tm LastSecondOf(int year) {
  std::tm time = {};
  time.tm_year = year - 1900;
  time.tm_mon = 11;
  time.tm_mday = 31;
  time.tm_hour = 23;
  time.tm_min = 59;
  time.tm_sec = 59;
  return time;
}

TEST(LaterByTest, TheYear9999IsTheLastThatGoesOn) {
  for (const int year : {1900, 2023, 9998, 9999}) {
    const std::tm later = LaterBy(LastSecondOf(year), 1);
    EXPECT_EQ(later.tm_year, year + 1 - 1900) << year;
    EXPECT_EQ(later.tm_mon, 0) << year;
    EXPECT_EQ(later.tm_mday, 1) << year;
    EXPECT_EQ(later.tm_sec, 0) << year;
  }
  for (const int year : {1899, 10000}) {
    const std::tm later = LaterBy(LastSecondOf(year), 1);
    EXPECT_EQ(later.tm_year, year - 1900);
    EXPECT_EQ(later.tm_sec, 59) << year;
  }
}

// Ten thousand years either way are as far as a clock is set.
TEST(LaterByTest, WhatIsFartherThanTenThousandYearsStays) {
  constexpr int64_t kFarthest = int64_t{86400} * 366 * 10000;
  const std::tm time = LastSecondOf(2023);
  for (const int64_t by : {kFarthest, -kFarthest}) {
    EXPECT_EQ(SecondsBetween(time, LaterBy(time, by)), by);
    EXPECT_EQ(SecondsBetween(time, LaterBy(time, by < 0 ? by - 1 : by + 1)), 0);
  }
}

}  // namespace
}  // namespace lorimat
