#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <ctime>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "pal/threading/posix/thread.h"
#include "unit/pal/time_zone.h"
#include "unit/utility/log_fixture.h"

namespace {

const Log::LocationInfo kPlace("file.cpp", "Method", 1, 0);

class LogFileTest : public LogFolderTest {
 protected:
  // A log into that file, as a new process has one.
  std::unique_ptr<OpenLog> Make(const std::string& name, Log::RotateKind kind) {
    auto log = std::make_unique<OpenLog>();
    log->set_outputs(Log::LO_FILE);
    log->set_output_file_name(name.c_str());
    log->set_file_rotate(kind);
    return log;
  }

  // Writes a line and gives it, as it must stand in the file.
  static std::string Write(OpenLog* log, const std::string& message) {
    log->Write(Log::LL_INFO, kPlace, message.c_str());
    return log->output_;
  }

  static void SetAge(const std::string& name, time_t seconds) {
    const timespec then = {time(nullptr) - seconds, 0};
    const timespec times[2] = {then, then};
    ASSERT_EQ(utimensat(AT_FDCWD, name.c_str(), times, 0), 0);
  }

  int32_t stored_position() const {
    const std::string raw = Contents(name_ + "~");
    EXPECT_EQ(raw.size(), 4u);
    int32_t position = -1;
    if (raw.size() == 4) raw.copy(reinterpret_cast<char*>(&position), 4);
    return position;
  }

