#include "utility/log/log.h"

#include <gtest/gtest.h>

#include <cctype>
#include <chrono>
#include <cstring>
#include <ctime>
#include <cwchar>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

#include "pal/threading/posix/thread.h"
#include "unit/utility/log_fixture.h"

namespace {

// The line that is in the buffer.
std::string LineOf(const OpenLog& log) { return log.output_; }

// A log that builds lines and shows them nowhere.
class LogLineTest : public testing::Test {
 protected:
  void SetUp() override { log_.set_outputs(Log::LO_NULL); }

  // Nothing next to the line was written over.
  void TearDown() override {
    EXPECT_EQ(std::string(log_.level_initials_, 6), "TDIWEF");
    EXPECT_EQ(log_.buffer_[Log::LS_BUFFER], 0);
    for (int i = 0; i < Log::LS_HEADER; ++i) EXPECT_EQ(log_.buffer_[i], 0);
    EXPECT_LE(std::strlen(log_.output_), 1024u);
  }

  // A place whose prefix has that many characters: the date with its blank and the time 19,
  // the milliseconds with their point 4, the letter with its colon 2, then the thread, the
  // function and the line each behind a colon, and " - ".
  Log::LocationInfo Place(size_t prefix) {
    const size_t fixed = 19 + 4 + 2 + 1 + thread_.size() + 1 + 1 + 1 + 3;
    EXPECT_GE(prefix, fixed);
    method_ = std::string(prefix - fixed, 'm');
    return Log::LocationInfo("file.cpp", method_.c_str(), 7, 0);
  }

