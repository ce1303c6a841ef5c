#include "door/door_watch.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <future>
#include <thread>
#include <utility>

#include "console/terminal/streams.h"
#include "door/access/tls.h"
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

// A watch, and a log that takes nothing while it is full.
struct Watched {
  Watched() {
    log.SetEventObserver([this](const Job* job) { watch.Told(job); });
  }

  std::string Warnings() {
    watch.NoteWarnings();
    const EventPage page = log.Events(std::max<int64_t>(log.LastEvent() - 1, 0), 1, std::nullopt);
    return page.events.empty() ? "" : page.events.front().text;
  }

  DoorShop shop;
  HttpServer server{"127.0.0.1", 0};
  Service service{{.log = *shop.log,
                   .device = *shop.device,
                   .judge = DoorShop::judge(),
                   .run = [this](const std::string& line,
                                 std::string* answer) { return shop.RunLine(line, answer); },
                   .hung = nullptr,
                   .tell = nullptr}};
  console::Streams streams;
  Notices notices{streams};
  ServiceManager manager;
  bool is_full = false;
  JobLog log{"", [this] {
               if (is_full) throw std::runtime_error("full");
               return int64_t{1000};
             }};
  DoorWatch watch{{log, server, service, notices, manager}};
};

TEST(DoorWatch, ALogThatTakesNothingIsKnownUntilItDoes) {
  Watched door;
  door.watch.NoteWarnings();
  const int64_t before = door.log.LastEvent();
  for (int round = 0; round < 2; ++round) {
    door.is_full = true;
    EXPECT_TRUE(door.watch.NoteNotWritten());
    EXPECT_FALSE(door.watch.NoteNotWritten()) << "that is known";
    EXPECT_TRUE(door.watch.writes_none());
    door.watch.NoteWarnings();
    EXPECT_TRUE(door.watch.writes_none());
    door.is_full = false;
    door.watch.NoteWarnings();
    EXPECT_FALSE(door.watch.writes_none());
  }
  EXPECT_EQ(door.log.LastEvent(), before + 4) << "disk_full, and what there is besides, each time";
  door.watch.NoteNotWritten();
  NewJob job;
  job.key = "k";
  bool was_there = false;
  door.log.Accept(job, &was_there);
  EXPECT_FALSE(door.watch.writes_none()) << "a job was written";
  EXPECT_EQ(door.log.LastEvent(), before + 5);
  door.watch.NoteWarnings();
  EXPECT_EQ(door.log.LastEvent(), before + 7) << "those that were not are told all the same";
}

TEST(DoorWatch, ACertificateThatRunsOutIsAWarning) {
  Watched door;
  constexpr int64_t kHour = 3600;
  const int64_t now = std::time(nullptr);
  for (const auto& [end, is_told] :
       {std::pair<int64_t, bool>{now + kCertificateNotice - kHour, true},
        {now + kCertificateNotice + kHour, false},
        {now - kHour, true},
        {0, false}}) {
    door.watch.NoteCertificate(end);
    EXPECT_EQ(door.Warnings().find("certificate_near_end") != std::string::npos, is_told) << end;
    MetricsText text;
    door.watch.AddMetrics(text);
    EXPECT_EQ(text.text().find("lorimatd_certificate_end_seconds " + std::to_string(end)) !=
                  std::string::npos,
              end != 0);
  }
}

// Where the device cannot be asked for long, those that clients wait for have their places.
TEST(DoorWatch, TheDeviceIsAskedOnceAtATime) {
  Watched door;
  for (size_t i = 0; i < 2 * Questions::kMost; ++i) door.watch.AskDevice();
  for (size_t i = 1; i < Questions::kMost; ++i) {
    EXPECT_TRUE(door.service.Ask(std::make_shared<Question>())) << i;
  }
  EXPECT_FALSE(door.service.Ask(std::make_shared<Question>())) << "the first one waits";
}

// What paper, cover and clock have is news too, and that it is over.
TEST(DoorWatch, WhatTheDeviceWarnsOfIsAWarning) {
  class Warning : public ShopDevice {
   public:
    using ShopDevice::ShopDevice;
    std::optional<DeviceReport> Report() override {
      std::optional<DeviceReport> report = ShopDevice::Report();
      report->warnings = warnings;
      return report;
    }
    std::vector<std::string> warnings;
  };
  DoorShop shop;
  RegisterSettings settings;
  Warning device(std::move(settings));
  HttpServer server("127.0.0.1", 0);
  std::atomic<int> answered{0};
  Service service({.log = *shop.log,
                   .device = device,
                   .judge = DoorShop::judge(),
                   .run = [&](const std::string& line,
                              std::string* answer) { return shop.RunLine(line, answer); },
                   .hung = nullptr,
                   .tell = nullptr,
                   .answered = [&](int64_t) { ++answered; }});
  console::Streams streams;
  Notices notices(streams);
  const ServiceManager manager;
  DoorWatch watch({*shop.log, server, service, notices, manager});
  service.Start();
  const std::vector<std::string> both = {"paper_near_end", "cover_open"};
  for (const auto& warnings : {both, {}}) {
    device.warnings = warnings;
    const int before = answered;
    watch.AskDevice();
    while (answered == before) std::this_thread::yield();
    const int64_t last = shop.log->LastEvent();
    watch.NoteWarnings();
    const EventPage page = shop.log->Events(last, 10);
    ASSERT_EQ(page.events.size(), 1u);
    EXPECT_EQ(page.events[0].kind, EventKind::kWarning);
    EXPECT_EQ(page.events[0].text.find("paper_near_end cover_open") != std::string::npos,
              !warnings.empty());
  }
}

}  // namespace
}  // namespace lorimat::door
