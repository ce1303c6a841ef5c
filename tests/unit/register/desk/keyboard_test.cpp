#include "register/desk/keyboard.h"

#include "pal/peripherals/keyboard/functioncode.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

using F = FunctionCode;

class KeyboardTest : public RegisterTest {
 protected:
  // Plays digits as they stand on the keys, then a key. True when the device took it.
  bool Key(uint8_t key, const std::string& digits = "", const char* printer_text = "",
           const char* display_text = "") {
    std::string keys;
    for (const char c : digits) {
      keys += c == '.'   ? static_cast<char>(F::kSeparator)
              : c == '0' ? static_cast<char>(F::kNumber0)
                         : static_cast<char>(c - '0');
    }
    EXPECT_EQ(device.KeyCodeInput(keys.c_str(), printer_text, display_text, key), RTF_SUCCESS);
    return Item(368) == "0";
  }
  uint8_t Department(int number) { return static_cast<uint8_t>(F::kDepartment01 + number - 1); }
};

TEST_F(KeyboardTest, ADepartmentKeySellsAndASubtenderKeyPays) {
  EXPECT_TRUE(Key(Department(1), "10"));
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT);
  EXPECT_EQ(device.receipt().total(), 100000);
  EXPECT_TRUE(Key(Department(2), "2.50"));
  EXPECT_EQ(device.receipt().total(), 125000);
  EXPECT_TRUE(Key(F::kSubTender03, "5"));
  EXPECT_EQ(device.receipt().remaining(), 75000);
  EXPECT_TRUE(Key(F::kLastSubTender));
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_EQ(device.store().daily().by_tender.at("12"), 50000);
  EXPECT_EQ(device.store().daily().by_tender.at("29"), 75000);
}

TEST_F(KeyboardTest, WithAFixedPointTheDigitsAreCents) {
  RegisterSettings settings = TestSettings();
  settings.fixed_decimal_point = true;
  VirtualRegister other(settings);
  EXPECT_EQ(other.KeyCodeInput("\x01\x0a\x0a\x0a", "", "", F::kDepartment01), RTF_SUCCESS);
  EXPECT_EQ(other.receipt().total(), 100000);
  EXPECT_EQ(other.KeyCodeInput("\x05\x0d\x05", "", "", F::kDepartment01), RTF_SUCCESS);
  EXPECT_EQ(other.receipt().total(), 155000);
}

TEST_F(KeyboardTest, TheMultiplierCountsPieces) {
  EXPECT_TRUE(Key(F::kMultiplier, "1.5"));
  EXPECT_TRUE(Key(Department(1), "2"));
  EXPECT_EQ(device.receipt().total(), 30000);
  EXPECT_TRUE(Key(Department(1), "2"));  // it held for one line
  EXPECT_EQ(device.receipt().total(), 50000);
  for (const char* bad : {"", "0", "1.2345", "3000000", "1.2.3"}) {
    EXPECT_FALSE(Key(F::kMultiplier, bad)) << bad;
    EXPECT_EQ(Item(368), std::to_string(RTF_EFPTR_BAD_ITEM_QUANTITY));
  }
}

TEST_F(KeyboardTest, DigitsMayBeKeyedOneByOne) {
  EXPECT_TRUE(Key(F::kNumber1));
  EXPECT_TRUE(Key(F::kNumber00));
  EXPECT_TRUE(Key(F::kSeparator));
  EXPECT_TRUE(Key(F::kNumber5));
  EXPECT_TRUE(Key(Department(1)));
  EXPECT_EQ(device.receipt().total(), 1005000);
  EXPECT_TRUE(Key(F::kNumber9));
  EXPECT_TRUE(Key(F::kClear));
  EXPECT_TRUE(Key(Department(1), "1"));
  EXPECT_EQ(device.receipt().total(), 1015000);
}

TEST_F(KeyboardTest, ThirtyDigitsAreKeyedAndNoMore) {
  const std::string zeros(29, '0');
  EXPECT_TRUE(Key(Department(1), zeros + "1"));
  EXPECT_EQ(device.receipt().total(), 10000);
  for (const std::string& digits : {zeros + "01", zeros + ".1"}) {
    EXPECT_FALSE(Key(Department(1), digits)) << digits;
    EXPECT_TRUE(Key(F::kClear));
  }
  EXPECT_EQ(device.receipt().total(), 10000);
}

TEST_F(KeyboardTest, ARefusedLineOpensNoReceipt) {
  EXPECT_FALSE(Key(Department(1)));  // no preset price
  EXPECT_EQ(Item(368), std::to_string(RTF_EFPTR_BAD_PRICE));
  EXPECT_FALSE(Key(Department(1), "0"));
  EXPECT_TRUE(Key(F::kRefund));
  EXPECT_FALSE(Key(Department(1), "5"));
  EXPECT_EQ(Item(368), std::to_string(RTF_EFPTR_NEGATIVE_TOTAL));
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_TRUE(device.paper_lines().empty());
  EXPECT_TRUE(Key(Department(1), "5"));  // the refusal forgot the refund key
  EXPECT_EQ(device.receipt().total(), 50000);
}

