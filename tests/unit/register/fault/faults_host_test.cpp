// What a host sees of a device's faults through the translator: the device's own code, and one
// sale when the line is sent again.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "language/shipped_language.h"
#include "register/fault/faults.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

class FaultHostTest : public RegisterTest {
 protected:
  FaultHostTest() {
    // No settings of this computer's installation.
    if (const char* registry = std::getenv("LORIMATRT_REGISTRY")) registry_ = registry;
    setenv("LORIMATRT_REGISTRY", "/nonexistent/registry", 1);
  }
  ~FaultHostTest() override {
    if (registry_.empty()) {
      unsetenv("LORIMATRT_REGISTRY");
    } else {
      setenv("LORIMATRT_REGISTRY", registry_.c_str(), 1);
    }
  }

  void SetUp() override { Start(); }

  void Start() {
    translator_ = std::make_unique<EcrCmdCommand>();
    // The translator takes a path of 79 characters at most.
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(shipped::LanguageFile().parent_path());
    char name[] = "merkelin.ini";
    ASSERT_EQ(translator_->TradInit(name, 0, &device, true), 0);
    std::filesystem::current_path(before);
  }

  // The code of a line; its text is in result_.
  long Run(const std::string& line) {
    std::string copy = line;
    copy.resize(copy.size() + 1);
    std::vector<char> result(1024);
    const long code = translator_->EcrCmd(copy.data(), result.data());
    result_ = result.data();
    return code;
  }

  std::string Answer(const std::string& line) {
    EXPECT_EQ(Run(line), 0);
    return result_;
  }

  std::string result_;

 private:
  std::unique_ptr<EcrCmdCommand> translator_;
  std::string registry_;
};

TEST_F(FaultHostTest, ASaleWithoutPaperAnswersTheDevicesCodeAndSellsOnceWhenRepeated) {
  device.AddFault({.name = "paper-end", .when = FaultWhen::kEvery});
  for (int i = 0; i < 3; ++i) {
    EXPECT_EQ(Run("VEND REP=1, PRE=1.00"), 1227);  // 203 and the bit 0x400
    EXPECT_EQ(result_, "ERROR 4/203 : ECR SIGNALS CRITICAL ERROR 203 : ");
  }
  EXPECT_EQ(device.paper_text(), "");
  device.ClearFaults();
  EXPECT_EQ(Answer("VEND REP=1, PRE=1.00"), "OK.");
  EXPECT_EQ(Answer("CHIU"), "OK.");
  EXPECT_EQ(Item(1), "1");
  EXPECT_EQ(Item(89), "10000");
}

TEST_F(FaultHostTest, ALineThatIsRefusedInAReceiptSellsOnceWhenRepeated) {
  device.AddFault({.name = "cover-open", .operation = ClientOperation::kPrintRecItemEx});
  EXPECT_EQ(Run("VEND REP=1, PRE=1.00"), 1225);
  EXPECT_EQ(result_, "ERROR 4/201 : ECR SIGNALS CRITICAL ERROR 201 : ");
  EXPECT_EQ(Answer("VEND REP=1, PRE=1.00"), "OK.");
  EXPECT_EQ(Answer("CHIU"), "OK.");
  EXPECT_EQ(Item(1), "1");
  EXPECT_EQ(Item(89), "10000");
}

TEST_F(FaultHostTest, ErrorsBelowTwoHundredShowAsErrorsOfTheLine) {
  device.AddFault({.name = "off-line"});
  EXPECT_EQ(Run("VEND REP=1, PRE=1.00"), 620);  // 108 and the bit 0x200
  EXPECT_EQ(result_, "ERROR 2/108 : I/O ERROR 108");
  device.AddFault({.name = "busy"});
  EXPECT_EQ(Run("VEND REP=1, PRE=1.00"), 625);
  EXPECT_EQ(result_, "ERROR 2/113 : I/O ERROR 113");
}

// Between planning and the line the translator reads the device's configuration.
TEST_F(FaultHostTest, TheStartOfATranslatorUsesUpNothing) {
  for (const char* name : {"paper-end", "cover-open", "off-line", "busy", "fiscal-memory-full",
                           "day-end-required", "no-answer", "lost-answer"}) {
    SCOPED_TRACE(name);
    device.AddFault({.name = name});
    Start();
    ASSERT_EQ(device.faults().faults().size(), 1u);
    EXPECT_NE(Run("VEND REP=1, PRE=1.00"), 0);
    EXPECT_TRUE(device.faults().empty());
    ASSERT_EQ(device.ResetPrn(), RTF_SUCCESS);
  }
}

