// A condition variable over POSIX threads. As with every condition variable a wait may end
// without a signal, so callers test what they wait for in a loop.
#pragma once

#include <pthread.h>

#include <ctime>

class Mutex;

class Condition {
 public:
  Condition();
  // No thread may wait any more.
  ~Condition();
  Condition(const Condition&) = delete;
  Condition& operator=(const Condition&) = delete;

  // Lets go of the mutex, which the caller holds, waits for a signal and takes it again.
  void Wait(Mutex* mutex);
  // The same for at most timeout milliseconds: true if signalled, false when the time was
  // up. A negative time waits as long as it takes.
  bool Wait(Mutex* mutex, int timeout);
  // Wakes one waiting thread.
  void Signal();
  // Wakes them all.
  void SignalAll();

  // The moment that lies that many milliseconds ahead, on the clock of the waits.
  timespec Moment(int timeout) const;
  // Waits until a moment: true if signalled.
  bool WaitUntil(Mutex* mutex, const timespec& moment);

 private:
  pthread_cond_t condition_handle_;
  clockid_t clock_;  // the clock that times the waits
};
