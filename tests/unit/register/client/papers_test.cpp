// Whole papers, written by hand.
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

class Papers : public RegisterTest {};

TEST_F(Papers, ASimpleReceiptInCashWithChange) {
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000, "PANE"), RTF_SUCCESS);
  ASSERT_EQ(SellPieces(4, 3000, 12000, "LATTE"), RTF_SUCCESS);
  ASSERT_EQ(PayCash(200000), RTF_SUCCESS);
  // 10,00 at 22 %: 1,80; 3,60 at 4 %: 0,14.
  EXPECT_EQ(device.paper_text(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "          DOCUMENTO COMMERCIALE\n"
            "         di vendita o prestazione\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "PANE                       22%       10,00\n"
            "  3 x 1,20\n"
            "LATTE                       4%        3,60\n"
            "\n"
            "TOTALE COMPLESSIVO                   13,60\n"
            "di cui IVA                            1,94\n"
            "\n"
            "Pagamento contante                   20,00\n"
            "Resto                                 6,40\n"
            "Importo pagato                       13,60\n"
            "\n"
            "             15/01/2024 10:30\n"
            "          DOCUMENTO N. 0001-0001\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(device.store().documents().size(), 1u);
  EXPECT_EQ(device.store().daily().by_tender.at("0"), 136000);
}

TEST_F(Papers, DiscountsOnLinesAndSubtotalAndSeveralTenders) {
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 200000, "SCARPE"), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, "SCONTO 10%", 100000,
                                            -1, -2),
            RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 90000, "LIBRO"), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_COUPON_AMOUNT_DISCOUNT, "", 20000, -1, 1),
            RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 90000, "LIBRO", PflItemType::kPrintRecItemVoid), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecSubtotalEx(0, false), RTF_SUCCESS);
  EXPECT_EQ(Item(371), "28;2;4;0;0;1;1");
  ASSERT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_SURCHARGE, "MAGGIORAZIONE", 5000),
            RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecSubtotalEx(165000, true), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(65000, "2", false), RTF_SUCCESS);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL);
  ASSERT_EQ(PayRest("9"), RTF_SUCCESS);
  // 16,50 at 22 %: 2,9754... -> 2,98. Credit is not collected.
  EXPECT_EQ(device.paper_text(),
            "          DOCUMENTO COMMERCIALE\n"
            "         di vendita o prestazione\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "SCARPE                     22%       20,00\n"
            "SCONTO 10%                 22%       -2,00\n"
            "LIBRO                      10%        9,00\n"
            "COUPON                     22%       -2,00\n"
            "STORNO LIBRO               10%       -9,00\n"
            "Subtotale                            16,00\n"
            "MAGGIORAZIONE              22%        0,50\n"
            "\n"
            "TOTALE COMPLESSIVO                   16,50\n"
            "di cui IVA                            2,98\n"
            "\n"
            "Pagamento elettronico                 6,50\n"
            "Non riscosso                         10,00\n"
            "Importo pagato                        6,50\n"
            "\n"
            "             15/01/2024 10:30\n"
            "          DOCUMENTO N. 0001-0001\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  EXPECT_EQ(device.store().daily().discounts, 40000);
  EXPECT_EQ(device.store().daily().surcharges, 5000);
  EXPECT_EQ(device.store().daily().not_paid, 100000);
}

