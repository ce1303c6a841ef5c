// The paper as PNG and PDF.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <sstream>
#include <string>
#include <vector>

#include "program_run.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kClock = "2024-03-15 10:30";

const std::string& Note() {
  static const std::string file = SourceFile("examples/note.cmd");
  return file;
}

uint32_t BigEndian(const std::string& bytes, size_t at) {
  uint32_t value = 0;
  for (size_t i = at; i < at + 4; ++i) value = value << 8 | static_cast<uint8_t>(bytes.at(i));
  return value;
}

void ExpectPng(const std::string& png, uint32_t height) {
  EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
  EXPECT_EQ(BigEndian(png, 16), 640u);
  EXPECT_EQ(BigEndian(png, 20), height);
  EXPECT_EQ(png.substr(png.size() - 8, 4), "IEND");
}

std::vector<std::string> LinesOf(const std::string& text) {
  std::istringstream stream(text);
  std::vector<std::string> lines;
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

// The note has 12 rows of 28 dots, one of double height (56), a barcode (96) and the margins (48).
constexpr uint32_t kNoteHeight = 12 * 28 + 56 + 96 + 48;

// One black dot.
const std::string& BlackDot() {
  static const std::string png(
      "\x89PNG\r\n\x1a\n"
      "\x00\x00\x00\x0dIHDR\x00\x00\x00\x01\x00\x00\x00\x01\x08\x00\x00\x00\x00\x3a\x7e\x9b\x55"
      "\x00\x00\x00\x0aIDAT\x78\x9c\x63\x60\x00\x00\x00\x02\x00\x01\x48\xaf\xa4\x71"
      "\x00\x00\x00\x00IEND\xae\x42\x60\x82",
      8 + 25 + 22 + 12);
  return png;
}

}  // namespace

TEST(Picture, PngAndPdfComeBesideTheText) {
  TestFolder folder;
  const ProgramRun run = RunConsole({"run", Note(), "--clock", kClock, "--png",
                                     folder.Path("note.png"), "--pdf", folder.Path("note.pdf")});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_EQ(run.output, ExpectedPaper("note.txt"));
  ExpectPng(folder.Read("note.png"), kNoteHeight);
  const std::string pdf = folder.Read("note.pdf");
  EXPECT_THAT(pdf, StartsWith("%PDF-"));
  EXPECT_THAT(pdf, HasSubstr("/Type /Page "));
  EXPECT_THAT(pdf, EndsWith("%%EOF\n"));
}

TEST(Picture, ABatchMakesTheSame) {
  TestFolder folder;
  for (const char* name : {"lines.png", "batch.png"}) {
    std::vector<std::string> arguments = {"run",  Note(),  "--clock",
                                          kClock, "--png", folder.Path(name)};
    if (std::string(name) == "batch.png") arguments.push_back("--batch");
    EXPECT_EQ(RunConsole(arguments).exit_code, 0);
  }
  EXPECT_EQ(folder.Read("lines.png"), folder.Read("batch.png"));
}

TEST(Picture, ReplacesAnOlderAndLongerFile) {
  TestFolder folder;
  folder.Write("note.png", std::string(1000000, 'x'));
  EXPECT_EQ(
      RunConsole({"run", Note(), "--clock", kClock, "--png", folder.Path("note.png")}).exit_code,
      0);
  ExpectPng(folder.Read("note.png"), kNoteHeight);
}

TEST(Picture, MayBeStandardOutputWhenTheTextGoesElsewhere) {
  TestFolder folder;
  const ProgramRun run = RunConsole(
      {"run", Note(), "--clock", kClock, "--paper", folder.Path("note.txt"), "--png", "-"});
  EXPECT_EQ(run.exit_code, 0);
  ExpectPng(run.output, kNoteHeight);
  EXPECT_EQ(folder.Read("note.txt"), ExpectedPaper("note.txt"));
}

