// What "run" says of the lines that fail: the cause below each, and all of them counted.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "program_run.h"

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

int Count(const std::string& text, const std::string& part) {
  int found = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++found;
  return found;
}

std::string Repeated(const std::string& text, int times) {
  std::string out;
  for (int i = 0; i < times; ++i) out += text;
  return out;
}

// The lines by standard input.
ProgramRun RunLines(const std::string& lines, std::vector<std::string> more = {}) {
  std::vector<std::string> arguments = {"run", "-", "--clock", "2024-03-15 10:30"};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return RunConsole(arguments, {.input = lines});
}

constexpr const char* kMisspelt =
    "standard input:2: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND\n"
    "    VNED REP=2, PRE=1.50\n";

}  // namespace

TEST(RunCauses, ALineThatIsMisreadIsMarkedAndExplained) {
  const ProgramRun run = RunLines("VEND REP=1, PRE=1.00\nVNED REP=2, PRE=1.50\nCHIU\n");
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.errors,
            std::string(kMisspelt) +
                "    ^\n"
                "  no command is called 'VNED'; did you mean VEND?\n"
                "  class 1: syntax and command errors\n"
                "  No command of the definition file has the name that the line begins with.\n"
                "  times  code  first line        what it means\n"
                "      1   257  standard input:2  No command of the definition file has the name "
                "that the line begins with.\n"
                "lorimat: 1 of 3 lines failed\n");
}

TEST(RunCauses, TheMarkStandsBelowTheFieldThatIsWrong) {
  const ProgramRun run = RunLines("VEND REP=1, COLORE=3, PRE=1.00\n");
  EXPECT_THAT(run.errors, HasSubstr("    VEND REP=1, COLORE=3, PRE=1.00\n"
                                    "                ^\n"
                                    "  VEND has no field 'COLORE'\n"));
}

TEST(RunCauses, AFarPlaceIsShownWithTheTextAroundIt) {
  const ProgramRun run =
      RunLines("VEND REP=1, DES='" + std::string(200, 'x') + "', COLORE=3, PRE=1.00\n");
  EXPECT_THAT(run.errors, HasSubstr("    ...xxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxxx', "
                                    "COLORE=3, PRE=1.00\n" +
                                    std::string(57, ' ') + "^\n"));
}

TEST(RunCauses, WhatTheDeviceAnsweredIsNamed) {
  const ProgramRun run = RunLines("VEND REP=99, PRE=1.00\n");
  EXPECT_THAT(run.errors, HasSubstr("    VEND REP=99, PRE=1.00\n"));
  EXPECT_THAT(run.errors, Not(HasSubstr("^")));
  EXPECT_THAT(run.errors,
              HasSubstr("  class 4: results of the device client of 200 and above\n"
                        "  Result 217 of the device, RTF_EFPTR_BAD_VAT. The VAT entry or the "
                        "department does not exist.\n"));
}

TEST(RunCauses, WhatTheRegisterKnowsStandsBelowTheLine) {
  // The sentence stands between the line and the class of the code.
  const auto reason = [](const std::string& lines) {
    const ProgramRun run = RunLines(lines);
    const size_t begin = run.errors.find("\n  ");
    const std::string text = run.errors.substr(std::min(run.errors.size(), begin + 1));
    const size_t line = text.find('\n') + 1;
    return text.substr(line, text.find('\n', line) - line);
  };
  EXPECT_EQ(reason("VEND REP=99, PRE=1.00\n"), "  There is no department 99: they are 1 to 40.");
  EXPECT_EQ(reason("INP TASTO=CHIAVE, NUM='2'\nVEND REP=1, PRE=1.00\n"),
            "  The key is at position 2, reading: documents are begun with it at position 1, "
            "registering.");
  EXPECT_EQ(reason("VEND REP=1, PRE=1.00\nINP TASTO=CHIAVE, NUM='2'\nCHIU\n"),
            "  Now a receipt is open, 1 line, subtotal 1,00; key and operator change where no "
            "document is open.");
  EXPECT_EQ(reason("REPORT TIPO=1, FILE='/dev/full'\n"),
            "  Writing failed (No space left on device): '/dev/full'.");
  // A key that was refused: the library takes every one for a wrong state.
  EXPECT_EQ(reason("INP TASTO=CHIAVE, NUM='9'\n"),
            "  Not allowed for the position of the key: 9; it goes from 1 to 4.");
}

TEST(RunCauses, ARefusalBeforeDoesNotExplainWhatTheLibraryRefuses) {
  const ProgramRun run = RunLines("VEND REP=99, PRE=1.00\nVEND PRE=1.00\n");
  const size_t second = run.errors.find("standard input:2: code 269");
  ASSERT_NE(second, std::string::npos);
  EXPECT_THAT(run.errors.substr(second), Not(HasSubstr("There is no department")));
}

