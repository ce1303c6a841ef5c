// Lines, payments, documents and what the register refuses.
#include "register/client/virtual_register.h"

#include <limits>
#include <random>

#include "register/desk/data_items.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

class VirtualRegisterTest : public RegisterTest {
 protected:
  void SetUp() override { ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS); }
};

TEST_F(VirtualRegisterTest, TheFormsOfAPrice) {
  RegisterSettings settings = TestSettings();
  settings.departments = {{"CON PREZZO", 1, 25000, 50000}, {"SENZA PREZZO", 2, 0, 0}};
  settings.articles = {{"8001", "LATTE", 2, 15000}, {"FREE", "SENZA PREZZO", 2, 0}};
  const int max = std::numeric_limits<int>::max();
  struct {
    int department;
    const char* article;
    int64_t price;
    int quantity;
    int64_t unit_price;
    int code;
    Amount amount;
  } const rows[] = {
      {1, "", 12300, 0, 0, RTF_SUCCESS, 12300},
      {1, "", 12349, 0, 0, RTF_SUCCESS, 12300},  // rounded to cents
      {1, "", 0, 2000, 12300, RTF_SUCCESS, 24600},
      {1, "", 99999, 2000, 12300, RTF_SUCCESS, 24600},  // the unit price counts
      {1, "", -1, 2000, 12300, RTF_SUCCESS, 24600},
      {1, "", 0, 2000, -1, RTF_SUCCESS, 50000},   // twice the preset price
      {1, "", -1, 0, 0, RTF_SUCCESS, 25000},      // the preset price
      {1, "", -1, 0, 12300, RTF_SUCCESS, 12300},  // one piece at the unit price
      {-1, "8001", -1, 0, 0, RTF_SUCCESS, 15000},
      {-1, "8001", 0, 3000, -1, RTF_SUCCESS, 45000},
      {-1, "8001", 10000, 0, 0, RTF_SUCCESS, 10000},
      {2, "", -1, 0, 0, RTF_EFPTR_BAD_PRICE, 0},
      {-1, "FREE", -1, 0, 0, RTF_EFPTR_BAD_PRICE, 0},
      {1, "", 0, 0, 0, RTF_EFPTR_BAD_PRICE, 0},
      {1, "", -2, 0, 0, RTF_EFPTR_BAD_PRICE, 0},
      {1, "", 0, 1000, 0, RTF_EFPTR_BAD_PRICE, 0},
      {1, "", 40, 0, 0, RTF_EFPTR_BAD_PRICE, 0},     // not even a cent
      {1, "", 50100, 0, 0, RTF_EFPTR_BAD_PRICE, 0},  // above the department's limit
      {1, "", 0, 2000, 50000, RTF_SUCCESS, 100000},  // the limit is one of the piece
      {1, "", 10000, -1, 0, RTF_EFPTR_BAD_ITEM_QUANTITY, 0},
      {1, "", 0, std::numeric_limits<int>::min(), 100, RTF_EFPTR_BAD_ITEM_QUANTITY, 0},
      {2, "", kMaxAmount, 0, 0, RTF_SUCCESS, kMaxAmount},
      {2, "", kMaxAmount + 100, 0, 0, RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW, 0},
      {2, "", 0, max, INT64_MAX, RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW, 0},
      {2, "", INT64_MAX, 0, 0, RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW, 0},
      {2, "", INT64_MIN, 0, 0, RTF_EFPTR_BAD_PRICE, 0},
      {0, "", 10000, 0, 0, RTF_EFPTR_BAD_VAT, 0},
      {3, "", 10000, 0, 0, RTF_EFPTR_BAD_VAT, 0},
      {-1, "", 10000, 0, 0, RTF_EFPTR_BAD_VAT, 0},
      {-2, "", 10000, 0, 0, RTF_EFPTR_BAD_VAT, 0},  // no last line yet
      {-3, "", 10000, 0, 0, RTF_EFPTR_BAD_VAT, 0},
      {max, "", 10000, 0, 0, RTF_EFPTR_BAD_VAT, 0},
      {-1, "8002", 10000, 0, 0, RTF_E_NOEXIST, 0},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::Message() << row.department << " " << row.article << " " << row.price
                                    << " " << row.quantity << " " << row.unit_price);
    VirtualRegister other(settings);
    other.BeginFiscalReceipt(true);
    const std::string paper = other.paper_text();
    EXPECT_EQ(other.PrintRecItemEx(0, "", row.price, row.quantity, -1, row.unit_price, "",
                                   row.department, true, row.article),
              row.code);
    EXPECT_EQ(other.receipt().total(), row.amount);
    if (row.code != RTF_SUCCESS) {
      EXPECT_EQ(other.paper_text(), paper);
    }
  }
}

