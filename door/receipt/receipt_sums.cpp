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
#include "rpccommon/services/rtfconst.h"
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

// The tender as the client calls of the language name it.
std::string IdentifierOf(const ReceiptPayment& payment) {
  char id[kTenderSize];
  TenderIdentifier(id, payment.tender, std::to_string(payment.tender).c_str());
  return id;
}

bool IsCash(const ReceiptPayment& payment) { return IdentifierOf(payment) == kCashTender; }

// Whether a device that rounds cash to five cents takes another sum than the total.
bool CanRound(Amount total) { return RoundToFiveCents(total) != total; }

class Summing {
 public:
  Summing(const ReceiptRequest& request, const DeviceTables* device)
      : request_(request),
        device_(device),
        receipt_(kDocumentKinds[static_cast<size_t>(request.kind)]) {}

  std::optional<ReceiptProblem> Run(ReceiptSums* sums) {
    if (device_ == nullptr) NeedPrices();
    for (size_t i = 0; i < request_.items.size() && !problem_; ++i) {
      const Amount before = receipt_.total();
      Sell(request_.items[i], PlaceOf("items", i));
      sums->items.push_back(receipt_.total() - before);
      if (is_known_) continue;
      sums->is_known = false;
      return problem_;
    }
    sums->subtotal = receipt_.total();
    if (request_.subtotal && !problem_) AdjustSubtotal(*request_.subtotal);
    sums->has_paid = !RestsOnSale();
    if (sums->has_paid) PayAll(sums);
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

  void NeedPrices() {
    for (size_t i = 0; i < request_.items.size() && !problem_; ++i) {
      if (request_.items[i].price) continue;
      problem_ = {422, "no_price", PlaceOf("items", i) + "/price",
                  "the device does not tell which prices it is programmed with: each item needs "
                  "its own"};
    }
  }

  void Sell(const ReceiptItem& item, const std::string& place) {
    Try(place, [&] { return device_ != nullptr ? SellByTables(item) : SellAsGiven(item); });
    if (problem_ || !item.adjustment) return;
    Try(place + (item.adjustment->is_surcharge ? "/surcharge" : "/discount"), [&] {
      Adjustment done;
      if (device_ == nullptr) return receipt_.Adjust(RequestOf(*item.adjustment), &done);
      AdjustmentArguments arguments;
      arguments.type = TypeOf(*item.adjustment);
      arguments.value = item.adjustment->value;
      return EnterAdjustment(device_->tables, arguments, &receipt_, &done);
    });
  }

  int SellByTables(const ReceiptItem& item) {
    Item resolved;
    LineAction action = LineAction::kEnter;
    Amount amount = 0;
    return EnterLine(device_->tables, ArgumentsOf(item), {}, &receipt_, &action, &resolved,
                     &amount);
  }

  // With all that the request says of a line, and one rate for all.
  int SellAsGiven(const ReceiptItem& item) {
    constexpr int kAnyVat = 1;
    Item line;
    line.kind = item.is_refund ? LineKind::kRefund : LineKind::kSale;
    line.department = item.department;
    line.article = item.article;
    line.vat = kAnyVat;
    line.description = item.description;
    line.description_given = !line.description.empty();
    if (const int code = PriceLine(ArgumentsOf(item), 0, &line)) return code;
    if (!item.is_void) return receipt_.Enter(line);
    is_known_ = IsClear(line);
    if (!is_known_) return RTF_SUCCESS;
    Amount amount = 0;
    return receipt_.Void(line, &amount);
  }

  // Whether an item surely takes back a line that is named like it, whatever the device calls what
  // has no description here.
  bool IsClear(const Item& taken) const {
    bool found = false;
    for (const Receipt::Line& line : receipt_.lines()) {
      const Item& sold = line.item;
      if (sold.kind != taken.kind || sold.department != taken.department ||
          sold.article != taken.article || sold.unit_price != taken.unit_price) {
        continue;
      }
      const bool has_pieces = line.open_quantity == taken.quantity ||
                              (line.open_quantity > taken.quantity && line.adjusted == 0);
      if (!has_pieces) continue;
      if (sold.description == taken.description) {
        found = true;
      } else if (sold.description_given != taken.description_given) {
        return false;
      }
    }
    return found;
  }

  static AdjustmentRequest RequestOf(const ReceiptAdjustment& adjustment) {
    AdjustmentRequest request;
    request.type = TypeOf(adjustment);
    request.value = adjustment.value;
    return request;
  }

  void AdjustSubtotal(const ReceiptAdjustment& adjustment) {
    Try("/subtotal_discount", [&] {
      Adjustment done;
      return receipt_.AdjustSubtotal(RequestOf(adjustment), &done);
    });
  }

  // Whether the sale that goes back says if its cash comes to five cents, which can differ from
  // what is set up today.
  bool RestsOnSale() const {
    if (!request_.refers_to || !CanRound(receipt_.remaining())) return false;
    const bool is_own =
        device_ == nullptr || request_.refers_to->IsOf(device_->tables.settings().serial_number);
    return is_own && std::any_of(request_.payments.begin(), request_.payments.end(), IsCash);
  }

  void PayAll(ReceiptSums* sums) {
    for (size_t i = 0; i < request_.payments.size() && !problem_; ++i) {
      Pay(request_.payments[i], PlaceOf("payments", i), i > 0);
    }
    if (problem_) return;
    sums->has_paid = is_paid_known_;
    if (receipt_.remaining() == 0 || IsCovered()) return;
    problem_ = {422, "too_little_paid", "/payments",
                fmt::format("of {} there are {} left to pay", MoneyText(receipt_.total()),
                            MoneyText(receipt_.remaining()))};
  }

  // The payment that covers the total registers the document: none may follow.
  void Pay(const ReceiptPayment& payment, const std::string& place, bool is_next) {
    if (is_next && receipt_.remaining() == 0) {
      problem_ = {422, "nothing_left_to_pay", place, "the payments ahead of it cover the total"};
      return;
    }
    Try(place, [&] {
      Payment done;
      if (device_ == nullptr) {
        return receipt_.Pay(kAnyTender, payment.amount.value_or(0), !payment.amount, &done);
      }
      const Tender* tender = nullptr;
      if (const int code = FindPayingTender(device_->tables, IdentifierOf(payment), &tender)) {
        return code;
      }
      return EnterPayment(device_->tables, *tender, payment.amount.value_or(0), !payment.amount,
                          device_->round_cash, &receipt_, &done);
    });
    if (device_ != nullptr || problem_) return;
    all_cash_ = all_cash_ && IsCash(payment);
    // Cash gives change; another tender may, or keep what is above the rest, or be refused.
    if (!IsCash(payment) && receipt_.change() > 0) is_paid_known_ = false;
    if (all_cash_ && CanRound(receipt_.total()) && (receipt_.remaining() == 0 || IsCovered())) {
      is_paid_known_ = false;
    }
  }

  // Whether a device that does not tell if it rounds cash may find the total covered.
  bool IsCovered() const {
    return device_ == nullptr && all_cash_ && receipt_.paid() >= RoundToFiveCents(receipt_.total());
  }

  void Tell(ReceiptSums* sums) const {
    sums->total = receipt_.total();
    sums->paid = receipt_.paid();
    sums->change = receipt_.change();
    const bool has_articles =
        std::any_of(request_.items.begin(), request_.items.end(),
                    [](const ReceiptItem& item) { return !item.article.empty(); });
    if (device_ != nullptr || !has_articles) {
      sums->by_department.emplace();
      for (const auto& [department, sum] : receipt_.by_department()) {
        (*sums->by_department)[department] = sum.amount;
      }
    }
    if (device_ == nullptr) return;
    const std::vector<VatRate>& rates = device_->tables.settings().vat_rates;
    sums->by_vat.emplace();
    for (const auto& [vat, amount] : receipt_.by_vat()) {
      (*sums->by_vat)[vat] = {VatName(rates, vat), amount};
    }
    if (!sums->has_paid) return;
    sums->payments.emplace();
    for (const Payment& payment : receipt_.payments()) {
      sums->payments->push_back({payment.tender->name, payment.amount});
    }
  }

  // Of a device that does not tell its tenders: what is above the total is change.
  inline static const Tender kAnyTender = {
      .id = "", .name = "", .kind = TenderKind::kCash, .gives_change = true};

  const ReceiptRequest& request_;
  const DeviceTables* device_;  // null where it does not tell them
  Receipt receipt_;
  std::optional<ReceiptProblem> problem_;
  // Of a device that does not tell its tables.
  bool is_known_ = true;       // which lines have been taken back
  bool is_paid_known_ = true;  // what it takes, and gives back
  bool all_cash_ = true;       // the payments until now
};

}  // namespace

std::optional<ReceiptProblem> SumReceipt(const ReceiptRequest& receipt, const DeviceTables* device,
                                         ReceiptSums* sums) {
  return Summing(receipt, device).Run(sums);
}

}  // namespace lorimat::door