TEST(RunCauses, ABatchHasTheReasonOfEachLine) {
  TestFolder folder;
  const std::string lines =
      folder.Write("lines.cmd",
                   "VEND REP=99, PRE=1.00\n\nVEND PRE=1\nVEND REP=1, PRE=3.00\nCHIU TEND='BONUS'\n"
                   "CHKSUB IMP=5.00\n");
  const ProgramRun by_line = RunConsole({"run", lines});
  const ProgramRun by_batch = RunConsole({"run", lines, "--batch"});
  EXPECT_THAT(by_batch.errors, HasSubstr("\n  There is no department 99: they are 1 to 40.\n"));
  EXPECT_THAT(by_batch.errors, HasSubstr("\n  There is no tender 'BONUS'.\n"));
  EXPECT_THAT(by_batch.errors, HasSubstr("\n  5,00 was given, and the document comes to 3,00.\n"));
  EXPECT_EQ(by_batch.errors, by_line.errors);
}

TEST(RunCauses, WhatTheRegisterKnowsIsItalianToo) {
  const ProgramRun run = RunConsole(
      {"run", "-"}, {.input = "VEND REP=99, PRE=1.00\n", .environment = {{"LANG", "it"}}});
  EXPECT_THAT(run.errors, HasSubstr("\n  Il reparto 99 non esiste: i numeri vanno da 1 a 40.\n"));
}

TEST(RunCauses, TheBareFormHasLineAndAnswerAlone) {
  const ProgramRun run =
      RunLines("VEND REP=1, PRE=1.00\nVNED REP=2, PRE=1.50\nCHIU\n", {"--terse"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.errors, std::string(kMisspelt) + "lorimat: 1 of 3 lines failed\n");
}

TEST(RunCauses, OfOneCodeTwentyLinesAreShownAndAllAreCounted) {
  const ProgramRun run = RunLines(Repeated("WRONG\n", 40001) + "VEND PRE=1.00\n");
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(Count(run.errors, ": code 257: "), 20);
  EXPECT_THAT(run.errors, HasSubstr("standard input:20: code 257: "));
  EXPECT_EQ(Count(run.errors,
                  "lorimat: note: further lines with code 257 are counted and not "
                  "shown; --terse shows all\n"),
            1);
  // Another code is shown still.
  EXPECT_THAT(run.errors, HasSubstr("standard input:40002: code 269: "));
  EXPECT_THAT(run.errors, HasSubstr("\n  times  code  first line            what it means\n"
                                    "  40001   257  standard input:1      No command "));
  EXPECT_THAT(run.errors, HasSubstr("\n      1   269  standard input:40002  A sale has neither "));
  EXPECT_THAT(run.errors, EndsWith("\nlorimat: 40002 of 40002 lines failed\n"));
}

TEST(RunCauses, TwentyLinesOfOneCodeAreAllShown) {
  const ProgramRun run = RunLines(Repeated("WRONG\n", 20));
  EXPECT_EQ(Count(run.errors, ": code 257: "), 20);
  EXPECT_THAT(run.errors, Not(HasSubstr("counted and not shown")));
}

TEST(RunCauses, TheBareFormShowsThemAll) {
  const ProgramRun run = RunLines(Repeated("WRONG\n", 500), {"--terse"});
  EXPECT_EQ(Count(run.errors, ": code 257: "), 500);
  EXPECT_THAT(run.errors, EndsWith("standard input:500: code 257: ERROR 1/1 : SINTAX ERROR 1 : "
                                   "INSTRUCTION NOT FOUND\n    WRONG\n"
                                   "lorimat: 500 of 500 lines failed\n"));
}

TEST(RunCauses, LinesThatAreNotRunAreCountedToo) {
  using namespace std::string_literals;
  const ProgramRun run = RunLines(Repeated("SUBT\0\n"s, 30));
  EXPECT_EQ(Count(run.errors, ": not run: a NUL byte stands in column 5"), 20);
  EXPECT_THAT(run.errors, HasSubstr("note: further lines that are not run are counted"));
  EXPECT_THAT(run.errors, HasSubstr("\n     30     -  standard input:1  The line was not run.\n"));
}

TEST(RunCauses, TheTableBeginsWithTheCodeThatIsThereMostAndThenTheFirstOne) {
  const ProgramRun run = RunLines("CHKSUB\nVEND PRE=1\nWRONG\nWRONG\n");
  const size_t table = run.errors.find("  times  code");
  ASSERT_NE(table, std::string::npos);
  const std::string rows = run.errors.substr(table);
  EXPECT_LT(rows.find("      2   257  standard input:3  "),
            rows.find("      1   266  standard input:1  "));
  EXPECT_LT(rows.find("      1   266  standard input:1  "),
            rows.find("      1   269  standard input:2  "));
}

TEST(RunCauses, ABatchIsToldInTheSameWay) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", Repeated("WRONG\n", 60) + "VEND PRE=1\n");
  const ProgramRun by_line = RunConsole({"run", lines});
  const ProgramRun by_batch = RunConsole({"run", lines, "--batch"});
  EXPECT_EQ(Count(by_batch.errors, ": code 257: "), 20);
  EXPECT_EQ(by_batch.errors, by_line.errors);
}

