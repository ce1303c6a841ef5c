// Dates of options: the forms that the program shows, and what is none.
#include "console/device/clock_text.h"

#include <gtest/gtest.h>

#include <array>
#include <string>

namespace lorimat::console {
namespace {

std::string Read(std::string_view text) {
  const std::optional<GivenDate> given = ParseDate(text);
  if (!given) return "none";
  std::array<char, 32> buffer;
  std::strftime(buffer.data(), buffer.size(), "%Y%m%d %H%M%S", &given->time);
  return buffer.data() + std::string(given->has_time ? "" : " no time");
}

TEST(ClockText, EveryFormThatIsShownIsRead) {
  EXPECT_EQ("20261120 000000 no time", Read("2026-11-20"));
  EXPECT_EQ("20261120 000000 no time", Read("20/11/2026"));
  EXPECT_EQ("20261120 000000 no time", Read("20112026"));
  EXPECT_EQ("20261120 110300", Read("2026-11-20 11:03"));
  EXPECT_EQ("20261120 110300", Read("2026-11-20T11:03"));
  EXPECT_EQ("20261120 110359", Read("2026-11-20T11:03:59"));
  EXPECT_EQ("20261120 110300", Read("20/11/2026 11:03"));
  EXPECT_EQ("20261120 110359", Read("20/11/2026 11:03:59"));
  EXPECT_EQ("20261120 110300", Read("201120261103"));
  EXPECT_EQ("20261120 110359", Read("20112026110359"));
}

TEST(ClockText, ADayOfTheCalendarIsWanted) {
  EXPECT_EQ("20240229 000000 no time", Read("29/02/2024"));
  for (const char* text : {"29/02/2023", "2024-02-30", "2024-13-01", "00/01/2024", "2024-00-01",
                           "31/04/2024", "12/31/2024"}) {
    EXPECT_EQ("none", Read(text)) << text;
  }
}

TEST(ClockText, ATimeOfTheDayIsWanted) {
  EXPECT_EQ("20241231 235959", Read("2024-12-31 23:59:59"));
  for (const char* text : {"2024-01-01 24:00", "2024-01-01 10:60", "2024-01-01 10:00:60",
                           "2024-01-01 ", "2024-01-01 10", "2024-01-01 10:0", "2024-01-01 10:000",
                           "2024-01-01  10:00", "2024-01-01t10:00", "010120242400"}) {
    EXPECT_EQ("none", Read(text)) << text;
  }
}

TEST(ClockText, NothingElseIsADate) {
  for (const char* text : {"", " ", "yesterday", "2024", "1/1/2024", "01/01/24", "2024/01/01",
                           "01-01-2024", "0101202", "010120241", "01012024 10:00", " 2024-01-01",
                           "2024-01-01 10:00 ", "-024-01-01", "2024-01-01Z"}) {
    EXPECT_EQ("none", Read(text)) << text;
  }
  EXPECT_EQ("none", Read(std::string_view("2024-01-01\0", 11)));
}

}  // namespace

}  // namespace lorimat::console
