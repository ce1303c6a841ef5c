// Threads at registers: one register has one operation at a time, several have theirs at once, and
// whoever looks at a file sees whole receipts while another thread sells.
#include <gtest/gtest.h>
#include <stdlib.h>

#include <array>
#include <atomic>
#include <filesystem>
#include <string>
#include <thread>
#include <vector>

#include "register/client/virtual_register.h"
#include "register/inspect/register_file.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

constexpr int kReceipts = 60;
constexpr Amount kPrice = 10000;  // of a receipt

int SellOne(VirtualRegister& device) {
  if (const int code = device.BeginFiscalReceipt(true); code != RTF_SUCCESS) return code;
  if (const int code = device.PrintRecItemEx(0, "", kPrice, 0, -1, 0, "", 1, true, "");
      code != RTF_SUCCESS) {
    return code;
  }
  return device.PrintRecTotalEx(0, "0", true);
}

class RegisterThreads : public testing::Test {
 protected:
  void SetUp() override {
    char name[] = "/tmp/lorimat-threads.XXXXXX";
    ASSERT_NE(mkdtemp(name), nullptr);
    folder_ = name;
  }
  void TearDown() override { std::filesystem::remove_all(folder_); }

  RegisterSettings Settings(const std::string& name) const {
    RegisterSettings settings;
    settings.file = folder_ + "/" + name;
    return settings;
  }

  std::string folder_;
};

TEST_F(RegisterThreads, OneOperationAtATimeIsCarriedOutAndTheOthersAreBusy) {
  VirtualRegister device;
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  std::atomic<int> sold = 0;
  std::atomic<int> busy = 0;
  std::atomic<int> otherwise = 0;
  std::vector<std::thread> threads;
  for (int thread = 0; thread < 4; ++thread) {
    threads.emplace_back([&] {
      for (int n = 0; n < 100; ++n) {
        const int code = device.PrintRecItemEx(0, "", kPrice, 0, -1, 0, "", 1, true, "");
        ++(code == RTF_SUCCESS ? sold : code == RTF_E_BUSY ? busy : otherwise);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_EQ(otherwise, 0);
  EXPECT_EQ(sold + busy, 400);
  EXPECT_EQ(device.receipt().lines().size(), static_cast<size_t>(sold));
  EXPECT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
}

TEST_F(RegisterThreads, SeveralRegistersWorkAtOnce) {
  std::vector<std::thread> threads;
  std::array<int, 3> stored = {};
  for (size_t n = 0; n < stored.size(); ++n) {
    threads.emplace_back([&, n] {
      for (int start = 0; start < 2; ++start) {
        VirtualRegister device(Settings(std::to_string(n) + ".register"));
        for (int receipt = 0; receipt < kReceipts; ++receipt) {
          stored[n] += SellOne(device) == RTF_SUCCESS;
        }
        EXPECT_EQ(device.PrintZReport(), RTF_SUCCESS);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  for (size_t n = 0; n < stored.size(); ++n) {
    EXPECT_EQ(stored[n], 2 * kReceipts);
    EXPECT_EQ(RegisterFile(Settings(std::to_string(n) + ".register").file).Status().documents,
              2u * kReceipts);
  }
}

TEST_F(RegisterThreads, ALookFromAnotherThreadSeesWholeReceipts) {
  VirtualRegister device(Settings("shop.register"));
  ASSERT_EQ(SellOne(device), RTF_SUCCESS);
  std::atomic<bool> sells = true;
  std::thread follower([&] {
    RegisterFile file(Settings("shop.register").file);
    for (bool last = false; !last;) {
      last = !sells;
      ASSERT_NE(file.Look(), RegisterFile::News::kGone);
      const RegisterStatus status = file.Status();
      // A receipt that is not closed is in neither.
      EXPECT_EQ(status.day_total, static_cast<Amount>(status.documents) * kPrice);
    }
    EXPECT_EQ(file.Status().documents, 1u + kReceipts);
  });
  int stored = 0;
  for (int receipt = 0; receipt < kReceipts; ++receipt) stored += SellOne(device) == RTF_SUCCESS;
  sells = false;
  follower.join();
  EXPECT_EQ(stored, kReceipts);
}

}  // namespace
}  // namespace lorimat
