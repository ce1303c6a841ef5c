// The forms of a number, its constructors, conversions, text and marshal form. The arithmetic
// stands in number_arithmetic.cpp, the comparisons in number_compare.cpp.
#include "utility/number.h"

#include <algorithm>
#include <cstdio>
#include <iterator>
#include <ostream>

#include "utility/stringserializer.h"

namespace {

constexpr uint64_t kLimit = Number::MAX_VALUE + 1;  // 10 to the 16
constexpr unsigned int kMostDigits = 18;            // of a text before its point

}  // namespace

// 10 to the 8 stands twice. It is meant: see the header.
const uint64_t Number::power10[20] = {
    1,
    10,
    100,
    1000,
    10000,
    100000,
    1000000,
    10000000,
    100000000,
    100000000,
    1000000000,
    10000000000,
    100000000000,
    1000000000000,
    10000000000000,
    100000000000000,
    1000000000000000,
    10000000000000000,
    100000000000000000,
    1000000000000000000,
};

constinit const Number Number::NaN(static_cast<int>(kZeroForm | kOverflow), int64_t{0});
constinit const Number Number::Zero(static_cast<int>(kZeroForm), int64_t{0});

Number::Number(int64_t value) : Number(value, false, 0U) {}

Number::Number(int64_t value, bool sign) : Number(value, sign, 0U) {}

Number::Number(int64_t value, unsigned int decDigits) : Number(value, false, decDigits) {}

Number::Number(int64_t value, bool sign, unsigned int decDigits) : Number() {
  SetPrecision(std::min(decDigits, maxPrecision));
  if (value == 0) return;
  const uint64_t magnitude = magnitudeOf(value);
  if (magnitude >= kLimit) {
    makeOverflow();
    return;
  }
  data = magnitude;
  SetSize(numberSize(magnitude));
  if (decDigits > maxPrecision) {
    data /= powerOf10(decDigits - maxPrecision);
    SetSize(numberSize(data));
  }
  Finish(sign || value < 0);
}

Number::Number(const std::string& repr) : Number() {
  enum FSM_STATES { START, NUMBER, DOT };
  FSM_STATES state = START;
  bool negative = false;
  for (const char c : repr) {
    if (c < '0' || c > '9') {
      if (state == START && c == '-') negative = true;
      if (state == NUMBER && c == '.') state = DOT;
      continue;
    }
    if (state == DOT && (precision >= maxPrecision || size >= kMostDigits)) continue;
    data = data * 10 + static_cast<uint64_t>(c - '0');
    if (data != 0) ++size;
    if (state == DOT) {
      ++precision;
    } else if (size > kMostDigits) {
      makeOverflow();
      return;
    } else {
      state = NUMBER;
    }
  }
  Finish(negative);
}

Number& Number::operator=(int64_t value) { return *this = Number(value); }

void Number::makeZero() {
  flags = kZeroForm;
  data = 0;
}

void Number::makeNaN() {
  flags = kZeroForm | kOverflow;
  data = 0;
}

void Number::makeOverflow() {
  flags = kOverflow;
  data = POSITIVE_OVERFLOW;
}

void Number::Finish(bool negative) {
  if (data == 0) {
    makeZero();
  } else {
    flags = negative ? kNegative : 0;
  }
}

unsigned int Number::countDecimalDigits() const {
  if (isOverflow()) return 0;
  unsigned int count = precision;
  for (uint64_t rest = data; count > 0 && rest % 10 == 0; rest /= 10) --count;
  return count;
}

bool Number::checkDecimalDigits(unsigned int decDigits) const {
  if (isOverflow()) return false;
  return precision <= decDigits || data % powerOf10(precision - decDigits) == 0;
}

uint64_t Number::powerOf10(unsigned int pow) {
  return power10[std::min<size_t>(pow, std::size(power10) - 1)];
}

unsigned int Number::numberSize(uint64_t number) {
  if (number < 10) return 1;
  if (number < 100) return 2;
  if (number < 1000) return 3;
  if (number < 10000) return 4;
  if (number < 100000) return 5;
  if (number < 1000000) return 6;
  if (number < 10000000) return 7;
  if (number < 100000000) return 8;
  if (number < 1000000000) return 9;
  if (number < 10000000000) return 10;
  if (number < 100000000000) return 11;
  if (number < 1000000000000) return 12;
  if (number < 10000000000000) return 13;
  if (number < 100000000000000) return 14;
  if (number < 1000000000000000) return 15;
  if (number < 10000000000000000) return 16;
  if (number < 100000000000000000) return 17;
  if (number < 1000000000000000000) return 18;
  return 1;
}

