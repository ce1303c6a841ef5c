// "lorimat conform": devices put through their paces, good ones and those that break their
// contract.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "program_run.h"

namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

ProgramRun Conform(const std::string& device, std::vector<std::string> more = {}) {
  more.insert(more.begin(), {"conform", "--device", device});
  return RunConsole(more);
}

// What was found, each with its group and row.
std::vector<std::string> FindingsOf(const json& report) {
  std::vector<std::string> findings;
  for (const json& row : report["rows"]) {
    EXPECT_EQ(row["findings"].empty(), row["verdict"] != "against") << row;
    for (const json& finding : row["findings"]) {
      findings.push_back(row["group"].get<std::string>() + ", " + row["row"].get<std::string>() +
                         ": " + finding["message"].get<std::string>());
    }
  }
  return findings;
}

// The verdict of the first row of this name.
std::string VerdictOf(const json& report, const std::string& name) {
  for (const json& row : report["rows"]) {
    if (row["row"] == name) return row["verdict"];
  }
  return "no row";
}

TEST(Conform, TheRegisterPassesItWhole) {
  const ProgramRun run = Conform("register", {"--for-real", "--json"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  const json report = json::parse(run.output);
  EXPECT_THAT(FindingsOf(report), IsEmpty());
  EXPECT_EQ(report["counts"]["missing"], 0);
  EXPECT_EQ(report["counts"]["not-tried"], 0);
  EXPECT_EQ(report["counts"]["fits"], report["rows"].size());
  EXPECT_GT(report["rows"].size(), 100u);
  EXPECT_EQ(report["training"], false);
}

TEST(Conform, ARegisterInTrainingPassesItAndCountsNothing) {
  const TestFolder folder;
  const std::string shop = folder.Path("shop.register");
  ASSERT_EQ(RunConsole({"init", shop, "--training"}).exit_code, 0);
  const ProgramRun run = Conform("register:" + shop, {"--json"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  const json report = json::parse(run.output);
  EXPECT_THAT(FindingsOf(report), IsEmpty());
  EXPECT_EQ(report["training"], true);
  // Lists are reports, which training does not have.
  EXPECT_EQ(VerdictOf(report, "ITEM_LIST"), "missing");
  EXPECT_EQ(VerdictOf(report, "FISCAL_RECEIPT"), "fits");
  const ProgramRun status = RunConsole({"status", "--register", shop, "--json"});
  EXPECT_EQ(json::parse(status.output)["documents"], 0);
}

TEST(Conform, ADeviceThatIsNotInTrainingIsLeftAlone) {
  const TestFolder folder;
  const std::string paper = folder.Path("paper.txt");
  const ProgramRun run = Conform(LORIMAT_TEXT_PRINTER, {"--device-option", "file=" + paper});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors,
            "lorimat: the device 'text-printer' does not say that it is in training. What is tried "
            "counts then: --for-real tries it all the same\n");
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(folder.Read("paper.txt"), IsEmpty());
}

TEST(Conform, ADeviceWithAnOpenDocumentIsLeftAlone) {
  const ProgramRun run = Conform(LORIMAT_STUCK, {"--device-option", "at=open"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors, "lorimat: stuck: a document is open on the device. End it first\n");
}

TEST(Conform, TheTemplateHasNothingAgainstItsContract) {
  const TestFolder folder;
  const ProgramRun run =
      Conform(LORIMAT_TEXT_PRINTER, {"--device-option", "file=" + folder.Path("paper.txt"),
                                     "--device-option", "training=1", "--json"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  const json report = json::parse(run.output);
  EXPECT_THAT(FindingsOf(report), IsEmpty());
  EXPECT_EQ(VerdictOf(report, "TOTAL"), "fits");
  EXPECT_EQ(VerdictOf(report, "NONFISCAL"), "missing");
  EXPECT_EQ(VerdictOf(report, "PrintNormal"), "missing");
  EXPECT_EQ(VerdictOf(report, "RTF_EFPTR_BAD_VAT"), "fits");
}

TEST(Conform, TextsThatAreWrongAreNamed) {
  const ProgramRun run = Conform(LORIMAT_WRONG_TEXTS, {"--json"});
  EXPECT_EQ(run.exit_code, 1) << run.errors;
  EXPECT_THAT(
      FindingsOf(json::parse(run.output)),
      ElementsAre(
          "readings, GetDataInternal 75: GetDataInternal 75 answers 'two', which is not of "
          "its form",
          "readings, GetDataInternal 92: a text of GetDataInternal 92 has no end within its "
          "50 bytes",
          "readings, GetDataInternal 352: GetDataInternal 352 answers 'yes', which is not "
          "of its form",
          "readings, GetDataInternal 371: GetDataInternal 371 answers '20;0;0', which is "
          "not of its form",
          "readings, GetHeaderLine 1: GetHeaderLine 1 writes behind the room of a text",
          "again, GetDataInternal 75: GetDataInternal 75 answers 'two', which is not of "
          "its form",
          "again, GetDataInternal 78: GetDataInternal 78 answered '40' at first, and "
          "something else now"));
}

TEST(Conform, AnswersThatAreWrongAreNamed) {
  const ProgramRun run = Conform(LORIMAT_WRONG_ANSWERS, {"--json"});
  EXPECT_EQ(run.exit_code, 1) << run.errors;
  const json report = json::parse(run.output);
  const std::string item = "operations, PrintRecItemEx: ";
  const std::string item_void = "operations, PrintRecItemEx void: ";
  const std::string record_void = "operations, PrintRecVoid: ";
  const std::string message = "operations, PrintRecMessage: ";
  const std::string drawer = "operations, OpenDrawer: ";
  const std::string clear = "operations, ClearOutput: ";
  const std::string closing = "operations, PrintZReportEx: ";
  EXPECT_THAT(
      FindingsOf(report),
      UnorderedElementsAre(
          item + "MONITOR: PrintRecItemEx is accepted, and has to be refused with 207",
          item_void + "MONITOR: PrintRecItemEx void is accepted, and has to be refused with 207",
          "operations, PrintRecSubtotalEx: TOTAL: PrintRecSubtotalEx answers that the device does "
          "not have it, which it has elsewhere",
          "operations, PrintRecSubtotalEx check: TOTAL: PrintRecSubtotalEx check answers that the "
          "device does not have it, which it has elsewhere",
          record_void + "FISCAL_RECEIPT: behind PrintRecVoid the state of the printer is 1, and "
                        "has to be 2",
          record_void + "TOTAL: behind PrintRecVoid the state of the printer is 1, and has to be 3",
          record_void + "FISCAL_RECEIPT: PrintRecVoid is refused with 207, and is allowed",
          record_void + "TOTAL: PrintRecVoid is refused with 207, and is allowed",
          message + "MONITOR: PrintRecMessage answers -1, the sign that there is no device",
          message + "FISCAL_RECEIPT: PrintRecMessage answers -1, the sign that there is no device",
          message + "TOTAL: PrintRecMessage answers -1, the sign that there is no device",
          closing + "FISCAL_RECEIPT: PrintZReportEx is accepted, and has to be refused with 207",
          closing + "TOTAL: PrintZReportEx is accepted, and has to be refused with 207",
          drawer + "MONITOR: an exception leaves OpenDrawer",
          drawer + "FISCAL_RECEIPT: an exception leaves OpenDrawer",
          drawer + "TOTAL: an exception leaves OpenDrawer",
          clear + "MONITOR: ClearOutput is refused with 108, and is allowed",
          clear + "FISCAL_RECEIPT: ClearOutput is refused with 108, and is allowed",
          clear + "TOTAL: ClearOutput is refused with 108, and is allowed",
          "refusals, RTF_EFPTR_BAD_VAT: FISCAL_RECEIPT: RTF_EFPTR_BAD_VAT answers 4711, which is "
          "no result"));
  // One row's failure is not the next one's.
  EXPECT_EQ(VerdictOf(report, "BeginFiscalReceipt"), "fits");
  EXPECT_EQ(VerdictOf(report, "RTF_EFPTR_BAD_PRICE"), "fits");
  EXPECT_EQ(VerdictOf(report, "ResetPrn"), "fits");
}

TEST(Conform, ADeviceThatHangsIsGivenUpAndTheCallIsNamed) {
  const ProgramRun run =
      Conform(LORIMAT_STUCK, {"--device-option", "at=subtotal", "--device-timeout", "1", "--json"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("the device 'stuck' did not come back from PrintRecSubtotalEx "
                                    "within 1 seconds, and is given up\n"));
  const json report = json::parse(run.output);
  EXPECT_THAT(FindingsOf(report),
              ElementsAre("operations, PrintRecSubtotalEx: FISCAL_RECEIPT: PrintRecSubtotalEx did "
                          "not come back in its time, and the device is given up"));
  EXPECT_EQ(VerdictOf(report, "BeginFiscalReceipt"), "fits");
  EXPECT_EQ(VerdictOf(report, "TOTAL"), "not-tried");
  EXPECT_EQ(VerdictOf(report, "RTF_EFPTR_BAD_VAT"), "not-tried");
}

TEST(Conform, ADeviceThatHangsWhereItIsAskedForItsStateIsNotSaidToBeSound) {
  const ProgramRun run =
      Conform(LORIMAT_STUCK, {"--device-option", "at=state", "--device-timeout", "1", "--json"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(FindingsOf(json::parse(run.output)),
              ElementsAre("operations, BeginFiscalReceipt: GetIntProperty did not come back in its "
                          "time, and the device is given up"));
}

TEST(Conform, ADeviceThatLeavesTrainingIsLeftAlone) {
  const ProgramRun run = Conform(LORIMAT_STUCK, {"--device-option", "at=training", "--json"});
  EXPECT_EQ(run.exit_code, 1) << run.errors;
  const json report = json::parse(run.output);
  EXPECT_THAT(FindingsOf(report),
              ElementsAre("operations, PrintRecSubtotalEx: behind PrintRecSubtotalEx the device is "
                          "not in training any more"));
  EXPECT_EQ(VerdictOf(report, "TOTAL"), "not-tried");
}

TEST(Conform, TheTextHasARowForEachAndTheCounts) {
  const ProgramRun run = Conform(LORIMAT_WRONG_ANSWERS);
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, HasSubstr("What it is asked:\n  fits       GetIntProperty 16020\n"));
  EXPECT_THAT(run.output,
              HasSubstr("  against    PrintRecItemEx\n"
                        "               MONITOR: PrintRecItemEx is accepted, and has to be refused "
                        "with 207\n"));
  EXPECT_THAT(run.output, HasSubstr("  missing    NONFISCAL\n"));
  EXPECT_THAT(run.output, HasSubstr("  fits       RTF_EFPTR_BAD_PRICE (a price below 0)\n"));
  EXPECT_THAT(run.output, HasSubstr(" are missing, 10 are against the contract, "));
}

// Each row with its verdict.
std::vector<std::string> VerdictsOf(const json& report) {
  std::vector<std::string> verdicts;
  for (const json& row : report["rows"]) {
    verdicts.push_back(row["row"].get<std::string>() + " " + row["verdict"].get<std::string>());
  }
  return verdicts;
}

// What was recorded is a device that does the same, throwing included.
TEST(Conform, ARecordingOfItAnswersTheSameAgain) {
  const TestFolder folder;
  const std::string recording = folder.Path("device.rec");
  const ProgramRun first = Conform(LORIMAT_WRONG_ANSWERS, {"--record", recording, "--json"});
  EXPECT_THAT(folder.Read("device.rec"),
              HasSubstr("> ; PrintRecItemEx, MONITOR\n< PrintRecItemEx(0, \"\", 10000, 0, -1, 0, "
                        "\"\", 1, true, \"\") -> 0\n"));
  const ProgramRun again = Conform("replay:" + recording, {"--for-real", "--json"});
  EXPECT_EQ(again.exit_code, 1);
  EXPECT_THAT(again.errors, IsEmpty());
  EXPECT_EQ(VerdictsOf(json::parse(again.output)), VerdictsOf(json::parse(first.output)));
  EXPECT_EQ(FindingsOf(json::parse(again.output)), FindingsOf(json::parse(first.output)));
}

struct Ending {
  const char* how;
  const char* told;
};

class ConformEnding : public testing::TestWithParam<Ending> {};

// The rows that are not of the call are as they are without it.
TEST_P(ConformEnding, ADeviceThatEndsTheProcessIsNamedAndTheOtherRowsGoOn) {
  const json whole = json::parse(Conform(LORIMAT_ENDS, {"--json"}).output);
  const ProgramRun run =
      Conform(LORIMAT_ENDS, {"--device-option", "at=item,closing,header", "--device-option",
                             std::string("how=") + GetParam().how, "--json"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, IsEmpty());
  const json report = json::parse(run.output);
  const std::string ended = std::string(" ended the process: ") + GetParam().told;
  EXPECT_THAT(FindingsOf(report),
              ElementsAre("readings, GetHeaderLine 1: GetHeaderLine" + ended,
                          "operations, PrintRecItemEx void: MONITOR: PrintRecItemEx" + ended,
                          "operations, PrintZReportEx: FISCAL_RECEIPT: PrintZReportEx" + ended,
                          "refusals, RTF_EFPTR_BAD_ITEM_AMOUNT: PrintRecItemEx" + ended,
                          "refusals, RTF_EFPTR_NEGATIVE_TOTAL: PrintRecItemEx" + ended,
                          "refusals, RTF_EFPTR_NEGATIVE_VAT: PrintRecItemEx" + ended));
  ASSERT_EQ(report["rows"].size(), whole["rows"].size());
  for (size_t i = 0; i < whole["rows"].size(); ++i) {
    if (!report["rows"][i]["findings"].empty()) continue;
    EXPECT_EQ(report["rows"][i], whole["rows"][i]);
  }
  EXPECT_EQ(report["counts"]["not-tried"], 0);
  EXPECT_EQ(report["device"], "ends");
}

INSTANTIATE_TEST_SUITE_P(Conform, ConformEnding,
                         testing::Values(Ending{"segv", "SIGSEGV"}, Ending{"abort", "SIGABRT"},
                                         Ending{"exit", "exit code 3"}),
                         [](const auto& ending) { return std::string(ending.param.how); });

TEST(Conform, AStateThatEndsTheProcessIsEnteredOnceAndTheRecordingTellsTheCall) {
  const TestFolder folder;
  const ProgramRun run =
      Conform(LORIMAT_ENDS, {"--device-option", "at=state", "--device-option", "how=abort",
                             "--record", folder.Path("device.rec"), "--json"});
  EXPECT_EQ(run.exit_code, 1);
  const json report = json::parse(run.output);
  const std::string ended = "GetIntProperty ended the process: SIGABRT";
  EXPECT_THAT(FindingsOf(report), ElementsAre("states, FISCAL_RECEIPT: FISCAL_RECEIPT: " + ended,
                                              "states, TOTAL: TOTAL: " + ended,
                                              "states, NONFISCAL: NONFISCAL: " + ended,
                                              "operations, BeginFiscalReceipt: MONITOR: " + ended));
  EXPECT_EQ(VerdictOf(report, "RTF_EFPTR_BAD_VAT"), "not-tried");
  EXPECT_EQ(VerdictOf(report, "RTF_EFPTR_BAD_LENGTH"), "missing");
  EXPECT_EQ(run.errors, "lorimat: warning: " + folder.Path("device.rec") +
                            ": the recording ends where the device ended the process\n");
  const std::string recording = folder.Read("device.rec");
  EXPECT_THAT(recording, HasSubstr("> ; BeginFiscalReceipt, MONITOR\n< BeginFiscalReceipt(true) -> "
                                   "0\n"));
  EXPECT_THAT(recording, EndsWith("\n< GetIntProperty(16020)"));
}

TEST(Conform, ADeviceThatEndsTheProcessWhenItIsClosedIsTold) {
  const ProgramRun run =
      Conform(LORIMAT_ENDS, {"--device-option", "at=close", "--device-option", "how=abort"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.errors, "lorimat: the device ended the process when it was closed: SIGABRT\n");
  EXPECT_THAT(run.output, HasSubstr(" 0 are against the contract, 0 were not tried\n"));
}

TEST(Conform, WhatWasTriedIsShownWhereTheDeviceIsNotToBeOpenedAgain) {
  const TestFolder folder;
  const ProgramRun run = Conform(
      LORIMAT_ENDS, {"--device-option", "at=item,third-open", "--device-option", "how=abort",
                     "--device-option", "opened=" + folder.Path("opened"), "--json"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.errors, std::string("lorimat: the device is not opened: ") + LORIMAT_ENDS +
                            " ended the process that tried to open it (SIGABRT)\n");
  const json report = json::parse(run.output);
  EXPECT_THAT(FindingsOf(report), ElementsAre("operations, PrintRecItemEx void: MONITOR: "
                                              "PrintRecItemEx ended the process: SIGABRT"));
  EXPECT_EQ(VerdictOf(report, "MONITOR"), "fits");
  EXPECT_EQ(VerdictOf(report, "TOTAL"), "not-tried");
}

TEST(Conform, CtrlCEndsItWithWhatWasTried) {
  const TestFolder folder;
  const ProgramRun run = RunConsole({"conform", "--device", LORIMAT_STUCK, "--device-option",
                                     "at=subtotal", "--device-option", "told=1"},
                                    {.interrupt_at = "the device hangs\n"});
  EXPECT_EQ(run.exit_code, 130);
  EXPECT_THAT(run.output, HasSubstr("  not tried  TOTAL\n"));
  EXPECT_THAT(run.errors, HasSubstr("stopped by Ctrl-C\n"));
}

TEST(Conform, IsToldInItalian) {
  const ProgramRun run = RunConsole({"conform", "--device", LORIMAT_WRONG_ANSWERS},
                                    {.environment = {{"LC_ALL", "it_IT.UTF-8"}}});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output,
              HasSubstr("  contrario    PrintRecItemEx\n"
                        "                 MONITOR: PrintRecItemEx è accettata, e va rifiutata "
                        "con 207\n"));
}

}  // namespace
