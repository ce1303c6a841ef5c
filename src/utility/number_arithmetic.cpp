// Sums, products, quotients, the questions before them, and rounding. All work is done on
// 64-bit magnitudes. Where a step may run past 64 bits it is unsigned and wraps; the digit
// counts kept in size are what keeps ordinary numbers from getting there.
#include <algorithm>

#include "utility/decimal_digits.h"
#include "utility/number.h"

namespace {

// More digits than four are those of a number that was filled from outside.
uint64_t WithoutLast(uint64_t magnitude, unsigned int digits) {
  return digits <= Number::maxPrecision ? decimal_digits::WithoutLast(magnitude, digits)
                                        : magnitude / Number::powerOf10(digits);
}

}  // namespace

Number& Number::SetSum(const Number& left, const Number& right, bool negative) {
  const unsigned int decDigits = std::max<unsigned int>(left.precision, right.precision);
  const unsigned int digits = std::max<unsigned int>(left.size, right.size);
  // The left side's mark too: scaled, it could wrap to an ordinary magnitude.
  if (((left.flags | right.flags) & kOverflow) != 0 || digits + decDigits > kMostDigits) {
    SetScale(left.precision, left.size);
    return makeOverflow();
  }
  return SetAligned(left, left.data * powerOf10(decDigits - left.precision),
                    right.data * powerOf10(decDigits - right.precision), negative, decDigits);
}

Number& Number::SetSum(const Number& left, int64_t value, bool negative) {
  const uint64_t magnitude = magnitudeOf(value);
  const uint64_t unit = powerOf10(left.precision);
  if (left.isOverflow() || magnitude > MAX_VALUE / unit) {
    SetScale(left.precision, left.size);
    return makeOverflow();
  }
  return SetAligned(left, left.data, magnitude * unit, negative, left.precision);
}

// The sum of left's sign with left_data and of negative with right_data, at decDigits decimals.
Number& Number::SetAligned(const Number& left, uint64_t left_data, uint64_t right_data,
                           bool negative, unsigned int decDigits) {
  // Signs and magnitudes come as they like: computed, they cost less than a wrong guess.
  const bool opposite = left.isNegative() != negative;
  const bool turned = opposite && left_data < right_data;
  const bool result_negative = left.isNegative() != turned;
  const uint64_t sum = left_data + (opposite ? 0 - right_data : right_data);
  const uint64_t magnitude = turned ? 0 - sum : sum;
  if (magnitude - 1 >= kLimit - 1) {  // zero, or out of range
    SetScale(left.precision, left.size);
    return magnitude == 0 ? makeZero() : makeOverflow();
  }
  SetScale(decDigits, std::max(numberSize(magnitude), decDigits));
  return SetForm(result_negative ? kNegative : 0, magnitude);
}

Number& Number::SetProduct(const Number& left, const Number& right) {
  const uint64_t product = left.data * right.data;
  // The digits are counted before decimals are dropped: 1000000.0000 squared is too long.
  const unsigned int factor_digits = unsigned{left.size} + right.size;
  const bool zero = left.data == 0 || right.data == 0;
  if (zero || ((left.flags | right.flags) & kOverflow) != 0 || factor_digits > kMostDigits + 1 ||
      product >= kLimit) {
    SetScale(left.precision, left.size);
    return zero ? makeZero() : makeOverflow();
  }
  const unsigned int digits = numberSize(product);
  const unsigned int decDigits = unsigned{left.precision} + right.precision;
  const bool negative = left.isNegative() != right.isNegative();
  if (decDigits <= maxPrecision) {
    SetScale(decDigits, std::max(digits, decDigits));
    return SetValue(product, negative);
  }
  SetScale(maxPrecision, digits < decDigits ? maxPrecision : digits - decDigits + maxPrecision);
  return SetValue(WithoutLast(product, decDigits - maxPrecision), negative);
}