TEST_F(VirtualRegisterTest, VatAndDepartmentMayBeThoseOfTheLastLine) {
  ASSERT_EQ(Sell(2, 10000), RTF_SUCCESS);
  ASSERT_EQ(Sell(-2, 20000), RTF_SUCCESS);
  // Department 1 at the VAT entry of the last line, then a VAT entry alone.
  ASSERT_EQ(device.PrintRecItemEx(0, "", 30000, 0, -2, 0, "", 1, true, ""), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemEx(0, "", 40000, 0, 4, 0, "", -1, true, ""), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().by_vat(), (std::map<int, Amount>{{2, 60000}, {4, 40000}}));
  EXPECT_EQ(device.receipt().by_department().at(2).amount, 30000);
  EXPECT_EQ(device.receipt().by_department().at(1).amount, 30000);
  EXPECT_EQ(device.PrintRecItemEx(0, "", 10000, 0, 6, 0, "", 1, true, ""), RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(device.PrintRecItemEx(0, "", 10000, 0, 0, 0, "", 1, true, ""), RTF_EFPTR_BAD_VAT);
}

TEST_F(VirtualRegisterTest, UnknownKindsOfLineAreIllegal) {
  for (const int type : {-1, 9, 1000}) {
    EXPECT_EQ(Sell(1, 10000, "", type), RTF_E_ILLEGAL);
  }
}

TEST_F(VirtualRegisterTest, VoidsOfALineThatWasNotSoldAreRefused) {
  Sell(1, 10000);
  const std::string before = Snapshot();
  EXPECT_EQ(Sell(1, 20000, "", PflItemType::kPrintRecItemVoid), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Sell(2, 10000, "", PflItemType::kPrintRecItemVoid), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Sell(1, 10000, "", PflItemType::kPrintRecItemRefundVoid), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Sell(1, 10000, "", PflItemType::kPrintRecItemDepositVoid), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Sell(1, 10000, "", PflItemType::kPrintRecItemVoidOfVoid), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
}

TEST_F(VirtualRegisterTest, RefundsBeyondTheSalesAreRefused) {
  Sell(1, 10000);
  const std::string before = Snapshot();
  EXPECT_EQ(Sell(1, 10100, "", PflItemType::kPrintRecItemRefund), RTF_EFPTR_NEGATIVE_TOTAL);
  EXPECT_EQ(Sell(2, 5000, "", PflItemType::kPrintRecItemRefund), RTF_EFPTR_NEGATIVE_VAT);
  EXPECT_EQ(Snapshot(), before);
}

TEST_F(VirtualRegisterTest, ASubtotalThatDiffersIsATotalsError) {
  Sell(1, 10000);
  const std::string before = Snapshot();
  EXPECT_EQ(device.PrintRecSubtotalEx(10100, true), RTF_EFPTR_FISCAL_TOTALS_ERROR);
  EXPECT_EQ(device.PrintRecSubtotal(9900), RTF_EFPTR_FISCAL_TOTALS_ERROR);
  EXPECT_EQ(device.PrintRecTotal(10100, 10100, "0"), RTF_EFPTR_FISCAL_TOTALS_ERROR);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(device.PrintRecSubtotalEx(10000, true), RTF_SUCCESS);
  EXPECT_EQ(Snapshot(), before);  // a check prints nothing
}

TEST_F(VirtualRegisterTest, TheSubtotalHoldsUntilTheNextLine) {
  Sell(1, 10000);
  EXPECT_EQ(Item(371), "28;2;1;0;0;1;1");
  device.PrintRecSubtotalEx(0, false);
  EXPECT_EQ(Item(371), "28;2;4;0;0;1;1");
  device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 1000);
  EXPECT_EQ(Item(371), "28;2;4;0;0;1;1");
  Sell(1, 10000);
  EXPECT_EQ(Item(371), "28;2;1;0;0;1;1");
}

TEST_F(VirtualRegisterTest, RefusedPaymentsChangeNothing) {
  Sell(1, 100000);
  const std::string before = Snapshot();
  for (const char* tender : {"", "124", "145", "BONUS", "00", "34", "-1", "0 "}) {
    EXPECT_EQ(device.PrintRecTotalEx(0, tender, true), RTF_E_NOEXIST) << tender;
  }
  EXPECT_EQ(device.PrintRecTotalEx(100100, "9", false), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecTotalEx(100100, "4", false), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecTotalEx(0, "0", false), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecTotalEx(-100, "0", false), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecTotalEx(kMaxAmount + 100, "0", false), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
}

TEST_F(VirtualRegisterTest, EveryTenderOfTheTablePays) {
  for (const char* tender :
       {"1",  "2",  "3",  "4",  "5",  "6",  "7",  "8",  "9",  "10", "11", "12", "13", "14", "15",
        "16", "17", "18", "19", "20", "21", "22", "23", "24", "25", "26", "27", "28", "29", "30"}) {
    Sell(1, 100);
    ASSERT_EQ(PayRest(tender), RTF_SUCCESS) << tender;
    ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  }
  EXPECT_EQ(device.store().daily().by_tender.size(), 30u);
  EXPECT_EQ(device.store().daily().not_paid, 400);  // 5, 6, 7 and 9
}

TEST_F(VirtualRegisterTest, AReceiptThatComesToNothingIsSettledByAPaymentOfNothing) {
  Sell(1, 10000);
  Sell(1, 10000, "", PflItemType::kPrintRecItemVoid);
  EXPECT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "0001");
  EXPECT_EQ(Data(RTF_FPTR_GD_GRAND_TOTAL), "0");
}

TEST_F(VirtualRegisterTest, AReceiptOpenedByKeyWaitsToBeClosed) {
  ASSERT_EQ(device.SetDataInternal(600, "1"), RTF_SUCCESS);
  Sell(1, 10000);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT_ENDING);
  EXPECT_EQ(Item(371), "20;4;3;0;0;1;1");
  ASSERT_EQ(device.EndFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_EQ(Item(600), "0");
  device.BeginFiscalReceipt(true);
  Sell(1, 10000);
  PayRest();
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
}

TEST_F(VirtualRegisterTest, TotalsAndCountersFollowTheDocuments) {
  Sell(1, 100000);
  EXPECT_EQ(Data(RTF_FPTR_GD_CURRENT_TOTAL), "100000");
  PayRest();
  device.BeginDocTelematicRefund(1, 1, "15012024", "99LRM0000002");
  Sell(1, 40000);
  PayRest();
  device.BeginDocInvoice("ROSSI", "", "", "", "");
  Sell(2, 10000);
  PayRest("5");
  device.BeginDocTelematicCancel(1, 1, "", true, "");
  EXPECT_EQ(Data(RTF_FPTR_GD_CURRENT_TOTAL), "0");
  EXPECT_EQ(Data(RTF_FPTR_GD_DAILY_TOTAL), "-30000");  // 10 - 4 + 1 - 10
  EXPECT_EQ(Data(RTF_FPTR_GD_GRAND_TOTAL), "-30000");
  EXPECT_EQ(Data(RTF_FPTR_GD_RECEIPT_NUMBER), "3");
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "0003");
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC_VOID), "1");
  EXPECT_EQ(Data(RTF_FPTR_GD_SIMP_INVOICE), "1");
  EXPECT_EQ(Data(RTF_FPTR_GD_NOT_PAID), "10000");
  EXPECT_EQ(Item(1), "1");
  EXPECT_EQ(Item(2), "1");
  EXPECT_EQ(Item(115), "1");
  EXPECT_EQ(Item(118), "1");
}

