// Totalizers and counters of a small day worked out by hand.
#include <algorithm>
#include <map>
#include <vector>

#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

class TotalsTest : public ReportTest {};

// One document of each kind, every figure by hand:
//   receipt: 2 x 6,00 dept 1, 10 % off: 10,80; 5,00 dept 2, taken back; 2,00 dept 2 returned goods
//            against 9,00 dept 2; subtotal 1,78 off 17,80, spread 1,08 (22 %) and 0,70 (10 %).
//            It comes to 16,02: 9,72 at 22 % and 6,30 at 10 %. Paid 6,02 by ticket, 10,00 by "6".
//   invoice: 30,00 dept 1, 1,50 surcharge: 31,50. Paid by "5".
//   credit note: 4,00 dept 2 in cash.
//   a receipt of 7,00 dept 4 in cash, and its void.
class FiguresTest : public TotalsTest {
 protected:
  FiguresTest() {
    device.BeginFiscalReceipt(false);
    SellPieces(1, 2000, 60000);
    Expect(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, "", 100000, -1, -2));
    Sell(2, 50000);
    Expect(Sell(2, 50000, "", PflItemType::kPrintRecItemVoid));
    Sell(2, 90000);
    Expect(Sell(2, 20000, "", PflItemType::kPrintRecItemRefund));
    Expect(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, "", 100000));
    Expect(device.PrintRecTotalEx(60200, "4", false));
    Expect(PayRest("6"));
    device.BeginDocInvoice("ROSSI", "", "", "", "");
    Sell(1, 300000);
    Expect(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_SURCHARGE, "", 15000, -1, -2));
    Expect(PayRest("5"));
    device.BeginDocTelematicRefund(0, 0, "", "");
    Sell(2, 40000);
    Expect(PayRest());
    device.BeginFiscalReceipt(false);
    Sell(4, 70000);
    Expect(PayRest());
    Expect(device.BeginDocTelematicCancel(0, 0, "", true, ""));
  }
  static void Expect(int code) { EXPECT_EQ(code, RTF_SUCCESS); }
};

TEST_F(FiguresTest, ByVatClassAndKind) {
  const struct {
    int kind;
    const char* all;
    const char* at_22;
    const char* at_10;
    const char* at_4;
  } rows[] = {
      // Receipts 9,72 / 6,30 / 7,00; invoice 31,50; credit note 4,00; void 7,00.
      {RTF_FPTR_GT_VAT_CATEGORY_RECEIPT_GROSS, "230200", "97200", "63000", "70000"},
      {RTF_FPTR_GT_VAT_CATEGORY_INVOICE_GROSS, "315000", "315000", "0", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_REFUND_GROSS, "40000", "0", "40000", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_CANCEL_GROSS, "70000", "0", "0", "70000"},
      {RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS, "435200", "412200", "23000", "0"},
      {RTF_FPTR_GT_GROSS, "435200", "412200", "23000", "0"},
      // Tax: 9,72 -> 1,75; 6,30 -> 0,57; 7,00 -> 0,27; 31,50 -> 5,68; 4,00 -> 0,36.
      {RTF_FPTR_GT_VAT_CATEGORY_RECEIPT, "204300", "79700", "57300", "67300"},
      {RTF_FPTR_GT_VAT_CATEGORY_INVOICE, "258200", "258200", "0", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_REFUND, "36400", "0", "36400", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_CANCEL, "67300", "0", "0", "67300"},
      {RTF_FPTR_GT_VAT_CATEGORY_DAILY, "358800", "337900", "20900", "0"},
      {RTF_FPTR_GT_NET, "358800", "337900", "20900", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_TAXALL, "76400", "74300", "2100", "0"},
      // Not paid: 10,00 of 16,02 by "6", spread 6,07 and 3,93; 31,50 by "5".
      {RTF_FPTR_GT_VAT_CATEGORY_SERVICES_NOT_PAID_GROSS, "100000", "60700", "39300", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_SERVICES_NOT_PAID, "85500", "49800", "35700", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_INVOICES_NOT_PAID_GROSS, "315000", "315000", "0", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_INVOICES_NOT_PAID, "258200", "258200", "0", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID_GROSS, "0", "0", "0", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID, "0", "0", "0", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_UNDELIVERED_NOT_PAID_GROSS, "0", "0", "0", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_UNDELIVERED_NOT_PAID, "0", "0", "0", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_GIFT_GROSS, "0", "0", "0", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_GIFT, "0", "0", "0", "0"},
      {RTF_FPTR_GT_NOT_PAID, "415000", "375700", "39300", "0"},
      // Lines and adjustments, as they were entered on receipts and invoice.
      {RTF_FPTR_GT_ITEM, "630000", "420000", "140000", "70000"},
      {RTF_FPTR_GT_ITEM_VOID, "50000", "0", "50000", "0"},
      {RTF_FPTR_GT_REFUND, "20000", "0", "20000", "0"},
      {RTF_FPTR_GT_REFUND_VOID, "0", "0", "0", "0"},
      {RTF_FPTR_GT_DISCOUNT, "12000", "12000", "0", "0"},
      {RTF_FPTR_GT_DISCOUNT_VOID, "0", "0", "0", "0"},
      {RTF_FPTR_GT_SURCHARGE, "15000", "15000", "0", "0"},
      {RTF_FPTR_GT_SURCHARGE_VOID, "0", "0", "0", "0"},
      {RTF_FPTR_GT_SUBTOTAL_DISCOUNT, "17800", "10800", "7000", "0"},
      {RTF_FPTR_GT_SUBTOTAL_DISCOUNT_VOID, "0", "0", "0", "0"},
      {RTF_FPTR_GT_SUBTOTAL_SURCHARGES, "0", "0", "0", "0"},
      {RTF_FPTR_GT_SUBTOTAL_SURCHARGES_VOID, "0", "0", "0", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_SERVICES_GROSS, "0", "0", "0", "0"},
      {RTF_FPTR_GT_VAT_CATEGORY_SERVICES, "0", "0", "0", "0"},
  };
  for (const auto& row : rows) {
    EXPECT_EQ(Totalizer(0, row.kind), row.all) << row.kind;
    EXPECT_EQ(Totalizer(1, row.kind), row.at_22) << row.kind;
    EXPECT_EQ(Totalizer(2, row.kind), row.at_10) << row.kind;
    EXPECT_EQ(Totalizer(4, row.kind), row.at_4) << row.kind;
    // Every class that hosts read exists; those without sales stand at zero.
    for (const int empty : {3, 5, 6, 7, 8, 10, 20, 30, 40, 50, 60}) {
      EXPECT_EQ(Totalizer(empty, row.kind), "0") << row.kind << " class " << empty;
    }
  }
}

