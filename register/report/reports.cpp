// Readings, the day closing, periods, and the delivery of a report.
#include "register/report/reports.h"

#include <fmt/format.h>

#include <optional>
#include <utility>

#include "register/desk/clock_check.h"
#include "register/desk/day_notice.h"
#include "register/desk/layout.h"
#include "register/report/report_file.h"
#include "register/report/report_sections.h"
#include "register/report/telematic.h"
#include "register/value/digest.h"
#include "register/value/refusal.h"
#include "register/value/row_encoding.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

constexpr unsigned kEverything =
    kDaySection | kTenderSection | kVatSection | kDepartmentSection | kOperatorSection;

struct ReportRow {
  int32_t kind;
  const char* title;
  unsigned sections;
};

constexpr ReportRow kReadings[] = {
    {0, "LETTURA REPARTI", kDepartmentSection},
    {1, "LETTURA GIORNALIERA", kDaySection | kTenderSection | kVatSection},
    {2, "LETTURA GENERALE", kEverything},
};

constexpr ReportRow kPeriodic[] = {
    {1, "RAPPORTO PERIODICO", kEverything},     {2, "PERIODICO REPARTI", kDepartmentSection},
    {3, "PERIODICO IVA", kVatSection},          {4, "PERIODICO OPERATORI", kOperatorSection},
    {5, "PERIODICO PAGAMENTI", kTenderSection},
};

template <size_t n>
const ReportRow* Find(const ReportRow (&rows)[n], int32_t kind) {
  for (const ReportRow& row : rows) {
    if (row.kind == kind) return &row;
  }
  return nullptr;
}

enum class FileFormat { kUnknown, kText, kSigned };

bool SameDate(const std::tm& a, const std::tm& b) {
  return a.tm_year == b.tm_year && a.tm_mon == b.tm_mon && a.tm_mday == b.tm_mday;
}

FileFormat FormatOf(std::string_view name) {
  if (name.empty() || name == "txt") return FileFormat::kText;
  return name == "stxt" ? FileFormat::kSigned : FileFormat::kUnknown;
}

}  // namespace

// A report of its own paper, with the shop's header and a title.
Paper ReportDesk::Begin(std::string_view title) const {
  Paper report;
  for (const std::string& line : core_.tables.settings().header_lines) {
    if (!line.empty()) report.Centred(line);
  }
  report.Blank();
  report.Centred(title);
  return report;
}

int ReportDesk::Deliver(Paper report, const ReportTarget& target) {
  constexpr int32_t kBoth = ReportTarget::kPrinter | ReportTarget::kFile;
  const FileFormat format = FormatOf(target.format);
  const bool to_file = (target.outputs & ReportTarget::kFile) != 0;
  if (target.outputs == 0 || (target.outputs & ~kBoth) != 0) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kPlaces, {target.outputs});
  }
  if (format == FileFormat::kUnknown) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kUnknownName, Subject::kFormat, {},
                       target.format);
  }
  if (to_file && target.file.empty()) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kMissing, Subject::kReportFile);
  }
  report.Cut();
  const bool to_printer = (target.outputs & ReportTarget::kPrinter) != 0;
  // Room on the paper comes first: once the file is there, nothing may fail.
  core_.paper.Reserve(report.lines().size());
  if (to_file) {
    std::string text = report.text();
    if (format == FileFormat::kSigned) text += fmt::format("SHA-256 {}\n", Sha256(text));
    if (const int code = WriteFile(target.file, text)) return code;
  }
  if (to_printer) core_.paper.Append(std::move(report));
  core_.report_polls = core_.tables.settings().report_polls;
  return RTF_SUCCESS;
}

int ReportDesk::PrintX(int32_t kind, bool clear, const ReportTarget& target) {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  const ReportRow* row = Find(kReadings, kind);
  if (row == nullptr) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kReading, {kind});
  }
  if (clear) return Refuse(RTF_E_ILLEGAL, RefusalCause::kReadingClears);
  Paper report = Begin(row->title);
  report.Centred("non fiscale");
  report.Blank();
  PrintSections(
      core_,
      {core_.store.day(), SumsByRate(core_.store.day(), core_.tables.settings().vat_rates),
       &core_.store.counters(), core_.store.grand_total()},
      row->sections, &report);
  report.Blank();
  report.Centred(FormatDateTime(core_.Now()));
  report.Centred("RT " + core_.tables.settings().serial_number);
  return Deliver(std::move(report), target);
}

