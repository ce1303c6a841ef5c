// "--device FILE": devices from files, good ones and those that go wrong, and "lorimat device".
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "program_run.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

const std::string kPrinter = LORIMAT_TEXT_PRINTER;
const std::string kDisplay = LORIMAT_DISPLAY;
const std::string kFaulty = LORIMAT_FAULTY_DEVICE;

constexpr const char* kSale =
    "VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'\nCHIU TEND=CONTANTI, IMP=5.00\n";

class DeviceTest : public testing::Test {
 protected:
  // "lorimat run" of the lines on a faulty device.
  ProgramRun RunFaulty(const std::string& fault, const std::vector<std::string>& more = {},
                       const ProgramSetting& setting = {}) const {
    std::vector<std::string> arguments = {
        "run",           folder_.Write("lines.cmd", kSale), "--device", kFaulty, "--device-option",
        "fault=" + fault};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunConsole(arguments, setting);
  }

  TestFolder folder_;
};

TEST_F(DeviceTest, ADeviceFromAFileSellsAndShowsItsPaper) {
  const std::string paper = folder_.Path("paper.txt");
  const ProgramRun run = RunConsole({"run", folder_.Write("lines.cmd", kSale), "--device", kPrinter,
                                     "--device-option", "file=" + paper});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(
      run.output,
      "CAFFE                                 2,40\nCONTANTI                              5,00\n"
      "TOTALE                                2,40\nRESTO                                 2,60\n");
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_EQ(folder_.Read("paper.txt"), run.output);
}

TEST_F(DeviceTest, ATableOfCIsADeviceAndItsLogGoesToTheTrace) {
  const ProgramRun run = RunConsole({"run", folder_.Write("lines.cmd", "VIS CLI1='CIAO'\n"),
                                     "--device", kDisplay, "--trace", folder_.Path("trace.txt")});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output, "0: CIAO\n");
  EXPECT_THAT(folder_.Read("trace.txt"), HasSubstr("display: a text is shown\n"));
}

