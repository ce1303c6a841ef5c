// Colours: on a terminal, and nowhere else.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>

#include "program_run.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

constexpr const char* kBold = "\x1b[1m";
constexpr const char* kBoldRed = "\x1b[1m\x1b[31m";
constexpr const char* kBoldYellow = "\x1b[1m\x1b[33m";
constexpr const char* kCyan = "\x1b[36m";
constexpr const char* kGreen = "\x1b[32m";
constexpr const char* kEnd = "\x1b[0m";

std::string In(const char* colour, const std::string& text) { return colour + text + kEnd; }

std::string WithoutColours(const std::string& text) {
  return std::regex_replace(text, std::regex("\x1b\\[[0-9;]*m"), "");
}

// Both streams on terminals.
ProgramSetting Terminal(const std::map<std::string, std::string>& environment = {}) {
  return {.environment = environment, .errors_to_terminal = true, .output_to_terminal = true};
}

// Commands that colour something, on either stream.
std::vector<std::vector<std::string>> Colourful(const TestFolder& folder) {
  const std::string lines = folder.Write("lines.cmd", "VNED\nVEND REP=1, PRE=1\n");
  const std::string words = folder.Write("words.ini", "[OPCOD]\n10=SELL\n11=SELL\n");
  return {{"run", lines}, {"check", lines, words}, {"explain", "257"}, {"words"}, {"run", "/none"}};
}

}  // namespace

TEST(Colours, ATerminalGetsThemAndTheTextIsTheSame) {
  TestFolder folder;
  for (const auto& command : Colourful(folder)) {
    const ProgramRun plain = RunConsole(command);
    const ProgramRun coloured = RunConsole(command, Terminal());
    EXPECT_THAT(coloured.output + coloured.errors, HasSubstr("\x1b[")) << command[0];
    EXPECT_EQ(WithoutColours(coloured.output), plain.output) << command[0];
    EXPECT_EQ(WithoutColours(coloured.errors), plain.errors) << command[0];
    EXPECT_EQ(coloured.exit_code, plain.exit_code) << command[0];
  }
}

TEST(Colours, APipeGetsNone) {
  TestFolder folder;
  for (const auto& command : Colourful(folder)) {
    const ProgramRun run = RunConsole(command);
    EXPECT_THAT(run.output + run.errors, Not(HasSubstr("\x1b"))) << command[0];
  }
}

TEST(Colours, EachStreamIsLookedAtByItself) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VNED\n");
  const ProgramRun errors_only =
      RunConsole({"check", lines, "/none"}, {.errors_to_terminal = true});
  EXPECT_THAT(errors_only.output, Not(HasSubstr("\x1b")));
  EXPECT_THAT(errors_only.errors, HasSubstr("\x1b["));
  const ProgramRun output_only =
      RunConsole({"check", lines, "/none"}, {.output_to_terminal = true});
  EXPECT_THAT(output_only.output, HasSubstr("\x1b["));
  EXPECT_THAT(output_only.errors, Not(HasSubstr("\x1b")));
}

TEST(Colours, NoColorTakesThemAway) {
  TestFolder folder;
  for (const auto& command : Colourful(folder)) {
    const ProgramRun run = RunConsole(command, Terminal({{"NO_COLOR", "1"}}));
    EXPECT_THAT(run.output + run.errors, Not(HasSubstr("\x1b"))) << command[0];
  }
}

TEST(Colours, AnEmptyNoColorCountsAsNotSet) {
  const ProgramRun run = RunConsole({"explain", "257"}, Terminal({{"NO_COLOR", ""}}));
  EXPECT_THAT(run.output, HasSubstr("\x1b["));
}

TEST(Colours, ADumbOrUnnamedTerminalGetsNone) {
  TestFolder folder;
  for (const char* name : {"dumb", ""}) {
    for (const auto& command : Colourful(folder)) {
      const ProgramRun run = RunConsole(command, Terminal({{"TERM", name}}));
      EXPECT_THAT(run.output + run.errors, Not(HasSubstr("\x1b"))) << command[0];
    }
  }
}

