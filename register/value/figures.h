// The figures that are kept for each VAT entry of a document, and summed over documents.
#pragma once

#include <array>
#include <cstddef>

#include "register/value/money.h"

namespace lorimat {

// What is kept for each VAT entry of a document. The figures of the first group come in pairs:
// what was taken, and the tax contained in it.
enum class Figure : size_t {
  kGross,  // what the document comes to
  kGrossTax,
  kServices,  // lines of service departments, before adjustments of the subtotal
  kServicesTax,
  kServicesNotPaid,  // by the tender of services
  kServicesNotPaidTax,
  kSsnNotPaid,  // by that of the health service
  kSsnNotPaidTax,
  kInvoicesNotPaid,  // by that of invoices
  kInvoicesNotPaidTax,
  kUndeliveredNotPaid,  // by any other tender that is not collected
  kUndeliveredNotPaidTax,
  // Lines and adjustments, as they were entered, and how much of that was taken back.
  kItems,
  kItemVoids,
  kRefundLines,
  kRefundLineVoids,
  kDiscounts,  // on lines and departments
  kDiscountVoids,
  kSurcharges,
  kSurchargeVoids,
  kSubtotalDiscounts,
  kSubtotalDiscountVoids,
  kSubtotalSurcharges,
  kSubtotalSurchargeVoids,
  kCount,
};

inline constexpr size_t kFigures = static_cast<size_t>(Figure::kCount);

// Ten-thousandths, by Figure.
using VatFigures = std::array<Amount, kFigures>;

inline Amount& At(VatFigures& figures, Figure figure) {
  return figures[static_cast<size_t>(figure)];
}
inline Amount At(const VatFigures& figures, Figure figure) {
  return figures[static_cast<size_t>(figure)];
}

}  // namespace lorimat
