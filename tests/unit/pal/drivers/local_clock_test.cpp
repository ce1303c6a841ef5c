// The clock that remembers, beside one that asks each time.
#include "pal/drivers/local_clock.h"

#include <gtest/gtest.h>

#include <cstring>
#include <ctime>
#include <string>

#include "pal/drivers/datetime.h"
#include "unit/pal/time_zone.h"

namespace {

std::string Printed(const struct tm& time) {
  char text[64];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &time)};
}

struct Reading {
  std::string asked;
  std::string remembered;
  std::string text;
};

// All of one second: where it changed in between, all are taken once more.
Reading ReadAll(LocalClock& clock) {
  for (;;) {
    struct tm before = {};
    struct tm behind = {};
    EXPECT_TRUE(DateTime::GetLocalDateTime(&before));
    const struct tm* now = clock.Now();
    if (now == nullptr) return {};
    const struct tm remembered = *now;
    size_t length = 0;
    const char* text = clock.NowText(&length);
    EXPECT_EQ(std::strlen(text), length);
    EXPECT_TRUE(DateTime::GetLocalDateTime(&behind));
    const Reading reading = {Printed(before), Printed(remembered), text};
    if (Printed(behind) == reading.asked) return reading;
  }
}

void ExpectTheTime(LocalClock& clock) {
  const Reading reading = ReadAll(clock);
  EXPECT_EQ(reading.remembered, reading.asked);
  EXPECT_EQ(reading.text, reading.asked);
}

TEST(LocalClock, FollowsTheZoneThatIsSetBetweenTwoCalls) {
  LocalClock clock;
  for (const char* zone : {kUtc, kItaly, kNewYork, "ABC-5:30", kUtc}) {
    const ScopedTimeZone set(zone);
    ExpectTheTime(clock);
    ExpectTheTime(clock);
  }
  // Back in the zone from before, or in none.
  ExpectTheTime(clock);
}

TEST(LocalClock, FollowsAZoneThatIsTakenAway) {
  LocalClock clock;
  const ScopedTimeZone set("XYZ9");
  ExpectTheTime(clock);
  {
    const ScopedTimeZone none(nullptr);
    ExpectTheTime(clock);
  }
  ExpectTheTime(clock);
}

TEST(LocalClock, TellsZonesApartThatAreLongerThanItKeeps) {
  LocalClock clock;
  // Alike over the first 70 characters.
  const std::string rest = ",M3.5.0/0:00:00,M10.5.0/0:00:00";
  const std::string name = "<" + std::string(60, 'A') + ">";
  for (const char* offset : {"1", "2", "1"}) {
    const ScopedTimeZone set((name + offset + "<BBB>" + offset + rest).c_str());
    ExpectTheTime(clock);
    ExpectTheTime(clock);
  }
}

}  // namespace
