// Ctrl-C while a batch runs as one "@" line: what is told of the place where it stopped is what the
// register's file has.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "shop.h"

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kStopped = ": stopped by Ctrl-C behind line ";

// How a batch becomes one "@" line.
enum class Way { kBatchOption, kLine, kLineWithErrorFile };
constexpr Way kWays[] = {Way::kBatchOption, Way::kLine, Way::kLineWithErrorFile};

// The open receipt in the shop's file.
struct OpenReceipt {
  int lines = 0;
  int cents = 0;
};

OpenReceipt ReceiptOf(const Shop& shop) {
  const ProgramRun run = RunConsole({"status", "--register", shop.file(), "--json"});
  const json open = json::parse(run.output).at("open_document");
  if (open.is_null()) return {};
  return {open.at("lines"), open.at("subtotal_cents")};
}

// Runs "long.cmd" of the shop's folder. Its lines 2 and 3 write to pipes: at the first one the
// signal is sent, and the second one waits for that. The next line is the one at which it stops.
ProgramRun StopBehindLineThree(const Shop& shop, Way way, const std::string& behind,
                               const TestFolder& temporary) {
  const TestFolder& folder = shop.folder();
  folder.Write(
      "long.cmd",
      "VEND REP=1, PRE=1.00\nINFO TIPO=1, FILE='begun'\nINFO TIPO=1, FILE='held'\n" + behind);
  folder.Write("line", way == Way::kLine ? "@long.cmd\n" : "@long.cmd, errors.txt\n");
  for (const char* name : {"begun", "held"}) mkfifo(folder.Path(name).c_str(), 0600);
  return RunProgram(
      "/bin/bash",
      {"-c",
       "exec 8<>begun 9<>held\n"
       "dd if=/dev/zero of=held oflag=nonblock bs=4096 2>/dev/null\n"
       "\"$1\" run $2 --terse --register shop.register --clock '2024-03-15 10:30' & pid=$!\n"
       "read -r -t 60 line <&8; kill -INT $pid\n"
       "dd if=held iflag=nonblock of=/dev/null 2>/dev/null; wait $pid",
       "bash", std::string(LORIMAT_BIN_FOLDER) + "/lorimat",
       way == Way::kBatchOption ? "--batch long.cmd" : "line"},
      {.folder = folder.path(), .environment = {{"TMPDIR", temporary.path()}}});
}

struct Stop {
  const char* behind;  // the lines from the fourth one on
  const char* told;
};

constexpr Stop kStops[] = {
    // Nothing but sales, and none that failed of itself.
    {"VEND REP=1, PRE=4.00\nVEND REP=1, PRE=4.00\nWRONG\nCHIU\n", "3\n"},
    {"CHIU\n", "3\n"},
    {"RESPRN\nVEND REP=1, PRE=4.00\n", "3\n"},
    {"INP TASTO=TOTALE\n", "3\n"},
    // Lines that call nothing run, and do nothing to the register.
    {"; a comment\n\nWRONG\nVEND REP=1, PRE=4.00\n", "6\n"},
    // Answered with 0 whatever the register says, as those that read may be.
    {"CLEAR\nVEND REP=1, PRE=4.00\n",
     "1 and ahead of line 5; which lines between them ran is not known\n"},
    {"CLEAR\n", "1 and ahead of line 5; which lines between them ran is not known\n"},
    // The first failing line ends it, too.
    {"SETP ABORT=SI\nVEND REP=1, PRE=4.00\nVEND REP=1, PRE=4.00\n", "4\n"},
};

}  // namespace

