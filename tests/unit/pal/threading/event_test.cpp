#include "pal/threading/posix/event.h"

#include <gtest/gtest.h>

#include <string>
#include <thread>
#include <vector>

namespace {

constexpr bool kAny = false, kAll = true;
constexpr bool kKeep = false, kClear = true;
constexpr bool kQuiet = false, kNotify = true;

TEST(EventTest, StartsWithoutFlagsNameAndListener) {
  Event event;
  EXPECT_EQ(event.Wait(0xFFFFFFFF, kAny, kKeep, 0), 0u);
  EXPECT_STREQ(event.name(), "");
  EXPECT_EQ(event.listener(), nullptr);
}

TEST(EventTest, KeepsFifteenCharactersOfItsName) {
  Event event;
  event.set_name("fifteen letters");
  EXPECT_STREQ(event.name(), "fifteen letters");
  event.set_name("sixteen letters!");
  EXPECT_STREQ(event.name(), "sixteen letters");
  event.set_name(std::string(5000, 'x').c_str());
  EXPECT_STREQ(event.name(), "xxxxxxxxxxxxxxx");
  event.set_name("ab");
  EXPECT_STREQ(event.name(), "ab");
  event.set_name("");
  EXPECT_STREQ(event.name(), "");
}

TEST(EventTest, WaitForAnyGivesTheAwaitedFlagsThatAreSet) {
  Event event;
  event.Set(0x80000006, kQuiet);
  EXPECT_EQ(event.Wait(0x80000003, kAny, kKeep, 0), 0x80000002u);
  EXPECT_EQ(event.Wait(0x00000008, kAny, kKeep, 0), 0u);
}

TEST(EventTest, WaitForAllNeedsEveryFlag) {
  Event event;
  event.Set(0x2, kQuiet);
  EXPECT_EQ(event.Wait(0x3, kAll, kClear, 0), 0u);
  event.Set(0x1, kQuiet);  // beside what is set
  EXPECT_EQ(event.Wait(0x3, kAll, kClear, 0), 0x3u);
}

TEST(EventTest, ClearTakesTheAwaitedFlagsAlone) {
  Event event;
  event.Set(0x7, kQuiet);
  EXPECT_EQ(event.Wait(0x3, kAny, kKeep, 0), 0x3u);
  EXPECT_EQ(event.Wait(0x3, kAny, kClear, 0), 0x3u);
  EXPECT_EQ(event.Wait(0x3, kAny, kClear, 0), 0u);
  EXPECT_EQ(event.Wait(0x7, kAny, kKeep, 0), 0x4u);
}

TEST(EventTest, WaitForNoFlagEndsAtOnce) {
  Event event;
  event.Set(0xFFFFFFFF, kQuiet);
  EXPECT_EQ(event.Wait(0, kAny, kClear, -1), 0u);
  EXPECT_EQ(event.Wait(0, kAll, kClear, -1), 0u);
}

TEST(EventTest, ResetClearsEveryFlag) {
  Event event;
  event.Set(0xFFFFFFFF, kQuiet);
  event.Reset();
  EXPECT_EQ(event.Wait(0xFFFFFFFF, kAny, kKeep, 0), 0u);
}

TEST(EventTest, AWaiterEndsWhenTheFlagComes) {
  for (int timeout : {-1, 3600000}) {
    Event event;
    uint32_t found = 0;
    std::thread waiter([&] { found = event.Wait(0x3, kAll, kClear, timeout); });
    event.Set(0x1, kQuiet);
    event.Set(0x2, kQuiet);
    waiter.join();
    EXPECT_EQ(found, 0x3u);
    EXPECT_EQ(event.Wait(0x3, kAny, kKeep, 0), 0u);
  }
}

TEST(EventTest, OneOfSeveralWaitersTakesAFlag) {
  Event event;
  int taken[4] = {};
  std::vector<std::thread> waiters;
  for (int i = 0; i < 4; ++i) {
    waiters.emplace_back([&, i] {
      // Bit 0 is passed from hand to hand; bit 1 ends the waiters.
      while (event.Wait(0x1, kAny, kClear, -1) != 0 && event.Wait(0x2, kAny, kKeep, 0) == 0) {
        ++taken[i];
        event.Set(0x4, kQuiet);
      }
      event.Set(0x1, kQuiet);
    });
  }
  for (int i = 0; i < 1000; ++i) {
    event.Set(0x1, kQuiet);
    EXPECT_EQ(event.Wait(0x4, kAny, kClear, -1), 0x4u);
  }
  event.Set(0x3, kQuiet);
  for (std::thread& waiter : waiters) waiter.join();
  EXPECT_EQ(taken[0] + taken[1] + taken[2] + taken[3], 1000);
}

class Notes : public Event::Listener {
 public:
  void OnSet(Event* event, uint32_t flags) override {
    // The flags are set and the event is free.
    seen |= event->Wait(flags, kAll, kKeep, 0);
    ++calls;
  }
  uint32_t seen = 0;
  int calls = 0;
};

TEST(EventTest, TheListenerHearsOfFlagsWhenSetSaysSo) {
  Event event;
  Notes notes;
  event.Set(0x1, kNotify);  // no listener yet
  event.set_listener(&notes);
  EXPECT_EQ(event.listener(), &notes);
  event.Set(0x2, kQuiet);
  EXPECT_EQ(notes.calls, 0);
  event.Set(0x4, kNotify);
  EXPECT_EQ(notes.calls, 1);
  EXPECT_EQ(notes.seen, 0x4u);
  event.set_listener(nullptr);
  event.Set(0x8, kNotify);
  EXPECT_EQ(notes.calls, 1);
}

}  // namespace
