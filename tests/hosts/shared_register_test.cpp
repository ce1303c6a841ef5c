// The virtual register as a shared library: what a host can do with it by its public face, together
// with the library that it is a device for.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <lorimatrt/client.h>
#include <lorimatrt/lorimatrt.h>
#include <lorimatrt/register.h>

#include <ctime>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <utility>

#include "support/temporary_folder.h"

namespace {

using lorimatrt::DayFigure;
using lorimatrt::RegisterError;
using lorimatrt::RegisterSettings;
using lorimatrt::VirtualRegister;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

std::tm HalfPastTen() {
  std::tm time = {};
  time.tm_year = 2026 - 1900;
  time.tm_mon = 10;
  time.tm_mday = 20;
  time.tm_hour = 10;
  time.tm_min = 30;
  return time;
}

RtfClientInterface* offered_client = nullptr;

long GiveClient(long code, long, char*, long, char*, long*, long* out) {
  if (code != ECRIOIC_GET_CLIENT_RT) return -1;
  *reinterpret_cast<void**>(out) = offered_client;
  return 0;
}

// The library with a register as its device, for one test.
class SharedRegister : public testing::Test {
 protected:
  ~SharedRegister() override {
    TradClose();
    std::filesystem::remove_all(folder_);
  }

  static void Start(VirtualRegister& device) {
    offered_client = device.client();
    std::string file = LORIMAT_LANGUAGE_FILE;
    ASSERT_EQ(TradInit(file.data(), 0, nullptr, &GiveClient), 0);
    Run("RESPRN");
  }

  static long Run(std::string line) {
    char result[512];
    return EcrCmd(line.data(), result);
  }

  std::string Path(const std::string& name) const { return (folder_ / name).string(); }

  const std::filesystem::path folder_ = MakeTemporaryFolder();
};

TEST_F(SharedRegister, SellsAndPrintsByItsSettings) {
  VirtualRegister device(RegisterSettings()
                             .SetSerialNumber("88ABC1234567VR")
                             .SetHeader({"BAR SPORT"})
                             .SetVatRate(1, 50000)
                             .SetDepartment(2, "TOAST", 1, 35000)
                             .SetClock(&HalfPastTen));
  Start(device);
  EXPECT_EQ(Run("VEND REP=2"), 0);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT);
  EXPECT_EQ(Run("CHIU TEND=CONTANTI"), 0);
  EXPECT_THAT(device.paper_text(), HasSubstr("BAR SPORT\n"));
  EXPECT_THAT(device.paper_text(), HasSubstr("TOAST                       5%        3,50\n"));
  EXPECT_THAT(device.paper_text(), HasSubstr("20/11/2026 10:30\n"));
  EXPECT_THAT(device.paper_text(), HasSubstr("RT 88ABC1234567VR\n"));
  EXPECT_EQ(device.DayTotal(DayFigure::kDocuments), 1);
  EXPECT_EQ(device.DayTotal(DayFigure::kReceipts), 35000);
  EXPECT_EQ(device.DayTotal(DayFigure::kRefunds), 0);
  EXPECT_EQ(device.DayTotal(static_cast<DayFigure>(99)), 0);
  EXPECT_EQ(device.drawer_count(), 0);
  EXPECT_EQ(device.last_closure(), 0);
}

TEST_F(SharedRegister, KeepsItsDayInAFile) {
  const RegisterSettings settings =
      RegisterSettings().SetFile(Path("shop.register")).SetClock(&HalfPastTen);
  {
    VirtualRegister device(settings);
    Start(device);
    EXPECT_EQ(Run("VEND REP=1, PRE=1.20"), 0);
    EXPECT_EQ(Run("CHIU TEND=CONTANTI"), 0);
    TradClose();
  }
  const VirtualRegister again(settings);
  EXPECT_EQ(again.DayTotal(DayFigure::kReceipts), 12000);
  EXPECT_THAT(again.paper_text(), HasSubstr("DOCUMENTO N. 0001-0001"));
  EXPECT_THAT(again.start_notice(), IsEmpty());
}