TEST_F(DeviceTest, TheShellWorksOnOne) {
  const std::vector<std::string> arguments = {"shell",
                                              "--device",
                                              kPrinter,
                                              "--device-option",
                                              "file=" + folder_.Path("paper.txt"),
                                              "--device-option",
                                              "training=1"};
  const ProgramRun run =
      RunConsole(arguments, {.input = "VEND REP=1, PRE=1.00, DES='GELATO'\n.status\n.fault\n"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, HasSubstr("GELATO                                1,00 PROVA\n"));
  EXPECT_THAT(run.output, HasSubstr("State      RECEIPT OPEN\nTraining   yes\n"));
  EXPECT_THAT(run.errors, HasSubstr("the device 'text-printer' takes no orders for faults\n"));
  EXPECT_THAT(run.errors, HasSubstr("a document is open (RECEIPT OPEN): the device 'text-printer' "
                                    "keeps it as it is\n"));
}

TEST_F(DeviceTest, WhatADeviceCannotDoIsSaidByItsName) {
  const std::string lines = folder_.Write("lines.cmd", kSale);
  const std::vector<std::string> base = {"run", lines, "--device", kDisplay};
  const auto with = [&base](std::vector<std::string> more) {
    more.insert(more.begin(), base.begin(), base.end());
    return RunConsole(more);
  };
  const ProgramRun png = with({"--png", folder_.Path("paper.png")});
  EXPECT_EQ(png.exit_code, 2);
  EXPECT_EQ(png.errors, "lorimat: --png: the device 'display' draws no pictures of its paper\n");
  const ProgramRun file = with({"--register", "shop.register"});
  EXPECT_EQ(file.exit_code, 2);
  EXPECT_THAT(file.errors, HasSubstr("--register: the device '" + kDisplay.substr(0, 10)));
  EXPECT_EQ(with({"--clock", "2024-03-15 10:30"}).exit_code, 2);
  const ProgramRun follow = RunConsole({"status", "--device", kDisplay, "--follow"});
  EXPECT_EQ(follow.exit_code, 2);
  EXPECT_THAT(follow.errors, HasSubstr("has no file that tells of changes\n"));
  // The variable is for the register.
  EXPECT_EQ(RunConsole({"status", "--device", kDisplay},
                       {.environment = {{"LORIMAT_REGISTER", "shop.register"}}})
                .exit_code,
            0);
}

TEST_F(DeviceTest, TheRegisterIsOneOfThem) {
  const std::string lines = folder_.Write("lines.cmd", kSale);
  const std::string file = folder_.Path("shop.register");
  EXPECT_EQ(RunConsole({"run", lines, "--device", "register:" + file}).exit_code, 0);
  EXPECT_EQ(RunConsole({"run", lines, "--device", "register", "--device-option", "file=" + file,
                        "--device-option", "clock=2099-03-15 10:30"})
                .exit_code,
            0);
  const ProgramRun status = RunConsole({"status", "--device", "register:" + file, "--json"});
  EXPECT_EQ(nlohmann::json::parse(status.output)["documents"], 2);
  const ProgramRun twice =
      RunConsole({"run", lines, "--device", "register:" + file, "--register", file});
  EXPECT_EQ(twice.exit_code, 2);
  EXPECT_EQ(twice.errors,
            "lorimat: --register: the same is said by --device or --device-option file=\n");
  const ProgramRun unknown = RunConsole({"run", lines, "--device-option", "port=1"});
  EXPECT_EQ(unknown.exit_code, 2);
  EXPECT_EQ(unknown.errors, "lorimat: the device 'register' has no option 'port'\n");
  EXPECT_EQ(RunConsole({"run", lines, "--device-option", "port"}).errors,
            "lorimat: --device-option port: has to be KEY=VALUE\n");
}

TEST_F(DeviceTest, AFileThatFailsWhenItIsOpenedIsRefusedByName) {
  const struct {
    const char* fault;
    std::string cause;
  } rows[] = {
      {"crash-open", "ended the process that tried to open it (SIGSEGV)"},
      {"exit-open", "ended the process that tried to open it"},
      {"crash-close", "ended the process that tried to close it again (SIGABRT)"},
      {"abi", "the device is made for contract 7 of devices, and this program has 1"},
      {"in-use", "the device is in use: xxx"},
      {"failed", "the device cannot be opened: it does not say why"},
      {"bad-result", "answers 99, which is no result"},
      {"nameless", "what the device says of itself is not whole: name"},
      {"kind", "what the device says of itself is not whole: kind"},
      {"clientless", "what the device says of itself is not whole: client"},
      {"paperless", "what the device says of itself is not whole: paper"},
      {"other", "the device says something else of itself than a moment ago"},
  };
  for (const auto& row : rows) {
    const ProgramRun run = RunFaulty(row.fault);
    EXPECT_EQ(run.exit_code, 2) << row.fault;
    EXPECT_THAT(run.errors, HasSubstr(row.cause)) << row.fault;
    EXPECT_THAT(run.errors, HasSubstr(kFaulty)) << row.fault;
    EXPECT_THAT(run.output, IsEmpty()) << row.fault;
  }
}

TEST_F(DeviceTest, AFileThatIsNoDeviceSaysWhatItLacks) {
  const std::string lines = folder_.Write("lines.cmd", kSale);
  const std::string whole = ReadFile(kPrinter);
  const auto errors = [&](const std::string& file) {
    const ProgramRun run = RunConsole({"run", lines, "--device", file});
    EXPECT_EQ(run.exit_code, 2) << file;
    return run.errors;
  };
  EXPECT_THAT(errors(folder_.Path("none.so")), HasSubstr("No such file"));
  EXPECT_THAT(errors(folder_.Write("cut.so", whole.substr(0, whole.size() / 2))),
              HasSubstr("is cut short"));
  EXPECT_THAT(errors(folder_.Write("text.so", "no device\n")), HasSubstr("is no shared library"));
  EXPECT_THAT(errors(std::string(LORIMAT_OWN_LIBRARY)),
              HasSubstr("is no device: it lacks lorimat_device_open"));
  std::string other = whole;
  other[18] = '\x16';  // e_machine: another processor
  EXPECT_THAT(errors(folder_.Write("other.so", other)),
              HasSubstr("is made for another kind of processor"));
}

TEST_F(DeviceTest, ACallThatHangsIsNamedAndTheRunEnds) {
  const ProgramRun run = RunFaulty("hang", {"--device-timeout", "1"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("the device 'faulty' did not come back from PrintRecItemEx "
                                    "within 1 seconds, and is given up\n"));
  EXPECT_THAT(run.errors,
              HasSubstr("stopped behind line 1: the device 'faulty' is given up, and no "
                        "further line was sent\n"));
  EXPECT_THAT(run.errors, HasSubstr("1 of 1 lines failed\n"));
  const ProgramRun opening = RunFaulty("hang-open", {"--device-timeout", "1"});
  EXPECT_EQ(opening.exit_code, 2);
  EXPECT_THAT(opening.errors, HasSubstr("did not come back from lorimat_device_open within 1"));
  const ProgramRun closing = RunFaulty("hang-close", {"--device-timeout", "1"});
  EXPECT_EQ(closing.exit_code, 2);
  EXPECT_THAT(closing.errors, HasSubstr("did not come back from lorimat_device_close within 1"));
}

TEST_F(DeviceTest, TheTimeOfACallHasARange) {
  for (const char* seconds : {"0", "-1", "86401", "ten", "1.5"}) {
    const ProgramRun run = RunFaulty("", {"--device-timeout", seconds});
    EXPECT_EQ(run.exit_code, 2) << seconds;
    EXPECT_THAT(run.errors, HasSubstr("--device-timeout")) << seconds;
    EXPECT_THAT(run.output, IsEmpty()) << seconds;
  }
  for (const char* seconds : {"1", "86400"}) {
    EXPECT_EQ(RunFaulty("", {"--device-timeout", seconds}).exit_code, 0) << seconds;
  }
}

TEST_F(DeviceTest, ASignalEndsARunThatADeviceHoldsUp) {
  const ProgramRun run =
      RunFaulty("hang", {}, {.interrupt_at = "the device hangs\n", .signal = SIGTERM});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("the device 'faulty' was still at PrintRecItemEx when the "
                                    "program was told to stop, and is given up\n"));
}

TEST_F(DeviceTest, AnExceptionOfADeviceIsAFailedLine) {
  const ProgramRun run = RunFaulty("throw");
  EXPECT_THAT(run.errors, HasSubstr("an exception left PrintRecItemEx of the device 'faulty'\n"));
  EXPECT_EQ(run.exit_code, 2);
}

TEST_F(DeviceTest, AnExceptionIsRecordedAsOneAndThrownAgain) {
  const std::string recording = folder_.Path("device.rec");
  const ProgramRun first = RunFaulty("throw", {"--record", recording});
  EXPECT_THAT(folder_.Read("device.rec"), HasSubstr(" 2, true, \"\") -> throws\n= 623 "));
  const std::string again = folder_.Path("again.rec");
  const ProgramRun second = RunConsole(
      {"run", folder_.Path("lines.cmd"), "--device", "replay:" + recording, "--record", again});
  EXPECT_EQ(second.exit_code, 1) << second.errors;
  EXPECT_THAT(folder_.Read("again.rec"), HasSubstr(" -> throws\n= 623 "));
}

TEST_F(DeviceTest, AFloodedLogIsCut) {
  const ProgramRun run = RunFaulty("flood", {"--trace", folder_.Path("trace.txt")});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  const std::string trace = folder_.Read("trace.txt");
  EXPECT_LT(trace.size(), 2u << 20);
  EXPECT_THAT(trace, HasSubstr(std::string(900, 'x')));
  EXPECT_THAT(run.errors, HasSubstr("the device 'faulty' logs more than 1048576 bytes"));
}

// What it said at the opening counts.
TEST_F(DeviceTest, ADeviceThatChangesItsMindIsNotFollowed) {
  const ProgramRun run = RunFaulty("capacities");
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output, "PAPER\n");
}