TEST_F(VirtualRegisterTest, VoidsWantASaleOfThisRegister) {
  Sell(1, 100000);
  PayRest();
  const std::string before = Snapshot();
  EXPECT_EQ(device.BeginDocTelematicCancel(2, 1, "15012024", false, ""), RTF_E_NOEXIST);
  EXPECT_EQ(device.BeginDocTelematicCancel(1, 2, "15012024", false, ""), RTF_E_NOEXIST);
  EXPECT_EQ(device.BeginDocTelematicCancel(-1, INT32_MIN, "", false, ""), RTF_E_NOEXIST);
  EXPECT_EQ(device.BeginDocTelematicCancel(1, 1, "14012024", false, ""), RTF_EFPTR_BAD_DATE);
  for (const char* date :
       {"150", "30022024", "31112024", "00012024", "15132024", "1501202x", "150120244"}) {
    EXPECT_EQ(device.BeginDocTelematicCancel(1, 1, date, false, ""), RTF_EFPTR_BAD_DATE) << date;
    EXPECT_EQ(device.BeginDocTelematicRefund(1, 1, date, ""), RTF_EFPTR_BAD_DATE) << date;
  }
  EXPECT_EQ(device.BeginDocTelematicRefund(10000, 1, "", ""), RTF_E_ILLEGAL);
  EXPECT_EQ(device.BeginDocTelematicRefund(1, -1, "", ""), RTF_E_ILLEGAL);
  EXPECT_EQ(Snapshot(), before);
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "15012024", true, ""), RTF_SUCCESS);
  EXPECT_EQ(device.BeginDocTelematicCancel(1, 1, "15012024", true, ""), RTF_E_EXISTS);
  // The void itself is no sale.
  EXPECT_EQ(device.BeginDocTelematicCancel(2, 1, "15012024", true, ""), RTF_E_NOEXIST);
}

