#include "console/message/register_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <iterator>
#include <utility>

#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "register/value/row_encoding.h"

namespace lorimat::console {
namespace {

using Kind = lorimat::InterruptedKind;

thread_local bool pointed_numbers = false;

struct KindText {
  Kind kind;
  const char* name;
  const char* indefinite;
};

const char* DropCauseOf(lorimat::LotteryDropCause cause) {
  switch (cause) {
    case lorimat::LotteryDropCause::kNone:
      break;
    case lorimat::LotteryDropCause::kTotal:
      return TR_TEXT("its total is below 1,00");
    case lorimat::LotteryDropCause::kPayment:
      return TR_TEXT("not all of it was paid electronically");
    case lorimat::LotteryDropCause::kTaxCode:
      return TR_TEXT("it has a tax code");
  }
  return TR_TEXT("the reason is not known");
}

constexpr KindText kDocumentKinds[] = {
    {Kind::kReceipt, TR_TEXT("receipt"), TR_TEXT("a receipt")},
    {Kind::kInvoice, TR_TEXT("invoice"), TR_TEXT("an invoice")},
    {Kind::kCreditNote, TR_TEXT("credit note"), TR_TEXT("a credit note")},
    {Kind::kVoid, TR_TEXT("void"), TR_TEXT("a void document")},
    {Kind::kNonFiscal, TR_TEXT("non-fiscal"), TR_TEXT("a non-fiscal document")},
    {Kind::kTraining, TR_TEXT("training"), TR_TEXT("a training document")},
    {Kind::kClosure, TR_TEXT("closing"), TR_TEXT("a closing")},
};

const KindText& RowOf(Kind kind) {
  for (const KindText& row : kDocumentKinds) {
    if (row.kind == kind) return row;
  }
  return kDocumentKinds[0];
}

}  // namespace

std::string KeyPositionText(int position) {
  static constexpr const char* kNames[] = {TR_TEXT("registering"), TR_TEXT("reading"),
                                           TR_TEXT("closing"), TR_TEXT("programming")};
  if (position < 1 || static_cast<size_t>(position) > std::size(kNames)) {
    return std::to_string(position);
  }
  return std::string(Translated(kNames[position - 1]));
}

PointedNumbers::PointedNumbers() : before_(std::exchange(pointed_numbers, true)) {}
PointedNumbers::~PointedNumbers() { pointed_numbers = before_; }
bool PointedNumbers::wanted() { return pointed_numbers; }

std::string AmountText(lorimat::Amount amount) {
  std::string text = lorimat::FormatAmount(amount);
  const size_t sign = text.front() == '-' ? 1 : 0;
  const size_t comma = text.find(',');
  if (PointedNumbers::wanted()) {
    if (comma != std::string::npos) text[comma] = '.';
    return text;
  }
  for (size_t at = comma == std::string::npos ? text.size() : comma; at > sign + 3;) {
    at -= 3;
    text.insert(at, 1, '.');
  }
  return text;
}

int64_t AmountCents(lorimat::Amount amount) { return amount / lorimat::kCent; }

std::string TimeText(const std::tm& time) {
  return fmt::format("{:02}/{:02}/{:04} {:02}:{:02}", time.tm_mday, time.tm_mon + 1,
                     time.tm_year + 1900, time.tm_hour, time.tm_min);
}

std::string TimeForPrograms(const std::tm& time) {
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}", time.tm_year + 1900, time.tm_mon + 1,
                     time.tm_mday, time.tm_hour, time.tm_min);
}

std::string DocumentKindText(Kind kind) { return std::string(Translated(RowOf(kind).indefinite)); }

namespace {

std::string BegunText(const lorimat::CutOffDocument& document) {
  return Tr("{} of {}", DocumentKindText(document.kind), TimeText(document.begun));
}

bool HasTotal(const lorimat::CutOffDocument& document) {
  return document.kind != Kind::kNonFiscal && document.kind != Kind::kTraining;
}

std::string LinesText(const lorimat::CutOffDocument& document) {
  return TrCount(static_cast<uint64_t>(std::max(document.lines, 0)), "{} line", "{} lines");
}

}  // namespace

std::string OpenDocumentText(const lorimat::CutOffDocument& document) {
  const std::string begun = BegunText(document);
  if (!HasTotal(document)) return Tr("{}: the next start ends it", begun);
  const std::string lines = LinesText(document);
  const std::string amount = AmountText(document.subtotal);
  if (document.registered) {
    return Tr("{}, {}, total {}, registered with number {:04}: the next start ends it", begun,
              lines, amount, document.number);
  }
  return Tr("{}, {}, subtotal {}, not paid: the next start voids it", begun, lines, amount);
}

std::string EndedDocumentText(const lorimat::CutOffDocument& document) {
  const std::string begun = BegunText(document);
  if (!HasTotal(document)) return Tr("{} was cut off, and has been ended", begun);
  const std::string lines = LinesText(document);
  const std::string amount = AmountText(document.subtotal);
  if (document.registered) {
    return Tr("{}, {}, total {}, was cut off: registered with number {:04}, and has been ended",
              begun, lines, amount, document.number);
  }
  return Tr("{}, {}, subtotal {}, was cut off: not paid, and has been voided", begun, lines,
            amount);
}

