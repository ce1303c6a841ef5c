// Totals as a text: each kind of document with its sums, tables by key.
#include <array>
#include <map>
#include <tuple>
#include <utility>

#include "register/totals/totals.h"
#include "register/value/row_encoding.h"

namespace lorimat {
namespace {

void Put(int64_t value, RowEncoder* record) { record->Number(value); }
void Put(const std::string& value, RowEncoder* record) { record->Text(value); }
void Put(const DepartmentSum& value, RowEncoder* record) {
  record->Number(value.quantity).Number(value.amount);
}
void Put(const VatFigures& value, RowEncoder* record) {
  for (const TaxedAmount& taxed : value.taxed) record->Number(taxed.amount).Number(taxed.tax);
  for (const EnteredAmount& entered : value.entered) {
    record->Number(entered.amount).Number(entered.taken_back);
  }
}

void Put(const VatCounts& value, RowEncoder* record) {
  for (const int64_t count : value) record->Number(count);
}

void Take(RowDecoder* record, int* value) { *value = record->Int(); }
void Take(RowDecoder* record, int64_t* value) { *value = record->Number(); }
void Take(RowDecoder* record, std::string* value) { *value = record->Text(); }
void Take(RowDecoder* record, DepartmentSum* value) {
  value->quantity = record->Number();
  value->amount = record->Number();
}
void Take(RowDecoder* record, VatFigures* value) {
  for (TaxedAmount& taxed : value->taxed) {
    taxed.amount = record->Number();
    taxed.tax = record->Number();
  }
  for (EnteredAmount& entered : value->entered) {
    entered.amount = record->Number();
    entered.taken_back = record->Number();
  }
}

void Take(RowDecoder* record, VatCounts* value) {
  for (int64_t& count : *value) count = record->Number();
}

template <typename Key, typename Value>
void PutTable(const std::map<Key, Value>& table, RowEncoder* record) {
  record->Number(static_cast<int64_t>(table.size()));
  for (const auto& [key, value] : table) {
    Put(key, record);
    Put(value, record);
  }
}

template <typename Key, typename Value>
void TakeTable(RowDecoder* record, std::map<Key, Value>* table) {
  for (int64_t left = record->Number(); left > 0 && record->good(); --left) {
    Key key = {};
    Value value = {};
    Take(record, &key);
    Take(record, &value);
    table->emplace_hint(table->end(), std::move(key), std::move(value));
  }
}

// What versions before 4 did not keep stands behind all the rest, and is left out where there is
// nothing of it: a record of before stays the text that it was, of which its hash is.
struct Later {
  std::map<int, VatCounts> counts;

  bool empty() const { return counts.empty(); }
};

Later LaterOf(const std::map<int, VatFigures>& by_vat) {
  Later later;
  for (const auto& [vat, figures] : by_vat) {
    if (figures.counts != VatCounts()) later.counts[vat] = figures.counts;
  }
  return later;
}

void PutLater(const Later& later, RowEncoder* record) { PutTable(later.counts, record); }

// Answers whether there was anything.
bool TakeLater(RowDecoder* record, std::map<int, VatFigures>* by_vat) {
  Later later;
  TakeTable(record, &later.counts);
  for (const auto& [vat, counts] : later.counts) (*by_vat)[vat].counts = counts;
  return !later.empty();
}

}  // namespace

std::string Totals::ToRecord() const {
  RowEncoder record;
  for (const KindTotals& kind : kinds_) {
    record.Number(kind.documents).Number(kind.total).Number(kind.not_paid);
    record.Number(kind.discounts).Number(kind.surcharges);
    PutTable(kind.by_vat, &record);
    PutTable(kind.by_department, &record);
    PutTable(kind.sold_by_department, &record);
    PutTable(kind.by_tender, &record);
    PutTable(kind.tender_counts, &record);
    PutTable(kind.by_operator, &record);
    PutTable(kind.operator_counts, &record);
  }
  std::array<Later, std::tuple_size_v<decltype(kinds_)>> later;
  bool any = false;
  for (size_t index = 0; index < later.size(); ++index) {
    later[index] = LaterOf(kinds_[index].by_vat);
    any = any || !later[index].empty();
  }
  for (const Later& of_kind : later) {
    if (any) PutLater(of_kind, &record);
  }
  return record.Take();
}

bool Totals::FromRecord(std::string_view text, Totals* totals) {
  RowDecoder record(text);
  Totals read;
  for (KindTotals& kind : read.kinds_) {
    kind.documents = record.Int();
    kind.total = record.Number();
    kind.not_paid = record.Number();
    kind.discounts = record.Number();
    kind.surcharges = record.Number();
    TakeTable(&record, &kind.by_vat);
    TakeTable(&record, &kind.by_department);
    TakeTable(&record, &kind.sold_by_department);
    TakeTable(&record, &kind.by_tender);
    TakeTable(&record, &kind.tender_counts);
    TakeTable(&record, &kind.by_operator);
    TakeTable(&record, &kind.operator_counts);
  }
  if (record.good() && !record.done()) {
    bool any = false;
    for (KindTotals& kind : read.kinds_) any = TakeLater(&record, &kind.by_vat) || any;
    if (!any) return false;
  }
  if (!record.done()) return false;
  *totals = std::move(read);
  return true;
}

// --- The sums of a document, likewise.

std::string SumsRecord(const StoredDocument& document) {
  RowEncoder record;
  PutTable(document.by_vat, &record);
  PutTable(document.figures, &record);
  PutTable(document.by_department, &record);
  PutTable(document.sold_by_department, &record);
  PutTable(document.by_tender, &record);
  PutTable(document.tender_counts, &record);
  const Later later = LaterOf(document.figures);
  if (!later.empty()) PutLater(later, &record);
  return record.Take();
}

bool ReadSums(std::string_view text, StoredDocument* document) {
  RowDecoder record(text);
  TakeTable(&record, &document->by_vat);
  TakeTable(&record, &document->figures);
  TakeTable(&record, &document->by_department);
  TakeTable(&record, &document->sold_by_department);
  TakeTable(&record, &document->by_tender);
  TakeTable(&record, &document->tender_counts);
  if (record.good() && !record.done() && !TakeLater(&record, &document->figures)) return false;
  return record.done();
}

}  // namespace lorimat
