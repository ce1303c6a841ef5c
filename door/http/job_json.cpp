// Jobs and problems as clients read them.

#include <algorithm>
#include <nlohmann/json.hpp>

#include "door/http/api.h"
#include "door/http/document_json.h"
#include "door/judge/code_page.h"
#include "door/log/iso_time.h"

namespace lorimat::door {
namespace {

using nlohmann::ordered_json;

// What a job is known by, and its state.
ordered_json HeadJson(const Job& job) {
  ordered_json json;
  json["id"] = job.id;
  json["key"] = job.key;
  json["desk"] = job.desk;
  json["reference"] = job.reference;
  json["state"] = JobStateName(job.state);
  json["document"] = job.document ? DocumentJson(*job.document) : ordered_json();
  return json;
}

std::string StepText(const JobStep& step) {
  std::string why(WhyText(step.why));
  if (!step.note.empty()) why += ": " + step.note;
  return why;
}

std::string Dump(const ordered_json& json) {
  return json.dump(-1, ' ', false, ordered_json::error_handler_t::replace);
}

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
  reply.body = Dump(json) + "\n";
  return reply;
}

std::string JobJson(const Job& job, bool replayed) {
  ordered_json json = HeadJson(job);
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
    json["history"].push_back({{"time", IsoTime(step.time)},
                               {"state", JobStateName(step.state)},
                               {"why", StepText(step)}});
  }
  return Dump(json) + "\n";
}

// The text of the device is the code of its trouble, that of warnings their names.
std::string EventJson(const LogEvent& event) {
  ordered_json json;
  switch (event.kind) {
    case EventKind::kJob:
      json = HeadJson(*event.job);
      json["replayed"] = false;
      json["why"] = StepText(event.job->history.back());
      break;
    case EventKind::kDocument:
      json["job"] = event.job->id;
      json["key"] = event.job->key;
      json["desk"] = event.job->desk;
      json["reference"] = event.job->reference;
      json["document"] = DocumentJson(*event.job->document);
      break;
    case EventKind::kDevice:
      json["ready"] = event.text.empty();
      json["trouble"] = event.text.empty() ? ordered_json() : ordered_json(event.text);
      break;
    case EventKind::kWarning:
      json["warnings"] = ordered_json::array();
      for (size_t from = 0; from < event.text.size();) {
        const size_t end = std::min(event.text.find(' ', from), event.text.size());
        json["warnings"].push_back(event.text.substr(from, end - from));
        from = end + 1;
      }
      break;
  }
  json["time"] = IsoTime(event.time);
  return Dump(json);
}

}  // namespace lorimat::door
