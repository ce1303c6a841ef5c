#include "register/document/receipt_entry.h"

#include <optional>

#include "managermachine/pflitemtype.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

struct ItemTypeRow {
  int type;
  LineKind kind;
  LineAction action;
};

constexpr ItemTypeRow kItemTypes[] = {
    {PflItemType::kPrintRecItem, LineKind::kSale, LineAction::kEnter},
    {PflItemType::kPrintRecItemVoid, LineKind::kSale, LineAction::kVoid},
    {PflItemType::kPrintRecItemRefund, LineKind::kRefund, LineAction::kEnter},
    {PflItemType::kPrintRecItemRefundVoid, LineKind::kRefund, LineAction::kVoid},
    {PflItemType::kPrintRecItemVoidOfVoid, LineKind::kSale, LineAction::kRestore},
    {PflItemType::kPrintRecItemDeposit, LineKind::kDeposit, LineAction::kEnter},
    {PflItemType::kPrintRecItemDepositVoid, LineKind::kDeposit, LineAction::kVoid},
    {PflItemType::kPrintRecItemBuoniMonouso, LineKind::kVoucher, LineAction::kEnter},
    {PflItemType::kPrintRecItemBuoniMonousoVoid, LineKind::kVoucher, LineAction::kVoid},
};

constexpr int kNotGiven = -1;
constexpr int kAsLastLine = -2;
constexpr Amount kPresetPrice = -1;

int NoDepartment(const Tables& tables, int number) {
  return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNoDepartment,
                {number, static_cast<int64_t>(tables.settings().departments.size())});
}

int NoVatEntry(const Tables& tables, int number) {
  return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNoVatEntry,
                {number, static_cast<int64_t>(tables.settings().vat_rates.size())});
}

// Whether a department takes discounts on its lines; 0 asks for that of the last line.
bool AllowsDiscount(const Tables& tables, const Receipt& receipt, int department) {
  const Item* last = receipt.last_open_line();
  if (department == 0 && last != nullptr) department = last->department;
  const Department* row = tables.FindDepartment(department);
  return row == nullptr || row->allow_discount;
}

}  // namespace

int PriceLine(const LineArguments& arguments, Amount preset, Item* item) {
  if (arguments.quantity < 0) {
    return Refuse(RTF_EFPTR_BAD_ITEM_QUANTITY, RefusalCause::kNegativeQuantity,
                  {arguments.quantity});
  }
  item->quantity_given = arguments.quantity > 0;
  item->quantity = item->quantity_given ? arguments.quantity : kOnePiece;
  Amount price = item->quantity_given ? arguments.unit_price : arguments.price;
  if (!item->quantity_given && price == kPresetPrice && arguments.unit_price > 0) {
    price = arguments.unit_price;
  }
  if (price == kPresetPrice) price = preset;
  if (price <= 0) {
    return Refuse(RTF_EFPTR_BAD_PRICE,
                  price < 0 ? RefusalCause::kNegativePrice : RefusalCause::kNoPrice, {price});
  }
  const std::optional<Amount> amount = LineAmount(item->quantity, price);
  if (!amount || *amount > kMaxAmount) {
    return Refuse(RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW, RefusalCause::kLineTooHigh, {kMaxAmount});
  }
  if (*amount == 0) {
    return Refuse(RTF_EFPTR_BAD_PRICE, RefusalCause::kComesToNothing, {item->quantity, price});
  }
  item->unit_price = price;
  item->amount = *amount;
  return RTF_SUCCESS;
}

