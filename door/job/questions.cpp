#include "door/job/questions.h"

#include <algorithm>
#include <utility>

namespace lorimat::door {

bool Questions::Put(std::shared_ptr<Question> question) {
  const std::lock_guard<std::mutex> lock(mutex_);
  // While the device is at work for long nobody takes those that nobody waits for.
  waiting_.erase(std::remove_if(waiting_.begin(), waiting_.end(),
                                [](const auto& one) { return one->is_dropped.load(); }),
                 waiting_.end());
  if (waiting_.size() >= kMost) return false;
  waiting_.push_back(std::move(question));
  any_ = true;
  return true;
}

std::shared_ptr<Question> Questions::Next() {
  const std::lock_guard<std::mutex> lock(mutex_);
  std::shared_ptr<Question> next;
  while (next == nullptr && !waiting_.empty()) {
    if (!waiting_.front()->is_dropped) next = std::move(waiting_.front());
    waiting_.pop_front();
  }
  any_ = !waiting_.empty();
  return next;
}

}  // namespace lorimat::door
