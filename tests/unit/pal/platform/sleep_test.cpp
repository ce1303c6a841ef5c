#include "pal/platform/posix/sleep.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <vector>

#include "pal/platform/platform.h"

namespace {

std::vector<timespec> slept;
std::vector<timespec> interrupted_with;  // the time that is left at each interruption
int error;

// Notes the time it is asked for, and is interrupted as often as the list says.
int fake_sleep(const timespec* time, timespec* left) {
  slept.push_back(*time);
  if (error != 0) {
    errno = error;
    return -1;
  }
  if (slept.size() > interrupted_with.size()) return 0;
  *left = interrupted_with[slept.size() - 1];
  errno = EINTR;
  return -1;
}

class SleepTest : public testing::Test {
 protected:
  void SetUp() override {
    slept.clear();
    interrupted_with.clear();
    error = 0;
  }
};

TEST_F(SleepTest, MillisecondsBecomeSecondsAndNanoseconds) {
  platform::sleep_through(61150, fake_sleep);
  ASSERT_EQ(slept.size(), 1u);
  EXPECT_EQ(slept[0].tv_sec, 61);
  EXPECT_EQ(slept[0].tv_nsec, 150000000);
}

TEST_F(SleepTest, TheLongestTimeIsKept) {
  platform::sleep_through(2147483647, fake_sleep);
  ASSERT_EQ(slept.size(), 1u);
  EXPECT_EQ(slept[0].tv_sec, 2147483);
  EXPECT_EQ(slept[0].tv_nsec, 647000000);
}

TEST_F(SleepTest, ASignalLeavesTheRestToSleep) {
  interrupted_with = {{1, 5}, {0, 7}};
  platform::sleep_through(2000, fake_sleep);
  ASSERT_EQ(slept.size(), 3u);
  EXPECT_EQ(slept[0].tv_sec, 2);
  EXPECT_EQ(slept[0].tv_nsec, 0);
  EXPECT_EQ(slept[1].tv_sec, 1);
  EXPECT_EQ(slept[1].tv_nsec, 5);
  EXPECT_EQ(slept[2].tv_sec, 0);
  EXPECT_EQ(slept[2].tv_nsec, 7);
}

TEST_F(SleepTest, AnotherFailureEndsTheSleep) {
  error = EFAULT;
  platform::sleep_through(2000, fake_sleep);
  EXPECT_EQ(slept.size(), 1u);
}

TEST_F(SleepTest, NoTimeIsNoSleep) {
  platform::sleep_through(0, fake_sleep);
  platform::sleep_through(-1, fake_sleep);
  platform::sleep_through(-2147483647 - 1, fake_sleep);
  EXPECT_TRUE(slept.empty());
  platform::sleep_ms(0);
  platform::sleep_ms(-1);
}

}  // namespace
