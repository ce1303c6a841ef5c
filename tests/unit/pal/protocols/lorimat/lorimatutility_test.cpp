#include "pal/protocols/lorimat/lorimatutility.h"

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <string>
#include <vector>

namespace {

using U = lorimatutility;

// A writable copy of a text, as the interfaces want one, in a buffer of exactly its size:
// AddressSanitizer sees every step behind it.
class Text {
 public:
  explicit Text(const std::string& text) : buffer_(text.begin(), text.end()) {
    buffer_.push_back(0);
  }
  operator char*() { return buffer_.data(); }

 private:
  std::vector<char> buffer_;
};

std::string Cleaned(const std::string& line, char quote = '\'') {
  std::vector<char> out(line.size() + 1);
  const int length = U::TogliCommento(out.data(), Text(line), quote);
  EXPECT_EQ(length, static_cast<int>(std::strlen(out.data())));
  return out.data();
}

TEST(TogliCommento, DropsCommentsAndEdges) {
  EXPECT_EQ(Cleaned("  VEND REP=1 ; a sale"), "VEND REP=1");
  EXPECT_EQ(Cleaned("\tVEND\tREP=1\t"), "VEND REP=1");
  EXPECT_EQ(Cleaned("; only a comment"), "");
  EXPECT_EQ(Cleaned("   "), "");
  EXPECT_EQ(Cleaned(""), "");
  EXPECT_EQ(Cleaned("CHIU\n"), "CHIU");
  EXPECT_EQ(Cleaned("CHIU  \n"), "CHIU");
}

TEST(TogliCommento, KnowsQuotes) {
  EXPECT_EQ(Cleaned("A B='x;y' ;z"), "A B='x;y'");
  EXPECT_EQ(Cleaned("A B='it''s;' ;z"), "A B='it''s;'");
  EXPECT_EQ(Cleaned("A B='x\ty'"), "A B='x y'");
  EXPECT_EQ(Cleaned("A B=\"x;y\" ;z", '"'), "A B=\"x;y\"");
  EXPECT_EQ(Cleaned("A B='open   "), "A B='open");
}

TEST(TogliSpazi, TrimsBothSides) {
  std::vector<char> out(16);
  EXPECT_EQ(U::TogliSpazi(out.data(), Text("  a b  ")), 3);
  EXPECT_STREQ(out.data(), "a b");
  EXPECT_EQ(U::TogliSpazi(out.data(), Text("    ")), 0);
  EXPECT_STREQ(out.data(), "");
  Text right("x  ");
  EXPECT_EQ(U::TogliSpaziD(right), 1);
  EXPECT_STREQ(static_cast<char*>(right), "x");
  Text both("  xy ");
  int length = -1;
  EXPECT_EQ(U::TogliSpaziP(both, &length) - static_cast<char*>(both), 2);
  EXPECT_EQ(length, 2);
}

TEST(SkipSpace, StopsAtTextAndAtTheEnd) {
  Text line("a   b");
  int place = 2;
  EXPECT_EQ(U::SkipSpace(line, &place), 5);
  Text blanks("   ");
  place = 1;
  EXPECT_EQ(U::SkipSpace(blanks, &place), 4);
}

TEST(SeNum, TakesDigitsOneMinusAndOnePoint) {
  for (const char* number : {"12", " 12 ", "-12", "1.5", "", "-", ".", "-.5", "5."}) {
    EXPECT_TRUE(U::SeNum(Text(number))) << number;
  }
  for (const char* word : {"1.2.3", "1-2", "--1", "1,5", "A", "1 2", "+1"}) {
    EXPECT_FALSE(U::SeNum(Text(word))) << word;
  }
  EXPECT_TRUE(U::SeNumeric(Text("-12")));
  EXPECT_FALSE(U::SeNumeric(Text("1.5")));
}

TEST(TradNome, WritesMarkLengthAndText) {
  char out[8] = {};
  char* end = U::TradNome(out, Text("AB"));
  EXPECT_EQ(end - out, 4);
  EXPECT_EQ(std::string(out, 4), std::string("\x13\x02"
                                             "AB"));
  end = U::TradNomeL(out, Text("ABC"), 1);
  EXPECT_EQ(std::string(out, static_cast<size_t>(end - out)), std::string("\x13\x01"
                                                                          "A"));
}

TEST(TradNum, MapsDigitsToKeyValues) {
  char out[16];
  char* end = U::TradNum(out, Text(" 1290.5x "));
  EXPECT_EQ(std::string(out, static_cast<size_t>(end - out)), std::string("\x01\x02\x09"
                                                                          "0.\x05\0",
                                                                          7));
  EXPECT_EQ(*end, 0);
  end = U::TradNumToECR(out, Text("10.9"));
  EXPECT_EQ(std::string(out, static_cast<size_t>(end - out)), std::string("\x01\x0A\x0D\x09"));
}

struct Reading {
  const char* text;
  int64_t value;
};

TEST(TradPrice, ReadsTenThousandths) {
  const Reading readings[] = {
      {"12.34", 123400},
      {"", 0},
      {"-5", -50000},
      {"1234", 12340000},
      {"abc12.5", 125000},
      {"1 234.5", 12345000},
      {"1,234.5", 12345000},
      {"1.23456", 0},
      {"1.2345", 12345},
      {"1.2345 ", 0},
      {"-.5", 0},
      {".5", 5000},
      {"--5", -50000},
      {"5.", 50000},
      {".", 0},
      {"x", 0},
      {"1.2.3", 0},
      {"-12.34", -123400},
      {"000000000000000000000005", 50000},
      {"1234567890123456789", 0},  // nineteen significant digits are too many
  };
  for (const Reading& reading : readings) {
    EXPECT_EQ(U::TradPrice(Text(reading.text), false, '.', 4), reading.value) << reading.text;
  }
}

TEST(TradPrice, ReadsHundredthsInFixedPointMode) {
  const Reading readings[] = {
      {"1234", 123400}, {"12.34", 123400}, {"12.3", 123000}, {"5.", 500}, {"-1234", -123400},
  };
  for (const Reading& reading : readings) {
    EXPECT_EQ(U::TradPrice(Text(reading.text), true, '.', 4), reading.value) << reading.text;
  }
  EXPECT_EQ(U::TradPrice(Text("1234"), true, '.', 2), 1234);
}

TEST(TradPrice, TakesTheSeparatorItIsGiven) {
  EXPECT_EQ(U::TradPrice(Text("12,34"), false, ',', 4), 123400);
  EXPECT_EQ(U::TradPrice(Text("1.234,5"), false, ',', 4), 12345000);
}

TEST(TradPercentageAndQuantity, KeepTheLow32Bits) {
  EXPECT_EQ(U::TradPercentage(Text("22"), '.', 4), 220000);
  EXPECT_EQ(U::TradPercentage(Text("-7.5"), '.', 4), -75000);
  EXPECT_EQ(U::TradQuantity(Text("1.5"), '.'), 1500);
  EXPECT_EQ(U::TradQuantity(Text("1.2345"), '.'), 0);
  // 2147484 pieces are 2147484000 thousandths, 2147484000 - 2^32 with 32 bits.
  EXPECT_EQ(U::TradQuantity(Text("2147484"), '.'), 2147484000LL - 4294967296LL);
  // 429497 % are 4294970000 ten-thousandths, 2704 above 2^32.
  EXPECT_EQ(U::TradPercentage(Text("429497"), '.', 4), 2704);
}

TEST(TradNumLong, StopsAtTheFirstStrangeCharacter) {
  EXPECT_EQ(U::TradNumLong(Text(" 42 ")), 42);
  EXPECT_EQ(U::TradNumLong(Text("42.9")), 42);
  EXPECT_EQ(U::TradNumLong(Text("1.2.3")), 1);
  EXPECT_EQ(U::TradNumLong(Text("12A3")), 12);
  EXPECT_EQ(U::TradNumLong(Text("-5")), 0);
  EXPECT_EQ(U::TradNumLong(Text("BONUS")), 0);
  EXPECT_EQ(U::TradNumLong(Text("")), 0);
  EXPECT_EQ(U::TradNumLong(Text(".")), 0);
  EXPECT_EQ(U::TradNumLong(Text(std::string(4000, '9'))), LONG_MAX);
  // Nineteen characters count: the rest is not read.
  EXPECT_EQ(U::TradNumLong(Text("0000000000000000012345")), 12);
}

TEST(ConvChar, CopiesAndFills) {
  char out[8];
  std::memset(out, 'x', sizeof out);
  EXPECT_FALSE(U::ConvCharFromEcr(out, Text("ab"), 5));
  EXPECT_EQ(std::string(out, 7), std::string("ab\0\0\0\0x", 7));
  std::memset(out, 'x', sizeof out);
  EXPECT_FALSE(U::ConvCharFromPC(out, Text("abcdefgh"), 5));
  EXPECT_STREQ(out, "abcde");
  char filled[] = "ab\0def";
  EXPECT_FALSE(U::ConvCharFromEcr(filled, filled, 5));
  EXPECT_EQ(std::string(filled, 6), std::string("ab\0\0\0\0", 6));
  char same[] = "abcdef";
  EXPECT_FALSE(U::ConvCharFromPC(same, same, 3));
  EXPECT_STREQ(same, "abc");
}

TEST(NumToStringDescription, ShowsAPercentage) {
  char out[128];
  U::NumToStringDescription(out, Text("SCONTO"), 100000, 10000, true);
  EXPECT_STREQ(out, "SCONTO 10");
  U::NumToStringDescription(out, Text("SCONTO"), 125000, 10000, true);
  EXPECT_STREQ(out, "SCONTO 12.5");
  U::NumToStringDescription(out, Text("SCONTO"), 100500, 10000, true);
  EXPECT_STREQ(out, "SCONTO 10.5");
  U::NumToStringDescription(out, Text("X"), 100500, 10000, false);
  EXPECT_STREQ(out, "X 10.0");
  U::NumToStringDescription(out, Text("X"), -125000, 10000, true);
  EXPECT_STREQ(out, "X -12.-5");
}

TEST(NumToString, ShowsTwoDecimals) {
  char out[64];
  U::NumToString(out, 15000, 10000, false);
  EXPECT_STREQ(out, "1.50");
  U::NumToString(out, 20000, 10000, true);
  EXPECT_STREQ(out, "2");
  U::NumToString(out, 20000, 10000, false);
  EXPECT_STREQ(out, "2.00");
  U::NumToString(out, 10500, 10000, true);
  EXPECT_STREQ(out, "1.05");
}

TEST(CurrencyToString, ShowsAmounts) {
  char out[64];
  U::CurrencyToString(out, 123400, 10000, false, 100);
  EXPECT_STREQ(out, "12.34");
  U::CurrencyToString(out, 122000, 10000, true, 100);
  EXPECT_STREQ(out, "12.20");
  U::CurrencyToString(out, 0, 10000, false, 100);
  EXPECT_STREQ(out, "0");
  U::CurrencyToString(out, 0, 10000, true, 100);
  EXPECT_STREQ(out, "0.0");
  U::CurrencyToString(out, 120500, 10000, true, 100);
  EXPECT_STREQ(out, "12.0");
  U::CurrencyToString(out, 120500, 10000, false, 100);
  EXPECT_STREQ(out, "12.05");
}

TEST(DateTexts, AreCopiedByPosition) {
  char out[32];
  std::memset(out, 'x', sizeof out);
  U::upos2ZupDateTime(out, Text("150120241030"));
  EXPECT_STREQ(out, "15/01/24 10:30");
  EXPECT_EQ(out[15], 0);
  EXPECT_EQ(out[16], 'x');
  upos2ZupDateTime(out, Text("010220251159"));
  EXPECT_STREQ(out, "01/02/25 11:59");
  U::upos2ZupDateTime(out, Text(""));
  EXPECT_STREQ(out, "");
  U::upos2ZupDateTime(out, Text("15"));
  EXPECT_STREQ(out, "15/");

  U::zup_2_upos_datetime(out, "150124", "1030");
  EXPECT_STREQ(out, "150120241030");
  U::zup_2_upos_datetime(out, "150124", "");
  EXPECT_STREQ(out, "15012024");
  U::zup_2_upos_datetime(out, "150", "");
  EXPECT_STREQ(out, "150");
  U::zup_2_upos_datetime(out, "15012", "");
  EXPECT_STREQ(out, "1501202");
}

std::string Extracted(const std::string& text, int longest, int expected_result) {
  std::vector<char> out(static_cast<size_t>(longest) + 1);
  EXPECT_EQ(U::EstraeAlfa(Text(text), out.data(), longest, '\''), expected_result) << text;
  return out.data();
}

TEST(EstraeAlfa, TakesBareAndQuotedTexts) {
  EXPECT_EQ(Extracted("bare", 10, 0), "bare");
  EXPECT_EQ(Extracted("' x '", 10, 0), " x ");
  EXPECT_EQ(Extracted("'it''s'", 10, 0), "it's");
  EXPECT_EQ(Extracted("'a'b", 10, 0), "ab");
  EXPECT_EQ(Extracted("''", 10, 0), "");
  EXPECT_EQ(Extracted("", 10, 0), "");
}

TEST(EstraeAlfa, RefusesBadQuotesAndLongTexts) {
  EXPECT_EQ(Extracted("a'b'", 10, 8), "a");
  EXPECT_EQ(Extracted("'", 10, 8), "");
  EXPECT_EQ(Extracted("'a", 10, 8), "");
  EXPECT_EQ(Extracted("'a''", 10, 8), "a");
  EXPECT_EQ(Extracted("'a''b", 10, 8), "a");  // a doubled quote, and none that closes
  EXPECT_EQ(Extracted("12345678901", 10, 9), "1234567890");
  EXPECT_EQ(Extracted("1234567890", 10, 0), "1234567890");
}

TEST(Itoa, WritesAnyBaseFrom2To35) {
  char out[40];
  const auto text = [&](int value, int base) {
    U::itoa(value, out, base);
    return std::string(out);
  };
  EXPECT_EQ(text(0, 10), "0");
  EXPECT_EQ(text(-255, 16), "-ff");
  EXPECT_EQ(text(5, 2), "101");
  EXPECT_EQ(text(34, 35), "y");
  EXPECT_EQ(text(INT_MIN, 10), "-2147483648");
  EXPECT_EQ(text(1, 1), "");
  EXPECT_EQ(text(1, 36), "");
}

TEST(Strreverse, IncludesBothEnds) {
  char text[] = "abcd";
  U::strreverse(text, text + 3);
  EXPECT_STREQ(text, "dcba");
  U::strreverse(text, text);
  EXPECT_STREQ(text, "dcba");
}

TEST(ToLower, LeavesOtherBytes) {
  char text[] = "ABC\xC0z9";
  U::toLower(text);
  EXPECT_STREQ(text, "abc\xC0z9");
}

TEST(Padding, ANarrowBufferCutsWhatDoesNotFit) {
  char out[8] = "xxxxxxx";
  EXPECT_EQ(U::FnLPAD(out, 5, "-5", 4, '0') - out, 4);
  EXPECT_EQ(std::string(out, 7), std::string("-005\0xx", 7));
  EXPECT_EQ(U::FnLPAD(out, 4, "-5", 4, '0') - out, 3);
  EXPECT_EQ(std::string(out, 7), std::string("-00\0\0xx", 7));
  EXPECT_EQ(U::FnLPAD(out, 3, "12345", 2, '0') - out, 2);
  EXPECT_EQ(std::string(out, 4), std::string("12\0\0", 4));
  EXPECT_EQ(U::FnLPAD(out, 1, "7", 3, '0'), out);
  EXPECT_EQ(std::string(out, 2), std::string("\0002", 2));
  out[0] = 'x';
  EXPECT_EQ(U::FnLPAD(out, 0, "7", 3, '0'), out);
  EXPECT_EQ(out[0], 'x');
}

TEST(Padding, JustifiesToAWidth) {
  char out[16];
  EXPECT_EQ(U::FnLPAD(out, Text("-5"), 4, '0') - out, 4);
  EXPECT_STREQ(out, "-005");
  U::FnLPAD(out, Text("7"), 3, ' ');
  EXPECT_STREQ(out, "  7");
  U::FnLPAD(out, Text("42"), INT_MIN, '0');
  EXPECT_STREQ(out, "42");
  std::strcpy(out, "-7");  // in its own place nothing is read behind the text
  EXPECT_EQ(U::FnLPAD(out, sizeof(out), out, 4, '0') - out, 4);
  std::strcpy(out, "123");  // and it moves as one block
  U::FnLPAD(out, out, 4, ' ');
  EXPECT_STREQ(out, "  23");
  U::FnLPAD(out, Text("12345"), 3, '0');
  EXPECT_STREQ(out, "12345");
  std::memset(out, 'x', sizeof out);
  EXPECT_EQ(U::FnRPAD(out, Text("ab"), 4, '.') - out, 4);
  EXPECT_EQ(std::string(out, 5), "ab..x");
  U::FnRPAD(out, Text("abcdef"), 4, '.');
  EXPECT_EQ(std::string(out, 5), "abcdx");
  EXPECT_EQ(U::FnRPAD(out, Text("xyz"), 0, '.'), out);
  EXPECT_EQ(U::FnRPAD(out, Text("xyz"), -1, '.'), out);
  EXPECT_EQ(std::string(out, 5), "abcdx");
}

TEST(CheckTrue, TakesTheTrueWordsAndTwo) {
  for (const char* word : {"VERO", "vero", "SI", "si", "YES", "yEs", "2", "25", "SIGNOR"}) {
    EXPECT_TRUE(U::CheckTrue(Text(word))) << word;
  }
  for (const char* word : {"", "1", "NO", "S", "VER", "0", " SI", "TRUE"}) {
    EXPECT_FALSE(U::CheckTrue(Text(word))) << word;
  }
}

}  // namespace
