// Papers from which every sum can be worked out again, written by hand with the working beside
// them.
#include "register/document/documents.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

class WholePapers : public RegisterTest {
 protected:
  // The last paper from a line that begins so, without date, number and serial number.
  std::string Body(const std::string& begin) {
    std::string body;
    const std::vector<std::string>& lines = device.paper_lines();
    for (const std::string& line : lines) {
      if (line.rfind(begin, 0) == 0) body.clear();
      body += line + "\n";
    }
    const size_t end = body.find("\n\n             15/01/2024");
    return body.substr(0, end == body.npos ? end : end + 1);
  }
};

// 230,00 collected, 70,00 not, and 0,01 let go: 300,01.
TEST_F(WholePapers, WhatIsLetGoOnThePaymentIsNotPaid) {
  device.BeginFiscalReceipt(false);
  ASSERT_EQ(Sell(5, 3000100, "CORSO"), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(700000, "6", false), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(100, "8", false), RTF_SUCCESS);
  ASSERT_EQ(PayCash(2500000), RTF_SUCCESS);
  EXPECT_EQ(Body("TOTALE"),
            "TOTALE COMPLESSIVO                  300,01\n"
            "di cui IVA                            0,00\n"
            "\n"
            "Non riscosso servizi                 70,00\n"
            "Sconto a pagare                       0,01\n"
            "Pagamento contante                  250,00\n"
            "Resto                                20,00\n"
            "Importo pagato                      230,00\n"
            "ES* = N4 esente\n");
}

TEST_F(WholePapers, PaymentsThatDoNotComeToTheTotalAreNone) {
  const Tables tables(TestSettings());
  StoredDocument document;
  document.total = 3000100;
  document.by_tender = {{"0", 2300000}, {"6", 700000}, {"8", 100}};
  const std::optional<PaidParts> parts = PartsOf(document, tables);
  ASSERT_TRUE(parts);
  EXPECT_EQ(parts->collected, 2300000);
  EXPECT_EQ(parts->not_collected, 700000);
  EXPECT_EQ(parts->discount, 100);
  document.total = 3000000;
  EXPECT_FALSE(PartsOf(document, tables));
  document.total = 3000100;
  document.by_tender["x"] = 0;
  EXPECT_FALSE(PartsOf(document, tables));
}

// 1,00 over 10,00 and 2,40: 0,806... and 0,193..., the cent that is left goes to the first.
// Tax: 9,19 at 22 % is 1,657..., 2,21 at 4 % is 0,085 to the half: 1,66 and 0,09.
TEST_F(WholePapers, ADiscountOnTheSubtotalSaysWhatFallsOnWhichRate) {
  device.BeginFiscalReceipt(false);
  Sell(1, 100000, "PANE");
  SellPieces(4, 2000, 12000, "LATTE");
  ASSERT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 10000), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Body("PANE"),
            "PANE                       22%       10,00\n"
            "  2 x 1,20\n"
            "LATTE                       4%        2,40\n"
            "SCONTO                               -1,00\n"
            "  di cui                   22%       -0,81\n"
            "  di cui                    4%       -0,19\n"
            "\n"
            "TOTALE COMPLESSIVO                   11,40\n"
            "di cui IVA                            1,75\n"
            "\n"
            "Pagamento contante                   11,40\n"
            "Importo pagato                       11,40\n");
}

// Department 1 is at 22 %, and sold 5,00 at 10 %: a tenth of 15,00 falls on both.
// Tax: 9,00 at 22 % is 1,62, 4,50 at 10 % is 0,41.
TEST_F(WholePapers, ADiscountOnADepartmentFallsOnTheRatesOfItsLines) {
  device.BeginFiscalReceipt(false);
  Sell(1, 100000, "VASO");
  ASSERT_EQ(device.PrintRecItemEx(0, "VINO", 50000, 0, 2, 0, "", 1, true, ""), RTF_SUCCESS);
  Sell(4, 30000, "LATTE");
  ASSERT_EQ(
      device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, "SCONTO", 100000, -1, 1),
      RTF_SUCCESS);
  // One that names an entry is of that entry.
  ASSERT_EQ(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_DISCOUNT, "MENO", 5000, 2, 1),
            RTF_SUCCESS);
  EXPECT_EQ(Body("SCONTO"),
            "SCONTO                               -1,50\n"
            "  di cui                   22%       -1,00\n"
            "  di cui                   10%       -0,50\n"
            "MENO                       10%       -0,50\n");
  EXPECT_EQ(device.receipt().by_vat().at(1), 90000);
  EXPECT_EQ(device.receipt().by_vat().at(2), 40000);
  EXPECT_EQ(device.receipt().by_vat().at(4), 30000);
  // Taken back, it is taken off where it fell.
  ASSERT_EQ(device.PrintRecItemAdjustmentEx2(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, "SCONTO", 100000, -1,
                                             1, true),
            RTF_SUCCESS);
  EXPECT_EQ(device.receipt().by_vat().at(1), 100000);
  EXPECT_EQ(device.receipt().by_vat().at(2), 45000);
}

