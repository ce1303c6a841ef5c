// Answers that get lost: what was done stands, and is done once.
#include "unit/register/fault_fixture.h"

namespace lorimat {
namespace {

TEST_F(FaultTest, ALostAnswerLeavesTheReceiptRegisteredOnce) {
  OpenReceipt();
  device.AddFault({.name = "lost-answer", .operation = ClientOperation::kPrintRecTotalEx});
  EXPECT_EQ(PayRest(), RTF_E_TIMEOUT);
  // What a careful host asks: the state, the number of the last document, the day's total.
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "0001");
  EXPECT_EQ(Item(1), "1");
  EXPECT_EQ(Item(89), "100000");
  EXPECT_NE(device.paper_text().find("DOCUMENTO N. 0001-0001"), std::string::npos);
  // And what one that pays again gets.
  EXPECT_EQ(PayRest(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Item(1), "1");
  EXPECT_EQ(Waiting(), 0u);
}

TEST_F(FaultTest, ALostRequestLeavesTheReceiptOpen) {
  OpenReceipt();
  device.AddFault({.name = "no-answer", .operation = ClientOperation::kPrintRecTotalEx});
  EXPECT_EQ(PayRest(), RTF_E_TIMEOUT);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT);
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "0000");
  EXPECT_EQ(PayRest(), RTF_SUCCESS);
  EXPECT_EQ(Data(RTF_FPTR_GD_FISCAL_REC), "0001");
  EXPECT_EQ(Item(89), "100000");
}

TEST_F(FaultTest, TheAnswerThatIsLostMayBeARefusal) {
  device.AddFault({.name = "lost-answer"});
  const std::string before = Snapshot();
  EXPECT_EQ(PayRest(), RTF_E_TIMEOUT);
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(PayRest(), RTF_EFPTR_WRONG_STATE);
}

TEST_F(FaultTest, AnOperationThatIsRefusedDoesNotUseUpTheLostAnswer) {
  device.AddFault({.name = "lost-answer"});
  device.AddFault({.name = "paper-end"});
  EXPECT_EQ(device.BeginFiscalReceipt(true), 203);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_E_TIMEOUT);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT);
}

TEST_F(FaultTest, AnswersMayBeLostSeveralTimes) {
  device.AddFault({.name = "lost-answer", .when = FaultWhen::kTimes, .count = 2});
  EXPECT_EQ(device.OpenDrawer(), RTF_E_TIMEOUT);
  EXPECT_EQ(device.OpenDrawer(), RTF_E_TIMEOUT);
  EXPECT_EQ(device.OpenDrawer(), RTF_SUCCESS);
  EXPECT_EQ(device.drawer_count(), 3);
}

TEST_F(FaultTest, ADayClosingWhoseAnswerIsLostClosesOneDay) {
  OpenReceipt();
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  device.AddFault({.name = "lost-answer", .operation = ClientOperation::kPrintZReportEx});
  EXPECT_EQ(device.PrintZReportEx(false), RTF_E_TIMEOUT);
  EXPECT_EQ(Data(RTF_FPTR_GD_Z_REPORT), "0001");
  EXPECT_EQ(Item(89), "0");
}

}  // namespace
}  // namespace lorimat
