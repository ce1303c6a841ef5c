#include "register/report/totalizer.h"

#include <optional>

#include "register/tables/tenders.h"
#include "register/totals/totals.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {

namespace {

Amount GrossOf(const TaxedAmount& sum) { return sum.amount; }
Amount NetOf(const TaxedAmount& sum) { return sum.net(); }
Amount TaxOf(const TaxedAmount& sum) { return sum.tax; }

// Sums of figures that each VAT class has.
struct TaxedRow {
  int kind;
  unsigned documents;
  TaxedFigure figure;
  Amount (*part)(const TaxedAmount&);
  bool positive = false;  // of credit notes or voids alone, shown as what they came to
};

constexpr unsigned kTaken = Totals::kSales | Totals::kInvoices;

constexpr TaxedRow kTaxedRows[] = {
    {RTF_FPTR_GT_GROSS, Totals::kAll, TaxedFigure::kGross, GrossOf},
    {RTF_FPTR_GT_NET, Totals::kAll, TaxedFigure::kGross, NetOf},
    {RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS, Totals::kAll, TaxedFigure::kGross, GrossOf},
    {RTF_FPTR_GT_VAT_CATEGORY_RECEIPT_GROSS, Totals::kSales, TaxedFigure::kGross, GrossOf},
    {RTF_FPTR_GT_VAT_CATEGORY_REFUND_GROSS, Totals::kRefunds, TaxedFigure::kGross, GrossOf, true},
    {RTF_FPTR_GT_VAT_CATEGORY_CANCEL_GROSS, Totals::kCancels, TaxedFigure::kGross, GrossOf, true},
    {RTF_FPTR_GT_VAT_CATEGORY_INVOICE_GROSS, Totals::kInvoices, TaxedFigure::kGross, GrossOf},
    {RTF_FPTR_GT_VAT_CATEGORY_DAILY, Totals::kAll, TaxedFigure::kGross, NetOf},
    {RTF_FPTR_GT_VAT_CATEGORY_RECEIPT, Totals::kSales, TaxedFigure::kGross, NetOf},
    {RTF_FPTR_GT_VAT_CATEGORY_REFUND, Totals::kRefunds, TaxedFigure::kGross, NetOf, true},
    {RTF_FPTR_GT_VAT_CATEGORY_CANCEL, Totals::kCancels, TaxedFigure::kGross, NetOf, true},
    {RTF_FPTR_GT_VAT_CATEGORY_INVOICE, Totals::kInvoices, TaxedFigure::kGross, NetOf},
    {RTF_FPTR_GT_VAT_CATEGORY_TAXALL, Totals::kAll, TaxedFigure::kGross, TaxOf},
    {RTF_FPTR_GT_VAT_CATEGORY_SERVICES_GROSS, Totals::kAll, TaxedFigure::kServices, GrossOf},
    {RTF_FPTR_GT_VAT_CATEGORY_SERVICES_NOT_PAID_GROSS, Totals::kAll, TaxedFigure::kServicesNotPaid,
     GrossOf},
    {RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID_GROSS, Totals::kAll, TaxedFigure::kSsnNotPaid, GrossOf},
    {RTF_FPTR_GT_VAT_CATEGORY_INVOICES_NOT_PAID_GROSS, Totals::kAll, TaxedFigure::kInvoicesNotPaid,
     GrossOf},
    {RTF_FPTR_GT_VAT_CATEGORY_UNDELIVERED_NOT_PAID_GROSS, Totals::kAll,
     TaxedFigure::kUndeliveredNotPaid, GrossOf},
    {RTF_FPTR_GT_VAT_CATEGORY_GIFT_GROSS, Totals::kAll, TaxedFigure::kGiftsNotPaid, GrossOf},
    {RTF_FPTR_GT_VAT_CATEGORY_SERVICES, Totals::kAll, TaxedFigure::kServices, NetOf},
    {RTF_FPTR_GT_VAT_CATEGORY_SERVICES_NOT_PAID, Totals::kAll, TaxedFigure::kServicesNotPaid,
     NetOf},
    {RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID, Totals::kAll, TaxedFigure::kSsnNotPaid, NetOf},
    {RTF_FPTR_GT_VAT_CATEGORY_INVOICES_NOT_PAID, Totals::kAll, TaxedFigure::kInvoicesNotPaid,
     NetOf},
    {RTF_FPTR_GT_VAT_CATEGORY_UNDELIVERED_NOT_PAID, Totals::kAll, TaxedFigure::kUndeliveredNotPaid,
     NetOf},
    {RTF_FPTR_GT_VAT_CATEGORY_GIFT, Totals::kAll, TaxedFigure::kGiftsNotPaid, NetOf},
};

struct EnteredRow {
  int kind;
  unsigned documents;
  EnteredFigure figure;
  Amount EnteredAmount::*part;
};

constexpr EnteredRow kEnteredRows[] = {
    {RTF_FPTR_GT_DISCOUNT, Totals::kAll, EnteredFigure::kDiscounts, &EnteredAmount::amount},
    {RTF_FPTR_GT_DISCOUNT_VOID, Totals::kAll, EnteredFigure::kDiscounts,
     &EnteredAmount::taken_back},
    {RTF_FPTR_GT_ITEM, kTaken, EnteredFigure::kItems, &EnteredAmount::amount},
    {RTF_FPTR_GT_ITEM_VOID, kTaken, EnteredFigure::kItems, &EnteredAmount::taken_back},
    {RTF_FPTR_GT_REFUND, kTaken, EnteredFigure::kRefundLines, &EnteredAmount::amount},
    {RTF_FPTR_GT_REFUND_VOID, kTaken, EnteredFigure::kRefundLines, &EnteredAmount::taken_back},
    {RTF_FPTR_GT_SUBTOTAL_DISCOUNT, Totals::kAll, EnteredFigure::kSubtotalDiscounts,
     &EnteredAmount::amount},
    {RTF_FPTR_GT_SUBTOTAL_DISCOUNT_VOID, Totals::kAll, EnteredFigure::kSubtotalDiscounts,
     &EnteredAmount::taken_back},
    {RTF_FPTR_GT_SUBTOTAL_SURCHARGES, Totals::kAll, EnteredFigure::kSubtotalSurcharges,
     &EnteredAmount::amount},
    {RTF_FPTR_GT_SUBTOTAL_SURCHARGES_VOID, Totals::kAll, EnteredFigure::kSubtotalSurcharges,
     &EnteredAmount::taken_back},
    {RTF_FPTR_GT_SURCHARGE, Totals::kAll, EnteredFigure::kSurcharges, &EnteredAmount::amount},
    {RTF_FPTR_GT_SURCHARGE_VOID, Totals::kAll, EnteredFigure::kSurcharges,
     &EnteredAmount::taken_back},
};

constexpr TaxedFigure kNotPaidFigures[] = {
    TaxedFigure::kServicesNotPaid, TaxedFigure::kSsnNotPaid, TaxedFigure::kInvoicesNotPaid,
    TaxedFigure::kUndeliveredNotPaid, TaxedFigure::kGiftsNotPaid};

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
        totals->Add(Summarize(core.document.receipt, core.tables, core.rates()));
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
    for (const TaxedFigure figure : kNotPaidFigures) {
      AddTo(&sum, totals.Sum(Totals::kAll, id, figure).amount);
    }
  } else if (const TaxedRow* taxed = FindRow(kTaxedRows, kind)) {
    AddTo(&sum, taxed->part(totals.Sum(taxed->documents, id, taxed->figure)),
          taxed->positive ? -1 : 1);
  } else if (const EnteredRow* entered = FindRow(kEnteredRows, kind)) {
    sum = totals.Sum(entered->documents, id, entered->figure).*(entered->part);
  } else {
    return NoTotal(kind);
  }
  *value = std::to_string(by_nature ? 0 : sum);
  return RTF_SUCCESS;
}

}  // namespace lorimat