TEST(Picture, TwoOfThemDoNotGoToOnePlace) {
  TestFolder folder;
  const std::string file = folder.Path("paper");
  for (const std::vector<std::string>& places :
       std::vector<std::vector<std::string>>{{"--png", "-"},
                                             {"--pdf", "-"},
                                             {"--paper", file, "--png", file},
                                             {"--paper", file, "--pdf", folder.Path("./paper")},
                                             {"--png", file, "--pdf", file}}) {
    std::vector<std::string> arguments = {"run", Note()};
    arguments.insert(arguments.end(), places.begin(), places.end());
    const ProgramRun run = RunConsole(arguments);
    EXPECT_EQ(run.exit_code, 2) << testing::PrintToString(places);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, HasSubstr(places.back()));
    EXPECT_THAT(run.errors, HasSubstr("goes there already"));
  }
}

TEST(Picture, DoesNotReplaceTheFileOfLines) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "NOFIS INIZIO\nNOFIS FINE\n");
  for (const char* option : {"--png", "--pdf"}) {
    const ProgramRun run = RunConsole({"run", lines, option, lines});
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.errors, HasSubstr(lines));
    EXPECT_EQ(folder.Read("lines.cmd"), "NOFIS INIZIO\nNOFIS FINE\n");
  }
}

TEST(Picture, AFolderThatIsNotThereIsNamedBeforeAnythingRuns) {
  TestFolder folder;
  for (const char* option : {"--png", "--pdf"}) {
    const std::string file = folder.Path("none/picture");
    const ProgramRun run = RunConsole({"run", Note(), option, file});
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, HasSubstr(file));
    EXPECT_THAT(run.errors, HasSubstr("No such file or directory"));
  }
}

TEST(Picture, AReadOnlyFolderIsNamed) {
  const std::string file = "/proc/picture.png";
  const ProgramRun run = RunConsole({"run", Note(), "--png", file});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(run.errors, HasSubstr(file));
}

TEST(Picture, AFullDiskIsNamedAndTheTextIsKept) {
  for (const char* option : {"--png", "--pdf"}) {
    const ProgramRun run = RunConsole({"run", Note(), "--clock", kClock, option, "/dev/full"});
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_EQ(run.output, ExpectedPaper("note.txt"));
    EXPECT_THAT(run.errors, HasSubstr("/dev/full"));
    EXPECT_THAT(run.errors, HasSubstr("No space left on device"));
  }
}

TEST(Picture, AnEmptyNameIsRefused) {
  for (const char* option : {"--png", "--pdf"}) {
    const ProgramRun run = RunConsole({"run", Note(), option, ""});
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.errors, HasSubstr(option));
  }
}

TEST(Picture, ALogoIsFoundWhereTheLinesFoundIt) {
  TestFolder folder;
  folder.Write("dot.png", BlackDot());
  const std::string lines = folder.Write("logo.cmd",
                                         "LDGRAF LOGO=12, FILE='dot.png'\nNOFIS INIZIO\n"
                                         "NOFIS OPZ=GRAFICO, LOGO=12\nNOFIS FINE\n");
  // Six rows of the head, one for the blank line that follows a logo, three of the end with its
  // cut, and the logo's one dot.
  constexpr uint32_t kHeight = (6 + 1 + 3) * 28 + 1 + 48;
  // By lines the file is looked for in the program's folder; a batch runs in its own.
  const std::string png = folder.Path("logo.png");
  const ProgramRun by_lines = RunConsole({"run", lines, "--png", png}, {.folder = folder.path()});
  EXPECT_EQ(by_lines.exit_code, 0) << by_lines.errors;
  EXPECT_THAT(by_lines.output, HasSubstr("[LOGO 12]"));
  ExpectPng(folder.Read("logo.png"), kHeight);
  const ProgramRun batch = RunConsole({"run", lines, "--png", png, "--batch"}, {.folder = "/"});
  EXPECT_EQ(batch.exit_code, 0) << batch.errors;
  ExpectPng(folder.Read("logo.png"), kHeight);
}

TEST(Picture, OfNoPaperIsABlankPieceOfIt) {
  TestFolder folder;
  const std::string lines = folder.Write("none.cmd", "; nothing\n");
  EXPECT_EQ(
      RunConsole({"run", lines, "--png", folder.Path("none.png"), "--pdf", folder.Path("none.pdf")})
          .exit_code,
      0);
  ExpectPng(folder.Read("none.png"), 48);
  EXPECT_THAT(folder.Read("none.pdf"), HasSubstr("/Type /Page "));
}

