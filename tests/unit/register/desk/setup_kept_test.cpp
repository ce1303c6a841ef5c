// What is set up outlasts a switching off: a register on a file, switched off and on again.
#include <fmt/format.h>

#include <memory>

#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

class SetupKeptTest : public ClockTest {
 protected:
  void SetUp() override { SwitchOn(); }
  // Switches the register off, in the middle of whatever it does, and on again.
  void SwitchOn() {
    shop.reset();
    RegisterSettings settings = Settings();
    settings.file = Path("shop.register");
    settings.commissioned = false;
    shop = std::make_unique<VirtualRegister>(settings);
    seen = shop->paper_lines().size();
  }
  int Get(int property) {
    int value = -1;
    EXPECT_EQ(shop->GetIntProperty(property, &value), RTF_SUCCESS);
    return value;
  }
  std::string Read(int item) {
    char text[50] = "";
    EXPECT_EQ(shop->GetDataInternal(item, text), RTF_SUCCESS);
    return text;
  }
  std::string Printed() {
    std::string text;
    for (; seen < shop->paper_lines().size(); ++seen) text += shop->paper_lines()[seen] + "\n";
    return text;
  }
  int Sale(int64_t price) {
    if (const int code = shop->BeginFiscalReceipt(true)) return code;
    return shop->PrintRecItemEx(0, "", price, 0, -1, 0, "", 1, true, "");
  }

  std::unique_ptr<VirtualRegister> shop;
  size_t seen = 0;
};

