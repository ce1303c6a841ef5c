#include "utility/number.h"

#include <gtest/gtest.h>

#include <climits>
#include <string>

#include "unit/utility/number_forms.h"

namespace {

TEST(NumberTest, CanonicalForms) {
  ExpectZero(Number());
  EXPECT_EQ(Number().precision, 0u);
  EXPECT_EQ(Number().size, 0u);
  ExpectZero(Number::Zero);
  ExpectZero(Number::getZero());
  ExpectNan(Number::NaN);
  ExpectNan(Number::getNaN());
  ExpectOverflow(Overflow());
  EXPECT_TRUE(Number::NaN.isOverflow());
  EXPECT_FALSE(Number::Zero.isOverflow());
}

TEST(NumberTest, FromAnInteger) {
  EXPECT_EQ(Text(Number(0)), "0");
  EXPECT_EQ(Text(Number(-5)), "-5");
  EXPECT_EQ(Text(Number(9999999999999999)), "9999999999999999");
  EXPECT_EQ(Number(9999999999999999).size, 16u);
  EXPECT_EQ(Text(Number(-9999999999999999)), "-9999999999999999");
  ExpectOverflow(Number(10000000000000000));
  ExpectOverflow(Number(-10000000000000000));
  EXPECT_FALSE(Number(-10000000000000000).isNegative());
  ExpectOverflow(Number(INT64_MAX));
  ExpectOverflow(Number(INT64_MIN));
  ExpectOverflow(Number(static_cast<int64_t>(Number::POSITIVE_OVERFLOW)));
  ExpectOverflow(Number(static_cast<int64_t>(Number::NEGATIVE_OVERFLOW)));
}

TEST(NumberTest, PlainIntsAreAValueAndItsDecimals) {
  EXPECT_EQ(Text(Number(1234, 2)), "12.34");
  EXPECT_EQ(Text(Number(1234, 2u)), "12.34");
  EXPECT_EQ(Text(Number(1234, size_t{2})), "12.34");
  EXPECT_EQ(Text(Number(int64_t{1234}, 2)), "12.34");
  EXPECT_EQ(Text(Number(1234LL, 2u)), "12.34");
  EXPECT_EQ(Text(Number(1234u, 2u)), "12.34");
  EXPECT_EQ(Text(Number(int16_t{1234}, uint8_t{2})), "12.34");
  EXPECT_EQ(Text(Number(0, 2)), "0.00");
  EXPECT_EQ(Text(Number(-5, 2)), "-0.05");
  ExpectOverflow(Number(~uint64_t{0}, 2));
}

TEST(NumberTest, ABoolIsTheSign) {
  EXPECT_EQ(Text(Number(5, true)), "-5");
  EXPECT_EQ(Text(Number(-5, true)), "-5");
  EXPECT_EQ(Text(Number(-5, false)), "-5");
  EXPECT_EQ(Text(Number(int64_t{5}, true)), "-5");
  EXPECT_EQ(Text(Number(5, true, 1)), "-0.5");
  EXPECT_EQ(Text(Number(5, false, 1)), "0.5");
  ExpectZero(Number(0, true));
}

TEST(NumberTest, AnIntAnd64BitsAreTheFlagWordAndTheMagnitude) {
  ExpectNan(Number(258, int64_t{0}));
  const Number num(1, 7LL);
  EXPECT_EQ(num.flags, 1u);
  EXPECT_EQ(num.data, 7u);
  EXPECT_EQ(num.precision, 0u);
}

TEST(NumberTest, MoreThanFourDecimalsAreCut) {
  EXPECT_EQ(Text(Number(123456789, 4)), "12345.6789");
  EXPECT_EQ(Text(Number(123456789, 5)), "1234.5678");
  EXPECT_EQ(Text(Number(-99999, 8)), "-0.0009");
  ExpectZero(Number(9999, 8));
  EXPECT_EQ(Text(Number(9999, 8)), "0.0000");
  ExpectZero(Number(9999999999999999, 4000000000u));
  ExpectZero(Number(9999999999999999, -1));
}

TEST(NumberTest, FromAText) {
  EXPECT_EQ(Text(Number("12.34567")), "12.3456");
  EXPECT_EQ(Text(Number("12.30")), "12.30");
  EXPECT_EQ(Text(Number("-0.05")), "-0.05");
  EXPECT_EQ(Text(Number("007")), "7");
  EXPECT_EQ(Number("007").size, 1u);
  EXPECT_EQ(Text(Number("0.00")), "0.00");
  ExpectZero(Number("0.00"));
  ExpectZero(Number("-0"));
  EXPECT_FALSE(Number("-0").isNegative());
  ExpectZero(Number(""));
  ExpectZero(Number("-"));
  ExpectZero(Number("abc"));
}

TEST(NumberTest, TextPassesOverWhatIsNoDigit) {
  EXPECT_EQ(Text(Number(".5")), "5");
  EXPECT_EQ(Text(Number("-.5")), "-5");
  EXPECT_EQ(Text(Number("EUR -1'234.5 x6")), "-1234.56");
  EXPECT_EQ(Text(Number("12-3")), "123");
  EXPECT_EQ(Text(Number("1.2.3")), "1.23");
  EXPECT_EQ(Text(Number("1,5")), "15");
  EXPECT_EQ(Text(Number(std::string("1\0"
                                    "2",
                                    3))),
            "12");
  for (int value = 0; value < 256; ++value) {
    const std::string one(1, static_cast<char>(value));
    const bool digit = value >= '1' && value <= '9';
    EXPECT_EQ(Text(Number(one)), digit ? one : "0") << value;
  }
}

TEST(NumberTest, TextAloneMakes17And18Digits) {
  EXPECT_EQ(Text(Number("123456789012345678")), "123456789012345678");
  EXPECT_EQ(Number("123456789012345678").size, 18u);
  ExpectOverflow(Number("1234567890123456789"));
  ExpectOverflow(Number("-1234567890123456789.5"));
  EXPECT_EQ(Text(Number("12345678901234567.89")), "12345678901234567.8");
  EXPECT_EQ(Text(Number("123456789012345678.9")), "123456789012345678");
  EXPECT_EQ(Text(Number(std::string(100000, '0') + "1")), "1");
  ExpectOverflow(Number(std::string(100000, '9')));
}

TEST(NumberTest, Assignment) {
  Number num("12.34");
  num = 7;
  EXPECT_EQ(Text(num), "7");
  EXPECT_EQ(num.precision, 0u);
  num = Number("1.5");
  EXPECT_EQ(Text(num), "1.5");
}

TEST(NumberTest, NumberSizeCountsUpTo18Digits) {
  EXPECT_EQ(Number::numberSize(0), 1u);
  uint64_t power = 1;
  for (unsigned int digits = 1; digits <= 18; ++digits) {
    EXPECT_EQ(Number::numberSize(power), digits);
    EXPECT_EQ(Number::numberSize(power * 10 - 1), digits);
    power *= 10;
  }
  EXPECT_EQ(Number::numberSize(power), 1u);
  EXPECT_EQ(Number::numberSize(~uint64_t{0}), 1u);
}

TEST(NumberTest, PowersOfTenHaveTheEighthTwice) {
  uint64_t power = 1;
  for (unsigned int n = 0; n <= 8; ++n) {
    EXPECT_EQ(Number::powerOf10(n), power) << n;
    if (n < 8) power *= 10;
  }
  for (unsigned int n = 9; n < 20; ++n) {
    EXPECT_EQ(Number::powerOf10(n), power) << n;
    power *= 10;
  }
  EXPECT_EQ(Number::powerOf10(20), 1000000000000000000u);
  EXPECT_EQ(Number::powerOf10(~0U), 1000000000000000000u);
}

TEST(NumberTest, CountsAndChecksDecimals) {
  EXPECT_EQ(Number("1.2300").countDecimalDigits(), 2u);
  EXPECT_EQ(Number("1.0000").countDecimalDigits(), 0u);
  EXPECT_EQ(Number("100").countDecimalDigits(), 0u);
  EXPECT_EQ(Number("0.00").countDecimalDigits(), 0u);
  EXPECT_EQ(Number("0.0001").countDecimalDigits(), 4u);
  EXPECT_EQ(Overflow().countDecimalDigits(), 0u);
  EXPECT_TRUE(Number("1.2300").checkDecimalDigits(2));
  EXPECT_FALSE(Number("1.2300").checkDecimalDigits(1));
  EXPECT_TRUE(Number("1.5").checkDecimalDigits(4));
  EXPECT_TRUE(Number("5.0").checkDecimalDigits(0));
  EXPECT_FALSE(Overflow().checkDecimalDigits(4));
  EXPECT_FALSE(Number::NaN.checkDecimalDigits(4));
}

TEST(NumberTest, ToIntegers) {
  EXPECT_EQ(Number("-12.34").toInt64(), -1234);
  EXPECT_EQ(Number("-12.39").toInt64(1), -123);
  EXPECT_EQ(Number("12.39").toInt64(0), 12);
  EXPECT_EQ(Number("-12.34").toInt64(4), -123400);
  EXPECT_EQ(Number("0.00").toInt64(4), 0);
  EXPECT_EQ(Number("12.34").absValue(), 1234u);
  EXPECT_EQ(Number("-12.34").absValue(), 1234u);
  EXPECT_EQ(Number("12.34").toBCD(), 0x1234u);
  EXPECT_EQ(Number("-12.34").toBCD(), 0x1234u);
  EXPECT_EQ(Number(9999999999999999).toBCD(), 0x9999999999999999u);
  EXPECT_EQ(Number("123456789012345678").toBCD(), 0x3456789012345678u);
  EXPECT_EQ(Number(0).toBCD(), 0u);
}

TEST(NumberTest, ToAnIntegerOfManyDecimalsWraps) {
  // 9999999999999999 * 10000 = 99999999999999990000, less 5 * 2 to the 64.
  EXPECT_EQ(Number(9999999999999999).toInt64(4), 7766279631452231920);
  // Ten decimals go by the table's tenth entry, 10 to the 9.
  EXPECT_EQ(Number(1).toInt64(10), 1000000000);
}

TEST(NumberTest, PartsBeforeAndBehindThePoint) {
  struct {
    Number num;
    int64_t integer;
    int64_t fraction;
  } const rows[] = {{Number("12.34"), 12, 34},
                    {Number("-12.34"), -12, 34},
                    {Number("-0.50"), 0, -50},
                    {Number("7"), 7, 0},
                    {Number("-7"), -7, 0},
                    {Number("0.00"), 0, 0},
                    {Overflow(), static_cast<int64_t>(Number::POSITIVE_OVERFLOW), 0},
                    {Number::NaN, static_cast<int64_t>(Number::POSITIVE_OVERFLOW), 0}};
  for (const auto& row : rows) {
    int64_t integer = 42;
    int64_t fraction = 42;
    row.num.fractional(integer, fraction);
    EXPECT_EQ(integer, row.integer) << row.num;
    EXPECT_EQ(fraction, row.fraction) << row.num;
  }
}

TEST(NumberTest, AbsoluteValueAndNegation) {
  EXPECT_EQ(Text(Number("-1.50").Abs()), "1.50");
  EXPECT_EQ(Text(Number("1.50").Abs()), "1.50");
  EXPECT_EQ(Text(-Number("1.50")), "-1.50");
  EXPECT_EQ(Text(-Number("-1.50")), "1.50");
  ExpectZero(-Number("0.00"));
  ExpectOverflow(-Overflow());
}

TEST(NumberTest, Printing) {
  EXPECT_EQ(Text(Number::NaN), "NAN!");
  EXPECT_EQ(Text(Overflow()), "OVERFLOW!");
  EXPECT_EQ(Text(Number(5, 4)), "0.0005");
  EXPECT_EQ(Text(Number(-12340, 3)), "-12.340");
}

TEST(NumberTest, MarshalForm) {
  const std::string bytes("\xD2\x04\0\0\0\0\0\0\x02", 9);
  EXPECT_EQ(Number::marshal(Number("12.34")), bytes);
  char buffer[10] = {};
  buffer[9] = '#';
  Number("12.34").marshal(buffer);
  EXPECT_EQ(std::string(buffer, 10), bytes + "#");
  EXPECT_EQ(Number::marshal(Number("-0.1")), std::string("\x01\0\0\0\0\0\0\x80\x01", 9));
  EXPECT_EQ(Number::marshal(Overflow()), std::string("\0\0\0\0\0\0\0\x40\0", 9));
  EXPECT_EQ(Number::marshal(Number::NaN), std::string("\0\0\0\0\0\0\0\x40\0", 9));
}

TEST(NumberTest, UnmarshalsWhatWasMarshalled) {
  for (const char* repr : {"0", "0.00", "12.34", "-12.3400", "9999999999999999", "-0.0001"}) {
    const Number num(repr);
    EXPECT_EQ(Text(Number::unmarshal(Number::marshal(num))), repr);
    char buffer[Number::MARSHAL_NUMBER_SIZE];
    num.marshal(buffer);
    Number back;
    EXPECT_EQ(Text(back.unmarshal(buffer)), repr);
    EXPECT_EQ(Text(back), repr);
  }
}

TEST(NumberTest, UnmarshalOfAnotherLengthIsNaN) {
  ExpectNan(Number::unmarshal(std::string()));
  ExpectNan(Number::unmarshal(std::string(8, '\0')));
  ExpectNan(Number::unmarshal(std::string(10, '\0')));
}

TEST(NumberTest, TheTwoReadersDifferInOverflow) {
  ExpectOverflow(Number::unmarshal(Number::marshal(Overflow())));
  char buffer[Number::MARSHAL_NUMBER_SIZE];
  Overflow().marshal(buffer);
  Number num("12.34");
  num.unmarshal(buffer);
  ExpectZero(num);
}

TEST(NumberTest, UnmarshalOfAnyBytes) {
  // All marks and the longest precision: 31 decimals leave nothing of a number.
  std::string bytes(9, '\xFF');
  ExpectOverflow(Number::unmarshal(bytes));
  Number num;
  ExpectOverflow(num.unmarshal(bytes.data()));  // 2 to the 62, less 1
  bytes = std::string("\x01\0\0\0\0\0\0\x80\x1F", 9);
  ExpectZero(Number::unmarshal(bytes));
  EXPECT_EQ(Number::unmarshal(bytes).precision, 4u);
}

TEST(NumberTest, ClearingTheFlagsLeavesTheMagnitude) {
  Number num = Overflow();
  num.clearFlags();
  EXPECT_FALSE(num.isOverflow());
  EXPECT_EQ(num.toInt64(), static_cast<int64_t>(Number::POSITIVE_OVERFLOW));
}

}  // namespace
