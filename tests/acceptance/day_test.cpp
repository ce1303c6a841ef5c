// A day from opening to closing, run by the console: the paper against one written by hand, and
// the files of its reports.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program_run.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char* kClock = "2024-03-15 10:30";

// The part of a paper from one line to another, both given by what they hold.
std::string CutOut(const std::string& paper, const std::string& first, const std::string& end) {
  const size_t at = paper.find(first);
  if (at == paper.npos) return {};
  return paper.substr(at, paper.find(end, at) - at);
}

}  // namespace

TEST(Day, PrintsItsPaperByLinesAndAsABatch) {
  for (const bool batch : {false, true}) {
    std::vector<std::string> arguments = {"run", SourceFile("examples/day.cmd"), "--clock", kClock};
    if (batch) arguments.push_back("--batch");
    const ProgramRun run = RunConsole(arguments);
    EXPECT_EQ(run.exit_code, 0);
    EXPECT_THAT(run.errors, IsEmpty());
    EXPECT_EQ(run.output, ExpectedPaper("day.txt"));
  }
}

TEST(Day, ReportsGoToFiles) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd",
                                         "VEND REP=1, PRE=10.00, DES='VASO'\n"
                                         "CHIU\n"
                                         "REPORT TIPO=XGIORNO, STAMPA=0, FILE='" +
                                             folder.Path("x.txt") +
                                             "'\n"
                                             "REPORT TIPO=XGIORNO, MODO=1\n"
                                             "DGFE DAZETA=1, FILE='" +
                                             folder.Path("journal.txt") +
                                             "'\n"
                                             "REPORT TIPO=MEMDATAS, DADATA=150324, ADATA=150324, "
                                             "STAMPA=0, FILE='" +
                                             folder.Path("memory.txt") +
                                             "'\n"
                                             "RTEJ DANUM=1, FILE='" +
                                             folder.Path("day.xml") + "'\n");
  const ProgramRun run = RunConsole({"run", lines, "--clock", kClock});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  // The reading in the file is the one that the closing printed later.
  EXPECT_EQ(CutOut(folder.Read("x.txt"), "Documenti", "RT "),
            CutOut(run.output.substr(run.output.find("LETTURA")), "Documenti", "RT "));
  const std::string journal = folder.Read("journal.txt");
  EXPECT_THAT(journal, HasSubstr("VASO                       22%       10,00\n"));
  EXPECT_THAT(journal, HasSubstr("             CHIUSURA N. 0001\n"));
  EXPECT_THAT(folder.Read("memory.txt"), HasSubstr("CHIUSURA N. 0001          15/03/2024 10:30\n"));
  EXPECT_THAT(folder.Read("memory.txt"), HasSubstr("\nSHA-256 "));
  EXPECT_THAT(folder.Read("day.xml"), HasSubstr("<Ammontare>8.20</Ammontare>"));
  EXPECT_THAT(run.output, testing::Not(HasSubstr("ESTRATTO")));
}

TEST(Day, AReportWhoseFileCannotBeWrittenLeavesTheDayOpen) {
  TestFolder folder;
  const std::string lines =
      folder.Write("lines.cmd", "VEND REP=1, PRE=10.00\nCHIU\nREPORT TIPO=XGIORNO, MODO=1, FILE='" +
                                    folder.Path("missing/x.txt") + "'\n");
  const ProgramRun run = RunConsole({"run", lines, "--clock", kClock});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("code 623"));  // 512 and RTF_E_FAILURE
  EXPECT_THAT(run.output, testing::Not(HasSubstr("CHIUSURA")));
  EXPECT_THAT(folder.names(), ElementsAre("lines.cmd"));
}

// Records of the work state, from a day of known sales: 10,00 at 22 % paid by ticket.
TEST(Day, TheWorkStateIsReadToItsEnd) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd",
                                         "VEND REP=1, PRE=10.00\n"
                                         "CHIU TEND=TICKET\n"
                                         "LEGGI TAB=STATOLAV, FILE='" +
                                             folder.Path("state.txt") + "'\n");
  const ProgramRun run = RunConsole({"run", lines, "--clock", kClock});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  const std::string state = "\n" + folder.Read("state.txt");
  for (const char* record :
       {"1,'15/03/24 10:30'", "2,0000100000", "3,000001", "901,22.00", "906,0.00", "914,VI",
        "1000,0000000820,0000001000",  // the day: net of 1,80 of tax, and gross
        "1001,0000000820,0000001000",  // the same at 22 %
        "1002,0000000000,0000000000",  // and none at 10 %
        "1250,0000000820,0000001000",  // receipts
        "1300,0000000000,0000000000",  // voids
        "1350,0000000180", "1351,0000000180", "1364,0000000000",
        "2001,0000001000,0000001000,'REPARTO 1'", "2040,0000000000,0000000000,'REPARTO 40'",
        "3005,0000100000,-00001,'TICKET'", "3064,0000001000,000001,'TICKET RISCOSSI'",
        "3067,0000000000,000000,'ARROTONDAMENTI'"}) {
    EXPECT_NE(state.find("\n" + std::string(record) + "\r\n"), state.npos) << record;
  }
}
