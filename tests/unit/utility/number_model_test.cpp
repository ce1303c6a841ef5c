// Number against a plain model: values as exact integers of 128 bits, in ten-thousandths or in
// the units that an operation's rules name. The random numbers have a fixed seed.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>

#include "utility/number.h"

namespace {

__extension__ typedef __int128 Wide;
__extension__ typedef unsigned __int128 UnsignedWide;

constexpr int kRounds = 200000;
constexpr Wide kLimit = 10000000000000000;

Wide Power(int n) {
  Wide result = 1;
  while (n-- > 0) result *= 10;
  return result;
}

int Digits(Wide value) {
  if (value < 0) value = -value;
  int count = 1;
  while (value >= 10) {
    value /= 10;
    ++count;
  }
  return count;
}

// A number as the model knows it: value units of the last of precision decimals.
struct Sample {
  int64_t value;
  int precision;

  Number number() const { return Number(value, precision); }
  Wide exact() const { return value * Power(4 - precision); }
  // What the number counts for its digits: none for a zero.
  int size() const { return value == 0 ? 0 : Digits(value); }
};

class NumberModelTest : public testing::Test {
 protected:
  // Every length of value is as likely as any other, and zero and the limits appear.
  Sample sample() {
    const int length = static_cast<int>(random_() % 17);
    const auto bound = static_cast<uint64_t>(Power(length));
    auto value = static_cast<int64_t>(random_() % bound);
    if (random_() % 64 == 0) value = static_cast<int64_t>(bound) - 1;
    if (random_() % 2 == 0) value = -value;
    return {value, static_cast<int>(random_() % 5)};
  }