TEST(Picture, ABarcodeBehindAReceiptTakesThePlaceOfItsStandIn) {
  TestFolder folder;
  const std::string png = folder.Path("exchange.png");
  ASSERT_EQ(RunConsole({"run", SourceFile("examples/exchange.cmd"), "--png", png}).exit_code, 0);
  // 25 rows of text and the cut, the barcode and the margins.
  ExpectPng(folder.Read("exchange.png"), 25 * 28 + 96 + 48);
}

TEST(Picture, EveryBarcodeOfTheLanguageIsDrawn) {
  const struct {
    const char* word;
    const char* message;
  } rows[] = {{"EAN", "8001234567897"}, {"EAN", "9638507"},        {"UPCA", "03600029145"},
              {"UPCE", "04210000526"},  {"CODE39", "LORIMAT-39"},  {"CODE39CK", "LORIMAT-39"},
              {"ITF", "1234567890"},    {"CODABAR", "A12345B"},    {"CODE93", "LORIMAT 93"},
              {"CODE128", "Lorimat 1"}, {"PDF417", "Lorimat 417"}, {"QRCODE", "Lorimat"},
              {"DATAMATRIX", "Lorimat"}};
  for (const auto& row : rows) {
    TestFolder folder;
    const std::string lines =
        folder.Write("code.cmd", std::string("NOFIS INIZIO\nNOFIS BARCODE=") + row.word +
                                     ", NOTESTO, MSG='" + row.message + "'\nNOFIS FINE\n");
    const ProgramRun run =
        RunConsole({"run", lines, "--clock", kClock, "--png", folder.Path("code.png")});
    EXPECT_EQ(run.exit_code, 0) << row.word << ": " << run.errors;
    const auto text_rows = std::count(run.output.begin(), run.output.end(), '\n');
    const uint32_t as_text = static_cast<uint32_t>(text_rows) * 28 + 48;
    // The bars and the light space around them are higher than the row of the stand-in.
    EXPECT_GT(BigEndian(folder.Read("code.png"), 20), as_text) << row.word;
  }
}

#ifdef LORIMAT_ZBARIMG
TEST(Picture, ItsBarcodeCanBeRead) {
  TestFolder folder;
  const std::string png = folder.Path("note.png");
  ASSERT_EQ(RunConsole({"run", Note(), "--png", png}).exit_code, 0);
  const ProgramRun reader = RunProgram(LORIMAT_ZBARIMG, {"-q", "--raw", png});
  EXPECT_EQ(reader.output, "8001234567897\n");
}

TEST(Picture, TheBarcodeOfAReceiptCanBeRead) {
  TestFolder folder;
  const std::string png = folder.Path("exchange.png");
  ASSERT_EQ(RunConsole({"run", SourceFile("examples/exchange.cmd"), "--png", png}).exit_code, 0);
  const ProgramRun reader = RunProgram(LORIMAT_ZBARIMG, {"-q", "--raw", png});
  EXPECT_EQ(reader.output, "CAMBIO 0001-0001\n");
}

// PDF417 and data matrix are none that this reader knows.
TEST(Picture, ASheetOfAllBarcodesCanBeRead) {
  TestFolder folder;
  const std::string png = folder.Path("barcodes.png");
  ASSERT_EQ(RunConsole({"run", SourceFile("examples/barcodes.cmd"), "--png", png}).exit_code, 0);
  const ProgramRun reader = RunProgram(LORIMAT_ZBARIMG, {"-q", png});
  // The check digit 7 of the EAN: 3 * (0 + 1 + 3 + 5 + 7 + 9) + 8 + 0 + 2 + 4 + 6 + 8 + 7 = 110.
  // The R of code 39: the values of LORIMAT-39 add up to 199, which is 27 modulo 43.
  // UPC codes are read as the EAN 13 that they also are.
  EXPECT_THAT(
      LinesOf(reader.output),
      testing::UnorderedElementsAre(
          "EAN-13:8001234567897", "EAN-8:96385074", "EAN-13:0036000291452", "EAN-13:0042100005264",
          "CODE-39:LORIMAT-39", "CODE-39:LORIMAT-39R", "I2/5:1234567890", "Codabar:A12345B",
          "CODE-93:LORIMAT 93", "CODE-128:Lorimat 128", "QR-Code:https://example.org/b/42"));
}
#endif
