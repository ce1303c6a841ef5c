// Exact decimal numbers for money and quantities: sign and magnitude, at most 16 digits of
// which at most 4 are decimals. Nothing is binary floating point, nothing throws: a result out
// of range becomes the overflow form, one that does not exist the NaN form, and both travel on
// through what is computed with them. Ask isOverflow() after a computation, or tryAdd and its
// like before it.
//
// Digits that do not fit are cut, never rounded; round() rounds.
#pragma once

#include <concepts>
#include <cstdint>
#include <iosfwd>
#include <string>
#include <type_traits>

#include "utility/decimal_digits.h"

class Number {
 public:
  enum ROUNDTYPE {
    RT_FLOOR = 0,    // towards minus infinity
    RT_CEILING = 1,  // towards plus infinity
    RT_MATH = 2,     // half away from zero
    RT_NUM = 3       // as RT_MATH, then the last digit by a table (coin steps)
  };
  // What each last digit, 0 to 9, becomes.
  typedef unsigned int roundTable[10];

  static constexpr uint64_t MAX_VALUE = 0x2386F26FC0FFFF;  // 16 nines
  static constexpr unsigned int maxPrecision = 4;

  // The marshal form: a little-endian word of magnitude and marks, then the precision.
  static constexpr int MARSHAL_NUMBER_SIZE = 9;
  static constexpr uint64_t POSITIVE_OVERFLOW = 0x4000000000000000;
  static constexpr uint64_t NEGATIVE_OVERFLOW = 0xC000000000000000;
  static constexpr uint64_t NEGATIVE_NUMBER = 0x8000000000000000;
  static constexpr int NEGATIVE_NUMBER_OFFSET = 63;
  static constexpr int POSITIVE_OVERFLOW_OFFSET = 62;
  static constexpr int PRECISION_OFFSET = 58;
  static constexpr uint64_t PRECISION_MASK = 0x3C00000000000000;
  static constexpr uint64_t POSITIVE_OVERFLOW_MASK = 0x4000000000000000;
  static constexpr uint64_t NEGATIVE_NUMBER_MASK = 0x8000000000000000;

