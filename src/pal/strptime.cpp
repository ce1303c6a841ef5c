// The parser walks the format: white space skips white space, "%" begins a conversion, any
// other character must stand in the text. A conversion is a row of one table: its letter, the
// modifiers it takes and what it reads, be it a number within limits, a name, or a format of
// its own.
#include "pal/strptime.h"

#include <array>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "pal/drivers/clock.h"

namespace pal {
namespace {

constexpr int kBaseYear = 1900;

constexpr std::string_view kDayNames[] = {"Sunday",   "Monday", "Tuesday", "Wednesday",
                                          "Thursday", "Friday", "Saturday"};
constexpr std::string_view kMonthNames[] = {"January",   "February", "March",    "April",
                                            "May",       "June",     "July",     "August",
                                            "September", "October",  "November", "December"};
constexpr size_t kShortName = 3;

// What a conversion reads. A number goes as it is into one field of the time, or has a rule of its
// own.
enum class Field {
  kPercent,
  kSpace,
  kFormat,
  kDayName,
  kMonthName,
  kHalfDay,
  kNumber,
  kCentury,
  kYearOfCentury,
  kHour12,
  kDropped
};

// Modifiers that may stand between "%" and the letter.
enum : unsigned { kPlain = 0, kE = 1, kO = 2, kAny = kE | kO };

struct Conversion {
  char letter;
  unsigned modifiers;
  Field field;
  int low;             // of a number
  int high;            // of a number; its digits are the most that are read
  const char* format;  // of a conversion made of others
  // Of kNumber: where it goes, and what is taken off there.
  int tm::*target = nullptr;
  int base = 0;
};

constexpr Conversion kConversions[] = {
    {'%', kAny, Field::kPercent, 0, 0, nullptr},
    {'A', kPlain, Field::kDayName, 0, 0, nullptr},
    {'B', kPlain, Field::kMonthName, 0, 0, nullptr},
    {'C', kE, Field::kCentury, 0, 99, nullptr},
    {'D', kPlain, Field::kFormat, 0, 0, "%m/%d/%y"},
    {'H', kO, Field::kNumber, 0, 23, nullptr, &tm::tm_hour},
    {'I', kO, Field::kHour12, 1, 12, nullptr},
    {'M', kO, Field::kNumber, 0, 59, nullptr, &tm::tm_min},
    {'R', kPlain, Field::kFormat, 0, 0, "%H:%M"},
    {'S', kO, Field::kNumber, 0, 61, nullptr, &tm::tm_sec},
    {'T', kPlain, Field::kFormat, 0, 0, "%H:%M:%S"},
    {'U', kO, Field::kDropped, 0, 53, nullptr},
    {'W', kO, Field::kDropped, 0, 53, nullptr},
    {'X', kE, Field::kFormat, 0, 0, "%H:%M:%S"},
    {'Y', kE, Field::kNumber, 0, 9999, nullptr, &tm::tm_year, kBaseYear},
    {'a', kPlain, Field::kDayName, 0, 0, nullptr},
    {'b', kPlain, Field::kMonthName, 0, 0, nullptr},
    {'c', kE, Field::kFormat, 0, 0, "%x %X"},
    {'d', kO, Field::kNumber, 1, 31, nullptr, &tm::tm_mday},
    {'e', kO, Field::kNumber, 1, 31, nullptr, &tm::tm_mday},
    {'h', kPlain, Field::kMonthName, 0, 0, nullptr},
    {'j', kPlain, Field::kNumber, 1, 366, nullptr, &tm::tm_yday, 1},
    {'k', kPlain, Field::kNumber, 0, 23, nullptr, &tm::tm_hour},
    {'l', kPlain, Field::kHour12, 1, 12, nullptr},
    {'m', kO, Field::kNumber, 1, 12, nullptr, &tm::tm_mon, 1},
    {'n', kPlain, Field::kSpace, 0, 0, nullptr},
    {'p', kPlain, Field::kHalfDay, 0, 0, nullptr},
    {'r', kPlain, Field::kFormat, 0, 0, "%I:%M:%S %p"},
    {'t', kPlain, Field::kSpace, 0, 0, nullptr},
    {'w', kO, Field::kNumber, 0, 6, nullptr, &tm::tm_wday},
    {'x', kE, Field::kFormat, 0, 0, "%m/%d/%y"},
    {'y', kAny, Field::kYearOfCentury, 0, 99, nullptr},
};

// The row of each letter, by its byte; kNoRow where there is none.
constexpr uint8_t kNoRow = std::size(kConversions);
constexpr auto kRows = [] {
  std::array<uint8_t, 256> rows{};
  rows.fill(kNoRow);
  for (uint8_t row = 0; row < kNoRow; ++row) {
    rows[static_cast<unsigned char>(kConversions[row].letter)] = row;
  }
  return rows;
}();

const Conversion* FindConversion(char letter) {
  const uint8_t row = kRows[static_cast<unsigned char>(letter)];
  return row == kNoRow ? nullptr : &kConversions[row];
}

bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

// Whether text begins with name, case ignored.
bool BeginsWith(const char* text, std::string_view name) {
  for (const char c : name) {
    if (Lower(*text++) != Lower(c)) return false;
  }
  return true;
}

// The read position and what is carried from one conversion to the next.
class Parser {
 public:
  Parser(const char* text, struct tm* time) : text_(text), time_(time) {}

