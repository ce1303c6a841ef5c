// The lines of a batch on their way to the library, which is played here.
#include "console/host/batch_feed.h"

#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <new>
#include <optional>
#include <string>
#include <vector>

#include "console/terminal/interrupt.h"
#include "register/client/virtual_register.h"

namespace lorimat::console {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class BatchFeeding : public testing::Test {
 protected:
  BatchFeeding()
      : client_(lorimat::RegisterSettings(), streams_),
        file_(std::filesystem::temp_directory_path() /
              ("batch_feed_test." + std::to_string(getpid()))) {
    Trace();
  }
  ~BatchFeeding() override {
    interrupted = 0;
    if (pipe_ >= 0) close(pipe_);
    std::filesystem::remove(file_);
  }

  BatchFeed& Open(const std::string& text) {
    std::ofstream(file_, std::ios::binary) << text;
    feed_.emplace(file_.string(), client_, [this](uint64_t number, const std::string& line) {
      if (throws_) throw std::bad_alloc();
      begun_.push_back(std::to_string(number) + ":" + line);
    });
    pipe_ = open(feed_->name().c_str(), O_RDONLY | O_CLOEXEC);
    EXPECT_GE(pipe_, 0);
    return *feed_;
  }
  void Trace() { client_.client()->LogTrace("a line"); }
  // What can be read now without waiting, up to a line feed; none at the end of the batch.
  std::optional<std::string> Read() {
    std::string line;
    for (char c = 0; c != '\n';) {
      pollfd input = {pipe_, POLLIN, 0};
      if (poll(&input, 1, 0) == 0) return line;
      if (read(pipe_, &c, 1) != 1) return std::nullopt;
      line += c;
    }
    return line;
  }

  Streams streams_;
  RegisterClient client_;
  const std::filesystem::path file_;
  std::optional<BatchFeed> feed_;
  std::vector<std::string> begun_;
  bool throws_ = false;
  int pipe_ = -1;
};

}  // namespace

TEST_F(BatchFeeding, GivesALineWhenTheOneAheadOfItWasTaken) {
  BatchFeed& feed = Open("A\nB\r\n\nD");
  ASSERT_TRUE(feed.is_fed());
  Trace();
  EXPECT_THAT(begun_, IsEmpty());
  EXPECT_EQ("A\r\n", Read());
  EXPECT_EQ("", Read());
  Trace();
  Trace();
  EXPECT_THAT(begun_, ElementsAre("1:A"));
  EXPECT_EQ("B\r\n", Read());
  Trace();
  EXPECT_EQ("\r\n", Read());
  Trace();
  EXPECT_EQ("D\r\n", Read());
  EXPECT_EQ("", Read());
  Trace();
  EXPECT_EQ(std::nullopt, Read());
  EXPECT_THAT(begun_, ElementsAre("1:A", "2:B", "3:", "4:D"));
  EXPECT_EQ(4u, feed.lines());
  EXPECT_EQ(std::nullopt, feed.stopped_behind());
  EXPECT_EQ("", feed.failure());
}

TEST_F(BatchFeeding, EndsAtOnceWhereThereIsNoLine) {
  BatchFeed& feed = Open("");
  EXPECT_TRUE(feed.is_fed());
  EXPECT_EQ(std::nullopt, Read());
  EXPECT_EQ(0u, feed.lines());
}

TEST_F(BatchFeeding, TakesTheNextLineBackWhenASignalComes) {
  BatchFeed& feed = Open("A\nB\nC\n");
  Read();
  Trace();
  interrupted = SIGINT;
  Trace();
  EXPECT_EQ(std::nullopt, Read());
  EXPECT_EQ(1u, feed.stopped_behind());
  EXPECT_EQ(1u, feed.lines());
}

TEST_F(BatchFeeding, EndsBehindTheLineThatBeganMeanwhile) {
  BatchFeed& feed = Open("A\nB\nC\n");
  Read();
  Trace();
  EXPECT_EQ("B\r\n", Read());
  interrupted = SIGTERM;
  Trace();
  EXPECT_EQ(std::nullopt, Read());
  EXPECT_EQ(2u, feed.stopped_behind());
  EXPECT_THAT(begun_, ElementsAre("1:A", "2:B"));
}

TEST_F(BatchFeeding, GivesNoLineBehindASignal) {
  interrupted = SIGINT;
  BatchFeed& feed = Open("A\nB\n");
  EXPECT_EQ(std::nullopt, Read());
  EXPECT_EQ(0u, feed.stopped_behind());
}

TEST_F(BatchFeeding, LeavesNobodyWaitingWhenMemoryEnds) {
  BatchFeed& feed = Open("A\nB\n");
  EXPECT_EQ("A\r\n", Read());
  throws_ = true;
  Trace();
  EXPECT_EQ(std::nullopt, Read());
  EXPECT_THROW(feed.failure(), std::bad_alloc);
}

TEST_F(BatchFeeding, CutsALineBehindWhatTheLibraryTakes) {
  Open(std::string(5000, 'x') + "\nB\n");
  EXPECT_EQ(std::string(kLongestLine + 2, 'x') + "\r\n", Read());
  Trace();
  EXPECT_EQ("B\r\n", Read());
}

TEST_F(BatchFeeding, IsNotForAClientThatHearsNothing) {
  RegisterClient deaf((lorimat::RegisterSettings()), streams_);
  std::ofstream(file_, std::ios::binary) << "A\n";
  EXPECT_FALSE(BatchFeed(file_.string(), deaf, nullptr).is_fed());
}

}  // namespace lorimat::console
