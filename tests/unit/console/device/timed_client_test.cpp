// Calls on a thread of their own: what goes in and comes back, and what is given up.
#include "console/device/timed_client.h"

#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cstring>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>

#include "console/device/device_thread.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat::console {
namespace {

using std::chrono::milliseconds;

constexpr milliseconds kLong = std::chrono::minutes(10);

class Answering : public RtfClientBase {
 public:
  int GetIntProperty(int property, int* value) override {
    ++calls;
    thread = std::this_thread::get_id();
    if (value != nullptr) *value += property;
    return value != nullptr ? RTF_SUCCESS : RTF_E_ILLEGAL;
  }
  int GetDataInternal(int, char* text) override {
    std::strcpy(text, "data");
    return RTF_SUCCESS;
  }
  // One byte more than there is room for.
  int GetHeaderLine(int, char* text) override {
    std::memset(text, 'A', 66);
    return RTF_SUCCESS;
  }
  int DisplayText(const char* text, int) override { return text == nullptr ? 1 : 0; }
  int OpenDrawer() override { throw std::runtime_error("stuck"); }
  int PrintZReportEx(bool) override {
    reached.set_value();
    go_on.get_future().wait();
    return RTF_SUCCESS;
  }
  int ConfigGroup(bool, int, char* description, char* password, int* flags, int* options) override {
    std::strcpy(description, "group");
    std::strcpy(password, "1234");
    *flags = 5;
    *options = 6;
    return RTF_SUCCESS;
  }

  int calls = 0;
  std::thread::id thread;
  std::promise<void> reached;
  std::promise<void> go_on;
};

TEST(TimedClientTest, ArgumentsAndAnswersGoThrough) {
  const auto device = std::make_shared<Answering>();
  DeviceThread thread(kLong);
  int behind = 0;
  TimedClient client(device, thread, [&behind] { ++behind; });
  int value = 40;
  EXPECT_EQ(client.GetIntProperty(2, &value), RTF_SUCCESS);
  EXPECT_EQ(value, 42);
  EXPECT_NE(device->thread, std::this_thread::get_id());
  EXPECT_EQ(client.GetIntProperty(2, nullptr), RTF_E_ILLEGAL);
  std::array<char, 50> text{};
  EXPECT_EQ(client.GetDataInternal(86, text.data()), RTF_SUCCESS);
  EXPECT_STREQ(text.data(), "data");
  EXPECT_EQ(client.DisplayText(nullptr, 0), 1);
  EXPECT_EQ(client.DisplayText("", 0), 0);
  std::array<char, 129> description{};
  std::array<char, 65> password{};
  int flags = 0;
  int options = 0;
  EXPECT_EQ(client.ConfigGroup(false, 1, description.data(), password.data(), &flags, &options), 0);
  EXPECT_STREQ(description.data(), "group");
  EXPECT_STREQ(password.data(), "1234");
  EXPECT_EQ(flags * 10 + options, 56);
  EXPECT_EQ(behind, 6);
  EXPECT_EQ(client.refused(), 0u);
}

TEST(TimedClientTest, AnExceptionIsAFailureWithTheNameOfItsOperation) {
  DeviceThread thread(kLong);
  TimedClient client(std::make_shared<Answering>(), thread, [] {});
  EXPECT_EQ(client.OpenDrawer(), RTF_E_FAILURE);
  const CallFault fault = client.TakeFault();
  EXPECT_EQ(fault.fault, DeviceCallFault::kThrew);
  EXPECT_EQ(fault.operation, ClientOperation::kOpenDrawer);
  EXPECT_EQ(client.TakeFault().fault, DeviceCallFault::kNone);
  int value = 0;
  EXPECT_EQ(client.GetIntProperty(2, &value), RTF_SUCCESS);
}

TEST(TimedClientTest, ATextThatIsWrittenBehindItsRoomIsTakenNothingOf) {
  DeviceThread thread(kLong);
  TimedClient client(std::make_shared<Answering>(), thread, [] {});
  std::array<char, 65> text;
  text.fill('B');
  EXPECT_EQ(client.GetHeaderLine(1, text.data()), RTF_E_FAILURE);
  EXPECT_EQ(std::string(text.data(), text.size()), std::string(65, 'B'));
  const CallFault fault = client.TakeFault();
  EXPECT_EQ(fault.fault, DeviceCallFault::kOverrun);
  EXPECT_EQ(fault.operation, ClientOperation::kGetHeaderLine);
}

TEST(TimedClientTest, WhatIsGivenUpIsNamedAndNothingIsCalledBehindIt) {
  const auto device = std::make_shared<Answering>();
  {
    DeviceThread thread(milliseconds(1));
    TimedClient client(device, thread, [] {});
    EXPECT_EQ(client.PrintZReportEx(true), TimedClient::kRefused);
    device->reached.get_future().wait();
    EXPECT_EQ(thread.given_up().call, "PrintZReportEx");
    EXPECT_FALSE(thread.given_up().interrupted);
    int value = 1;
    EXPECT_EQ(client.GetIntProperty(2, &value), TimedClient::kRefused);
    EXPECT_EQ(value, 1);
    EXPECT_EQ(client.GetState(), RTF_S_CLOSED);
    EXPECT_FALSE(client.GetClaimed());
    EXPECT_EQ(client.refused(), 4u);
    EXPECT_EQ(device->calls, 0);
  }
  // The call goes on, and finds what it was given.
  device->go_on.set_value();
}

}  // namespace
}  // namespace lorimat::console
