// Totals as a text: each kind of document with its sums, tables by key.
#include <algorithm>
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
void Put(const TaxedAmount& value, RowEncoder* record) {
  record->Number(value.amount).Number(value.tax);
}
void Put(const VatFigures& value, RowEncoder* record) {
  for (size_t index = 0; index < kFirstTaxedFigures; ++index) Put(value.taxed[index], record);
  for (const EnteredAmount& entered : value.entered) {
    record->Number(entered.amount).Number(entered.taken_back);
  }
}

void Put(const VatCounts& value, RowEncoder* record) {
  for (const int64_t count : value) record->Number(count);
}
void Put(const Collected& value, RowEncoder* record) {
  record->Number(value.amount).Number(value.payments);
}
void Put(const VatRate& value, RowEncoder* record) { record->Number(value.rate).Text(value.mark); }
void Put(const EntryRate& value, RowEncoder* record) {
  record->Number(value.vat);
  Put(value.rate, record);
}

void Take(RowDecoder* record, int* value) { *value = record->Int(); }
void Take(RowDecoder* record, int64_t* value) { *value = record->Number(); }
void Take(RowDecoder* record, std::string* value) { *value = record->Text(); }
void Take(RowDecoder* record, DepartmentSum* value) {
  value->quantity = record->Number();
  value->amount = record->Number();
}
void Take(RowDecoder* record, TaxedAmount* value) {
  value->amount = record->Number();
  value->tax = record->Number();
}
void Take(RowDecoder* record, VatFigures* value) {
  for (size_t index = 0; index < kFirstTaxedFigures; ++index) Take(record, &value->taxed[index]);
  for (EnteredAmount& entered : value->entered) {
    entered.amount = record->Number();
    entered.taken_back = record->Number();
  }
}

void Take(RowDecoder* record, VatCounts* value) {
  for (int64_t& count : *value) count = record->Number();
}
void Take(RowDecoder* record, Collected* value) {
  value->amount = record->Number();
  value->payments = record->Int();
}
void Take(RowDecoder* record, VatRate* value) {
  value->rate = record->Int();
  value->mark = record->Text();
}
void Take(RowDecoder* record, EntryRate* value) {
  value->vat = record->Int();
  Take(record, &value->rate);
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
// Figures as one row, counts included.
struct CountedFigures {
  VatFigures figures;
};
void Put(const CountedFigures& value, RowEncoder* record) {
  Put(value.figures, record);
  Put(value.figures.counts, record);
}
void Take(RowDecoder* record, CountedFigures* value) {
  Take(record, &value->figures);
  Take(record, &value->figures.counts);
}

struct Later {
  std::map<int, VatCounts> counts;
  std::map<int, Collected> collected;
  std::map<int, VatRate> other_rates;                  // of a document
  std::map<EntryRate, CountedFigures> at_other_rates;  // of totals

  bool empty() const {
    return counts.empty() && collected.empty() && other_rates.empty() && at_other_rates.empty();
  }
};

std::map<int, VatCounts> CountsOf(const std::map<int, VatFigures>& by_vat) {
  std::map<int, VatCounts> all;
  for (const auto& [vat, figures] : by_vat) {
    if (figures.counts != VatCounts()) all[vat] = figures.counts;
  }
  return all;
}

Later LaterOf(const StoredDocument& document) {
  return {CountsOf(document.figures), document.collected, document.other_rates, {}};
}
Later LaterOf(const KindTotals& kind) {
  Later later = {CountsOf(kind.by_vat), kind.collected, {}, {}};
  for (const auto& [entry, figures] : kind.at_other_rates) later.at_other_rates[entry] = {figures};
  return later;
}

void Put(const Later& later, bool of_totals, RowEncoder* record) {
  PutTable(later.counts, record);
  PutTable(later.collected, record);
  if (of_totals) {
    PutTable(later.at_other_rates, record);
  } else {
    PutTable(later.other_rates, record);
  }
}

Later TakeLater(bool of_totals, RowDecoder* record) {
  Later later;
  TakeTable(record, &later.counts);
  TakeTable(record, &later.collected);
  if (of_totals) {
    TakeTable(record, &later.at_other_rates);
  } else {
    TakeTable(record, &later.other_rates);
  }
  return later;
}

void Place(const std::map<int, VatCounts>& counts, std::map<int, VatFigures>* by_vat) {
  for (const auto& [vat, of_entry] : counts) (*by_vat)[vat].counts = of_entry;
}

// Gifts stand behind that, likewise only where there are any.
template <typename Key>
using GiftsBy = std::map<Key, TaxedAmount>;

template <typename Key>
GiftsBy<Key> GiftsOf(const std::map<Key, VatFigures>& all) {
  GiftsBy<Key> gifts;
  for (const auto& [key, figures] : all) {
    const TaxedAmount& gift = figures[TaxedFigure::kGiftsNotPaid];
    if (gift != TaxedAmount()) gifts[key] = gift;
  }
  return gifts;
}

// Answers whether there are any.
template <typename Key>
bool TakeGifts(RowDecoder* record, std::map<Key, VatFigures>* all) {
  GiftsBy<Key> gifts;
  TakeTable(record, &gifts);
  for (const auto& [key, gift] : gifts) (*all)[key][TaxedFigure::kGiftsNotPaid] = gift;
  return !gifts.empty();
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
    later[index] = LaterOf(kinds_[index]);
    any = any || !later[index].empty();
  }
  const bool gifts = std::any_of(kinds_.begin(), kinds_.end(), [](const KindTotals& kind) {
    return !GiftsOf(kind.by_vat).empty() || !GiftsOf(kind.at_other_rates).empty();
  });
  for (const Later& of_kind : later) {
    if (any || gifts) Put(of_kind, true, &record);
  }
  for (const KindTotals& kind : kinds_) {
    if (!gifts) break;
    PutTable(GiftsOf(kind.by_vat), &record);
    PutTable(GiftsOf(kind.at_other_rates), &record);
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
    for (KindTotals& kind : read.kinds_) {
      Later later = TakeLater(true, &record);
      any = any || !later.empty();
      Place(later.counts, &kind.by_vat);
      kind.collected = std::move(later.collected);
      for (const auto& [entry, counted] : later.at_other_rates) {
        kind.at_other_rates[entry] = counted.figures;
      }
    }
    const bool gifts = record.good() && !record.done();
    any = any || gifts;
    bool any_gift = false;
    for (KindTotals& kind : read.kinds_) {
      if (!gifts) break;
      any_gift = TakeGifts(&record, &kind.by_vat) || any_gift;
      any_gift = TakeGifts(&record, &kind.at_other_rates) || any_gift;
    }
    if (!any || gifts != any_gift) return false;
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
  const Later later = LaterOf(document);
  const GiftsBy<int> gifts = GiftsOf(document.figures);
  if (!later.empty() || !gifts.empty()) Put(later, false, &record);
  if (!gifts.empty()) PutTable(gifts, &record);
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
  if (record.good() && !record.done()) {
    Later later = TakeLater(false, &record);
    const bool gifts = record.good() && !record.done();
    if (gifts ? !TakeGifts(&record, &document->figures) : later.empty()) return false;
    Place(later.counts, &document->figures);
    document->collected = std::move(later.collected);
    document->other_rates = std::move(later.other_rates);
  }
  return record.done();
}

}  // namespace lorimat
