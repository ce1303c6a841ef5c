// Jobs and problems as clients read them.

#include <nlohmann/json.hpp>

#include "door/http/api.h"
#include "door/http/document_json.h"
#include "door/judge/code_page.h"
#include "door/log/iso_time.h"

namespace lorimat::door {
namespace {

using nlohmann::ordered_json;

}  // namespace

Reply Problem(int status, std::string_view code, const std::string& detail,
              const std::string& pointer) {
  ordered_json json;
  json["status"] = status;
  json["code"] = code;
  json["detail"] = detail;
  if (!pointer.empty()) json["pointer"] = pointer;
  Reply reply;
  reply.status = status;
  reply.content_type = "application/problem+json";
  reply.body = json.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + "\n";
  return reply;
}

std::string JobJson(const Job& job, bool replayed) {
  ordered_json json;
  json["id"] = job.id;
  json["key"] = job.key;
  json["desk"] = job.desk;
  json["reference"] = job.reference;
  json["state"] = JobStateName(job.state);
  json["document"] = job.document ? DocumentJson(*job.document) : ordered_json();
  json["lines"] = ordered_json::array();
  for (const LineAnswer& answer : job.answers) {
    json["lines"].push_back({{"line", answer.line},
                             {"code", answer.code},
                             {"text", FromDevice(answer.text)},
                             {"explanation", answer.explanation}});
  }
  json["replayed"] = replayed;
  json["history"] = ordered_json::array();
  for (const JobStep& step : job.history) {
    std::string why(WhyText(step.why));
    if (!step.note.empty()) why += ": " + step.note;
    json["history"].push_back(
        {{"time", IsoTime(step.time)}, {"state", JobStateName(step.state)}, {"why", why}});
  }
  return json.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + "\n";
}

}  // namespace lorimat::door
