// Sums, products, quotients, the questions before them, and rounding. All work is done on
// 64-bit magnitudes. Where a step may run past 64 bits it is unsigned and wraps; the digit
// counts kept in size are what keeps ordinary numbers from getting there.
#include <algorithm>

#include "utility/number.h"

namespace {

constexpr uint64_t kLimit = Number::MAX_VALUE + 1;  // 10 to the 16
constexpr unsigned int kMostDigits = 18;            // that an intermediate result may have

}  // namespace

Number& Number::operator+=(const Number& num) {
  addNumber(num, num.isNegative());
  return *this;
}

Number& Number::operator-=(const Number& num) {
  addNumber(num, !num.isNegative());
  return *this;
}

Number& Number::operator+=(int64_t value) {
  addInteger(value, value < 0);
  return *this;
}

Number& Number::operator-=(int64_t value) {
  addInteger(value, value >= 0);
  return *this;
}

void Number::addNumber(const Number& num, bool negative) {
  // The left side too: scaled, its mark could wrap to an ordinary magnitude.
  if (num.isOverflow() || isOverflow()) {
    makeOverflow();
    return;
  }
  const unsigned int decDigits = std::max<unsigned int>(precision, num.precision);
  if (std::max<unsigned int>(size, num.size) + decDigits > kMostDigits) {
    makeOverflow();
    return;
  }
  addAligned(data * powerOf10(decDigits - precision),
             num.data * powerOf10(decDigits - num.precision), negative, decDigits);
}

void Number::addInteger(int64_t value, bool negative) {
  const uint64_t magnitude = magnitudeOf(value);
  const uint64_t unit = powerOf10(precision);
  if (isOverflow() || magnitude > MAX_VALUE / unit) {
    makeOverflow();
    return;
  }
  addAligned(data, magnitude * unit, negative, precision);
}

// The sum of this number's sign with left and of negative with right, at decDigits decimals.
void Number::addAligned(uint64_t left, uint64_t right, bool negative, unsigned int decDigits) {
  bool result_negative = isNegative();
  if (result_negative == negative) {
    data = left + right;
  } else if (left >= right) {
    data = left - right;
  } else {
    data = right - left;
    result_negative = negative;
  }
  if (data >= kLimit) {
    makeOverflow();
    return;
  }
  Finish(result_negative);
  if (data == 0) return;  // with the precision it had
  SetPrecision(decDigits);
  SetSize(std::max(numberSize(data), decDigits));
}

Number& Number::operator*=(const Number& num) {
  if (data == 0 || num.data == 0) {
    makeZero();
    return *this;
  }
  const uint64_t product = data * num.data;
  // The digits are counted before decimals are dropped: 1000000.0000 squared is too long.
  const unsigned int factor_digits = size + num.size;
  if (isOverflow() || num.isOverflow() || factor_digits > kMostDigits + 1 || product >= kLimit) {
    makeOverflow();
    return *this;
  }
  const unsigned int digits = numberSize(product);
  const unsigned int decDigits = precision + num.precision;
  const bool negative = isNegative() != num.isNegative();
  data = product;
  if (decDigits <= maxPrecision) {
    SetPrecision(decDigits);
    SetSize(std::max(digits, decDigits));
  } else {
    data /= powerOf10(decDigits - maxPrecision);
    SetPrecision(maxPrecision);
    SetSize(digits < decDigits ? maxPrecision : digits - decDigits + maxPrecision);
  }
  Finish(negative);
  return *this;
}

Number& Number::operator*=(int64_t value) {
  const uint64_t magnitude = magnitudeOf(value);
  if (data == 0 || magnitude == 0) {
    makeZero();
    return *this;
  }
  const unsigned int digits = size + numberSize(magnitude) - 1;
  const uint64_t product = data * magnitude;
  if (isOverflow() || magnitude >= kLimit || digits > kMostDigits || product >= kLimit) {
    makeOverflow();
    return *this;
  }
  data = product;
  SetSize(numberSize(product) > digits ? digits + 1 : digits);
  Finish(isNegative() != (value < 0));
  return *this;
}

Number& Number::operator/=(const Number& num) {
  if (num.data == 0) {
    makeNaN();
    return *this;
  }
  if (data == 0) return *this;
  if (isOverflow() || num.isOverflow()) {
    makeOverflow();
    return *this;
  }
  const bool negative = isNegative() != num.isNegative();
  const int difference = static_cast<int>(num.precision) - static_cast<int>(precision);
  // The decimals of the result, as many as 64 bits have room for.
  int room = static_cast<int>(kMostDigits) - static_cast<int>(size);
  if (difference >= 0) {
    room -= difference;
    if (room > 0) --room;
  }
  // Compared unsigned: no room at all counts as four decimals. It is meant.
  const unsigned int decDigits = std::min(static_cast<unsigned int>(room), maxPrecision);
  const uint64_t dividend =
      data * powerOf10(decDigits + static_cast<unsigned int>(std::max(difference, 0)));
  const uint64_t divisor =
      num.data * powerOf10(static_cast<unsigned int>(std::max(-difference, 0)));
  if (divisor == 0) {  // wrapped, from a magnitude that no computation makes
    makeOverflow();
    return *this;
  }
  data = dividend / divisor;
  Finish(negative);
  if (data == 0) return *this;
  SetPrecision(decDigits);
  SetSize(numberSize(data));
  return *this;
}

Number& Number::operator/=(int64_t value) {
  if (value == 0) {
    makeNaN();
    return *this;
  }
  if (data == 0) return *this;
  const uint64_t magnitude = magnitudeOf(value);
  const uint64_t divisor = magnitude * powerOf10(precision);
  // A divisor of 0 has wrapped.
  if (isOverflow() || precision + numberSize(magnitude) > kMostDigits ||
      size + maxPrecision > kMostDigits || divisor == 0) {
    makeOverflow();
    return *this;
  }
  data = data * powerOf10(maxPrecision) / divisor;
  Finish(isNegative() != (value < 0));
  if (data == 0) return *this;
  SetPrecision(maxPrecision);
  SetSize(numberSize(data));
  return *this;
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
  if (precision >= decDigits) {
    const unsigned int dropped = precision - decDigits;
    const uint64_t unit = powerOf10(dropped);
    const bool by_magnitude = (roundType == RT_CEILING) != negative;
    switch (roundType) {
      case RT_FLOOR:
      case RT_CEILING:
        data = (by_magnitude ? data + unit - 1 : data) / unit;
        break;
      case RT_MATH:
      case RT_NUM:
        if (dropped > 0) data = (data + 5 * powerOf10(dropped - 1)) / unit;
        if (roundType == RT_NUM && table != nullptr) data += table[data % 10] - data % 10;
        break;
    }
    SetPrecision(decDigits);
  } else {
    const int room = static_cast<int>(kMostDigits) - static_cast<int>(size);
    const int added = std::min(static_cast<int>(decDigits - precision), room);
    if (added > 0) {
      data *= powerOf10(static_cast<unsigned int>(added));
      SetPrecision(precision + static_cast<unsigned int>(added));
      SetSize(size + static_cast<unsigned int>(added));
    }
  }
  Finish(negative);
  if (data != 0) SetSize(numberSize(data));
  return *this;
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
  if (negative && !isOverflow()) Finish(negative);
  return *this;
}
