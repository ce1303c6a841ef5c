// Files of lines, one EcrCmd for each: failing lines, odd bytes, odd files.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include "program_run.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

int Count(const std::string& text, const std::string& part) {
  int found = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
  return found;
}

}  // namespace

TEST(Lines, AFailingLineShowsNumberCodeTextAndLineAndTheRunGoesOn) {
  TestFolder folder;
  const std::string lines = folder.Write(
      "lines.cmd", "; first a comment\nWRONG\nVEND REP=1, PRE=1.00\n\nVEND PRE=3.00\nCHIU\n");
  const ProgramRun run = RunConsole({"run", "--terse", lines});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.errors, lines +
                            ":2: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND\n"
                            "    WRONG\n" +
                            lines +
                            ":5: code 269: ERROR 1/13 : SINTAX ERROR 13 : NO DPT NUMBER OR ARTICLE "
                            "CODE\n"
                            "    VEND PRE=3.00\n"
                            "lorimat: 2 of 6 lines failed\n");
  EXPECT_THAT(run.output, HasSubstr("1,00"));
}

TEST(Lines, StopOnErrorEndsTheRunAtTheFirstFailingLine) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VEND REP=1, PRE=1.00\nWRONG\nWORSE\nCHIU\n");
  const ProgramRun run = RunConsole({"run", lines, "--stop-on-error"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr(":2: code 257"));
  EXPECT_THAT(run.errors, Not(HasSubstr("WORSE")));
  EXPECT_THAT(run.errors, HasSubstr("stopped at line 2"));
  EXPECT_THAT(run.errors, HasSubstr(": it is gone with the register in memory\n"));
}

TEST(Lines, CarriageReturnsTabsCommentsAndAMissingLastLineEndAreReadAsTheLibraryReadsThem) {
  TestFolder folder;
  const std::string unix_lines = folder.Write("a.cmd", "VEND REP=1, PRE=1.00 ; a coffee\nCHIU\n");
  const std::string dos_lines =
      folder.Write("b.cmd", "\tVEND\tREP=1, PRE=1.00\r\n\r\n  ; nothing\r\nCHIU");
  const std::vector<std::string> clock = {"--clock", "2024-03-15 10:30"};
  const ProgramRun unix_run = RunConsole({"run", unix_lines, clock[0], clock[1]});
  const ProgramRun dos_run = RunConsole({"run", dos_lines, clock[0], clock[1]});
  EXPECT_EQ(unix_run.exit_code, 0);
  EXPECT_EQ(dos_run.exit_code, 0);
  EXPECT_THAT(dos_run.errors, IsEmpty());
  EXPECT_FALSE(unix_run.output.empty());
  EXPECT_EQ(unix_run.output, dos_run.output);
}

TEST(Lines, AnEmptyFileRunsAndPrintsNothing) {
  TestFolder folder;
  const ProgramRun run = RunConsole({"run", folder.Write("empty.cmd", "")});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(run.errors, IsEmpty());
}

TEST(Lines, TheLongestLineRunsAndALongerOneIsRefusedWhole) {
  TestFolder folder;
  const std::string comment(2046, ';');
  EXPECT_EQ(RunConsole({"run", folder.Write("fit.cmd", comment + "\r\n")}).exit_code, 0);
  const ProgramRun run = RunConsole({"run", folder.Write("long.cmd", comment + ";\nSUBT\n")});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr(":1: code 274: ERROR 1/18"));
  EXPECT_THAT(run.errors, HasSubstr("SOURCE LINE TOO LONG"));
}

TEST(Lines, ALineOfAMegabyteIsRefusedAndTheNextOneRuns) {
  TestFolder folder;
  const std::string lines =
      folder.Write("long.cmd", "VEND REP=1, DES='" + std::string(1 << 20, 'x') + "'\nWRONG\n");
  const ProgramRun run = RunConsole({"run", lines});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr(":1: code 274"));
  EXPECT_THAT(run.errors, HasSubstr(":2: code 257"));
  EXPECT_LT(run.errors.size(), 2000u);
}

