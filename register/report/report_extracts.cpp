// Extracts of the fiscal memory and of the journal.
#include <fmt/format.h>

#include <limits>
#include <utility>

#include "register/desk/layout.h"
#include "register/report/report_sections.h"
#include "register/report/reports.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

constexpr int32_t kClosings = 0;
constexpr int32_t kJournal = 1;
constexpr int32_t kPeriodSums = 2;
constexpr int32_t kDocumentList = 4;

constexpr int32_t kByDate = RTF_FPTR_RT_DATE;
constexpr int32_t kByClosure = RTF_FPTR_RT_EOD_ORDINAL;
constexpr int32_t kByDateAndNumber = 4;

constexpr int32_t kJournalKinds = kJournalSale | kJournalInvoice | kJournalRefund | kJournalCancel |
                                  kJournalAbandoned | kJournalClosure | kJournalNonFiscal;

constexpr uint32_t kNumbersOfAClosure = 10000;
// Invoices go beyond the documents of a day, and on from any number.
constexpr uint32_t kLastInvoice = std::numeric_limits<int32_t>::max();

struct Range {
  std::tm from = {};
  std::tm to = {};
};

int ReadDates(std::string_view from, std::string_view to, Range* range) {
  if (!ParseMinute(from, &range->from)) {
    return Refuse(RTF_EFPTR_BAD_DATE, RefusalCause::kDate, {}, from);
  }
  if (!ParseMinute(to, &range->to)) return Refuse(RTF_EFPTR_BAD_DATE, RefusalCause::kDate, {}, to);
  if (CompareMinutes(range->from, range->to) > 0) {
    return Refuse(RTF_EFPTR_BAD_DATE, RefusalCause::kDatesReversed);
  }
  return RTF_SUCCESS;
}

int ReadDates(const FiscalRequest& request, Range* range) {
  return ReadDates(request.from_date, request.to_date, range);
}

// A range that ends before it begins, or goes beyond the numbers that there are.
int NoRange(Subject subject, int64_t from, int64_t to, int64_t last) {
  if (from > to) return Refuse(RTF_E_ILLEGAL, RefusalCause::kRangeReversed, {from, to});
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, subject,
                     {from < 1 ? from : to, 1, last});
}

int NoCriterion(int criterion) {
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kCriterion, {criterion});
}

bool InRange(uint32_t number, uint32_t first, uint32_t last) {
  return number >= first && number <= last;
}

std::string DateRange(const Range& range) {
  return fmt::format("dal {} al {}", FormatDateTime(range.from), FormatDateTime(range.to));
}

struct ListName {
  DocumentKind kind;
  const char* name;
};

constexpr ListName kListNames[] = {
    {DocumentKind::kSale, "VEN"},
    {DocumentKind::kInvoice, "FAT"},
    {DocumentKind::kRefund, "RES"},
    {DocumentKind::kCancel, "ANN"},
};

const ListName& NameOf(DocumentKind kind) {
  for (const ListName& row : kListNames) {
    if (row.kind == kind) return row;
  }
  return kListNames[0];
}

}  // namespace

int ReportDesk::PrintFiscal(const FiscalRequest& request, const ReportTarget& target) {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  int code = RTF_E_ILLEGAL;
  Paper report;
  switch (request.source) {
    case kClosings:
      report = Begin("MEMORIA FISCALE");
      code = Closings(request, false, &report);
      break;
    case kJournal:
      report = Begin("ESTRATTO DEL GIORNALE");
      code = Journal(request, &report);
      break;
    case kPeriodSums:
      report = Begin("CORRISPETTIVI DEL PERIODO");
      code = Closings(request, true, &report);
      break;
    case kDocumentList:
      report = Begin("ELENCO DOCUMENTI");
      code = DocumentList(request, &report);
      break;
    default:
      code = RefuseValue(code, RefusalCause::kNotOneOf, Subject::kSource, {request.source});
      break;
  }
  if (code != RTF_SUCCESS) return code;
  return Deliver(std::move(report), target);
}

