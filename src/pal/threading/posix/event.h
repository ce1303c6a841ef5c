// A set of 32 flags that threads set and wait for.
#pragma once

#include <cstdint>

#include "pal/threading/posix/condition.h"
#include "pal/threading/posix/mutex.h"

class Event {
 public:
  // Told of flags as they are set.
  class Listener {
   public:
    virtual ~Listener() = default;
    // Runs on the thread that calls Set, outside the event's lock.
    virtual void OnSet(Event* event, uint32_t flags) = 0;
  };

  Event();
  ~Event();
  Event(const Event&) = delete;
  Event& operator=(const Event&) = delete;

  // A name of at most 15 characters; more are cut.
  void set_name(const char* name);
  const char* name() const { return name_; }

  Listener* listener() const { return listener_; }
  // The listener is not owned. Null for none. Set it before threads use the event.
  void set_listener(Listener* listener) { listener_ = listener; }

  // Waits until one of the flags is set, or, with all, until every one of them is; then
  // clears the awaited flags if clear is true, in one step with the wait, so that of several
  // waiters one takes them. Gives those awaited flags that were set, 0 when the time was up.
  // Milliseconds; 0 only looks, a negative time waits as long as it takes. No awaited flag
  // gives 0 at once.
  uint32_t Wait(uint32_t flags, bool all, bool clear, int timeout);
  // Sets the flags beside those already set and wakes the waiters; with notify it tells the
  // listener too.
  void Set(uint32_t flags, bool notify);
  // Clears every flag.
  void Reset();

 private:
  char name_[16];
  uint32_t flags_;
  Listener* listener_;
  Mutex mutex_;
  Condition condition_;
};
