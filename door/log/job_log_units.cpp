// Units of work: who waits to be accepted, and by whose commit.

#include <chrono>
#include <exception>
#include <utility>

#include "door/log/job_log.h"

namespace lorimat::door {

// One of those that wait takes the others along, with its own commit.
struct JobLog::Acceptance {
  const NewJob& job;
  bool is_over = false;
  Job accepted = {};
  bool was_there = false;
  std::exception_ptr failure = {};
  std::condition_variable wake = {};
};

Job JobLog::Accept(const NewJob& job, bool* was_there) {
  Acceptance mine{job};
  std::unique_lock<std::mutex> waiting(accepting_);
  waiting_.push_back(&mine);
  while (!mine.is_over) {
    if (is_accepting_) {
      mine.wake.wait(waiting);
    } else if (SteadyClock::now() < due_) {
      mine.wake.wait_until(waiting, due_);
    } else {
      const Batch batch = TakeWaiting();
      waiting.unlock();
      AcceptAll(batch);
      waiting.lock();
      Release(batch);
    }
  }
  waiting.unlock();
  if (mine.failure) std::rethrow_exception(mine.failure);
  *was_there = mine.was_there;
  if (!mine.was_there) TellEvent(&mine.accepted);
  return std::move(mine.accepted);
}

// Both with accepting_ taken. Nobody else accepts in between.
JobLog::Batch JobLog::TakeWaiting() {
  if (is_accepting_) return {};
  is_accepting_ = !waiting_.empty();
  return std::exchange(waiting_, {});
}

void JobLog::Release(const Batch& batch) {
  if (batch.empty()) return;
  is_accepting_ = false;
  // With the lock: they are gone behind it.
  for (Acceptance* one : batch) {
    one->is_over = true;
    one->wake.notify_one();
  }
  WakeFirst();
}

// Of those that wait the first one looks what to do, for all of them.
void JobLog::WakeFirst() {
  if (!waiting_.empty()) waiting_.front()->wake.notify_one();
}

// In one unit of work: all of it is on the disk, or nothing is.
void JobLog::CommitAll(const std::function<void()>& move, std::initializer_list<const Job*> moved,
                       const Batch& batch) {
  const std::lock_guard<std::mutex> lock(mutex_);
  // It ends ahead of the lock: behind it the next thread's unit is under way.
  Transaction unit(database_);
  if (move) move();
  for (Acceptance* one : batch) one->accepted = Accepted(one->job, &one->was_there);
  Commit(unit);
  for (const Job* job : moved) NoteChange(*job, 1);
  for (const Acceptance* one : batch) {
    if (!one->was_there) NoteChange(one->accepted, one->accepted.history.size());
  }
}

void JobLog::AcceptAll(const Batch& batch) noexcept {
  if (batch.empty()) return;
  try {
    CommitAll(nullptr, {}, batch);
  } catch (...) {
    for (Acceptance* one : batch) one->failure = std::current_exception();
  }
}

// Those that wait to be accepted ride along: they cost no commit of their own, for which the next
// move would wait. Neither takes the other with it: where both fail together each is done by
// itself.
void JobLog::MoveAll(const std::function<void()>& move, std::initializer_list<const Job*> moved) {
  Batch riders;
  {
    const std::lock_guard<std::mutex> lock(accepting_);
    riders = TakeWaiting();
  }
  std::exception_ptr failure;
  bool is_done = false;
  try {
    CommitAll(move, moved, riders);
    is_done = true;
  } catch (...) {
    failure = std::current_exception();
  }
  if (!riders.empty()) {
    if (!is_done) {
      try {
        CommitAll(move, moved, {});
        failure = nullptr;
      } catch (...) {
        failure = std::current_exception();
      }
      AcceptAll(riders);
    }
    const std::lock_guard<std::mutex> lock(accepting_);
    Release(riders);
  }
  if (failure) std::rethrow_exception(failure);
}

// The next commit of the series will come in good time, as this one did.
void JobLog::NoteSeries() {
  const SteadyClock::time_point now = SteadyClock::now();
  const std::lock_guard<std::mutex> lock(accepting_);
  const bool is_quick = last_of_series_ && now - *last_of_series_ <= ride_;
  due_ = has_queued_ && is_quick ? now + ride_ : SteadyClock::time_point();
  last_of_series_ = now;
}

// No further commit is known to come: those that wait for one go by themselves.
void JobLog::EndSeries() {
  const std::lock_guard<std::mutex> lock(accepting_);
  due_ = {};
  WakeFirst();
}

}  // namespace lorimat::door
