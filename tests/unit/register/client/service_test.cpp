// The service: what a host may call before it has opened, claimed and enabled the device; tests,
// firmware, and one operation at a time.
#include <functional>
#include <vector>

#include "unit/register/report_fixture.h"

namespace lorimat {
namespace {

class ServiceTest : public ReportTest {
 protected:
  int PropertyCode(int property) {
    int value = 0;
    return device.GetIntProperty(property, &value);
  }
  std::string HealthText() {
    char text[128] = "unset";
    EXPECT_EQ(device.GetStringProperty(RTF_PIDX_CheckHealthText, text), RTF_SUCCESS);
    return text;
  }
  // One operation of each kind that wants an enabled device.
  std::vector<int> Results() {
    int number = 0;
    char text[600] = "";
    return {device.BeginFiscalReceipt(true),
            device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""),
            device.ResetPrn(),
            device.GetDataInternal(371, text),
            device.SetDataInternal(148, "0"),
            device.GetData(RTF_FPTR_GD_Z_REPORT, &number, text),
            device.SetIntProperty(RTF_PIDXFptr_DateType, RTF_FPTR_DT_RTC),
            device.SetStringProperty(RTF_PIDXFptr_PreLine, "riga"),
            device.PrintZReport(),
            device.OpenDrawer(),
            device.DisplayText("CIAO", 0),
            device.ClearText(),
            device.KeyCodeInput("", "", "", 178),
            device.CheckHealth(RTF_CH_INTERNAL),
            device.ClearOutput(),
            device.ClearError(),
            device.BeginTraining(),
            device.SetCurrency(RTF_FPTR_SC_EURO),
            device.GetIntProperty(RTF_PIDXFptr_PrinterState, &number),
            device.GetStringProperty(RTF_PIDXFptr_PreLine, text)};
  }
};

TEST_F(ServiceTest, AHostGetsTheDeviceClaimedAndEnabled) {
  EXPECT_TRUE(device.GetClaimed());
  EXPECT_TRUE(device.GetDeviceEnabled());
  EXPECT_EQ(device.GetState(), RTF_S_IDLE);
  EXPECT_EQ(Property(RTF_PIDX_Claimed), 1);
  EXPECT_EQ(Property(RTF_PIDX_DeviceEnabled), 1);
  EXPECT_EQ(Property(RTF_PIDX_State), RTF_S_IDLE);
}

TEST_F(ServiceTest, AReleasedDeviceAnswersThatItIsNotClaimed) {
  ASSERT_EQ(device.Release(), RTF_SUCCESS);
  EXPECT_FALSE(device.GetClaimed());
  EXPECT_FALSE(device.GetDeviceEnabled());
  EXPECT_EQ(device.GetState(), RTF_S_IDLE);
  for (const int result : Results()) EXPECT_EQ(result, RTF_E_NOTCLAIMED);
  EXPECT_TRUE(device.paper_lines().empty());
  EXPECT_EQ(Property(RTF_PIDX_Claimed), 0);
  EXPECT_EQ(Property(RTF_PIDX_DeviceEnabled), 0);
  EXPECT_EQ(Property(RTF_PIDXFptr_CapTrainingMode), 1);
  EXPECT_EQ(device.SetDeviceEnabled(true), RTF_E_NOTCLAIMED);
  EXPECT_EQ(device.SetDeviceEnabled(false), RTF_SUCCESS);
  EXPECT_EQ(device.Release(), RTF_E_ILLEGAL);
}

TEST_F(ServiceTest, AClaimedDeviceWantsToBeEnabled) {
  device.Release();
  ASSERT_EQ(device.Claim(0), RTF_SUCCESS);
  EXPECT_TRUE(device.GetClaimed());
  EXPECT_FALSE(device.GetDeviceEnabled());
  for (const int result : Results()) EXPECT_EQ(result, RTF_E_DISABLED);
  ASSERT_EQ(device.SetDeviceEnabled(true), RTF_SUCCESS);
  EXPECT_TRUE(device.GetDeviceEnabled());
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  // Again changes nothing.
  EXPECT_EQ(device.Claim(RTF_FOREVER), RTF_SUCCESS);
  EXPECT_EQ(device.SetDeviceEnabled(true), RTF_SUCCESS);
  EXPECT_TRUE(device.GetDeviceEnabled());
  EXPECT_EQ(device.Claim(-2), RTF_E_ILLEGAL);
}

TEST_F(ServiceTest, AClosedDeviceAnswersNothingElse) {
  ASSERT_EQ(device.Close(), RTF_SUCCESS);
  EXPECT_EQ(device.GetState(), RTF_S_CLOSED);
  EXPECT_EQ(Property(RTF_PIDX_State), RTF_S_CLOSED);
  EXPECT_FALSE(device.GetClaimed());
  EXPECT_FALSE(device.GetDeviceEnabled());
  for (const int result : Results()) EXPECT_EQ(result, RTF_E_CLOSED);
  EXPECT_EQ(PropertyCode(RTF_PIDX_Claimed), RTF_E_CLOSED);
  EXPECT_EQ(PropertyCode(RTF_PIDXFptr_CapTrainingMode), RTF_E_CLOSED);
  EXPECT_EQ(device.Claim(0), RTF_E_CLOSED);
  EXPECT_EQ(device.Release(), RTF_E_CLOSED);
  EXPECT_EQ(device.SetDeviceEnabled(true), RTF_E_CLOSED);
  EXPECT_EQ(device.Close(), RTF_E_CLOSED);
  EXPECT_TRUE(device.paper_lines().empty());
}

// Who sets a shop up is not the host, and wants no service of the device.
TEST_F(ServiceTest, AShopIsSetUpWhateverTheHostHasClaimed) {
  ShopSetup setup;
  ShopRefusal refused;
  setup.serial_number = "99LRM0000041VR";
  EXPECT_EQ(device.SetUp(setup, &refused), RTF_SUCCESS);
  ASSERT_EQ(device.SetDeviceEnabled(false), RTF_SUCCESS);
  setup.serial_number = "99LRM0000042VR";
  EXPECT_EQ(device.SetUp(setup, &refused), RTF_SUCCESS);
  ASSERT_EQ(device.Release(), RTF_SUCCESS);
  setup.serial_number = "99LRM0000043VR";
  EXPECT_EQ(device.SetUp(setup, &refused), RTF_SUCCESS);
  ASSERT_EQ(device.Close(), RTF_SUCCESS);
  setup.serial_number = "99LRM0000044VR";
  EXPECT_EQ(device.SetUp(setup, &refused), RTF_SUCCESS);
}

TEST_F(ServiceTest, AnOpenReceiptOutlastsARelease) {
  device.BeginFiscalReceipt(true);
  Sell(1, 10000);
  device.Release();
  EXPECT_EQ(PayRest(), RTF_E_NOTCLAIMED);
  device.Claim(0);
  device.SetDeviceEnabled(true);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT);
  EXPECT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(device.store().grand_total(), 10000);
}

