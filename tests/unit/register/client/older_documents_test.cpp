// The standard's own operations beside the family's newer ones: older forms of credit notes and
// voids, cash in and out, unpaid amounts, fuel, packages of adjustments, copies, item lists.
#include <climits>

#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

class OlderDocumentsTest : public ReportTest {
 protected:
  void SetUp() override {
    Receipt(1, 1220000);  // 122,00 of 22 %: document 0001-0001
    NewPaper();
  }
  int Begin(int type) {
    const int code = device.SetIntProperty(RTF_PIDXFptr_FiscalReceiptType, type);
    return code != RTF_SUCCESS ? code : device.BeginFiscalReceipt(false);
  }
};

// --- Credit notes and voids

TEST_F(OlderDocumentsTest, ACreditNoteRefersToItsSale) {
  ASSERT_EQ(device.BeginDocRefund(1, 1, "15012024"), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("Documento di riferimento: 0001-0001\ndel 15/01/2024\n"),
            std::string::npos);
  Sell(1, 20000);
  EXPECT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Item(118), "1");
  EXPECT_EQ(Item(28), "20000");
}

TEST_F(OlderDocumentsTest, CreditNotesTestTheirReference) {
  const std::string before = Snapshot();
  EXPECT_EQ(device.BeginDocRefund(-1, 1, ""), RTF_E_ILLEGAL);
  EXPECT_EQ(device.BeginDocRefund(1, 10000, ""), RTF_E_ILLEGAL);
  EXPECT_EQ(device.BeginDocRefund(1, 1, "30022024"), RTF_EFPTR_BAD_DATE);
  EXPECT_EQ(device.BeginDocRefundEx(1, INT_MAX, nullptr, false), RTF_E_ILLEGAL);
  EXPECT_EQ(device.BeginDocRefundEx(2, 1, "", true), RTF_E_NOEXIST);
  EXPECT_EQ(device.BeginDocRefundEx(7, 9, nullptr, false), RTF_E_NOEXIST);
  EXPECT_EQ(device.BeginDocRefundEx(1, 1, "16012024", true), RTF_EFPTR_BAD_DATE);
  EXPECT_EQ(device.BeginDocRefundEx(1, 1, "x", true), RTF_EFPTR_BAD_DATE);
  EXPECT_EQ(device.BeginDocCancel(2, 1, "", true), RTF_E_NOEXIST);
  EXPECT_EQ(device.BeginDocCancel(1, 1, "16012024", false), RTF_EFPTR_BAD_DATE);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(device.BeginDocRefundEx(1, 1, nullptr, false), RTF_SUCCESS);
}

TEST_F(OlderDocumentsTest, AnAutomaticCreditNoteTakesTheWholeSaleBackOnce) {
  ASSERT_EQ(device.BeginDocRefundEx(1, 1, "15012024", true), RTF_SUCCESS);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  const std::string paper = NewPaper();
  EXPECT_NE(paper.find("emesso per RESO MERCE"), std::string::npos);
  EXPECT_NE(paper.find("REPARTO 1                  22%      122,00\n"), std::string::npos);
  // 122,00 x 22 / 122 = 22,00.
  EXPECT_NE(paper.find("di cui IVA                           22,00\n"), std::string::npos);
  EXPECT_NE(paper.find("DOCUMENTO N. 0001-0002"), std::string::npos);
  EXPECT_EQ(Item(28), "1220000");
  EXPECT_EQ(Item(89), "0");
  EXPECT_EQ(Item(372), "0");  // the cash went back
  const std::string before = Snapshot();
  EXPECT_EQ(device.BeginDocRefundEx(1, 1, "", true), RTF_E_EXISTS);
  EXPECT_EQ(device.BeginDocRefundEx(2, 1, "", true), RTF_E_NOEXIST);  // a credit note itself
  EXPECT_EQ(Snapshot(), before);
}

