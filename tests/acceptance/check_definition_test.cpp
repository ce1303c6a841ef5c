// Definition files under check: each fault with its line, and what the library does with it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "program_run.h"

using nlohmann::json;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

// Checks a definition file of this text; the first file of the answer.
json Check(const std::string& text, int exit_code) {
  TestFolder folder;
  const ProgramRun run = RunConsole({"check", "--json", folder.Write("words.ini", text)});
  EXPECT_EQ(run.exit_code, exit_code) << text;
  EXPECT_THAT(run.errors, IsEmpty()) << text;
  return json::parse(run.output).at("files").at(0);
}

// "line severity rule" of each finding but those that every small file has.
std::vector<std::string> Findings(const std::string& text, int exit_code) {
  std::vector<std::string> lines;
  const json file = Check(text, exit_code);
  for (const json& finding : file.at("findings")) {
    const std::string rule = finding.at("rule");
    if (rule == "commands-not-bound" || rule == "fields-not-bound") continue;
    lines.push_back(std::to_string(finding.value("line", 0)) + " " +
                    finding.at("severity").get<std::string>() + " " + rule);
  }
  return lines;
}

// What is said of the first finding of a rule.
std::string Said(const std::string& text, const std::string& rule) {
  TestFolder folder;
  const ProgramRun run = RunConsole({"check", "--json", folder.Write("words.ini", text)});
  const json answer = json::parse(run.output);
  for (const json& finding : answer.at("files").at(0).at("findings")) {
    if (finding.at("rule") != rule) continue;
    return finding.at("what").get<std::string>() + ": " + finding.value("effect", "") + "; " +
           finding.value("suggestion", "");
  }
  return "no finding " + rule;
}

}  // namespace

TEST(CheckDefinition, TheFileThatShipsHasNoFaults) {
  const std::string file = SourceFile("language/merkelin.ini");
  const ProgramRun run = RunConsole({"check", file});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_THAT(run.output, testing::MatchesRegex(file + ": definition file, [0-9]+ commands, "
                                                       "[0-9]+ fields, [0-9]+ symbols: no "
                                                       "faults\n"));
}

