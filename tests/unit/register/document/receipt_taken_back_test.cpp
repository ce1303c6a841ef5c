// What is entered on a receipt and could not be stored: it is as if it had not been entered,
// whatever was before it, and when it is entered again all comes to what it would have come to.
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

struct ReceiptEntry {
  const char* name;
  std::function<int(VirtualRegister&)> enter;
};

int Enter(VirtualRegister& r, int type, int64_t amount, int department) {
  return r.PrintRecItemEx(type, "", amount, 0, -1, 0, "", department, true, "");
}
int Pieces(VirtualRegister& r, int type, int quantity, int64_t price) {
  return r.PrintRecItemEx(type, "", 0, quantity, -1, price, "", 1, true, "");
}
int Adjust(VirtualRegister& r, int type, int64_t value, int department, bool is_void) {
  return r.PrintRecItemAdjustmentEx2(type, "", value, -1, department, is_void);
}

// Some are refused behind some others.
const std::vector<ReceiptEntry> kEntries = {
    {"sale", [](auto& r) { return Enter(r, PflItemType::kPrintRecItem, 40000, 1); }},
    {"pieces", [](auto& r) { return Pieces(r, PflItemType::kPrintRecItem, 3000, 20000); }},
    {"goods back", [](auto& r) { return Enter(r, PflItemType::kPrintRecItemRefund, 5000, 1); }},
    {"correction", [](auto& r) { return Enter(r, PflItemType::kPrintRecItemVoid, 100000, 1); }},
    {"correction of pieces",
     [](auto& r) { return Pieces(r, PflItemType::kPrintRecItemVoid, 1000, 20000); }},
    {"discount", [](auto& r) { return Adjust(r, RTF_FPTR_AT_AMOUNT_DISCOUNT, 3000, -2, false); }},
    {"no discount", [](auto& r) { return Adjust(r, RTF_FPTR_AT_AMOUNT_DISCOUNT, 3000, -2, true); }},
    {"surcharge",
     [](auto& r) { return Adjust(r, RTF_FPTR_AT_PERCENTAGE_SURCHARGE, 100000, -2, false); }},
    {"discount of a department",
     [](auto& r) { return Adjust(r, RTF_FPTR_AT_AMOUNT_DISCOUNT, 2000, 1, false); }},
    {"no discount of a department",
     [](auto& r) { return Adjust(r, RTF_FPTR_AT_AMOUNT_DISCOUNT, 2000, 1, true); }},
    {"subtotal", [](auto& r) { return r.PrintRecSubtotalEx(0, false); }},
    {"discount of all",
     [](auto& r) { return r.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 1000); }},
    {"payment in part", [](auto& r) { return r.PrintRecTotalEx(1000, "2", false); }},
};

// Two lines, the first of them with a discount, and one on its department.
int Begin(VirtualRegister& r) {
  for (const int code :
       {r.BeginFiscalReceipt(false), Enter(r, PflItemType::kPrintRecItem, 100000, 1),
        Adjust(r, RTF_FPTR_AT_AMOUNT_DISCOUNT, 3000, -2, false),
        Adjust(r, RTF_FPTR_AT_AMOUNT_DISCOUNT, 2000, 1, false),
        Pieces(r, PflItemType::kPrintRecItem, 2000, 20000)}) {
    if (code != RTF_SUCCESS) return code;
  }
  return RTF_SUCCESS;
}

using ReceiptTakenBack = StoreTest;

TEST_F(ReceiptTakenBack, EachEntryBehindAnyOther) {
  VirtualRegister device(FileSettings());
  VirtualRegister undisturbed(TestSettings());
  int entered = 0;
  for (const ReceiptEntry& first : kEntries) {
    for (const ReceiptEntry& second : kEntries) {
      SCOPED_TRACE(std::string(first.name) + ", " + second.name);
      ASSERT_EQ(Begin(device), RTF_SUCCESS);
      ASSERT_EQ(Begin(undisturbed), RTF_SUCCESS);
      ASSERT_EQ(first.enter(device), first.enter(undisturbed));
      const std::string before = OpenImage(device);
      const int code = second.enter(undisturbed);
      disk.FailAt(FailingDisk::Fault::kFull, 1, true);
      EXPECT_EQ(second.enter(device), code == RTF_SUCCESS ? RTF_E_FAILURE : code);
      disk.Heal();
      EXPECT_EQ(OpenImage(device), before);
      EXPECT_EQ(second.enter(device), code);
      EXPECT_EQ(OpenImage(device), OpenImage(undisturbed));
      if (code == RTF_SUCCESS) ++entered;
      ASSERT_EQ(device.ResetPrn(), RTF_SUCCESS);
      ASSERT_EQ(undisturbed.ResetPrn(), RTF_SUCCESS);
    }
  }
  EXPECT_GT(entered, 120);
}

// Keyed adjustments fall on the subtotal as long as nothing stands behind it.
TEST_F(ReceiptTakenBack, ASubtotalEndsWithTheNextLineAndWithItsCorrection) {
  VirtualRegister device(TestSettings());
  for (const ReceiptEntry& entry : kEntries) {
    const std::string name = entry.name;
    const bool line = name == "sale" || name == "pieces" || name == "goods back" ||
                      name.starts_with("correction") || name == "surcharge";
    if (!line) continue;
    ASSERT_EQ(Begin(device), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecSubtotalEx(0, false), RTF_SUCCESS);
    EXPECT_TRUE(device.receipt().at_subtotal());
    EXPECT_EQ(entry.enter(device), RTF_SUCCESS) << name;
    EXPECT_FALSE(device.receipt().at_subtotal()) << name;
    ASSERT_EQ(device.ResetPrn(), RTF_SUCCESS);
  }
}

}  // namespace
}  // namespace lorimat