Number& Number::SetProduct(const Number& left, int64_t value) {
  const uint64_t magnitude = magnitudeOf(value);
  const unsigned int digits = left.size + numberSize(magnitude) - 1;
  const uint64_t product = left.data * magnitude;
  const bool zero = left.data == 0 || magnitude == 0;
  if (zero || left.isOverflow() || magnitude >= kLimit || digits > kMostDigits ||
      product >= kLimit) {
    SetScale(left.precision, left.size);
    return zero ? makeZero() : makeOverflow();
  }
  const bool negative = left.isNegative() != (value < 0);
  SetScale(left.precision, numberSize(product) > digits ? digits + 1 : digits);
  return SetValue(product, negative);
}

Number& Number::SetQuotient(const Number& left, const Number& right) {
  const unsigned int left_precision = left.precision;
  const unsigned int left_size = left.size;
  const auto form = [&](Number& (Number::*make)()) -> Number& {
    SetScale(left_precision, left_size);
    return (this->*make)();
  };
  if (right.data == 0) return form(&Number::makeNaN);
  if (left.data == 0) return *this = left;
  if (((left.flags | right.flags) & kOverflow) != 0) return form(&Number::makeOverflow);
  const bool negative = left.isNegative() != right.isNegative();
  const int difference = static_cast<int>(right.precision) - static_cast<int>(left_precision);
  // The decimals of the result, as many as 64 bits have room for.
  int room = static_cast<int>(kMostDigits) - static_cast<int>(left_size);
  if (difference >= 0) {
    room -= difference;
    if (room > 0) --room;
  }
  // Compared unsigned: no room at all counts as four decimals. It is meant.
  const unsigned int decDigits = std::min(static_cast<unsigned int>(room), maxPrecision);
  const uint64_t dividend =
      left.data * powerOf10(decDigits + static_cast<unsigned int>(std::max(difference, 0)));
  const uint64_t divisor =
      right.data * powerOf10(static_cast<unsigned int>(std::max(-difference, 0)));
  // A divisor of 0 has wrapped, from a magnitude that no computation makes.
  if (divisor == 0) return form(&Number::makeOverflow);
  const uint64_t quotient = dividend / divisor;
  if (quotient == 0) return form(&Number::makeZero);
  SetScale(decDigits, numberSize(quotient));
  return SetValue(quotient, negative);
}

Number& Number::SetQuotient(const Number& left, int64_t value) {
  const unsigned int left_precision = left.precision;
  const unsigned int left_size = left.size;
  const auto form = [&](Number& (Number::*make)()) -> Number& {
    SetScale(left_precision, left_size);
    return (this->*make)();
  };
  if (value == 0) return form(&Number::makeNaN);
  if (left.data == 0) return *this = left;
  const uint64_t magnitude = magnitudeOf(value);
  const uint64_t divisor = magnitude * powerOf10(left_precision);
  // A divisor of 0 has wrapped.
  if (left.isOverflow() || left_precision + numberSize(magnitude) > kMostDigits ||
      left_size + maxPrecision > kMostDigits || divisor == 0) {
    return form(&Number::makeOverflow);
  }
  const bool negative = left.isNegative() != (value < 0);
  const uint64_t quotient = left.data * powerOf10(maxPrecision) / divisor;
  if (quotient == 0) return form(&Number::makeZero);
  SetScale(maxPrecision, numberSize(quotient));
  return SetValue(quotient, negative);
}

bool Number::tryAdd(const Number& num, uint64_t max_value) const {
  if (isOverflow() || num.isOverflow()) return false;
  const unsigned int decDigits = std::max<unsigned int>(precision, num.precision);
  const unsigned int left_shift = decDigits - precision;
  const unsigned int right_shift = decDigits - num.precision;
  if (left_shift != 0 && size + left_shift > kMostDigits) return false;
  if (right_shift != 0 && num.size + right_shift > kMostDigits) return false;
  if (isNegative() != num.isNegative()) return true;
  return data * powerOf10(left_shift) + num.data * powerOf10(right_shift) <= max_value;
}

bool Number::trySub(const Number& num, uint64_t max_value) const {
  if (isOverflow() || num.isOverflow()) return false;
  const unsigned int decDigits = std::max<unsigned int>(precision, num.precision);
  const unsigned int left_shift = decDigits - precision;
  const unsigned int right_shift = decDigits - num.precision;
  if (left_shift != 0 && numberSize(data) + left_shift > kMostDigits) return false;
  if (right_shift != 0 && numberSize(num.data) + right_shift > kMostDigits) return false;
  if (isNegative() == num.isNegative()) return true;
  return data + num.data <= max_value;
}

