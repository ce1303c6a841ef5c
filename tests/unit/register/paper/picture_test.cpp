#include "register/paper/picture.h"

#include <gmock/gmock.h>

#include <algorithm>

#include "picture_fixture.h"
#include "register/paper/picture_text.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

uint32_t BigEndian(const std::string& bytes, size_t at) {
  uint32_t value = 0;
  for (size_t i = at; i < at + 4; ++i) value = value << 8 | static_cast<uint8_t>(bytes.at(i));
  return value;
}

TEST(PicturePng, HasTheSizeOfItsRowsAndShadesOfGrey) {
  Paper paper;
  paper.Text("A");
  paper.Text("B");
  paper.Cut();
  const std::string png = RenderPng(paper);
  EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
  EXPECT_EQ(BigEndian(png, 16), 640u);
  EXPECT_EQ(BigEndian(png, 20), 132u);  // three rows of 28 and two margins of 24
  EXPECT_EQ(png[24], 8);                // bits
  EXPECT_EQ(png[25], 0);                // grey alone
  // 8 dots to the millimetre are 8000 to the metre.
  const size_t density = png.find("pHYs");
  ASSERT_NE(density, png.npos);
  EXPECT_EQ(BigEndian(png, density + 4), 8000u);
  EXPECT_EQ(BigEndian(png, density + 8), 8000u);
  EXPECT_EQ(png[density + 12], 1);
}

TEST(PicturePng, EmptyPaperIsTwoMargins) {
  const Dots dots = Draw(Paper());
  EXPECT_EQ(dots.height, 48);
  EXPECT_TRUE(dots.IsWhite(0, 0, 640, 48));
}

TEST(PicturePng, ACutIsALineOfTwoDotsAcrossThePrint) {
  Paper paper;
  paper.Cut();
  const Dots dots = Draw(paper);
  // The row begins at 24; the line is in its middle, at 13 and 14.
  for (int x = 26; x < 614; ++x) {
    ASSERT_EQ(dots.At(x, 37), 0) << x;
    ASSERT_EQ(dots.At(x, 38), 0) << x;
  }
  EXPECT_TRUE(dots.IsWhite(0, 0, 640, 37));
  EXPECT_TRUE(dots.IsWhite(0, 39, 640, 76));
  EXPECT_TRUE(dots.IsWhite(0, 0, 26, 76));
  EXPECT_TRUE(dots.IsWhite(614, 0, 640, 76));
}

TEST(PicturePng, TextStandsInItsRowAndBlankRowsAreEmpty) {
  Paper paper;
  paper.Text("ABC");
  paper.Blank();
  paper.Text("M");
  const Dots dots = Draw(paper);
  EXPECT_FALSE(dots.RowIsWhite(0));
  EXPECT_TRUE(dots.RowIsWhite(1));
  EXPECT_FALSE(dots.RowIsWhite(2));
}

TEST(PicturePng, EachCharacterStandsInItsColumn) {
  Paper paper;
  paper.Text("A" + std::string(40, ' ') + "B");
  const Dots dots = Draw(paper);
  EXPECT_FALSE(dots.IsWhite(26, 24, 40, 52));
  EXPECT_TRUE(dots.IsWhite(40, 0, 600, 76));
  EXPECT_FALSE(dots.IsWhite(600, 24, 614, 52));
  EXPECT_TRUE(dots.IsWhite(0, 0, 26, 76));
  EXPECT_TRUE(dots.IsWhite(614, 0, 640, 76));
}

TEST(PicturePng, LettersFillTheirColumns) {
  Paper paper;
  paper.Text("M");
  const Dots dots = Draw(paper);
  const auto is_white = [&dots](int x, int y) { return dots.IsWhite(x, y, x + 1, y + 1); };
  int left = 40;
  int right = 26;
  int top = 52;
  int bottom = 24;
  for (int y = 24; y < 52; ++y) {
    for (int x = 26; x < 40; ++x) {
      if (is_white(x, y)) continue;
      left = std::min(left, x);
      right = std::max(right, x + 1);
      top = std::min(top, y);
      bottom = std::max(bottom, y + 1);
    }
  }
  // A column is 14 dots, and a row 28.
  EXPECT_GE(right - left, 10);
  EXPECT_GE(bottom - top, 14);
}

TEST(PicturePng, DoubleWidthTakesTwoColumns) {
  Paper paper;
  paper.Text("\x1b|2CM");
  const Dots dots = Draw(paper);
  EXPECT_EQ(dots.height, 76);
  EXPECT_FALSE(dots.IsWhite(26, 24, 40, 52));
  EXPECT_FALSE(dots.IsWhite(40, 24, 54, 52));
  EXPECT_TRUE(dots.IsWhite(54, 0, 640, 76));
}

TEST(PicturePng, DoubleHeightTakesTwoRowsAndTheOthersStandBelow) {
  Paper paper;
  paper.Text("\x1b|3CM\x1b|NM");
  const Dots dots = Draw(paper);
  EXPECT_EQ(dots.height, 48 + 56);
  EXPECT_FALSE(dots.IsWhite(26, 24, 40, 48));  // the upper half of the tall one
  EXPECT_TRUE(dots.IsWhite(40, 24, 54, 48));   // and of the other
  EXPECT_FALSE(dots.IsWhite(40, 52, 54, 80));
}

