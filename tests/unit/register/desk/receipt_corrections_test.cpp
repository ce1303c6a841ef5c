// What a correction takes back, and that it leaves nothing below zero.
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

constexpr int kVoid = PflItemType::kPrintRecItemVoid;
constexpr int kRefund = PflItemType::kPrintRecItemRefund;

class ReceiptCorrectionsTest : public RegisterTest {
 protected:
  void SetUp() override { ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS); }
  int Adjust(int type, int64_t value, int vat = -1, int department = -2) {
    return device.PrintRecItemAdjustmentEx2(type, "", value, vat, department, false);
  }
  int TakeBack(int type, int64_t value, int vat = -1, int department = -2) {
    return device.PrintRecItemAdjustmentEx2(type, "", value, vat, department, true);
  }
  // Pays the receipt; the document as it was registered.
  StoredDocument Registered() {
    EXPECT_EQ(PayRest(), RTF_SUCCESS);
    return device.store().documents().back();
  }
  Amount Department(int department) {
    const auto& sums = device.receipt().by_department();
    const auto sum = sums.find(department);
    return sum == sums.end() ? 0 : sum->second.amount;
  }
};

// --- Voids by the amount

// 0,999 kg at 5,00 come to 5,00: the amount of the line is its price too.
TEST_F(ReceiptCorrectionsTest, AVoidByItsAmountTakesTheWholeLine) {
  Sell(2, 1000000);
  ASSERT_EQ(SellPieces(1, 999, 50000), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 50000, "", kVoid), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().lines().back().open_quantity, 0);
  EXPECT_EQ(device.receipt().lines().back().open_amount, 0);
  EXPECT_EQ(device.receipt().by_department().at(1).quantity, 0);
  EXPECT_EQ(Department(1), 0);
  const StoredDocument document = Registered();
  EXPECT_EQ(document.total, 1000000);
  EXPECT_EQ(document.sold_by_department.at(1).quantity, 0);
  EXPECT_EQ(document.lines.back().quantity_taken_back, 999);
}

TEST_F(ReceiptCorrectionsTest, AVoidByItsAmountTakesTheAdjustmentsOfTheLine) {
  Sell(2, 1000000);
  SellPieces(1, 999, 50000);
  Adjust(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, 100000);
  ASSERT_EQ(Sell(1, 50000, "", kVoid), RTF_SUCCESS);
  const std::string before = Snapshot();
  EXPECT_EQ(TakeBack(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, 100000), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(device.receipt().total(), 1000000);
}

// --- Voids of adjustments

TEST_F(ReceiptCorrectionsTest, AnAdjustmentGoesBackOnItsVatEntry) {
  Sell(1, 100000);
  ASSERT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, 1), RTF_SUCCESS);
  Sell(2, 100000);
  ASSERT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, 2), RTF_SUCCESS);
  EXPECT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, 3), RTF_EFPTR_BAD_ITEM_AMOUNT);
  ASSERT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, 1), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().by_vat().at(1), 100000);
  EXPECT_EQ(device.receipt().by_vat().at(2), 90000);
  EXPECT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, 1), RTF_EFPTR_BAD_ITEM_AMOUNT);
  // Without an entry: the latest one.
  ASSERT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().by_vat().at(2), 100000);
}

TEST_F(ReceiptCorrectionsTest, ALinesAdjustmentIsNotItsDepartments) {
  Sell(1, 100000);
  ASSERT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000), RTF_SUCCESS);
  ASSERT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, -1, 1), RTF_SUCCESS);
  ASSERT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().lines().back().adjusted, 0);
  EXPECT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000), RTF_EFPTR_BAD_ITEM_AMOUNT);
  ASSERT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, -1, 1), RTF_SUCCESS);
  EXPECT_EQ(Department(1), 100000);
}

// --- Adjustments

TEST_F(ReceiptCorrectionsTest, ADepartmentsAdjustmentGoesBackWithoutItsVatEntry) {
  Sell(1, 100000);
  Sell(2, 100000);
  ASSERT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, 2, 1), RTF_SUCCESS);
  EXPECT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, 1, 1), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, -1, 1), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().total(), 200000);
}

