// A disk that fails in the middle of an operation, at every place where it can: the operation
// answers a failure and has done nothing, here and in the file, and works when the disk does.
#include <functional>

#include "pal/peripherals/keyboard/functioncode.h"
#include "store_fixture.h"

namespace lorimat {
namespace {

struct Step {
  const char* name;
  std::function<int(VirtualRegister&)> call;
  bool restart = false;  // before it, so that the file stays small
};

class StoreFailuresTest : public StoreTest {
 protected:
  StoreFailuresTest() { Write("logo.png", "x"); }

  // A day's life: each kind of operation that stores something, in an order that allows it.
  std::vector<Step> Scenario() const {
    using R = VirtualRegister;
    const std::string logo = Path("logo.png");
    const auto sell = [](R& r) {
      return r.PrintRecItemEx(0, "PANE", 10000, 0, -1, 0, "", 1, true, "");
    };
    return {
        {"BeginFiscalReceipt", [](R& r) { return r.BeginFiscalReceipt(true); }},
        {"sale", sell},
        {"second sale", sell},
        {"void of a line",
         [](R& r) { return r.PrintRecItemEx(1, "PANE", 10000, 0, -1, 0, "", 1, true, ""); }},
        {"discount", [](R& r) { return r.PrintRecItemAdjustmentEx(1, "", 100, 1, 1); }},
        {"subtotal", [](R& r) { return r.PrintRecSubtotalEx(0, false); }},
        {"tax code", [](R& r) { return r.PrintRecTaxID("01234567897"); }},
        {"part", [](R& r) { return r.PrintRecTotalEx(1000, "2", false); }},
        {"rest", [](R& r) { return r.PrintRecTotalEx(0, "0", true); }},
        {"hold", [](R& r) { return r.SetDataInternal(600, "1"); }},
        {"invoice", [](R& r) { return r.BeginDocInvoice("ROSSI", "", "", "", ""); }},
        {"sale on it", sell},
        {"payment", [](R& r) { return r.PrintRecTotalEx(0, "5", true); }},
        {"trailer", [](R& r) { return r.BeginAdditionalTrailer(); }},
        {"barcode", [](R& r) { return r.PrintBarcode("08", "1", "3", "0", "ABC", 0); }},
        {"end", [](R& r) { return r.EndFiscalReceipt(true); }},
        {"keyed sale",
         [](R& r) { return r.KeyCodeInput("\x05\x0b\x0b", "", "", FunctionCode::kDepartment01); },
         true},
        {"keyed payment", [](R& r) { return r.KeyCodeInput("", "", "", FunctionCode::kTotal); }},
        {"whole void", [](R& r) { return r.BeginDocTelematicCancel(1, 1, "", true, ""); }},
        {"credit note",
         [](R& r) { return r.BeginDocTelematicRefund(1, 1, "15012024", "99LRM0000002"); }, true},
        {"reset", [](R& r) { return r.ResetPrn(); }},
        {"non-fiscal", [](R& r) { return r.BeginNonFiscal(); }, true},
        {"text", [](R& r) { return r.PrintNormal(RTF_FPTR_S_RECEIPT, "riga"); }},
        {"end of non-fiscal", [](R& r) { return r.EndNonFiscal(); }},
        {"drawer", [](R& r) { return r.OpenDrawer(); }, true},
        {"period", [](R& r) { return r.PeriodicReportMessageEx(1, 0, "txt", "", 1, true); }},
        {"reading", [](R& r) { return r.PrintXReport(); }},
        {"closing", [](R& r) { return r.PrintZReportEx(false); }, true},
        {"sending", [](R& r) { return r.SendTelematicSummary(); }},
        {"option", [](R& r) { return r.SetDataInternal(317, "1"); }, true},
        {"courtesy", [](R& r) { return r.SetDataInternal(152, "GRAZIE"); }},
        {"series", [](R& r) { return r.SetStringProperty(RTF_PIDXFptr_InvoiceSeries, "A"); }},
        {"header", [](R& r) { return r.SetHeaderLine(1, "NUOVA", false); }, true},
        {"rate", [](R& r) { return r.SetVatValue(2, "110000"); }},
        {"rates", [](R& r) { return r.SetVatTable(); }},
        {"open transfer", [](R& r) { return r.UploadTable(1, 0, ""); }},
        {"article", [](R& r) { return r.UploadTable(1, 1, "'77','ACETO',1,2.00"); }},
        {"changed article", [](R& r) { return r.UploadTable(1, 1, "'77','OLIO',1,3.00"); }},
        {"no articles", [](R& r) { return r.EraseTable(1); }},
        {"logo", [logo](R& r) { return r.ProgramGRC(3, logo.c_str(), true); }},
        {"no logos", [](R& r) { return r.EraseLogoArchive(); }},
        {"department",
         [](R& r) {
           char name[128] = "FRUTTA";
           int64_t price = 0, limit = 0;
           int32_t quantity = 0, vat = 1;
           uint8_t group = 0;
           bool no = false, yes = true;
           return r.ConfigDepartment(true, 2, name, &price, &limit, &quantity, &vat, &group, &no,
                                     &yes, &no);
         }},
        {"group",
         [](R& r) {
           char name[129] = "CAPI", password[65] = "";
           int flags = 1, options = 2;
           return r.ConfigGroup(true, 1, name, password, &flags, &options);
         }},
        {"subtender",
         [](R& r) {
           uint8_t kind = 1, flags = 0, digits = 0;
           uint32_t preset = 0;
           char name[64] = "SATISPAY";
           return r.ConfigSubtender(true, 2, &kind, name, &flags, &preset, &digits);
         }},
        {"key",
         [](R& r) {
           uint8_t code = FunctionCode::kMacro01;
           int8_t keyboard = 0;
           char macro[40] = "\x01";
           uint16_t size = 1;
           return r.ConfigKeyboard(true, 41, &code, &keyboard, macro, &size);
         }},
        {"closing of an empty day", [](R& r) { return r.PrintZReport(); }},
    };
  }

