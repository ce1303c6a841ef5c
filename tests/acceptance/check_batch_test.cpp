// Batch files under check: the library's own parser without a device, with the place of each
// fault.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "program_run.h"

using nlohmann::json;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

// "line:column severity rule code" of each finding in a batch file of this text.
std::vector<std::string> Findings(const std::string& text, int exit_code) {
  TestFolder folder;
  const ProgramRun run = RunConsole({"check", "--json", folder.Write("lines.cmd", text)});
  EXPECT_EQ(run.exit_code, exit_code) << text;
  EXPECT_THAT(run.errors, IsEmpty()) << text;
  std::vector<std::string> lines;
  const json answer = json::parse(run.output);
  for (const json& finding : answer.at("files").at(0).at("findings")) {
    lines.push_back(std::to_string(finding.value("line", 0)) + ":" +
                    std::to_string(finding.value("column", 0)) + " " +
                    finding.at("severity").get<std::string>() + " " +
                    finding.at("rule").get<std::string>() + " " +
                    std::to_string(finding.value("code", 0)));
  }
  return lines;
}

std::string Suggestion(const std::string& line) {
  TestFolder folder;
  const ProgramRun run = RunConsole({"check", "--json", folder.Write("lines.cmd", line + "\n")});
  return json::parse(run.output)
      .at("files")
      .at(0)
      .at("findings")
      .at(0)
      .value("suggestion", "no suggestion");
}

}  // namespace

