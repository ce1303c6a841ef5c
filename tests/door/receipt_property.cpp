// Receipts by chance, with texts that would like to be more than texts: the translator's parser
// finds in each line exactly the fields that were meant, what is sold to a register has exactly
// these items, sums and payments, and what the sums refuse the register refuses too.
#include <algorithm>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "door/receipt/decimal.h"
#include "door/receipt/receipt_lines.h"
#include "door/receipt/receipt_sums.h"
#include "door_shop.h"
#include "properties/property.h"

namespace lorimat::door {
namespace {

using nlohmann::json;

// As likely at the first case as at the last one.
int Between(int least, int beyond) {
  return *rc::gen::resize(rc::kNominalSize, rc::gen::inRange(least, beyond));
}

std::string SomeText(int longest) {
  static const std::vector<std::string> kPieces = {
      "'",  "''", "\"", ";", ",", "=", "#",  "@", " ",      "', #4=0.01", "#10 ",   "VERO",   "A",
      "b1", "%",  "\\", "{", "}", "~", "/*", "0", "\u00e8", "\u20ac",     "\u00a0", "\u00ff", "- "};
  std::string text;
  const int count = Between(1, longest);
  for (int i = 0; i < count; ++i) text += *rc::gen::elementOf(kPieces);
  return text;
}

std::string SomeMoney(int most_cents) { return MoneyText(int64_t{Between(1, most_cents)} * 100); }

bool OneOf(int count) { return Between(0, count) == 0; }

json SomeAdjustment() {
  if (OneOf(2)) return {{"amount", SomeMoney(60)}};
  return {{"percent", DecimalText(Between(10000, 300000), 4, 0)}};
}

json SomeItem() {
  json item;
  if (OneOf(40)) {
    item["article"] = SomeText(4);
  } else {
    item["department"] = *rc::gen::weightedElement<int>({{40, 1}, {20, 2}, {10, 40}, {1, 41}});
  }
  if (!OneOf(4)) item["description"] = SomeText(5);
  if (OneOf(3)) item["quantity"] = DecimalText(Between(1, 5000), 3, 0);
  if (!OneOf(80)) item["price"] = OneOf(5) ? "3.1415" : SomeMoney(2000);
  if (OneOf(10)) {
    item["refund"] = true;
  } else if (OneOf(40)) {
    item["void"] = true;
  }
  if (OneOf(4) && !item.contains("void"))
    item[OneOf(3) ? "surcharge" : "discount"] = SomeAdjustment();
  return item;
}

json SomeReceipt() {
  json body;
  body["kind"] =
      *rc::gen::weightedElement<std::string>({{6, "receipt"}, {2, "invoice"}, {1, "refund"}});
  if (body["kind"] == "invoice") {
    body["customer"] = {SomeText(6), "", SomeText(3)};
  }
  body["items"] = json::array();
  const int items = Between(1, 6);
  for (int i = 0; i < items; ++i) {
    body["items"].push_back(SomeItem());
    // A line that takes back needs one that it takes.
    if (OneOf(5) && !body["items"].back().contains("refund")) {
      json taken = body["items"].back();
      for (const char* name : {"discount", "surcharge"}) taken.erase(name);
      taken["void"] = true;
      body["items"].push_back(taken);
    }
  }
  if (OneOf(4)) body["subtotal_discount"] = SomeAdjustment();
  body["payments"] = json::array();
  const std::vector<json> tenders = {"cash", "card", "cheque", "ticket", "credit", 125, 14, 77};
  if (OneOf(3)) {
    body["payments"].push_back(
        {{"tender", *rc::gen::elementOf(tenders)}, {"amount", SomeMoney(800)}});
  }
  body["payments"].push_back(
      {{"tender", *rc::gen::weightedElement<json>({{20, "cash"}, {10, "card"}, {1, 77}})}});
  if (OneOf(4)) body["payments"].back()["amount"] = SomeMoney(9000);
  if (OneOf(4)) body["trailer"] = {SomeText(5), "", SomeText(5)};
  if (OneOf(6)) body["tax_code"] = "RSSMRA80A01H501U";
  if (OneOf(6) && body["kind"] == "receipt") body["lottery_code"] = "ABCD1234";
  return body;
}

// What the register has of a line.
struct Sold {
  LineKind kind;
  std::string description;
  int department;
  int32_t quantity;
  bool operator==(const Sold&) const = default;
};

std::vector<Sold> Wanted(const ReceiptRequest& receipt) {
  std::vector<Sold> wanted;
  for (const ReceiptItem& item : receipt.items) {
    if (item.is_void) continue;
    wanted.push_back({item.is_refund ? LineKind::kRefund : LineKind::kSale, item.description,
                      item.department, item.quantity == 0 ? kOnePiece : item.quantity});
  }
  return wanted;
}

// With the descriptions that were given.
std::vector<Sold> Found(const StoredDocument& document, const std::vector<Sold>& wanted) {
  std::vector<Sold> found;
  for (const DocumentLine& line : document.lines) {
    if (line.adjustment_type != 0) continue;
    const bool given = found.size() >= wanted.size() || !wanted[found.size()].description.empty();
    found.push_back({line.kind, given ? line.description : "", line.department, line.quantity});
  }
  return found;
}

void CheckSold(const ReceiptRequest& receipt, const ReceiptSums& sums,
               const StoredDocument& document) {
  const std::vector<Sold> wanted = Wanted(receipt);
  RC_ASSERT((Found(document, wanted) == wanted));
  RC_ASSERT(document.total == sums.total);
  RC_ASSERT(document.change == sums.change);
  RC_ASSERT(document.payments.size() == sums.payments->size());
  for (size_t i = 0; i < sums.payments->size(); ++i) {
    RC_ASSERT(document.payments[i].amount == (*sums.payments)[i].amount);
  }
  for (const auto& [vat, amount] : document.by_vat) {
    RC_ASSERT((sums.by_vat->count(vat) == 1 && sums.by_vat->at(vat).amount == amount));
  }
  const auto adjustments = [](const auto& all, auto is_one) {
    return std::count_if(all.begin(), all.end(), is_one);
  };
  const auto meant =
      adjustments(receipt.items, [](const auto& item) { return item.adjustment.has_value(); }) +
      (receipt.subtotal ? 1 : 0);
  const auto made = adjustments(document.lines,
                                [](const DocumentLine& line) { return line.adjustment_type != 0; });
  RC_ASSERT(made == meant);
}

// What is said of a receipt without the tables is true whatever they are; of those that are told,
// with and without cash that comes to five cents.
void CheckUntold(const ReceiptRequest& receipt, const Tables& tables, Seen* seen) {
  const bool priced = std::all_of(receipt.items.begin(), receipt.items.end(),
                                  [](const ReceiptItem& item) { return item.price.has_value(); });
  ReceiptSums untold;
  const auto refused = SumReceipt(receipt, nullptr, &untold);
  RC_ASSERT(priced || (refused && refused->code == "no_price"));
  if (!priced) return;
  if (refused) seen->Add("untold: " + refused->code);
  for (const bool round_cash : {false, true}) {
    const DeviceTables device = {tables, round_cash};
    ReceiptSums told;
    const auto problem = SumReceipt(receipt, &device, &told);
    // What is refused is refused by each; who is taken at his word may find more that is wrong.
    RC_ASSERT(!refused || problem);
    if (problem || !untold.is_known) continue;
    RC_ASSERT(untold.items == told.items);
    RC_ASSERT(untold.subtotal == told.subtotal);
    RC_ASSERT(untold.total == told.total);
    if (untold.by_department) RC_ASSERT(*untold.by_department == *told.by_department);
    RC_ASSERT((!untold.by_vat && !untold.payments));
    seen->Add(untold.has_paid ? "untold: paid" : "untold: paid by the device's rules");
    if (!untold.has_paid) continue;
    RC_ASSERT(untold.paid == told.paid);
    RC_ASSERT(untold.change == told.change);
  }
  if (!untold.is_known) seen->Add("untold: taken back by a name");
}

TEST(ReceiptProperty, TheRegisterSeesExactlyWhatWasMeant) {
  Seen seen("receipts");
  const PropertyRun run = RunOf(400);
  DoorShop shop;
  int count = 0;
  Holds(run, [&] {
    const json body = SomeReceipt();
    ReceiptRequest receipt;
    const auto problem = ReadReceipt(body, &receipt);
    if (problem) {
      // Chance makes texts that are too long, and nothing else that is no good.
      RC_ASSERT(problem->code == "too_long");
      seen.Add("too long");
      return;
    }
    std::vector<std::string> lines;
    for (const ReceiptLine& line : LinesOf(receipt)) {
      lines.push_back(LineText(line, DoorShop::judge().quote()));
      LineJudge::Fields fields;
      for (const ReceiptField& field : line.fields) fields.emplace_back(field.number, field.value);
      RC_ASSERT(DoorShop::judge().ReadsAs(lines.back(), line.opcode, fields));
    }
    const Judged judged = DoorShop::judge().Judge(lines, false);
    RC_ASSERT((!judged.fault && !judged.refused && judged.effect == JobEffect::kDocument));

    const VirtualRegister& device = shop.device->device();
    ReceiptSums sums;
    const DeviceTables tables = {device.tables(), false};
    const auto refused = SumReceipt(receipt, &tables, &sums);
    CheckUntold(receipt, device.tables(), &seen);
    const int64_t before = shop.documents();
    const Job job = shop.Submit("k" + std::to_string(++count), lines);
    shop.Drain();
    if (refused) {
      seen.Add("refused: " + refused->code);
      // A payment behind the one that settles is no part of the document.
      const bool sold = refused->code == "nothing_left_to_pay";
      RC_ASSERT(shop.Get(job.id).state == (sold ? JobState::kConfirmed : JobState::kRejected));
      return;
    }
    seen.Add("sold");
    for (const ReceiptItem& item : receipt.items) {
      if (item.is_void) seen.Add("taken back");
      if (item.is_refund) seen.Add("refunded");
      if (item.adjustment) seen.Add("adjusted");
    }
    if (receipt.subtotal) seen.Add("subtotal adjusted");
    if (sums.payments->size() > 1) seen.Add("paid in parts");
    if (!receipt.trailer.empty()) seen.Add("trailer");
    RC_ASSERT(shop.Get(job.id).state == JobState::kConfirmed);
    RC_ASSERT(shop.documents() == before + 1);
    CheckSold(receipt, sums, *device.store().FindById(before + 1));
  });
  seen.Require(run, {{"sold", 100},
                     {"taken back", 20},
                     {"refunded", 10},
                     {"adjusted", 40},
                     {"subtotal adjusted", 20},
                     {"paid in parts", 10},
                     {"trailer", 20},
                     {"refused: refused", 20},
                     {"refused: too_little_paid", 5},
                     {"untold: paid", 50},
                     {"untold: paid by the device's rules", 20},
                     {"untold: taken back by a name", 1},
                     {"untold: too_little_paid", 5},
                     {"untold: nothing_left_to_pay", 1}});
}

}  // namespace
}  // namespace lorimat::door