  // What the file holds as it would be found now.
  std::string Stored() {
    CopyAsCut("shop.register", "copy.register");
    return Dump("copy.register");
  }
  static std::string All(VirtualRegister& device) { return Image(device) + OpenImage(device); }

  void Run(FailingDisk::Fault fault, bool lasting);
};

void StoreFailuresTest::Run(FailingDisk::Fault fault, bool lasting) {
  std::unique_ptr<VirtualRegister> held = std::make_unique<VirtualRegister>(FileSettings());
  int failures = 0;
  for (const Step& step : Scenario()) {
    SCOPED_TRACE(step.name);
    if (step.restart) {
      held.reset();
      held = std::make_unique<VirtualRegister>(FileSettings());
    }
    VirtualRegister& device = *held;
    const std::string memory = All(device);
    const std::string stored = Stored();
    std::vector<std::string> doubtful;
    for (int n = 1;; ++n) {
      ASSERT_LT(n, 100);
      disk.FailAt(fault, n, lasting);
      const int code = step.call(device);
      disk.Heal();
      if (code == RTF_SUCCESS) {
        // It stands, though the disk may have failed behind its storing.
        const std::string after = Stored();
        for (const std::string& one : doubtful) {
          EXPECT_TRUE(one == stored || one == after) << "half of it is in the file";
        }
        break;
      }
      ++failures;
      ASSERT_TRUE(disk.failed());
      ASSERT_EQ(code, RTF_E_FAILURE) << "at place " << n;
      EXPECT_EQ(device.last_failure().find(Path("shop.register") + ": "), 0u)
          << device.last_failure();
      ASSERT_EQ(All(device), memory) << "in memory, at place " << n;
      const std::string now = Stored();
      if (fault == FailingDisk::Fault::kSync && lasting) {
        // What was written and never acknowledged may be there, whole: nobody can tell.
        doubtful.push_back(now);
      } else {
        ASSERT_EQ(now, stored) << "in the file, at place " << n;
      }
    }
  }
  // A document's lines are stored without waiting: only what counts can fail so.
  EXPECT_GT(failures, fault == FailingDisk::Fault::kSync ? 20 : 40);
  // Nothing is left of the failures: the same day on a good disk.
  const std::string image = Image(*held);
  VirtualRegister good([this] {
    RegisterSettings settings = FileSettings("good.register");
    return settings;
  }());
  for (const Step& step : Scenario()) ASSERT_EQ(step.call(good), RTF_SUCCESS) << step.name;
  EXPECT_EQ(image, Image(good));
}

TEST_F(StoreFailuresTest, AFullDiskForAMoment) { Run(FailingDisk::Fault::kFull, false); }
TEST_F(StoreFailuresTest, AFullDiskUntilThereIsRoom) { Run(FailingDisk::Fault::kFull, true); }
TEST_F(StoreFailuresTest, AWriteThatFails) { Run(FailingDisk::Fault::kWrite, true); }
TEST_F(StoreFailuresTest, AWriteThatGetsHalfThrough) { Run(FailingDisk::Fault::kHalf, true); }
TEST_F(StoreFailuresTest, AStorageThatIsNotAcknowledgedOnce) {
  Run(FailingDisk::Fault::kSync, false);
}
TEST_F(StoreFailuresTest, AStorageThatIsNotAcknowledged) { Run(FailingDisk::Fault::kSync, true); }

TEST_F(StoreFailuresTest, TheCauseNamesTheFileAndWhatTheDiskSays) {
  VirtualRegister device(FileSettings());
  EXPECT_EQ(device.last_failure(), "");
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_E_FAILURE);
  EXPECT_EQ(device.last_failure(), Path("shop.register") + ": the disk is full");
  char text[128] = "unset";
  EXPECT_EQ(device.GetStringProperty(RTF_PIDXFptr_ErrorString, text), RTF_SUCCESS);
  EXPECT_EQ(text, device.last_failure());
  disk.FailAt(FailingDisk::Fault::kWrite, 1, true);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_E_FAILURE);
  EXPECT_EQ(
      device.last_failure().find(Path("shop.register") + ": cannot be read or written to its end"),
      0u)
      << device.last_failure();
  disk.Heal();
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
}

