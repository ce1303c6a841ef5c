// What documents come to together: each figure held against the documents one by one.
#include "register/totals/totals.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

namespace lorimat {
namespace {

constexpr DocumentKind kEachKind[] = {DocumentKind::kSale, DocumentKind::kInvoice,
                                      DocumentKind::kRefund, DocumentKind::kCancel};

int Sign(const StoredDocument& document) {
  return document.kind == DocumentKind::kSale || document.kind == DocumentKind::kInvoice ? 1 : -1;
}

// Some of each kind, with figures of some entries, departments, tenders and operators. No sums hold
// within one: each figure is added by itself.
std::vector<StoredDocument> SomeDocuments(unsigned seed) {
  std::minstd_rand chance(seed);
  const auto any = [&chance](int most) { return static_cast<int>(chance() % unsigned(most)) + 1; };
  std::vector<StoredDocument> documents;
  for (int count = 0; count < 12; ++count) {
    StoredDocument document;
    document.kind = kEachKind[count % 4];
    document.operator_number = any(3);
    document.total = any(100000);
    document.not_paid = any(1000);
    document.discounts = any(1000);
    document.surcharges = any(1000);
    for (int vat = any(2); vat <= 4; vat += any(2)) {
      VatFigures& figures = document.figures[vat];
      for (TaxedAmount& figure : figures.taxed) figure = {any(100000), any(1000)};
      for (EnteredAmount& figure : figures.entered) figure = {any(100000), any(1000)};
      for (int64_t& number : figures.counts) number = any(20);
      if (any(2) == 1) document.other_rates[vat] = {any(3) * 10000, "A"};
    }
    for (int number = any(2); number <= 4; number += any(2)) {
      document.by_department[number] = {any(5000), any(100000)};
      document.sold_by_department[number] = {any(5000), any(100000)};
    }
    for (const char* tender : {"0", "2", "5"}) {
      if (any(2) == 1) continue;
      document.by_tender[tender] = any(100000);
      document.tender_counts[tender] = any(3);
    }
    document.collected[any(4)] = {any(100000), any(3)};
    documents.push_back(std::move(document));
  }
  return documents;
}

template <typename Key, typename Value>
Value At(const std::map<Key, Value>& map, const Key& key) {
  const auto found = map.find(key);
  return found == map.end() ? Value{} : found->second;
}

void ExpectSumsByVat(const Totals& totals, const std::vector<StoredDocument>& documents) {
  for (unsigned kinds = 0; kinds <= Totals::kAll; ++kinds) {
    for (int vat = 0; vat <= 5; ++vat) {
      VatFigures sums;
      for (const StoredDocument& document : documents) {
        if ((kinds >> static_cast<unsigned>(document.kind) & 1) == 0) continue;
        for (const auto& [entry, figures] : document.figures) {
          if (vat == 0 || vat == entry) AddTo(&sums, figures, Sign(document));
        }
      }
      for (size_t figure = 0; figure < sums.taxed.size(); ++figure) {
        EXPECT_EQ(totals.Sum(kinds, vat, static_cast<TaxedFigure>(figure)), sums.taxed[figure]);
      }
      for (size_t figure = 0; figure < sums.entered.size(); ++figure) {
        EXPECT_EQ(totals.Sum(kinds, vat, static_cast<EnteredFigure>(figure)), sums.entered[figure]);
      }
    }
  }
}

void ExpectSumsByNumber(const Totals& totals, const std::vector<StoredDocument>& documents) {
  for (int number = 0; number <= 5; ++number) {
    DepartmentSum sum;
    DepartmentSum sold;
    for (const StoredDocument& document : documents) {
      const DepartmentSum part = At(document.by_department, number);
      sum.quantity += Sign(document) * part.quantity;
      sum.amount += Sign(document) * part.amount;
      if (Sign(document) < 0) continue;
      sold.quantity += At(document.sold_by_department, number).quantity;
      sold.amount += At(document.sold_by_department, number).amount;
    }
    EXPECT_EQ(totals.Department(number).quantity, sum.quantity) << number;
    EXPECT_EQ(totals.Department(number).amount, sum.amount) << number;
    EXPECT_EQ(totals.Sold(number).quantity, sold.quantity) << number;
    EXPECT_EQ(totals.Sold(number).amount, sold.amount) << number;
  }
  for (const std::string tender : {"0", "1", "2", "5"}) {
    Amount amount = 0;
    int count = 0;
    int payments = 0;
    for (const StoredDocument& document : documents) {
      amount += Sign(document) * At(document.by_tender, tender);
      count += Sign(document) * At(document.tender_counts, tender);
      payments += At(document.tender_counts, tender);
    }
    EXPECT_EQ(totals.Tender(tender), amount) << tender;
    EXPECT_EQ(totals.TenderCount(tender), count) << tender;
    EXPECT_EQ(totals.Payments(tender), payments) << tender;
  }
  std::map<int, Amount> by_operator;
  std::map<int, int> operator_counts;
  for (const StoredDocument& document : documents) {
    by_operator[document.operator_number] += Sign(document) * document.total;
    ++operator_counts[document.operator_number];
  }
  EXPECT_EQ(totals.ByOperator(), by_operator);
  EXPECT_EQ(totals.OperatorCounts(), operator_counts);
  EXPECT_EQ(totals.documents(), static_cast<int>(documents.size()));
}

void ExpectSummary(const Totals& totals, const std::vector<StoredDocument>& documents) {
  DailyTotals sums;
  for (const StoredDocument& document : documents) {
    const int sign = Sign(document);
    if (sign > 0) sums.receipts += document.total;
    if (document.kind == DocumentKind::kInvoice) sums.invoices += document.total;
    if (document.kind == DocumentKind::kRefund) sums.refunds += document.total;
    if (document.kind == DocumentKind::kCancel) sums.cancels += document.total;
    sums.not_paid += sign * document.not_paid;
    sums.discounts += sign * document.discounts;
    sums.surcharges += sign * document.surcharges;
    for (const auto& [vat, figures] : document.figures) {
      sums.by_vat[vat] += sign * figures[TaxedFigure::kGross].amount;
      for (size_t what = 0; what < figures.counts.size(); ++what) {
        sums.counts_by_vat[vat][what] += figures.counts[what];
      }
    }
    for (const auto& [tender, amount] : document.by_tender) sums.by_tender[tender] += sign * amount;
    for (const auto& [tender, count] : document.tender_counts) sums.payments[tender] += count;
  }
  const DailyTotals summary = totals.Summary();
  EXPECT_EQ(summary.receipts, sums.receipts);
  EXPECT_EQ(summary.invoices, sums.invoices);
  EXPECT_EQ(summary.refunds, sums.refunds);
  EXPECT_EQ(summary.cancels, sums.cancels);
  EXPECT_EQ(summary.net(), sums.receipts - sums.refunds - sums.cancels);
  EXPECT_EQ(summary.not_paid, sums.not_paid);
  EXPECT_EQ(summary.discounts, sums.discounts);
  EXPECT_EQ(summary.surcharges, sums.surcharges);
  EXPECT_EQ(summary.by_vat, sums.by_vat);
  EXPECT_EQ(totals.GrossByVat(), sums.by_vat);
  EXPECT_EQ(summary.counts_by_vat, sums.counts_by_vat);
  EXPECT_EQ(summary.by_tender, sums.by_tender);
  EXPECT_EQ(summary.payments, sums.payments);
  for (const auto& [number, sum] : summary.by_department) {
    EXPECT_EQ(sum.quantity, totals.Department(number).quantity);
    EXPECT_EQ(sum.amount, totals.Department(number).amount);
  }
  EXPECT_EQ(summary.by_department.empty(), documents.empty());
}

// What no sum is made of, as it is kept of each kind.
void ExpectKinds(const Totals& totals, const std::vector<StoredDocument>& documents) {
  for (const DocumentKind kind : kEachKind) {
    std::map<int, Collected> collected;
    std::map<std::string, VatFigures> at_other_rates;
    for (const StoredDocument& document : documents) {
      if (document.kind != kind) continue;
      for (const auto& [element, part] : document.collected) {
        collected[element].amount += part.amount;
        collected[element].payments += part.payments;
      }
      for (const auto& [vat, rate] : document.other_rates) {
        AddTo(&at_other_rates[std::to_string(vat) + " " + std::to_string(rate.rate) + rate.mark],
              document.figures.at(vat));
      }
    }
    const KindTotals& kept = totals.of(kind);
    ASSERT_EQ(kept.collected.size(), collected.size());
    for (const auto& [element, part] : kept.collected) {
      EXPECT_EQ(part.amount, collected[element].amount);
      EXPECT_EQ(part.payments, collected[element].payments);
    }
    ASSERT_EQ(kept.at_other_rates.size(), at_other_rates.size());
    for (const auto& [entry, figures] : kept.at_other_rates) {
      const VatFigures& sums = at_other_rates[std::to_string(entry.vat) + " " +
                                              std::to_string(entry.rate.rate) + entry.rate.mark];
      EXPECT_EQ(figures.taxed, sums.taxed);
      EXPECT_EQ(figures.entered, sums.entered);
      EXPECT_EQ(figures.counts, sums.counts);
    }
  }
}

void ExpectSums(const Totals& totals, const std::vector<StoredDocument>& documents) {
  ExpectSumsByVat(totals, documents);
  ExpectSumsByNumber(totals, documents);
  ExpectSummary(totals, documents);
  ExpectKinds(totals, documents);
}

TEST(SumsOfDocuments, AreTheSumsOfTheirDocuments) {
  ExpectSums(Totals(), {});
  for (const unsigned seed : {1u, 2u, 3u}) {
    const std::vector<StoredDocument> documents = SomeDocuments(seed);
    Totals totals;
    for (const StoredDocument& document : documents) totals.Add(document);
    ExpectSums(totals, documents);
  }
}

TEST(SumsOfDocuments, OfSomeDaysAreTheSumsOfTheDays) {
  std::vector<StoredDocument> all;
  Totals days;
  for (const unsigned seed : {4u, 5u}) {
    Totals day;
    for (const StoredDocument& document : SomeDocuments(seed)) {
      day.Add(document);
      all.push_back(document);
    }
    days.Add(day);
  }
  ExpectSums(days, all);
}

TEST(SumsOfDocuments, ComeBackFromTheirText) {
  const std::vector<StoredDocument> documents = SomeDocuments(6);
  Totals totals;
  for (const StoredDocument& document : documents) totals.Add(document);
  Totals read;
  ASSERT_TRUE(Totals::FromRecord(totals.ToRecord(), &read));
  ExpectSums(read, documents);
  EXPECT_EQ(read.ToRecord(), totals.ToRecord());
  ASSERT_TRUE(Totals::FromRecord(Totals().ToRecord(), &read));
  ExpectSums(read, {});
}

}  // namespace
}  // namespace lorimat