TEST(CheckBatch, FaultsAreShownWithLineCaretAndSuggestion) {
  TestFolder folder;
  folder.Write("lines.cmd",
               "; a receipt with faults\n"
               "VNED REP=1, PRE=1.00\n"
               "VEND REP=1, DSE='TE'\n"
               "  VEND DES='CAFF\xC3\x88', R=1\n"
               "VEND REP=1, DES='TE\n"
               "CHIU TEND=CONTANTE\n"
               "CHIU\n");
  const ProgramRun run = RunConsole({"check", "lines.cmd"}, {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_EQ(run.output, ExpectedPaper("check_batch.txt"));
}

TEST(CheckBatch, EveryExampleButTheFailingOneIsGood) {
  for (const auto& entry : std::filesystem::directory_iterator(SourceFile("examples"))) {
    const std::string file = entry.path().string();
    if (entry.path().extension() != ".cmd" || entry.path().stem() == "failing") continue;
    const ProgramRun run = RunConsole({"check", file});
    EXPECT_EQ(run.exit_code, 0) << run.output;
    EXPECT_THAT(run.output, HasSubstr("no faults")) << file;
  }
}

TEST(CheckBatch, EveryCodeOfTheParserIsFoundAtItsPlace) {
  EXPECT_THAT(Findings("WRONG REP=1\n", 1), ElementsAre("1:1 error command-not-found 257"));
  EXPECT_THAT(Findings("P REP=1\n", 1), ElementsAre("1:1 error command-not-unique 258"));
  EXPECT_THAT(Findings("VEND REP=1, COLORE=2\n", 1), ElementsAre("1:13 error field-not-found 260"));
  EXPECT_THAT(Findings("VEND REP=1, R=2\n", 1), ElementsAre("1:13 error field-not-unique 261"));
  EXPECT_THAT(Findings("VEND 'REP'=1\n", 1), ElementsAre("1:6 error quote-in-name 262"));
  EXPECT_THAT(Findings("VEND REP= BANANA , PRE=1\n", 1),
              ElementsAre("1:11 error value-not-found 263"));
  EXPECT_THAT(Findings("VEND DES=A'B'\n", 1), ElementsAre("1:11 error bad-quote 264"));
  EXPECT_THAT(Findings("VEND DES='AB\n", 1), ElementsAre("1:10 error bad-quote 264"));
  EXPECT_THAT(Findings("TOTG NUM=1\n", 1), ElementsAre("1:1 error command-not-supported 268"));
  EXPECT_THAT(Findings("VEND REP=1,,PRE=2\n", 1), ElementsAre("1:12 error field-without-name 261"));
}

// The library parses the fields before it looks for the command's handler.
TEST(CheckBatch, AFieldsFaultComesBeforeACommandWithoutHandler) {
  EXPECT_THAT(Findings("TOTG COLORE=1\n", 1), ElementsAre("1:6 error field-not-found 260"));
}

TEST(CheckBatch, ARunAnswersTheSameCodes) {
  for (const char* line : {"WRONG REP=1", "P REP=1", "VEND REP=1, COLORE=2", "VEND REP=1, R=2",
                           "VEND 'REP'=1", "VEND REP=BANANA", "VEND DES=A'B'", "VEND DES='AB",
                           "VEND DES='A''", "TOTG NUM=1", "TOTG COLORE=1", "VEND REP=1,,PRE=2",
                           "#200 #1=1", "VEND #41=1", "VEND =", "=", "'", "VEND '", "#"}) {
    TestFolder folder;
    const std::string lines = folder.Write("lines.cmd", std::string(line) + "\n");
    const ProgramRun check = RunConsole({"check", "--json", lines});
    ASSERT_EQ(check.exit_code, 1) << line;
    const json found = json::parse(check.output).at("files").at(0).at("findings").at(0);
    const int code = found.at("code");
    EXPECT_THAT(RunConsole({"run", lines}).errors,
                HasSubstr(":1: code " + std::to_string(code) + ":"))
        << line;
  }
}

TEST(CheckBatch, GoodLinesOfEveryFormHaveNoFaults) {
  EXPECT_THAT(Findings("VEND REP=1, PRE=12.34\n"
                       "vend rep=1,pre=1\n"
                       "VENDITA REPARTO=1, PREZZO=1.50 ; a comment\n"
                       "#10 #1=1, #4=1.50\n"
                       "\tVEND\tREP = 1 , DES = 'IT''S; A, =' , RESO\r\n"
                       "\n; nothing\n   \nCHIU",
                       0),
              IsEmpty());
}

TEST(CheckBatch, BlanksAndTabsInFrontCountInTheColumn) {
  EXPECT_THAT(Findings(" \t VEND REP=1, COLORE=2\n", 1),
              ElementsAre("1:16 error field-not-found 260"));
}

TEST(CheckBatch, MisspeltNamesHaveASuggestion) {
  EXPECT_EQ(Suggestion("VNED REP=1"), "VEND");
  EXPECT_EQ(Suggestion("chuu"), "CHIU");
  EXPECT_EQ(Suggestion("VEND REP=1, DSE='X'"), "DES");
  EXPECT_EQ(Suggestion("CHIU TEND=contanti"), "CONTANTI");
  EXPECT_EQ(Suggestion("CHIU TEND=CREDTO"), "CREDITO");
  EXPECT_EQ(Suggestion("XYZXYZ"), "no suggestion");
  EXPECT_EQ(Suggestion(std::string(1000, 'V')), "no suggestion");
}

TEST(CheckBatch, LinesThatRunButDoNotWhatTheySayAreWarnedOf) {
  EXPECT_THAT(Findings("VEND REP=1, REP=2\n", 0), ElementsAre("1:13 warning field-twice 0"));
  EXPECT_THAT(Findings("VEND QTA=1, QUANT=2\n", 0), ElementsAre("1:13 warning field-twice 0"));
  EXPECT_THAT(Findings("PINT RIGA7='X'\n", 0), ElementsAre("1:6 warning field-not-read 0"));
}

TEST(CheckBatch, ABatchInABatchIsAFault) {
  EXPECT_THAT(Findings("  @other.cmd\n", 1), ElementsAre("1:3 error nested-batch 10"));
}

TEST(CheckBatch, LinesThatAreTooLong) {
  EXPECT_THAT(Findings(std::string(2046, ';') + "\n", 0), IsEmpty());
  EXPECT_THAT(Findings(std::string(2047, ';') + "\n", 1),
              ElementsAre("1:0 error line-too-long 274"));
  EXPECT_THAT(Findings("CHIU\n" + std::string(100000, 'x'), 1),
              ElementsAre("2:0 error line-too-long 274"));
}

TEST(CheckBatch, BytesThatTheEyeDoesNotSee) {
  using namespace std::string_literals;
  EXPECT_THAT(Findings("VEND REP=1\0, X=2\n"s, 1), ElementsAre("1:11 error nul-byte 0"));
  EXPECT_THAT(Findings("; a comment\rVEND REP=1\n", 1),
              ElementsAre("1:12 error bare-carriage-return 0"));
}

TEST(CheckBatch, AByteOrderMarkIsNamedAndWhatStandsBehindItIsChecked) {
  TestFolder folder;
  folder.Write("lines.cmd", "\xEF\xBB\xBFVEND REP=1, PER=2\nCHIU\n");
  const ProgramRun run = RunConsole({"check", "lines.cmd"}, {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.output,
            "lines.cmd:1:1: error: the line begins with a byte order mark: the library takes it "
            "for a part of the line, and finds no command (code 257)\n"
            "    \\xEF\\xBB\\xBFVEND REP=1, PER=2\n"
            "    ^\n"
            "lines.cmd:1:16: error: VEND has no field 'PER'; did you mean PRE? (code 260)\n"
            "    \\xEF\\xBB\\xBFVEND REP=1, PER=2\n"
            "                            ^\n"
            "lines.cmd: batch file, 2 commands: 2 errors, 0 warnings\n");
  EXPECT_THAT(Findings("\xEF\xBB\xBF\nCHIU\n", 1), ElementsAre("1:1 error byte-order-mark 257"));
  EXPECT_THAT(Findings("\xEF\xBB\xBF; a comment\nCHIU\n", 1),
              ElementsAre("1:1 error byte-order-mark 257"));
  // Where files were joined.
  EXPECT_THAT(Findings("CHIU\n\xEF\xBB\xBF"
                       "CHIU\n",
                       1),
              ElementsAre("2:1 error byte-order-mark 257"));
}

TEST(CheckBatch, ARunNamesTheByteOrderMark) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "\xEF\xBB\xBFSUBT\nVNED\n");
  const std::string named =
      "lines.cmd:1: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND; the line begins "
      "with a byte order mark, which the library takes for a part of it\n"
      "    \\xEF\\xBB\\xBFSUBT\n";
  const std::string other =
      "lines.cmd:2: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND\n";
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"run", lines}, {"run", "--batch", lines}, {"shell"}}) {
    const ProgramRun run = RunConsole(arguments, {.input = ".batch " + lines + "\n"});
    EXPECT_EQ(run.exit_code, 1) << arguments.back();
    EXPECT_THAT(run.errors, HasSubstr(named)) << arguments.back();
    EXPECT_THAT(run.errors, HasSubstr(other)) << arguments.back();
  }
}

