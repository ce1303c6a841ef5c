#include "register/report/totalizer.h"

#include <optional>

#include "register/tables/tenders.h"
#include "register/totals/totals.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {

namespace {

// Sums of figures that each VAT class has. A net totalizer is the gross one less its tax.
struct VatRow {
  int kind;
  unsigned documents;
  Figure figure;
  bool net = false;
  bool positive = false;  // of credit notes or voids alone, shown as what they came to
};

constexpr unsigned kTaken = Totals::kSales | Totals::kInvoices;

constexpr VatRow kVatRows[] = {
    {RTF_FPTR_GT_GROSS, Totals::kAll, Figure::kGross},
    {RTF_FPTR_GT_NET, Totals::kAll, Figure::kGross, true},
    {RTF_FPTR_GT_DISCOUNT, Totals::kAll, Figure::kDiscounts},
    {RTF_FPTR_GT_DISCOUNT_VOID, Totals::kAll, Figure::kDiscountVoids},
    {RTF_FPTR_GT_ITEM, kTaken, Figure::kItems},
    {RTF_FPTR_GT_ITEM_VOID, kTaken, Figure::kItemVoids},
    {RTF_FPTR_GT_REFUND, kTaken, Figure::kRefundLines},
    {RTF_FPTR_GT_REFUND_VOID, kTaken, Figure::kRefundLineVoids},
    {RTF_FPTR_GT_SUBTOTAL_DISCOUNT, Totals::kAll, Figure::kSubtotalDiscounts},
    {RTF_FPTR_GT_SUBTOTAL_DISCOUNT_VOID, Totals::kAll, Figure::kSubtotalDiscountVoids},
    {RTF_FPTR_GT_SUBTOTAL_SURCHARGES, Totals::kAll, Figure::kSubtotalSurcharges},
    {RTF_FPTR_GT_SUBTOTAL_SURCHARGES_VOID, Totals::kAll, Figure::kSubtotalSurchargeVoids},
    {RTF_FPTR_GT_SURCHARGE, Totals::kAll, Figure::kSurcharges},
    {RTF_FPTR_GT_SURCHARGE_VOID, Totals::kAll, Figure::kSurchargeVoids},
    {RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS, Totals::kAll, Figure::kGross},
    {RTF_FPTR_GT_VAT_CATEGORY_RECEIPT_GROSS, Totals::kSales, Figure::kGross},
    {RTF_FPTR_GT_VAT_CATEGORY_REFUND_GROSS, Totals::kRefunds, Figure::kGross, false, true},
    {RTF_FPTR_GT_VAT_CATEGORY_CANCEL_GROSS, Totals::kCancels, Figure::kGross, false, true},
    {RTF_FPTR_GT_VAT_CATEGORY_INVOICE_GROSS, Totals::kInvoices, Figure::kGross},
    {RTF_FPTR_GT_VAT_CATEGORY_DAILY, Totals::kAll, Figure::kGross, true},
    {RTF_FPTR_GT_VAT_CATEGORY_RECEIPT, Totals::kSales, Figure::kGross, true},
    {RTF_FPTR_GT_VAT_CATEGORY_REFUND, Totals::kRefunds, Figure::kGross, true, true},
    {RTF_FPTR_GT_VAT_CATEGORY_CANCEL, Totals::kCancels, Figure::kGross, true, true},
    {RTF_FPTR_GT_VAT_CATEGORY_INVOICE, Totals::kInvoices, Figure::kGross, true},
    {RTF_FPTR_GT_VAT_CATEGORY_TAXALL, Totals::kAll, Figure::kGrossTax},
    {RTF_FPTR_GT_VAT_CATEGORY_SERVICES_GROSS, Totals::kAll, Figure::kServices},
    {RTF_FPTR_GT_VAT_CATEGORY_SERVICES_NOT_PAID_GROSS, Totals::kAll, Figure::kServicesNotPaid},
    {RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID_GROSS, Totals::kAll, Figure::kSsnNotPaid},
    {RTF_FPTR_GT_VAT_CATEGORY_INVOICES_NOT_PAID_GROSS, Totals::kAll, Figure::kInvoicesNotPaid},
    {RTF_FPTR_GT_VAT_CATEGORY_UNDELIVERED_NOT_PAID_GROSS, Totals::kAll,
     Figure::kUndeliveredNotPaid},
    {RTF_FPTR_GT_VAT_CATEGORY_SERVICES, Totals::kAll, Figure::kServices, true},
    {RTF_FPTR_GT_VAT_CATEGORY_SERVICES_NOT_PAID, Totals::kAll, Figure::kServicesNotPaid, true},
    {RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID, Totals::kAll, Figure::kSsnNotPaid, true},
    {RTF_FPTR_GT_VAT_CATEGORY_INVOICES_NOT_PAID, Totals::kAll, Figure::kInvoicesNotPaid, true},
    {RTF_FPTR_GT_VAT_CATEGORY_UNDELIVERED_NOT_PAID, Totals::kAll, Figure::kUndeliveredNotPaid,
     true},
};

constexpr Figure kNotPaidFigures[] = {Figure::kServicesNotPaid, Figure::kSsnNotPaid,
                                      Figure::kInvoicesNotPaid, Figure::kUndeliveredNotPaid};

// Totalizers of a department.
struct DepartmentRow {
  int kind;
  int64_t (*read)(const Totals&, int);
};

constexpr DepartmentRow kDepartmentRows[] = {
    {RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_SOLD_QUANTITY,
     [](const Totals& totals, int number) { return totals.Sold(number).quantity; }},
    {RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_SOLD_GROSS_VALUE,
     [](const Totals& totals, int number) { return totals.Sold(number).amount; }},
    {RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_GROSS_VALUE,
     [](const Totals& totals, int number) { return totals.Department(number).amount; }},
};

// Totalizers of tenders have no VAT class and are read under class 0. Nothing for another kind.
std::optional<int64_t> TenderTotal(const Totals& totals, int kind) {
  if (kind == 0) return std::nullopt;
  for (const TenderRow& row : kTenders) {
    if (row.totalizer == kind) return totals.Tender(std::string(row.id));
    if (row.count_totalizer == kind) return totals.TenderCount(std::string(row.id));
  }
  return std::nullopt;
}

template <typename Row, size_t n>
const Row* FindRow(const Row (&rows)[n], int kind) {
  for (const Row& row : rows) {
    if (row.kind == kind) return &row;
  }
  return nullptr;
}

bool IsVatClass(int id) { return (id >= 0 && id <= 8) || (id >= 10 && id <= 60 && id % 10 == 0); }

bool ScopeTotals(const RegisterCore& core, int scope, Totals* totals) {
  switch (scope) {
    case RTF_FPTR_TT_DOCUMENT:
    case RTF_FPTR_TT_RECEIPT:
      if (core.state != PrinterState::kMonitor && core.state != PrinterState::kNonFiscal) {
        totals->Add(Summarize(core.document.receipt, core.tables));
      }
      return true;
    case RTF_FPTR_TT_DAY:
      *totals = core.store.day();
      return true;
    case RTF_FPTR_TT_GRAND:
      *totals = core.store.GrandTotals();
      return true;
    default:
      return false;
  }
}

int NoTotal(int number) {
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kTotal, {number});
}

}  // namespace