TEST(CheckDefinition, FaultsAreShownWithFileLineCauseAndEffect) {
  TestFolder folder;
  folder.Write("words.ini",
               "; a file with faults\n"
               "[OPCOD]\n"
               "10=SELL\n"
               "10=SALE\n"
               "151=FAR\n"
               "[10]\n"
               "1=DEPARTMENT1\n"
               "41=FAR\n"
               "[EQU]\n"
               "CASH=1\n"
               "CASH=2\n"
               "[INTMSG]\n"
               "1=123456789012345678901234567890123\n");
  const ProgramRun run = RunConsole({"check", "words.ini"}, {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.output, ExpectedPaper("check_definition.txt"));
}

TEST(CheckDefinition, TheLineAtWhichTheLibraryStopsIsTheOneThatARunNames) {
  for (const char* text : {
           "[OPCOD]\n10=SELL\nVEND\n",
           "[OPCOD]\n10=SELL\n=X\n",
           "[OPCOD]\n0=SELL\n",
           "[OPCOD]\nSELL=10\n",
           "[OPCOD]\n10=SELL\n151=X\n",
           "[OPCOD]\n10=SELL\n[10]\n0=DEP\n",
           "[OPCOD]\n10=SELL\n[10]\nDEP=1\n",
           "[OPCODE]\nx=1\n",
           "x\n",
           "\xEF\xBB\xBF[OPCOD]\n10=SELL\n",
       }) {
    TestFolder folder;
    const std::string words = folder.Write("words.ini", text);
    const ProgramRun run = RunConsole({"run", folder.Write("none.cmd", ""), "--language", words});
    EXPECT_EQ(run.exit_code, 2) << text;
    const json file = Check(text, 1);
    const int line = file.at("stops_at");
    EXPECT_THAT(run.errors, HasSubstr("words.ini:" + std::to_string(line) + ":")) << text;
    EXPECT_THAT(Said(text, "stops-reading"), HasSubstr("stops reading here and answers 2"));
  }
}

TEST(CheckDefinition, WhereTheLibraryReadsOnNothingStopsInARun) {
  for (const char* text : {
           "[OPCOD]\n10=SELL\n-1=X\n150=Y\n",
           "[OPCOD]\n10=SELL\n[10]\n41=X\n-4=Y\n",
           "[OPCOD]\n10=SELL\n[ERRMSG77]\n1=X\n",
           "[OPCOD]\n10=SELL\n[200]\n1=X\n",
           "[OPCOD]\n10=SELL\n[EQU]\nX=y\n12=1\n",
           "[OPCOD]\n10=SELL\n[EQUTASTI]\nX=300\nY=y\n",
           "[OPCOD]\n10=SELL\n[INTMSG]\n77=X\nx='\n",
           "1=X\n[OPCOD]\n10=SELL\n",
       }) {
    TestFolder folder;
    const ProgramRun run = RunConsole(
        {"run", folder.Write("none.cmd", ""), "--language", folder.Write("words.ini", text)});
    EXPECT_EQ(run.exit_code, 0) << text << run.errors;
    EXPECT_FALSE(Check(text, 1).contains("stops_at")) << text;
  }
}

TEST(CheckDefinition, FaultsBehindTheLineThatStopsTheReadingAreFoundToo) {
  EXPECT_THAT(
      Findings("[OPCOD]\nSELL\n10=SELL\n[10]\n41=X\nY\n", 1),
      ElementsAre("2 error stops-reading", "5 error row-out-of-range", "6 error stops-reading"));
}

TEST(CheckDefinition, RowsOutOfRange) {
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n-3=X\n", 1), ElementsAre("3 error row-out-of-range"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[10]\n1=A\n40=B,1\n41=C\n", 1),
              ElementsAre("5 note alias", "6 error row-out-of-range"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[INTMSG]\n39=A\n40=B\n", 1),
              ElementsAre("5 error row-out-of-range"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[TOTG]\n99=A\n100=B\n-1=C\n", 1),
              ElementsAre("5 error row-out-of-range", "6 error row-out-of-range"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[ERRMSG2]\n19=A\n20=B\n107=C\n", 1),
              ElementsAre("5 error row-out-of-range", "6 error row-out-of-range"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[ERRMSG]\n49=A\n50=B\n", 1),
              ElementsAre("5 error row-out-of-range"));
}

TEST(CheckDefinition, RowHundredAndFiftyIsReadAndNeverFound) {
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n150=LAST,11\n", 1),
              ElementsAre("3 error row-out-of-reach"));
  EXPECT_THAT(Said("[OPCOD]\n150=LAST\n", "row-out-of-reach"),
              HasSubstr("reads it and never finds it"));
}

TEST(CheckDefinition, TextsThatAreTooLongOrBadlyQuotedHaveNoEffect) {
  const std::string fits(32, 'x');
  EXPECT_THAT(Findings("[OPCOD]\n10=S\n[INTMSG]\n1=" + fits + "\n2=" + fits + "x\n", 1),
              ElementsAre("5 error text-too-long"));
  EXPECT_THAT(Findings("[OPCOD]\n10=S\n[TOTG]\n1='" + fits + "'\n2='" + fits + "x'\n", 1),
              ElementsAre("5 error text-too-long"));
  EXPECT_THAT(Findings("[OPCOD]\n10=S\n[TOTG]\n1='OPEN\n2='A''B'\n3=A'B'\n", 1),
              ElementsAre("4 error bad-quote", "6 error bad-quote"));
  // A message may have 80 characters, any other side of an entry 79.
  EXPECT_THAT(Findings("[OPCOD]\n10=S\n[ERRMSG1]\n1=" + std::string(80, 'x') + "\n", 0), IsEmpty());
  EXPECT_THAT(Findings("[OPCOD]\n10=S\n[ERRMSG1]\n1='" + std::string(80, 'x') + "'\n", 0),
              IsEmpty());
  EXPECT_THAT(Findings("[OPCOD]\n10=S\n[ERRMSG1]\n1=" + std::string(81, 'x') + "\n", 1),
              ElementsAre("4 error text-too-long"));
  EXPECT_THAT(Findings("[OPCOD]\n10=S\n[EQU]\n" + std::string(80, 'x') + "=1\n", 1),
              Contains("4 error part-too-long"));
}

TEST(CheckDefinition, LongLinesMatterOnlyWhereTheCutTakesMoreThanAComment) {
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL ;" + std::string(300, 'x') + "\n", 0), IsEmpty());
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL" + std::string(300, ' ') + "; x\n", 0), IsEmpty());
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[ERRMSG1]\n1=" + std::string(251, ' ') + "XY\n", 1),
              ElementsAre("4 error line-too-long"));
}

TEST(CheckDefinition, NamesThatAreCutMissingOrCannotBeWritten) {
  EXPECT_THAT(Findings("[OPCOD]\n10=TENLETTERS\n11=ELEVENCHARS\n", 1),
              ElementsAre("3 error name-too-long"));
  EXPECT_THAT(Said("[OPCOD]\n11=ELEVENCHARS\n", "name-too-long"), HasSubstr("'ELEVENCHAR'"));
  EXPECT_THAT(Findings("[OPCOD]\n10=\n11=,O\n12=A B\n14=@X\n15=#1\n16=IT'S'\n", 1),
              ElementsAre("2 error name-missing", "3 error name-never-found",
                          "4 error name-never-found", "5 error name-never-found",
                          "6 error name-never-found", "7 error name-never-found"));
  // A field's name may hold a blank.
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[10]\n1=A B\n", 0), IsEmpty());
}

TEST(CheckDefinition, NumbersBehindTheName) {
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL,\n11=PAY,O\n12=LESS,x\n", 0),
              ElementsAre("3 warning mark-without-effect", "4 warning not-a-number"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL,150\n11=PAY,-1\n", 1),
              ElementsAre("2 error number-out-of-range", "3 error number-out-of-range"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[10]\n1=A,O\n2=B,41\n", 1),
              ElementsAre("5 error number-out-of-range"));
}

TEST(CheckDefinition, CommandsOfTheSameNameAreAmbiguous) {
  const std::string text = "[OPCOD]\n10=SELL\n11=sell\n";
  EXPECT_THAT(Findings(text, 1), ElementsAre("2 error name-ambiguous", "3 error name-ambiguous"));
  EXPECT_THAT(Said(text, "name-ambiguous"), AllOf(HasSubstr("sell (line 3)"), HasSubstr("258")));
}

TEST(CheckDefinition, AnExactNameBehindTwoLongerOnesIsNotFound) {
  // Two longer names are ambiguous before the exact one is reached.
  EXPECT_THAT(Findings("[OPCOD]\n10=TOTALX\n11=TOTALY\n12=TOTAL\n", 1),
              Contains("4 error name-ambiguous"));
  EXPECT_THAT(Findings("[OPCOD]\n10=TOTALX\n11=TOTAL\n12=TOTALY\n", 0),
              ElementsAre("2 note name-begins-another", "4 note name-begins-another"));
}

TEST(CheckDefinition, FieldNamesThatShadowEachOther) {
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[10]\n1=DEP\n2=DEP\n", 1),
              Contains("5 error name-shadowed"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[10]\n1=AB\n2=ABCX\n3=ABC\n", 1),
              Contains("6 error name-ambiguous"));
}

TEST(CheckDefinition, AliasesAreNotesAndShownOnRequest) {
  TestFolder folder;
  const std::string words =
      folder.Write("words.ini", "[OPCOD]\n10=SELL\n90=VENDE,10\n[10]\n1=DEP\n30=SECTION,1\n");
  const ProgramRun plain = RunConsole({"check", words});
  EXPECT_EQ(plain.exit_code, 0);
  EXPECT_THAT(plain.output, Not(HasSubstr("note:")));
  const ProgramRun notes = RunConsole({"check", "--notes", words});
  EXPECT_EQ(notes.exit_code, 0);
  EXPECT_THAT(notes.output, HasSubstr(words + ":3: note: VENDE is another name of SELL\n"));
  EXPECT_THAT(notes.output, HasSubstr(words + ":6: note: SECTION is another name of DEP\n"));
}

TEST(CheckDefinition, ARowThatTakesTheNumberOfAnotherFieldIsWarnedOf) {
  // Row 2 is the number of a field that the sale reads.
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[10]\n1=DEP\n2=SECTION,1\n", 0),
              ElementsAre("5 note alias", "5 warning row-not-number"));
  EXPECT_THAT(Findings("[OPCOD]\n90=SELL,10\n", 0), ElementsAre("2 warning row-not-number"));
}

TEST(CheckDefinition, SectionsThatAreOpenedTwice) {
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[10]\n1=DEP\n4=PRICE\n[10]\n2=PLU\n", 1),
              ElementsAre("5 error row-out-of-reach", "6 warning section-twice"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[10]\n1=DEP\n[10]\n2=PLU\n", 0),
              ElementsAre("5 warning section-twice"));
}

TEST(CheckDefinition, RowsThatAreGivenTwice) {
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n10=SALE\n11=PAY\n11=PAY\n", 1),
              ElementsAre("3 error row-twice", "5 warning row-twice"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[TOTG]\n1=A\n1=B\n", 0),
              ElementsAre("5 warning row-twice"));
}

TEST(CheckDefinition, SectionsThatNothingReads) {
  EXPECT_THAT(Said("[OPCODE]\n10=SELL\n", "unknown-section"), HasSubstr("; [OPCOD]"));
  EXPECT_THAT(Said("[opcod]\n10=SELL\n", "unknown-section"), HasSubstr("; [OPCOD]"));
  EXPECT_THAT(Said("[10 ]\n1=DEP\n", "unknown-section"), HasSubstr("the command 10; [10]"));
  EXPECT_THAT(Said("[OPCOD\n10=SELL\n", "header-not-closed"), HasSubstr("section 'OPCO'"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[ERRMSG10]\n1=X\n[150]\n1=X\n[0]\n1=X\n", 1),
              ElementsAre("3 error unknown-section", "5 error section-out-of-range",
                          "7 error section-out-of-range"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\n[11]\n1=TENDER\n", 0),
              ElementsAre("3 warning section-without-command"));
}

TEST(CheckDefinition, FieldsAndCommandsWithoutAHandlerOrWithoutAWord) {
  // A payment reads the fields 1 and 2.
  EXPECT_THAT(Findings("[OPCOD]\n11=PAY\n[11]\n1=TENDER\n2=AMOUNT\n3=TIP\n", 0),
              ElementsAre("6 warning field-not-read"));
  EXPECT_THAT(Said("[OPCOD]\n11=PAY\n[11]\n2=AMOUNT\n", "fields-not-bound"),
              HasSubstr("PAY (command 11) reads fields that have no word: 1:"));
  EXPECT_THAT(Findings("[OPCOD]\n18=SUBTOTAL\n99=DANCE\n", 0),
              ElementsAre("3 warning command-not-supported"));
  // The words of dumps are no commands, and no fault.
  EXPECT_THAT(Findings("[OPCOD]\n61=TOTG\n[61]\n1=NUM\n2=QTA\n3=TOT\n", 0), IsEmpty());
  EXPECT_THAT(Said("[OPCOD]\n18=SUBTOTAL\n", "commands-not-bound"),
              HasSubstr("of the library's commands have no word: 1, 2, 3, 4, 5, 8, "));
}

TEST(CheckDefinition, Symbols) {
  EXPECT_THAT(Findings("[OPCOD]\n18=S\n[EQU]\nA=1\na=2\nA=3\n", 1),
              ElementsAre("6 error symbol-twice"));
  EXPECT_THAT(
      Findings("[OPCOD]\n18=S\n[EQU]\n12=1\n1.5=2\nELEVENCHARS=3\nB=x\nC=\nD'=1\n", 1),
      ElementsAre("4 error name-never-found", "5 error name-never-found", "6 error name-too-long",
                  "7 error not-a-number", "8 error not-a-number", "9 error name-never-found"));
}

TEST(CheckDefinition, KeyCodes) {
  EXPECT_THAT(
      Findings("[OPCOD]\n18=S\n[EQUTASTI]\nA=0\nB=255\nC=256\nD=299\nE=300\nF=-1\nG=0\n", 0),
      ElementsAre("6 warning key-out-of-range", "7 warning key-out-of-range",
                  "8 warning key-out-of-range", "9 warning key-out-of-range",
                  "10 warning key-twice"));
  // The symbol is kept, and a second one of its name is one too many.
  EXPECT_THAT(Findings("[OPCOD]\n18=S\n[EQUTASTI]\nA=300\nA=5\n", 1),
              ElementsAre("4 warning key-out-of-range", "5 error symbol-twice"));
  const json file = Check("[OPCOD]\n18=S\n[EQUTASTI]\nA=300\nB=-1\n", 0);
  // A key has one byte: 300 is 256 and 44, -1 is 255.
  EXPECT_EQ(file.at("findings").at(0).at("effect"),
            "no command plays it, and a key programmed with it gets the code 44");
  EXPECT_EQ(file.at("findings").at(1).at("effect"),
            "no command plays it, and a key programmed with it gets the code 255");
}

TEST(CheckDefinition, MoreSymbolsThanTheLibraryHolds) {
  std::string text = "[OPCOD]\n18=S\n[EQU]\n";
  for (int i = 1; i <= 299; ++i) text += "S" + std::to_string(i) + "=1\n";
  EXPECT_THAT(Findings(text, 0), IsEmpty());
  // The 300th stands behind three lines and 299 symbols; one finding tells of all.
  EXPECT_THAT(Findings(text + "A=1\nB=2\n", 1), ElementsAre("303 error too-many-symbols"));
}

TEST(CheckDefinition, FlagsOfDumpsHaveToLoadBack) {
  EXPECT_THAT(Findings("[OPCOD]\n3=READ\n[3]\n1=T\n2=F\n3=A\n4=P\n5=L\n7=E\n", 0),
              ElementsAre("0 warning flag-not-read-back", "0 warning flag-not-read-back"));
  EXPECT_THAT(Findings("[OPCOD]\n3=READ\n[EQU]\nYES=2\nNO=1\n[INTMSG]\n5=YES\n", 0), IsEmpty());
  EXPECT_THAT(Findings("[OPCOD]\n3=READ\n[EQU]\nSI=2\nNO=1\n[INTMSG]\n5=YES\n", 0),
              ElementsAre("7 warning flag-not-read-back"));
}

TEST(CheckDefinition, BytesThatTheEyeDoesNotSee) {
  using namespace std::string_literals;
  EXPECT_THAT(Findings("[OPCOD]\n10=SE\0LL\n"s, 1), ElementsAre("2 error nul-byte"));
  EXPECT_THAT(Findings("[OPCOD]\n10=SELL\r11=PAY\n", 1), Contains("2 error bare-carriage-return"));
  EXPECT_THAT(Findings("[OPCOD]\r\n10=SELL\r\n", 0), IsEmpty());
  EXPECT_THAT(Findings("\xEF\xBB\xBF[OPCOD]\n10=SELL\n", 1), Contains("1 error byte-order-mark"));
}

TEST(CheckDefinition, AFileWithoutCommands) {
  EXPECT_THAT(Findings("", 1), ElementsAre("0 error no-commands"));
  EXPECT_THAT(Findings("; nothing\n[EQU]\nA=1\n", 1), ElementsAre("0 error no-commands"));
}

TEST(CheckDefinition, EntriesInFrontOfTheFirstSection) {
  EXPECT_THAT(Findings("1=A\n2=B\n[OPCOD]\n18=S\n", 1),
              ElementsAre("1 error entry-before-section"));
}

TEST(CheckDefinition, MillionsOfFaultsAreCountedAndTheFirstThousandShown) {
  std::string text = "[OPCOD]\n18=S\n";
  for (int i = 0; i < 3000; ++i) text += "-1=X\n";
  const json file = Check(text, 1);
  EXPECT_EQ(file.at("errors"), 3000);
  EXPECT_EQ(file.at("findings").size(), 1000u);
  TestFolder folder;
  const ProgramRun run = RunConsole({"check", folder.Write("words.ini", text)});
  EXPECT_THAT(run.output, HasSubstr(" more are not shown\n"));
  EXPECT_THAT(run.output, HasSubstr(": 3000 errors, "));
}

TEST(CheckDefinition, ALongFileShowsProgressOnATerminal) {
  TestFolder folder;
  std::string text = "[OPCOD]\n18=S\n";
  for (int i = 0; i < 2000; ++i) text += "; a comment of a long file\n";
  const std::string words = folder.Write("words.ini", text);
  EXPECT_THAT(RunConsole({"check", words}, {.errors_to_terminal = true}).errors,
              HasSubstr("100%\r\x1b[K"));
  EXPECT_THAT(RunConsole({"check", words}).errors, IsEmpty());
}
