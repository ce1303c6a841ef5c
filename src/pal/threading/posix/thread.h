// Threads over POSIX threads. The library starts none of its own; it uses the static
// operations.
#pragma once

#include <pthread.h>

#include "pal/threading/posix/mutex.h"
#include "pal/threading/posix/runinterface.h"

// A plain thread function. What it returns is dropped.
using pthread_start = void* (*)(void*);

class Thread : public RunInterface {
 public:
  static constexpr int DEFAULT_STACK_SIZE = 0x400000;  // bytes
  static constexpr int MINIMUM_STACK_SIZE = 4096;      // bytes
  static constexpr int NAME_SIZE = 18;                 // a thread's name and its NUL, bytes

  // What the thread runs: its own Run of a derived class, another object's, a plain function
  // with null, a plain function with a state. What is handed over is not owned and outlives
  // the run. A stack size that the system refuses gives its default.
  explicit Thread(int stack_size = DEFAULT_STACK_SIZE);
  explicit Thread(RunInterface* run, int stack_size = DEFAULT_STACK_SIZE);
  explicit Thread(pthread_start start, int stack_size = DEFAULT_STACK_SIZE);
  Thread(pthread_start start, void* state, int stack_size = DEFAULT_STACK_SIZE);
  // Joins a thread that was started and neither joined nor detached. A derived class joins
  // in its own destructor, since the thread runs its Run; a detached thread's object
  // outlives the run.
  ~Thread() override;
  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

  // The calling thread's number.
  static unsigned long Identify();
  // Blocks the calling thread for that many milliseconds; not at all for 0 and below.
  static void Sleep(int milliseconds);
  // Lets other threads run.
  static void Schedule();
  // Threads have no names here: empties the buffer, of NAME_SIZE bytes, unless it is null,
  // and gives false.
  static bool Name(char* buffer);

  using SleepFunction = void (*)(int milliseconds);
  // Replaces what Sleep waits by, for all threads; null gives back the platform's own. The
  // result is the function replaced. Tests put a clock of their own here.
  static SleepFunction SetSleepFunction(SleepFunction function);

  // The number of the thread last started, 0 before.
  unsigned long id() const;
  // Threads have no names here: does nothing.
  void set_name(const char* name);
  // Asks the thread to end where it next waits; Join then waits for it. Its scopes are left
  // in order.
  void Abort();
  // Waits for the thread's end: true once it has ended, false when there is none to wait
  // for, or when a thread would wait for itself.
  bool Join();
  // Starts the thread; false while the one started before runs or waits to be joined, or when
  // the system has no thread to give.
  bool Start();
  // The same, to run that object.
  bool Start(RunInterface* run);
  // What the thread runs: what the constructor or Start got. A derived class runs its own.
  void Run() override;
  // Lets the thread go: it ends by itself and is not joined.
  void Detach();
  // From Start until the thread's Run ended.
  bool running() const;

 private:
  static void* Enter(void* thread);
  bool IsSelf() const;

  bool running_ = false;
  RunInterface* run_ = nullptr;
  void* thread_state_ = nullptr;
  pthread_t thread_handle_ = {};
  int stack_size_;
  pthread_start thread_start_ = nullptr;
  mutable Mutex thread_mutex;  // guards the flags and the handle
  bool started_ = false;       // there is a handle
  bool joinable_ = false;      // neither joined nor detached
};
