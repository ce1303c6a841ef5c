#include "pal/calendar.h"

#include <gtest/gtest.h>

namespace {

TEST(CalendarTest, LeapYearsFollowTheGregorianRule) {
  EXPECT_TRUE(Calendar::IsLeapYear(2024));
  EXPECT_FALSE(Calendar::IsLeapYear(2023));
  EXPECT_FALSE(Calendar::IsLeapYear(1900));
  EXPECT_TRUE(Calendar::IsLeapYear(2000));
  EXPECT_FALSE(Calendar::IsLeapYear(2100));
  EXPECT_TRUE(Calendar::IsLeapYear(0));
}

TEST(CalendarTest, EveryMonthEndsWhereItDoes) {
  const unsigned int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (unsigned int month = 0; month < 12; ++month) {
    EXPECT_TRUE(Calendar::CheckDate(0, month, 2023)) << month;
    EXPECT_TRUE(Calendar::CheckDate(lengths[month] - 1, month, 2023)) << month;
    EXPECT_FALSE(Calendar::CheckDate(lengths[month], month, 2023)) << month;
  }
}

TEST(CalendarTest, FebruaryHas29DaysInALeapYear) {
  EXPECT_TRUE(Calendar::CheckDate(28, 1, 2024));
  EXPECT_FALSE(Calendar::CheckDate(29, 1, 2024));
  EXPECT_FALSE(Calendar::CheckDate(28, 1, 1900));
  EXPECT_TRUE(Calendar::CheckDate(28, 1, 2000));
}

TEST(CalendarTest, RefusesMonthsAndDaysOutsideTheYear) {
  EXPECT_FALSE(Calendar::CheckDate(0, 12, 2023));
  EXPECT_FALSE(Calendar::CheckDate(0, ~0U, 2023));
  EXPECT_FALSE(Calendar::CheckDate(~0U, 0, 2023));  // day -1
}

}  // namespace
