// What the operations do to a device, and that each asks for faults by its own name.
#include <string_view>
#include <vector>

#include "pal/peripherals/keyboard/functioncode.h"
#include "register/fault/fault_operations.h"
#include "rpccommon/client/rtfclientoperation.h"
#include "support/scratch_arguments.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

// Nothing prints, opens, registers or totals without acting, and reading does none of that.
TEST(OperationEffectTest, EffectsFitEachOther) {
  for (size_t i = 0; i < kClientOperationCount; ++i) {
    const auto operation = static_cast<ClientOperation>(i);
    const unsigned effects = EffectsOf(operation);
    const std::string_view name = ClientOperationName(operation);
    const unsigned more = effects & ~static_cast<unsigned>(kEffectReads | kEffectActs);
    if (more != 0) {
      EXPECT_NE(effects & kEffectActs, 0u) << name;
      EXPECT_EQ(effects & kEffectReads, 0u) << name;
    }
    if (!AnswersCode(operation)) {
      EXPECT_EQ(effects, 0u) << name;
    }
  }
}

TEST(OperationEffectTest, AllButQuestionsOfStateAndNotesAnswerACode) {
  std::vector<std::string_view> others;
  for (size_t i = 0; i < kClientOperationCount; ++i) {
    const auto operation = static_cast<ClientOperation>(i);
    if (!AnswersCode(operation)) others.push_back(ClientOperationName(operation));
  }
  const std::vector<std::string_view> expected = {
      "GetClaimed",     "GetDeviceEnabled",    "GetState", "LogTrace", "LogError",
      "set_wait_event", "set_wait_result_code"};
  EXPECT_EQ(others, expected);
}

TEST(OperationEffectTest, KeysDoWhatTheirOperationsDo) {
  using Key = FunctionCode;
  for (const int key : {Key::kDepartment01, Key::kLastDepartment, Key::kPlu, Key::kInvoice,
                        Key::kOpenTransaction, Key::kOpenRefundDoc, Key::kOpenCancelDoc}) {
    EXPECT_EQ(EffectsOfKey(static_cast<uint8_t>(key)),
              EffectsOf(ClientOperation::kBeginFiscalReceipt))
        << key;
  }
  for (const int key :
       {Key::kTotal, Key::kCheque, Key::kCredit, Key::kSubTender01, Key::kLastSubTender}) {
    EXPECT_EQ(EffectsOfKey(static_cast<uint8_t>(key)), EffectsOf(ClientOperation::kPrintRecTotalEx))
        << key;
  }
  EXPECT_EQ(EffectsOfKey(Key::kSubtotal), EffectsOf(ClientOperation::kPrintRecSubtotal));
  EXPECT_EQ(EffectsOfKey(Key::kMacro20), EffectsOf(ClientOperation::kKeyCodeInput));
  for (const int key : {Key::kClear, Key::kNumber1, Key::kKey, Key::kDrawer, Key::kNull}) {
    EXPECT_EQ(EffectsOfKey(static_cast<uint8_t>(key)), kEffectActs) << key;
  }
  // No key does more than the operation is said to do.
  for (int key = 0; key < 256; ++key) {
    const unsigned effects = EffectsOfKey(static_cast<uint8_t>(key));
    EXPECT_EQ(effects & ~EffectsOf(ClientOperation::kKeyCodeInput), 0u) << key;
  }
}

class OperationFaultTest : public RegisterTest {};

// Those that the register does not model, too.
TEST_F(OperationFaultTest, EveryOperationIsStruckByItsOwnName) {
  const auto expect_fault = [&](ClientOperation operation, auto call) {
    if (!AnswersCode(operation)) return;
    SCOPED_TRACE(ClientOperationName(operation));
    device.AddFault({.name = "code", .code = 777, .operation = operation});
    EXPECT_EQ(CallWithScratch(device, call).result, 777);
    EXPECT_TRUE(device.faults().empty());
  };
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  expect_fault(ClientOperation::k##Name, &RtfClientInterface::Name);
#include "rpccommon/client/rtfclientoperations.inc"
  EXPECT_EQ(device.paper_text(), "");
  EXPECT_EQ(device.drawer_count(), 0);
}

// What one operation has in common with another does not let a fault of the other strike it.
TEST_F(OperationFaultTest, OperationsThatShareTheirWorkAreToldApart) {
  device.AddFault(
      {.name = "code", .code = 777, .operation = ClientOperation::kBeginNonFiscalJournal});
  EXPECT_EQ(device.BeginNonFiscal(), RTF_SUCCESS);
  device.AddFault({.name = "code", .code = 778, .operation = ClientOperation::kPrintBarcodeEx});
  EXPECT_EQ(device.PrintBarcode("08", "1", "2", "2", "ABC", 0), RTF_SUCCESS);
  EXPECT_EQ(device.EndNonFiscal(), RTF_SUCCESS);
  device.AddFault({.name = "code", .code = 779, .operation = ClientOperation::kPrintXReportEx});
  EXPECT_EQ(device.PrintXReport(), RTF_SUCCESS);
  device.AddFault({.name = "code", .code = 780, .operation = ClientOperation::kPrintZReportEx});
  EXPECT_EQ(device.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(device.faults().faults().size(), 4u);
}

}  // namespace
}  // namespace lorimat