TEST_F(OlderDocumentsTest, AVoidSaleIsNotTakenBackAgain) {
  ASSERT_EQ(device.BeginDocCancel(1, 1, "", true), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("emesso per ANNULLAMENTO"), std::string::npos);
  EXPECT_EQ(Item(115), "1");
  EXPECT_EQ(device.BeginDocCancel(1, 1, "", true), RTF_E_EXISTS);
  EXPECT_EQ(device.BeginDocRefundEx(1, 1, "", true), RTF_E_EXISTS);
}

TEST_F(OlderDocumentsTest, AVoidByItsLinesHasToComeToTheSale) {
  ASSERT_EQ(device.BeginDocCancel(1, 1, "", false), RTF_SUCCESS);
  Sell(1, 1210000);
  EXPECT_EQ(PayRest(), RTF_EFPTR_FISCAL_TOTALS_ERROR);
  Sell(1, 10000);
  EXPECT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Item(115), "1");
}

// --- The type of receipt

TEST_F(OlderDocumentsTest, TheReceiptTypeOpensTheOtherDocuments) {
  ASSERT_EQ(Begin(RTF_FPTR_RT_SIMPLE_INVOICE), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("FATTURA"), std::string::npos);
  device.ResetPrn();
  ASSERT_EQ(Begin(RTF_FPTR_RT_REFUND), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("Documento di riferimento: non indicato"), std::string::npos);
  device.ResetPrn();
  ASSERT_EQ(Begin(RTF_FPTR_RT_CANCEL), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("Documento di riferimento: 0001-0001"), std::string::npos);
  device.ResetPrn();
  ASSERT_EQ(Begin(RTF_FPTR_RT_SALES), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("di vendita o prestazione"), std::string::npos);
}

TEST_F(OlderDocumentsTest, TheReceiptTypeIsSetBetweenDocuments) {
  EXPECT_EQ(Property(RTF_PIDXFptr_FiscalReceiptType), RTF_FPTR_RT_SALES);
  for (const int type : {0, RTF_FPTR_RT_GENERIC, RTF_FPTR_RT_SERVICE, 8, 999, 1001, -1}) {
    EXPECT_EQ(device.SetIntProperty(RTF_PIDXFptr_FiscalReceiptType, type), RTF_E_ILLEGAL);
  }
  device.BeginFiscalReceipt(true);
  EXPECT_EQ(device.SetIntProperty(RTF_PIDXFptr_FiscalReceiptType, RTF_FPTR_RT_CASH_IN),
            RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Property(RTF_PIDXFptr_FiscalReceiptType), RTF_FPTR_RT_SALES);
}

// --- Cash in and out

TEST_F(OlderDocumentsTest, CashHasTheHeaderWhereItIsAskedFor) {
  for (const int type : {RTF_FPTR_RT_CASH_IN, RTF_FPTR_RT_CASH_OUT}) {
    ASSERT_EQ(device.SetIntProperty(RTF_PIDXFptr_FiscalReceiptType, type), RTF_SUCCESS);
    ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    EXPECT_EQ(NewPaper().find("             NEGOZIO DI PROVA\n"), 0u);
    ASSERT_EQ(device.ResetPrn(), RTF_SUCCESS);
    NewPaper();
  }
}

TEST_F(OlderDocumentsTest, CashInPrintsAndRegistersNothing) {
  ASSERT_EQ(Begin(RTF_FPTR_RT_CASH_IN), RTF_SUCCESS);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT);
  EXPECT_EQ(Item(371), "20;7;1;0;0;1;1");
  EXPECT_EQ(device.PrintRecCash(500000), RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecCash(12350), RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecTotal(512000, 512000, "0"), RTF_EFPTR_FISCAL_TOTALS_ERROR);
  ASSERT_EQ(device.PrintRecTotal(512400, 512400, "0"), RTF_SUCCESS);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(NewPaper(),
            "           DOCUMENTO GESTIONALE\n"
            "           VERSAMENTO DI CASSA\n"
            "\n"
            "VERSAMENTO                           50,00\n"
            "VERSAMENTO                            1,24\n"
            "\n"
            "TOTALE                               51,24\n"
            "\n"
            "             15/01/2024 10:30\n"
            "           DOCUMENTO GESTIONALE\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  EXPECT_EQ(Item(89), "1220000");
  EXPECT_EQ(Item(372), "1220000");
  EXPECT_EQ(Item(113), "1");
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "0001");
  EXPECT_EQ(device.store().documents().size(), 1u);
  ASSERT_EQ(device.store().journal().size(), 2u);
  EXPECT_EQ(device.store().journal().back().kind, kJournalNonFiscal);
}

