#include "door/door_watch.h"

#include <gtest/gtest.h>

#include <future>
#include <thread>

#include "console/terminal/streams.h"
#include "door/http/api.h"
#include "door_shop.h"

namespace lorimat::door {
namespace {

// Somebody holds the log and does not come back: nobody is alive to the service manager then.
TEST(DoorWatch, ALogThatIsHeldForGoodIsNoLife) {
  DoorShop shop;
  std::promise<void> held;
  std::promise<void> release;
  std::atomic<bool> holds{false};
  JobLog log("", [&] {
    if (holds.exchange(false)) {
      held.set_value();
      release.get_future().wait();
    }
    return int64_t{1000};
  });
  HttpServer server("127.0.0.1", 0);
  Service service({.log = *shop.log,
                   .device = *shop.device,
                   .judge = DoorShop::judge(),
                   .run = [&](const std::string& line,
                              std::string* answer) { return shop.RunLine(line, answer); },
                   .hung = nullptr,
                   .tell = nullptr});
  console::Streams streams;
  Notices notices(streams);
  const ServiceManager manager;
  DoorWatch watch({log, server, service, notices, manager});
  Api api({.log = log,
           .judge = DoorShop::judge(),
           .hosts = {},
           .operators = {},
           .trouble = [] { return DeviceTrouble::kNone; },
           .log_failed = [] { return false; },
           .wake = [] {}});
  service.Start();
  server.Start(api);
  for (int i = 0; i < 5; ++i) {
    while (!watch.IsAlive(api)) std::this_thread::yield();
  }
  holds = true;
  NewJob job;
  job.key = "k";
  std::thread holder([&] {
    bool was_there = false;
    log.Accept(job, &was_there);
  });
  held.get_future().wait();
  // One sign at most is on its way from before.
  watch.IsAlive(api);
  watch.IsAlive(api);
  for (int i = 0; i < 1000; ++i) ASSERT_FALSE(watch.IsAlive(api));
  release.set_value();
  holder.join();
  while (!watch.IsAlive(api)) std::this_thread::yield();
  server.Stop();
  service.Stop();
}

// A log that takes nothing of what comes is told once, and looked at until it does.
TEST(DoorWatch, ALogThatTakesNothingIsToldUntilItDoes) {
  DoorShop shop;
  HttpServer server("127.0.0.1", 0);
  Service service({.log = *shop.log,
                   .device = *shop.device,
                   .judge = DoorShop::judge(),
                   .run = [&](const std::string& line,
                              std::string* answer) { return shop.RunLine(line, answer); },
                   .hung = nullptr,
                   .tell = nullptr});
  console::Streams streams;
  Notices notices(streams);
  const ServiceManager manager;
  bool is_full = false;
  JobLog log("", [&] {
    if (is_full) throw std::runtime_error("full");
    return int64_t{1000};
  });
  DoorWatch watch({log, server, service, notices, manager});
  log.SetEventObserver([&watch](const Job* job) { watch.Told(job); });
  watch.NoteWarnings();
  const int64_t before = log.LastEvent();
  for (int round = 0; round < 2; ++round) {
    is_full = true;
    EXPECT_TRUE(watch.NoteNotWritten());
    EXPECT_FALSE(watch.NoteNotWritten()) << "that is known";
    EXPECT_TRUE(watch.writes_none());
    watch.NoteWarnings();
    EXPECT_TRUE(watch.writes_none());
    is_full = false;
    watch.NoteWarnings();
    EXPECT_FALSE(watch.writes_none());
  }
  EXPECT_EQ(log.LastEvent(), before + 4) << "disk_full, and what there is besides, each time";
  watch.NoteNotWritten();
  NewJob job;
  job.key = "k";
  bool was_there = false;
  log.Accept(job, &was_there);
  EXPECT_FALSE(watch.writes_none()) << "a job was written";
}

}  // namespace
}  // namespace lorimat::door
