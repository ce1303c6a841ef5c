// The figures that are kept for each VAT entry of a document, and summed over documents.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "register/value/money.h"

namespace lorimat {

// What was taken, and the tax contained in it.
struct TaxedAmount {
  Amount amount = 0;
  Amount tax = 0;

  Amount net() const {
    Amount sum = amount;
    AddTo(&sum, tax, -1);
    return sum;
  }
  bool operator==(const TaxedAmount&) const = default;
};

enum class TaxedFigure : size_t {
  kGross,               // what the document comes to
  kServices,            // lines of service departments, before adjustments of the subtotal
  kServicesNotPaid,     // by the tender of services
  kSsnNotPaid,          // by that of the health service
  kInvoicesNotPaid,     // by that of invoices
  kUndeliveredNotPaid,  // by any other tender that is not collected
  kGiftsNotPaid,        // by that of gifts
  kCount,
};
// Those that every version has kept; what came later is stored apart.
inline constexpr size_t kFirstTaxedFigures = static_cast<size_t>(TaxedFigure::kGiftsNotPaid);

// Lines or adjustments as they were entered, and how much of that was taken back.
struct EnteredAmount {
  Amount amount = 0;
  Amount taken_back = 0;

  bool operator==(const EnteredAmount&) const = default;
};

enum class EnteredFigure : size_t {
  kItems,
  kRefundLines,
  kDiscounts,  // on lines and departments
  kSurcharges,
  kSubtotalDiscounts,
  kSubtotalSurcharges,
  kCount,
};

// How many there are, as they stand in the end.
enum class Counted : size_t {
  kDocuments,  // that come to something; of entries with one rate the first has it
  kRefundLines,
  kDiscounts,   // of lines, departments and the subtotal
  kSurcharges,  // likewise
  kCount,
};
using VatCounts = std::array<int64_t, static_cast<size_t>(Counted::kCount)>;

// Ten-thousandths; the order is that in which they are stored.
struct VatFigures {
  std::array<TaxedAmount, static_cast<size_t>(TaxedFigure::kCount)> taxed = {};
  std::array<EnteredAmount, static_cast<size_t>(EnteredFigure::kCount)> entered = {};
  VatCounts counts = {};

  TaxedAmount& operator[](TaxedFigure figure) { return taxed[static_cast<size_t>(figure)]; }
  const TaxedAmount& operator[](TaxedFigure figure) const {
    return taxed[static_cast<size_t>(figure)];
  }
  EnteredAmount& operator[](EnteredFigure figure) { return entered[static_cast<size_t>(figure)]; }
  const EnteredAmount& operator[](EnteredFigure figure) const {
    return entered[static_cast<size_t>(figure)];
  }
  int64_t& operator[](Counted what) { return counts[static_cast<size_t>(what)]; }
  int64_t operator[](Counted what) const { return counts[static_cast<size_t>(what)]; }
};

inline void AddTo(TaxedAmount* sum, const TaxedAmount& value, int sign = 1) {
  AddTo(&sum->amount, value.amount, sign);
  AddTo(&sum->tax, value.tax, sign);
}
inline void AddTo(EnteredAmount* sum, const EnteredAmount& value, int sign = 1) {
  AddTo(&sum->amount, value.amount, sign);
  AddTo(&sum->taken_back, value.taken_back, sign);
}
inline void AddTo(VatFigures* sums, const VatFigures& value, int sign = 1) {
  for (size_t index = 0; index < value.taxed.size(); ++index) {
    AddTo(&sums->taxed[index], value.taxed[index], sign);
  }
  for (size_t index = 0; index < value.entered.size(); ++index) {
    AddTo(&sums->entered[index], value.entered[index], sign);
  }
  for (size_t index = 0; index < value.counts.size(); ++index) {
    AddTo(&sums->counts[index], value.counts[index], sign);
  }
}

}  // namespace lorimat