int64_t Number::toInt64() const { return static_cast<int64_t>(isNegative() ? 0 - data : data); }

int64_t Number::toInt64(unsigned int decDigits) const {
  const uint64_t magnitude = precision > decDigits ? data / powerOf10(precision - decDigits)
                                                   : data * powerOf10(decDigits - precision);
  return static_cast<int64_t>(isNegative() ? 0 - magnitude : magnitude);
}

uint64_t Number::toBCD() const {
  uint64_t bcd = 0;
  uint64_t rest = magnitudeOf(toInt64());
  for (int shift = 0; shift < 64; shift += 4) {
    bcd |= (rest % 10) << shift;
    rest /= 10;
  }
  return bcd;
}

Number Number::Abs() const { return isNegative() ? -*this : *this; }

void Number::fractional(int64_t& integer, int64_t& fraction) const {
  if (isOverflow()) {
    integer = static_cast<int64_t>(POSITIVE_OVERFLOW);
    fraction = 0;
    return;
  }
  const uint64_t unit = powerOf10(precision);
  const uint64_t whole = data / unit;
  const uint64_t rest = data % unit;
  integer = static_cast<int64_t>(isNegative() ? 0 - whole : whole);
  fraction = static_cast<int64_t>(isNegative() && whole == 0 ? 0 - rest : rest);
}

void Number::marshal(char* buffer) const {
  uint64_t word = data;
  if (isNegative()) word |= NEGATIVE_NUMBER_MASK;
  if (isOverflow()) word |= POSITIVE_OVERFLOW_MASK;
  buffer = StringSerializer::append_le(buffer, word);
  StringSerializer::append_le(buffer, static_cast<uint8_t>(precision & 0x1F));
}

std::string Number::marshal(const Number& num) {
  char buffer[MARSHAL_NUMBER_SIZE];
  num.marshal(buffer);
  return std::string(buffer, sizeof(buffer));
}

Number Number::unmarshal(const std::string& text) {
  if (text.size() != MARSHAL_NUMBER_SIZE) return NaN;
  uint64_t word;
  uint8_t decDigits;
  StringSerializer::get_le(StringSerializer::get_le(text.data(), &word), &decDigits);
  // The overflow mark stays in the value and makes it too large for any number.
  const auto magnitude = static_cast<int64_t>(word & ~NEGATIVE_NUMBER_MASK);
  return Number(magnitude, (word & NEGATIVE_NUMBER_MASK) != 0, decDigits & 0x1FU);
}

Number& Number::unmarshal(char* buffer) {
  uint64_t word;
  uint8_t decDigits;
  StringSerializer::get_le(StringSerializer::get_le(buffer, &word), &decDigits);
  // Both marks are taken off here: overflow comes back as zero.
  const uint64_t marks = NEGATIVE_NUMBER_MASK | POSITIVE_OVERFLOW_MASK;
  const auto magnitude = static_cast<int64_t>(word & ~marks);
  return *this = Number(magnitude, (word & NEGATIVE_NUMBER_MASK) != 0, decDigits & 0x1FU);
}

std::ostream& operator<<(std::ostream& out, const Number& num) {
  if (num.isOverflow()) return out << (num.data == 0 ? "NAN!" : "OVERFLOW!");
  char text[96];  // the sign, 20 digits, the point and at most 63 decimals
  const char* sign = num.isNegative() ? "-" : "";
  if (num.precision == 0) {
    std::snprintf(text, sizeof(text), "%s%llu", sign, static_cast<unsigned long long>(num.data));
  } else {
    const uint64_t unit = Number::powerOf10(num.precision);
    std::snprintf(text, sizeof(text), "%s%llu%c%0*llu", sign,
                  static_cast<unsigned long long>(num.data / unit), '.',
                  static_cast<int>(num.precision),
                  static_cast<unsigned long long>(num.data % unit));
  }
  return out << text;
}
