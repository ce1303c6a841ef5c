#include "door/job/client_device.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "door/passing_client.h"
#include "door_shop.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::door {
namespace {

// The register by its client interface alone.
class PlainDevice : public ClientDevice {
 public:
  explicit PlainDevice(RtfClientInterface& client) : client_(client) {}
  RtfClientInterface& client() override { return client_; }

 private:
  RtfClientInterface& client_;
};

// Answers with a result of its own, and with another one to the last day closing.
class Failing : public PassingClient<Failing> {
 public:
  explicit Failing(RtfClientInterface& inner) : inner_(inner) {}
  RtfClientInterface& inner() { return inner_; }
  template <ClientOperation operation, OperationKind kind, typename Call>
  auto Pass(Call call) -> decltype(call()) {
    ++calls;
    if constexpr (std::is_same_v<decltype(call()), int>) {
      if (result != RTF_SUCCESS) return result;
    }
    return call();
  }
  int GetDataInternal(int item, char* text) override {
    constexpr int kLastClosing = 394;
    if (item == kLastClosing && of_closing != RTF_SUCCESS) return of_closing;
    return PassingClient::GetDataInternal(item, text);
  }

  int calls = 0;
  int result = RTF_SUCCESS;
  int of_closing = RTF_SUCCESS;

 private:
  RtfClientInterface& inner_;
};

// One that is off may be on another time; one that has no such item will not have it then.
TEST(ClientDevice, WhatIsNotToldNowMayBeToldLater) {
  struct Row {
    int result;
    int of_closing;
    bool may_pass;
  };
  constexpr Row kRows[] = {{RTF_E_OFFLINE, RTF_SUCCESS, true},
                           {RTF_E_TIMEOUT, RTF_SUCCESS, true},
                           {RTF_E_ILLEGAL, RTF_SUCCESS, false},
                           {RTF_SUCCESS, RTF_E_NOEXIST, false},
                           {RTF_E_OFFLINE, RTF_E_ILLEGAL, false}};
  DoorShop shop;
  Failing client(shop.device->client());
  PlainDevice device(client);
  EXPECT_EQ(device.Missing().text, "");
  for (const Row& row : kRows) {
    client.result = row.result;
    client.of_closing = row.of_closing;
    const MissingItems missing = device.Missing();
    EXPECT_NE(missing.text.find("last day closing"), std::string::npos);
    EXPECT_EQ(missing.may_pass, row.may_pass) << row.result << ' ' << row.of_closing;
  }
}

// Ahead of each payment, where a device may take its time for each call.
TEST(ClientDevice, WhetherAFiscalDocumentIsOpenIsOneQuestion) {
  DoorShop shop;
  Failing client(shop.device->client());
  PlainDevice device(client);
  EXPECT_EQ(device.AskFiscalOpen(), false);
  EXPECT_EQ(client.calls, 1);
  ASSERT_EQ(client.BeginFiscalReceipt(false), RTF_SUCCESS);
  EXPECT_EQ(device.AskFiscalOpen(), true);
  client.result = RTF_E_OFFLINE;
  EXPECT_EQ(device.AskFiscalOpen(), std::nullopt);
  client.result = RTF_SUCCESS;
  ASSERT_EQ(client.ResetPrn(), RTF_SUCCESS);
  EXPECT_EQ(device.AskFiscalOpen(), false);
  ASSERT_EQ(client.BeginNonFiscal(), RTF_SUCCESS);
  EXPECT_EQ(device.AskFiscalOpen(), false);
  EXPECT_TRUE(device.Ask()->is_open);
}

// What passes is asked again; what the device has not it will not have another day.
TEST(ClientDevice, AJournalThatIsNotToldNowMayBeToldLater) {
  struct Row {
    int result;
    Told told;
  };
  constexpr Row kRows[] = {
      {RTF_E_ILLEGAL, Told::kNo},
      {RTF_E_NOEXIST, Told::kNo},
      {RTF_E_EXISTS, Told::kNo},
      {RTF_EFPTR_COVER_OPEN, Told::kNoAnswer},
      {RTF_EFPTR_REC_EMPTY, Told::kNoAnswer},
      {RTF_E_TIMEOUT, Told::kNoAnswer},
      {RTF_E_OFFLINE, Told::kNoAnswer},
  };
  DoorShop shop;
  shop.Sell("k");
  shop.Drain();
  PlainDevice device(shop.device->device());
  LastDocument last;
  for (const Row& row : kRows) {
    shop.device->device().AddFault(
        {.name = "code", .code = row.result, .operation = ClientOperation::kFiscalReportMessageEx});
    EXPECT_EQ(device.FindLast({1, 1, false}, &last), row.told) << row.result;
  }
  EXPECT_EQ(device.FindLast({1, 1, false}, &last), Told::kYes);
  EXPECT_FALSE(last.paper.empty());
}

// It answers until a call, and none from there on.
class AwayClient : public PassingClient<AwayClient> {
 public:
  explicit AwayClient(RtfClientInterface& inner) : inner_(inner) {}
  RtfClientInterface& inner() { return inner_; }
  template <ClientOperation operation, OperationKind kind, typename Call>
  auto Pass(Call call) -> decltype(call()) {
    ++calls;
    if constexpr (std::is_same_v<decltype(call()), int>) {
      if (calls >= first_failing) return RTF_E_TIMEOUT;
    }
    return call();
  }
  int calls = 0;
  int first_failing = 1;

