#include "register/document/receipt.h"

#include <gtest/gtest.h>

#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {
namespace {

struct Goods {
  LineKind kind = LineKind::kSale;
  int department = 1;
  int vat = 1;
  int32_t quantity = 0;  // 0 for none
  Amount price = 0;
};

Item Make(const Goods& goods) {
  Item item;
  item.kind = goods.kind;
  item.department = goods.department;
  item.vat = goods.vat;
  item.quantity_given = goods.quantity > 0;
  item.quantity = goods.quantity > 0 ? goods.quantity : kOnePiece;
  item.unit_price = goods.price;
  item.amount = LineAmount(item.quantity, goods.price).value();
  return item;
}

Item Sale(Amount price, int vat = 1) {
  return Make({.department = vat, .vat = vat, .price = price});
}
Item Pieces(int32_t quantity, Amount price) { return Make({.quantity = quantity, .price = price}); }

AdjustmentRequest Request(int type, int64_t value) {
  AdjustmentRequest request;
  request.type = type;
  request.value = value;
  return request;
}

TEST(Receipt, AddsUpByVatAndByDepartment) {
  Receipt receipt;
  EXPECT_EQ(receipt.Enter(Sale(100000, 1)), RTF_SUCCESS);
  EXPECT_EQ(receipt.Enter(Sale(50000, 2)), RTF_SUCCESS);
  EXPECT_EQ(receipt.Enter(Make({.kind = LineKind::kRefund, .price = 20000})), RTF_SUCCESS);
  EXPECT_EQ(receipt.total(), 130000);
  EXPECT_EQ(receipt.by_vat(), (std::map<int, Amount>{{1, 80000}, {2, 50000}}));
  EXPECT_EQ(receipt.by_department().at(1).amount, 80000);
  EXPECT_EQ(receipt.by_department().at(1).quantity, 0);
}

TEST(Receipt, DepositsAndVouchersTakeOff) {
  for (const LineKind kind : {LineKind::kDeposit, LineKind::kVoucher}) {
    Receipt receipt;
    receipt.Enter(Sale(100000));
    EXPECT_EQ(receipt.Enter(Make({.kind = kind, .price = 30000})), RTF_SUCCESS);
    EXPECT_EQ(receipt.total(), 70000);
    Amount amount = 0;
    EXPECT_EQ(receipt.Void(Make({.kind = kind, .price = 30000}), &amount), RTF_SUCCESS);
    EXPECT_EQ(amount, 30000);
    EXPECT_EQ(receipt.total(), 100000);
  }
}

TEST(Receipt, RefusesNegativeTotals) {
  Receipt receipt;
  receipt.Enter(Sale(100000, 1));
  EXPECT_EQ(receipt.Enter(Make({.kind = LineKind::kRefund, .price = 100100})),
            RTF_EFPTR_NEGATIVE_TOTAL);
  // Enough on the whole, but not on entry 2.
  EXPECT_EQ(
      receipt.Enter(Make({.kind = LineKind::kRefund, .department = 2, .vat = 2, .price = 100})),
      RTF_EFPTR_NEGATIVE_VAT);
  EXPECT_EQ(receipt.total(), 100000);
  EXPECT_EQ(receipt.Enter(Make({.kind = LineKind::kRefund, .price = 100000})), RTF_SUCCESS);
  EXPECT_EQ(receipt.total(), 0);
}

TEST(Receipt, RefusesATotalThatThePaperCannotHold) {
  Receipt receipt;
  EXPECT_EQ(receipt.Enter(Sale(kMaxAmount)), RTF_SUCCESS);
  EXPECT_EQ(receipt.Enter(Sale(kCent)), RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW);
  EXPECT_EQ(receipt.total(), kMaxAmount);
}

TEST(Receipt, AVoidWantsALineThatWasSold) {
  Receipt receipt;
  Amount amount = 0;
  EXPECT_EQ(receipt.Void(Sale(10000), &amount), RTF_EFPTR_BAD_ITEM_AMOUNT);
  receipt.Enter(Sale(10000));
  EXPECT_EQ(receipt.Void(Sale(20000), &amount), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(receipt.Void(Sale(10000, 2), &amount), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(receipt.Void(Sale(10000), &amount), RTF_SUCCESS);
  EXPECT_EQ(amount, -10000);
  EXPECT_EQ(receipt.Void(Sale(10000), &amount), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(receipt.total(), 0);
}

TEST(Receipt, SomePiecesOfALineCanBeTakenBack) {
  Receipt receipt;
  receipt.Enter(Pieces(3000, 3333));  // 3 x 0,3333 = 0,9999, a whole 1,00
  Amount amount = 0;
  EXPECT_EQ(receipt.Void(Pieces(1000, 3333), &amount), RTF_SUCCESS);
  EXPECT_EQ(amount, -3300);
  // The last pieces take what is left: 1,00 - 0,33.
  EXPECT_EQ(receipt.Void(Pieces(2000, 3333), &amount), RTF_SUCCESS);
  EXPECT_EQ(amount, -6700);
  EXPECT_EQ(receipt.Void(Pieces(1000, 3333), &amount), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(receipt.total(), 0);
}

TEST(Receipt, AVoidByItsAmountTakesAWholeLineOfPieces) {
  Receipt receipt;
  receipt.Enter(Pieces(3000, 12000));
  Amount amount = 0;
  EXPECT_EQ(receipt.Void(Sale(36000), &amount), RTF_SUCCESS);
  EXPECT_EQ(amount, -36000);
  EXPECT_EQ(receipt.by_department().at(1).quantity, 0);
}

TEST(Receipt, AVoidThatWouldTurnTheTotalNegativeIsRefused) {
  Receipt receipt;
  receipt.Enter(Sale(100000));
  receipt.Enter(Make({.kind = LineKind::kRefund, .price = 40000}));
  Amount amount = 0;
  EXPECT_EQ(receipt.Void(Sale(100000), &amount), RTF_EFPTR_NEGATIVE_TOTAL);
  EXPECT_EQ(receipt.total(), 60000);
}

// A line of an article of the same department and price is no line without one.
TEST(Receipt, AVoidTakesTheLineThatIsTheSameBeforeALaterOne) {
  Item article = Sale(10000);
  article.article = "A1";
  article.description = "ART";
  for (const bool by_amount : {false, true}) {
    Receipt receipt;
    receipt.Enter(Sale(10000));
    receipt.Enter(article);
    Adjustment done;
    ASSERT_EQ(receipt.Adjust(Request(RTF_FPTR_AT_AMOUNT_DISCOUNT, 5000), &done), RTF_SUCCESS);
    Amount amount = 0;
    std::string description;
    const VoidTerms terms = {.by_amount = by_amount};
    ASSERT_EQ(receipt.Void(Sale(10000), &amount, terms, &description), RTF_SUCCESS);
    EXPECT_EQ(amount, -10000);
    EXPECT_EQ(description, "");
    EXPECT_EQ(receipt.total(), 5000);
    // The one that is left is still taken by a correction that names no article.
    ASSERT_EQ(receipt.Void(Sale(10000), &amount, terms, &description), RTF_SUCCESS);
    EXPECT_EQ(amount, -5000);
    EXPECT_EQ(description, "ART");
    EXPECT_EQ(receipt.total(), 0);
  }
}

TEST(Receipt, AVoidTakesALineOfItsAmountBeforeALaterOneThatIsDiscounted) {
  Item article = Sale(10000);
  article.article = "A1";
  Receipt receipt;
  receipt.Enter(article);
  article.article = "A2";
  receipt.Enter(article);
  Adjustment done;
  ASSERT_EQ(receipt.Adjust(Request(RTF_FPTR_AT_AMOUNT_DISCOUNT, 5000), &done), RTF_SUCCESS);
  Amount amount = 0;
  ASSERT_EQ(receipt.Void(Sale(10000), &amount), RTF_SUCCESS);
  EXPECT_EQ(amount, -10000);
  EXPECT_EQ(receipt.lines()[0].open_quantity, 0);
  EXPECT_EQ(receipt.lines()[1].open_quantity, kOnePiece);
}

TEST(Receipt, OfLinesThatAreTheSameAVoidTakesTheLatest) {
  Receipt receipt;
  receipt.Enter(Sale(10000));
  receipt.Enter(Sale(10000));
  Amount amount = 0;
  ASSERT_EQ(receipt.Void(Sale(10000), &amount), RTF_SUCCESS);
  EXPECT_EQ(receipt.lines()[0].open_quantity, kOnePiece);
  EXPECT_EQ(receipt.lines()[1].open_quantity, 0);
}

TEST(Receipt, AVoidThatIsTakenBackBringsTheLineBackThatIsTheSame) {
  Item article = Pieces(2000, 10000);
  article.article = "A1";
  article.description = "ART";
  Receipt receipt;
  receipt.Enter(Pieces(2000, 10000));
  receipt.Enter(article);
  Amount amount = 0;
  ASSERT_EQ(receipt.Void(Pieces(2000, 10000), &amount), RTF_SUCCESS);
  ASSERT_EQ(receipt.Void(article, &amount), RTF_SUCCESS);
  std::string description = "none";
  ASSERT_EQ(receipt.Restore(Pieces(1000, 10000), &amount, &description), RTF_SUCCESS);
  EXPECT_EQ(description, "");
  EXPECT_EQ(receipt.lines()[0].open_quantity, 1000);
  // Of two that are not the same, the one of which so much is gone.
  Item other = Pieces(1000, 10000);
  other.description = "OTHER";
  ASSERT_EQ(receipt.Restore(other, &amount, &description), RTF_SUCCESS);
  EXPECT_EQ(receipt.lines()[0].open_quantity, 2000);
  EXPECT_EQ(receipt.lines()[1].open_quantity, 0);
}

TEST(Receipt, AVoidCanBeTakenBack) {
  Receipt receipt;
  Amount amount = 0;
  receipt.Enter(Sale(10000));
  EXPECT_EQ(receipt.Restore(Sale(10000), &amount), RTF_EFPTR_BAD_ITEM_AMOUNT);
  receipt.Void(Sale(10000), &amount);
  EXPECT_EQ(receipt.Restore(Sale(10000), &amount), RTF_SUCCESS);
  EXPECT_EQ(amount, 10000);
  EXPECT_EQ(receipt.total(), 10000);
}

TEST(Receipt, DiscountsAndSurchargesOnTheLastLine) {
  struct {
    int type;
    int64_t value;
    Amount delta;
  } const rows[] = {
      {RTF_FPTR_AT_AMOUNT_DISCOUNT, 12300, -12300},
      {RTF_FPTR_AT_AMOUNT_SURCHARGE, 12300, 12300},
      {RTF_FPTR_AT_PERCENTAGE_DISCOUNT, 100000, -10000},
      {RTF_FPTR_AT_PERCENTAGE_SURCHARGE, 75000, 7500},
      {RTF_FPTR_AT_COUPON_AMOUNT_DISCOUNT, 100000, -100000},
      {RTF_FPTR_AT_COUPON_PERCENTAGE_DISCOUNT, 1000000, -100000},
      // Money is rounded: 0,1249 is 0,12.
      {RTF_FPTR_AT_AMOUNT_DISCOUNT, 1249, -1200},
      // 200 % more is possible, 200 % less is not.
      {RTF_FPTR_AT_PERCENTAGE_SURCHARGE, 2000000, 200000},
  };
  for (const auto& row : rows) {
    Receipt receipt;
    receipt.Enter(Sale(100000));
    Adjustment done;
    EXPECT_EQ(receipt.Adjust(Request(row.type, row.value), &done), RTF_SUCCESS) << row.type;
    EXPECT_EQ(done.delta, row.delta) << row.type;
    EXPECT_EQ(receipt.total(), 100000 + row.delta) << row.type;
    EXPECT_EQ(receipt.by_department().at(1).amount, 100000 + row.delta);
  }
}

TEST(Receipt, RefusedAdjustmentsChangeNothing) {
  struct {
    int type;
    int64_t value;
    int code;
  } const rows[] = {
      {0, 10000, RTF_E_ILLEGAL},
      {7, 10000, RTF_E_ILLEGAL},
      {RTF_FPTR_AT_AMOUNT_DISCOUNT, 0, RTF_EFPTR_BAD_ITEM_AMOUNT},
      {RTF_FPTR_AT_AMOUNT_DISCOUNT, -10000, RTF_EFPTR_BAD_ITEM_AMOUNT},
      {RTF_FPTR_AT_AMOUNT_DISCOUNT, INT64_MIN, RTF_EFPTR_BAD_ITEM_AMOUNT},
      {RTF_FPTR_AT_AMOUNT_DISCOUNT, INT64_MAX, RTF_EFPTR_BAD_ITEM_AMOUNT},
      {RTF_FPTR_AT_PERCENTAGE_DISCOUNT, 1000001, RTF_EFPTR_BAD_ITEM_AMOUNT},
      {RTF_FPTR_AT_PERCENTAGE_SURCHARGE, INT64_MAX, RTF_EFPTR_BAD_ITEM_AMOUNT},
      {RTF_FPTR_AT_AMOUNT_SURCHARGE, kMaxAmount, RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW},
      // More than all that was sold, then more than the last line.
      {RTF_FPTR_AT_AMOUNT_DISCOUNT, 150100, RTF_EFPTR_NEGATIVE_TOTAL},
      {RTF_FPTR_AT_AMOUNT_DISCOUNT, 50100, RTF_EFPTR_BAD_ITEM_AMOUNT},
  };
  for (const auto& row : rows) {
    Receipt receipt;
    receipt.Enter(Sale(100000));
    receipt.Enter(Sale(50000));
    Adjustment done;
    EXPECT_EQ(receipt.Adjust(Request(row.type, row.value), &done), row.code) << row.value;
    EXPECT_EQ(receipt.total(), 150000);
    EXPECT_TRUE(receipt.adjustments().empty());
  }
  Receipt empty;
  Adjustment done;
  EXPECT_EQ(empty.Adjust(Request(RTF_FPTR_AT_AMOUNT_DISCOUNT, 100), &done),
            RTF_EFPTR_BAD_ITEM_AMOUNT);
}

TEST(Receipt, APercentageOnADepartmentCountsOnAllThatItSold) {
  Receipt receipt;
  receipt.Enter(Sale(100000, 1));
  receipt.Enter(Sale(50000, 2));
  receipt.Enter(Sale(60000, 1));
  AdjustmentRequest request = Request(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, 100000);
  request.department = 1;
  request.vat = 1;
  Adjustment done;
  EXPECT_EQ(receipt.Adjust(request, &done), RTF_SUCCESS);
  EXPECT_EQ(done.delta, -16000);  // 10 % of 16,00
  EXPECT_EQ(receipt.by_vat(), (std::map<int, Amount>{{1, 144000}, {2, 50000}}));
}

TEST(Receipt, ADiscountOnARefundLineGivesLessBack) {
  Receipt receipt;
  receipt.Enter(Sale(100000));
  receipt.Enter(Make({.kind = LineKind::kRefund, .price = 50000}));
  Adjustment done;
  EXPECT_EQ(receipt.Adjust(Request(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, 100000), &done), RTF_SUCCESS);
  EXPECT_EQ(done.delta, 5000);
  EXPECT_EQ(receipt.total(), 55000);
}

TEST(Receipt, ALineIsTakenBackWithItsAdjustments) {
  Receipt receipt;
  receipt.Enter(Pieces(2000, 50000));
  Adjustment done;
  receipt.Adjust(Request(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, 100000), &done);
  EXPECT_EQ(receipt.total(), 90000);
  Amount amount = 0;
  // Half of an adjusted line has no price of its own.
  EXPECT_EQ(receipt.Void(Pieces(1000, 50000), &amount), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(receipt.Void(Pieces(2000, 50000), &amount), RTF_SUCCESS);
  EXPECT_EQ(amount, -90000);
  EXPECT_EQ(receipt.total(), 0);
  EXPECT_EQ(receipt.Adjust(Request(RTF_FPTR_AT_AMOUNT_DISCOUNT, 100), &done),
            RTF_EFPTR_BAD_ITEM_AMOUNT);
}

TEST(Receipt, AnAdjustmentIsTakenBackOnce) {
  Receipt receipt;
  receipt.Enter(Sale(100000));
  Adjustment done;
  AdjustmentRequest request = Request(RTF_FPTR_AT_AMOUNT_DISCOUNT, 20000);
  AdjustmentRequest back = request;
  back.is_void = true;
  EXPECT_EQ(receipt.Adjust(back, &done), RTF_EFPTR_BAD_ITEM_AMOUNT);
  receipt.Adjust(request, &done);
  EXPECT_EQ(receipt.Adjust(back, &done), RTF_SUCCESS);
  EXPECT_EQ(done.delta, 20000);
  EXPECT_EQ(receipt.total(), 100000);
  EXPECT_EQ(receipt.Adjust(back, &done), RTF_EFPTR_BAD_ITEM_AMOUNT);
}

TEST(Receipt, ASubtotalDiscountIsSpreadOverTheVatEntries) {
  Receipt receipt;
  receipt.Enter(Sale(100000, 1));
  receipt.Enter(Sale(50000, 2));
  Adjustment done;
  // 1,00 over 10,00 and 5,00: 66,67 and 33,33 cents.
  EXPECT_EQ(receipt.AdjustSubtotal(Request(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000), &done),
            RTF_SUCCESS);
  EXPECT_EQ(receipt.by_vat(), (std::map<int, Amount>{{1, 93300}, {2, 46700}}));
  EXPECT_EQ(receipt.total(), 140000);
  // The last line is no part of it.
  EXPECT_EQ(receipt.by_department().at(2).amount, 50000);
}

TEST(Receipt, ASubtotalDiscountBeyondTheTotalIsRefused) {
  Receipt receipt;
  receipt.Enter(Sale(100000));
  Adjustment done;
  EXPECT_EQ(receipt.AdjustSubtotal(Request(RTF_FPTR_AT_AMOUNT_DISCOUNT, 100100), &done),
            RTF_EFPTR_NEGATIVE_TOTAL);
  EXPECT_EQ(receipt.AdjustSubtotal(Request(RTF_FPTR_AT_AMOUNT_DISCOUNT, 100000), &done),
            RTF_SUCCESS);
  EXPECT_EQ(receipt.total(), 0);
}

TEST(Receipt, PaysInSeveralTendersAndGivesChangeOnCashAlone) {
  const Tables tables{RegisterSettings{}};
  const Tender& cash = *tables.FindTender("0");
  const Tender& card = *tables.FindTender("2");
  Receipt receipt;
  receipt.Enter(Sale(100000));
  Payment done;
  EXPECT_EQ(receipt.Pay(card, 100100, false, &done), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(receipt.Pay(card, 0, false, &done), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(receipt.Pay(card, -100, false, &done), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(receipt.Pay(card, INT64_MAX, false, &done), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(receipt.Pay(card, 40000, false, &done), RTF_SUCCESS);
  EXPECT_EQ(receipt.remaining(), 60000);
  EXPECT_EQ(receipt.Pay(cash, 100000, false, &done), RTF_SUCCESS);
  EXPECT_EQ(receipt.remaining(), 0);
  EXPECT_EQ(receipt.change(), 40000);
}

TEST(Receipt, ContainedTaxIsRoundedForEachEntry) {
  const Tables tables{RegisterSettings{}};
  Receipt receipt;
  receipt.Enter(Sale(100000, 1));  // 1,8032... -> 1,80
  receipt.Enter(Sale(50000, 2));   // 0,4545... -> 0,45
  receipt.Enter(Sale(70000, 5));   // exempt
  EXPECT_EQ(receipt.VatTotal(tables.settings().vat_rates), 22500);
}

}  // namespace
}  // namespace lorimat
