// Lines of any place, level and length beside a model that puts them together by printf's rules.
#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <cstdio>
#include <cstring>
#include <random>
#include <string>

#include "pal/threading/posix/thread.h"
#include "unit/utility/log_fixture.h"

namespace {

constexpr size_t kDate = sizeof "2026-11-16 05:31:04.123" - 1;
constexpr size_t kLongest = Log::LS_OUTPUT;

// The prefix behind the date, and what the line holds of the message and of the trailer.
std::string Model(const std::string& date, char initial, const std::string& method, int number,
                  const std::string& message, const std::string& trailer) {
  char middle[64];
  std::snprintf(middle, sizeof middle, ":%c:%lu:", initial, Thread::Identify());
  char end[32];
  std::snprintf(end, sizeof end, ":%d - ", number);
  const std::string prefix = (date + middle + method + end).substr(0, kLongest - 1);
  return (prefix + message + trailer).substr(0, kLongest);
}

bool IsDate(const std::string& text) {
  const std::string form = "dddd-dd-dd dd:dd:dd.ddd";
  return text.size() == form.size() &&
         std::equal(text.begin(), text.end(), form.begin(), [](char c, char wanted) {
           return wanted == 'd' ? c >= '0' && c <= '9' : c == wanted;
         });
}

TEST(LogPrefix, IsWhatPrintfMakesOfEveryPlace) {
  OpenLog log;
  log.set_outputs(Log::LO_NULL);
  std::mt19937 chance(20261122);
  const auto length = [&](size_t most) { return chance() % (chance() % 4 == 0 ? most : 40); };
  const int numbers[] = {0, 7, 214, -1, -214, INT_MAX, INT_MIN, 10, 99999};
  for (int i = 0; i < 20000; ++i) {
    const std::string method(length(1100), 'm');
    const std::string message(length(1100), 'x');
    const std::string trailer(chance() % 7, 't');
    const int number = numbers[chance() % std::size(numbers)];
    const auto level = static_cast<Log::Levels>(chance() % 8);
    log.set_trailer(trailer.c_str());
    log.Write(level, Log::LocationInfo("file.cpp", method.c_str(), number, 0), message.c_str());
    const std::string line = log.output_;
    const std::string date = line.substr(0, kDate);
    ASSERT_TRUE(IsDate(date)) << line;
    const char initial = level < Log::LL_LEVELS ? "TDIWEF"[level] : '?';
    ASSERT_EQ(line, Model(date, initial, method, number, message, trailer.substr(0, 6)));
  }
}

}  // namespace
