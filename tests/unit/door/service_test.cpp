#include "door/job/service.h"

#include <gtest/gtest.h>

#include <future>
#include <stdexcept>
#include <string>
#include <vector>

#include "door_shop.h"
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

// Away until it has been opened so many times; the first ones fail.
class LeavingDevice : public ClientDevice {
 public:
  LeavingDevice(FiscalDevice& inner, int openings) : inner_(inner), openings_(openings) {}

  RtfClientInterface& client() override { return inner_.client(); }
  std::optional<DeviceState> Ask() override {
    return openings_ > 0 ? std::nullopt : ClientDevice::Ask();
  }
  void Reopen() override {
    ++reopened;
    if (--openings_ > 0) throw std::runtime_error("nothing at the other end");
  }

  int reopened = 0;

 private:
  FiscalDevice& inner_;
  int openings_;
};

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

}  // namespace
}  // namespace lorimat::door
