#include "door/job/service.h"

#include <gtest/gtest.h>

#include <atomic>
#include <functional>
#include <future>
#include <memory>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

#include "console/message/failure.h"
#include "door_shop.h"
#include "leaving_device.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat::door {
namespace {

// Neither what is thrown by a line nor what is thrown by telling of it ends the thread.
TEST(Service, WorksOnBehindWhateverIsThrown) {
  DoorShop shop;
  const Job job = shop.Sell("k");
  std::promise<int64_t> over;
  shop.log->SetObserver([&over](int64_t id) { over.set_value(id); });
  bool thrown = false;
  Service service({.log = *shop.log,
                   .device = *shop.device,
                   .judge = DoorShop::judge(),
                   .run =
                       [&](const std::string& line, std::string* answer) {
                         if (line != "#74" && !thrown) {
                           thrown = true;
                           throw 1;
                         }
                         return shop.RunLine(line, answer);
                       },
                   .hung = nullptr,
                   .tell = [](DeviceTrouble, const std::exception*) { throw 2; }});
  service.Start();
  EXPECT_EQ(over.get_future().get(), job.id);
  service.Stop();
  EXPECT_TRUE(thrown);
  EXPECT_EQ(shop.Get(job.id).state, JobState::kConfirmed);
  EXPECT_EQ(shop.Get(job.id).attempts, 2);
  EXPECT_EQ(shop.documents(), 1);
}

// A service on a shop, with questions.
class Asked {
 public:
  explicit Asked(DoorShop& shop, FiscalDevice* device = nullptr)
      : service_({.log = *shop.log,
                  .device = device != nullptr ? *device : *shop.device,
                  .judge = DoorShop::judge(),
                  .run =
                      [this, &shop](const std::string& line, std::string* answer) {
                        if (line.rfind("VEND", 0) == 0) ++begun;
                        if (at_line) at_line(line);
                        return shop.RunLine(line, answer);
                      },
                  .hung = nullptr,
                  .first_pause = std::chrono::milliseconds(1),
                  .tell = nullptr,
                  .answered = [this](int64_t id) { answered_.set_value(id); }}) {}

  bool Put(std::function<void(FiscalDevice&)> ask) {
    question = std::make_shared<Question>();
    question->id = -1;
    question->ask = std::move(ask);
    return service_.Ask(question);
  }
  void Start() { service_.Start(); }
  void Stop() { service_.Stop(); }
  int64_t Wait() { return answered_.get_future().get(); }

  std::shared_ptr<Question> question;
  std::function<void(const std::string& line)> at_line;
  std::atomic<int> begun{0};  // jobs

