#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <optional>
#include <string>

#include "utility/locale/locale.h"

namespace {

// The parsed value; nothing where the text is refused, which must leave the output alone.
std::optional<int64_t> Parse(const std::string& text, int precision, bool fixed = false,
                             char separator = '.') {
  // Exactly the characters, without a terminator, so that the sanitizer sees a read behind.
  const std::unique_ptr<char[]> exact(new char[text.size()]);
  std::memcpy(exact.get(), text.data(), text.size());
  int64_t output = -77;
  const char* const s = exact.get();
  if (loc.toLocalNumber(s, text.size(), output, fixed, separator, precision)) return output;
  EXPECT_EQ(-77, output) << text;
  return std::nullopt;
}

TEST(ParseNumber, ScalesToThePrecision) {
  EXPECT_EQ(123400, Parse("12.34", 4));
  EXPECT_EQ(220000, Parse("22", 4));
  EXPECT_EQ(1500, Parse("1.5", 3));
  EXPECT_EQ(12, Parse("12", 0));
  EXPECT_EQ(0, Parse("0", 4));
  EXPECT_EQ(0, Parse("0.0000", 4));
}

TEST(ParseNumber, TheSignComesLast) {
  EXPECT_EQ(-50000, Parse("-5", 4));
  EXPECT_EQ(-5000, Parse("-0.5", 4));
  EXPECT_EQ(0, Parse("-0", 4));
  EXPECT_EQ(-50000, Parse("--5", 4));
  EXPECT_EQ(-50000, Parse("a---5", 4));
}

TEST(ParseNumber, ASignMustBeFollowedByADigit) {
  EXPECT_EQ(std::nullopt, Parse("-.5", 4));
  EXPECT_EQ(std::nullopt, Parse("- 5", 4));
  EXPECT_EQ(std::nullopt, Parse("--", 4));
  EXPECT_EQ(std::nullopt, Parse("--.5", 4));
  EXPECT_EQ(std::nullopt, Parse("-", 4));
  EXPECT_EQ(std::nullopt, Parse("-a", 4));
}

TEST(ParseNumber, AnEmptyTextOrOneWithoutNumberIsRefused) {
  EXPECT_EQ(std::nullopt, Parse("", 4));
  EXPECT_EQ(std::nullopt, Parse("   ", 4));
  EXPECT_EQ(std::nullopt, Parse("abc", 4));
}

TEST(ParseNumber, LeadingJunkIsPassedOver) {
  EXPECT_EQ(120000, Parse("abc12", 4));
  EXPECT_EQ(-120000, Parse("abc-12", 4));
  EXPECT_EQ(std::nullopt, Parse("-abc12", 4));
}

TEST(ParseNumber, MayStartWithItsSeparator) {
  EXPECT_EQ(5000, Parse(".5", 4));
  EXPECT_EQ(5000, Parse("x.5", 4));
  EXPECT_EQ(0, Parse(".", 4));
}

TEST(ParseNumber, JunkAmongTheDigitsOfTheIntegerPartIsPassedOver) {
  EXPECT_EQ(12345000, Parse("1.234,5", 4, false, ','));
  EXPECT_EQ(12340000, Parse("1 2x3-4", 4));
  EXPECT_EQ(120000, Parse("12 ", 4));
}

TEST(ParseNumber, AnythingButADigitInTheDecimalsIsRefused) {
  EXPECT_EQ(std::nullopt, Parse("1.5 ", 4));
  EXPECT_EQ(std::nullopt, Parse("1.5x", 4));
  EXPECT_EQ(std::nullopt, Parse("1.2.3", 4));
  EXPECT_EQ(std::nullopt, Parse("1.-5", 4));
  EXPECT_EQ(std::nullopt, Parse("1. ", 4));
}

TEST(ParseNumber, TooManyDecimalsAreRefused) {
  EXPECT_EQ(12345, Parse("1.2345", 4));
  EXPECT_EQ(std::nullopt, Parse("1.23456", 4));
  EXPECT_EQ(std::nullopt, Parse("1.00000", 4));
  EXPECT_EQ(1, Parse("1.", 0));
  EXPECT_EQ(std::nullopt, Parse("1.0", 0));
}

TEST(ParseNumber, ANegativePrecisionTakesNoDecimals) {
  EXPECT_EQ(12, Parse("12", -3));
  EXPECT_EQ(std::nullopt, Parse("12.0", -3));
  EXPECT_EQ(12, Parse("12", INT32_MIN, true));
}

TEST(ParseNumber, InFixedPointModeATextWithoutDecimalsIsHundredths) {
  EXPECT_EQ(123400, Parse("1234", 4, true));
  EXPECT_EQ(123400, Parse("12.34", 4, true));
  EXPECT_EQ(1234, Parse("1234", 2, true));
  EXPECT_EQ(1234, Parse("1234", 1, true));
  EXPECT_EQ(-123400, Parse("-1234", 4, true));
}

TEST(ParseNumber, InFixedPointModeASeparatorAloneIsNoDecimals) {
  EXPECT_EQ(500, Parse("5.", 4, true));
  EXPECT_EQ(50000, Parse("5.0", 4, true));
  EXPECT_EQ(0, Parse(".", 4, true));
}

TEST(ParseNumber, EighteenSignificantDigitsAreTheMost) {
  EXPECT_EQ(999999999999999999, Parse("999999999999999999", 0));
  EXPECT_EQ(std::nullopt, Parse("1000000000000000000", 0));
  // Zeros in front do not count.
  EXPECT_EQ(7, Parse("0000000000000000000000000000007", 0));
  EXPECT_EQ(999999999999999999, Parse("00999999999999999999", 0));
  // 17 in front of the separator leave room for one decimal, 18 for none.
  EXPECT_EQ(123456789012345678, Parse("12345678901234567.8", 1));
  EXPECT_EQ(std::nullopt, Parse("12345678901234567.89", 2));
  EXPECT_EQ(std::nullopt, Parse("123456789012345678.0", 1));
  EXPECT_EQ(1, Parse("0.0000000000000000001", 19));
}

TEST(ParseNumber, ScalingWrapsAt64Bits) {
  const uint64_t wrapped = uint64_t{999999999999999999} * 10000;
  EXPECT_EQ(static_cast<int64_t>(wrapped), Parse("999999999999999999", 4));
  EXPECT_EQ(static_cast<int64_t>(0 - wrapped), Parse("-999999999999999999", 4));
  // 922337203685477581 times 10 is 2 above the largest, and reads as negative.
  EXPECT_EQ(INT64_MIN + 2, Parse("922337203685477581", 1));
  // 64 tens leave nothing.
  EXPECT_EQ(0, Parse("1", 64));
  EXPECT_EQ(0, Parse("1", INT32_MAX));
}

TEST(ParseNumber, StopsAtTheTerminatorAndAtTheSize) {
  int64_t output = 0;
  EXPECT_TRUE(
      loc.toLocalNumber("12\0"
                        "34",
                        5, output, false, '.', 0));
  EXPECT_EQ(12, output);
  EXPECT_TRUE(loc.toLocalNumber("1234", 2, output, false, '.', 0));
  EXPECT_EQ(12, output);
  EXPECT_FALSE(loc.toLocalNumber("1234", 0, output, false, '.', 0));
  EXPECT_TRUE(loc.toLocalNumber("1234", SIZE_MAX, output, false, '.', 0));
  EXPECT_EQ(1234, output);
}

TEST(ParseNumber, ATextThatIsNotConstIsReadAndNotWritten) {
  char text[] = "12.34";
  char* const pointer = text;
  int64_t output = 0;
  EXPECT_TRUE(loc.toLocalNumber(text, 5, output, false, '.', 4));
  EXPECT_EQ(123400, output);
  EXPECT_TRUE(loc.toLocalNumber(pointer, 5, output, true, '.', 2));
  EXPECT_EQ(1234, output);
  EXPECT_STREQ("12.34", text);
}

TEST(ParseNumber, EveryByteHasItsPlace) {
  for (int byte = 1; byte < 256; ++byte) {
    const char c = static_cast<char>(byte);
    const bool digit = c >= '0' && c <= '9';
    // In front: only the sign changes the value, and only a digit or the separator counts.
    const int64_t front = digit ? (c - '0') * 100000 + 50000 : c == '-' ? -50000 : 50000;
    EXPECT_EQ(c == '.' ? 5000 : front, Parse(std::string(1, c) + "5", 4)) << byte;
    // Alone.
    if (digit) {
      EXPECT_EQ((c - '0') * 10000, Parse(std::string(1, c), 4)) << byte;
    } else if (c == '.') {
      EXPECT_EQ(0, Parse(".", 4));
    } else {
      EXPECT_EQ(std::nullopt, Parse(std::string(1, c), 4)) << byte;
    }
    // Among the decimals.
    const std::string decimals = std::string("1.2") + c;
    if (digit) {
      EXPECT_EQ(12000 + (c - '0') * 100, Parse(decimals, 4)) << byte;
    } else {
      EXPECT_EQ(std::nullopt, Parse(decimals, 4)) << byte;
    }
  }
}

TEST(ParseNumber, AnOverLongTextIsReadToItsEnd) {
  EXPECT_EQ(50000, Parse(std::string(1000000, ' ') + "5", 4));
  EXPECT_EQ(std::nullopt, Parse(std::string(1000000, '9'), 4));
  EXPECT_EQ(50000, Parse("5" + std::string(1000000, ' '), 4));
}

// A slow model, by cutting the text up instead of walking over it.
std::optional<int64_t> Model(const std::string& text, int precision, bool fixed) {
  const size_t start = text.find_first_of("0123456789-.");
  if (start == std::string::npos) return std::nullopt;
  std::string rest = text.substr(start);
  const bool negative = rest[0] == '-';
  while (!rest.empty() && rest[0] == '-') rest.erase(0, 1);
  if (negative && (rest.empty() || rest.find_first_of("0123456789") != 0)) return std::nullopt;

  const size_t dot = rest.find('.');
  std::string digits;
  for (const char c : rest.substr(0, dot)) {
    if (c >= '0' && c <= '9') digits += c;
  }
  const std::string decimals = dot == std::string::npos ? "" : rest.substr(dot + 1);
  if (decimals.find_first_not_of("0123456789") != std::string::npos) return std::nullopt;
  if (static_cast<int>(decimals.size()) > precision) return std::nullopt;
  digits += decimals;
  int zeros = precision - static_cast<int>(decimals.size());
  if (fixed && decimals.empty()) zeros = precision < 2 ? 0 : precision - 2;
  digits.append(static_cast<size_t>(zeros), '0');
  const int64_t value = digits.empty() ? 0 : std::stoll(digits);
  return negative ? -value : value;
}

TEST(ParseNumber, AgreesWithASlowModelOnEveryShortText) {
  const std::string alphabet = "017-.x ";
  for (int length = 0; length <= 6; ++length) {
    std::string text(static_cast<size_t>(length), alphabet[0]);
    std::string::size_type position = 0;
    do {
      for (int precision = 0; precision <= 4; ++precision) {
        ASSERT_EQ(Model(text, precision, false), Parse(text, precision, false)) << text;
        ASSERT_EQ(Model(text, precision, true), Parse(text, precision, true)) << text;
      }
      // The next text over the alphabet, as an odometer.
      for (position = 0; position < text.size(); ++position) {
        const size_t next = alphabet.find(text[position]) + 1;
        text[position] = alphabet[next % alphabet.size()];
        if (next < alphabet.size()) break;
      }
    } while (position < text.size());
  }
}

}  // namespace
