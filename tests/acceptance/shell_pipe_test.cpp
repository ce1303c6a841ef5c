// The shell as a pipe: no prompt, the paper as it is printed, failing lines as "run" has them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <string>

#include "program_run.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

ProgramRun Shell(const std::string& input, std::vector<std::string> more = {}) {
  std::vector<std::string> arguments = {"shell", "--clock", "2026-11-20 11:03"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return RunConsole(arguments, {.input = input});
}

}  // namespace

TEST(ShellPipe, PaperAndErrorsAreThoseOfRun) {
  const std::string lines =
      "VEND REP=1, PRE=2.50\nWRONG\nINFO TIPO=MATRICOLA\n; nothing\n\nVEND PRE=1\nCHIU\n";
  const ProgramRun piped = Shell(lines);
  const ProgramRun run = RunConsole({"run", "-", "--clock", "2026-11-20 11:03"}, {.input = lines});
  EXPECT_EQ(1, piped.exit_code);
  EXPECT_THAT(piped.output, HasSubstr("REPARTO 1                  22%        2,50\n"));
  EXPECT_EQ(run.output, piped.output);
  EXPECT_EQ(run.errors, piped.errors);
  EXPECT_EQ(run.exit_code, piped.exit_code);
}

TEST(ShellPipe, HasNoPromptNoColourAndNoHistory) {
  TestFolder folder;
  const ProgramRun run = RunConsole({"shell"}, {.input = "VEND REP=1, PRE=2.50\nCHIU\n",
                                                .environment = {{"HOME", folder.path()}}});
  EXPECT_EQ(0, run.exit_code);
  EXPECT_THAT(run.output, StartsWith("             NEGOZIO DI PROVA\n"));
  EXPECT_THAT(run.output, Not(HasSubstr("lorimat>")));
  EXPECT_THAT(run.output, Not(HasSubstr("\x1b")));
  EXPECT_THAT(run.output, Not(HasSubstr("READY")));
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_THAT(folder.names(), IsEmpty());
}

TEST(ShellPipe, NoInputIsNoFailure) {
  const ProgramRun run = Shell("");
  EXPECT_EQ(0, run.exit_code);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(run.errors, IsEmpty());
}

TEST(ShellPipe, TheShellsOwnWordsWorkThere) {
  const ProgramRun run = Shell(
      "VEND REP=1, PRE=2.50\n.status\n.paper 1\n? SUBT\n.fault paper-end\nVEND REP=1, PRE=1\n"
      "CHIU\n.quit\nWRONG\n");
  EXPECT_EQ(1, run.exit_code);
  EXPECT_THAT(run.output, HasSubstr("State           RECEIPT OPEN\n"));
  EXPECT_THAT(run.output, HasSubstr("\nSUBT: command 18, short SU\nPrints the subtotal."));
  EXPECT_THAT(run.errors, StartsWith("standard input:6: code 12"));
  // What stands behind .quit is not read.
  EXPECT_THAT(run.errors, EndsWith("lorimat: 1 of 8 lines failed\n"));
}

TEST(ShellPipe, ASaleThatFindsNoReceiptIsExplainedWithTheWayOut) {
  const ProgramRun run = Shell(
      "VEND REP=1, PRE=1.00\nINP TASTO=TOTALE\n.status\nVEND REP=1, PRE=2.00\nCLEAR\n.status\n"
      "VEND REP=1, PRE=3.00\nCHIU\n");
  EXPECT_EQ(1, run.exit_code);
  EXPECT_THAT(run.output, HasSubstr("\nNext sale       opens no receipt, code 1231; the way out is "
                                    "CLEAR, CHIU or RESPRN\n"));
  EXPECT_THAT(run.output, HasSubstr("\nNext sale       opens a receipt\n"));
  EXPECT_THAT(run.errors, HasSubstr("standard input:4: code 1231"));
  EXPECT_THAT(run.errors, HasSubstr("The way out is CLEAR, CHIU or RESPRN.\n"));
  EXPECT_THAT(run.errors, EndsWith("lorimat: 1 of 8 lines failed\n"));
}

