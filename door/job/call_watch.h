// How long the call of the device takes that is at work: one call by itself, without those ahead of
// it and without what is written between two of them. One thread calls the device, another looks.
#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <optional>

namespace lorimat::door {

// Milliseconds of the computer's clock that is never put back.
int64_t SteadyTime();

class CallWatch {
 public:
  using Clock = std::function<int64_t()>;  // milliseconds, of a clock that is never put back

  // Null is the computer's.
  explicit CallWatch(Clock clock = nullptr);

  void Begin() { begun_ = clock_(); }
  void End() {
    NoteSign();
    begun_ = kNone;
  }
  // Something comes by between two calls, or ahead of one that is not watched. Any thread may tell.
  void NoteSign() { sign_ = clock_(); }
  // When the last call ended, or something came by, on the clock; 0 for never. Any thread may ask.
  int64_t last_sign() const { return sign_; }
  // Milliseconds since the call at work has begun; nothing where none is. Any thread may ask.
  std::optional<int64_t> Since() const;

 private:
  static constexpr int64_t kNone = -1;

  Clock clock_;
  std::atomic<int64_t> begun_{kNone};
  std::atomic<int64_t> sign_{0};
};

// A call, whichever way it ends.
class WatchedCall {
 public:
  explicit WatchedCall(CallWatch& watch) : watch_(watch) { watch_.Begin(); }
  ~WatchedCall() { watch_.End(); }
  WatchedCall(const WatchedCall&) = delete;
  WatchedCall& operator=(const WatchedCall&) = delete;

 private:
  CallWatch& watch_;
};

}  // namespace lorimat::door
