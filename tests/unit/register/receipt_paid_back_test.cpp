// A sale goes back once: by credit notes over parts of it, by one over the whole, or by a void.
#include "report_fixture.h"

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

// The same numbers, but not this sale: of another register, or of another day.
TEST_F(ReceiptPaidBackTest, CreditNotesForOtherRegistersAreNotLookedUp) {
  Receipt(1, 500000);
  ASSERT_EQ(device.BeginDocCancel(1, 1, "", true), RTF_SUCCESS);
  Receipt(1, 500000);
  EXPECT_EQ(Refund(10000, "15012024", "99XXX9999999ZZ"), RTF_SUCCESS);
  EXPECT_EQ(Refund(10000, "14012024"), RTF_SUCCESS);
  EXPECT_EQ(device.store().documents().back().referred_number, 0);
}

// Numbers that no sale has yet leave alone the sale that will have them.
TEST_F(ReceiptPaidBackTest, CreditNotesLeaveLaterSalesAlone) {
  Receipt(1, 500000);
  ASSERT_EQ(device.BeginDocRefund(3, 1, ""), RTF_SUCCESS);
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
