// The progress bar: what it draws on a terminal of how many columns, and when it can tell the time
// that is left.
#include "console/terminal/progress.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <pty.h>
#include <termios.h>
#include <unistd.h>

#include <cstdlib>
#include <memory>
#include <string>

namespace lorimat::console {
namespace {

using std::chrono::steady_clock;

// Standard error as a terminal that hands everything through.
class Terminal {
 public:
  explicit Terminal(unsigned short columns) : before_(dup(STDERR_FILENO)) {
    termios mode = {};
    cfmakeraw(&mode);
    const winsize size = {24, columns, 0, 0};
    int terminal = -1;
    EXPECT_EQ(openpty(&master_, &terminal, nullptr, &mode, &size), 0);
    dup2(terminal, STDERR_FILENO);
    close(terminal);
    fcntl(master_, F_SETFL, O_NONBLOCK);
    streams_ = std::make_unique<Streams>();
    dup2(before_, STDERR_FILENO);
  }
  ~Terminal() {
    close(before_);
    close(master_);
  }
  Terminal(const Terminal&) = delete;
  Terminal& operator=(const Terminal&) = delete;

  Streams& streams() { return *streams_; }
  // What was written since the last time.
  std::string Written() {
    char text[4096];
    const ssize_t got = read(master_, text, sizeof(text));
    return got > 0 ? std::string(text, static_cast<size_t>(got)) : std::string();
  }

 private:
  int before_;
  int master_ = -1;
  std::unique_ptr<Streams> streams_;
};

class ProgressTest : public testing::Test {
 protected:
  ProgressTest() { setenv("TERM", "xterm", 1); }
  ~ProgressTest() override {
    if (before_) {
      setenv("TERM", before_->c_str(), 1);
    } else {
      unsetenv("TERM");
    }
  }
  static Progress::Clock Now() {
    return [] { return now_; };
  }

  static inline steady_clock::time_point now_ = {};

 private:
  static std::unique_ptr<std::string> Before() {
    const char* const text = std::getenv("TERM");
    return text != nullptr ? std::make_unique<std::string>(text) : nullptr;
  }
  std::unique_ptr<std::string> before_ = Before();
};

TEST_F(ProgressTest, TellsTheLinesAndTheTimeThatIsLeft) {
  Terminal terminal(80);
  Progress bar(terminal.streams(), true, 2000, Progress::Shows::kLines, Now());
  bar.Update(500);
  EXPECT_EQ(terminal.Written(), "\r[#####...............]  25%  500 of 2000 lines");
  // 1000 in 30 s: the other 1000 take 30 s.
  now_ += std::chrono::seconds(30);
  bar.Update(1000);
  EXPECT_EQ(terminal.Written(), "\r[##########..........]  50%  1000 of 2000 lines, 0:30 left");
  bar.Update(1001);
  EXPECT_EQ(terminal.Written(), "");
  // Nothing of the longer text stays.
  bar.Update(2000);
  EXPECT_EQ(terminal.Written(), "\r\x1b[K[####################] 100%");
  bar.Clear();
  EXPECT_EQ(terminal.Written(), "\r\x1b[K");
  bar.Clear();
  EXPECT_EQ(terminal.Written(), "");
}

TEST_F(ProgressTest, ABarWithoutLinesTellsTheTimeAlone) {
  Terminal terminal(80);
  Progress bar(terminal.streams(), true, 100, Progress::Shows::kPart, Now());
  now_ += std::chrono::milliseconds(999);
  bar.Update(1);
  EXPECT_EQ(terminal.Written(), "\r[........................................]   1%");
  // 10 of 100 in 600 s: 5400 s are left, an hour and a half.
  now_ += std::chrono::milliseconds(599001);
  bar.Update(10);
  EXPECT_EQ(terminal.Written(), "\r[####....................................]  10%  1:30:00 left");
  // A time that has shrunk by a column leaves none of the old one behind.
  bar.Update(50);
  EXPECT_EQ(terminal.Written(),
            "\r\x1b[K[####################....................]  50%  10:00 left");
}

TEST_F(ProgressTest, TakesWhatTheTerminalHasRoomFor) {
  now_ += std::chrono::seconds(1);
  const struct {
    unsigned short columns;
    const char* text;
  } rows[] = {{56, "  50 of 100 lines, 0:02 left"},
              {55, "  50 of 100 lines"},
              {45, "  50 of 100 lines"},
              {44, "  0:02 left"},
              {39, "  0:02 left"},
              {38, ""}};
  for (const auto& [columns, text] : rows) {
    Terminal terminal(columns);
    Progress bar(terminal.streams(), true, 100, Progress::Shows::kLines, Now());
    now_ += std::chrono::seconds(2);
    bar.Update(50);
    EXPECT_EQ(terminal.Written(), std::string("\r[##########..........]  50%") + text) << columns;
  }
}

TEST_F(ProgressTest, NothingIsDrawnWhereNobodyWantsIt) {
  Terminal terminal(80);
  for (const auto& [wanted, total] : {std::pair(false, 100), std::pair(true, 0)}) {
    Progress bar(terminal.streams(), wanted, static_cast<uint64_t>(total));
    bar.Update(50);
    EXPECT_EQ(terminal.Written(), "");
  }
  setenv("TERM", "dumb", 1);
  Progress bar(terminal.streams(), true, 100);
  bar.Update(50);
  EXPECT_EQ(terminal.Written(), "");
}

}  // namespace

}  // namespace lorimat::console