  void PutPosition(int32_t position) {
    Put(name_ + "~", std::string(reinterpret_cast<const char*>(&position), 4));
  }
};

TEST_F(LogFileTest, LinesReachAnOpenFileAtOnce) {
  auto log = Make(name_, Log::LR_NONE);
  const std::string none = Write(log.get(), "before");
  log->OpenFile(true);
  EXPECT_TRUE(log->output_file_opened_);
  const std::string first = Write(log.get(), "first");
  EXPECT_EQ(Contents(name_), first);
  const std::string second = Write(log.get(), "second");
  EXPECT_EQ(Contents(name_), first + second);
  EXPECT_NE(first.find(" - first\n"), std::string::npos);
}

TEST_F(LogFileTest, AFileThatIsNotWantedGetsNoLine) {
  auto log = Make(name_, Log::LR_NONE);
  log->OpenFile(true);
  log->set_outputs(Log::LO_NULL);
  Write(log.get(), "x");
  EXPECT_EQ(Contents(name_), "");
}

TEST_F(LogFileTest, AppendKeepsAnOldFileAndItsAbsenceEmptiesIt) {
  Put(name_, "old\n");
  auto log = Make(name_, Log::LR_NONE);
  log->OpenFile(true);
  const std::string line = Write(log.get(), "x");
  EXPECT_EQ(Contents(name_), "old\n" + line);
  log->OpenFile(false);
  EXPECT_EQ(Contents(name_), "");
}

TEST_F(LogFileTest, TheNameFollowsTheDate) {
  auto log = Make(name_ + "-%%-%Y", Log::LR_NONE);
  log->OpenFile(true);
  const std::string line = Write(log.get(), "x");
  const std::string year = line.substr(0, 4);
  EXPECT_EQ(Contents(name_ + "-%-" + year), line);
  EXPECT_EQ(log->last_opened_date_.tm_year + 1900, std::stoi(year));
}

TEST_F(LogFileTest, AFileThatCannotBeOpenedIsPassedOver) {
  for (Log::RotateKind kind : {Log::LR_NONE, Log::LR_SIZE, Log::LR_WEEKLY}) {
    // A missing folder, a folder, no name, and a name that grows too long.
    for (const std::string& name : {folder_ + "/missing/log", folder_, std::string(),
                                    "/" + std::string(64, '%') + "Y%Y%c%c%c%c%c%c%c"}) {
      auto log = Make(name, kind);
      log->OpenFile(true);
      EXPECT_FALSE(log->output_file_opened_) << name;
      EXPECT_EQ(log->last_opened_date_.tm_mday, 0);
      Write(log.get(), "x");
    }
  }
}

TEST_F(LogFileTest, AFullDeviceFailsNobody) {
  auto log = Make("/dev/full", Log::LR_NONE);
  log->OpenFile(true);
  EXPECT_TRUE(log->output_file_opened_);
  Write(log.get(), "x");
  Write(log.get(), "y");
}

TEST_F(LogFileTest, AFolderWithoutRightsFailsNobody) {
  for (Log::RotateKind kind : {Log::LR_NONE, Log::LR_SIZE, Log::LR_WEEKLY}) {
    // Nobody may make a file in here, whoever runs the test.
    auto log = Make("/proc/log", kind);
    log->OpenFile(true);
    EXPECT_FALSE(log->output_file_opened_);
    Write(log.get(), "x");
  }
}

TEST_F(LogFileTest, AFileThatIsRemovedFailsNobodyAndComesBackWhenOpened) {
  for (Log::RotateKind kind : {Log::LR_NONE, Log::LR_SIZE, Log::LR_WEEKLY}) {
    auto log = Make(name_, kind);
    log->OpenFile(false);
    Write(log.get(), "lost");
    std::filesystem::remove_all(folder_);
    Write(log.get(), "lost too");
    EXPECT_FALSE(std::filesystem::exists(name_));
    std::filesystem::create_directory(folder_);
    log->OpenFile(false);
    const std::string line = Write(log.get(), "back");
    EXPECT_EQ(Contents(name_), line);
    log->CloseFile();
    std::filesystem::remove(name_);
  }
}

TEST_F(LogFileTest, CloseLetsTheFilesGoAndMayComeTwice) {
  const int probe = open("/dev/null", O_RDONLY);
  close(probe);
  for (Log::RotateKind kind : {Log::LR_NONE, Log::LR_SIZE, Log::LR_WEEKLY}) {
    auto log = Make(name_, kind);
    log->OpenFile(true);
    EXPECT_TRUE(log->output_file_opened_);
    log->CloseFile();
    EXPECT_FALSE(log->output_file_opened_);
    log->CloseFile();
    const std::string before = Contents(name_);
    Write(log.get(), "x");
    EXPECT_EQ(Contents(name_), before);
    log->OpenFile(true);
    log->OpenFile(true);  // the one open before is not lost
  }                       // and the destructor closes
  const int again = open("/dev/null", O_RDONLY);
  EXPECT_EQ(again, probe);
  close(again);
}

// --- By size.

TEST_F(LogFileTest, SizeStoresThePositionBehindEachLine) {
  auto log = Make(name_, Log::LR_SIZE);
  log->OpenFile(true);
  const std::string first = Write(log.get(), "first");
  EXPECT_EQ(stored_position(), static_cast<int32_t>(first.size()));
  const std::string second = Write(log.get(), "second");
  EXPECT_EQ(stored_position(), static_cast<int32_t>(first.size() + second.size()));
  EXPECT_EQ(Contents(name_), first + second);
}

TEST_F(LogFileTest, SizeStartsAgainAtTheTopAndLeavesOldBytesBehind) {
  auto log = Make(name_, Log::LR_SIZE);
  log->OpenFile(true);
  const std::string first = Write(log.get(), "a long first line, of which an end stays");
  log->set_file_rotate_size(static_cast<int32_t>(first.size()));
  const std::string second = Write(log.get(), "2");  // past the size: whole, then the top
  const std::string both = first + second;
  EXPECT_EQ(Contents(name_), both);
  EXPECT_EQ(stored_position(), static_cast<int32_t>(both.size()));
  const std::string third = Write(log.get(), "3");
  EXPECT_EQ(Contents(name_), third + both.substr(third.size()));
  EXPECT_EQ(stored_position(), static_cast<int32_t>(third.size()));
}

TEST_F(LogFileTest, SizeReachedExactlyIsNotPassed) {
  auto log = Make(name_, Log::LR_SIZE);
  log->OpenFile(true);
  const std::string first = Write(log.get(), "first");
  // The next line is as long: it ends exactly at the size.
  log->set_file_rotate_size(static_cast<int32_t>(first.size() * 2));
  const std::string second = Write(log.get(), "secnd");
  const std::string third = Write(log.get(), "third");
  EXPECT_EQ(Contents(name_), first + second + third);
}

TEST_F(LogFileTest, SizeGoesOnWhereTheLastProcessStopped) {
  Put(name_, std::string(500, 'o'));
  PutPosition(100);
  for (bool append : {true, false}) {  // which does not count here
    PutPosition(100);
    auto log = Make(name_, Log::LR_SIZE);
    log->OpenFile(append);
    const std::string line = Write(log.get(), "x");
    EXPECT_EQ(Contents(name_), std::string(100, 'o') + line + std::string(400 - line.size(), 'o'));
  }
}

TEST_F(LogFileTest, SizeStoresThePositionBeforeItStartsAgain) {
  std::string first;
  {
    auto log = Make(name_, Log::LR_SIZE);
    log->set_file_rotate_size(10);
    log->OpenFile(true);
    first = Write(log.get(), "first");
  }
  auto log = Make(name_, Log::LR_SIZE);
  log->OpenFile(true);
  const std::string second = Write(log.get(), "second");
  EXPECT_EQ(Contents(name_), first + second);
}

TEST_F(LogFileTest, SizeWithoutAUsablePositionStartsAtTheTop) {
  const int32_t negative = -5;
  for (const std::string& raw : {std::string(), std::string("\x05"), std::string("\x05\0\0", 3),
                                 std::string(reinterpret_cast<const char*>(&negative), 4)}) {
    Put(name_, std::string(500, 'o'));
    Put(name_ + "~", raw);
    auto log = Make(name_, Log::LR_SIZE);
    log->OpenFile(true);
    const std::string line = Write(log.get(), "x");
    EXPECT_EQ(Contents(name_), line + std::string(500 - line.size(), 'o')) << raw.size();
  }
}

TEST_F(LogFileTest, SizeWithoutAPositionFileStartsAtTheTop) {
  Put(name_, std::string(500, 'o'));
  auto log = Make(name_, Log::LR_SIZE);
  log->OpenFile(true);
  const std::string line = Write(log.get(), "x");
  EXPECT_EQ(Contents(name_), line + std::string(500 - line.size(), 'o'));
}

TEST_F(LogFileTest, SizeNeedsBothFiles) {
  const int probe = open("/dev/null", O_RDONLY);
  close(probe);
  std::filesystem::create_directory(name_ + "~");
  auto log = Make(name_, Log::LR_SIZE);
  log->OpenFile(true);
  EXPECT_FALSE(log->output_file_opened_);
  Write(log.get(), "x");
  EXPECT_EQ(Contents(name_), "");
  const int again = open("/dev/null", O_RDONLY);
  EXPECT_EQ(again, probe);  // the one that opened was closed
  close(again);
}

TEST_F(LogFileTest, OtherKindsMakeNoPositionFile) {
  for (Log::RotateKind kind : {Log::LR_NONE, Log::LR_WEEKLY}) {
    auto log = Make(name_, kind);
    log->OpenFile(true);
    Write(log.get(), "x");
    EXPECT_FALSE(std::filesystem::exists(name_ + "~"));
  }
}

TEST_F(LogFileTest, AKindThatChangesWhileTheFileIsOpenIsSafe) {
  auto log = Make(name_, Log::LR_NONE);
  log->set_file_rotate_size(0);
  log->OpenFile(true);
  log->set_file_rotate(Log::LR_SIZE);
  Write(log.get(), "x");
  log->OpenFile(true);
  log->set_file_rotate(Log::LR_NONE);
  Write(log.get(), "x");
  log->CloseFile();
  log->OpenFile(true);
  log->CloseFile();
}

// --- By day.

constexpr time_t kDay = 86400;

TEST_F(LogFileTest, WeeklyWritesOverAFileOfAnEarlierDay) {
  Put(name_, "old\n");
  SetAge(name_, 7 * kDay);
  auto log = Make(name_, Log::LR_WEEKLY);
  log->OpenFile(true);
  const std::string line = Write(log.get(), "x");
  EXPECT_EQ(Contents(name_), line);
}

TEST_F(LogFileTest, WeeklyAppendsToAFileOfToday) {
  Put(name_, "old\n");
  auto log = Make(name_, Log::LR_WEEKLY);
  log->OpenFile(true);
  const std::string line = Write(log.get(), "x");
  EXPECT_EQ(Contents(name_), "old\n" + line);
}

TEST_F(LogFileTest, NoRotationAppendsToAFileOfAnEarlierDay) {
  Put(name_, "old\n");
  SetAge(name_, 7 * kDay);
  auto log = Make(name_, Log::LR_NONE);
  log->OpenFile(true);
  const std::string line = Write(log.get(), "x");
  EXPECT_EQ(Contents(name_), "old\n" + line);
}

TEST_F(LogFileTest, WeeklyOpensTheFileOfANewDayBehindALine) {
  auto log = Make(name_, Log::LR_WEEKLY);
  log->OpenFile(true);
  const tm today = log->last_opened_date_;
  // As if the file were opened yesterday, and today's name were another.
  tm yesterday = today;
  --yesterday.tm_mday;
  mktime(&yesterday);
  log->last_opened_date_ = yesterday;
  const std::string next = folder_ + "/next";
  Put(next, "a week old\n");
  log->set_output_file_name(next.c_str());
  const std::string first = Write(log.get(), "first");
  EXPECT_EQ(Contents(name_), first);
  EXPECT_EQ(Contents(next), "");
  EXPECT_EQ(log->last_opened_date_.tm_mday, today.tm_mday);
  EXPECT_EQ(log->last_opened_date_.tm_hour, 0);
  EXPECT_EQ(log->last_opened_date_.tm_min, 0);
  EXPECT_EQ(log->last_opened_date_.tm_sec, 0);
  const std::string second = Write(log.get(), "second");
  EXPECT_EQ(Contents(name_), first);
  EXPECT_EQ(Contents(next), second);
}

// One moment has three dates on earth: the zones of the rows make days pass.
TEST_F(LogFileTest, WeeklyTakesTheFileOfEachDayAsItComes) {
  auto log = Make(name_ + "-%Y-%m-%d", Log::LR_WEEKLY);
  std::vector<std::string> lines;
  for (const char* zone : {"DAY24", "DAY0", "DAY-24"}) {
    const ScopedTimeZone day(zone);
    if (lines.empty()) log->OpenFile(true);
    lines.push_back(Write(log.get(), "first of the day"));
    lines.push_back(Write(log.get(), "second"));
  }
  const auto file_of = [this](const std::string& line) { return name_ + "-" + line.substr(0, 10); };
  ASSERT_NE(file_of(lines[1]), file_of(lines[3]));
  ASSERT_NE(file_of(lines[3]), file_of(lines[5]));
  // The first line of a day still stands in the file of the day before: it opens the next.
  EXPECT_EQ(Contents(file_of(lines[1])), lines[0] + lines[1] + lines[2]);
  EXPECT_EQ(Contents(file_of(lines[3])), lines[3] + lines[4]);
  EXPECT_EQ(Contents(file_of(lines[5])), lines[5]);
}

TEST_F(LogFileTest, OtherKindsKeepTheirFileOverTheDays) {
  for (Log::RotateKind kind : {Log::LR_NONE, Log::LR_SIZE}) {
    auto log = Make(name_ + std::to_string(kind) + "-%d", kind);
    std::string all;
    std::string file;
    for (const char* zone : {"DAY24", "DAY0", "DAY-24"}) {
      const ScopedTimeZone day(zone);
      if (all.empty()) log->OpenFile(true);
      all += Write(log.get(), "line");
      if (file.empty()) file = name_ + std::to_string(kind) + "-" + all.substr(8, 2);
    }
    EXPECT_EQ(Contents(file), all);
  }
}

TEST_F(LogFileTest, WeeklyStaysWithItsFileOnTheSameDay) {
  auto log = Make(name_, Log::LR_WEEKLY);
  log->OpenFile(true);
  log->last_opened_date_.tm_hour = 0;
  const std::string first = Write(log.get(), "first");
  log->last_opened_date_.tm_hour = 23;
  const std::string second = Write(log.get(), "second");
  EXPECT_EQ(Contents(name_), first + second);
}

TEST_F(LogFileTest, OtherKindsDoNotMindANewDay) {
  for (Log::RotateKind kind : {Log::LR_NONE, Log::LR_SIZE}) {
    const std::string name = name_ + std::to_string(kind);
    auto log = Make(name, kind);
    log->OpenFile(true);
    log->last_opened_date_.tm_year -= 1;
    const std::string first = Write(log.get(), "first");
    const std::string second = Write(log.get(), "second");
    EXPECT_EQ(Contents(name), first + second);
  }
}

// --- Threads.

TEST_F(LogFileTest, LinesOfSeveralThreadsNeverMix) {
  auto log = Make(name_, Log::LR_NONE);
  log->OpenFile(true);
  std::vector<std::thread> threads;
  for (char c : {'a', 'b', 'c', 'd'}) {
    threads.emplace_back([&log, c] {
      const std::string message(200, c);
      for (int i = 0; i < 250; ++i) {
        if (i % 2 == 0) {
          log->Write(Log::LL_INFO, kPlace, message.c_str());
        } else {
          log->WriteF(Log::LL_INFO, kPlace, "%s", message.c_str());
        }
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  std::istringstream lines(Contents(name_));
  std::string line;
  int count[4] = {};
  while (std::getline(lines, line)) {
    ASSERT_GT(line.size(), 200u);
    const char c = line.back();
    ASSERT_GE(c, 'a');
    ASSERT_LE(c, 'd');
    ASSERT_EQ(line.substr(line.size() - 203), " - " + std::string(200, c));
    ASSERT_EQ(line.substr(23, 3), ":I:");
    ++count[c - 'a'];
  }
  for (int lines_of_one : count) EXPECT_EQ(lines_of_one, 250);
}

}  // namespace
