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
int FakeSleep(const timespec* time, timespec* left) {
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
  platform::SleepThrough(61150, FakeSleep);
  ASSERT_EQ(slept.size(), 1u);
  EXPECT_EQ(slept[0].tv_sec, 61);
  EXPECT_EQ(slept[0].tv_nsec, 150000000);
}

TEST_F(SleepTest, TheLongestTimeIsKept) {
  platform::SleepThrough(2147483647, FakeSleep);
  ASSERT_EQ(slept.size(), 1u);
  EXPECT_EQ(slept[0].tv_sec, 2147483);
  EXPECT_EQ(slept[0].tv_nsec, 647000000);
}

TEST_F(SleepTest, ASignalLeavesTheRestToSleep) {
  interrupted_with = {{1, 5}, {0, 7}};
  platform::SleepThrough(2000, FakeSleep);
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
  platform::SleepThrough(2000, FakeSleep);
  EXPECT_EQ(slept.size(), 1u);
}

TEST_F(SleepTest, NoTimeIsNoSleep) {
  platform::SleepThrough(0, FakeSleep);
  platform::SleepThrough(-1, FakeSleep);
  platform::SleepThrough(-2147483647 - 1, FakeSleep);
  EXPECT_TRUE(slept.empty());
  platform::SleepMs(0);
  platform::SleepMs(-1);
}

}  // namespace
