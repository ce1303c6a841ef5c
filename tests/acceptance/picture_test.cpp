// The paper as PNG and PDF.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdio>

#include "program_run.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kClock = "2024-03-15 10:30";

const std::string& note() {
  static const std::string file = source_file("examples/note.cmd");
  return file;
}

uint32_t big_endian(const std::string& bytes, size_t at) {
  uint32_t value = 0;
  for (size_t i = at; i < at + 4; ++i) value = value << 8 | static_cast<uint8_t>(bytes.at(i));
  return value;
}

void expect_png(const std::string& png, uint32_t height) {
  EXPECT_EQ(png.substr(0, 8), "\x89PNG\r\n\x1a\n");
  EXPECT_EQ(big_endian(png, 16), 640u);
  EXPECT_EQ(big_endian(png, 20), height);
  EXPECT_EQ(png.substr(png.size() - 8, 4), "IEND");
}

// The note has 13 rows of 28 dots, one of double height (56), a barcode (96) and the margins (48).
constexpr uint32_t kNoteHeight = 13 * 28 + 56 + 96 + 48;

// One black dot.
const std::string& black_dot() {
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
  const ProgramRun run = run_console({"run", note(), "--clock", kClock, "--png",
                                      folder.path("note.png"), "--pdf", folder.path("note.pdf")});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_EQ(run.output, expected_paper("note.txt"));
  expect_png(folder.read("note.png"), kNoteHeight);
  const std::string pdf = folder.read("note.pdf");
  EXPECT_THAT(pdf, StartsWith("%PDF-"));
  EXPECT_THAT(pdf, HasSubstr("/Type /Page "));
  EXPECT_THAT(pdf, EndsWith("%%EOF\n"));
}

TEST(Picture, ABatchMakesTheSame) {
  TestFolder folder;
  for (const char* name : {"lines.png", "batch.png"}) {
    std::vector<std::string> arguments = {"run",  note(),  "--clock",
                                          kClock, "--png", folder.path(name)};
    if (std::string(name) == "batch.png") arguments.push_back("--batch");
    EXPECT_EQ(run_console(arguments).exit_code, 0);
  }
  EXPECT_EQ(folder.read("lines.png"), folder.read("batch.png"));
}

TEST(Picture, ReplacesAnOlderAndLongerFile) {
  TestFolder folder;
  folder.write("note.png", std::string(1000000, 'x'));
  EXPECT_EQ(
      run_console({"run", note(), "--clock", kClock, "--png", folder.path("note.png")}).exit_code,
      0);
  expect_png(folder.read("note.png"), kNoteHeight);
}

TEST(Picture, MayBeStandardOutputWhenTheTextGoesElsewhere) {
  TestFolder folder;
  const ProgramRun run = run_console(
      {"run", note(), "--clock", kClock, "--paper", folder.path("note.txt"), "--png", "-"});
  EXPECT_EQ(run.exit_code, 0);
  expect_png(run.output, kNoteHeight);
  EXPECT_EQ(folder.read("note.txt"), expected_paper("note.txt"));
}

TEST(Picture, TwoOfThemDoNotGoToOnePlace) {
  TestFolder folder;
  const std::string file = folder.path("paper");
  for (const std::vector<std::string>& places :
       std::vector<std::vector<std::string>>{{"--png", "-"},
                                             {"--pdf", "-"},
                                             {"--paper", file, "--png", file},
                                             {"--paper", file, "--pdf", folder.path("./paper")},
                                             {"--png", file, "--pdf", file}}) {
    std::vector<std::string> arguments = {"run", note()};
    arguments.insert(arguments.end(), places.begin(), places.end());
    const ProgramRun run = run_console(arguments);
    EXPECT_EQ(run.exit_code, 2) << testing::PrintToString(places);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, HasSubstr(places.back()));
    EXPECT_THAT(run.errors, HasSubstr("goes there already"));
  }
}

