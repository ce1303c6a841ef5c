// A sale goes back once: by credit notes over parts of it, by one over the whole, or by a void; and
// never more of it than was sold.
#include "pal/peripherals/keyboard/functioncode.h"
#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

class ReceiptPaidBackTest : public ReportTest {
 protected:
  // A credit note of one line.
  int Refund(int64_t price, const char* date = "", const char* serial = "") {
    const int code = device.BeginDocTelematicRefund(1, 1, date, serial);
    if (code != RTF_SUCCESS) return code;
    EXPECT_EQ(Sell(1, price), RTF_SUCCESS);
    return PayRest();
  }
};

TEST_F(ReceiptPaidBackTest, AVoidWantsASaleWithoutCreditNotes) {
  Receipt(1, 500000);
  ASSERT_EQ(device.BeginDocRefundEx(1, 1, "", true), RTF_SUCCESS);
  const std::string before = Snapshot();
  EXPECT_EQ(device.BeginDocCancel(1, 1, "", true), RTF_E_EXISTS);
  EXPECT_EQ(device.BeginDocCancel(1, 1, "", false), RTF_E_EXISTS);
  EXPECT_EQ(device.BeginDocTelematicCancel(1, 1, "15012024", false, ""), RTF_E_EXISTS);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(Item(89), "0");
}

TEST_F(ReceiptPaidBackTest, APartThatWentBackKeepsASaleFromBeingVoid) {
  Receipt(1, 500000);
  ASSERT_EQ(Refund(100000), RTF_SUCCESS);
  EXPECT_EQ(device.BeginDocCancel(1, 1, "", true), RTF_E_EXISTS);
  EXPECT_EQ(device.BeginDocRefundEx(1, 1, "", true), RTF_E_EXISTS);
  EXPECT_EQ(Item(89), "400000");
}

TEST_F(ReceiptPaidBackTest, ASaleGoesBackInPartsUntilNothingIsLeft) {
  Receipt(1, 500000);
  ASSERT_EQ(Refund(100000), RTF_SUCCESS);
  ASSERT_EQ(Refund(400000, "15012024"), RTF_SUCCESS);
  const std::string before = Snapshot();
  EXPECT_EQ(device.BeginDocRefund(1, 1, ""), RTF_E_EXISTS);
  EXPECT_EQ(device.BeginDocRefundEx(1, 1, "", false), RTF_E_EXISTS);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(Item(89), "0");
}

TEST_F(ReceiptPaidBackTest, AVoidSaleTakesNoCreditNote) {
  Receipt(1, 500000);
  ASSERT_EQ(device.BeginDocCancel(1, 1, "", true), RTF_SUCCESS);
  const std::string before = Snapshot();
  EXPECT_EQ(device.BeginDocRefund(1, 1, ""), RTF_E_EXISTS);
  EXPECT_EQ(device.BeginDocTelematicRefund(1, 1, "15012024", "99LRM0000001VR"), RTF_E_EXISTS);
  EXPECT_EQ(Snapshot(), before);
}

// The same numbers, but not this sale: it is unknown here, and nothing limits it.
TEST_F(ReceiptPaidBackTest, CreditNotesForOtherRegistersAreNotLookedUp) {
  Receipt(1, 500000);
  ASSERT_EQ(device.BeginDocCancel(1, 1, "", true), RTF_SUCCESS);
  EXPECT_EQ(Refund(10000, "15012024", "99XXX9999999ZZ"), RTF_SUCCESS);
  EXPECT_EQ(Refund(9000000, "14012024", "99XXX9999999ZZ"), RTF_SUCCESS);
  EXPECT_EQ(device.store().documents().back().referred_number, 0);
}

