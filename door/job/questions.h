// What clients ask the device beside the jobs. The thread that speaks with the device asks it,
// between two jobs.
#pragma once

#include <atomic>
#include <cstdint>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>

#include "door/job/fiscal_device.h"

namespace lorimat::door {

struct Question {
  int64_t id = 0;
  // What it learns is for those who have seen `answered` true.
  std::function<void(FiscalDevice&)> ask;
  std::atomic<bool> answered{false};
  // Nobody waits for it any longer; it may be asked all the same.
  std::atomic<bool> is_dropped{false};
};

class Questions {
 public:
  static constexpr size_t kMost = 32;

  // False when too many wait. By any thread.
  bool Put(std::shared_ptr<Question> question);
  // The next one that somebody waits for; null for none.
  std::shared_ptr<Question> Next();
  // Whether any waits.
  bool any() const { return any_; }

 private:
  std::mutex mutex_;
  std::deque<std::shared_ptr<Question>> waiting_;
  std::atomic<bool> any_{false};
};

}  // namespace lorimat::door
