// "paper": the roll of a register's file as text and as pictures.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "shop.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

const char* const kCut = "------------------------------------------\n";

std::string Example(const std::string& name) {
  return ReadFile(SourceFile("examples/" + name + ".cmd"));
}

// How often a text stands in another.
int CountOf(const std::string& text, const std::string& what) {
  int count = 0;
  for (size_t at = text.find(what); at != text.npos; at = text.find(what, at + 1)) ++count;
  return count;
}

// Width and height of a PNG, from its first chunk; 0 for what is none.
std::pair<unsigned, unsigned> PngSize(const std::string& png) {
  if (png.substr(0, 8) != "\x89PNG\r\n\x1A\n" || png.size() < 24) return {};
  const auto number = [&](size_t at) {
    unsigned value = 0;
    for (size_t i = at; i < at + 4; ++i) value = value << 8 | static_cast<unsigned char>(png[i]);
    return value;
  };
  return {number(16), number(20)};
}

}  // namespace

TEST(PaperCommand, GivesTheRollAsItWasPrinted) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(Example("receipt")).exit_code, 0);
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=1.00\nCHIU\n").exit_code, 0);
  const ProgramRun run = shop.Run({"paper"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_THAT(run.output, StartsWith(ExpectedPaper("receipt.txt")));
  EXPECT_EQ(CountOf(run.output, kCut), 2);
  EXPECT_THAT(run.output, EndsWith("          DOCUMENTO N. 0001-0002\n"
                                   "            RT 99LRM0000001VR\n" +
                                   std::string(kCut)));
}

TEST(PaperCommand, LastCountsDocumentsFromTheEnd) {
  const Shop shop;
  for (int i = 1; i <= 3; ++i) {
    ASSERT_EQ(shop.Sell("VEND REP=1, PRE=" + std::to_string(i) + ".00\nCHIU\n").exit_code, 0);
  }
  const ProgramRun one = shop.Run({"paper", "--last", "1"});
  EXPECT_EQ(one.exit_code, 0);
  EXPECT_EQ(CountOf(one.output, kCut), 1);
  EXPECT_THAT(one.output, StartsWith("             NEGOZIO DI PROVA\n"));
  EXPECT_THAT(one.output, HasSubstr("N. 0001-0003\n"));
  const ProgramRun two = shop.Run({"paper", "--last", "2"});
  EXPECT_THAT(two.output, AllOf(HasSubstr("N. 0001-0002\n"), HasSubstr("N. 0001-0003\n"),
                                Not(HasSubstr("N. 0001-0001\n"))));
  EXPECT_EQ(shop.Run({"paper", "--last", "100"}).output, shop.Run({"paper"}).output);
}

TEST(PaperCommand, ShowsAnOpenReceiptToo) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=1.00, DES='MELE'\n").exit_code, 0);
  const ProgramRun run = shop.Run({"paper"});
  EXPECT_THAT(run.output, EndsWith("MELE                       22%        1,00\n"));
}

TEST(PaperCommand, WritesFiles) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(Example("receipt")).exit_code, 0);
  const TestFolder& folder = shop.folder();
  const ProgramRun run = shop.Run({"paper", "--paper", folder.Path("roll.txt"), "--png",
                                   folder.Path("roll.png"), "--pdf", folder.Path("roll.pdf")});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_EQ(folder.Read("roll.txt"), ExpectedPaper("receipt.txt"));
  // 80 mm wide; a row of 28 dots for each line and 24 dots above and below.
  const std::string text = ExpectedPaper("receipt.txt");
  EXPECT_EQ(PngSize(folder.Read("roll.png")),
            std::make_pair(640u, 48u + 28u * static_cast<unsigned>(CountOf(text, "\n"))));
  EXPECT_THAT(folder.Read("roll.pdf"), StartsWith("%PDF-"));
  // The same as a run draws.
  const ProgramRun drawn =
      RunConsole({"run", SourceFile("examples/receipt.cmd"), "--clock", Shop::kClock, "--paper",
                  folder.Path("run.txt"), "--png", folder.Path("run.png")});
  ASSERT_EQ(drawn.exit_code, 0) << drawn.errors;
  EXPECT_TRUE(folder.Read("roll.png") == folder.Read("run.png"));
}

