#include "pal/strptime.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <iomanip>
#include <locale>
#include <sstream>
#include <string>
#include <utility>

#include "unit/pal/time_zone.h"

namespace {

// A tm whose fields no conversion writes by chance.
struct tm Marked() {
  struct tm time = {};
  time.tm_sec = time.tm_min = time.tm_hour = time.tm_mday = time.tm_mon = -7;
  time.tm_year = time.tm_wday = time.tm_yday = time.tm_isdst = -7;
  return time;
}

// Parses and returns what is left of the text, "(failed)" on failure.
std::string Rest(const char* text, const char* format, struct tm* time) {
  const char* end = pal::strptime(text, format, time);
  return end == nullptr ? "(failed)" : end;
}

std::string Rest(const char* text, const char* format) {
  struct tm time = Marked();
  return Rest(text, format, &time);
}

constexpr char kFailed[] = "(failed)";

TEST(StrptimeTest, ReadsADateWithAName) {
  struct tm time = Marked();
  EXPECT_EQ(Rest("Nov 24 2022", "%b %d %Y", &time), "");
  EXPECT_EQ(time.tm_mon, 10);
  EXPECT_EQ(time.tm_mday, 24);
  EXPECT_EQ(time.tm_year, 122);
  // Nothing else is written or derived.
  EXPECT_EQ(time.tm_hour, -7);
  EXPECT_EQ(time.tm_wday, -7);
  EXPECT_EQ(time.tm_yday, -7);
  EXPECT_EQ(time.tm_isdst, -7);
}

TEST(StrptimeTest, WhiteSpaceInTheFormatSkipsAny) {
  struct tm time = Marked();
  EXPECT_EQ(Rest("Nov \t\n\v\f\r 4", "%b %d", &time), "");
  EXPECT_EQ(time.tm_mday, 4);
  EXPECT_EQ(Rest("Nov4", "%b %d"), "");
  EXPECT_EQ(Rest(" \t12", "%n%d"), "");
  EXPECT_EQ(Rest(" \t12", "%t%d"), "");
  EXPECT_EQ(Rest(" 12", "%d"), kFailed);
}

TEST(StrptimeTest, OtherCharactersMustStandInTheText) {
  EXPECT_EQ(Rest("12-", "%d-"), "");
  EXPECT_EQ(Rest("12/", "%d-"), kFailed);
  EXPECT_EQ(Rest("12", "%d-"), kFailed);
  EXPECT_EQ(Rest("A", "a"), kFailed);
  EXPECT_EQ(Rest("", ""), "");
  EXPECT_EQ(Rest("abc", ""), "abc");
}

TEST(StrptimeTest, PercentSign) {
  EXPECT_EQ(Rest("%5", "%%%d"), "");
  EXPECT_EQ(Rest("%", "%E%"), "");
  EXPECT_EQ(Rest("%", "%O%"), "");
  EXPECT_EQ(Rest("5", "%%"), kFailed);
  EXPECT_EQ(Rest("", "%%"), kFailed);
  EXPECT_EQ(Rest("5", "%"), kFailed);
  EXPECT_EQ(Rest("5", "%E"), kFailed);
}

// A text that the conversion reads whole.
const char* Sample(char letter) {
  switch (letter) {
    case '%':
      return "%";
    case 'a':
    case 'A':
      return "Mon";
    case 'b':
    case 'B':
    case 'h':
      return "Jan";
    case 'c':
      return "01/02/03 04:05:06";
    case 'D':
    case 'x':
      return "01/02/03";
    case 'R':
      return "04:05";
    case 'r':
      return "04:05:06 PM";
    case 'T':
    case 'X':
      return "04:05:06";
    case 'n':
    case 't':
      return " ";
    case 'p':
      return "AM";
    default:
      return "1";
  }
}

TEST(StrptimeTest, EachConversionTakesItsModifiersOnly) {
  const std::string letters = "%aAbBhCcDxdeHkIljMmntpRrSTXUWwYy";
  const std::string with_e = "%CcxXYy";
  const std::string with_o = "%deHIMmSUWwy";
  for (int value = 1; value < 256; ++value) {
    const char letter = static_cast<char>(value);
    const bool known = letters.find(letter) != std::string::npos;
    const char* text = Sample(letter);
    EXPECT_EQ(Rest(text, (std::string("%") + letter).c_str()), known ? "" : kFailed) << value;
    if (letter == 'E' || letter == 'O') continue;
    EXPECT_EQ(Rest(text, (std::string("%E") + letter).c_str()),
              with_e.find(letter) != std::string::npos ? "" : kFailed)
        << value;
    EXPECT_EQ(Rest(text, (std::string("%O") + letter).c_str()),
              with_o.find(letter) != std::string::npos ? "" : kFailed)
        << value;
    for (const char* two : {"%EE", "%EO", "%OE", "%OO"}) {
      EXPECT_EQ(Rest(text, (std::string(two) + letter).c_str()), kFailed) << two << value;
    }
  }
}

TEST(StrptimeTest, NamesInEitherFormAndCase) {
  struct tm time = Marked();
  EXPECT_EQ(Rest("MARCH", "%b", &time), "");
  EXPECT_EQ(time.tm_mon, 2);
  EXPECT_EQ(Rest("marxism", "%B", &time), "xism");
  EXPECT_EQ(time.tm_mon, 2);
  EXPECT_EQ(Rest("mayor", "%h", &time), "or");
  EXPECT_EQ(time.tm_mon, 4);
  EXPECT_EQ(Rest("Septem", "%b", &time), "tem");
  EXPECT_EQ(time.tm_mon, 8);
  EXPECT_EQ(Rest("wednesday", "%a", &time), "");
  EXPECT_EQ(time.tm_wday, 3);
  EXPECT_EQ(Rest("SunMon", "%A", &time), "Mon");
  EXPECT_EQ(time.tm_wday, 0);
  EXPECT_EQ(Rest("Ma", "%b"), kFailed);
  EXPECT_EQ(Rest("", "%b"), kFailed);
  EXPECT_EQ(Rest("Gen", "%b"), kFailed);
  EXPECT_EQ(Rest("Lun", "%a"), kFailed);
}

TEST(StrptimeTest, AllNames) {
  const char* months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                          "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  const char* days[] = {"Sun", "Mon", "Tue", "Wed", "Thu", "Fri", "Sat"};
  struct tm time = Marked();
  for (int i = 0; i < 12; ++i) {
    EXPECT_EQ(Rest(months[i], "%b", &time), "");
    EXPECT_EQ(time.tm_mon, i);
  }
  for (int i = 0; i < 7; ++i) {
    EXPECT_EQ(Rest(days[i], "%a", &time), "");
    EXPECT_EQ(time.tm_wday, i);
  }
}

TEST(StrptimeTest, NumbersAtTheirLimits) {
  struct {
    const char* format;
    const char* text;
    const char* left;
  } const rows[] = {
      {"%d", "1", ""},        {"%d", "31", ""},      {"%d", "0", kFailed},  {"%d", "32", kFailed},
      {"%d", "00", kFailed},  {"%e", "05", ""},      {"%H", "23", ""},      {"%H", "24", kFailed},
      {"%k", "00", ""},       {"%k", "24", kFailed}, {"%I", "12", ""},      {"%I", "13", kFailed},
      {"%I", "0", kFailed},   {"%l", "1", ""},       {"%l", "13", kFailed}, {"%j", "366", ""},
      {"%j", "367", kFailed}, {"%j", "0", kFailed},  {"%M", "59", ""},      {"%M", "60", "0"},
      {"%m", "12", ""},       {"%m", "13", kFailed}, {"%m", "0", kFailed},  {"%S", "61", ""},
      {"%S", "62", kFailed},  {"%U", "53", ""},      {"%U", "54", kFailed}, {"%W", "0", ""},
      {"%w", "6", ""},        {"%w", "7", kFailed},  {"%w", "60", "0"},     {"%Y", "9999", ""},
      {"%Y", "0", ""},        {"%Y", "20221", "1"},  {"%y", "99", ""},      {"%y", "100", "0"},
      {"%C", "99", ""},       {"%d", "+1", kFailed}, {"%d", "-1", kFailed}, {"%d", "x", kFailed},
      {"%d", "", kFailed}};
  for (const auto& row : rows) {
    EXPECT_EQ(Rest(row.text, row.format), row.left) << row.format << " of " << row.text;
  }
}

TEST(StrptimeTest, ANumberEndsWhereAnyFurtherDigitWouldPassTheLimit) {
  struct tm time = Marked();
  EXPECT_EQ(Rest("45", "%d", &time), "5");  // 40 and more is past 31
  EXPECT_EQ(time.tm_mday, 4);
  EXPECT_EQ(Rest("3112", "%d%m", &time), "");
  EXPECT_EQ(time.tm_mday, 31);
  EXPECT_EQ(time.tm_mon, 11);
  EXPECT_EQ(Rest("99999999999999999999", "%Y", &time), "9999999999999999");
  EXPECT_EQ(time.tm_year, 8099);
}

TEST(StrptimeTest, FieldsOfATime) {
  struct tm time = Marked();
  EXPECT_EQ(Rest("13:45:07", "%H:%M:%S", &time), "");
  EXPECT_EQ(time.tm_hour, 13);
  EXPECT_EQ(time.tm_min, 45);
  EXPECT_EQ(time.tm_sec, 7);
  EXPECT_EQ(Rest("12", "%I", &time), "");
  EXPECT_EQ(time.tm_hour, 0);
  EXPECT_EQ(Rest("11", "%l", &time), "");
  EXPECT_EQ(time.tm_hour, 11);
  EXPECT_EQ(Rest("001", "%j", &time), "");
  EXPECT_EQ(time.tm_yday, 0);
  EXPECT_EQ(Rest("6", "%w", &time), "");
  EXPECT_EQ(time.tm_wday, 6);
}

TEST(StrptimeTest, WeekNumbersAreDropped) {
  struct tm time = Marked();
  const struct tm before = time;
  EXPECT_EQ(Rest("53 12", "%U %W", &time), "");
  EXPECT_EQ(std::memcmp(&time, &before, sizeof(time)), 0);
}

TEST(StrptimeTest, ComposedFormats) {
  struct tm time = Marked();
  EXPECT_EQ(Rest("02/29/24", "%D", &time), "");
  EXPECT_EQ(time.tm_mon, 1);
  EXPECT_EQ(time.tm_mday, 29);
  EXPECT_EQ(time.tm_year, 124);
  EXPECT_EQ(Rest("11:59", "%R", &time), "");
  EXPECT_EQ(time.tm_hour, 11);
  EXPECT_EQ(time.tm_min, 59);
  EXPECT_EQ(Rest("12/31/68 23:59:61 end", "%c", &time), " end");
  EXPECT_EQ(time.tm_year, 168);
  EXPECT_EQ(time.tm_hour, 23);
  EXPECT_EQ(time.tm_sec, 61);
  EXPECT_EQ(Rest("09:10:11 pm", "%r", &time), "");
  EXPECT_EQ(time.tm_hour, 21);
}

int YearOf(const char* text, const char* format) {
  struct tm time = Marked();
  time.tm_year = 1234;
  EXPECT_EQ(Rest(text, format, &time), "");
  return time.tm_year;
}

TEST(StrptimeTest, YearsOfACentury) {
  EXPECT_EQ(YearOf("69", "%y"), 69);   // 1969
  EXPECT_EQ(YearOf("68", "%y"), 168);  // 2068
  EXPECT_EQ(YearOf("0", "%y"), 100);
  EXPECT_EQ(YearOf("99", "%Ey"), 99);
  EXPECT_EQ(YearOf("2022", "%Y"), 122);
  EXPECT_EQ(YearOf("0", "%Y"), -1900);
}

TEST(StrptimeTest, CenturiesAreNotCountedFrom1900) {
  EXPECT_EQ(YearOf("20", "%C"), 2000);
  EXPECT_EQ(YearOf("2024", "%C%y"), 2024);
  EXPECT_EQ(YearOf("2420", "%y%C"), 2024);  // 124 keeps its 24
  EXPECT_EQ(YearOf("2419", "%y%y"), 119);   // the second one keeps the hundreds
  EXPECT_EQ(YearOf("2021", "%C%C"), 2100);
  EXPECT_EQ(YearOf("20 12/31/24", "%C %D"), 2024);
}

TEST(StrptimeTest, HalfDayOnlyAtTheEndOfTheText) {
  struct tm time = Marked();
  EXPECT_EQ(Rest("10 AM x", "%I %p", &time), kFailed);
  EXPECT_EQ(time.tm_hour, 10);  // what was read before stays
  EXPECT_EQ(Rest("10 am", "%I %p", &time), "");
  EXPECT_EQ(time.tm_hour, 10);
  EXPECT_EQ(Rest("12 Am", "%I %p", &time), "");
  EXPECT_EQ(time.tm_hour, 0);
  EXPECT_EQ(Rest("12 PM", "%I %p", &time), "");
  EXPECT_EQ(time.tm_hour, 12);
  EXPECT_EQ(Rest("12 AM", "%H %p", &time), kFailed);
  EXPECT_EQ(Rest("12 PM", "%H %p", &time), kFailed);
  EXPECT_EQ(Rest("10 A", "%I %p"), kFailed);
  EXPECT_EQ(Rest("10 ", "%I %p"), kFailed);
  EXPECT_EQ(Rest("10 XM", "%I %p"), kFailed);
}

TEST(StrptimeTest, FailureKeepsTheFieldsReadSoFar) {
  struct tm time = Marked();
  EXPECT_EQ(Rest("12/99", "%m/%d/%Y", &time), kFailed);
  EXPECT_EQ(time.tm_mon, 11);
  EXPECT_EQ(time.tm_mday, 9);  // "9", then the "/" is missing
  EXPECT_EQ(time.tm_year, -7);
}

TEST(StrptimeTest, LongTextsAndEveryByte) {
  EXPECT_EQ(Rest((std::string(100000, ' ') + "7").c_str(), " %d"), "");
  EXPECT_EQ(Rest(std::string(100000, '1').c_str(), "%m").size(), 99998u);
  for (int value = 1; value < 256; ++value) {
    const char text[2] = {static_cast<char>(value), '\0'};
    const bool digit = value >= '0' && value <= '9';
    EXPECT_EQ(Rest(text, "%Y"), digit ? "" : kFailed) << value;
    EXPECT_EQ(Rest(text, "%b"), kFailed) << value;
  }
}

TEST(StrptimeTest, ReadsBackWhatStrftimePrints) {
  // Every 7th day of four years with a running time of day.
  ScopedTimeZone zone(kUtc);
  for (int day = 0; day < 4 * 366; day += 7) {
    struct tm time = {};
    time.tm_year = 123;
    time.tm_mday = 1 + day;
    time.tm_hour = day % 24;
    time.tm_min = day % 60;
    time.tm_sec = (day * 7) % 60;
    std::mktime(&time);
    // "%c" and "%r" of the platform are its locale's own, so that they are printed in parts.
    const std::pair<const char*, const char*> formats[] = {
        {"%Y-%m-%d %H:%M:%S %a %j", "%Y-%m-%d %H:%M:%S %a %j"},
        {"%A %d %B %Y %T %w %j", "%A %d %B %Y %T %w %j"},
        {"%a %D %j %I:%M:%S %p", "%a %D %j %r"},
        {"%a, %j %m/%d/%y %H:%M:%S", "%a, %j %c"}};
    for (const auto& [printed, format] : formats) {
      std::ostringstream out;
      out.imbue(std::locale::classic());
      out << std::put_time(&time, printed);
      const std::string text = out.str();
      struct tm back = Marked();
      ASSERT_EQ(Rest(text.c_str(), format, &back), "") << text;
      EXPECT_EQ(back.tm_year, time.tm_year) << text;
      EXPECT_EQ(back.tm_mon, time.tm_mon) << text;
      EXPECT_EQ(back.tm_mday, time.tm_mday) << text;
      EXPECT_EQ(back.tm_hour, time.tm_hour) << text;
      EXPECT_EQ(back.tm_min, time.tm_min) << text;
      EXPECT_EQ(back.tm_sec, time.tm_sec) << text;
      EXPECT_EQ(back.tm_wday, time.tm_wday) << text;
      EXPECT_EQ(back.tm_yday, time.tm_yday) << text;
    }
  }
}

struct tm At(int year, int month, int day, int hour, int minute, int isdst) {
  struct tm time = {};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_isdst = isdst;
  return time;
}

constexpr time_t k20240115 = 1705276800;  // midnight UTC
constexpr time_t k20240715 = 1721001600;
constexpr time_t kHour = 3600;

TEST(TimegmTest, ReadsATimeAsUtc) {
  struct tm time = At(2024, 1, 15, 12, 0, -1);
  {
    ScopedTimeZone zone(kUtc);
    EXPECT_EQ(pal::timegm(&time), k20240115 + 12 * kHour);
  }
  for (const char* name : {kItaly, kNewYork}) {
    ScopedTimeZone zone(name);
    time = At(2024, 1, 15, 12, 0, -1);
    EXPECT_EQ(pal::timegm(&time), k20240115 + 12 * kHour) << name;
  }
  ScopedTimeZone zone(kItaly);
  time = At(2024, 7, 15, 12, 0, -1);
  EXPECT_EQ(pal::timegm(&time), k20240715 + 12 * kHour);
}

// The results that are known to be off, and meant.

TEST(TimegmTest, EastOfGreenwichTheFirstHoursAreTwiceTheOffsetEarly) {
  ScopedTimeZone zone(kItaly);
  struct tm time = At(2024, 1, 15, 0, 0, -1);  // 23 UTC: the offset becomes 24 - 23 = +1
  EXPECT_EQ(pal::timegm(&time), k20240115 - 2 * kHour);
  time = At(2024, 1, 15, 1, 0, -1);
  EXPECT_EQ(pal::timegm(&time), k20240115 + 1 * kHour);
}

TEST(TimegmTest, WestOfGreenwichTheLastHoursAreADayLate) {
  ScopedTimeZone zone(kNewYork);
  struct tm time = At(2024, 1, 15, 20, 0, -1);  // 1 UTC: an offset of -19
  EXPECT_EQ(pal::timegm(&time), k20240115 + (20 + 24) * kHour);
  time = At(2024, 1, 15, 18, 0, -1);  // 23 UTC
  EXPECT_EQ(pal::timegm(&time), k20240115 + 18 * kHour);
}

TEST(TimegmTest, AWinterTimeInSummerIsNormalisedFirst) {
  ScopedTimeZone zone(kItaly);
  struct tm time = At(2024, 7, 15, 12, 0, 0);
  EXPECT_EQ(pal::timegm(&time), k20240715 + 13 * kHour);
  EXPECT_EQ(time.tm_hour, 13);
  EXPECT_EQ(time.tm_isdst, 1);
}

TEST(TimegmTest, OnlyWholeHoursOfAZoneCount) {
  ScopedTimeZone zone("IST-5:30");
  struct tm time = At(2024, 1, 15, 12, 0, -1);  // 6:30 UTC
  EXPECT_EQ(pal::timegm(&time), k20240115 + 12 * kHour + 1800);
}

TEST(TimegmTest, NormalisesItsArgument) {
  ScopedTimeZone zone(kUtc);
  struct tm time = At(2023, 13, 46, 0, 90, -1);      // month 13, day 46
  EXPECT_EQ(pal::timegm(&time), 1707955200 + 5400);  // 2024-02-15 01:30
  EXPECT_EQ(time.tm_year, 124);
  EXPECT_EQ(time.tm_mon, 1);
  EXPECT_EQ(time.tm_mday, 15);
  EXPECT_EQ(time.tm_hour, 1);
  EXPECT_EQ(time.tm_min, 30);
  EXPECT_EQ(time.tm_wday, 4);
}

TEST(TimegmTest, FieldsAtTheirLimitsAreHarmless) {
  for (const char* name : {kUtc, kItaly, kNewYork}) {
    ScopedTimeZone zone(name);
    for (const int value : {INT_MIN, INT_MAX}) {
      struct tm time = At(2024, 1, 15, 12, 0, -1);
      time.tm_year = value;
      pal::timegm(&time);
      time.tm_sec = time.tm_min = time.tm_hour = time.tm_mday = time.tm_mon = value;
      time.tm_year = value;
      pal::timegm(&time);
    }
  }
}

}  // namespace
