// What passes is recorded, and a recording is trimmed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>

#include "program_run.h"

namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* kLines =
    "VEND REP=1, PRE=2.50\n"
    "POPER OPE=1, PASS='Segreto9'\n"
    "VEND REP=99, PRE=1.00\n"
    "CHIU\n";

ProgramRun Record(const TestFolder& folder, const std::vector<std::string>& more = {}) {
  std::vector<std::string> arguments = {
      "run",     folder.Write("till.cmd", kLines), "--record", folder.Path("till.rec"), "--terse",
      "--paper", folder.Path("paper.txt")};
  arguments.insert(arguments.end(), more.begin(), more.end());
  return RunConsole(arguments);
}

TEST(Record, LinesCallsAndAnswersAreInTheFile) {
  const TestFolder folder;
  EXPECT_EQ(Record(folder).exit_code, 1);  // a line failed
  const std::string recording = folder.Read("till.rec");
  EXPECT_THAT(recording, StartsWith("recording: 1\nmade-by: lorimat "));
  EXPECT_THAT(recording, HasSubstr("init: below\n< EcrIo(-112, 0, null, 0, null, null) -> 0\n"));
  EXPECT_THAT(recording,
              HasSubstr("\n> VEND REP=99, PRE=1.00\n~ TradEcr Cmd<VEND REP=99, PRE=1.00>\n"
                        "< PrintRecItemEx(0, \"\", 10000, 0, -1, 0, \"\", 99, true, \"\") -> 217\n"
                        "= 1241 \"ERROR 4/217 : ECR SIGNALS CRITICAL ERROR 217 : \"\n"));
  EXPECT_THAT(recording, HasSubstr("\n! TradClose() -> 0\nend: whole "));
  struct stat status;
  ASSERT_EQ(stat(folder.Path("till.rec").c_str(), &status), 0);
  EXPECT_EQ(status.st_mode & 0777, 0600u);
}

TEST(Record, ThePaperIsTheSame) {
  const TestFolder folder;
  Record(folder, {"--clock", "2024-01-15 10:30"});
  const std::string recorded = folder.Read("paper.txt");
  const ProgramRun plain =
      RunConsole({"run", folder.Path("till.cmd"), "--clock", "2024-01-15 10:30"});
  EXPECT_EQ(recorded, plain.output);
}

TEST(Record, SecretsAreBlankedUnlessTheyAreAskedFor) {
  const TestFolder folder;
  Record(folder);
  EXPECT_THAT(folder.Read("till.rec"), Not(HasSubstr("Segreto9")));
  EXPECT_THAT(folder.Read("till.rec"), HasSubstr("> POPER OPE=1, PASS='XXXXXXX0'\n"));
  Record(folder, {"--record-secrets"});
  EXPECT_THAT(folder.Read("till.rec"), HasSubstr("> POPER OPE=1, PASS='Segreto9'\n"));
}

TEST(Record, TheLimitEndsItAndNotTheRun) {
  const TestFolder folder;
  std::string lines;
  for (int i = 0; i < 6000; ++i) lines += "VEND REP=1, PRE=1.00, DES='CAFFE'\n";
  const ProgramRun run = RunConsole({"run", folder.Write("long.cmd", lines), "--record",
                                     folder.Path("long.rec"), "--record-limit", "1", "--terse"});
  EXPECT_THAT(run.errors, HasSubstr("long.rec: the recording ended at its limit of 1 MiB"));
  const std::string recording = folder.Read("long.rec");
  EXPECT_LE(recording.size(), size_t{1} << 20);
  EXPECT_THAT(recording, HasSubstr("\nend: limit "));
}

