#include "pal/threading/posix/mutex.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <memory>
#include <thread>
#include <vector>

namespace {

// What another thread finds.
bool OtherThreadTakes(Mutex* mutex) {
  bool taken = false;
  std::thread([&] {
    taken = mutex->TryLock();
    if (taken) mutex->Unlock();
  }).join();
  return taken;
}

TEST(MutexTest, LockKeepsOthersOutUntilUnlock) {
  Mutex mutex;
  EXPECT_EQ(mutex.Lock(-1), 0);
  EXPECT_FALSE(OtherThreadTakes(&mutex));
  mutex.Unlock();
  EXPECT_TRUE(OtherThreadTakes(&mutex));
}

TEST(MutexTest, TryLockTellsWhetherItTookTheLock) {
  Mutex mutex;
  EXPECT_TRUE(mutex.TryLock());
  EXPECT_FALSE(mutex.TryLock());
  mutex.Unlock();
}

TEST(MutexTest, TheTimedFormTakesAFreeLock) {
  Mutex mutex;
  for (int timeout : {0, 1, 1999, 2147483647}) {
    EXPECT_EQ(mutex.Lock(timeout), 0);
    EXPECT_FALSE(OtherThreadTakes(&mutex));
    mutex.Unlock();
  }
}

// The time is a moment shortly after the epoch: long past, whatever it says.
TEST(MutexTest, TheTimedFormGivesUpAHeldLockAtOnce) {
  Mutex mutex;
  mutex.Lock(-1);
  std::thread([&] {
    EXPECT_EQ(mutex.Lock(0), ETIMEDOUT);
    EXPECT_EQ(mutex.Lock(1500), ETIMEDOUT);
    EXPECT_EQ(mutex.Lock(1000000000), ETIMEDOUT);
  }).join();
  mutex.Unlock();
}

TEST(MutexTest, ANegativeTimeWaitsForTheHolder) {
  Mutex mutex;
  int count = 0;
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&] {
      for (int j = 0; j < 10000; ++j) {
        ASSERT_EQ(mutex.Lock(-5), 0);
        ++count;
        mutex.Unlock();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(count, 40000);
}

TEST(MutexTest, DestructionWaitsForTheHolder) {
  auto mutex = std::make_unique<Mutex>();
  std::atomic<bool> held{false};
  std::atomic<bool> let_go{false};
  Mutex* shared = mutex.get();
  std::thread holder([&] {
    shared->Lock(-1);
    held = true;
    for (int i = 0; i < 1000; ++i) std::this_thread::yield();
    let_go = true;
    shared->Unlock();
  });
  while (!held) std::this_thread::yield();
  mutex.reset();
  EXPECT_TRUE(let_go);
  holder.join();
}

TEST(MutexTest, TheHandleIsThePosixMutex) {
  Mutex mutex;
  auto* handle = static_cast<pthread_mutex_t*>(mutex.Handle());
  ASSERT_EQ(pthread_mutex_trylock(handle), 0);
  EXPECT_FALSE(mutex.TryLock());
  pthread_mutex_unlock(handle);
  EXPECT_TRUE(mutex.TryLock());
  mutex.Unlock();
}

TEST(MutexLockTest, HoldsForAScope) {
  Mutex mutex;
  {
    MutexLock lock(&mutex);
    EXPECT_FALSE(OtherThreadTakes(&mutex));
  }
  EXPECT_TRUE(OtherThreadTakes(&mutex));
}

}  // namespace