TEST(CheckBatch, AFileInUtf16HasOneFindingThatSaysSo) {
  using namespace std::string_literals;
  const std::string big = "\0C\0H\0I\0U\0\n\0S\0U\0B\0T\0\n"s;
  const std::string little = "C\0H\0I\0U\0\r\0\n\0S\0U\0B\0T\0\r\0\n\0"s;
  const std::string words = "[\0O\0P\0C\0O\0D\0]\0\n\0001\0000\0=\0S\0"s;
  TestFolder folder;
  for (const std::string& text :
       {big, little, "\n\0"s + little, "\xFE\xFF"s + big, "\xFF\xFE"s + little, "\xFF\xFE"s + words,
        words, "\xFF\xFE\xAC\x20\x0A\x00"s}) {
    for (const char* name : {"lines.cmd", "words.ini"}) {
      const ProgramRun run =
          RunConsole({"check", folder.Write(name, text)}, {.folder = folder.path()});
      EXPECT_EQ(run.exit_code, 1) << testing::PrintToString(text);
      EXPECT_THAT(run.output,
                  StartsWith(folder.Path(name) +
                             ": error: the file is UTF-16: the library cannot read it; save it as "
                             "UTF-8 without a byte order mark\n"))
          << testing::PrintToString(text);
      EXPECT_THAT(run.output, EndsWith(": 1 error, 0 warnings\n")) << testing::PrintToString(text);
      EXPECT_THAT(
          RunConsole({"run", "--language", SourceFile("language/merkelin.ini"), folder.Path(name)})
              .errors,
          HasSubstr("the file is UTF-16"))
          << testing::PrintToString(text);
    }
  }
  EXPECT_THAT(Findings(big, 1), ElementsAre("0:0 error utf-16 0"));
  // No UTF-16, but a line with a NUL byte.
  EXPECT_THAT(Findings("C\0HIU\n"s, 1), ElementsAre("1:2 error nul-byte 0"));
}