int ReportDesk::CloseDay() {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  if (!core_.store.HasClosure()) {
    return Refuse(RTF_EFPTR_FISCAL_MEMORY_FULL, RefusalCause::kClosuresFull);
  }
  if (const int code = CheckClock(core_)) return code;
  const std::tm now = core_.Now();
  const std::vector<VatRate>& rates = core_.tables.settings().vat_rates;
  Paper report = Begin("CHIUSURA GIORNALIERA");
  report.Blank();
  PrintSections(core_,
                {core_.store.day(), SumsByRate(core_.store.day(), rates), &core_.store.counters(),
                 core_.store.grand_total()},
                kDaySection | kTenderSection | kVatSection, &report);
  report.Blank();
  report.Centred(FormatDateTime(now));
  const int number = core_.store.last_closure() + 1;
  report.Centred(fmt::format("CHIUSURA N. {:04}", number));
  report.Centred("RT " + core_.tables.settings().serial_number);
  const std::tm first = NumberTime(core_.store.first_of_day_time());
  if (core_.store.first_of_day_time() != 0 && !SameDate(first, now)) {
    report.Centred("Giornata aperta il " + FormatDateTime(first));
  }
  if (const std::optional<IdleDates> idle = IdleBefore(core_.store, now)) {
    report.Centred("Inattivo dal " + DateText(idle->from) + " al " + DateText(idle->to));
  }
  if (number >= RegisterStore::kToldAhead) {
    report.Centred(fmt::format("CHIUSURE RIMASTE: {}", RegisterStore::kLastNumber - number));
  }
  report.Cut();
  core_.store.CloseDay(now, rates, {kJournalClosure, 0, 0, now, report.lines()});
  core_.paper.Append(std::move(report));
  core_.report_polls = core_.tables.settings().report_polls;
  return RTF_SUCCESS;
}

void ReportDesk::SendBehindClosing(bool send) {
  TelematicDesk telematic(core_);
  if (send) static_cast<void>(telematic.SendSummaries());
  if (core_.options.send_lottery) static_cast<void>(telematic.SendLottery());
}

int ReportDesk::PrintPeriodic(int32_t kind, bool clear, const ReportTarget& target) {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  const ReportRow* row = Find(kPeriodic, kind);
  if (row == nullptr) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kPeriod, {kind});
  }
  const PeriodStart& start = core_.store.period_start(kind);
  const Totals totals = core_.store.PeriodTotals(kind);
  const std::tm now = core_.Now();
  Paper report = Begin(row->title);
  if (start.cleared) report.Centred("dal " + FormatDateTime(start.time));
  report.Blank();
  ReportFigures figures = {totals};
  if ((row->sections & kVatSection) != 0) {
    figures.rates = core_.store.PeriodRates(kind, core_.tables.settings().vat_rates);
  }
  PrintSections(core_, figures, row->sections, &report);
  report.Blank();
  if (clear) report.Centred("TOTALI AZZERATI");
  report.Centred(FormatDateTime(now));
  report.Centred("RT " + core_.tables.settings().serial_number);
  if (const int code = Deliver(std::move(report), target)) return code;
  if (clear) core_.store.ClearPeriod(kind, now);
  return RTF_SUCCESS;
}

int ReportDesk::PrintPowerLosses() {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  const std::tm now = core_.Now();
  Paper report = Begin("INTERRUZIONI DI ALIMENTAZIONE");
  report.Centred("non fiscale");
  report.Blank();
  report.Pair("Documenti interrotti", std::to_string(core_.setup.power_losses));
  if (core_.setup.power_losses > 0) {
    report.Pair("Ultima interruzione", FormatDateTime(core_.setup.last_power_loss));
  }
  report.Blank();
  report.Centred(FormatDateTime(now));
  report.Centred("RT " + core_.tables.settings().serial_number);
  return Deliver(std::move(report), {});
}

}  // namespace lorimat