TEST_F(SetupKeptTest, LinesIdentifiersClockAndLogosStay) {
  WriteText("logo.png", "x");
  ASSERT_EQ(shop->SetTrailerLine(6, "GRAZIE", false), RTF_SUCCESS);
  ASSERT_EQ(shop->SetPOSID("0007", "ANNA"), RTF_SUCCESS);
  ASSERT_EQ(shop->SetStoreFiscalID("12345678903"), RTF_SUCCESS);
  ASSERT_EQ(shop->SetDate("290220242359"), RTF_SUCCESS);
  ASSERT_EQ(shop->ProgramGRC(5, Path("logo.png").c_str(), true), RTF_SUCCESS);
  ASSERT_EQ(shop->SelectBitmap(5, 1), RTF_SUCCESS);
  SwitchOn();
  ASSERT_EQ(Sale(10000), RTF_SUCCESS);
  ASSERT_EQ(shop->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  const std::string paper = Printed();
  for (const char* text :
       {"[LOGO 5]", "GRAZIE", "CASSA 0007", "CASSIERE ANNA", "29/02/2024 23:59"}) {
    EXPECT_NE(paper.find(text), std::string::npos) << text;
  }
  ASSERT_EQ(shop->PrintZReport(), RTF_SUCCESS);
  ASSERT_EQ(shop->ExportTelematicSummary(Path("s.xml").c_str()), RTF_SUCCESS);
  EXPECT_NE(ReadText("s.xml").find("12345678903"), std::string::npos);
}

TEST_F(SetupKeptTest, EachTrailerLineKeepsItsPlace) {
  for (int line = 1; line <= 6; ++line) {
    ASSERT_EQ(shop->SetTrailerLine(line, fmt::format("RIGA {}", line).c_str(), false), RTF_SUCCESS);
  }
  SwitchOn();
  ASSERT_EQ(shop->SetTrailerLine(3, "TERZA", false), RTF_SUCCESS);
  SwitchOn();
  ASSERT_EQ(Sale(10000), RTF_SUCCESS);
  ASSERT_EQ(shop->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  EXPECT_NE(Printed().find("                  RIGA 1\n"
                           "                  RIGA 2\n"
                           "                  TERZA\n"
                           "                  RIGA 4\n"
                           "                  RIGA 5\n"
                           "                  RIGA 6\n"),
            std::string::npos);
}

TEST_F(SetupKeptTest, EachStepIntoServiceStays) {
  ASSERT_EQ(shop->TelematicCensus(), RTF_SUCCESS);
  SwitchOn();
  EXPECT_EQ(Get(RTF_PIDXFptr_CommissioningState), 2);
  ASSERT_EQ(shop->TelematicActivate("12345678903", "12345678903", "u", "p", 1, "15012024"),
            RTF_SUCCESS);
  SwitchOn();
  EXPECT_EQ(Get(RTF_PIDXFptr_CommissioningState), 3);
  ASSERT_EQ(shop->TelematicCommissioning(), RTF_SUCCESS);
  SwitchOn();
  EXPECT_EQ(Get(RTF_PIDXFptr_CommissioningState), 1);
}

TEST_F(SetupKeptTest, TrainingGoesOnAndItsCutDocumentIsNotCounted) {
  ASSERT_EQ(shop->BeginTraining(), RTF_SUCCESS);
  ASSERT_EQ(Sale(10000), RTF_SUCCESS);
  SwitchOn();
  EXPECT_EQ(Get(RTF_PIDXFptr_TrainingModeActive), 1);
  EXPECT_EQ(shop->printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(Read(114), "0");
  EXPECT_EQ(Read(57), "0");
  EXPECT_TRUE(shop->store().journal().empty());
  ASSERT_EQ(shop->EndTraining(), RTF_SUCCESS);
  SwitchOn();
  EXPECT_EQ(Get(RTF_PIDXFptr_TrainingModeActive), 0);
}

TEST_F(SetupKeptTest, ASettledDocumentOfTrainingIsNotRegisteredByASwitchingOff) {
  ASSERT_EQ(shop->BeginTraining(), RTF_SUCCESS);
  ASSERT_EQ(shop->SetDataInternal(148, "0"), RTF_SUCCESS);
  ASSERT_EQ(Sale(10000), RTF_SUCCESS);
  ASSERT_EQ(shop->PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  SwitchOn();
  EXPECT_EQ(shop->printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_TRUE(shop->store().documents().empty());
  EXPECT_TRUE(shop->store().journal().empty());
}

TEST_F(SetupKeptTest, CutDocumentsShowInThePowerLossReport) {
  ASSERT_EQ(Sale(10000), RTF_SUCCESS);
  SwitchOn();
  ASSERT_EQ(shop->PrintPowerLossReport(), RTF_SUCCESS);
  const std::string report = Printed();
  EXPECT_NE(report.find("Documenti interrotti                     1\n"
                        "Ultima interruzione       15/01/2024 10:30\n"),
            std::string::npos);
  SwitchOn();  // nothing is open
  ASSERT_EQ(shop->PrintPowerLossReport(), RTF_SUCCESS);
  EXPECT_NE(Printed().find("Documenti interrotti                     1\n"), std::string::npos);
}

TEST_F(SetupKeptTest, ACashDocumentThatIsCutOffMovesNothing) {
  ASSERT_EQ(shop->SetIntProperty(RTF_PIDXFptr_FiscalReceiptType, RTF_FPTR_RT_CASH_IN), RTF_SUCCESS);
  ASSERT_EQ(shop->BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(shop->PrintRecCash(10000), RTF_SUCCESS);
  SwitchOn();
  EXPECT_EQ(shop->printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(Get(RTF_PIDXFptr_FiscalReceiptType), RTF_FPTR_RT_SALES);
  EXPECT_EQ(Read(114), "1");
  EXPECT_EQ(Read(89), "0");
  EXPECT_EQ(shop->store().grand_total(), 0);
}

TEST_F(SetupKeptTest, AnItemListThatIsCutOffIsOver) {
  ASSERT_EQ(shop->BeginItemList(4), RTF_SUCCESS);
  SwitchOn();
  EXPECT_EQ(shop->printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(shop->EndItemList(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Read(114), "0");
}

// Who has closed the service has not switched the register off.
TEST_F(SetupKeptTest, AClosedServiceIsOpenAgainWithANewStart) {
  ASSERT_EQ(shop->Close(), RTF_SUCCESS);
  SwitchOn();
  EXPECT_EQ(shop->GetState(), RTF_S_IDLE);
  EXPECT_TRUE(shop->GetDeviceEnabled());
  EXPECT_EQ(Sale(10000), RTF_SUCCESS);
}

}  // namespace
}  // namespace lorimat
