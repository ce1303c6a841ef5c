// What stands on the paper beside its lines: cuts, sizes of characters, barcodes, logos.
#include <gtest/gtest.h>

#include <filesystem>

#include "register/paper/paper.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

using Lines = std::vector<std::string>;

constexpr char kBothDoubled = kDoubleWidth | kDoubleHeight;

std::string Sizes(const Paper& paper, size_t row) {
  return std::get<SizedRow>(paper.rows().at(row).content).sizes;
}

TEST(PaperRows, PlainTextHasNone) {
  Paper paper;
  paper.Text("A");
  paper.Centred("B");
  paper.Pair("C", "1,00");
  paper.Item("D", "22%", "1,00");
  paper.Blank();
  EXPECT_TRUE(paper.rows().empty());
}

TEST(PaperRows, ACutNamesItsLine) {
  Paper paper;
  paper.Text("A");
  paper.Cut();
  ASSERT_EQ(paper.rows().size(), 1u);
  EXPECT_EQ(paper.rows()[0].line, 1u);
  EXPECT_EQ(paper.rows()[0].line_count, 1u);
  EXPECT_TRUE(std::holds_alternative<CutRow>(paper.rows()[0].content));
}

TEST(PaperRows, DoubleWidthAndHeightAddUpUntilTheyAreEnded) {
  Paper paper;
  paper.Text("\x1b|2C\x1b|3CAB\x1b|NC");
  paper.Text("\x1b|4CA\x1b|1CB");
  paper.Text("\x1b|3CAB");
  EXPECT_EQ(paper.lines(), (Lines{"A B C", "A B", "AB"}));
  ASSERT_EQ(paper.rows().size(), 3u);
  const char filled = kBothDoubled | kFilled;
  EXPECT_EQ(Sizes(paper, 0), (std::string{kBothDoubled, filled, kBothDoubled, filled, kPlainSize}));
  EXPECT_EQ(Sizes(paper, 1), (std::string{kBothDoubled, filled, kPlainSize}));
  EXPECT_EQ(Sizes(paper, 2), (std::string{kDoubleHeight, kDoubleHeight}));
}

TEST(PaperRows, SizesThatReachNoCharacterLeaveThePaperPlain) {
  Paper paper;
  paper.Text("\x1b|4C\x1b|NABC");
  paper.Text("ABC\x1b|4C");
  paper.Text("ABC\x1b|4C  ");  // trailing blanks are not kept
  EXPECT_TRUE(paper.rows().empty());
}

TEST(PaperRows, SizesMoveWithTheAlignment) {
  Paper paper;
  paper.Text("\x1b|rA\x1b|3CAB");
  EXPECT_EQ(paper.lines(), (Lines{std::string(40, ' ') + "AB"}));
  EXPECT_EQ(Sizes(paper, 0), std::string(40, kPlainSize) + std::string(2, kDoubleHeight));
}

TEST(PaperRows, AWrappedTextKeepsItsSizesOnEachLine) {
  Paper paper;
  paper.Text(std::string(41, 'a') + "\x1b|3C" + "bcd");
  EXPECT_EQ(paper.lines(), (Lines{std::string(41, 'a') + "b", "cd"}));
  ASSERT_EQ(paper.rows().size(), 2u);
  EXPECT_EQ(Sizes(paper, 0), std::string(41, kPlainSize) + std::string(1, kDoubleHeight));
  EXPECT_EQ(paper.rows()[1].line, 1u);
  EXPECT_EQ(Sizes(paper, 1), std::string(2, kDoubleHeight));
}

TEST(PaperRows, DescriptionsHaveSizesAndAmountsHaveNone) {
  Paper paper;
  paper.Item("\x1b|3CABCDEFGHIJKLMNOPQRSTUVWXYZ", "22%", "1,00");
  paper.Pair("\x1b|3CABC", "1,00");
  EXPECT_EQ(paper.lines()[0], "ABCDEFGHIJKLMNOPQRSTUVWX");
  ASSERT_EQ(paper.rows().size(), 3u);
  EXPECT_EQ(Sizes(paper, 0), std::string(24, kDoubleHeight));
  EXPECT_EQ(Sizes(paper, 1), std::string(2, kDoubleHeight));
  EXPECT_EQ(Sizes(paper, 2), std::string(3, kDoubleHeight));
}

TEST(PaperRows, ABarcodeCoversAllLinesOfItsStandIn) {
  Paper paper;
  paper.Text("A");
  paper.Barcode({"10", std::string(80, 'x'), 2, false, Alignment::kLeft}, "QR CODE");
  // "[QR CODE " and 80 characters and "]" are 90: 42, 42 and 6.
  EXPECT_EQ(paper.lines(),
            (Lines{"A", "[QR CODE " + std::string(33, 'x'), std::string(42, 'x'), "xxxxx]"}));
  ASSERT_EQ(paper.rows().size(), 1u);
  EXPECT_EQ(paper.rows()[0].line, 1u);
  EXPECT_EQ(paper.rows()[0].line_count, 3u);
}