TEST_F(OlderDocumentsTest, CashOutIsPaidInCashToTheCent) {
  ASSERT_EQ(Begin(RTF_FPTR_RT_CASH_OUT), RTF_SUCCESS);
  const std::string empty = Snapshot();
  EXPECT_EQ(PayRest(), RTF_EFPTR_WRONG_STATE);  // nothing to move
  for (const long amount : {0l, -1l, -10000l, 49l, static_cast<long>(INT_MIN)}) {
    EXPECT_EQ(device.PrintRecCash(amount), RTF_EFPTR_BAD_ITEM_AMOUNT) << amount;
  }
  EXPECT_EQ(Snapshot(), empty);
  ASSERT_EQ(device.PrintRecCash(100000), RTF_SUCCESS);
  const std::string before = Snapshot();
  EXPECT_EQ(device.PrintRecTotalEx(90000, "0", false), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecTotalEx(110000, "0", false), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(PayRest("1"), RTF_E_ILLEGAL);
  EXPECT_EQ(PayRest("x"), RTF_E_ILLEGAL);
  EXPECT_EQ(Snapshot(), before);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("PRELIEVO DI CASSA"), std::string::npos);
}

TEST_F(OlderDocumentsTest, CashDocumentsSellNothingAndReceiptsMoveNoCash) {
  Begin(RTF_FPTR_RT_CASH_IN);
  device.PrintRecCash(100000);
  const std::string before = Snapshot();
  EXPECT_EQ(Sell(1, 10000), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.PrintRecItem("", 10000, 0, 1, 0, ""), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.PrintRecSubtotalEx(0, false), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.PrintRecSubtotalAdjustment(1, "", 100), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.PrintRecTaxID("01234567897"), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.KeyCodeInput("\x05", "", "", 75), RTF_SUCCESS);
  EXPECT_EQ(Item(368), "207");
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(device.PrintRecMessage("fondo"), RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecVoid(""), RTF_SUCCESS);
  EXPECT_EQ(Item(114), "1");
  Begin(RTF_FPTR_RT_SALES);
  EXPECT_EQ(device.PrintRecCash(10000), RTF_EFPTR_WRONG_STATE);
  Sell(1, 10000);
  EXPECT_EQ(device.PrintRecCash(10000), RTF_EFPTR_WRONG_STATE);
}

TEST_F(OlderDocumentsTest, ACashDocumentHoldsOnlySoMuch) {
  Begin(RTF_FPTR_RT_CASH_IN);
  ASSERT_EQ(device.PrintRecCash(1000000000), RTF_SUCCESS);  // 100000,00
  for (int count = 1; count < 99; ++count) ASSERT_EQ(device.PrintRecCash(1000000000), RTF_SUCCESS);
  // 9900000,00 of 9999999,99.
  EXPECT_EQ(device.PrintRecCash(1000000000), RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW);
  EXPECT_EQ(device.PrintRecCash(999999900), RTF_SUCCESS);
  EXPECT_EQ(device.PrintRecCash(100), RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW);
}

TEST_F(OlderDocumentsTest, AKeyOpensASaleWhateverTheReceiptType) {
  device.SetIntProperty(RTF_PIDXFptr_FiscalReceiptType, RTF_FPTR_RT_CASH_IN);
  ASSERT_EQ(device.KeyCodeInput("\x05", "", "", 75), RTF_SUCCESS);
  EXPECT_EQ(Item(368), "0");
  EXPECT_EQ(device.receipt().total(), 50000);
}

// --- Not paid

