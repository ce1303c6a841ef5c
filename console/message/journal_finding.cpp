#include "console/message/journal_finding.h"

#include <fmt/format.h>

#include <string_view>

#include "console/message/register_failure_text.h"
#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "register/value/row_encoding.h"

namespace lorimat::console {
namespace {

using lorimat::FindingKind;

struct JournalFindingRow {
  FindingKind kind;
  const char* code;
  const char* text;  // the fields are members of the finding, and the name of its document
};

constexpr JournalFindingRow kRows[] = {
    {FindingKind::kDamagedPage, "damaged-page", TR_TEXT("the file is damaged ({text})")},
    {FindingKind::kUnreadable, "unreadable", "{text}"},
    {FindingKind::kStrangeRow, "strange-row",
     TR_TEXT("file: a row of \"{text}\" belongs to nothing")},
    {FindingKind::kStrangeValue, "strange-value",
     TR_TEXT("file: a value of \"{text}\" is of another type than its column")},
    {FindingKind::kStrangeTable, "strange-table",
     TR_TEXT("file: \"{text}\" is not as this version makes it")},
    {FindingKind::kEntryWithoutPlace, "entry-without-place",
     TR_TEXT("entry {entry}: no place in the journal")},
    {FindingKind::kEntryMissing, "entry-missing", TR_TEXT("entry {entry}: missing")},
    {FindingKind::kEntriesMissing, "entries-missing",
     TR_TEXT("entries {entry} to {last}: missing")},
    {FindingKind::kEntryMissingAtEnd, "entry-missing-at-end",
     TR_TEXT("entry {entry}: missing at the end")},
    {FindingKind::kEntriesMissingAtEnd, "entries-missing-at-end",
     TR_TEXT("entries {entry} to {last}: missing at the end")},
    {FindingKind::kEntryBehindLast, "entry-behind-last",
     TR_TEXT("entry {entry}: behind the last one, which is {expected}")},
    {FindingKind::kEntryNotLast, "entry-not-last",
     TR_TEXT("entry {entry}: it is not the one that was made last")},
    {FindingKind::kEntryUnreadable, "entry-unreadable",
     TR_TEXT("entry {entry}: it cannot be read")},
    {FindingKind::kEntryHash, "entry-hash",
     TR_TEXT("entry {entry}, {name}: its hash does not fit: the entry, or what it stands for, "
             "was changed")},
    {FindingKind::kEntryDay, "entry-day",
     TR_TEXT("entry {entry}, {name}: it is of the day {value:04}, and the day was {expected:04}")},
    {FindingKind::kDocumentTwice, "document-twice",
     TR_TEXT("entry {entry}, {name}: its document has an entry already")},
    {FindingKind::kDocumentMissing, "document-missing",
     TR_TEXT("entry {entry}, {name}: its document is missing")},
    {FindingKind::kDocumentUnreadable, "document-unreadable",
     TR_TEXT("entry {entry}, {name}: its document cannot be read")},
    {FindingKind::kClosureMissing, "closing-missing",
     TR_TEXT("entry {entry}, {name}: the closing is missing")},
    {FindingKind::kClosureUnreadable, "closing-unreadable",
     TR_TEXT("entry {entry}, {name}: the closing cannot be read")},
    {FindingKind::kInvoiceNumber, "invoice-number",
     TR_TEXT("{name}: its number does not go on from the one before, the next was {expected}")},
    {FindingKind::kEventMissing, "event-missing", TR_TEXT("event {entry}: missing")},
    {FindingKind::kEventsMissing, "events-missing", TR_TEXT("events {entry} to {last}: missing")},
    {FindingKind::kEventUnreadable, "event-unreadable",
     TR_TEXT("event {entry}: it cannot be read")},
    {FindingKind::kEventHash, "event-hash",
     TR_TEXT("event {entry}: its hash does not fit: the event was changed")},
    {FindingKind::kEventNotLast, "event-not-last",
     TR_TEXT("event {entry}: it is not the link of the chain that was made last")},
    {FindingKind::kSentTwice, "sent-twice",
     TR_TEXT("event {entry}: {value} was sent, and did not wait to be sent")},
    {FindingKind::kProgrammedBefore, "programmed-before",
     TR_TEXT("event {entry}: \"{text}\" had been changed by other means before it was programmed")},
    {FindingKind::kNoBeginning, "no-beginning",
     TR_TEXT("the beginning of the chain is missing or cannot be read")},
    {FindingKind::kNoEntry, "no-entry",
     TR_TEXT("document {closure:04}-{number:04}: it has no entry in the journal")},
    {FindingKind::kLoneDocumentUnreadable, "lone-document-unreadable",
     TR_TEXT("document {closure:04}-{number:04}: it cannot be read")},
    {FindingKind::kLineOrder, "line-order",
     TR_TEXT("document {closure:04}-{number:04}: the places of its lines or payments do not "
             "count on from 1")},
    {FindingKind::kOpenDocument, "open-document",
     TR_TEXT("the open document: what is noted of it does not agree")},
    {FindingKind::kDocumentCount, "document-count",
     TR_TEXT("documents: {value} were registered, the last one there is the {expected}.")},
    {FindingKind::kClosureNoEntry, "closing-no-entry",
     TR_TEXT("closing {closure:04}: it has no entry in the journal")},
    {FindingKind::kClosureTotals, "closing-totals",
     TR_TEXT("{name}: its totals are not the sum of its documents")},
    {FindingKind::kClosureCounters, "closing-counters",
     TR_TEXT("{name}: its counters are not those of its documents")},
    {FindingKind::kClosureGrandTotal, "closing-grand-total",
     TR_TEXT("{name}: the grand total is not that of the days before and this one")},
    {FindingKind::kSummaryWaits, "summary-waits",
     TR_TEXT("closing {closure:04}: its summary waits to be sent, and was sent")},
    {FindingKind::kSummaryWaitsNot, "summary-waits-not",
     TR_TEXT("closing {closure:04}: its summary does not wait to be sent, and was not sent")},
    {FindingKind::kLotteryWaits, "lottery-waits",
     TR_TEXT("{name}: it waits to be sent to the lottery, and has no code or was sent")},
    {FindingKind::kLotteryWaitsNot, "lottery-waits-not",
     TR_TEXT("{name}: it does not wait to be sent to the lottery, and was not sent")},
    {FindingKind::kDayTotals, "day-totals",
     TR_TEXT("the day: its totals are not the sum of its documents")},
    {FindingKind::kDayCounters, "day-counters",
     TR_TEXT("the day: its counters are not those of its documents")},
    {FindingKind::kDayGrandTotal, "day-grand-total",
     TR_TEXT("the day: the grand total is not that of the days before and this one")},
    {FindingKind::kDayNumber, "day-number",
     TR_TEXT("the day: its number is {value:04}, and the journal is at {expected:04}")},
    {FindingKind::kFirstDocument, "first-document",
     TR_TEXT("the day: its first document is the {value}., and should be the {expected}.")},
    {FindingKind::kAllTotals, "all-totals",
     TR_TEXT("the totals of all days are not the sum of the closings")},
    {FindingKind::kNextInvoice, "next-invoice",
     TR_TEXT("the next invoice: its number is {value}, and should be {expected}")},
    {FindingKind::kPeriod, "period",
     TR_TEXT("period {value}: its beginning or its totals are not those of the journal")},
    {FindingKind::kProgrammed, "programmed", TR_TEXT("\"{text}\": it is not as it was programmed")},
    {FindingKind::kClockSetBack, "clock-set-back",
     TR_TEXT("event {entry}: the clock was set back from {time_before} to {time_after}")},
    {FindingKind::kTimeBackwards, "time-backwards",
     TR_TEXT("entry {entry}, {name}: its time {time_before} lies before that of the document or "
             "closing ahead of it, {time_after}")},
};

// Tables of the file and values of its table "setting", as the register names them, and for a
// person.
struct StoredName {
  std::string_view name;
  std::string_view text;
};

constexpr StoredName kStoredNames[] = {
    {"article", TR_TEXT("articles")},
    {"auto_close", TR_TEXT("closing by itself")},
    {"cashier_id", TR_TEXT("identity of the cashier")},
    {"clock_offset", TR_TEXT("difference of the clock")},
    {"clock_set_back", TR_TEXT("clock that was set back")},
    {"closure", TR_TEXT("closings")},
    {"commissioning", TR_TEXT("being in service")},
    {"department", TR_TEXT("departments")},
    {"device_option", TR_TEXT("options of the device")},
    {"document", TR_TEXT("documents")},
    {"document_line", TR_TEXT("lines of documents")},
    {"document_payment", TR_TEXT("payments of documents")},
    {"event", TR_TEXT("events")},
    {"extended_departments", TR_TEXT("extended departments")},
    {"firmware_version", TR_TEXT("version of the firmware")},
    {"fiscal_id", TR_TEXT("VAT number")},
    {"fixed_decimal_point", TR_TEXT("fixed decimal point")},
    {"groups", TR_TEXT("number of groups")},
    {"header_line", TR_TEXT("lines of the header")},
    {"invoice_series", TR_TEXT("series of invoices")},
    {"journal", TR_TEXT("journal")},
    {"last_power_loss", TR_TEXT("last loss of power")},
    {"ledger", TR_TEXT("counters and totals")},
    {"logo", TR_TEXT("logos")},
    {"lottery_waiting", TR_TEXT("documents that wait for the lottery")},
    {"open_document", TR_TEXT("open document")},
    {"operator_group", TR_TEXT("groups and operators")},
    {"operators", TR_TEXT("number of operators")},
    {"outbox", TR_TEXT("folder of what is sent")},
    {"period", TR_TEXT("periods")},
    {"pos_id", TR_TEXT("identity of the point of sale")},
    {"power_losses", TR_TEXT("losses of power")},
    {"programmed_key", TR_TEXT("programmed keys")},
    {"programming_needs_key", TR_TEXT("key position for programming")},
    {"roll", TR_TEXT("roll")},
    {"send_lottery", TR_TEXT("sending to the lottery")},
    {"serial_number", TR_TEXT("serial number")},
    {"setting", TR_TEXT("settings")},
    {"subtender", TR_TEXT("subtenders")},
    {"summary_waiting", TR_TEXT("summaries that wait to be sent")},
    {"training", TR_TEXT("training")},
    {"vat_rate", TR_TEXT("VAT rates")},
};

struct DocumentName {
  int32_t kind;
  const char* name;
};

constexpr DocumentName kDocumentNames[] = {
    {lorimat::kJournalSale, TR_TEXT("receipt")},
    {lorimat::kJournalInvoice, TR_TEXT("invoice")},
    {lorimat::kJournalRefund, TR_TEXT("credit note")},
    {lorimat::kJournalCancel, TR_TEXT("void")},
    {lorimat::kJournalAbandoned, TR_TEXT("cancelled document")},
    {lorimat::kJournalClosure, TR_TEXT("closing")},
    {lorimat::kJournalNonFiscal, TR_TEXT("non-fiscal document")},
};

// "receipt 0001-0005".
std::string NameOf(const lorimat::Finding& finding) {
  std::string_view name = Translated(TR_TEXT("document"));
  for (const DocumentName& row : kDocumentNames) {
    if (row.kind == finding.document) name = Translated(row.name);
  }
  if (finding.document == lorimat::kJournalClosure) {
    return fmt::format("{} {:04}", name, finding.closure);
  }
  if (finding.document == lorimat::kJournalInvoice) {
    return fmt::format("{} {}", name, finding.number);
  }
  if (finding.number == 0) return std::string(name);
  return fmt::format("{} {:04}-{:04}", name, finding.closure, finding.number);
}

// The name itself where it is none of this version's.
std::string StoredNameText(const std::string& name) {
  for (const StoredName& row : kStoredNames) {
    if (row.name == name) return std::string(Translated(row.text));
  }
  return name;
}

const JournalFindingRow* RowOf(const lorimat::Finding& finding) {
  for (const JournalFindingRow& row : kRows) {
    if (row.kind == finding.kind) return &row;
  }
  return nullptr;
}

}  // namespace

std::string JournalFindingText(const lorimat::Finding& finding) {
  const JournalFindingRow* row = RowOf(finding);
  if (row == nullptr) return {};
  const std::string text = finding.kind == FindingKind::kUnreadable
                               ? RegisterFailureWords(finding.failure)
                               : StoredNameText(finding.text);
  const std::string name = NameOf(finding);
  return fmt::format(fmt::runtime(Translated(row->text)), fmt::arg("entry", finding.entry),
                     fmt::arg("last", finding.last), fmt::arg("closure", finding.closure),
                     fmt::arg("number", finding.number), fmt::arg("value", finding.value),
                     fmt::arg("expected", finding.expected), fmt::arg("name", name),
                     fmt::arg("text", text),
                     fmt::arg("time_before", TimeText(lorimat::NumberTime(finding.value))),
                     fmt::arg("time_after", TimeText(lorimat::NumberTime(finding.expected))));
}

std::string JournalFindingCode(const lorimat::Finding& finding) {
  const JournalFindingRow* row = RowOf(finding);
  return row == nullptr ? "" : row->code;
}

}  // namespace lorimat::console
