// Faults of the device and of the disk at once.
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class StoredFaultTest : public StoreTest {};

TEST_F(StoredFaultTest, AnOperationThatCouldNotBeStoredDoesNotLoseItsAnswer) {
  VirtualRegister device(FileSettings());
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  device.AddFault({.name = "lost-answer", .operation = ClientOperation::kPrintRecTotalEx});
  // A time-out would have the host believe that it may be registered, and the fault strikes once:
  // it is there for the payment that is.
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  EXPECT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_E_FAILURE);
  EXPECT_TRUE(disk.failed());
  EXPECT_EQ(device.store().document_count(), 0);
  EXPECT_EQ(device.faults().faults().size(), 1u);
  disk.Heal();
  EXPECT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_E_TIMEOUT);
  EXPECT_EQ(device.store().document_count(), 1);
  EXPECT_TRUE(device.faults().empty());
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
}

}  // namespace
}  // namespace lorimat
