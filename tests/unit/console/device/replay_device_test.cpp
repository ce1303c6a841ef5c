// The device "replay", as the console opens it.
#include "console/device/replay_device.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "console/message/failure.h"
#include "rpccommon/client/rtfclientinterface.h"

namespace lorimat::console {
namespace {

using ::testing::HasSubstr;

class ReplayDeviceTest : public ::testing::Test {
 protected:
  std::string Write(const std::string& text) {
    const std::string file = testing::TempDir() + "replay_device_test.rec";
    std::ofstream(file, std::ios::binary) << text;
    return file;
  }
  // The streams are those of this moment, and outlive each device: its end tells notes by them.
  std::unique_ptr<Device> Open(const DeviceRequest& request) {
    testing::internal::CaptureStderr();
    return OpenDevice(request, *streams_.emplace_back(std::make_unique<Streams>()));
  }
  std::string Told() { return testing::internal::GetCapturedStderr(); }
  std::string Refusal(const DeviceRequest& request) {
    std::string refusal;
    try {
      Open(request);
    } catch (const Failure& failure) {
      refusal = failure.what();
    }
    Told();
    return refusal;
  }

  std::vector<std::unique_ptr<Streams>> streams_;
};

constexpr const char* kTwoCalls =
    "> CHIU\n"
    "< OpenDrawer() -> 0\n"
    "< PrintRecMessage(\"A\") -> 207\n"
    "= 1231 *\n";

TEST_F(ReplayDeviceTest, AnswersAsWasRecorded) {
  const std::unique_ptr<Device> device = Open({.device = "replay:" + Write(kTwoCalls)});
  EXPECT_EQ(device->client()->OpenDrawer(), 0);
  EXPECT_EQ(device->client()->PrintRecMessage("A"), 207);
  EXPECT_EQ(device->last_failure(), "");
  EXPECT_EQ(Told(), "");
}

TEST_F(ReplayDeviceTest, TellsWhereTheCallsPart) {
  const std::string file = Write(kTwoCalls);
  std::unique_ptr<Device> device = Open({.device = "replay:" + file});
  EXPECT_EQ(device->client()->PrintRecMessage("B"), 111);
  EXPECT_EQ(device->last_failure(), file +
                                        ":2: another call was recorded: expected OpenDrawer(), got "
                                        "PrintRecMessage(\"B\")");
  device.reset();
  EXPECT_THAT(Told(), HasSubstr(file + ":2: another call was recorded"));
}

TEST_F(ReplayDeviceTest, ACallThatWasNotMadeIsANoteAtTheEnd) {
  const std::string file = Write(kTwoCalls);
  std::unique_ptr<Device> device = Open({.device = "replay:" + file});
  device->client()->OpenDrawer();
  device.reset();
  EXPECT_THAT(Told(), HasSubstr(file + ":3: a call that was recorded was not made: expected "
                                       "PrintRecMessage(\"A\")"));
}

TEST_F(ReplayDeviceTest, ALenientOneTakesAnotherOrder) {
  const std::unique_ptr<Device> device =
      Open({.device = "replay:" + Write(kTwoCalls), .options = {{"order", "lenient"}}});
  EXPECT_EQ(device->client()->PrintRecMessage("A"), 207);
  EXPECT_EQ(device->client()->OpenDrawer(), 0);
  EXPECT_EQ(Told(), "");
}

TEST_F(ReplayDeviceTest, WhatIsDamagedIsRefusedUnlessItIsToBeTaken) {
  const std::string cut = Write("recording: 1\n" + std::string(kTwoCalls));
  EXPECT_EQ(Refusal({.device = "replay:" + cut}), cut + ":5: the recording is cut off there");
  const std::unique_ptr<Device> device =
      Open({.device = "replay:" + cut, .options = {{"damaged", "taken"}}});
  EXPECT_EQ(device->client()->OpenDrawer(), 0);
  EXPECT_THAT(Told(), HasSubstr("the recording is cut off there"));
  const std::string foreign = Write("recording: 7\n");
  EXPECT_EQ(Refusal({.device = "replay:" + foreign, .options = {{"damaged", "taken"}}}),
            foreign + ": is a recording of format 7, and this program reads format 1");
}

TEST_F(ReplayDeviceTest, WrongOptionsAreNamed) {
  const std::string file = Write(kTwoCalls);
  EXPECT_THAT(Refusal({.device = "replay"}), HasSubstr("needs a recording"));
  EXPECT_THAT(Refusal({.device = "replay:" + file, .options = {{"clock", "now"}}}),
              HasSubstr("has no option 'clock'"));
  EXPECT_THAT(Refusal({.device = "replay:" + file, .options = {{"order", "any"}}}),
              HasSubstr("strict or lenient, and not 'any'"));
  EXPECT_THAT(Refusal({.device = "replay:/nowhere/at.all"}), HasSubstr("cannot be read"));
}

}  // namespace
}  // namespace lorimat::console
