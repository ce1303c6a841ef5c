#include <gtest/gtest.h>

#include <cstring>
#include <ctime>
#include <string>

#include "unit/utility/log_fixture.h"

namespace {

tm Moment() {
  tm time = {};
  time.tm_year = 126;
  time.tm_mon = 1;
  time.tm_mday = 3;
  time.tm_hour = 4;
  time.tm_min = 5;
  time.tm_sec = 6;
  return time;
}

// The header, whose length must be the one told.
std::string Header(Log::Levels level, const tm& time, const char* host) {
  char text[Log::LS_HEADER + 1];
  std::memset(text, '#', sizeof(text));
  const size_t length = OpenLog::FormatSyslogHeader(text, level, time, host);
  EXPECT_EQ(text[Log::LS_HEADER], '#');
  EXPECT_EQ(std::strlen(text), length);
  return text;
}

TEST(LogSyslogTest, TheSeverityFollowsTheLevel) {
  const struct {
    Log::Levels level;
    const char* priority;  // 8 for the facility, and the severity
  } rows[] = {{Log::LL_TRACE, "<15>"}, {Log::LL_DEBUG, "<15>"}, {Log::LL_INFO, "<14>"},
              {Log::LL_WARN, "<12>"},  {Log::LL_ERROR, "<11>"}, {Log::LL_FATAL, "<8>"},
              {Log::LL_LEVELS, "<15>"}};
  for (const auto& row : rows) {
    EXPECT_EQ(Header(row.level, Moment(), "host"),
              std::string(row.priority) + "Feb  3 04:05:06 host ");
  }
}

TEST(LogSyslogTest, MonthsAreEnglish) {
  const char* const months[] = {"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
  tm time = Moment();
  time.tm_mday = 30;
  for (int i = 0; i < 12; ++i) {
    time.tm_mon = i;
    EXPECT_EQ(Header(Log::LL_INFO, time, "h"), std::string("<14>") + months[i] + " 30 04:05:06 h ");
  }
}

TEST(LogSyslogTest, ALongHostNameIsCutAtThirtyNineCharacters) {
  // "<14>Feb  3 04:05:06 " has 20 characters: 19 of the name are left.
  EXPECT_EQ(Header(Log::LL_INFO, Moment(), "eighteen_letters__"),
            "<14>Feb  3 04:05:06 eighteen_letters__ ");
  EXPECT_EQ(Header(Log::LL_INFO, Moment(), "nineteen_letters___"),
            "<14>Feb  3 04:05:06 nineteen_letters___");
  EXPECT_EQ(Header(Log::LL_INFO, Moment(), std::string(128, 'h').c_str()),
            "<14>Feb  3 04:05:06 " + std::string(19, 'h'));
}

TEST(LogSyslogTest, TheHeaderTouchesTheLine) {
  OpenLog log;
  log.set_outputs(Log::LO_NULL);
  log.set_syslog_hostname("me");
  log.Write(Log::LL_ERROR, Log::LocationInfo("f", "Method", 1, 0), std::string(2000, 'x').c_str());
  const std::string line = log.output_;
  const char* text = log.PrependSyslogHeader();
  const size_t length = static_cast<size_t>(log.output_ - text);
  EXPECT_GE(text, log.buffer_);
  EXPECT_EQ(length, 23u);  // the 20 above, and "me "
  EXPECT_EQ(std::string(text).substr(0, 4), "<11>");
  EXPECT_EQ(std::string(text).substr(20), "me " + line);
  log.set_syslog_hostname(std::string(128, 'h').c_str());
  text = log.PrependSyslogHeader();
  EXPECT_EQ(text, log.buffer_ + 1);
  EXPECT_EQ(std::string(text).size(), 39u + 1024u);
  EXPECT_EQ(log.output_, line);
}

}  // namespace
