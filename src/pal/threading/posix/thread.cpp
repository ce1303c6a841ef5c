#include "pal/threading/posix/thread.h"

#include <sched.h>

#include <atomic>

#include "pal/platform/platform.h"

namespace {

std::atomic<Thread::SleepFunction> sleep_function{platform::SleepMs};

}  // namespace

Thread::Thread(int stack_size) : stack_size_(stack_size) {}

Thread::Thread(RunInterface* run, int stack_size) : run_(run), stack_size_(stack_size) {}

Thread::Thread(pthread_start start, int stack_size)
    : stack_size_(stack_size), thread_start_(start) {}

Thread::Thread(pthread_start start, void* state, int stack_size)
    : thread_state_(state), stack_size_(stack_size), thread_start_(start) {}

Thread::~Thread() { Join(); }

unsigned long Thread::Identify() { return static_cast<unsigned long>(pthread_self()); }

void Thread::Sleep(int milliseconds) { sleep_function.load()(milliseconds); }

void Thread::Schedule() { sched_yield(); }

bool Thread::Name(char* buffer) {
  if (buffer != nullptr) *buffer = 0;
  return false;
}

Thread::SleepFunction Thread::SetSleepFunction(SleepFunction function) {
  return sleep_function.exchange(function != nullptr ? function : platform::SleepMs);
}

unsigned long Thread::id() const {
  MutexLock lock(&thread_mutex);
  return started_ ? static_cast<unsigned long>(thread_handle_) : 0;
}

void Thread::set_name(const char*) {}

void Thread::Abort() {
  MutexLock lock(&thread_mutex);
  // The handle of a thread that was joined or let go may be another's by now.
  if (joinable_) pthread_cancel(thread_handle_);
}

bool Thread::Join() {
  pthread_t handle;
  {
    MutexLock lock(&thread_mutex);
    if (!joinable_ || IsSelf()) return false;
    joinable_ = false;
    handle = thread_handle_;
  }
  return pthread_join(handle, nullptr) == 0;
}

bool Thread::Start() {
  // Held until the handle is stored: the new thread waits for it before it runs.
  MutexLock lock(&thread_mutex);
  if (joinable_ || running_) return false;
  pthread_attr_t attributes;
  if (pthread_attr_init(&attributes) != 0) return false;
  // Where the system refuses the size, its own default stays.
  pthread_attr_setstacksize(
      &attributes,
      static_cast<size_t>(stack_size_ < MINIMUM_STACK_SIZE ? MINIMUM_STACK_SIZE : stack_size_));
  running_ = pthread_create(&thread_handle_, &attributes, Enter, this) == 0;
  pthread_attr_destroy(&attributes);
  started_ = joinable_ = running_;
  return running_;
}

bool Thread::Start(RunInterface* run) {
  {
    MutexLock lock(&thread_mutex);
    if (joinable_ || running_) return false;
    run_ = run;
  }
  return Start();
}

void Thread::Run() {
  if (run_ != nullptr) {
    run_->Run();
  } else if (thread_start_ != nullptr) {
    thread_start_(thread_state_);
  }
}

void Thread::Detach() {
  MutexLock lock(&thread_mutex);
  if (!joinable_) return;
  joinable_ = false;
  pthread_detach(thread_handle_);
}

bool Thread::running() const {
  MutexLock lock(&thread_mutex);
  return running_;
}

void* Thread::Enter(void* thread) {
  Thread* self = static_cast<Thread*>(thread);
  // Also a thread that is aborted passes here.
  struct Ended {
    Thread* self;
    ~Ended() {
      MutexLock lock(&self->thread_mutex);
      self->running_ = false;
    }
  } ended{self};
  { MutexLock lock(&self->thread_mutex); }
  self->Run();
  return nullptr;
}

bool Thread::IsSelf() const { return pthread_equal(thread_handle_, pthread_self()) != 0; }