TEST(ShellPipe, HelpAndQuitNeedNoDot) {
  const std::string own = Shell(".help\n").output;
  EXPECT_THAT(own, HasSubstr("\n  .quit "));
  for (const char* end : {"quit", "exit", "QUIT", " Exit "}) {
    const ProgramRun run = Shell(std::string("help\n") + end + "\nWRONG\n");
    EXPECT_EQ(0, run.exit_code) << run.errors;
    EXPECT_EQ(own, run.output) << end;
  }
  EXPECT_EQ(Shell("? SUBT\n").output, Shell("help SUBT\n").output);
  EXPECT_EQ(Shell("? SUBT\n").output, Shell(".help SUBT\n").output);
  const ProgramRun wrong = Shell("quit now\nhelp VNED\nquitt\n");
  EXPECT_THAT(wrong.errors, HasSubstr("standard input:1: nothing may stand behind .quit\n"));
  EXPECT_THAT(wrong.errors, HasSubstr("standard input:2: no command is called 'VNED'; did you"));
  EXPECT_THAT(wrong.errors, HasSubstr("standard input:3: code 257"));
}

TEST(ShellPipe, ACommandOfTheDefinitionFileHasItsNameAndItsShortForms) {
  TestFolder folder;
  // 18 is the subtotal. "quit" is a short form of two commands, which the library refuses, and it
  // does not end the shell either.
  const std::string words = folder.Write(
      "words.ini", "[OPCOD]\n1=HELPDESK,18\n2=EXIT,18\n3=QUITA,18\n4=QUITB,11\n[18]\n[11]\n");
  const ProgramRun run = Shell("help\nexit\nquit\nEXIT X\n", {"--language", words});
  EXPECT_THAT(run.output, Not(HasSubstr(".quit")));
  EXPECT_THAT(run.errors, Not(HasSubstr("standard input:1: code 257")));
  EXPECT_THAT(run.errors, Not(HasSubstr("standard input:2: code 257")));
  EXPECT_THAT(run.errors, HasSubstr("standard input:3: code 258"));
  EXPECT_THAT(run.errors, HasSubstr("standard input:4: code "));
  EXPECT_THAT(run.errors, EndsWith("of 4 lines failed\n"));
}

TEST(ShellPipe, AWordThatTheShellHasNotIsAFailingLine) {
  const ProgramRun run = Shell(".papre\n.quit now\n? VNED\n.paper x\n.fault zzz\n");
  EXPECT_EQ(1, run.exit_code);
  EXPECT_THAT(run.errors,
              HasSubstr("standard input:1: the shell has no word '.papre'; did you mean .paper?\n"
                        "    .papre\n"));
  EXPECT_THAT(run.errors, HasSubstr("standard input:2: nothing may stand behind .quit\n"));
  EXPECT_THAT(run.errors, HasSubstr("standard input:3: no command is called 'VNED'; did you"));
  EXPECT_THAT(run.errors, HasSubstr("standard input:4: .paper takes a number of lines, not 'x'\n"));
  EXPECT_THAT(run.errors, HasSubstr("standard input:5: no fault is called 'zzz'\n"));
  EXPECT_THAT(run.errors, EndsWith("lorimat: 5 of 5 lines failed\n"));
}

TEST(ShellPipe, ABatchNamesItsOwnLines) {
  TestFolder folder;
  const std::string file = folder.Write("Lines.cmd", "VEND REP=1, PRE=1.00\nWRONG\n.help\nCHIU\n");
  const ProgramRun run = Shell(".batch " + file + "\n.batch " + folder.Path("none") + "\n.batch " +
                               folder.path() + "\n.batch\n");
  EXPECT_EQ(1, run.exit_code);
  EXPECT_THAT(run.output, HasSubstr("1,00\n"));
  EXPECT_THAT(run.errors, HasSubstr(file + ":2: code 257: ERROR 1/1"));
  // The words of the shell are none of a file's.
  EXPECT_THAT(run.errors, HasSubstr(file + ":3: code 257: ERROR 1/1"));
  EXPECT_THAT(run.errors, HasSubstr("standard input:2: " + folder.Path("none") +
                                    ": cannot be opened: No such file or directory\n"));
  EXPECT_THAT(run.errors, HasSubstr(": is no regular file\n"));
  EXPECT_THAT(run.errors, HasSubstr("standard input:4: which file?"));
}

TEST(ShellPipe, AReceiptLeftOpenIsNotedAndIsNoFailure) {
  const ProgramRun run = Shell("VEND REP=1, PRE=1.00\n");
  EXPECT_EQ(0, run.exit_code);
  EXPECT_EQ(
      run.errors,
      "lorimat: note: standard input ends, and the receipt is open, with 1 item and a subtotal of "
      "1,00: it is gone with the register in memory\n");
}