int ReportDesk::PrintJournal(const JournalRequest& request, const ReportTarget& target) {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  Paper report = Begin("ESTRATTO DEL GIORNALE");
  JournalSelection selection;
  selection.filter = request.filter;
  selection.to_closure = RegisterStore::kLastNumber + 1;  // the day that is open, too
  if (request.by_date) {
    Range range;
    if (const int code = ReadDates(request.from_date, request.to_date, &range)) return code;
    selection.by_date = true;
    selection.from = range.from;
    selection.to = range.to;
    report.Centred(DateRange(range));
  }
  if (request.by_closure) {
    if (request.from_closure < 1 || request.from_closure > request.to_closure ||
        request.to_closure > RegisterStore::kLastNumber) {
      return NoRange(Subject::kClosure, request.from_closure, request.to_closure,
                     RegisterStore::kLastNumber);
    }
    selection.in_closures = true;
    selection.from_closure = request.from_closure;
    selection.to_closure = request.to_closure;
    report.Centred(
        fmt::format("dalla chiusura {:04} alla {:04}", request.from_closure, request.to_closure));
  }
  if (request.from_number < 1 || request.from_number > request.to_number ||
      request.to_number > JournalSelection::kLastNumber) {
    return NoRange(Subject::kDocumentNumber, request.from_number, request.to_number,
                   JournalSelection::kLastNumber);
  }
  selection.from_number = request.from_number;
  selection.to_number = request.to_number;
  if ((request.filter & kJournalKinds) == 0 || (request.filter & ~kJournalAll) != 0) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kDocumentKinds,
                       {request.filter});
  }
  if (const int code = Extract(selection, &report)) return code;
  return Deliver(std::move(report), target);
}

// Closings by number or by date, each by itself or as one sum.
int ReportDesk::Closings(const FiscalRequest& request, bool sums, Paper* report) const {
  std::vector<Closure> found;
  if (request.criteria == kByClosure) {
    const uint32_t from = request.from_number;
    const uint32_t to = request.to_number;
    if (!InRange(from, 1, RegisterStore::kLastNumber) ||
        !InRange(to, from, RegisterStore::kLastNumber)) {
      return NoRange(Subject::kClosure, from, to, RegisterStore::kLastNumber);
    }
    report->Centred(fmt::format("dalla chiusura {:04} alla {:04}", from, to));
    found = core_.store.FindClosures(static_cast<int>(from), static_cast<int>(to));
  } else if (request.criteria == kByDate) {
    Range range;
    if (const int code = ReadDates(request, &range)) return code;
    report->Centred(DateRange(range));
    found = core_.store.FindClosures(range.from, range.to);
  } else {
    return NoCriterion(request.criteria);
  }
  if (found.empty()) return Refuse(RTF_E_NOEXIST, RefusalCause::kNothingInRange);

  Totals totals;
  std::vector<RateSums> rates;
  for (const Closure& closure : found) {
    totals.Add(closure.totals);
    AddByRate(closure.totals, closure.vat_rates, &rates);
    if (sums) continue;
    report->Blank();
    PrintClosure(closure, report);
  }
  report->Blank();
  report->Pair("Chiusure", std::to_string(found.size()));
  PrintSections(core_, {totals, Something(std::move(rates))}, sums ? kDaySection | kVatSection : 0u,
                report);
  if (!sums) report->Pair("TOTALE DEL PERIODO", FormatAmount(totals.Summary().net()));
  report->Blank();
  report->Centred("RT " + core_.tables.settings().serial_number);
  return RTF_SUCCESS;
}

