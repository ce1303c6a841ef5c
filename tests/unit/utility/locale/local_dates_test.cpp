#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <ctime>
#include <memory>
#include <string>

#include "pal/drivers/datetime.h"
#include "utility/locale/locale.h"

namespace {

// The zone that the process believes in, for the length of a test.
class Zone {
 public:
  explicit Zone(const char* name) {
    const char* const old = std::getenv("TZ");
    had_old_ = old != nullptr;
    if (had_old_) old_ = old;
    Set(name);
  }
  ~Zone() { Set(had_old_ ? old_.c_str() : nullptr); }

 private:
  static void Set(const char* name) {
#ifdef _WIN32
    _putenv_s("TZ", name != nullptr ? name : "");
    _tzset();
#else
    if (name != nullptr) {
      setenv("TZ", name, 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
#endif
  }

  bool had_old_;
  std::string old_;
};

const char kRome[] = "CET-1CEST,M3.5.0,M10.5.0/3";

tm makeTime(int year, int month, int day, int hour, int minute, int second, int isdst) {
  tm time = {};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = hour;
  time.tm_min = minute;
  time.tm_sec = second;
  time.tm_isdst = isdst;
  return time;
}

Locale Greek() {
  Locale locale;
  locale.setCurrentLanguageCode(Locale::kGreek);
  return locale;
}

std::string Print(const Locale& locale, const char* format, const tm& time, bool local = false) {
  char s[128];
  return locale.toLocalDateTime(s, sizeof s, format, &time, local) ? s : "false";
}

TEST(LocalFormats, ReadAsGiven) {
  const Locale locale;
  EXPECT_STREQ("%d-%m-%Y %H:%M", locale.localTransactionDateTimeFormat());
  EXPECT_STREQ("%d-%m-%Y %q:%H:%M", Greek().localTransactionDateTimeFormat());
  EXPECT_STREQ("%m/%y", locale.localFirmwareDateFormat());
  EXPECT_STREQ("%d-%m-%y %H:%M", locale.localShortDateTimeFormat());
  EXPECT_STREQ("%d-%m-%y %H:%M:%S", locale.localDateTimeFormat());
  EXPECT_STREQ("%d-%m", locale.localYearDateFormat());
  EXPECT_STREQ("%d-%m-%y", locale.localShortDateFormat());
  EXPECT_STREQ("%d-%m-%Y", locale.localLongDateFormat());
  EXPECT_STREQ("%Y%m%d", locale.localCompactDateFormat());
  EXPECT_STREQ("%H:%M", locale.localShortTimeFormat());
  EXPECT_STREQ("%H:%M:%S", locale.localLongTimeFormat());
  EXPECT_STREQ("%Y-%m-%dT%H:%M:%S", locale.localXMLDateTimeFormat());
  EXPECT_STREQ("%Y-%m-%d", locale.localISO8601DateFormat());
  EXPECT_STREQ("%d%m%Y%H%M", locale.localUPOSLongTimeFormat());
  EXPECT_STREQ("%d%m%Y", locale.localUPOSShortTimeFormat());
  EXPECT_STREQ("%d%m%Y", locale.localXmlDateFormat());
  EXPECT_STREQ("%H%M", locale.localXmlTimeFormat());
  EXPECT_STREQ("%Y%m%d%H%M", locale.localCompactLongDateTimeFormat());
  EXPECT_STREQ("%y%m%d", locale.localCompactShortDateFormat());
  EXPECT_STREQ("%y%m%d%H%M", locale.localCompactShortDateTimeFormat());
  EXPECT_STREQ("%a, %d %b %Y %H:%M:%S GMT", locale.localHTTPDateTimeFormat());
  EXPECT_STREQ(" ", locale.localDateTimeSeparator());
}

TEST(LocalMasks, HaveABlankForEachDigit) {
  const Locale locale;
  EXPECT_STREQ("  -  ", locale.localYearDateMask());
  EXPECT_STREQ("  -  -  ", locale.localShortDateMask());
  EXPECT_STREQ("  -  -    ", locale.localLongDateMask());
  EXPECT_STREQ("  :  ", locale.localShortTimeMask());
  EXPECT_STREQ("  :  :  ", locale.localLongTimeMask());
  EXPECT_STREQ("      ", locale.localRegistrationNumberMask());
  EXPECT_STREQ("    -    ", locale.localTelematicReceiptNumberMask());
}

TEST(LocalTimezone, IsAlwaysZero) { EXPECT_EQ(0, Locale().localTimezone()); }

TEST(SeasonTexts, FollowTheLanguage) {
  const Locale locale;
  EXPECT_STREQ("CET", locale.getWinterTimeText());
  EXPECT_STREQ("CEST", locale.getSummerTimeText());
  EXPECT_STREQ("\xD7\xD9", Greek().getWinterTimeText());
  EXPECT_STREQ("\xC8\xD9", Greek().getSummerTimeText());
}

TEST(ToLocalDateTime, PrintsByItsFormat) {
  const tm time = makeTime(2023, 12, 31, 13, 45, 7, 0);
  EXPECT_EQ("31-12-2023 13:45", Print(Locale(), "%d-%m-%Y %H:%M", time));
  EXPECT_EQ("31-12-23 13:45:07", Print(Locale(), Locale::localDateTimeFormat(), time));
}

TEST(ToLocalDateTime, TheSeasonIsSummerOnlyForOne) {
  const char* const format = "%d-%m-%Y %q:%H:%M";
  EXPECT_EQ("31-12-2023 CEST:13:45", Print(Locale(), format, makeTime(2023, 12, 31, 13, 45, 7, 1)));
  EXPECT_EQ("31-12-2023 CET:13:45", Print(Locale(), format, makeTime(2023, 12, 31, 13, 45, 7, 0)));
  EXPECT_EQ("31-12-2023 CET:13:45", Print(Locale(), format, makeTime(2023, 12, 31, 13, 45, 7, -1)));
  EXPECT_EQ("31-12-2023 CET:13:45", Print(Locale(), format, makeTime(2023, 12, 31, 13, 45, 7, 2)));
}

TEST(ToLocalDateTime, TheSeasonIsGreekInGreek) {
  const Locale locale = Greek();
  EXPECT_EQ("31-12-2023 \xC8\xD9:13:45", Print(locale, locale.localTransactionDateTimeFormat(),
                                               makeTime(2023, 12, 31, 13, 45, 7, 1)));
  EXPECT_EQ("31-12-2023 \xD7\xD9:13:45", Print(locale, locale.localTransactionDateTimeFormat(),
                                               makeTime(2023, 12, 31, 13, 45, 7, 0)));
}

TEST(ToLocalDateTime, MovesUtcToLocalTime) {
  const Zone zone(kRome);
  EXPECT_EQ("15-01-2024 CET:12:30",
            Print(Locale(), "%d-%m-%Y %q:%H:%M", makeTime(2024, 1, 15, 11, 30, 0, -1), true));
  EXPECT_EQ("15-07-2024 CEST:12:30",
            Print(Locale(), "%d-%m-%Y %q:%H:%M", makeTime(2024, 7, 15, 10, 30, 0, -1), true));
  // Without being asked to it does not.
  EXPECT_EQ("15-07-2024 10:30",
            Print(Locale(), "%d-%m-%Y %H:%M", makeTime(2024, 7, 15, 10, 30, 0, -1), false));
}

TEST(ToLocalDateTime, LeavesTheGivenTimeAlone) {
  const Zone zone(kRome);
  const tm time = makeTime(2024, 7, 15, 10, 30, 0, -1);
  Print(Locale(), "%H", time, true);
  EXPECT_EQ(10, time.tm_hour);
  EXPECT_EQ(-1, time.tm_isdst);
}

TEST(ToLocalDateTime, ATextThatDoesNotFitIsCutAndFalse) {
  const tm time = makeTime(2023, 12, 31, 13, 45, 7, 0);
  for (size_t n = 0; n <= 12; ++n) {
    const std::unique_ptr<char[]> s(new char[n]);
    const bool ok = Locale().toLocalDateTime(s.get(), n, "%d-%m-%Y", &time, false);
    EXPECT_EQ(n > 10, ok) << n;
    if (n > 0) {
      EXPECT_EQ(std::string("31-12-2023").substr(0, n - 1), s.get()) << n;
    }
  }
}

TEST(ToLocalDateTime, AnOverLongFormatPrintsNothing) {
  const tm time = makeTime(2023, 12, 31, 13, 45, 7, 0);
  EXPECT_EQ("", Print(Locale(), std::string(500, 'x').c_str(), time));
  EXPECT_EQ("", Print(Locale(), "", time));
}

TEST(ToLocalDateTime, AnOverLongFormatWithASeasonIsCut) {
  const tm time = makeTime(2023, 12, 31, 13, 45, 7, 0);
  const std::string before(100, 'a');
  const std::string after(100, 'b');
  // 127 characters remain: 100, three, 24.
  EXPECT_EQ(before + "CET" + std::string(24, 'b'),
            Print(Locale(), (before + "%q" + after).c_str(), time));
  EXPECT_EQ(std::string(127, 'a'), Print(Locale(), (std::string(300, 'a') + "%q").c_str(), time));
}

TEST(FromLocalDateTime, ReadsLocalTimeAsUtc) {
  const Zone zone(kRome);
  tm time = {};
  ASSERT_TRUE(Locale().fromLocalDateTime("15-01-2024 12:30", 16, "%d-%m-%Y %H:%M", &time));
  EXPECT_EQ(124, time.tm_year);
  EXPECT_EQ(0, time.tm_mon);
  EXPECT_EQ(15, time.tm_mday);
  EXPECT_EQ(11, time.tm_hour);
  EXPECT_EQ(30, time.tm_min);
  EXPECT_EQ(0, time.tm_sec);
  ASSERT_TRUE(Locale().fromLocalDateTime("15-07-2024 12:30", 16, "%d-%m-%Y %H:%M", &time));
  EXPECT_EQ(10, time.tm_hour);
}

TEST(FromLocalDateTime, WhatTheFormatDoesNotNameIsTheEpochs) {
  const Zone zone("UTC0");
  tm time = makeTime(2050, 5, 5, 5, 5, 5, 0);
  ASSERT_TRUE(Locale().fromLocalDateTime("13:45", 5, "%H:%M", &time));
  EXPECT_EQ(70, time.tm_year);
  EXPECT_EQ(0, time.tm_mon);
  EXPECT_EQ(1, time.tm_mday);
  EXPECT_EQ(13, time.tm_hour);
  EXPECT_EQ(45, time.tm_min);
  EXPECT_EQ(0, time.tm_sec);
}

TEST(FromLocalDateTime, RefusesWhatDoesNotParseOrIsNoDate) {
  tm time = {};
  EXPECT_FALSE(Locale().fromLocalDateTime("xx-01-2024", 10, "%d-%m-%Y", &time));
  EXPECT_FALSE(Locale().fromLocalDateTime("", 0, "%d-%m-%Y", &time));
  EXPECT_FALSE(Locale().fromLocalDateTime("30-02-2024", 10, "%d-%m-%Y", &time));
  EXPECT_FALSE(Locale().fromLocalDateTime("31-04-2024", 10, "%d-%m-%Y", &time));
  // The check of dates refuses every day of February 2000.
  EXPECT_FALSE(Locale().fromLocalDateTime("01-02-2000", 10, "%d-%m-%Y", &time));
  // strptime takes a second of 61, the check does not.
  EXPECT_FALSE(Locale().fromLocalDateTime("12:00:61", 8, "%H:%M:%S", &time));
}

TEST(FromLocalDateTime, DoesNotKnowTheSeason) {
  tm time = {};
  EXPECT_FALSE(Locale().fromLocalDateTime("15-01-2024 CET:12:30", 20, "%d-%m-%Y %q:%H:%M", &time));
}

TEST(FromLocalDateTime, DoesNotUseItsSize) {
  const Zone zone("UTC0");
  tm time = {};
  ASSERT_TRUE(Locale().fromLocalDateTime("15-01-2024", 0, "%d-%m-%Y", &time));
  EXPECT_EQ(15, time.tm_mday);
  EXPECT_EQ(124, time.tm_year);
}

}  // namespace