TEST_F(KeyboardTest, ArticlesAndNumberedDepartments) {
  EXPECT_TRUE(Key(F::kPlu, "8001"));
  EXPECT_EQ(device.receipt().total(), 15000);
  EXPECT_FALSE(Key(F::kPlu, "8002"));
  EXPECT_EQ(Item(368), std::to_string(RTF_E_NOEXIST));
  EXPECT_FALSE(Key(F::kPlu));
  EXPECT_TRUE(Key(F::kAmount, "7"));
  EXPECT_TRUE(Key(F::kDepartment, "3"));
  EXPECT_EQ(device.receipt().by_vat(), (std::map<int, Amount>{{3, 70000}, {4, 15000}}));
  EXPECT_FALSE(Key(F::kDepartment, "41"));
  EXPECT_FALSE(Key(F::kDepartment, "0"));
}

TEST_F(KeyboardTest, CorrectionsByKey) {
  Key(Department(1), "10");
  EXPECT_TRUE(Key(F::kCancel));
  EXPECT_EQ(device.receipt().total(), 0);
  EXPECT_FALSE(Key(F::kCancel));
  Key(Department(1), "10");
  Key(Department(1), "3");
  EXPECT_TRUE(Key(F::kVoidItem));
  EXPECT_TRUE(Key(Department(1), "10"));
  EXPECT_EQ(device.receipt().total(), 30000);
  EXPECT_TRUE(Key(F::kRefund));
  EXPECT_TRUE(Key(Department(1), "1"));
  EXPECT_EQ(device.receipt().total(), 20000);
}

TEST_F(KeyboardTest, AdjustmentsFallOnTheLineOrOnAShownSubtotal) {
  Key(Department(1), "10");
  Key(Department(1), "20");
  EXPECT_TRUE(Key(F::kPercentageA, "10"));  // of 20,00
  EXPECT_EQ(device.receipt().total(), 280000);
  EXPECT_TRUE(Key(F::kSubtotal));
  EXPECT_TRUE(Key(F::kPercentageA, "50"));  // of 28,00
  EXPECT_EQ(device.receipt().total(), 140000);
  EXPECT_TRUE(Key(F::kAbsoluteIncrease, "1"));
  EXPECT_EQ(device.receipt().total(), 150000);
  EXPECT_FALSE(Key(F::kAbsoluteDecrease, "100"));
  EXPECT_EQ(Item(368), std::to_string(RTF_EFPTR_NEGATIVE_TOTAL));
  EXPECT_FALSE(Key(F::kPercentageB));
  EXPECT_EQ(device.receipt().total(), 150000);
}

TEST_F(KeyboardTest, TenderKeys) {
  struct {
    uint8_t key;
    const char* tender;
  } const rows[] = {{F::kTotal, "0"},         {F::kCheque, "1"},        {F::kCreditCard, "2"},
                    {F::kTicket, "4"},        {F::kCreditInvoice, "5"}, {F::kCreditServices, "6"},
                    {F::kCreditSSN, "7"},     {F::kCredit, "9"},        {F::kSubTender01, "10"},
                    {F::kLastSubTender, "29"}};
  for (const auto& row : rows) {
    Key(Department(1), "1");
    EXPECT_TRUE(Key(row.key)) << row.tender;
    EXPECT_EQ(device.store().daily().by_tender.at(row.tender), 10000) << row.tender;
  }
  EXPECT_FALSE(Key(F::kTotal));
  EXPECT_EQ(Item(368), std::to_string(RTF_EFPTR_WRONG_STATE));
}

TEST_F(KeyboardTest, TransactionsByKey) {
  EXPECT_TRUE(Key(F::kOpenTransaction));
  EXPECT_FALSE(Key(F::kOpenTransaction));
  EXPECT_FALSE(Key(F::kCloseTransaction));
  device.SetDataInternal(600, "1");
  Key(Department(1), "1");
  EXPECT_TRUE(Key(F::kTotal));
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT_ENDING);
  EXPECT_TRUE(Key(F::kCloseTransaction));
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
}

TEST_F(KeyboardTest, DocumentsByKey) {
  EXPECT_TRUE(Key(F::kInvoice, "", "ROSSI MARIO"));
  EXPECT_EQ(device.receipt().kind(), DocumentKind::kInvoice);
  EXPECT_TRUE(Key(F::kVoidReceipt));
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
  EXPECT_FALSE(Key(F::kOpenCancelDoc, "00010001"));
  EXPECT_EQ(Item(368), std::to_string(RTF_E_NOEXIST));
  Key(Department(1), "1");
  Key(F::kTotal);
  EXPECT_TRUE(Key(F::kOpenCancelDoc, "00010001"));
  EXPECT_EQ(device.receipt().kind(), DocumentKind::kCancel);
  device.ResetPrn();
  EXPECT_TRUE(Key(F::kOpenCancelDoc, "1"));  // a document of the day
  device.ResetPrn();
  EXPECT_TRUE(Key(F::kOpenRefundDoc, "00010001"));
  EXPECT_EQ(device.receipt().kind(), DocumentKind::kRefund);
  EXPECT_NE(device.paper_text().find("Documento di riferimento: 0001-0001"), std::string::npos);
  device.ResetPrn();
  EXPECT_FALSE(Key(F::kOpenRefundDoc, "01230045"));
  EXPECT_EQ(Item(368), std::to_string(RTF_E_NOEXIST));
  EXPECT_FALSE(Key(F::kOpenRefundDoc, "12345"));
  EXPECT_FALSE(Key(F::kOpenRefundDoc, "1.5"));
}