TEST_F(WholePapers, ASurchargeOnADepartmentWithoutLinesIsOfItsOwnRate) {
  device.BeginFiscalReceipt(false);
  Sell(1, 100000, "VASO");
  ASSERT_EQ(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_SURCHARGE, "CONSEGNA", 5000, -1, 4),
            RTF_SUCCESS);
  EXPECT_EQ(device.receipt().by_vat().at(4), 5000);
}

// 122,00 at 22 %: 100,00 and 22,00. 5,50 at 10 %: 5,00 and 0,50. 7,00 without tax.
TEST_F(WholePapers, AnInvoiceShowsBaseAndTaxOfEachRate) {
  ASSERT_EQ(device.BeginDocInvoice("ROSSI MARIO", "", "", "", ""), RTF_SUCCESS);
  Sell(1, 1220000, "SEDIA");
  Sell(2, 55000, "VINO");
  Sell(5, 70000, "CORSO");
  ASSERT_EQ(PayRest("2"), RTF_SUCCESS);
  EXPECT_EQ(Body("TOTALE"),
            "TOTALE COMPLESSIVO                  134,50\n"
            "di cui IVA                           22,50\n"
            "\n"
            "IVA              Imponibile        Imposta\n"
            "22%                  100,00          22,00\n"
            "10%                    5,00           0,50\n"
            "ES*                    7,00           0,00\n"
            "\n"
            "Pagamento elettronico               134,50\n"
            "Importo pagato                      134,50\n"
            "ES* = N4 esente\n");
}

// The sale: 2 of 3 LATTE stand, 2,40; 10,00 less 6,00 of RESO; 1,00 off the subtotal over 4,00 and
// 2,40: 0,625 and 0,375, the cent that is left goes to the first of equal remainders: 0,63 and
// 0,37. Tax: 3,37 at 22 % is 0,607..., 2,03 at 4 % is 0,078...: 0,61 and 0,08. At 21 % it would be
// 0,58.
TEST_F(WholePapers, AnAutomaticVoidTakesBackTheArticlesWithTheTaxOfTheirDay) {
  device.BeginFiscalReceipt(false);
  SellPieces(4, 3000, 12000, "LATTE");
  SellPieces(4, 1000, 12000, "LATTE", PflItemType::kPrintRecItemVoid);
  Sell(1, 100000, "VASO");
  Sell(1, 60000, "TAZZA", PflItemType::kPrintRecItemRefund);
  Sell(2, 50000, "VINO");
  Sell(2, 50000, "VINO", PflItemType::kPrintRecItemVoid);
  ASSERT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 10000), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(20000, "2", false), RTF_SUCCESS);
  ASSERT_EQ(PayCash(100000), RTF_SUCCESS);
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  ASSERT_EQ(device.SetVatValue(1, "210000"), RTF_SUCCESS);
  ASSERT_EQ(device.SetVatTable(), RTF_SUCCESS);
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  EXPECT_EQ(Body("Documento di riferimento"),
            "Documento di riferimento: 0001-0001\n"
            "del 15/01/2024\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "  2 x 1,20\n"
            "LATTE                       4%        2,40\n"
            "VASO                       22%       10,00\n"
            "RESO TAZZA                 22%       -6,00\n"
            "SCONTO                     22%       -0,63\n"
            "SCONTO                      4%       -0,37\n"
            "\n"
            "TOTALE COMPLESSIVO                    5,40\n"
            "di cui IVA                            0,69\n"
            "\n"
            "Pagamento elettronico                 2,00\n"
            "Pagamento contante                    3,40\n"
            "Importo rimborsato                    5,40\n");
  EXPECT_EQ(device.store().day().Sum(Totals::kAll, 0, TaxedFigure::kGross).tax, -6900);
}

