// A progress bar on a terminal, for a run that takes a while; nothing anywhere else.
#pragma once

#include <cstdint>

#include "console/terminal/streams.h"

namespace lorimat::console {

class Progress {
 public:
  // Files smaller than this are over before a bar can be read.
  static constexpr uint64_t kLongFile = 16384;  // bytes

  // Shows nothing unless wanted is set, standard error is a terminal and total is not 0.
  Progress(Streams& streams, bool wanted, uint64_t total);
  ~Progress();
  Progress(const Progress&) = delete;
  Progress& operator=(const Progress&) = delete;

  // done of total; drawn again only when the percentage changes.
  void update(uint64_t done);
  // Takes the bar off the terminal, before other text is written and at the end.
  void clear();

 private:
  Streams& streams_;
  bool active_;
  uint64_t total_;
  int drawn_ = -1;
};

}  // namespace lorimat::console
