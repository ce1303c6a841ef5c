#include <gtest/gtest.h>

#include <climits>

#include "unit/utility/number_forms.h"
#include "utility/number.h"

namespace {

TEST(NumberCompareTest, EqualityWithinAPrecisionSeesTheFlagWord) {
  EXPECT_TRUE(Number(-5) == Number(-5));
  EXPECT_FALSE(Number(5) == Number(-5));
  EXPECT_TRUE(Number(5) != Number(6));
  EXPECT_TRUE(Overflow() == Overflow());
  EXPECT_TRUE(Number::NaN == Number::NaN);
  EXPECT_FALSE(Number::NaN == Number::Zero);
  Number zero;
  zero.clearFlags();
  EXPECT_FALSE(zero == Number::Zero);
}

TEST(NumberCompareTest, EqualityAcrossPrecisions) {
  EXPECT_TRUE(Number("1.50") == Number("1.5"));
  EXPECT_TRUE(Number("1.5") == Number("1.5000"));
  EXPECT_FALSE(Number("1.51") == Number("1.5"));
  EXPECT_FALSE(Number("1.50") == Number("-1.5"));
  EXPECT_FALSE(Number("9999999999999999") == Number("0.0001"));
}

TEST(NumberCompareTest, EqualityAcrossPrecisionsSeesTheDigitCount) {
  // 0.050 counts three digits as a sum, two as a text.
  const Number sum = Number("0.020") + Number("0.030");
  EXPECT_FALSE(sum == Number("0.05"));
  EXPECT_TRUE(Number("0.050") == Number("0.05"));
  // Zero has one digit, and "0.00" counts none.
  EXPECT_FALSE(Number("0.00") == Number(0));
}

TEST(NumberCompareTest, EqualityWithIntegers) {
  EXPECT_TRUE(Number("5.00") == 5);
  EXPECT_TRUE(Number(-5) == -5);
  EXPECT_FALSE(Number(-5) == 5);
  EXPECT_TRUE(Number(0) == 0);
  EXPECT_TRUE(Number(5) != 6);
  EXPECT_FALSE(Number::NaN == 0);
  EXPECT_FALSE(Overflow() == static_cast<int64_t>(Number::POSITIVE_OVERFLOW));
  EXPECT_FALSE(Number("5.01") == 5);
  EXPECT_FALSE(Number(5) == INT64_MIN);
}

struct Orders {
  bool greater;
  bool less;
  bool greater_equal;
  bool less_equal;
};

template <typename Right>
void ExpectOrders(const Number& left, const Right& right, const Orders& orders) {
  EXPECT_EQ(left > right, orders.greater) << left << " > " << right;
  EXPECT_EQ(left < right, orders.less) << left << " < " << right;
  EXPECT_EQ(left >= right, orders.greater_equal) << left << " >= " << right;
  EXPECT_EQ(left <= right, orders.less_equal) << left << " <= " << right;
}

constexpr Orders kAbove = {true, false, true, false};
constexpr Orders kBelow = {false, true, false, true};
constexpr Orders kSame = {false, false, true, true};
constexpr Orders kSameNegative = {true, true, false, false};

TEST(NumberCompareTest, OrderOfNumbers) {
  ExpectOrders(Number(5), Number("4.9999"), kAbove);
  ExpectOrders(Number("4.9999"), Number(5), kBelow);
  ExpectOrders(Number("5.00"), Number(5), kSame);
  ExpectOrders(Number(5), Number(-6), kAbove);
  ExpectOrders(Number(-6), Number(5), kBelow);
  ExpectOrders(Number(-5), Number("-4.9999"), kBelow);
  ExpectOrders(Number("-4.9999"), Number(-5), kAbove);
  ExpectOrders(Number(0), Number(-5), kAbove);
  ExpectOrders(Number("0.00"), Number(0), kSame);
}

TEST(NumberCompareTest, EqualNegativesAreAboveAndBelowEachOther) {
  ExpectOrders(Number(-5), Number(-5), kSameNegative);
  ExpectOrders(Number("-5.00"), Number(-5), kSameNegative);
  ExpectOrders(Number(-5), -5, kSameNegative);
  EXPECT_TRUE(Number(-5) == Number(-5));
}

TEST(NumberCompareTest, OrderOfNumbersThatDoNotAlignIn64Bits) {
  // 1844674407370956 at four decimals is 3.84 above 2 to the 64.
  ExpectOrders(Number(1844674407370956), Number("0.0001"), kAbove);
  ExpectOrders(Number("10.0000"), Number(1844674407370956), kBelow);
  ExpectOrders(Number(-1844674407370956), Number("-10.0000"), kBelow);
  ExpectOrders(Number("10.0000"), INT64_MAX, kBelow);
  ExpectOrders(Number("10.0000"), INT64_MIN, kAbove);
}

TEST(NumberCompareTest, OrderWithOverflow) {
  const Orders none = {false, false, false, false};
  ExpectOrders(Overflow(), Number(5), kAbove);
  ExpectOrders(Number::NaN, Number(5), none);
  ExpectOrders(Number(5), Overflow(), kBelow);
  ExpectOrders(Number(5), Number::NaN, kBelow);
  ExpectOrders(Overflow(), Overflow(), kSame);
  ExpectOrders(Number::NaN, Number::NaN, kSame);
  ExpectOrders(Overflow(), Number::NaN, none);
  ExpectOrders(Number::NaN, Overflow(), none);
  ExpectOrders(Overflow(), INT64_MAX, kAbove);
  ExpectOrders(Number::NaN, -5, none);
}

TEST(NumberCompareTest, OrderWithIntegers) {
  ExpectOrders(Number("5.01"), 5, kAbove);
  ExpectOrders(Number("4.99"), 5, kBelow);
  ExpectOrders(Number("5.00"), 5, kSame);
  ExpectOrders(Number("-5.01"), -5, kBelow);
  ExpectOrders(Number(5), -5, kAbove);
  ExpectOrders(Number(-5), 0, kBelow);
}

}  // namespace