TEST_F(Papers, RefundDepositAndVoucherLines) {
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(5, 500000, "CORSO"), RTF_SUCCESS);
  ASSERT_EQ(Sell(5, 50000, "", PflItemType::kPrintRecItemRefund), RTF_SUCCESS);
  ASSERT_EQ(device.SetStringProperty(RTF_PIDXFptr_PreLine, "\x1b|cASTORNO ACCONTO"), RTF_SUCCESS);
  ASSERT_EQ(Sell(5, 100000, "", PflItemType::kPrintRecItemDeposit), RTF_SUCCESS);
  ASSERT_EQ(Sell(5, 20000, "", PflItemType::kPrintRecItemBuoniMonouso), RTF_SUCCESS);
  ASSERT_EQ(Sell(5, 20000, "", PflItemType::kPrintRecItemBuoniMonousoVoid), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(device.paper_text(),
            "          DOCUMENTO COMMERCIALE\n"
            "         di vendita o prestazione\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "CORSO                      ES*       50,00\n"
            "RESO REPARTO 5             ES*       -5,00\n"
            "              STORNO ACCONTO\n"
            "ACCONTO                    ES*      -10,00\n"
            "BUONO MONOUSO              ES*       -2,00\n"
            "STORNO BUONO MONOUSO       ES*        2,00\n"
            "\n"
            "TOTALE COMPLESSIVO                   35,00\n"
            "di cui IVA                            0,00\n"
            "\n"
            "Pagamento contante                   35,00\n"
            "Importo pagato                       35,00\n"
            "ES* = N4 esente\n"
            "\n"
            "             15/01/2024 10:30\n"
            "          DOCUMENTO N. 0001-0001\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
}

TEST_F(Papers, AnAbandonedReceiptTouchesNoTotal) {
  device.BeginFiscalReceipt(false);
  Sell(1, 100000, "PANE");
  device.PrintRecTotalEx(40000, "2", false);
  ASSERT_EQ(device.ResetPrn(), RTF_SUCCESS);
  EXPECT_EQ(device.paper_text(),
            "          DOCUMENTO COMMERCIALE\n"
            "         di vendita o prestazione\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "PANE                       22%       10,00\n"
            "\n"
            "TOTALE COMPLESSIVO                   10,00\n"
            "di cui IVA                            1,80\n"
            "\n"
            "Pagamento elettronico                 4,00\n"
            "\n"
            "       *** DOCUMENTO ANNULLATO ***\n"
            "             15/01/2024 10:30\n"
            "------------------------------------------\n");
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(Data(RTF_FPTR_GD_DAILY_TOTAL), "0");
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "0000");
  EXPECT_EQ(Item(114), "1");
  // The number was not used.
  device.BeginFiscalReceipt(false);
  Sell(1, 10000);
  PayRest();
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "0001");
}

