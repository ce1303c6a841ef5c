// Reports where a conversation does not reach: the wait, walked without waiting, the sink of file
// names, and handlers without a client.

#include <gtest/gtest.h>

#include <cstring>
#include <deque>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/threading/posix/thread.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"
#include "support/null_client.h"

namespace {

using Calls = std::vector<std::string>;

Calls* recorded = nullptr;  // sleeps go into the same list as the calls

std::string Quoted(const char* text) { return '"' + std::string(text) + '"'; }

template <class T>
std::string shown(T value) {
  return std::to_string(value);
}
std::string shown(const char* text) { return Quoted(text); }
std::string shown(bool value) { return value ? "true" : "false"; }

class ReportClient : public NullClient {
 public:
  int GetIntProperty(int property, int* value) override {
    if (property != RTF_PIDXFptr_PrinterState) return RTF_E_ILLEGAL;
    State state = {RTF_FPTR_PS_MONITOR, 0};
    if (!states.empty()) {
      state = states.front();
      if (states.size() > 1) states.pop_front();
    }
    calls.push_back("state");
    if (state.result == 0) *value = state.value;
    return state.result;
  }
  int GetDataInternal(int item, char* text) override {
    calls.push_back("item " + std::to_string(item));
    if (status.empty()) return RTF_E_FAILURE;
    std::memcpy(text, status.c_str(), status.size() + 1);
    return 0;
  }
  int PrintXReportEx(int32_t kind, bool option, const char* format, const char* file,
                     int32_t outputs) override {
    return Call("PrintXReportEx", kind, option, format, file, outputs);
  }
  int FiscalReportMessageEx(int32_t source, int32_t filter, int32_t criteria, uint8_t option1,
                            uint8_t option2, uint32_t from_number, uint32_t to_number,
                            const char* from_date, const char* to_date, const char* format,
                            const char* file, int32_t outputs) override {
    return Call("FiscalReportMessageEx", source, filter, criteria, option1, option2, from_number,
                to_number, from_date, to_date, format, file, outputs);
  }
  int ExportTelematicSummary(const char* file) override {
    return Call("ExportTelematicSummary", file);
  }

  struct State {
    int value;
    int result;
  };
  std::deque<State> states;  // answers in turn; the last one stays
  std::string status;        // data item 371
  std::map<std::string, int> results;
  Calls calls;

 private:
  template <class... Arguments>
  int Call(const std::string& name, Arguments... arguments) {
    std::string text;
    ((text += (text.empty() ? "" : ", ") + shown(arguments)), ...);
    calls.push_back(name + "(" + text + ")");
    const auto found = results.find(name);
    return found == results.end() ? 0 : found->second;
  }
};

class ReportHandlers : public ::testing::Test {
 protected:
  void SetUp() override {
    t().rtfClient_ = &client_;
    recorded = &client_.calls;
    Thread::SetSleepFunction([](int ms) { recorded->push_back("sleep " + std::to_string(ms)); });
    testing::internal::CaptureStdout();  // the trace of the state words
  }
  void TearDown() override {
    testing::internal::GetCapturedStdout();
    Thread::SetSleepFunction(nullptr);
    recorded = nullptr;
  }

  using Fields = std::map<int, std::string>;
  void SetFields(const Fields& values) {
    for (auto& field : t().szCampi) field[0] = 0;
    for (const auto& [number, value] : values) {
      std::memcpy(t().szCampi[number], value.c_str(), value.size() + 1);
    }
    client_.calls.clear();
  }
  int Report(const Fields& values) {
    SetFields(values);
    return t().Trad_REPORT();
  }
  int Closing(const Fields& values) {
    SetFields(values);
    return t().Trad_AZZGIO();
  }
  int Journal(const Fields& values) {
    SetFields(values);
    return t().Trad_DGFE();
  }
  int Telematic(const Fields& values) {
    SetFields(values);
    return t().Trad_RTEJ();
  }

