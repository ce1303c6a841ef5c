#include "door/http/receipt_post.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "language/shipped_language.h"
#include "support/temporary_folder.h"

namespace lorimat::door {
namespace {

using nlohmann::json;

constexpr char kCoffee[] = R"({"kind": "receipt", "items": [{"department": 1, "price": "1.20"}],
                               "payments": [{"tender": "cash"}], "desk": "a", "expires_s": 60})";

json BodyOf(const std::optional<Reply>& reply) {
  return reply ? json::parse(reply->body) : json::object();
}

const DeviceTables& Shop() {
  static const DeviceTables tables{Tables(RegisterSettings()), false};
  return tables;
}

TEST(ReceiptPost, IsAJobOfLines) {
  LineJudge judge(shipped::LanguageFile().string());
  ReceiptPost post(kCoffee);
  post.Prepare(&Shop(), judge);
  ASSERT_FALSE(post.problem());
  EXPECT_THAT(post.job().lines, testing::ElementsAre("#10 #1=1, #4=1.20", "#11 #1=1"));
  EXPECT_EQ(post.job().desk, "a");
  EXPECT_EQ(post.expires_s(), 60);
}

TEST(ReceiptPost, CountsByItsValue) {
  const std::string digest = ReceiptPost(kCoffee).job().digest;
  EXPECT_EQ(ReceiptPost(json::parse(kCoffee).dump()).job().digest, digest);
  json other = json::parse(kCoffee);
  other["items"][0]["price"] = "1.2";
  EXPECT_NE(ReceiptPost(other.dump()).job().digest, digest);
}

TEST(ReceiptPost, OfADeviceThatDoesNotTellItsTablesWhatRestsOnThemIsNull) {
  LineJudge judge(shipped::LanguageFile().string());
  ReceiptPost post(kCoffee);
  post.Prepare(nullptr, judge);
  ASSERT_FALSE(post.problem());
  EXPECT_THAT(post.job().lines, testing::ElementsAre("#10 #1=1, #4=1.20", "#11 #1=1"));
  EXPECT_EQ(json::parse(post.DryRun().body)["sums"],
            (json{{"items", {"1.20"}},
                  {"subtotal", "1.20"},
                  {"total", "1.20"},
                  {"paid", "1.20"},
                  {"change", "0.00"},
                  {"by_vat", nullptr},
                  {"by_department", {{{"department", 1}, {"amount", "1.20"}}}},
                  {"payments", nullptr}}));
}

TEST(ReceiptPost, SumsThatRestOnNamesOfTheDeviceAreNull) {
  LineJudge judge(shipped::LanguageFile().string());
  json body = json::parse(kCoffee);
  body["items"].push_back(
      {{"department", 1}, {"price", "1.20"}, {"description", "CAFFE'"}, {"void", true}});
  ReceiptPost post(body.dump());
  post.Prepare(nullptr, judge);
  ASSERT_FALSE(post.problem());
  EXPECT_EQ(post.job().lines.size(), 3u);
  EXPECT_TRUE(json::parse(post.DryRun().body)["sums"].is_null());
}

TEST(ReceiptPost, APriceThatTheDeviceDoesNotTellIsNeeded) {
  LineJudge judge(shipped::LanguageFile().string());
  json body = json::parse(kCoffee);
  body["items"][0].erase("price");
  ReceiptPost post(body.dump());
  post.Prepare(nullptr, judge);
  ASSERT_TRUE(post.problem());
  EXPECT_EQ(post.problem()->status, 422);
  EXPECT_EQ(BodyOf(post.problem()).value("code", ""), "no_price");
  EXPECT_EQ(BodyOf(post.problem()).value("pointer", ""), "/items/0/price");
  EXPECT_TRUE(post.job().lines.empty());
}

TEST(ReceiptPost, WordsThatLackACommandLetNoLineBeWritten) {
  const std::filesystem::path folder = MakeTemporaryFolder();
  const std::filesystem::path file = folder / "few.ini";
  std::ofstream(file) << "[OPCOD]\n1=PROG\n";
  {
    LineJudge judge(file.string());
    ReceiptPost post(kCoffee);
    post.Prepare(&Shop(), judge);
    ASSERT_TRUE(post.problem());
    EXPECT_EQ(post.problem()->status, 501);
    EXPECT_EQ(BodyOf(post.problem()).value("code", ""), "no_such_line");
  }
  std::filesystem::remove_all(folder);
}

TEST(ReceiptPost, AFaultHasItsPlace) {
  const ReceiptPost post(R"({"kind": "receipt", "items": [{"department": 1, "price": 1.2}]})");
  EXPECT_EQ(BodyOf(post.problem()).value("pointer", ""), "/payments");
  json body = json::parse(kCoffee);
  body["items"][0]["price"] = 1.2;
  const ReceiptPost number(body.dump());
  EXPECT_EQ(number.problem()->status, 400);
  EXPECT_EQ(BodyOf(number.problem()).value("pointer", ""), "/items/0/price");
}

}  // namespace
}  // namespace lorimat::door