TEST(ShellPipe, LinesOfAFileCountAmongThoseThatFail) {
  TestFolder folder;
  const std::string file = folder.Write("wrong.cmd", "WRONG\nWRONG\nSUBT NONE=1\n");
  const ProgramRun run = Shell(".batch " + file + "\n");
  EXPECT_EQ(1, run.exit_code);
  EXPECT_THAT(run.errors, EndsWith("lorimat: 3 of 4 lines failed\n"));
}

TEST(ShellPipe, CtrlCEndsItBehindTheLineAtWork) {
  const ProgramRun run =
      RunConsole({"shell"}, {.input = "VEND REP=1, PRE=1.00\nWRONG\nVEND REP=1, PR",
                             .interrupt_at = "standard input:2: code 257"});
  EXPECT_EQ(130, run.exit_code);
  EXPECT_THAT(run.errors, HasSubstr("stopped by Ctrl-C behind line 2\n"));
  EXPECT_THAT(run.output, HasSubstr("1,00"));
}

TEST(ShellPipe, ARegisterInAFileGoesOnInTheNextShell) {
  TestFolder folder;
  const std::vector<std::string> kept = {"--register", folder.Path("shop.register")};
  const ProgramRun first = Shell("VEND REP=1, PRE=1.00\nCHIU\n", kept);
  EXPECT_EQ(0, first.exit_code);
  EXPECT_THAT(first.output, HasSubstr("DOCUMENTO N. 0001-0001\n"));
  const ProgramRun second = Shell("VEND REP=1, PRE=1.00\nCHIU\n", kept);
  EXPECT_EQ(0, second.exit_code);
  EXPECT_THAT(second.output, HasSubstr("DOCUMENTO N. 0001-0002\n"));
  EXPECT_THAT(second.output, Not(HasSubstr("DOCUMENTO N. 0001-0001\n")));
  EXPECT_THAT(second.errors, IsEmpty());
}

TEST(ShellPipe, ALineOfAMegabyteIsRefusedAndTheNextOneRuns) {
  const ProgramRun run =
      Shell("VEND DES='" + std::string(1 << 20, 'x') + "'\nVEND REP=1, PRE=1.00\nCHIU\n");
  EXPECT_EQ(1, run.exit_code);
  EXPECT_THAT(run.errors, StartsWith("standard input:1: code 274"));
  EXPECT_LT(run.errors.size(), 1000u);
  EXPECT_THAT(run.output, HasSubstr("1,00"));
  for (const std::string start : {".", "?", "? ", ".paper ", ".fault ", ".batch "}) {
    const ProgramRun odd = Shell(start + std::string(1 << 20, 'x') + "\nSUBT\n");
    EXPECT_EQ(1, odd.exit_code) << start;
    EXPECT_LT(odd.errors.size(), 10000u) << start;
  }
}

TEST(ShellPipe, EveryByteValueGetsAnAnswerAndNoControlByteComesBack) {
  std::string input;
  for (int byte = 0; byte < 256; ++byte) {
    if (byte == '\n') continue;
    for (const char* start : {"", "?", ".", ".paper ", ".fault ", ".batch "}) {
      input += start;
      input += static_cast<char>(byte);
      input += "X\n";
    }
  }
  const ProgramRun run = Shell(input);
  EXPECT_EQ(1, run.exit_code);
  for (const char c : run.errors + run.output) {
    EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= 0x20) << static_cast<int>(c);
  }
}

TEST(ShellPipe, ALineWithANulByteIsNotRunByHalf) {
  using namespace std::string_literals;
  const ProgramRun run = Shell("VEND REP=1, PRE=5.00\0 ; rest\nVEND REP=1, PRE=1.00\nCHIU\n"s);
  EXPECT_EQ(1, run.exit_code);
  EXPECT_THAT(run.errors, HasSubstr("standard input:1: not run: a NUL byte stands in column 21"));
  EXPECT_THAT(run.output, Not(HasSubstr("5,00")));
}

