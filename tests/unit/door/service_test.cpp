#include "door/job/service.h"

#include <gtest/gtest.h>

#include <future>

#include "door_shop.h"

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

}  // namespace
}  // namespace lorimat::door
