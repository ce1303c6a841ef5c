#include "door/http/document_json.h"

#include <iterator>

#include "door/job/register_device.h"
#include "door/judge/code_page.h"
#include "door/receipt/decimal.h"

namespace lorimat::door {
namespace {

using nlohmann::ordered_json;

constexpr const char* kLineKinds[] = {"sale",    "refund",     "deposit",
                                      "voucher", "adjustment", "subtotal_adjustment"};
static_assert(std::size(kLineKinds) == static_cast<size_t>(LineKind::kSubtotalAdjustment) + 1);

// What a line does not have is null.
ordered_json LineJson(const DocumentLine& line) {
  constexpr int kPlacesOfQuantity = 3;
  constexpr int kPlacesOfPrice = 4;
  const bool is_item = line.kind < LineKind::kAdjustment;
  const auto known = [](bool there, auto value) {
    return there ? ordered_json(std::move(value)) : ordered_json();
  };
  ordered_json json;
  json["kind"] = kLineKinds[static_cast<size_t>(line.kind)];
  json["description"] = FromDevice(line.description);
  json["article"] = known(!line.article.empty(), FromDevice(line.article));
  json["department"] = known(line.department != 0, line.department);
  json["vat"] = known(line.vat != 0, line.vat);
  json["quantity"] = known(is_item, DecimalText(line.quantity, kPlacesOfQuantity, 0));
  json["price"] = known(is_item, DecimalText(line.unit_price, kPlacesOfPrice, 2));
  json["amount"] = MoneyText(line.amount);
  json["taken_back"] = MoneyText(line.taken_back);
  return json;
}

}  // namespace

ordered_json DocumentJson(const JobDocument& document) {
  ordered_json json;
  json["closure"] = document.closure;
  // A day closing has no other number.
  json["number"] = document.number == 0 ? ordered_json() : ordered_json(document.number);
  json["kind"] = document.kind ? ordered_json(DocumentKindName(*document.kind)) : ordered_json();
  json["serial"] = FromDevice(document.serial);
  json["time"] = document.time.empty() ? ordered_json() : ordered_json(document.time);
  json["total"] = document.total ? ordered_json(MoneyText(*document.total)) : ordered_json();
  return json;
}

ordered_json KeptDocumentJson(const StoredDocument& document, const std::string& serial,
                              const DeviceTables* tables) {
  ordered_json json = DocumentJson(FactsOf(document, serial));
  json["operator"] = document.operator_number;
  json["items"] = ordered_json::array();
  for (const DocumentLine& line : document.lines) json["items"].push_back(LineJson(line));
  json["payments"] = ordered_json::array();
  for (const DocumentPayment& payment : document.payments) {
    const Tender* tender = tables ? tables->tables.FindTender(payment.tender) : nullptr;
    json["payments"].push_back({{"tender", FromDevice(tender ? tender->name : payment.tender)},
                                {"amount", MoneyText(payment.amount)}});
  }
  json["change"] = MoneyText(document.change);
  json["refers_to"] = nullptr;
  if (document.referred_closure != 0) {
    json["refers_to"] = {{"closure", document.referred_closure},
                         {"number", document.referred_number}};
  }
  json["lottery_code"] = document.lottery_code.empty()
                             ? ordered_json()
                             : ordered_json(FromDevice(document.lottery_code));
  json["voided"] = document.voided;
  return json;
}

}  // namespace lorimat::door