// The library's own lines are kept off descriptor 1, and nothing else is.
TEST(Record, StandardOutputCanBeNamed) {
  const TestFolder folder;
  for (const char* name : {"/dev/stdout", "/dev/fd/1", "/proc/self/fd/1"}) {
    const ProgramRun recorded = RunConsole({"run", folder.Write("till.cmd", kLines), "--record",
                                            name, "--paper", folder.Path("paper.txt")});
    EXPECT_THAT(recorded.output, StartsWith("recording: 1\n")) << name;
    EXPECT_THAT(recorded.output, HasSubstr("\nend: whole ")) << name;
    const ProgramRun printed =
        RunConsole({"run", folder.Path("till.cmd"), "--clock", "2024-01-15 10:30"});
    EXPECT_EQ(
        RunConsole({"run", folder.Path("till.cmd"), "--clock", "2024-01-15 10:30", "--paper", name})
            .output,
        printed.output)
        << name;
  }
}

TEST(Record, NoFileThatIsNeededIsWrittenOver) {
  const TestFolder folder;
  const std::string lines = folder.Write("till.cmd", kLines);
  const ProgramRun over = RunConsole({"run", lines, "--record", lines});
  EXPECT_EQ(over.exit_code, 2);
  EXPECT_THAT(over.errors, HasSubstr("is the file of lines; the recording would replace it"));
  EXPECT_EQ(folder.Read("till.cmd"), kLines);
  EXPECT_THAT(RunConsole({"run", lines, "--record", "-"}).errors, HasSubstr("needs a file"));
  EXPECT_THAT(
      RunConsole({"shell", "--register", folder.Path("r"), "--record", folder.Path("r")}).errors,
      HasSubstr("is the register's file; the recording would replace it"));
}

TEST(Record, TheShellAndTheTablesAreRecordedToo) {
  const TestFolder folder;
  const std::string shop = folder.Path("shop.register");
  EXPECT_EQ(RunConsole({"shell", "--register", shop, "--record", folder.Path("shell.rec")},
                       {.input = "VEND REP=1, PRE=1.00\nCHIU\n"})
                .exit_code,
            0);
  EXPECT_THAT(folder.Read("shell.rec"), HasSubstr("\n> CHIU\n"));
  EXPECT_EQ(RunConsole({"backup", folder.Path("tables"), "--register", shop, "--record",
                        folder.Path("backup.rec")})
                .exit_code,
            0);
  EXPECT_THAT(folder.Read("backup.rec"), HasSubstr("\n< ConfigDepartment"));
  EXPECT_THAT(folder.Read("backup.rec"), HasSubstr("\nend: whole "));
}

// --- The device that a recording makes.

TEST(Replay, TheSameLinesAreAnsweredAsTheyWere) {
  const TestFolder folder;
  const ProgramRun first = Record(folder);
  const ProgramRun again = RunConsole(
      {"run", folder.Path("till.cmd"), "--terse", "--device", "replay:" + folder.Path("till.rec")});
  EXPECT_EQ(again.exit_code, 1);
  EXPECT_EQ(again.errors, first.errors);
  EXPECT_EQ(RunConsole({"run", folder.Path("till.cmd"), "--terse", "--device", "replay",
                        "--device-option", "file=" + folder.Path("till.rec")})
                .errors,
            first.errors);
}

TEST(Replay, OtherLinesAreToldWhereTheyPart) {
  const TestFolder folder;
  Record(folder);
  const std::string other = folder.Write("other.cmd", "VEND REP=1, PRE=2.60\nCHIU\n");
  const std::string recording = folder.Path("till.rec");
  const ProgramRun run = RunConsole({"run", other, "--terse", "--device", "replay:" + recording});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr(": another call was recorded: expected PrintRecItemEx(0, \"\", "
                                    "25000, 0, -1, 0, \"\", 1, true, \"\"), got PrintRecItemEx(0, "
                                    "\"\", 26000, 0, -1, 0, \"\", 1, true, \"\")\n"));
  EXPECT_THAT(run.errors, HasSubstr("till.rec: was recorded from register 1.00, 20"));
  const ProgramRun word =
      RunConsole({"run", other, "--device", "replay:" + recording, "--device-option", "order=any"});
  EXPECT_EQ(word.exit_code, 2);
  EXPECT_THAT(word.errors, HasSubstr("order is strict or lenient, and not 'any'"));
}