TEST_F(ReceiptPaidBackTest, ThePaperSaysThatAnotherRegisterSold) {
  Receipt(1, 500000);
  NewPaper();
  ASSERT_EQ(Refund(10000, "15012024", "99XXX9999999ZZ"), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("RT 99XXX9999999ZZ\nDocumento di altro registratore\n"),
            std::string::npos);
  ASSERT_EQ(Refund(10000, "15012024", "99LRM0000001VR"), RTF_SUCCESS);
  ASSERT_EQ(Refund(10000), RTF_SUCCESS);
  ASSERT_EQ(device.BeginDocTelematicRefund(0, 0, "", ""), RTF_SUCCESS);
  EXPECT_EQ(NewPaper().find("altro registratore"), std::string::npos);
}

// A credit note says nothing about what was sold, or the truth.
TEST_F(ReceiptPaidBackTest, AReferenceToThisRegisterNamesASale) {
  Receipt(1, 500000);
  ASSERT_EQ(device.BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 500000), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);  // invoice 1
  ASSERT_EQ(device.BeginDocTelematicRefund(0, 0, "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);  // document 0001-0002
  const struct {
    int number;
    int closure;
    const char* date;
    const char* serial;
    int code;
  } rows[] = {
      {3, 1, "", "", RTF_E_NOEXIST},
      {2, 1, "", "", RTF_E_NOEXIST},  // a credit note itself
      {1, 2, "", "", RTF_E_NOEXIST},
      {1, 0, "", "", RTF_E_NOEXIST},
      {0, 1, "", "", RTF_E_NOEXIST},
      {0, 0, "15012024", "", RTF_E_NOEXIST},
      {0, 0, "", "99LRM0000001VR", RTF_E_NOEXIST},
      {3, 1, "15012024", "99LRM0000001VR", RTF_E_NOEXIST},
      {1, 1, "14012024", "", RTF_EFPTR_BAD_DATE},
      {1, 1, "14012024", "99LRM0000001VR", RTF_EFPTR_BAD_DATE},
      // It is this register in whatever way it is written.
      {1, 1, "14012024", " ", RTF_EFPTR_BAD_DATE},
      {1, 1, "14012024", " 99lrm0000001vr\r", RTF_EFPTR_BAD_DATE},
  };
  const std::string before = Snapshot();
  for (const auto& row : rows) {
    EXPECT_EQ(device.BeginDocTelematicRefund(row.number, row.closure, row.date, row.serial),
              row.code)
        << row.number << " " << row.closure << " " << row.date << " " << row.serial;
    if (*row.serial != '\0') continue;
    EXPECT_EQ(device.BeginDocRefund(row.number, row.closure, row.date), row.code);
    EXPECT_EQ(device.BeginDocRefundEx(row.number, row.closure, row.date, false), row.code);
  }
  EXPECT_EQ(
      device.KeyCodeInput("\x0a\x0a\x0a\x01\x0a\x0a\x0a\x03", "", "", FunctionCode::kOpenRefundDoc),
      RTF_SUCCESS);
  EXPECT_EQ(Item(368), std::to_string(RTF_E_NOEXIST));
  EXPECT_EQ(device.KeyCodeInput("", "", "", FunctionCode::kClear), RTF_SUCCESS);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(device.BeginDocTelematicRefund(0, 0, "", ""), RTF_SUCCESS);
}

// Two credit notes of 9,00 on a sale of 10,00.
TEST_F(ReceiptPaidBackTest, CreditNotesComeToTheSaleAtMost) {
  Receipt(1, 100000);
  ASSERT_EQ(Refund(90000), RTF_SUCCESS);
  ASSERT_EQ(device.BeginDocRefund(1, 1, ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 90000), RTF_SUCCESS);
  const std::string before = Snapshot();
  EXPECT_EQ(PayRest(), RTF_EFPTR_FISCAL_TOTALS_ERROR);
  EXPECT_EQ(PayCash(10000), RTF_EFPTR_FISCAL_TOTALS_ERROR);  // in parts neither
  EXPECT_EQ(device.PrintRecNotPaid("", 90000), RTF_EFPTR_FISCAL_TOTALS_ERROR);
  EXPECT_EQ(Snapshot(), before);
  // The host corrects it, and what is left goes back.
  ASSERT_EQ(Sell(1, 90000, "", PflItemType::kPrintRecItemVoid), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10100), RTF_SUCCESS);
  EXPECT_EQ(PayRest(), RTF_EFPTR_FISCAL_TOTALS_ERROR);
  ASSERT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 100), RTF_SUCCESS);
  EXPECT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Item(89), "0");
  EXPECT_EQ(device.BeginDocRefund(1, 1, ""), RTF_E_EXISTS);
}

