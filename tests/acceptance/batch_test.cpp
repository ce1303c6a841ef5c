// Files run as one "@" batch: file names, the error file, and what is refused.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "program_run.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

const char* const kReceipt = "VEND REP=1, PRE=1.00\nCHIU\n";

}  // namespace

TEST(Batch, GivesTheSamePaperAsTheLines) {
  TestFolder folder;
  const std::string lines = folder.Write("receipt.cmd", kReceipt);
  const ProgramRun by_line = RunConsole({"run", lines, "--clock", "2024-03-15 10:30"});
  const ProgramRun by_batch = RunConsole({"run", lines, "--clock", "2024-03-15 10:30", "--batch"});
  EXPECT_EQ(by_batch.exit_code, 0);
  EXPECT_THAT(by_batch.errors, IsEmpty());
  EXPECT_FALSE(by_batch.output.empty());
  EXPECT_EQ(by_batch.output, by_line.output);
}

TEST(Batch, FailingLinesAreShownAsInARunByLines) {
  TestFolder folder;
  const std::string lines = folder.Write(
      "failing.cmd", "; a comment\nWRONG\nVEND REP=1, PRE=1.00\n\nVEND PRE=3.00\nCHIU\n");
  const ProgramRun by_line = RunConsole({"run", lines});
  const ProgramRun by_batch = RunConsole({"run", lines, "--batch"});
  EXPECT_EQ(by_batch.exit_code, 1);
  EXPECT_THAT(by_batch.errors, HasSubstr(lines + ":2: code 257: ERROR 1/1 : SINTAX ERROR 1 : "
                                                 "INSTRUCTION NOT FOUND\n    WRONG\n"));
  EXPECT_EQ(by_batch.errors, by_line.errors);
}

TEST(Batch, LeavesNothingBehindInTheFilesFolder) {
  TestFolder folder;
  const std::string lines = folder.Write("failing.cmd", "WRONG\n");
  EXPECT_EQ(RunConsole({"run", lines, "--batch"}).exit_code, 1);
  EXPECT_THAT(folder.names(), ElementsAre("failing.cmd"));
}

TEST(Batch, LeavesNothingBehindInTheTemporaryFolder) {
  TestFolder folder;
  TestFolder temporary;
  const std::string lines = folder.Write("failing.cmd", "WRONG\n");
  const ProgramRun run =
      RunConsole({"run", lines, "--batch"}, {.environment = {{"TMPDIR", temporary.path()}}});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(temporary.names(), IsEmpty());
}

TEST(Batch, ATemporaryFolderWithCapitalsIsPassedOver) {
  TestFolder folder;
  std::filesystem::create_directory(folder.Path("TMP"));
  const std::string lines = folder.Write("failing.cmd", "WRONG\n");
  const ProgramRun run =
      RunConsole({"run", lines, "--batch"}, {.environment = {{"TMPDIR", folder.Path("TMP")}}});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr(":1: code 257"));
}