bool Number::tryAdd(int64_t value, uint64_t max_value) const {
  const uint64_t magnitude = magnitudeOf(value);
  if (isOverflow() || magnitude >= kLimit || numberSize(magnitude) + precision > kMostDigits) {
    return false;
  }
  if ((value < 0) != isNegative()) return true;
  return data + magnitude * powerOf10(precision) <= max_value;
}

bool Number::trySub(int64_t value, uint64_t max_value) const {
  const uint64_t magnitude = magnitudeOf(value);
  if (isOverflow() || magnitude >= max_value || numberSize(magnitude) + precision > kMostDigits) {
    return false;
  }
  if ((value < 0) == isNegative()) return true;
  return data + magnitude * powerOf10(precision) <= max_value;
}

bool Number::tryAdd(uint16_t num, uint16_t inc, uint64_t max_value) {
  return inc <= max_value && num <= max_value - inc;
}

bool Number::tryMultiply(const Number& num) const {
  return !isOverflow() && !num.isOverflow() && data * num.data < kLimit;
}

bool Number::tryMultiply(int64_t value) const {
  return !isOverflow() && data * magnitudeOf(value) < kLimit;
}

bool Number::tryDivide(const Number& num) const {
  if (num.data == 0) return false;
  return data == 0 || (!isOverflow() && !num.isOverflow());
}

bool Number::tryDivide(int64_t value) const {
  if (value == 0) return false;
  return data == 0 || !isOverflow();
}

Number& Number::round(unsigned int decDigits, ROUNDTYPE roundType, const unsigned int* table) {
  if (isOverflow()) return *this;
  decDigits = std::min(decDigits, maxPrecision);
  if (precision == decDigits && roundType != RT_NUM) return *this;
  const bool negative = isNegative();
  uint64_t magnitude = data;
  unsigned int digits = size;
  if (precision >= decDigits) {
    const unsigned int dropped = precision - decDigits;
    const bool away_from_zero = (roundType == RT_CEILING) != negative;
    switch (roundType) {
      case RT_FLOOR:
      case RT_CEILING:
        magnitude =
            WithoutLast(away_from_zero ? magnitude + powerOf10(dropped) - 1 : magnitude, dropped);
        break;
      case RT_MATH:
      case RT_NUM:
        if (dropped > 0) magnitude = WithoutLast(magnitude + 5 * powerOf10(dropped - 1), dropped);
        if (roundType == RT_NUM && table != nullptr) {
          magnitude += table[magnitude % 10] - magnitude % 10;
        }
        break;
    }
  } else {
    const int room = static_cast<int>(kMostDigits) - static_cast<int>(digits);
    const int added = std::min(static_cast<int>(decDigits - precision), room);
    decDigits = precision;
    if (added > 0) {
      magnitude *= powerOf10(static_cast<unsigned int>(added));
      decDigits += static_cast<unsigned int>(added);
      digits += static_cast<unsigned int>(added);
    }
  }
  SetScale(decDigits, magnitude != 0 ? numberSize(magnitude) : digits);
  return SetValue(magnitude, negative);
}

Number& Number::round_mod(const Number& modulus, ROUNDTYPE roundType) {
  if (modulus.data == 0 || modulus.isNegative()) return *this;
  const Number half = modulus / 2;
  const Number absolute = Abs();
  Number multiple = absolute / modulus;
  multiple.round(0, RT_FLOOR);
  const Number remainder = absolute - multiple * modulus;
  switch (roundType) {
    case RT_MATH:
      if (remainder >= half) multiple += 1;
      break;
    case RT_FLOOR:
    case RT_CEILING:
      if (remainder.data == 0) return *this;
      if (isNegative() == (roundType == RT_FLOOR)) multiple += 1;
      break;
    default:
      return *this;
  }
  const bool negative = isNegative();
  *this = multiple * modulus;
  if (negative && !isOverflow()) SetValue(data, negative);
  return *this;
}
