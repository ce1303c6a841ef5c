// Lines that the library takes and understands otherwise than they read: check names each one with
// its place, what will happen, and what to write instead.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "program_run.h"

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

json FindingsOf(const std::string& text) {
  TestFolder folder;
  const ProgramRun run = RunConsole({"check", "--json", folder.Write("lines.cmd", text + "\n")});
  EXPECT_THAT(run.errors, IsEmpty()) << text;
  return json::parse(run.output).at("files").at(0).at("findings");
}

// "line:column rule", and behind it the word that is better, of each finding.
std::vector<std::string> Traps(const std::string& text) {
  std::vector<std::string> lines;
  for (const json& finding : FindingsOf(text)) {
    std::string line = std::to_string(finding.value("line", 0)) + ":" +
                       std::to_string(finding.value("column", 0)) + " " +
                       finding.at("rule").get<std::string>();
    if (finding.contains("suggestion")) line += " " + finding.at("suggestion").get<std::string>();
    lines.push_back(line);
  }
  return lines;
}

std::string PaperOf(const std::string& lines) {
  TestFolder folder;
  return RunConsole({"run", folder.Write("lines.cmd", lines)}).output;
}

}  // namespace

TEST(CheckTraps, ACommaInANumberIsNoDecimalPoint) {
  EXPECT_THAT(Traps("VEND REP=1, PRE='1,50'"), ElementsAre("1:13 number-text PRE=1.50"));
  EXPECT_THAT(Traps("VEND REP=1, QTA='1,5', PRE=1"), ElementsAre("1:13 number-text QTA=1.5"));
  EXPECT_THAT(Traps("CHIU IMP='200,00'"), ElementsAre("1:6 number-text IMP=200.00"));
  EXPECT_THAT(Traps("PERCA PERC='7,5'"), ElementsAre("1:7 number-text PERC=7.5"));
  EXPECT_THAT(Traps("PREP REP=1, LIMITE='99,90'"), ElementsAre("1:13 number-text LIMITE=99.90"));
  EXPECT_THAT(Traps("PIVA IVA=1, ALIQ='22,5'"), ElementsAre("1:13 number-text ALIQ=22.5"));
  EXPECT_THAT(Traps("INP NUM='10,00', TASTO=ST01"), ElementsAre("1:5 number-text NUM=10.00"));
  EXPECT_THAT(Traps("INP NUM='1,50', TASTO=REP01"), ElementsAre("1:5 keyed-text NUM=1.50"));
  EXPECT_THAT(Traps("VEND REP=1, PRE='1.234,56'"), ElementsAre("1:13 number-text PRE=1234.56"));
  EXPECT_THAT(Traps("VEND REP=1, PRE='1,234.56'"), ElementsAre("1:13 number-text PRE=1234.56"));
}

TEST(CheckTraps, OtherSignsInANumberAreSkippedOrSpoilIt) {
  for (const char* number : {"12 34", "1e3", "EUR 5", "1-2", "x", "-", "1.2.3x"}) {
    EXPECT_THAT(Traps("VEND REP=1, PRE='" + std::string(number) + "'"),
                ElementsAre("1:13 number-text"))
        << number;
  }
  EXPECT_EQ(FindingsOf("VEND REP=1, PRE='12 34'").at(0).at("effect"), "the library reads 1234");
  EXPECT_EQ(FindingsOf("VEND REP=1, PRE='1e3'").at(0).at("effect"), "the library reads 13");
  EXPECT_EQ(FindingsOf("VEND REP=1, PRE='x'").at(0).at("effect"), "the library reads 0");
  EXPECT_THAT(Traps("VEND REP='2X', PRE=1"), ElementsAre("1:6 number-text"));
  EXPECT_THAT(Traps("VEND REP=1.9, PRE=1"), ElementsAre("1:6 number-misread"));
  // A number in quotes is one all the same.
  EXPECT_THAT(Traps("VEND REP='1', PRE='1.50', QTA='.5'"), IsEmpty());
}

// What check says that the library reads is what the register sells.
TEST(CheckTraps, ARunReadsWhatCheckSays) {
  const struct {
    const char* line;
    const char* reads;
    const char* sold;
  } kLines[] = {{"VEND REP=1, PRE='1,50'", "150", "      150,00\n"},
                {"VEND REP=1, PRE='12 34'", "1234", "     1234,00\n"},
                {"VEND REP=1, PRE='1e3'", "13", "       13,00\n"},
                {"VEND REP=1, QTA='1,5', PRE=1", "15", "  15 x 1,00\n"}};
  for (const auto& row : kLines) {
    EXPECT_EQ(FindingsOf(row.line).at(0).at("effect"),
              "the library reads " + std::string(row.reads))
        << row.line;
    EXPECT_THAT(PaperOf(row.line), HasSubstr(row.sold)) << row.line;
  }
}