TEST_F(FaultHostTest, APaymentWhoseAnswerIsLostIsFoundInTheNumberOfTheLastDocument) {
  ASSERT_EQ(Answer("VEND REP=1, PRE=1.00"), "OK.");
  EXPECT_EQ(Answer("INFO TIPO=ULTDOC"), "00010000");
  device.AddFault({.name = "lost-answer"});
  EXPECT_EQ(Run("CHIU"), 624);
  EXPECT_EQ(result_, "ERROR 2/112 : I/O ERROR 112");
  EXPECT_EQ(Answer("INFO TIPO=ULTDOC"), "00010001");
  // A second payment finds nothing to pay.
  EXPECT_EQ(Run("CHIU"), 1231);
  EXPECT_EQ(Item(1), "1");
  EXPECT_EQ(Item(89), "10000");
}

TEST_F(FaultHostTest, APaymentThatGotLostIsNotThereAndIsMadeOnce) {
  ASSERT_EQ(Answer("VEND REP=1, PRE=1.00"), "OK.");
  device.AddFault({.name = "no-answer"});
  EXPECT_EQ(Run("CHIU"), 624);
  EXPECT_EQ(Answer("INFO TIPO=ULTDOC"), "00010000");
  EXPECT_EQ(Answer("CHIU"), "OK.");
  EXPECT_EQ(Answer("INFO TIPO=ULTDOC"), "00010001");
  EXPECT_EQ(Item(89), "10000");
}

// The host cannot tell: one that sends the line again without a look sells twice.
TEST_F(FaultHostTest, ALineWhoseAnswerIsLostIsSoldTwiceByARepeat) {
  device.AddFault({.name = "lost-answer", .operation = ClientOperation::kPrintRecItemEx});
  EXPECT_EQ(Run("VEND REP=1, PRE=1.00"), 624);
  EXPECT_EQ(Answer("VEND REP=1, PRE=1.00"), "OK.");
  EXPECT_EQ(device.receipt().total(), 20000);
  // A look at the subtotal shows it.
  EXPECT_EQ(Run("CHKSUB IMP=1.00"), 1236);
}

TEST_F(FaultHostTest, AnOpeningWhoseAnswerIsLostOpensOnce) {
  device.AddFault({.name = "lost-answer"});
  EXPECT_EQ(Run("VEND REP=1, PRE=1.00"), 624);
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT);
  EXPECT_EQ(Answer("VEND REP=1, PRE=1.00"), "OK.");
  EXPECT_EQ(device.receipt().total(), 10000);
}

TEST_F(FaultHostTest, WrongTotalsResetThePrinter) {
  ASSERT_EQ(Answer("VEND REP=1, PRE=1.00"), "OK.");
  device.AddFault({.name = "wrong-totals"});
  EXPECT_EQ(Run("CHKSUB IMP=1.00"), 1236);
  EXPECT_EQ(result_, "ERROR 4/212 : ECR SIGNALS CRITICAL ERROR 212 : ");
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(Item(114), "1");  // abandoned
  EXPECT_EQ(Item(89), "0");
}

TEST_F(FaultHostTest, ADueClosingStopsTheNextReceiptUntilTheDayIsClosed) {
  device.AddFault({.name = "day-end-required", .when = FaultWhen::kEvery});
  EXPECT_EQ(Run("VEND REP=1, PRE=1.00"), 1248);
  EXPECT_EQ(Run("FATTURA TIPO=2, RIGA1='ROSSI SRL'"), 1248);
  EXPECT_EQ(Answer("AZZGIO"), "OK.");
  device.ClearFaults();
  // An invoice was begun, so a sale does not open a receipt: CLEAR takes that back.
  EXPECT_EQ(Run("VEND REP=1, PRE=1.00"), 1231);
  EXPECT_EQ(Answer("CLEAR"), "OK.");
  EXPECT_EQ(Answer("VEND REP=1, PRE=1.00"), "OK.");
}

TEST_F(FaultHostTest, TheStatesThatAHostAsksForShowTheCondition) {
  // Byte 3: nothing is open. Bytes 4 and 5: the paper.
  EXPECT_EQ(Answer("INFO TIPO=STATOEST"), "000000010000");
  device.AddFault({.name = "paper-end"});
  EXPECT_EQ(Answer("INFO TIPO=STATOEST"), "000000010101");
  device.AddFault({.name = "paper-near-end"});
  EXPECT_EQ(Answer("INFO TIPO=STATOEST"), "000000010505");
  device.ClearFaults();
  EXPECT_EQ(Answer("INFO TIPO=18"), "0,");
  EXPECT_EQ(Answer("INFO TIPO=STATOLUNGO").substr(0, 4), "1,0,");
  device.AddFault({.name = "cover-open"});
  EXPECT_EQ(Answer("INFO TIPO=18"), "1,");
  EXPECT_EQ(Answer("INFO TIPO=STATOLUNGO").substr(0, 4), "1,1,");
}

}  // namespace
}  // namespace lorimat
