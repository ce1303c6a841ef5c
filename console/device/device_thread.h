// A thread on which a plug-in is opened, called and closed: what hangs there does not hold up the
// program. Work that does not end in its time, or soon enough behind a signal of interrupt.h, is
// given up: its thread stays behind, and nothing more is run on it. What the work reads and writes
// has to be its own therefore, for it may go on at any time.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>

namespace lorimat::console {

// What a program that is told to stop leaves to a call that is at work.
inline constexpr std::chrono::seconds kStopGrace{5};

class DeviceThread {
 public:
  // `at_call` is told ahead of each work, by the thread that waits for it; may be null.
  explicit DeviceThread(std::chrono::milliseconds limit,
                        std::chrono::milliseconds grace = kStopGrace,
                        std::function<void()> at_call = nullptr);
  // Ends the thread, but for one that was given up.
  ~DeviceThread();
  DeviceThread(const DeviceThread&) = delete;
  DeviceThread& operator=(const DeviceThread&) = delete;

  // Runs the work there, and waits for its end. False when it was given up, or something was
  // before. What it throws ends the work alone: it is to leave a failure behind until it has ended.
  bool Run(const char* call, std::function<void()> work);

  struct GivenUp {
    std::string call;  // empty as long as nothing was
    std::chrono::seconds after{};
    bool interrupted = false;  // by a signal, ahead of the limit
  };
  const GivenUp& given_up() const { return given_up_; }
  // Whether a thread of any of them was given up in this process: it is to end without the work
  // that the end of a program does, which could wait for that thread.
  static bool AnyGivenUp();

 private:
  struct Shared;

  const std::chrono::milliseconds limit_;
  const std::chrono::milliseconds grace_;
  const std::function<void()> at_call_;
  std::shared_ptr<Shared> shared_;
  GivenUp given_up_;
};

}  // namespace lorimat::console
