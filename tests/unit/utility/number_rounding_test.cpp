#include <gtest/gtest.h>

#include <string>

#include "unit/utility/number_forms.h"
#include "utility/number.h"

namespace {

std::string Rounded(const char* repr, unsigned int decDigits, Number::ROUNDTYPE roundType,
                    const unsigned int* table = nullptr) {
  Number num(repr);
  num.round(decDigits, roundType, table);
  return Text(num);
}

TEST(NumberRoundingTest, RoundsHalfAwayFromZero) {
  EXPECT_EQ(Rounded("1.005", 2, Number::RT_MATH), "1.01");
  EXPECT_EQ(Rounded("-1.005", 2, Number::RT_MATH), "-1.01");
  EXPECT_EQ(Rounded("1.0049", 2, Number::RT_MATH), "1.00");
  EXPECT_EQ(Rounded("0.5", 0, Number::RT_MATH), "1");
  EXPECT_EQ(Rounded("-0.4", 0, Number::RT_MATH), "0");
  EXPECT_EQ(Rounded("9.9999", 0, Number::RT_MATH), "10");
}

TEST(NumberRoundingTest, RoundsTowardsTheInfinities) {
  EXPECT_EQ(Rounded("-1.5", 0, Number::RT_FLOOR), "-2");
  EXPECT_EQ(Rounded("-1.5", 0, Number::RT_CEILING), "-1");
  EXPECT_EQ(Rounded("1.5", 0, Number::RT_FLOOR), "1");
  EXPECT_EQ(Rounded("1.5", 0, Number::RT_CEILING), "2");
  EXPECT_EQ(Rounded("1.0001", 2, Number::RT_CEILING), "1.01");
  EXPECT_EQ(Rounded("1.0000", 2, Number::RT_CEILING), "1.00");
  EXPECT_EQ(Rounded("-0.5", 0, Number::RT_CEILING), "0");
  EXPECT_EQ(Rounded("-0.0001", 0, Number::RT_FLOOR), "-1");
}

TEST(NumberRoundingTest, RoundingToMoreDecimalsRaisesThePrecision) {
  EXPECT_EQ(Rounded("1.5", 4, Number::RT_MATH), "1.5000");
  EXPECT_EQ(Rounded("1.5", 99, Number::RT_FLOOR), "1.5000");
  EXPECT_EQ(Rounded("0", 2, Number::RT_MATH), "0.00");
  Number num("1.5");
  num.round(4, Number::RT_MATH, nullptr);
  EXPECT_EQ(num.size, 5u);
  // As far as 18 digits go, and no more.
  EXPECT_EQ(Rounded("1234567890123456", 4, Number::RT_MATH), "1234567890123456.00");
  EXPECT_EQ(Rounded("123456789012345678", 4, Number::RT_MATH), "123456789012345678");
}

TEST(NumberRoundingTest, RoundingCountsTheDigitsAnew) {
  Number num("9.96");
  num.round(1, Number::RT_MATH, nullptr);
  EXPECT_EQ(num.data, 100u);
  EXPECT_EQ(num.size, 3u);
  Number same = Number("0.02") + Number("0.03");
  same.round(2, Number::RT_MATH, nullptr);  // nothing to do
  EXPECT_EQ(same.size, 2u);
}

TEST(NumberRoundingTest, RoundsToCoinSteps) {
  const Number::roundTable coins = {0, 0, 0, 5, 5, 5, 5, 5, 10, 10};
  EXPECT_EQ(Rounded("12.32", 2, Number::RT_NUM, coins), "12.30");
  EXPECT_EQ(Rounded("12.37", 2, Number::RT_NUM, coins), "12.35");
  EXPECT_EQ(Rounded("12.98", 2, Number::RT_NUM, coins), "13.00");
  EXPECT_EQ(Rounded("-12.98", 2, Number::RT_NUM, coins), "-13.00");
  EXPECT_EQ(Rounded("12.375", 2, Number::RT_NUM, coins), "12.40");  // 12.38 first
  EXPECT_EQ(Rounded("0.02", 2, Number::RT_NUM, coins), "0.00");
  EXPECT_EQ(Rounded("12.37", 2, Number::RT_NUM), "12.37");
  EXPECT_EQ(Rounded("12.375", 2, Number::RT_NUM), "12.38");
  // No table step where decimals are added.
  EXPECT_EQ(Rounded("12.3", 2, Number::RT_NUM, coins), "12.30");
}

TEST(NumberRoundingTest, ATableMayMakeAZeroAValue) {
  const Number::roundTable up = {7, 7, 7, 7, 7, 7, 7, 7, 7, 7};
  Number num;
  num.round(0, Number::RT_NUM, up);
  EXPECT_TRUE(num == Number(7));
}

TEST(NumberRoundingTest, RoundingLeavesOverflow) {
  Number num = Overflow();
  num.round(0, Number::RT_CEILING, nullptr);
  ExpectOverflow(num);
  num = Number::NaN;
  num.round(2, Number::RT_MATH, nullptr);
  ExpectNan(num);
  EXPECT_EQ(num.precision, 0u);
}

std::string ToMultiple(const char* repr, const char* modulus, Number::ROUNDTYPE roundType) {
  Number num(repr);
  num.round_mod(Number(modulus), roundType);
  return Text(num);
}

TEST(NumberRoundingTest, RoundsToMultiples) {
  EXPECT_EQ(ToMultiple("12.37", "0.05", Number::RT_MATH), "12.35");
  EXPECT_EQ(ToMultiple("12.38", "0.05", Number::RT_MATH), "12.40");
  EXPECT_EQ(ToMultiple("-12.37", "0.05", Number::RT_MATH), "-12.35");
  EXPECT_EQ(ToMultiple("-12.38", "0.05", Number::RT_MATH), "-12.40");
  EXPECT_EQ(ToMultiple("1.5", "1", Number::RT_MATH), "2");
  EXPECT_EQ(ToMultiple("12.38", "0.05", Number::RT_FLOOR), "12.35");
  EXPECT_EQ(ToMultiple("-12.36", "0.05", Number::RT_FLOOR), "-12.40");
  EXPECT_EQ(ToMultiple("12.36", "0.05", Number::RT_CEILING), "12.40");
  EXPECT_EQ(ToMultiple("-12.38", "0.05", Number::RT_CEILING), "-12.35");
  // No times the modulus: a zero of the multiple's precision, which is none.
  EXPECT_EQ(ToMultiple("-0.01", "0.05", Number::RT_CEILING), "0");
  EXPECT_EQ(ToMultiple("-0.01", "0.05", Number::RT_MATH), "0");
}

TEST(NumberRoundingTest, AMultipleStays) {
  EXPECT_EQ(ToMultiple("12.350", "0.05", Number::RT_FLOOR), "12.350");
  EXPECT_EQ(ToMultiple("12.350", "0.05", Number::RT_CEILING), "12.350");
  EXPECT_EQ(ToMultiple("12.350", "0.05", Number::RT_MATH), "12.35");
  EXPECT_EQ(ToMultiple("0", "0.05", Number::RT_CEILING), "0");
}

TEST(NumberRoundingTest, RoundingToNoMultipleLeavesTheNumber) {
  EXPECT_EQ(ToMultiple("12.37", "0", Number::RT_MATH), "12.37");
  EXPECT_EQ(ToMultiple("12.37", "-0.05", Number::RT_MATH), "12.37");
  EXPECT_EQ(ToMultiple("12.37", "0.05", Number::RT_NUM), "12.37");
  Number num("12.37");
  num.round_mod(Number::NaN, Number::RT_MATH);
  EXPECT_EQ(Text(num), "12.37");
}

TEST(NumberRoundingTest, RoundingToMultiplesWithOverflow) {
  Number num("12.37");
  num.round_mod(Overflow(), Number::RT_MATH);
  ExpectOverflow(num);
  num = Overflow();
  num.round_mod(Number("0.05"), Number::RT_MATH);
  ExpectOverflow(num);
}

}  // namespace
