// Barcodes and logos in the picture.
#include <malloc.h>

#include <cstdio>
#include <set>

#include "picture_fixture.h"
#include "register/paper/barcode.h"
#include "register/paper/picture_barcode.h"
#include "register/paper/picture_logo.h"

namespace lorimat {
namespace {

BarcodeRow Code(std::string_view type, std::string data, int scale = 1) {
  return {type, std::move(data), scale, false, Alignment::kCentre};
}

Paper PaperWith(const BarcodeRow& barcode) {
  Paper paper;
  const BarcodeType* const type = FindBarcode(barcode.type);
  paper.Barcode(barcode, type != nullptr ? type->name : "?");
  return paper;
}

std::string Modules(const std::vector<bool>& row) {
  std::string text;
  for (const bool dark : row) text += dark ? '1' : '0';
  return text;
}

// The only row of a one-dimensional code; empty when there is none.
std::string Modules(const BarcodeRow& barcode) {
  const std::optional<Bars> bars = EncodeBars(barcode);
  return bars && bars->rows.size() == 1 ? Modules(bars->rows[0]) : std::string();
}

// The bars of an EAN-13 by the tables of ISO/IEC 15420: for each digit the set of odd parity;
// the even set is its complement read backwards, the right half's its complement.
std::string EanModules(const std::string& digits) {
  static const char* const kOdd[] = {"0001101", "0011001", "0010011", "0111101", "0100011",
                                     "0110001", "0101111", "0111011", "0110111", "0001011"};
  static const char* const kParity[] = {"OOOOOO", "OOEOEE", "OOEEOE", "OOEEEO", "OEOOEE",
                                        "OEEOOE", "OEEEOO", "OEOEOE", "OEOEEO", "OEEOEO"};
  const auto complement = [](std::string modules) {
    for (char& module : modules) module = module == '0' ? '1' : '0';
    return modules;
  };
  std::string all = "101";
  for (size_t i = 1; i <= 6; ++i) {
    const std::string odd = kOdd[digits[i] - '0'];
    const std::string right = complement(odd);
    all += kParity[digits[0] - '0'][i - 1] == 'O' ? odd : std::string(right.rbegin(), right.rend());
  }
  all += "01010";
  for (size_t i = 7; i <= 12; ++i) all += complement(kOdd[digits[i] - '0']);
  return all + "101";
}

TEST(PictureBarcode, AnEanIsDrawnBarByBar) {
  const Dots dots = Draw(PaperWith(Code("02", "8001234567897")));
  // 80 dots of bars with 8 above and below; 95 modules of 3 dots in the middle of 640.
  ASSERT_EQ(dots.height, 48 + 96);
  const std::string modules = EanModules("8001234567897");
  ASSERT_EQ(modules.size(), 95u);
  for (int y : {32, 111}) {
    for (int x = 0; x < 640; ++x) {
      const bool inside = x >= 177 && x < 177 + 285;
      const bool dark = inside && modules[static_cast<size_t>((x - 177) / 3)] == '1';
      ASSERT_EQ(dots.At(x, y), dark ? 0 : 255) << x;
    }
  }
  EXPECT_TRUE(dots.IsWhite(0, 0, 640, 32));
  EXPECT_TRUE(dots.IsWhite(0, 112, 640, 144));
}

TEST(PictureBarcode, AMissingCheckDigitIsAdded) {
  EXPECT_EQ(Modules(Code("02", "800123456789")), EanModules("8001234567897"));
  EXPECT_EQ(Modules(Code("02", "8001234567897")), EanModules("8001234567897"));
  // UPC-A is the EAN-13 with a zero in front.
  EXPECT_EQ(Modules(Code("00", "03600029145")), EanModules("0036000291452"));
  EXPECT_EQ(Modules(Code("00", "036000291452")), EanModules("0036000291452"));
  EXPECT_EQ(Modules(Code("03", "9638507")), Modules(Code("03", "96385074")));
  EXPECT_EQ(Modules(Code("03", "9638507")).size(), 67u);
}

// A picture may have thousands of them. What the encoder takes for one is far beyond 10,000 bytes.
TEST(PictureBarcode, LeavesNoMemoryBehind) {
  ASSERT_TRUE(EncodeBars(Code("02", "800123456789")).has_value());
  const size_t before = mallinfo2().uordblks;
  for (int count = 0; count < 100; ++count) {
    ASSERT_TRUE(EncodeBars(Code("02", "800123456789")).has_value());
  }
  EXPECT_LT(mallinfo2().uordblks, before + 1'000'000);
}

TEST(PictureBarcode, ALongUpcIsShortenedByItsZeros) {
  const struct {
    const char* upc;
    const char* short_form;  // number system and six digits
  } rows[] = {{"04210000526", "0425261"}, {"01210000789", "0127891"}, {"01200000789", "0127890"},
              {"01230000045", "0123453"}, {"01234000005", "0123454"}, {"01234500006", "0123456"},
              {"11234500006", "1123456"}, {"042100005264", "0425261"}};
  for (const auto& row : rows) {
    const std::string modules = Modules(Code("01", row.upc));
    EXPECT_EQ(modules.size(), 51u) << row.upc;
    EXPECT_EQ(modules, Modules(Code("01", row.short_form))) << row.upc;
  }
  EXPECT_EQ(Modules(Code("01", "123456")), Modules(Code("01", "0123456")));
  EXPECT_EQ(Modules(Code("01", "01234565")), Modules(Code("01", "0123456")));
}

TEST(PictureBarcode, WhatIsNoUpcESHowsAsItsStandIn) {
  // No zeros to leave out, another number system, lengths between, a wrong check digit.
  for (const char* data : {"01234567890", "01234500004", "24210000526", "2123456", "123456789",
                           "0123456789", "01234564"}) {
    EXPECT_FALSE(EncodeBars(Code("01", data)).has_value()) << data;
  }
  Paper text;
  text.Centred("[UPC-E 01234567890]");
  EXPECT_EQ(RenderPng(PaperWith(Code("01", "01234567890"))), RenderPng(text));
}

TEST(PictureBarcode, EveryTypeHasBars) {
  const struct {
    const char* type;
    const char* data;
  } rows[] = {{"00", "03600029145"},  {"01", "0123456"},  {"02", "800123456789"}, {"03", "9638507"},
              {"04", "ABC-12 $/+%."}, {"05", "12345678"}, {"06", "A12-$:/.+5B"},  {"07", "Code 93"},
              {"08", "Code 128"},     {"09", "PDF417"},   {"10", "QR"},           {"11", "DM"}};
  std::set<std::string_view> types;
  for (const auto& row : rows) {
    const BarcodeType* const type = FindBarcode(row.type);
    ASSERT_NE(type, nullptr) << row.type;
    types.insert(type->id);
    const std::optional<Bars> bars = EncodeBars(Code(row.type, row.data));
    ASSERT_TRUE(bars.has_value()) << row.type;
    EXPECT_EQ(bars->two_dimensional, type->two_dimensional) << row.type;
    EXPECT_EQ(bars->rows.size() > 1, type->two_dimensional) << row.type;
    EXPECT_LE(bars->width_in_dots(), kPrintWidth) << row.type;
  }
  // The register's table has no other.
  for (int number = 0; number < 100; ++number) {
    const std::string id{static_cast<char>('0' + number / 10),
                         static_cast<char>('0' + number % 10)};
    EXPECT_EQ(FindBarcode(id) != nullptr, types.count(id) == 1) << id;
  }
}

TEST(PictureBarcode, TheLongestContentOfAMatrixFits) {
  std::string data;
  for (int i = 0; i < 249; ++i) data += static_cast<char>(i + 1);
  for (const char* type : {"09", "10", "11"}) {
    EXPECT_TRUE(EncodeBars(Code(type, data)).has_value()) << type;
  }
}

TEST(PictureBarcode, AnUnknownTypeAndEmptyContentHaveNone) {
  EXPECT_FALSE(EncodeBars(Code("12", "1")).has_value());
  EXPECT_FALSE(EncodeBars(Code("", "1")).has_value());
  for (const char* type : {"00", "01", "02", "03", "04", "05", "07", "08", "09", "10", "11"}) {
    EXPECT_FALSE(EncodeBars(Code(type, "")).has_value()) << type;
  }
}

TEST(PictureBarcode, ACodabarWithoutItsEndLettersGetsThem) {
  EXPECT_EQ(Modules(Code("06", "12345")), Modules(Code("06", "A12345A")));
  EXPECT_NE(Modules(Code("06", "12345")), "");
  // One end alone, and a letter inside, are no Codabar.
  EXPECT_EQ(Modules(Code("06", "A12345")), "");
  EXPECT_EQ(Modules(Code("06", "12A45")), "");
}

TEST(PictureBarcode, ACheckDigitMakesACode39OneCharacterLonger) {
  BarcodeRow barcode = Code("04", "ABC-123");
  const std::string plain = Modules(barcode);
  barcode.check_digit = true;
  // A 10, B 11, C 12, "-" 36 and 1+2+3 make 75; 75 - 43 = 32 is the W.
  EXPECT_EQ(Modules(barcode), Modules(Code("04", "ABC-123W")));
  EXPECT_GT(Modules(barcode).size(), plain.size());
}

TEST(PictureBarcode, ScaleWidensTheModulesAsFarAsThePaperGoes) {
  EXPECT_EQ(EncodeBars(Code("08", "AB"))->module, 2);
  EXPECT_EQ(EncodeBars(Code("08", "AB", 2))->module, 4);
  EXPECT_EQ(EncodeBars(Code("10", "AB", 2))->module, 8);
  // 95 modules on 588 dots: six each.
  EXPECT_EQ(EncodeBars(Code("02", "800123456789", 9))->module, 6);
  // 40 letters are 35 + 11 x 40 = 475 modules.
  EXPECT_EQ(EncodeBars(Code("08", std::string(40, 'x')))->module, 1);
}

TEST(PictureBarcode, OneThatIsTooWideShowsAsItsStandIn) {
  // 60 letters are 35 + 11 x 60 = 695 modules.
  const std::string letters(60, 'x');
  Paper text;
  text.Centred("[CODE128 " + letters + "]");
  EXPECT_EQ(text.lines().size(), 2u);
  EXPECT_EQ(RenderPng(PaperWith(Code("08", letters))), RenderPng(text));
  // 60 digits stand in pairs.
  EXPECT_TRUE(EncodeBars(Code("08", std::string(60, '1'))).has_value());
}

TEST(PictureBarcode, StandsWhereItIsAligned) {
  BarcodeRow barcode = Code("10", "left or right");
  const int width = EncodeBars(barcode)->width_in_dots();
  barcode.alignment = Alignment::kLeft;
  Dots dots = Draw(PaperWith(barcode));
  EXPECT_TRUE(dots.IsWhite(0, 0, 26, dots.height));
  EXPECT_EQ(dots.At(26, 24 + 16), 0);  // the corner, below four light modules of four dots
  EXPECT_TRUE(dots.IsWhite(26 + width, 0, 640, dots.height));
  barcode.alignment = Alignment::kRight;
  dots = Draw(PaperWith(barcode));
  EXPECT_TRUE(dots.IsWhite(0, 0, 614 - width, dots.height));
  EXPECT_EQ(dots.At(613, 24 + 16), 0);
  EXPECT_TRUE(dots.IsWhite(614, 0, 640, dots.height));
}

TEST(PictureBarcode, MatricesHaveTheMarksThatReadersLookFor) {
  // QR code: a square of seven in three corners.
  const Bars qr = *EncodeBars(Code("10", "https://example.org/1"));
  ASSERT_EQ(static_cast<int>(qr.rows.size()), qr.width);
  const size_t last = qr.rows.size() - 1;
  const char* const kFinder[] = {"1111111", "1000001", "1011101", "1011101",
                                 "1011101", "1000001", "1111111"};
  for (size_t i = 0; i < 7; ++i) {
    EXPECT_EQ(Modules(qr.rows[i]).substr(0, 7), kFinder[i]);
    EXPECT_EQ(Modules(qr.rows[i]).substr(last - 6), kFinder[i]);
    EXPECT_EQ(Modules(qr.rows[last - 6 + i]).substr(0, 7), kFinder[i]);
  }
  // Data Matrix: dark at the left and below, alternating above and at the right.
  const Bars dm = *EncodeBars(Code("11", "0123456789"));
  const size_t height = dm.rows.size();
  const size_t width = static_cast<size_t>(dm.width);
  EXPECT_EQ(Modules(dm.rows[height - 1]), std::string(width, '1'));
  for (size_t x = 0; x < width; ++x) EXPECT_EQ(dm.rows[0][x], x % 2 == 0);
  for (size_t y = 0; y < height; ++y) {
    EXPECT_TRUE(dm.rows[y][0]);
    EXPECT_EQ(dm.rows[y][width - 1], y % 2 == 1);
  }
  // PDF417: every row begins and ends with the same bars, and is three modules high.
  const Bars pdf = *EncodeBars(Code("09", "PDF417"));
  for (const std::vector<bool>& row : pdf.rows) {
    EXPECT_EQ(Modules(row).substr(0, 17), "11111111010101000");
    EXPECT_EQ(Modules(row).substr(Modules(row).size() - 18), "111111101000101001");
  }
  EXPECT_EQ(pdf.height_in_dots(), static_cast<int>(pdf.rows.size()) * 3 * pdf.module);
}

#ifdef LORIMAT_ZBARIMG
// What a reader finds in the picture, each code on a line.
std::string ReadBack(const std::string& file) {
  const std::string command = std::string(LORIMAT_ZBARIMG) + " -q --raw '" + file + "' 2>/dev/null";
  FILE* const pipe = popen(command.c_str(), "r");
  std::string text;
  char buffer[256];
  while (pipe != nullptr && fgets(buffer, sizeof(buffer), pipe) != nullptr) text += buffer;
  if (pipe != nullptr) pclose(pipe);
  return text;
}

TEST(PictureBarcode, AReaderReadsItFromThePicture) {
  const struct {
    const char* type;
    const char* data;
    bool check_digit;
    const char* read;
  } rows[] = {
      {"00", "03600029145", false, "0036000291452\n"},  // as the EAN-13 that it also is
      {"01", "0123456", false, "0012345000065\n"},      // the same
      {"01", "04210000526", false, "0042100005264\n"},
      {"02", "800123456789", false, "8001234567897\n"},
      {"03", "9638507", false, "96385074\n"},
      {"04", "ABC-123", false, "ABC-123\n"},
      {"04", "ABC-123", true, "ABC-123W\n"},
      {"05", "12345678", false, "12345678\n"},
      {"06", "A12345B", false, "A12345B\n"},
      {"07", "CODE 93", false, "CODE 93\n"},
      {"08", "Code 128, 0123456789", false, "Code 128, 0123456789\n"},
      {"10", "https://example.org/?q=1", false, "https://example.org/?q=1\n"},
  };
  const PictureFolder folder;
  for (const auto& row : rows) {
    for (const int scale : {1, 2}) {
      BarcodeRow barcode = Code(row.type, row.data, scale);
      barcode.check_digit = row.check_digit;
      const std::string file = folder.Write("code.png", RenderPng(PaperWith(barcode)));
      EXPECT_EQ(ReadBack(file), row.read) << row.type << " at scale " << scale;
    }
  }
}
#endif

// --- Logos

class PictureLogo : public testing::Test {
 protected:
  // A PNG of one colour, as red, green, blue and opacity.
  std::string Image(int width, int height, std::vector<uint8_t> colour) {
    std::vector<uint8_t> dots;
    for (int i = 0; i < width * height; ++i) dots.insert(dots.end(), colour.begin(), colour.end());
    png_image image = {};
    image.version = PNG_IMAGE_VERSION;
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.format = PNG_FORMAT_RGBA;
    const std::string file = folder.Path("logo.png");
    EXPECT_NE(png_image_write_to_file(&image, file.c_str(), 0, dots.data(), 0, nullptr), 0);
    return file;
  }
  static std::string Content(const std::string& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
  }
  static Paper PaperWith(const std::string& file) {
    Paper paper;
    paper.Logo(7, file);
    return paper;
  }
  static void ExpectStandIn(const std::string& file) {
    Paper text;
    text.Centred("[LOGO 7]");
    EXPECT_EQ(RenderPng(PaperWith(file)), RenderPng(text)) << file;
  }