TEST(CheckBatch, NumbersOfMoreDigitsThanTheLibraryTakesAreWarnedOf) {
  TestFolder folder;
  folder.Write("lines.cmd",
               "VEND REP=1, PRE=99999999999999999999\n"
               "VEND REP=4294967297, PRE=1\n"
               "VEND REP=1, QTA=4294967.297, PRE=1\n"
               "VEND REP=1, PRE=1.23456\n"
               "#10 #1=1, #4='99999999999999999999'\n");
  const ProgramRun run = RunConsole({"check", "lines.cmd"}, {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 0);
  const std::string why = " has more digits than the library takes, which reads ";
  const std::string price = "; write fewer digits, four of them decimals at most\n";
  EXPECT_THAT(run.output, HasSubstr("lines.cmd:1:13: warning: field PRE" + why + "0" + price));
  EXPECT_THAT(run.output, HasSubstr("lines.cmd:2:6: warning: field REP" + why +
                                    "2147483647; write a whole number, no more than 2147483647\n"));
  EXPECT_THAT(run.output, HasSubstr("lines.cmd:3:13: warning: field QTA" + why +
                                    "0.001; write three decimals at most, and no more than "
                                    "2147483.647\n"));
  EXPECT_THAT(run.output, HasSubstr("lines.cmd:4:13: warning: field PRE" + why + "0" + price));
  EXPECT_THAT(run.output, HasSubstr("lines.cmd:5:11: warning: field #4" + why + "0" + price));
  EXPECT_THAT(run.output, EndsWith(": 0 errors, 5 warnings\n"));
  EXPECT_THAT(Findings("VEND REP=1, QTA=2147483.647, PRE=123456789.1234\n"
                       "VEND ART=99999999999999999999, PRE=-1.5\n"
                       "CHIU IMP=0.30\n",
                       0),
              IsEmpty());
}

TEST(CheckBatch, AMissingCommaIsThoughtOf) {
  TestFolder folder;
  folder.Write("lines.cmd", "VEND REP=1 PRE=2\nVEND DES=A B\n");
  const ProgramRun run = RunConsole({"check", "lines.cmd"}, {.folder = folder.path()});
  EXPECT_THAT(run.output, HasSubstr("lines.cmd:1:10: error: '1 PRE=2' is no word for a value; is a "
                                    "comma missing? (code 263)\n"));
  EXPECT_THAT(run.output, HasSubstr("'A B' is no word for a value; a text needs quotes"));
}

TEST(CheckBatch, AMandatoryFieldIsMissed) {
  TestFolder folder;
  const std::string words = folder.Write("words.ini", "[OPCOD]\n10=SELL\n[10]\n1=DEP,O\n4=PRICE\n");
  const std::string lines = folder.Write("lines.cmd", "SELL PRICE=1\nSELL DEP=1\nSELL DEP=''\n");
  const ProgramRun run = RunConsole({"check", lines, "--language", words});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, HasSubstr("lines.cmd:1:1: error: SELL lacks a field that must be given: "
                                    "DEP (code 266)\n"));
  EXPECT_THAT(run.output, Not(HasSubstr("lines.cmd:2")));
  EXPECT_THAT(run.output, HasSubstr("lines.cmd:3:1: error"));
}