TEST_F(KeyboardTest, TheLotteryCodeFollowsItsKey) {
  EXPECT_FALSE(Key(F::kLotteryCode));  // no receipt
  Key(Department(1), "1");
  EXPECT_FALSE(Key(F::kConfirm, "", "", "AB12CD34"));  // not announced
  EXPECT_TRUE(Key(F::kLotteryCode));
  EXPECT_FALSE(Key(F::kConfirm, "", "", "AB12CD3"));
  EXPECT_EQ(Item(368), std::to_string(RTF_EFPTR_BAD_LENGTH));
  EXPECT_TRUE(Key(F::kLotteryCode));
  EXPECT_FALSE(Key(F::kConfirm, "", "", "AB12-D34"));
  EXPECT_TRUE(Key(F::kLotteryCode));
  EXPECT_TRUE(Key(F::kTotal, "", "", "AB12CD34"));
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_FISCAL_RECEIPT);  // a code, no payment
  EXPECT_TRUE(Key(F::kLotteryCode));
  EXPECT_TRUE(Key(Department(1), "1"));  // another key ends the announcement
  EXPECT_TRUE(Key(F::kCreditCard));
  EXPECT_EQ(device.store().documents().back().lottery_code, "AB12CD34");
}

TEST_F(KeyboardTest, TheLockTurnsBetweenDocumentsOnly) {
  for (int position = 1; position <= 4; ++position) {
    const char digits[] = {static_cast<char>(position), '\0'};
    EXPECT_EQ(device.KeyCodeInput(digits, "", "", F::kKey), RTF_SUCCESS);
    EXPECT_EQ(Item(368), "0");
    EXPECT_EQ(Item(371).back(), static_cast<char>('0' + position));
  }
  EXPECT_TRUE(Key(F::kKeyRegistering));
  for (const char* bad : {"", "\x05", "0", "\x01\x02"}) {
    device.KeyCodeInput(bad, "", "", F::kKey);
    EXPECT_NE(Item(368), "0");
  }
  Key(Department(1), "1");
  device.KeyCodeInput("\x04", "", "", F::kKey);
  EXPECT_EQ(Item(368), std::to_string(RTF_EFPTR_WRONG_STATE));
  EXPECT_EQ(Item(371).back(), '1');
}

TEST_F(KeyboardTest, OperatorsDrawerAndFeed) {
  EXPECT_TRUE(Key(F::kOperator, "3"));
  EXPECT_EQ(Item(371), "28;0;0;0;0;3;1");
  EXPECT_FALSE(Key(F::kOperator, "11"));
  EXPECT_FALSE(Key(F::kOperator, "0"));
  EXPECT_FALSE(Key(F::kOperator));
  EXPECT_TRUE(Key(F::kDrawer));
  EXPECT_EQ(device.drawer_count(), 1);
  EXPECT_TRUE(Key(F::kPaperFeed));
  EXPECT_EQ(device.paper_lines(), std::vector<std::string>{""});
}

TEST_F(KeyboardTest, DescriptionsAndTaxCode) {
  EXPECT_TRUE(Key(F::kDescription, "", "PANE"));
  EXPECT_TRUE(Key(Department(1), "1"));
  EXPECT_EQ(device.receipt().last_line()->description, "PANE");
  EXPECT_TRUE(Key(Department(1), "1"));
  EXPECT_EQ(device.receipt().last_line()->description, "REPARTO 1");
  EXPECT_FALSE(Key(F::kDescription));
  EXPECT_TRUE(Key(F::kTaxCode, "01234567897"));
  EXPECT_FALSE(Key(F::kTaxCode, "1"));
}

TEST_F(KeyboardTest, KeysThatAreNotModelledAreIllegal) {
  for (const uint8_t key : {F::kMenu, F::kMacro01, F::kLetterA, F::kNull, F::kHost}) {
    EXPECT_EQ(device.KeyCodeInput("", "", "", key), RTF_E_ILLEGAL);
    EXPECT_EQ(Item(368), std::to_string(RTF_E_ILLEGAL));
  }
  EXPECT_TRUE(Key(F::kClear));
  // Keys that are no digits are no amount either.
  EXPECT_EQ(device.KeyCodeInput("\x1f\x20", "", "", F::kDepartment01), RTF_SUCCESS);
  EXPECT_EQ(Item(368), std::to_string(RTF_E_ILLEGAL));
  EXPECT_FALSE(Key(Department(1), std::string(100, '9')));
  EXPECT_EQ(device.printer_state(), RTF_FPTR_PS_MONITOR);
}

}  // namespace
}  // namespace lorimat