// --- Tests

TEST_F(ServiceTest, AHealthyRegisterSaysSo) {
  EXPECT_EQ(HealthText(), "");
  Receipt(1, 10000);
  EXPECT_EQ(device.CheckHealth(RTF_CH_INTERNAL), RTF_SUCCESS);
  EXPECT_EQ(HealthText(), "Internal HCheck: Successful");
  device.PrintZReport();
  Receipt(1, 20000);
  EXPECT_EQ(device.CheckHealth(RTF_CH_INTERNAL), RTF_SUCCESS);
  device.BeginFiscalReceipt(false);
  EXPECT_EQ(device.CheckHealth(RTF_CH_INTERNAL), RTF_SUCCESS);
}

TEST_F(ServiceTest, TheExternalTestPrintsAPageThatIsNoDocument) {
  ASSERT_EQ(device.CheckHealth(RTF_CH_EXTERNAL), RTF_SUCCESS);
  EXPECT_EQ(HealthText(), "External HCheck: Successful");
  EXPECT_EQ(NewPaper(),
            "      PROVA DI STAMPA - NON FISCALE\n"
            "\n"
            "!\"#$%&'()*+,-./0123456789:;<=>?@ABCDEFGHIJ\n"
            "KLMNOPQRSTUVWXYZ[\\]^_`abcdefghijklmnopqrst\n"
            "uvwxyz{|}~\n"
            "\n"
            "             15/01/2024 10:30\n"
            "            RT 99LRM0000001VR\n"
            "------------------------------------------\n");
  EXPECT_EQ(Item(57), "0");
  EXPECT_TRUE(device.store().journal().empty());
  device.BeginFiscalReceipt(false);
  const std::string before = Snapshot();
  EXPECT_EQ(device.CheckHealth(RTF_CH_EXTERNAL), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(HealthText(), "External HCheck: Error 207");
  EXPECT_EQ(Snapshot(), before);
}

TEST_F(ServiceTest, NobodySitsAtTheRegisterForAnInteractiveTest) {
  EXPECT_EQ(device.CheckHealth(RTF_CH_INTERACTIVE), RTF_E_ILLEGAL);
  EXPECT_EQ(HealthText(), "Interactive HCheck: Not Supported");
  for (const int level : {0, 4, -1}) EXPECT_EQ(device.CheckHealth(level), RTF_E_ILLEGAL);
  EXPECT_EQ(HealthText(), "Interactive HCheck: Not Supported");
}

TEST_F(ServiceTest, TheDiagnosticsTestPrinterDisplaysAndMemory) {
  EXPECT_EQ(device.DiagnosticsRequest(1, true, 0), RTF_SUCCESS);
  EXPECT_NE(NewPaper().find("PROVA DI STAMPA"), std::string::npos);
  EXPECT_EQ(device.DiagnosticsRequest(2, true, 0), RTF_SUCCESS);
  for (int display = 0; display <= 2; ++display) {
    EXPECT_EQ(device.display_text(display, 0), std::string(20, '8'));
    EXPECT_EQ(device.display_text(display, 1), std::string(20, '8'));
  }
  EXPECT_EQ(device.DiagnosticsRequest(2, false, 0), RTF_SUCCESS);
  EXPECT_EQ(device.display_text(0, 0), "");
  EXPECT_EQ(device.DiagnosticsRequest(3, true, 0), RTF_SUCCESS);
  const std::string before = Snapshot();
  EXPECT_EQ(device.DiagnosticsRequest(1, false, 0), RTF_E_ILLEGAL);
  EXPECT_EQ(device.DiagnosticsRequest(3, false, 0), RTF_E_ILLEGAL);
  EXPECT_EQ(device.DiagnosticsRequest(0, true, 0), RTF_E_ILLEGAL);
  EXPECT_EQ(device.DiagnosticsRequest(4, true, 0), RTF_E_ILLEGAL);
  EXPECT_EQ(device.DiagnosticsRequest(2, true, 1), RTF_E_ILLEGAL);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(device.display_text(0, 0), "");
}

TEST_F(ServiceTest, OnlyTestsThatPrintNeedPaper) {
  device.AddFault({.name = "paper-end", .when = FaultWhen::kEvery});
  EXPECT_EQ(device.CheckHealth(RTF_CH_EXTERNAL), RTF_EFPTR_REC_EMPTY);
  EXPECT_EQ(device.DiagnosticsRequest(1, true, 0), RTF_EFPTR_REC_EMPTY);
  EXPECT_EQ(device.CheckHealth(RTF_CH_INTERNAL), RTF_SUCCESS);
  EXPECT_EQ(device.DiagnosticsRequest(2, true, 0), RTF_SUCCESS);
  EXPECT_TRUE(device.paper_lines().empty());
}

TEST_F(ServiceTest, AFaultWaitsForACallThatReachesTheDevice) {
  device.AddFault({.name = "off-line"});
  device.Release();
  EXPECT_EQ(device.BeginNonFiscal(), RTF_E_NOTCLAIMED);
  EXPECT_EQ(device.faults().faults().size(), 1u);
  device.Claim(0);
  device.SetDeviceEnabled(true);
  EXPECT_EQ(device.BeginNonFiscal(), RTF_E_OFFLINE);
}

class ServiceClockTest : public ClockTest {};

TEST_F(ServiceClockTest, AClockMoreThanAnHourBehindTheLastClosingIsAnError) {
  VirtualRegister other(Settings());
  At(16, 1, 9, 0);
  ASSERT_EQ(other.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(other.CheckHealth(RTF_CH_INTERNAL), RTF_SUCCESS);
  At(16, 1, 8, 0);
  EXPECT_EQ(other.CheckHealth(RTF_CH_INTERNAL), RTF_SUCCESS);
  At(16, 1, 7, 59);
  EXPECT_EQ(other.CheckHealth(RTF_CH_INTERNAL), RTF_EFPTR_CLOCK_ERROR);
  EXPECT_EQ(other.DiagnosticsRequest(3, true, 0), RTF_EFPTR_CLOCK_ERROR);
}

// --- Output, errors, drawer

TEST_F(ServiceTest, ClearingTheOutputLeavesAnOpenReceipt) {
  device.BeginFiscalReceipt(true);
  Sell(1, 10000);
  const std::string before = Snapshot();
  EXPECT_EQ(device.ClearOutput(), RTF_SUCCESS);
  EXPECT_EQ(Snapshot(), before);
}

TEST_F(ServiceTest, ClearingErrorsForgetsARefusedKey) {
  ASSERT_EQ(device.KeyCodeInput("", "", "", 36), RTF_SUCCESS);  // a subtotal of nothing
  ASSERT_EQ(Item(368), "207");
  EXPECT_EQ(device.ClearError(), RTF_SUCCESS);
  EXPECT_EQ(Item(368), "0");
}

TEST_F(ServiceTest, TheDrawerIsClosedWhenAHostWaitsForIt) {
  device.OpenDrawer();
  EXPECT_EQ(device.WaitForDrawerClose(30000, 1000, 500, 500), RTF_SUCCESS);
  EXPECT_EQ(device.WaitForDrawerClose(RTF_FOREVER, 0, 0, 0), RTF_SUCCESS);
  EXPECT_EQ(device.WaitForDrawerClose(-2, 0, 0, 0), RTF_E_ILLEGAL);
  EXPECT_EQ(device.WaitForDrawerClose(0, -1, 0, 0), RTF_E_ILLEGAL);
  EXPECT_EQ(device.WaitForDrawerClose(0, 0, -1, 0), RTF_E_ILLEGAL);
  EXPECT_EQ(device.WaitForDrawerClose(0, 0, 0, INT32_MIN), RTF_E_ILLEGAL);
  EXPECT_EQ(device.drawer_count(), 1);
}

// --- Firmware

class ServiceFirmwareTest : public ServiceTest {
 protected:
  // A good file of a version; the image is five bytes.
  std::string File(const std::string& version) {
    WriteText(
        "firmware",
        "LORIMAT FIRMWARE 1\nVERSION " + version +
            "\nSIZE 5\n"
            "SHA256 6b3cf57c7b136ef3ebfab4e4a24a0fd4241f4fb43e6bedebb624375dcd3d1332\n\nIMAGE");
    return Path("firmware");
  }
  int Compare(const std::string& version) {
    int result = -1;
    const int code = device.CompareFirmwareVersion(File(version).c_str(), &result);
    return code == RTF_SUCCESS ? result : -code;
  }
};

TEST_F(ServiceFirmwareTest, VersionsAreComparedAsNumbers) {
  // The device has 1.00.
  EXPECT_EQ(Compare("1.00"), RTF_CFV_FIRMWARE_SAME);
  EXPECT_EQ(Compare("1.0"), RTF_CFV_FIRMWARE_SAME);
  EXPECT_EQ(Compare("0.99"), RTF_CFV_FIRMWARE_OLDER);
  EXPECT_EQ(Compare("1"), RTF_CFV_FIRMWARE_SAME);
  EXPECT_EQ(Compare("0"), RTF_CFV_FIRMWARE_OLDER);
  EXPECT_EQ(Compare("1.10"), RTF_CFV_FIRMWARE_NEWER);
  EXPECT_EQ(Compare("10.0"), RTF_CFV_FIRMWARE_NEWER);
  EXPECT_EQ(Compare("1.0.1"), RTF_CFV_FIRMWARE_NEWER);
  EXPECT_EQ(Compare("99999999999999999999"), RTF_CFV_FIRMWARE_DIFFERENT);
  for (const char* name : {"beta", "1.x", "1.", ".1", "1..2", "-1", " 1"}) {
    EXPECT_EQ(Compare(name), RTF_CFV_FIRMWARE_DIFFERENT) << name;
  }
  EXPECT_EQ(Item(103), "1.00");
}

TEST_F(ServiceFirmwareTest, WhatIsNoFirmwareIsNotCompared) {
  int result = 77;
  EXPECT_EQ(device.CompareFirmwareVersion(Path("nothing").c_str(), &result), RTF_E_NOEXIST);
  EXPECT_EQ(device.CompareFirmwareVersion(nullptr, &result), RTF_E_NOEXIST);
  WriteText("text", "no firmware\n");
  EXPECT_EQ(device.CompareFirmwareVersion(Path("text").c_str(), &result), RTF_EFIRMWARE_BAD_FILE);
  EXPECT_EQ(result, 77);
  EXPECT_EQ(device.CompareFirmwareVersion(File("1.00").c_str(), nullptr), RTF_E_ILLEGAL);
}

TEST_F(ServiceFirmwareTest, AnUpdateTakesOverTheVersion) {
  EXPECT_EQ(device.UpdateFirmware(File("2.00").c_str()), RTF_SUCCESS);
  EXPECT_EQ(Item(103), "2.00");
  EXPECT_EQ(device.UpdateFirmware(Path("nothing").c_str()), RTF_E_NOEXIST);
  device.BeginFiscalReceipt(true);
  EXPECT_EQ(device.UpdateFirmware(File("3.00").c_str()), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Item(103), "2.00");
}

// --- One operation at a time

TEST(OneOperationAtATime, AnotherThatBeginsMeanwhileIsRefused) {
  VirtualRegister* inner = nullptr;
  std::vector<int> results;
  int state = 0;
  RegisterSettings settings = TestSettings();
  settings.clock = [&] {
    if (inner != nullptr) {
      VirtualRegister* const device = std::exchange(inner, nullptr);
      char text[50];
      results = {device->BeginNonFiscal(),
                 device->ResetPrn(),
                 device->Close(),
                 device->GetDataInternal(371, text),
                 device->SetDataInternal(148, "0"),
                 device->OpenDrawer(),
                 device->RetrieveStatistics(""),
                 device->CheckHealth(RTF_CH_INTERNAL)};
      state = device->GetState();
    }
    return FixedTime();
  };
  VirtualRegister device(settings);
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  inner = &device;
  EXPECT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  ASSERT_EQ(results.size(), 8u);
  for (const int result : results) EXPECT_EQ(result, RTF_E_BUSY);
  EXPECT_EQ(state, RTF_S_BUSY);
  // The first one went through, once, and the next is served.
  EXPECT_EQ(device.store().grand_total(), 10000);
  EXPECT_EQ(device.drawer_count(), 0);
  EXPECT_EQ(device.GetState(), RTF_S_IDLE);
  EXPECT_EQ(device.BeginNonFiscal(), RTF_SUCCESS);
}

}  // namespace
}  // namespace lorimat