TEST(Batch, ANameWithCapitalsIsRefusedAndTheReasonIsGiven) {
  TestFolder folder;
  const std::string lines = folder.Write("Receipt.cmd", kReceipt);
  const ProgramRun run = RunConsole({"run", lines, "--batch"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(run.errors, HasSubstr("Receipt.cmd"));
  EXPECT_THAT(run.errors, HasSubstr("lower-cases"));
  EXPECT_THAT(run.errors, HasSubstr("receipt.cmd"));
  EXPECT_EQ(RunConsole({"run", lines}).exit_code, 0);
}

TEST(Batch, CapitalsInTheFoldersNameDoNoHarm) {
  TestFolder folder;
  std::filesystem::create_directory(folder.Path("My Receipts"));
  const std::string lines = folder.Write("My Receipts/receipt.cmd", kReceipt);
  const ProgramRun run = RunConsole({"run", lines, "--batch"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, HasSubstr("1,00"));
}

TEST(Batch, SeparatorsQuotesCommentSignsAndBlanksMayStandInAName) {
  for (const char* name : {"a,b.cmd", "it's.cmd", "''", "'", "a;b.cmd", "a b.cmd", " a.cmd", "@a",
                           "#1", "a=b", "-", "\xC3\xA8.cmd"}) {
    TestFolder folder;
    folder.Write(name, kReceipt);
    // Another file that a misread name could mean.
    folder.Write("a", "WRONG\n");
    const ProgramRun run = RunConsole({"run", folder.Path(name), "--batch"});
    EXPECT_EQ(run.exit_code, 0) << name << ": " << run.errors;
    EXPECT_THAT(run.output, HasSubstr("1,00")) << name;
  }
}

TEST(Batch, ANameThatTheLineCannotCarryIsRefused) {
  TestFolder folder;
  for (const char* name : {"a\tb.cmd", "a\nb.cmd", "a.cmd "}) {
    const std::string lines = folder.Write(name, kReceipt);
    const ProgramRun run = RunConsole({"run", lines, "--batch"});
    EXPECT_EQ(run.exit_code, 2) << name;
    EXPECT_THAT(run.errors, HasSubstr("rename the file")) << name;
  }
}

TEST(Batch, TheLongestNameRuns) {
  TestFolder folder;
  const std::string lines = folder.Write(std::string(255, 'x'), kReceipt);
  const ProgramRun run = RunConsole({"run", lines, "--batch"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("1,00"));
}

TEST(Batch, PaperTraceAndLanguageStayRelativeToTheFolderOfTheStart) {
  TestFolder folder;
  std::filesystem::create_directory(folder.Path("work"));
  std::filesystem::create_directory(folder.Path("lines"));
  folder.Write("lines/receipt.cmd", kReceipt);
  std::filesystem::copy_file(SourceFile("language/merkelin.ini"), folder.Path("work/words.ini"));
  const ProgramRun run =
      RunConsole({"run", "../lines/receipt.cmd", "--batch", "--paper", "paper.txt", "--trace",
                  "trace.txt", "--language", "words.ini"},
                 {.folder = folder.Path("work")});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(folder.Read("work/paper.txt"), HasSubstr("1,00"));
  EXPECT_THAT(folder.Read("work/trace.txt"), HasSubstr("TradEcr Cmd<@'receipt.cmd','"));
}

TEST(Batch, AFileInTheCurrentFolderNeedsNoPath) {
  TestFolder folder;
  folder.Write("receipt.cmd", kReceipt);
  const ProgramRun run = RunConsole({"run", "receipt.cmd", "--batch"}, {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
}

TEST(Batch, StandardInputHasNoNameForABatch) {
  const ProgramRun run = RunConsole({"run", "-", "--batch"}, {.input = kReceipt});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("--batch needs a file"));
}

TEST(Batch, ANulByteRefusesTheFileBeforeAnythingRuns) {
  TestFolder folder;
  using namespace std::string_literals;
  const std::string lines = folder.Write("nul.cmd", "VEND REP=1, PRE=1.00\nCHIU\0\n"s);
  const ProgramRun run = RunConsole({"run", lines, "--batch"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr(lines + ":2: a NUL byte stands in column 5"));
  EXPECT_THAT(run.output, IsEmpty());
}

TEST(Batch, ALineThatIsTooLongFailsWithItsNumberAndTheRunGoesOn) {
  TestFolder folder;
  const std::string lines =
      folder.Write("long.cmd", "; fine\n" + std::string(5000, ';') + "\nWRONG\n");
  const ProgramRun run = RunConsole({"run", lines, "--batch"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr(":2: code 274"));
  EXPECT_THAT(run.errors, HasSubstr(":3: code 257"));
}

TEST(Batch, ABatchLineInABatchFailsWithCode10) {
  TestFolder folder;
  folder.Write("inner.cmd", kReceipt);
  const std::string lines = folder.Write("outer.cmd", "@inner.cmd\n");
  const ProgramRun run = RunConsole({"run", lines, "--batch"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr(":1: code 10: ERROR 0/10 : INVALID BATCH LINE"));
}

TEST(Batch, AnEmptyFileRunsAndTheVerboseRunShowsTheAnswer) {
  TestFolder folder;
  const std::string lines = folder.Write("empty.cmd", "");
  const ProgramRun run = RunConsole({"run", lines, "--batch", "-v"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(run.errors, HasSubstr(lines + ": answer: OK.(0 Lines   0 msec)\n"));
}

TEST(Batch, CountsTheLinesUpToTheOneThatAbortedIt) {
  TestFolder folder;
  const std::string behind = "VEND REP=1, PRE=1.00\nWRONG\n; the end\n";
  const std::string aborted =
      folder.Write("aborted.cmd", "; a comment\nSETP ABORT=SI\nWRONG\n" + behind);
  const std::string went_on = folder.Write(
      "went_on.cmd", "WRONG\nSETP ABORT=SI\nSETP ABORT=1\nWRONG\nSETP ABORT=SI\n; the end\n");
  for (const bool terse : {false, true}) {
    std::vector<std::string> arguments = {"run", aborted, "--batch"};
    if (terse) arguments.push_back("--terse");
    EXPECT_THAT(RunConsole(arguments).errors, HasSubstr("lorimat: 1 of 3 lines failed\n"));
    arguments[1] = went_on;
    EXPECT_THAT(RunConsole(arguments).errors, HasSubstr("lorimat: 2 of 6 lines failed\n"));
  }
  // That stays for the batches behind it.
  const ProgramRun line =
      RunConsole({"run", "-", "--terse"}, {.input = "SETP ABORT=SI\n@" + aborted + "\n"});
  EXPECT_THAT(line.errors, HasSubstr("lorimat: 1 of 5 lines failed\n"));
}

// The display is refused in the same way as the sale, and its line does not fail of it.
TEST(Batch, GivesNoReasonWhereItWouldBeAGuess) {
  TestFolder folder;
  folder.Write("lines.cmd", "#14 #5='A'\nVEND REP=99, PRE=1.00\n");
  const auto errors = [&](const std::string& fault) {
    return RunConsole({"shell"}, {.folder = folder.path(), .input = fault + "@lines.cmd\n"}).errors;
  };
  const char* const reason = "There is no department 99";
  EXPECT_THAT(errors(""), HasSubstr(reason));
  const std::string guessed = errors(".fault code 217 next on DisplayTextAtEx\n");
  EXPECT_THAT(guessed, HasSubstr("lines.cmd:2: code 1241"));
  EXPECT_THAT(guessed, Not(HasSubstr(reason)));
  EXPECT_THAT(guessed, Not(HasSubstr("A planned fault struck")));
}

TEST(Batch, WithoutDescriptorsSaysWhatCannotBeOpened) {
#ifdef LORIMAT_SANITIZED
  GTEST_SKIP() << "the sanitizer asks for virtual tables through a pipe, and needs descriptors";
#endif
  TestFolder folder;
  folder.Write("receipt.cmd", kReceipt);
  const ProgramRun run = RunProgram("/bin/bash",
                                    {"-c", "ulimit -n 6; exec \"$1\" run receipt.cmd --batch",
                                     "bash", std::string(LORIMAT_BIN_FOLDER) + "/lorimat"},
                                    {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("Too many open files"));
  EXPECT_THAT(run.errors, Not(HasSubstr("lorimat: :")));
  EXPECT_THAT(run.errors, Not(HasSubstr("trace")));
}
