#include "register/value/row_encoding.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <system_error>

namespace lorimat {

RowEncoder& RowEncoder::Number(int64_t number) {
  // Most are, in rows of sums.
  if (number >= 0 && number < 10) {
    text_.push_back(static_cast<char>('0' + number));
    text_.push_back(' ');
    return *this;
  }
  char digits[24];
  char* end = std::to_chars(digits, digits + sizeof(digits) - 1, number).ptr;
  *end++ = ' ';
  text_.append(digits, static_cast<size_t>(end - digits));
  return *this;
}

RowEncoder& RowEncoder::Text(std::string_view text) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof(digits), text.size());
  text_.append(digits, end.ptr).push_back(':');
  text_.append(text).push_back(' ');
  return *this;
}

bool RowDecoder::TakeNumber(char end, int64_t* number) {
  const char* first = rest_.data();
  const char* last = first + rest_.size();
  const auto [stop, error] = std::from_chars(first, last, *number);
  if (!good_ || error != std::errc() || stop == last || *stop != end) {
    good_ = false;
    return false;
  }
  rest_.remove_prefix(static_cast<size_t>(stop - first) + 1);
  return true;
}

int64_t RowDecoder::Number() {
  int64_t number = 0;
  return TakeNumber(' ', &number) ? number : 0;
}

int RowDecoder::Int() {
  const int64_t number = Number();
  if (number < std::numeric_limits<int>::min() || number > std::numeric_limits<int>::max()) {
    good_ = false;
    return 0;
  }
  return static_cast<int>(number);
}

std::string_view RowDecoder::Text() {
  int64_t size = 0;
  if (!TakeNumber(':', &size)) return {};
  if (size < 0 || static_cast<uint64_t>(size) >= rest_.size() ||
      rest_[static_cast<size_t>(size)] != ' ') {
    good_ = false;
    return {};
  }
  const std::string_view text = rest_.substr(0, static_cast<size_t>(size));
  rest_.remove_prefix(text.size() + 1);
  return text;
}

int64_t TimeNumber(const std::tm& time) {
  const auto field = [](int64_t value, int64_t last) {
    return std::clamp<int64_t>(value, 0, last);
  };
  int64_t number = field(int64_t{time.tm_year} + 1900, 9999);
  for (const int64_t value : {int64_t{time.tm_mon} + 1, int64_t{time.tm_mday},
                              int64_t{time.tm_hour}, int64_t{time.tm_min}, int64_t{time.tm_sec}}) {
    number = 100 * number + field(value, 99);
  }
  return number;
}

std::tm NumberTime(int64_t number) {
  const auto take = [&number](int64_t size) {
    const int field = static_cast<int>(number % size);
    number /= size;
    return field;
  };
  std::tm time = {};
  time.tm_sec = take(100);
  time.tm_min = take(100);
  time.tm_hour = take(100);
  time.tm_mday = take(100);
  time.tm_mon = take(100) - 1;
  time.tm_year = take(10000) - 1900;
  return time;
}

}  // namespace lorimat
