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

// 12,20 at 22 %: 10,00 and 2,20. 12,00 and 24,00 at 20 %: 10,00 and 2,00, 20,00 and 4,00. 11,00 at
// 10 %: 10,00 and 1,00. All by entry 1.
TEST_F(ClosingThen, SumsOverClosingsAreAtTheRatesOfEachDay) {
  Sell(1, 122000);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  SetRate(1, "200000");
  Sell(1, 120000);
  const auto periodic = [this](bool clear) {
    const size_t before = device->paper_text().size();
    EXPECT_EQ(device->PeriodicReportMessageEx(3, 0, "txt", "", 1, clear), RTF_SUCCESS);
    const std::string paper = device->paper_text().substr(before);
    const size_t at = paper.find("\nIVA\n") + 5;
    return paper.substr(at, paper.find("\n\n", at) + 1 - at);
  };
  const std::string first =
      "Totale 22% n. 1                      12,20\n"
      "Imponibile 22%                       10,00\n"
      "Imposta 22%                           2,20\n";
  EXPECT_EQ(periodic(true), first +
                                "Totale 20% n. 1                      12,00\n"
                                "Imponibile 20%                       10,00\n"
                                "Imposta 20%                           2,00\n");
  Sell(1, 240000);
  ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
  SetRate(1, "100000");
  Reopen();
  // Cleared within a day: what comes behind it in that day has the rates of that.
  const std::string second =
      "Totale 20% n. 1                      24,00\n"
      "Imponibile 20%                       20,00\n"
      "Imposta 20%                           4,00\n";
  EXPECT_EQ(periodic(false), second);
  Sell(1, 110000);
  EXPECT_EQ(periodic(false), second +
                                 "Totale 10% n. 1                      11,00\n"
                                 "Imponibile 10%                       10,00\n"
                                 "Imposta 10%                           1,00\n");
  ASSERT_EQ(device->FiscalReportMessageEx(2, 65535, 3, 0, 0, 1, 2, "", "", "txt", "", 1),
            RTF_SUCCESS);
  const std::string paper = device->paper_text();
  const size_t at = paper.rfind("\nIVA\n") + 5;
  EXPECT_EQ(paper.substr(at, paper.find("\n\n", at) + 1 - at),
            first +
                "Totale 20% n. 2                      36,00\n"
                "Imponibile 20%                       30,00\n"
                "Imposta 20%                           6,00\n");
}

// A host's marks: of three rates that share one, two are the same; of exempt entries each mark is
// of the nature.
TEST_F(ClosingThen, EntriesOfOneMarkStayApartByTheirRates) {
  RegisterSettings settings = FileSettings();
  settings.file = Path("marks.register");
  settings.vat_rates = {{220000, "A"}, {100000, "A"}, {220000, "B"},
                        {0, "ES*"},    {0, "N4"},     {0, "EE*"}};
  device = std::make_unique<VirtualRegister>(settings);
  ASSERT_EQ(device->BeginFiscalReceipt(false), RTF_SUCCESS);
  for (int department = 1; department <= 6; ++department) {
    ASSERT_EQ(device->PrintRecItemEx(0, "", 110000 + 10000 * (department == 1), 0, -1, 0, "",
                                     department, true, ""),
              RTF_SUCCESS);
  }
  ASSERT_EQ(device->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  // Tax: 12,00 x 22/122 = 2,16, 11,00 x 22/122 = 1,98, 11,00 x 10/110 = 1,00.
  EXPECT_EQ(Rates(),
            "Totale 22% n. 1                      23,00\n"
            "Imponibile 22%                       18,86\n"
            "Imposta 22%                           4,14\n"
            "Totale 10% n. 1                      11,00\n"
            "Imponibile 10%                       10,00\n"
            "Imposta 10%                           1,00\n"
            "Totale ES* n. 1                      22,00\n"
            "Imponibile ES*                       22,00\n"
            "Totale EE* n. 1                      11,00\n"
            "Imponibile EE*                       11,00\n");
  const std::string summary = Summary(1);
  for (const char* element :
       {"<AliquotaIVA>22.00<", "<AliquotaIVA>10.00<", "<Natura>N4<", "<Natura>N1<"}) {
    const size_t at = summary.find(element);
    EXPECT_NE(at, summary.npos) << element << summary;
    EXPECT_EQ(summary.find(element, at + 1), summary.npos) << element << summary;
  }
}

}  // namespace
}  // namespace lorimat