TEST(RunCauses, ARunWithoutFailuresHasNoTable) {
  EXPECT_THAT(RunLines("VEND REP=1, PRE=1.00\nCHIU\n").errors, IsEmpty());
}

TEST(RunCauses, ARunThatIsStoppedHasItsTable) {
  const ProgramRun run = RunLines("SUBT\nWRONG\nSUBT\n", {"--stop-on-error"});
  EXPECT_THAT(run.errors, HasSubstr("      1  1231  standard input:1  "));
  EXPECT_THAT(run.errors, EndsWith("lorimat: stopped at line 1, which failed\n"));
}

TEST(RunCauses, TheShellAsAPipeCountsTheLinesOfItsFiles) {
  TestFolder folder;
  const std::string file = folder.Write("wrong.cmd", Repeated("WRONG\n", 30));
  const std::string input = ".batch " + file + "\nWRONG\n";
  const ProgramRun run = RunConsole({"shell"}, {.input = input});
  EXPECT_EQ(Count(run.errors, ": code 257: "), 20);
  EXPECT_THAT(run.errors, HasSubstr("     31   257  " + file + ":1  No command "));
  const ProgramRun terse = RunConsole({"shell", "--terse"}, {.input = input});
  EXPECT_EQ(Count(terse.errors, ": code 257: "), 31);
  EXPECT_THAT(terse.errors, Not(HasSubstr("what it means")));
}

TEST(RunCauses, AreItalianForItsReaders) {
  const ProgramRun run = RunConsole(
      {"run", "-"}, {.input = Repeated("VNED REP=2\n", 21), .environment = {{"LANG", "it"}}});
  EXPECT_THAT(run.errors,
              HasSubstr("    VNED REP=2\n    ^\n"
                        "  nessun comando si chiama 'VNED'; forse VEND?\n"
                        "  classe 1: errori di sintassi e di comando\n"
                        "  Nessun comando del file di definizione ha il nome con cui comincia la "
                        "riga.\n"));
  EXPECT_THAT(run.errors, HasSubstr("lorimat: nota: le altre righe con codice 257 si contano"));
  EXPECT_THAT(run.errors,
              HasSubstr("  volte  codice  prima riga        che cosa significa\n"
                        "     21     257  standard input:1  Nessun comando del file di "));
}

// Behind an automatic void the printer is ready, and the library takes a receipt for open.
TEST(RunCauses, ASaleThatOpensNoReceiptIsLedOutInEveryWayToRun) {
  TestFolder folder;
  const std::string file =
      folder.Write("lost.cmd",
                   "VEND REP=1, PRE=5.00\nCHIU\nDOCANNULLO AUTO\nVEND REP=1, PRE=7.00\nCLEAR\n"
                   "VEND REP=1, PRE=8.00\nNOFIS\nCHIU\n");
  const std::string lost =
      "lost.cmd:4: code 1231: ERROR 4/207 : ECR SIGNALS CRITICAL ERROR 207 :\n"
      "    VEND REP=1, PRE=7.00\n"
      "  No sale opens a receipt now: the library takes one for open, and the printer has none. "
      "The "
      "way out is CLEAR, CHIU or RESPRN.\n";
  const std::string batch = folder.Write("batch.cmd", "@" + file + "\n");
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"run", file}, {"run", file, "--batch"}, {"run", batch}}) {
    const ProgramRun run = RunConsole(arguments);
    EXPECT_THAT(run.errors, HasSubstr(lost));
    // The same code for another reason.
    EXPECT_THAT(run.errors, HasSubstr("lost.cmd:7: code 1231"));
    EXPECT_EQ(Count(run.errors, "No sale opens a receipt"), 1);
    EXPECT_THAT(run.output, HasSubstr("8,00"));
  }
}

// They are answered with OK, and sell a hundred times the price.
TEST(RunCauses, ALineThatIsUnderstoodOtherwiseThanItReadsIsTold) {
  const std::string line = "VEND REP=1, PRE='1,50'\n";
  const ProgramRun run = RunLines(line + "CHIU\n");
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, HasSubstr("150,00"));
  EXPECT_THAT(run.errors, HasSubstr("standard input:1:13: warning: "));
  EXPECT_THAT(run.errors, HasSubstr("    VEND REP=1, PRE='1,50'\n                ^\n"));
  EXPECT_THAT(RunLines(line + "CHIU\n", {"--terse"}).errors, IsEmpty());
  // A shell as a pipe tells the same.
  EXPECT_THAT(RunConsole({"shell"}, {.input = line}).errors, HasSubstr("1:13: warning: "));
  EXPECT_THAT(RunConsole({"shell", "--terse"}, {.input = line}).errors, Not(HasSubstr("warning")));
  // Of many that are alike the first ones.
  const ProgramRun many = RunLines(Repeated(line, 30));
  EXPECT_EQ(Count(many.errors, "warning: "), 20);
  EXPECT_EQ(Count(many.errors, "(further lines like this one are not told of)\n"), 1);
}
