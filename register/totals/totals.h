// Totals of many documents, and the numbered totalizers that hosts read. Sums are kept apart
// by kind of document; what a report or a totalizer shows is put together from them.
#pragma once

#include <array>
#include <map>
#include <string>
#include <string_view>

#include "register/document/documents.h"

namespace lorimat {

// All amounts of one kind of document, not negative: credit notes and voids count as what they
// came to.
struct KindTotals {
  int documents = 0;
  Amount total = 0;
  Amount not_paid = 0;
  Amount discounts = 0;
  Amount surcharges = 0;
  std::map<int, VatFigures> by_vat;
  std::map<int, DepartmentSum> by_department;
  std::map<int, DepartmentSum> sold_by_department;
  std::map<std::string, Amount> by_tender;
  std::map<std::string, int> tender_counts;
  std::map<int, Collected> collected;  // by SummaryElement; earlier versions did not keep it
  // The part of by_vat that went back at rates that the entries no longer had.
  std::map<EntryRate, VatFigures> at_other_rates;
  std::map<int, Amount> by_operator;
  std::map<int, int> operator_counts;
};

// The day at a glance: sales less credit notes and voids, but where a member says otherwise.
struct DailyTotals {
  Amount receipts = 0;  // sales and invoices
  Amount invoices = 0;  // the part of them that stands on invoices
  Amount refunds = 0;
  Amount cancels = 0;
  Amount not_paid = 0;
  Amount discounts = 0;
  Amount surcharges = 0;
  std::map<int, Amount> by_vat;
  std::map<int, DepartmentSum> by_department;
  std::map<std::string, Amount> by_tender;
  // How many there are, of all kinds: with an entry what Counted names, and payments by tender.
  std::map<int, VatCounts> counts_by_vat;
  std::map<std::string, int> payments;

  Amount net() const {
    Amount sum = receipts;
    AddTo(&sum, refunds, -1);
    AddTo(&sum, cancels, -1);
    return sum;
  }
};

// 1 for what adds to a day, -1 for credit notes and voids.
int DailySign(DocumentKind kind);

class Totals {
 public:
  // The kinds that a sum takes in, as bits.
  static constexpr unsigned kSales = 1u << static_cast<unsigned>(DocumentKind::kSale);
  static constexpr unsigned kInvoices = 1u << static_cast<unsigned>(DocumentKind::kInvoice);
  static constexpr unsigned kRefunds = 1u << static_cast<unsigned>(DocumentKind::kRefund);
  static constexpr unsigned kCancels = 1u << static_cast<unsigned>(DocumentKind::kCancel);
  static constexpr unsigned kAll = kSales | kInvoices | kRefunds | kCancels;

  void Add(const StoredDocument& document);
  void Add(const Totals& other);

  const KindTotals& of(DocumentKind kind) const { return kinds_[static_cast<size_t>(kind)]; }
  // A figure summed over kinds, with the sign that each kind has in the day; VAT entry 0 takes
  // all entries together.
  TaxedAmount Sum(unsigned kinds, int vat, TaxedFigure figure) const;
  EnteredAmount Sum(unsigned kinds, int vat, EnteredFigure figure) const;
  DepartmentSum Department(int number) const;
  DepartmentSum Sold(int number) const;
  Amount Tender(const std::string& id) const;
  int TenderCount(const std::string& id) const;
  // How many payments there were by it, those that went back too.
  int Payments(const std::string& id) const;
  // The VAT entries and departments that have any figure.
  std::map<int, Amount> GrossByVat() const;
  // Sales less credit notes and voids by operator, and how many documents each made.
  std::map<int, Amount> ByOperator() const;
  std::map<int, int> OperatorCounts() const;
  DailyTotals Summary() const;
  int documents() const;

  // As one text (register/value/row_encoding.h), and back; false for a text that is none.
  std::string ToRecord() const;
  static bool FromRecord(std::string_view text, Totals* totals);

 private:
  template <typename Figure>
  auto SumOf(unsigned kinds, int vat, Figure figure) const;

  std::array<KindTotals, 4> kinds_;
};

}  // namespace lorimat
