#include "register/storage/store_rows.h"

#include <algorithm>
#include <utility>

#include "register/storage/entry_digest.h"
#include "register/value/row_encoding.h"

namespace lorimat {
namespace {

// A time that no calendar has is damage, which a second reading would not show.
std::tm ReadTime(const Database& database, const Statement& row, int column) {
  const int64_t number = row.Integer(column);
  const std::tm time = NumberTime(number);
  if (TimeNumber(time) != number) database.Damaged("time");
  return time;
}

bool IsTotal(Amount amount) { return amount >= 0 && amount <= kMaxAmount; }

}  // namespace

DailyCounters ReadCounters(const Database& database, const Statement& row, int column) {
  constexpr int64_t kMost = 1'000'000'000;
  DailyCounters counters;
  for (int* counter : {&counters.documents, &counters.sales, &counters.invoices, &counters.refunds,
                       &counters.cancels, &counters.abandoned, &counters.non_fiscal}) {
    const int64_t value = row.Integer(column++);
    if (value < 0 || value > kMost) database.Damaged("counters");
    *counter = static_cast<int>(value);
  }
  return counters;
}

StoredDocument ReadDocument(const Database& database, const Statement& row) {
  StoredDocument document;
  document.id = row.Integer(0);
  const int64_t kind = row.Integer(1);
  if (kind < 0 || kind > static_cast<int>(DocumentKind::kCancel)) database.Damaged("document");
  document.kind = static_cast<DocumentKind>(kind);
  document.closure = row.Int(2);
  document.number = row.Int(3);
  document.time = ReadTime(database, row, 4);
  document.operator_number = row.Int(5);
  document.total = row.Integer(6);
  document.not_paid = row.Integer(7);
  document.change = row.Integer(8);
  document.discounts = row.Integer(9);
  document.surcharges = row.Integer(10);
  document.lottery_code = row.Text(11);
  document.referred_closure = row.Int(12);
  document.referred_number = row.Int(13);
  // No document comes to more: whatever is worked out of these stays in range.
  bool possible = ReadSums(row.Text(14), &document) && IsTotal(document.total);
  for (const auto& [vat, gross] : document.by_vat) possible = possible && IsTotal(gross);
  for (const auto& [tender, amount] : document.by_tender) {
    possible = possible &&
               IsTotal(tender == kRoundedUpTender ? -std::max(amount, -kMaxAmount - 1) : amount);
  }
  if (!possible) database.Damaged("document");
  document.voided = row.Flag(15);
  document.lottery_sent = row.Flag(16);
  return document;
}

void ReadDetails(Database& database, StoredDocument* document) {
  document->lines.clear();
  document->payments.clear();
  Statement lines = database.Prepare(
      "SELECT kind, adjustment_type, description, article, department, vat, quantity, unit_price, "
      "amount, quantity_taken_back, taken_back FROM document_line WHERE document = ? "
      "ORDER BY place");
  for (lines.With(document->id); lines.Step();) {
    DocumentLine line;
    line.kind = static_cast<LineKind>(lines.Int(0));
    line.adjustment_type = lines.Int(1);
    line.description = lines.Text(2);
    line.article = lines.Text(3);
    line.department = lines.Int(4);
    line.vat = lines.Int(5);
    line.quantity = lines.Int(6);
    line.unit_price = lines.Integer(7);
    line.amount = lines.Integer(8);
    line.quantity_taken_back = lines.Int(9);
    line.taken_back = lines.Integer(10);
    document->lines.push_back(std::move(line));
  }
  Statement payments = database.Prepare(
      "SELECT tender, amount FROM document_payment WHERE document = ? ORDER BY place");
  for (payments.With(document->id); payments.Step();) {
    document->payments.push_back({payments.String(0), payments.Integer(1)});
  }
}

JournalEntry ReadEntry(const Database& database, const Statement& row) {
  JournalEntry entry;
  entry.kind = static_cast<JournalKind>(row.Int(1));
  entry.closure = row.Int(2);
  entry.number = row.Int(3);
  entry.time = ReadTime(database, row, 4);
  entry.document = row.Integer(5);
  entry.lines = SplitLines(row.Text(6));
  entry.hash = row.Text(7);
  return entry;
}

Closure ReadClosure(const Database& database, const Statement& row) {
  Closure closure;
  closure.number = row.Int(0);
  closure.time = ReadTime(database, row, 1);
  closure.counters = ReadCounters(database, row, 2);
  closure.grand_total = row.Integer(9);
  if (!ReadVatRates(row.Text(10), &closure.vat_rates) ||
      !Totals::FromRecord(row.Text(11), &closure.totals)) {
    database.Damaged("closure");
  }
  closure.sent = row.Flag(12);
  return closure;
}

std::string JoinLines(const std::vector<std::string>& lines, size_t from, size_t to) {
  to = std::min(to, lines.size());
  size_t size = 0;
  for (size_t index = from; index < to; ++index) size += lines[index].size() + 1;
  std::string text;
  text.reserve(size);
  for (size_t index = from; index < to; ++index) text.append(lines[index]).push_back('\n');
  return text;
}

std::vector<std::string> SplitLines(std::string_view text) {
  std::vector<std::string> lines;
  while (!text.empty()) {
    const size_t end = text.find('\n');
    lines.emplace_back(text.substr(0, end));
    text.remove_prefix(end == text.npos ? text.size() : end + 1);
  }
  return lines;
}

}  // namespace lorimat
