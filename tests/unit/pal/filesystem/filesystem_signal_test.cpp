// Calls that a signal interrupts. The handler counts; at its hundredth run it lets the blocked
// call go on. By then the call was interrupted, since signals come as long as it blocks.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <pthread.h>
#include <sched.h>
#include <unistd.h>

#include <atomic>
#include <csignal>
#include <utility>

#include "pal/filesystem/filesystem.h"

namespace {

std::atomic<int> interruptions;
int pipe_ends[2];
bool handler_writes;

void OnSignal(int) {
  if (++interruptions != 100) return;
  char c[4096] = {'!'};
  const ssize_t moved =
      handler_writes ? write(pipe_ends[1], c, 1) : read(pipe_ends[0], c, sizeof(c));
  (void)moved;
}

class FilesystemSignalTest : public testing::Test {
 protected:
  void SetUp() override {
    interruptions = 0;
    struct sigaction action = {};
    action.sa_handler = OnSignal;  // without SA_RESTART
    sigaction(SIGUSR1, &action, &old_action_);
    ASSERT_EQ(pipe(pipe_ends), 0);
  }
  void TearDown() override {
    close(pipe_ends[0]);
    close(pipe_ends[1]);
    sigaction(SIGUSR1, &old_action_, nullptr);
  }
  // Runs work on a thread and sends it signals until it has ended.
  void Interrupt(void* (*work)(void*)) {
    std::pair<std::atomic<bool>, void* (*)(void*)> job(false, work);
    pthread_t thread;
    ASSERT_EQ(pthread_create(
                  &thread, nullptr,
                  [](void* argument) -> void* {
                    auto* the_job = static_cast<decltype(job)*>(argument);
                    void* result = the_job->second(nullptr);
                    the_job->first = true;
                    return result;
                  },
                  &job),
              0);
    while (!job.first) {
      const int sent = interruptions;
      pthread_kill(thread, SIGUSR1);
      while (interruptions == sent && !job.first) sched_yield();
    }
    void* result = nullptr;
    pthread_join(thread, &result);
    result_ = reinterpret_cast<intptr_t>(result);
  }
  struct sigaction old_action_;
  intptr_t result_ = -2;
};

TEST_F(FilesystemSignalTest, ReadGoesOnAfterASignal) {
  handler_writes = true;
  Interrupt([](void*) -> void* {
    fs_file_t file = pipe_ends[0];
    char c = 0;
    const ptrdiff_t count = fs_read(&file, &c, 1);
    return reinterpret_cast<void*>(count == 1 && c == '!' ? 1 : count - 10);
  });
  EXPECT_EQ(result_, 1);
  EXPECT_GE(interruptions, 100);
}

TEST_F(FilesystemSignalTest, WriteGoesOnAfterASignal) {
  handler_writes = false;
  // Fill the pipe, so that the next write blocks.
  fcntl(pipe_ends[1], F_SETFL, O_NONBLOCK);
  char chunk[4096] = {};
  while (write(pipe_ends[1], chunk, sizeof(chunk)) > 0) {
  }
  while (write(pipe_ends[1], chunk, 1) > 0) {
  }
  fcntl(pipe_ends[1], F_SETFL, 0);
  Interrupt([](void*) -> void* {
    fs_file_t file = pipe_ends[1];
    return reinterpret_cast<void*>(fs_write(&file, "x", 1));
  });
  EXPECT_EQ(result_, 1);
  EXPECT_GE(interruptions, 100);
}

}  // namespace