TEST(Picture, DoesNotReplaceTheFileOfLines) {
  TestFolder folder;
  const std::string lines = folder.write("lines.cmd", "NOFIS INIZIO\nNOFIS FINE\n");
  for (const char* option : {"--png", "--pdf"}) {
    const ProgramRun run = run_console({"run", lines, option, lines});
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.errors, HasSubstr(lines));
    EXPECT_EQ(folder.read("lines.cmd"), "NOFIS INIZIO\nNOFIS FINE\n");
  }
}

TEST(Picture, AFolderThatIsNotThereIsNamedBeforeAnythingRuns) {
  TestFolder folder;
  for (const char* option : {"--png", "--pdf"}) {
    const std::string file = folder.path("none/picture");
    const ProgramRun run = run_console({"run", note(), option, file});
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, HasSubstr(file));
    EXPECT_THAT(run.errors, HasSubstr("No such file or directory"));
  }
}

TEST(Picture, AReadOnlyFolderIsNamed) {
  const std::string file = "/proc/picture.png";
  const ProgramRun run = run_console({"run", note(), "--png", file});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(run.errors, HasSubstr(file));
}

TEST(Picture, AFullDiskIsNamedAndTheTextIsKept) {
  for (const char* option : {"--png", "--pdf"}) {
    const ProgramRun run = run_console({"run", note(), "--clock", kClock, option, "/dev/full"});
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_EQ(run.output, expected_paper("note.txt"));
    EXPECT_THAT(run.errors, HasSubstr("/dev/full"));
    EXPECT_THAT(run.errors, HasSubstr("No space left on device"));
  }
}

TEST(Picture, AnEmptyNameIsRefused) {
  for (const char* option : {"--png", "--pdf"}) {
    const ProgramRun run = run_console({"run", note(), option, ""});
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.errors, HasSubstr(option));
  }
}

TEST(Picture, ALogoIsFoundWhereTheLinesFoundIt) {
  TestFolder folder;
  folder.write("dot.png", black_dot());
  const std::string lines = folder.write("logo.cmd",
                                         "LDGRAF LOGO=12, FILE='dot.png'\nNOFIS INIZIO\n"
                                         "NOFIS OPZ=GRAFICO, LOGO=12\nNOFIS FINE\n");
  // Six rows of the head, one for the blank line that follows a logo, four of the end with its
  // cut, and the logo's one dot.
  constexpr uint32_t kHeight = (6 + 1 + 4) * 28 + 1 + 48;
  // By lines the file is looked for in the program's folder; a batch runs in its own.
  const std::string png = folder.path("logo.png");
  const ProgramRun by_lines = run_console({"run", lines, "--png", png}, {.folder = folder.path()});
  EXPECT_EQ(by_lines.exit_code, 0) << by_lines.errors;
  EXPECT_THAT(by_lines.output, HasSubstr("[LOGO 12]"));
  expect_png(folder.read("logo.png"), kHeight);
  const ProgramRun batch = run_console({"run", lines, "--png", png, "--batch"}, {.folder = "/"});
  EXPECT_EQ(batch.exit_code, 0) << batch.errors;
  expect_png(folder.read("logo.png"), kHeight);
}

TEST(Picture, OfNoPaperIsABlankPieceOfIt) {
  TestFolder folder;
  const std::string lines = folder.write("none.cmd", "; nothing\n");
  EXPECT_EQ(run_console(
                {"run", lines, "--png", folder.path("none.png"), "--pdf", folder.path("none.pdf")})
                .exit_code,
            0);
  expect_png(folder.read("none.png"), 48);
  EXPECT_THAT(folder.read("none.pdf"), HasSubstr("/Type /Page "));
}

#ifdef LORIMAT_ZBARIMG
TEST(Picture, ItsBarcodeCanBeRead) {
  TestFolder folder;
  const std::string png = folder.path("note.png");
  ASSERT_EQ(run_console({"run", note(), "--png", png}).exit_code, 0);
  const ProgramRun reader = run_program(LORIMAT_ZBARIMG, {"-q", "--raw", png});
  EXPECT_EQ(reader.output, "8001234567897\n");
}
#endif
