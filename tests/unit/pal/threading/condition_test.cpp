#include "pal/threading/posix/condition.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "pal/threading/posix/mutex.h"

namespace {

TEST(ConditionTest, WaitLetsGoOfTheMutexAndEndsBySignal) {
  Mutex mutex;
  Condition condition;
  bool ready = false;
  mutex.Lock(-1);
  std::thread signaller([&] {
    mutex.Lock(-1);  // taken only because the waiter lets go of it
    ready = true;
    condition.Signal();
    mutex.Unlock();
  });
  while (!ready) condition.Wait(&mutex);
  EXPECT_FALSE(mutex.TryLock());  // the waiter holds it again
  mutex.Unlock();
  signaller.join();
}

TEST(ConditionTest, TimedWaitTellsASignalFromTheEndOfTheTime) {
  Mutex mutex;
  Condition condition;
  mutex.Lock(-1);
  EXPECT_FALSE(condition.Wait(&mutex, 0));
  bool ready = false;
  std::thread signaller([&] {
    mutex.Lock(-1);
    ready = true;
    condition.Signal();
    mutex.Unlock();
  });
  while (!ready) EXPECT_TRUE(condition.Wait(&mutex, 3600000));
  mutex.Unlock();
  signaller.join();
}

TEST(ConditionTest, ANegativeTimeWaitsForTheSignal) {
  Mutex mutex;
  Condition condition;
  bool ready = false;
  mutex.Lock(-1);
  std::thread signaller([&] {
    mutex.Lock(-1);
    ready = true;
    condition.Signal();
    mutex.Unlock();
  });
  while (!ready) EXPECT_TRUE(condition.Wait(&mutex, -1));
  mutex.Unlock();
  signaller.join();
}

TEST(ConditionTest, SignalAllWakesEveryWaiter) {
  Mutex mutex;
  Condition condition;
  int waiting = 0;
  bool go = false;
  std::vector<std::thread> waiters;
  for (int i = 0; i < 4; ++i) {
    waiters.emplace_back([&] {
      MutexLock lock(&mutex);
      ++waiting;
      while (!go) condition.Wait(&mutex);
      --waiting;
    });
  }
  for (;;) {
    MutexLock lock(&mutex);
    if (waiting == 4) {
      go = true;
      condition.SignalAll();
      break;
    }
  }
  for (std::thread& waiter : waiters) waiter.join();
  EXPECT_EQ(waiting, 0);
}

TEST(ConditionTest, MomentsLieAheadByTheTimeGiven) {
  Condition condition;
  const timespec now = condition.Moment(0);
  const timespec later = condition.Moment(2147483647);
  EXPECT_GE(later.tv_sec - now.tv_sec, 2147483);
  for (int timeout : {1, 999, 1000, 1001, 999999}) {
    const timespec moment = condition.Moment(timeout);
    EXPECT_GE(moment.tv_nsec, 0);
    EXPECT_LT(moment.tv_nsec, 1000000000);
    const int64_t ahead =
        (moment.tv_sec - now.tv_sec) * INT64_C(1000000000) + (moment.tv_nsec - now.tv_nsec);
    EXPECT_GE(ahead, timeout * INT64_C(1000000));
  }
}

}  // namespace