 private:
  std::promise<int64_t> answered_;
  Service service_;
};

TEST(Service, AsksTheDeviceBetweenTwoJobsOfASeries) {
  DoorShop shop;
  for (const char* key : {"a", "b", "c", "d"}) shop.Sell(key);
  Asked asked(shop);
  int64_t documents = -1;
  bool is_open = true;
  asked.at_line = [&](const std::string& line) {
    // In the middle of the second job.
    if (asked.begun != 2 || line.rfind("VEND", 0) != 0) return;
    EXPECT_TRUE(asked.Put([&](FiscalDevice& device) {
      documents = shop.documents();
      is_open = device.Ask()->is_open;
    }));
  };
  asked.Start();
  EXPECT_EQ(asked.Wait(), -1);
  asked.Stop();
  EXPECT_TRUE(asked.question->answered);
  // Ahead of the third, with nothing open.
  EXPECT_EQ(documents, 2);
  EXPECT_FALSE(is_open);
}

// Nobody waits any longer: from there on the end of a job is the beginning of the next one again.
TEST(Service, GoesOnWithTheSeriesBehindAQuestion) {
  DoorShop shop;
  std::promise<void> over;
  for (const char* key : {"a", "b", "c", "d", "e", "f"}) shop.Sell(key);
  std::atomic<int> ended{0};
  shop.log->SetObserver([&](int64_t id) {
    if (shop.Get(id).state == JobState::kConfirmed && ++ended == 6) over.set_value();
  });
  Service* asked = nullptr;
  int answered = -1;  // jobs over by then
  int ends_behind = 0;
  int begun_with_end = 0;
  bool is_ending = false;
  const auto question = std::make_shared<Question>();
  question->id = -1;
  question->ask = [&](FiscalDevice&) { answered = ended; };
  Service service({.log = *shop.log,
                   .device = *shop.device,
                   .judge = DoorShop::judge(),
                   .run =
                       [&](const std::string& line, std::string* answer) {
                         if (ended == 1 && line.starts_with("VEND")) {
                           EXPECT_TRUE(asked->Ask(question));
                         }
                         return shop.RunLine(line, answer);
                       },
                   .watch =
                       [&](Step step) {
                         if (step == Step::kBeforeOutcome) is_ending = true;
                         if (step == Step::kBehindOutcome) is_ending = false;
                         if (answered < 0) return;
                         if (step == Step::kBeforeOutcome) ++ends_behind;
                         if (step == Step::kBeforeBaseline && is_ending) ++begun_with_end;
                       },
                   .hung = nullptr,
                   .tell = nullptr});
  asked = &service;
  service.Start();
  over.get_future().wait();
  service.Stop();
  EXPECT_EQ(answered, 2);
  EXPECT_EQ(ends_behind, 4);
  EXPECT_EQ(begun_with_end, 3);
}

TEST(Service, WhatAQuestionThrowsEndsNothing) {
  DoorShop shop;
  Asked asked(shop);
  asked.Start();
  ASSERT_TRUE(asked.Put([](FiscalDevice&) { throw 1; }));
  EXPECT_EQ(asked.Wait(), -1);
  asked.Stop();
}

TEST(Service, TakesSoManyQuestionsAndNoMore) {
  DoorShop shop;
  Asked asked(shop);
  std::vector<std::shared_ptr<Question>> questions;
  for (size_t i = 0; i < Questions::kMost; ++i) {
    ASSERT_TRUE(asked.Put([](FiscalDevice&) {}));
    questions.push_back(asked.question);
  }
  EXPECT_FALSE(asked.Put([](FiscalDevice&) {}));
  // One that nobody waits for makes room.
  questions.front()->is_dropped = true;
  EXPECT_TRUE(asked.Put([](FiscalDevice&) {}));
}

TEST(Service, OpensADeviceThatWentAwayUntilItIsThere) {
  DoorShop shop;
  const Job job = shop.Sell("k");
  std::promise<int64_t> over;
  shop.log->SetObserver([&over](int64_t id) { over.set_value(id); });
  LeavingDevice device(*shop.device, 3);
  std::vector<std::string> told;
  Service service({.log = *shop.log,
                   .device = device,
                   .judge = DoorShop::judge(),
                   .run = [&](const std::string& line,
                              std::string* answer) { return shop.RunLine(line, answer); },
                   .hung = nullptr,
                   .first_pause = std::chrono::milliseconds(1),
                   .tell =
                       [&](DeviceTrouble trouble, const std::exception* failure) {
                         if (trouble != DeviceTrouble::kAway) return;
                         told.emplace_back(failure != nullptr ? failure->what() : "");
                       }});
  service.Start();
  EXPECT_EQ(over.get_future().get(), job.id);
  service.Stop();
  EXPECT_EQ(device.reopened, 3);
  const std::string cause = "nothing at the other end";
  EXPECT_EQ(told, (std::vector<std::string>{cause, cause, ""}));
  EXPECT_EQ(service.trouble(), DeviceTrouble::kNone);
  EXPECT_EQ(shop.Get(job.id).state, JobState::kConfirmed);
}

// Who is told that a job is over may send the next one at once: nothing of before keeps it out.
TEST(Service, HasNoTroubleLeftWhenAResetIsTold) {
  DoorShop shop;
  ASSERT_EQ(shop.device->client().BeginFiscalReceipt(true), RTF_SUCCESS);
  std::promise<void> blocked;
  std::promise<DeviceTrouble> over;
  bool is_told = false;
  Service service({.log = *shop.log,
                   .device = *shop.device,
                   .judge = DoorShop::judge(),
                   .run = [&](const std::string& line,
                              std::string* answer) { return shop.RunLine(line, answer); },
                   .hung = nullptr,
                   .first_pause = std::chrono::milliseconds(1),
                   .tell =
                       [&](DeviceTrouble trouble, const std::exception*) {
                         if (trouble != DeviceTrouble::kDocumentOpen || is_told) return;
                         is_told = true;
                         blocked.set_value();
                       }});
  shop.log->SetObserver([&](int64_t) { over.set_value(service.trouble()); });
  service.Start();
  blocked.get_future().wait();
  EXPECT_EQ(service.trouble(), DeviceTrouble::kDocumentOpen);
  NewJob reset;
  reset.key = "r";
  reset.lines = {"#74"};
  reset.effect = JobEffect::kReset;
  reset.expires = shop.now + 1000;
  bool was_there = false;
  shop.log->Accept(reset, &was_there);
  service.Wake();
  EXPECT_EQ(over.get_future().get(), DeviceTrouble::kNone);
  service.Stop();
}

// It tells what it is, and does nothing: while that is tried again a client is told the same.
TEST(Service, HasADeviceThatIsNotReadyForAwayUntilItIs) {
  DoorShop shop;
  const Job job = shop.Sell("k");
  constexpr int kInVain = 3;
  int resets = 0;
  std::vector<DeviceTrouble> at_reset;
  const Worker* asked = nullptr;
  Worker worker(
      *shop.log, *shop.device, DoorShop::judge(),
      [&](const std::string& line, std::string* answer) -> long {
        if (line == "#74" && ++resets <= kInVain) return RTF_E_TIMEOUT | 512;
        return shop.RunLine(line, answer);
      },
      [&](Step step) {
        if (step == Step::kBeforeReset) at_reset.push_back(asked->trouble());
      });
  asked = &worker;
  for (int round = 0; round < kInVain; ++round) {
    EXPECT_EQ(worker.Work(), Worker::Did::kBlocked);
    EXPECT_EQ(worker.trouble(), DeviceTrouble::kAway);
  }
  EXPECT_EQ(worker.Work(), Worker::Did::kWork);
  EXPECT_EQ(worker.trouble(), DeviceTrouble::kNone);
  EXPECT_EQ(at_reset, (std::vector<DeviceTrouble>{DeviceTrouble::kNone, DeviceTrouble::kAway,
                                                  DeviceTrouble::kAway, DeviceTrouble::kAway}));
  EXPECT_EQ(shop.Get(job.id).state, JobState::kConfirmed);
}

TEST(Service, HasNoFailureOfTheLogLeftWhenAJobIsTold) {
  DoorShop shop;
  const Job job = shop.Sell("k");
  std::promise<bool> over;
  // Its answer is lost, and the first time that the device was asked cannot be written either.
  int lines = 0;
  int asked = 0;
  Service service({.log = *shop.log,
                   .device = *shop.device,
                   .judge = DoorShop::judge(),
                   .run = [&](const std::string& line,
                              std::string* answer) { return shop.RunLine(line, answer); },
                   .watch =
                       [&](Step step) {
                         const bool is_lost = (step == Step::kBehindLine && ++lines == 2) ||
                                              (step == Step::kBehindAsking && ++asked == 1);
                         if (is_lost) throw std::runtime_error("full");
                       },
                   .hung = nullptr,
                   .first_pause = std::chrono::milliseconds(1),
                   .tell = nullptr});
  // As the program has it.
  shop.log->SetObserver([&](int64_t) {
    service.NoteWritten();
    over.set_value(service.log_failed());
  });
  service.Start();
  EXPECT_FALSE(over.get_future().get());
  service.Stop();
  EXPECT_EQ(asked, 2);
  EXPECT_EQ(shop.Get(job.id).state, JobState::kConfirmed);
}

// The second line of a job does not come back before the test lets it.
class HangingShop {
 public:
  Service::Parts Parts(std::chrono::milliseconds log_grace) {
    return {.log = *shop.log,
            .device = *shop.device,
            .judge = DoorShop::judge(),
            .run =
                [this](const std::string& line, std::string* answer) {
                  if (line.starts_with("CHIU")) {
                    if (ahead_of_call) ahead_of_call();
                    const WatchedCall call(calls_);
                    let_go.get_future().wait();
                  }
                  return shop.RunLine(line, answer);
                },
            .calls = &calls_,
            .device_timeout = std::chrono::milliseconds(1),
            .log_grace = log_grace,
            .hung = [this] { hung_.set_value(); },
            .tell = nullptr};
  }
  bool HasHung() {
    return hung_.get_future().wait_for(std::chrono::minutes(1)) == std::future_status::ready;
  }

