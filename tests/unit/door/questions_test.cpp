#include "door/job/questions.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <new>
#include <nlohmann/json.hpp>
#include <string>

#include "door/http/api.h"
#include "door_shop.h"

namespace lorimat::door {
namespace {

// A client asks for the device; nobody works.
class AskingClient {
 public:
  explicit AskingClient(std::function<bool(std::shared_ptr<Question>)> ask)
      : api({.log = *shop_.log,
             .judge = DoorShop::judge(),
             .hosts = {"127.0.0.1:1"},
             .operators = {},
             .trouble = [] { return DeviceTrouble::kNone; },
             .log_failed = [this] { return log_failed; },
             .wake = [] {},
             .ask = std::move(ask)}) {}

  Reply Ask(const std::string& target = "/v1/device") {
    Request request;
    request.method = "GET";
    request.target = target;
    request.host = "127.0.0.1:1";
    return api.Handle(request);
  }

 private:
  DoorShop shop_;

 public:
  Api api;
  bool log_failed = false;
};

TEST(ApiQuestions, OneThatIsDroppedIsKeptNoLonger) {
  std::weak_ptr<Question> kept;
  Questions questions;
  AskingClient client([&](const std::shared_ptr<Question>& question) {
    kept = question;
    return questions.Put(question);
  });
  const Reply reply = client.Ask();
  ASSERT_EQ(reply.wait_for, -1);
  EXPECT_FALSE(client.api.IsOver(-1));
  client.api.Drop(-1);
  EXPECT_TRUE(client.api.IsOver(-1));
  ASSERT_FALSE(kept.expired());
  EXPECT_TRUE(kept.lock()->is_dropped);
  EXPECT_EQ(questions.Next(), nullptr);
  EXPECT_TRUE(kept.expired());
  // And what is over is dropped by nobody.
  client.api.Drop(-1);
  client.api.Drop(7);
}

TEST(ApiQuestions, OneThatCannotBeAskedIsKeptNoLonger) {
  std::weak_ptr<Question> kept;
  AskingClient client([&](const std::shared_ptr<Question>& question) -> bool {
    kept = question;
    throw std::bad_alloc();
  });
  EXPECT_GE(client.Ask().status, 500);
  EXPECT_TRUE(kept.expired());
}

TEST(ApiQuestions, TheDeviceIsAsReadyAsTheDoor) {
  AskingClient client([](const std::shared_ptr<Question>&) { return false; });
  const auto told = [&client] { return nlohmann::json::parse(client.Ask().body); };
  EXPECT_EQ(client.Ask("/readyz").status, 200);
  EXPECT_EQ(told()["ready"], true);
  EXPECT_EQ(told()["trouble"], nullptr);
  client.log_failed = true;
  EXPECT_EQ(nlohmann::json::parse(client.Ask("/readyz").body)["code"], "disk_full");
  EXPECT_EQ(told()["ready"], false);
  EXPECT_EQ(told()["trouble"], "disk_full");
}

}  // namespace
}  // namespace lorimat::door