TEST_F(DeviceTest, TheCommandTellsWhatAFileIs) {
  const ProgramRun run = RunConsole({"device", kDisplay});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("Device    display\n"));
  EXPECT_THAT(run.output, HasSubstr("Client    functions of C\n"));
  EXPECT_THAT(run.output, HasSubstr("Can       shows its paper\n"));
  EXPECT_THAT(run.output, HasSubstr("Opens     yes\n"));
  const ProgramRun refused = RunConsole({"device", kPrinter, "--json"});
  EXPECT_EQ(refused.exit_code, 1);
  const auto json = nlohmann::json::parse(refused.output);
  EXPECT_EQ(json["name"], "text-printer");
  EXPECT_EQ(json["opens"], false);
  EXPECT_THAT(json["cause"].get<std::string>(), HasSubstr("which file? Name it with file=PATH"));
  const ProgramRun faulty = RunConsole({"device", kFaulty});
  EXPECT_THAT(faulty.output, Not(HasSubstr("\x1B")));
}

// The lock is the plug-in's own.
TEST_F(DeviceTest, ADeviceThatAnotherProcessHasIsToldToBeInUse) {
  const std::string paper = folder_.Write("paper.txt", "");
  const int held = open(paper.c_str(), O_RDONLY | O_CLOEXEC);
  ASSERT_GE(held, 0);
  ASSERT_EQ(flock(held, LOCK_EX), 0);
  const std::vector<std::string> arguments = {
      "run",          folder_.Write("lines.cmd", kSale), "--device", kPrinter, "--device-option",
      "file=" + paper};
  const ProgramRun run = RunConsole(arguments);
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors, "lorimat: " + kPrinter + ": the device is in use: " + paper +
                            " is printed to by another program\n");
  close(held);
  EXPECT_EQ(RunConsole(arguments).exit_code, 0);
}

}  // namespace