TEST_F(VirtualRegisterTest, AVoidWithoutReferenceMeansTheLastDocument) {
  device.ResetPrn();
  EXPECT_EQ(device.BeginDocTelematicCancel(0, 0, "", false, ""), RTF_E_NOEXIST);
  device.BeginFiscalReceipt(true);
  Sell(1, 100000);
  PayRest();
  ASSERT_EQ(device.BeginDocTelematicCancel(0, 0, "", false, ""), RTF_SUCCESS);
  EXPECT_NE(device.paper_text().find("Documento di riferimento: 0001-0001"), std::string::npos);
}

TEST_F(VirtualRegisterTest, TheLinesOfAVoidComeToTheTotalOfTheSale) {
  Sell(1, 100000);
  PayRest();
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "15012024", false, ""), RTF_SUCCESS);
  EXPECT_EQ(Item(371), "20;6;1;0;0;1;1");
  Sell(1, 90000);
  const std::string before = Snapshot();
  EXPECT_EQ(PayRest(), RTF_EFPTR_FISCAL_TOTALS_ERROR);
  EXPECT_EQ(Snapshot(), before);
  Sell(1, 10000);
  EXPECT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Data(RTF_FPTR_GD_DAILY_TOTAL), "0");
  EXPECT_TRUE(device.store().documents()[0].voided);
}