TEST_F(FiguresTest, ByDepartment) {
  const int quantity = RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_SOLD_QUANTITY;
  const int sold = RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_SOLD_GROSS_VALUE;
  const int gross = RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_GROSS_VALUE;
  // Department 1: 2 pieces and one; 10,80 and 31,50.
  EXPECT_EQ(Totalizer(1, quantity), "3000");
  EXPECT_EQ(Totalizer(1, sold), "423000");
  EXPECT_EQ(Totalizer(1, gross), "423000");
  // Department 2 sold 9,00, took back 2,00 on the receipt and 4,00 by credit note.
  EXPECT_EQ(Totalizer(2, quantity), "1000");
  EXPECT_EQ(Totalizer(2, sold), "90000");
  EXPECT_EQ(Totalizer(2, gross), "30000");
  // Department 4 sold 7,00, void since.
  EXPECT_EQ(Totalizer(4, quantity), "1000");
  EXPECT_EQ(Totalizer(4, sold), "70000");
  EXPECT_EQ(Totalizer(4, gross), "0");
  EXPECT_EQ(Totalizer(3, sold), "0");
  EXPECT_EQ(Totalizer(4, RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_DEPARTMENT_NAME), "REPARTO 4");
  for (const int bad : {-1, 0, 41}) {
    EXPECT_EQ(Totalizer(bad, quantity), "refused 106");
    EXPECT_EQ(Totalizer(bad, RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_DEPARTMENT_NAME), "refused 106");
  }
}

TEST_F(FiguresTest, ByWayOfPaying) {
  EXPECT_EQ(Totalizer(0, RTF_FPTR_GT_TICKET_PAYED_GROSS), "60200");
  EXPECT_EQ(Totalizer(0, RTF_FPTR_GT_TICKET_PAYED_COUNT), "1");
  EXPECT_EQ(Totalizer(0, RTF_FPTR_GT_DISCOUNT_ON_PAYMENT), "0");
  EXPECT_EQ(Totalizer(0, RTF_FPTR_GT_GENERIC_VOUCHER_GROSS), "0");
  EXPECT_EQ(Totalizer(1, RTF_FPTR_GT_TICKET_PAYED_GROSS), "refused 106");
  Receipt(1, 10000, "8");
  Receipt(1, 20000, "30");
  EXPECT_EQ(Totalizer(0, RTF_FPTR_GT_DISCOUNT_ON_PAYMENT), "10000");
  EXPECT_EQ(Totalizer(0, RTF_FPTR_GT_GENERIC_VOUCHER_GROSS), "20000");
}

