#include "door/receipt/receipt_lines.h"

#include <utility>

#include "door/receipt/decimal.h"
#include "pal/peripherals/keyboard/functioncode.h"

namespace lorimat::door {
namespace {

constexpr int kKey = 9;          // INP
constexpr int kSale = 10;        // VEND
constexpr int kPayment = 11;     // CHIU
constexpr int kAttachment = 21;  // ALLEG
constexpr int kInvoice = 23;     // FATTURA
constexpr int kRefund = 24;      // NOTACRED
constexpr int kVoid = 124;       // DOCANNULLO

// SCONTO, PERCA, MAGGIORAZ, PERCB.
constexpr int kAdjustments[2][2] = {{12, 16}, {80, 17}};

ReceiptField Number(int field, int64_t value) { return {field, std::to_string(value)}; }
ReceiptField Text(int field, std::string value) { return {field, std::move(value), true}; }
ReceiptField Flag(int field) { return {field, "1"}; }
// With its point, so that no mode of the device reads the digits as cents.
ReceiptField Money(int field, int64_t amount) { return {field, MoneyText(amount)}; }

class LineMaker {
 public:
  std::vector<ReceiptLine> Make(const ReceiptRequest& receipt) {
    Open(receipt);
    for (const ReceiptItem& item : receipt.items) {
      Sell(item);
      if (item.adjustment) Adjust(*item.adjustment, false);
    }
    Codes(receipt);
    if (receipt.subtotal) Adjust(*receipt.subtotal, true);
    // What is printed behind the payment: the document is held open for it.
    if (!receipt.trailer.empty()) Add(kAttachment, {Flag(1)});
    for (const ReceiptPayment& payment : receipt.payments) {
      Add(kPayment, {Number(1, payment.tender)});
      if (payment.amount) lines_.back().fields.push_back(Money(2, *payment.amount));
    }
    for (const std::string& text : receipt.trailer) {
      Add(kAttachment, {});
      if (!text.empty()) lines_.back().fields.push_back(Text(3, text));
    }
    if (!receipt.trailer.empty()) Add(kAttachment, {Flag(2)});
    return std::move(lines_);
  }

 private:
  void Add(int opcode, std::vector<ReceiptField> fields) {
    lines_.push_back({opcode, std::move(fields)});
  }

  // The first sale opens a receipt.
  void Open(const ReceiptRequest& receipt) {
    switch (receipt.kind) {
      case DocumentKind::kSale:
        break;
      case DocumentKind::kInvoice: {
        constexpr int kTypeOfInvoice = 2;
        constexpr int kFirstLine = 4;
        Add(kInvoice, {Number(1, kTypeOfInvoice)});
        int field = kFirstLine;
        for (const std::string& text : receipt.customer) {
          if (!text.empty()) lines_.back().fields.push_back(Text(field, text));
          ++field;
        }
        break;
      }
      case DocumentKind::kRefund:
        Add(kRefund, Reference(receipt));
        if (receipt.refers_to && !receipt.refers_to->serial.empty()) {
          lines_.back().fields.push_back(Text(4, receipt.refers_to->serial));
        }
        break;
      case DocumentKind::kCancel:
        Add(kVoid, Reference(receipt));
        if (receipt.items.empty()) lines_.back().fields.push_back(Flag(5));
        break;
    }
  }

  static std::vector<ReceiptField> Reference(const ReceiptRequest& receipt) {
    if (!receipt.refers_to) return {};
    return {Number(1, receipt.refers_to->number),
            {2, receipt.refers_to->date},
            Number(3, receipt.refers_to->closure)};
  }

  void Sell(const ReceiptItem& item) {
    constexpr int kPlaces = 3;
    std::vector<ReceiptField> fields;
    if (item.department != 0) fields.push_back(Number(1, item.department));
    if (!item.article.empty()) fields.push_back(Text(2, item.article));
    if (item.quantity != 0) fields.push_back({3, DecimalText(item.quantity, kPlaces, 0)});
    if (item.price) fields.push_back(Money(4, *item.price));
    if (item.is_refund) fields.push_back(Flag(5));
    if (item.is_void) fields.push_back(Flag(6));
    if (!item.description.empty()) fields.push_back(Text(7, item.description));
    Add(kSale, std::move(fields));
  }

  void Adjust(const ReceiptAdjustment& adjustment, bool on_subtotal) {
    Add(kAdjustments[adjustment.is_surcharge ? 1 : 0][adjustment.is_percentage ? 1 : 0],
        {Money(1, adjustment.value)});
    if (on_subtotal) lines_.back().fields.push_back(Flag(2));
  }

  void Codes(const ReceiptRequest& receipt) {
    if (!receipt.tax_code.empty()) {
      Add(kKey, {Text(2, receipt.tax_code), Number(4, FunctionCode::kTaxCode)});
    }
    if (!receipt.lottery_code.empty()) {
      Add(kKey, {Number(4, FunctionCode::kLotteryCode)});
      Add(kKey, {Text(3, receipt.lottery_code), Number(4, FunctionCode::kConfirm)});
    }
  }

  std::vector<ReceiptLine> lines_;
};

}  // namespace

std::vector<ReceiptLine> LinesOf(const ReceiptRequest& receipt) {
  return LineMaker().Make(receipt);
}

std::string LineText(const ReceiptLine& line, char quote) {
  std::string text = "#" + std::to_string(line.opcode);
  const char* separator = " ";
  for (const ReceiptField& field : line.fields) {
    text += separator + ("#" + std::to_string(field.number)) + "=";
    separator = ", ";
    if (!field.is_text) {
      text += field.value;
      continue;
    }
    text += quote;
    for (const char c : field.value) {
      if (c == quote) text += quote;
      text += c;
    }
    text += quote;
  }
  return text;
}

}  // namespace lorimat::door
