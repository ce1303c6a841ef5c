// Lines, payment and closing.
#include "register/desk/receipt_desk.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

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

}  // namespace

int ReceiptDesk::NoDepartment(int number) const {
  return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNoDepartment,
                {number, static_cast<int64_t>(core_.tables.settings().departments.size())});
}

int ReceiptDesk::NoVatEntry(int number) const {
  return Refuse(RTF_EFPTR_BAD_VAT, RefusalCause::kNoVatEntry,
                {number, static_cast<int64_t>(core_.tables.settings().vat_rates.size())});
}

int ReceiptDesk::Resolve(const LineArguments& arguments, const Item* last, LineAction* action,
                         Item* item) const {
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
    article = core_.tables.FindArticle(arguments.article);
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
  const Department* row = core_.tables.FindDepartment(department);
  if (row == nullptr && department != 0 && department != kNotGiven) return NoDepartment(department);
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
  if (core_.tables.FindVat(item->vat) == nullptr) return NoVatEntry(item->vat);
  if (article == nullptr && row != nullptr) preset = row->price;

  // A quantity goes with a unit price. Without one, the line is one piece at its price.
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
  if (row != nullptr && row->max_price > 0 && price > row->max_price) {
    return Refuse(RTF_EFPTR_BAD_PRICE, RefusalCause::kPriceAboveLimit,
                  {price, row->max_price, department});
  }
  item->unit_price = price;
  item->amount = *amount;

  if (arguments.special_tax < 0 || arguments.special_tax > *amount) {
    return Refuse(RTF_EFPTR_BAD_PRICE, RefusalCause::kTaxAboveLine,
                  {arguments.special_tax, *amount});
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

int ReceiptDesk::Line(const LineArguments& arguments, const VoidTerms& terms) {
  if (!core_.Allows(Operation::kLine)) return RTF_EFPTR_WRONG_STATE;
  Receipt& receipt = core_.document.receipt;
  Item item;
  LineAction action = LineAction::kEnter;
  if (const int code = Resolve(arguments, receipt.last_line(), &action, &item)) return code;
  Amount amount = 0;
  int code = RTF_SUCCESS;
  switch (action) {
    case LineAction::kEnter:
      code = receipt.Enter(item);
      amount = item.kind == LineKind::kSale ? item.amount : -item.amount;
      break;
    case LineAction::kVoid:
      code = receipt.Void(item, &amount, terms, &item.description);
      break;
    case LineAction::kRestore:
      code = receipt.Restore(item, &amount, &item.description);
      break;
  }
  if (code != RTF_SUCCESS) return code;
  layout_.Line(action, item, amount);
  core_.options.pre_line.clear();
  core_.options.post_line.clear();
  return RTF_SUCCESS;
}

int ReceiptDesk::TryLine(const LineArguments& arguments) const {
  Item item;
  LineAction action = LineAction::kEnter;
  if (const int code = Resolve(arguments, nullptr, &action, &item)) return code;
  if (action != LineAction::kEnter) {
    return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kNoLineToVoid,
                  {item.quantity, item.unit_price});
  }
  return Receipt().Enter(item);
}

int ReceiptDesk::VoidLastLine() {
  if (!core_.Allows(Operation::kLine)) return RTF_EFPTR_WRONG_STATE;
  Receipt& receipt = core_.document.receipt;
  const Item* last = receipt.last_open_line();
  if (last == nullptr) return Refuse(RTF_EFPTR_BAD_ITEM_AMOUNT, RefusalCause::kNoOpenLine);
  const Item item = *last;
  Amount amount = 0;
  if (const int code = receipt.Void(item, &amount)) return code;
  layout_.Line(LineAction::kVoid, item, amount);
  return RTF_SUCCESS;
}

int ReceiptDesk::Adjust(int type, std::string_view description, int64_t value, int vat,
                        int department, bool is_void) {
  if (!core_.Allows(Operation::kAdjustment)) return RTF_EFPTR_WRONG_STATE;
  Receipt& receipt = core_.document.receipt;
  AdjustmentRequest request;
  request.type = type;
  request.value = value;
  request.is_void = is_void;
  if (department != kNotGiven && department != kAsLastLine) {
    const Department* row = core_.tables.FindDepartment(department);
    if (row == nullptr) return NoDepartment(department);
    request.department = department;
    if (!is_void) request.vat = row->vat;
    request.spread = !is_void;
  }
  if (vat != kNotGiven && vat != kAsLastLine) {
    if (core_.tables.FindVat(vat) == nullptr) return NoVatEntry(vat);
    request.vat = vat;
    request.spread = false;
  }
  if (!is_void && !IsSurcharge(type) && !AllowsDiscount(request.department)) {
    return Refuse(RTF_E_ILLEGAL, RefusalCause::kNoDiscountThere);
  }
  Adjustment done;
  if (const int code = receipt.Adjust(request, &done)) return code;
  layout_.AdjustmentLine(done, description);
  return RTF_SUCCESS;
}

// Whether a department takes discounts on its lines; 0 asks for that of the last line.
bool ReceiptDesk::AllowsDiscount(int department) const {
  const Item* last = core_.document.receipt.last_open_line();
  if (department == 0 && last != nullptr) department = last->department;
  const Department* row = core_.tables.FindDepartment(department);
  return row == nullptr || row->allow_discount;
}

int ReceiptDesk::AdjustSubtotal(int type, std::string_view description, int64_t value,
                                bool is_void) {
  if (!core_.Allows(Operation::kAdjustment)) return RTF_EFPTR_WRONG_STATE;
  AdjustmentRequest request;
  request.type = type;
  request.value = value;
  request.is_void = is_void;
  Adjustment done;
  if (const int code = core_.document.receipt.AdjustSubtotal(request, &done)) return code;
  layout_.AdjustmentLine(done, description);
  return RTF_SUCCESS;
}

int ReceiptDesk::PrintSubtotal() {
  if (!core_.Allows(Operation::kSubtotal)) return RTF_EFPTR_WRONG_STATE;
  layout_.Subtotal(core_.document.receipt.total());
  core_.document.receipt.ShowSubtotal();
  return RTF_SUCCESS;
}

int ReceiptDesk::CheckSubtotal(Amount expected) {
  if (!core_.Allows(Operation::kSubtotal)) return RTF_EFPTR_WRONG_STATE;
  const Amount total = core_.document.receipt.total();
  if (total != expected) {
    return Refuse(RTF_EFPTR_FISCAL_TOTALS_ERROR, RefusalCause::kSubtotalDiffers, {expected, total});
  }
  return RTF_SUCCESS;
}

int ReceiptDesk::Message(std::string_view text) {
  if (!core_.Allows(Operation::kMessage)) return RTF_EFPTR_WRONG_STATE;
  core_.paper.Text(text);
  return RTF_SUCCESS;
}

int ReceiptDesk::Total(Amount payment, std::string_view tender_id, bool automatic,
                       std::string_view text) {
  if (!core_.Allows(Operation::kTotal)) return RTF_EFPTR_WRONG_STATE;
  if (core_.document.cash != CashMove::kNone) return TotalCash(payment, tender_id, automatic);
  OpenDocument& document = core_.document;
  Receipt& receipt = document.receipt;
  if (receipt.empty()) return Refuse(RTF_EFPTR_WRONG_STATE, RefusalCause::kNothingSold);
  const Tender* tender = core_.tables.FindTender(tender_id);
  if (tender == nullptr || tender->by_register) {
    return Refuse(RTF_E_NOEXIST, RefusalCause::kNoTender, {}, tender_id);
  }
  if (const int code = CheckPaidBack()) return code;
  // The clock is read first: nothing may fail between the payment and its registration.
  const std::tm now = core_.Now();
  const CashRounding rounding = {core_.tables.FindTender(kRoundedDownTender),
                                 core_.tables.FindTender(kRoundedUpTender)};
  const size_t before = receipt.payments().size();
  Payment done;
  if (const int code = receipt.Pay(*tender, payment, automatic, &done,
                                   core_.setup.round_cash ? &rounding : nullptr)) {
    return code;
  }
  if (!document.total_shown) {
    layout_.Total(receipt.total(), receipt.VatTotal(core_.rates()));
    if (receipt.kind() == DocumentKind::kInvoice) layout_.VatTable(receipt.by_vat());
    document.total_shown = true;
  }
  if (!text.empty()) core_.paper.Text(text);
  for (size_t at = before; at < receipt.payments().size(); ++at) {
    const Payment& made = receipt.payments()[at];
    layout_.Tender(made.tender->name, made.amount, made.face);
  }
  document.time = now;
  core_.state = PrinterState::kTotal;
  if (receipt.remaining() == 0) Settle();
  return RTF_SUCCESS;
}

// The payments cover the total: the document is registered. It stays open for attachments
// when the host asked for that.
void ReceiptDesk::Settle() {
  const Receipt& receipt = core_.document.receipt;
  StoredDocument stored = Summarize(receipt, core_.tables, core_.rates());
  AddDetails(receipt, &stored);
  const DocumentKind kind = stored.kind;
  const Amount change = stored.change;
  SetLottery(stored);
  const PaidParts parts = CheckedParts(stored);
  const int tickets = TicketsOf(stored, core_.tables);
  Store(std::move(stored));
  layout_.Paid(kind, change, tickets, parts.collected);
  layout_.Natures(receipt.by_vat());
  layout_.Settled(core_.document);
  core_.state = PrinterState::kEnding;
  if (core_.options.auto_cut && !core_.options.hold_settled) FinishDocument();
}

// No document is registered or printed whose payments do not come to its total.
PaidParts ReceiptDesk::CheckedParts(const StoredDocument& stored) const {
  const std::optional<PaidParts> parts = PartsOf(stored, core_.tables);
  if (!parts) core_.database.Damaged("document_payment");
  return *parts;
}

void ReceiptDesk::Store(StoredDocument stored) {
  OpenDocument& document = core_.document;
  // A document of training takes no number and moves no total.
  if (core_.setup.training) {
    document.number_text = Layout::kTrainingMark;
    return;
  }
  stored.time = document.time;
  stored.operator_number = core_.current_operator;
  stored.lottery_code = document.lottery_code;
  // Another register's document may have the numbers of an own one, which it leaves alone.
  if (IsOwn(document.reference)) {
    stored.referred_closure = document.reference.closure;
    stored.referred_number = document.reference.number;
  }
  const StoredDocument registered = core_.store.Register(std::move(stored));
  document.id = registered.id;
  document.number = registered.number;
  if (document.lottery_drop != LotteryDropCause::kNone) {
    core_.session.lottery_drop = {document.lottery_drop, registered.closure, registered.number};
    ++core_.session.lottery_drops;
  }
  if (registered.kind == DocumentKind::kInvoice) {
    document.number_text =
        core_.options.invoice_series.empty()
            ? fmt::format("FATTURA N. {}", registered.number)
            : fmt::format("FATTURA N. {}/{}", registered.number, core_.options.invoice_series);
  } else if (core_.in_service()) {
    document.number_text =
        fmt::format("DOCUMENTO N. {:04}-{:04}", registered.closure, registered.number);
  } else {
    document.number_text = fmt::format("DOCUMENTO N. {:04}", registered.number);
  }
}

int ReceiptDesk::AdditionalTrailer() {
  if (!core_.Allows(Operation::kAdditionalTrailer)) return RTF_EFPTR_WRONG_STATE;
  if (core_.document.trailer_printed) {
    return Refuse(RTF_EFPTR_WRONG_STATE, RefusalCause::kTrailerPrinted);
  }
  layout_.Trailer(core_.document);
  core_.document.trailer_printed = true;
  return RTF_SUCCESS;
}

int ReceiptDesk::EndReceipt() {
  if (!core_.Allows(Operation::kEndReceipt)) return RTF_EFPTR_WRONG_STATE;
  FinishDocument();
  return RTF_SUCCESS;
}

// The paper since the document began is what the journal keeps.
void ReceiptDesk::KeepInJournal(JournalKind kind, int number, const std::tm& time) {
  if (core_.setup.training) return;
  const std::vector<std::string>& lines = core_.paper.lines();
  const auto begin = lines.begin() + static_cast<std::ptrdiff_t>(core_.document_start);
  core_.store.AddToJournal({kind, 0, number, time, {begin, lines.end()}, core_.document.id});
}

// How many documents the day still takes, when they are few. Invoices have numbers of their own.
void ReceiptDesk::TellRoom() {
  const OpenDocument& document = core_.document;
  if (document.number < RegisterStore::kToldAhead ||
      document.receipt.kind() == DocumentKind::kInvoice) {
    return;
  }
  core_.paper.Centred(
      fmt::format("DOCUMENTI RIMASTI: {}", RegisterStore::kLastNumber - document.number));
}

void ReceiptDesk::FinishDocument() {
  if (!core_.document.trailer_printed) layout_.Trailer(core_.document);
  TellRoom();
  core_.paper.Cut();
  Buffer();
  if (core_.document.cash != CashMove::kNone) {
    if (!core_.setup.training) core_.store.CountNonFiscal(core_.document.time);
    KeepInJournal(kJournalNonFiscal, 0, core_.document.time);
  } else {
    KeepInJournal(JournalKindOf(core_.document.receipt.kind()), core_.document.number,
                  core_.document.time);
  }
  core_.state = PrinterState::kMonitor;
  core_.Replace({});
  // Both options hold for one document; the next one ends by itself again.
  core_.options.auto_cut = true;
  core_.options.hold_settled = false;
}

int ReceiptDesk::VoidReceipt(std::string_view description) {
  if (!core_.Allows(Operation::kVoidReceipt)) return RTF_EFPTR_WRONG_STATE;
  if (!description.empty()) core_.paper.Text(description);
  Reset();
  return RTF_SUCCESS;
}

void ReceiptDesk::Reset() {
  switch (core_.state) {
    case PrinterState::kMonitor:
      break;
    case PrinterState::kEnding:
      // Registered already: it only ends.
      FinishDocument();
      break;
    case PrinterState::kReceipt:
    case PrinterState::kTotal:
      if (!core_.setup.training) core_.store.CountAbandoned();
      [[fallthrough]];
    case PrinterState::kNonFiscal:
      layout_.Abandoned();
      layout_.TrainingMark();
      core_.paper.Cut();
      if (core_.state != PrinterState::kNonFiscal) {
        KeepInJournal(kJournalAbandoned, 0, core_.Now());
      } else if (core_.keep_non_fiscal) {
        KeepInJournal(kJournalNonFiscal, 0, core_.Now());
      }
      core_.state = PrinterState::kMonitor;
      core_.Replace({});
      break;
    case PrinterState::kItemList:
      layout_.Abandoned();
      core_.paper.Cut();
      core_.state = PrinterState::kMonitor;
      break;
  }
  core_.options.auto_cut = true;
  core_.options.hold_settled = false;
  core_.options.pre_line.clear();
  core_.options.post_line.clear();
}

}  // namespace lorimat