TEST_F(FiguresTest, CountersOfTheDataItems) {
  const std::map<int, const char*> items = {
      {9, "435200"},                                            // grand total
      {12, "0"},                                                // closures
      {28, "40000"},                                            // credit notes
      {29, "315000"},                                           // invoices
      {32, "545200"},                                           // sales: 16,02 + 31,50 + 7,00
      {58, "0"},                                                // drawer
      {89, "435200"},                                           // the day
      {112, "0"},                                               // non-fiscal documents
      {121, "230200"},                                          // receipts
      {154, "2"},                                               // and their number
      {372, "-40000"},                                          // cash: 7,00 in, 4,00 and 7,00 out
      {373, "0"},      {374, "0"}, {375, "0"}, {376, "60200"},  // ticket
      {377, "29800"},                                           // discounts: 1,20 and 1,78
      {378, "15000"},                                           // surcharges
      {379, "20000"},                                           // refund lines
      {380, "70000"},                                           // voids
      {381, "0"},      {390, "0"},
  };
  for (const auto& [number, value] : items) EXPECT_EQ(Item(number), value) << number;
  Receipt(1, 10000, "1");
  Receipt(1, 20000, "2");
  Receipt(1, 40000, "3");
  Receipt(1, 80000, "9");
  Receipt(1, 160000, "10");
  Receipt(1, 320000, "19");
  device.OpenDrawer();
  EXPECT_EQ(Item(373), "80000");
  EXPECT_EQ(Item(374), "10000");
  EXPECT_EQ(Item(375), "60000");
  EXPECT_EQ(Item(381), "160000");
  EXPECT_EQ(Item(389), "0");
  EXPECT_EQ(Item(390), "320000");
  EXPECT_EQ(Item(58), "1");
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(Item(12), "1");
  for (const int number : {28, 29, 32, 121, 154, 372, 376, 377, 378, 379, 380, 390}) {
    EXPECT_EQ(Item(number), "0") << number;
  }
  EXPECT_EQ(Item(9), "1065200");  // 43,52 and 63,00
}

TEST_F(FiguresTest, Scopes) {
  const int gross = RTF_FPTR_GT_GROSS;
  EXPECT_EQ(Totalizer(0, gross, RTF_FPTR_TT_DOCUMENT), "0");
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(Totalizer(0, gross, RTF_FPTR_TT_DAY), "0");
  EXPECT_EQ(Totalizer(0, gross, RTF_FPTR_TT_GRAND), "435200");
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  EXPECT_EQ(Totalizer(0, gross, RTF_FPTR_TT_DOCUMENT), "10000");
  EXPECT_EQ(Totalizer(0, gross, RTF_FPTR_TT_RECEIPT), "10000");
  EXPECT_EQ(Totalizer(0, gross, RTF_FPTR_TT_DAY), "0");
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Totalizer(0, gross, RTF_FPTR_TT_DOCUMENT), "0");
  EXPECT_EQ(Totalizer(0, gross, RTF_FPTR_TT_DAY), "10000");
  EXPECT_EQ(Totalizer(0, gross, RTF_FPTR_TT_GRAND), "445200");
  for (const int scope : {-1, 0, 5}) EXPECT_EQ(Totalizer(0, gross, scope), "refused 106");
}

TEST_F(FiguresTest, WhatIsNotModelledIsRefused) {
  for (const int kind :
       {RTF_FPTR_GT_ROUNDING_GROSS, RTF_FPTR_GT_ROUNDING_COUNT, RTF_FPTR_GT_GIFT_GROSS_RECEIPTS,
        RTF_FPTR_GT_GIFT_GROSS_REFUNDS, RTF_FPTR_GT_GIFT_GROSS_CANCELS, 0, -1, 27, 99, 116, 1000}) {
    for (int id = 0; id <= 8; ++id) EXPECT_EQ(Totalizer(id, kind), "refused 106") << kind;
  }
  for (const int id : {-1, 9, 11, 61, 70, 1000}) {
    EXPECT_EQ(Totalizer(id, RTF_FPTR_GT_GROSS), "refused 106") << id;
  }
  EXPECT_EQ(device.GetTotalizerExtend(0, RTF_FPTR_TT_DAY, RTF_FPTR_GT_GROSS, nullptr),
            RTF_E_ILLEGAL);
}