TEST_F(Papers, AnInvoice) {
  ASSERT_EQ(device.SetIntProperty(RTF_PIDXFptr_InvoiceNumber, 7), RTF_SUCCESS);
  ASSERT_EQ(device.SetStringProperty(RTF_PIDXFptr_InvoiceSeries, "A"), RTF_SUCCESS);
  ASSERT_EQ(
      device.BeginDocInvoiceOppositionJurisprudence("ROSSI MARIO", "Via Roma 2", "", "", "", true),
      RTF_SUCCESS);
  EXPECT_EQ(Item(371), "28;5;1;0;0;1;1");
  ASSERT_EQ(Sell(1, 122000, "RIPARAZIONE"), RTF_SUCCESS);
  ASSERT_EQ(PayRest("5"), RTF_SUCCESS);
  EXPECT_EQ(device.paper_text(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "                 FATTURA\n"
            "\n"
            "ROSSI MARIO\n"
            "Via Roma 2\n"
            "\n"
            "Opposizione all'utilizzo dei dati\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "RIPARAZIONE                22%       12,20\n"
            "\n"
            "TOTALE COMPLESSIVO                   12,20\n"
            "di cui IVA                            2,20\n"
            "\n"
            "IVA              Imponibile        Imposta\n"
            "22%                   10,00           2,20\n"
            "\n"
            "Non riscosso fatture                 12,20\n"
            "Importo pagato                        0,00\n"
            "\n"
            "             15/01/2024 10:30\n"
            "              FATTURA N. 7/A\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  EXPECT_EQ(Property(RTF_PIDXFptr_InvoiceNumber), 8);
  EXPECT_EQ(Item(2), "1");
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "0000");  // no number of a commercial document
}

TEST_F(Papers, ACreditNoteNamesTheSaleItRefersTo) {
  ASSERT_EQ(device.BeginDocTelematicRefund(45, 123, "14012024", "99ABC000042"), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000, "PANE"), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(device.paper_text(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "          DOCUMENTO COMMERCIALE\n"
            "          emesso per RESO MERCE\n"
            "\n"
            "Documento di riferimento: 0123-0045\n"
            "del 14/01/2024\n"
            "RT 99ABC000042\n"
            "Documento di altro registratore\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "PANE                       22%       10,00\n"
            "\n"
            "TOTALE COMPLESSIVO                   10,00\n"
            "di cui IVA                            1,80\n"
            "\n"
            "Pagamento contante                   10,00\n"
            "Importo rimborsato                   10,00\n"
            "\n"
            "             15/01/2024 10:30\n"
            "          DOCUMENTO N. 0001-0001\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  EXPECT_EQ(Data(RTF_FPTR_GD_REFUND), "100000");
  EXPECT_EQ(Data(RTF_FPTR_GD_DAILY_TOTAL), "-100000");
}

TEST_F(Papers, AnAutomaticVoid) {
  device.BeginFiscalReceipt(false);
  Sell(1, 100000, "PANE");
  Sell(2, 50000, "LIBRO");
  PayRest("2");
  const size_t before = device.paper_lines().size();
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "15012024", true, "errore di cassa"), RTF_SUCCESS);
  std::string paper;
  for (size_t line = before; line < device.paper_lines().size(); ++line) {
    paper += device.paper_lines()[line] + "\n";
  }
  EXPECT_EQ(paper,
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "          DOCUMENTO COMMERCIALE\n"
            "         emesso per ANNULLAMENTO\n"
            "\n"
            "Documento di riferimento: 0001-0001\n"
            "del 15/01/2024\n"
            "errore di cassa\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "PANE                       22%       10,00\n"
            "LIBRO                      10%        5,00\n"
            "\n"
            "TOTALE COMPLESSIVO                   15,00\n"
            "di cui IVA                            2,25\n"
            "\n"
            "Pagamento elettronico                15,00\n"
            "Importo rimborsato                   15,00\n"
            "\n"
            "             15/01/2024 10:30\n"
            "          DOCUMENTO N. 0001-0002\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(Data(RTF_FPTR_GD_DAILY_TOTAL), "0");
  EXPECT_EQ(device.store().daily().by_tender.at("2"), 0);
  EXPECT_EQ(device.store().daily().by_department.at(1).amount, 0);
}

TEST_F(Papers, ANonFiscalDocumentWithDoubleWidthBarcodeAndLogo) {
  ASSERT_EQ(device.BeginNonFiscalJournal(true), RTF_SUCCESS);
  ASSERT_EQ(device.PrintNormal(RTF_FPTR_S_RECEIPT, "\x1b|2C\x1b|3CBUONO"), RTF_SUCCESS);
  // 8+0+2+4+6+8 = 28 and three times 0+1+3+5+7+9 = 75 make 103: the check digit is 7.
  ASSERT_EQ(device.PrintBarcode("02", "1", "3", "2", "8001234567897", 1), RTF_SUCCESS);
  ASSERT_EQ(device.PrintBitmap(63, 1), RTF_SUCCESS);
  ASSERT_EQ(device.EndNonFiscal(), RTF_SUCCESS);
  EXPECT_EQ(device.paper_text(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "           DOCUMENTO GESTIONALE\n"
            "\n"
            "B U O N O\n"
            "          [EAN13 8001234567897]\n"
            "              8001234567897\n"
            "                [LOGO 63]\n"
            "\n"
            "           DOCUMENTO GESTIONALE\n"
            "             15/01/2024 10:30\n"
            "------------------------------------------\n");
  EXPECT_EQ(Item(113), "1");
}

TEST_F(Papers, AttachmentsFollowAReceiptThatDoesNotCloseByItself) {
  ASSERT_EQ(device.SetDataInternal(148, "0"), RTF_SUCCESS);
  ASSERT_EQ(device.SetDataInternal(152, "Arrivederci"), RTF_SUCCESS);
  device.BeginFiscalReceipt(false);
  Sell(1, 100000, "PANE");
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT_ENDING);
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "0001");  // registered already
  ASSERT_EQ(device.BeginAdditionalTrailer(), RTF_SUCCESS);
  EXPECT_EQ(device.BeginAdditionalTrailer(), RTF_EFPTR_WRONG_STATE);
  ASSERT_EQ(device.PrintRecMessage("Ritiro lunedi"), RTF_SUCCESS);
  ASSERT_EQ(device.EndFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_EQ(device.paper_text(),
            "          DOCUMENTO COMMERCIALE\n"
            "         di vendita o prestazione\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "PANE                       22%       10,00\n"
            "\n"
            "TOTALE COMPLESSIVO                   10,00\n"
            "di cui IVA                            1,80\n"
            "\n"
            "Pagamento contante                   10,00\n"
            "Importo pagato                       10,00\n"
            "               Arrivederci\n"
            "\n"
            "             15/01/2024 10:30\n"
            "          DOCUMENTO N. 0001-0001\n"
            "            RT 99LRM0000001VR\n"
            "Ritiro lunedi\n"
            "------------------------------------------\n");
  EXPECT_EQ(Item(148), "1");  // the next receipt closes by itself again
}

TEST_F(Papers, ARegisterOutOfServiceNumbersWithoutClosure) {
  RegisterSettings settings = TestSettings();
  settings.commissioned = false;
  VirtualRegister other(settings);
  other.BeginFiscalReceipt(false);
  other.PrintRecItemEx(0, "PANE", 100000, 0, -1, 0, "", 1, true, "");
  other.PrintRecTotalEx(0, "0", true);
  const std::vector<std::string>& lines = other.paper_lines();
  ASSERT_GE(lines.size(), 5u);
  EXPECT_EQ(lines[lines.size() - 4], "            DOCUMENTO N. 0001");
  EXPECT_EQ(lines[lines.size() - 3], "       REGISTRATORE NON IN SERVIZIO");
}

TEST_F(Papers, TheDayClosing) {
  device.BeginFiscalReceipt(false);
  Sell(1, 100000);
  PayRest();
  device.BeginDocTelematicRefund(0, 0, "", "");
  Sell(1, 30000);
  PayRest();
  const size_t before = device.paper_lines().size();
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  std::string paper;
  for (size_t line = before + 4; line < device.paper_lines().size(); ++line) {
    paper += device.paper_lines()[line] + "\n";
  }
  // Tax: 1,80 of 10,00 less 0,54 of 3,00.
  EXPECT_EQ(paper,
            "           CHIUSURA GIORNALIERA\n"
            "\n"
            "Documenti                                2\n"
            "Fatture                                  0\n"
            "Documenti annullati in corso             0\n"
            "Documenti di vendita                     1\n"
            "Documenti di reso                        1\n"
            "Vendite                              10,00\n"
            "Resi                                  3,00\n"
            "Annulli                               0,00\n"
            "Totale non riscosso                   0,00\n"
            "TOTALE GIORNALIERO                    7,00\n"
            "GRAN TOTALE                           7,00\n"
            "Progressivo vendite                  10,00\n"
            "Progressivo resi                      3,00\n"
            "Progressivo annulli                   0,00\n"
            "\n"
            "PAGAMENTI\n"
            "Pagamento contante n. 2               7,00\n"
            "\n"
            "IVA\n"
            "Totale 22% n. 2                       7,00\n"
            "Imponibile 22%                        5,74\n"
            "Imposta 22%                           1,26\n"
            "Documenti di reso 22% n. 1            3,00\n"
            "\n"
            "             15/01/2024 10:30\n"
            "             CHIUSURA N. 0001\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  EXPECT_EQ(Data(RTF_FPTR_GD_Z_REPORT), "0001");
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "0000");
  EXPECT_EQ(Data(RTF_FPTR_GD_GRAND_TOTAL), "70000");
  device.BeginFiscalReceipt(false);
  Sell(1, 10000);
  PayRest();
  EXPECT_NE(device.paper_text().find("DOCUMENTO N. 0002-0001"), std::string::npos);
}

}  // namespace
}  // namespace lorimat
