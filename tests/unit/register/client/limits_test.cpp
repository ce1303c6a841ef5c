// The ends of what there is: amounts, rates, lines, names, times.
#include <algorithm>
#include <limits>

#include "register/value/money.h"
#include "unit/register/register_fixture.h"

namespace lorimat {
namespace {

constexpr int64_t kLeast = std::numeric_limits<int64_t>::min();
constexpr int64_t kMost = std::numeric_limits<int64_t>::max();

std::tm TimeOf(int year, int month, int day) {
  std::tm time = {};
  time.tm_year = year - 1900;
  time.tm_mon = month - 1;
  time.tm_mday = day;
  time.tm_hour = 23;
  time.tm_min = 59;
  time.tm_sec = 58;
  return time;
}

int SellOn(VirtualRegister* device, int department, int64_t price, const char* name = "") {
  return device->PrintRecItemEx(PflItemType::kPrintRecItem, name, price, 0, -1, 0, "", department,
                                true, "");
}

bool Has(const VirtualRegister& device, const std::string& text) {
  return device.paper_text().find(text) != std::string::npos;
}

using Limits = RegisterTest;

// 9999999,99 x 22 / 122 = 1803278,686...
TEST_F(Limits, TheLargestTotalIsSoldPaidAndGoesBack) {
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, kMaxAmount, "VILLA"), RTF_SUCCESS);
  const std::string before = Snapshot();
  EXPECT_EQ(Sell(1, kCent), RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW);
  EXPECT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_SURCHARGE, "", kCent),
            RTF_EFPTR_RECEIPT_TOTAL_OVERFLOW);
  EXPECT_EQ(PayCash(kMaxAmount + kCent), RTF_EFPTR_BAD_ITEM_AMOUNT);
  EXPECT_EQ(Snapshot(), before);
  ASSERT_EQ(PayCash(kMaxAmount), RTF_SUCCESS);
  EXPECT_TRUE(Has(device, "VILLA                      22%  9999999,99\n"));
  EXPECT_TRUE(Has(device, "di cui IVA                      1803278,69\n"));
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  EXPECT_TRUE(Has(device, "Importo rimborsato              9999999,99\n"));
  EXPECT_EQ(device.store().daily().net(), 0);
}

TEST_F(Limits, AmountsBeyondEveryDocumentAreRefusedAndChangeNothing) {
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
  const std::string before = Snapshot();
  // As a percentage the least of these would still be a surcharge that the total has room for.
  for (const int64_t amount :
       {kLeast, kLeast + 1, int64_t{-2}, 100 * kMaxAmount, kMost - 1, kMost}) {
    EXPECT_NE(Sell(1, amount), RTF_SUCCESS) << amount;
    EXPECT_NE(SellPieces(1, 1000, amount), RTF_SUCCESS) << amount;
    EXPECT_NE(SellPieces(1, std::numeric_limits<int>::max(), amount), RTF_SUCCESS) << amount;
    EXPECT_NE(SellPieces(1, std::numeric_limits<int>::min(), amount), RTF_SUCCESS) << amount;
    EXPECT_NE(PayCash(amount), RTF_SUCCESS) << amount;
    for (int type = RTF_FPTR_AT_AMOUNT_DISCOUNT; type <= RTF_FPTR_AT_COUPON_PERCENTAGE_DISCOUNT;
         ++type) {
      EXPECT_NE(device.PrintRecItemAdjustmentEx(type, "", amount, -1, -2), RTF_SUCCESS) << amount;
      EXPECT_NE(device.PrintRecSubtotalAdjustment(type, "", amount), RTF_SUCCESS) << amount;
      EXPECT_NE(device.PrintRecSubtotalAdjustVoid(type, amount), RTF_SUCCESS) << amount;
    }
  }
  EXPECT_EQ(Snapshot(), before);
  EXPECT_EQ(device.receipt().total(), 100000);
}

// 40 rates of 1 % to 40 %, 1,00 of each, and 0,40 off: a cent of each. The tax of 0,99 at n % is
// 0,99 x n / (100 + n).
TEST(LimitsOfTables, FortyRatesInOneDocument) {
  RegisterSettings settings = TestSettings();
  settings.vat_rates.clear();
  int64_t tax = 0;
  for (int rate = 1; rate <= 40; ++rate) {
    settings.vat_rates.push_back({rate * 10000, ""});
    settings.departments.push_back({"REPARTO " + std::to_string(rate), rate});
    tax += (2 * 99 * rate + 100 + rate) / (2 * (100 + rate));
  }
  VirtualRegister device{settings};
  ASSERT_EQ(device.BeginDocInvoice("ROSSI", "", "", "", ""), RTF_SUCCESS);
  for (int department = 1; department <= 40; ++department) {
    ASSERT_EQ(SellOn(&device, department, 10000), RTF_SUCCESS);
  }
  ASSERT_EQ(device.PrintRecSubtotalAdjustment(RTF_FPTR_AT_AMOUNT_DISCOUNT, "", 4000), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(0, "2", true), RTF_SUCCESS);
  EXPECT_TRUE(Has(device, "TOTALE COMPLESSIVO                   39,60\n"));
  EXPECT_TRUE(
      Has(device, "di cui IVA                            " + FormatAmount(tax * kCent) + "\n"));
  for (int rate = 1; rate <= 40; ++rate) {
    const std::string mark = std::to_string(rate) + "%";
    EXPECT_TRUE(Has(device, "  di cui                   " + std::string(3 - mark.size(), ' ') +
                                mark + "       -0,01\n"))
        << rate;
    EXPECT_TRUE(Has(device, "\n" + mark + " ")) << rate;
  }
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  EXPECT_TRUE(Has(device, "Totale 40% n. 1                       0,99\n"));
}