  // Powers of ten by index. 10 to the 8 stands at 8 and at 9, and every later entry one place
  // late: that is meant. Up to four decimals nothing looks past 8 but powerOf10 itself.
  static constexpr uint64_t power10[20] = {
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

  static const Number NaN;
  static const Number Zero;

  // Bits of the flag word.
  static constexpr uint32_t kNegative = 1;  // never set on zero
  static constexpr uint32_t kOverflow = 2;
  static constexpr uint32_t kZeroForm = 256;  // in zero and NaN; only operator== sees it

  // Zero without decimals.
  constexpr Number() : flags(kZeroForm), precision(0), size(0), unused(0), data(0) {}

  // value counts units of the last decimal: Number(1234, 2) is 12.34. More than four decimals
  // are cut off. A magnitude past MAX_VALUE gives overflow. A sign of true makes the number
  // negative whatever value's own sign.
  Number(int64_t value);  // NOLINT: an integer is a number
  Number(int64_t value, bool sign);
  Number(int64_t value, unsigned int decDigits);
  Number(int64_t value, bool sign, unsigned int decDigits);

  // The flag word and the magnitude as they stand, without any test: for the canonical forms.
  // Only an int with a signed 64-bit integer means this one.
  constexpr Number(int word, int64_t value)
      : flags(static_cast<uint32_t>(word)),
        precision(0),
        size(0),
        unused(0),
        data(static_cast<uint64_t>(value)) {}

  // Every other pair of integers is a value with its decimals, or with a bool its sign, so
  // that plain ints and sizes need no cast.
  template <std::integral Value, std::integral Second>
  requires(!(std::same_as<Value, int> && std::is_signed_v<Second> && sizeof(Second) == 8))
      Number(Value value, Second second)
      : Number(signedValue(value), std::same_as<Second, bool> && second != 0,
               std::same_as<Second, bool> ? 0U : decimals(second)) {}

  // Reads digits with one "." at most behind the first of them; a "-" before them is the sign;
  // any other character is passed over, ".5" is 5. The fifth decimal and those behind it are
  // cut. More than 18 digits before the point give overflow, while 17 and 18 digits are kept
  // although nothing else makes them.
  Number(const std::string& repr);  // NOLINT: a text of digits is a number

  Number(const Number&) = default;
  Number& operator=(const Number&) = default;
  Number& operator=(int64_t value);

  static Number getZero() { return Zero; }
  static Number getNaN() { return NaN; }

  bool isNegative() const { return (flags & kNegative) != 0; }
  // The overflow and the NaN form.
  bool isOverflow() const { return (flags & kOverflow) != 0; }
  void clearFlags() { flags = 0; }

  // Decimals without the trailing zeros; 0 in overflow.
  unsigned int countDecimalDigits() const;
  // Whether the number has no more than decDigits decimals but zeros; false in overflow.
  bool checkDecimalDigits(unsigned int decDigits) const;

  // An integer without its sign.
  static constexpr uint64_t magnitudeOf(int64_t value) {
    const auto word = static_cast<uint64_t>(value);
    return value < 0 ? 0 - word : word;
  }
  // The table's entry, the last one for an index past it.
  static constexpr uint64_t powerOf10(unsigned int pow) {
    return power10[pow < kPowers ? pow : kPowers - 1];
  }
  // Decimal digits of a magnitude, 1 for 0. Defined up to 18 digits, 1 for more.
  static constexpr unsigned int numberSize(uint64_t number) {
    const unsigned int digits = decimal_digits::Count(number);
    return digits <= kMostDigits ? digits : 1;
  }

  // The value with its sign, in units of its own last decimal; brought to decDigits decimals,
  // cut towards zero or multiplied (64 bits, wrapping).
  int64_t toInt64() const;
  int64_t toInt64(unsigned int decDigits) const;
  // The 16 lowest digits of toInt64() without its sign, the units in the lowest half byte.
  uint64_t toBCD() const;
  // The magnitude in units of the last decimal.
  uint64_t absValue() const { return data; }
  Number Abs() const;
  // The parts before and behind the point, the latter in units of the last decimal. A negative
  // number has its sign on the integer part, or on the fraction where that is 0. In overflow
  // POSITIVE_OVERFLOW and 0.
  void fractional(int64_t& integer, int64_t& fraction) const;

  // Sums have the larger precision of both; a sum of zero keeps the left one's.
  Number& operator+=(const Number& num) { return SetSum(*this, num, num.isNegative()); }
  Number& operator-=(const Number& num) { return SetSum(*this, num, !num.isNegative()); }
  Number& operator+=(int64_t value) { return SetSum(*this, value, value < 0); }
  Number& operator-=(int64_t value) { return SetSum(*this, value, value >= 0); }
  // Products are cut to four decimals; the factors may have 19 digits together.
  Number& operator*=(const Number& num) { return SetProduct(*this, num); }
  Number& operator*=(int64_t value) { return SetProduct(*this, value); }
  // Quotients have four decimals, fewer where the dividend is long; cut.
  Number& operator/=(const Number& num) { return SetQuotient(*this, num); }
  Number& operator/=(int64_t value) { return SetQuotient(*this, value); }

  // Each writes where the result is to stand: a copy of it would wait for its parts.
  Number operator+(const Number& num) const {
    Number sum;
    sum.SetSum(*this, num, num.isNegative());
    return sum;
  }
  Number operator-(const Number& num) const {
    Number difference;
    difference.SetSum(*this, num, !num.isNegative());
    return difference;
  }
  Number operator*(const Number& num) const {
    Number product;
    product.SetProduct(*this, num);
    return product;
  }
  Number operator/(const Number& num) const {
    Number quotient;
    quotient.SetQuotient(*this, num);
    return quotient;
  }
  Number operator+(int64_t value) const {
    Number sum;
    sum.SetSum(*this, value, value < 0);
    return sum;
  }
  Number operator-(int64_t value) const {
    Number difference;
    difference.SetSum(*this, value, value >= 0);
    return difference;
  }
  Number operator*(int64_t value) const {
    Number product;
    product.SetProduct(*this, value);
    return product;
  }
  Number operator/(int64_t value) const {
    Number quotient;
    quotient.SetQuotient(*this, value);
    return quotient;
  }
  Number operator-() const { return *this * int64_t{-1}; }

  // Whether the operation stays within max_value, in units of the aligned last decimal.
  bool tryAdd(const Number& num, uint64_t max_value = MAX_VALUE) const;
  bool tryAdd(int64_t value, uint64_t max_value = MAX_VALUE) const;
  // Adds the magnitudes as they stand, without aligning them, where the signs differ: meant.
  bool trySub(const Number& num, uint64_t max_value = MAX_VALUE) const;
  bool trySub(int64_t value, uint64_t max_value = MAX_VALUE) const;
  // Whether a counter at num can grow by inc.
  static bool tryAdd(uint16_t num, uint16_t inc, uint64_t max_value);
  // The product of the magnitudes in 64 bits, wrapping, precision aside: meant.
  bool tryMultiply(const Number& num) const;
  bool tryMultiply(int64_t value) const;
  bool tryDivide(const Number& num) const;
  bool tryDivide(int64_t value) const;

  // Rounds to decDigits decimals, 4 at most; a number with fewer gets zeros while there is
  // room for 18 digits. With RT_NUM and a table the last digit is replaced. Overflow stays.
  Number& round(unsigned int decDigits, ROUNDTYPE roundType, const unsigned int* table = nullptr);
  // Rounds to a multiple of modulus; one of zero or less leaves the number as it is, and so
  // does RT_NUM.
  Number& round_mod(const Number& modulus, ROUNDTYPE roundType);

  // Equal values of different precision are equal if the one with more decimals has the digit
  // count of its value: 0.050 from a sum, which counts its leading zero, is not 0.05.
  bool operator==(const Number& num) const;
  bool operator==(int64_t value) const;

  // Two equal negative numbers are above and below each other, and neither "at least" nor "at
  // most": that is meant; who needs equality asks ==.
  bool operator>(const Number& num) const;
  bool operator<(const Number& num) const;
  bool operator>=(const Number& num) const;
  bool operator<=(const Number& num) const;
  bool operator>(int64_t value) const;
  bool operator<(int64_t value) const;
  bool operator>=(int64_t value) const;
  bool operator<=(int64_t value) const;

  // The marshal form, and back. A text of another length than 9 gives NaN.
  static std::string marshal(const Number& num);
  static Number unmarshal(const std::string& text);
  // The same with a buffer of 9 bytes. Unlike the reader above, this one drops the overflow
  // mark, so that overflow comes back as zero: meant.
  void marshal(char* buffer) const;
  Number& unmarshal(char* buffer);

  uint32_t flags;
  unsigned int precision : 6;  // decimals in data, 0 to 4
  unsigned int size : 6;       // digits of data, at least precision after sums and products
  unsigned int unused : 20;    // 0: with it the three are one word, stored at once
  uint64_t data;               // magnitude, in units of the last decimal

 private:
  static constexpr unsigned int kPowers = 20;
  static constexpr uint64_t kLimit = MAX_VALUE + 1;  // 10 to the 16
  static constexpr unsigned int kMostDigits = 18;    // of an intermediate result, and of a text

  // A value past the signed range is out of a Number's range as well.
  template <std::integral T>
  static constexpr int64_t signedValue(T value) {
    const auto word = static_cast<uint64_t>(value);
    return std::is_unsigned_v<T> && word > MAX_VALUE ? static_cast<int64_t>(POSITIVE_OVERFLOW)
                                                     : static_cast<int64_t>(word);
  }
  // A negative count becomes a huge one, which cuts all digits.
  template <std::integral T>
  static constexpr unsigned int decimals(T count) {
    const auto word = static_cast<uint64_t>(count);
    return word < ~0U ? static_cast<unsigned int>(word) : ~0U;
  }

  // The fields have six bits, and what is more than these is dropped. No digits that a computation
  // counts need them all; those of a number that was filled from outside may.
  void SetScale(unsigned int decDigits, unsigned int digits) {
    constexpr unsigned int kSixBits = 63;
    precision = decDigits & kSixBits;
    size = digits & kSixBits;
    unused = 0;
  }
  // The forms keep the scale that stands.
  Number& makeZero() { return SetForm(kZeroForm, 0); }
  Number& makeNaN() { return SetForm(kZeroForm | kOverflow, 0); }
  Number& makeOverflow() { return SetForm(kOverflow, POSITIVE_OVERFLOW); }
  Number& SetForm(uint32_t word, uint64_t magnitude) {
    flags = word;
    data = magnitude;
    return *this;
  }
  // The magnitude with its sign, or the zero form.
  Number& SetValue(uint64_t magnitude, bool negative) {
    return SetForm(magnitude == 0 ? kZeroForm : negative ? kNegative : 0, magnitude);
  }

  // The operations: of left and right into this number, which may be either of them. A result in
  // one of the forms has the scale of left. negative is the sign with which right is added.
  Number& SetSum(const Number& left, const Number& right, bool negative);
  Number& SetSum(const Number& left, int64_t value, bool negative);
  Number& SetAligned(const Number& left, uint64_t left_data, uint64_t right_data, bool negative,
                     unsigned int decDigits);
  Number& SetProduct(const Number& left, const Number& right);
  Number& SetProduct(const Number& left, int64_t value);
  Number& SetQuotient(const Number& left, const Number& right);
  Number& SetQuotient(const Number& left, int64_t value);
};

// The decimal text, all decimals shown; "NAN!" and "OVERFLOW!".
std::ostream& operator<<(std::ostream& out, const Number& num);
