#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "unit/utility/locale/exact_text.h"
#include "utility/locale/locale.h"
#include "utility/number.h"

namespace {

// --- Integers ----------------------------------------------------------------------------

template <typename T>
std::optional<T> readInteger(const std::string& text) {
  const ExactText exact(text);
  T output = 55;
  if (Locale::fromLocalInteger(exact.get(), text.size(), output)) return output;
  EXPECT_EQ(T{55}, output) << text;
  return std::nullopt;
}

TEST(LocalInteger, IgnoresWhatStandsBehindTheDigits) {
  EXPECT_EQ(12, readInteger<int32_t>("12ab"));
  EXPECT_EQ(std::nullopt, readInteger<int32_t>("ab"));
}

TEST(LocalInteger, AcceptsLeadingWhiteSpaceAndASign) {
  EXPECT_EQ(12, readInteger<int32_t>(" \t\n\v\f\r12"));
  EXPECT_EQ(-12, readInteger<int32_t>(" -12"));
  EXPECT_EQ(12, readInteger<int32_t>("+12"));
  EXPECT_EQ(std::nullopt, readInteger<int32_t>("- 12"));
  EXPECT_EQ(std::nullopt, readInteger<int32_t>("+-12"));
  EXPECT_EQ(std::nullopt, readInteger<int32_t>(""));
  EXPECT_EQ(std::nullopt, readInteger<int32_t>(" "));
  EXPECT_EQ(std::nullopt, readInteger<int32_t>("-"));
}

TEST(LocalInteger, IsLimitedTo32BitsInEveryForm) {
  EXPECT_EQ(INT32_MAX, readInteger<int32_t>("2147483647"));
  EXPECT_EQ(INT32_MIN, readInteger<int32_t>("-2147483648"));
  EXPECT_EQ(std::nullopt, readInteger<int32_t>("2147483648"));
  EXPECT_EQ(std::nullopt, readInteger<int32_t>("-2147483649"));
  EXPECT_EQ(std::nullopt, readInteger<int64_t>("3000000000"));
  EXPECT_EQ(std::nullopt, readInteger<uint64_t>("3000000000"));
  EXPECT_EQ(INT32_MIN, readInteger<int64_t>("-2147483648"));
  EXPECT_EQ(std::nullopt, readInteger<int64_t>(std::string(1000, '9')));
  EXPECT_EQ(7, readInteger<int64_t>(std::string(1000, '0') + "7"));
}

TEST(LocalInteger, TheUnsignedFormPassesTheBitsOn) {
  EXPECT_EQ(UINT64_MAX, readInteger<uint64_t>("-1"));
  EXPECT_EQ(uint64_t{5}, readInteger<uint64_t>("5"));
}

TEST(LocalInteger, ReadsNoMoreThanItsSize) {
  int32_t output = 0;
  EXPECT_TRUE(Locale::fromLocalInteger("1234", 2, output));
  EXPECT_EQ(12, output);
  EXPECT_FALSE(Locale::fromLocalInteger("1234", 0, output));
  EXPECT_TRUE(
      Locale::fromLocalInteger("12\0"
                               "34",
                               5, output));
  EXPECT_EQ(12, output);
}

TEST(LocalInteger, EveryByteInFrontOfADigit) {
  for (int byte = 0; byte < 256; ++byte) {
    const std::string text = std::string(1, static_cast<char>(byte)) + "5";
    std::optional<int32_t> expected;
    if (byte == ' ' || (byte >= 9 && byte <= 13) || byte == '+') expected = 5;
    if (byte == '-') expected = -5;
    if (byte >= '0' && byte <= '9') expected = (byte - '0') * 10 + 5;
    EXPECT_EQ(expected, readInteger<int32_t>(text)) << byte;
  }
}

TEST(LocalInteger, PrintsEveryType) {
  char s[32];
  EXPECT_TRUE(Locale::toLocalInteger(s, sizeof s, INT32_MIN));
  EXPECT_STREQ("-2147483648", s);
  EXPECT_TRUE(Locale::toLocalInteger(s, sizeof s, INT64_MIN));
  EXPECT_STREQ("-9223372036854775808", s);
  EXPECT_TRUE(Locale::toLocalInteger(s, sizeof s, uint8_t{255}));
  EXPECT_STREQ("255", s);
  EXPECT_TRUE(Locale::toLocalInteger(s, sizeof s, uint16_t{65535}));
  EXPECT_STREQ("65535", s);
  EXPECT_TRUE(Locale::toLocalInteger(s, sizeof s, UINT32_MAX));
  EXPECT_STREQ("4294967295", s);
  EXPECT_TRUE(Locale::toLocalInteger(s, sizeof s, UINT64_MAX));
  EXPECT_STREQ("18446744073709551615", s);
}

TEST(LocalInteger, PrintIsCutToItsSize) {
  ExactBuffer three(3);
  EXPECT_TRUE(Locale::toLocalInteger(three.get(), 3, int32_t{1234}));
  EXPECT_EQ("12", three.text());
  ExactBuffer one(1);
  EXPECT_FALSE(Locale::toLocalInteger(one.get(), 1, int32_t{1234}));
  EXPECT_EQ("", one.text());
  EXPECT_FALSE(Locale::toLocalInteger(nullptr, 0, int32_t{1234}));
}

// --- Reading numbers ---------------------------------------------------------------------

struct Read {
  bool ok;
  int64_t value;  // in units of the precision
  unsigned int precision;
  bool operator==(const Read&) const = default;
};
const Read kRefused = {false, 0, 0};

std::ostream& operator<<(std::ostream& out, const Read& read) {
  return out << read.ok << ' ' << read.value << " at " << read.precision;
}

Read Result(bool ok, const Number& number) {
  if (!ok) return kRefused;
  return {true, number.toInt64(), number.precision};
}

Read ReadBack(const std::string& text) {
  const ExactText exact(text);
  const Locale locale;
  Number number;
  return Result(locale.fromLocalNumber(exact.get(), text.size(), number), number);
}

Read ReadFixed(const std::string& text, int desired_precision, int fixed_decimal) {
  const ExactText exact(text);
  Number number;
  return Result(Locale::fromLocalNumber(exact.get(), text.size(), ',', number, true,
                                        desired_precision, fixed_decimal),
                number);
}

TEST(FromLocalNumber, ReadsANumberWithItsDecimals) {
  EXPECT_EQ((Read{true, 12345, 1}), ReadBack("1.234,5"));
  EXPECT_EQ((Read{true, 123450, 2}), ReadBack("1234,50"));
  EXPECT_EQ((Read{true, -5, 1}), ReadBack("-0,5"));
  EXPECT_EQ((Read{true, 5, 1}), ReadBack(",5"));
  EXPECT_EQ((Read{true, 12, 0}), ReadBack("12"));
  EXPECT_EQ((Read{true, 12, 0}), ReadBack("12,"));
}

TEST(FromLocalNumber, TakesFourDecimalsAtMost) {
  EXPECT_EQ((Read{true, 123456, 4}), ReadBack("12,3456"));
  EXPECT_EQ(kRefused, ReadBack("12,34567"));
  EXPECT_EQ(kRefused, ReadBack("12,00000"));
}

TEST(FromLocalNumber, PassesLeadingJunkOver) {
  EXPECT_EQ((Read{true, 12, 0}), ReadBack("abc12"));
  EXPECT_EQ(kRefused, ReadBack("-abc12"));
  EXPECT_EQ((Read{true, -12, 0}), ReadBack("abc-12"));
}

TEST(FromLocalNumber, RefusesWhatIsNoNumber) {
  EXPECT_EQ(kRefused, ReadBack(""));
  EXPECT_EQ(kRefused, ReadBack("abc"));
  EXPECT_EQ(kRefused, ReadBack("-"));
  EXPECT_EQ(kRefused, ReadBack("-,5"));
  EXPECT_EQ(kRefused, ReadBack("1,5 "));
  EXPECT_EQ(kRefused, ReadBack("1000000000000000000"));
}

TEST(FromLocalNumber, LeavesItsOutputAloneWhenItRefuses) {
  const Locale locale;
  Number number(7);
  EXPECT_FALSE(locale.fromLocalNumber("abc", 3, number));
  EXPECT_TRUE(number == 7);
}

TEST(FromLocalNumber, MoreThanSixteenDigitsOverflow) {
  const Locale locale;
  Number number;
  EXPECT_TRUE(locale.fromLocalNumber("9999999999999999", 16, number));
  EXPECT_FALSE(number.isOverflow());
  EXPECT_EQ(9999999999999999, number.toInt64());
  EXPECT_TRUE(locale.fromLocalNumber("10000000000000000", 17, number));
  EXPECT_TRUE(number.isOverflow());
}

TEST(FromLocalNumber, ANegativeZeroIsZero) {
  const Locale locale;
  Number number;
  EXPECT_TRUE(locale.fromLocalNumber("-0", 2, number));
  EXPECT_FALSE(number.isNegative());
}

TEST(FromLocalNumber, UsesTheSeparatorOfTheObject) {
  Locale locale;
  locale.number_decimal_separator_ = '.';
  Number number;
  EXPECT_TRUE(locale.fromLocalNumber("1,234.5", 7, number));
  EXPECT_EQ((Read{true, 12345, 1}), Result(true, number));
}

TEST(FromLocalNumber, InFixedPointTheLastDigitsAreTheDecimals) {
  EXPECT_EQ((Read{true, 1234, 2}), ReadFixed("1234", 2, 0));
  EXPECT_EQ((Read{true, 123400, 2}), ReadFixed("1234", 2, 2));
  EXPECT_EQ((Read{true, 12340, 2}), ReadFixed("1234", 2, 1));
  EXPECT_EQ((Read{true, -1234, 2}), ReadFixed("-1234", 2, 0));
  // Never more zeros than decimals.
  EXPECT_EQ((Read{true, 123400, 2}), ReadFixed("1234", 2, 9));
  EXPECT_EQ((Read{true, 1234, 2}), ReadFixed("1234", 2, -1));
}

TEST(FromLocalNumber, InFixedPointASeparatorIsObeyed) {
  EXPECT_EQ((Read{true, 1234, 2}), ReadFixed("12,34", 2, 0));
  EXPECT_EQ((Read{true, 1230, 2}), ReadFixed("12,3", 2, 0));
  EXPECT_EQ((Read{true, 1200, 2}), ReadFixed("12,", 2, 0));
  EXPECT_EQ(kRefused, ReadFixed("12,345", 2, 0));
  EXPECT_EQ((Read{true, 12, 0}), ReadFixed("12", 0, 0));
}

TEST(FromLocalNumber, InFixedPointAnyPrecisionIsSafe) {
  EXPECT_EQ((Read{true, 12, 0}), ReadFixed("12", -5, 3));
  EXPECT_EQ(0, ReadFixed("12", INT32_MAX, 0).value);
  EXPECT_TRUE(ReadFixed("12", INT32_MAX, INT32_MAX).ok);
  EXPECT_TRUE(ReadFixed("12", INT32_MIN, INT32_MIN).ok);
}

TEST(FromLocalNumber, TakesEveryByteAlone) {
  for (int byte = 0; byte < 256; ++byte) {
    const bool digit = byte >= '0' && byte <= '9';
    const Read expected = digit         ? Read{true, byte - '0', 0}
                          : byte == ',' ? Read{true, 0, 0}
                                        : kRefused;
    EXPECT_EQ(expected, ReadBack(std::string(1, static_cast<char>(byte)))) << byte;
  }
}

// --- Printing numbers --------------------------------------------------------------------

std::string Print(const Number& number, int decimal_digits = -1, bool force_decimals = false,
                  const Locale& locale = Locale()) {
  char s[64];
  return locale.toLocalNumber(s, sizeof s, number, decimal_digits, force_decimals) ? s : "false";
}

TEST(ToLocalNumber, ByDefaultHasNeitherForcedDecimalsNorGroups) {
  EXPECT_EQ("1234,5", Print(Number(123450, 2)));
  EXPECT_EQ("1234567", Print(Number(1234567)));
  EXPECT_EQ("0", Print(Number()));
  EXPECT_EQ("12", Print(Number(1200, 2)));
}

TEST(ToLocalNumber, CutsAndNeverRounds) {
  EXPECT_EQ("1,99", Print(Number(1999, 3), 2, true));
  EXPECT_EQ("1,99", Print(Number(1999, 3), 2, false));
  EXPECT_EQ("1,99", Print(Number(19999, 4)));
}

TEST(ToLocalNumber, StripsZerosFirstAndCutsAfterwards) {
  EXPECT_EQ("1,10", Print(Number(1101, 3), 2, true));
  EXPECT_EQ("1,10", Print(Number(1101, 3), 2, false));
  EXPECT_EQ("1,1", Print(Number(1100, 3), 2, false));
}

TEST(ToLocalNumber, ForcedDecimalsAreFilledWithZeros) {
  EXPECT_EQ("1,50", Print(Number(15, 1), 2, true));
  EXPECT_EQ("1,00", Print(Number(1), 2, true));
  EXPECT_EQ("1,0500", Print(Number(105, 2), 4, true));
  EXPECT_EQ("0,0010", Print(Number(1, 3), 4, true));
  EXPECT_EQ("1,500000000000", Print(Number(15, 1), 12, true));
}

TEST(ToLocalNumber, WithoutForceFewerDecimalsStay) {
  EXPECT_EQ("1,5", Print(Number(15, 1), 4, false));
  EXPECT_EQ("1,05", Print(Number(105, 2), 2, false));
}

TEST(ToLocalNumber, NoDecimalsWantedMeansNone) {
  EXPECT_EQ("1", Print(Number(19, 1), 0, true));
  EXPECT_EQ("1", Print(Number(19, 1), 0, false));
  EXPECT_EQ("1", Print(Number(19, 1), -2, true));
}

TEST(ToLocalNumber, KeepsTheSignOfAZeroIntegerPart) {
  EXPECT_EQ("-0,5", Print(Number(-50, 2)));
  EXPECT_EQ("-0,50", Print(Number(-50, 2), 2, true));
  EXPECT_EQ("-12,3", Print(Number(-123, 1)));
}

TEST(ToLocalNumber, MinusOneTakesTheForceOfTheObject) {
  Locale locale;
  locale.number_force_decimals_ = true;
  locale.number_decimal_digits_ = 3;
  EXPECT_EQ("1,500", Print(Number(15, 1), -1, false, locale));
  locale.number_force_decimals_ = false;
  EXPECT_EQ("1,5", Print(Number(15, 1), -1, true, locale));
}

TEST(ToLocalNumber, GroupsDigitsFromTheRight) {
  Locale locale;
  locale.set_number_group_size(3);
  EXPECT_EQ(3, locale.number_group_size());
  EXPECT_EQ("999", Print(Number(999), -1, false, locale));
  EXPECT_EQ("1.000", Print(Number(1000), -1, false, locale));
  EXPECT_EQ("123.456", Print(Number(123456), -1, false, locale));
  EXPECT_EQ("-1.234.567,89", Print(Number(-123456789, 2), -1, false, locale));
  locale.set_number_group_size(1);
  EXPECT_EQ("1.2.3", Print(Number(123), -1, false, locale));
  locale.set_number_group_size(-1);
  EXPECT_EQ("1234", Print(Number(1234), -1, false, locale));
  locale.set_number_group_size(4);
  EXPECT_EQ("1234", Print(Number(1234), -1, false, locale));
}

TEST(ToLocalNumber, TakesASeparatorOfTheCaller) {
  char s[32];
  const Locale locale;
  EXPECT_TRUE(locale.toLocalNumber(s, sizeof s, '/', Number(15, 1), 2, true));
  EXPECT_STREQ("1/50", s);
}

TEST(ToLocalNumber, SpecialFormsShowTheirStoredValue) {
  EXPECT_EQ("0", Print(Number::NaN));
  EXPECT_EQ("4611686018427387904", Print(Number(int64_t{10000000000000000})));
}

TEST(ToLocalNumber, EverySizeIsSafe) {
  Locale locale;
  locale.set_number_group_size(3);
  // "-1.234,50" has nine characters.
  for (size_t n = 0; n <= 12; ++n) {
    ExactBuffer buffer(n);
    const bool ok = locale.toLocalNumber(buffer.get(), n, Number(-12345, 1), 2, true);
    EXPECT_EQ(n >= 10, ok) << n;
    if (n > 0) {
      EXPECT_TRUE(buffer.closed()) << n;
      EXPECT_EQ(ok ? "-1.234,50" : "", buffer.text()) << n;
    }
  }
}

TEST(ToLocalNumber, TheTestOfGroupsDoesNotCountTheTerminator) {
  Locale locale;
  locale.set_number_group_size(3);
  ExactBuffer five(5);
  // Fills the size to its last character, which the terminator takes.
  EXPECT_TRUE(locale.toLocalNumber(five.get(), 5, Number(1234), 0, false));
  EXPECT_EQ("1.23", five.text());
  ExactBuffer six(6);
  EXPECT_TRUE(locale.toLocalNumber(six.get(), 6, Number(1234), 0, false));
  EXPECT_EQ("1.234", six.text());
  ExactBuffer four(4);
  EXPECT_FALSE(locale.toLocalNumber(four.get(), 4, Number(1234), 0, false));
}

TEST(ToLocalNumber, AnIntegerPartThatDoesNotFitIsRefused) {
  const Locale locale;
  ExactBuffer four(4);
  EXPECT_FALSE(locale.toLocalNumber(four.get(), 4, Number(1234), 0, false));
  EXPECT_EQ("", four.text());
  ExactBuffer five(5);
  EXPECT_TRUE(locale.toLocalNumber(five.get(), 5, Number(1234), 0, false));
  EXPECT_EQ("1234", five.text());
}

TEST(ToLocalNumber, AnyCountOfDecimalsIsSafe) {
  char s[16];
  const Locale locale;
  EXPECT_FALSE(locale.toLocalNumber(s, sizeof s, Number(15, 1), INT32_MAX, true));
  EXPECT_STREQ("", s);
  EXPECT_TRUE(locale.toLocalNumber(s, sizeof s, Number(15, 1), INT32_MIN, true));
  EXPECT_STREQ("1", s);
  EXPECT_TRUE(locale.toLocalNumber(s, sizeof s, Number(15, 1), INT32_MAX, false));
  EXPECT_STREQ("1,5", s);
}

}  // namespace