TEST_F(ReceiptCorrectionsTest, AnAdjustmentThatRoundsToNothingIsRefused) {
  Sell(1, 1000);  // 0,10
  const std::string before = Snapshot();
  EXPECT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 49), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_SURCHARGE, 1), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Adjust(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, 49900), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Adjust(RTF_FPTR_AT_PERCENTAGE_SURCHARGE, 10000, -1, 1), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 49),
            RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_PERCENTAGE_SURCHARGE, "", 49900),
            RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 50), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().total(), 900);
}

// On another entry than its line's an adjustment is of that entry alone, as a line without a
// department is.
TEST_F(ReceiptCorrectionsTest, AnAdjustmentOfAnotherVatEntryIsOfNoDepartment) {
  Sell(2, 200000);
  Sell(1, 100000);
  ASSERT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, 2), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().by_vat().at(2), 190000);
  EXPECT_EQ(Department(1), 100000);
  EXPECT_EQ(Department(2), 200000);
  ASSERT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, 2), RTF_SUCCESS);
  EXPECT_EQ(Department(1), 100000);
  ASSERT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000, 2), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000, "", kVoid), RTF_SUCCESS);
  const StoredDocument document = Registered();
  EXPECT_EQ(document.total, 190000);
  EXPECT_EQ(document.by_department.at(1).amount, 0);
  EXPECT_EQ(document.sold_by_department.at(1).amount, 0);
  EXPECT_EQ(document.by_department.at(2).amount, document.sold_by_department.at(2).amount);
}

// A discount stays a discount on a refund line, where it gives less back.
TEST_F(ReceiptCorrectionsTest, CountersTakeAnAdjustmentByItsKind) {
  Sell(1, 500000);
  Sell(1, 100000, "", kRefund);
  ASSERT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 10000), RTF_SUCCESS);
  ASSERT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_SURCHARGE, 3000), RTF_SUCCESS);
  const StoredDocument document = Registered();
  EXPECT_EQ(document.total, 407000);
  EXPECT_EQ(document.discounts, 10000);
  EXPECT_EQ(document.surcharges, 3000);
  EXPECT_EQ(document.figures.at(1)[EnteredFigure::kDiscounts].amount, 10000);
  EXPECT_EQ(document.figures.at(1)[EnteredFigure::kSurcharges].amount, 3000);
}

// --- Nothing below zero

TEST_F(ReceiptCorrectionsTest, ALineStaysAboveZeroWhenItsSurchargeGoes) {
  Sell(1, 500000);
  Sell(6, 100000);
  Adjust(RTF_FPTR_AT_AMOUNT_SURCHARGE, 100000);
  Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 150000);
  const std::string before = Snapshot();
  EXPECT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_SURCHARGE, 100000), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_DISCOUNT, 150000), RTF_SUCCESS);
  EXPECT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_SURCHARGE, 100000), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().total(), 600000);
}

TEST_F(ReceiptCorrectionsTest, ARefundLineStaysARefundWhenItsSurchargeGoes) {
  Sell(1, 500000);
  Sell(1, 100000, "", kRefund);
  Adjust(RTF_FPTR_AT_AMOUNT_SURCHARGE, 100000);
  Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 150000);
  EXPECT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_SURCHARGE, 100000), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.receipt().total(), 450000);
}

// Departments 1 and 6 share their VAT entry, so that the entry stays above zero.
TEST_F(ReceiptCorrectionsTest, ADepartmentStaysAboveZeroWhenItsLinesGo) {
  Sell(6, 500000);
  Sell(1, 100000);
  ASSERT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 100000, -1, 1), RTF_SUCCESS);
  const std::string before = Snapshot();
  EXPECT_EQ(Sell(1, 100000, "", kVoid), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_DISCOUNT, 100000, -1, 1), RTF_SUCCESS);
  EXPECT_EQ(Sell(1, 100000, "", kVoid), RTF_SUCCESS);
  EXPECT_EQ(Department(1), 0);
}

