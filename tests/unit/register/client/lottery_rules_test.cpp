// What the lottery takes, and what goes out without its code: on paper, as a property, as a value.
#include "pal/peripherals/keyboard/functioncode.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

class LotteryRules : public RegisterTest {
 protected:
  void Open(Amount total) {
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, total), RTF_SUCCESS);
  }
  // The code on its key; what the key was answered with.
  std::string Code(const char* code) {
    EXPECT_EQ(device.KeyCodeInput("", "", "", FunctionCode::kLotteryCode), RTF_SUCCESS);
    EXPECT_EQ(device.KeyCodeInput("", "", code, FunctionCode::kConfirm), RTF_SUCCESS);
    return Item(368);
  }
  std::string ErrorString() {
    char text[200] = "unset";
    return device.GetStringProperty(RTF_PIDXFptr_ErrorString, text) == RTF_SUCCESS ? text
                                                                                   : "refused";
  }
  bool PaperHas(const std::string& text) {
    return device.paper_text().find(text) != std::string::npos;
  }
  std::string Stored() { return device.store().documents().back().lottery_code; }
};

// 1,00 by card is the least.
TEST_F(LotteryRules, TakesWhatIsPaidByCards) {
  Open(10000);
  ASSERT_EQ(Code("AB12CD34"), "0");
  ASSERT_EQ(device.PrintRecTotalEx(3000, "2", false), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(3000, "10", false), RTF_SUCCESS);
  ASSERT_EQ(PayRest("3"), RTF_SUCCESS);
  EXPECT_EQ(Stored(), "AB12CD34");
  EXPECT_TRUE(PaperHas("\nCodice lotteria: AB12CD34\n"));
  EXPECT_EQ(ErrorString(), "");
  EXPECT_EQ(device.lottery_drop_count(), 0u);
}

TEST_F(LotteryRules, SmallLettersAreRaised) {
  Open(10000);
  ASSERT_EQ(Code("ab12Cd34"), "0");
  ASSERT_EQ(PayRest("2"), RTF_SUCCESS);
  EXPECT_EQ(Stored(), "AB12CD34");
}

TEST_F(LotteryRules, AnythingElseIsNoCode) {
  Open(10000);
  for (const char* code : {"", "AB12CD3", "AB12CD345"}) {
    EXPECT_EQ(Code(code), std::to_string(RTF_EFPTR_BAD_LENGTH)) << code;
  }
  for (const char* code : {"AB12-D34", "AB12CD3 ",
                           "AB12\xC3\xA0"
                           "34",
                           "AB12CD3\x01"}) {
    EXPECT_EQ(Code(code), std::to_string(RTF_E_ILLEGAL)) << code;
  }
  ASSERT_EQ(PayRest("2"), RTF_SUCCESS);
  EXPECT_EQ(Stored(), "");
}

TEST_F(LotteryRules, WhatItDoesNotTakeGoesOutWithoutTheCode) {
  const struct {
    Amount total;
    const char* tender;  // that pays the second half
    const char* tax_code;
    LotteryDropCause cause;
    const char* line;
    const char* text;
  } kRows[] = {
      {9900, "2", "", LotteryDropCause::kTotal, "  totale inferiore a 1,00",
       "the lottery code was left out: the total is below 1,00"},
      {10000, "0", "", LotteryDropCause::kPayment, "  pagamento non tutto elettronico",
       "the lottery code was left out: not all of it was paid electronically"},
      {10000, "4", "", LotteryDropCause::kPayment, "  pagamento non tutto elettronico",
       "the lottery code was left out: not all of it was paid electronically"},
      {10000, "8", "", LotteryDropCause::kPayment, "  pagamento non tutto elettronico",
       "the lottery code was left out: not all of it was paid electronically"},
      {10000, "9", "", LotteryDropCause::kPayment, "  pagamento non tutto elettronico",
       "the lottery code was left out: not all of it was paid electronically"},
      {10000, "2", "RSSMRA80A01H501U", LotteryDropCause::kTaxCode, "  con un codice fiscale",
       "the lottery code was left out: the receipt has a tax code"},
  };
  uint64_t drops = 0;
  for (const auto& row : kRows) {
    Open(row.total);
    ASSERT_EQ(Code("AB12CD34"), "0");
    if (*row.tax_code != '\0') {
      ASSERT_EQ(device.PrintRecTaxID(row.tax_code), RTF_SUCCESS);
    }
    ASSERT_EQ(device.PrintRecTotalEx(5000, "2", false), RTF_SUCCESS);
    ASSERT_EQ(PayRest(row.tender), RTF_SUCCESS);
    const int number = device.store().counters().documents;
    EXPECT_EQ(device.store().documents().size(), static_cast<size_t>(number));
    EXPECT_EQ(Stored(), "");
    EXPECT_TRUE(PaperHas(std::string("\nCodice lotteria non accettato:\n") + row.line + "\n"));
    EXPECT_EQ(ErrorString(), row.text);
    EXPECT_EQ(device.lottery_drop_count(), ++drops);
    EXPECT_EQ(device.lottery_drop().cause, row.cause);
    EXPECT_EQ(device.lottery_drop().closure, 1);
    EXPECT_EQ(device.lottery_drop().number, number);
  }
  EXPECT_FALSE(PaperHas("Codice lotteria: "));
  EXPECT_TRUE(device.store().PendingLottery().empty());
}

// What goes back has the code of its sale, whole or in part; it does not wait to be sent.
TEST_F(LotteryRules, WhatGoesBackHasTheCodeOfTheSale) {
  for (int sale = 0; sale < 3; ++sale) {
    Open(50000);
    ASSERT_EQ(Code("AB12CD34"), "0");
    ASSERT_EQ(PayRest("2"), RTF_SUCCESS);
  }
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  EXPECT_EQ(Stored(), "AB12CD34");
  ASSERT_EQ(device.BeginDocRefundEx(2, 1, "", true), RTF_SUCCESS);
  EXPECT_EQ(Stored(), "AB12CD34");
  ASSERT_EQ(device.BeginDocTelematicRefund(3, 1, "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20000), RTF_SUCCESS);
  ASSERT_EQ(PayRest("0"), RTF_SUCCESS);
  EXPECT_EQ(Stored(), "AB12CD34");
  EXPECT_EQ(device.store().PendingLottery().size(), 3u);
  // Of no sale, or of one without a code: none.
  ASSERT_EQ(device.BeginDocTelematicRefund(0, 0, "", ""), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 20000), RTF_SUCCESS);
  ASSERT_EQ(PayRest("0"), RTF_SUCCESS);
  EXPECT_EQ(Stored(), "");
}

}  // namespace
}  // namespace lorimat
