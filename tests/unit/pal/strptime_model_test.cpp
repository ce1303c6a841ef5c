// Texts by chance beside a model of the conversions: each is one line of a list, looked for from
// the front, with its limits and its place written out once more.
#include <gtest/gtest.h>

#include <cctype>
#include <cstring>
#include <ctime>
#include <optional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "pal/strptime.h"

namespace {

const std::vector<std::string> kDays = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                        "Thursday", "Friday", "Saturday"};
const std::vector<std::string> kMonths = {"January",   "February", "March",    "April",
                                          "May",       "June",     "July",     "August",
                                          "September", "October",  "November", "December"};

// Reads a text by a format, piece by piece from its front.
class Model {
 public:
  Model(std::string text, const struct tm& time) : rest_(std::move(text)), time_(time) {}

  bool Read(const std::string& format) {
    for (size_t i = 0; i < format.size(); ++i) {
      if (std::isspace(static_cast<unsigned char>(format[i])) != 0) {
        SkipSpace();
      } else if (format[i] != '%') {
        if (!Take(format.substr(i, 1))) return false;
      } else {
        char modifier = 0;
        if (i + 1 < format.size() && (format[i + 1] == 'E' || format[i + 1] == 'O')) {
          modifier = format[++i];
        }
        if (++i >= format.size() || !Convert(format[i], modifier)) return false;
      }
    }
    return true;
  }
  const std::string& rest() const { return rest_; }
  const struct tm& time() const { return time_; }

 private:
  void SkipSpace() {
    while (!rest_.empty() && std::isspace(static_cast<unsigned char>(rest_[0])) != 0) {
      rest_.erase(0, 1);
    }
  }
  bool Take(const std::string& text) {
    if (strncasecmp(rest_.c_str(), text.c_str(), text.size()) != 0) return false;
    if (text.size() == 1 && rest_[0] != text[0]) return false;
    rest_.erase(0, text.size());
    return true;
  }
  bool Name(const std::vector<std::string>& names, int* index) {
    for (size_t i = 0; i < names.size(); ++i) {
      if (Take(names[i]) || Take(names[i].substr(0, 3))) {
        *index = static_cast<int>(i);
        return true;
      }
    }
    return false;
  }
  std::optional<int> Number(int low, int high) {
    int value = 0;
    size_t digits = 0;
    const size_t most = std::to_string(high).size();
    while (digits < most && !rest_.empty() && rest_[0] >= '0' && rest_[0] <= '9' &&
           (digits == 0 || value * 10 <= high)) {
      value = value * 10 + (rest_[0] - '0');
      rest_.erase(0, 1);
      ++digits;
    }
    if (digits == 0 || value < low || value > high) return std::nullopt;
    return value;
  }
  bool Into(int low, int high, int* place, int base = 0) {
    const std::optional<int> number = Number(low, high);
    if (number) *place = *number - base;
    return number.has_value();
  }

