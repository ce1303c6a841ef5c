// The jobs that were queued as the program began. A log that was put back from a copy of its files
// has jobs in its queue that have run since, and nothing in it says so; but the device is further
// on then than the log knows. Of these jobs none begins before the device has been looked at, and
// none expires until then whose time was over as the program began: it may have been sold.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "door/job/fiscal_device.h"
#include "door/judge/line_judge.h"
#include "door/log/job_log.h"

namespace lorimat::door {

class WaitedJobs {
 public:
  // Of more documents none is looked at.
  static constexpr int kMostDocuments = 500;

  // All of these have to outlive this object. Throws RegisterError when the log cannot be read.
  WaitedJobs(JobLog& log, FiscalDevice& device, LineJudge& judge);

  // Whether there are some that have not been looked at.
  bool any() const { return !jobs_.empty(); }
  // Those of them whose time was over.
  const std::vector<int64_t>& overdue() const { return overdue_; }
  // The job that had begun has been resolved, by what the device is now.
  void NoteResolved(const DeviceNumbers& now) { known_ = now; }
  // With nothing running and nothing open: those that may have run go to an operator, the others
  // stay in the queue. False when the device does not answer now; then some of it is left to
  // another time.
  bool Settle(const DeviceState& state);

 private:
  bool IsFurther(const DeviceNumbers& now) const;
  // Whether the job that had begun, of which nobody knows, may be all that the device has more.
  bool MayBeTheBegun(const DeviceNumbers& now) const;
  // The lines of the documents that the device has registered since. Nothing where it does not tell
  // them all; Told::kNoAnswer where it may another time.
  Told FindPapers(const DeviceState& state, std::vector<std::string>* lines);
  bool MayHaveRun(const Job& job, const DeviceNumbers& now,
                  const std::optional<std::vector<std::string>>& papers);

  JobLog& log_;
  FiscalDevice& device_;
  LineJudge& judge_;
  std::vector<int64_t> jobs_;
  std::vector<int64_t> overdue_;
  std::optional<JobEffect> begun_;      // of the job that had begun as the program did
  std::optional<DeviceNumbers> known_;  // what the log knows of the device
  int asked_in_vain_ = 0;
};

}  // namespace lorimat::door