TEST_F(VirtualRegisterTest, TheLeapDayIsADate) {
  // Of each year that four divides, and of a century that 400 divides.
  for (const char* date : {"29022024", "29022016", "29022000"}) {
    device.ResetPrn();
    EXPECT_EQ(device.BeginDocTelematicRefund(1, 1, date, "99LRM0000002"), RTF_SUCCESS) << date;
  }
  for (const char* date : {"29022023", "29022022", "29022014", "29021900"}) {
    device.ResetPrn();
    EXPECT_EQ(device.BeginDocTelematicRefund(1, 1, date, "99LRM0000002"), RTF_EFPTR_BAD_DATE)
        << date;
  }
}

TEST_F(VirtualRegisterTest, TheLastNumberOfADayAsksForItsClosing) {
  device.ResetPrn();
  for (int number = 1; number <= 9999; ++number) {
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 100), RTF_SUCCESS);
    ASSERT_EQ(PayRest(), RTF_SUCCESS);
  }
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_EFPTR_DAY_END_REQUIRED);
  // Told ahead on the last hundred.
  const std::string paper = device.paper_text();
  EXPECT_EQ(paper.find("0001-9899\n            RT 99LRM0000001VR\n           DOCUMENTI"),
            std::string::npos);
  EXPECT_NE(paper.find("0001-9900\n            RT 99LRM0000001VR\n"
                       "          DOCUMENTI RIMASTI: 99\n"),
            std::string::npos);
  EXPECT_NE(paper.find("DOCUMENTI RIMASTI: 0\n"), std::string::npos);
  EXPECT_EQ(device.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
}