TEST_F(OlderDocumentsTest, AnUnpaidPartIsRegisteredAsNotCollected) {
  device.BeginFiscalReceipt(false);
  Sell(1, 100000);
  ASSERT_EQ(device.PrintRecNotPaid("Buono ente", 30000), RTF_SUCCESS);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL);
  EXPECT_NE(NewPaper().find("Buono ente\nNon riscosso                          3,00\n"),
            std::string::npos);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("Importo pagato                        7,00\n"), std::string::npos);
  EXPECT_EQ(Data(RTF_FPTR_GD_NOT_PAID), "30000");
}

TEST_F(OlderDocumentsTest, AllOfAReceiptCanBeUnpaid) {
  device.BeginFiscalReceipt(false);
  Sell(1, 100000);
  EXPECT_EQ(device.PrintRecNotPaid(nullptr, 100000), RTF_SUCCESS);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
}

TEST_F(OlderDocumentsTest, NoMoreThanTheRestIsUnpaid) {
  EXPECT_EQ(device.PrintRecNotPaid("", 100), RTF_EFPTR_WRONG_STATE);
  device.BeginFiscalReceipt(false);
  EXPECT_EQ(device.PrintRecNotPaid("", 100), RTF_EFPTR_WRONG_STATE);  // nothing sold
  Sell(1, 100000);
  const std::string before = Snapshot();
  for (const long amount : {100100l, 0l, -100l, static_cast<long>(INT_MIN)}) {
    EXPECT_EQ(device.PrintRecNotPaid("", amount), RTF_EFPTR_BAD_ITEM_AMOUNT) << amount;
  }
  EXPECT_EQ(Snapshot(), before);
}

// --- Fuel

TEST_F(OlderDocumentsTest, FuelShowsTheTaxInItsPrice) {
  device.BeginFiscalReceipt(false);
  NewPaper();
  ASSERT_EQ(device.PrintRecItemFuel("GASOLIO", 0, 20000, 1, 18000, "l", 120000, "Accisa"),
            RTF_SUCCESS);
  EXPECT_EQ(NewPaper(),
            "  20 l x 1,80\n"
            "GASOLIO                    22%       36,00\n"
            "  di cui Accisa                      12,00\n");
  ASSERT_EQ(device.PrintRecItemFuel("BENZINA", 100000, 0, 1, 0, nullptr, 0, nullptr), RTF_SUCCESS);
  EXPECT_EQ(NewPaper(), "BENZINA                    22%       10,00\n");
  EXPECT_EQ(device.receipt().total(), 460000);
}

