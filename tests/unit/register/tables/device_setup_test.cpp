// Set-up of the device: trailer lines, who the shop is, the clock, logos, and the way into
// service.
#include <climits>

#include "register/value/device_clock.h"
#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

class DeviceSetupTest : public ReportTest {
 protected:
  // The paper of a receipt behind its payment.
  std::string Trailer() {
    NewPaper();
    Receipt(1, 10000);
    const std::string paper = NewPaper();
    return paper.substr(paper.find("Importo pagato"));
  }
};

TEST_F(DeviceSetupTest, TrailerLinesCloseAFiscalDocument) {
  EXPECT_EQ(Property(RTF_PIDXFptr_NumTrailerLines), 6);
  ASSERT_EQ(device.SetTrailerLine(1, "GRAZIE E ARRIVEDERCI", false), RTF_SUCCESS);
  ASSERT_EQ(device.SetTrailerLine(6, "Orario\t9-19", true), RTF_SUCCESS);
  EXPECT_EQ(Trailer(),
            "Importo pagato                        1,00\n"
            "\n"
            "             15/01/2024 10:30\n"
            "          DOCUMENTO N. 0001-0001\n"
            "            RT 99LRM0000001VR\n"
            "           GRAZIE E ARRIVEDERCI\n"
            "               Orario 9-19\n"
            "------------------------------------------\n");
  ASSERT_EQ(device.SetTrailerLine(1, "", false), RTF_SUCCESS);
  ASSERT_EQ(device.SetTrailerLine(6, nullptr, false), RTF_SUCCESS);
  EXPECT_EQ(Trailer().find("GRAZIE"), std::string::npos);
}

TEST_F(DeviceSetupTest, TrailerLinesThatARegisterCannotHoldAreRefused) {
  for (const int line : {0, 7, -1, INT_MAX, INT_MIN}) {
    EXPECT_EQ(device.SetTrailerLine(line, "X", false), RTF_E_ILLEGAL);
  }
  EXPECT_EQ(device.SetTrailerLine(1, std::string(50, 'X').c_str(), false), RTF_SUCCESS);
  EXPECT_EQ(device.SetTrailerLine(1, std::string(51, 'Y').c_str(), false), RTF_EFPTR_BAD_LENGTH);
  std::string every;
  for (int byte = 1; byte < 51; ++byte) every += static_cast<char>(byte);
  EXPECT_EQ(device.SetTrailerLine(2, every.c_str(), false), RTF_SUCCESS);
  const std::string trailer = Trailer();
  EXPECT_EQ(trailer.find('Y'), std::string::npos);
  for (const char c : trailer) EXPECT_TRUE(c == '\n' || c >= ' ');
}

TEST_F(DeviceSetupTest, PointOfSaleAndCashierStandOnTheReceipt) {
  ASSERT_EQ(device.SetPOSID("0007", "ANNA"), RTF_SUCCESS);
  EXPECT_NE(Trailer().find("                CASSA 0007\n"
                           "              CASSIERE ANNA\n"
                           "            RT 99LRM0000001VR\n"),
            std::string::npos);
  device.PrintZReport();
  ASSERT_EQ(device.SetPOSID("", nullptr), RTF_SUCCESS);
  EXPECT_EQ(Trailer().find("CASS"), std::string::npos);
}

TEST_F(DeviceSetupTest, WhatStandsOnFiscalDocumentsIsSetBetweenDays) {
  Receipt(1, 10000);
  EXPECT_EQ(device.SetPOSID("0007", "ANNA"), RTF_EFPTR_DAY_END_REQUIRED);
  EXPECT_EQ(device.SetStoreFiscalID("01234567897"), RTF_EFPTR_DAY_END_REQUIRED);
  EXPECT_EQ(device.SetDate("160120240000"), RTF_EFPTR_DAY_END_REQUIRED);
  EXPECT_EQ(Trailer().find("CASS"), std::string::npos);
  device.PrintZReport();
  EXPECT_EQ(device.SetPOSID("0007", "ANNA"), RTF_SUCCESS);
}

