#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
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

// A client with data items and GetData texts; what is missing answers 107.
class ItemClient : public NullClient {
 public:
  int GetDataInternal(int item, char* text) override {
    read.push_back(item);
    return Give(items, item, text);
  }
  int GetData(int selector, int*, char* text) override {
    read.push_back(-selector);
    return Give(data, selector, text);
  }
  int GetState() override {
    ++polls;
    return polls <= busy_polls ? RTF_S_BUSY : RTF_S_IDLE;
  }

  std::map<int, std::string> items;
  std::map<int, std::string> data;
  std::vector<int> read;  // items, and GetData selectors with a minus
  int polls = 0;
  int busy_polls = 0;

 private:
  static int Give(const std::map<int, std::string>& from, int key, char* text) {
    const auto found = from.find(key);
    if (found == from.end()) return RTF_E_NOHARDWARE;
    std::memcpy(text, found->second.c_str(), found->second.size() + 1);
    return RTF_SUCCESS;
  }
};

class Status : public ::testing::Test {
 protected:
  void SetUp() override {
    t().rtfClient_ = &client_;
    testing::internal::CaptureStdout();  // the trace of the state words
  }
  void TearDown() override { testing::internal::GetCapturedStdout(); }

  EcrCmdCommand& t() { return *translator_; }
  ItemClient client_;
  std::unique_ptr<EcrCmdCommand> translator_ = std::make_unique<EcrCmdCommand>();
};

TEST_F(Status, SevenFieldsUpdateSevenMembers) {
  client_.items[371] = "3000F;2;4;FF;1A;7;15";
  EXPECT_EQ(t().UpdateStatus(), 0);
  EXPECT_EQ(t().fiscal_inner_state_, 0x3000F);
  EXPECT_EQ(t().fiscal_functional_state_, 2);
  EXPECT_EQ(t().fiscal_operation_state_, 4);
  EXPECT_EQ(t().fiscal_memory_state_, 0xFF);
  EXPECT_EQ(t().fiscal_journal_state_, 0x1A);
  EXPECT_EQ(t().current_operator_, 7);
  EXPECT_EQ(t().key_mode_, 15);
}

TEST_F(Status, SixFieldsUpdateSixMembersAndFail) {
  t().key_mode_ = 99;
  client_.items[371] = "1;2;3;4;5;6";
  EXPECT_EQ(t().UpdateStatus(), 265);
  EXPECT_EQ(t().current_operator_, 6);
  EXPECT_EQ(t().key_mode_, 99);
}

TEST_F(Status, AFieldThatDoesNotScanEndsTheParsing) {
  t().fiscal_operation_state_ = 77;
  client_.items[371] = "1;2;x;4;5;6;7";
  EXPECT_EQ(t().UpdateStatus(), 265);
  EXPECT_EQ(t().fiscal_functional_state_, 2);
  EXPECT_EQ(t().fiscal_operation_state_, 77);
  client_.items[371] = "1;;3;4;5;6;7";
  EXPECT_EQ(t().UpdateStatus(), 265);
  EXPECT_EQ(t().fiscal_operation_state_, 77);
  client_.items[371] = "";
  EXPECT_EQ(t().UpdateStatus(), 265);
}

TEST_F(Status, AFailingClientAndNoClientReadAs265) {
  EXPECT_EQ(t().UpdateStatus(), 265);
  t().rtfClient_ = nullptr;
  EXPECT_EQ(t().UpdateStatus(), 265);
}

TEST_F(Status, TheTraceShowsTheOperationStateTwice) {
  client_.items[371] = "8000000A;2;4;FF;1A;7;15";
  t().UpdateStatus();
  const std::string trace = testing::internal::GetCapturedStdout();
  testing::internal::CaptureStdout();
  using testing::HasSubstr;
  EXPECT_THAT(trace, HasSubstr(" - fiscal_inner_state_ = 8000000A\n"));
  EXPECT_THAT(trace, HasSubstr(" - fiscal_functional_state_ = 2\n"));
  EXPECT_THAT(trace, HasSubstr(" - fiscal_operation_state_ =4\n"));
  EXPECT_THAT(trace, HasSubstr(" - fiscal_memory_state_ =4\n"));
  EXPECT_THAT(trace, HasSubstr(" - fiscal_journal_state_ =1A\n"));
  EXPECT_THAT(trace, HasSubstr(" - current_operator_ =7\n"));
  EXPECT_THAT(trace, HasSubstr(" - key_mode_ =15\n"));
}

TEST_F(Status, ExtendedStatusIsSixBytes) {
  client_.items[371] = "20;0;0;0;0;0;0";
  EXPECT_EQ(t().UpdateStatusEx(), 0);
  EXPECT_STREQ(t().szInfo, "000000010000");
  // Without emptying szInfo the digits are added.
  client_.items[371] = "30000;7;0;0;0;0;0";
  EXPECT_EQ(t().UpdateStatusEx(), 0);
  EXPECT_STREQ(t().szInfo, "000000010000000000600505");
}

