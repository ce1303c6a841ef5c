// A disk that fails in the middle of an operation, at every place where it can: the operation
// answers a failure and has done nothing, here and in the file, and works when the disk does.
#include "unit/register/store_day.h"

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
    int told = 0;
    for (int n = 1;; ++n) {
      ASSERT_LT(n, 100);
      disk.FailAt(fault, n, lasting);
      const int code = step.call(device);
      disk.Heal();
      if (code == RTF_SUCCESS) break;  // the disk may have failed behind its storing
      ++failures;
      // Once behind a sync that failed with rows of a transfer in the log.
      const bool tells = !disk.failed() && fault == FailingDisk::Fault::kSync && n > told + 1 &&
                         device.failure().cause == FailureCause::kNotOnDisk;
      if (tells) told = n;
      ASSERT_TRUE(disk.failed() || tells);
      ASSERT_EQ(code, RTF_E_FAILURE) << "at place " << n;
      EXPECT_EQ(device.last_failure().find(Path("shop.register") + ": "), 0u)
          << device.last_failure();
      ASSERT_EQ(All(device), memory) << "in memory, at place " << n;
      ASSERT_EQ(Stored(), stored) << "in the file, at place " << n;
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

// A log that cannot be put in order: the sync fails, and so does all that comes behind it.
class DoubtTest : public StoredRegisterTest {
 protected:
  // Pays a receipt of 1,00 and leaves the disk gone.
  void PayInVain() {
    ASSERT_EQ(Begin(), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
    disk.FailAt(FailingDisk::Fault::kGone, 1, true);
    ASSERT_EQ(Pay(), RTF_E_FAILURE);
    ASSERT_TRUE(disk.failed());
  }
};

TEST_F(DoubtTest, ThatADocumentMayBeStoredIsSaid) {
  PayInVain();
  const std::string not_known = "; whether it is stored is not known until the next start";
  EXPECT_TRUE(device->last_failure().ends_with(not_known)) << device->last_failure();
  // It counts as not stored, and what could be is not begun.
  EXPECT_TRUE(device->store().documents().empty());
  EXPECT_EQ(device->receipt().total(), 10000);
  for (int again = 0; again < 2; ++again) {
    EXPECT_EQ(Pay(), RTF_E_FAILURE);
    EXPECT_EQ(device->last_failure(), Path("shop.register") +
                                          ": its log cannot be put in order after a failure, and "
                                          "nothing more is stored until it is");
    EXPECT_EQ(device->ResetPrn(), RTF_E_FAILURE);
  }
  char text[50] = "";
  int number = 0;
  EXPECT_EQ(device->GetData(RTF_FPTR_GD_CURRENT_TOTAL, &number, text), RTF_SUCCESS);
  EXPECT_STREQ(text, "10000");
}

TEST_F(DoubtTest, TheRegisterGoesOnWhenItsLogIsInOrderAgain) {
  Receipt(1, 5000);
  PayInVain();
  disk.Heal();
  // What had got into the log is out of it with the first operation that stores something.
  ASSERT_EQ(Sell(1, 20000), RTF_SUCCESS);
  CopyAsCut("shop.register", "cut");
  EXPECT_EQ(Sql("cut", "SELECT count(*) FROM document"), "1\n");
  ASSERT_EQ(Pay(), RTF_SUCCESS);
  ASSERT_EQ(device->store().documents().size(), 2u);
  EXPECT_EQ(device->store().documents()[1].total, 30000);
  Restart();
  EXPECT_EQ(device->store().documents().size(), 2u);
}

TEST_F(DoubtTest, TheNextStartTellsWhatIsStored) {
  Receipt(1, 5000);
  PayInVain();
  CopyAsCut("shop.register", "cut");
  disk.Heal();
  const VirtualRegister cut(FileSettings("cut"));
  // The payment had got through, and its answer said otherwise.
  EXPECT_EQ(cut.store().documents().size(), 2u);
  EXPECT_FALSE(cut.cut_off());
  EXPECT_EQ(cut.start_notice(),
            "The register was switched off behind the last document that it stored (receipt "
            "0001-0002, 15/01/2024 10:30, total 1,00). Its answer may not have gone out.");
}

TEST_F(DoubtTest, AFailedPaymentIsCutOffALogThatBeganAnew) {
  Receipt(1, 5000);
  // The log is taken over into the file, and the next unit begins it anew.
  Restart();
  PayInVain();
  disk.Heal();
  disk.FailAt(FailingDisk::Fault::kSync, 1, false);
  EXPECT_EQ(Pay(), RTF_E_FAILURE);
  disk.FailAt(FailingDisk::Fault::kSync, 2, false);
  EXPECT_EQ(Pay(), RTF_E_FAILURE);
  disk.Heal();
  CopyAsCut("shop.register", "cut");
  EXPECT_EQ(Sql("cut", "SELECT count(*) FROM document"), "1\n");
  ASSERT_EQ(Pay(), RTF_SUCCESS);
  EXPECT_EQ(device->store().documents().size(), 2u);
}

TEST_F(DoubtTest, AFailedPaymentIsOverwrittenWhereTheLogCannotBeCut) {
  Receipt(1, 5000);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS);
  disk.FailAt(FailingDisk::Fault::kUncut, 1, false);
  EXPECT_EQ(Pay(), RTF_E_FAILURE);
  EXPECT_FALSE(device->last_failure().ends_with("next start")) << device->last_failure();
  CopyAsCut("shop.register", "cut");
  EXPECT_EQ(Sql("cut", "SELECT count(*) FROM document"), "1\n");
  // Nor can it begin anew, and what would be stored in it may be lost with what the disk lacks.
  EXPECT_EQ(Pay(), RTF_E_FAILURE);
  EXPECT_EQ(device->failure().cause, FailureCause::kLogUntidy);
  disk.Heal();
  ASSERT_EQ(Pay(), RTF_SUCCESS);
  CopyAsCut("shop.register", "cut");
  EXPECT_EQ(Sql("cut", "SELECT count(*) FROM document"), "2\n");
}

// How far the log reaches is learned at a commit, and looked up behind a failure where it could not
// be read then: what was refused is out of the log for certain, and what stands stays.
TEST_F(DoubtTest, ALogThatCouldNotBeReadIsReadBehindTheNextFailure) {
  int begun_all_the_same = 0;
  bool failed = true;
  for (int n = 1; failed; ++n) {
    Restart();
    disk.FailAt(FailingDisk::Fault::kRead, n, false);
    const int begun = Begin();
    failed = disk.failed();
    disk.Heal();
    if (begun != RTF_SUCCESS) {
      ASSERT_EQ(Begin(), RTF_SUCCESS) << n;
    }
    if (begun == RTF_SUCCESS && failed) ++begun_all_the_same;
    disk.FailAt(FailingDisk::Fault::kFull, 1, false);
    EXPECT_EQ(Sell(1, 10000), RTF_E_FAILURE) << n;
    EXPECT_EQ(device->last_failure(), Path("shop.register") + ": the disk is full") << n;
    disk.Heal();
    ASSERT_EQ(Sell(1, 10000), RTF_SUCCESS) << n << device->last_failure();
    ASSERT_EQ(Pay(), RTF_SUCCESS) << n;
    CopyAsCut("shop.register", "cut");
    EXPECT_EQ(Sql("cut", "SELECT count(*) FROM document"), fmt::format("{}\n", n));
  }
  EXPECT_GT(begun_all_the_same, 0);
}

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

// What an operation that could not be stored takes back is its own alone.
TEST_F(StoreFailuresTest, ADiscountThatWasTakenBackStaysSoBehindAFailure) {
  VirtualRegister device(FileSettings());
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  const int discount = RTF_FPTR_AT_AMOUNT_DISCOUNT;
  ASSERT_EQ(device.PrintRecItemAdjustmentEx(discount, "", 3000, -1, -2), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemAdjustmentEx2(discount, "", 3000, -1, -2, true), RTF_SUCCESS);
  ASSERT_EQ(device.receipt().total(), 10000);
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  ASSERT_EQ(device.PrintRecItemEx(0, "", 5000, 0, -1, 0, "", 1, true, ""), RTF_E_FAILURE);
  ASSERT_TRUE(disk.failed());
  disk.Heal();
  EXPECT_EQ(device.PrintRecItemAdjustmentEx2(discount, "", 3000, -1, -2, true),
            RTF_EFPTR_BAD_ITEM_AMOUNT);
  ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  ASSERT_EQ(device.store().documents().size(), 1u);
  EXPECT_EQ(device.store().documents()[0].total, 10000);
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