TEST(PicturePng, ARollOfManyBandsHasTheSameRowEverywhere) {
  Paper paper;
  for (int i = 0; i < 150; ++i) paper.Text("X" + std::string(20, ' ') + "gjQ");
  const Dots dots = Draw(paper);
  ASSERT_EQ(dots.height, 48 + 150 * 28);
  const auto row = [&](int number) {
    const auto begin = dots.grey.begin() + 640 * (24 + 28 * number);
    return std::vector<uint8_t>(begin, begin + 640 * 28);
  };
  for (int i = 1; i < 150; ++i) ASSERT_EQ(row(i), row(0)) << i;
}

TEST(PicturePng, TooLongARollIsRefusedWithItsLength) {
  Paper paper;
  for (int i = 0; i < 35713; ++i) paper.Blank();  // 999964 and the margins
  try {
    RenderPng(paper);
    FAIL();
  } catch (const PictureError& error) {
    EXPECT_THAT(error.what(), HasSubstr("1000012"));
    EXPECT_THAT(error.what(), HasSubstr("1000000"));
    EXPECT_THAT(error.what(), HasSubstr("PDF"));
  }
}

// --- Characters

TEST(PictureText, BytesThatAreNoUtf8AreWindows1252) {
  Paper windows;
  windows.Text("caff\xe8 1 \x80 \x93x\x94");
  Paper utf8;
  utf8.Text("caff\xc3\xa8 1 \xe2\x82\xac \xe2\x80\x9cx\xe2\x80\x9d");
  EXPECT_EQ(RenderPng(windows), RenderPng(utf8));
}

// The bytes that Windows-1252 has for others than ISO 8859-1, and the five that it leaves out.
TEST(PictureText, EachByteOfWindows1252HasItsCharacter) {
  const char* const kCharacters[32] = {"€",      "\uFFFD", "‚", "ƒ", "„", "…",      "†", "‡",
                                       "ˆ",      "‰",      "Š", "‹", "Œ", "\uFFFD", "Ž", "\uFFFD",
                                       "\uFFFD", "‘",      "’", "“", "”", "•",      "–", "—",
                                       "˜",      "™",      "š", "›", "œ", "\uFFFD", "ž", "Ÿ"};
  for (int byte = 0x80; byte <= 0x9F; ++byte) {
    const std::vector<PlacedCharacter> placed =
        PlaceCharacters(std::string(1, static_cast<char>(byte)), "");
    ASSERT_EQ(placed.size(), 1u) << byte;
    EXPECT_EQ(placed[0].text, kCharacters[byte - 0x80]) << byte;
  }
}

TEST(PictureText, ACharacterOfSeveralBytesTakesOneColumn) {
  const std::vector<PlacedCharacter> placed = PlaceCharacters("\xc3\xa8 \xe2\x82\xac!", "");
  ASSERT_EQ(placed.size(), 3u);
  EXPECT_EQ(placed[0].text, "\xc3\xa8");
  EXPECT_EQ(placed[0].column, 0);
  EXPECT_EQ(placed[1].text, "\xe2\x82\xac");
  EXPECT_EQ(placed[1].column, 2);
  EXPECT_EQ(placed[2].column, 3);
}

TEST(PictureText, AnAmountBehindACharacterOfSeveralBytesKeepsItsPlace) {
  Paper windows;
  windows.Item("CAFF\xe8", "22%", "1,00");
  windows.Pair("CAFF\xe8", "1,00");
  Paper utf8;
  utf8.Item("CAFF\xc3\xa8", "22%", "1,00");
  utf8.Pair("CAFF\xc3\xa8", "1,00");
  EXPECT_EQ(RenderPng(windows), RenderPng(utf8));
}

TEST(PictureText, BrokenUtf8IsReadByteByByte) {
  // A lone continuation, an overlong form, a surrogate, beyond the last character, cut short.
  for (const char* text : {"\x80", "\xc0\xaf", "\xe0\x80\xaf", "\xed\xa0\x80", "\xf4\x90\x80\x80",
                           "\xf5\x80\x80\x80", "\xe2\x82", "\xf0\x9f\x98", "\xf0\x8f\xbf\xbf"}) {
    const std::string bytes(text);
    EXPECT_EQ(PlaceCharacters(bytes, "").size(), bytes.size()) << testing::PrintToString(bytes);
  }
}

TEST(PictureText, DoubledBytesOfUtf8AreOneCharacterOfDoubleWidth) {
  const HostText host = ReadHostText("\x1b|2C\xc3\xa8X");
  const std::vector<PlacedCharacter> placed = PlaceCharacters(host.text, host.sizes);
  ASSERT_EQ(placed.size(), 2u);
  EXPECT_EQ(placed[0].text, "\xc3\xa8");
  EXPECT_EQ(placed[0].width, 2);
  EXPECT_EQ(placed[1].column, 2);
}

