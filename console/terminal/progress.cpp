#include "console/terminal/progress.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <string_view>

namespace lorimat::console {
namespace {

constexpr int kWidth = 40;  // columns of the bar

bool terminal_can_erase() {
  const char* terminal = std::getenv("TERM");
  return terminal != nullptr && std::string_view(terminal) != "dumb";
}

}  // namespace

Progress::Progress(Streams& streams, bool wanted, uint64_t total)
    : streams_(streams),
      active_(wanted && total > 0 && streams.error_is_terminal() && terminal_can_erase()),
      total_(total) {}

Progress::~Progress() { clear(); }

void Progress::update(uint64_t done) {
  if (!active_) return;
  const double part = static_cast<double>(std::min(done, total_)) / static_cast<double>(total_);
  const int percent = static_cast<int>(part * 100);
  if (percent == drawn_) return;
  drawn_ = percent;
  const int full = percent * kWidth / 100;
  streams_.error(fmt::format("\r[{}{}] {:3}%", std::string(static_cast<size_t>(full), '#'),
                             std::string(static_cast<size_t>(kWidth - full), '.'), percent));
}

void Progress::clear() {
  if (!active_ || drawn_ < 0) return;
  drawn_ = -1;
  streams_.error("\r\x1b[K");
}

}  // namespace lorimat::console
