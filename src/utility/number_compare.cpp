// Comparisons: both sides are brought to the same decimals, then a table of signs and one
// test of the magnitudes decides.
#include "utility/number.h"

namespace {

// A side of a comparison.
struct Side {
  uint64_t data;
  unsigned int precision;
  bool negative;
  bool overflow;
};

Side SideOf(const Number& num) {
  return {num.data, num.precision, num.isNegative(), num.isOverflow()};
}

Side SideOf(int64_t value) { return {Number::magnitudeOf(value), 0, value < 0, false}; }

// Brings data to more decimals. False where that leaves 64 bits: it is then above whatever it
// may be compared with.
bool ScaleUp(uint64_t data, unsigned int decDigits, uint64_t* scaled) {
  const uint64_t factor = Number::powerOf10(decDigits);
  *scaled = data * factor;
  return data <= ~uint64_t{0} / factor;
}

// Below 0, 0 or above 0 as the left magnitude is below, equal to or above the right one.
int CompareMagnitudes(const Side& left, const Side& right) {
  uint64_t left_data = left.data;
  uint64_t right_data = right.data;
  if (left.precision < right.precision &&
      !ScaleUp(left.data, right.precision - left.precision, &left_data)) {
    return 1;
  }
  if (right.precision < left.precision &&
      !ScaleUp(right.data, left.precision - right.precision, &right_data)) {
    return -1;
  }
  return left_data < right_data ? -1 : left_data > right_data ? 1 : 0;
}

enum Ordering { kGreater, kLess, kGreaterEqual, kLessEqual };

bool Ordered(const Side& left, Ordering ordering, const Side& right) {
  const bool upward = ordering == kGreater || ordering == kGreaterEqual;
  const bool or_equal = ordering == kGreaterEqual || ordering == kLessEqual;
  if (left.overflow && right.overflow) return or_equal && left.data == right.data;
  if (left.overflow) return upward && left.data == Number::POSITIVE_OVERFLOW;
  if (right.overflow) return !upward;
  if (left.negative != right.negative) return upward == right.negative;

  const int order = CompareMagnitudes(left, right);
  const bool passed = (upward ? order > 0 : order < 0) || (or_equal && order == 0);
  // Two negative numbers turn the test of the magnitudes over, equality included. Equal ones
  // are thus above and below each other and neither at least nor at most. It is meant.
  return left.negative ? !passed : passed;
}

// Equality of different precisions: left has more decimals, of size digits by its own count.
bool EqualAligned(const Side& left, unsigned int size, const Side& right) {
  if (left.negative != right.negative || left.overflow != right.overflow) return false;
  return CompareMagnitudes(left, right) == 0 && Number::numberSize(left.data) == size;
}

}  // namespace

bool Number::operator==(const Number& num) const {
  if (precision == num.precision) return data == num.data && flags == num.flags;
  return precision > num.precision ? EqualAligned(SideOf(*this), size, SideOf(num))
                                   : EqualAligned(SideOf(num), num.size, SideOf(*this));
}

bool Number::operator==(int64_t value) const {
  const Side right = SideOf(value);
  if (precision != 0) return EqualAligned(SideOf(*this), size, right);
  const uint32_t right_flags = value == 0 ? kZeroForm : value < 0 ? kNegative : 0;
  return data == right.data && flags == right_flags;
}

bool Number::operator>(const Number& num) const {
  return Ordered(SideOf(*this), kGreater, SideOf(num));
}

bool Number::operator<(const Number& num) const {
  return Ordered(SideOf(*this), kLess, SideOf(num));
}

bool Number::operator>=(const Number& num) const {
  return Ordered(SideOf(*this), kGreaterEqual, SideOf(num));
}

bool Number::operator<=(const Number& num) const {
  return Ordered(SideOf(*this), kLessEqual, SideOf(num));
}

bool Number::operator>(int64_t value) const {
  return Ordered(SideOf(*this), kGreater, SideOf(value));
}

bool Number::operator<(int64_t value) const { return Ordered(SideOf(*this), kLess, SideOf(value)); }

bool Number::operator>=(int64_t value) const {
  return Ordered(SideOf(*this), kGreaterEqual, SideOf(value));
}

bool Number::operator<=(int64_t value) const {
  return Ordered(SideOf(*this), kLessEqual, SideOf(value));
}
