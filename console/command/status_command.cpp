#include "console/command/status_command.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <utility>
#include <vector>

#include "console/command/register_json.h"
#include "console/host/register_following.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/fault_text.h"
#include "console/message/json_text.h"
#include "console/message/register_text.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "register/inspect/register_file.h"
#include "register/value/record.h"

namespace lorimat::console {
namespace {

const char* const kStatusExamples = TR_TEXT(R"(Examples:
  lorimat status --register shop.register
      Key, day, counters and totals of a register, and a document that was cut off.
  lorimat status --register shop.register --json
      All that the register is, for a program: settings, tables, totals, memory, clock; amounts
      in cents.
  lorimat status --register shop.register --follow
      Again behind each change, until Ctrl-C.

The register is looked at and not switched on: an open document stays open, and nothing prints. A
program may be selling on it meanwhile. With --follow, --json writes an object a line.

Exit codes:
  0  the status was shown
  2  wrong use, or the file cannot be read
)");

std::string key_text(int position) {
  switch (position) {
    case 1:
      return tr("registering");
    case 2:
      return tr("reading");
    case 3:
      return tr("closing");
    case 4:
      return tr("programming");
    default:
      return std::to_string(position);
  }
}

std::string key_name(int position) {
  const EnglishMessages english;
  return key_text(position);
}

std::string journal_text(const lorimat::RegisterStatus& status) {
  const std::string count =
      tr_count(status.journal_entries, TR_TEXT("{} entry"), TR_TEXT("{} entries"));
  return status.journal_hash.empty() ? count : tr("{}, last hash {}", count, status.journal_hash);
}

std::string ClockText(const lorimat::RegisterStatus& status) {
  return tr(
      "shows {}, more than an hour before the last document or closing, {}: nothing is "
      "registered before it is right",
      time_text(lorimat::NumberTime(status.clock_now)),
      time_text(lorimat::NumberTime(status.clock_latest)));
}

std::string as_text(const lorimat::RegisterStatus& status) {
  std::vector<std::pair<std::string, std::string>> rows = {
      {tr("Register"), shown(status.file)},
      {tr("Serial number"), shown(status.serial_number)},
      {tr("Firmware"), shown(status.firmware_version)},
      {tr("Key"), key_text(status.key_position)},
      {tr("Operator"), std::to_string(status.current_operator)},
  };
  if (status.clock_latest != 0) rows.emplace_back(tr("Clock"), ClockText(status));
  for (auto& row : DayRows(status.closures, status.counters, status.day_open, status.day_total,
                           status.grand_total)) {
    rows.push_back(std::move(row));
  }
  rows.emplace_back(tr("Next invoice"), std::to_string(status.next_invoice));
  rows.emplace_back(tr("Not sent"),
                    tr_count(static_cast<uint64_t>(std::max(status.pending_summaries, 0)),
                             TR_TEXT("{} summary"), TR_TEXT("{} summaries")));
  rows.emplace_back(tr("Documents"), std::to_string(status.documents));
  rows.emplace_back(tr("Journal"), journal_text(status));
  rows.emplace_back(tr("Open document"),
                    status.open_document ? open_document_text(*status.open_document) : tr("none"));
  const std::vector<lorimat::Fault>& faults = status.faults.faults();
  if (faults.empty()) rows.emplace_back(tr("Faults"), tr("none"));
  for (size_t i = 0; i < faults.size(); ++i) {
    rows.emplace_back(i == 0 ? tr("Faults") : "", fault_text(faults[i]));
  }
  return paired_rows(rows);
}

Json open_document_json(const lorimat::CutOffDocument& document) {
  Json json = {{"kind", document.kind},
               {"begun", time_for_programs(document.begun)},
               {"lines", document.lines},
               {"subtotal_cents", amount_cents(document.subtotal)},
               {"registered", document.registered}};
  if (document.registered) json["number"] = document.number;
  return json;
}

Json as_json(const lorimat::RegisterStatus& status, const lorimat::RegisterProfile& profile) {
  const lorimat::DailyCounters& day = status.counters;
  Json json = {
      {"file", status.file},
      {"schema_version", status.schema_version},
      {"serial_number", status.serial_number},
      {"firmware_version", status.firmware_version},
      {"key_position", status.key_position},
      {"key", key_name(status.key_position)},
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
        {"total_cents", amount_cents(status.day_total)},
        {"totals", DayTotalsJson(profile.day)}}},
      {"grand_total_cents", amount_cents(status.grand_total)},
      {"next_invoice", status.next_invoice},
      {"pending_summaries", status.pending_summaries},
      {"documents", status.documents},
      {"journal_entries", status.journal_entries},
      {"journal_hash", status.journal_hash},
      {"open_document", status.open_document ? open_document_json(*status.open_document) : Json()},
      {"faults", faults_json(status.faults)}};
  json.update(RegisterProfileJson(profile, status));
  return json;
}

}  // namespace

void add_status(CLI::App& app, StatusOptions* options) {
  CLI::App* status =
      app.add_subcommand("status", tr("Show what a register's file holds: key, day, totals"));
  add_register_option(status, &options->register_file);
  status->add_flag("--json", options->json, tr("Write JSON"));
  status->add_flag("--follow", options->follow,
                   tr("Go on with what comes, until Ctrl-C or the file is gone"));
  refuse_empty_texts(status);
  status->footer(std::string(translated(kStatusExamples)));
}

int status_command(const StatusOptions& options, Streams& streams) {
  const std::string& name = require_register(options.register_file);
  lorimat::RegisterFile file(name);
  const auto shown = [&]() -> std::string {
    if (!options.json) return as_text(file.Status());
    const lorimat::RegisterProfile profile = file.Profile();
    const Json json = as_json(file.Status(), profile);
    return options.follow ? json_line(json) : json_text(json);
  };
  if (!options.follow) {
    streams.output(shown());
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

}  // namespace lorimat::console