TEST_F(StoreFailuresTest, AReceiptGoesOnWhenThereIsRoomAgain) {
  VirtualRegister device(FileSettings());
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  for (int again = 0; again < 3; ++again) {
    EXPECT_EQ(device.PrintRecItemEx(0, "", 5000, 0, -1, 0, "", 1, true, ""), RTF_E_FAILURE);
    EXPECT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_E_FAILURE);
  }
  // Reading goes on.
  char text[50] = "";
  int number = 0;
  EXPECT_EQ(device.GetData(RTF_FPTR_GD_CURRENT_TOTAL, &number, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "10000");
  disk.Heal();
  ASSERT_EQ(device.PrintRecItemEx(0, "", 5000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  ASSERT_EQ(device.store().documents().size(), 1u);
  EXPECT_EQ(device.store().documents()[0].total, 15000);
  EXPECT_EQ(device.store().documents()[0].number, 1);
}

TEST_F(StoreFailuresTest, ADayIsClosedThoughItsSendingCannotBeNoted) {
  RegisterSettings settings = FileSettings();
  settings.outbox = folder_.string();
  VirtualRegister device(settings);
  // The closing is stored by the first sync; the note of the sending asks for the second.
  disk.FailAt(FailingDisk::Fault::kSync, 2, false);
  EXPECT_EQ(device.PrintZReportEx(true), RTF_SUCCESS);
  EXPECT_TRUE(disk.failed());
  disk.Heal();
  EXPECT_EQ(device.store().last_closure(), 1);
  EXPECT_EQ(device.store().pending_closures(), 1);
  EXPECT_TRUE(std::filesystem::exists(Path("corrispettivi_0001.xml")));
  EXPECT_EQ(device.SendTelematicSummary(), RTF_SUCCESS);
  EXPECT_EQ(device.store().pending_closures(), 0);
}

TEST_F(StoreFailuresTest, KeyedInputIsKeptByAKeyThatCouldNotBeStored) {
  VirtualRegister device(FileSettings());
  ASSERT_EQ(device.KeyCodeInput("\x02", "", "", FunctionCode::kMultiplier), RTF_SUCCESS);
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  EXPECT_EQ(device.KeyCodeInput("\x05", "", "", FunctionCode::kDepartment01), RTF_E_FAILURE);
  disk.Heal();
  // The two pieces that were keyed before still count.
  EXPECT_EQ(device.KeyCodeInput("\x05", "", "", FunctionCode::kDepartment01), RTF_SUCCESS);
  EXPECT_EQ(device.receipt().total(), 100000);
}

}  // namespace
}  // namespace lorimat