TEST(Colours, ThePaperHasNone) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VEND REP=1, PRE=1\nCHIU\n");
  const ProgramRun run = RunConsole({"run", lines}, Terminal());
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, Not(IsEmpty()));
  EXPECT_THAT(run.output, Not(HasSubstr("\x1b")));
}

TEST(Colours, JsonHasNone) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VNED\n");
  for (const auto& command : std::vector<std::vector<std::string>>{
           {"check", "--json", lines}, {"explain", "--json", "1"}, {"words", "--json"}}) {
    EXPECT_THAT(RunConsole(command, Terminal()).output, Not(HasSubstr("\x1b"))) << command[0];
  }
}

TEST(Colours, RunMarksThePlaceAndTheCode) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VNED\nVEND REP=1, PRE=1\n");
  const ProgramRun run = RunConsole({"run", lines}, Terminal());
  EXPECT_EQ(run.errors, In(kBold, lines + ":1:") + " " + In(kBoldRed, "code 257:") +
                            " ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND\n    VNED\n    " +
                            In(kGreen, "^") +
                            "\n  no command is called 'VNED'; did you mean VEND?\n"
                            "  class 1: syntax and command errors\n"
                            "  No command of the definition file has the name that the line begins "
                            "with.\n" +
                            "  times  code  " + "first line" + std::string(lines.size() - 8, ' ') +
                            "  what it means\n      1   257  " + lines +
                            ":1  No command of the definition file has the name that the line "
                            "begins with.\n" +
                            In(kBoldRed, "lorimat:") + " 1 of 2 lines failed\n" +
                            In(kBold, "lorimat:") + " " + In(kCyan, "note:") + " " + lines +
                            " ends, and the receipt is open, with 1 item and a subtotal of "
                            "1,00: it is gone with the register in memory\n");
}

TEST(Colours, CheckMarksPlaceKindAndCaret) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VNED REP=1\nVEND REP=1, REP=1, PRE=1\n");
  const ProgramRun run = RunConsole({"check", lines}, Terminal());
  EXPECT_EQ(
      run.output,
      In(kBold, lines + ":1:1:") + " " + In(kBoldRed, "error:") +
          " no command is called 'VNED'; did you mean VEND? (code 257)\n    VNED REP=1\n    " +
          In(kGreen, "^") + "\n" + In(kBold, lines + ":2:13:") + " " + In(kBoldYellow, "warning:") +
          " field REP is given twice; the last value counts\n"
          "    VEND REP=1, REP=1, PRE=1\n                " +
          In(kGreen, "^") + "\n" + In(kBold, lines + ":") + " batch file, 2 commands: " +
          In(kBoldRed, "1 error") + ", " + In(kBoldYellow, "1 warning") + "\n");
}

TEST(Colours, CheckMarksNotesAndAFileWithoutFaults) {
  TestFolder folder;
  const std::string words = folder.Write("words.ini", "[OPCOD]\n10=SELL\n11=SALE,10\n");
  const ProgramRun notes = RunConsole({"check", "--notes", words}, Terminal());
  EXPECT_THAT(notes.output, HasSubstr(In(kCyan, "note:") + " SALE is another name of SELL"));
  const std::string lines = folder.Write("lines.cmd", "SUBT\n");
  const ProgramRun good = RunConsole({"check", lines}, Terminal());
  EXPECT_EQ(good.output,
            In(kBold, lines + ":") + " batch file, 1 command: " + In(kGreen, "no faults") + "\n");
}

TEST(Colours, ExplainAndWordsMarkTheirHeadings) {
  const ProgramRun code = RunConsole({"explain", "257"}, Terminal());
  EXPECT_THAT(code.output, HasSubstr(In(kBold, "257: class 1, index 1") + "\n"));
  EXPECT_THAT(code.output, HasSubstr("  " + In(kBold, "Class") + "   1: syntax"));
  EXPECT_THAT(code.output, HasSubstr("  " + In(kBold, "From") + "    given by the library\n"));
  const ProgramRun words = RunConsole({"words", "--command", "SUBT"}, Terminal());
  EXPECT_THAT(words.output,
              testing::StartsWith(
                  In(kBold, "  No  Command     Short       Field  Name        Short") + "\n"));
}
