// What a receipt comes to on a device that does not tell its tables.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "door/receipt/receipt_sums.h"
#include "receipt_sums_of.h"

namespace lorimat::door {
namespace {

using nlohmann::json;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::Pair;

// One item at this price, paid so.
json Sale(const char* price, json payments) {
  return {{"kind", "receipt"},
          {"items", {{{"department", 1}, {"price", price}}}},
          {"payments", std::move(payments)}};
}

json Cash(const char* amount) { return {{"tender", "cash"}, {"amount", amount}}; }
json Card(const char* amount) { return {{"tender", "card"}, {"amount", amount}}; }

json Items(json items) {
  return {{"kind", "receipt"}, {"items", std::move(items)}, {"payments", {{{"tender", "card"}}}}};
}

std::optional<ReceiptProblem> Sum(const json& body, ReceiptSums* sums) {
  return SumWith(body, nullptr, sums);
}

ReceiptSums SumsOf(const json& body) { return SumsWith(body, nullptr); }

// Empty for one that is left to the device.
std::string RefusalOf(const json& body) { return RefusalWith(body, nullptr); }

// "1.20 - 0.00" in cents: what is paid and given back, or "?".
std::string PaidAndChange(const json& body) {
  const ReceiptSums sums = SumsOf(body);
  EXPECT_FALSE(sums.payments);
  if (!sums.has_paid) return "?";
  return std::to_string(sums.paid / 100) + " - " + std::to_string(sums.change / 100);
}

TEST(UntoldTables, SumsAreThoseOfTheRequestAndNoOthers) {
  const ReceiptSums sums =
      SumsOf({{"kind", "receipt"},
              {"items",
               {{{"department", 41}, {"quantity", "0.333"}, {"price", "1.99"}},
                {{"department", 9999}, {"price", "10"}, {"discount", {{"percent", "10"}}}}}},
              {"subtotal_discount", {{"amount", "0.66"}}},
              {"payments", {Card("5"), Cash("5")}}});
  EXPECT_THAT(sums.items, ElementsAre(6600, 90000));
  EXPECT_EQ(sums.subtotal, 96600);
  EXPECT_EQ(sums.total, 90000);
  EXPECT_THAT(sums.by_department.value(), ElementsAre(Pair(41, 6600), Pair(9999, 90000)));
  EXPECT_TRUE(sums.has_paid);
  EXPECT_EQ(sums.paid, 100000);
  EXPECT_EQ(sums.change, 10000);
  EXPECT_FALSE(sums.by_vat);
  EXPECT_FALSE(sums.payments);
}

TEST(UntoldTables, EachItemNeedsItsPrice) {
  ReceiptSums sums;
  const auto problem =
      Sum(Items({{{"department", 1}, {"price", "1"}}, {{"article", "4711"}}}), &sums);
  ASSERT_TRUE(problem);
  EXPECT_EQ(problem->status, 422);
  EXPECT_EQ(problem->code, "no_price");
  EXPECT_EQ(problem->pointer, "/items/1/price");
  EXPECT_THAT(problem->detail, HasSubstr("does not tell"));
}

TEST(UntoldTables, TheDepartmentOfAnArticleIsNotKnown) {
  const ReceiptSums sums = SumsOf(
      Items({{{"department", 1}, {"price", "1"}}, {{"article", "4711"}, {"price", "3.50"}}}));
  EXPECT_EQ(sums.total, 45000);
  EXPECT_FALSE(sums.by_department);
}

TEST(UntoldTables, WhatNoSumsHaveIsRefused) {
  EXPECT_EQ(
      RefusalOf(Items({{{"department", 1}, {"price", "1"}, {"discount", {{"amount", "1.01"}}}}})),
      "refused /items/0/discount");
  EXPECT_EQ(RefusalOf(Items({{{"department", 1}, {"price", "1"}, {"refund", true}}})),
            "refused /items/0");
  EXPECT_EQ(RefusalOf(Items({{{"department", 1}, {"price", "0.01"}, {"quantity", "0.1"}}})),
            "refused /items/0");
  json body = Sale("1", {{{"tender", "card"}}});
  body["subtotal_discount"] = {{"amount", "1.01"}};
  EXPECT_EQ(RefusalOf(body), "refused /subtotal_discount");
}

TEST(UntoldTables, TooLittleIsToldWhereItIsCertain) {
  // To five cents that is 1.20, 1.20, 1.25, 1.25 and 1.25.
  EXPECT_EQ(RefusalOf(Sale("1.21", {Cash("1.20")})), "");
  EXPECT_EQ(RefusalOf(Sale("1.22", {Cash("1.20")})), "");
  EXPECT_EQ(RefusalOf(Sale("1.22", {Cash("1.00"), Cash("0.20")})), "");
  EXPECT_EQ(RefusalOf(Sale("1.22", {Cash("1.19")})), "too_little_paid /payments");
  EXPECT_EQ(RefusalOf(Sale("1.23", {Cash("1.22")})), "too_little_paid /payments");
  EXPECT_EQ(RefusalOf(Sale("1.24", {Cash("1.23")})), "too_little_paid /payments");
  EXPECT_EQ(RefusalOf(Sale("1.25", {Cash("1.24")})), "too_little_paid /payments");
  EXPECT_EQ(RefusalOf(Sale("1.22", {Card("1.20")})), "too_little_paid /payments");
  EXPECT_EQ(RefusalOf(Sale("1.22", {Card("0.20"), Cash("1.00")})), "too_little_paid /payments");
  EXPECT_EQ(RefusalOf(Sale("1.22", {Cash("1.22"), Card("1")})), "nothing_left_to_pay /payments/1");
  EXPECT_EQ(RefusalOf(Sale("1.22", {Card("2"), Cash("1")})), "nothing_left_to_pay /payments/1");
  // The device may find it covered by the first, or not.
  EXPECT_EQ(RefusalOf(Sale("1.22", {Cash("1.20"), {{"tender", "card"}}})), "");
}

TEST(UntoldTables, WhatIsPaidIsToldWhereItIsCertain) {
  EXPECT_EQ(PaidAndChange(Sale("1.20", {{{"tender", "cash"}}})), "120 - 0");
  EXPECT_EQ(PaidAndChange(Sale("1.20", {Cash("5")})), "500 - 380");
  EXPECT_EQ(PaidAndChange(Sale("1.22", {{{"tender", "card"}}})), "122 - 0");
  EXPECT_EQ(PaidAndChange(Sale("1.22", {Card("1"), {{"tender", "cash"}}})), "122 - 0");
  EXPECT_EQ(PaidAndChange(Sale("1.22", {Cash("1"), {{"tender", "card"}}})), "122 - 0");
  // Cash that may be rounded, what a tender does with more than it is to pay, and both.
  EXPECT_EQ(PaidAndChange(Sale("1.22", {{{"tender", "cash"}}})), "?");
  EXPECT_EQ(PaidAndChange(Sale("1.22", {{{"tender", 6}}})), "?");
  EXPECT_EQ(PaidAndChange(Sale("1.22", {Cash("5")})), "?");
  EXPECT_EQ(PaidAndChange(Sale("1.22", {Cash("1.20")})), "?");
  EXPECT_EQ(PaidAndChange(Sale("1.22", {Cash("1.20"), {{"tender", "card"}}})), "?");
  EXPECT_EQ(PaidAndChange(Sale("1.20", {{{"tender", "ticket"}, {"amount", "5"}}})), "?");
  EXPECT_EQ(PaidAndChange(Sale("1.20", {{{"tender", 77}, {"amount", "5"}}})), "?");
}

TEST(UntoldTables, CashThatGoesBackMayRoundAsItsSaleDid) {
  json body = Sale("1.22", {Card("0.22"), {{"tender", "cash"}}});
  body["kind"] = "refund";
  EXPECT_EQ(PaidAndChange(body), "122 - 0");
  body["refers_to"] = {{"closure", 1}, {"number", 1}, {"date", "2026-11-22"}};
  EXPECT_EQ(PaidAndChange(body), "?");
  body["refers_to"]["serial"] = "99IEB012345";
  EXPECT_EQ(PaidAndChange(body), "?");
  body["payments"] = {Card("1.20")};
  EXPECT_EQ(RefusalOf(body), "too_little_paid /payments");
}

TEST(UntoldTables, ALineThatIsTakenBackIsKnownByItsName) {
  const json coffee = {{"department", 1}, {"price", "1"}, {"description", "CAFFE'"}};
  json taken = {{"department", 1}, {"price", "1"}, {"void", true}};
  const json plain = {{"department", 1}, {"price", "1"}};
  json dear = plain;
  dear["surcharge"] = {{"amount", "0.50"}};
  const json other = {{"department", 2}, {"price", "1"}};

  EXPECT_THAT(SumsOf(Items({dear, coffee, other, {{"department", 1}, {"price", "2"}}})).items,
              ElementsAre(15000, 10000, 10000, 20000));
  EXPECT_THAT(SumsOf(Items({dear, other, taken})).items, ElementsAre(15000, 10000, -15000));
  // Without a description it may be called what the other one is.
  EXPECT_FALSE(SumsOf(Items({dear, coffee, taken})).is_known);
  taken["description"] = "CAFFE'";
  EXPECT_FALSE(SumsOf(Items({coffee, dear, taken})).is_known);
  EXPECT_FALSE(SumsOf(Items({plain, taken})).is_known);
  json tea = coffee;
  tea["description"] = "TE'";
  EXPECT_THAT(SumsOf(Items({coffee, tea, taken})).items, ElementsAre(10000, 10000, -10000));
  // An article may be of the department.
  EXPECT_FALSE(SumsOf(Items({{{"article", "7"}, {"price", "1"}}, taken})).is_known);
  // What is not known is not judged: the device does.
  json unknown = Items({plain, taken});
  unknown["payments"] = {Card("0.01")};
  EXPECT_EQ(RefusalOf(unknown), "");
}

}  // namespace
}  // namespace lorimat::door
