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

#include "door/job/call_watch.h"
#include "door/job/questions.h"
#include "door/job/worker.h"
#include "door/log/figures.h"

namespace lorimat::door {

struct ServiceFigures {
  Durations lines{};   // that were sent, of jobs and ahead of them
  int64_t failed = 0;  // of these, not answered with 0
};

class Service {
 public:
  struct Parts {
    JobLog& log;
    FiscalDevice& device;
    LineJudge& judge;
    LineRunner run;
    StepWatch watch = nullptr;
    // The calls of the device, on the same clock; without them none is watched.
    const CallWatch* calls = nullptr;
    // By which IsAlive goes: milliseconds of a clock that is never put back.
    CallWatch::Clock clock = &SteadyTime;
    // One of them takes longer: `hung` is called, with its job unknown in the log.
    std::chrono::milliseconds device_timeout{std::chrono::seconds(300)};
    // How the device is as this begins.
    DeviceTrouble trouble = DeviceTrouble::kNone;
    // How long that waits for the log, whose disk may hang as well.
    std::chrono::milliseconds log_grace{std::chrono::seconds(5)};
    std::function<void()> hung;
    // How long to wait where there is nothing to do, ahead of the next round; grows from this on.
    std::chrono::milliseconds first_pause{100};
    // Told, again and again, what keeps the jobs waiting: the device, what was thrown, or why the
    // device cannot be opened again; from the working thread.
    std::function<void(DeviceTrouble trouble, const std::exception* failure)> tell;
    // Told of each wait, from the working thread; may be null.
    std::function<void(std::chrono::milliseconds pause)> pauses = nullptr;
    // Told of each question that has been answered, from the working thread; may be null.
    std::function<void(int64_t question)> answered = nullptr;
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

  // Asks it between two jobs: as long as no outcome is unknown, and the device is there. False when
  // too many wait, or it cannot be asked now.
  bool Ask(std::shared_ptr<Question> question);

  DeviceTrouble trouble() const { return worker_.trouble(); }
  ServiceFigures figures() const;
  // Whether the working thread comes round, or is in a call that may take as long as it does.
  bool IsAlive() const;
  // Whether the log could not be written the last time.
  bool log_failed() const { return log_failed_; }
  // It has been, as its observer knows ahead of whoever is told of it; any thread may call it.
  void NoteWritten() { log_failed_ = false; }

 private:
  void Loop();
  // What a round came to.
  enum class Came : uint8_t { kWork, kNothing, kDevice };
  Came Round();
  // Those that wait, but behind some time the jobs come first. Whether there are more of them that
  // can be asked.
  bool AnswerQuestions() noexcept;
  bool MayAsk() const;
  // The device went away: it is opened anew, so that the next round asks it. Whether it is there
  // behind tries that failed; one that can be opened all the time and answers nothing is not.
  bool ReopenDevice();
  void Tell(DeviceTrouble trouble, const std::exception* failure) const noexcept;
  void WatchLoop();
  void NoteHang();
  void Pause(int* round);
  void NoteBeat();
  void NoteLine(long code, int64_t milliseconds);

  Parts parts_;
  Questions questions_;
  Worker worker_;
  std::mutex mutex_;
  std::condition_variable wake_;     // of the working thread, in a pause
  std::condition_variable changed_;  // of the watching thread: one of the last two
  bool pauses_ = false;
  bool stopping_ = false;
  bool woken_ = false;
  bool ended_ = false;       // the working thread
  bool hang_noted_ = false;  // in the log, or it cannot be
  bool opening_failed_ = false;
  std::atomic<bool> log_failed_{false};
  mutable std::mutex figures_mutex_;
  ServiceFigures figures_;
  // When the working thread was last seen at work: milliseconds of a steady clock.
  std::atomic<int64_t> beat_{0};
  std::thread thread_;
  std::thread watcher_;
  std::thread noter_;
};

}  // namespace lorimat::door
