#include "pal/threading/posix/thread.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "pal/platform/platform.h"
#include "pal/threading/posix/event.h"

namespace {

class Job : public RunInterface {
 public:
  void Run() override {
    thread = Thread::Identify();
    ++runs;
  }
  unsigned long thread = 0;
  int runs = 0;
};

// Blocks until it is let go.
class Gate : public RunInterface {
 public:
  void Run() override {
    entered.Set(1, false);
    go.Wait(1, false, false, -1);
  }
  Event entered;
  Event go;
};

TEST(ThreadTest, ConstantsAreSettled) {
  EXPECT_EQ(+Thread::DEFAULT_STACK_SIZE, 4194304);
  EXPECT_EQ(+Thread::MINIMUM_STACK_SIZE, 4096);
  EXPECT_EQ(+Thread::NAME_SIZE, 18);
}

TEST(ThreadTest, RunsAnotherObject) {
  Job job;
  Thread thread(&job);
  EXPECT_EQ(thread.id(), 0ul);
  EXPECT_FALSE(thread.running());
  EXPECT_EQ(job.runs, 0);
  ASSERT_TRUE(thread.Start());
  const unsigned long id = thread.id();
  EXPECT_TRUE(thread.Join());
  EXPECT_EQ(job.runs, 1);
  EXPECT_EQ(job.thread, id);
  EXPECT_NE(job.thread, Thread::Identify());
  EXPECT_FALSE(thread.running());
}

TEST(ThreadTest, RunsAPlainFunctionWithItsState) {
  int value = 1;
  const pthread_start start = [](void* state) -> void* {
    *static_cast<int*>(state) = 2;
    return nullptr;
  };
  Thread thread(start, &value, Thread::DEFAULT_STACK_SIZE);
  ASSERT_TRUE(thread.Start());
  EXPECT_TRUE(thread.Join());
  EXPECT_EQ(value, 2);
}

void* plain_state = &plain_state;
TEST(ThreadTest, RunsAPlainFunctionWithNull) {
  const pthread_start start = [](void* state) -> void* { return plain_state = state; };
  Thread thread(start);
  ASSERT_TRUE(thread.Start());
  EXPECT_TRUE(thread.Join());
  EXPECT_EQ(plain_state, nullptr);
}

class Counting : public Thread {
 public:
  ~Counting() override { Join(); }
  void Run() override { ++runs; }
  int runs = 0;
};

TEST(ThreadTest, RunsADerivedClassesRun) {
  Counting thread;
  ASSERT_TRUE(thread.Start());
  EXPECT_TRUE(thread.Join());
  EXPECT_EQ(thread.runs, 1);
}

TEST(ThreadTest, StartTakesTheObjectToRun) {
  Job job;
  Thread thread;
  ASSERT_TRUE(thread.Start(&job));
  EXPECT_TRUE(thread.Join());
  EXPECT_EQ(job.runs, 1);
}

TEST(ThreadTest, RunWithNothingToRunReturns) {
  Thread thread;
  thread.Run();
  ASSERT_TRUE(thread.Start());
  EXPECT_TRUE(thread.Join());
}

TEST(ThreadTest, RunsUntilItsRunEnds) {
  Gate gate;
  Thread thread(&gate);
  ASSERT_TRUE(thread.Start());
  gate.entered.Wait(1, false, false, -1);
  EXPECT_TRUE(thread.running());
  gate.go.Set(1, false);
  EXPECT_TRUE(thread.Join());
  EXPECT_FALSE(thread.running());
}

TEST(ThreadTest, DoesNotStartTwiceAtATime) {
  Gate gate;
  Job job;
  Thread thread(&gate);
  ASSERT_TRUE(thread.Start());
  EXPECT_FALSE(thread.Start());
  EXPECT_FALSE(thread.Start(&job));
  gate.go.Set(1, false);
  EXPECT_TRUE(thread.Join());
  EXPECT_TRUE(thread.Start(&job));
  EXPECT_TRUE(thread.Join());
  EXPECT_EQ(job.runs, 1);
}

TEST(ThreadTest, JoinsOnceAndOnlyWhatWasStarted) {
  Job job;
  Thread thread(&job);
  EXPECT_FALSE(thread.Join());
  ASSERT_TRUE(thread.Start());
  EXPECT_TRUE(thread.Join());
  EXPECT_FALSE(thread.Join());
}

class SelfJoin : public RunInterface {
 public:
  void Run() override {
    ready.Wait(1, false, false, -1);
    joined = thread->Join();
  }
  Event ready;
  Thread* thread = nullptr;
  bool joined = true;
};

TEST(ThreadTest, DoesNotWaitForItself) {
  SelfJoin job;
  Thread thread(&job);
  job.thread = &thread;
  ASSERT_TRUE(thread.Start());
  job.ready.Set(1, false);
  // Another thread still joins it.
  EXPECT_TRUE(thread.Join());
  EXPECT_FALSE(job.joined);
}

TEST(ThreadTest, DestructionJoins) {
  Job job;
  {
    Thread thread(&job);
    ASSERT_TRUE(thread.Start());
  }
  EXPECT_EQ(job.runs, 1);
}

TEST(ThreadTest, ADetachedThreadIsNotJoined) {
  Gate gate;
  Thread thread(&gate);
  thread.Detach();  // nothing started: no effect
  ASSERT_TRUE(thread.Start());
  thread.Detach();
  EXPECT_FALSE(thread.Join());
  EXPECT_TRUE(thread.running());
  EXPECT_FALSE(thread.Start());
  gate.go.Set(1, false);
  while (thread.running()) Thread::Schedule();
}

// Waits for ever, and notes that its scope was left.
class Endless : public RunInterface {
 public:
  void Run() override {
    struct Left {
      bool* flag;
      ~Left() { *flag = true; }
    } left{&scope_left};
    entered.Set(1, false);
    never.Wait(1, false, false, -1);
  }
  Event entered;
  Event never;
  bool scope_left = false;
};

TEST(ThreadTest, AbortEndsAThreadThatWaitsAndLeavesItsScopes) {
  Endless endless;
  Thread thread(&endless);
  thread.Abort();  // nothing started: no effect
  ASSERT_TRUE(thread.Start());
  endless.entered.Wait(1, false, false, -1);
  thread.Abort();
  EXPECT_TRUE(thread.Join());
  EXPECT_TRUE(endless.scope_left);
  EXPECT_FALSE(thread.running());
  // The event's lock was let go of.
  endless.never.Set(2, false);
  thread.Abort();  // ended: no effect
}

TEST(ThreadTest, OddStackSizesStillStart) {
  for (int size : {-2147483647 - 1, -1, 0, 1, 4096, 1048577}) {
    Job job;
    Thread thread(&job, size);
    ASSERT_TRUE(thread.Start()) << size;
    EXPECT_TRUE(thread.Join());
    EXPECT_EQ(job.runs, 1);
  }
}

TEST(ThreadTest, ThreadsHaveNoNames) {
  char name[Thread::NAME_SIZE];
  std::memset(name, '#', sizeof(name));
  EXPECT_FALSE(Thread::Name(name));
  EXPECT_STREQ(name, "");
  EXPECT_EQ(name[1], '#');
  EXPECT_FALSE(Thread::Name(nullptr));
  Thread thread;
  thread.set_name("worker");
  thread.set_name(nullptr);
  EXPECT_FALSE(Thread::Name(name));
}

TEST(ThreadTest, IdentifyIsTheThreadingLibrarysNumber) {
  EXPECT_EQ(Thread::Identify(), static_cast<unsigned long>(pthread_self()));
}

std::vector<int> slept;
void NoteSleep(int milliseconds) { slept.push_back(milliseconds); }

TEST(ThreadTest, SleepGoesThroughTheClockInPlace) {
  slept.clear();
  const Thread::SleepFunction old = Thread::SetSleepFunction(NoteSleep);
  Thread::Sleep(150);
  Thread::Sleep(0);
  Thread::Sleep(-1);
  EXPECT_EQ(slept, (std::vector<int>{150, 0, -1}));
  EXPECT_EQ(Thread::SetSleepFunction(old), NoteSleep);
}

TEST(ThreadTest, NoClockGivesBackThePlatforms) {
  const Thread::SleepFunction old = Thread::SetSleepFunction(nullptr);
  EXPECT_EQ(Thread::SetSleepFunction(old), &platform::SleepMs);
}

TEST(ThreadTest, ScheduleReturns) { Thread::Schedule(); }

}  // namespace
