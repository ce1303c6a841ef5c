#include "door/receipt/receipt_sums.h"

#include <fmt/format.h>

#include <algorithm>

#include "console/message/refusal_text.h"
#include "door/judge/client_words.h"
#include "door/receipt/decimal.h"
#include "managermachine/pflitemtype.h"
#include "pal/protocols/lorimat/receipt/tender_numbers.h"
#include "register/document/receipt_entry.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::door {
namespace {

constexpr DocumentKind kDocumentKinds[] = {DocumentKind::kSale, DocumentKind::kInvoice,
                                           DocumentKind::kRefund, DocumentKind::kCancel};
constexpr int kAdjustmentTypes[2][2] = {
    {RTF_FPTR_AT_AMOUNT_DISCOUNT, RTF_FPTR_AT_PERCENTAGE_DISCOUNT},
    {RTF_FPTR_AT_AMOUNT_SURCHARGE, RTF_FPTR_AT_PERCENTAGE_SURCHARGE}};

int TypeOf(const ReceiptAdjustment& adjustment) {
  return kAdjustmentTypes[adjustment.is_surcharge ? 1 : 0][adjustment.is_percentage ? 1 : 0];
}

// The arguments as the translator makes them of the fields of a sale.
LineArguments ArgumentsOf(const ReceiptItem& item) {
  constexpr Amount kPreset = -1;
  LineArguments arguments;
  arguments.pfl_item_type = PflItemType::kPrintRecItem;
  if (item.is_refund) arguments.pfl_item_type = PflItemType::kPrintRecItemRefund;
  if (item.is_void) arguments.pfl_item_type = PflItemType::kPrintRecItemVoid;
  arguments.description = item.description;
  arguments.quantity = item.quantity;
  (item.quantity > 0 ? arguments.unit_price : arguments.price) = item.price.value_or(kPreset);
  if (item.department != 0) arguments.department = item.department;
  arguments.article = item.article;
  return arguments;
}

std::string PlaceOf(const char* list, size_t index) { return fmt::format("/{}/{}", list, index); }

class Summing {
 public:
  Summing(const ReceiptRequest& request, const DeviceTables& device)
      : request_(request),
        device_(device),
        receipt_(kDocumentKinds[static_cast<size_t>(request.kind)]) {}

  std::optional<ReceiptProblem> Run(ReceiptSums* sums) {
    for (size_t i = 0; i < request_.items.size() && !problem_; ++i) {
      const Amount before = receipt_.total();
      Sell(request_.items[i], PlaceOf("items", i));
      sums->items.push_back(receipt_.total() - before);
    }
    sums->subtotal = receipt_.total();
    if (request_.subtotal && !problem_) AdjustSubtotal(*request_.subtotal);
    sums->has_payments = !RestsOnSale();
    if (!sums->has_payments) {
      if (!problem_) Tell(sums);
      return problem_;
    }
    for (size_t i = 0; i < request_.payments.size() && !problem_; ++i) {
      Pay(request_.payments[i], PlaceOf("payments", i), i > 0);
    }
    if (!problem_ && receipt_.remaining() != 0) {
      problem_ = {422, "too_little_paid", "/payments",
                  fmt::format("of {} there are {} left to pay", MoneyText(receipt_.total()),
                              MoneyText(receipt_.remaining()))};
    }
    if (!problem_) Tell(sums);
    return problem_;
  }

 private:
  // Runs an operation of the register's, and tells what it refuses in its words.
  template <typename Work>
  void Try(std::string place, Work work) {
    RefusalNote note;
    {
      RefusalNote::Operation operation(note);
      operation.End(work());
    }
    if (note.count() == 0) return;
    const ClientWords words;
    std::string cause = console::RefusalText(InUtf8(note.last()));
    if (cause.empty()) cause = fmt::format("the device refuses it with {}", note.last().code);
    problem_ = {422, "refused", std::move(place), std::move(cause)};
  }

  void Sell(const ReceiptItem& item, const std::string& place) {
    Try(place, [&] {
      Item resolved;
      LineAction action = LineAction::kEnter;
      Amount amount = 0;
      return EnterLine(device_.tables, ArgumentsOf(item), {}, &receipt_, &action, &resolved,
                       &amount);
    });
    if (problem_ || !item.adjustment) return;
    Try(place + (item.adjustment->is_surcharge ? "/surcharge" : "/discount"), [&] {
      AdjustmentArguments arguments;
      arguments.type = TypeOf(*item.adjustment);
      arguments.value = item.adjustment->value;
      Adjustment done;
      return EnterAdjustment(device_.tables, arguments, &receipt_, &done);
    });
  }

  void AdjustSubtotal(const ReceiptAdjustment& adjustment) {
    Try("/subtotal_discount", [&] {
      AdjustmentRequest request;
      request.type = TypeOf(adjustment);
      request.value = adjustment.value;
      Adjustment done;
      return receipt_.AdjustSubtotal(request, &done);
    });
  }

  // Whether the sale that goes back says if its cash comes to five cents, which can differ from
  // what is set up today.
  bool RestsOnSale() const {
    constexpr Amount kFiveCents = 500;
    constexpr int kCash = 1;
    return request_.refers_to &&
           request_.refers_to->IsOf(device_.tables.settings().serial_number) &&
           receipt_.remaining() % kFiveCents != 0 &&
           std::any_of(request_.payments.begin(), request_.payments.end(),
                       [](const ReceiptPayment& payment) { return payment.tender == kCash; });
  }

  // The payment that covers the total registers the document: none may follow.
  void Pay(const ReceiptPayment& payment, const std::string& place, bool is_next) {
    if (is_next && receipt_.remaining() == 0) {
      problem_ = {422, "nothing_left_to_pay", place, "the payments ahead of it cover the total"};
      return;
    }
    Try(place, [&] {
      char id[kTenderSize];
      TenderIdentifier(id, payment.tender, std::to_string(payment.tender).c_str());
      const Tender* tender = nullptr;
      if (const int code = FindPayingTender(device_.tables, id, &tender)) return code;
      Payment done;
      return EnterPayment(device_.tables, *tender, payment.amount.value_or(0), !payment.amount,
                          device_.round_cash, &receipt_, &done);
    });
  }

  void Tell(ReceiptSums* sums) const {
    sums->total = receipt_.total();
    sums->paid = receipt_.paid();
    sums->change = receipt_.change();
    const std::vector<VatRate>& rates = device_.tables.settings().vat_rates;
    for (const auto& [vat, amount] : receipt_.by_vat()) {
      sums->by_vat[vat] = {VatName(rates, vat), amount};
    }
    for (const auto& [department, sum] : receipt_.by_department()) {
      sums->by_department[department] = sum.amount;
    }
    for (const Payment& payment : receipt_.payments()) {
      sums->payments.push_back({payment.tender->name, payment.amount});
    }
  }

  const ReceiptRequest& request_;
  const DeviceTables& device_;
  Receipt receipt_;
  std::optional<ReceiptProblem> problem_;
};

}  // namespace

std::optional<ReceiptProblem> SumReceipt(const ReceiptRequest& receipt, const DeviceTables& device,
                                         ReceiptSums* sums) {
  return Summing(receipt, device).Run(sums);
}

}  // namespace lorimat::door
