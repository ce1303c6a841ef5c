// "lorimat status": what a register's file holds, without switching the register on.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "console/command/register_json.h"
#include "console/command/subcommand.h"
#include "console/device/open_device.h"
#include "console/device/register_device.h"
#include "console/host/device_options.h"
#include "console/host/register_following.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/fault_text.h"
#include "console/message/json_text.h"
#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/shell/shell_status.h"
#include "register/inspect/register_file.h"
#include "register/value/row_encoding.h"

namespace lorimat::console {
namespace {

struct StatusOptions {
  DeviceOptions device;
  bool json = false;
  bool follow = false;
};

constexpr std::string_view kStatusExamples = TR_TEXT(R"(Examples:
  lorimat status --register shop.register
      Key, day, counters and totals of a register, and a document that was cut off.
  lorimat status --register shop.register --json
      All that the register is, for a program: settings, tables, totals, memory, clock; amounts
      in cents.
  lorimat status --register shop.register --follow
      Again behind each change, until Ctrl-C.

The register is looked at and not switched on: an open document stays open, and nothing prints. A
program may be selling on it meanwhile. With --follow, --json writes an object a line. Another
device is opened, asked for its state and closed.

Exit codes:
  0  the status was shown
  2  wrong use, or the file cannot be read
)");

std::string KeyName(int position) {
  const EnglishMessages english;
  return KeyPositionText(position);
}

std::string JournalText(const lorimat::RegisterStatus& status) {
  const std::string count = TrCount(status.journal_entries, "{} entry", "{} entries");
  return status.journal_hash.empty() ? count : Tr("{}, last hash {}", count, status.journal_hash);
}

std::string ClockText(const lorimat::RegisterStatus& status) {
  return Tr(
      "shows {}, more than an hour before the last document or closing, {}: nothing is "
      "registered before it is right",
      TimeText(lorimat::NumberTime(status.clock_now)),
      TimeText(lorimat::NumberTime(status.clock_latest)));
}

std::string AsText(const lorimat::RegisterStatus& status) {
  std::vector<std::pair<std::string, std::string>> rows = {
      {Tr("Register"), Shown(status.file)},
      {Tr("Serial number"), Shown(status.serial_number)},
      {Tr("Firmware"), Shown(status.firmware_version)},
      {Tr("Key"), KeyPositionText(status.key_position)},
      {Tr("Operator"), std::to_string(status.current_operator)},
  };
  if (status.clock_latest != 0) rows.emplace_back(Tr("Clock"), ClockText(status));
  for (const std::string& text : DayNoticeTexts(status.notice)) rows.emplace_back(Tr("Note"), text);
  for (auto& row : DayRows(status.closures, status.counters, status.day_open, status.day_total,
                           status.grand_total)) {
    rows.push_back(std::move(row));
  }
  rows.emplace_back(Tr("Next invoice"), std::to_string(status.next_invoice));
  rows.emplace_back(Tr("Not sent"),
                    TrCount(static_cast<uint64_t>(std::max(status.pending_summaries, 0)),
                            "{} summary", "{} summaries"));
  rows.emplace_back(Tr("Documents"), std::to_string(status.documents));
  rows.emplace_back(Tr("Journal"), JournalText(status));
  rows.emplace_back(Tr("Open document"),
                    status.open_document ? OpenDocumentText(*status.open_document) : Tr("none"));
  const std::vector<lorimat::Fault>& faults = status.faults.faults();
  if (faults.empty()) rows.emplace_back(Tr("Faults"), Tr("none"));
  for (size_t i = 0; i < faults.size(); ++i) {
    rows.emplace_back(i == 0 ? Tr("Faults") : "", FaultText(faults[i]));
  }
  return PairedRows(rows);
}

Json OpenDocumentJson(const lorimat::CutOffDocument& document) {
  Json json = {{"kind", lorimat::InterruptedKindName(document.kind)},
               {"begun", TimeForPrograms(document.begun)},
               {"lines", document.lines},
               {"subtotal_cents", AmountCents(document.subtotal)},
               {"registered", document.registered}};
  if (document.registered) json["number"] = document.number;
  return json;
}

Json NoticeJson(const lorimat::DayNotice& notice) {
  const auto date = [](int64_t time) {
    return Json(TimeForPrograms(lorimat::NumberTime(time)).substr(0, 10));
  };
  const auto left = [](const std::optional<int>& number) {
    return number ? Json(*number) : Json();
  };
  return {{"day_left_open_since", notice.opened ? date(*notice.opened) : Json()},
          {"idle_from", notice.idle ? date(notice.idle->from) : Json()},
          {"idle_to", notice.idle ? date(notice.idle->to) : Json()},
          {"last_documents_of_day", left(notice.documents_left)},
          {"last_closings", left(notice.closings_left)}};
}

Json AsJson(const lorimat::RegisterStatus& status, const lorimat::RegisterProfile& profile) {
  const lorimat::DailyCounters& day = status.counters;
  Json json = {
      {"file", status.file},
      {"schema_version", status.schema_version},
      {"serial_number", status.serial_number},
      {"firmware_version", status.firmware_version},
      {"key_position", status.key_position},
      {"key", KeyName(status.key_position)},
      {"operator", status.current_operator},
      {"last_closure", status.closures},
      {"day",
       {{"open", status.day_open},
        {"last_document", day.documents},
        {"receipts", day.sales},
        {"invoices", day.invoices},
        {"credit_notes", day.refunds},
        {"voids", day.cancels},
        {"abandoned", day.abandoned},
        {"non_fiscal", day.non_fiscal},
        {"total_cents", AmountCents(status.day_total)},
        {"totals", DayTotalsJson(profile.day)}}},
      {"notices", NoticeJson(status.notice)},
      {"grand_total_cents", AmountCents(status.grand_total)},
      {"next_invoice", status.next_invoice},
      {"pending_summaries", status.pending_summaries},
      {"documents", status.documents},
      {"journal_entries", status.journal_entries},
      {"journal_hash", status.journal_hash},
      {"open_document", status.open_document ? OpenDocumentJson(*status.open_document) : Json()},
      {"faults", FaultsJson(status.faults)}};
  json.update(RegisterProfileJson(profile, status));
  return json;
}

void AddOptions(CLI::App* status, StatusOptions* options) {
  AddDeviceOptions(status, &options->device);
  status->add_flag("--json", options->json, Tr("Write JSON"));
  status->add_flag("--follow", options->follow,
                   Tr("Go on with what comes, until Ctrl-C or the file is gone"));
}

// Of a device that has to be opened for it.
int StatusOfDevice(const StatusOptions& options, const DeviceRequest& request, Streams& streams) {
  if (options.follow) {
    throw Failure(
        Tr("--follow: the device '{}' has no file that tells of changes", Shown(request.device)));
  }
  const std::unique_ptr<Device> device = OpenDevice(request, streams);
  const DeviceState state = device->state();
  if (options.json) {
    const DeviceFacts facts = device->facts();
    Json json = {{"device", device->name()},
                 {"version", device->version()},
                 {"file", request.device},
                 {"serial_number", facts.serial_number},
                 {"firmware_version", facts.firmware_version},
                 {"day_open", facts.day_open}};
    json.update(StateJson(state, TranslatorMemory::NextSale::kUnknown));
    json.erase("next_sale");
    streams.Output(JsonText(json));
  } else {
    streams.Output(StatusText(state, "", device->StatusRows(), 0));
  }
  device->TellFailure(streams);
  return device->last_failure().empty() ? kExitGood : kExitNotDone;
}

// Returns one of ExitCode. Throws Failure or RegisterError when the file cannot be read.
int StatusCommand(const StatusOptions& options, Streams& streams) {
  const DeviceRequest request = RequestOf(options.device);
  const BuiltInDevice* const built_in = FindBuiltInDevice(request);
  if (built_in == nullptr || built_in->name != kRegisterName) {
    return StatusOfDevice(options, request, streams);
  }
  const std::string name = RequireRegister(FileOfRegister(request));
  lorimat::RegisterFile file(name);
  const auto shown = [&]() -> std::string {
    if (!options.json) return AsText(file.Status());
    const lorimat::RegisterProfile profile = file.Profile();
    const Json json = AsJson(file.Status(), profile);
    return options.follow ? JsonLine(json) : JsonText(json);
  };
  if (!options.follow) {
    streams.Output(shown());
    return kExitGood;
  }
  std::string last;
  const auto next = [&]() -> Following {
    std::string text = shown();
    if (text == last) return {};
    std::string out = last.empty() || options.json ? text : "\n" + text;
    last = std::move(text);
    return {.text = std::move(out)};
  };
  return FollowRegister(file, name, next, streams);
}

}  // namespace

const Subcommand kStatusSubcommand = {
    "status", HelpGroup::kLookAtRegister,
    TR_TEXT("Show what a register's file holds: key, day, totals"), kStatusExamples,
    &Prepare<StatusOptions, AddOptions, StatusCommand>};

}  // namespace lorimat::console