TEST_F(ReceiptCorrectionsTest, ADepartmentStaysAboveZeroWhenItsSurchargeGoes) {
  Sell(6, 500000);
  Sell(1, 100000);
  ASSERT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_SURCHARGE, 50000, -1, 1), RTF_SUCCESS);
  ASSERT_EQ(Adjust(RTF_FPTR_AT_AMOUNT_DISCOUNT, 150000, -1, 1), RTF_SUCCESS);
  EXPECT_EQ(TakeBack(RTF_FPTR_AT_AMOUNT_SURCHARGE, 50000, -1, 1), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Department(1), 0);
}

// A department that only took goods back is below zero by right.
TEST_F(ReceiptCorrectionsTest, ASaleGoesBackThoughItsDepartmentTookGoodsBack) {
  Sell(6, 500000);
  Sell(1, 100000);
  Sell(1, 100000, "", kRefund);
  EXPECT_EQ(Sell(1, 100000, "", kVoid), RTF_SUCCESS);
  EXPECT_EQ(Department(1), -100000);
}

// --- Voids that name a whole line

TEST_F(ReceiptCorrectionsTest, AnItemGoesBackByTheAmountOfItsLine) {
  device.PrintRecItem("A", 50000, 0, 1, 0, "");
  device.PrintRecItem("B", 0, 3000, 1, 50000, "");
  ASSERT_EQ(device.PrintRecVoidItem("A", 50000, 0, 0, 0, 1), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().lines()[0].open_quantity, 0);
  EXPECT_EQ(device.receipt().lines()[1].open_quantity, 3000);
  const std::string before = Snapshot();
  EXPECT_EQ(device.PrintRecVoidItem("B", 50000, 0, 0, 0, 1), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(device.PrintRecVoidItem("B", 150000, 0, 0, 0, 1), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().total(), 0);
}

TEST_F(ReceiptCorrectionsTest, AnItemWithAnAdjustmentIsFoundBehindLaterLines) {
  for (const int quantity : {0, 1000}) {
    device.PrintRecItem("A", 50000, 0, 1, 0, "");
    device.PrintRecItemAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 5000, 1);
    device.PrintRecItem("B", 50000, 0, 1, 0, "");
    const size_t lines = device.receipt().lines().size();
    ASSERT_EQ(device.PrintRecVoidItem("A", 50000, quantity, 1, 5000, 1), RTF_SUCCESS);
    EXPECT_EQ(device.receipt().lines()[lines - 2].open_quantity, 0);
    EXPECT_EQ(device.receipt().lines()[lines - 1].open_quantity, kOnePiece);
  }
  EXPECT_EQ(device.receipt().total(), 100000);
}

TEST_F(ReceiptCorrectionsTest, FuelGoesBackAsAWholeLine) {
  device.PrintRecItemFuel("GASOLIO", 0, 30000, 1, 15000, "l", 10000, "Accisa");
  const std::string before = Snapshot();
  EXPECT_EQ(device.PrintRecItemFuelVoid("GASOLIO", 15000, 1, 10000), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(device.PrintRecItemFuelVoid("GASOLIO", 450000, 1, 10000), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().total(), 0);
}

// --- Change

TEST_F(ReceiptCorrectionsTest, WhatIsNotPaidGivesNoChange) {
  device.ResetPrn();
  uint8_t kind = static_cast<uint8_t>(TenderKind::kNotPaid);
  uint8_t flags = Subtender::kGivesChange;
  uint8_t digits = 0;
  uint32_t value = 0;
  char description[64] = "BUONO";
  ASSERT_EQ(device.ConfigSubtender(true, 1, &kind, description, &flags, &value, &digits),
            RTF_SUCCESS);
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  Sell(1, 100000);
  const std::string before = Snapshot();
  EXPECT_EQ(device.PrintRecTotalEx(1000000, "10", false), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(device.PrintRecTotalEx(100000, "10", false), RTF_SUCCESS);
  EXPECT_EQ(device.store().documents().back().not_paid, 100000);
}

}  // namespace
}  // namespace lorimat