int ReadTotalizer(const RegisterCore& core, int id, int scope, int kind, std::string* value) {
  Totals totals;
  if (!ScopeTotals(core, scope, &totals)) return NoTotal(scope);
  if (const DepartmentRow* row = FindRow(kDepartmentRows, kind)) {
    if (core.tables.FindDepartment(id) == nullptr) return NoTotal(id);
    *value = std::to_string(row->read(totals, id));
    return RTF_SUCCESS;
  }
  if (kind == RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_DEPARTMENT_NAME) {
    const Department* department = core.tables.FindDepartment(id);
    if (department == nullptr) return NoTotal(id);
    *value = department->name;
    return RTF_SUCCESS;
  }
  if (const std::optional<int64_t> total = TenderTotal(totals, kind)) {
    if (id != 0) return NoTotal(id);
    *value = std::to_string(*total);
    return RTF_SUCCESS;
  }
  if (!IsVatClass(id)) return NoTotal(id);
  // The classes by nature: no entry of the VAT table has such a number here.
  const bool by_nature = id >= 10;
  Amount sum = 0;
  if (kind == RTF_FPTR_GT_NOT_PAID) {
    for (const Figure figure : kNotPaidFigures) {
      AddTo(&sum, totals.Sum(Totals::kAll, id, figure));
    }
  } else {
    const VatRow* row = FindRow(kVatRows, kind);
    if (row == nullptr) return NoTotal(kind);
    sum = totals.Sum(row->documents, id, row->figure);
    if (row->net) {
      const auto tax = static_cast<Figure>(static_cast<size_t>(row->figure) + 1);
      AddTo(&sum, totals.Sum(row->documents, id, tax), -1);
    }
    if (row->positive) {
      const Amount negative = sum;
      sum = 0;
      AddTo(&sum, negative, -1);
    }
  }
  *value = std::to_string(by_nature ? 0 : sum);
  return RTF_SUCCESS;
}

}  // namespace lorimat
