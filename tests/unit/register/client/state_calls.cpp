#include "unit/register/client/state_calls.h"

#include "unit/register/register_fixture.h"

namespace lorimat {

const int kPrinterStates[kStates] = {RTF_FPTR_PS_MONITOR,
                                     RTF_FPTR_PS_FISCAL_RECEIPT,
                                     RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL,
                                     RTF_FPTR_PS_FISCAL_RECEIPT_ENDING,
                                     RTF_FPTR_PS_NONFISCAL,
                                     RTF_FPTR_PS_ITEM_LIST};

void Enter(VirtualRegister& device, State state) {
  const auto sell = [&device] {
    return device.PrintRecItemEx(0, "", 100000, 0, -1, 0, "", 1, true, "");
  };
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(sell(), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  if (state == kReceipt || state == kTotal || state == kEnding) {
    ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    ASSERT_EQ(sell(), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecItemAdjustmentEx(1, "", 100, -1, -2), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecSubtotalAdjustment(2, "", 100), RTF_SUCCESS);
  }
  if (state == kTotal) {
    ASSERT_EQ(device.PrintRecTotalEx(10000, "0", false), RTF_SUCCESS);
  }
  if (state == kEnding) {
    ASSERT_EQ(device.SetDataInternal(148, "0"), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }
  if (state == kNonFiscal) {
    ASSERT_EQ(device.BeginNonFiscalJournal(true), RTF_SUCCESS);
  }
  if (state == kItemList) {
    ASSERT_EQ(device.BeginItemList(4), RTF_SUCCESS);
  }
  ASSERT_EQ(device.printer_state(), kPrinterStates[state]);
}

}  // namespace lorimat