TEST(Lines, ALineWithANulByteIsNotRunByHalf) {
  TestFolder folder;
  using namespace std::string_literals;
  const std::string lines =
      folder.Write("nul.cmd", "VEND REP=1, PRE=5.00\0 ; rest\nVEND REP=1, PRE=1.00\nCHIU\n"s);
  const ProgramRun run = RunConsole({"run", lines});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr(lines + ":1: not run: a NUL byte stands in column 21"));
  EXPECT_THAT(run.output, HasSubstr("1,00"));
  EXPECT_THAT(run.output, Not(HasSubstr("5,00")));
}

TEST(Lines, EveryByteValueGetsAnAnswerAndNoControlByteReachesTheTerminal) {
  TestFolder folder;
  std::string content;
  for (int byte = 1; byte < 256; ++byte) {
    if (byte == '\n') continue;
    content += static_cast<char>(byte);
    content += "X\n";
  }
  const std::string lines = folder.Write("bytes.cmd", content);
  for (const std::vector<std::string>& form :
       {std::vector<std::string>{"run", lines}, {"run", lines, "--terse"}}) {
    const ProgramRun run = RunConsole(form);
    EXPECT_EQ(run.exit_code, 1);
    for (const char c : run.errors) {
      EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20) << static_cast<int>(c);
    }
    EXPECT_THAT(run.errors, HasSubstr("\\x01X"));
    if (form.size() == 3) {
      EXPECT_THAT(run.errors, HasSubstr("\\x1BX"));
    }
  }
}

TEST(Lines, AMissingFileIsNamedWithItsCause) {
  TestFolder folder;
  const ProgramRun run = RunConsole({"run", folder.Path("none.cmd")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors, "lorimat: " + folder.Path("none.cmd") +
                            ": cannot be opened: No such file or directory\n");
  EXPECT_THAT(run.output, IsEmpty());
}

TEST(Lines, AnUnreadableFileIsNamedWithItsCause) {
  TestFolder folder;
  const std::string lines = folder.Write("secret.cmd", "SUBT\n");
  chmod(lines.c_str(), 0);
  const ProgramRun run = RunConsole({"run", lines}, {.as_nobody = true});
  if (run.exit_code == 127) GTEST_SKIP() << "only root may enter the folder of the build";
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("Permission denied"));
}

TEST(Lines, AFolderIsNoFileOfLines) {
  TestFolder folder;
  const ProgramRun run = RunConsole({"run", folder.path()});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("is a directory"));
}

TEST(Lines, StandardInputIsReadWhenTheFileIsADash) {
  const ProgramRun run = RunConsole({"run", "-"}, {.input = "VEND REP=1, PRE=1.00\nWRONG\nCHIU\n"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, StartsWith("standard input:2: code 257"));
  EXPECT_THAT(run.output, HasSubstr("1,00"));
}

TEST(Lines, TheVerboseRunShowsEveryAnswer) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VEND REP=1, PRE=1.00\nCHIU\n");
  const ProgramRun run = RunConsole({"run", lines, "-v"});
  EXPECT_THAT(run.errors, HasSubstr(lines + ":1: answer: OK.\n"));
  EXPECT_THAT(run.errors, HasSubstr(lines + ":2: answer: OK.\n"));
  EXPECT_THAT(run.errors, HasSubstr("definition file "));
  EXPECT_THAT(run.errors, HasSubstr("liblorimatrt.so"));
}

TEST(Lines, ABatchLineAmongTheLinesShowsItsAnswer) {
  TestFolder folder;
  folder.Write("inner.cmd", "VEND REP=1, PRE=1.00\nCHIU\n");
  const std::string lines = folder.Write("outer.cmd", "@'" + folder.Path("inner.cmd") + "'\n");
  const ProgramRun run = RunConsole({"run", lines});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.errors, lines + ":1: answer: OK.(2 Lines   0 msec)\n");
  EXPECT_THAT(run.output, HasSubstr("1,00"));
}

