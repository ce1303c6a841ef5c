// Sales behind a sync that failed: what was answered 0 outlasts a cut of the power, where the disk
// forgets what the failed sync was for. Whoever reads the register meanwhile holds them back, and
// no longer than that.
#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "managermachine/pflitemtype.h"
#include "register/storage/database.h"
#include "register/storage/schema.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

// Whether a document was answered 0, at the second try of each call at the latest.
bool SellOne(VirtualRegister& device) {
  const auto twice = [](auto call) { return call() == RTF_SUCCESS || call() == RTF_SUCCESS; };
  return twice([&] { return device.BeginFiscalReceipt(true); }) && twice([&] {
           return device.PrintRecItemEx(PflItemType::kPrintRecItem, "PANE", 10000, 0, -1, 0, "", 1,
                                        true, "");
         }) &&
         twice([&] { return device.PrintRecTotalEx(10000, "0", false); });
}

TEST(LostSync, WhatIsAnsweredBehindItOutlastsTheCut) {
  int failures = 0;
  for (int at = 1; at <= 12; ++at) {
    SCOPED_TRACE(at);
    const std::filesystem::path folder = MakeTemporaryFolder();
    const std::string file = (folder / "shop.register").string();
    RegisterSettings settings = TestSettings();
    settings.file = file;
    long answered = 0;
    {
      FailingDisk disk;
      FailingDisk::Remember();
      VirtualRegister device(settings);
      answered += SellOne(device) ? 1 : 0;
      disk.FailAt(FailingDisk::Fault::kSync, at, false);
      for (int sale = 0; sale < 6; ++sale) answered += SellOne(device) ? 1 : 0;
      EXPECT_EQ(answered, 7);
      failures += disk.failed() ? 1 : 0;
      EXPECT_EQ(device.store().document_count(), answered);
      disk.FailAt(FailingDisk::Fault::kPower, 1, true);
      EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_E_FAILURE);
    }
    EXPECT_EQ(VirtualRegister(settings).store().document_count(), answered);
    std::filesystem::remove_all(folder);
  }
  EXPECT_GE(failures, 6);
}

class LostSyncReader : public StoredRegisterTest {
 protected:
  LostSyncReader() : look_(Path("shop.register"), Database::Open::kRead, kRegisterKind) {}

  int64_t DocumentsOfReader() {
    Statement row = look_.Prepare("SELECT count(*) FROM document");
    return row.Step() ? row.Integer(0) : -1;
  }
  void FailOneSync() {
    disk.FailAt(FailingDisk::Fault::kSync, 1, false);
    EXPECT_EQ(Pay(), RTF_E_FAILURE);
    EXPECT_TRUE(disk.failed());
    disk.Heal();
  }

  Database look_;
};

TEST_F(LostSyncReader, HoldsBackWhatIsStoredNextAndNoLongerThanItReads) {
  Receipt(1, 10000);
  std::optional<Moment> moment(look_);
  ASSERT_EQ(DocumentsOfReader(), 1);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20000), RTF_SUCCESS);
  FailOneSync();
  for (int again = 0; again < 3; ++again) {
    EXPECT_EQ(Pay(), RTF_E_FAILURE);
    EXPECT_EQ(device->failure().cause, FailureCause::kLogRead);
    EXPECT_EQ(
        device->last_failure(),
        Path("shop.register") +
            ": the disk failed, and the log has to be taken over into the file: nothing more is "
            "stored until those who read the register meanwhile have ended");
    EXPECT_EQ(device->store().document_count(), 1);
    EXPECT_EQ(DocumentsOfReader(), 1);
  }
  moment.reset();
  EXPECT_EQ(Pay(), RTF_SUCCESS);
  EXPECT_EQ(device->store().document_count(), 2);
  EXPECT_EQ(DocumentsOfReader(), 2);
}

// One that begins behind the failure, while another one ends, is a reader as any.
TEST_F(LostSyncReader, OfTheLastStateHoldsBackTheSame) {
  Receipt(1, 10000);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20000), RTF_SUCCESS);
  FailOneSync();
  {
    const Moment moment(look_);
    ASSERT_EQ(DocumentsOfReader(), 1);
    EXPECT_EQ(Pay(), RTF_E_FAILURE);
    EXPECT_EQ(device->failure().cause, FailureCause::kLogRead);
  }
  EXPECT_EQ(Pay(), RTF_SUCCESS);
}

TEST_F(LostSyncReader, KeepsNobodyFromHearingOfATransferThatIsNotOnTheDisk) {
  Receipt(1, 10000);
  ASSERT_EQ(device->UploadTable(1, 0, ""), RTF_SUCCESS);
  ASSERT_EQ(device->UploadTable(1, 1, "'T1','RIGA',4,1.50"), RTF_SUCCESS);
  {
    const Moment moment(look_);
    ASSERT_EQ(DocumentsOfReader(), 1);
    disk.FailAt(FailingDisk::Fault::kSync, 1, false);
    EXPECT_EQ(device->UploadTable(1, 2, ""), RTF_E_FAILURE);
    disk.Heal();
    EXPECT_EQ(Begin(), RTF_E_FAILURE);
    EXPECT_EQ(device->failure().cause, FailureCause::kLogRead);
  }
  EXPECT_EQ(Begin(), RTF_E_FAILURE);
  EXPECT_EQ(device->failure().cause, FailureCause::kNotOnDisk);
  EXPECT_EQ(Begin(), RTF_SUCCESS);
}

}  // namespace
}  // namespace lorimat
