// Runs the jobs of a log on a device, one after the other, and asks the device where it is not
// known what became of one. One thread calls it.
//
//   at most one effect   a job is sent only from `queued`, behind a baseline that is on the disk;
//                        it is queued again only when the device has been asked and has no effect
//   every outcome known  what was begun is concluded by the device's answers, or by asking it, also
//                        behind a crash
#pragma once

#include <atomic>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "door/job/fiscal_device.h"
#include "door/job/result_code.h"
#include "door/job/steps.h"
#include "door/job/verdict.h"
#include "door/job/waited_jobs.h"
#include "door/judge/line_judge.h"
#include "door/log/job_log.h"

namespace lorimat::door {

// The translator: runs a line, and writes its answer's text. 0 or a result code.
using LineRunner = std::function<long(const std::string& line, std::string* answer)>;

// How the door stands with its device.
enum class DeviceTrouble : uint8_t {
  kNone,
  kDocumentOpen,  // that is no job's
  kAway,          // it does not answer
  kOtherDevice,   // it is not the one of the log
};

class Worker {
 public:
  // How often a job begins at most.
  static constexpr int kMostAttempts = 3;
  // How often a device that answers is asked in vain for its last document.
  static constexpr int kMostAsked = 20;

  enum class Did : uint8_t {
    kNothing,  // there is nothing to do
    kWork,     // a job has moved
    kBlocked,  // see trouble
  };

  // `is_awaited` tells whether somebody else waits for the device: as long as that is so no job
  // begins by the commit that ends another one. Null: nobody does. `trouble` is how the device is
  // until it has been asked.
  Worker(JobLog& log, FiscalDevice& device, LineJudge& judge, LineRunner run,
         StepWatch watch = nullptr, std::function<bool()> is_awaited = nullptr,
         DeviceTrouble trouble = DeviceTrouble::kNone);

  // Does one thing: resolves what is unknown, or runs the next job. Throws RegisterError when the
  // log fails; what was begun is resolved the next time.
  Did Work();

  // Ahead of telling that a job is over it is what that leaves; any thread may ask.
  DeviceTrouble trouble() const { return trouble_; }

  // The job whose lines are being sent or concluded; 0 without one. Any thread may ask.
  int64_t at_work() const { return at_work_; }

  // Whether a job has begun, by the commit that ended the one before it, whose lines are sent next.
  bool has_begun() const { return begun_.has_value(); }
  // From here on none begins so; any thread may call it.
  void BeginNoMore() { begins_no_more_ = true; }

 private:
  struct Run;
  class AtWork;
  // A job ahead of its first line, and what is known of its lines.
  struct Begun {
    Job job;
    Judged judged;
  };

  void At(Step step) const {
    if (watch_) watch_(step);
  }
  Did Blocked(DeviceTrouble trouble);
  Did RunNext();
  Did RunBegun(const Begun& begun);
  std::optional<Judged> JudgeAgain(const Job& job, JobNews* refused);
  std::optional<DeviceState> MakeReady(const DeviceState& state);
  Did RunReset(const Job& job);
  bool Prepare();
  std::optional<DeviceState> Ask();
  std::optional<DeviceState> AskIdle();
  bool GiveUpOpen();
  void SendLines(const Job& job, const Judged& judged, Run* run);
  std::string Explain(long code, uint64_t refusals_before) const;
  bool PrintMark(const Job& job, int line, Run* run);
  void Conclude(const Job& job, const Run& run);
  void ConcludeNumbered(const Job& job, const Run& run, const DeviceState& state, bool left_open);
  void EndAndBegin(const JobMove& end, const DeviceState& state, bool is_lasting);
  bool BeginNext(const JobMove& end, const DeviceState& state);
  std::optional<DocumentName> VoidedSale(const Job& job, const Evidence& evidence);
  // Nothing while the device does not answer. With the effect answered the verdict does not wait
  // for that.
  std::optional<Verdict> JudgeNow(const Job& job, const DeviceNumbers& now, bool is_answered);
  Did Resolve(const Job& job);
  void Move(const Job& job, JobState to, Why why, const JobNews& news = {});

  JobLog& log_;
  FiscalDevice& device_;
  LineJudge& judge_;
  LineRunner run_;
  StepWatch watch_;
  std::function<bool()> is_awaited_;
  std::atomic<DeviceTrouble> trouble_;
  std::atomic<int64_t> at_work_{0};
  int asked_in_vain_ = 0;
  WaitedJobs waited_;
  std::optional<Begun> begun_;
  std::atomic<bool> begins_no_more_{false};
};

}  // namespace lorimat::door