  bool Parse(const char* format);
  const char* rest() const { return text_; }

 private:
  bool Convert(const Conversion& row);
  bool ReadNumber(int low, int high, int* number);
  template <size_t kCount>
  bool ReadName(const std::string_view (&names)[kCount], int* index);
  bool ReadHalfDay();
  void Store(Field field, int number);
  void SkipSpace() {
    while (IsSpace(*text_)) ++text_;
  }

  const char* text_;
  struct tm* time_;
  bool century_seen_ = false;
};

bool Parser::Parse(const char* format) {
  while (*format != '\0') {
    const char c = *format++;
    if (IsSpace(c)) {
      SkipSpace();
      continue;
    }
    if (c != '%') {
      if (*text_ != c) return false;
      ++text_;
      continue;
    }
    unsigned modifier = kPlain;
    if (*format == 'E' || *format == 'O') modifier = *format++ == 'E' ? kE : kO;
    // A second modifier is no letter of the table, nor is the end of the format.
    const Conversion* row = FindConversion(*format);
    if (row == nullptr || (modifier & ~row->modifiers) != 0) return false;
    ++format;
    if (!Convert(*row)) return false;
  }
  return true;
}

bool Parser::Convert(const Conversion& row) {
  int number = 0;
  switch (row.field) {
    case Field::kPercent:
      if (*text_ != '%') return false;
      ++text_;
      return true;
    case Field::kSpace:
      SkipSpace();
      return true;
    case Field::kFormat:
      return Parse(row.format);
    case Field::kDayName:
      return ReadName(kDayNames, &time_->tm_wday);
    case Field::kMonthName:
      return ReadName(kMonthNames, &time_->tm_mon);
    case Field::kHalfDay:
      return ReadHalfDay();
    case Field::kNumber:
      if (!ReadNumber(row.low, row.high, &number)) return false;
      time_->*row.target = number - row.base;
      return true;
    default:
      if (!ReadNumber(row.low, row.high, &number)) return false;
      Store(row.field, number);
      return true;
  }
}

// Ends where one digit more would pass the upper limit whatever it is, or where as many
// digits as that limit has are read.
bool Parser::ReadNumber(int low, int high, int* number) {
  if (!IsDigit(*text_)) return false;
  int value = *text_++ - '0';
  for (int tens = 10; tens <= high && value * 10 <= high && IsDigit(*text_); tens *= 10) {
    value = value * 10 + (*text_++ - '0');
  }
  if (value < low || value > high) return false;
  *number = value;
  return true;
}

template <size_t kCount>
bool Parser::ReadName(const std::string_view (&names)[kCount], int* index) {
  for (size_t i = 0; i < kCount; ++i) {
    // Both forms begin alike, and the long one is tried first.
    if (!BeginsWith(text_, names[i].substr(0, kShortName))) continue;
    text_ +=
        BeginsWith(text_ + kShortName, names[i].substr(kShortName)) ? names[i].size() : kShortName;
    *index = static_cast<int>(i);
    return true;
  }
  return false;
}

// The whole rest of the text is compared: "%p" fits at the end of a text only.
bool Parser::ReadHalfDay() {
  const bool pm = BeginsWith(text_, "PM");
  if ((!pm && !BeginsWith(text_, "AM")) || text_[2] != 0 || time_->tm_hour > 11) return false;
  if (pm) time_->tm_hour += 12;
  text_ += 2;
  return true;
}

void Parser::Store(Field field, int number) {
  switch (field) {
    case Field::kCentury:
      // As it stands: no base of 1900 is taken off.
      time_->tm_year = number * 100 + (century_seen_ ? time_->tm_year % 100 : 0);
      century_seen_ = true;
      break;
    case Field::kYearOfCentury:
      if (century_seen_) {
        time_->tm_year = time_->tm_year / 100 * 100 + number;
      } else {
        time_->tm_year = number < 69 ? number + 100 : number;
        century_seen_ = true;
      }
      break;
    case Field::kHour12:
      time_->tm_hour = number % 12;
      break;
    default:  // A week's number is read and dropped.
      break;
  }
}

}  // namespace

char* strptime(const char* text, const char* format, struct tm* time) {
  Parser parser(text, time);
  return parser.Parse(format) ? const_cast<char*>(parser.rest()) : nullptr;
}

time_t timegm(struct tm* time) {
  const time_t local = std::mktime(time);
  struct tm utc;
  if (!BreakDownUtc(local, &utc)) return -1;
  // tm_hour is the normalised one. The wrap of an offset above 12, and none below -12, is
  // what the results are known by; nothing is to be corrected here.
  int64_t offset = int64_t{utc.tm_hour} - time->tm_hour;
  if (offset > 12) offset = 24 - offset;
  return static_cast<time_t>(std::mktime(time) - offset * 3600);
}

}  // namespace pal