  DoorShop shop;
  std::function<void()> ahead_of_call;
  std::promise<void> let_go;

 private:
  CallWatch calls_;
  std::promise<void> hung_;
};

TEST(Service, ACallThatHangsIsInTheLogAheadOfTheEnd) {
  HangingShop hanging;
  const Job job = hanging.shop.Sell("k");
  Service service(hanging.Parts(std::chrono::minutes(1)));
  service.Start();
  EXPECT_TRUE(hanging.HasHung());
  const Job noted = hanging.shop.Get(job.id);
  EXPECT_EQ(noted.state, JobState::kUnknown);
  EXPECT_EQ(noted.history.back().why, Why::kHang);
  hanging.let_go.set_value();
  service.Stop();
}

// The disk hangs as well, with somebody else at the log.
TEST(Service, ACallThatHangsEndsTheProgramWhileTheLogHangs) {
  HangingShop hanging;
  hanging.shop.Sell("k");
  std::promise<void> in_log;
  std::promise<void> log_let_go;
  std::once_flag once;
  std::thread client;
  hanging.ahead_of_call = [&] {
    hanging.shop.at_clock = [&, let_go = log_let_go.get_future().share()] {
      std::call_once(once, [&] { in_log.set_value(); });
      let_go.wait();
    };
    client = std::thread([&] { hanging.shop.Sell("other"); });
    in_log.get_future().wait();
  };
  Service service(hanging.Parts(std::chrono::milliseconds(1)));
  service.Start();
  EXPECT_TRUE(hanging.HasHung());
  log_let_go.set_value();
  hanging.let_go.set_value();
  service.Stop();
  client.join();
}

// A device from a file hangs as it is opened again.
TEST(Service, AnOpeningThatHangsEndsTheProgram) {
  class HangingDevice : public LeavingDevice {
   public:
    using LeavingDevice::LeavingDevice;
    void Reopen() override { throw console::DeviceHung("it does not come back"); }
  };
  DoorShop shop;
  HangingDevice device(*shop.device, 1);
  std::promise<std::string> hung;
  std::string told;
  bool is_told = false;
  Service service({.log = *shop.log,
                   .device = device,
                   .judge = DoorShop::judge(),
                   .run = [&](const std::string& line,
                              std::string* answer) { return shop.RunLine(line, answer); },
                   .hung =
                       [&] {
                         if (!std::exchange(is_told, true)) hung.set_value(told);
                       },
                   .first_pause = std::chrono::milliseconds(1),
                   .tell =
                       [&](DeviceTrouble, const std::exception* failure) {
                         if (failure != nullptr) told = failure->what();
                       }});
  service.Start();
  EXPECT_EQ(hung.get_future().get(), "it does not come back");
  service.Stop();
}

// Pauses grow while a device is away. What has come back is asked at once, and one that goes away
// again, or whoever wakes the thread, begins them anew.
TEST(Service, PausesGrowAndBeginAnew) {
  // Two openings fail, the third one opens it; and the same once more.
  class ComingDevice : public ClientDevice {
   public:
    explicit ComingDevice(FiscalDevice& inner) : inner_(inner) {}
    RtfClientInterface& client() override { return inner_.client(); }
    std::optional<DeviceState> Ask() override {
      if (asked_ > 0 && --asked_ == 0) openings_ = 3;
      return openings_ > 0 ? std::nullopt : ClientDevice::Ask();
    }
    void Reopen() override {
      if (--openings_ > 0) throw std::runtime_error("away");
      asked_ = 2;
    }

   private:
    FiscalDevice& inner_;
    int openings_ = 3;
    int asked_ = 0;
  };
  DoorShop shop;
  ComingDevice device(*shop.device);
  constexpr size_t kPauses = 8;
  std::vector<int64_t> pauses;
  std::promise<void> enough;
  Service service({.log = *shop.log,
                   .device = device,
                   .judge = DoorShop::judge(),
                   .run = [&](const std::string& line,
                              std::string* answer) { return shop.RunLine(line, answer); },
                   .hung = nullptr,
                   .first_pause = std::chrono::milliseconds(1),
                   .tell = nullptr,
                   .pauses =
                       [&](std::chrono::milliseconds pause) {
                         if (pauses.size() == kPauses) return;
                         pauses.push_back(pause.count());
                         if (pauses.size() == kPauses) enough.set_value();
                       }});
  service.Start();
  enough.get_future().wait();
  service.Stop();
  EXPECT_EQ(pauses, (std::vector<int64_t>{1, 2, 1, 2, 4, 8, 1, 2}));
}

}  // namespace
}  // namespace lorimat::door