// 10,00 at 22 % and 10,00 at 10 %, 4,00 off the subtotal: 8,00 of each.
TEST_F(ReceiptPaidBackTest, NoVatEntryGivesBackMoreThanWasSoldInIt) {
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 100000), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 40000), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  const auto refund = [this](int department, int64_t price) {
    EXPECT_EQ(device.BeginDocRefund(1, 1, ""), RTF_SUCCESS);
    EXPECT_EQ(Sell(department, price), RTF_SUCCESS);
    const int code = PayRest();
    if (code != RTF_SUCCESS) device.ResetPrn();
    return code;
  };
  EXPECT_EQ(refund(1, 80100), RTF_EFPTR_FISCAL_TOTALS_ERROR);
  EXPECT_EQ(refund(1, 30000), RTF_SUCCESS);
  EXPECT_EQ(refund(1, 50100), RTF_EFPTR_FISCAL_TOTALS_ERROR);
  EXPECT_EQ(refund(3, 100), RTF_EFPTR_FISCAL_TOTALS_ERROR);  // nothing was sold in it
  EXPECT_EQ(refund(1, 50000), RTF_SUCCESS);
  EXPECT_EQ(refund(2, 80000), RTF_SUCCESS);
  EXPECT_EQ(Item(89), "0");
}

// Line by line at full price, and the discount behind them: as the sale was made.
TEST_F(ReceiptPaidBackTest, ADiscountedSaleGoesBackTheWayItWasSold) {
  for (const bool cancel : {true, false}) {
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
    ASSERT_EQ(Sell(2, 50000), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, "", 100000),
              RTF_SUCCESS);
    ASSERT_EQ(PayRest(), RTF_SUCCESS);
    const StoredDocument sale = device.store().documents().back();
    ASSERT_EQ(sale.total, 135000);
    ASSERT_EQ(cancel ? device.BeginDocCancel(sale.number, 1, "", false)
                     : device.BeginDocRefund(sale.number, 1, ""),
              RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
    ASSERT_EQ(Sell(2, 50000), RTF_SUCCESS);
    EXPECT_EQ(PayRest(), RTF_EFPTR_FISCAL_TOTALS_ERROR);
    ASSERT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, "", 100000),
              RTF_SUCCESS);
    EXPECT_EQ(PayRest(), RTF_SUCCESS);
    EXPECT_EQ(device.store().documents().back().by_vat, sale.by_vat);
  }
}

// The total alone would do.
TEST_F(ReceiptPaidBackTest, AVoidByItsLinesIsOfTheVatEntriesOfTheSale) {
  Receipt(1, 100000);
  ASSERT_EQ(device.BeginDocCancel(1, 1, "", false), RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 100000), RTF_SUCCESS);
  const std::string before = Snapshot();
  EXPECT_EQ(PayRest(), RTF_EFPTR_FISCAL_TOTALS_ERROR);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_FALSE(device.store().documents()[0].voided);
}

