#include "pal/threading/posix/event.h"

#include <cstring>

Event::Event() : name_{}, flags_(0), listener_(nullptr) {}

Event::~Event() = default;

void Event::set_name(const char* name) {
  const size_t room = sizeof(name_) - 1;
  const void* nul = std::memchr(name, 0, room);
  const size_t length = nul ? static_cast<size_t>(static_cast<const char*>(nul) - name) : room;
  std::memmove(name_, name, length);
  name_[length] = 0;
}

uint32_t Event::Wait(uint32_t flags, bool all, bool clear, int timeout) {
  if (flags == 0) return 0;
  const timespec moment = condition_.Moment(timeout < 0 ? 0 : timeout);
  MutexLock lock(&mutex_);
  bool in_time = true;
  for (;;) {
    const uint32_t found = flags_ & flags;
    if (all ? found == flags : found != 0) {
      if (clear) flags_ &= ~flags;
      return found;
    }
    if (!in_time) return 0;
    if (timeout < 0) {
      condition_.Wait(&mutex_);
    } else {
      // Flags that come at the last moment count: they are looked at once more.
      in_time = condition_.WaitUntil(&mutex_, moment);
    }
  }
}

void Event::Set(uint32_t flags, bool notify) {
  {
    MutexLock lock(&mutex_);
    flags_ |= flags;
    condition_.SignalAll();
  }
  if (notify && listener_ != nullptr) listener_->OnSet(this, flags);
}

void Event::Reset() {
  MutexLock lock(&mutex_);
  flags_ = 0;
}