TEST(Replay, TheShellWorksOnOne) {
  const TestFolder folder;
  const std::string recording = folder.Path("shell.rec");
  const std::string lines = "VEND REP=1, PRE=1.00\nVEND REP=99, PRE=1.00\nCHIU\n";
  const ProgramRun first = RunConsole({"shell", "--record", recording}, {.input = lines});
  EXPECT_EQ(first.exit_code, 1);
  const ProgramRun again =
      RunConsole({"shell", "--device", "replay:" + recording, "--record", folder.Path("again.rec")},
                 {.input = lines});
  EXPECT_EQ(again.exit_code, 1);
  EXPECT_THAT(again.errors, Not(HasSubstr("recorded")));
  EXPECT_THAT(again.errors, HasSubstr("1241"));
  // A replay is recorded as any device is.
  EXPECT_THAT(folder.Read("again.rec"), HasSubstr("\ndevice: replay "));
  EXPECT_THAT(folder.Read("again.rec"),
              HasSubstr("< PrintRecItemEx(0, \"\", 10000, 0, -1, 0, \"\", 99, true, \"\") -> "
                        "217\n= 1241 "));
}

// It is opened as another device is, and not taken for a register's file.
TEST(Replay, HasAStatusThatTellsWhatItIs) {
  const TestFolder folder;
  Record(folder);
  const ProgramRun run =
      RunConsole({"status", "--device", "replay:" + folder.Path("till.rec"), "--json"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("\"device\": \"replay\""));
  EXPECT_THAT(run.output, HasSubstr("\"serial_number\": \"\""));
}

TEST(Trim, MakesAConversationOfTheLinesThatFailed) {
  const TestFolder folder;
  Record(folder);
  const ProgramRun trimmed = RunConsole({"trim", folder.Path("till.rec")});
  EXPECT_EQ(trimmed.exit_code, 0) << trimmed.errors;
  EXPECT_THAT(trimmed.output, StartsWith("# 3 of 5 lines recorded from register"));
  EXPECT_THAT(trimmed.output, HasSubstr("\nlanguage: |\n"));
  EXPECT_THAT(trimmed.output, HasSubstr("\n> VEND REP=1, PRE=2.50\n"
                                        "< GetIntProperty(16020) -> 0 [1]\n"
                                        "< BeginFiscalReceipt(true) -> 0\n"));
  EXPECT_THAT(trimmed.output, HasSubstr("\n> POPER OPE=1, PASS='XXXXXXX0'\n"));
  EXPECT_THAT(trimmed.output,
              EndsWith("> VEND REP=99, PRE=1.00\n"
                       "< PrintRecItemEx(0, \"\", 10000, 0, -1, 0, \"\", 99, true, \"\") -> 217\n"
                       "= 1241 \"ERROR 4/217 : ECR SIGNALS CRITICAL ERROR 217 : \"\n"));
}

TEST(Trim, WhatIsNoRecordingIsNamed) {
  const TestFolder folder;
  Record(folder);
  std::string text = folder.Read("till.rec");
  const auto told = [&](const std::string& name, const std::string& content) {
    const ProgramRun run = RunConsole({"trim", folder.Write(name, content)});
    return std::to_string(run.exit_code) + " " + run.errors;
  };
  EXPECT_THAT(told("no.rec", "VEND\n"), HasSubstr("no.rec:1: is no line of a recording"));
  EXPECT_THAT(told("other.rec", "recording: 2\n"), HasSubstr("2 lorimat: "));
  EXPECT_THAT(told("other.rec", "recording: 2\n"), HasSubstr("is a recording of format 2"));
  EXPECT_THAT(told("cut.rec", text.substr(0, text.rfind("end: "))),
              StartsWith("0 lorimat: warning: "));
  text.insert(text.find("> CHIU") + 2, "; ");
  EXPECT_THAT(told("edited.rec", text), HasSubstr("the recording was edited"));
  const ProgramRun gone = RunConsole({"trim", folder.Path("gone.rec")});
  EXPECT_EQ(gone.exit_code, 2);
  EXPECT_THAT(gone.errors, HasSubstr("gone.rec: cannot be read: "));
}

}  // namespace