TEST(BatchStop, IsToldWhereTheRegisterHasIt) {
  for (const Way way : kWays) {
    for (const Stop& stop : kStops) {
      const Shop shop;
      const TestFolder temporary;
      const ProgramRun run = StopBehindLineThree(shop, way, stop.behind, temporary);
      EXPECT_EQ(run.exit_code, 130) << stop.behind;
      EXPECT_THAT(run.errors, HasSubstr(std::string("long.cmd") +
                                        (way == Way::kLineWithErrorFile ? ", errors.txt" : "") +
                                        kStopped + stop.told))
          << stop.behind;
      // The sale of the first line, and nothing of what stands behind the third.
      const OpenReceipt open = ReceiptOf(shop);
      EXPECT_EQ(open.lines, 1) << stop.behind;
      EXPECT_EQ(open.cents, 100) << stop.behind;
      EXPECT_THAT(temporary.names(), IsEmpty()) << stop.behind;
    }
  }
}

TEST(BatchStop, TellsNoLineAsFailedThatWasRefusedForIt) {
  const Shop shop;
  const TestFolder temporary;
  const ProgramRun run =
      StopBehindLineThree(shop, Way::kBatchOption,
                          "VEND REP=1, PRE=4.00\nINP TASTO=APRITRAN\nWRONG\nCHIU\n", temporary);
  EXPECT_THAT(run.errors, Not(HasSubstr("code ")));
  EXPECT_THAT(run.errors, HasSubstr(std::string(kStopped) + "3\n"));
}

TEST(BatchStop, TellsTheLinesThatFailedAheadOfIt) {
  const Shop shop;
  const TestFolder temporary;
  const ProgramRun run =
      StopBehindLineThree(shop, Way::kLine, "WRONG\nVEND REP=1, PRE=4.00\nWORSE\n", temporary);
  EXPECT_THAT(run.errors, HasSubstr("long.cmd:4: code 257: "));
  EXPECT_THAT(run.errors, Not(HasSubstr("long.cmd:6")));
  EXPECT_THAT(run.errors, HasSubstr(std::string(kStopped) + "4\n"));
}

// The library has ended the batch itself. The lines behind the stop have a code of their own there.
TEST(BatchStop, LeavesTheErrorFileOfTheUserWhole) {
  const Shop shop;
  const TestFolder temporary;
  StopBehindLineThree(shop, Way::kLineWithErrorFile, "VEND REP=1, PRE=4.00\nVEND REP=1, PRE=4.00\n",
                      temporary);
  EXPECT_EQ(shop.folder().Read("errors.txt"),
            "ERROR 32767/81 in line 4 : \r\nERROR 32767/81 in line 4 : \r\n"
            "ERROR 32767/82 in line 5 : \r\nERROR 32767/82 in line 5 : \r\n");
}

TEST(BatchStop, BehindTheLastLineIsNone) {
  const Shop shop;
  const TestFolder temporary;
  const ProgramRun run = StopBehindLineThree(shop, Way::kBatchOption, "; the end\n", temporary);
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, Not(HasSubstr("stopped")));
}

// The signal comes when a line of this number is in the trace, and finds some line behind it.
TEST(BatchStop, AtAnyLineSellsNothingBehindIt) {
  constexpr int kLines = 8000;
  std::string lines;
  for (int line = 1; line <= kLines; ++line) {
    lines += line % 7 == 0 ? "; a comment of no effect\n"
                           : "VEND REP=1, PRE=0.01, DES='N" + std::to_string(line) + "'\n";
  }
  for (const int at : {1, 2, 500, 1234, 2500}) {
    const Shop shop;
    const std::string file = shop.folder().Write("long.cmd", lines);
    const ProgramRun run =
        RunConsole({"run", file, "--batch", "--register", shop.file(), "--clock", Shop::kClock,
                    "--trace", "-"},
                   {.interrupt_at = "DES='N" + std::to_string(at) + "'", .signal = SIGINT});
    ASSERT_EQ(run.exit_code, 130) << at;
    const size_t mark = run.errors.find(kStopped);
    ASSERT_NE(mark, std::string::npos) << at;
    const int last = std::stoi(run.errors.substr(mark + std::string(kStopped).size()));
    EXPECT_GE(last, at);
    const OpenReceipt open = ReceiptOf(shop);
    EXPECT_EQ(open.lines, last - last / 7) << at;
    EXPECT_EQ(open.cents, last - last / 7) << at;
  }
}
