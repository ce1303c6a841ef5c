#include "pal/threading/posix/condition.h"

#include "pal/threading/posix/mutex.h"

namespace {

pthread_mutex_t* Native(Mutex* mutex) { return static_cast<pthread_mutex_t*>(mutex->Handle()); }

}  // namespace

Condition::Condition() : clock_(CLOCK_MONOTONIC) {
  // Waits are timed by the clock that nobody sets, where the threading library can do it.
  pthread_condattr_t attributes;
  pthread_condattr_init(&attributes);
  if (pthread_condattr_setclock(&attributes, clock_) != 0) clock_ = CLOCK_REALTIME;
  pthread_cond_init(&condition_handle_, &attributes);
  pthread_condattr_destroy(&attributes);
}

Condition::~Condition() { pthread_cond_destroy(&condition_handle_); }

void Condition::Wait(Mutex* mutex) { pthread_cond_wait(&condition_handle_, Native(mutex)); }

bool Condition::Wait(Mutex* mutex, int timeout) {
  if (timeout >= 0) return WaitUntil(mutex, Moment(timeout));
  Wait(mutex);
  return true;
}

void Condition::Signal() { pthread_cond_signal(&condition_handle_); }

void Condition::SignalAll() { pthread_cond_broadcast(&condition_handle_); }

timespec Condition::Moment(int timeout) const {
  timespec moment = {};
  clock_gettime(clock_, &moment);
  moment.tv_sec += timeout / 1000;
  moment.tv_nsec += timeout % 1000 * 1000000L;
  if (moment.tv_nsec >= 1000000000) {
    moment.tv_nsec -= 1000000000;
    ++moment.tv_sec;
  }
  return moment;
}

bool Condition::WaitUntil(Mutex* mutex, const timespec& moment) {
  return pthread_cond_timedwait(&condition_handle_, Native(mutex), &moment) == 0;
}