  std::mt19937_64 random_{20240229};
};

// The result as ten-thousandths; overflow has none.
Wide Exact(const Number& num) {
  return (num.isNegative() ? -Wide{1} : Wide{1}) * static_cast<Wide>(num.data) *
         Power(4 - static_cast<int>(num.precision));
}

void ExpectResult(const Number& num, bool overflow, Wide value, const Sample& a, const Sample& b) {
  ASSERT_EQ(num.isOverflow(), overflow) << a.number() << " and " << b.number();
  if (overflow) return;
  ASSERT_TRUE(Exact(num) == value) << num << " from " << a.number() << " and " << b.number();
  ASSERT_EQ(num.isNegative(), value < 0);
  ASSERT_EQ((num.flags & Number::kZeroForm) != 0, value == 0);
}

bool SumOverflows(const Sample& a, const Sample& b, Wide sum) {
  const int precision = std::max(a.precision, b.precision);
  if (std::max(a.size(), b.size()) + precision > 18) return true;
  const Wide units = sum / Power(4 - precision);
  return units >= kLimit || -units >= kLimit;
}

TEST_F(NumberModelTest, Sums) {
  for (int i = 0; i < kRounds; ++i) {
    const Sample a = sample();
    const Sample b = sample();
    const Wide sum = a.exact() + b.exact();
    ExpectResult(a.number() + b.number(), SumOverflows(a, b, sum), sum, a, b);
    const Wide difference = a.exact() - b.exact();
    ExpectResult(a.number() - b.number(), SumOverflows(a, b, difference), difference, a, b);
    if (HasFatalFailure()) return;
  }
}

TEST_F(NumberModelTest, SumsWithIntegers) {
  for (int i = 0; i < kRounds; ++i) {
    const Sample a = sample();
    const Sample b = {sample().value, 0};
    const Wide unit = Power(4 - a.precision);
    const bool too_long =
        b.value * Power(a.precision) >= kLimit || -b.value * Power(a.precision) >= kLimit;
    const Wide sum = a.exact() + b.exact();
    const Wide difference = a.exact() - b.exact();
    ExpectResult(a.number() + b.value, too_long || sum / unit >= kLimit || -sum / unit >= kLimit,
                 sum, a, b);
    ExpectResult(a.number() - b.value,
                 too_long || difference / unit >= kLimit || -difference / unit >= kLimit,
                 difference, a, b);
    if (HasFatalFailure()) return;
  }
}

TEST_F(NumberModelTest, Products) {
  for (int i = 0; i < kRounds; ++i) {
    const Sample a = sample();
    const Sample b = sample();
    const Wide product = static_cast<Wide>(a.value) * b.value;
    const bool overflow =
        product != 0 && (a.size() + b.size() - 1 >= 19 || product >= kLimit || -product >= kLimit);
    const int precision = a.precision + b.precision;
    const Wide cut =
        precision > 4 ? product / Power(precision - 4) : product * Power(4 - precision);
    ExpectResult(a.number() * b.number(), overflow, cut, a, b);

    const Sample integer = {b.value, 0};
    ExpectResult(a.number() * b.value, overflow, product * Power(4 - a.precision), a, integer);
    if (HasFatalFailure()) return;
  }
}

TEST_F(NumberModelTest, Quotients) {
  for (int i = 0; i < kRounds; ++i) {
    const Sample a = sample();
    const Sample b = sample();
    const Number quotient = a.number() / b.number();
    if (b.value == 0) {
      ASSERT_EQ(quotient.flags, Number::NaN.flags);
      continue;
    }
    if (a.value == 0) {
      ASSERT_EQ(quotient.flags, Number::Zero.flags);
      continue;
    }
    const int shift = b.precision - a.precision;
    int room = 18 - a.size() - std::max(shift, 0);
    if (shift >= 0 && room > 0) --room;
    const int places = room < 0 || room > 4 ? 4 : room;
    const Wide left = a.value < 0 ? -Wide{a.value} : Wide{a.value};
    const Wide right = b.value < 0 ? -Wide{b.value} : Wide{b.value};
    // Without room the dividend keeps 64 bits.
    const auto dividend =
        static_cast<uint64_t>(static_cast<UnsignedWide>(left * Power(places + std::max(shift, 0))));
    const auto magnitude =
        static_cast<uint64_t>(static_cast<Wide>(dividend) / (right * Power(std::max(-shift, 0))));
    ASSERT_FALSE(quotient.isOverflow());
    ASSERT_EQ(quotient.data, magnitude) << a.number() << " / " << b.number();
    ASSERT_EQ(quotient.isNegative(), magnitude != 0 && (a.value < 0) != (b.value < 0));
    if (magnitude == 0) continue;
    ASSERT_EQ(static_cast<int>(quotient.precision), places);
  }
}

TEST_F(NumberModelTest, QuotientsWithIntegers) {
  for (int i = 0; i < kRounds; ++i) {
    const Sample a = sample();
    const Sample b = {sample().value, 0};
    if (a.value == 0 || b.value == 0) continue;
    const bool overflow = a.precision + Digits(b.value) > 18 || a.size() + 4 > 18;
    ExpectResult(a.number() / b.value, overflow,
                 Wide{a.value} * 10000 / (Wide{b.value} * Power(a.precision)), a, b);
    if (HasFatalFailure()) return;
  }
}

TEST_F(NumberModelTest, Comparisons) {
  for (int i = 0; i < kRounds; ++i) {
    const Sample a = sample();
    Sample b = sample();
    // Often the same value, with other decimals where it has room.
    if (i % 4 == 0) {
      b = a;
      while (b.precision > 0 && b.value % 10 == 0) b = {b.value / 10, b.precision - 1};
    }
    const Number left = a.number();
    const Number right = b.number();
    const bool both_negative = a.value < 0 && b.value < 0;
    const bool same = a.exact() == b.exact();
    ASSERT_EQ(left > right, a.exact() > b.exact() || (both_negative && same));
    ASSERT_EQ(left < right, a.exact() < b.exact() || (both_negative && same));
    ASSERT_EQ(left >= right, a.exact() > b.exact() || (!both_negative && same));
    ASSERT_EQ(left <= right, a.exact() < b.exact() || (!both_negative && same));
    // A zero has no digits of its own, so that it equals one of its own decimals only.
    ASSERT_EQ(left == right, same && (a.value != 0 || a.precision == b.precision));

    const Sample integer = {b.value, 0};
    const bool negative = a.value < 0 && b.value < 0;
    const bool equal = a.exact() == integer.exact();
    ASSERT_EQ(left > b.value, a.exact() > integer.exact() || (negative && equal));
    ASSERT_EQ(left < b.value, a.exact() < integer.exact() || (negative && equal));
    ASSERT_EQ(left >= b.value, a.exact() > integer.exact() || (!negative && equal));
    ASSERT_EQ(left <= b.value, a.exact() < integer.exact() || (!negative && equal));
    ASSERT_EQ(left == b.value, equal && (a.value != 0 || a.precision == 0));
  }
}

// Quotient rounded towards minus infinity.
Wide FloorDiv(Wide value, Wide unit) {
  return value >= 0 ? value / unit : -((-value + unit - 1) / unit);
}

TEST_F(NumberModelTest, Rounding) {
  for (int i = 0; i < kRounds; ++i) {
    const Sample a = sample();
    const int places = static_cast<int>(random_() % 5);
    const Wide unit = Power(4 - places);
    const Wide value = a.exact();
    const Wide magnitude = value < 0 ? -value : value;
    const Wide half_up = (magnitude + unit / 2) / unit * unit;
    struct {
      Number::ROUNDTYPE type;
      Wide expected;
    } const rows[] = {{Number::RT_FLOOR, FloorDiv(value, unit) * unit},
                      {Number::RT_CEILING, -FloorDiv(-value, unit) * unit},
                      {Number::RT_MATH, value < 0 ? -half_up : half_up},
                      {Number::RT_NUM, value < 0 ? -half_up : half_up}};
    for (const auto& row : rows) {
      Number num = a.number();
      num.round(static_cast<unsigned int>(places), row.type, nullptr);
      ExpectResult(num, false, row.expected, a, a);
      if (HasFatalFailure()) return;
      ASSERT_EQ(static_cast<int>(num.precision),
                a.precision >= places ? places
                                      : std::min(places, a.precision + std::max(0, 18 - a.size())));
    }
  }
}

TEST_F(NumberModelTest, TryAddAsksForTheAlignedSum) {
  for (int i = 0; i < kRounds; ++i) {
    const Sample a = sample();
    const Sample b = sample();
    const int precision = std::max(a.precision, b.precision);
    const bool aligns = (a.precision == precision || a.size() + precision - a.precision <= 18) &&
                        (b.precision == precision || b.size() + precision - b.precision <= 18);
    const Wide left = a.value * Power(precision - a.precision);
    const Wide right = b.value * Power(precision - b.precision);
    const Wide sum = (left < 0 ? -left : left) + (right < 0 ? -right : right);
    const bool adds = (a.value < 0) == (b.value < 0);
    ASSERT_EQ(a.number().tryAdd(b.number()), aligns && (!adds || sum < kLimit));
  }
}

}  // namespace