TEST_F(SharedRegister, TellsOfAReceiptThatWasCutOff) {
  const RegisterSettings settings =
      RegisterSettings().SetFile(Path("shop.register")).SetClock(&HalfPastTen);
  {
    VirtualRegister device(settings);
    Start(device);
    EXPECT_EQ(Run("VEND REP=1, PRE=1.20"), 0);
    TradClose();
  }
  const VirtualRegister again(settings);
  EXPECT_THAT(again.start_notice(), HasSubstr("It was not paid"));
  EXPECT_EQ(again.DayTotal(DayFigure::kDocuments), 0);
}

TEST_F(SharedRegister, AFileThatIsNoRegisterIsRefusedByName) {
  const std::string file = Path("letter.txt");
  std::ofstream(file) << "Dear Sir or Madam, this is no register.\n";
  try {
    const VirtualRegister device(RegisterSettings().SetFile(file));
    FAIL() << "it was opened";
  } catch (const RegisterError& error) {
    EXPECT_THAT(error.what(), StartsWith(file + ": "));
  }
}

TEST_F(SharedRegister, SettingsAreCopiedAndRefuseNumbersThatAreNone) {
  RegisterSettings one;
  one.SetHeader({"ONE"});
  RegisterSettings other = one;
  other.SetHeader({"OTHER"});
  RegisterSettings third;
  third = other;
  EXPECT_THROW(third.SetDepartment(0, "X", 1), std::invalid_argument);
  EXPECT_THROW(third.SetDepartment(41, "X", 1), std::invalid_argument);
  EXPECT_THROW(third.SetVatRate(0, 1), std::invalid_argument);
  EXPECT_THROW(third.SetVatRate(100, 1), std::invalid_argument);
  for (const auto& [settings, head] : {std::pair(&one, "ONE"), std::pair(&third, "OTHER")}) {
    VirtualRegister device(*settings);
    Start(device);
    Run("VEND REP=1, PRE=1.20");
    EXPECT_THAT(device.paper_text(), HasSubstr(std::string(" ") + head + "\n"));
    TradClose();
  }
}

TEST_F(SharedRegister, AFaultStrikesAndCanBeTakenAway) {
  VirtualRegister device;
  Start(device);
  device.AddFault("code", "PrintRecItemEx", "every", 1, RTF_EFPTR_BAD_VAT);
  EXPECT_EQ(Run("VEND REP=1, PRE=1.20"), 1024 + RTF_EFPTR_BAD_VAT);
  device.ClearFaults();
  EXPECT_EQ(Run("VEND REP=1, PRE=1.20"), 0);
}

TEST_F(SharedRegister, AFaultThatCannotBeIsRefused) {
  VirtualRegister device;
  EXPECT_THROW(device.AddFault("earthquake"), RegisterError);
  EXPECT_THROW(device.AddFault("paper-end", "PrintMoney"), RegisterError);
  EXPECT_THROW(device.AddFault("paper-end", "", "someday"), RegisterError);
  EXPECT_THROW(device.AddFault("paper-end", "", "times", 0), RegisterError);
  Start(device);
  EXPECT_EQ(Run("VEND REP=1, PRE=1.20"), 0);
}

TEST_F(SharedRegister, ItsPaperHasPictures) {
  VirtualRegister device;
  Start(device);
  Run("VEND REP=1, PRE=1.20");
  EXPECT_THAT(device.RenderPng(), StartsWith("\x89PNG\r\n"));
  EXPECT_THAT(device.RenderPdf(), StartsWith("%PDF-"));
}

TEST_F(SharedRegister, ShowsItsDisplay) {
  VirtualRegister device;
  EXPECT_EQ(device.client()->DisplayTextAtEx(0, 0, "CIAO", 0, 2, 0, true), RTF_SUCCESS);
  EXPECT_THAT(device.display_text(2, 0), StartsWith("CIAO"));
  EXPECT_THAT(device.display_text(7, 0), IsEmpty());
}

}  // namespace
