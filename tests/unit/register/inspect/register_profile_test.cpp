// What a register's file tells of it beyond its status.
#include "register/inspect/register_profile.h"

#include <filesystem>

#include "register/value/device_clock.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class RegisterProfileTest : public StoreTest {
 protected:
  RegisterProfileTest() {
    now = FixedTime();
    Start();
  }
  void Start() {
    RegisterSettings settings = FileSettings();
    settings.clock = [] { return now; };
    device = std::make_unique<VirtualRegister>(settings);
  }
  void Sell(int64_t price) {
    ASSERT_EQ(device->BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(device->PrintRecItemEx(0, "", price, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    ASSERT_EQ(device->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }
  // Of a register that is switched off.
  RegisterProfile Profile() {
    device.reset();
    return RegisterFile(Path("shop.register")).Profile();
  }

  static inline std::tm now = {};
  std::unique_ptr<VirtualRegister> device;
};

TEST_F(RegisterProfileTest, OfANewRegister) {
  const RegisterProfile profile = Profile();
  EXPECT_EQ(profile.last_document, 0);
  EXPECT_EQ(profile.last_closing, 0);
  EXPECT_EQ(profile.roll_lines, 0u);
  EXPECT_EQ(profile.day.net(), 0);
  EXPECT_FALSE(profile.clock_behind);
  EXPECT_EQ(profile.file_bytes, std::filesystem::file_size(Path("shop.register")));
}

TEST_F(RegisterProfileTest, HasTheTimesOfTheLastDocumentAndOfTheLastClosing) {
  Sell(10000);
  now.tm_hour = 18;
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  RegisterProfile profile = Profile();
  EXPECT_EQ(profile.last_document, 20240115103000);
  EXPECT_EQ(profile.last_closing, 20240115183000);
  Start();
  ++now.tm_mday;
  now.tm_sec = 7;
  Sell(20000);
  const size_t lines = device->paper().lines().size();
  profile = Profile();
  EXPECT_EQ(profile.last_document, 20240116183007);
  EXPECT_EQ(profile.last_closing, 20240115183000);
  EXPECT_EQ(profile.day.net(), 20000);
  EXPECT_EQ(profile.roll_lines, lines);
  EXPECT_FALSE(profile.clock_behind);
}

// The computer's clock, which has gone on since the fixed one of these registers, as it was set.
TEST_F(RegisterProfileTest, HasTheRegistersClock) {
  Sell(10000);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  ASSERT_EQ(device->SetDate("160120241030"), RTF_SUCCESS);  // a day ahead
  constexpr int64_t kDay = 24 * 60 * 60;
  const std::tm before = ComputerTime();
  RegisterProfile profile = Profile();
  const std::tm after = ComputerTime();
  EXPECT_EQ(profile.state.setup.clock_offset, kDay);
  EXPECT_GE(SecondsBetween(LaterBy(before, kDay), profile.clock), 0);
  EXPECT_GE(SecondsBetween(profile.clock, LaterBy(after, kDay)), 0);
  EXPECT_FALSE(profile.clock_behind);
  // It lies behind a document of a time that has not come.
  now.tm_year = 1099;
  Start();
  Sell(10000);
  profile = Profile();
  ASSERT_TRUE(profile.clock_behind);
  EXPECT_EQ(profile.clock_behind->latest, profile.last_document);
}

}  // namespace
}  // namespace lorimat