  OpenLog log_;
  const std::string thread_ = std::to_string(Thread::Identify());
  std::string method_;
};

const Log::LocationInfo kPlace("file.cpp", "Method", 214, 0);

// --- The one object and its macros.

TEST(LogTest, ThereIsOneObjectForAllThreads) {
  std::vector<std::thread> threads;
  std::vector<Log*> found(8);
  for (size_t i = 0; i < found.size(); ++i) {
    threads.emplace_back([&found, i] { found[i] = Log::GetInstance(); });
  }
  for (std::thread& thread : threads) thread.join();
  for (Log* log : found) EXPECT_EQ(log, Log::GetInstance());
  EXPECT_NE(Log::GetInstance(), nullptr);
}

// What the work writes to standard output.
template <typename Work>
std::string Printed(Work work) {
  testing::internal::CaptureStdout();
  work();
  return testing::internal::GetCapturedStdout();
}

// The lines, with every digit of their stamps as 0.
std::string WithoutStamps(const std::string& text) {
  std::istringstream lines(text);
  std::string line;
  std::string result;
  while (std::getline(lines, line)) {
    for (size_t i = 0; i < 23 && i < line.size(); ++i) {
      if (std::isdigit(static_cast<unsigned char>(line[i]))) line[i] = '0';
    }
    result += line + "\n";
  }
  return result;
}

std::string Expect(char letter, int line, const std::string& message) {
  return "0000-00-00 00:00:00.000:" + std::string(1, letter) + ":" +
         std::to_string(Thread::Identify()) + ":WriteAll:" + std::to_string(line) + " - " +
         message + "\n";
}

int write_all_line;
void WriteAll() {
  const unsigned char bytes[] = {0x00, 0x9A, 0xFF};
  write_all_line = __LINE__;
  LOG_TRACE("first %d");
  LOG_DEBUG("second");
  LOG_INFO("third");
  LOG_WARN("fourth");
  LOG_ERROR("fifth");
  LOG_FATAL("sixth");
  LOG_TRACE_F("format %d", 7);
  LOG_DEBUG_F("plain");
  LOG_INFO_F("%s", "text");
  LOG_WARN_F("%c", 'c');
  LOG_ERROR_F("%%");
  LOG_FATAL_F("%03d", 5);
  LOG_TRACE_H("hex ", bytes, sizeof(bytes));
  LOG_INFO_H("", bytes, 2);
  LOG_WARN_H("hex ", bytes, 1);
  LOG_ERROR_H("none", bytes, 0);
  LOG_FATAL_H("none", nullptr, 0);
}

TEST(LogTest, WithTheDefaultsEveryMacroWritesItsLineToStandardOutput) {
  const std::string text = Printed(WriteAll);
  const int line = write_all_line;
  const std::string expected = Expect('T', line + 1, "first %d") + Expect('D', line + 2, "second") +
                               Expect('I', line + 3, "third") + Expect('W', line + 4, "fourth") +
                               Expect('E', line + 5, "fifth") + Expect('F', line + 6, "sixth") +
                               Expect('T', line + 7, "format 7") + Expect('D', line + 8, "plain") +
                               Expect('I', line + 9, "text") + Expect('W', line + 10, "c") +
                               Expect('E', line + 11, "%") + Expect('F', line + 12, "005") +
                               Expect('T', line + 13, "hex 009AFF") +
                               Expect('I', line + 14, "009A") + Expect('W', line + 15, "hex 00") +
                               Expect('E', line + 16, "none") + Expect('F', line + 17, "none");
  EXPECT_EQ(WithoutStamps(text), expected);
}

TEST(LogTest, TheStampIsTheLocalTimeNow) {
  OpenLog log;
  log.set_outputs(Log::LO_NULL);
  const time_t before = time(nullptr);
  log.Write(Log::LL_INFO, kPlace, "x");
  const time_t after = time(nullptr);
  tm stamp = {};
  stamp.tm_isdst = -1;
  ASSERT_EQ(sscanf(log.output_, "%d-%d-%d %d:%d:%d", &stamp.tm_year, &stamp.tm_mon, &stamp.tm_mday,
                   &stamp.tm_hour, &stamp.tm_min, &stamp.tm_sec),
            6);
  stamp.tm_year -= 1900;
  stamp.tm_mon -= 1;
  const time_t written = mktime(&stamp);
  EXPECT_GE(written, before);
  EXPECT_LE(written, after);
}

TEST(LogTest, ALineGoesOnlyToAnOutputThatIsWantedAndOpen) {
  OpenLog log;
  EXPECT_NE(Printed([&] { log.Write(Log::LL_INFO, kPlace, "x"); }), "");
  log.set_outputs(Log::LO_ALL & ~Log::LO_CONSOLE);
  EXPECT_EQ(Printed([&] { log.Write(Log::LL_INFO, kPlace, "x"); }), "");
  log.set_outputs(Log::LO_CONSOLE);
  EXPECT_NE(Printed([&] { log.Write(Log::LL_INFO, kPlace, "x"); }), "");
  log.output_console_opened_ = false;
  EXPECT_EQ(Printed([&] { log.Write(Log::LL_INFO, kPlace, "x"); }), "");
}

// --- The gate.

// The test holds the lock: a write that took it would never come back.
TEST_F(LogLineTest, ALineBelowTheLevelTouchesNeitherBufferNorLockNorOutputs) {
  log_.set_level(Log::LL_WARN);
  log_.Write(Log::LL_WARN, kPlace, "kept");
  log_.set_outputs(Log::LO_ALL);
  const std::string kept = LineOf(log_);
  const std::string text = Printed([&] {
    MutexLock lock(&log_.mutex_);
    for (Log::Levels level : {Log::LL_TRACE, Log::LL_DEBUG, Log::LL_INFO}) {
      log_.Write(level, kPlace, "x");
      log_.WriteF(level, kPlace, "%s", "x");
      log_.WriteH(level, kPlace, "x", "x", 1);
    }
  });
  EXPECT_EQ(text, "");
  EXPECT_EQ(LineOf(log_), kept);
  EXPECT_EQ(log_.output_level_, Log::LL_WARN);
}

TEST_F(LogLineTest, ALineOfTheLevelOrAbovePasses) {
  log_.set_level(Log::LL_WARN);
  for (Log::Levels level : {Log::LL_WARN, Log::LL_ERROR, Log::LL_FATAL}) {
    const std::string message = "m" + std::to_string(level);
    log_.Write(level, kPlace, message.c_str());
    EXPECT_NE(LineOf(log_).find(" - " + message + "\n"), std::string::npos);
    EXPECT_EQ(log_.output_level_, level);
  }
}

TEST_F(LogLineTest, OnlyTheLowFiveBitsOfAModuleNumberCount) {
  const auto passes = [&](int module) {
    log_.output_[0] = 0;
    log_.Write(Log::LL_INFO, Log::LocationInfo("f", "m", 1, module), "x");
    return log_.output_[0] != 0;
  };
  log_.set_modules(1);
  EXPECT_TRUE(passes(0));
  EXPECT_TRUE(passes(32));
  EXPECT_FALSE(passes(1));
  EXPECT_FALSE(passes(31));
  EXPECT_FALSE(passes(33));
  log_.set_modules(0x80000000);
  EXPECT_TRUE(passes(31));
  EXPECT_TRUE(passes(-1));
  EXPECT_TRUE(passes(2147483647));
  EXPECT_FALSE(passes(0));
  log_.set_modules(255);
  EXPECT_TRUE(passes(7));
  EXPECT_FALSE(passes(8));
  log_.set_modules(0);
  EXPECT_FALSE(passes(0));
}

TEST_F(LogLineTest, AStoppedLogDropsEveryLine) {
  log_.stopped_ = true;
  MutexLock lock(&log_.mutex_);
  log_.Write(Log::LL_FATAL, kPlace, "x");
  log_.WriteF(Log::LL_FATAL, kPlace, "%s", "x");
  log_.WriteH(Log::LL_FATAL, kPlace, "x", "x", 1);
  EXPECT_EQ(LineOf(log_), "");
}

TEST_F(LogLineTest, TheMillisecondsAreThoseOfTheSecond) {
  using std::chrono::duration_cast;
  using std::chrono::milliseconds;
  using std::chrono::system_clock;
  const auto now = [] {
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
  };
  const auto before = now();
  log_.Write(Log::LL_INFO, kPlace, "x");
  const auto after = now();
  // "2024-03-15 10:30:00.123"
  const long shown = std::stol(LineOf(log_).substr(20, 3));
  EXPECT_LE((shown + 1000 - before % 1000) % 1000, after - before);
}

// --- Lines at their limits.

TEST_F(LogLineTest, ThePrefixHasTheLengthOfItsParts) {
  log_.Write(Log::LL_INFO, Place(60), "x");
  EXPECT_EQ(LineOf(log_).substr(57), " - x\n");
}

TEST_F(LogLineTest, ALineThatJustFitsKeepsItsTrailer) {
  log_.Write(Log::LL_INFO, Place(60), std::string(963, 'x').c_str());
  EXPECT_EQ(LineOf(log_).size(), 1024u);
  EXPECT_EQ(LineOf(log_).substr(60), std::string(963, 'x') + "\n");
}

TEST_F(LogLineTest, ALineThatReachesTheLimitLosesItsTrailer) {
  for (size_t length : {964, 965, 1023, 1024, 1025, 100000}) {
    log_.Write(Log::LL_INFO, Place(60), std::string(length, 'x').c_str());
    EXPECT_EQ(LineOf(log_).size(), 1024u) << length;
    EXPECT_EQ(LineOf(log_).substr(60), std::string(964, 'x')) << length;
  }
}

TEST_F(LogLineTest, ATrailerIsCutAtTheLimit) {
  log_.set_trailer("123456");
  log_.Write(Log::LL_INFO, Place(60), std::string(958, 'x').c_str());
  EXPECT_EQ(LineOf(log_).substr(60), std::string(958, 'x') + "123456");
  log_.Write(Log::LL_INFO, Place(60), std::string(960, 'x').c_str());
  EXPECT_EQ(LineOf(log_).substr(60), std::string(960, 'x') + "1234");
}

TEST_F(LogLineTest, AFormattedTextThatIsCutKeepsTheTrailersFirstCharacter) {
  for (const char* trailer : {"\n", "\r\n", "123456"}) {
    log_.set_trailer(trailer);
    for (size_t length : {963, 964, 5000}) {
      log_.WriteF(Log::LL_INFO, Place(60), "%s", std::string(length, 'x').c_str());
      EXPECT_EQ(LineOf(log_).size(), 1024u) << length;
      EXPECT_EQ(LineOf(log_).substr(60), std::string(963, 'x') + trailer[0]) << length;
    }
  }
}

#ifndef _WIN32
// A character that the process's language does not have ends the print.
TEST_F(LogLineTest, AFormattedTextThatCannotBePrintedIsEmpty) {
  log_.set_trailer("\r\n");
  log_.WriteF(Log::LL_INFO, Place(60), "x%lc", static_cast<wint_t>(0x20AC));
  EXPECT_EQ(LineOf(log_).substr(60), "\r\n");
}
#endif

TEST_F(LogLineTest, AFormattedTextThatFitsKeepsItsTrailer) {
  log_.set_trailer("\r\n");
  log_.WriteF(Log::LL_INFO, Place(60), "%s", std::string(962, 'x').c_str());
  EXPECT_EQ(LineOf(log_).substr(60), std::string(962, 'x') + "\r\n");
  log_.WriteF(Log::LL_INFO, Place(60), "%s%d", "a", -1);
  EXPECT_EQ(LineOf(log_).substr(60), "a-1\r\n");
}

// Bytes of a pattern, and their text.
std::string SomeBytes(size_t count) {
  std::string bytes(count, '\0');
  for (size_t i = 0; i < count; ++i) bytes[i] = static_cast<char>(i * 37 + 11);
  return bytes;
}
std::string HexText(const std::string& bytes) {
  std::string text;
  for (char c : bytes) {
    const unsigned byte = static_cast<unsigned char>(c);
    text += "0123456789ABCDEF"[byte / 16];
    text += "0123456789ABCDEF"[byte % 16];
  }
  return text;
}

TEST_F(LogLineTest, ADumpShowsTheBytesThatFit) {
  const std::string bytes = SomeBytes(1000);
  log_.WriteH(Log::LL_INFO, Place(50), "0123456789", bytes.data(), bytes.size());
  // (1024 - 60 - 1) / 2 = 481
  EXPECT_EQ(LineOf(log_).substr(50), "0123456789" + HexText(bytes.substr(0, 481)) + "\n");
  EXPECT_EQ(LineOf(log_).size(), 1023u);
}

TEST_F(LogLineTest, ADumpLeavesRoomForTheWholeTrailer) {
  const std::string bytes = SomeBytes(1000);
  log_.set_trailer("123456");
  log_.WriteH(Log::LL_INFO, Place(60), "", bytes.data(), bytes.size());
  // (1024 - 60 - 6) / 2 = 479
  EXPECT_EQ(LineOf(log_).substr(60), HexText(bytes.substr(0, 479)) + "123456");
  EXPECT_EQ(LineOf(log_).size(), 1024u);
}

TEST_F(LogLineTest, ADumpShowsNoMoreThanItsLength) {
  const std::string bytes = SomeBytes(16);
  log_.WriteH(Log::LL_INFO, Place(60), "m:", bytes.data(), 3);
  EXPECT_EQ(LineOf(log_).substr(60), "m:" + HexText(bytes.substr(0, 3)) + "\n");
}

TEST_F(LogLineTest, ADumpOfNoBytesIsItsMessage) {
  log_.WriteH(Log::LL_INFO, Place(60), "message", "bytes", 0);
  EXPECT_EQ(LineOf(log_).substr(60), "message\n");
  log_.WriteH(Log::LL_INFO, Place(60), "message", nullptr, 0);
  EXPECT_EQ(LineOf(log_).substr(60), "message\n");
}

TEST_F(LogLineTest, ADumpBehindAMessageThatFillsTheLineShowsNoByte) {
  const std::string bytes = SomeBytes(8);
  // Characters of the message, bytes shown, and whether the trailer still fits.
  const struct {
    size_t message;
    size_t shown;
    bool trailer;
  } rows[] = {{960, 1, true},  {961, 1, true},  {962, 0, true},  {963, 0, true},
              {964, 0, false}, {965, 0, false}, {5000, 0, false}};
  for (const auto& row : rows) {
    log_.WriteH(Log::LL_INFO, Place(60), std::string(row.message, 'x').c_str(), bytes.data(), 8);
    const size_t kept = row.message < 964 ? row.message : 964;
    EXPECT_EQ(
        LineOf(log_).substr(60),
        std::string(kept, 'x') + HexText(bytes.substr(0, row.shown)) + (row.trailer ? "\n" : ""))
        << row.message;
  }
}

TEST_F(LogLineTest, AnOverlongFunctionNameLeavesNoRoomForMore) {
  const std::string method(5000, 'm');
  const Log::LocationInfo place("f", method.c_str(), 1, 0);
  log_.Write(Log::LL_INFO, place, "xyz");
  EXPECT_EQ(LineOf(log_).size(), 1024u);
  EXPECT_EQ(LineOf(log_).substr(1021), "mmx");
  log_.WriteF(Log::LL_INFO, place, "%s", "xyz");
  EXPECT_EQ(LineOf(log_).substr(1021), "mm\n");
  log_.WriteH(Log::LL_INFO, place, "xyz", "x", 1);
  EXPECT_EQ(LineOf(log_).substr(1021), "mmx");
  log_.WriteH(Log::LL_INFO, place, "", "x", 1);
  EXPECT_EQ(LineOf(log_).substr(1021), "mm\n");
}

TEST_F(LogLineTest, MissingTextsAreEmpty) {
  log_.Write(Log::LL_INFO, Log::LocationInfo(nullptr, nullptr, -5, 0), nullptr);
  EXPECT_EQ(LineOf(log_).substr(23), ":I:" + thread_ + "::-5 - \n");
  log_.WriteH(Log::LL_INFO, Log::LocationInfo(nullptr, nullptr, 0, 0), nullptr, "a", 1);
  EXPECT_EQ(LineOf(log_).substr(23), ":I:" + thread_ + "::0 - 61\n");
}

TEST_F(LogLineTest, ALevelThatIsNoneHasNoLetter) {
  log_.Write(Log::LL_LEVELS, kPlace, "x");
  EXPECT_EQ(LineOf(log_).substr(23, 3), ":?:");
  log_.Write(static_cast<Log::Levels>(7), kPlace, "x");
  EXPECT_EQ(LineOf(log_).substr(23, 3), ":?:");
}

TEST_F(LogLineTest, EveryByteOfAMessageGoesOutAsItIs) {
  std::string all;
  for (int i = 1; i < 256; ++i) all += static_cast<char>(i);
  log_.Write(Log::LL_INFO, Place(60), all.c_str());
  EXPECT_EQ(LineOf(log_).substr(60), all + "\n");
  log_.WriteF(Log::LL_INFO, Place(60), "%s", all.c_str());
  EXPECT_EQ(LineOf(log_).substr(60), all + "\n");
}

TEST_F(LogLineTest, AReadyTextIsNoFormat) {
  log_.Write(Log::LL_INFO, Place(60), "%s%n%d");
  EXPECT_EQ(LineOf(log_).substr(60), "%s%n%d\n");
}

}  // namespace
