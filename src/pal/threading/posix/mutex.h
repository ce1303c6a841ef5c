// A lock over a POSIX mutex. It is not recursive: a thread that locks it twice blocks for
// ever.
#pragma once

#include <pthread.h>

class Mutex {
 public:
  Mutex();
  // Waits for the holder, if any, to let go.
  ~Mutex();
  Mutex(const Mutex&) = delete;
  Mutex& operator=(const Mutex&) = delete;

  // With a negative time waits as long as it takes. A time of 0 and above is handed on as a
  // moment since the epoch, which is long past, so the lock is taken at once or not at all:
  // this is how the timed form is meant. Milliseconds. The threading library's result, 0
  // when the lock was taken.
  int Lock(int timeout = -1);
  // Whether the lock was taken, without waiting.
  bool TryLock();
  void Unlock();
  // The pthread_mutex_t.
  void* Handle();

 private:
  pthread_mutex_t mutex_handle_;
};

// Holds a mutex for the life of a scope, also where the thread is cancelled in it.
class MutexLock {
 public:
  explicit MutexLock(Mutex* mutex) : mutex_(mutex) { mutex_->Lock(-1); }
  ~MutexLock() { mutex_->Unlock(); }
  MutexLock(const MutexLock&) = delete;
  MutexLock& operator=(const MutexLock&) = delete;

 private:
  Mutex* mutex_;
};
