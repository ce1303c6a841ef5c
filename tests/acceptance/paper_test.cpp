// The examples, run to the end: the papers are compared with papers written by hand.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program_run.h"

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char* kClock = "2024-03-15 10:30";

std::string Example(const std::string& name) { return SourceFile("examples/" + name); }

class GoodExample : public testing::TestWithParam<std::string> {};

}  // namespace

TEST_P(GoodExample, PrintsItsPaperByLines) {
  const ProgramRun run = RunConsole({"run", Example(GetParam() + ".cmd"), "--clock", kClock});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_EQ(run.output, ExpectedPaper(GetParam() + ".txt"));
}

TEST_P(GoodExample, PrintsItsPaperAsABatch) {
  const ProgramRun run =
      RunConsole({"run", Example(GetParam() + ".cmd"), "--clock", kClock, "--batch"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_EQ(run.output, ExpectedPaper(GetParam() + ".txt"));
}

INSTANTIATE_TEST_SUITE_P(Examples, GoodExample,
                         testing::Values("receipt", "payments", "returns", "deposit", "keys",
                                         "discounts", "invoice", "credit_note", "void", "note",
                                         "lottery", "exchange", "barcodes"),
                         [](const auto& test) { return test.param; });

TEST(FailingExample, EveryLineAnswersTheCodeThatItsCommentTells) {
  const std::string file = Example("failing.cmd");
  const struct {
    int line;
    const char* answer;
  } expected[] = {
      {7, "code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND"},
      {8, "code 258: ERROR 1/2 : SINTAX ERROR 2 : INSTRUCTION NOT UNIC"},
      {9, "code 260: ERROR 1/4 : SINTAX ERROR 4 : FIELD NAME NOT FOUND"},
      {10, "code 261: ERROR 1/5 : SINTAX ERROR 5 : FIELD NAME NOT UNIC"},
      {11, "code 262: ERROR 1/6 : SINTAX ERROR 6 : ILLEGAL FIELD NAME"},
      {12, "code 263: ERROR 1/7 : SINTAX ERROR 7 : LABEL-VALUE NOT FOUND"},
      {13, "code 264: ERROR 1/8 : SINTAX ERROR 8 : ALFA-VALUE INVALID"},
      {14, "code 265: ERROR 1/9 : SINTAX ERROR 9 : ILLEGAL VALUE"},
      {15, "code 266: ERROR 1/10 : SINTAX ERROR 10 : CAMPO OBBLIGATORIO"},
      {16, "code 269: ERROR 1/13 : SINTAX ERROR 13 : NO DPT NUMBER OR ARTICLE CODE"},
      {17, "code 10: ERROR 0/10 : INVALID BATCH LINE"},
      {20, "code 1241: ERROR 4/217 : ECR SIGNALS CRITICAL ERROR 217 :"},
      {21, "code 1238: ERROR 4/214 : ECR SIGNALS CRITICAL ERROR 214 :"},
      {22, "code 1231: ERROR 4/207 : ECR SIGNALS CRITICAL ERROR 207 :"},
      {24, "code 621: ERROR 2/109 : I/O ERROR 109"},
      {26, "code 1231: ERROR 4/207 : ECR SIGNALS CRITICAL ERROR 207 :"},
  };
  for (const bool batch : {false, true}) {
    std::vector<std::string> arguments = {"run", file, "--clock", kClock, "--terse"};
    if (batch) arguments.push_back("--batch");
    const ProgramRun run = RunConsole(arguments);
    EXPECT_EQ(run.exit_code, 1);
    // The messages in order, each with the line itself below it.
    size_t at = 0;
    for (const auto& one : expected) {
      const std::string message = file + ":" + std::to_string(one.line) + ": " + one.answer + "\n";
      EXPECT_EQ(run.errors.compare(at, message.size(), message), 0)
          << "wanted " << message << "found " << run.errors.substr(at, 200);
      at = run.errors.find('\n', at) + 1;
      EXPECT_EQ(run.errors.compare(at, 4, "    "), 0);
      at = run.errors.find('\n', at) + 1;
    }
    EXPECT_EQ(run.errors.substr(at), "lorimat: 16 of 27 lines failed\n");
    EXPECT_EQ(run.output, ExpectedPaper("failing.txt"));
  }
}

TEST(Paper, GoesToAFileAndNotToStandardOutput) {
  TestFolder folder;
  const ProgramRun run = RunConsole(
      {"run", Example("receipt.cmd"), "--clock", kClock, "--paper", folder.Path("paper.txt")});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_EQ(folder.Read("paper.txt"), ExpectedPaper("receipt.txt"));
}

TEST(Paper, ReplacesAnOlderAndLongerPaperWhole) {
  TestFolder folder;
  folder.Write("paper.txt", std::string(10000, 'x'));
  const ProgramRun run = RunConsole(
      {"run", Example("receipt.cmd"), "--clock", kClock, "--paper", folder.Path("paper.txt")});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(folder.Read("paper.txt"), ExpectedPaper("receipt.txt"));
}

TEST(Paper, ARunThatCannotStartLeavesTheOlderPaper) {
  TestFolder folder;
  folder.Write("paper.txt", "the older paper\n");
  const ProgramRun run = RunConsole({"run", Example("receipt.cmd"), "--language",
                                     folder.Path("none.ini"), "--paper", folder.Path("paper.txt")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(folder.Read("paper.txt"), "the older paper\n");
}

TEST(Paper, IsPrintedWhenLinesFailToo) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "WRONG\n" + ReadFile(Example("receipt.cmd")));
  const ProgramRun run = RunConsole({"run", lines, "--clock", kClock});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.output, ExpectedPaper("receipt.txt"));
}

TEST(Paper, StandardOutputHoldsThePaperAloneInAVerboseRun) {
  const ProgramRun run =
      RunConsole({"run", Example("receipt.cmd"), "--clock", kClock, "-v", "--trace", "-"});
  EXPECT_EQ(run.output, ExpectedPaper("receipt.txt"));
}

#ifdef LORIMAT_EXAMPLE_HOST
TEST(ExampleHost, SellsAndPrints) {
  const ProgramRun run = RunProgram("example_host", {SourceFile("language/merkelin.ini")});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("TOTALE COMPLESSIVO                    3,90\n"));
  EXPECT_THAT(run.output, HasSubstr("Resto                                 1,10\n"));
}

TEST(ExampleHost, NamesADefinitionFileThatItCannotRead) {
  TestFolder folder;
  const ProgramRun run =
      RunProgram("example_host", {folder.Path("none.ini")}, {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("none.ini"));
}
#endif