TEST(PaperRows, ALogoIsARowWhenItHasAFile) {
  Paper paper;
  paper.Logo(63, "");
  paper.Logo(12, "/logos/shop.png");
  EXPECT_EQ(paper.lines(), (Lines{"                [LOGO 63]", "                [LOGO 12]"}));
  ASSERT_EQ(paper.rows().size(), 1u);
  EXPECT_EQ(paper.rows()[0].line, 1u);
  EXPECT_EQ(std::get<LogoRow>(paper.rows()[0].content).file, "/logos/shop.png");
}

TEST(PaperRows, AnotherPapersRowsComeWithItsLines) {
  Paper other;
  other.Text("B");
  other.Cut();
  other.Text("\x1b|3CC");
  Paper paper;
  paper.Text("A");
  paper.Cut();
  paper.Reserve(other.lines().size());
  const std::string* const lines = paper.lines().data();
  const PaperRow* const rows = paper.rows().data();
  paper.Append(std::move(other));
  ASSERT_EQ(paper.rows().size(), 3u);
  EXPECT_EQ(paper.rows()[1].line, 3u);
  EXPECT_EQ(paper.rows()[2].line, 4u);
  EXPECT_EQ(paper.lines()[4], "C");
  // There was room for both, so that nothing could fail.
  EXPECT_EQ(paper.lines().data(), lines);
  EXPECT_EQ(paper.rows().data(), rows);
}

class PaperRowsOfTheRegister : public RegisterTest {
 protected:
  const PaperRow& Last() { return device.paper().rows().back(); }
  const BarcodeRow& LastBarcode() { return std::get<BarcodeRow>(Last().content); }
};

TEST_F(PaperRowsOfTheRegister, ABarcodeKeepsEveryByteOfItsData) {
  device.BeginNonFiscal();
  const std::string data = "A\x1b|2C\x01\xff";
  ASSERT_EQ(device.PrintBarcode("10", "1", "2", "2", data.c_str(), 1), RTF_SUCCESS);
  EXPECT_EQ(LastBarcode().type, "10");
  EXPECT_EQ(LastBarcode().data, data);
  EXPECT_EQ(LastBarcode().alignment, Alignment::kRight);
  EXPECT_FALSE(LastBarcode().check_digit);
}

TEST_F(PaperRowsOfTheRegister, ABarcodesScaleIsADigitOrNormal) {
  device.BeginNonFiscal();
  const struct {
    const char* scale;
    int value;
  } rows[] = {{"1", 1}, {"2", 2}, {"9", 9}, {"0", 1}, {"", 1}, {"x", 1}, {"12", 1}, {nullptr, 1}};
  for (const auto& row : rows) {
    ASSERT_EQ(device.PrintBarcode("08", row.scale, "3", "0", "ABC", 1), RTF_SUCCESS);
    EXPECT_EQ(LastBarcode().scale, row.value) << (row.scale != nullptr ? row.scale : "null");
  }
}

TEST_F(PaperRowsOfTheRegister, OnlyTheExtendedCallAddsACheckDigit) {
  device.BeginNonFiscal();
  ASSERT_EQ(device.PrintBarcodeEx("04", "1", "3", "0", "ABC", 1, true), RTF_SUCCESS);
  EXPECT_TRUE(LastBarcode().check_digit);
  ASSERT_EQ(device.PrintBarcodeEx("04", "1", "3", "0", "ABC", 1, false), RTF_SUCCESS);
  EXPECT_FALSE(LastBarcode().check_digit);
}

TEST_F(PaperRowsOfTheRegister, ALogoIsTheFileItWasProgrammedFromWhereverTheProgramStands) {
  namespace fs = std::filesystem;
  const fs::path file = fs::relative(LORIMAT_SOURCE_DIR "/CMakeLists.txt");
  ASSERT_TRUE(file.is_relative());
  ASSERT_EQ(device.ProgramGRC(12, file.c_str(), true), RTF_SUCCESS);
  device.BeginNonFiscal();
  ASSERT_EQ(device.PrintBitmap(12, 1), RTF_SUCCESS);
  const fs::path kept = std::get<LogoRow>(Last().content).file;
  EXPECT_TRUE(kept.is_absolute());
  EXPECT_TRUE(fs::equivalent(kept, file));
}

}  // namespace
}  // namespace lorimat