std::string UnansweredDocumentText(const lorimat::UnansweredDocument& document) {
  return Tr(
      "{} {} of {}, total {}, was stored last, and the register was switched off behind it: its "
      "answer may not have gone out",
      Translated(RowOf(document.kind).name), document.number_text(), TimeText(document.time),
      AmountText(document.total));
}

std::string LotteryDropNote(const lorimat::LotteryDrop& last, uint64_t drops) {
  const std::string_view cause = Translated(DropCauseOf(last.cause));
  const std::string number = DocumentNumberText(last.closure, last.number);
  return drops == 1 ? Tr("receipt {} went out without its lottery code: {}", number, cause)
                    : Tr("{} receipts went out without their lottery code, the last one {}: {}",
                         drops, number, cause);
}

const std::vector<JournalKindName>& JournalKindNames() {
  static const std::vector<JournalKindName> kNames = {
      {lorimat::kJournalSale, "receipt", TR_TEXT("receipt")},
      {lorimat::kJournalInvoice, "invoice", TR_TEXT("invoice")},
      {lorimat::kJournalRefund, "credit-note", TR_TEXT("credit note")},
      {lorimat::kJournalCancel, "void", TR_TEXT("void")},
      {lorimat::kJournalAbandoned, "abandoned", TR_TEXT("abandoned")},
      {lorimat::kJournalClosure, "closing", TR_TEXT("closing")},
      {lorimat::kJournalNonFiscal, "non-fiscal", TR_TEXT("non-fiscal")},
  };
  return kNames;
}

std::string NameOfKind(lorimat::JournalKind kind) {
  for (const JournalKindName& row : JournalKindNames()) {
    if (row.kind == kind) return row.name;
  }
  return std::to_string(static_cast<int>(kind));
}

std::string JournalKindText(lorimat::JournalKind kind) {
  for (const JournalKindName& row : JournalKindNames()) {
    if (row.kind == kind) return std::string(Translated(row.text));
  }
  return std::to_string(static_cast<int>(kind));
}

std::string DocumentNumberText(int closure, int number) {
  return number == 0 ? fmt::format("{:04}", closure) : fmt::format("{:04}-{:04}", closure, number);
}

size_t ColumnCount(const std::string& text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

std::vector<std::pair<std::string, std::string>> DayRows(int last_closure,
                                                         const lorimat::DailyCounters& day,
                                                         bool open, lorimat::Amount day_total,
                                                         lorimat::Amount grand_total) {
  return {
      {Tr("Last closing"), last_closure == 0 ? Tr("none yet") : std::to_string(last_closure)},
      {Tr("Day"), open ? Tr("open") : Tr("not begun")},
      {Tr("  receipts"), std::to_string(day.sales)},
      {Tr("  invoices"), std::to_string(day.invoices)},
      {Tr("  credit notes"), std::to_string(day.refunds)},
      {Tr("  voids"), std::to_string(day.cancels)},
      {Tr("  abandoned"), std::to_string(day.abandoned)},
      {Tr("  non-fiscal"), std::to_string(day.non_fiscal)},
      {Tr("  total"), AmountText(day_total)},
      {Tr("Grand total"), AmountText(grand_total)},
  };
}

std::vector<std::string> DayNoticeTexts(const lorimat::DayNotice& notice) {
  const auto date = [](int64_t time) {
    const std::tm day = lorimat::NumberTime(time);
    return fmt::format("{:02}/{:02}/{:04}", day.tm_mday, day.tm_mon + 1, day.tm_year + 1900);
  };
  std::vector<std::string> texts;
  if (notice.opened) texts.push_back(Tr("the day of {} has not been closed", date(*notice.opened)));
  if (notice.idle) {
    texts.push_back(
        Tr("nothing was registered from {} to {}", date(notice.idle->from), date(notice.idle->to)));
  }
  if (notice.documents_left) {
    texts.push_back(TrCount(static_cast<uint64_t>(*notice.documents_left),
                            "the day takes {} document more", "the day takes {} documents more"));
  }
  if (notice.closings_left) {
    texts.push_back(TrCount(static_cast<uint64_t>(*notice.closings_left),
                            "the memory takes {} closing more",
                            "the memory takes {} closings more"));
  }
  return texts;
}

std::string PairedRows(const std::vector<std::pair<std::string, std::string>>& rows) {
  size_t width = 0;
  for (const auto& [name, value] : rows) width = std::max(width, ColumnCount(name));
  std::string out;
  for (const auto& [name, value] : rows) {
    const std::string line = name + std::string(width + 2 - ColumnCount(name), ' ') + value;
    out += WithoutTrailingBlanks(line);
    out += '\n';
  }
  return out;
}

}  // namespace lorimat::console