TEST(PaperCommand, ItsTextIsNamedAsThatOfRunAndBothHaveTheOlderName) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(Example("receipt")).exit_code, 0);
  const TestFolder& folder = shop.folder();
  const std::string lines = SourceFile("examples/receipt.cmd");
  const struct {
    const char* option;
    const char* file;
  } names[] = {{"--paper", "new.txt"}, {"--output", "old.txt"}};
  for (const auto& [option, file] : names) {
    const std::string roll = folder.Path(std::string("roll-") + file);
    EXPECT_EQ(shop.Run({"paper", option, roll}).exit_code, 0) << option;
    EXPECT_EQ(ReadFile(roll), ExpectedPaper("receipt.txt")) << option;
    const std::string run = folder.Path(std::string("run-") + file);
    EXPECT_EQ(RunConsole({"run", lines, "--clock", Shop::kClock, option, run}).exit_code, 0);
    EXPECT_EQ(ReadFile(run), ExpectedPaper("receipt.txt")) << option;
  }
  for (const char* command : {"run", "paper"}) {
    const std::string help = RunConsole({command, "--help"}).output;
    EXPECT_THAT(help, AllOf(HasSubstr("--paper FILE"), Not(HasSubstr("--output"))));
  }
  const ProgramRun both = shop.Run({"paper", "--paper", "-", "--output", folder.Path("x.txt")});
  EXPECT_EQ(both.exit_code, 2);
  EXPECT_THAT(both.errors, HasSubstr("--paper: At Most 1 required but received 2"));
}

TEST(PaperCommand, APictureAloneLeavesStandardOutputAlone) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(Example("receipt")).exit_code, 0);
  const ProgramRun file = shop.Run({"paper", "--png", shop.folder().Path("roll.png")});
  EXPECT_EQ(file.exit_code, 0);
  EXPECT_THAT(file.output, IsEmpty());
  const ProgramRun output = shop.Run({"paper", "--png", "-"});
  EXPECT_EQ(output.exit_code, 0);
  EXPECT_TRUE(output.output == shop.folder().Read("roll.png"));
}

TEST(PaperCommand, ANumberOfDocumentsIsAtLeastOne) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("").exit_code, 0);
  for (const char* number : {"0", "-1", "x", "1.5", "99999999999999999999"}) {
    const ProgramRun run = shop.Run({"paper", "--last", number});
    EXPECT_EQ(run.exit_code, 2) << number;
    EXPECT_THAT(run.errors, HasSubstr("--last")) << number;
  }
}

TEST(PaperCommand, ANewRegisterHasNoPaper) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("").exit_code, 0);
  const ProgramRun run = shop.Run({"paper"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, IsEmpty());
}

TEST(PaperCommand, RefusesPlacesThatItCannotWriteTo) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=1.00\nCHIU\n").exit_code, 0);
  const std::string register_content = shop.folder().Read("shop.register");
  const ProgramRun self = shop.Run({"paper", "--paper", shop.file()});
  EXPECT_EQ(self.exit_code, 2);
  EXPECT_THAT(self.errors, HasSubstr("is the register's file; the paper would replace it"));
  EXPECT_TRUE(shop.folder().Read("shop.register") == register_content);

  const ProgramRun missing = shop.Run({"paper", "--pdf", shop.folder().Path("none/x.pdf")});
  EXPECT_EQ(missing.exit_code, 2);
  EXPECT_THAT(missing.errors, HasSubstr("none/x.pdf: cannot write the paper: No such file"));
  const ProgramRun full = shop.Run({"paper", "--paper", "/dev/full"});
  EXPECT_EQ(full.exit_code, 2);
  EXPECT_THAT(full.errors, HasSubstr("/dev/full: cannot write the paper: No space left"));
  const ProgramRun twice = shop.Run({"paper", "--paper", "-", "--png", "-"});
  EXPECT_EQ(twice.exit_code, 2);
  EXPECT_THAT(twice.output, IsEmpty());
}

// A text of a line can hold anything. A terminal is not to act on it, nor to show one text as
// another; a file and a pipe have it as it was printed.
TEST(PaperCommand, OnATerminalNothingActsOnIt) {
  const std::string text =
      "\xC2\x9B"
      "2J\u202E\u200B";
  const std::string shown = "\\xC2\\x9B2J\\xE2\\x80\\xAE\\xE2\\x80\\x8B";
  const Shop shop;
  const std::string lines = "VEND REP=1, PRE=1.00, DES='a" + text + "'\nCHIU\n";
  ASSERT_EQ(shop.Sell(lines).exit_code, 0);
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"paper", "--register", shop.file()},
                                             {"journal", "show", "1", "--register", shop.file()},
                                             {"run", "-"},
                                             {"shell"}}) {
    const ProgramRun terminal = RunConsole(arguments, {.input = lines, .output_to_terminal = true});
    EXPECT_THAT(terminal.output, HasSubstr("a" + shown)) << arguments.front();
    EXPECT_THAT(terminal.output, Not(HasSubstr("\u202E"))) << arguments.front();
    const ProgramRun pipe = RunConsole(arguments, {.input = lines});
    EXPECT_THAT(pipe.output, HasSubstr("a" + text)) << arguments.front();
  }
}