TEST(CheckTraps, AnUnquotedCommaIsTakenForADecimalComma) {
  TestFolder folder;
  folder.Write("lines.cmd",
               "VEND REP=1, PRE=1,50\nVEND REP=1, PRE=1, 50\nVEND REP=1, DES='1',50\n");
  const ProgramRun run = RunConsole({"check", "lines.cmd"}, {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output,
              HasSubstr("lines.cmd:1:19: error: a comma ends field PRE, and '50' is taken for the "
                        "name of the next one; decimals stand behind a point: the line is "
                        "refused; did you mean PRE=1.50? (code 260)\n"
                        "    VEND REP=1, PRE=1,50\n"
                        "                      ^\n"));
  EXPECT_THAT(run.output, HasSubstr("lines.cmd:3:21: error: VEND has no field '50' (code 260)\n"));
  EXPECT_THAT(Traps("VEND REP=1, QTA=1,5"), ElementsAre("1:19 decimal-comma QTA=1.5"));
}

TEST(CheckTraps, AQuantityOfNothingSellsOnePiece) {
  EXPECT_THAT(Traps("VEND REP=1, QTA=0, PRE=2"), ElementsAre("1:13 quantity-zero"));
  EXPECT_THAT(Traps("VEND REP=1, QTA=, PRE=2"), ElementsAre("1:13 quantity-zero"));
  EXPECT_THAT(Traps("VEND REP=1, QTA=0.0001, PRE=2"),
              ElementsAre("1:13 number-misread", "1:13 quantity-zero"));
  EXPECT_THAT(PaperOf("VEND REP=1, QTA=0, PRE=2\n"), HasSubstr("       2,00\n"));
  EXPECT_THAT(Traps("VEND REP=1, QTA=4294968, PRE=10"), ElementsAre("1:13 number-misread"));
  EXPECT_THAT(FindingsOf("VEND REP=1, QTA=4294968, PRE=10").at(0).at("what"),
              "field QTA has more digits than the library takes, which reads 0.704");
  EXPECT_THAT(PaperOf("VEND REP=1, QTA=4294968, PRE=10\n"), HasSubstr("  0,704 x 10,00\n"));
  EXPECT_THAT(Traps("VEND REP=1, QTA=0.001, PRE=10"), IsEmpty());
}

TEST(CheckTraps, ANumbersFieldWithoutANumberReadsZero) {
  EXPECT_THAT(Traps("CHIU IMP"), ElementsAre("1:6 number-bare"));
  EXPECT_THAT(Traps("REPORT STAMPA"), ElementsAre("1:8 number-bare"));
  EXPECT_THAT(Traps("VEND REP=1, PRE=CONTANTI"), ElementsAre("1:13 word-as-number"));
  EXPECT_THAT(Traps("VEND REP=REP05, PRE=1"), ElementsAre("1:6 word-as-number"));
  EXPECT_THAT(Traps("REPORT STAMPA=NO"), ElementsAre("1:8 word-as-number"));
  EXPECT_THAT(Traps("AZZGIO TIPO=XGIORNO"), ElementsAre("1:8 word-as-number"));
  EXPECT_THAT(Traps("PTAST POS=300, COD=REP01"), ElementsAre("1:7 number-cut"));
  EXPECT_THAT(Traps("CHIU TEND=CARTA"), IsEmpty());
  EXPECT_THAT(Traps("REPORT STAMPA=0, FILE='x.txt'"), IsEmpty());
}

TEST(CheckTraps, ASubtotalThatIsNoNumberIsRefused) {
  EXPECT_THAT(Traps("CHKSUB IMP='1,00'"), ElementsAre("1:8 number-refused IMP=1.00"));
  EXPECT_EQ(FindingsOf("CHKSUB IMP='1,00'").at(0).at("code"), 266);
  EXPECT_EQ(FindingsOf("CHKSUB IMP='1,00'").at(0).at("severity"), "error");
}

TEST(CheckTraps, FieldsThatACommandLeavesAloneAreNamed) {
  EXPECT_THAT(Traps("VEND REP=1, PRE=1, COUPON, STORNO"), ElementsAre("1:28 field-unused"));
  EXPECT_THAT(Traps("VEND REP=1, PRE=1, RESO, STORNO"), ElementsAre("1:20 field-unused"));
  EXPECT_THAT(Traps("VEND REP=1, PRE=1, RIGASOPRA"), ElementsAre("1:20 field-unused-without"));
  EXPECT_THAT(Traps("INP NUM=1, ALFA='X', TASTO=REP01"), ElementsAre("1:12 field-unused"));
  EXPECT_THAT(Traps("ALLEG INIZIO, MSG='X'"), ElementsAre("1:15 field-unused"));
  EXPECT_THAT(Traps("NOFIS MSG='X', OPZ=TAGLIO"), ElementsAre("1:7 text-not-printed"));
  EXPECT_THAT(Traps("ALLEG MSG='X', OPZ=TAGLIO"), IsEmpty()) << "there it is printed";
  EXPECT_THAT(Traps("PIVA IVA=1"), ElementsAre("1:1 does-nothing"));
  EXPECT_THAT(Traps("PRMSG"), ElementsAre("1:1 does-nothing"));
  EXPECT_THAT(Traps("CORT DES='X'"), IsEmpty());
  EXPECT_THAT(Traps("NOFIS MSG='2012345678906', BARCODE=EAN"),
              ElementsAre("1:7 check-digit-replaced MSG='2012345678903'"));
  EXPECT_THAT(Traps("NOFIS MSG='2012345678903', BARCODE=EAN"), IsEmpty());
  EXPECT_THAT(Traps("NOFIS MSG='2012345678906'"), IsEmpty());
  EXPECT_THAT(Traps("ALLEG MSG='2012345678906', BARCODE"),
              ElementsAre("1:7 check-digit-refused MSG='2012345678903'"));
  EXPECT_THAT(Traps("ALLEG MSG='2012345678903', BARCODE=EAN"), IsEmpty());
  EXPECT_THAT(Traps("PTAST POS=1, COD=MACRO01, MACRO='N1 TOTALE'"),
              ElementsAre("1:27 macro-last-key"));
  EXPECT_THAT(Traps("PTAST POS=1, COD=MACRO01, MACRO='N1 TOTALE '"), IsEmpty());
}

TEST(CheckTraps, AmountsThatReachTheDeviceOtherwise) {
  EXPECT_THAT(Traps("VEND REP=1, PRE=50, ACCONTO, QTA=2"), ElementsAre("1:30 deposit-quantity"));
  EXPECT_THAT(Traps("VEND REP=1, PRE=214748.3648, MONOUSO"), ElementsAre("1:13 deposit-too-large"));
  EXPECT_THAT(Traps("VEND REP=1, PRE=214748.3647, MONOUSO"), IsEmpty());
  // 430000.0000 in ten-thousandths is 4300000000; 4300000000 - 4294967296 = 5032704
  EXPECT_EQ(FindingsOf("VEND REP=1, PRE=430000, ACCONTO").at(0).at("effect"),
            "the device gets 503.2704");
  EXPECT_THAT(Traps("VEND REP=1, PRE=9, QTA=2, UNITARIO=5"), ElementsAre("1:27 two-prices"));
  EXPECT_THAT(Traps("CHIU IMP=0"), ElementsAre("1:6 pays-nothing"));
}

TEST(CheckTraps, TendersThatTheTableDoesNotKnow) {
  EXPECT_THAT(Traps("CHIU TEND='CARTA'"), ElementsAre("1:6 tender-quoted TEND=CARTA"));
  EXPECT_THAT(Traps("CHIU TEND='carta'"), ElementsAre("1:6 tender-quoted TEND=CARTA"));
  EXPECT_THAT(Traps("CHIU TEND='BONUS'"), ElementsAre("1:6 tender-unknown"));
  EXPECT_THAT(Traps("CHIU TEND=99999999999999999999"), ElementsAre("1:6 tender-unknown"));
  EXPECT_THAT(Traps("CHIU TEND=ST20"), IsEmpty());
}

TEST(CheckTraps, FlagsThatSayNo) {
  EXPECT_THAT(Traps("VEND REP=1, PRE=1, RESO=NO"), ElementsAre("1:20 flag-set-by-no"));
  EXPECT_THAT(Traps("VEND REP=1, PRE=1, RESO=0"), ElementsAre("1:20 flag-set-by-no"));
  EXPECT_THAT(Traps("VEND REP=1, PRE=1, RESO='no'"), ElementsAre("1:20 flag-set-by-no"));
  EXPECT_THAT(Traps("VEND REP=1, PRE=1, RESO=SI"), IsEmpty());
  EXPECT_THAT(Traps("VEND REP=1, PRE=1, RESO=''"), IsEmpty()) << "it counts as left out";
  EXPECT_THAT(Traps("CHIAVE REG=SI"), ElementsAre("1:8 flag-not-set REG"));
  EXPECT_THAT(Traps("PREP REP=1, SINGOLO=1"), ElementsAre("1:13 yes-no-one"));
  EXPECT_THAT(Traps("POPZ #4=1"), IsEmpty()) << "a dump in list form means it";
}

TEST(CheckTraps, TextsAndNamesThatAreCutOrChanged) {
  const std::string fifty(50, 'x');
  EXPECT_THAT(Traps("VEND REP=1, PRE=1, DES='" + fifty + "'"), IsEmpty());
  EXPECT_THAT(Traps("VEND REP=1, PRE=1, DES='" + fifty + "y'"), ElementsAre("1:20 text-cut"));
  EXPECT_THAT(Traps("VEND ART='123456789012345678901', PRE=1"), ElementsAre("1:6 text-cut"));
  EXPECT_THAT(Traps("PINT RIGA2='" + fifty + "y'"), ElementsAre("1:6 text-cut"));
  EXPECT_THAT(Traps("NOFIS MSG='" + fifty + "y'"), ElementsAre("1:7 text-cut"));
  EXPECT_THAT(Traps("NOFIS MSG='" + fifty.substr(7) + "', OPZ=DOPPIO"),
              ElementsAre("1:7 text-cut"));
  EXPECT_THAT(Traps("NOFIS MSG='" + fifty + "y', BARCODE=QRCODE"), IsEmpty());
  EXPECT_THAT(Traps("EMLINK CMD='UA', FILE='" + std::string(64, 'x') + "'"), IsEmpty())
      << "it is refused";
  EXPECT_THAT(Traps("LEGGI TAB=REPARTI, FILE='Reparti.TXT'"),
              ElementsAre("1:20 file-name-lowered FILE='reparti.txt'"));
  EXPECT_THAT(Traps("REPORT FILE='Giorno.TXT'"), IsEmpty()) << "there capitals stay";
}

TEST(CheckTraps, ATextThatTakesTheNextFieldIn) {
  EXPECT_THAT(Traps("VEND REP=1, DES='CAFFE' PRE=1.50"), ElementsAre("1:13 text-behind-quote"));
  const json finding = FindingsOf("VEND REP=1, DES='IT''S' PRE=1.50, QTA=2").at(0);
  EXPECT_EQ(finding.at("what"), "'PRE=1.50' stands behind the closing quote of field DES");
  EXPECT_EQ(finding.at("effect"), "it becomes a part of the text, which is 'IT'S PRE1.50'");
  EXPECT_THAT(PaperOf("VEND REP=1, PRE=3.00, DES='CAFFE' QTA=5\n"),
              HasSubstr("\nCAFFE QTA5                 22%        3,00\n"));
  EXPECT_THAT(Traps("VEND REP=1, DES='' , PRE=1.50"), IsEmpty());
  EXPECT_THAT(Traps("VEND REP=1, PRE=1.50, DES='IT''S'   ; fine"), IsEmpty());
}

TEST(CheckTraps, ANumberThatIsEmptyCountsAsLeftOut) {
  EXPECT_THAT(Traps("VEND REP=1, PRE=''"), ElementsAre("1:13 number-empty"));
  EXPECT_THAT(Traps("CHIU IMP=''"), ElementsAre("1:6 number-empty"));
  EXPECT_THAT(Traps("CHIU IMP='', IMP=2.00"), ElementsAre("1:14 field-twice"));
  EXPECT_THAT(Traps("PREP REP=1, DES=''"), IsEmpty()) << "so dumps are written";
}

TEST(CheckTraps, ReferencesThatNameAnotherDocument) {
  EXPECT_THAT(Traps("NOTACRED DOC='0001-0001', DATA=201126\nCLEAR"),
              ElementsAre("1:10 document-number DOC=00010001"));
  EXPECT_EQ(FindingsOf("NOTACRED DOC='0001-0001', DATA=201126\nCLEAR").at(0).at("effect"),
            "it reads as the number 1");
  EXPECT_THAT(Traps("NOTACRED DOC=00010001, DATA=20112026\nCLEAR"), ElementsAre("1:24 date-cut"));
  EXPECT_EQ(FindingsOf("NOTACRED DOC=00010001, DATA=20112026\nCLEAR").at(0).at("effect"),
            "its first six characters count: 201120");
  EXPECT_THAT(Traps("NOTACRED DOC=45, ZETA=123, DATA=150124\nCLEAR"), IsEmpty());
  EXPECT_THAT(Traps("REPORT TIPO=MEMDATA, DADATA=01012026, ADATA=310126"),
              ElementsAre("1:22 date-ignored"));
}

TEST(CheckTraps, SentencesTellWhatHappensAndWhatToWrite) {
  TestFolder folder;
  folder.Write("lines.cmd",
               "VEND REP=1, PRE=1\nCHIU\n  DOCANNULLO AUTO\n  VEND REP=1, PRE='1,5'\n");
  const ProgramRun run = RunConsole({"check", "lines.cmd"}, {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 0) << "warnings alone";
  EXPECT_EQ(run.output,
            "lines.cmd:4:3: warning: no sale opens a receipt here: behind DOCANNULLO in line 3 the "
            "printer is ready, and the translator counts a document as open: every sale is refused "
            "until CLEAR, RESPRN or CHIU; write CLEAR ahead of it (code 1231)\n"
            "      VEND REP=1, PRE='1,5'\n"
            "      ^\n"
            "lines.cmd:4:15: warning: field PRE: '1,5' is not written as a number: the library "
            "reads 15; did you mean PRE=1.5?\n"
            "      VEND REP=1, PRE='1,5'\n"
            "                  ^\n"
            "lines.cmd: batch file, 4 commands: 0 errors, 2 warnings\n");
  const ProgramRun italian =
      RunConsole({"check", "lines.cmd"},
                 {.folder = folder.path(), .environment = {{"LC_ALL", "it_IT.UTF-8"}}});
  EXPECT_THAT(italian.output,
              HasSubstr("qui nessuna vendita apre uno scontrino: dopo DOCANNULLO alla riga 3"));
  EXPECT_THAT(italian.output, HasSubstr("ogni vendita è rifiutata fino a CLEAR, RESPRN o CHIU; da "
                                        "scrivere: prima CLEAR (codice 1231)"));
  EXPECT_THAT(italian.output,
              HasSubstr("'1,5' non è scritto come un numero: la libreria legge 15"));
}

TEST(CheckTraps, ProgramsReadThemInEnglishWithEffectAndRemedy) {
  TestFolder folder;
  const std::string file =
      folder.Write("lines.cmd", "VEND REP=1, PRE=1\nCHIU\nDOCANNULLO AUTO\nVEND REP=1, PRE=1\n");
  const ProgramRun run =
      RunConsole({"check", "--json", file}, {.environment = {{"LC_ALL", "it_IT.UTF-8"}}});
  const json finding = json::parse(run.output).at("files").at(0).at("findings").at(0);
  EXPECT_EQ(finding.at("rule"), "no-receipt-opens");
  EXPECT_EQ(finding.at("line"), 4);
  EXPECT_EQ(finding.at("column"), 1);
  EXPECT_EQ(finding.at("code"), 1231);
  EXPECT_EQ(finding.at("effect"), "every sale is refused until CLEAR, RESPRN or CHIU");
  EXPECT_EQ(finding.at("remedy"), "CLEAR ahead of it");
}

// Behind each example the next sale works.
TEST(CheckTraps, EveryExampleEndsWithATranslatorThatSells) {
  for (const auto& entry : std::filesystem::directory_iterator(SourceFile("examples"))) {
    if (entry.path().extension() != ".cmd" || entry.path().stem() == "failing") continue;
    TestFolder folder;
    const std::string lines = ReadFile(entry.path().string()) + "\nVEND REP=1, PRE=1.00\nCHIU\n";
    const ProgramRun run =
        RunConsole({"run", folder.Write("lines.cmd", lines), "--clock", "2024-03-15 10:30"});
    EXPECT_EQ(run.exit_code, 0) << entry.path() << "\n" << run.errors;
    EXPECT_THAT(Traps(lines), IsEmpty()) << entry.path();
  }
}
