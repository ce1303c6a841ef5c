// Lines, payment and closing.
#include "register/desk/receipt_desk.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

#include "register/value/refusal.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {

int ReceiptDesk::Line(const LineArguments& arguments, const VoidTerms& terms) {
  if (!core_.Allows(Operation::kLine)) return RTF_EFPTR_WRONG_STATE;
  Item item;
  LineAction action = LineAction::kEnter;
  Amount amount = 0;
  if (const int code = EnterLine(core_.tables, arguments, terms, &core_.document.receipt, &action,
                                 &item, &amount)) {
    return code;
  }
  layout_.Line(action, item, amount);
  core_.options.pre_line.clear();
  core_.options.post_line.clear();
  return RTF_SUCCESS;
}

int ReceiptDesk::TryLine(const LineArguments& arguments) const {
  Item item;
  LineAction action = LineAction::kEnter;
  if (const int code = ResolveLine(core_.tables, arguments, nullptr, &action, &item)) return code;
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
  Adjustment done;
  if (const int code = EnterAdjustment(core_.tables, {type, value, vat, department, is_void},
                                       &core_.document.receipt, &done)) {
    return code;
  }
  layout_.AdjustmentLine(done, description);
  return RTF_SUCCESS;
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

// Whether what is paid wholly in cash comes to five cents. What takes the whole of a sale back that
// was paid so goes as the sale went, whatever is set up today.
bool ReceiptDesk::RoundsCash() const {
  const OpenDocument& document = core_.document;
  StoredDocument sale;
  if (!IsOwn(document.reference) || FindSale(document.reference, &sale) != RTF_SUCCESS ||
      document.receipt.total() != sale.total) {
    return core_.setup.round_cash;
  }
  bool rounded = false;
  for (const auto& [tender, amount] : sale.by_tender) {
    const bool rounding = tender == kRoundedDownTender || tender == kRoundedUpTender;
    if (!rounding && tender != kCashTender) return core_.setup.round_cash;
    rounded = rounded || rounding;
  }
  return rounded;
}

int ReceiptDesk::Total(Amount payment, std::string_view tender_id, bool automatic,
                       std::string_view text) {
  if (!core_.Allows(Operation::kTotal)) return RTF_EFPTR_WRONG_STATE;
  if (core_.document.cash != CashMove::kNone) return TotalCash(payment, tender_id, automatic);
  OpenDocument& document = core_.document;
  Receipt& receipt = document.receipt;
  if (receipt.empty()) return Refuse(RTF_EFPTR_WRONG_STATE, RefusalCause::kNothingSold);
  const Tender* tender = nullptr;
  if (const int code = FindPayingTender(core_.tables, tender_id, &tender)) return code;
  if (const int code = CheckPaidBack()) return code;
  // The clock is read first: nothing may fail between the payment and its registration.
  const std::tm now = core_.Now();
  const size_t before = receipt.payments().size();
  Payment done;
  if (const int code =
          EnterPayment(core_.tables, *tender, payment, automatic, RoundsCash(), &receipt, &done)) {
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