TEST_F(DeviceSetupTest, IdentifiersAreShort) {
  EXPECT_EQ(device.SetPOSID("123456789012", "123456789012"), RTF_SUCCESS);
  EXPECT_EQ(device.SetPOSID("1234567890123", ""), RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(device.SetPOSID("", "1234567890123"), RTF_EFPTR_BAD_LENGTH);
  EXPECT_NE(Trailer().find("CASSA 123456789012"), std::string::npos);
}

TEST_F(DeviceSetupTest, TheFiscalIdOfTheShopGoesToTheSummary) {
  ASSERT_EQ(device.SetStoreFiscalID("12345678903"), RTF_SUCCESS);
  device.PrintZReport();
  ASSERT_EQ(device.ExportTelematicSummary(Path("summary.xml").c_str()), RTF_SUCCESS);
  EXPECT_NE(ReadText("summary.xml").find("<PIVAEsercente>12345678903</PIVAEsercente>"),
            std::string::npos);
}

TEST_F(DeviceSetupTest, AFiscalIdHasItsCheckDigit) {
  // 0 1 2 3 4 5 6 7 8 9: 0+2+2+6+4+1+6+5+8+9 = 43, so that 7 follows.
  EXPECT_EQ(device.SetStoreFiscalID("01234567897"), RTF_SUCCESS);
  EXPECT_EQ(device.SetStoreFiscalID("01234567890"), RTF_E_ILLEGAL);
  EXPECT_EQ(device.SetStoreFiscalID("0123456789X"), RTF_E_ILLEGAL);
  EXPECT_EQ(device.SetStoreFiscalID("0123456789"), RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(device.SetStoreFiscalID("012345678970"), RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(device.SetStoreFiscalID(""), RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(device.SetStoreFiscalID(nullptr), RTF_EFPTR_BAD_LENGTH);
}

// --- The clock

class DeviceClockTest : public ClockTest {
 protected:
  std::string Date(VirtualRegister& register_) {
    char text[13] = "";
    EXPECT_EQ(register_.GetDate(text), RTF_SUCCESS);
    return text;
  }
};

TEST_F(DeviceClockTest, AClockThatWasSetGoesOnFromThere) {
  VirtualRegister other(Settings());
  ASSERT_EQ(other.SetDate("290220242359"), RTF_SUCCESS);
  EXPECT_EQ(Date(other), "290220242359");
  At(15, 1, 10, 31);
  EXPECT_EQ(Date(other), "010320240000");
  At(15, 1, 9, 29);
  EXPECT_EQ(Date(other), "290220242258");
  ASSERT_EQ(other.SetDate("010120240000"), RTF_SUCCESS);  // back, with no closing made
  EXPECT_EQ(Date(other), "010120240000");
  char item[50];
  ASSERT_EQ(other.GetDataInternal(149, item), RTF_SUCCESS);
  EXPECT_STREQ(item, "010120240000");
}

TEST_F(DeviceClockTest, AClockThatIsSetBehindTheLastClosingSellsFromThere) {
  VirtualRegister other(Settings());
  ASSERT_EQ(other.PrintZReport(), RTF_SUCCESS);  // 15 January 2024, 10:30
  EXPECT_EQ(other.SetDate("140120240800"), RTF_SUCCESS);
  EXPECT_EQ(Date(other), "140120240800");
  EXPECT_EQ(other.BeginFiscalReceipt(false), RTF_SUCCESS);
}

TEST_F(DeviceClockTest, DatesThatTheCalendarLacksAreRefused) {
  VirtualRegister other(Settings());
  for (const char* date :
       {"", "300220241030", "290220231030", "000120241030", "150020241030", "151320241030",
        "150120242400", "150120241060", "15012024103", "1501202410300", "150119991030",
        "150121001030", "1501 0241030", "15/01/24 10:", "-50120241030"}) {
    EXPECT_EQ(other.SetDate(date), RTF_EFPTR_BAD_DATE) << date;
  }
  EXPECT_EQ(other.SetDate(nullptr), RTF_EFPTR_BAD_DATE);
  EXPECT_EQ(Date(other), "150120241030");
  EXPECT_EQ(other.SetDate("010120000000"), RTF_SUCCESS);
  EXPECT_EQ(other.SetDate("311220992359"), RTF_SUCCESS);
  EXPECT_EQ(Date(other), "311220992359");
}

TEST(DeviceClock, SecondsGoThroughMonthsAndLeapYears) {
  std::tm time = FixedTime();  // 15 January 2024, 10:30:00
  EXPECT_EQ(LaterBy(time, 0).tm_mday, 15);
  std::tm later = LaterBy(time, 46 * 86400);  // January has 16 days left, February 29
  EXPECT_EQ(later.tm_mday, 1);
  EXPECT_EQ(later.tm_mon, 2);
  EXPECT_EQ(later.tm_hour, 10);
  EXPECT_EQ(later.tm_yday, 60);
  EXPECT_EQ(later.tm_wday, 5);  // a Friday
  EXPECT_EQ(SecondsBetween(time, later), 46 * 86400);
  EXPECT_EQ(SecondsBetween(later, time), -46 * 86400);
  std::tm earlier = LaterBy(time, -(15 * 86400 + 10 * 3600 + 30 * 60 + 1));
  EXPECT_EQ(earlier.tm_year, 123);
  EXPECT_EQ(earlier.tm_mon, 11);
  EXPECT_EQ(earlier.tm_mday, 30);
  EXPECT_EQ(earlier.tm_sec, 59);
  // What no calendar has stays as it is.
  EXPECT_EQ(LaterBy(time, INT64_MAX).tm_year, 124);
  EXPECT_EQ(LaterBy(time, INT64_MIN).tm_year, 124);
  time.tm_year = INT_MAX;
  EXPECT_EQ(LaterBy(time, 86400).tm_year, INT_MAX);
}

// --- Logos

TEST_F(DeviceSetupTest, LogosStandAheadOfTheHeaderAndBehindTheTrailer) {
  WriteText("logo.png", "x");
  ASSERT_EQ(device.ProgramGRC(5, Path("logo.png").c_str(), true), RTF_SUCCESS);
  ASSERT_EQ(device.SelectBitmap(5, 1), RTF_SUCCESS);
  ASSERT_EQ(device.SelectBitmap(5, 2), RTF_SUCCESS);
  device.BeginFiscalReceipt(true);
  Sell(1, 10000);
  PayRest();
  const std::string paper = NewPaper();
  const std::string logo = "                 [LOGO 5]\n";
  EXPECT_EQ(paper.find(logo), 0u);
  EXPECT_NE(paper.find("RT 99LRM0000001VR\n" + logo), std::string::npos);
  ASSERT_EQ(device.SelectBitmap(0, 1), RTF_SUCCESS);
  device.BeginFiscalReceipt(true);
  EXPECT_EQ(NewPaper().find("LOGO"), std::string::npos);
  device.ResetPrn();
  // An erased logo is no longer printed.
  ASSERT_EQ(device.EraseLogoArchive(), RTF_SUCCESS);
  EXPECT_EQ(Trailer().find("LOGO"), std::string::npos);
}

TEST_F(DeviceSetupTest, ErasedLogosTakeTheSelectionWithThem) {
  WriteText("logo.png", "x");
  const auto program = [&] {
    for (int number = 1; number <= 5; ++number) {
      ASSERT_EQ(device.ProgramGRC(static_cast<uint8_t>(number), Path("logo.png").c_str(), true),
                RTF_SUCCESS);
    }
  };
  program();
  ASSERT_EQ(device.SelectBitmap(5, 1), RTF_SUCCESS);
  ASSERT_EQ(device.SelectBitmap(5, 2), RTF_SUCCESS);
  ASSERT_EQ(device.EraseLogoArchive(), RTF_SUCCESS);
  program();
  device.BeginFiscalReceipt(true);
  Sell(1, 10000);
  PayRest();
  EXPECT_EQ(NewPaper().find("LOGO"), std::string::npos);
}

TEST_F(DeviceSetupTest, OnlyLogosThatWereProgrammedAreSelected) {
  EXPECT_EQ(device.SelectBitmap(5, 1), RTF_E_NOEXIST);
  for (const int number : {-1, 65, INT_MAX}) {
    EXPECT_EQ(device.SelectBitmap(number, 1), RTF_E_ILLEGAL);
  }
  for (const int position : {0, 3, -1}) EXPECT_EQ(device.SelectBitmap(0, position), RTF_E_ILLEGAL);
  device.BeginFiscalReceipt(true);
  EXPECT_EQ(device.SelectBitmap(0, 1), RTF_EFPTR_WRONG_STATE);
}

// --- VAT rates as text

TEST_F(DeviceSetupTest, AVatRateAsTextIsWhatCanBeWritten) {
  char text[50] = "unset";
  ASSERT_EQ(device.GetVatEntryExtended(1, 0, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "220000");
  ASSERT_EQ(device.GetVatEntryExtended(5, 0, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "0");
  ASSERT_EQ(device.GetVatEntryExtended(8, 0, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "0");
  for (const int entry : {0, 9, -1}) {
    EXPECT_EQ(device.GetVatEntryExtended(entry, 0, text), RTF_EFPTR_BAD_VAT);
  }
  EXPECT_EQ(device.GetVatEntryExtended(1, 0, nullptr), RTF_E_ILLEGAL);
}

// --- The way into service

class CommissioningTest : public ReportTest {
 protected:
  static RegisterSettings New() {
    RegisterSettings settings = TestSettings();
    settings.commissioned = false;
    return settings;
  }
  int State() {
    int value = -1;
    EXPECT_EQ(fresh.GetIntProperty(RTF_PIDXFptr_CommissioningState, &value), RTF_SUCCESS);
    return value;
  }
  int Activate() {
    return fresh.TelematicActivate("12345678903", "RSSMRA80A01H501U", "tecnico", "segreto", 471100,
                                   "15012024");
  }
  void Sale() {
    ASSERT_EQ(fresh.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(fresh.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    ASSERT_EQ(fresh.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }

  VirtualRegister fresh{New()};
};

TEST_F(CommissioningTest, ThreeStepsLeadIntoService) {
  EXPECT_EQ(State(), 0);
  ASSERT_EQ(fresh.TelematicCensus(), RTF_SUCCESS);
  EXPECT_EQ(State(), 2);
  ASSERT_EQ(Activate(), RTF_SUCCESS);
  EXPECT_EQ(State(), 3);
  Sale();
  EXPECT_NE(fresh.paper_text().find("REGISTRATORE NON IN SERVIZIO"), std::string::npos);
  ASSERT_EQ(fresh.PrintZReport(), RTF_SUCCESS);
  ASSERT_EQ(fresh.TelematicCommissioning(), RTF_SUCCESS);
  EXPECT_EQ(State(), 1);
  char text[50];
  ASSERT_EQ(fresh.GetDataInternal(86, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "1");
  const size_t before = fresh.paper_text().size();
  Sale();
  const std::string paper = fresh.paper_text().substr(before);
  EXPECT_NE(paper.find("DOCUMENTO N. 0002-0001"), std::string::npos);
  EXPECT_EQ(paper.find("NON IN SERVIZIO"), std::string::npos);
  // The shop of the activation.
  ASSERT_EQ(fresh.ExportTelematicSummary(Path("s.xml").c_str()), RTF_SUCCESS);
  EXPECT_NE(ReadText("s.xml").find("12345678903"), std::string::npos);
}

TEST_F(CommissioningTest, NoStepIsTakenOutOfTurn) {
  EXPECT_EQ(Activate(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(fresh.TelematicCommissioning(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(State(), 0);
  fresh.TelematicCensus();
  EXPECT_EQ(fresh.TelematicCensus(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(fresh.TelematicCommissioning(), RTF_EFPTR_WRONG_STATE);
  Activate();
  EXPECT_EQ(Activate(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(State(), 3);
  // One that is in service already.
  EXPECT_EQ(device.TelematicCensus(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(device.TelematicCommissioning(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Property(RTF_PIDXFptr_CommissioningState), 1);
}

TEST_F(CommissioningTest, NoStepIsTakenWithADayOrADocumentOpen) {
  Sale();
  EXPECT_EQ(fresh.TelematicCensus(), RTF_EFPTR_DAY_END_REQUIRED);
  ASSERT_EQ(fresh.BeginFiscalReceipt(false), RTF_SUCCESS);
  EXPECT_EQ(fresh.TelematicCensus(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(State(), 0);
}

TEST_F(CommissioningTest, AnActivationIsTestedWhole) {
  fresh.TelematicCensus();
  const char* const vat = "12345678903";
  const char* const code = "RSSMRA80A01H501U";
  EXPECT_EQ(fresh.TelematicActivate("12345678900", code, "u", "p", 1, "15012024"), RTF_E_ILLEGAL);
  EXPECT_EQ(fresh.TelematicActivate("", code, "u", "p", 1, "15012024"), RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(fresh.TelematicActivate(vat, "RSSMRA80A01H501", "u", "p", 1, "15012024"),
            RTF_EFPTR_BAD_LENGTH);
  EXPECT_EQ(fresh.TelematicActivate(vat, "RSSMRA80A01H501/", "u", "p", 1, "15012024"),
            RTF_E_ILLEGAL);
  EXPECT_EQ(fresh.TelematicActivate(vat, code, "", "p", 1, "15012024"), RTF_E_ILLEGAL);
  EXPECT_EQ(fresh.TelematicActivate(vat, code, "u", nullptr, 1, "15012024"), RTF_E_ILLEGAL);
  EXPECT_EQ(fresh.TelematicActivate(vat, code, std::string(65, 'u').c_str(), "p", 1, "15012024"),
            RTF_EFPTR_BAD_LENGTH);
  for (const int32_t ateco : {0, -1, 1000000, INT_MIN}) {
    EXPECT_EQ(fresh.TelematicActivate(vat, code, "u", "p", ateco, "15012024"), RTF_E_ILLEGAL);
  }
  for (const char* date : {"", "30022024", "150120241", "oggi", "150120242500"}) {
    EXPECT_EQ(fresh.TelematicActivate(vat, code, "u", "p", 1, date), RTF_EFPTR_BAD_DATE) << date;
  }
  EXPECT_EQ(State(), 2);
  EXPECT_EQ(fresh.TelematicActivate(vat, vat, "u", "p", 1, "150120241030"), RTF_SUCCESS);
}

}  // namespace
}  // namespace lorimat
