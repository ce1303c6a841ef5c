#include "door/job/waited_jobs.h"

#include <limits>
#include <utility>

#include "door/job/verdict.h"

namespace lorimat::door {
namespace {

// How often a device that answers everything else is asked in vain for a document.
constexpr int kMostAsked = 20;

}  // namespace

WaitedJobs::WaitedJobs(JobLog& log, FiscalDevice& device, LineJudge& judge)
    : log_(log), device_(device), judge_(judge), known_(log.seen()) {
  for (const Job& job : log.List(JobState::kQueued, 0, std::numeric_limits<int>::max())) {
    jobs_.push_back(job.id);
    if (job.expires <= log.Now()) overdue_.push_back(job.id);
  }
  for (const JobState state : {JobState::kRunning, JobState::kUnknown}) {
    if (const std::optional<Job> job = log.First(state)) {
      begun_ = job->effect;
      if (job->baseline) known_ = job->baseline;
    }
  }
}

bool WaitedJobs::IsFurther(const DeviceNumbers& now) const {
  if (!known_) return false;
  if (now.closure != known_->closure) return now.closure > known_->closure;
  return now.document > known_->document || now.invoice > known_->invoice;
}

bool WaitedJobs::MayBeTheBegun(const DeviceNumbers& now) const {
  if (begun_ == JobEffect::kClosing) {
    return now.closure == known_->closure + 1 && now.document == 0 &&
           now.invoice == known_->invoice;
  }
  return begun_ == JobEffect::kDocument && NextDocument(*known_, now);
}

Told WaitedJobs::FindPapers(const DeviceState& state, std::vector<std::string>* lines) {
  const DeviceNumbers& now = state.numbers;
  // Of a day that has ended no number says how many documents it had.
  if (now.closure != known_->closure) return Told::kNo;
  const int64_t more = int64_t{now.document} - known_->document + now.invoice - known_->invoice;
  if (now.document < known_->document || now.invoice < known_->invoice || more > kMostDocuments) {
    return Told::kNo;
  }
  const auto find = [&](int from, int to, bool is_invoice) {
    for (int number = from + 1; number <= to; ++number) {
      std::vector<std::string> paper;
      const Told told =
          device_.FindPaper({now.closure + 1, number, is_invoice}, std::nullopt, &paper);
      if (told != Told::kYes) return told;
      if (paper.empty()) return Told::kNo;
      lines->insert(lines->end(), paper.begin(), paper.end());
    }
    return Told::kYes;
  };
  const Told told = find(known_->document, now.document, false);
  return told == Told::kYes ? find(known_->invoice, now.invoice, true) : told;
}

bool WaitedJobs::MayHaveRun(const Job& job, const DeviceNumbers& now,
                            const std::optional<std::vector<std::string>>& papers) {
  switch (job.effect) {
    case JobEffect::kReset:
      return false;
    case JobEffect::kClosing:
      return now.closure != known_->closure;
    case JobEffect::kOther:
      return true;
    case JobEffect::kDocument:
      break;
  }
  if (!papers || HasMark(*papers, job.mark)) return true;
  // What makes a sale void in one line leaves no place for a mark.
  return judge_.Judge(job.lines, true).kind == DocumentKind::kCancel;
}

bool WaitedJobs::Settle(const DeviceState& state) {
  const DeviceNumbers& now = state.numbers;
  if (!IsFurther(now)) {
    jobs_.clear();
    overdue_.clear();
    return true;
  }
  std::optional<std::vector<std::string>> papers(std::in_place);
  const Told told = FindPapers(state, &*papers);
  if (told == Told::kNoAnswer && ++asked_in_vain_ < kMostAsked) return false;
  if (told != Told::kYes) papers.reset();
  if (!papers && MayBeTheBegun(now)) jobs_.clear();
  while (!jobs_.empty()) {
    const std::optional<Job> job = log_.Find(jobs_.back());
    if (job && job->state == JobState::kQueued && MayHaveRun(*job, now, papers)) {
      // With the last one all of them have been looked at.
      JobNews news;
      if (jobs_.size() == 1) news.seen = now;
      log_.Move(job->id, JobState::kNeedsOperator, Why::kMayHaveRun, news);
    }
    jobs_.pop_back();
  }
  overdue_.clear();
  return true;
}

}  // namespace lorimat::door
