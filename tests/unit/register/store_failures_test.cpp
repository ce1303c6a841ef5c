// A disk that fails in the middle of an operation, at every place where it can: the operation
// answers a failure and has done nothing, here and in the file, and works when the disk does.
#include "store_day.h"

namespace lorimat {
namespace {

class StoreFailuresTest : public StoreDayTest {
 protected:
  void Run(FailingDisk::Fault fault, bool lasting);
};

void StoreFailuresTest::Run(FailingDisk::Fault fault, bool lasting) {
  std::unique_ptr<VirtualRegister> held = std::make_unique<VirtualRegister>(FileSettings());
  int failures = 0;
  for (const DayStep& step : Day()) {
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
  for (const DayStep& step : Day()) ASSERT_EQ(step.call(good), RTF_SUCCESS) << step.name;
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