TEST(ShellPipe, ADefinitionFileWithoutCommandsIsToldAndServes) {
  TestFolder folder;
  const std::string words = folder.Write("empty.ini", "; nothing\n");
  const ProgramRun run = Shell("?\nVEND\n? VEND\n", {"--language", words});
  EXPECT_EQ(1, run.exit_code);
  EXPECT_THAT(run.errors, HasSubstr("names no commands"));
  EXPECT_THAT(run.output, HasSubstr("The definition file names no commands.\n"));
  EXPECT_THAT(run.errors, HasSubstr("standard input:2: code 257"));
}

TEST(ShellPipe, TheWordsOfAnotherDefinitionFileAreUsed) {
  TestFolder folder;
  const std::string words = folder.Write(
      "english.ini", "[OPCOD]\n1=SELL,10\n2=PAY,11\n[10]\n1=DEPT\n4=PRICE\n[11]\n2=IMP\n");
  const ProgramRun run = Shell("SELL DEPT=1, PRICE=1.00\nPAY\n? SELL\n", {"--language", words});
  EXPECT_EQ(0, run.exit_code) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("\n  DEPT   D      department number\n"));
}

TEST(ShellPipe, ADefinitionFileThatTheLibraryRefusesIsNamed) {
  TestFolder folder;
  const ProgramRun run =
      Shell("SUBT\n", {"--language", folder.Write("bad.ini", "[OPCOD]\nno equals sign\n")});
  EXPECT_EQ(2, run.exit_code);
  EXPECT_THAT(run.errors, HasSubstr("bad.ini:2: "));
  EXPECT_THAT(run.output, IsEmpty());
}

TEST(ShellPipe, AFullStandardOutputIsAnError) {
  const ProgramRun run =
      RunConsole({"shell"}, {.input = "VEND REP=1, PRE=1.00\nCHIU\n", .output_file = "/dev/full"});
  EXPECT_EQ(2, run.exit_code);
  EXPECT_THAT(run.errors, HasSubstr("cannot write to standard output: No space left on device\n"));
}

TEST(ShellPipe, AClosedStandardOutputIsAnError) {
  const ProgramRun run =
      RunConsole({"shell"}, {.input = "VEND REP=1, PRE=1.00\n", .close_output = true});
  EXPECT_EQ(2, run.exit_code);
  EXPECT_THAT(run.errors, HasSubstr("cannot write to standard output: "));
}

TEST(ShellPipe, AReaderThatHasGoneIsAnErrorAndTheRegisterIsKept) {
  TestFolder folder;
  const std::string lines = folder.Write("lines", "VEND REP=1, PRE=1.00\nCHIU\n");
  const std::string program = std::string(LORIMAT_BIN_FOLDER) + "/lorimat";
  const ProgramRun run = RunProgram(
      "/bin/bash", {"-c", "\"$1\" shell --register \"$2\" < \"$3\" | true; exit ${PIPESTATUS[0]}",
                    "bash", program, folder.Path("shop.register"), lines});
  // The reader may end before or behind the only write, but no signal ends the shell.
  EXPECT_THAT(run.exit_code, testing::AnyOf(0, 2)) << run.errors;
  const ProgramRun next = Shell("SUBT\n", {"--register", folder.Path("shop.register")});
  EXPECT_NE(2, next.exit_code) << next.errors;
}

TEST(ShellUsage, HelpTellsTheOptionsAndTheExitCodes) {
  const ProgramRun run = RunConsole({"shell", "--help"});
  EXPECT_EQ(0, run.exit_code);
  for (const char* option : {"--language", "--register", "--clock", "--library"}) {
    EXPECT_THAT(run.output, HasSubstr(option));
  }
  EXPECT_THAT(run.output, HasSubstr("lorimat shell --register shop.register\n"));
  EXPECT_THAT(run.output, HasSubstr("Exit codes:\n"));
}

TEST(ShellUsage, WrongOptionsAreNamed) {
  EXPECT_EQ(2, RunConsole({"shell", "file.cmd"}).exit_code);
  EXPECT_EQ(2, RunConsole({"shell", "--nope"}).exit_code);
  const ProgramRun clock = RunConsole({"shell", "--clock", "noon"});
  EXPECT_EQ(2, clock.exit_code);
  EXPECT_THAT(clock.errors, HasSubstr("--clock noon: is no date and time"));
  EXPECT_EQ(2, RunConsole({"shell", "--library", "/none.so"}).exit_code);
  EXPECT_EQ(2, RunConsole({"shell", "--language", "/none.ini"}).exit_code);
}
