#include "console/terminal/progress.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdlib>
#include <string_view>
#include <utility>

#include "console/message/register_text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

constexpr int kWidth = 40;  // columns of the bar
// Of one that has lines behind it, so that both fit into 80 columns.
constexpr int kWidthWithLines = 20;
constexpr size_t kAroundBar = 7;  // columns of the brackets and the percentage
constexpr size_t kUsualColumns = 80;

bool TerminalCanErase() {
  const char* terminal = std::getenv("TERM");
  return terminal != nullptr && std::string_view(terminal) != "dumb";
}

std::string TimeText(std::chrono::seconds time) {
  const auto seconds = time.count();
  if (seconds < 3600) return fmt::format("{}:{:02}", seconds / 60, seconds % 60);
  return fmt::format("{}:{:02}:{:02}", seconds / 3600, seconds / 60 % 60, seconds % 60);
}

}  // namespace

Progress::Progress(Streams& streams, bool wanted, uint64_t total, Shows shows, Clock clock)
    : streams_(streams),
      active_(wanted && total > 0 && streams.error_is_terminal() && TerminalCanErase()),
      total_(total),
      shows_(shows),
      clock_(std::move(clock)) {
  if (active_) begun_ = clock_();
}

Progress::~Progress() { Clear(); }

std::string Progress::Behind(uint64_t done, size_t room) const {
  std::string text;
  const auto add = [&](std::string_view gap, const std::string& part) {
    if (ColumnCount(text) + gap.size() + ColumnCount(part) <= room) text.append(gap).append(part);
  };
  if (shows_ == Shows::kLines) add("  ", Tr("{} of {} lines", done, total_));
  // Of the first second nothing can be foretold.
  const std::chrono::duration<double> past = clock_() - begun_;
  if (past >= std::chrono::seconds(1) && done > 0) {
    const auto left = past * (static_cast<double>(total_ - done) / static_cast<double>(done));
    add(text.empty() ? "  " : ", ",
        Tr("{} left", TimeText(std::chrono::ceil<std::chrono::seconds>(left))));
  }
  return text;
}

void Progress::Update(uint64_t done) {
  if (!active_) return;
  done = std::min(done, total_);
  const double part = static_cast<double>(done) / static_cast<double>(total_);
  const int percent = static_cast<int>(part * 100);
  if (percent == drawn_) return;
  drawn_ = percent;
  const int width = shows_ == Shows::kLines ? kWidthWithLines : kWidth;
  const int full = percent * width / 100;
  const size_t columns = streams_.error_columns() != 0 ? streams_.error_columns() : kUsualColumns;
  const size_t taken = static_cast<size_t>(width) + kAroundBar;
  // A text in the last column would have some terminals go on to the next row.
  const size_t room = columns > taken ? columns - taken - 1 : 0;
  std::string behind = done == total_ ? std::string() : Behind(done, room);
  const size_t behind_columns = ColumnCount(behind);
  std::string bar = fmt::format("\r[{}{}] {:3}%", std::string(static_cast<size_t>(full), '#'),
                                std::string(static_cast<size_t>(width - full), '.'), percent);
  // What is left of a longer text goes.
  if (behind_columns < behind_) bar.insert(1, "\x1b[K");
  behind_ = behind_columns;
  streams_.Error(bar + behind);
}

void Progress::Clear() {
  if (!active_ || drawn_ < 0) return;
  drawn_ = -1;
  behind_ = 0;
  streams_.Error("\r\x1b[K");
}

}  // namespace lorimat::console
