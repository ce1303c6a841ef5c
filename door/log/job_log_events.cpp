// What the log tells: those who wait or follow, and figures.

#include <algorithm>
#include <chrono>
#include <utility>

#include "door/log/job_log.h"

namespace lorimat::door {

void JobLog::Tell(const Job& job) const noexcept {
  TellEvent(&job);
  try {
    const bool is_over = IsFinal(job.state) || job.state == JobState::kNeedsOperator;
    if (observer_ && is_over) observer_(job.id);
  } catch (...) {
    // Whoever waits asks the log when its time is over.
  }
}

void JobLog::TellEvent(const Job* job) const noexcept {
  try {
    if (event_observer_) event_observer_(job);
  } catch (...) {
    // Whoever follows looks again before long.
  }
}

void JobLog::Commit(Transaction& unit) {
  events_.Prune();
  const auto begun = std::chrono::steady_clock::now();
  unit.Commit();
  const std::chrono::duration<double> took = std::chrono::steady_clock::now() - begun;
  figures_.commits.Add(took.count());
}

void JobLog::NoteChange(const Job& job, size_t steps) {
  known_.Note(job);
  Count(job, steps);
}

// The last so many of its steps are new.
void JobLog::Count(const Job& job, size_t steps) {
  constexpr double kSecond = 1000;  // milliseconds
  for (size_t i = job.history.size() - steps; i < job.history.size(); ++i) {
    const auto to = static_cast<size_t>(job.history[i].state);
    ++figures_.jobs[to];
    ++figures_.entered[to];
    if (i == 0) continue;
    const JobStep& before = job.history[i - 1];
    const auto from = static_cast<size_t>(before.state);
    --figures_.jobs[from];
    // A clock that was set back counts as no time.
    const int64_t time = std::max<int64_t>(job.history[i].time - before.time, 0);
    figures_.left[from].Add(static_cast<double>(time) / kSecond);
  }
  has_queued_ = figures_.jobs[static_cast<size_t>(JobState::kQueued)] > 0;
  is_at_work_ = figures_.jobs[static_cast<size_t>(JobState::kRunning)] > 0;
}

// Nearly always it is what was told before, which nobody who is at the log is to be waited for.
void JobLog::NoteText(EventKind kind, const std::string& text) {
  const std::lock_guard<std::mutex> telling(telling_);
  std::optional<std::string>& told = told_[static_cast<size_t>(kind)];
  if (told == text) return;
  {
    const std::lock_guard<std::mutex> lock(mutex_);
    const std::string_view name = EventName(kind);
    if (Value(name).value_or("") == text) {
      told = text;
      return;
    }
    Transaction unit(database_);
    PutValue(name, text);
    events_.AddText(kind, clock_(), text);
    events_.Prune();
    std::string copy = text;
    told.reset();
    unit.Commit();
    told = std::move(copy);
  }
  TellEvent(nullptr);
}

EventPage JobLog::Events(int64_t after, int limit, const std::optional<std::string>& desk) {
  const std::lock_guard<std::mutex> lock(mutex_);
  return events_.Read(after, limit, desk);
}

int64_t JobLog::LastEvent() {
  const std::lock_guard<std::mutex> lock(mutex_);
  return events_.Last();
}

LogFigures JobLog::Figures() {
  const std::lock_guard<std::mutex> lock(mutex_);
  LogFigures figures = figures_;
  figures.last_event = events_.Last();
  Statement row = database_.Prepare(
      "SELECT time FROM step WHERE number = 1 AND job ="
      " (SELECT id FROM job WHERE state = ? ORDER BY id LIMIT 1)");
  row.With(static_cast<int>(JobState::kQueued));
  if (row.Step()) figures.oldest_queued = row.Integer(0);
  return figures;
}

}  // namespace lorimat::door