TEST_F(VirtualRegisterTest, TheLastClosureFillsTheFiscalMemory) {
  RegisterSettings settings = TestSettings();
  settings.last_closure = 9998;
  VirtualRegister other(settings);
  EXPECT_EQ(other.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(other.PrintZReport(), RTF_EFPTR_FISCAL_MEMORY_FULL);
  EXPECT_EQ(other.BeginFiscalReceipt(true), RTF_EFPTR_FISCAL_MEMORY_FULL);
}

TEST_F(VirtualRegisterTest, ClosuresThatNobodySentAreCounted) {
  device.ResetPrn();
  EXPECT_EQ(Item(155), "0");
  EXPECT_EQ(Item(156), "");
  EXPECT_EQ(device.PrintZReportEx(false), RTF_SUCCESS);
  EXPECT_EQ(Item(155), "1");
  EXPECT_EQ(Item(156), "15012024");
  EXPECT_EQ(device.PrintZReportEx(true), RTF_SUCCESS);  // sends the older one too
  EXPECT_EQ(Item(155), "0");
  EXPECT_EQ(Item(156), "");
}

TEST_F(VirtualRegisterTest, DatesOfClockAndClosing) {
  device.ResetPrn();
  char date[50];
  ASSERT_EQ(device.GetDate(date), RTF_SUCCESS);
  EXPECT_STREQ(date, "150120241030");
  ASSERT_EQ(device.SetIntProperty(RTF_PIDXFptr_DateType, RTF_FPTR_DT_EOD), RTF_SUCCESS);
  EXPECT_EQ(device.GetDate(date), RTF_E_NOEXIST);
  device.PrintZReport();
  EXPECT_EQ(device.GetDate(date), RTF_SUCCESS);
  EXPECT_EQ(device.SetIntProperty(RTF_PIDXFptr_DateType, RTF_FPTR_DT_CONF), RTF_E_ILLEGAL);
}

TEST_F(VirtualRegisterTest, AClockThatFailsIsAFailureAndNothingIsPaid) {
  bool fails = false;
  RegisterSettings settings = TestSettings();
  settings.clock = [&fails]() -> std::tm {
    if (fails) throw std::runtime_error("no clock");
    return FixedTime();
  };
  VirtualRegister other(settings);
  other.BeginFiscalReceipt(true);
  other.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, "");
  fails = true;
  EXPECT_EQ(other.PrintRecTotalEx(0, "0", true), RTF_E_FAILURE);
  EXPECT_EQ(other.receipt().paid(), 0);
  EXPECT_TRUE(other.store().documents().empty());
  fails = false;
  EXPECT_EQ(other.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
}

TEST_F(VirtualRegisterTest, NullPointersAreSurvived) {
  int number = 0;
  char text[514] = "";
  EXPECT_EQ(device.PrintRecItemEx(0, nullptr, 10000, 0, -1, 0, nullptr, 1, true, nullptr),
            RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecMessage(nullptr), RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecTotalEx(0, nullptr, true), RTF_E_NOEXIST);
  EXPECT_EQ(device.PrintBarcode(nullptr, nullptr, nullptr, nullptr, nullptr, 1), RTF_E_ILLEGAL);
  EXPECT_EQ(device.GetDataInternal(371, nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(device.SetDataInternal(152, nullptr), RTF_SUCCESS);
  EXPECT_EQ(device.GetData(RTF_FPTR_GD_FISCAL_REC, &number, nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(device.GetData(RTF_FPTR_GD_FISCAL_REC, nullptr, text), RTF_SUCCESS);
  EXPECT_EQ(device.GetDate(nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(device.GetIntProperty(RTF_PIDXFptr_PrinterState, nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(device.GetStringProperty(RTF_PIDXFptr_PreLine, nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(device.SetStringProperty(RTF_PIDXFptr_PreLine, nullptr), RTF_SUCCESS);
  EXPECT_EQ(device.KeyCodeInput(nullptr, nullptr, nullptr, 0), RTF_SUCCESS);
  EXPECT_EQ(device.DirectIO(1, nullptr, text), RTF_E_ILLEGAL);
  EXPECT_EQ(device.DirectIO(1, &number, nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(device.DisplayTextAtEx(0, 0, nullptr, 0, 0, 0, true), RTF_SUCCESS);
  device.ResetPrn();
  EXPECT_EQ(device.BeginDocInvoice(nullptr, nullptr, nullptr, nullptr, nullptr), RTF_SUCCESS);
  device.ResetPrn();
  EXPECT_EQ(device.BeginDocTelematicRefund(0, 0, nullptr, nullptr), RTF_SUCCESS);
}

TEST_F(VirtualRegisterTest, TextsOfAnyLengthAndAnyByteStayWithinThePaper) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += static_cast<char>(1 + i * 7 % 255);
  EXPECT_EQ(Sell(1, 10000, text.c_str()), RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecItemEx(0, text.c_str(), 0, 2500, -1, 12345, text.c_str(), 1, true, ""),
            RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecItemEx(0, "", 1, 0, -1, 0, "", -1, true, text.c_str()), RTF_E_NOEXIST);
  EXPECT_EQ(device.PrintRecItemAdjustmentEx(1, text.c_str(), 100, -1, -2), RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecMessage(text.c_str()), RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecTotalEx(0, text.c_str(), true), RTF_E_NOEXIST);
  EXPECT_EQ(device.KeyCodeInput(text.c_str(), text.c_str(), text.c_str(), 75), RTF_SUCCESS);
  EXPECT_NE(Item(368), "0");
  EXPECT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(device.BeginDocInvoice(text.c_str(), "", "", "", text.c_str()), RTF_SUCCESS);
  for (const std::string& line : device.paper_lines()) {
    ASSERT_LE(line.size(), 42u);
    for (const char c : line) {
      const unsigned char byte = static_cast<unsigned char>(c);
      ASSERT_TRUE(byte >= 0x20 && byte != 0x7F);
    }
  }
}

// The sum of all registered documents is the grand total, whatever is called in whatever order.
TEST_F(VirtualRegisterTest, RandomCallsKeepTheBooksTrue) {
  std::mt19937 random(20240115);
  const auto pick = [&random](int count) {
    return static_cast<int>(random() % static_cast<unsigned>(count));
  };
  const char* tenders[] = {"0", "2", "9", "15", "99"};
  for (int call = 0; call < 50000; ++call) {
    int result = 0;
    switch (pick(16)) {
      case 0:
        result = device.BeginFiscalReceipt(true);
        break;
      case 1:
      case 2:
      case 3:
      case 4:
        result = device.PrintRecItemEx(pick(10), "X", pick(30000) - 100, pick(3) * 700, -1,
                                       pick(20000), "", pick(8) - 2, true, "");
        break;
      case 5:
        result = device.PrintRecItemAdjustmentEx2(pick(8), "", pick(20000), -1, pick(4) - 2,
                                                  pick(2) == 0);
        break;
      case 6:
        result = device.PrintRecSubtotalAdjustment(pick(8), "", pick(20000));
        break;
      case 7:
        result = device.PrintRecSubtotalEx(0, false);
        break;
      case 8:
      case 9:
        result = device.PrintRecTotalEx(pick(100000), tenders[pick(5)], pick(2) == 0);
        break;
      case 10:
        if (pick(20) == 0) result = device.ResetPrn();
        break;
      case 11:
        result = device.BeginDocTelematicCancel(pick(50), 1, "", pick(2) == 0, "");
        break;
      case 12:
        result = device.BeginDocTelematicRefund(pick(50), 1, "", "");
        break;
      case 13:
        result = device.KeyCodeInput("\x01\x0a", "", "", static_cast<uint8_t>(pick(256)));
        break;
      case 14:
        result = device.SetDataInternal(pick(2) == 0 ? 148 : 600, pick(2) ? "1" : "0");
        break;
      default:
        result = device.EndFiscalReceipt(true);
        break;
    }
    ASSERT_GE(result, 0);
  }
  Amount sum = 0;
  for (const StoredDocument& document : device.store().documents()) {
    Amount by_vat = 0;
    for (const auto& [vat, gross] : document.by_vat) {
      EXPECT_GE(gross, 0);
      by_vat += gross;
    }
    EXPECT_EQ(by_vat, document.total);
    Amount by_tender = 0;
    for (const auto& [tender, amount] : document.by_tender) by_tender += amount;
    EXPECT_EQ(by_tender, document.total);
    EXPECT_EQ(document.total % kCent, 0);
    const bool adds =
        document.kind == DocumentKind::kSale || document.kind == DocumentKind::kInvoice;
    sum += adds ? document.total : -document.total;
  }
  EXPECT_GT(device.store().documents().size(), 100u);
  EXPECT_EQ(device.store().grand_total(), sum);
}

TEST_F(VirtualRegisterTest, OperationsThatAreNotModelledAnswerIllegal) {
  int number = 0;
  char text[600] = "";
  const std::string before = Snapshot();
  const int results[] = {
      device.ResetStatistics(""),
      device.RetrieveStatistics(""),
      device.UpdateStatistics(""),
      device.SetCurrency(RTF_FPTR_SC_EURO),
      device.ZupEcrCmd("", &number, text),
      device.BeginFiscalDocument(1),
      device.EndFiscalDocument(),
      device.PrintFiscalDocumentLine(""),
      device.BeginInsertion(1),
      device.BeginRemoval(1),
      device.EndInsertion(),
      device.EndRemoval(),
      device.BeginFixedOutput(1, 1),
      device.EndFixedOutput(),
      device.PrintFixedOutput(1, 1, ""),
  };
  EXPECT_EQ(std::size(results), 15u);
  for (const int result : results) EXPECT_EQ(result, RTF_E_ILLEGAL);
  EXPECT_EQ(Snapshot(), before);
}

}  // namespace
}  // namespace lorimat