  PictureFolder folder;
};

TEST_F(PictureLogo, StandsInTheMiddleDotByDot) {
  const Dots dots = Draw(PaperWith(Image(10, 20, {0, 0, 0, 255})));
  ASSERT_EQ(dots.height, 48 + 20);
  for (int y = 24; y < 44; ++y) {
    for (int x = 315; x < 325; ++x) ASSERT_EQ(dots.At(x, y), 0);
  }
  EXPECT_TRUE(dots.IsWhite(0, 0, 315, 68));
  EXPECT_TRUE(dots.IsWhite(325, 0, 640, 68));
  EXPECT_TRUE(dots.IsWhite(0, 0, 640, 24));
  EXPECT_TRUE(dots.IsWhite(0, 44, 640, 68));
}

TEST_F(PictureLogo, ColoursBecomeGreyAndTransparentDotsStayWhite) {
  // 0.299 of 255 is 76.
  EXPECT_EQ(Draw(PaperWith(Image(10, 10, {255, 0, 0, 255}))).At(320, 30), 76);
  const Dots clear = Draw(PaperWith(Image(10, 10, {0, 0, 0, 0})));
  EXPECT_TRUE(clear.IsWhite(0, 0, 640, clear.height));
}

TEST_F(PictureLogo, ColoursAreGreyInAPdfToo) {
  const std::string pdf = RenderPdf(PaperWith(Image(10, 10, {255, 0, 0, 255})));
  EXPECT_NE(pdf.find("/ColorSpace /DeviceGray"), pdf.npos);
  EXPECT_EQ(pdf.find("/ColorSpace /DeviceRGB"), pdf.npos);
}

TEST_F(PictureLogo, OneWiderThanThePrintIsMadeSmaller) {
  const Dots dots = Draw(PaperWith(Image(1176, 100, {0, 0, 0, 255})));
  EXPECT_EQ(dots.height, 48 + 50);
  EXPECT_EQ(dots.At(27, 50), 0);
  EXPECT_EQ(dots.At(612, 50), 0);
  EXPECT_TRUE(dots.IsWhite(0, 0, 26, dots.height));
  EXPECT_TRUE(dots.IsWhite(614, 0, 640, dots.height));
}

TEST_F(PictureLogo, AFlatLogoKeepsARowOfDots) {
  EXPECT_EQ(Draw(PaperWith(Image(4096, 1, {0, 0, 0, 255}))).height, 48 + 1);
}

TEST_F(PictureLogo, AMissingFileShowsAsItsStandIn) {
  ExpectStandIn(folder.Path("none.png"));
  ExpectStandIn(folder.Path("logo.png/none.png"));
  ExpectStandIn(folder.Path(""));
  ExpectStandIn("/dev/null");
}

TEST_F(PictureLogo, AFileThatIsNoPngShowsAsItsStandIn) {
  ExpectStandIn(folder.Write("text.png", "no picture at all, and longer than a header"));
  ExpectStandIn(folder.Write("empty.png", ""));
  const std::string whole = Content(Image(40, 40, {10, 20, 30, 255}));
  for (size_t length = 0; length < whole.size() - 12;
       ++length) {  // without the end alone it may do
    EXPECT_EQ(ReadLogo(folder.Write("part.png", whole.substr(0, length))), nullptr) << length;
  }
}

TEST_F(PictureLogo, DamagedFilesDoNoHarm) {
  const std::string whole = Content(Image(40, 40, {10, 20, 30, 255}));
  for (size_t at = 0; at < whole.size(); ++at) {
    std::string damaged = whole;
    damaged[at] = static_cast<char>(damaged[at] ^ 0x55);
    const SurfacePtr logo = ReadLogo(folder.Write("damaged.png", damaged));
    if (logo == nullptr) continue;
    EXPECT_LE(cairo_image_surface_get_width(logo.get()), kPrintWidth);
  }
}

TEST_F(PictureLogo, OneOfTooManyDotsShowsAsItsStandIn) {
  ExpectStandIn(Image(4097, 1, {0, 0, 0, 255}));
  ExpectStandIn(Image(1, 4097, {0, 0, 0, 255}));
  EXPECT_NE(ReadLogo(Image(1, 4096, {0, 0, 0, 255})), nullptr);
}

}  // namespace
}  // namespace lorimat
