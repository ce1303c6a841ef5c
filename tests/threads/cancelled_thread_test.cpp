// A thread that is cancelled from outside while it is in an operation.
#include <pthread.h>
#include <stdlib.h>

#include <atomic>
#include <filesystem>
#include <functional>
#include <memory>
#include <semaphore>
#include <thread>

#include "register/inspect/register_file.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

TEST(CancelledThreadTest, GoesBehindTheOperationThatIsCarriedOut) {
  // The clock is asked in the middle of it.
  std::binary_semaphore inside(0);
  std::binary_semaphore go_on(0);
  std::atomic<bool> waits = false;
  RegisterSettings settings = TestSettings();
  settings.clock = [&, fixed = settings.clock] {
    if (waits.exchange(false)) {
      inside.release();
      go_on.acquire();
      pthread_testcancel();
    }
    return fixed();
  };
  VirtualRegister device(settings);
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  waits = true;
  std::atomic<bool> went_on = false;
  std::thread host([&] {
    device.PrintRecTotalEx(0, "0", true);
    pthread_testcancel();
    went_on = true;
  });
  inside.acquire();
  ASSERT_EQ(pthread_cancel(host.native_handle()), 0);
  go_on.release();
  host.join();
  EXPECT_FALSE(went_on);
  // Whole, and the register free for the next one.
  ASSERT_EQ(device.store().documents().size(), 1u);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
}

// A file is synced and closed, and each of these calls is one where a cancelled thread would go.
class CancelledFileTest : public testing::Test {
 protected:
  void SetUp() override {
    char name[] = "/tmp/lorimat-cancel.XXXXXX";
    ASSERT_NE(mkdtemp(name), nullptr);
    folder_ = name;
    settings_ = TestSettings();
    settings_.file = folder_ + "/shop.register";
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  // Whether a thread that is cancelled ahead of the work does it before it goes.
  static bool DoneWhole(const std::function<void()>& prepare, const std::function<void()>& work) {
    std::atomic<bool> done = false;
    std::atomic<bool> went_on = false;
    std::thread thread([&] {
      prepare();
      pthread_cancel(pthread_self());
      work();
      done = true;
      pthread_testcancel();
      went_on = true;
    });
    thread.join();
    return done && !went_on;
  }

  std::string folder_;
  RegisterSettings settings_;
};

TEST_F(CancelledFileTest, ARegisterIsMadeAndClosedWhole) {
  std::unique_ptr<VirtualRegister> device;
  EXPECT_TRUE(DoneWhole([] {}, [&] { device = std::make_unique<VirtualRegister>(settings_); }));
  ASSERT_NE(device, nullptr);
  EXPECT_EQ(device->BeginFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_TRUE(DoneWhole([] {}, [&] { device.reset(); }));
  // The document that was open is ended at the start.
  EXPECT_TRUE(DoneWhole([] {}, [&] { device = std::make_unique<VirtualRegister>(settings_); }));
  EXPECT_TRUE(device->cut_off());
  device.reset();
  EXPECT_TRUE(DoneWhole([] {}, [&] { RegisterFile(settings_.file).Status(); }));
}

}  // namespace
}  // namespace lorimat
