// What the service says to whoever asks whether it is alive.
#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <mutex>
#include <string>
#include <vector>

#include "door/job/service.h"
#include "door_shop.h"
#include "leaving_device.h"

namespace lorimat::door {
namespace {

// The time of the clock is the test's: each pause takes most of what a service manager waits for.
class PausedService {
 public:
  static constexpr int64_t kPause = 50'000;  // milliseconds, which is less than the limit
  static constexpr int kPauses = 20;

  PausedService(DoorShop& shop, FiscalDevice& device)
      : service_({.log = *shop.log,
                  .device = device,
                  .judge = DoorShop::judge(),
                  .run = [&shop](const std::string& line,
                                 std::string* answer) { return shop.RunLine(line, answer); },
                  .calls = &calls,
                  .clock = [this] { return now.load(); },
                  .device_timeout = std::chrono::milliseconds(1),
                  .hung = nullptr,
                  .first_pause = std::chrono::milliseconds(0),
                  .tell = nullptr,
                  .pauses = [this](std::chrono::milliseconds) { Pause(); }}) {}

  bool IsAlive() const { return service_.IsAlive(); }
  void Start() { service_.Start(); }
  void Stop() { service_.Stop(); }
  // How often it was alive at the end of a pause, of kPauses.
  int Count() { return over_.get_future().get(); }

  std::atomic<int64_t> now{1'000'000};
  CallWatch calls{[this] { return now.load(); }};

 private:
  void Pause() {
    if (pauses_ == kPauses) return;
    now += kPause;
    alive_ += IsAlive() ? 1 : 0;
    if (++pauses_ == kPauses) over_.set_value(alive_);
  }

  int pauses_ = 0;
  int alive_ = 0;
  std::promise<int> over_;
  Service service_;
};

TEST(Service, IsAliveWithNothingToDo) {
  DoorShop shop;
  PausedService paused(shop, *shop.device);
  paused.Start();
  EXPECT_EQ(paused.Count(), PausedService::kPauses);
  paused.Stop();
}

TEST(Service, IsAliveWhileTheDeviceIsAway) {
  DoorShop shop;
  LeavingDevice device(*shop.device, 1'000'000);
  PausedService paused(shop, device);
  paused.Start();
  EXPECT_EQ(paused.Count(), PausedService::kPauses);
  paused.Stop();
  EXPECT_GE(device.reopened, PausedService::kPauses);
}

// It is opened again by several calls: each may take its time, and one that takes more is told.
TEST(Service, IsAliveWithEachCallOfAnOpening) {
  class SlowlyOpened : public LeavingDevice {
   public:
    using LeavingDevice::LeavingDevice;
    void Reopen() override {
      if (reopened++ == 0) opening();
    }
    std::function<void()> opening;
  };
  DoorShop shop;
  SlowlyOpened device(*shop.device, 1'000'000);
  PausedService paused(shop, device);
  std::promise<std::vector<bool>> seen;
  device.opening = [&] {
    std::vector<bool> alive;
    for (int call = 0; call < 3; ++call) {
      paused.calls.NoteSign();
      paused.now += PausedService::kPause;
      alive.push_back(paused.IsAlive());
    }
    paused.now += PausedService::kPause;
    alive.push_back(paused.IsAlive());
    seen.set_value(alive);
  };
  paused.Start();
  EXPECT_EQ(seen.get_future().get(), (std::vector<bool>{true, true, true, false}));
  paused.Stop();
}

TEST(Service, IsNotAliveWithAThreadThatHangs) {
  DoorShop shop;
  PausedService paused(shop, *shop.device);
  std::promise<void> in_log;
  std::promise<void> let_go;
  std::once_flag once;
  shop.at_clock = [&, gone_on = let_go.get_future().share()] {
    std::call_once(once, [&] { in_log.set_value(); });
    gone_on.wait();
  };
  paused.Start();
  in_log.get_future().wait();
  EXPECT_TRUE(paused.IsAlive());
  paused.now += 2 * PausedService::kPause;
  EXPECT_FALSE(paused.IsAlive());
  let_go.set_value();
  EXPECT_GE(paused.Count(), 0);
  paused.Stop();
}

}  // namespace
}  // namespace lorimat::door
