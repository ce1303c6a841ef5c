#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "door/http/api.h"
#include "door/judge/line_judge.h"
#include "door/receipt/decimal.h"
#include "door/receipt/receipt_lines.h"
#include "door/receipt/receipt_request.h"
#include "door/receipt/receipt_sums.h"
#include "language/shipped_language.h"
#include "receipt_sums_of.h"

namespace lorimat::door {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

// A coffee at 1.20, paid in cash.
json Coffee() {
  return {{"kind", "receipt"},
          {"items", {{{"department", 1}, {"price", "1.20"}}}},
          {"payments", {{{"tender", "cash"}}}}};
}

// The same with other fields, or in the place of its own.
json CoffeeWith(const json& fields) {
  json body = Coffee();
  body.update(fields);
  return body;
}

json OneItem(json item) { return CoffeeWith({{"items", json::array({std::move(item)})}}); }
json Payments(json payments) { return CoffeeWith({{"payments", std::move(payments)}}); }

std::vector<std::string> Lines(const json& body) {
  ReceiptRequest receipt;
  const std::optional<ReceiptProblem> problem = ReadReceipt(body, &receipt);
  EXPECT_FALSE(problem) << problem->code << " " << problem->pointer << " " << problem->detail;
  std::vector<std::string> lines;
  for (const ReceiptLine& line : LinesOf(receipt)) lines.push_back(LineText(line, '\''));
  return lines;
}

// "bad_field /items/0/price", or empty.
std::string ProblemOf(const json& body) {
  ReceiptRequest receipt;
  const std::optional<ReceiptProblem> problem = ReadReceipt(body, &receipt);
  if (!problem) return {};
  EXPECT_FALSE(problem->detail.empty());
  EXPECT_EQ(problem->status, problem->code == "too_large" ? 413 : 400);
  return problem->code + " " + problem->pointer;
}

RegisterSettings Shop() {
  RegisterSettings settings;
  settings.articles = {{"4711", "PANE", 2, 35000}};
  return settings;
}

DeviceTables ShopTables(bool round_cash = false) {
  static const Tables tables(Shop());
  return {tables, round_cash};
}

std::optional<ReceiptProblem> Sum(const json& body, ReceiptSums* sums) {
  const DeviceTables device = ShopTables();
  return SumWith(body, &device, sums);
}

ReceiptSums SumsOf(const json& body, bool round_cash = false) {
  const DeviceTables device = ShopTables(round_cash);
  return SumsWith(body, &device);
}

std::string RefusalOf(const json& body) {
  const DeviceTables device = ShopTables();
  return RefusalWith(body, &device);
}

TEST(Decimal, ReadsDigitsAndAPoint) {
  EXPECT_EQ(ReadDecimal("3.90", 4, 2, 7), 39000);
  EXPECT_EQ(ReadDecimal("0.750", 3, 3, 6), 750);
  EXPECT_EQ(ReadDecimal("12", 4, 2, 7), 120000);
  EXPECT_EQ(ReadDecimal("0", 4, 2, 7), 0);
  EXPECT_EQ(ReadDecimal("9999999.99", 4, 2, 7), 99999999900);
  for (const char* text : {"", ".", "1.", ".5", "-1", "+1", "1e2", "1E2", "1,5", "1 ", " 1",
                           "1.2.3", "1.234", "12345678", "0x1", "1.2\n", "NaN", "\xD9\xA1"}) {
    EXPECT_EQ(ReadDecimal(text, 4, 2, 7), std::nullopt) << text;
  }
}

TEST(Decimal, IsWrittenWithWhatItNeeds) {
  EXPECT_EQ(MoneyText(39000), "3.90");
  EXPECT_EQ(MoneyText(0), "0.00");
  EXPECT_EQ(MoneyText(12345), "1.2345");
  EXPECT_EQ(MoneyText(-50), "-0.005");
  EXPECT_EQ(DecimalText(2000, 3, 0), "2");
  EXPECT_EQ(DecimalText(750, 3, 0), "0.75");
  EXPECT_EQ(DecimalText(INT64_MIN, 4, 2), "-922337203685477.5808");
}

TEST(ReceiptLines, AReceipt) {
  EXPECT_THAT(Lines(Coffee()), ElementsAre("#10 #1=1, #4=1.20", "#11 #1=1"));
}

TEST(ReceiptLines, AnItemHasWhatWasGiven) {
  const auto item = [](const json& fields) { return Lines(OneItem(fields)).front(); };
  EXPECT_EQ(item({{"article", "47'11"}}), "#10 #2='47''11'");
  EXPECT_EQ(item({{"department", 40}, {"quantity", "0.750"}, {"price", "3.9"}}),
            "#10 #1=40, #3=0.75, #4=3.90");
  EXPECT_EQ(item({{"department", 2}, {"price", "1"}, {"refund", true}}), "#10 #1=2, #4=1.00, #5=1");
  EXPECT_EQ(item({{"department", 2}, {"price", "1"}, {"void", true}}), "#10 #1=2, #4=1.00, #6=1");
  EXPECT_EQ(item({{"department", 2}, {"price", "1.2345"}, {"description", "CAFF\u00c8"}}),
            "#10 #1=2, #4=1.2345, #7='CAFF\xC8'");
  EXPECT_EQ(item({{"department", 2}, {"refund", false}, {"description", ""}}), "#10 #1=2");
}

TEST(ReceiptLines, NoTextLeavesItsQuotes) {
  const auto text = [](const char* description) {
    return Lines(OneItem({{"department", 1}, {"description", description}})).front();
  };
  EXPECT_EQ(text("', #4=0.01, #7='"), "#10 #1=1, #7=''', #4=0.01, #7='''");
  EXPECT_EQ(text("; @x"), "#10 #1=1, #7='; @x'");
  EXPECT_EQ(text("'"), "#10 #1=1, #7=''''");
  EXPECT_EQ(LineText({10, {{7, "a\"b'", true}}}, '"'), "#10 #7=\"a\"\"b'\"");
}

TEST(ReceiptLines, AdjustmentsOfItemsAndSubtotal) {
  const json item = {{"department", 1}, {"price", "10"}};
  const auto adjusted = [&item](const json& fields) {
    json changed = item;
    changed.update(fields);
    return Lines(OneItem(changed)).at(1);
  };
  EXPECT_EQ(adjusted({{"discount", {{"amount", "1"}}}}), "#12 #1=1.00");
  EXPECT_EQ(adjusted({{"discount", {{"percent", "12.5"}}}}), "#16 #1=12.50");
  EXPECT_EQ(adjusted({{"surcharge", {{"amount", "0.50"}}}}), "#80 #1=0.50");
  EXPECT_EQ(adjusted({{"surcharge", {{"percent", "7"}}}}), "#17 #1=7.00");
  EXPECT_THAT(Lines(CoffeeWith({{"subtotal_discount", {{"percent", "10"}}}})),
              ElementsAre("#10 #1=1, #4=1.20", "#16 #1=10.00, #2=1", "#11 #1=1"));
}

TEST(ReceiptLines, EachTenderByItsNumber) {
  const std::vector<std::pair<json, std::string>> rows = {
      {"cash", "#11 #1=1"},   {"card", "#11 #1=4"},   {"cheque", "#11 #1=3"},
      {"ticket", "#11 #1=5"}, {"credit", "#11 #1=2"}, {125, "#11 #1=125"}};
  for (const auto& [tender, line] : rows) {
    EXPECT_EQ(Lines(Payments({{{"tender", tender}}})).at(1), line);
  }
  EXPECT_THAT(Lines(Payments({{{"tender", "card"}, {"amount", "1"}}, {{"tender", "cash"}}})),
              ElementsAre("#10 #1=1, #4=1.20", "#11 #1=4, #2=1.00", "#11 #1=1"));
}

TEST(ReceiptLines, InvoiceRefundAndVoid) {
  const json reference = {{"closure", 12}, {"number", 7}, {"date", "2026-02-28"}};
  EXPECT_EQ(
      Lines(CoffeeWith({{"kind", "invoice"}, {"customer", {"ROSSI SRL", "", "20100 MILANO"}}}))
          .front(),
      "#23 #1=2, #4='ROSSI SRL', #6='20100 MILANO'");
  EXPECT_EQ(Lines(CoffeeWith({{"kind", "invoice"}})).front(), "#23 #1=2");
  EXPECT_EQ(Lines(CoffeeWith({{"kind", "refund"}})).front(), "#24");
  json of_other = reference;
  of_other["serial"] = "99IEB012345";
  EXPECT_EQ(Lines(CoffeeWith({{"kind", "refund"}, {"refers_to", of_other}})).front(),
            "#24 #1=7, #2=280226, #3=12, #4='99IEB012345'");
  EXPECT_EQ(Lines(CoffeeWith({{"kind", "void"}, {"refers_to", reference}})).front(),
            "#124 #1=7, #2=280226, #3=12");
  EXPECT_THAT(Lines({{"kind", "void"}, {"refers_to", reference}}),
              ElementsAre("#124 #1=7, #2=280226, #3=12, #5=1"));
}

TEST(ReceiptLines, CodesAndTrailer) {
  EXPECT_THAT(Lines(CoffeeWith({{"tax_code", "01234567897"},
                                {"lottery_code", "ABCD1234"},
                                {"trailer", {"GRAZIE", ""}}})),
              ElementsAre("#10 #1=1, #4=1.20", "#9 #2='01234567897', #4=61", "#9 #4=167",
                          "#9 #3='ABCD1234', #4=145", "#21 #1=1", "#11 #1=1", "#21 #3='GRAZIE'",
                          "#21", "#21 #2=1"));
}

TEST(ReadReceipt, WhatIsMissingOrUnknownIsNamedWithItsPlace) {
  EXPECT_EQ(ProblemOf(json::array()), "bad_field ");
  EXPECT_EQ(ProblemOf(json::object()), "missing_field /kind");
  for (const char* field : {"kind", "items", "payments"}) {
    json body = Coffee();
    body.erase(field);
    EXPECT_EQ(ProblemOf(body), std::string("missing_field /") + field);
  }
  EXPECT_EQ(ProblemOf(CoffeeWith({{"a~b/c", 1}})), "unknown_field /a~0b~1c");
  EXPECT_EQ(ProblemOf(OneItem({{"department", 1}, {"Price", "1"}})),
            "unknown_field /items/0/Price");
  EXPECT_EQ(ProblemOf(Payments({{{"tender", "cash"}, {"change", "1"}}})),
            "unknown_field /payments/0/change");
  EXPECT_EQ(ProblemOf(Payments({{{"amount", "1"}}})), "missing_field /payments/0/tender");
  EXPECT_EQ(ProblemOf(CoffeeWith({{"kind", "Receipt"}})), "bad_field /kind");
  EXPECT_EQ(ProblemOf(CoffeeWith({{"items", json::array()}})), "bad_field /items");
  EXPECT_EQ(ProblemOf(CoffeeWith({{"items", "x"}})), "bad_field /items");
  EXPECT_EQ(ProblemOf(CoffeeWith({{"items", {1}}})), "bad_field /items/0");
  EXPECT_EQ(ProblemOf(Payments(json::array())), "bad_field /payments");
  EXPECT_EQ(ProblemOf(Payments({{{"tender", "gold"}}})), "bad_field /payments/0/tender");
  EXPECT_EQ(ProblemOf(Payments({{{"tender", 0}}})), "bad_field /payments/0/tender");
  EXPECT_EQ(ProblemOf(Payments({{{"tender", 1.5}}})), "bad_field /payments/0/tender");
}

TEST(ReadReceipt, MoneyIsATextOfDigits) {
  const auto price = [](const json& value) {
    return ProblemOf(OneItem({{"department", 1}, {"price", value}}));
  };
  EXPECT_EQ(price(1.2), "number_not_text /items/0/price");
  EXPECT_EQ(price(1), "number_not_text /items/0/price");
  for (const char* text : {"", "-1", "1e2", "1,20", "1.23456", "12345678", " 1", "abc"}) {
    EXPECT_EQ(price(text), "bad_number /items/0/price") << text;
  }
  EXPECT_EQ(price(nullptr), "bad_field /items/0/price");
  EXPECT_EQ(price("0.00"), "bad_number /items/0/price");
  EXPECT_EQ(price("1.2345"), "");
  const auto quantity = [](const json& value) {
    return ProblemOf(OneItem({{"department", 1}, {"quantity", value}}));
  };
  EXPECT_EQ(quantity(2), "number_not_text /items/0/quantity");
  EXPECT_EQ(quantity("0"), "bad_number /items/0/quantity");
  EXPECT_EQ(quantity("0.000"), "bad_number /items/0/quantity");
  EXPECT_EQ(quantity("0.7501"), "bad_number /items/0/quantity");
  EXPECT_EQ(ProblemOf(Payments({{{"tender", "cash"}, {"amount", "1.234"}}})),
            "bad_number /payments/0/amount");
  EXPECT_EQ(ProblemOf(Payments({{{"tender", "cash"}, {"amount", 5}}})),
            "number_not_text /payments/0/amount");
}

TEST(ReadReceipt, AnItemIsOneThing) {
  const auto item = [](json fields) {
    if (!fields.contains("department")) fields["department"] = 1;
    return ProblemOf(OneItem(fields));
  };
  EXPECT_EQ(ProblemOf(OneItem({{"price", "1"}})), "bad_field /items/0/department");
  EXPECT_EQ(item({{"article", "1"}}), "bad_field /items/0/department");
  EXPECT_EQ(ProblemOf(OneItem({{"article", ""}})), "bad_field /items/0/article");
  EXPECT_EQ(item({{"department", 0}}), "bad_field /items/0/department");
  EXPECT_EQ(item({{"department", "1"}}), "bad_field /items/0/department");
  EXPECT_EQ(item({{"department", 1e300}}), "bad_field /items/0/department");
  EXPECT_EQ(item({{"department", 1.0}}), "");
  EXPECT_EQ(item({{"refund", 1}}), "bad_field /items/0/refund");
  EXPECT_EQ(item({{"refund", true}, {"void", true}}), "bad_field /items/0/void");
  EXPECT_EQ(item({{"discount", json::object()}}), "bad_field /items/0/discount");
  EXPECT_EQ(item({{"discount", {{"amount", "1"}, {"percent", "1"}}}}),
            "bad_field /items/0/discount");
  EXPECT_EQ(item({{"discount", "1"}}), "bad_field /items/0/discount");
  EXPECT_EQ(item({{"discount", {{"percent", 10}}}}), "number_not_text /items/0/discount/percent");
  EXPECT_EQ(item({{"discount", {{"amount", "1"}}}, {"surcharge", {{"amount", "1"}}}}),
            "bad_field /items/0/surcharge");
  EXPECT_EQ(item({{"discount", {{"amount", "1"}}}, {"void", true}}), "bad_field /items/0/discount");
}

TEST(ReadReceipt, TextsAreThoseOfTheDevice) {
  const auto text = [](const std::string& value) {
    return ProblemOf(OneItem({{"department", 1}, {"description", value}}));
  };
  EXPECT_EQ(text("a\nb"), "control_character /items/0/description");
  EXPECT_EQ(text(std::string("a\0b", 3)), "control_character /items/0/description");
  EXPECT_EQ(text("\x1b|cA"), "control_character /items/0/description");
  EXPECT_EQ(text("\u4f60"), "not_in_code_page /items/0/description");
  EXPECT_EQ(text("\u20ac"), "");
  EXPECT_EQ(text(std::string(50, 'a')), "");
  EXPECT_EQ(text(std::string(51, 'a')), "too_long /items/0/description");
  // Characters count, not the bytes of UTF-8.
  std::string accents;
  for (int i = 0; i < 50; ++i) accents += "\u00e8";
  EXPECT_EQ(text(accents), "");
  EXPECT_EQ(ProblemOf(CoffeeWith({{"trailer", {"a", 1}}})), "bad_field /trailer/1");
  EXPECT_EQ(ProblemOf(CoffeeWith({{"trailer", {"a", "\t"}}})), "control_character /trailer/1");
  EXPECT_EQ(ProblemOf(OneItem({{"article", std::string(21, '1')}})), "too_long /items/0/article");
}

TEST(ReadReceipt, EachKindHasItsFields) {
  const json reference = {{"closure", 1}, {"number", 1}, {"date", "2026-02-28"}};
  EXPECT_EQ(ProblemOf(CoffeeWith({{"customer", {"A"}}})), "bad_field /customer");
  EXPECT_EQ(ProblemOf(CoffeeWith({{"refers_to", reference}})), "bad_field /refers_to");
  EXPECT_EQ(ProblemOf(CoffeeWith({{"kind", "invoice"}, {"lottery_code", "ABCD1234"}})),
            "bad_field /lottery_code");
  EXPECT_EQ(ProblemOf(CoffeeWith({{"kind", "void"}})), "missing_field /refers_to");
  EXPECT_EQ(
      ProblemOf({{"kind", "void"}, {"refers_to", reference}, {"payments", {{{"tender", "cash"}}}}}),
      "bad_field /payments");
  EXPECT_EQ(ProblemOf(CoffeeWith({{"kind", "invoice"}, {"customer", json(6, "A")}})),
            "too_large /customer");
  const auto refund = [&reference](const json& fields) {
    json changed = reference;
    changed.update(fields);
    return ProblemOf(CoffeeWith({{"kind", "refund"}, {"refers_to", changed}}));
  };
  EXPECT_EQ(refund({{"serial", "99IEB012345"}}), "");
  EXPECT_EQ(refund({{"serial", "99 '"}}), "bad_field /refers_to/serial");
  EXPECT_EQ(refund({{"closure", 10000}}), "bad_field /refers_to/closure");
  for (const json& kind : {json("refund"), json("void"), json("Receipt"), json(1), json(nullptr)}) {
    EXPECT_EQ(refund({{"kind", kind}}), "bad_field /refers_to/kind") << kind;
  }
  EXPECT_EQ(refund({{"kind", "invoice"}, {"serial", "99A"}}), "");
  EXPECT_EQ(refund({{"kind", "receipt"}}), "");
  for (const char* date : {"", "2026-02-29", "2026-13-01", "2026-00-01", "2026-01-00", "1999-12-31",
                           "20260228", "2026-2-28", "28-02-2026", "2026/02/28", "2026-0a-01"}) {
    EXPECT_EQ(refund({{"date", date}}), "bad_field /refers_to/date") << date;
  }
  EXPECT_EQ(refund({{"date", "2028-02-29"}}), "");
  EXPECT_EQ(ProblemOf(CoffeeWith({{"kind", "refund"}, {"refers_to", json::object()}})),
            "missing_field /refers_to/closure");
}

TEST(ReadReceipt, CodesHaveTheirForm) {
  EXPECT_EQ(ProblemOf(CoffeeWith({{"tax_code", "RSSMRA80A01H501U"}})), "");
  for (const char* code : {"", "0123456789", "RSSMRA80A01H501", "RSSMRA80A01H501'"}) {
    EXPECT_EQ(ProblemOf(CoffeeWith({{"tax_code", code}})), "bad_field /tax_code") << code;
  }
  for (const char* code : {"", "ABCD123", "ABCD12345", "ABCD 123"}) {
    EXPECT_EQ(ProblemOf(CoffeeWith({{"lottery_code", code}})), "bad_field /lottery_code") << code;
  }
}

TEST(ReadReceipt, TenThousandItemsAreTooMany) {
  const json item = {{"department", 1}, {"price", "1"}};
  EXPECT_EQ(ProblemOf(CoffeeWith({{"items", json(10000, item)}})), "too_large /items");
  EXPECT_EQ(ProblemOf(CoffeeWith({{"items", json(1000, item)}})), "");
}

TEST(ReceiptSums, AreTheRegisters) {
  // 0.750 x 3.90 is 2.925, which goes up; 2 x 3.50 less 10 % is 6.30.
  const ReceiptSums sums = SumsOf(CoffeeWith(
      {{"items",
        {{{"department", 1}, {"quantity", "0.750"}, {"price", "3.90"}},
         {{"article", "4711"}, {"quantity", "2"}, {"discount", {{"percent", "10"}}}}}},
       {"payments",
        {{{"tender", "card"}, {"amount", "5"}}, {{"tender", "cash"}, {"amount", "5"}}}}}));
  EXPECT_THAT(sums.items, ElementsAre(29300, 63000));
  EXPECT_EQ(sums.subtotal, 92300);
  EXPECT_EQ(sums.total, 92300);
  EXPECT_EQ(sums.paid, 100000);
  EXPECT_EQ(sums.change, 7700);
  ASSERT_EQ(sums.by_vat->size(), 2u);
  EXPECT_EQ(sums.by_vat->at(1).amount, 29300);
  EXPECT_EQ(sums.by_vat->at(1).rate, "22%");
  EXPECT_EQ(sums.by_vat->at(2).amount, 63000);
  EXPECT_THAT(*sums.by_department, ElementsAre(Pair(1, 29300), Pair(2, 63000)));
  ASSERT_EQ(sums.payments->size(), 2u);
  EXPECT_EQ(sums.payments->at(0).name, "Pagamento elettronico");
  EXPECT_EQ(sums.payments->at(1).amount, 50000);
}

TEST(ReceiptSums, AnAmountThatIsLeftOutIsTheRest) {
  const ReceiptSums sums = SumsOf(
      CoffeeWith({{"items", {{{"department", 1}, {"price", "10"}}}},
                  {"subtotal_discount", {{"amount", "1"}}},
                  {"payments", {{{"tender", 125}, {"amount", "4"}}, {{"tender", "cash"}}}}}));
  EXPECT_EQ(sums.subtotal, 100000);
  EXPECT_EQ(sums.total, 90000);
  ASSERT_EQ(sums.payments->size(), 2u);
  EXPECT_EQ(sums.payments->at(1).amount, 50000);
  EXPECT_EQ(sums.change, 0);
}

TEST(ReceiptSums, CashRoundsToFiveCentsWhereTheRegisterDoes) {
  const json body = OneItem({{"department", 1}, {"price", "1.22"}});
  EXPECT_EQ(SumsOf(body, false).payments->at(0).amount, 12200);
  const ReceiptSums sums = SumsOf(body, true);
  ASSERT_EQ(sums.payments->size(), 2u);
  EXPECT_EQ(sums.payments->at(1).amount, 12000);
}

// Whether the cash of a sale that goes back came to five cents only the device knows.
TEST(ReceiptSums, CashOfASaleThatGoesBackIsLeftToTheDevice) {
  json body = OneItem({{"department", 1}, {"price", "1.22"}});
  body["kind"] = "void";
  body["refers_to"] = {{"closure", 1}, {"number", 7}, {"date", "2026-11-22"}};
  for (const bool round_cash : {false, true}) {
    for (const char* amount : {"1.20", "1.22", "0.01"}) {
      body["payments"] = {{{"tender", "cash"}, {"amount", amount}}};
      const ReceiptSums sums = SumsOf(body, round_cash);
      EXPECT_FALSE(sums.has_paid);
      EXPECT_FALSE(sums.payments);
      EXPECT_EQ(sums.total, 12200);
    }
  }
  // A serial number that is the register's own changes nothing, however it is written.
  body["kind"] = "refund";
  body["payments"] = {{{"tender", "cash"}}};
  for (const char* serial : {"99LRM0000001VR", "99lrm0000001vr", "99IEB012345"}) {
    body["refers_to"]["serial"] = serial;
    EXPECT_EQ(SumsOf(body, true).has_paid, serial[2] == 'I') << serial;
  }
  body["kind"] = "void";
  body["refers_to"].erase("serial");
  // Each number of the language that means cash.
  for (const int tender : {1, 6, 7, 8, 9, 20, 4}) {
    body["payments"] = {{{"tender", tender}}};
    EXPECT_EQ(SumsOf(body, true).has_paid, tender == 4) << tender;
  }
  body["payments"] = {{{"tender", "card"}, {"amount", "1.20"}}};
  EXPECT_EQ(RefusalOf(body), "too_little_paid /payments");
  body["items"][0]["price"] = "1.25";
  body["payments"] = {{{"tender", "cash"}, {"amount", "1.20"}}};
  EXPECT_EQ(RefusalOf(body), "too_little_paid /payments");
}

TEST(ReceiptSums, RefundedAndVoidedItemsTakeOff) {
  const ReceiptSums sums =
      SumsOf(CoffeeWith({{"items",
                          {{{"department", 1}, {"price", "5"}},
                           {{"department", 1}, {"price", "2"}},
                           {{"department", 1}, {"price", "2"}, {"void", true}},
                           {{"department", 1}, {"price", "1"}, {"refund", true}}}}}));
  EXPECT_THAT(sums.items, ElementsAre(50000, 20000, -20000, -10000));
  EXPECT_EQ(sums.total, 40000);
}

TEST(ReceiptSums, WhatTheDeviceWouldRefuseIsToldWithItsPlace) {
  EXPECT_EQ(RefusalOf(Payments({{{"tender", "cash"}, {"amount", "1.19"}}})),
            "too_little_paid /payments");
  EXPECT_EQ(RefusalOf(Payments({{{"tender", "cash"}}, {{"tender", "card"}}})),
            "nothing_left_to_pay /payments/1");
  EXPECT_EQ(RefusalOf(Payments({{{"tender", "card"}, {"amount", "2"}}})), "refused /payments/0");
  EXPECT_EQ(RefusalOf(Payments({{{"tender", 77}}})), "refused /payments/0");
  EXPECT_EQ(RefusalOf(Payments({{{"tender", 32}}})), "refused /payments/0");
  EXPECT_EQ(RefusalOf(OneItem({{"department", 41}, {"price", "1"}})), "refused /items/0");
  EXPECT_EQ(RefusalOf(OneItem({{"article", "4712"}})), "refused /items/0");
  EXPECT_EQ(RefusalOf(OneItem({{"department", 1}})), "refused /items/0");
  EXPECT_EQ(RefusalOf(OneItem({{"department", 1}, {"price", "1"}, {"void", true}})),
            "refused /items/0");
  EXPECT_EQ(RefusalOf(OneItem(
                {{"department", 1}, {"price", "1"}, {"discount", {{"percent", "100.01"}}}})),
            "refused /items/0/discount");
  EXPECT_EQ(RefusalOf(CoffeeWith({{"subtotal_discount", {{"amount", "1.21"}}}})),
            "refused /subtotal_discount");
}

TEST(ReceiptSums, ARefusalIsAnEnglishSentence) {
  ReceiptSums sums;
  const auto problem = Sum(OneItem({{"department", 41}, {"price", "1"}}), &sums);
  ASSERT_TRUE(problem);
  EXPECT_THAT(problem->detail, HasSubstr("department 41"));
  const auto other = Sum(OneItem({{"article", "CAFF\u00c8 \u20ac"}}), &sums);
  ASSERT_TRUE(other);
  EXPECT_THAT(other->detail, HasSubstr("'CAFF\u00c8 \u20ac'"));
  // Its numbers are as everywhere else in the answers.
  const auto third =
      Sum(OneItem({{"department", 1}, {"price", "1234.50"}, {"discount", {{"amount", "2000"}}}}),
          &sums);
  ASSERT_TRUE(third);
  EXPECT_EQ(third->detail, "The total is 1234.50, and -2000.00 would take it below zero.");
}

TEST(LineJudge, AWrittenLineReadsAsItsFieldsAndNoOther) {
  LineJudge judge(shipped::LanguageFile().string());
  EXPECT_EQ(judge.quote(), '\'');
  EXPECT_TRUE(judge.ReadsAs("#10 #1=1, #7='IT''S'", 10, {{1, "1"}, {7, "IT'S"}}));
  EXPECT_FALSE(judge.ReadsAs("#10 #1=1, #7='A'", 10, {{1, "1"}, {7, "B"}}));
  EXPECT_FALSE(judge.ReadsAs("#10 #1=1, #4=2", 10, {{1, "1"}}));
  EXPECT_FALSE(judge.ReadsAs("#10 #1=1", 10, {{1, "1"}, {4, "2"}}));
  EXPECT_FALSE(judge.ReadsAs("#10 #1=1", 11, {{1, "1"}}));
}

}  // namespace
}  // namespace lorimat::door
