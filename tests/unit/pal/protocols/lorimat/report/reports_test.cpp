// Reports, journal and firmware: what is called, and the wait, walked without waiting.

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

std::string quoted(const char* text) { return '"' + std::string(text) + '"'; }

template <class T>
std::string shown(T value) {
  return std::to_string(value);
}
std::string shown(const char* text) { return quoted(text); }
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
    return call("PrintXReportEx", kind, option, format, file, outputs);
  }
  int PrintZReportEx(bool send) override { return call("PrintZReportEx", send); }
  int PeriodicReportMessageEx(int32_t kind, int32_t option, const char* format, const char* file,
                              int32_t outputs, bool clear) override {
    return call("PeriodicReportMessageEx", kind, option, format, file, outputs, clear);
  }
  int FiscalReportMessageEx(int32_t source, int32_t filter, int32_t criteria, uint8_t option1,
                            uint8_t option2, uint32_t from_number, uint32_t to_number,
                            const char* from_date, const char* to_date, const char* format,
                            const char* file, int32_t outputs) override {
    return call("FiscalReportMessageEx", source, filter, criteria, option1, option2, from_number,
                to_number, from_date, to_date, format, file, outputs);
  }
  int SendTelematicSummary() override { return call("SendTelematicSummary"); }
  int ExportTelematicSummary(const char* file) override {
    return call("ExportTelematicSummary", file);
  }
  int SaveTelematicSummary(int from, int to, const char* file) override {
    return call("SaveTelematicSummary", from, to, file);
  }
  int SaveTelematicSummaryEx(int from, int to, const char* file, int options) override {
    return call("SaveTelematicSummaryEx", from, to, file, options);
  }
  int ProgramFirmware(const char* file) override { return call("ProgramFirmware", file); }

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
  int call(const std::string& name, Arguments... arguments) {
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
    Thread::set_sleep_function([](int ms) { recorded->push_back("sleep " + std::to_string(ms)); });
    testing::internal::CaptureStdout();  // the trace of the state words
  }
  void TearDown() override {
    testing::internal::GetCapturedStdout();
    Thread::set_sleep_function(nullptr);
    recorded = nullptr;
  }

  using Fields = std::map<int, std::string>;
  void fields(const Fields& values) {
    for (auto& field : t().szCampi) field[0] = 0;
    for (const auto& [number, value] : values) {
      std::memcpy(t().szCampi[number], value.c_str(), value.size() + 1);
    }
    client_.calls.clear();
  }
  int report(const Fields& values) {
    fields(values);
    return t().Trad_REPORT();
  }
  int closing(const Fields& values) {
    fields(values);
    return t().Trad_AZZGIO();
  }
  int journal(const Fields& values) {
    fields(values);
    return t().Trad_DGFE();
  }
  int telematic(const Fields& values) {
    fields(values);
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

// --- Reports

TEST_F(ReportHandlers, ReadingsByCode) {
  const std::pair<const char*, const char*> kinds[] = {
      {"1", "1"}, {"2", "0"}, {"3", "2"}, {"4", "1"}, {"", "1"}};
  for (const auto& [code, kind] : kinds) {
    EXPECT_EQ(report({{1, code}}), 0);
    EXPECT_EQ(client_.calls,
              (Calls{"state", "PrintXReportEx(" + std::string(kind) + ", false, \"txt\", \"\", 1)",
                     "state"}))
        << code;
  }
}

TEST_F(ReportHandlers, AReadingWithClosing) {
  t().bSendZAE = true;
  EXPECT_EQ(report({{1, "1"}, {2, "1"}}), 0);
  EXPECT_EQ(client_.calls, (Calls{"state", "PrintXReportEx(1, false, \"txt\", \"\", 1)", "state",
                                  "state", "PrintZReportEx(true)", "state"}));
}

TEST_F(ReportHandlers, ARefusedReadingKeepsTheDayOpen) {
  client_.results["PrintXReportEx"] = 207;
  EXPECT_EQ(report({{1, "2"}, {2, "1"}}), 1231);
  EXPECT_EQ(client_.calls, (Calls{"state", "PrintXReportEx(0, false, \"txt\", \"\", 1)"}));
}

TEST_F(ReportHandlers, ARefusedClosingIsReported) {
  client_.results["PrintZReportEx"] = 1213;
  EXPECT_EQ(report({{1, "1"}, {2, "1"}}), 1213);
  EXPECT_EQ(closing({{1, "0"}}), 1213);
}

TEST_F(ReportHandlers, PeriodicReportsHandTheModeOn) {
  const std::pair<const char*, const char*> kinds[] = {
      {"10", "3"}, {"11", "2"}, {"12", "1"}, {"14", "5"}, {"17", "4"}};
  for (const auto& [code, kind] : kinds) {
    EXPECT_EQ(report({{1, code}, {2, "1"}, {20, "xml"}}), 0);
    EXPECT_EQ(client_.calls, (Calls{"state",
                                    "PeriodicReportMessageEx(" + std::string(kind) +
                                        ", 0, \"xml\", \"\", 1, true)",
                                    "state"}))
        << code;
  }
  EXPECT_EQ(report({{1, "10"}}), 0);
  EXPECT_EQ(client_.calls[1], "PeriodicReportMessageEx(3, 0, \"txt\", \"\", 1, false)");
}

TEST_F(ReportHandlers, FiscalReports) {
  struct Row {
    const char* code;
    const char* call;
    bool waits;
  };
  const Row rows[] = {
      {"200", "0, 65535, 3, 0, 0, 1, 9999, \"\", \"\", \"txt\", \"\", 1", false},
      {"201", "0, 65535, 3, 0, 0, 5, 7, \"\", \"\", \"txt\", \"\", 1", false},
      {"202", "0, 65535, 2, 0, 0, 0, 0, \"010220250000\", \"030420262359\", \"txt\", \"\", 1",
       false},
      {"203", "0, 65535, 3, 0, 0, 5, 7, \"\", \"\", \"stxt\", \"\", 1", false},
      {"204", "0, 65535, 2, 0, 0, 0, 0, \"010220250000\", \"030420262359\", \"stxt\", \"\", 1",
       false},
      {"206", "2, 65535, 2, 0, 0, 0, 0, \"010220250000\", \"030420262359\", \"txt\", \"\", 1",
       true},
      {"207", "4, 65535, 4, 0, 0, 5, 7, \"010220250000\", \"030420262359\", \"txt\", \"\", 1",
       true},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(report({{1, row.code}, {6, "5"}, {7, "7"}, {8, "010225"}, {9, "030426"}}), 0);
    Calls expected = {"state", "FiscalReportMessageEx(" + std::string(row.call) + ")"};
    if (row.waits) expected.push_back("state");
    EXPECT_EQ(client_.calls, expected) << row.code;
  }
}

TEST_F(ReportHandlers, MissingRangesAreNotSupported) {
  const Fields ranges[] = {{{1, "201"}, {6, "5"}},
                           {{1, "201"}, {7, "5"}},
                           {{1, "203"}},
                           {{1, "202"}, {8, "010225"}},
                           {{1, "202"}, {8, "01022"}, {9, "030426"}},
                           {{1, "204"}, {8, "010225"}, {9, "0304260"}},
                           {{1, "206"}, {6, "1"}, {7, "2"}},
                           {{1, "207"}, {6, "1"}, {7, "2"}, {9, "030426"}},
                           {{1, "99"}},
                           {{1, "0"}},
                           {{1, "VERO"}},
                           {{1, "-1"}}};
  for (const Fields& range : ranges) {
    EXPECT_EQ(report(range), 277) << range.at(1);
    // Nothing but the look at a report that may still run.
    EXPECT_EQ(client_.calls, Calls{"state"}) << range.at(1);
  }
}

TEST_F(ReportHandlers, NothingToDoMakesNoCall) {
  EXPECT_EQ(report({{3, "0"}}), 277);
  EXPECT_EQ(report({{3, "-1"}}), 277);
  EXPECT_EQ(report({{3, "VERO"}}), 277);
  EXPECT_EQ(report({{2, "2"}}), 277);
  EXPECT_EQ(report({{2, "-1"}}), 277);
  EXPECT_EQ(client_.calls, Calls{});
}

TEST_F(ReportHandlers, OutputsGoToPrinterAndFile) {
  EXPECT_EQ(report({{10, "Z.TXT"}, {3, "0"}}), 0);
  EXPECT_EQ(client_.calls[1], "PrintXReportEx(1, false, \"txt\", \"Z.TXT\", 2)");
  EXPECT_EQ(report({{10, "z.txt"}}), 0);
  EXPECT_EQ(client_.calls[1], "PrintXReportEx(1, false, \"txt\", \"z.txt\", 3)");
  EXPECT_EQ(report({{3, "1"}}), 0);
  EXPECT_EQ(client_.calls[1], "PrintXReportEx(1, false, \"txt\", \"\", 1)");
}

TEST_F(ReportHandlers, LongTextsAreCutToTheirBuffers) {
  EXPECT_EQ(report({{1, "201"},
                    {6, std::string(100, '1')},
                    {7, std::string(2048, '2')},
                    {10, std::string(2000, 'f')},
                    {20, std::string(500, 'x')}}),
            0);
  EXPECT_EQ(client_.calls[1],
            "FiscalReportMessageEx(0, 65535, 3, 0, 0, 1111111, 2222222, \"\", "
            "\"\", \"" +
                std::string(12, 'x') + "\", \"" + std::string(127, 'f') + "\", 3)");
}

TEST_F(ReportHandlers, ASinkIsToldTheLowerCaseName) {
  Sink sink;
  t().filesettable_ = &sink;
  EXPECT_EQ(report({{10, "Report.TXT"}}), 0);
  EXPECT_EQ(sink.names, std::vector<std::string>{"report.txt"});
  EXPECT_EQ(client_.calls[1], "PrintXReportEx(1, false, \"txt\", \"report.txt\", 3)");
  EXPECT_EQ(journal({{1, "010225"}, {6, "J.TXT"}}), 0);
  EXPECT_EQ(sink.names.back(), "j.txt");
  EXPECT_EQ(telematic({{5, "VERO"}, {7, "T.XML"}}), 0);
  EXPECT_EQ(sink.names.back(), "T.XML");  // the case stays
  fields({{7, "L.TXT"}, {5, "VERO"}});
  EXPECT_EQ(t().Trad_SAVELOTT(), 0);
  EXPECT_EQ(sink.names.back(), "l.txt");
}

TEST_F(ReportHandlers, ClosingsWithTheirReadings) {
  const std::pair<const char*, const char*> readings[] = {
      {"1", "2"}, {"2", "0"}, {"3", "1"}, {"", "2"}};
  for (const auto& [code, kind] : readings) {
    EXPECT_EQ(closing({{1, code}}), 0);
    EXPECT_EQ(client_.calls,
              (Calls{"PrintXReportEx(" + std::string(kind) + ", false, \"txt\", \"\", 1)", "state",
                     "PrintZReportEx(false)", "state"}))
        << code;
  }
  EXPECT_EQ(closing({{1, "0"}}), 0);
  EXPECT_EQ(client_.calls, (Calls{"PrintZReportEx(false)", "state"}));
}

TEST_F(ReportHandlers, AClosingOfAnotherKindIsRefused) {
  for (const char* code : {"4", "-1", "99"}) {
    EXPECT_EQ(closing({{1, code}}), 266);
    EXPECT_EQ(client_.calls, Calls{});
  }
  // A word is 0.
  EXPECT_EQ(closing({{1, "VERO"}}), 0);
  EXPECT_EQ(client_.calls[0], "PrintZReportEx(false)");
}

TEST_F(ReportHandlers, AClosingWhoseReadingIsRefusedLeavesTheDayOpen) {
  client_.results["PrintXReportEx"] = 107;
  EXPECT_EQ(closing({}), 619);
  EXPECT_EQ(client_.calls, Calls{"PrintXReportEx(2, false, \"txt\", \"\", 1)"});
}

TEST_F(ReportHandlers, WithoutAClientReportsAnswer512) {
  t().rtfClient_ = nullptr;
  EXPECT_EQ(report({}), 512);
  EXPECT_EQ(closing({{1, "0"}}), 512);
  EXPECT_EQ(journal({{1, "010225"}}), 512);
  EXPECT_EQ(telematic({{6, "VERO"}}), 512);
}

// --- Journal

TEST_F(ReportHandlers, JournalByDate) {
  EXPECT_EQ(journal({{1, "010225"}}), 0);
  EXPECT_EQ(client_.calls,
            Calls{"FiscalReportMessageEx(1, 65535, 2, 0, 0, 1, 9999, \"010220250000\", "
                  "\"010220250000\", \"txt\", \"\", 1)"});
  EXPECT_EQ(journal({{1, "010225"}, {2, "020225"}, {10, "0830"}}), 0);
  EXPECT_EQ(client_.calls,
            Calls{"FiscalReportMessageEx(1, 65535, 2, 0, 0, 1, 9999, \"010220250830\", "
                  "\"020220252359\", \"txt\", \"\", 1)"});
  EXPECT_EQ(journal({{1, "010225"}, {2, "010225"}, {10, "0830"}, {11, "1200"}, {3, "5"}}), 0);
  EXPECT_EQ(client_.calls, Calls{"FiscalReportMessageEx(1, 65535, 4, 0, 0, 5, 5, \"010220250830\", "
                                 "\"010220251200\", \"txt\", \"\", 1)"});
}

TEST_F(ReportHandlers, JournalByClosure) {
  EXPECT_EQ(journal({{18, "5"}}), 0);
  EXPECT_EQ(client_.calls, Calls{"FiscalReportMessageEx(1, 65535, 3, 0, 0, 50001, 59999, \"\", "
                                 "\"\", \"txt\", \"\", 1)"});
  EXPECT_EQ(journal({{18, "5"}, {19, "7"}}), 0);
  EXPECT_EQ(client_.calls, Calls{"FiscalReportMessageEx(1, 65535, 3, 0, 0, 50001, 79999, \"\", "
                                 "\"\", \"txt\", \"\", 1)"});
  EXPECT_EQ(journal({{18, "5"}, {3, "2"}, {4, "9"}}), 0);
  EXPECT_EQ(client_.calls, Calls{"FiscalReportMessageEx(1, 65535, 3, 0, 0, 50002, 50009, \"\", "
                                 "\"\", \"txt\", \"\", 1)"});
}

TEST_F(ReportHandlers, JournalRefusals) {
  struct Row {
    Fields values;
    int code;
  };
  const Row rows[] = {
      {{{18, "0"}}, 265},
      {{{18, "10000"}}, 265},
      {{{18, "5"}, {19, "4"}}, 265},
      {{{18, "5"}, {19, "10000"}}, 265},
      {{{18, "5"}, {19, "0"}}, 265},
      {{{1, "010225"}, {10, "830"}}, 265},
      {{{1, "010225"}, {11, "08300"}}, 265},
      {{{1, "01022025"}}, 265},
      {{{1, "01022"}}, 265},
      {{{2, "010225"}}, 265},
      {{{1, "010225"}, {2, "0102"}}, 265},
      {{{1, "010225"}, {3, "5"}, {4, "4"}}, 265},
      {{{1, "010225"}, {4, "-1"}}, 265},
      {{{1, "010225"}, {14, "-1"}}, 265},
      {{{1, "010225"}, {17, "4"}}, 265},
      {{{1, "010225"}, {17, "-1"}}, 265},
      {{}, 265},
      {{{3, "1"}, {4, "2"}}, 265},
      {{{1, "010225"}, {18, "5"}}, 265},
      {{{19, "5"}}, 265},
      {{{1, "010225"}, {2, "020225"}, {3, "1"}}, 259},
      {{{1, "010225"}, {2, "020225"}, {4, "1"}}, 259},
      {{{18, "5"}, {19, "6"}, {3, "1"}}, 259},
      {{{1, "010225"}, {19, "6"}, {3, "1"}}, 259},
  };
  for (const Row& row : rows) {
    EXPECT_EQ(journal(row.values), row.code);
    EXPECT_EQ(client_.calls, Calls{});
  }
}

TEST_F(ReportHandlers, JournalEdges) {
  // A number given as 0 selects by number and counts as none.
  EXPECT_EQ(journal({{1, "010225"}, {2, "020225"}, {3, "0"}}), 0);
  EXPECT_EQ(client_.calls,
            Calls{"FiscalReportMessageEx(1, 65535, 4, 0, 0, 0, 9999, \"010220250000\", "
                  "\"020220252359\", \"txt\", \"\", 1)"});
  // A closure's end beside a date alone passes.
  EXPECT_EQ(journal({{1, "010225"}, {19, "6"}}), 0);
  EXPECT_EQ(client_.calls.size(), 1u);
}

TEST_F(ReportHandlers, JournalFiltersAndOutputs) {
  const auto arguments = [&](const Fields& more) {
    Fields values = more;
    values[1] = "010225";
    EXPECT_EQ(journal(values), 0);
    const std::string& call = client_.calls.at(0);
    return call.substr(0, call.find(", 2, 0, 0")) + call.substr(call.rfind(", \"txt\""));
  };
  EXPECT_EQ(arguments({{7, "VERO"}}), "FiscalReportMessageEx(1, 256, \"txt\", \"\", 1)");
  EXPECT_EQ(arguments({{7, "VERO"}, {8, "SI"}, {9, "2"}}),
            "FiscalReportMessageEx(1, 262, \"txt\", \"\", 1)");
  EXPECT_EQ(arguments({{7, "1"}, {8, "NO"}}), "FiscalReportMessageEx(1, 65535, \"txt\", \"\", 1)");
  EXPECT_EQ(arguments({{7, "VERO"}, {14, "3"}}), "FiscalReportMessageEx(1, 3, \"txt\", \"\", 1)");
  EXPECT_EQ(arguments({{14, "0"}}), "FiscalReportMessageEx(1, 65535, \"txt\", \"\", 1)");
  EXPECT_EQ(arguments({{6, "J.txt"}}), "FiscalReportMessageEx(1, 65535, \"txt\", \"J.txt\", 2)");
  EXPECT_EQ(arguments({{6, "J.txt"}, {5, "VERO"}}),
            "FiscalReportMessageEx(1, 65535, \"txt\", \"J.txt\", 3)");
  EXPECT_EQ(arguments({{6, "J.txt"}, {5, "1"}}),
            "FiscalReportMessageEx(1, 65535, \"txt\", \"J.txt\", 2)");
  EXPECT_EQ(arguments({{5, "VERO"}}), "FiscalReportMessageEx(1, 65535, \"txt\", \"\", 1)");
}

TEST_F(ReportHandlers, JournalFormats) {
  const auto format = [&](const Fields& more) {
    Fields values = more;
    values[18] = "1";
    EXPECT_EQ(journal(values), 0);
    const std::string& call = client_.calls.at(0);
    const size_t begin = call.find("\"\", \"\", ") + 8;
    return call.substr(begin, call.find(", ", begin) - begin);
  };
  EXPECT_EQ(format({{21, "stxt"}}), "\"stxt\"");
  EXPECT_EQ(format({{21, "stxt"}, {20, "xml"}}), "\"xml\"");
  EXPECT_EQ(format({{20, "stxtlong"}}), "\"stxt\"");
}

TEST_F(ReportHandlers, JournalNumbersWrapInsteadOfOverflowing) {
  EXPECT_EQ(journal({{18, "9999"}, {3, "2147483647"}, {4, "2147483647"}}), 0);
  EXPECT_EQ(client_.calls, Calls{"FiscalReportMessageEx(1, 65535, 3, 0, 0, 2247473647, "
                                 "2247473647, \"\", \"\", \"txt\", \"\", 1)"});
}

TEST_F(ReportHandlers, TelematicSummaries) {
  EXPECT_EQ(telematic({{3, "5"}, {5, "VERO"}, {6, "VERO"}, {7, "S.xml"}}), 0);
  EXPECT_EQ(client_.calls, Calls{"SendTelematicSummary()"});
  EXPECT_EQ(telematic({{3, "5"}, {5, "VERO"}, {7, "S.xml"}}), 0);
  EXPECT_EQ(client_.calls, Calls{"ExportTelematicSummary(\"S.xml\")"});
  EXPECT_EQ(telematic({{3, "5"}}), 0);
  EXPECT_EQ(client_.calls, Calls{"SaveTelematicSummary(5, 5, \"\")"});
  EXPECT_EQ(telematic({{3, "5"}, {4, "7"}, {7, "S.xml"}, {8, "2"}}), 0);
  EXPECT_EQ(client_.calls, Calls{"SaveTelematicSummaryEx(5, 7, \"S.xml\", 2)"});
  EXPECT_EQ(telematic({}), 265);
  EXPECT_EQ(telematic({{4, "7"}}), 265);
  EXPECT_EQ(telematic({{7, "S.xml"}}), 265);
  client_.results["SendTelematicSummary"] = 107;
  EXPECT_EQ(telematic({{6, "VERO"}}), 619);
}

TEST_F(ReportHandlers, FirmwareNamesAreCutAtFifty) {
  fields({{1, std::string(60, 'F')}});
  EXPECT_EQ(t().Trad_FIRMWAREUPD(), 0);
  EXPECT_EQ(client_.calls, Calls{"ProgramFirmware(\"" + std::string(50, 'F') + "\")"});
  fields({});
  EXPECT_EQ(t().Trad_FIRMWAREUPD(), 265);
  client_.results["ProgramFirmware"] = RTF_EFIRMWARE_BAD_FILE;
  fields({{1, "a"}});
  EXPECT_EQ(t().Trad_FIRMWAREUPD(), 281 | 0x400);
  t().rtfClient_ = nullptr;
  EXPECT_EQ(t().Trad_FIRMWAREUPD(), 512);
}

TEST_F(ReportHandlers, IdleAlwaysSucceeds) {
  EXPECT_EQ(t().Trad_IDLE(), 0);
  t().rtfClient_ = nullptr;
  EXPECT_EQ(t().Trad_IDLE(), 0);
}

}  // namespace
