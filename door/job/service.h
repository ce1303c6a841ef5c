// The thread that works, and the one that watches it.
#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <exception>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

#include "door/job/worker.h"

namespace lorimat::door {

class Service {
 public:
  struct Parts {
    JobLog& log;
    FiscalDevice& device;
    LineJudge& judge;
    LineRunner run;
    StepWatch watch = nullptr;
    // A call of the device that takes longer: `hung` is called, with its job unknown in the log.
    std::chrono::seconds device_timeout{300};
    std::function<void()> hung;
    // How long to wait where there is nothing to do, ahead of the next round; grows from this on.
    std::chrono::milliseconds first_pause{100};
    // Told, again and again, what keeps the jobs waiting: the device, what was thrown, or why the
    // device cannot be opened again; from the working thread.
    std::function<void(DeviceTrouble trouble, const std::exception* failure)> tell;
  };

  explicit Service(Parts parts);
  // As Stop.
  ~Service();
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;

  void Start();
  // The job at work is finished; those that are queued stay so.
  void Stop();
  // There is a job to look at.
  void Wake();

  DeviceTrouble trouble() const { return worker_.trouble(); }
  // Whether the log could not be written the last time.
  bool log_failed() const { return log_failed_; }
  // It has been, as its observer knows ahead of whoever is told of it; any thread may call it.
  void NoteWritten() { log_failed_ = false; }

 private:
  void Loop();
  // What a round came to.
  enum class Came : uint8_t { kWork, kNothing, kDevice };
  Came Round();
  // The device went away: it is opened anew, so that the next round asks it. Whether it is there
  // behind tries that failed; one that can be opened all the time and answers nothing is not.
  bool ReopenDevice();
  void Tell(DeviceTrouble trouble, const std::exception* failure) const noexcept;
  void WatchLoop();
  void Pause(int* round);
  int64_t SinceCall() const;
  void NoteCall();

  Parts parts_;
  Worker worker_;
  std::mutex mutex_;
  std::condition_variable wake_;
  bool stopping_ = false;
  bool woken_ = false;
  bool opening_failed_ = false;
  std::atomic<bool> log_failed_{false};
  std::atomic<int64_t> call_{0};  // milliseconds of a steady clock; 0: not at work
  std::thread thread_;
  std::thread watcher_;
};

}  // namespace lorimat::door
