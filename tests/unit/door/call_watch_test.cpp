#include "door/job/call_watch.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "door/job/watched_device.h"
#include "door/passing_client.h"
#include "door_shop.h"

namespace lorimat::door {
namespace {

TEST(CallWatch, KnowsTheCallAtWorkAlone) {
  int64_t now = 1000;
  CallWatch watch([&now] { return now; });
  EXPECT_EQ(watch.Since(), std::nullopt);
  {
    const WatchedCall call(watch);
    now += 7;
    EXPECT_EQ(watch.Since(), 7);
  }
  EXPECT_EQ(watch.Since(), std::nullopt);
  now += 100;
  const WatchedCall call(watch);
  EXPECT_EQ(watch.Since(), 0);
}

// Each call takes its time, and tells how long the one at work had taken ahead of that.
class SlowClient : public PassingClient<SlowClient> {
 public:
  SlowClient(RtfClientInterface& inner, int64_t* now) : inner_(inner), now_(now) {}
  RtfClientInterface& inner() { return inner_; }
  template <ClientOperation operation, OperationKind kind, typename Call>
  auto Pass(Call call) -> decltype(call()) {
    ++calls;
    longest = std::max(longest, watch->Since().value_or(-1));
    unwatched += watch->Since() ? 0 : 1;
    *now_ += 60'000;
    return call();
  }

  const CallWatch* watch = nullptr;
  int calls = 0;
  int unwatched = 0;
  int64_t longest = -1;

 private:
  RtfClientInterface& inner_;
  int64_t* now_;
};

class SlowDevice : public ClientDevice {
 public:
  SlowDevice(FiscalDevice& inner, int64_t* now) : client_(inner.client(), now), inner_(inner) {}
  SlowClient& client() override { return client_; }
  Told FindLast(const DocumentName& name, LastDocument* document) override {
    asked_for_last = client_.watch->Since();
    return inner_.FindLast(name, document);
  }

  void AddReport(DeviceReport* report) override {
    asked_to_add = client_.watch->Since();
    inner_.AddReport(report);
  }

  std::optional<int64_t> asked_for_last;
  std::optional<int64_t> asked_to_add;

 private:
  SlowClient client_;
  FiscalDevice& inner_;
};

// A job has many calls, and the log is written between them: nothing adds up.
TEST(CallWatch, EachCallOfAJobIsOneByItself) {
  DoorShop shop;
  int64_t now = 0;
  CallWatch watch([&now] { return now; });
  SlowDevice slow(*shop.device, &now);
  slow.client().watch = &watch;
  WatchedDevice device(slow, watch);
  int steps_in_a_call = 0;
  Worker worker(
      *shop.log, device, DoorShop::judge(),
      [&](const std::string& line, std::string* answer) { return shop.RunLine(line, answer); },
      [&](Step) { steps_in_a_call += watch.Since() ? 1 : 0; });
  const Job job = shop.Sell("k");
  while (worker.Work() == Worker::Did::kWork) {
  }
  EXPECT_EQ(shop.Get(job.id).state, JobState::kConfirmed);
  // The device was asked four times, by eight questions and the mark, beside the one for the last
  // document.
  EXPECT_GT(slow.client().calls, 32);
  EXPECT_EQ(slow.client().unwatched, 0);
  EXPECT_EQ(slow.client().longest, 0);
  EXPECT_EQ(slow.asked_for_last, 0);
  EXPECT_EQ(steps_in_a_call, 0);
}

// So has what it tells for people.
TEST(CallWatch, EachCallOfAReportIsOneByItself) {
  DoorShop shop;
  int64_t now = 0;
  CallWatch watch([&now] { return now; });
  SlowDevice slow(*shop.device, &now);
  slow.client().watch = &watch;
  WatchedDevice device(slow, watch);
  const std::optional<DeviceReport> report = device.Report();
  ASSERT_TRUE(report);
  // What the register knows beside its client is there.
  EXPECT_EQ(report->day.documents, 0);
  EXPECT_EQ(slow.client().calls, 11);
  EXPECT_EQ(slow.client().unwatched, 0);
  EXPECT_EQ(slow.client().longest, 0);
  EXPECT_EQ(slow.asked_to_add, 0);
}

}  // namespace
}  // namespace lorimat::door