TEST_F(FiguresTest, TheOlderCallTakesItsScopeFromTheProperty) {
  char text[50];
  ASSERT_EQ(device.GetTotalizer(1, RTF_FPTR_GT_GROSS, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "412200");
  EXPECT_EQ(device.GetTotalizer(1, RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS, text), RTF_E_ILLEGAL);
  EXPECT_EQ(device.GetTotalizer(1, RTF_FPTR_GT_GROSS, nullptr), RTF_E_ILLEGAL);
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  ASSERT_EQ(device.SetIntProperty(RTF_PIDXFptr_TotalizerType, RTF_FPTR_TT_GRAND), RTF_SUCCESS);
  EXPECT_EQ(Property(RTF_PIDXFptr_TotalizerType), RTF_FPTR_TT_GRAND);
  ASSERT_EQ(device.GetTotalizer(1, RTF_FPTR_GT_GROSS, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "412200");
  for (const int scope : {0, 5, -1}) {
    EXPECT_EQ(device.SetIntProperty(RTF_PIDXFptr_TotalizerType, scope), RTF_E_ILLEGAL);
  }
}

TEST_F(TotalsTest, AdjustmentsAndLinesThatWereTakenBack) {
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
  // 1,00 off, taken back; then 2,00 off, gone with its line.
  ASSERT_EQ(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 10000, -1, -2),
            RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemAdjustmentEx2(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 10000, -1, -2, true),
            RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 20000, -1, -2),
            RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000, "", PflItemType::kPrintRecItemVoid), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 50000), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_SURCHARGE, "", 5000), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecSubtotalAdjustVoid(RTF_FPTR_AT_AMOUNT_SURCHARGE, 5000), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Totalizer(1, RTF_FPTR_GT_GROSS), "50000");
  EXPECT_EQ(Totalizer(1, RTF_FPTR_GT_ITEM), "150000");
  EXPECT_EQ(Totalizer(1, RTF_FPTR_GT_ITEM_VOID), "100000");
  EXPECT_EQ(Totalizer(1, RTF_FPTR_GT_DISCOUNT), "30000");
  EXPECT_EQ(Totalizer(1, RTF_FPTR_GT_DISCOUNT_VOID), "30000");
  EXPECT_EQ(Totalizer(1, RTF_FPTR_GT_SUBTOTAL_SURCHARGES), "5000");
  EXPECT_EQ(Totalizer(1, RTF_FPTR_GT_SUBTOTAL_SURCHARGES_VOID), "5000");
  EXPECT_EQ(Item(377), "0");
  EXPECT_EQ(Item(378), "0");
}

TEST_F(TotalsTest, WhatSeveralTendersLeaveUnpaidAddsUpByVat) {
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 10000), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(100, "6", false), RTF_SUCCESS);
  ASSERT_EQ(PayRest("7"), RTF_SUCCESS);
  // The first cent goes to the lower entry; the rest takes what each has left.
  EXPECT_EQ(Totalizer(1, RTF_FPTR_GT_VAT_CATEGORY_SERVICES_NOT_PAID_GROSS), "100");
  EXPECT_EQ(Totalizer(2, RTF_FPTR_GT_VAT_CATEGORY_SERVICES_NOT_PAID_GROSS), "0");
  EXPECT_EQ(Totalizer(1, RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID_GROSS), "9900");
  EXPECT_EQ(Totalizer(2, RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID_GROSS), "10000");
}

TEST_F(TotalsTest, ServicesAreWhatServiceDepartmentsSold) {
  RegisterSettings settings = TestSettings();
  settings.departments = {{.name = "MERCE", .vat = 1}, {.name = "TAGLIO", .vat = 1}};
  settings.departments[1].is_service = true;
  VirtualRegister shop(settings);
  shop.BeginFiscalReceipt(false);
  shop.PrintRecItemEx(0, "", 100000, 0, -1, 0, "", 1, true, "");
  shop.PrintRecItemEx(0, "", 122000, 0, -1, 0, "", 2, true, "");
  ASSERT_EQ(shop.PrintRecTotalEx(0, "7", true), RTF_SUCCESS);
  const auto read = [&](int kind) {
    char text[50] = "refused";
    shop.GetTotalizerExtend(1, RTF_FPTR_TT_DAY, kind, text);
    return std::string(text);
  };
  EXPECT_EQ(read(RTF_FPTR_GT_VAT_CATEGORY_SERVICES_GROSS), "122000");
  EXPECT_EQ(read(RTF_FPTR_GT_VAT_CATEGORY_SERVICES), "100000");
  // 22,20 at 22 %: 4,00 of tax.
  EXPECT_EQ(read(RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID_GROSS), "222000");
  EXPECT_EQ(read(RTF_FPTR_GT_VAT_CATEGORY_SSN_NOT_PAID), "182000");
}

}  // namespace
}  // namespace lorimat
