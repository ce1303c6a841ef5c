// A progress bar on a terminal, for work that takes a while; nothing anywhere else. Behind the bar
// stand the lines, where it counts them, and the time that is left, once it can be told.
#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>

#include "console/terminal/streams.h"

namespace lorimat::console {

class Progress {
 public:
  // Files smaller than this are over before a bar can be read.
  static constexpr uint64_t kLongFile = 16384;  // bytes

  enum class Shows { kPart, kLines };
  // Any clock that goes forward.
  using Clock = std::function<std::chrono::steady_clock::time_point()>;

  // Shows nothing unless wanted is set, standard error is a terminal and total is not 0. With
  // kLines the total is one of lines.
  Progress(Streams& streams, bool wanted, uint64_t total, Shows shows = Shows::kPart,
           Clock clock = &std::chrono::steady_clock::now);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // done of total; drawn again only when the percentage changes.
  void Update(uint64_t done);
  // Takes the bar off the terminal, before other text is written and at the end.
  void Clear();

 private:
  // What stands behind the percentage, as far as the terminal has room for it.
  std::string Behind(uint64_t done, size_t room) const;

  Streams& streams_;
  bool active_;
  uint64_t total_;
  Shows shows_;
  Clock clock_;
  std::chrono::steady_clock::time_point begun_;
  int drawn_ = -1;
  size_t behind_ = 0;  // columns that are drawn behind the percentage
};

}  // namespace lorimat::console
