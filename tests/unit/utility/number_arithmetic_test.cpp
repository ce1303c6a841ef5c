#include <gtest/gtest.h>

#include <climits>

#include "unit/utility/number_forms.h"
#include "utility/number.h"

namespace {

TEST(NumberArithmeticTest, Sums) {
  EXPECT_EQ(Text(Number("1.10") + Number("2.2")), "3.30");
  EXPECT_EQ((Number("1.10") + Number("2.2")).precision, 2u);
  EXPECT_EQ(Text(Number("2.2") + Number("1.10")), "3.30");
  EXPECT_EQ(Text(Number("1.5") - Number("2")), "-0.5");
  EXPECT_EQ(Text(Number("-1.5") - Number("2")), "-3.5");
  EXPECT_EQ(Text(Number("-1.5") + Number("2")), "0.5");
  EXPECT_EQ(Text(Number("1.5") - Number("-2")), "3.5");
  EXPECT_EQ(Text(Number("0.00") + Number("5")), "5.00");
  Number num("1.5");
  num += num;
  EXPECT_EQ(Text(num), "3.0");
  num -= num;
  EXPECT_EQ(Text(num), "0.0");
}

TEST(NumberArithmeticTest, ASumCountsItsDecimalsAsDigits) {
  const Number sum = Number("0.02") + Number("0.03");
  EXPECT_EQ(sum.data, 5u);
  EXPECT_EQ(sum.size, 2u);
}

TEST(NumberArithmeticTest, EqualMagnitudesGiveZeroOfTheLeftPrecision) {
  const Number zero = Number(5) - Number("5.00");
  ExpectZero(zero);
  EXPECT_EQ(zero.precision, 0u);
  EXPECT_EQ(Text(Number("5.00") - Number(5)), "0.00");
  EXPECT_FALSE((Number(-5) + Number(5)).isNegative());
}

TEST(NumberArithmeticTest, AZeroThatBecomesAValueIsAnOrdinaryOne) {
  EXPECT_TRUE(Number() + Number(5) == Number(5));
  EXPECT_TRUE(Number() + 5 == Number(5));
  EXPECT_TRUE(Number() - 5 == Number(-5));
}

TEST(NumberArithmeticTest, SumsOutOfRange) {
  ExpectOverflow(Number(9999999999999999) + Number(1));
  ExpectOverflow(Number(-9999999999999999) - Number(1));
  EXPECT_EQ(Text(Number(9999999999999998) + Number(1)), "9999999999999999");
  // 16 digits and 3 decimals are 19, one more than there is room for.
  ExpectOverflow(Number(1000000000000000) + Number("0.001"));
  // 16 digits and 2 decimals have room, but the sum has 18 digits.
  ExpectOverflow(Number(1000000000000000) + Number("0.01"));
  ExpectOverflow(Number("0.01") + Number(1000000000000000));
  // Both at four decimals, the longer one of 15 digits.
  ExpectOverflow(Number(100000000000000, 4) + Number(1, 4));
  EXPECT_EQ(Text(Number(10000000000000, 4) + Number(1, 4)), "1000000000.0001");
}

TEST(NumberArithmeticTest, OverflowOnEitherSideOfASumIsOverflow) {
  for (const Number& bad : {Overflow(), Number::NaN}) {
    for (const Number& good : {Number(0), Number(1), Number("-1.0001")}) {
      ExpectOverflow(bad + good);
      ExpectOverflow(good + bad);
      ExpectOverflow(bad - good);
      ExpectOverflow(good - bad);
      ExpectOverflow(Number(bad) += good);
      ExpectOverflow(Number(good) -= bad);
    }
    ExpectOverflow(bad + 1);
    ExpectOverflow(bad - 1);
    ExpectOverflow(bad + bad);
    ExpectOverflow(bad - bad);
  }
}

TEST(NumberArithmeticTest, SumsWithIntegers) {
  EXPECT_EQ(Text(Number("1.50") + 2), "3.50");
  EXPECT_EQ(Text(Number("1.50") - 2), "-0.50");
  EXPECT_EQ(Text(Number("1.50") + -2), "-0.50");
  EXPECT_EQ(Text(Number("1.50") - -2), "3.50");
  EXPECT_EQ(Text(Number("2.00") - 2), "0.00");
  EXPECT_EQ(Text(Number("2.00") + 0), "2.00");
  EXPECT_EQ(Text(Number("2.00") - 0), "2.00");
  EXPECT_EQ(Text(Number("0.0001") + 999999999999), "999999999999.0001");
  ExpectOverflow(Number("0.0001") + 1000000000000);
  ExpectOverflow(Number(9999999999999999) + 1);
  ExpectOverflow(Number(1) + INT64_MAX);
  ExpectOverflow(Number(1) + INT64_MIN);
  ExpectOverflow(Number(1) - INT64_MIN);
  // Times ten this one is 4 modulo 2 to the 64.
  ExpectOverflow(Number("0.1") + int64_t{1844674407370955162});
}

TEST(NumberArithmeticTest, Products) {
  EXPECT_EQ(Text(Number("1.5") * Number("2.25")), "3.375");
  EXPECT_EQ(Text(Number("-1.5") * Number("2")), "-3.0");
  EXPECT_EQ(Text(Number("-1.5") * Number("-2")), "3.0");
  EXPECT_EQ(Text(Number("1.23") * Number("1.234")), "1.5178");  // 1.51782
  EXPECT_EQ(Text(Number("0.0001") * Number("0.5")), "0.0000");
  ExpectZero(Number("-0.0001") * Number("0.5"));
  Number num("1.5");
  num *= num;
  EXPECT_EQ(Text(num), "2.25");
}

TEST(NumberArithmeticTest, DigitCountsOfProducts) {
  EXPECT_EQ((Number("0.1") * Number("0.1")).size, 2u);       // 0.01
  EXPECT_EQ((Number("1.23") * Number("1.234")).size, 5u);    // 6 digits, one decimal dropped
  EXPECT_EQ((Number("0.003") * Number("0.5000")).size, 4u);  // 5 digits of 7 decimals
}

TEST(NumberArithmeticTest, ProductsWithZeroAndOverflow) {
  ExpectZero(Number(0) * Number(5));
  ExpectZero(Number(5) * Number(0));
  ExpectZero(Number(0) * Overflow());
  // A NaN has a magnitude of 0, which comes first.
  ExpectZero(Number::NaN * Number(5));
  ExpectZero(Overflow() * Number::NaN);
  EXPECT_EQ(Text(Number("0.00") * Number(5)), "0.00");
  ExpectOverflow(Overflow() * Number(5));
  ExpectOverflow(Number(5) * Overflow());
  ExpectOverflow(Number(-5) * Overflow());
}

TEST(NumberArithmeticTest, ProductsOutOfRange) {
  EXPECT_EQ(Text(Number(99999999) * Number(100000000)), "9999999900000000");
  ExpectOverflow(Number(100000000) * Number(100000000));
  // 11 digits each, tested before the decimals are dropped.
  ExpectOverflow(Number("1000000.0000") * Number("1000000.0000"));
  // The product fits after its decimals are dropped, but is tested before.
  ExpectOverflow(Number("10000.0000") * Number("10000.0000"));
}

TEST(NumberArithmeticTest, ProductsWithIntegers) {
  EXPECT_EQ(Text(Number("1.25") * 3), "3.75");
  EXPECT_EQ(Text(Number("1.25") * -3), "-3.75");
  EXPECT_EQ(Text(Number("-1.25") * -3), "3.75");
  EXPECT_EQ((Number(5) * 5).size, 2u);
  EXPECT_EQ((Number(2) * 2).size, 1u);
  EXPECT_EQ((Number(123456789) * 9).size, 10u);  // 1111111101
  EXPECT_EQ((Number(123456789) * 2).size, 9u);
  ExpectZero(Number(5) * 0);
  ExpectZero(Number(0) * 5);
  ExpectZero(Number(0) * INT64_MIN);
  ExpectZero(Overflow() * 0);
  ExpectOverflow(Overflow() * 1);
  ExpectOverflow(Number(1) * kLimit);
  ExpectOverflow(Number(1) * INT64_MIN);
  EXPECT_EQ(Text(Number(1) * 9999999999999999), "9999999999999999");
  ExpectOverflow(Number(2) * 9999999999999999);
  ExpectOverflow(Number(1000) * 9999999999999999);
}

TEST(NumberArithmeticTest, Quotients) {
  const Number third = Number(1) / Number(3);
  EXPECT_EQ(Text(third), "0.3333");
  EXPECT_EQ(third.precision, 4u);
  EXPECT_EQ(third.size, 4u);
  EXPECT_EQ(Text(Number(2) / Number(3)), "0.6666");
  EXPECT_EQ(Text(Number(-2) / Number(3)), "-0.6666");
  EXPECT_EQ(Text(Number(-2) / Number(-3)), "0.6666");
  EXPECT_EQ(Text(Number("1.00") / Number("0.03")), "33.3333");
  EXPECT_EQ(Text(Number(1) / Number("0.0003")), "3333.3333");
  EXPECT_EQ(Text(Number("0.0003") / Number(1)), "0.0003");
  ExpectZero(Number("-0.0001") / Number(3));
  Number num("1.5");
  num /= num;
  EXPECT_EQ(Text(num), "1.0000");
}

TEST(NumberArithmeticTest, LongDividendsLeaveFewerDecimals) {
  EXPECT_EQ(Text(Number(1000000000000000) / Number(3)), "333333333333333.3");  // 16 digits: 1
  EXPECT_EQ(Text(Number(100000000000000) / Number(3)), "33333333333333.33");   // 15 digits: 2
  EXPECT_EQ(Text(Number(10000000000000) / Number(3)), "3333333333333.333");
  EXPECT_EQ(Text(Number("1000000000000000") / Number("0.3")), "3333333333333333");
  // More decimals on the left: 18 - 16 = 2.
  EXPECT_EQ(Text(Number(1000000000000000, 1) / Number(3)), "33333333333333.33");
  // More on the right: 18 - 17 - 1 leaves none, and none are taken away.
  EXPECT_EQ(Text(Number("12345678901234567") / Number("0.1")), "123456789012345670");
}

TEST(NumberArithmeticTest, AQuotientIsNotTestedAgainstTheLimit) {
  EXPECT_EQ(Text(Number(9999999999999999) / Number("0.1")), "99999999999999990");
  // 18 digits leave -1 places, which counts as four: the dividend wraps. 123456789012345678 *
  // 10 to the 5 modulo 2 to the 64, divided by 1.
  const uint64_t wrapped = uint64_t{123456789012345678} * 100000;
  const Number quotient = Number("123456789012345678") / Number("0.1");
  EXPECT_EQ(quotient.data, wrapped);
  EXPECT_EQ(quotient.precision, 4u);
}

TEST(NumberArithmeticTest, QuotientsWithZeroAndOverflow) {
  ExpectNan(Number(1) / Number(0));
  ExpectNan(Number(0) / Number(0));
  ExpectNan(Overflow() / Number(0));
  ExpectNan(Number(1) / Number::NaN);
  EXPECT_EQ(Text(Number("0.00") / Number(5)), "0.00");
  ExpectZero(Number(0) / Overflow());
  ExpectNan(Number::NaN / Number(5));
  ExpectOverflow(Overflow() / Number(5));
  ExpectOverflow(Number(5) / Overflow());
}

TEST(NumberArithmeticTest, QuotientsWithIntegers) {
  EXPECT_EQ(Text(Number(1) / 3), "0.3333");
  EXPECT_EQ(Text(Number("2.50") / -2), "-1.2500");
  EXPECT_EQ((Number("2.50") / 2).size, 5u);
  ExpectNan(Number(1) / 0);
  ExpectNan(Number(0) / 0);
  ExpectNan(Overflow() / 0);
  ExpectZero(Number(0) / 5);
  ExpectNan(Number::NaN / 5);
  ExpectOverflow(Overflow() / 5);
  EXPECT_EQ(Text(Number(99999999999999) / 1), "99999999999999.0000");
  ExpectOverflow(Number(100000000000000) / 1);  // 15 digits and four decimals
  ExpectOverflow(Number("1.5") / 100000000000000000);
  ExpectZero(Number("1.5") / 10000000000000000);
}

TEST(NumberArithmeticTest, AWrappedDivisorIsOverflow) {
  ExpectOverflow(Number("0.5") / INT64_MIN);  // 2 to the 63, times ten
  Number huge(0, static_cast<int64_t>(Number::POSITIVE_OVERFLOW));
  ExpectOverflow(Number("0.05") / huge);  // 2 to the 62, times a hundred
}

TEST(NumberArithmeticTest, TryAdd) {
  EXPECT_TRUE(Number(1).tryAdd(Number(2)));
  EXPECT_TRUE(Number(9999999999999998).tryAdd(Number(1)));
  EXPECT_FALSE(Number(9999999999999999).tryAdd(Number(1)));
  EXPECT_TRUE(Number(60).tryAdd(Number(40), 100));
  EXPECT_FALSE(Number(60).tryAdd(Number(41), 100));
  EXPECT_TRUE(Number(-60).tryAdd(Number(-40), 100));
  EXPECT_FALSE(Number(-60).tryAdd(Number(-41), 100));
  EXPECT_TRUE(Number(1000).tryAdd(Number(-1000), 10));  // a subtraction
  // Aligned: 6.0 and 0.5 are 65 units.
  EXPECT_TRUE(Number(6).tryAdd(Number("0.5"), 65));
  EXPECT_FALSE(Number("0.5").tryAdd(Number(6), 64));
  EXPECT_FALSE(Overflow().tryAdd(Number(1)));
  EXPECT_FALSE(Number(1).tryAdd(Number::NaN));
  // 16 digits scaled by three places are 19.
  EXPECT_FALSE(Number(1000000000000000).tryAdd(Number("-0.001")));
  EXPECT_TRUE(Number(1000000000000000).tryAdd(Number("-0.01")));
  EXPECT_FALSE(Number("-0.001").tryAdd(Number(1000000000000000)));
}

TEST(NumberArithmeticTest, TrySub) {
  EXPECT_TRUE(Number(1000).trySub(Number(2000), 10));  // equal signs: a subtraction
  EXPECT_TRUE(Number(-1000).trySub(Number(-2000), 10));
  EXPECT_TRUE(Number(60).trySub(Number(-40), 100));
  EXPECT_FALSE(Number(60).trySub(Number(-41), 100));
  // Not aligned: 6 and 5, though the values are 6.0 and 0.5.
  EXPECT_TRUE(Number(6).trySub(Number("-0.5"), 11));
  EXPECT_FALSE(Number(6).trySub(Number("-0.5"), 10));
  EXPECT_FALSE(Overflow().trySub(Number(1)));
  EXPECT_FALSE(Number(1).trySub(Overflow()));
  EXPECT_FALSE(Number(1000000000000000).trySub(Number("0.001")));
  // The digits are counted anew: a sum that counts two for 0.05 has one.
  const Number sum = Number("0.02") + Number("0.03");
  EXPECT_EQ(sum.size, 2u);
  EXPECT_TRUE(sum.trySub(Number("0.0001")));
}

TEST(NumberArithmeticTest, TryAddAndSubOfIntegers) {
  EXPECT_TRUE(Number("1.50").tryAdd(2, 350));
  EXPECT_FALSE(Number("1.50").tryAdd(2, 349));
  EXPECT_TRUE(Number("1.50").tryAdd(-2, 10));
  EXPECT_FALSE(Number(-1).tryAdd(-100, 100));
  EXPECT_TRUE(Number(-1).tryAdd(-99, 100));
  EXPECT_TRUE(Number(100).tryAdd(int64_t{0}, 100));  // 0 has the sign of what is positive
  EXPECT_FALSE(Number(101).tryAdd(int64_t{0}, 100));
  EXPECT_TRUE(Number(-101).tryAdd(int64_t{0}, 100));
  EXPECT_FALSE(Number(1).tryAdd(kLimit, ~uint64_t{0}));
  EXPECT_FALSE(Number(1).tryAdd(INT64_MIN));
  EXPECT_FALSE(Number("0.001").tryAdd(9999999999999999, ~uint64_t{0}));  // 19 digits
  EXPECT_FALSE(Overflow().tryAdd(1));

  EXPECT_TRUE(Number("1.50").trySub(2, 10));  // equal signs
  EXPECT_FALSE(Number("1.50").trySub(-2, 349));
  EXPECT_TRUE(Number("1.50").trySub(-2, 350));
  EXPECT_FALSE(Number(1).trySub(10, 10));  // the magnitude must be below the limit
  EXPECT_TRUE(Number(1).trySub(9, 10));
  EXPECT_FALSE(Number::NaN.trySub(1));
}

TEST(NumberArithmeticTest, TryAddOfCounters) {
  EXPECT_TRUE(Number::tryAdd(9, 1, 10));
  EXPECT_FALSE(Number::tryAdd(10, 1, 10));
  EXPECT_FALSE(Number::tryAdd(0, 11, 10));
  EXPECT_TRUE(Number::tryAdd(65534, 1, 65535));
  EXPECT_FALSE(Number::tryAdd(65535, 65535, 65535));
}

TEST(NumberArithmeticTest, TryMultiplyIgnoresPrecisionAndWrapping) {
  EXPECT_TRUE(Number(99999999).tryMultiply(Number(100000000)));
  EXPECT_FALSE(Number(100000000).tryMultiply(Number(100000000)));
  EXPECT_FALSE(Number("10000.0000").tryMultiply(Number("10000.0000")));
  EXPECT_TRUE(Number(1LL << 32).tryMultiply(Number(1LL << 32)));  // wraps to 0
  EXPECT_FALSE(Overflow().tryMultiply(Number(0)));
  EXPECT_FALSE(Number(0).tryMultiply(Number::NaN));
  EXPECT_TRUE(Number(-99999999).tryMultiply(-100000000));
  EXPECT_FALSE(Number(100000000).tryMultiply(100000000));
  EXPECT_TRUE(Number(2).tryMultiply(INT64_MIN));  // wraps to 0
  EXPECT_FALSE(Overflow().tryMultiply(0));
}

TEST(NumberArithmeticTest, TryDivide) {
  EXPECT_TRUE(Number(1).tryDivide(Number(3)));
  EXPECT_FALSE(Number(1).tryDivide(Number(0)));
  EXPECT_FALSE(Number(0).tryDivide(Number(0)));
  EXPECT_TRUE(Number(0).tryDivide(Overflow()));
  EXPECT_TRUE(Number::NaN.tryDivide(Number(3)));
  EXPECT_FALSE(Overflow().tryDivide(Number(3)));
  EXPECT_FALSE(Number(1).tryDivide(Overflow()));
  EXPECT_FALSE(Number(1).tryDivide(Number::NaN));
  EXPECT_TRUE(Number(1).tryDivide(3));
  EXPECT_FALSE(Number(1).tryDivide(0));
  EXPECT_TRUE(Number::NaN.tryDivide(3));
  EXPECT_FALSE(Overflow().tryDivide(3));
}

// Any flag word and magnitude, as the flag-word constructor takes them.
TEST(NumberArithmeticTest, NoOperationIsUndefinedForAnyContents) {
  const Number others[] = {
      Number(1),   Number("-0.0001"), Number(9999999999999999), Number("999999999999999999"),
      Number::NaN, Overflow()};
  for (const int word : {0, 1, 2, 3, 256, 259, -1}) {
    for (const int64_t value : {int64_t{0}, int64_t{1}, INT64_MAX, INT64_MIN, int64_t{-1}}) {
      Number num(word, value);
      for (unsigned int precision = 0; precision <= 4; ++precision) {
        num.precision = precision & 7u;  // in the bits of the field
        for (const Number& other : others) {
          for (const Number& result : {num + other, num - other, num * other, num / other,
                                       other + num, other - num, other * num, other / num}) {
            EXPECT_LE(result.precision, 4u);
          }
          EXPECT_FALSE(num == other && num != other);
          EXPECT_FALSE(num < other && num == other && !num.isNegative());
          num.tryAdd(other);
          num.trySub(other);
          num.tryMultiply(other);
          num.tryDivide(other);
          Number(num).round_mod(other, Number::RT_MATH);
          Number(other).round_mod(num, Number::RT_CEILING);
        }
        for (const int64_t integer : {int64_t{0}, int64_t{-1}, INT64_MAX, INT64_MIN}) {
          for (const Number& result :
               {num + integer, num - integer, num * integer, num / integer}) {
            EXPECT_LE(result.precision, 4u);
          }
          num.tryAdd(integer, ~uint64_t{0});
          num.trySub(integer, ~uint64_t{0});
          EXPECT_FALSE(num > integer && num == integer && integer >= 0);
        }
        for (unsigned int decDigits = 0; decDigits <= 5; ++decDigits) {
          for (const auto type :
               {Number::RT_FLOOR, Number::RT_CEILING, Number::RT_MATH, Number::RT_NUM}) {
            const Number::roundTable table = {~0U, 0, 0, 0, 0, 0, 0, 0, 0, ~0U};
            Number(num).round(decDigits, type, table);
          }
          num.toInt64(decDigits);
        }
        EXPECT_FALSE(Text(num).empty());
        num.toBCD();
        num.countDecimalDigits();
        num.Abs();
      }
    }
  }
}

}  // namespace
