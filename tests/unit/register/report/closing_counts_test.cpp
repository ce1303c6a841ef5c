// How many of each a closing counts, by rate and by tender.
#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

class ClosingCounts : public ReportTest {
 protected:
  // From a line to the next blank one.
  std::string Section(const std::string& title) {
    const std::string paper = NewPaper();
    const size_t at = paper.find(title);
    return at == paper.npos ? "none" : paper.substr(at, paper.find("\n\n", at) + 1 - at);
  }
};

// Entries 1 and 2 have 22 %, entry 4 has 4 %.
//   10,00 (1), 10,00 (2), 20,00 (4), less 4,00 on the subtotal: 1,00, 1,00 and 2,00; in cash.
//   Tax: 9,00 x 22/122 = 1,62, twice; 18,00 x 4/104 = 0,69.
//   5,00 (1) with a discount that is taken back and a surcharge of 1,00, a refund line of 2,00, and
//   one of 1,00 that is taken back: 4,00, by two tenders. Tax 0,72.
// 22 %: 18,00 + 4,00, tax 1,62 + 1,62 + 0,72 = 3,96.
TEST_F(ClosingCounts, CountsWhatStandsOncePerRate) {
  ASSERT_EQ(device.SetVatValue(2, "220000"), RTF_SUCCESS);
  ASSERT_EQ(device.SetVatTable(), RTF_SUCCESS);
  uint8_t type = 1, digits = 0, flags = 0;
  uint32_t preset = 0;
  char name[16] = "Ticket";
  ASSERT_EQ(device.ConfigSubtender(true, 1, &type, name, &flags, &preset, &digits), RTF_SUCCESS);

  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
  ASSERT_EQ(Sell(2, 100000), RTF_SUCCESS);
  ASSERT_EQ(Sell(4, 200000), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecSubtotalAdjustment(1, "", 40000), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);

  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 50000), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemAdjustmentEx2(1, "", 5000, -1, -2, false), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemAdjustmentEx2(1, "", 5000, -1, -2, true), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemAdjustmentEx2(2, "", 10000, -1, -2, false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20000, "", PflItemType::kPrintRecItemRefund), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000, "", PflItemType::kPrintRecItemRefund), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000, "", PflItemType::kPrintRecItemRefundVoid), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(10000, "4", false), RTF_SUCCESS);
  ASSERT_EQ(PayRest("10"), RTF_SUCCESS);

  const char* const rates =
      "IVA\n"
      "Totale 22% n. 2                      22,00\n"
      "Imponibile 22%                       18,04\n"
      "Imposta 22%                           3,96\n"
      "Sconti 22% n. 1                       2,00\n"
      "Maggiorazioni 22% n. 1                1,00\n"
      "Resi di riga 22% n. 1                 2,00\n"
      "Totale 4% n. 1                       18,00\n"
      "Imponibile 4%                        17,31\n"
      "Imposta 4%                            0,69\n"
      "Sconti 4% n. 1                        2,00\n";
  NewPaper();
  ASSERT_EQ(device.PrintXReport(), RTF_SUCCESS);
  EXPECT_EQ(Section("IVA\n"), rates);
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(Section("PAGAMENTI\n"),
            "PAGAMENTI\n"
            "Pagamento contante n. 1              36,00\n"
            "Ticket (4) n. 1                       1,00\n"
            "Ticket (10) n. 1                      3,00\n");
}

// What goes back counts for itself: the discount stays that of the sale.
//   10,00 less 1,00 at 22 %, void as a whole: 9,00, tax 1,62; 5,00 and a credit note of it by hand,
//   with a discount of 1,00: 4,00.
TEST_F(ClosingCounts, WhatGoesBackIsCountedForItself) {
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemAdjustmentEx2(1, "", 10000, -1, -2, false), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  Receipt(1, 50000);
  ASSERT_EQ(device.BeginDocTelematicRefund(3, 1, "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 50000), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemAdjustmentEx2(1, "", 10000, -1, -2, false), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  NewPaper();
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  // Tax: 1,62 - 1,62 + 0,90 of 5,00 - 0,72 of 4,00.
  EXPECT_EQ(Section("PAGAMENTI\n"), "PAGAMENTI\nPagamento contante n. 4               1,00\n");
  seen_ = 0;
  const std::string all = NewPaper();
  EXPECT_NE(all.find("IVA\n"
                     "Totale 22% n. 4                       1,00\n"
                     "Imponibile 22%                        0,82\n"
                     "Imposta 22%                           0,18\n"
                     "Sconti 22% n. 1                       1,00\n"
                     "Documenti di reso 22% n. 1            4,00\n"
                     "Annulli 22% n. 1                      9,00\n\n"),
            all.npos);
}

}  // namespace
}  // namespace lorimat