  EcrCmdCommand& t() { return *translator_; }
  ReportClient client_;
  std::unique_ptr<EcrCmdCommand> translator_ = std::make_unique<EcrCmdCommand>();
};

class Sink : public FileSettable {
 public:
  void set_filename(char* filename) override { names.push_back(filename); }
  std::vector<std::string> names;
};

// --- The wait

TEST_F(ReportHandlers, ARefusedReportIsNotWaitedFor) {
  EXPECT_EQ(t().PollReportState(107), 107);
  EXPECT_EQ(client_.calls, Calls{});
}

TEST_F(ReportHandlers, AnIdlePrinterEndsTheWaitAtOnce) {
  EXPECT_EQ(t().PollReportState(0), 0);
  EXPECT_EQ(client_.calls, Calls{"state"});
}

TEST_F(ReportHandlers, TheReportStateIsWaitedFor) {
  client_.states = {{10, 0}, {10, 0}, {1, 0}};
  EXPECT_EQ(t().PollReportState(0), 0);
  EXPECT_EQ(client_.calls, (Calls{"state", "sleep 500", "state", "sleep 500", "state"}));
}

TEST_F(ReportHandlers, TheWaitEndsSilentlyAfterTwoHundredAndFortySteps) {
  client_.states = {{10, 0}};
  EXPECT_EQ(t().PollReportState(0), 0);
  Calls expected = {"state"};
  for (int i = 0; i < 240; ++i) {
    expected.push_back("sleep 500");
    expected.push_back("state");
  }
  EXPECT_EQ(client_.calls, expected);
}

TEST_F(ReportHandlers, ADeviceOutOfReachCountsAsBusy) {
  client_.states = {{1, -1}, {1, 0}};
  EXPECT_EQ(t().PollReportState(0), 0);
  EXPECT_EQ(client_.calls, (Calls{"state", "sleep 500", "state"}));
  t().rtfClient_ = nullptr;
  client_.calls.clear();
  EXPECT_EQ(t().PollReportState(0), 0);
  EXPECT_EQ(client_.calls.size(), 240u);
}

TEST_F(ReportHandlers, AFailedReadKeepsTheLastState) {
  // 10 at the start, then the 1 that was read.
  client_.states = {{0, RTF_E_FAILURE}, {1, 0}};
  EXPECT_EQ(t().PollReportState(0), 0);
  EXPECT_EQ(client_.calls, (Calls{"state", "sleep 500", "state"}));
}

TEST_F(ReportHandlers, ALockAtTheReportIsWaitedFor) {
  client_.states = {{8, 0}, {8, 0}, {1, 0}};
  client_.status = "2;7;0;0;0;0;0";
  EXPECT_EQ(t().PollReportState(0), 0);
  EXPECT_EQ(client_.calls,
            (Calls{"state", "item 371", "sleep 500", "state", "item 371", "sleep 500", "state"}));
  client_.states = {{8, 0}, {1, 0}};
  client_.status = "800000;7;0;0;0;0;0";
  client_.calls.clear();
  t().PollReportState(0);
  EXPECT_EQ(client_.calls, (Calls{"state", "item 371", "sleep 500", "state"}));
}

TEST_F(ReportHandlers, AnyOtherLockEndsTheWait) {
  for (const char* status : {"2;6;0;0;0;0;0", "0;7;0;0;0;0;0", "7FFFFD;7;0;0;0;0;0"}) {
    client_.states = {{8, 0}};
    client_.status = status;
    client_.calls.clear();
    EXPECT_EQ(t().PollReportState(0), 0);
    EXPECT_EQ(client_.calls, (Calls{"state", "item 371"})) << status;
  }
}

TEST_F(ReportHandlers, AFailedStatusLeavesTheMembersInForce) {
  t().fiscal_inner_state_ = 2;
  t().fiscal_functional_state_ = 7;
  client_.states = {{8, 0}, {1, 0}};
  EXPECT_EQ(t().PollReportState(0), 0);
  EXPECT_EQ(client_.calls, (Calls{"state", "item 371", "sleep 500", "state"}));
}

TEST_F(ReportHandlers, ASinkIsToldTheLowerCaseName) {
  Sink sink;
  t().filesettable_ = &sink;
  EXPECT_EQ(Report({{10, "Report.TXT"}}), 0);
  EXPECT_EQ(sink.names, std::vector<std::string>{"report.txt"});
  EXPECT_EQ(client_.calls[1], "PrintXReportEx(1, false, \"txt\", \"report.txt\", 3)");
  EXPECT_EQ(Journal({{1, "010225"}, {6, "J.TXT"}}), 0);
  EXPECT_EQ(sink.names.back(), "j.txt");
  EXPECT_EQ(Telematic({{5, "VERO"}, {7, "T.XML"}}), 0);
  EXPECT_EQ(sink.names.back(), "T.XML");  // the case stays
  SetFields({{7, "L.TXT"}, {5, "VERO"}});
  EXPECT_EQ(t().Trad_SAVELOTT(), 0);
  EXPECT_EQ(sink.names.back(), "l.txt");
}

TEST_F(ReportHandlers, ALotteryLineWithoutAFileLeavesNoNameBehind) {
  SetFields({{7, "L.TXT"}, {5, "VERO"}});
  EXPECT_EQ(t().Trad_SAVELOTT(), 0);
  EXPECT_STREQ(t().szFileReportOut, "L.TXT");
  SetFields({{5, "VERO"}});
  EXPECT_NE(t().Trad_SAVELOTT(), 0);
  EXPECT_STREQ(t().szFileReportOut, "");
}

TEST_F(ReportHandlers, WithoutAClientReportsAnswer512) {
  t().rtfClient_ = nullptr;
  EXPECT_EQ(Report({}), 512);
  EXPECT_EQ(Closing({{1, "0"}}), 512);
  EXPECT_EQ(Journal({{1, "010225"}}), 512);
  EXPECT_EQ(Telematic({{6, "VERO"}}), 512);
  SetFields({{1, "a"}});
  EXPECT_EQ(t().Trad_FIRMWAREUPD(), 512);
}

TEST_F(ReportHandlers, JournalNumbersWrapInsteadOfOverflowing) {
  EXPECT_EQ(Journal({{18, "9999"}, {3, "2147483647"}, {4, "2147483647"}}), 0);
  EXPECT_EQ(client_.calls, Calls{"FiscalReportMessageEx(1, 65535, 3, 0, 0, 2247473647, "
                                 "2247473647, \"\", \"\", \"txt\", \"\", 1)"});
}

TEST_F(ReportHandlers, IdleAlwaysSucceeds) {
  EXPECT_EQ(t().Trad_IDLE(), 0);
  t().rtfClient_ = nullptr;
  EXPECT_EQ(t().Trad_IDLE(), 0);
}

}  // namespace
