#include "register/paper/paper.h"

#include <gtest/gtest.h>

namespace lorimat {
namespace {

using Lines = std::vector<std::string>;

TEST(Paper, CentresInFortyTwoColumns) {
  Paper paper;
  paper.Centred("NEGOZIO DI PROVA");  // 16 columns, 13 ahead
  paper.Centred("ABC");               // 39 left over, 19 ahead
  EXPECT_EQ(paper.lines(), (Lines{"             NEGOZIO DI PROVA", "                   ABC"}));
}

TEST(Paper, WrapsLongTexts) {
  Paper paper;
  paper.Text(std::string(42, 'a') + std::string(42, 'b') + "c");
  EXPECT_EQ(paper.lines(), (Lines{std::string(42, 'a'), std::string(42, 'b'), "c"}));
}

// An accented letter takes a column, a wide character two, each byte of Windows-1252 one; a line
// ends between two of them.
TEST(Paper, WrapsBetweenCharacters) {
  const auto times = [](int count, const std::string& text) {
    std::string all;
    for (; count > 0; --count) all += text;
    return all;
  };
  const std::string accented = "\xC3\xA8", wide = "\xE6\xBC\xA2", western = "\xE8";
  {
    Paper paper;
    paper.Centred(times(42, accented));
    paper.Centred("xx" + times(25, wide));
    paper.Centred("x" + times(25, wide));
    paper.Centred(times(43, western));
    EXPECT_EQ(paper.lines(), (std::vector<std::string>{
                                 times(42, accented), "xx" + times(20, wide),
                                 std::string(16, ' ') + times(5, wide), "x" + times(20, wide),
                                 std::string(16, ' ') + times(5, wide), times(42, western),
                                 std::string(20, ' ') + western}));
  }
  {
    Paper paper;
    paper.Item(times(25, wide), "22%", "1,00");
    paper.Item(times(25, accented), "22%", "1,00");
    paper.Pair(times(25, wide), "1,00");
    EXPECT_EQ(
        paper.lines(),
        (std::vector<std::string>{
            times(12, wide), times(12, wide), wide + std::string(22, ' ') + "   22%        1,00",
            times(24, accented), accented + std::string(23, ' ') + "   22%        1,00",
            times(18, wide) + "  1,00"}));
  }
}

TEST(Paper, EscapeSequencesBecomeStandIns) {
  Paper paper;
  paper.Text("\x1b|cAABC");
  paper.Text("\x1b|rAABC");
  paper.Text("\x1b|2C\x1b|3CABC");
  paper.Text("\x1b|2CAB\x1b|NCD");
  paper.Text("\x1b|bCABC");
  paper.Text("\x1b|!bCABC");
  EXPECT_EQ(paper.lines(), (Lines{"                   ABC", std::string(39, ' ') + "ABC", "A B C",
                                  "A B CD", "ABC", "ABC"}));
}

TEST(Paper, BrokenEscapeSequencesLeaveTheirText) {
  Paper paper;
  paper.Text("\x1b");
  paper.Text("\x1b|");
  paper.Text("\x1b|c");
  paper.Text("A\x1b|1");
  paper.Text("P|cA");
  paper.Text("\x1b-cA");
  EXPECT_EQ(paper.lines(), (Lines{"", " |", " |c", "A |1", "P|cA", " -cA"}));
}

TEST(Paper, NoControlCharacterGetsOntoThePaper) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  Paper paper;
  paper.Text(all);
  paper.Centred(all);
  paper.Pair(all, "1,00");
  paper.Item(all, "22%", "1,00");
  for (const std::string& line : paper.lines()) {
    EXPECT_LE(line.size(), Paper::kColumns);
    for (const char c : line) {
      const unsigned char byte = static_cast<unsigned char>(c);
      EXPECT_TRUE(byte >= 0x20 && byte != 0x7F);
    }
  }
}

TEST(Paper, ItemsKeepTheirColumns) {
  Paper paper;
  paper.Item("PANE", "22%", "10,00");
  paper.Item("DESCRIZIONE", "IVA", "Prezzo(EUR)");
  EXPECT_EQ(paper.lines(), (Lines{"PANE                       22%       10,00",
                                  "DESCRIZIONE                IVA Prezzo(EUR)"}));
}

TEST(Paper, LongDescriptionsWrapAndTheAmountStandsOnTheLastLine) {
  Paper paper;
  paper.Item("ABCDEFGHIJKLMNOPQRSTUVWXYZ", "ES*", "-9999999,99");
  EXPECT_EQ(paper.lines(),
            (Lines{"ABCDEFGHIJKLMNOPQRSTUVWX", "YZ                         ES* -9999999,99"}));
}

TEST(Paper, PairsCutTheTextAndNeverTheAmount) {
  Paper paper;
  paper.Pair(std::string(60, 'x'), "1234567,89");
  EXPECT_EQ(paper.lines(), (Lines{std::string(31, 'x') + " 1234567,89"}));
}

TEST(Paper, TextIsTheLinesEachEnded) {
  Paper paper;
  paper.Text("A");
  paper.Blank();
  paper.Cut();
  EXPECT_EQ(paper.text(), "A\n\n------------------------------------------\n");
}

}  // namespace
}  // namespace lorimat
