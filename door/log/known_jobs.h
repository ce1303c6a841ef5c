// What of the log is in memory, so that the way of a job from its acceptance to its outcome reads
// nothing of it again: the queue, and those jobs that came or moved last. It is told what is on the
// disk, each time that this changes.
#pragma once

#include <cstdint>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <unordered_map>
#include <vector>

#include "door/log/job.h"

namespace lorimat::door {

// Members may be called by several threads.
class KnownJobs {
 public:
  // Of jobs that are over, or wait for an operator, the last ones are kept.
  static constexpr size_t kMostOver = 128;
  // What all jobs that are kept may take, in bytes: the oldest of those give way. One that has no
  // room is read from the log.
  static constexpr size_t kMostSize = 4 << 20;

  // The queue as the log has it: the numbers, and when the time of each is over. Nothing is known
  // before this is called.
  void SetQueue(std::map<int64_t, int64_t> queue);
  // Whether SetQueue has to be called again: the queue is not known, for want of memory.
  bool is_queue_lost() const;

  // It stands in the log like this.
  void Note(const Job& job) noexcept;
  // It has left the queue, and its record is to be read from the log.
  void NoteGone(int64_t id) noexcept;

  // Null where it is not kept.
  std::shared_ptr<const Job> Find(int64_t id) const;
  // The first one in the queue; nothing where that is empty.
  std::optional<int64_t> FirstQueued() const;
  size_t queued() const;
  // Those in the queue whose time is over by then, without those of these numbers.
  std::vector<int64_t> Overdue(int64_t now, const std::vector<int64_t>& but) const;

 private:
  struct Kept {
    std::shared_ptr<const Job> job;
    size_t size = 0;
  };
  void Forget(int64_t id) noexcept;
  void ForgetOldest() noexcept;

  mutable std::mutex mutex_;
  bool is_queue_lost_ = true;
  std::map<int64_t, int64_t> queue_;
  std::unordered_map<int64_t, Kept> jobs_;
  std::deque<int64_t> over_;  // of these, the oldest one first
  size_t size_ = 0;           // of these
};

}  // namespace lorimat::door