TEST(CheckBatch, NothingRunsAndNothingIsWritten) {
  TestFolder folder;
  const std::string lines = folder.Write(
      "lines.cmd", "INFO TIPO=1, FILE='info.txt'\nLEGGI TAB=1, FILE='dump.txt'\nSETP DIR='/'\n");
  const ProgramRun run = RunConsole({"check", "lines.cmd"}, {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 0) << run.output;
  EXPECT_THAT(folder.names(), ElementsAre("lines.cmd"));
}

TEST(CheckFiles, TheKindIsFoundByNameOrContent) {
  TestFolder folder;
  const std::string definition = "; words\n\n[OPCOD]\n18=SUBTOTAL\n";
  for (const char* name : {"words.INI", "words.txt"}) {
    EXPECT_THAT(RunConsole({"check", folder.Write(name, definition)}).output,
                HasSubstr("definition file, 1 command"))
        << name;
  }
  EXPECT_THAT(RunConsole({"check", folder.Write("lines.txt", "; lines\nCHIU\n")}).output,
              HasSubstr("batch file, 1 command: no faults"));
  EXPECT_THAT(RunConsole({"check", folder.Write("lines.ini", "CHIU\n")}).output,
              HasSubstr("definition file"));
  EXPECT_THAT(RunConsole({"check", "--batch-file", folder.Write("lines.ini", "CHIU\n")}).output,
              HasSubstr("batch file, 1 command: no faults"));
  EXPECT_THAT(RunConsole({"check", "--language-file", folder.Write("w", "CHIU\n")}).output,
              HasSubstr("definition file"));
  EXPECT_THAT(RunConsole({"check", folder.Write("empty.cmd", "")}).output,
              HasSubstr("batch file, 0 commands: no faults"));
}

TEST(CheckFiles, OddBytesInFrontOfTheFirstCommandAreNotLost) {
  EXPECT_THAT(Findings("; a\rb\n; fine\nCHIU\n", 1),
              ElementsAre("1:4 error bare-carriage-return 0"));
}

TEST(CheckFiles, StandardInputIsADash) {
  const ProgramRun lines = RunConsole({"check", "-"}, {.input = "VNED\n"});
  EXPECT_EQ(lines.exit_code, 1);
  EXPECT_THAT(lines.output, HasSubstr("standard input:1:1: error: no command is called 'VNED'"));
  const ProgramRun words = RunConsole({"check", "-"}, {.input = "[OPCOD]\n18=SUBTOTAL\n"});
  EXPECT_THAT(words.output, HasSubstr("standard input: definition file, 1 command"));
}

TEST(CheckFiles, StandardInputIsReadOnce) {
  const ProgramRun run = RunConsole({"check", "-", "-"}, {.input = "VNED\n"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_EQ(run.errors, "lorimat: - is given twice, and standard input can be read once\n");
}

TEST(CheckFiles, AFileThatCannotBeReadIsToldAndTheOthersAreChecked) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VNED\n");
  const ProgramRun run = RunConsole({"check", folder.Path("none.cmd"), folder.path(), lines});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("none.cmd: cannot be opened: No such file or directory"));
  EXPECT_THAT(run.errors, HasSubstr("is a directory"));
  EXPECT_THAT(run.output, HasSubstr("lines.cmd:1:1: error"));
}

TEST(CheckFiles, WordsThatTheLibraryRefusesAreNamedWithTheirLine) {
  TestFolder folder;
  const std::string words = folder.Write("words.ini", "[OPCOD]\nSELL\n");
  const ProgramRun run =
      RunConsole({"check", folder.Write("lines.cmd", "CHIU\n"), "--language", words});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr(words + ":2: an entry needs a '='"));
}

TEST(CheckFiles, BinaryFilesAreCheckedLikeAnyOther) {
  TestFolder folder;
  std::string bytes;
  unsigned state = 12345;
  for (int i = 0; i < 200000; ++i) {
    state = state * 1103515245u + 12345u;
    bytes += static_cast<char>(state >> 16);
  }
  for (const char* name : {"binary.ini", "binary.cmd"}) {
    const std::string file = folder.Write(name, bytes);
    const ProgramRun text = RunConsole({"check", file});
    EXPECT_EQ(text.exit_code, 1) << name;
    EXPECT_THAT(text.output, Not(HasSubstr("\x1b"))) << name;
    const ProgramRun as_json = RunConsole({"check", "--json", file});
    EXPECT_EQ(as_json.exit_code, 1) << name;
    EXPECT_GT(json::parse(as_json.output).at("files").at(0).at("errors"), 0) << name;
  }
}

// A terminal gets none of them as they are, and a program gets all.
TEST(CheckFiles, JsonHasNamesAndWordsAsTheyAre) {
  TestFolder folder;
  const std::string odd = "\x1B[2J\u202E\u009B";
  const std::string file = folder.Write("odd" + odd + ".cmd", "X" + odd + "\n");
  const ProgramRun text = RunConsole({"check", file});
  EXPECT_EQ(text.exit_code, 1);
  EXPECT_THAT(text.output, HasSubstr("no command is called 'X\\x1B[2J\\xE2\\x80\\xAE\\xC2\\x9B'"));
  EXPECT_THAT(text.output, Not(HasSubstr("\u202E")));
  const json checked = json::parse(RunConsole({"check", "--json", file}).output).at("files").at(0);
  EXPECT_EQ(checked.at("file"), file);
  EXPECT_EQ(checked.at("findings").at(0).at("what"), "no command is called 'X" + odd + "'");
}

TEST(CheckFiles, WrongUse) {
  EXPECT_EQ(RunConsole({"check"}).exit_code, 2);
  EXPECT_EQ(RunConsole({"check", ""}).exit_code, 2);
  EXPECT_EQ(RunConsole({"check", "--language-file", "--batch-file", "x"}).exit_code, 2);
  const ProgramRun help = RunConsole({"check", "--help"});
  EXPECT_EQ(help.exit_code, 0);
  EXPECT_THAT(help.output, HasSubstr("Examples:"));
  EXPECT_THAT(help.output, HasSubstr("Exit codes:"));
}