TEST_F(WholePapers, ACorrectionTakesBackWhatItNames) {
  device.BeginFiscalReceipt(false);
  Sell(1, 100000, "A");
  Sell(1, 100000, "B");
  const std::string before = Snapshot();
  EXPECT_EQ(Sell(1, 100000, "C", PflItemType::kPrintRecItemVoid), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Sell(1, 90000, "A", PflItemType::kPrintRecItemVoid), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Sell(2, 100000, "A", PflItemType::kPrintRecItemVoid), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
  // Not the latest line, but the one of that name; without a name the latest.
  ASSERT_EQ(Sell(1, 100000, "A", PflItemType::kPrintRecItemVoid), RTF_SUCCESS);
  EXPECT_EQ(Sell(1, 100000, "A", PflItemType::kPrintRecItemVoid), RTF_EFPTR_BAD_ITEM_AMOUNT);
  ASSERT_EQ(Sell(1, 100000, "", PflItemType::kPrintRecItemVoid), RTF_SUCCESS);
  EXPECT_EQ(Sell(1, 100000, "B", PflItemType::kPrintRecItemVoidOfVoid), RTF_SUCCESS);
  EXPECT_EQ(Body("STORNO A"),
            "STORNO A                   22%      -10,00\n"
            "STORNO B                   22%      -10,00\n"
            "B                          22%       10,00\n");
}

TEST_F(WholePapers, ACorrectionTakesBackTheArticleThatItNames) {
  const auto line = [&](int type, const char* article) {
    return device.PrintRecItemEx(type, "", 15000, 0, -1, 0, "", 4, true, article);
  };
  device.BeginFiscalReceipt(false);
  ASSERT_EQ(line(PflItemType::kPrintRecItem, "8001"), RTF_SUCCESS);
  EXPECT_EQ(line(PflItemType::kPrintRecItemVoid, "FREE"), RTF_EFPTR_BAD_ITEM_AMOUNT);
  ASSERT_EQ(line(PflItemType::kPrintRecItemVoid, ""), RTF_SUCCESS);
  EXPECT_EQ(Body("LATTE"),
            "LATTE                       4%        1,50\n"
            "STORNO LATTE                4%       -1,50\n");
}

TEST_F(WholePapers, ACreditNotePaysBack) {
  ASSERT_EQ(device.BeginDocTelematicRefund(0, 0, "", ""), RTF_SUCCESS);
  Sell(1, 100000, "VASO");
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Body("Pagamento"),
            "Pagamento contante                   10,00\n"
            "Importo rimborsato                   10,00\n");
}

TEST_F(WholePapers, AnInvoiceOfAHighNumberIsInTheListOfDocuments) {
  RegisterSettings settings = TestSettings();
  settings.last_invoice = 999999;
  VirtualRegister other(settings);
  ASSERT_EQ(other.BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
  other.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, "");
  ASSERT_EQ(other.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  ASSERT_EQ(other.FiscalReportMessageEx(4, 65535, 2, 0, 0, 0, 0, "150120240000", "150120242359",
                                        "txt", "", 1),
            RTF_SUCCESS);
  EXPECT_NE(other.paper_text().find("\n0001-1000000 15/01/2024 10:30 "), std::string::npos);
}

TEST_F(WholePapers, NoTwoLinesAreBlank) {
  ASSERT_EQ(device.BeginNonFiscalJournal(true), RTF_SUCCESS);
  ASSERT_EQ(device.EndNonFiscal(), RTF_SUCCESS);
  device.BeginFiscalReceipt(true);
  Sell(1, 100000, "VASO");
  PayRest();
  ASSERT_EQ(device.BeginDocTelematicCancel(0, 0, "", true, ""), RTF_SUCCESS);
  ASSERT_EQ(device.BeginDocInvoice("", "", "", "", ""), RTF_SUCCESS);
  Sell(1, 100000, "VASO");
  PayRest();
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(device.paper_text().find("\n\n\n"), std::string::npos);
}

}  // namespace
}  // namespace lorimat
