#include "utility/hex.h"

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace {

TEST(HexTest, EncodesEveryByteInUpperCaseHighHalfFirst) {
  const std::string digits = "0123456789ABCDEF";
  for (int value = 0; value < 256; ++value) {
    const auto byte = static_cast<uint8_t>(value);
    char text[3];
    Hex::Encode(&byte, 1, text);
    EXPECT_EQ(std::string(text), (std::string{digits[value / 16], digits[value % 16]}));
  }
}

TEST(HexTest, EncodesNothingToAnEmptyText) {
  char text[2] = "x";
  Hex::Encode(nullptr, 0, text);
  EXPECT_STREQ(text, "");
}

TEST(HexTest, DecodesPairs) {
  uint8_t out[4] = {9, 9, 9, 9};
  Hex::Decode("00AF7E", 6, out);
  EXPECT_EQ(out[0], 0x00);
  EXPECT_EQ(out[1], 0xAF);
  EXPECT_EQ(out[2], 0x7E);
  EXPECT_EQ(out[3], 9);
}

TEST(HexTest, DecodeLeavesTheHalfOfABadCharacterAlone) {
  uint8_t out = 0x21;
  Hex::Decode("g3", 2, &out);  // the high half keeps its 2, 3 is added to the byte
  EXPECT_EQ(out, 0x24);
  out = 0x21;
  Hex::Decode("3g", 2, &out);  // the high half assigns the byte
  EXPECT_EQ(out, 0x30);
  out = 0x21;
  Hex::Decode("gg", 2, &out);
  EXPECT_EQ(out, 0x21);
  out = 0xFF;
  Hex::Decode("g2", 2, &out);  // the sum keeps eight bits
  EXPECT_EQ(out, 0x01);
}

TEST(HexTest, DecodeTakesNoLowerCase) {
  uint8_t out = 0x11;
  Hex::Decode("ab", 2, &out);
  EXPECT_EQ(out, 0x11);
}

TEST(HexTest, DecodeOfAnOddSizeReadsTheCharacterBehind) {
  uint8_t out[2] = {0, 0};
  Hex::Decode("ABC", 3, out);  // the closing NUL is no digit
  EXPECT_EQ(out[0], 0xAB);
  EXPECT_EQ(out[1], 0xC0);
  Hex::Decode("ABCD", 3, out);
  EXPECT_EQ(out[1], 0xCD);
}

TEST(HexTest, CheckTakesDigitsAndUpperCaseOnly) {
  EXPECT_TRUE(Hex::Check("0A", 2));
  EXPECT_FALSE(Hex::Check("0a", 2));
  EXPECT_TRUE(Hex::Check("", 0));
  for (int value = 0; value < 256; ++value) {
    const char c = static_cast<char>(value);
    const bool digit = (value >= '0' && value <= '9') || (value >= 'A' && value <= 'F');
    const char low[2] = {'0', c};
    const char high[2] = {c, '0'};
    EXPECT_EQ(Hex::Check(low, 2), digit) << value;
    EXPECT_EQ(Hex::Check(high, 2), digit) << value;
  }
}

TEST(HexTest, CheckRefusesAnOddSize) { EXPECT_FALSE(Hex::Check("0A1", 3)); }

}  // namespace