 private:
  RtfClientInterface& inner_;
};

// Each item may take a device that is away its whole time.
TEST(ClientDevice, AsksNothingBehindWhatIsNotAnswered) {
  DoorShop shop;
  AwayClient client(shop.device->client());
  PlainDevice device(client);
  constexpr int kItems = 8;
  for (int first = 1; first <= kItems; ++first) {
    client.calls = 0;
    client.first_failing = first;
    EXPECT_EQ(device.Ask(), std::nullopt);
    EXPECT_EQ(client.calls, first);
  }
  client.calls = 0;
  client.first_failing = kItems + 1;
  EXPECT_TRUE(device.Ask());
  EXPECT_EQ(client.calls, kItems);
}

// By the kind of the document and the sale that its paper names.
TEST(ClientDevice, AVoidIsKnownByItsSale) {
  DoorShop shop;
  shop.Sell("a");
  shop.Sell("b");
  shop.Submit("n", {"VEND REP=1, PRE=1.20", "CHIU", "CORT MSG='0001-0001'"});
  shop.Submit("v", {"DOCANNULLO DOC=00010001, DATA=221126, AUTO"});
  shop.Drain();
  ASSERT_EQ(shop.documents(), 4);
  PlainDevice device(shop.device->device());
  EXPECT_EQ(device.FindVoid({1, 4, false}, {1, 1, false}), Told::kYes);
  EXPECT_EQ(shop.device->FindVoid({1, 4, false}, {1, 1, false}), Told::kYes);
  struct Row {
    DocumentName name;
    DocumentName sale;
  };
  const Row rows[] = {{{1, 4, false}, {1, 2, false}}, {{1, 4, false}, {11, 1, false}},
                      {{1, 3, false}, {1, 1, false}}, {{1, 5, false}, {1, 1, false}},
                      {{1, 4, true}, {1, 1, false}},  {{1, 4, false}, {1, 1, true}}};
  for (const Row& row : rows) {
    EXPECT_NE(device.FindVoid(row.name, row.sale), Told::kYes) << row.name.number;
    EXPECT_EQ(shop.device->FindVoid(row.name, row.sale), Told::kNo) << row.name.number;
  }
  shop.device->device().AddFault({.name = "code",
                                  .code = RTF_E_TIMEOUT,
                                  .operation = ClientOperation::kFiscalReportMessageEx});
  EXPECT_EQ(device.FindVoid({1, 4, false}, {1, 1, false}), Told::kNoAnswer);
}

// An hour is what comes back each autumn.
TEST(ClientDevice, ARegisterWarnsOfAClockByWhichItRefusesAllSales) {
  const std::vector<std::string> behind = {"clock_behind"};
  DoorShop shop;
  EXPECT_TRUE(shop.device->Report()->warnings.empty());
  const int64_t sold = shop.Sell("k1").id;
  shop.Drain();
  ASSERT_EQ(shop.Get(sold).state, JobState::kConfirmed);
  shop.hour = 9;
  EXPECT_TRUE(shop.device->Report()->warnings.empty());
  shop.hour = 8;
  EXPECT_EQ(shop.device->Report()->warnings, behind);
  const int64_t refused = shop.Sell("k2").id;
  shop.Drain();
  EXPECT_EQ(shop.Get(refused).state, JobState::kRejected);
  shop.hour = 10;
  EXPECT_TRUE(shop.device->Report()->warnings.empty());
}

}  // namespace
}  // namespace lorimat::door
