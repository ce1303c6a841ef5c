// What an operator tells of a job that waits for one.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <utility>

#include "door/http/api.h"
#include "door_shop.h"

namespace lorimat::door {
namespace {

using testing::HasSubstr;

class ResolveTest : public testing::Test {
 protected:
  ResolveTest()
      : api_({.log = *shop_.log,
              .judge = DoorShop::judge(),
              .hosts = {"127.0.0.1:1"},
              .operators = {},
              .trouble = [] { return DeviceTrouble::kNone; },
              .log_failed = [] { return false; },
              .wake = [] {}}) {}

  // A job that has run as far as that nobody knows.
  int64_t Lost(const std::string& key, const std::string& line) {
    const int64_t id = shop_.Submit(key, {line}).id;
    return Lose(id);
  }
  int64_t Lose(int64_t id) {
    shop_.log->Move(id, JobState::kRunning, Why::kBegun);
    shop_.log->Move(id, JobState::kUnknown, Why::kLostAnswer);
    shop_.log->Move(id, JobState::kNeedsOperator, Why::kOtherDocument);
    return id;
  }
  // The status, and the code of a problem: "409 document_taken".
  std::string Tell(int64_t id, const std::string& document) {
    Request request;
    request.method = "POST";
    request.target = "/v1/jobs/" + std::to_string(id) + "/resolve";
    request.host = "127.0.0.1:1";
    request.content_type = "application/json";
    request.body = R"({"outcome":"done","reason":"x","document":)" + document + "}";
    const Reply reply = api_.Handle(request);
    told_ = nlohmann::json::parse(reply.body);
    return std::to_string(reply.status) + " " + told_.value("code", told_.value("state", ""));
  }

  DoorShop shop_;
  Api api_;
  nlohmann::json told_;
};

constexpr const char* kFirst = R"({"closure":1,"number":1})";
constexpr const char* kInvoice = "FATTURA TIPO=2, RIGA1='ROSSI'";

TEST_F(ResolveTest, ADocumentIsNobodyElses) {
  const int64_t sold = shop_.Sell("a").id;
  shop_.Drain();
  const int64_t lost = Lost("b", "VEND REP=1, PRE=1.20");
  for (const char* bad : {R"({"closure":0,"number":1})", R"({"closure":1,"number":0})",
                          R"({"closure":1,"number":10000})", R"({"closure":-1,"number":1})",
                          R"({"closure":"1","number":1})", R"({"closure":1})"}) {
    EXPECT_EQ(Tell(lost, bad), "400 bad_field") << bad;
  }
  EXPECT_EQ(Tell(lost, kFirst), "409 document_taken");
  EXPECT_THAT(told_["detail"], HasSubstr("job " + std::to_string(sold) + " "));
  EXPECT_EQ(Tell(lost, R"({"closure":1,"number":2})"), "200 confirmed");
  EXPECT_EQ(told_["document"], (nlohmann::json{{"closure", 1},
                                               {"number", 2},
                                               {"kind", "receipt"},
                                               {"serial", "99LRM0000001VR"},
                                               {"time", nullptr},
                                               {"total", nullptr}}));
}

TEST_F(ResolveTest, TheNumbersOfInvoicesAreTheirOwn) {
  shop_.Sell("a");
  shop_.Drain();
  EXPECT_EQ(Tell(Lost("i", kInvoice), kFirst), "200 confirmed");
  EXPECT_EQ(Tell(Lost("i2", kInvoice), kFirst), "409 document_taken");
}

TEST_F(ResolveTest, WhatMakesNoDocumentHasNone) {
  for (const char* line : {"REPORT", "NOFIS", "PREP REP=1, DES='A'"}) {
    const int64_t lost = Lost(line, line);
    EXPECT_EQ(Tell(lost, kFirst), "422 no_document") << line;
    EXPECT_EQ(Tell(lost, R"({"closure":1})"), "422 no_document") << line;
    EXPECT_EQ(Tell(lost, "null"), "200 confirmed") << line;
    EXPECT_EQ(told_["document"], nullptr);
  }
  const int64_t reset = Lose(shop_.Reset("z").id);
  EXPECT_EQ(Tell(reset, kFirst), "422 no_document");
  EXPECT_EQ(Tell(reset, "null"), "200 confirmed");
}

// Earlier programs took what an operator told of a report: the sale is that of the job that made
// it.
TEST_F(ResolveTest, AReportOfALogFromBeforeTakesNobodysDocument) {
  const int64_t report = Lost("r", "REPORT");
  shop_.log->Move(report, JobState::kConfirmed, Why::kOperatorDone,
                  {.document = JobDocument{1, 1, "99LRM0000001VR", {}, {}}});
  EXPECT_EQ(Tell(Lost("b", "VEND REP=1, PRE=1.20"), kFirst), "200 confirmed");
}

}  // namespace
}  // namespace lorimat::door