TEST_F(ReceiptPaidBackTest, WhatIsAbandonedHasNotGoneBack) {
  Receipt(1, 100000);
  ASSERT_EQ(device.BeginDocRefund(1, 1, ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
  ASSERT_EQ(PayCash(40000), RTF_SUCCESS);
  ASSERT_EQ(device.ResetPrn(), RTF_SUCCESS);
  EXPECT_EQ(Refund(100000), RTF_SUCCESS);
}

// Numbers that no sale has yet name none.
TEST_F(ReceiptPaidBackTest, CreditNotesLeaveLaterSalesAlone) {
  Receipt(1, 500000);
  EXPECT_EQ(device.BeginDocRefund(3, 1, ""), RTF_E_NOEXIST);
  ASSERT_EQ(device.BeginDocTelematicRefund(3, 1, "", "99XXX9999999ZZ"), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  Receipt(1, 500000);
  EXPECT_EQ(device.BeginDocRefundEx(3, 1, "", true), RTF_SUCCESS);
}

TEST_F(ReceiptPaidBackTest, AnotherRegistersCreditNoteLeavesOwnSalesAlone) {
  Receipt(1, 500000);
  ASSERT_EQ(Refund(10000, "15012024", "99XXX9999999ZZ"), RTF_SUCCESS);
  EXPECT_EQ(device.store().documents().back().referred_closure, 0);
  EXPECT_EQ(device.store().documents().back().referred_number, 0);
  EXPECT_EQ(device.BeginDocRefundEx(1, 1, "", true), RTF_SUCCESS);
}

TEST_F(ReceiptPaidBackTest, TheOwnSerialNumberNamesAnOwnSale) {
  Receipt(1, 500000);
  ASSERT_EQ(Refund(10000, "15012024", "99LRM0000001VR"), RTF_SUCCESS);
  EXPECT_EQ(device.store().documents().back().referred_number, 1);
  EXPECT_EQ(device.BeginDocRefundEx(1, 1, "", true), RTF_E_EXISTS);
}

// Sold on the 15th, goes back on the 16th and 17th.
class PaidBackOverDaysTest : public ClockTest {
 protected:
  // The register of the fixture has a clock that stands still.
  VirtualRegister shop{Settings()};

  int Line(int64_t price) { return shop.PrintRecItemEx(0, "", price, 0, -1, 0, "", 1, true, ""); }
};

TEST_F(PaidBackOverDaysTest, TheLimitIsThatOfTheSaleOnEveryDay) {
  ASSERT_EQ(shop.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Line(100000), RTF_SUCCESS);
  ASSERT_EQ(shop.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  for (const int day : {16, 17}) {
    ASSERT_EQ(shop.PrintZReport(), RTF_SUCCESS);
    At(day, 1, 9, 0);
    EXPECT_EQ(shop.BeginDocRefund(1, 1, day == 16 ? "16012024" : "17012024"), RTF_EFPTR_BAD_DATE);
    ASSERT_EQ(shop.BeginDocRefund(1, 1, "15012024"), RTF_SUCCESS);
    // 4,00 goes back on the 16th; 6,00 is left on the 17th.
    ASSERT_EQ(Line(day == 16 ? 40000 : 60100), RTF_SUCCESS);
    const int code = shop.PrintRecTotalEx(0, "0", true);
    EXPECT_EQ(code, day == 16 ? RTF_SUCCESS : RTF_EFPTR_FISCAL_TOTALS_ERROR);
  }
}

// What goes back is what the sale took, without the change that it gave.
TEST_F(ReceiptPaidBackTest, TheMoneyThatGoesBackComesToTheSale) {
  for (const bool cancel : {true, false}) {
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecTotalEx(30000, "2", false), RTF_SUCCESS);
    ASSERT_EQ(PayCash(200000), RTF_SUCCESS);
    const StoredDocument sale = device.store().documents().back();
    ASSERT_EQ(sale.change, 130000);
    ASSERT_EQ(sale.payments.back().amount, 200000);
    ASSERT_EQ(cancel ? device.BeginDocCancel(sale.number, 1, "", true)
                     : device.BeginDocRefundEx(sale.number, 1, "", true),
              RTF_SUCCESS);
    const StoredDocument back = device.store().documents().back();
    EXPECT_EQ(back.change, 0);
    ASSERT_EQ(back.payments.size(), 2u);
    EXPECT_EQ(back.payments[0].tender, "2");
    EXPECT_EQ(back.payments[0].amount, 30000);
    EXPECT_EQ(back.payments[1].tender, "0");
    EXPECT_EQ(back.payments[1].amount, 70000);
    EXPECT_EQ(back.by_tender, sale.by_tender);
  }
  EXPECT_EQ(Item(372), "0");
}

}  // namespace
}  // namespace lorimat
