// What those who wait are to be told. Whoever tells it has one thread sent for all that comes until
// that thread takes it: to wake one costs more than all that it does then.
#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <utility>
#include <vector>

namespace lorimat::door {

struct News {
  std::vector<int64_t> jobs;  // that nobody is to wait for any longer
  bool has_events = false;
};

// Members may be called by several threads.
class GatheredNews {
 public:
  // `send` has somebody come for it, before long.
  explicit GatheredNews(std::function<void()> send) : send_(std::move(send)) {}

  // Both throw what `send` does: it is tried again with the next one.
  void AddJob(int64_t job) {
    Add([job](News* news) { news->jobs.push_back(job); });
  }
  void AddEvents() {
    Add([](News* news) { news->has_events = true; });
  }

  News Take() {
    const std::lock_guard<std::mutex> lock(mutex_);
    is_sent_ = false;
    return std::exchange(news_, {});
  }

 private:
  // Without the lock somebody is sent, who would wait for it.
  template <typename Change>
  void Add(Change change) {
    {
      const std::lock_guard<std::mutex> lock(mutex_);
      change(&news_);
      if (std::exchange(is_sent_, true)) return;
    }
    try {
      send_();
    } catch (...) {
      const std::lock_guard<std::mutex> lock(mutex_);
      is_sent_ = false;
      throw;
    }
  }

  const std::function<void()> send_;
  std::mutex mutex_;
  News news_;
  bool is_sent_ = false;
};

}  // namespace lorimat::door
