#include "register/totals/totals.h"

#include <algorithm>
#include <iterator>
#include <type_traits>

namespace lorimat {

int DailySign(DocumentKind kind) {
  return kind == DocumentKind::kSale || kind == DocumentKind::kInvoice ? 1 : -1;
}

namespace {

constexpr DocumentKind kKinds[] = {DocumentKind::kSale, DocumentKind::kInvoice,
                                   DocumentKind::kRefund, DocumentKind::kCancel};

template <typename Key, typename Value>
void AddMap(const std::map<Key, Value>& from, std::map<Key, Value>* to) {
  for (const auto& [key, value] : from) AddTo(&(*to)[key], value);
}

void AddMap(const std::map<int, VatFigures>& from, std::map<int, VatFigures>* to) {
  for (const auto& [vat, figures] : from) {
    AddTo(&(*to)[vat], figures);
  }
}

void AddMap(const std::map<int, DepartmentSum>& from, std::map<int, DepartmentSum>* to,
            int sign = 1) {
  for (const auto& [department, sum] : from) {
    DepartmentSum& sums = (*to)[department];
    AddTo(&sums.quantity, sum.quantity, sign);
    AddTo(&sums.amount, sum.amount, sign);
  }
}

void AddMap(const std::map<int, Collected>& from, std::map<int, Collected>* to) {
  for (const auto& [element, collected] : from) AddTo(&(*to)[element], collected);
}

void AddMap(const std::map<EntryRate, VatFigures>& from, std::map<EntryRate, VatFigures>* to) {
  for (const auto& [entry, figures] : from) AddTo(&(*to)[entry], figures);
}

template <typename Key, typename Value>
Value Find(const std::map<Key, Value>& map, const Key& key) {
  const auto found = map.find(key);
  return found == map.end() ? Value{} : found->second;
}

}  // namespace

void Totals::Add(const StoredDocument& document) {
  KindTotals& kind = kinds_[static_cast<size_t>(document.kind)];
  AddTo(&kind.documents, 1);
  AddTo(&kind.total, document.total);
  AddTo(&kind.not_paid, document.not_paid);
  AddTo(&kind.discounts, document.discounts);
  AddTo(&kind.surcharges, document.surcharges);
  AddMap(document.figures, &kind.by_vat);
  AddMap(document.by_department, &kind.by_department);
  AddMap(document.sold_by_department, &kind.sold_by_department);
  AddMap(document.by_tender, &kind.by_tender);
  AddMap(document.tender_counts, &kind.tender_counts);
  AddMap(document.collected, &kind.collected);
  for (const auto& [vat, rate] : document.other_rates) {
    AddTo(&kind.at_other_rates[{vat, rate}], Find(document.figures, vat));
  }
  AddTo(&kind.by_operator[document.operator_number], document.total);
  AddTo(&kind.operator_counts[document.operator_number], 1);
}

void Totals::Add(const Totals& other) {
  for (size_t index = 0; index < kinds_.size(); ++index) {
    KindTotals& kind = kinds_[index];
    const KindTotals& from = other.kinds_[index];
    AddTo(&kind.documents, from.documents);
    AddTo(&kind.total, from.total);
    AddTo(&kind.not_paid, from.not_paid);
    AddTo(&kind.discounts, from.discounts);
    AddTo(&kind.surcharges, from.surcharges);
    AddMap(from.by_vat, &kind.by_vat);
    AddMap(from.by_department, &kind.by_department);
    AddMap(from.sold_by_department, &kind.sold_by_department);
    AddMap(from.by_tender, &kind.by_tender);
    AddMap(from.tender_counts, &kind.tender_counts);
    AddMap(from.collected, &kind.collected);
    AddMap(from.at_other_rates, &kind.at_other_rates);
    AddMap(from.by_operator, &kind.by_operator);
    AddMap(from.operator_counts, &kind.operator_counts);
  }
}

template <typename Figure>
auto Totals::SumOf(unsigned kinds, int vat, Figure figure) const {
  std::remove_cvref_t<decltype(VatFigures()[figure])> sum;
  for (const DocumentKind kind : kKinds) {
    if ((kinds & (1u << static_cast<unsigned>(kind))) == 0) continue;
    for (const auto& [entry, figures] : of(kind).by_vat) {
      if (vat == 0 || entry == vat) AddTo(&sum, figures[figure], DailySign(kind));
    }
  }
  return sum;
}

TaxedAmount Totals::Sum(unsigned kinds, int vat, TaxedFigure figure) const {
  return SumOf(kinds, vat, figure);
}

EnteredAmount Totals::Sum(unsigned kinds, int vat, EnteredFigure figure) const {
  return SumOf(kinds, vat, figure);
}

DepartmentSum Totals::Department(int number) const {
  std::map<int, DepartmentSum> sums;
  for (const DocumentKind kind : kKinds) {
    AddMap(of(kind).by_department, &sums, DailySign(kind));
  }
  return Find(sums, number);
}

DepartmentSum Totals::Sold(int number) const {
  std::map<int, DepartmentSum> sums;
  AddMap(of(DocumentKind::kSale).sold_by_department, &sums);
  AddMap(of(DocumentKind::kInvoice).sold_by_department, &sums);
  return Find(sums, number);
}

Amount Totals::Tender(const std::string& id) const {
  Amount sum = 0;
  for (const DocumentKind kind : kKinds) {
    AddTo(&sum, Find(of(kind).by_tender, id), DailySign(kind));
  }
  return sum;
}

int Totals::TenderCount(const std::string& id) const {
  int count = 0;
  for (const DocumentKind kind : kKinds) {
    AddTo(&count, Find(of(kind).tender_counts, id), DailySign(kind));
  }
  return count;
}

int Totals::Payments(const std::string& id) const {
  int count = 0;
  for (const KindTotals& kind : kinds_) AddTo(&count, Find(kind.tender_counts, id));
  return count;
}

std::map<int, Amount> Totals::GrossByVat() const {
  std::map<int, Amount> sums;
  for (const DocumentKind kind : kKinds) {
    for (const auto& [vat, figures] : of(kind).by_vat) {
      AddTo(&sums[vat], figures[TaxedFigure::kGross].amount, DailySign(kind));
    }
  }
  return sums;
}

std::map<int, Amount> Totals::ByOperator() const {
  std::map<int, Amount> sums;
  for (const DocumentKind kind : kKinds) {
    for (const auto& [number, amount] : of(kind).by_operator) {
      AddTo(&sums[number], amount, DailySign(kind));
    }
  }
  return sums;
}

std::map<int, int> Totals::OperatorCounts() const {
  std::map<int, int> counts;
  for (const DocumentKind kind : kKinds) AddMap(of(kind).operator_counts, &counts);
  return counts;
}

DailyTotals Totals::Summary() const {
  DailyTotals summary;
  summary.invoices = of(DocumentKind::kInvoice).total;
  summary.receipts = of(DocumentKind::kSale).total;
  AddTo(&summary.receipts, summary.invoices);
  summary.refunds = of(DocumentKind::kRefund).total;
  summary.cancels = of(DocumentKind::kCancel).total;
  summary.by_vat = GrossByVat();
  for (const DocumentKind kind : kKinds) {
    const int sign = DailySign(kind);
    AddTo(&summary.not_paid, of(kind).not_paid, sign);
    AddTo(&summary.discounts, of(kind).discounts, sign);
    AddTo(&summary.surcharges, of(kind).surcharges, sign);
    AddMap(of(kind).by_department, &summary.by_department, sign);
    for (const auto& [tender, amount] : of(kind).by_tender) {
      AddTo(&summary.by_tender[tender], amount, sign);
    }
    AddMap(of(kind).tender_counts, &summary.payments);
    for (const auto& [vat, figures] : of(kind).by_vat) {
      VatCounts& counts = summary.counts_by_vat[vat];
      for (size_t what = 0; what < counts.size(); ++what) {
        AddTo(&counts[what], figures.counts[what]);
      }
    }
  }
  return summary;
}

int Totals::documents() const {
  int count = 0;
  for (const KindTotals& kind : kinds_) AddTo(&count, kind.documents);
  return count;
}

}  // namespace lorimat