TEST_F(OlderDocumentsTest, FuelGoesBackWithItsTaxAlone) {
  device.BeginFiscalReceipt(false);
  device.PrintRecItemFuel("GASOLIO", 360000, 0, 1, 0, "", 120000, "Accisa");
  device.PrintRecItem("PANE", 360000, 0, 1, 0, "");
  const std::string before = Snapshot();
  EXPECT_EQ(device.PrintRecItemFuelVoid("", 360000, 1, 110000), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecItemFuelVoid("", 350000, 1, 120000), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecItemFuelVoid("", 360000, 2, 120000), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
  NewPaper();
  ASSERT_EQ(device.PrintRecItemFuelVoid("GASOLIO", 360000, 1, 120000), RTF_SUCCESS);
  EXPECT_EQ(NewPaper(),
            "STORNO GASOLIO             22%      -36,00\n"
            "  di cui accisa                     -12,00\n");
  EXPECT_EQ(device.receipt().total(), 360000);
  EXPECT_EQ(device.PrintRecItemFuelVoid("GASOLIO", 360000, 1, 120000), RTF_EFPTR_BAD_ITEM_AMOUNT);
}

TEST_F(OlderDocumentsTest, ATaxBeyondThePriceIsRefused) {
  device.BeginFiscalReceipt(false);
  const std::string before = Snapshot();
  EXPECT_EQ(device.PrintRecItemFuel("", 10000, 0, 1, 0, "", 10001, ""), RTF_EFPTR_BAD_PRICE);
  EXPECT_EQ(device.PrintRecItemFuel("", 10000, 0, 1, 0, "", -1, ""), RTF_EFPTR_BAD_PRICE);
  EXPECT_EQ(device.PrintRecItemFuel("", 0, 0, 1, 0, "", 0, ""), RTF_EFPTR_BAD_PRICE);
  EXPECT_EQ(device.PrintRecItemFuel("", 10000, -1, 1, 0, "", 0, ""), RTF_EFPTR_BAD_ITEM_QUANTITY);
  EXPECT_EQ(device.PrintRecItemFuel("", 10000, 0, 9, 0, "", 0, ""), RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(Snapshot(), before);
}

// --- Packages of adjustments

TEST_F(OlderDocumentsTest, APackageTakesItsSharesFromTheVatEntries) {
  device.BeginFiscalReceipt(false);
  Sell(1, 100000);
  Sell(2, 50000);
  NewPaper();
  ASSERT_EQ(device.PrintRecPackageAdjustment(1, "Paniere", "1,20000;2,5000"), RTF_SUCCESS);
  EXPECT_EQ(NewPaper(),
            "Paniere                              -2,50\n"
            "  di cui                   22%       -2,00\n"
            "  di cui                   10%       -0,50\n");
  EXPECT_EQ(device.receipt().by_vat().at(1), 80000);
  EXPECT_EQ(device.receipt().by_vat().at(2), 45000);
  ASSERT_EQ(device.PrintRecPackageAdjustment(2, "", "2,10000;"), RTF_SUCCESS);
  EXPECT_EQ(NewPaper(), "MAGGIORAZIONE              10%        1,00\n");
  EXPECT_EQ(device.receipt().total(), 135000);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Totalizer(1, RTF_FPTR_GT_SUBTOTAL_DISCOUNT), "20000");
  EXPECT_EQ(Totalizer(2, RTF_FPTR_GT_SUBTOTAL_DISCOUNT), "5000");
  EXPECT_EQ(Totalizer(2, RTF_FPTR_GT_SUBTOTAL_SURCHARGES), "10000");
}

TEST_F(OlderDocumentsTest, APackageGoesBackAsItWasGiven) {
  device.BeginFiscalReceipt(false);
  Sell(1, 100000);
  Sell(2, 50000);
  device.PrintRecPackageAdjustment(1, "", "1,20000;2,5000");
  // A plain adjustment of the same size is another one.
  EXPECT_EQ(device.PrintRecSubtotalAdjustVoid(1, 25000), RTF_EFPTR_BAD_ITEM_AMOUNT);
  const std::string before = Snapshot();
  EXPECT_EQ(device.PrintRecPackageAdjustVoid(1, "1,5000;2,20000"), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecPackageAdjustVoid(2, "1,20000;2,5000"), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(device.PrintRecPackageAdjustVoid(1, "2,5000;1,20000"), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().total(), 150000);
  EXPECT_EQ(device.PrintRecPackageAdjustVoid(1, "2,5000;1,20000"), RTF_EFPTR_BAD_ITEM_AMOUNT);
}

TEST_F(OlderDocumentsTest, PackagesThatAreNoneAreRefused) {
  device.BeginFiscalReceipt(false);
  Sell(1, 100000);
  Sell(2, 50000);
  const std::string before = Snapshot();
  for (const char* shares : {"",
                             ";",
                             "1",
                             "1,",
                             ",100",
                             "1;100",
                             "1,100,2",
                             "1,100;;2,100",
                             "1,100 ",
                             " 1,100",
                             "1,100;1,100",
                             "x,100",
                             "1,x",
                             "1,-100",
                             "-1,100",
                             "+1,100",
                             "1,1.5",
                             "1,99999999999999999999",
                             "99999999999,100",
                             "1,100\n"}) {
    EXPECT_EQ(device.PrintRecPackageAdjustment(1, "", shares), RTF_E_ILLEGAL) << shares;
    EXPECT_EQ(device.PrintRecPackageAdjustVoid(1, shares), RTF_E_ILLEGAL) << shares;
  }
  EXPECT_EQ(device.PrintRecPackageAdjustment(1, "", nullptr), RTF_E_ILLEGAL);
  EXPECT_EQ(device.PrintRecPackageAdjustment(1, "", "0,100"), RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(device.PrintRecPackageAdjustment(1, "", "6,100"), RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(device.PrintRecPackageAdjustment(1, "", "1,0"), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecPackageAdjustment(1, "", "1,49"), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecPackageAdjustment(1, "", "1,9223372036854775807"),
            RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecPackageAdjustment(1, "", "2,50100"), RTF_EFPTR_NEGATIVE_VAT);
  EXPECT_EQ(device.PrintRecPackageAdjustment(1, "", "1,100000;2,50100"), RTF_EFPTR_NEGATIVE_TOTAL);
  for (const int type : {0, 3, 4, 5, 6, 7, -1}) {
    EXPECT_EQ(device.PrintRecPackageAdjustment(type, "", "1,100"), RTF_E_ILLEGAL) << type;
  }
  EXPECT_EQ(Snapshot(), before);
}

// --- Voids with an adjustment

TEST_F(OlderDocumentsTest, AnItemGoesBackWithTheAdjustmentThatItHas) {
  device.BeginFiscalReceipt(false);
  device.PrintRecItem("PANE", 100000, 0, 1, 0, "");
  device.PrintRecItemAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 10000, -1);
  device.PrintRecItem("VINO", 0, 3000, 1, 20000, "");
  const std::string before = Snapshot();
  EXPECT_EQ(device.PrintRecVoidItem("", 100000, 0, 1, 20000, 1), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecVoidItem("", 100000, 0, 2, 10000, 1), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecVoidItem("", 20000, 3000, 1, 10000, 1), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecVoidItem("", -1, 0, 0, 0, 1), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecVoidItem("", 0, 0, 0, 0, 1), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecVoidItem("", 20000, -1000, 0, 0, 1), RTF_EFPTR_BAD_ITEM_QUANTITY);
  EXPECT_EQ(device.PrintRecVoidItem("", 20000, 4000, 0, 0, 1), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(device.PrintRecVoidItem("", 20000, 1000, 0, 0, 9), RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(device.PrintRecVoidItem("VINO", 20000, 1000, 0, 0, 1), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().total(), 130000);  // 9,00 and two bottles
  EXPECT_EQ(device.PrintRecVoidItem("PANE", 100000, 0, 1, 10000, 1), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().total(), 40000);
}

// --- Copies

TEST_F(OlderDocumentsTest, ABufferedReceiptIsCopiedOnce) {
  ASSERT_EQ(device.SetIntProperty(RTF_PIDXFptr_DuplicateReceipt, 1), RTF_SUCCESS);
  EXPECT_EQ(device.PrintDuplicateReceipt(), RTF_E_ILLEGAL);  // the one before was not buffered
  Receipt(1, 10000);
  const std::string receipt = NewPaper();
  const std::string cut = std::string(42, '-') + "\n";
  const std::string before = Item(57) + Item(113) + Data(RTF_FPTR_GD_FISCAL_REC);
  ASSERT_EQ(device.PrintDuplicateReceipt(), RTF_SUCCESS);
  const std::string mark = "       *** COPIA - NON FISCALE ***\n";
  EXPECT_EQ(NewPaper(), mark + receipt.substr(0, receipt.size() - cut.size()) + mark + cut);
  EXPECT_EQ(Property(RTF_PIDXFptr_DuplicateReceipt), 0);
  EXPECT_EQ(Item(57) + Item(113) + Data(RTF_FPTR_GD_FISCAL_REC), before);
  EXPECT_EQ(device.store().journal().size(), 2u);
  EXPECT_EQ(device.PrintDuplicateReceipt(), RTF_E_ILLEGAL);
}

TEST_F(OlderDocumentsTest, OnlyTheLastReceiptIsBuffered) {
  device.SetIntProperty(RTF_PIDXFptr_DuplicateReceipt, 1);
  Receipt(1, 10000);
  Receipt(1, 20000);
  device.BeginFiscalReceipt(true);
  EXPECT_EQ(device.PrintDuplicateReceipt(), RTF_EFPTR_WRONG_STATE);
  device.ResetPrn();  // an abandoned document is no receipt
  NewPaper();
  ASSERT_EQ(device.PrintDuplicateReceipt(), RTF_SUCCESS);
  const std::string copy = NewPaper();
  EXPECT_NE(copy.find("DOCUMENTO N. 0001-0003"), std::string::npos);
  EXPECT_EQ(copy.find("ANNULLATO"), std::string::npos);
}

TEST_F(OlderDocumentsTest, SwitchingTheBufferOffEmptiesIt) {
  device.SetIntProperty(RTF_PIDXFptr_DuplicateReceipt, 1);
  Receipt(1, 10000);
  EXPECT_EQ(device.SetIntProperty(RTF_PIDXFptr_DuplicateReceipt, 2), RTF_E_ILLEGAL);
  EXPECT_EQ(device.SetIntProperty(RTF_PIDXFptr_DuplicateReceipt, 0), RTF_SUCCESS);
  EXPECT_EQ(device.SetIntProperty(RTF_PIDXFptr_DuplicateReceipt, 1), RTF_SUCCESS);
  EXPECT_EQ(device.PrintDuplicateReceipt(), RTF_E_ILLEGAL);
}

// --- Item lists

TEST_F(OlderDocumentsTest, AnItemListComparesWhatTheRegisterKnows) {
  ASSERT_EQ(device.BeginItemList(4), RTF_SUCCESS);
  EXPECT_EQ(Property(RTF_PIDXFptr_PrinterState), RTF_FPTR_PS_ITEM_LIST);
  EXPECT_EQ(Item(371), "20;7;0;0;0;1;1");
  NewPaper();
  EXPECT_EQ(device.VerifyItem("8001", 4), RTF_SUCCESS);   // by code
  EXPECT_EQ(device.VerifyItem("LATTE", 4), RTF_SUCCESS);  // by description
  EXPECT_EQ(NewPaper(),
            "8001                                    4%\n"
            "LATTE                                   4%\n");
  const std::string before = Snapshot();
  EXPECT_EQ(device.VerifyItem("LATTE", 1), RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(device.VerifyItem("SENZA PREZZO", 4), RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(device.VerifyItem("SENZA PREZZO", 1), RTF_EFPTR_BAD_VAT);  // of another list
  EXPECT_EQ(device.VerifyItem("LATTE", 9), RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(device.VerifyItem("NIENTE", 4), RTF_E_NOEXIST);
  EXPECT_EQ(device.VerifyItem("", 4), RTF_EFPTR_BAD_ITEM_DESCRIPTION);
  EXPECT_EQ(device.VerifyItem(nullptr, 4), RTF_EFPTR_BAD_ITEM_DESCRIPTION);
  EXPECT_EQ(device.VerifyItem(std::string(33, 'X').c_str(), 4), RTF_EFPTR_BAD_ITEM_DESCRIPTION);
  EXPECT_EQ(Snapshot(), before);
  ASSERT_EQ(device.EndItemList(), RTF_SUCCESS);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(device.store().journal().size(), 1u);
}

TEST_F(OlderDocumentsTest, AnItemListIsOfAnEntryOfTheTable) {
  const std::string before = Snapshot();
  for (const int vat : {0, 6, -1, INT_MAX}) {
    EXPECT_EQ(device.BeginItemList(vat), RTF_EFPTR_BAD_VAT);
  }
  EXPECT_EQ(device.VerifyItem("LATTE", 4), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.EndItemList(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Snapshot(), before);
}

TEST_F(OlderDocumentsTest, AResetEndsAnItemList) {
  device.BeginItemList(1);
  EXPECT_EQ(device.ResetPrn(), RTF_SUCCESS);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(Item(114), "0");
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
}

}  // namespace
}  // namespace lorimat