// 10000 lines of 0,01: 100,00, of which 100,00 x 22 / 122 = 18,032... is tax.
TEST_F(Limits, TenThousandLines) {
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  for (int line = 0; line < 10000; ++line) ASSERT_EQ(Sell(1, kCent, "VITE"), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  int printed = 0;
  for (const std::string& line : device.paper_lines()) {
    if (line == "VITE                       22%        0,01") ++printed;
  }
  EXPECT_EQ(printed, 10000);
  EXPECT_TRUE(Has(device,
                  "TOTALE COMPLESSIVO                  100,00\n"
                  "di cui IVA                           18,03\n"));
  EXPECT_EQ(device.store().documents().back().lines.size(), 10000u);
  ASSERT_EQ(device.BeginDocTelematicCancel(1, 1, "", true, ""), RTF_SUCCESS);
  EXPECT_EQ(device.store().daily().net(), 0);
}

// Characters of two, three and four bytes, and of double width: no line is wider than the paper,
// and the amount is there.
TEST_F(Limits, NamesOfFiftyWideCharacters) {
  for (const std::string character :
       {"W", "\xC3\xA8", "\xE2\x82\xAC", "\xF0\x9F\x8D\x95", "\x1b|2CX"}) {
    std::string name;
    for (int count = 0; count < 50; ++count) name += character;
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(Sell(1, 12345600, name.c_str()), RTF_SUCCESS);
    ASSERT_EQ(
        device.PrintRecItemAdjustmentEx(RTF_FPTR_AT_AMOUNT_DISCOUNT, name.c_str(), 10000, -1, -2),
        RTF_SUCCESS);
    ASSERT_EQ(PayRest(), RTF_SUCCESS);
    EXPECT_TRUE(Has(device, " 22%     1234,56\n"));
    EXPECT_TRUE(Has(device, " 22%       -1,00\n"));
  }
  // Where a line is filled up with blanks a character is a column, else a byte is one.
  for (const std::string& line : device.paper_lines()) {
    const auto characters = std::count_if(line.begin(), line.end(), [](char c) {
      return (static_cast<unsigned char>(c) & 0xC0) != 0x80;
    });
    EXPECT_LE(static_cast<size_t>(characters), Paper::kColumns) << line;
  }
}

// A day of sale, credit note by its date, void and closing.
class LimitsOfTime : public testing::TestWithParam<std::pair<std::tm, const char*>> {};

TEST_P(LimitsOfTime, ADayGoesThrough) {
  const auto& [time, date] = GetParam();
  RegisterSettings settings = TestSettings();
  settings.clock = [time = time] { return time; };
  VirtualRegister device{settings};
  for (int sale = 0; sale < 2; ++sale) {
    ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
    ASSERT_EQ(SellOn(&device, 1, 100000), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }
  std::string digits;
  for (const char* c = date; *c != '\0'; ++c) {
    if (*c != '/') digits += *c;
  }
  ASSERT_EQ(device.BeginDocTelematicRefund(1, 1, digits.c_str(), ""), RTF_SUCCESS);
  ASSERT_EQ(SellOn(&device, 1, 50000), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  ASSERT_EQ(device.BeginDocTelematicCancel(2, 1, digits.c_str(), true, ""), RTF_SUCCESS);
  ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
  EXPECT_TRUE(Has(device, std::string("del ") + date + "\n"));
  EXPECT_TRUE(Has(device, std::string(13, ' ') + date + " 23:59\n"));
  EXPECT_EQ(device.store().grand_total(), 50000);
}

INSTANTIATE_TEST_SUITE_P(Days, LimitsOfTime,
                         testing::Values(std::pair(TimeOf(1970, 1, 1), "01/01/1970"),
                                         std::pair(TimeOf(2000, 2, 29), "29/02/2000"),
                                         std::pair(TimeOf(2024, 2, 29), "29/02/2024"),
                                         std::pair(TimeOf(2038, 1, 19), "19/01/2038"),
                                         std::pair(TimeOf(2100, 2, 28), "28/02/2100"),
                                         std::pair(TimeOf(2100, 12, 31), "31/12/2100")));

TEST_F(Limits, ADateThatNoCalendarHasIsNone) {
  ASSERT_EQ(device.BeginFiscalReceipt(false), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 100000), RTF_SUCCESS);
  ASSERT_EQ(PayRest(), RTF_SUCCESS);
  const std::string before = Snapshot();
  for (const char* date :
       {"29022100", "29022023", "30022024", "31042024", "00012024", "01132024"}) {
    EXPECT_EQ(device.BeginDocTelematicRefund(1, 1, date, ""), RTF_EFPTR_BAD_DATE) << date;
    EXPECT_EQ(device.last_refusal().cause, RefusalCause::kDate) << date;
  }
  for (const char* date : {"29022024", "29022000", "28022100", "01011970"}) {
    EXPECT_EQ(device.BeginDocTelematicRefund(1, 1, date, ""), RTF_EFPTR_BAD_DATE) << date;
    EXPECT_EQ(device.last_refusal().cause, RefusalCause::kOfAnotherDay) << date;
  }
  EXPECT_EQ(Snapshot(), before);
}

}  // namespace
}  // namespace lorimat
