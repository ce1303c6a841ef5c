#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>
#include <string>

#include "unit/utility/log_fixture.h"

namespace {

class LocalTimeTest : public testing::Test {
 protected:
  void SetUp() override {
    const char* zone = std::getenv("TZ");
    if (zone != nullptr) old_zone_ = zone;
    had_zone_ = zone != nullptr;
    setenv("TZ", "XXX-1", 1);  // an hour east of Greenwich all the year
    tzset();
    time_.tm_year = 122;
    time_.tm_mon = 10;
    time_.tm_mday = 24;
    time_.tm_hour = 15;
    time_.tm_min = 18;
    time_.tm_sec = 58;
  }
  void TearDown() override {
    if (had_zone_) {
      setenv("TZ", old_zone_.c_str(), 1);
    } else {
      unsetenv("TZ");
    }
    tzset();
  }
  std::string old_zone_;
  bool had_zone_ = false;
  tm time_ = {};
};

TEST_F(LocalTimeTest, AUtcTimeIsPrintedAsLocalTime) {
  char text[64];
  OpenLog::toLocalDateTime(text, sizeof(text), "%Y-%m-%d %H:%M:%S", &time_);
  EXPECT_STREQ(text, "2022-11-24 16:18:58");
  EXPECT_EQ(time_.tm_hour, 15);
}

TEST_F(LocalTimeTest, TheTextIsCutToItsBuffer) {
  char text[6] = "#####";
  OpenLog::toLocalDateTime(text, 5, "%Y-%m-%d", &time_);
  EXPECT_STREQ(text, "2022");
  text[0] = '#';
  OpenLog::toLocalDateTime(text, 0, "%Y-%m-%d", &time_);
  EXPECT_EQ(text[0], '#');
  OpenLog::toLocalDateTime(text, sizeof(text), "", &time_);
  EXPECT_STREQ(text, "");
}

TEST_F(LocalTimeTest, ATextThatIsTooLongLeavesTheBufferAlone) {
  char text[300] = "#";
  OpenLog::toLocalDateTime(text, sizeof(text), std::string(128, 'x').c_str(), &time_);
  EXPECT_STREQ(text, "#");
  OpenLog::toLocalDateTime(text, sizeof(text), std::string(127, 'x').c_str(), &time_);
  EXPECT_EQ(text, std::string(127, 'x'));
}

}  // namespace