TEST(Lines, AnOpenReceiptAtTheEndIsNotedAndIsNoFailure) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VEND REP=1, PRE=1.00\n");
  const ProgramRun run = RunConsole({"run", lines});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, HasSubstr(": it is gone with the register in memory\n"));
}

TEST(Lines, CtrlCEndsTheRunBehindTheLineAndThePaperIsKept) {
  const ProgramRun run = RunConsole(
      {"run", "-", "-v"}, {.input = "VEND REP=1, PRE=1.00\nVEND REP=1, PRE=2.00\nVEND REP=1, PR",
                           .interrupt_at = "standard input:2: answer: OK."});
  EXPECT_EQ(run.exit_code, 130);
  EXPECT_THAT(run.errors, HasSubstr("stopped by Ctrl-C behind line 2\n"));
  EXPECT_THAT(run.errors, Not(HasSubstr("input:3:")));
  EXPECT_THAT(run.output, HasSubstr("2,00"));
}

TEST(Progress, ALongFileShowsABarOnATerminalAndTakesItAway) {
  TestFolder folder;
  std::string content;
  for (int line = 0; line < 2000; ++line) content += "; a comment of a long file\n";
  const std::string lines = folder.Write("long.cmd", content + "WRONG\n");
  const ProgramRun run =
      RunConsole({"run", lines}, {.environment = {{"NO_COLOR", "1"}}, .errors_to_terminal = true});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("\r[####"));
  EXPECT_THAT(run.errors, HasSubstr("50%"));
  // The bar is gone before the failing line is shown.
  EXPECT_THAT(run.errors, HasSubstr("\r\x1b[K" + lines + ":2001: code 257"));
  EXPECT_THAT(run.output, Not(HasSubstr("%")));
}

TEST(Progress, TheBarIsGoneBeforeTheSummary) {
  TestFolder folder;
  std::string content = "WRONG\n";
  for (int line = 0; line < 2000; ++line) content += "; a comment of a long file\n";
  const ProgramRun run =
      RunConsole({"run", folder.Write("long.cmd", content)},
                 {.environment = {{"NO_COLOR", "1"}}, .errors_to_terminal = true});
  EXPECT_THAT(run.errors, HasSubstr("100%\r\x1b[K  times  code  first line"));
  const ProgramRun terse =
      RunConsole({"run", "--terse", folder.Path("long.cmd")},
                 {.environment = {{"NO_COLOR", "1"}}, .errors_to_terminal = true});
  EXPECT_THAT(terse.errors, HasSubstr("100%\r\x1b[Klorimat: 1 of 2001 lines failed\n"));
}

TEST(Progress, NoBarOnAPipeForAShortFileOrOnADumbTerminal) {
  TestFolder folder;
  std::string content;
  for (int line = 0; line < 2000; ++line) content += "; a comment of a long file\n";
  const std::string long_file = folder.Write("long.cmd", content);
  const std::string short_file = folder.Write("short.cmd", "; short\n");
  EXPECT_THAT(RunConsole({"run", long_file}).errors, IsEmpty());
  EXPECT_THAT(RunConsole({"run", short_file}, {.errors_to_terminal = true}).errors, IsEmpty());
  EXPECT_THAT(RunConsole({"run", long_file},
                         {.environment = {{"TERM", "dumb"}}, .errors_to_terminal = true})
                  .errors,
              IsEmpty());
}

TEST(Progress, TheBarIsDrawnOncePerPercentAtMost) {
  TestFolder folder;
  std::string content;
  for (int line = 0; line < 5000; ++line) content += "; a comment of a long file\n";
  const ProgramRun run =
      RunConsole({"run", folder.Write("long.cmd", content)}, {.errors_to_terminal = true});
  EXPECT_LE(Count(run.errors, "\r["), 101);
  EXPECT_GE(Count(run.errors, "\r["), 50);
}
