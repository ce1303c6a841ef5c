#include "console/message/register_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

#include "console/message/text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

struct KindText {
  const char* kind;  // as the register names it
  const char* indefinite;
};

constexpr std::array<KindText, 6> kDocumentKinds = {{
    {"receipt", TR_TEXT("a receipt")},
    {"invoice", TR_TEXT("an invoice")},
    {TR_TEXT("credit note"), TR_TEXT("a credit note")},
    {"void", TR_TEXT("a void document")},
    {"non-fiscal", TR_TEXT("a non-fiscal document")},
    {"training", TR_TEXT("a training document")},
}};

}  // namespace

std::string amount_text(lorimat::Amount amount) {
  std::string text = lorimat::FormatAmount(amount);
  const size_t sign = text.front() == '-' ? 1 : 0;
  const size_t comma = text.find(',');
  for (size_t at = comma == std::string::npos ? text.size() : comma; at > sign + 3;) {
    at -= 3;
    text.insert(at, 1, '.');
  }
  return text;
}

int64_t amount_cents(lorimat::Amount amount) { return amount / lorimat::kCent; }

std::string time_text(const std::tm& time) {
  return fmt::format("{:02}/{:02}/{:04} {:02}:{:02}", time.tm_mday, time.tm_mon + 1,
                     time.tm_year + 1900, time.tm_hour, time.tm_min);
}

std::string time_for_programs(const std::tm& time) {
  return fmt::format("{:04}-{:02}-{:02}T{:02}:{:02}", time.tm_year + 1900, time.tm_mon + 1,
                     time.tm_mday, time.tm_hour, time.tm_min);
}

std::string document_kind_text(const std::string& kind) {
  for (const KindText& row : kDocumentKinds) {
    if (kind == row.kind) return std::string(translated(row.indefinite));
  }
  return shown(kind);
}

namespace {

std::string begun_text(const lorimat::CutOffDocument& document) {
  return tr("{} of {}", document_kind_text(document.kind), time_text(document.begun));
}

bool has_total(const lorimat::CutOffDocument& document) {
  return document.kind != "non-fiscal" && document.kind != "training";
}

std::string lines_text(const lorimat::CutOffDocument& document) {
  return tr_count(static_cast<uint64_t>(std::max(document.lines, 0)), TR_TEXT("{} line"),
                  TR_TEXT("{} lines"));
}

}  // namespace

std::string open_document_text(const lorimat::CutOffDocument& document) {
  const std::string begun = begun_text(document);
  if (!has_total(document)) return tr("{}: the next start ends it", begun);
  const std::string lines = lines_text(document);
  const std::string amount = amount_text(document.subtotal);
  if (document.registered) {
    return tr("{}, {}, total {}, registered with number {:04}: the next start ends it", begun,
              lines, amount, document.number);
  }
  return tr("{}, {}, subtotal {}, not paid: the next start voids it", begun, lines, amount);
}

std::string ended_document_text(const lorimat::CutOffDocument& document) {
  const std::string begun = begun_text(document);
  if (!has_total(document)) return tr("{} was cut off, and has been ended", begun);
  const std::string lines = lines_text(document);
  const std::string amount = amount_text(document.subtotal);
  if (document.registered) {
    return tr("{}, {}, total {}, was cut off: registered with number {:04}, and has been ended",
              begun, lines, amount, document.number);
  }
  return tr("{}, {}, subtotal {}, was cut off: not paid, and has been voided", begun, lines,
            amount);
}

std::string unanswered_document_text(const lorimat::UnansweredDocument& document) {
  return tr(
      "{} {} of {}, total {}, was stored last, and the register was switched off behind it: its "
      "answer may not have gone out",
      translated(document.kind), document.number_text(), time_text(document.time),
      amount_text(document.total));
}

const std::vector<JournalKindName>& journal_kind_names() {
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

std::string journal_kind_name(lorimat::JournalKind kind) {
  for (const JournalKindName& row : journal_kind_names()) {
    if (row.kind == kind) return row.name;
  }
  return std::to_string(static_cast<int>(kind));
}

std::string journal_kind_text(lorimat::JournalKind kind) {
  for (const JournalKindName& row : journal_kind_names()) {
    if (row.kind == kind) return std::string(translated(row.text));
  }
  return std::to_string(static_cast<int>(kind));
}

std::string document_number_text(int closure, int number) {
  return number == 0 ? fmt::format("{:04}", closure) : fmt::format("{:04}-{:04}", closure, number);
}

size_t column_count(const std::string& text) {
  return static_cast<size_t>(std::count_if(text.begin(), text.end(), [](char c) {
    return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
  }));
}

std::vector<std::pair<std::string, std::string>> DayRows(int last_closure,
                                                         const lorimat::DailyCounters& day,
                                                         bool open, lorimat::Amount day_total,
                                                         lorimat::Amount grand_total) {
  return {
      {tr("Last closing"), last_closure == 0 ? tr("none yet") : std::to_string(last_closure)},
      {tr("Day"), open ? tr("open") : tr("not begun")},
      {tr("  receipts"), std::to_string(day.sales)},
      {tr("  invoices"), std::to_string(day.invoices)},
      {tr("  credit notes"), std::to_string(day.refunds)},
      {tr("  voids"), std::to_string(day.cancels)},
      {tr("  abandoned"), std::to_string(day.abandoned)},
      {tr("  non-fiscal"), std::to_string(day.non_fiscal)},
      {tr("  total"), amount_text(day_total)},
      {tr("Grand total"), amount_text(grand_total)},
  };
}

std::string paired_rows(const std::vector<std::pair<std::string, std::string>>& rows) {
  size_t width = 0;
  for (const auto& [name, value] : rows) width = std::max(width, column_count(name));
  std::string out;
  for (const auto& [name, value] : rows) {
    const std::string line = name + std::string(width + 2 - column_count(name), ' ') + value;
    out += without_trailing_blanks(line);
    out += '\n';
  }
  return out;
}

}  // namespace lorimat::console
