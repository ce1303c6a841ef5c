// Totalizers and counters of a small day worked out by hand, and of thirty documents that the
// test adds up by itself.
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
       {RTF_FPTR_GT_ROUNDING_GROSS, RTF_FPTR_GT_ROUNDING_COUNT, RTF_FPTR_GT_VAT_CATEGORY_GIFT_GROSS,
        RTF_FPTR_GT_VAT_CATEGORY_GIFT, RTF_FPTR_GT_GIFT_GROSS_RECEIPTS,
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

// --- Thirty documents, added up here by plain sums of cents

struct TestLine {
  int department;   // 1 to 5
  int64_t cents;    // unit price
  int thousandths;  // 0: one piece without a quantity
  int type = 0;     // PflItemType
  int64_t off = 0;  // discount on the line, in cents
};

struct TestDocument {
  char kind;  // 'S' sale, 'I' invoice, 'R' credit note, 'V' void of the last sale, 'A' abandoned
  std::vector<TestLine> lines = {};
  const char* tender = "0";
  int64_t cash_part = 0;     // paid in cash ahead of the tender, in cents
  int64_t subtotal_off = 0;  // in cents, on documents of a single VAT entry
  const char* serial = "";   // of a credit note: the register that sold, or this one
};

constexpr int64_t kRates[] = {0, 22, 10, 5, 4, 0};

int64_t RoundedTax(int64_t cents, int64_t rate) {
  return (2 * cents * rate + (100 + rate)) / (2 * (100 + rate));
}

const std::vector<TestDocument>& ThirtyDocuments() {
  using T = PflItemType;
  static const std::vector<TestDocument> documents = {
      {'S', {{1, 1000, 0}}},
      {'S', {{2, 120, 3000}, {4, 390, 750}}, "2"},
      {'S', {{3, 999, 0}, {5, 5000, 0}}, "4"},
      {'S', {{1, 1999, 0, 0, 199}}, "3"},
      {'I', {{1, 10000, 0}, {2, 505, 2000}}, "5"},
      {'R', {{1, 300, 0}}},
      {'S', {{4, 85, 0}}},
      {'V'},
      {'A', {{1, 777, 0}}},
      {'S', {{2, 1250, 0}}, "9"},
      {'S', {{1, 3333, 333}}},
      {'S', {{1, 500, 0}, {1, 200, 0, T::kPrintRecItemRefund}}},
      {'S', {{5, 10000, 0}, {5, 2500, 0, T::kPrintRecItemDeposit}}, "1"},
      {'S', {{5, 4000, 0}, {5, 1000, 0, T::kPrintRecItemBuoniMonouso}}},
      {'S', {{2, 650, 0}, {2, 650, 0, T::kPrintRecItemVoid}, {2, 700, 0}}},
      {'S', {{1, 2000, 0}}, "10", 500},
      {'S', {{1, 2000, 0}}, "29", 1999},
      {'I', {{4, 12345, 0}}, "0"},
      {'S', {{1, 4000, 0}}, "0", 0, 400},
      {'S', {{3, 1, 0}}},
      {'R', {{3, 1, 0}, {4, 10, 0}}, "2", 0, 0, "99LRM0000002"},
      {'S', {{2, 1, 1500}}},
      {'S', {{1, 9999999, 0}}, "2"},
      {'V'},
      {'S', {{1, 122, 0}, {2, 110, 0}, {3, 105, 0}, {4, 104, 0}, {5, 100, 0}}, "6", 41},
      {'S', {{1, 61, 0}}, "7"},
      {'A', {{5, 1, 0}}},
      {'S', {{4, 250, 2500}}, "8"},
      {'S', {{2, 333, 3000, 0, 99}}, "30"},
      {'S', {{1, 5, 0}, {2, 5, 0}}},
  };
  return documents;
}

// What the documents have to come to.
struct TestSums {
  std::map<char, int64_t> by_kind;
  std::map<char, int> counts;
  std::map<char, std::map<int, int64_t>> gross;
  std::map<char, std::map<int, int64_t>> tax;
  std::map<std::string, int64_t> tenders;
  std::map<int, int64_t> departments;
};

TEST_F(TotalsTest, ThirtyDocumentsOfEveryKindAddUp) {
  ASSERT_EQ(ThirtyDocuments().size(), 30u);
  TestSums sums;
  std::map<int, int64_t> last_gross, last_departments;  // of the last sale, for its void
  std::map<std::string, int64_t> last_tenders;
  for (const TestDocument& document : ThirtyDocuments()) {
    std::map<int, int64_t> gross, departments;
    std::map<std::string, int64_t> tenders;
    switch (document.kind) {
      case 'I':
        ASSERT_EQ(device.BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
        break;
      case 'R':
        ASSERT_EQ(device.BeginDocTelematicRefund(1, 1, "", document.serial), RTF_SUCCESS);
        break;
      case 'V':
        ASSERT_EQ(device.BeginDocTelematicCancel(0, 0, "", true, ""), RTF_SUCCESS);
        gross = last_gross;
        departments = last_departments;
        tenders = last_tenders;
        break;
      default:
        ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    }
    int64_t total = 0;
    for (const TestLine& line : document.lines) {
      const int code =
          line.thousandths == 0
              ? Sell(line.department, line.cents * 100, "", line.type)
              : SellPieces(line.department, line.thousandths, line.cents * 100, "", line.type);
      ASSERT_EQ(code, RTF_SUCCESS);
      if (line.off != 0) {
        ASSERT_EQ(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", line.off * 100,
                                                  -1, -2),
                  RTF_SUCCESS);
      }
      const int64_t pieces = line.thousandths == 0 ? 1000 : line.thousandths;
      const int64_t amount = (line.cents * pieces + 500) / 1000 - line.off;
      const int64_t signed_amount = line.type == 0 ? amount : -amount;
      gross[line.department] += signed_amount;
      departments[line.department] += signed_amount;
      total += signed_amount;
    }
    if (document.subtotal_off != 0) {
      ASSERT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "",
                                                  document.subtotal_off * 100),
                RTF_SUCCESS);
      gross[document.lines[0].department] -= document.subtotal_off;
      total -= document.subtotal_off;
    }
    if (document.kind == 'A') {
      ASSERT_EQ(device.PrintRecVoid(""), RTF_SUCCESS);
      ++sums.counts['A'];
      continue;
    }
    if (document.kind != 'V') {
      if (document.cash_part != 0) {
        ASSERT_EQ(device.PrintRecTotalEx(document.cash_part * 100, "0", false), RTF_SUCCESS);
        tenders["0"] += document.cash_part;
      }
      ASSERT_EQ(PayRest(document.tender), RTF_SUCCESS);
      tenders[document.tender] += total - document.cash_part;
    }
    const int sign = document.kind == 'S' || document.kind == 'I' ? 1 : -1;
    for (const auto& [vat, cents] : gross) {
      sums.by_kind[document.kind] += cents;
      sums.gross[document.kind][vat] += cents;
      sums.tax[document.kind][vat] += RoundedTax(cents, kRates[vat]);
    }
    for (const auto& [department, cents] : departments)
      sums.departments[department] += sign * cents;
    for (const auto& [tender, cents] : tenders) sums.tenders[tender] += sign * cents;
    ++sums.counts[document.kind];
    if (document.kind == 'S') {
      last_gross = gross;
      last_departments = departments;
      last_tenders = tenders;
    }
  }

  const int64_t day = sums.by_kind['S'] + sums.by_kind['I'] - sums.by_kind['R'] - sums.by_kind['V'];
  // 8 and 7 kinds: 24 documents of the day in numbers, 2 invoices, 2 abandoned.
  EXPECT_EQ(sums.counts['S'], 22);
  EXPECT_EQ(sums.counts['I'], 2);
  EXPECT_EQ(sums.counts['R'], 2);
  EXPECT_EQ(sums.counts['V'], 2);
  EXPECT_EQ(sums.counts['A'], 2);

  const auto text = [](int64_t cents) { return std::to_string(cents * 100); };
  const struct {
    char kind;
    int gross, net;
  } kinds[] = {
      {'S', RTF_FPTR_GT_VAT_CATEGORY_RECEIPT_GROSS, RTF_FPTR_GT_VAT_CATEGORY_RECEIPT},
      {'I', RTF_FPTR_GT_VAT_CATEGORY_INVOICE_GROSS, RTF_FPTR_GT_VAT_CATEGORY_INVOICE},
      {'R', RTF_FPTR_GT_VAT_CATEGORY_REFUND_GROSS, RTF_FPTR_GT_VAT_CATEGORY_REFUND},
      {'V', RTF_FPTR_GT_VAT_CATEGORY_CANCEL_GROSS, RTF_FPTR_GT_VAT_CATEGORY_CANCEL},
  };
  const auto check_totalizers = [&](int scope) {
    int64_t all_tax = 0;
    for (int vat = 1; vat <= 5; ++vat) {
      int64_t gross = 0, tax = 0;
      for (const auto& kind : kinds) {
        const int64_t kind_gross = sums.gross[kind.kind][vat];
        const int64_t kind_tax = sums.tax[kind.kind][vat];
        EXPECT_EQ(Totalizer(vat, kind.gross, scope), text(kind_gross)) << kind.kind << vat;
        EXPECT_EQ(Totalizer(vat, kind.net, scope), text(kind_gross - kind_tax)) << kind.kind << vat;
        const int sign = kind.kind == 'S' || kind.kind == 'I' ? 1 : -1;
        gross += sign * kind_gross;
        tax += sign * kind_tax;
      }
      EXPECT_EQ(Totalizer(vat, RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS, scope), text(gross));
      EXPECT_EQ(Totalizer(vat, RTF_FPTR_GT_VAT_CATEGORY_TAXALL, scope), text(tax));
      EXPECT_EQ(Totalizer(vat, RTF_FPTR_GT_VAT_CATEGORY_DEPARTMENT_GROSS_VALUE, scope),
                text(sums.departments[vat]));
      all_tax += tax;
    }
    EXPECT_EQ(Totalizer(0, RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS, scope), text(day));
    EXPECT_EQ(Totalizer(0, RTF_FPTR_GT_VAT_CATEGORY_TAXALL, scope), text(all_tax));
  };
  check_totalizers(RTF_FPTR_TT_DAY);
  EXPECT_EQ(Data(RTF_FPTR_GD_DAILY_TOTAL), text(day));

  NewPaper();
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  check_totalizers(RTF_FPTR_TT_GRAND);  // the closing keeps what the day had
  EXPECT_EQ(Data(RTF_FPTR_GD_GRAND_TOTAL), text(day));
  EXPECT_EQ(Data(RTF_FPTR_GD_DAILY_TOTAL), "0");

  // The paper of the closing says the same.
  const std::string paper = NewPaper();
  const auto money = [](int64_t cents) {
    const std::string sign = cents < 0 ? "-" : "";
    const int64_t size = std::abs(cents);
    const std::string rest = std::to_string(100 + size % 100).substr(1);
    return sign + std::to_string(size / 100) + "," + rest;
  };
  const auto has = [&](const std::string& left, const std::string& right) {
    const std::string line =
        "\n" + left + std::string(42 - left.size() - right.size(), ' ') + right + "\n";
    EXPECT_NE(paper.find(line), std::string::npos) << line << paper;
  };
  has("Documenti", "26");
  has("Fatture", "2");
  has("Documenti annullati in corso", "2");
  has("Vendite", money(sums.by_kind['S'] + sums.by_kind['I']));
  has("Resi", money(sums.by_kind['R']));
  has("Annulli", money(sums.by_kind['V']));
  has("Non riscosso",
      money(sums.tenders["5"] + sums.tenders["6"] + sums.tenders["7"] + sums.tenders["9"]));
  has("TOTALE GIORNALIERO", money(day));
  has("GRAN TOTALE", money(day));
  has("Pagamento contante", money(sums.tenders["0"]));
  has("Pagamento assegno", money(sums.tenders["1"]));
  has("Pagamento elettronico", money(sums.tenders["2"]));
  has("Pagamento bancomat", money(sums.tenders["3"]));
  has("Ticket", money(sums.tenders["4"]));
  has("Pagamento elettronico 01", money(sums.tenders["10"]));
  has("Pagamento elettronico 20", money(sums.tenders["29"]));
  const char* names[] = {"", "22%", "10%", "5%", "4%", "ES*"};
  for (int vat = 1; vat <= 5; ++vat) {
    has("Totale " + std::string(names[vat]), money(sums.gross['S'][vat] + sums.gross['I'][vat] -
                                                   sums.gross['R'][vat] - sums.gross['V'][vat]));
  }
}

}  // namespace
}  // namespace lorimat
