// A golden paper for each kind of document: all of it, worked out by hand from the rules, with the
// working beside it. The closing's are those of reports_test.cpp.
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

class GoldenPapers : public RegisterTest {
 protected:
  // What is printed from here on.
  void Tear() { torn_ = device.paper_text().size(); }
  std::string Paper() { return device.paper_text().substr(torn_); }
  void RoundCash() {
    ShopSetup setup;
    setup.round_cash = true;
    ShopRefusal refused;
    ASSERT_EQ(device.SetUp(setup, &refused), RTF_SUCCESS);
  }
  void MixedSale() {
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(SellPieces(4, 3000, 12000, "LATTE"), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 100000, "VASO"), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, "SCONTO 10%", 100000,
                                              -1, -2),
              RTF_SUCCESS);
    ASSERT_EQ(Sell(5, 50000, "CORSO"), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 10200),
              RTF_SUCCESS);
    ASSERT_EQ(PayCash(200000), RTF_SUCCESS);
  }

 private:
  size_t torn_ = 0;
};

// Sold: 3 x 1,20 = 3,60 at 4 %; 10,00 less 10 % = 9,00 at 22 %; 5,00 exempt: 17,60.
// 1,02 off, over 9,00, 3,60 and 5,00: 0,5215..., 0,2086... and 0,2897...; down to the cent that is
// 0,52, 0,20 and 0,28, and the two cents that are left go to the largest remainders, those of the
// last two. 8,48 at 22 %: 8,48 x 22 / 122 = 1,529... = 1,53; 3,39 at 4 %: 3,39 x 4 / 104 = 0,130...
// = 0,13: 1,66. 16,58 in coins is 16,60; 20,00 less that is 3,40.
TEST_F(GoldenPapers, ASale) {
  RoundCash();
  MixedSale();
  EXPECT_EQ(Paper(),
            "          DOCUMENTO COMMERCIALE\n"
            "         di vendita o prestazione\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "  3 x 1,20\n"
            "LATTE                       4%        3,60\n"
            "VASO                       22%       10,00\n"
            "SCONTO 10%                 22%       -1,00\n"
            "CORSO                      ES*        5,00\n"
            "SCONTO                               -1,02\n"
            "  di cui                   22%       -0,52\n"
            "  di cui                    4%       -0,21\n"
            "  di cui                   ES*       -0,29\n"
            "\n"
            "TOTALE COMPLESSIVO                   16,58\n"
            "di cui IVA                            1,66\n"
            "\n"
            "Arrotondamento per eccesso           -0,02\n"
            "Pagamento contante                   20,00\n"
            "Resto                                 3,40\n"
            "Importo pagato                       16,60\n"
            "ES* = N4 esente\n"
            "\n"
            "             15/01/2024 10:30\n"
            "          DOCUMENTO N. 0001-0001\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
}

// Goes back as it stands, and the cash as it was taken: 20,00 less the change, 16,60. The discount
// on the subtotal has a line for each rate; that of the line stands behind the lines.
TEST_F(GoldenPapers, AnAutomaticVoid) {
  RoundCash();
  MixedSale();
  Tear();
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  EXPECT_EQ(Paper(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "          DOCUMENTO COMMERCIALE\n"
            "         emesso per ANNULLAMENTO\n"
            "\n"
            "Documento di riferimento: 0001-0001\n"
            "del 15/01/2024\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "  3 x 1,20\n"
            "LATTE                       4%        3,60\n"
            "VASO                       22%       10,00\n"
            "CORSO                      ES*        5,00\n"
            "SCONTO                     22%       -1,00\n"
            "SCONTO                     22%       -0,52\n"
            "SCONTO                      4%       -0,21\n"
            "SCONTO                     ES*       -0,29\n"
            "\n"
            "TOTALE COMPLESSIVO                   16,58\n"
            "di cui IVA                            1,66\n"
            "\n"
            "Arrotondamento per eccesso           -0,02\n"
            "Pagamento contante                   16,60\n"
            "Importo rimborsato                   16,60\n"
            "ES* = N4 esente\n"
            "\n"
            "             15/01/2024 10:30\n"
            "          DOCUMENTO N. 0001-0002\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
}

// 122,00 at 22 %; 5,50 less 1,10 = 4,40 at 10 %; 7,00 exempt: 133,40. 1 % on top is 1,334 = 1,33,
// over 122,00, 4,40 and 7,00: 1,2163..., 0,0438... and 0,0697...; down 1,21, 0,04 and 0,06, and two
// cents to the largest remainders: the third's 0,97 and the first's 0,63: 1,22, 0,04, 0,07. 123,22:
// tax 123,22 x 22 / 122 = 22,22, base 101,00. 4,44: 0,4036... = 0,40 and 4,04. 7,07. Of 134,73 4,73
// are a voucher's, 30,00 will be paid by the invoice, 100,00 are paid.
TEST_F(GoldenPapers, AnInvoice) {
  ASSERT_EQ(device.BeginDocInvoice("ROSSI MARIO", "P.IVA 12345678903", "", "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 1220000, "SEDIA"), RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 55000, "VINO"), RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 11000, "VINO", PflItemType::kPrintRecItemRefund), RTF_SUCCESS);
  ASSERT_EQ(Sell(5, 70000, "CORSO"), RTF_SUCCESS);
  ASSERT_EQ(
      device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_PERCENTAGE_SURCHARGE, "MAGGIORAZIONE", 10000),
      RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(47300, "30", false), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(300000, "5", false), RTF_SUCCESS);
  ASSERT_EQ(PayRest("3"), RTF_SUCCESS);
  EXPECT_EQ(Paper(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "                 FATTURA\n"
            "\n"
            "ROSSI MARIO\n"
            "P.IVA 12345678903\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "SEDIA                      22%      122,00\n"
            "VINO                       10%        5,50\n"
            "RESO VINO                  10%       -1,10\n"
            "CORSO                      ES*        7,00\n"
            "MAGGIORAZIONE                         1,33\n"
            "  di cui                   22%        1,22\n"
            "  di cui                   10%        0,04\n"
            "  di cui                   ES*        0,07\n"
            "\n"
            "TOTALE COMPLESSIVO                  134,73\n"
            "di cui IVA                           22,62\n"
            "\n"
            "IVA              Imponibile        Imposta\n"
            "22%                  101,00          22,22\n"
            "10%                    4,04           0,40\n"
            "ES*                    7,07           0,00\n"
            "\n"
            "Buono multiuso                        4,73\n"
            "Non riscosso fatture                 30,00\n"
            "Pagamento bancomat                  100,00\n"
            "Importo pagato                      100,00\n"
            "ES* = N4 esente\n"
            "\n"
            "             15/01/2024 10:30\n"
            "               FATTURA N. 1\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
}

// One of two chairs, sold at 22 %, goes back on a day of 21 %: its tax is that of the sale,
// 54,45 x 22 / 122 = 9,818... = 9,82. By today's it would be 54,45 x 21 / 121 = 9,45.
TEST_F(GoldenPapers, ACreditNoteOfAnOlderRate) {
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 605000, "SEDIA"), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 605000, "SEDIA"), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  ASSERT_EQ(device.SetVatValue(1, "210000"), RTF_SUCCESS);
  ASSERT_EQ(device.SetVatTable(), RTF_SUCCESS);
  Tear();
  ASSERT_EQ(device.BeginDocTelematicRefund(1, 1, "15012024", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 605000, "SEDIA"), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_PERCENTAGE_DISCOUNT, "", 100000, -1, -2),
            RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Paper(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "          DOCUMENTO COMMERCIALE\n"
            "          emesso per RESO MERCE\n"
            "\n"
            "Documento di riferimento: 0001-0001\n"
            "del 15/01/2024\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "SEDIA                      22%       60,50\n"
            "SCONTO                     22%       -6,05\n"
            "\n"
            "TOTALE COMPLESSIVO                   54,45\n"
            "di cui IVA                            9,82\n"
            "\n"
            "Pagamento contante                   54,45\n"
            "Importo rimborsato                   54,45\n"
            "\n"
            "             15/01/2024 10:30\n"
            "          DOCUMENTO N. 0002-0001\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  EXPECT_EQ(device.store().day().Sum(Totals::kAll, 1, TaxedFigure::kGross).tax, -98200);
  // The next sale has today's rate.
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 121000, "TAZZA"), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_NE(Paper().find("di cui IVA                            2,10\n"), std::string::npos);
}

// 9,00 at 22 %: 1,622... = 1,62; 4,50 at 10 %: 0,409... = 0,41: 2,03.
TEST_F(GoldenPapers, AVoidByItsLines) {
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 90000, "VASO"), RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 45000, "VINO"), RTF_SUCCESS);
  ASSERT_EQ(PayRest("2"), RTF_SUCCESS);
  Tear();
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "", false, ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000, "VASO"), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 10000, -1, -2),
            RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 45000, "VINO"), RTF_SUCCESS);
  ASSERT_EQ(PayRest("2"), RTF_SUCCESS);
  EXPECT_EQ(Paper(),
            "             NEGOZIO DI PROVA\n"
            "        Via Esempio 1 - 00100 ROMA\n"
            "            P.IVA 01234567897\n"
            "\n"
            "          DOCUMENTO COMMERCIALE\n"
            "         emesso per ANNULLAMENTO\n"
            "\n"
            "Documento di riferimento: 0001-0001\n"
            "del 15/01/2024\n"
            "\n"
            "DESCRIZIONE                IVA Prezzo(EUR)\n"
            "VASO                       22%       10,00\n"
            "SCONTO                     22%       -1,00\n"
            "VINO                       10%        4,50\n"
            "\n"
            "TOTALE COMPLESSIVO                   13,50\n"
            "di cui IVA                            2,03\n"
            "\n"
            "Pagamento elettronico                13,50\n"
            "Importo rimborsato                   13,50\n"
            "\n"
            "             15/01/2024 10:30\n"
            "          DOCUMENTO N. 0001-0002\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
}

}  // namespace
}  // namespace lorimat