  bool Convert(char letter, char modifier) {
    const std::string_view with_e = "%CXYcxy";
    const std::string_view with_o = "%HIMSUWdemwy";
    if (modifier == 'E' && with_e.find(letter) == std::string_view::npos) return false;
    if (modifier == 'O' && with_o.find(letter) == std::string_view::npos) return false;
    const auto is = [letter](std::string_view letters) {
      return letters.find(letter) != std::string_view::npos;
    };
    int dropped = 0;
    if (is("%")) return Take("%");
    if (is("nt")) return SkipSpace(), true;
    if (is("aA")) return Name(kDays, &time_.tm_wday);
    if (is("bBh")) return Name(kMonths, &time_.tm_mon);
    if (is("Dx")) return Read("%m/%d/%y");
    if (is("R")) return Read("%H:%M");
    if (is("TX")) return Read("%H:%M:%S");
    if (is("r")) return Read("%I:%M:%S %p");
    if (is("c")) return Read("%x %X");
    if (is("Hk")) return Into(0, 23, &time_.tm_hour);
    if (is("M")) return Into(0, 59, &time_.tm_min);
    if (is("S")) return Into(0, 61, &time_.tm_sec);
    if (is("de")) return Into(1, 31, &time_.tm_mday);
    if (is("m")) return Into(1, 12, &time_.tm_mon, 1);
    if (is("j")) return Into(1, 366, &time_.tm_yday, 1);
    if (is("w")) return Into(0, 6, &time_.tm_wday);
    if (is("Y")) return Into(0, 9999, &time_.tm_year, 1900);
    if (is("UW")) return Into(0, 53, &dropped);
    if (is("Il")) {
      const std::optional<int> hour = Number(1, 12);
      if (hour) time_.tm_hour = *hour == 12 ? 0 : *hour;
      return hour.has_value();
    }
    if (is("p")) return HalfDay();
    if (is("C")) return Century();
    return is("y") && YearOfCentury();
  }
  bool HalfDay() {
    const bool pm = strcasecmp(rest_.c_str(), "PM") == 0;
    if (!pm && strcasecmp(rest_.c_str(), "AM") != 0) return false;
    if (time_.tm_hour > 11) return false;
    if (pm) time_.tm_hour += 12;
    rest_.clear();
    return true;
  }
  bool Century() {
    const std::optional<int> number = Number(0, 99);
    if (!number) return false;
    time_.tm_year = *number * 100 + (century_ ? time_.tm_year % 100 : 0);
    century_ = true;
    return true;
  }
  bool YearOfCentury() {
    const std::optional<int> number = Number(0, 99);
    if (!number) return false;
    if (century_) {
      time_.tm_year = time_.tm_year / 100 * 100 + *number;
    } else {
      time_.tm_year = *number < 69 ? *number + 100 : *number;
    }
    century_ = true;
    return true;
  }

  std::string rest_;
  struct tm time_;
  bool century_ = false;
};

class StrptimeModelTest : public testing::Test {
 protected:
  std::string Any(const std::vector<std::string>& pieces, size_t most) {
    std::string all;
    for (size_t i = chance_() % most + 1; i > 0; --i) all += pieces[chance_() % pieces.size()];
    return all;
  }

  std::mt19937 chance_{20261122};
};

TEST_F(StrptimeModelTest, ReadsWhatTheModelReads) {
  std::vector<std::string> formats = {" ", "/", ":", "-", "x", "%E", "%O", "%", "\t"};
  for (const char letter : std::string("%ABCDHIMRSTUWXYabcdehjklmnprtwxyGZzq")) {
    formats.push_back(std::string("%") + letter);
    formats.push_back(std::string("%E") + letter);
    formats.push_back(std::string("%O") + letter);
    for (int i = 0; i < 4; ++i) formats.push_back(std::string("%") + letter);
  }
  std::vector<std::string> texts = {" ",  "/",  ":",  "-",   "x",   "%",   "am",   "PM",    "1999",
                                    "69", "68", "00", "366", "367", "012", "9999", "12345", "\xe9"};
  for (const auto* names : {&kDays, &kMonths}) {
    for (const std::string& name : *names) {
      texts.push_back(name);
      texts.push_back(name.substr(0, 3));
    }
  }
  for (int i = 0; i < 62; ++i) texts.push_back(std::to_string(i));

  int read = 0;
  for (int i = 0; i < 200000; ++i) {
    const std::string format = Any(formats, 3);
    const std::string text = Any(texts, 5);
    struct tm time = {};
    time.tm_hour = static_cast<int>(chance_() % 24);
    Model model(text, time);
    const bool expected = model.Read(format);
    const char* rest = pal::strptime(text.c_str(), format.c_str(), &time);
    ASSERT_EQ(rest != nullptr, expected) << "'" << text << "' by '" << format << "'";
    if (expected) {
      ASSERT_EQ(rest, model.rest()) << "'" << text << "' by '" << format << "'";
    }
    // What was read ahead of a failure stays too.
    const struct tm& wanted = model.time();
    for (int tm::*field : {&tm::tm_year, &tm::tm_mon, &tm::tm_mday, &tm::tm_hour, &tm::tm_min,
                           &tm::tm_sec, &tm::tm_wday, &tm::tm_yday}) {
      ASSERT_EQ(time.*field, wanted.*field) << "'" << text << "' by '" << format << "'";
    }
    read += expected ? 1 : 0;
  }
  EXPECT_GT(read, 10000);
}

}  // namespace
