#include "utility/stringutils.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <climits>
#include <cstring>
#include <string>
#include <vector>

namespace {

TEST(StringUtilsTest, IsHexIsTrueForAnEmptyTextOnly) {
  EXPECT_TRUE(StringUtils::isHex(""));
  EXPECT_FALSE(StringUtils::isHex("0a"));
  EXPECT_FALSE(StringUtils::isHex("0A"));
  EXPECT_FALSE(StringUtils::isHex("0"));
  EXPECT_FALSE(StringUtils::isHex("xyz"));
  EXPECT_FALSE(StringUtils::isHex(std::string(1, '\0')));
}

TEST(StringUtilsTest, ReplaceAllReplacesEveryOccurrence) {
  std::string text = "a.b.c.";
  StringUtils::replace_all(text, ".", "--");
  EXPECT_EQ(text, "a--b--c--");
  StringUtils::replace_all(text, "--", "");
  EXPECT_EQ(text, "abc");
  StringUtils::replace_all(text, "x", "y");
  EXPECT_EQ(text, "abc");
  StringUtils::replace_all(text, "abc", "z");
  EXPECT_EQ(text, "z");
}

TEST(StringUtilsTest, ReplaceAllStartsAgainFromTheFront) {
  std::string text = "aab";
  StringUtils::replace_all(text, "ab", "b");  // "aab" to "ab" to "b"
  EXPECT_EQ(text, "b");
}

TEST(StringUtilsTest, ReplaceAllLeavesATextThatItCouldNeverFinish) {
  std::string text = "abc";
  StringUtils::replace_all(text, "b", "bb");
  EXPECT_EQ(text, "abc");
  StringUtils::replace_all(text, "", "x");
  EXPECT_EQ(text, "abc");
}

std::string Normalized(std::string text) {
  StringUtils::normalize(text);
  return text;
}

TEST(StringUtilsTest, NormalizeKeepsTheFirstLine) {
  EXPECT_EQ(Normalized("ab\tc\r\nxyz"), "ab c");
  EXPECT_EQ(Normalized("ab\nc"), "ab");
  EXPECT_EQ(Normalized("a\nb\r\nc"), "a");
  EXPECT_EQ(Normalized("a\r\nb\nc"), "a");
  EXPECT_EQ(Normalized("\n"), "");
  EXPECT_EQ(Normalized(""), "");
  EXPECT_EQ(Normalized("\t\t"), "  ");
  EXPECT_EQ(Normalized("a\rb"), "a\rb");
}

TEST(StringUtilsTest, HexvalReadsBothCasesAndPassesOthersOn) {
  for (int value = 0; value < 256; ++value) {
    int expected = value;
    if (value >= '0' && value <= '9') expected = value - '0';
    if (value >= 'a' && value <= 'f') expected = value - 'a' + 10;
    if (value >= 'A' && value <= 'F') expected = value - 'A' + 10;
    EXPECT_EQ(StringUtils::hexval(static_cast<unsigned char>(value)), expected);
  }
}

TEST(StringUtilsTest, ZeroPadNumberKeepsTheFieldsWidth) {
  EXPECT_EQ(StringUtils::zeroPadNumber(3, 12345), "345");
  EXPECT_EQ(StringUtils::zeroPadNumber(5, 42), "00042");
  EXPECT_EQ(StringUtils::zeroPadNumber(2, 42), "42");
  EXPECT_EQ(StringUtils::zeroPadNumber(4, -5), "00-5");
  EXPECT_EQ(StringUtils::zeroPadNumber(1, -5), "5");
  EXPECT_EQ(StringUtils::zeroPadNumber(0, 7), "");
  EXPECT_EQ(StringUtils::zeroPadNumber(-3, 7), "");
  EXPECT_EQ(StringUtils::zeroPadNumber(21, LLONG_MIN), "0-9223372036854775808");
}

TEST(StringUtilsTest, DecimalToHexIsLowerCase) {
  EXPECT_EQ(StringUtils::decimalToHex(255), "0xff");
  EXPECT_EQ(StringUtils::decimalToHex(0), "0x0");
  EXPECT_EQ(StringUtils::decimalToHex(-1), "0xffffffffffffffff");
  EXPECT_EQ(StringUtils::decimalToHex(LLONG_MAX), "0x7fffffffffffffff");
}

TEST(StringUtilsTest, Hex2AsciiReadsPairs) {
  std::string out = "old";
  StringUtils::hex2ascii("41426a", out);
  EXPECT_EQ(out, "ABj");
  StringUtils::hex2ascii("00Ff", out);
  EXPECT_EQ(out, std::string("\0\xFF", 2));
  StringUtils::hex2ascii("417", out);
  EXPECT_EQ(out, "A");
  StringUtils::hex2ascii("4", out);
  EXPECT_EQ(out, "");
  StringUtils::hex2ascii("", out);
  EXPECT_EQ(out, "");
  out = "4142";
  StringUtils::hex2ascii(out, out);
  EXPECT_EQ(out, "AB");
}

TEST(StringUtilsTest, Hex2AsciiTakesOtherCharactersByTheirCode) {
  std::string out;
  StringUtils::hex2ascii("0G", out);  // 'G' is 0x47
  EXPECT_EQ(out, "G");
  StringUtils::hex2ascii("\xFF\xFF", out);  // 0xFF0 + 0xFF, its low byte
  EXPECT_EQ(out, "\xEF");
}

TEST(StringUtilsTest, TrimsStrings) {
  std::string text = " \t\v\f\r\nx y \n";
  EXPECT_EQ(&StringUtils::ltrim(text), &text);
  EXPECT_EQ(text, "x y \n");
  EXPECT_EQ(&StringUtils::rtrim(text), &text);
  EXPECT_EQ(text, "x y");
  text = "  x  ";
  EXPECT_EQ(StringUtils::trim(text), "x");
  text = " \t ";
  EXPECT_EQ(StringUtils::trim(text), "");
  text = "";
  EXPECT_EQ(StringUtils::trim(text), "");
  text = "\xA0\xFF";  // bytes above 127 are no white space
  EXPECT_EQ(StringUtils::trim(text), "\xA0\xFF");
}

TEST(StringUtilsTest, TrimsBuffers) {
  char text[8] = "  x  ";
  EXPECT_EQ(StringUtils::trim(text, 5), 1);
  EXPECT_STREQ(text, "x");

  char inner[8] = "\ta b";
  EXPECT_EQ(StringUtils::trim(inner, 4), 3);
  EXPECT_STREQ(inner, "a b");

  char full[4] = {'a', 'b', 'c', 'z'};
  EXPECT_EQ(StringUtils::trim(full, 3), 3);
  EXPECT_STREQ(full, "abc");

  char blank[4] = "   ";
  EXPECT_EQ(StringUtils::trim(blank, 3), 0);
  EXPECT_STREQ(blank, "");

  char untouched[2] = "x";
  EXPECT_EQ(StringUtils::trim(untouched, 0), 0);
  EXPECT_EQ(StringUtils::trim(untouched, -1), 0);
  EXPECT_STREQ(untouched, "x");

  unsigned char bytes[4] = {' ', 0xE8, ' ', 'z'};
  EXPECT_EQ(StringUtils::trim(bytes, 3), 1);
  EXPECT_EQ(bytes[0], 0xE8);
  EXPECT_EQ(bytes[1], 0);
}

TEST(StringUtilsTest, ChangesCaseInACopy) {
  const std::string text = "aZ9-\xE8";
  EXPECT_EQ(StringUtils::toUpper(text), "AZ9-\xE8");
  EXPECT_EQ(StringUtils::toLower(text), "az9-\xE8");
  EXPECT_EQ(StringUtils::toUpper(""), "");
}

TEST(StringUtilsTest, StartsWithIgnoresCase) {
  EXPECT_TRUE(StringUtils::startsWith("Totale", "toT"));
  EXPECT_TRUE(StringUtils::startsWith("tot", "TOT"));
  EXPECT_TRUE(StringUtils::startsWith("tot", ""));
  EXPECT_FALSE(StringUtils::startsWith("to", "tot"));
  EXPECT_FALSE(StringUtils::startsWith("atot", "tot"));
  EXPECT_FALSE(StringUtils::startsWith("", "t"));
}

TEST(StringUtilsTest, StrToLongReadsAWholeNumber) {
  long long value = 1;
  EXPECT_TRUE(StringUtils::StrToLong("42", 10, &value));
  EXPECT_EQ(value, 42);
  EXPECT_TRUE(StringUtils::StrToLong(" -7", 10, &value));
  EXPECT_EQ(value, -7);
  EXPECT_TRUE(StringUtils::StrToLong("0x1F", 0, &value));
  EXPECT_EQ(value, 31);
  int64_t wide = 0;
  EXPECT_TRUE(StringUtils::StrToLong("ff", 16, &wide));
  EXPECT_EQ(wide, 255);
}

TEST(StringUtilsTest, StrToLongRefusesTextWithoutOrBehindANumber) {
  long long value = 1;
  EXPECT_FALSE(StringUtils::StrToLong("", 10, &value));
  EXPECT_EQ(value, 0);
  EXPECT_FALSE(StringUtils::StrToLong("x", 10, &value));
  EXPECT_FALSE(StringUtils::StrToLong("12x", 10, &value));
  EXPECT_EQ(value, 12);
  EXPECT_FALSE(StringUtils::StrToLong("12 ", 10, &value));
  EXPECT_FALSE(StringUtils::StrToLong("1", 1, &value));
}

TEST(StringUtilsTest, StrToLongKnowsTheLimitsOf32BitsOnly) {
  long long value = 0;
  errno = ERANGE;  // an older error is not this call's
  EXPECT_TRUE(StringUtils::StrToLong("2147483647", 10, &value));
  EXPECT_EQ(value, 2147483647);
  errno = ERANGE;
  EXPECT_TRUE(StringUtils::StrToLong("-2147483648", 10, &value));
  EXPECT_EQ(value, -2147483648LL);
  EXPECT_TRUE(StringUtils::StrToLong("2147483648", 10, &value));
  EXPECT_EQ(value, 2147483648LL);
  // Past 64 bits the value is cut to the limit and counts as read.
  EXPECT_TRUE(StringUtils::StrToLong("99999999999999999999", 10, &value));
  EXPECT_EQ(value, LLONG_MAX);
  EXPECT_TRUE(StringUtils::StrToLong("-99999999999999999999", 10, &value));
  EXPECT_EQ(value, LLONG_MIN);
}

TEST(StringUtilsTest, ChecksEveryCharacterKind) {
  EXPECT_TRUE(StringUtils::CheckAsciiNum("", 0));
  EXPECT_TRUE(StringUtils::CheckAsciiNum("0123456789", 10));
  EXPECT_TRUE(StringUtils::CheckAsciiNum("12x", 2));
  EXPECT_FALSE(StringUtils::CheckAsciiNum("12x", 3));
  EXPECT_TRUE(StringUtils::CheckAsciiAlphaNum("", 0));
  for (int value = 0; value < 256; ++value) {
    const char c = static_cast<char>(value);
    const bool digit = value >= '0' && value <= '9';
    const bool letter = (value >= 'A' && value <= 'Z') || (value >= 'a' && value <= 'z');
    EXPECT_EQ(StringUtils::CheckAsciiNum(&c, 1), digit) << value;
    EXPECT_EQ(StringUtils::CheckAsciiAlphaNum(&c, 1), digit || letter) << value;
  }
}

TEST(StringUtilsTest, BcdToAscii) {
  const uint8_t bcd[] = {0x12, 0xAB, 0x0F};
  char text[8] = "xxxxxxx";
  StringUtils::BCDToAscii(bcd, 2, text);
  EXPECT_STREQ(text, "12AB");
  StringUtils::BCDToAscii(bcd, 3, text);
  EXPECT_STREQ(text, "12AB0F");
  StringUtils::BCDToAscii(bcd, 0, text);
  EXPECT_STREQ(text, "");
}

TEST(StringUtilsTest, AsciiToBcd) {
  uint8_t bcd[4] = {0xEE, 0xEE, 0xEE, 0xEE};
  StringUtils::AsciiToBCD("123", 3, bcd);
  EXPECT_EQ(bcd[0], 0x12);
  EXPECT_EQ(bcd[1], 0x30);
  EXPECT_EQ(bcd[2], 0xEE);
  // Separators use no half byte, but are counted for the bytes that are cleared.
  StringUtils::AsciiToBCD("a-F.9", 5, bcd);
  EXPECT_EQ(bcd[0], 0xAF);
  EXPECT_EQ(bcd[1], 0x90);
  EXPECT_EQ(bcd[2], 0x00);
  EXPECT_EQ(bcd[3], 0xEE);
  StringUtils::AsciiToBCD("", 0, bcd);
  EXPECT_EQ(bcd[0], 0xAF);
}

// The output of URLEncoding into a buffer of that size, as its bytes.
std::string Url(const std::string& text, size_t room) {
  std::vector<char> out(room, '#');
  EXPECT_TRUE(StringUtils::URLEncoding(text.data(), text.size(), out.data(), room));
  return {out.begin(), out.end()};
}

TEST(StringUtilsTest, UrlEncodingOfOrdinaryText) {
  EXPECT_EQ(Url("a b/c", 8), std::string("a+b%2Fc\0", 8));
  EXPECT_EQ(Url("", 2), std::string("\0#", 2));
  EXPECT_EQ(Url("Az09", 5), std::string("Az09\0", 5));
  EXPECT_EQ(Url("\xE8", 4), std::string("%E8\0", 4));
  EXPECT_EQ(Url("\x10", 4), std::string("%10\0", 4));
}

TEST(StringUtilsTest, UrlEncodingEndsWhereTheOutputIsFull) {
  EXPECT_EQ(Url("abc", 3), "abc");
  EXPECT_EQ(Url("abcd", 3), "abc");
  EXPECT_EQ(Url("abc", 0), "");
  EXPECT_EQ(Url("a/b", 5), std::string("a%2Fb", 5));
  // Four free places are needed, three are left.
  EXPECT_EQ(Url("a/b", 4), std::string("a\0##", 4));
}

TEST(StringUtilsTest, UrlEncodingOfALowByteLeavesATerminatorInItsSecondPlace) {
  EXPECT_EQ(Url("a\nb", 6), std::string("a%A\0b\0", 6));
  EXPECT_EQ(Url(std::string("\0x", 2), 6), std::string("%0\0x\0#", 6));
}

TEST(StringUtilsTest, AsciiNumToBcdPacksTheFirstDigitLowest) {
  uint32_t bcd = 0;
  EXPECT_TRUE(StringUtils::AsciiNumToBCD("12", &bcd));
  EXPECT_EQ(bcd, 0xFFFFFF21u);
  EXPECT_TRUE(StringUtils::AsciiNumToBCD("", &bcd));
  EXPECT_EQ(bcd, 0xFFFFFFFFu);
  EXPECT_TRUE(StringUtils::AsciiNumToBCD("12345678", &bcd));
  EXPECT_EQ(bcd, 0x87654321u);
  EXPECT_TRUE(StringUtils::AsciiNumToBCD("1234567890", &bcd));
  EXPECT_EQ(bcd, 0x87654321u);
}

TEST(StringUtilsTest, AsciiNumToBcdLeavesTheOutputOfARefusedText) {
  uint32_t bcd = 7;
  EXPECT_FALSE(StringUtils::AsciiNumToBCD("1a", &bcd));
  EXPECT_FALSE(StringUtils::AsciiNumToBCD("-1", &bcd));
  EXPECT_FALSE(StringUtils::AsciiNumToBCD("123456789x", &bcd));
  EXPECT_EQ(bcd, 7u);
}

TEST(StringUtilsTest, BcdToAsciiNumReadsUpToTheEndMark) {
  char text[10] = "#########";
  EXPECT_TRUE(StringUtils::BCDToAsciiNum(0xFFFFFF21, text, sizeof(text)));
  EXPECT_STREQ(text, "12");
  EXPECT_TRUE(StringUtils::BCDToAsciiNum(0x87654321, text, sizeof(text)));
  EXPECT_STREQ(text, "12345678");
  EXPECT_TRUE(StringUtils::BCDToAsciiNum(0xFFFFFFFF, text, sizeof(text)));
  EXPECT_STREQ(text, "");
  EXPECT_TRUE(StringUtils::BCDToAsciiNum(0xFFFFFFA1, text, sizeof(text)));
  EXPECT_STREQ(text, "1:");  // ten counted on from "0"
}

TEST(StringUtilsTest, BcdToAsciiNumKeepsToTheBuffer) {
  char text[4] = {'#', '#', '#', '#'};
  EXPECT_TRUE(StringUtils::BCDToAsciiNum(0xFFFF4321, text, 3));
  EXPECT_EQ(std::string(text, 4), "123#");
  EXPECT_TRUE(StringUtils::BCDToAsciiNum(0xFFFF4321, text, 0));
  EXPECT_EQ(std::string(text, 4), "123#");
}

}  // namespace
