// A receipt's fields, one after the other.
#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <iterator>

#include "door/receipt/decimal.h"
#include "door/receipt/json_fields.h"
#include "pal/fiscalcode.h"
#include "register/document/reference.h"

namespace lorimat::door {
namespace {

using nlohmann::json;

constexpr DecimalForm kAmount = {"an amount", 4, 2, 7};
constexpr DecimalForm kPrice = {"a price", 4, 4, 7};
constexpr DecimalForm kQuantity = {"a quantity", 3, 3, 6};
constexpr DecimalForm kPercentage = {"a percentage", 4, 4, 4};
constexpr int kLastNumber = 9999;  // of departments, closings and documents
constexpr int kLastTender = 999;

// By the numbers of CHIU.
struct TenderRow {
  const char* name;
  int number;
};

constexpr TenderRow kTenders[] = {
    {"cash", 1}, {"card", 4}, {"cheque", 3}, {"ticket", 5}, {"credit", 2},
};

// What only some kinds have.
struct FieldRule {
  const char* field;
  DocumentKind kinds[2];
};

constexpr FieldRule kRules[] = {
    {"customer", {DocumentKind::kInvoice, DocumentKind::kInvoice}},
    {"lottery_code", {DocumentKind::kSale, DocumentKind::kSale}},
    {"refers_to", {DocumentKind::kRefund, DocumentKind::kCancel}},
};

// What a sale that is made void as a whole takes from the sale itself.
constexpr const char* kNotOfWhole[] = {"payments", "subtotal_discount", "tax_code", "trailer"};

template <typename Rows>
auto FindName(const Rows& rows, const json& value) {
  return std::find_if(std::begin(rows), std::end(rows), [&](const auto& row) {
    return value.is_string() && value.get_ref<const std::string&>() == row.name;
  });
}

bool IsAlphanumeric(const std::string& text) {
  return std::all_of(text.begin(), text.end(), FiscalCode::IsAlfa);
}

std::optional<ReceiptAdjustment> ReadAdjustment(const JsonFields& fields, const char* name,
                                                std::optional<ReceiptProblem>* problem) {
  const json* value = fields.Find(name);
  if (value == nullptr) return std::nullopt;
  const JsonFields inner(*value, fields.Place(name), problem);
  inner.Allow({"amount", "percent"});
  const std::optional<int64_t> amount = inner.Decimal("amount", kAmount);
  const std::optional<int64_t> percentage = inner.Decimal("percent", kPercentage);
  if ((inner.Find("amount") == nullptr) == (inner.Find("percent") == nullptr)) {
    fields.Refuse(400, "bad_field", name, "it has either amount or percent");
  }
  ReceiptAdjustment adjustment;
  adjustment.is_percentage = percentage.has_value();
  adjustment.value = percentage ? *percentage : amount.value_or(0);
  return adjustment;
}

ReceiptItem ReadItem(const JsonFields& fields, std::optional<ReceiptProblem>* problem) {
  fields.Allow({"department", "article", "description", "quantity", "price", "refund", "void",
                "discount", "surcharge"});
  ReceiptItem item;
  item.department = fields.Whole("department", 1, kLastNumber);
  item.article = fields.Text("article", ReceiptRequest::kLongestArticle);
  if ((fields.Find("department") == nullptr) == (fields.Find("article") == nullptr)) {
    fields.Refuse(400, "bad_field", "department", "an item has either department or article");
  } else if (fields.Find("article") != nullptr && item.article.empty()) {
    fields.Refuse(400, "bad_field", "article", "it is empty");
  }
  item.description = fields.Text("description", ReceiptRequest::kLongestText);
  const std::optional<int64_t> quantity = fields.Decimal("quantity", kQuantity);
  if (quantity == 0) fields.Refuse(400, "bad_number", "quantity", "it is 0");
  item.quantity = static_cast<int32_t>(quantity.value_or(0));
  item.price = fields.Decimal("price", kPrice);
  if (item.price == 0) fields.Refuse(400, "bad_number", "price", "it is 0");
  item.is_refund = fields.Flag("refund");
  item.is_void = fields.Flag("void");
  if (item.is_refund && item.is_void) {
    fields.Refuse(400, "bad_field", "void", "an item is not refund and void at once");
  }
  item.adjustment = ReadAdjustment(fields, "discount", problem);
  if (const auto surcharge = ReadAdjustment(fields, "surcharge", problem)) {
    if (item.adjustment) {
      fields.Refuse(400, "bad_field", "surcharge", "an item has either discount or surcharge");
    }
    item.adjustment = surcharge;
    item.adjustment->is_surcharge = true;
  }
  if (item.adjustment && item.is_void) {
    fields.Refuse(400, "bad_field", item.adjustment->is_surcharge ? "surcharge" : "discount",
                  "a line that takes another back takes its adjustments too");
  }
  return item;
}

ReceiptPayment ReadPayment(const JsonFields& fields) {
  fields.Allow({"tender", "amount"});
  ReceiptPayment payment;
  if (const json* tender = fields.Need("tender")) {
    const auto row = FindName(kTenders, *tender);
    if (row != std::end(kTenders)) {
      payment.tender = row->number;
    } else if (tender->is_string()) {
      fields.Refuse(400, "bad_field", "tender",
                    "it is none of cash, card, cheque, ticket and credit, and no number");
    } else {
      payment.tender = fields.Whole("tender", 1, kLastTender);
    }
  }
  payment.amount = fields.Decimal("amount", kAmount);
  return payment;
}

// "2026-11-22" is "221126": the language's years are those of this century.
std::string ReadDate(const JsonFields& fields) {
  fields.Need("date");
  constexpr size_t kLength = 10;
  const std::string text = fields.Text("date", kLength);
  const auto number = [&text](size_t at, size_t size) {
    int value = 0;
    for (const char c : text.substr(at, size)) {
      if (c < '0' || c > '9') return -1;
      value = 10 * value + (c - '0');
    }
    return value;
  };
  if (text.size() == kLength && text[4] == '-' && text[7] == '-') {
    const int year = number(0, 4);
    const int month = number(5, 2);
    const int day = number(8, 2);
    if (year >= 2000 && year <= 2099 && month > 0 && day > 0 &&
        (std::chrono::year(year) / month / day).ok()) {
      return fmt::format("{:02}{:02}{:02}", day, month, year % 100);
    }
  }
  fields.Refuse(400, "bad_field", "date", "it is no day of 2000 to 2099, such as 2026-11-22");
  return {};
}

ReceiptReference ReadReference(const JsonFields& fields, DocumentKind kind) {
  constexpr size_t kLongestSerial = 20;
  fields.Allow({"closure", "number", "date", "serial", "kind"});
  ReceiptReference reference;
  fields.Need("closure");
  fields.Need("number");
  reference.closure = fields.Whole("closure", 1, kLastNumber);
  reference.number = fields.Whole("number", 1, kLastNumber);
  reference.date = ReadDate(fields);
  reference.serial = fields.Text("serial", kLongestSerial);
  if (!IsAlphanumeric(reference.serial)) {
    fields.Refuse(400, "bad_field", "serial", "it has other characters than letters and digits");
  }
  if (kind == DocumentKind::kCancel && fields.Find("serial") != nullptr) {
    fields.Refuse(400, "bad_field", "serial", "a sale of another register is not made void here");
  }
  if (const json* named = fields.Find("kind")) {
    if (named->is_string()) reference.kind = FindDocumentKind(named->get_ref<const std::string&>());
    if (reference.kind != DocumentKind::kSale && reference.kind != DocumentKind::kInvoice) {
      fields.Refuse(400, "bad_field", "kind", "it is neither receipt nor invoice");
    }
  }
  return reference;
}

DocumentKind ReadKind(const JsonFields& fields) {
  const json* value = fields.Need("kind");
  if (value == nullptr) return DocumentKind::kSale;
  if (value->is_string()) {
    const std::optional<DocumentKind> kind = FindDocumentKind(value->get_ref<const std::string&>());
    if (kind) return *kind;
  }
  fields.Refuse(400, "bad_field", "kind", "it is none of receipt, invoice, refund and void");
  return DocumentKind::kSale;
}

void CheckRules(const JsonFields& fields, DocumentKind kind) {
  for (const FieldRule& rule : kRules) {
    const bool has =
        std::find(std::begin(rule.kinds), std::end(rule.kinds), kind) != std::end(rule.kinds);
    if (!has && fields.Find(rule.field) != nullptr) {
      fields.Refuse(400, "bad_field", rule.field,
                    fmt::format("a document of the kind {} has none", DocumentKindName(kind)));
    }
  }
  if (kind == DocumentKind::kCancel) fields.Need("refers_to");
  const bool is_whole = kind == DocumentKind::kCancel && fields.Find("items") == nullptr;
  for (const char* field : kNotOfWhole) {
    if (is_whole && fields.Find(field) != nullptr) {
      fields.Refuse(400, "bad_field", field, "a void without items has what its sale has");
    }
  }
  if (is_whole) return;
  fields.Need("items");
  fields.Need("payments");
}

void ReadItems(const JsonFields& fields, std::optional<ReceiptProblem>* problem,
               ReceiptRequest* receipt) {
  if (const json* items = fields.List("items", ReceiptRequest::kMostItems)) {
    if (items->empty()) fields.Refuse(400, "bad_field", "items", "it is empty");
    for (const json& item : *items) {
      const std::string place = fmt::format("/items/{}", receipt->items.size());
      receipt->items.push_back(ReadItem(JsonFields(item, place, problem), problem));
      if (*problem) return;
    }
  }
  if (const json* payments = fields.List("payments", ReceiptRequest::kMostPayments)) {
    if (payments->empty()) fields.Refuse(400, "bad_field", "payments", "it is empty");
    for (const json& payment : *payments) {
      const std::string place = fmt::format("/payments/{}", receipt->payments.size());
      receipt->payments.push_back(ReadPayment(JsonFields(payment, place, problem)));
      if (*problem) return;
    }
  }
}

void ReadCodes(const JsonFields& fields, ReceiptRequest* receipt) {
  constexpr size_t kVatNumber = 11;
  constexpr size_t kTaxCode = 16;
  receipt->tax_code = fields.Text("tax_code", ReceiptRequest::kLongestText);
  const size_t length = receipt->tax_code.size();
  if (fields.Find("tax_code") != nullptr &&
      ((length != kVatNumber && length != kTaxCode) || !IsAlphanumeric(receipt->tax_code))) {
    fields.Refuse(400, "bad_field", "tax_code", "it has no 11 or 16 letters and digits");
  }
  receipt->lottery_code = fields.Text("lottery_code", ReceiptRequest::kLongestText);
  if (fields.Find("lottery_code") != nullptr &&
      !FiscalCode::CheckClientID(receipt->lottery_code.c_str())) {
    fields.Refuse(400, "bad_field", "lottery_code", "it has no 8 letters and digits");
  }
}

}  // namespace

bool ReceiptReference::IsOf(const std::string& own_serial) const {
  return Reference{.serial = serial}.IsOf(own_serial);
}

std::optional<ReceiptProblem> ReadReceipt(const json& body, ReceiptRequest* receipt) {
  std::optional<ReceiptProblem> problem;
  const JsonFields fields(body, "", &problem);
  fields.Allow({"kind", "items", "subtotal_discount", "payments", "customer", "tax_code",
                "lottery_code", "refers_to", "trailer", "desk", "reference", "expires_s"});
  receipt->kind = ReadKind(fields);
  CheckRules(fields, receipt->kind);
  if (problem) return problem;
  ReadItems(fields, &problem, receipt);
  receipt->subtotal = ReadAdjustment(fields, "subtotal_discount", &problem);
  receipt->customer =
      fields.Texts("customer", ReceiptRequest::kCustomerLines, ReceiptRequest::kLongestText);
  ReadCodes(fields, receipt);
  if (const json* reference = fields.Find("refers_to")) {
    receipt->refers_to =
        ReadReference(JsonFields(*reference, "/refers_to", &problem), receipt->kind);
  }
  receipt->trailer =
      fields.Texts("trailer", ReceiptRequest::kMostTrailerLines, ReceiptRequest::kLongestText);
  return problem;
}

}  // namespace lorimat::door