int ResolveLine(const Tables& tables, const LineArguments& arguments, const Item* last,
                LineAction* action, Item* item) {
  const ItemTypeRow* type = nullptr;
  for (const ItemTypeRow& row : kItemTypes) {
    if (row.type == arguments.pfl_item_type) type = &row;
  }
  if (type == nullptr) {
    return Refuse(RTF_E_ILLEGAL, RefusalCause::kLineKind, {arguments.pfl_item_type});
  }
  item->kind = type->kind;
  *action = type->action;

  Amount preset = 0;
  int department = arguments.department;
  const Article* article = nullptr;
  if (!arguments.article.empty()) {
    article = tables.FindArticle(arguments.article);
    if (article == nullptr) {
      return Refuse(RTF_E_NOEXIST, RefusalCause::kNoArticle, {}, arguments.article);
    }
    item->article = article->code;
    preset = article->price;
    if (department == kNotGiven) department = article->department;
  }

  if (department == kAsLastLine) {
    if (last == nullptr) return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNoLineBefore);
    department = last->department;
  } else if (department == kNotGiven && arguments.vat != kNotGiven) {
    department = 0;  // a VAT entry alone
  }
  const Department* row = tables.FindDepartment(department);
  if (row == nullptr && department != 0 && department != kNotGiven)
    return NoDepartment(tables, department);
  if (row == nullptr && (department != 0 || arguments.vat == kNotGiven)) {
    return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNeitherDepartmentNorVat);
  }
  item->department = department;

  if (arguments.vat == kNotGiven) {
    item->vat = row->vat;
  } else if (arguments.vat == kAsLastLine) {
    if (last == nullptr) return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNoLineBefore);
    item->vat = last->vat;
  } else {
    item->vat = arguments.vat;
  }
  if (tables.FindVat(item->vat) == nullptr) return NoVatEntry(tables, item->vat);
  if (article == nullptr && row != nullptr) preset = row->price;

  if (const int code = PriceLine(arguments, preset, item)) return code;
  if (row != nullptr && row->max_price > 0 && item->unit_price > row->max_price) {
    return Refuse(RTF_EFPTR_BAD_PRICE, RefusalCause::kPriceAboveLimit,
                  {item->unit_price, row->max_price, department});
  }

  if (arguments.special_tax < 0 || arguments.special_tax > item->amount) {
    return Refuse(RTF_EFPTR_BAD_PRICE, RefusalCause::kTaxAboveLine,
                  {arguments.special_tax, item->amount});
  }
  item->special_tax = RoundToCents(arguments.special_tax).value_or(0);
  item->special_tax_name = arguments.special_tax_name;

  item->unit_name = arguments.unit_name;
  item->description = arguments.description;
  item->description_given = !item->description.empty();
  if (item->description.empty()) {
    const bool goods = item->kind == LineKind::kSale || item->kind == LineKind::kRefund;
    if (goods && article != nullptr) item->description = article->description;
    if (type->action == LineAction::kEnter && row != nullptr && row->force_description &&
        item->description.empty()) {
      return Refuse(RTF_EFPTR_BAD_ITEM_DESCRIPTION, RefusalCause::kDescriptionMissing,
                    {department});
    }
    if (goods && item->description.empty() && row != nullptr) item->description = row->name;
  }
  return RTF_SUCCESS;
}

int EnterLine(const Tables& tables, const LineArguments& arguments, const VoidTerms& terms,
              Receipt* receipt, LineAction* action, Item* item, Amount* amount) {
  if (const int code = ResolveLine(tables, arguments, receipt->last_line(), action, item)) {
    return code;
  }
  switch (*action) {
    case LineAction::kVoid:
      return receipt->Void(*item, amount, terms, &item->description);
    case LineAction::kRestore:
      return receipt->Restore(*item, amount, &item->description);
    case LineAction::kEnter:
      break;
  }
  *amount = item->kind == LineKind::kSale ? item->amount : -item->amount;
  return receipt->Enter(*item);
}

int EnterAdjustment(const Tables& tables, const AdjustmentArguments& arguments, Receipt* receipt,
                    Adjustment* done) {
  AdjustmentRequest request;
  request.type = arguments.type;
  request.value = arguments.value;
  request.is_void = arguments.is_void;
  if (arguments.department != kNotGiven && arguments.department != kAsLastLine) {
    const Department* row = tables.FindDepartment(arguments.department);
    if (row == nullptr) return NoDepartment(tables, arguments.department);
    request.department = arguments.department;
    if (!request.is_void) request.vat = row->vat;
    request.spread = !request.is_void;
  }
  if (arguments.vat != kNotGiven && arguments.vat != kAsLastLine) {
    if (tables.FindVat(arguments.vat) == nullptr) return NoVatEntry(tables, arguments.vat);
    request.vat = arguments.vat;
    request.spread = false;
  }
  if (!request.is_void && !IsSurcharge(request.type) &&
      !AllowsDiscount(tables, *receipt, request.department)) {
    return Refuse(RTF_E_ILLEGAL, RefusalCause::kNoDiscountThere);
  }
  return receipt->Adjust(request, done);
}

int FindPayingTender(const Tables& tables, std::string_view id, const Tender** tender) {
  *tender = tables.FindTender(id);
  if (*tender != nullptr && !(*tender)->by_register) return RTF_SUCCESS;
  return Refuse(RTF_E_NOEXIST, RefusalCause::kNoTender, {}, id);
}

int EnterPayment(const Tables& tables, const Tender& tender, Amount amount, bool automatic,
                 bool round_cash, Receipt* receipt, Payment* done) {
  const CashRounding rounding = {tables.FindTender(kRoundedDownTender),
                                 tables.FindTender(kRoundedUpTender)};
  return receipt->Pay(tender, amount, automatic, done, round_cash ? &rounding : nullptr);
}

}  // namespace lorimat