TEST(PictureText, TheLastColumnHasRoomForHalfADoubleWidth) {
  Paper paper;
  paper.Text(std::string(41, 'a') + "\x1b|2CM");
  const Dots dots = Draw(paper);
  EXPECT_FALSE(dots.IsWhite(600, 24, 614, 52));
  EXPECT_TRUE(dots.IsWhite(614, 0, 640, dots.height));
}

// A row is a row: what would end a line or a paragraph is seen in its column.
TEST(PictureText, SignsThatEndALineAreDrawnAsSigns) {
  for (const std::string sign : {"\xe2\x80\xa8", "\xe2\x80\xa9"}) {
    Paper with_sign;
    with_sign.Text("A" + sign + "B");
    Paper without;
    without.Text("A B");
    EXPECT_FALSE(RenderPng(with_sign) == RenderPng(without));
  }
}

TEST(PictureText, AnyBytesCanBeDrawn) {
  std::string all;
  for (int byte = 0; byte < 256; ++byte) all += static_cast<char>(byte);
  Paper paper;
  paper.Text(all);
  paper.Text("\x1b|4C" + all);
  paper.Line(all);  // longer than the paper is wide, with control characters
  paper.Text("\xe2\x80\xae\xe2\x80\xa8\xe4\xb8\xad\xf0\x9f\x98\x80\xcc\x81");
  EXPECT_GT(Draw(paper).height, 48);
  EXPECT_THAT(RenderPdf(paper), StartsWith("%PDF"));
}

// --- PDF

// How often the text stands in the file.
int Count(const std::string& file, const std::string& text) {
  int count = 0;
  for (size_t at = file.find(text); at != file.npos; at = file.find(text, at + 1)) ++count;
  return count;
}

// The heights of the pages, in points.
std::vector<double> PageHeights(const std::string& pdf) {
  const std::string box = "/MediaBox [ 0 0 226.771654 ";  // 80 mm
  std::vector<double> heights;
  for (size_t at = pdf.find(box); at != pdf.npos; at = pdf.find(box, at + 1)) {
    heights.push_back(std::stod(pdf.substr(at + box.size(), 20)));
  }
  return heights;
}

TEST(PicturePdf, HasAPageForEachPieceOfPaper) {
  Paper paper;
  paper.Text("A");
  paper.Cut();
  paper.Text("B");
  paper.Text("C");
  const std::string pdf = RenderPdf(paper);
  EXPECT_THAT(pdf, StartsWith("%PDF-"));
  EXPECT_EQ(Count(pdf, "/Type /Page "), 2);
  // 104 dots each, of 0.125 mm and 25.4/72 mm to the point.
  const std::vector<double> heights = PageHeights(pdf);
  ASSERT_EQ(heights.size(), 2u);
  EXPECT_NEAR(heights[0], 36.850, 0.001);
  EXPECT_NEAR(heights[1], 36.850, 0.001);
}

TEST(PicturePdf, EmptyPaperIsOnePage) { EXPECT_EQ(Count(RenderPdf(Paper()), "/Type /Page "), 1); }

TEST(PicturePdf, NothingFollowsTheLastCut) {
  Paper paper;
  paper.Cut();
  EXPECT_EQ(Count(RenderPdf(paper), "/Type /Page "), 1);
}

TEST(PicturePdf, APieceLongerThanReadersTakeGoesOnToTheNextPage) {
  Paper paper;
  for (int i = 0; i < 1427; ++i) paper.Blank();
  // With the margins 40004 dots, and 40000 are 5 m.
  const std::vector<double> heights = PageHeights(RenderPdf(paper));
  ASSERT_EQ(heights.size(), 2u);
  EXPECT_NEAR(heights[0], (48 + 1426 * 28) * 72 / 203.2, 0.001);
  EXPECT_NEAR(heights[1], (48 + 28) * 72 / 203.2, 0.001);
}

TEST(PicturePdf, TheSamePaperMakesTheSameFile) {
  Paper paper;
  paper.Text("A");
  paper.Barcode({"02", "8001234567897", 1, false, Alignment::kCentre}, "EAN13");
  paper.Cut();
  const std::string pdf = RenderPdf(paper);
  EXPECT_EQ(RenderPdf(paper), pdf);
  EXPECT_EQ(Count(pdf, "CreationDate"), 0);
}

// --- A whole document

class PictureOfTheRegister : public RegisterTest {};

TEST_F(PictureOfTheRegister, AReceiptHasARowForEachLine) {
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000, "PANE"), RTF_SUCCESS);
  ASSERT_EQ(PayCash(200000), RTF_SUCCESS);
  const Dots dots = Draw(device.paper());
  const std::vector<std::string>& lines = device.paper_lines();
  ASSERT_EQ(dots.height, 48 + 28 * static_cast<int>(lines.size()));
  for (size_t i = 0; i < lines.size(); ++i) {
    EXPECT_EQ(dots.RowIsWhite(static_cast<int>(i)), lines[i].empty()) << lines[i];
  }
}

}  // namespace
}  // namespace lorimat