TEST_F(Status, StateOneHasNoBitOfItsOwn) {
  struct Row {
    const char* state;
    const char* byte;
  };
  for (const Row& row : {Row{"0", "01"}, Row{"1", "00"}, Row{"2", "02"}, Row{"6", "02"},
                         Row{"7", "20"}, Row{"8", "00"}}) {
    t().szInfo[0] = 0;
    client_.items[371] = std::string("10020;") + row.state + ";0;0;0;0;0";
    EXPECT_EQ(t().UpdateStatusEx(), 0);
    EXPECT_EQ(std::string(t().szInfo), std::string("000000") + row.byte + "0101") << row.state;
  }
}

TEST_F(Status, AFailedExtendedStatusLeavesSzInfo) {
  std::strcpy(t().szInfo, "old");
  EXPECT_EQ(t().UpdateStatusEx(), 265);
  EXPECT_STREQ(t().szInfo, "old");
}

TEST_F(Status, StatusOfflineShowsFourteenFields) {
  client_.items = {{371, "8;1;0;0;0;3;15"},
                   {394, "11"},
                   {2, "20"},
                   {1, "2"},
                   {113, "13"},
                   {118, "18"},
                   {115, "15"},
                   {117, "17"},
                   {114, "14"}};
  client_.data[20] = "0042";
  EXPECT_EQ(t().status_offline(), 0);
  EXPECT_STREQ(t().szInfo, "15,1,3,0042,11,22,13,18,15,17,0,14,0,0");
  EXPECT_EQ(client_.read, (std::vector<int>{371, -20, 394, 2, 1, 113, 118, 115, 117, 114}));
  client_.items[371] = "0;8;0;0;0;3;15";
  EXPECT_EQ(t().status_offline(), 0);
  EXPECT_STREQ(t().szInfo, "15,0,3,0042,11,22,13,18,15,17,0,14,0,1");
}

TEST_F(Status, StatusOfflineStopsAtTheFirstFailure) {
  EXPECT_EQ(t().status_offline(), 265 | 0x400);  // the status has its class already
  EXPECT_STREQ(t().szInfo, "");

  client_.items[371] = "8;1;0;0;0;3;15";
  EXPECT_EQ(t().status_offline(), 107 | 0x200);  // a client result gets it once
  EXPECT_STREQ(t().szInfo, "15,1,3,");

  client_.data[20] = "0042";
  client_.read.clear();
  client_.items[394] = "11";
  client_.items[1] = "2";
  EXPECT_EQ(t().status_offline(), 1643);  // a data item's code gets it twice
  EXPECT_STREQ(t().szInfo, "15,1,3,0042,11,");
  // The second item of the sum is not read when the first fails.
  EXPECT_EQ(client_.read.back(), 2);
}

TEST_F(Status, LastDocumentNumberOfACommissionedDevice) {
  char text[50];
  client_.items[86] = "1";
  client_.data[7] = "0122";
  client_.data[20] = "45";
  EXPECT_EQ(t().lastsco(text), 0);
  EXPECT_STREQ(text, "01230045");
  client_.items[86] = "0";
  EXPECT_EQ(t().lastsco(text), 0);
  EXPECT_STREQ(text, "0045");
}

TEST_F(Status, LastDocumentNumberGivesFailuresAsTheyCome) {
  char text[50];
  EXPECT_EQ(t().lastsco(text), 107 | 0x200);
  client_.items[86] = "1";
  EXPECT_EQ(t().lastsco(text), 107);
  client_.data[7] = "1";
  EXPECT_EQ(t().lastsco(text), 107);
}

TEST_F(Status, LastDocumentNumberSurvivesNonsense) {
  char text[50];
  client_.items[86] = "1";
  client_.data[7] = "2147483647";
  client_.data[20] = "-99999999999999";
  EXPECT_EQ(t().lastsco(text), 0);
  EXPECT_STREQ(text, "2147483648-2147483648");
}

int slept_ms = 0;
int sleeps = 0;

class Wait : public Status {
 protected:
  void SetUp() override {
    Status::SetUp();
    slept_ms = sleeps = 0;
    Thread::SetSleepFunction([](int ms) {
      slept_ms += ms;
      ++sleeps;
    });
  }
  void TearDown() override {
    Thread::SetSleepFunction(nullptr);
    Status::TearDown();
  }
};

TEST_F(Wait, AnIdleClientIsAskedOnce) {
  t().WaitIdle();
  EXPECT_EQ(client_.polls, 1);
  EXPECT_EQ(sleeps, 0);
}

TEST_F(Wait, ABusyClientIsPolledInStepsOf150) {
  client_.busy_polls = 3;
  t().WaitIdle();
  EXPECT_EQ(client_.polls, 4);
  EXPECT_EQ(sleeps, 3);
  EXPECT_EQ(slept_ms, 450);
}

TEST_F(Wait, SixtySecondsAreTheMost) {
  client_.busy_polls = 1000000;
  t().WaitIdle();
  EXPECT_EQ(slept_ms, 60000);
  EXPECT_EQ(sleeps, 400);
  EXPECT_EQ(client_.polls, 401);
}

TEST_F(Wait, WithoutAClientThereIsNoWait) {
  t().rtfClient_ = nullptr;
  t().WaitIdle();
  EXPECT_EQ(sleeps, 0);
}

}  // namespace
