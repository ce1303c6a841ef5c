#include "register/value/money.h"

#include <gtest/gtest.h>

#include <limits>

namespace lorimat {
namespace {

TEST(Money, RoundsToCentsHalfAwayFromZero) {
  EXPECT_EQ(RoundToCents(123449), 123400);
  EXPECT_EQ(RoundToCents(123450), 123500);
  EXPECT_EQ(RoundToCents(-123449), -123400);
  EXPECT_EQ(RoundToCents(-123450), -123500);
  EXPECT_EQ(RoundToCents(49), 0);
  EXPECT_EQ(RoundToCents(-50), -100);
  EXPECT_EQ(RoundToCents(0), 0);
}

TEST(Money, RoundingAtTheEndsOfTheRangeDoesNotOverflow) {
  const int64_t max = std::numeric_limits<int64_t>::max();  // ends in ...5807
  EXPECT_EQ(RoundToCents(max), max - 7);
  // ...5808 rounds to ...5800 on the negative side.
  EXPECT_EQ(RoundToCents(std::numeric_limits<int64_t>::min()), -(max - 7));
}

TEST(Money, LineAmountRoundsTheProductOnce) {
  EXPECT_EQ(LineAmount(3000, 12000), 36000);    // 3 x 1,20
  EXPECT_EQ(LineAmount(1500, 123400), 185100);  // 1,5 x 12,34 = 18,51
  EXPECT_EQ(LineAmount(333, 10000), 3300);      // 0,333
  EXPECT_EQ(LineAmount(335, 10000), 3400);      // 0,335 is a half
  EXPECT_EQ(LineAmount(1, 10000), 0);           // 0,001
  // 0,5 x 0,0099 = 0,00495: rounding the unit price first would give a cent.
  EXPECT_EQ(LineAmount(500, 99), 0);
}

TEST(Money, ProductsThatDoNotFitAreRefused) {
  const int32_t many = std::numeric_limits<int32_t>::max();
  EXPECT_EQ(LineAmount(many, std::numeric_limits<int64_t>::max()), std::nullopt);
  EXPECT_EQ(LineAmount(many, std::numeric_limits<int64_t>::min()), std::nullopt);
  EXPECT_EQ(LineAmount(std::numeric_limits<int32_t>::min(), std::numeric_limits<int64_t>::min()),
            std::nullopt);
}

TEST(Money, PercentageOfAnAmount) {
  EXPECT_EQ(PercentageOf(100000, 100000), 10000);  // 10 % of 10,00
  EXPECT_EQ(PercentageOf(12300, 125000), 1500);    // 12,5 % of 1,23 = 0,15375
  EXPECT_EQ(PercentageOf(1000, 50000), 100);       // 5 % of 0,10 = 0,005 rounds up
}

TEST(Money, ContainedTaxIsRoundedToCents) {
  EXPECT_EQ(VatPart(122000, 220000), 22000);  // 12,20 at 22 %: 2,20
  EXPECT_EQ(VatPart(100000, 220000), 18000);  // 10,00: 1,8032...
  EXPECT_EQ(VatPart(100000, 100000), 9100);   // 10,00 at 10 %: 0,9090...
  EXPECT_EQ(VatPart(100000, 0), 0);
  EXPECT_EQ(VatPart(100000, -1), 0);
  EXPECT_EQ(VatPart(-122000, 220000), -22000);
}

TEST(Money, SpreadGivesLeftOverCentsToTheLargestRemainders) {
  // 1,00 over 10,00 5,00 5,00: exact.
  EXPECT_EQ(Spread(10000, {{1, 100000}, {2, 50000}, {3, 50000}}),
            (std::map<int, Amount>{{1, 5000}, {2, 2500}, {3, 2500}}));
  // 1,00 over three equal parts: 33 each, the cent left over goes to the first.
  EXPECT_EQ(Spread(10000, {{1, 100}, {2, 100}, {3, 100}}),
            (std::map<int, Amount>{{1, 3400}, {2, 3300}, {3, 3300}}));
  // 0,10 over 1 and 2: 3,33 and 6,67 cents; the larger remainder takes the cent.
  EXPECT_EQ(Spread(1000, {{1, 100}, {2, 200}}), (std::map<int, Amount>{{1, 300}, {2, 700}}));
  EXPECT_EQ(Spread(-1000, {{1, 100}, {2, 200}}), (std::map<int, Amount>{{1, -300}, {2, -700}}));
  EXPECT_TRUE(Spread(1000, {{1, 0}}).empty());
  EXPECT_TRUE(Spread(1000, {}).empty());
}

TEST(Money, Formats) {
  EXPECT_EQ(FormatAmount(123400), "12,34");
  EXPECT_EQ(FormatAmount(-500), "-0,05");
  EXPECT_EQ(FormatAmount(0), "0,00");
  EXPECT_EQ(FormatUnitPrice(12000), "1,20");
  EXPECT_EQ(FormatUnitPrice(12345), "1,2345");
  EXPECT_EQ(FormatUnitPrice(12340), "1,234");
  EXPECT_EQ(FormatQuantity(3000), "3");
  EXPECT_EQ(FormatQuantity(1500), "1,5");
  EXPECT_EQ(FormatQuantity(1), "0,001");
  EXPECT_EQ(FormatRate(220000), "22%");
  EXPECT_EQ(FormatRate(73000), "7,3%");
  EXPECT_EQ(FormatRate(0), "0%");
  EXPECT_EQ(FormatUnitPrice(std::numeric_limits<int64_t>::min()), "-922337203685477,5808");
}

TEST(Money, ParsesKeyedDigits) {
  EXPECT_EQ(ParseDecimal("12", 2, 0), 1200);
  EXPECT_EQ(ParseDecimal("1234", 2, 2), 1234);
  EXPECT_EQ(ParseDecimal("12.5", 2, 2), 1250);
  EXPECT_EQ(ParseDecimal(".5", 2, 0), 50);
  EXPECT_EQ(ParseDecimal("5.", 2, 0), 500);
  EXPECT_EQ(ParseDecimal("1.234", 2, 0), std::nullopt);
  EXPECT_EQ(ParseDecimal("1.2.3", 2, 0), std::nullopt);
  EXPECT_EQ(ParseDecimal("1x", 2, 0), std::nullopt);
  EXPECT_EQ(ParseDecimal("", 2, 0), std::nullopt);
  EXPECT_EQ(ParseDecimal(".", 2, 0), std::nullopt);
  EXPECT_EQ(ParseDecimal("99999999999999999999", 0, 0), std::nullopt);
  EXPECT_EQ(ParseDecimal("9000000000000000000", 4, 0), std::nullopt);
}

}  // namespace
}  // namespace lorimat
