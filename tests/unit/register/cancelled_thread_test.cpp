// A thread that is cancelled from outside while it is in an operation.
#include <pthread.h>

#include <atomic>
#include <semaphore>
#include <thread>

#include "register_fixture.h"

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

}  // namespace
}  // namespace lorimat
