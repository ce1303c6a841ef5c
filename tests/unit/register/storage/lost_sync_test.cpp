// Sales behind a sync that failed: what was answered 0 outlasts a cut of the power, also where the
// disk forgets what the failed sync was for.
#include <gtest/gtest.h>

#include <string>

#include "managermachine/pflitemtype.h"
#include "support/temporary_folder.h"
#include "unit/register/register_fixture.h"
#include "unit/register/storage/forgetful_disk.h"

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
    const std::string copy = (folder / "cut.register").string();
    RegisterSettings settings = TestSettings();
    settings.file = file;
    long answered = 0;
    {
      ForgetfulDisk disk;
      VirtualRegister device(settings);
      answered += SellOne(device) ? 1 : 0;
      disk.FailSync(at);
      for (int sale = 0; sale < 6; ++sale) answered += SellOne(device) ? 1 : 0;
      EXPECT_EQ(answered, 7);
      failures += disk.failed() ? 1 : 0;
      EXPECT_EQ(device.store().document_count(), answered);
      disk.Cut(file, copy);
      disk.Cut(file + "-wal", copy + "-wal");
    }
    settings.file = copy;
    EXPECT_EQ(VirtualRegister(settings).store().document_count(), answered);
    std::filesystem::remove_all(folder);
  }
  EXPECT_GE(failures, 6);
}

}  // namespace
}  // namespace lorimat
