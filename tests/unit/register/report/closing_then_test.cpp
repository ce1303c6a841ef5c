// Closings and summaries tell a day by the rates and tenders that it had.
#include "register/inspect/register_file.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class ClosingThen : public StoreTest {
 protected:
  void Sell(int department, int64_t price, const char* tender = "0") {
    ASSERT_EQ(device->BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(device->PrintRecItemEx(0, "", price, 0, -1, 0, "", department, true, ""),
              RTF_SUCCESS);
    ASSERT_EQ(device->PrintRecTotalEx(0, tender, true), RTF_SUCCESS);
  }
  // The first subtender: 0 cash, 1 electronic, 2 ticket.
  void MakeSubtender(uint8_t type) {
    char name[32] = "CARTA";
    uint8_t flags = 0, digits = 0;
    uint32_t preset = 0;
    ASSERT_EQ(device->ConfigSubtender(true, 1, &type, name, &flags, &preset, &digits), RTF_SUCCESS);
  }
  void SetRate(int entry, const char* rate) {
    ASSERT_EQ(device->SetVatValue(entry, rate), RTF_SUCCESS);
    ASSERT_EQ(device->SetVatTable(), RTF_SUCCESS);
  }
  std::string Summary(int closure) {
    std::filesystem::remove(Path("summary"));
    EXPECT_EQ(device->SaveTelematicSummary(closure, closure, Path("summary").c_str()), RTF_SUCCESS);
    return Bytes("summary");
  }
  // The closing's rows of the rates.
  std::string Rates() {
    EXPECT_EQ(device->PrintZReport(), RTF_SUCCESS);
    const std::string paper = device->paper_text();
    const size_t at = paper.rfind("\nIVA\n") + 5;
    return paper.substr(at, paper.find("\n\n", at) + 1 - at);
  }
  void Reopen() {
    device.reset();
    device = std::make_unique<VirtualRegister>(FileSettings());
  }
  void ExpectGood() {
    for (const std::string& finding :
         FindingTexts(RegisterFile(Path("shop.register")).VerifyJournal({}))) {
      ADD_FAILURE() << finding;
    }
  }

  std::unique_ptr<VirtualRegister> device = std::make_unique<VirtualRegister>(FileSettings());
};

TEST_F(ClosingThen, ATenderCountsAsWhatItWasAtThePayment) {
  MakeSubtender(1);
  Sell(1, 40000, "10");
  MakeSubtender(0);
  Sell(1, 60000, "10");
  Reopen();
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  const std::string before = Summary(1);
  EXPECT_NE(before.find("<PagatoElettronico>4.00</PagatoElettronico>"), before.npos) << before;
  EXPECT_NE(before.find("<PagatoContanti>6.00</PagatoContanti>"), before.npos);
  MakeSubtender(2);
  EXPECT_EQ(Summary(1), before);
  ExpectGood();
}

TEST_F(ClosingThen, ALotteryDocumentKeepsWhatWasPaidElectronically) {
  MakeSubtender(1);
  ASSERT_EQ(device->BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(device->PrintRecItemEx(0, "", 40000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  ASSERT_EQ(device->KeyCodeInput("", "", "", FunctionCode::kLotteryCode), RTF_SUCCESS);
  ASSERT_EQ(device->KeyCodeInput("", "AB12CD34", "AB12CD34", FunctionCode::kConfirm), RTF_SUCCESS);
  ASSERT_EQ(device->PrintRecTotalEx(0, "10", true), RTF_SUCCESS);
  MakeSubtender(0);
  ASSERT_EQ(device->TelematicDocument(0, 2, 1, 0, 0, 0, 0, Path("lottery").c_str()), RTF_SUCCESS);
  EXPECT_NE(Bytes("lottery").find("<PagatoElettronico>4.00</PagatoElettronico>"),
            std::string::npos);
}

// 12,20 at 22 %: base 10,00 and tax 2,20. Then entry 1 has 20 %: 12,00 are 10,00 and 2,00.
TEST_F(ClosingThen, WhatGoesBackStandsAtTheRateOfItsDay) {
  Sell(1, 122000);
  Sell(1, 61000);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  SetRate(1, "200000");
  Sell(1, 120000);
  ASSERT_EQ(device->BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  ASSERT_EQ(device->BeginDocRefundEx(2, 1, "", true), RTF_SUCCESS);
  Reopen();
  EXPECT_EQ(Rates(),
            "Totale 20% n. 1                      12,00\n"
            "Imponibile 20%                       10,00\n"
            "Imposta 20%                           2,00\n"
            "Totale 22% n. 2                     -18,30\n"
            "Imponibile 22%                      -15,00\n"
            "Imposta 22%                          -3,30\n"
            "Documenti di reso 22% n. 1            6,10\n"
            "Annulli 22% n. 1                     12,20\n");
  const std::string summary = Summary(2);
  const size_t second = summary.rfind("<Riepilogo>");
  const std::string now = summary.substr(0, second), then = summary.substr(second);
  for (const char* element : {"<AliquotaIVA>20.00<", "<Imposta>2.00<", "<Ammontare>10.00<",
                              "<TotaleAmmontareResi>0.00<", "<TotaleAmmontareAnnulli>0.00<"}) {
    EXPECT_NE(now.find(element), now.npos) << element << summary;
  }
  for (const char* element : {"<AliquotaIVA>22.00<", "<Imposta>0.00<", "<Ammontare>0.00<",
                              "<TotaleAmmontareResi>5.00<", "<TotaleAmmontareAnnulli>10.00<"}) {
    EXPECT_NE(then.find(element), then.npos) << element << summary;
  }
  // Of the entry itself all kinds are together, as hosts read it.
  char text[50] = "";
  ASSERT_EQ(
      device->GetTotalizerExtend(1, RTF_FPTR_TT_GRAND, RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS, text),
      RTF_SUCCESS);
  EXPECT_STREQ(text, "120000");  // 12,20 + 6,10 + 12,00 - 12,20 - 6,10
  ExpectGood();
}

TEST_F(ClosingThen, ARateAtWhichNothingIsLeftIsNone) {
  Sell(1, 122000);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  SetRate(1, "200000");
  ASSERT_EQ(device->BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  EXPECT_EQ(Rates(),
            "Totale 22% n. 1                     -12,20\n"
            "Imponibile 22%                      -10,00\n"
            "Imposta 22%                          -2,20\n"
            "Annulli 22% n. 1                     12,20\n");
  // The same rate again: nothing stands apart.
  SetRate(1, "220000");
  Sell(1, 122000);
  ASSERT_EQ(device->BeginDocTelematicCancel(1, 3, "", true, ""), RTF_SUCCESS);
  EXPECT_EQ(Rates(),
            "Totale 22% n. 2                       0,00\n"
            "Annulli 22% n. 1                     12,20\n");
}

}  // namespace
}  // namespace lorimat
