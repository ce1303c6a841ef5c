#include "door/log/known_jobs.h"

#include <algorithm>
#include <utility>

namespace lorimat::door {
namespace {

// About what it takes.
size_t SizeOf(const Job& job) {
  size_t size = sizeof(Job) + job.desk.size() + job.key.size() + job.digest.size() +
                job.reference.size() + job.history.size() * sizeof(JobStep);
  for (const std::string& line : job.lines) size += sizeof line + line.size();
  for (const LineAnswer& answer : job.answers) {
    size += sizeof answer + answer.text.size() + answer.explanation.size();
  }
  for (const JobStep& step : job.history) size += step.note.size();
  return size;
}

}  // namespace

void KnownJobs::SetQueue(std::map<int64_t, int64_t> queue) {
  const std::lock_guard<std::mutex> lock(mutex_);
  queue_ = std::move(queue);
  is_queue_lost_ = false;
}

bool KnownJobs::is_queue_lost() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return is_queue_lost_;
}

void KnownJobs::Forget(int64_t id) noexcept {
  const auto found = jobs_.find(id);
  if (found == jobs_.end()) return;
  size_ -= found->second.size;
  jobs_.erase(found);
}

void KnownJobs::ForgetOldest() noexcept {
  Forget(over_.front());
  over_.pop_front();
}

// What is not known any more is read from the log; what is known wrongly would be told.
void KnownJobs::Note(const Job& job) noexcept {
  const std::lock_guard<std::mutex> lock(mutex_);
  Forget(job.id);
  try {
    if (job.state == JobState::kQueued) {
      queue_[job.id] = job.expires;
    } else {
      queue_.erase(job.id);
    }
  } catch (...) {
    queue_.clear();
    is_queue_lost_ = true;
  }
  try {
    const size_t size = SizeOf(job);
    if (size > kMostSize) return;
    // Those that are over give way, or large ones would keep all others out for good.
    while (size > kMostSize - size_ && !over_.empty()) ForgetOldest();
    if (size > kMostSize - size_) return;
    jobs_.emplace(job.id, Kept{std::make_shared<const Job>(job), size});
    size_ += size;
    // What waits for an operator may do so for days.
    if (!IsFinal(job.state) && job.state != JobState::kNeedsOperator) return;
    over_.push_back(job.id);
    if (over_.size() > kMostOver) ForgetOldest();
  } catch (...) {
    Forget(job.id);
  }
}

void KnownJobs::NoteGone(int64_t id) noexcept {
  const std::lock_guard<std::mutex> lock(mutex_);
  Forget(id);
  queue_.erase(id);
}

std::shared_ptr<const Job> KnownJobs::Find(int64_t id) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  const auto found = jobs_.find(id);
  return found == jobs_.end() ? nullptr : found->second.job;
}

std::optional<int64_t> KnownJobs::FirstQueued() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  if (queue_.empty()) return std::nullopt;
  return queue_.begin()->first;
}

size_t KnownJobs::queued() const {
  const std::lock_guard<std::mutex> lock(mutex_);
  return queue_.size();
}

std::vector<int64_t> KnownJobs::Overdue(int64_t now, const std::vector<int64_t>& but) const {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::vector<int64_t> over;
  for (const auto& [id, expires] : queue_) {
    if (expires <= now && std::find(but.begin(), but.end(), id) == but.end()) over.push_back(id);
  }
  return over;
}

}  // namespace lorimat::door
