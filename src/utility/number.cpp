// The forms of a number, its constructors, conversions, text and marshal form. The arithmetic
// stands in number_arithmetic.cpp, the comparisons in number_compare.cpp.
#include "utility/number.h"

#include <algorithm>
#include <iterator>
#include <ostream>

#include "utility/decimal_digits.h"
#include "utility/stringserializer.h"

constinit const Number Number::NaN(static_cast<int>(kZeroForm | kOverflow), int64_t{0});
constinit const Number Number::Zero(static_cast<int>(kZeroForm), int64_t{0});

Number::Number(int64_t value) : Number(value, false, 0U) {}

Number::Number(int64_t value, bool sign) : Number(value, sign, 0U) {}

Number::Number(int64_t value, unsigned int decDigits) : Number(value, false, decDigits) {}

Number::Number(int64_t value, bool sign, unsigned int decDigits) : Number() {
  SetScale(std::min(decDigits, maxPrecision), 0);
  if (value == 0) return;
  uint64_t magnitude = magnitudeOf(value);
  if (magnitude >= kLimit) {
    makeOverflow();
    return;
  }
  if (decDigits > maxPrecision) magnitude /= powerOf10(decDigits - maxPrecision);
  SetScale(std::min(decDigits, maxPrecision), numberSize(magnitude));
  SetValue(magnitude, sign || value < 0);
}

Number::Number(const std::string& repr) : Number() {
  const char* place = repr.data();
  const char* const end = place + repr.size();
  const auto digit = [&] {
    return static_cast<unsigned int>(static_cast<unsigned char>(*place)) - '0';
  };

  bool negative = false;
  for (; place != end && digit() > 9; ++place) negative = negative || *place == '-';

  // In locals, which six bits are not: the digits behind leading zeros, and the decimals.
  uint64_t magnitude = 0;
  unsigned int digits = 0;
  for (; place != end && *place != '.'; ++place) {
    if (digit() > 9) continue;
    magnitude = magnitude * 10 + digit();
    if (magnitude != 0 && ++digits > kMostDigits) {
      SetScale(0, digits);
      makeOverflow();
      return;
    }
  }
  unsigned int decimals = 0;
  for (; place != end && decimals < maxPrecision && digits < kMostDigits; ++place) {
    if (digit() > 9) continue;
    magnitude = magnitude * 10 + digit();
    if (magnitude != 0) ++digits;
    ++decimals;
  }
  SetScale(decimals, digits);
  SetValue(magnitude, negative);
}

Number& Number::operator=(int64_t value) { return *this = Number(value); }

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
  char text[96];  // the sign, 20 digits, the point, at most 63 decimals and the NUL
  char* place = text;
  if (num.isNegative()) *place++ = '-';
  if (num.precision == 0) {
    place = decimal_digits::Write(place, num.data);
  } else {
    const uint64_t unit = Number::powerOf10(num.precision);
    place = decimal_digits::Write(place, num.data / unit);
    *place++ = '.';
    place = decimal_digits::WriteLast(place, num.data % unit, num.precision);
  }
  *place = 0;
  return out << text;
}
