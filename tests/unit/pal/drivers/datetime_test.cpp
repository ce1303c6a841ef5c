#include "pal/drivers/datetime.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>

#include "unit/pal/time_zone.h"

namespace {

struct tm At(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  struct tm time = {};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  time.tm_isdst = -1;
  return time;
}

void ExpectTime(const struct tm& time, int year, int month, int day, int hour, int minute,
                int second) {
  EXPECT_EQ(time.tm_year, year - 1900);
  EXPECT_EQ(time.tm_mon, month - 1);
  EXPECT_EQ(time.tm_mday, day);
  EXPECT_EQ(time.tm_hour, hour);
  EXPECT_EQ(time.tm_min, minute);
  EXPECT_EQ(time.tm_sec, second);
}

bool Same(const struct tm& a, const struct tm& b) { return std::memcmp(&a, &b, sizeof(a)) == 0; }

bool Valid(int year, int month, int day, int hour = 0, int minute = 0, int second = 0) {
  const struct tm time = At(year, month, day, hour, minute, second);
  return DateTime::CheckDateTime(&time);
}

TEST(DateTimeTest, BuildDateAndTime) {
  struct tm time = At(1900, 1, 1, -3, -3, -3);
  EXPECT_TRUE(DateTime::GetBuildDateTime(&time, true));
  EXPECT_GE(time.tm_year, 2024 - 1900);
  EXPECT_EQ(time.tm_hour, -3);
  EXPECT_EQ(time.tm_sec, -3);
  EXPECT_TRUE(DateTime::GetBuildDateTime(&time, false));
  EXPECT_TRUE(DateTime::CheckDateTime(&time));
}

TEST(DateTimeTest, CurrentTimeIsTheClocksInUtcAndLocal) {
  ScopedTimeZone zone(kItaly);
  const time_t before = std::time(nullptr);
  struct tm utc;
  struct tm local;
  ASSERT_TRUE(DateTime::GetCurrentDateTime(&utc));
  ASSERT_TRUE(DateTime::GetLocalDateTime(&local));
  const time_t after = std::time(nullptr);
  const time_t utc_moment = UtcSeconds(&utc);
  const time_t local_moment = std::mktime(&local);
  EXPECT_LE(before, utc_moment);
  EXPECT_LE(utc_moment, after);
  EXPECT_LE(before, local_moment);
  EXPECT_LE(local_moment, after);
}

TEST(DateTimeTest, CurrentBcdTimeIsTheClocksInUtc) {
  const time_t before = std::time(nullptr);
  const uint64_t bcd = DateTime::GetCurrentBCDDateTime();
  const time_t after = std::time(nullptr);
  struct tm time = {};
  EXPECT_TRUE(DateTime::FromBCDDateTime(bcd, &time));
  const time_t moment = UtcSeconds(&time);
  EXPECT_LE(before, moment);
  EXPECT_LE(moment, after);
}

TEST(DateTimeTest, UptimeIsTheRealTimeClocksMillisecond) {
  const auto before = static_cast<uint32_t>(static_cast<uint64_t>(std::time(nullptr)) * 1000);
  const uint32_t uptime = DateTime::GetUptime_ms();
  const auto after = static_cast<uint32_t>(static_cast<uint64_t>(std::time(nullptr)) * 1000);
  // Differences, because the value wraps. time() may lag by a tick.
  EXPECT_LE(uptime - before, after - before + 1100);
}

int64_t ClockMilliseconds() {
  struct timespec clock;
  EXPECT_EQ(clock_gettime(CLOCK_REALTIME, &clock), 0);
  return int64_t{clock.tv_sec} * 1000 + clock.tv_nsec / 1000000;
}

TEST(DateTimeTest, TheMillisecondIsThatOfTheSecond) {
  const int64_t before = ClockMilliseconds();
  const unsigned millisecond = DateTime::GetMillisecond();
  const int64_t after = ClockMilliseconds();
  EXPECT_LT(millisecond, 1000u);
  EXPECT_LE((millisecond + 1000 - before % 1000) % 1000, after - before);
}

TEST(DateTimeTest, DefaultIsTheEpoch) {
  struct tm time;
  std::memset(&time, 0x55, sizeof(time));
  DateTime::GetDefaultDateTime(&time);
  ExpectTime(time, 1970, 1, 1, 0, 0, 0);
  EXPECT_EQ(time.tm_wday, 4);
  EXPECT_EQ(time.tm_yday, 0);
  EXPECT_EQ(time.tm_isdst, -1);
}

TEST(DateTimeTest, WhatTheClockCannotDo) {
  struct tm time = At(2024, 1, 15);
  const struct tm before = time;
  EXPECT_FALSE(DateTime::SetCurrentDateTime(&time));
  EXPECT_EQ(DateTime::GetSystemClockSource(), 0);
  EXPECT_TRUE(DateTime::AddLocalSeconds(&time, 5));
  EXPECT_TRUE(Same(time, before));
  EXPECT_TRUE(DateTime::ClockIsRunning());
  EXPECT_TRUE(DateTime::CheckBattery());
  EXPECT_TRUE(DateTime::Close());
  EXPECT_TRUE(DateTime::Open());
  EXPECT_TRUE(DateTime::SetCalendarAlarm(&time, 0));
}

TEST(DateTimeTest, TimeZoneIsStoredAndNotUsed) {
  EXPECT_EQ(DateTime::GetTimeZone(), DateTime::kGMT_P01);
  DateTime::SetTimeZone(DateTime::kGMT_P02);
  EXPECT_EQ(DateTime::GetTimeZone(), DateTime::kGMT_P02);
  ScopedTimeZone zone(kUtc);
  struct tm time = At(2024, 1, 15, 12);
  EXPECT_TRUE(DateTime::ToLocalDateTime(&time));
  EXPECT_EQ(time.tm_hour, 12);
  DateTime::SetTimeZone(DateTime::kGMT_P01);
}

TEST(DateTimeTest, PacksBcd) {
  const struct tm time = At(2023, 12, 31, 13, 45, 7);
  uint64_t bcd = 0;
  EXPECT_TRUE(DateTime::ToBCDDateTime(&time, bcd));
  EXPECT_EQ(bcd, 0x0020231231134507u);
}

TEST(DateTimeTest, UnpacksBcdAndLeavesTheOtherFields) {
  struct tm time = {};
  time.tm_wday = 5;
  time.tm_yday = 77;
  time.tm_isdst = 1;
  EXPECT_TRUE(DateTime::FromBCDDateTime(0x0020231231134507u, &time));
  ExpectTime(time, 2023, 12, 31, 13, 45, 7);
  EXPECT_EQ(time.tm_wday, 5);
  EXPECT_EQ(time.tm_yday, 77);
  EXPECT_EQ(time.tm_isdst, 1);
}

TEST(DateTimeTest, BcdIsNotChecked) {
  struct tm time = {};
  EXPECT_TRUE(DateTime::FromBCDDateTime(~uint64_t{0}, &time));
  EXPECT_EQ(time.tm_sec, 165);  // 15 tens and 15
  EXPECT_EQ(time.tm_mon, 164);
  EXPECT_EQ(time.tm_year, 16665 - 1900);
  uint64_t bcd = 0;
  time = At(2023, 12, 31, 123, 45, 7);
  EXPECT_TRUE(DateTime::ToBCDDateTime(&time, bcd));
  EXPECT_EQ(bcd, 0x0020231231234507u);
  for (const int value : {INT_MIN, INT_MAX}) {
    time.tm_sec = time.tm_min = time.tm_hour = time.tm_mday = time.tm_mon = time.tm_year = value;
    EXPECT_TRUE(DateTime::ToBCDDateTime(&time, bcd));
    EXPECT_EQ(bcd >> 56, 0u);
  }
}

TEST(DateTimeTest, CheckOfTheTimeOfDay) {
  EXPECT_TRUE(Valid(2024, 1, 15, 0, 0, 0));
  EXPECT_TRUE(Valid(2024, 1, 15, 23, 59, 59));
  EXPECT_FALSE(Valid(2024, 1, 15, 24, 0, 0));
  EXPECT_FALSE(Valid(2024, 1, 15, 0, 60, 0));
  EXPECT_FALSE(Valid(2024, 1, 15, 0, 0, 60));
  EXPECT_FALSE(Valid(2024, 1, 15, -1, 0, 0));
  EXPECT_FALSE(Valid(2024, 1, 15, 0, -1, 0));
  EXPECT_FALSE(Valid(2024, 1, 15, 0, 0, -1));
}

TEST(DateTimeTest, CheckOfTheDate) {
  const int lengths[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  for (int month = 1; month <= 12; ++month) {
    EXPECT_TRUE(Valid(2023, month, 1)) << month;
    EXPECT_TRUE(Valid(2023, month, lengths[month - 1])) << month;
    EXPECT_FALSE(Valid(2023, month, lengths[month - 1] + 1)) << month;
    EXPECT_FALSE(Valid(2023, month, 0)) << month;
  }
  EXPECT_FALSE(Valid(2023, 0, 1));
  EXPECT_FALSE(Valid(2023, 13, 1));
  EXPECT_TRUE(Valid(1900, 1, 1));
  EXPECT_FALSE(Valid(1899, 12, 31));
}

TEST(DateTimeTest, CheckCountsLeapYearsFrom1900) {
  EXPECT_TRUE(Valid(2024, 2, 29));
  EXPECT_FALSE(Valid(2024, 2, 30));
  EXPECT_FALSE(Valid(2023, 2, 29));
  EXPECT_TRUE(Valid(2100, 2, 28));
  EXPECT_FALSE(Valid(2100, 2, 29));
  EXPECT_TRUE(Valid(1900, 2, 28));
  EXPECT_FALSE(Valid(1900, 2, 29));
  // Every February of a year that divides by 400 is refused, and only the February.
  EXPECT_FALSE(Valid(2000, 2, 1));
  EXPECT_FALSE(Valid(2000, 2, 29));
  EXPECT_FALSE(Valid(2400, 2, 1));
  EXPECT_TRUE(Valid(2000, 1, 31));
  EXPECT_TRUE(Valid(2000, 3, 1));
}

TEST(DateTimeTest, CheckOfFieldsAtTheirLimits) {
  for (const int value : {INT_MIN, INT_MAX}) {
    struct tm time = At(2024, 2, 1);
    time.tm_year = value;
    EXPECT_EQ(DateTime::CheckDateTime(&time), value > 0);
    time.tm_mday = value;
    EXPECT_FALSE(DateTime::CheckDateTime(&time));
    time.tm_mon = value;
    EXPECT_FALSE(DateTime::CheckDateTime(&time));
  }
}

TEST(DateTimeTest, UtcToLocal) {
  ScopedTimeZone zone(kItaly);
  struct tm time = At(2024, 1, 15, 12, 30, 5);
  EXPECT_TRUE(DateTime::ToLocalDateTime(&time));
  ExpectTime(time, 2024, 1, 15, 13, 30, 5);
  EXPECT_EQ(time.tm_isdst, 0);
  time = At(2024, 7, 15, 12, 30, 5);
  EXPECT_TRUE(DateTime::ToLocalDateTime(&time));
  ExpectTime(time, 2024, 7, 15, 14, 30, 5);
  EXPECT_EQ(time.tm_isdst, 1);
  // The first hour of a day comes out two hours early, as pal::timegm has it.
  time = At(2024, 1, 15, 0, 10, 0);
  EXPECT_TRUE(DateTime::ToLocalDateTime(&time));
  ExpectTime(time, 2024, 1, 14, 23, 10, 0);
}

TEST(DateTimeTest, LocalToUtc) {
  ScopedTimeZone zone(kItaly);
  struct tm time = At(2024, 7, 15, 12, 30, 5);
  EXPECT_TRUE(DateTime::FromLocalDateTime(&time));
  ExpectTime(time, 2024, 7, 15, 10, 30, 5);
  time = At(2024, 1, 15, 0, 30, 5);
  EXPECT_TRUE(DateTime::FromLocalDateTime(&time));
  ExpectTime(time, 2024, 1, 14, 23, 30, 5);
}

TEST(DateTimeTest, TheSecondBeforeTheEpochIsATime) {
  ScopedTimeZone zone(kUtc);
  struct tm time = At(1969, 12, 31, 23, 59, 59);
  EXPECT_TRUE(DateTime::FromLocalDateTime(&time));
  ExpectTime(time, 1969, 12, 31, 23, 59, 59);
}

TEST(DateTimeTest, ConversionsOfNoTimeLeaveIt) {
  ScopedTimeZone zone(kUtc);
  struct tm time = At(2024, 1, 1);
  time.tm_year = INT_MAX;
  time.tm_mon = 12;
  const struct tm before = time;
  EXPECT_FALSE(DateTime::FromLocalDateTime(&time));
  EXPECT_TRUE(Same(time, before));
}

TEST(DateTimeTest, ComparesTheFirstFieldThatDiffers) {
  const struct tm base = At(2024, 5, 10, 12, 30, 30);
  EXPECT_EQ(DateTime::CompareDateTime(&base, &base), 0);
  struct {
    struct tm other;
    int date_time;
    int only_date;
  } const rows[] = {{At(2021, 12, 31, 23, 59, 59), 3, 3}, {At(2024, 7, 1, 0, 0, 0), -2, -2},
                    {At(2024, 5, 6, 23, 59, 59), 4, 4},   {At(2024, 5, 10, 17, 0, 0), -5, 0},
                    {At(2024, 5, 10, 12, 24, 59), 6, 0},  {At(2024, 5, 10, 12, 30, 37), -7, 0}};
  for (const auto& row : rows) {
    EXPECT_EQ(DateTime::CompareDateTime(&base, &row.other), row.date_time);
    EXPECT_EQ(DateTime::CompareDateTime(&row.other, &base), -row.date_time);
    EXPECT_EQ(DateTime::CompareOnlyDate(&base, &row.other), row.only_date);
    EXPECT_EQ(DateTime::CompareOnlyDate(&row.other, &base), -row.only_date);
  }
}

TEST(DateTimeTest, ComparesDaysOfMoments) {
  EXPECT_EQ(DateTime::CompareDate(time_t{86400}, time_t{86399}), 1);
  EXPECT_EQ(DateTime::CompareDate(time_t{86399}, time_t{0}), 0);
  EXPECT_EQ(DateTime::CompareDate(time_t{0}, time_t{10 * 86400}), -10);
  // Truncated towards zero: the days around the epoch are one.
  EXPECT_EQ(DateTime::CompareDate(time_t{1}, time_t{-86399}), 0);
}

TEST(DateTimeTest, ComparesLocalDaysAtMidnightUtc) {
  ScopedTimeZone zone(kItaly);
  const struct tm before = At(2024, 1, 15, 0, 30, 0);  // 23:30 UTC of the 14th
  const struct tm after = At(2024, 1, 15, 1, 30, 0);
  const struct tm evening = At(2024, 1, 15, 23, 30, 0);
  EXPECT_EQ(DateTime::CompareDate(&after, &before), 1);
  EXPECT_EQ(DateTime::CompareDate(&before, &after), -1);
  EXPECT_EQ(DateTime::CompareDate(&evening, &after), 0);
}

TEST(DateTimeTest, ComparesTimesOfDay) {
  const struct tm a = At(2024, 1, 1, 13, 2, 3);
  const struct tm b = At(2030, 1, 1, 12, 1, 1);
  EXPECT_EQ(DateTime::CompareTime(&a, &b), 3600 + 60 + 2);
  EXPECT_EQ(DateTime::CompareTime(&b, &a), -(3600 + 60 + 2));
  EXPECT_EQ(DateTime::CompareTime(&a, &a), 0);
}

TEST(DateTimeTest, DifferencesKeepTheirSignAtTheLimits) {
  struct tm low = At(2024, 1, 1);
  struct tm high = low;
  low.tm_year = low.tm_hour = INT_MIN;
  high.tm_year = high.tm_hour = INT_MAX;
  EXPECT_EQ(DateTime::CompareDateTime(&high, &low), INT_MAX);
  EXPECT_EQ(DateTime::CompareOnlyDate(&low, &high), INT_MIN);
  EXPECT_EQ(DateTime::CompareTime(&high, &low), INT_MAX);
  EXPECT_EQ(DateTime::CompareTime(&low, &high), INT_MIN);
  EXPECT_EQ(DateTime::CompareDate(time_t{LLONG_MAX}, time_t{0}), INT_MAX);
  EXPECT_EQ(DateTime::CompareDate(time_t{LLONG_MIN}, time_t{LLONG_MAX}), INT_MIN);
}

TEST(DateTimeTest, AddsSeconds) {
  ScopedTimeZone zone(kUtc);
  struct tm time = At(2023, 12, 31, 23, 59, 59);
  EXPECT_TRUE(DateTime::AddSeconds(&time, 1));
  ExpectTime(time, 2024, 1, 1, 0, 0, 0);
  EXPECT_TRUE(DateTime::AddSeconds(&time, -86401));
  ExpectTime(time, 2023, 12, 30, 23, 59, 59);
  EXPECT_TRUE(DateTime::AddSeconds(&time, 0));
  ExpectTime(time, 2023, 12, 30, 23, 59, 59);
}

TEST(DateTimeTest, AddsTimesSinceTheEpoch) {
  ScopedTimeZone zone(kUtc);
  struct tm time = At(2024, 2, 28, 23, 0, 0);
  const struct tm added = At(1970, 1, 2, 1, 0, 5);  // a day, an hour and five seconds
  EXPECT_TRUE(DateTime::AddDateTime(&time, &added));
  ExpectTime(time, 2024, 3, 1, 0, 0, 5);
}

TEST(DateTimeTest, SumsOfNoTimeLeaveIt) {
  ScopedTimeZone zone(kUtc);
  struct tm time = At(2024, 12, 31, 23, 59, 59);
  time.tm_year = INT_MAX;
  const struct tm before = time;
  EXPECT_FALSE(DateTime::AddSeconds(&time, 1));
  EXPECT_TRUE(Same(time, before));
  EXPECT_FALSE(DateTime::AddDateTime(&time, &before));
  EXPECT_TRUE(Same(time, before));
}

}  // namespace