int ReportDesk::Journal(const FiscalRequest& request, Paper* report) const {
  JournalSelection selection;
  selection.filter = request.filter;
  uint32_t from = request.from_number;
  uint32_t to = request.to_number;
  Range range;
  switch (request.criteria) {
    case kByDate:
      from = 1;
      to = JournalSelection::kLastNumber;
      [[fallthrough]];
    case kByDateAndNumber:
      if (const int code = ReadDates(request, &range)) return code;
      selection.by_date = true;
      selection.from = range.from;
      selection.to = range.to;
      report->Centred(DateRange(range));
      break;
    case kByClosure:
      // One number for both: the closure in the upper digits, the document in the lower four.
      selection.from_closure = static_cast<int>(from / kNumbersOfAClosure);
      selection.to_closure = static_cast<int>(to / kNumbersOfAClosure);
      if (!InRange(from / kNumbersOfAClosure, 1, RegisterStore::kLastNumber) ||
          !InRange(to / kNumbersOfAClosure, from / kNumbersOfAClosure,
                   RegisterStore::kLastNumber)) {
        return NoRange(Subject::kClosure, selection.from_closure, selection.to_closure,
                       RegisterStore::kLastNumber);
      }
      from %= kNumbersOfAClosure;
      to %= kNumbersOfAClosure;
      report->Centred(fmt::format("dalla chiusura {:04} alla {:04}", selection.from_closure,
                                  selection.to_closure));
      break;
    default:
      return NoCriterion(request.criteria);
  }
  if (from > JournalSelection::kLastNumber || to > JournalSelection::kLastNumber ||
      (selection.from_closure == selection.to_closure && from > to)) {
    return NoRange(Subject::kDocumentNumber, from, to, JournalSelection::kLastNumber);
  }
  selection.from_number = static_cast<int>(from);
  selection.to_number = static_cast<int>(to);
  return Extract(selection, report);
}

int ReportDesk::Extract(const JournalSelection& selection, Paper* report) const {
  int count = 0;
  Paper entries;
  core_.store.ForEachEntry(selection, [&](uint64_t, const JournalEntry& entry) {
    ++count;
    for (const std::string& line : entry.lines) entries.Line(line);
    return true;
  });
  if (count == 0) return Refuse(RTF_E_NOEXIST, RefusalCause::kNothingInRange);
  report->Pair("Documenti", std::to_string(count));
  report->Cut();
  report->Append(std::move(entries));
  report->Centred("FINE ESTRATTO");
  return RTF_SUCCESS;
}

// One line for each document of a range of dates, and of numbers unless both are 0.
int ReportDesk::DocumentList(const FiscalRequest& request, Paper* report) const {
  if (request.criteria != kByDate && request.criteria != kByDateAndNumber) {
    return NoCriterion(request.criteria);
  }
  Range range;
  if (const int code = ReadDates(request, &range)) return code;
  uint32_t from = request.from_number;
  uint32_t to = request.to_number;
  if (request.criteria == kByDate || (from == 0 && to == 0)) {
    from = 1;
    to = kLastInvoice;
  }
  if (from > to) return NoRange(Subject::kDocumentNumber, from, to, kLastInvoice);
  report->Centred(DateRange(range));
  report->Blank();
  int count = 0;
  Amount sum = 0;
  DocumentSelection selection;
  selection.from = range.from;
  selection.to = range.to;
  core_.store.ForEachDocument(selection, [&](const StoredDocument& document) {
    const ListName& name = NameOf(document.kind);
    if ((request.filter & JournalKindOf(document.kind)) == 0) return true;
    if (!InRange(static_cast<uint32_t>(document.number), from, to)) return true;
    ++count;
    const Amount amount = DailySign(document.kind) * document.total;
    sum += amount;
    report->Pair(fmt::format("{:04}-{:04} {} {}", document.closure, document.number,
                             FormatDateTime(document.time), name.name),
                 FormatAmount(amount));
    return true;
  });
  if (count == 0) return Refuse(RTF_E_NOEXIST, RefusalCause::kNothingInRange);
  report->Blank();
  report->Pair("Documenti", std::to_string(count));
  report->Pair("TOTALE", FormatAmount(sum));
  report->Centred("RT " + core_.tables.settings().serial_number);
  return RTF_SUCCESS;
}

}  // namespace lorimat
