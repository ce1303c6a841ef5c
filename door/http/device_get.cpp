// GET /v1/device: what the door knows of its device, and what that tells of itself.
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

#include "door/http/api_path.h"
#include "door/http/document_json.h"
#include "door/http/job_request.h"
#include "door/http/trouble_problem.h"
#include "door/judge/code_page.h"
#include "door/log/iso_time.h"
#include "door/receipt/decimal.h"

namespace lorimat::door {
namespace {

using nlohmann::ordered_json;

// A device at work is not waited for any longer: what it told last is answered.
constexpr int kReportSeconds = 1;

ordered_json DayJson(const DayReport& day) {
  ordered_json json;
  json["total"] = MoneyText(day.total);
  json["documents"] = day.documents ? ordered_json(*day.documents) : ordered_json();
  json["rates"] = day.rates ? ordered_json::array() : ordered_json();
  for (const RateTotal& row : day.rates.value_or(std::vector<RateTotal>())) {
    json["rates"].push_back({{"rate", FromDevice(row.rate)},
                             {"total", MoneyText(row.total)},
                             {"vat", MoneyText(row.vat)}});
  }
  json["tenders"] = day.tenders ? ordered_json::array() : ordered_json();
  for (const TenderTotal& row : day.tenders.value_or(std::vector<TenderTotal>())) {
    json["tenders"].push_back(
        {{"tender", FromDevice(row.tender)}, {"total", MoneyText(row.total)}});
  }
  return json;
}

ordered_json OpenJson(const DeviceReport& report) {
  if (!report.is_open) return nullptr;
  return report.is_fiscal_open ? "fiscal" : "non_fiscal";
}

}  // namespace

Reply Api::GetDevice(const Request&, const Path&) {
  auto told = std::make_shared<std::optional<DeviceReport>>();
  return Ask([told](FiscalDevice& device) { *told = device.Report(); }, kReportSeconds,
             [this, told](bool answered) {
               if (answered && *told) {
                 const int64_t now = parts_.log.Now();
                 auto report = std::make_shared<const DeviceReport>(**told);
                 const std::lock_guard<std::mutex> lock(asking_);
                 report_ = std::move(report);
                 reported_ = now;
               }
               return DeviceReply();
             });
}

Reply Api::DeviceReply() {
  std::shared_ptr<const DeviceReport> report;
  int64_t reported = 0;
  {
    const std::lock_guard<std::mutex> lock(asking_);
    report = report_;
    reported = reported_;
  }
  const std::string_view code = LogFails() ? kDiskFull : TroubleCode(parts_.trouble());
  ordered_json json;
  json["serial"] = parts_.log.serial();
  json["ready"] = code.empty();
  json["trouble"] = code.empty() ? ordered_json() : ordered_json(code);
  json["queued"] = parts_.log.Count(JobState::kQueued);
  json["unknown"] = parts_.log.Count(JobState::kUnknown);
  json["needs_operator"] = parts_.log.Count(JobState::kNeedsOperator);
  json["asked"] = report ? ordered_json(IsoTime(reported)) : ordered_json();
  json["open"] = report ? OpenJson(*report) : ordered_json();
  json["last_document"] =
      report && report->last_document ? DocumentJson(*report->last_document) : ordered_json();
  json["totals"] = report ? DayJson(report->day) : ordered_json();
  json["warnings"] = ordered_json::array();
  if (report) json["warnings"] = report->warnings;
  Reply reply;
  reply.body = json.dump(-1, ' ', false, ordered_json::error_handler_t::replace) + "\n";
  return reply;
}

}  // namespace lorimat::door
