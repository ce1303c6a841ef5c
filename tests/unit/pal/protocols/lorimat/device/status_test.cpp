// What of the status no host sees at once: members that nothing shows, values out of range, and the
// time that is waited. tests/conversations/status and queries have the rest.
#include <gtest/gtest.h>

#include <cstring>
#include <map>
#include <memory>
#include <string>

#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/threading/posix/thread.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"
#include "support/null_client.h"

namespace {

// A client with data items and GetData texts; what is missing answers 107.
class ItemClient : public NullClient {
 public:
  int GetDataInternal(int item, char* text) override { return Give(items, item, text); }
  int GetData(int selector, int*, char* text) override { return Give(data, selector, text); }
  int GetState() override {
    ++polls;
    return polls <= busy_polls ? RTF_S_BUSY : RTF_S_IDLE;
  }

  std::map<int, std::string> items;
  std::map<int, std::string> data;
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

TEST_F(Status, WhateverFieldIsMissingTheStatusFails) {
  std::string text = "1";
  for (int fields = 1; fields < 7; ++fields) {
    client_.items[371] = text;
    EXPECT_EQ(t().UpdateStatus(), 265) << text;
    text += ";1";
  }
  client_.items[371] = text;
  EXPECT_EQ(t().UpdateStatus(), 0);
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
