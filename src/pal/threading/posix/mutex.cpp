#include "pal/threading/posix/mutex.h"

#include <ctime>

Mutex::Mutex() { pthread_mutex_init(&mutex_handle_, nullptr); }

Mutex::~Mutex() {
  Lock(-1);
  Unlock();
  pthread_mutex_destroy(&mutex_handle_);
}

int Mutex::Lock(int timeout) {
  if (timeout < 0) return pthread_mutex_lock(&mutex_handle_);
  timespec moment = {};
  moment.tv_sec = timeout / 1000;
  moment.tv_nsec = timeout % 1000 * 1000000L;
  return pthread_mutex_timedlock(&mutex_handle_, &moment);
}

bool Mutex::TryLock() { return pthread_mutex_trylock(&mutex_handle_) == 0; }

void Mutex::Unlock() { pthread_mutex_unlock(&mutex_handle_); }

void* Mutex::Handle() { return &mutex_handle_; }
