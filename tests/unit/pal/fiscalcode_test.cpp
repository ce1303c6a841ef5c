#include "pal/fiscalcode.h"

#include <gtest/gtest.h>

#include <string>

namespace {

TEST(FiscalCodeTest, KindsOfCharacters) {
  const std::string vowels = "AEIOU";
  const std::string substitutes = "LMNPQRSTUV";
  for (int value = 0; value < 256; ++value) {
    const char c = static_cast<char>(value);
    const bool digit = value >= '0' && value <= '9';
    const bool upper = value >= 'A' && value <= 'Z';
    const bool lower = value >= 'a' && value <= 'z';
    const bool vowel = vowels.find(c) != std::string::npos;
    EXPECT_EQ(FiscalCode::IsVocal(c), vowel) << value;
    EXPECT_EQ(FiscalCode::IsConsonant(c), upper && !vowel) << value;
    EXPECT_EQ(FiscalCode::IsDigit(c), digit) << value;
    EXPECT_EQ(FiscalCode::IsCharacter(c), upper) << value;
    EXPECT_EQ(FiscalCode::IsAlfa(c), digit || upper || lower) << value;
    EXPECT_EQ(FiscalCode::IsExtendedDigit(c), digit || substitutes.find(c) != std::string::npos)
        << value;
  }
}

TEST(FiscalCodeTest, ClientIdHasEightDigitsOrLettersOfEitherCase) {
  EXPECT_TRUE(FiscalCode::CheckClientID("AB12cd34"));
  EXPECT_FALSE(FiscalCode::CheckClientID("AB12-d34"));
  EXPECT_FALSE(FiscalCode::CheckClientID("AB12cd3"));
  EXPECT_FALSE(FiscalCode::CheckClientID("AB12cd345"));
  EXPECT_FALSE(FiscalCode::CheckClientID(""));
  EXPECT_FALSE(FiscalCode::CheckClientID("AB12cd3\xE8"));
  EXPECT_FALSE(FiscalCode::CheckClientID(nullptr));
}

TEST(FiscalCodeTest, ChecksumOfShortTexts) {
  EXPECT_EQ(FiscalCode::GenerateChecksum(""), 'A');
  EXPECT_EQ(FiscalCode::GenerateChecksum("A"), 'B');   // odd A: 1
  EXPECT_EQ(FiscalCode::GenerateChecksum("AZ"), 'A');  // 1 + even Z 25 = 26
  EXPECT_EQ(FiscalCode::GenerateChecksum("09"), 'K');  // odd 0: 1, even 9: 9
  EXPECT_EQ(FiscalCode::GenerateChecksum("9"), 'V');   // odd 9: 21
  EXPECT_EQ(FiscalCode::GenerateChecksum("-a\xE8"), 'A');
  EXPECT_EQ(FiscalCode::GenerateChecksum("-B"), 'B');  // what adds nothing keeps its place
}

TEST(FiscalCodeTest, ChecksumOfEveryLetterAtBothPositions) {
  // The values of the odd positions, as the letter that stands for each.
  const std::string odd = "BAFHJNPRTVCESULDGIMOQKWZYX";
  for (int i = 0; i < 26; ++i) {
    const char c = static_cast<char>('A' + i);
    EXPECT_EQ(FiscalCode::GenerateChecksum({c}), odd[static_cast<size_t>(i)]) << c;
    EXPECT_EQ(FiscalCode::GenerateChecksum({'-', c}), c) << c;
  }
}

TEST(FiscalCodeTest, ChecksumOfAVeryLongText) {
  // A hundred thousand even Z (25 each) and odd A (1 each): a sum of 26 for each pair.
  std::string text;
  for (int i = 0; i < 100000; ++i) text += "AZ";
  EXPECT_EQ(FiscalCode::GenerateChecksum(text), 'A');
}

TEST(FiscalCodeTest, BlocksAreConsonantsThenVowelsThenPadding) {
  for (const char* block : {"RSS", "FOX", "AIX", "AXX", "REA", "IOE", "XXX", "AIX?"}) {
    EXPECT_TRUE(FiscalCode::CheckSurnameName(block)) << block;
  }
  for (const char* block : {"FOR", "AIB", "F1X", "fox", "F-X", "FO", ""}) {
    EXPECT_FALSE(FiscalCode::CheckSurnameName(block)) << block;
  }
}

TEST(FiscalCodeTest, DigitsFromTheirSubstitutes) {
  const std::string substitutes = "LMNPQRSTUV";
  for (int digit = 0; digit < 10; ++digit) {
    EXPECT_EQ(FiscalCode::DigitFromCoding(static_cast<char>('0' + digit)), digit);
    EXPECT_EQ(FiscalCode::DigitFromCoding(substitutes[static_cast<size_t>(digit)]), digit);
  }
  for (const char c : {'O', 'l', 'A', '\0', '\xFF'}) EXPECT_EQ(FiscalCode::DigitFromCoding(c), 0);
}

TEST(FiscalCodeTest, MonthsFromTheirLetters) {
  const std::string months = "ABCDEHLMPRST";
  for (int month = 0; month < 12; ++month) {
    EXPECT_EQ(FiscalCode::MonthFromCoding(months[static_cast<size_t>(month)]), month);
  }
  for (const char c : {'F', 'b', '1', '\0', '\xFF'}) EXPECT_EQ(FiscalCode::MonthFromCoding(c), 0);
}

// MRTMTT25D09F205: 18+17+14+12+14+19+5+5+7+0+21+5+5+0+13 = 155, 25 modulo 26: Z. The other
// controls follow from what their code changes in that sum.
TEST(FiscalCodeTest, AcceptsAWellFormedCode) {
  EXPECT_TRUE(FiscalCode::CheckFiscalCode("MRTMTT25D09F205Z"));
}

TEST(FiscalCodeTest, RefusesEveryOtherControlLetter) {
  for (char control = 'A'; control < 'Z'; ++control) {
    EXPECT_FALSE(FiscalCode::CheckFiscalCode(std::string("MRTMTT25D09F205") + control));
  }
  EXPECT_FALSE(FiscalCode::CheckFiscalCode("MRTMTT25D09F205z"));
}

TEST(FiscalCodeTest, RefusesAnotherLength) {
  EXPECT_FALSE(FiscalCode::CheckFiscalCode(""));
  EXPECT_FALSE(FiscalCode::CheckFiscalCode("MRTMTT25D09F205"));
  EXPECT_FALSE(FiscalCode::CheckFiscalCode("MRTMTT25D09F205ZZ"));
  EXPECT_FALSE(FiscalCode::CheckFiscalCode(std::string(100000, 'A')));
}

// Each code's control letter is right, so that only the tested place refuses it.
TEST(FiscalCodeTest, RefusesWrongCharactersInEveryPlace) {
  const std::string good = "MRTMTT25D09F205";
  struct {
    size_t place;
    char c;
  } const wrong[] = {{0, '1'},  {1, 'a'},  {2, '1'},  {3, '1'},  {4, '-'}, {5, '1'},
                     {6, 'A'},  {7, 'O'},  {8, 'F'},  {8, '\0'}, {9, 'B'}, {10, 'C'},
                     {11, '2'}, {12, 'A'}, {13, 'z'}, {14, '-'}};
  for (const auto& [place, c] : wrong) {
    std::string code = good;
    code[place] = c;
    code += FiscalCode::GenerateChecksum(code);
    EXPECT_FALSE(FiscalCode::CheckFiscalCode(code)) << code;
  }
}

TEST(FiscalCodeTest, RefusesLowerCase) {
  EXPECT_FALSE(FiscalCode::CheckFiscalCode("mrtmtt25d09f205z"));
}

TEST(FiscalCodeTest, DayFieldOfMenAndWomen) {
  EXPECT_FALSE(FiscalCode::CheckFiscalCode("MRTMTT25D00F205F"));  // 155 - 21 + 1 = 135
  EXPECT_TRUE(FiscalCode::CheckFiscalCode("MRTMTT25D49F205D"));   // 155 + 4 = 159
  EXPECT_TRUE(FiscalCode::CheckFiscalCode("MRTMTT25D41F205I"));   // 155 + 4 - 21 = 138
  EXPECT_FALSE(FiscalCode::CheckFiscalCode("MRTMTT25D40F205J"));  // 155 + 4 - 21 + 1 = 139
  EXPECT_FALSE(FiscalCode::CheckFiscalCode("MRTMTT25D72F205Q"));  // 155 + 7 - 21 + 5 = 146
  EXPECT_TRUE(FiscalCode::CheckFiscalCode("MRTMTT25A71F205F"));   // 155 - 6 + 7 - 21 = 135
  EXPECT_FALSE(FiscalCode::CheckFiscalCode("MRTMTT25D71F205L"));  // 155 + 7 - 21 = 141, April 31
}

TEST(FiscalCodeTest, YearsOfBothCenturies) {
  EXPECT_TRUE(FiscalCode::CheckFiscalCode("MRTMTT38D09F205E"));  // 155 + 2 + 3 = 160
  EXPECT_TRUE(FiscalCode::CheckFiscalCode("MRTMTT39D09F205F"));  // one more
}

TEST(FiscalCodeTest, LeapDayOnlyInALeapYear) {
  EXPECT_TRUE(FiscalCode::CheckFiscalCode("MRTMTT24B29F205T"));   // 155 - 1 - 7 + 2 = 149
  EXPECT_FALSE(FiscalCode::CheckFiscalCode("MRTMTT25B29F205U"));  // 150
  // "00" is 2000, a leap year, and not 1900, which is none: 155 - 4 - 5 - 7 + 2 = 141.
  EXPECT_TRUE(FiscalCode::CheckFiscalCode("MRTMTT00B29F205L"));
}

TEST(FiscalCodeTest, LettersInPlaceOfDigits) {
  EXPECT_TRUE(FiscalCode::CheckFiscalCode("MRTMTT25D09F20RU"));  // 155 - 13 + 8 = 150
  // 155 + (20 - 5) + (17 - 5) + (11 - 0) + (10 - 21) = 182
  EXPECT_TRUE(FiscalCode::CheckFiscalCode("MRTMTTNRDLVF205A"));
  EXPECT_FALSE(FiscalCode::CheckFiscalCode("MRTMTTNRDLVF205B"));
}

TEST(FiscalCodeTest, GeneratesACode) {
  EXPECT_EQ(FiscalCode::GenerateFiscalCode("MORETTI", "MATTEO", true, 8, 3, 1925, "F205"),
            "MRTMTT25D09F205Z");
  EXPECT_EQ(FiscalCode::GenerateFiscalCode("MORETTI", "MATTEO", false, 8, 3, 1925, "F205"),
            "MRTMTT25D49F205D");
}

TEST(FiscalCodeTest, GeneratesBlocksOfShortAndLongNames) {
  const auto blocks = [](const char* surname, const char* name) {
    return FiscalCode::GenerateFiscalCode(surname, name, true, 0, 0, 2001, "H501").substr(0, 6);
  };
  EXPECT_EQ(blocks("FO", "GIOVANNI"), "FOXGNN");        // G, V, N, N without the second
  EXPECT_EQ(blocks("ROSSINI", "FRANCESCO"), "RSSFNC");  // F, R, N, C
  EXPECT_EQ(blocks("AI", "IO"), "AIXIOX");
  EXPECT_EQ(blocks("REA", "LIA"), "REALIA");
  EXPECT_EQ(blocks("", ""), "XXXXXX");
  EXPECT_EQ(blocks("D'ANGELO", "Anna"), "DNGAXX");  // lower case is passed over
}

TEST(FiscalCodeTest, GeneratedCodePassesTheCheck) {
  // 13+14+25+6+20+13+1+1+1+0+0+7+13+0+0 = 114, 10 modulo 26
  const std::string code =
      FiscalCode::GenerateFiscalCode("FO", "GIOVANNI", true, 0, 0, 2001, "H501");
  EXPECT_EQ(code, "FOXGNN01A01H501K");
  EXPECT_TRUE(FiscalCode::CheckFiscalCode(code));
}

TEST(FiscalCodeTest, GeneratesFromDaysAndMonthsThatAreNone) {
  EXPECT_EQ(FiscalCode::GenerateFiscalCode("FO", "IO", true, 0, 12, 2001, "H501"), "");
  // The date's text is cut to five characters, and whatever follows stands as it is.
  EXPECT_EQ(FiscalCode::GenerateFiscalCode("FO", "IO", true, 122, 0, 2001, "").substr(0, 11),
            "FOXIOX01A12");
  EXPECT_EQ(FiscalCode::GenerateFiscalCode("FO", "IO", false, ~0U, 0, ~0U, "").size(), 12u);
}

TEST(FiscalCodeTest, VatCodeWithItsControl) {
  EXPECT_TRUE(FiscalCode::CheckVatCode("00000000000"));
  // 0+0+7+8+3+2+1+0+1+11 = 33
  EXPECT_TRUE(FiscalCode::CheckVatCode("00743110157"));
  for (const char control : {'0', '1', '6', '8', '9', 'A', '\0', '\xFF'}) {
    EXPECT_FALSE(FiscalCode::CheckVatCode(std::string("0074311015") + control));
  }
}

TEST(FiscalCodeTest, VatCodeOfAnotherLengthOrWithoutDigits) {
  EXPECT_FALSE(FiscalCode::CheckVatCode(""));
  EXPECT_FALSE(FiscalCode::CheckVatCode("0000000000"));
  EXPECT_FALSE(FiscalCode::CheckVatCode("000000000000"));
  for (size_t place = 0; place < 10; ++place) {
    std::string number = "00000000000";
    number[place] = 'A';
    EXPECT_FALSE(FiscalCode::CheckVatCode(number)) << place;
    number[place] = ' ';
    EXPECT_FALSE(FiscalCode::CheckVatCode(number)) << place;
  }
}

TEST(FiscalCodeTest, VatCodeKeepsItsSumInEightBits) {
  // 9 * 5 + 19 * 5 = 140, as eight bits -116, modulo 10 -6: control 16 modulo 10.
  EXPECT_TRUE(FiscalCode::CheckVatCode("99999999996"));
  EXPECT_FALSE(FiscalCode::CheckVatCode("99999999990"));
  // 127 is the last sum that fits: 140 - 19 + 6.
  EXPECT_TRUE(FiscalCode::CheckVatCode("93999999993"));
  // 1 + 15 + 36 + 76 = 128, as eight bits -128: control 18 modulo 10.
  EXPECT_TRUE(FiscalCode::CheckVatCode("17999999998"));
  EXPECT_FALSE(FiscalCode::CheckVatCode("17999999992"));
}

}  // namespace
