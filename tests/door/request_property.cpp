// Whatever comes as a request is answered: with a status of the page, and with JSON that can be
// read.
#include <iterator>
#include <memory>
#include <nlohmann/json.hpp>
#include <set>
#include <string>

#include "door/http/api.h"
#include "door_shop.h"
#include "language/shipped_language.h"
#include "properties/property.h"

namespace lorimat::door {
namespace {

// Good requests, of which chance makes others.
struct Good {
  const char* method;
  const char* target;
  const char* body;
};
constexpr Good kGood[] = {
    {"PUT", "/v1/jobs", "{}"},
    {"GET", "/v1/device", ""},
    {"POST", "/v1/jobs?wait=0",
     R"({"lines":["VEND REP=1, PRE=1.20","CHIU TEND=CONTANTI"],"desk":"a","expires_s":600})"},
    {"POST", "/v1/jobs", R"({"lines":["#10 #1=1, #4=1.50","#11"],"reference":"\u00e8 4711"})"},
    {"POST", "/v1/jobs", R"({"lines":["REPORT TIPO=1, FILE='a'"],"desk":"operator"})"},
    {"POST", "/v1/jobs?wait=300",
     R"({"lines":["INP TASTO=LOTTERIA","INP LOTTERIA='ABCD1234', TASTO=TOTALE"]})"},
    {"POST", "/v1/receipts?wait=0",
     R"({"kind":"receipt","items":[{"department":1,"price":"1.20","discount":{"percent":"10"}}],)"
     R"("payments":[{"tender":"card","amount":"0.50"},{"tender":1}],"trailer":["\u00e8 '"]})"},
    {"POST", "/v1/receipts?dry_run=true",
     R"({"kind":"void","refers_to":{"closure":1,"number":2,"date":"2026-11-22"}})"},
    {"POST", "/v1/jobs/1/resolve",
     R"({"outcome":"done","document":{"closure":1,"number":2},"reason":"seen"})"},
    {"POST", "/v1/device/close-day", R"({"desk":"operator","expires_s":1})"},
    {"POST", "/v1/device/reset", ""},
    {"GET", "/v1/jobs/1", ""},
    {"GET", "/v1/jobs?key=k1&desk=a", ""},
    {"GET", "/v1/jobs?state=queued&after=0&limit=%37", ""},
    {"GET", "/v1/documents?from=2026-11-22&to=2026-11-22T23:59:59%2B01:00&after=1&limit=2", ""},
    {"GET", "/v1/documents/1/1?kind=receipt", ""},
    {"POST", "/v1/documents/1/1/copy?wait=0", R"({"desk":"operator","reference":"once more"})"},
    {"DELETE", "/v1/jobs/2", ""},
    {"GET", "/v1/events?after=0&follow=false", ""},
    {"GET", "/v1/events", ""},
    {"GET", "/readyz", ""},
    {"GET", "/metrics", ""}};

std::string Changed(std::string text) {
  const int changes = *rc::gen::weightedElement<int>({{6, 0}, {2, 1}, {1, 2}, {1, 3}});
  for (int i = 0; i < changes && !text.empty(); ++i) {
    const size_t at = *rc::gen::inRange<size_t>(0, text.size());
    const char c = static_cast<char>(*rc::gen::inRange(0, 256));
    switch (*rc::gen::inRange(0, 4)) {
      case 0:
        text[at] = c;
        break;
      case 1:
        text.insert(at, 1, c);
        break;
      case 2:
        text.erase(at, 1 + static_cast<size_t>(*rc::gen::inRange(0, 9)));
        break;
      default:
        text.insert(at, text.substr(at, 20));
    }
  }
  return text;
}

TEST(RequestProperty, EveryRequestIsAnsweredByThePage) {
  Seen seen("request");
  const PropertyRun run = RunOf(3000);
  DoorShop shop;
  shop.SellAside(12000);
  KeptDocuments documents(shop.register_file());
  JobLog log("");
  log.Bind("99LRM0000001VR");
  LineJudge judge(shipped::LanguageFile().string());
  const auto tables = std::make_shared<const DeviceTables>(DeviceTables{Tables({}), false});
  Api api({.log = log,
           .judge = judge,
           .hosts = {"127.0.0.1:8577"},
           .operators = {"operator"},
           .trouble = [] { return DeviceTrouble::kNone; },
           .log_failed = [] { return false; },
           .wake = [] {},
           .tables = [&tables] { return tables; },
           .documents = &documents});
  const std::set<int> statuses = {200, 202, 400, 403, 404, 405, 409, 413, 415, 422, 429};
  Holds(run, [&] {
    Request request;
    const Good& good = kGood[*rc::gen::inRange<size_t>(0, std::size(kGood))];
    request.method = good.method;
    request.target = Changed(good.target);
    request.host = *rc::gen::weightedElement<std::string>({{20, "127.0.0.1:8577"}, {1, "x"}});
    request.content_type = Changed("application/json");
    if (*rc::gen::inRange(0, 9) != 0) request.content_type = "application/json";
    if (*rc::gen::inRange(0, 9) != 0) {
      request.key = Changed("k" + std::to_string(*rc::gen::inRange(0, 200)));
    }
    request.body = Changed(good.body);
    if (*rc::gen::inRange(0, 9) == 0) request.last_event_id = Changed("7");
    const Reply reply = api.Handle(request);
    seen.Add(std::to_string(reply.status));
    RC_ASSERT(statuses.count(reply.status) == 1);
    if (reply.content_type.rfind("text/", 0) == 0) {
      RC_ASSERT(reply.status == 200);
      return;
    }
    const nlohmann::json json = nlohmann::json::parse(reply.body);
    RC_ASSERT(json.is_object());
    const bool is_problem = reply.content_type == "application/problem+json";
    RC_ASSERT(is_problem == json.contains("code"));
    if (is_problem) RC_ASSERT(json.at("status").get<int>() == reply.status);
    // What is waited for is in the log.
    if (reply.wait_for) RC_ASSERT(log.Find(*reply.wait_for).has_value());
  });
  seen.Require(run,
               {{"200", 200}, {"202", 50}, {"400", 300}, {"404", 50}, {"405", 50}, {"422", 50}});
}

}  // namespace
}  // namespace lorimat::door
