// Every operation in every state: allowed, or refused with the wrong state and nothing changed.
#include "unit/register/client/state_calls.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

class StatesTest : public RegisterTest {};

TEST_F(StatesTest, EveryOperationInEveryState) {
  for (const StateCall& row : StateCalls()) {
    for (int state = 0; state < kStates; ++state) {
      SCOPED_TRACE(std::string(row.name) + " in state " + std::to_string(kPrinterStates[state]));
      VirtualRegister other(TestSettings());
      ASSERT_NO_FATAL_FAILURE(Enter(other, static_cast<State>(state)));
      const std::string paper = other.paper_text();
      char before[50], after[50];
      ASSERT_EQ(other.GetDataInternal(371, before), RTF_SUCCESS);
      const Amount total = other.receipt().total();
      const Amount paid = other.receipt().paid();
      const size_t stored = other.store().documents().size();
      const int result = row.call(other);
      if (row.allowed[state]) {
        EXPECT_EQ(result, RTF_SUCCESS);
        continue;
      }
      EXPECT_EQ(result, RTF_EFPTR_WRONG_STATE);
      EXPECT_EQ(other.paper_text(), paper);
      ASSERT_EQ(other.GetDataInternal(371, after), RTF_SUCCESS);
      EXPECT_STREQ(after, before);
      EXPECT_EQ(other.receipt().total(), total);
      EXPECT_EQ(other.receipt().paid(), paid);
      EXPECT_EQ(other.store().documents().size(), stored);
    }
  }
}

TEST_F(StatesTest, ResetAlwaysLeadsBackToTheMonitorState) {
  for (int state = 0; state < kStates; ++state) {
    VirtualRegister other(TestSettings());
    ASSERT_NO_FATAL_FAILURE(Enter(other, static_cast<State>(state)));
    EXPECT_EQ(other.ResetPrn(), RTF_SUCCESS);
    EXPECT_EQ(other.printer_state(), RTF_FPTR_PS_MONITOR);
    // Registered documents stay: one in each state, and the settled one.
    EXPECT_EQ(other.store().documents().size(), state == kEnding ? 2u : 1u);
    EXPECT_EQ(other.store().grand_total(), state == kEnding ? 200000 : 100000);
    EXPECT_EQ(other.BeginFiscalReceipt(true), RTF_SUCCESS);
  }
}

TEST_F(StatesTest, ResetOfAnIdlePrinterPrintsNothing) {
  EXPECT_EQ(device.ResetPrn(), RTF_SUCCESS);
  EXPECT_TRUE(device.paper_lines().empty());
}

TEST_F(StatesTest, DocumentsOpenOnlyInTheRegisteringPosition) {
  ASSERT_EQ(device.KeyCodeInput("\x04", "", "", 14), RTF_SUCCESS);
  EXPECT_EQ(Item(368), "0");
  EXPECT_EQ(Item(371), "28;1;0;0;0;1;4");
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_EFPTR_WRONG_STATE);
  ASSERT_EQ(device.KeyCodeInput("\x01", "", "", 14), RTF_SUCCESS);
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
}

TEST_F(StatesTest, AReceiptWithoutLinesCannotBePaid) {
  device.BeginFiscalReceipt(true);
  const std::string before = Snapshot();
  EXPECT_EQ(PayRest(), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(PayCash(10000), RTF_EFPTR_WRONG_STATE);
  EXPECT_EQ(Snapshot(), before);
}

}  // namespace
}  // namespace lorimat
