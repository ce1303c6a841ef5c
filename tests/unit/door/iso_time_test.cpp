#include "door/log/iso_time.h"

#include <gtest/gtest.h>

#include <ctime>

namespace lorimat::door {
namespace {

TEST(IsoTime, ADayIsWholeAndAMinuteToo) {
  EXPECT_EQ(ReadIsoTime("2026-11-22", false), 20261122000000);
  EXPECT_EQ(ReadIsoTime("2026-11-22", true), 20261122235959);
  EXPECT_EQ(ReadIsoTime("2026-11-22T18:03", false), 20261122180300);
  EXPECT_EQ(ReadIsoTime("2026-11-22T18:03", true), 20261122180359);
  EXPECT_EQ(ReadIsoTime("2026-11-22T18:03:07", true), 20261122180307);
  EXPECT_EQ(ReadIsoTime("2024-02-29", false), 20240229000000);
}

TEST(IsoTime, ADistanceFromUtcIsTakenIntoLocalTime) {
  // What the computer tells of an instant is read back as it stands.
  for (const int64_t milliseconds : {0LL, 1'790'000'000'000LL, 1'767'222'000'000LL}) {
    const std::time_t seconds = milliseconds / 1000;
    std::tm local{};
    localtime_r(&seconds, &local);
    char text[32];
    std::strftime(text, sizeof text, "%Y%m%d%H%M%S", &local);
    EXPECT_EQ(ReadIsoTime(IsoTime(milliseconds), false), std::stoll(text));
  }
  EXPECT_EQ(ReadIsoTime("2026-11-22T18:03:07Z", false),
            ReadIsoTime("2026-11-22T16:33:07-01:30", false));
  EXPECT_EQ(ReadIsoTime("2026-11-22T18:03Z", true), ReadIsoTime("2026-11-23T17:03:59+23:00", true));
}

TEST(IsoTime, OtherTextsAreNone) {
  for (const char* text : {"",
                           "2026",
                           "2026-11",
                           "2026-11-2",
                           "2026-13-01",
                           "2026-00-01",
                           "2026-02-29",
                           "2026-11-31",
                           "2026-11-22T",
                           "2026-11-22T24:00",
                           "2026-11-22T18",
                           "2026-11-22T18:60",
                           "2026-11-22T18:03:60",
                           "2026-11-22T18:03:07.5",
                           "2026-11-22T18:03:07+",
                           "2026-11-22T18:03:07+1:00",
                           "2026-11-22T18:03:07+01:60",
                           "2026-11-22T18:03:07+24:00",
                           "2026-11-22T18:03:07 01:00",
                           "2026-11-22T18:03:07ZZ",
                           "2026-11-22 18:03",
                           "22.11.2026",
                           "20261122",
                           "-026-11-22",
                           "1969-12-31",
                           "2026-11-22Z",
                           "1970-01-01T00:00+23:00",
                           "99999-01-01",
                           "2026-11-22T18:-3"}) {
    EXPECT_FALSE(ReadIsoTime(text, false)) << text;
  }
}

}  // namespace
}  // namespace lorimat::door
