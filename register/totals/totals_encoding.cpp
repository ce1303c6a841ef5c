// Totals as a text: each kind of document with its sums, tables by key.
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
  return record.done();
}

}  // namespace lorimat
