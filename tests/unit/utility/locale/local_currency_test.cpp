#include <gtest/gtest.h>

#include <optional>
#include <string>

#include "unit/utility/locale/exact_text.h"
#include "utility/locale/locale.h"
#include "utility/number.h"

namespace {

// --- Money -------------------------------------------------------------------------------

std::string Money(const Number& number, bool symbol = false, bool full = false,
                  const Locale& locale = Locale()) {
  char s[64];
  return locale.toLocalCurrencyFullPrecision(s, sizeof s, number, symbol, full) ? s : "false";
}

TEST(ToLocalCurrency, ShowsTheEuroSignGroupsAndCents) {
  char s[32];
  const Locale locale;
  EXPECT_TRUE(locale.toLocalCurrency(s, sizeof s, Number(123456750, 2), true));
  EXPECT_STREQ("\x80 1.234.567,50", s);
  EXPECT_TRUE(locale.toLocalCurrency(s, sizeof s, Number(123456750, 2), false));
  EXPECT_STREQ("1.234.567,50", s);
}

TEST(ToLocalCurrency, PutsTheSignBehindTheSymbol) {
  EXPECT_EQ("\x80 -0,50", Money(Number(-5, 1), true));
}

TEST(ToLocalCurrency, ForcedDecimalsAreFilledAndCut) {
  EXPECT_EQ("1,00", Money(Number(1)));
  EXPECT_EQ("1,23", Money(Number(12345, 4)));
  EXPECT_EQ("0,00", Money(Number()));
}

TEST(ToLocalCurrency, FullPrecisionKeepsWhatThereIs) {
  EXPECT_EQ("1,2345", Money(Number(12345, 4), false, true));
  EXPECT_EQ("1,50", Money(Number(15, 1), false, true));
}

TEST(ToLocalCurrency, WithoutForceFewerDecimalsStay) {
  Locale locale;
  locale.currency_force_decimals_ = false;
  EXPECT_EQ("1,5", Money(Number(15, 1), false, false, locale));
  EXPECT_EQ("1", Money(Number(1), false, false, locale));
  EXPECT_EQ("1,2345", Money(Number(12345, 4), false, true, locale));
}

TEST(ToLocalCurrency, WithoutForceTheFractionIsNotCutWithItsPlaces) {
  Locale locale;
  locale.currency_force_decimals_ = false;
  EXPECT_EQ("1,2345", Money(Number(12345, 4), false, false, locale));
  // Three digits do not fill their places: the width is two, the value 5.
  EXPECT_EQ("1,05", Money(Number(1005, 3), false, false, locale));
  locale.currency_decimal_digits_ = 0;
  EXPECT_EQ("1", Money(Number(15, 1), false, false, locale));
}

TEST(ToLocalCurrency, OtherCurrenciesShowTheirName) {
  Locale locale;
  locale.SetCurrentCurrency(3);
  EXPECT_EQ("S$ 1,234.50", Money(Number(12345, 1), true, false, locale));
  locale.SetCurrentCurrency(6);
  EXPECT_EQ("\xA3 1,00", Money(Number(1), true, false, locale));
}

TEST(ToLocalCurrency, EverySizeIsSafe) {
  const Locale locale;
  // The symbol, a blank and "-1.234,50".
  for (size_t n = 0; n <= 14; ++n) {
    ExactBuffer buffer(n);
    const bool ok = locale.toLocalCurrency(buffer.get(), n, Number(-12345, 1), true);
    EXPECT_EQ(n >= 12, ok) << n;
    if (n > 0) {
      EXPECT_EQ(ok ? "\x80 -1.234,50" : "", buffer.text()) << n;
    }
  }
}

TEST(FromLocalCurrency, ReadsNoFurtherThanItsLength) {
  const Locale locale;
  Number number;
  ASSERT_TRUE(locale.fromLocalCurrency("123456", 3, number));
  EXPECT_EQ(123, number.toInt64());
}

std::optional<Number> readMoney(const std::string& text) {
  const ExactText exact(text);
  const Locale locale;
  Number number;
  if (!locale.fromLocalCurrency(exact.get(), text.size(), number)) return std::nullopt;
  return number;
}

TEST(FromLocalCurrency, TheSignHasNoEffect) {
  ASSERT_TRUE(readMoney("-2,00").has_value());
  EXPECT_EQ(20000, readMoney("-2,00")->toInt64(4));
  EXPECT_FALSE(readMoney("-2,00")->isNegative());
  EXPECT_EQ(15000, readMoney("-1,50")->toInt64(4));
}

TEST(FromLocalCurrency, ReadsGroupsAndDecimals) {
  EXPECT_EQ(12345675, readMoney("1.234.567,5")->toInt64(1));
  EXPECT_EQ(12, readMoney("12")->toInt64());
  EXPECT_EQ(12, readMoney("12,")->toInt64(0));
  EXPECT_EQ(5, readMoney(",5")->toInt64(1));
  EXPECT_EQ(0, readMoney(".")->toInt64());
}

TEST(FromLocalCurrency, RefusesAnythingElse) {
  EXPECT_FALSE(readMoney("").has_value());
  EXPECT_FALSE(readMoney("-").has_value());
  EXPECT_FALSE(readMoney(std::string(1, '\0')).has_value());
  EXPECT_FALSE(readMoney("--1").has_value());
  EXPECT_FALSE(readMoney("1 2").has_value());
  EXPECT_FALSE(readMoney("1,2,3").has_value());
  EXPECT_FALSE(readMoney("1,2.3").has_value());
  EXPECT_FALSE(readMoney("1,2x").has_value());
}

TEST(FromLocalCurrency, OverflowsAsTheNumberDoes) {
  EXPECT_TRUE(readMoney(std::string(17, '9'))->isOverflow());
  EXPECT_EQ(9999999999999999, readMoney(std::string(16, '9'))->toInt64());
  EXPECT_TRUE(readMoney(std::string(100000, '9'))->isOverflow());
  // A division needs four digits of room: 15 digits with decimals have none.
  EXPECT_TRUE(readMoney("99999999999999,9")->isOverflow());
}

TEST(FromLocalCurrency, TakesEveryByteAlone) {
  for (int byte = 0; byte < 256; ++byte) {
    const bool expected = (byte >= '0' && byte <= '9') || byte == '.' || byte == ',';
    EXPECT_EQ(expected, readMoney(std::string(1, static_cast<char>(byte))).has_value()) << byte;
  }
}

// --- Currencies --------------------------------------------------------------------------

TEST(Currencies, NineRows) {
  const char* const names[] = {"EURO", "CHF", "HK$", "S$", "MYR", "MOP$", "\xA3", "SEK", "Z\x90"};
  ASSERT_EQ(9, Locale::GetCurrencyCount());
  for (int i = 0; i < 9; ++i) {
    EXPECT_STREQ(names[i], Locale::GetCurrencyName(i));
    EXPECT_EQ(TextCode::kNull, Locale::currencies[i].description_code);
    EXPECT_EQ(2, Locale::currencies[i].decimal_digits);
    EXPECT_EQ(i == 3 ? '.' : ',', Locale::currencies[i].decimal_separator);
  }
}

TEST(Currencies, TheCurrentOneSetsDigitsAndSeparators) {
  Locale locale;
  EXPECT_EQ(0, locale.GetCurrentCurrency());
  EXPECT_STREQ("EURO", locale.GetCurrentCurrencyName());
  locale.number_decimal_digits_ = 4;
  locale.SetCurrentCurrency(3);
  EXPECT_EQ(3, locale.GetCurrentCurrency());
  EXPECT_STREQ("S$", locale.GetCurrentCurrencyName());
  EXPECT_EQ(2, locale.number_decimal_digits_);
  EXPECT_EQ(2, locale.currency_decimal_digits_);
  EXPECT_EQ('.', locale.number_decimal_separator_);
  EXPECT_EQ('.', locale.currency_decimal_separator_);
  EXPECT_EQ(',', locale.currency_group_separator_);
  // The group separator of plain numbers is not touched.
  EXPECT_EQ('.', locale.number_group_separator_);
  locale.SetCurrentCurrency(0);
  EXPECT_EQ('.', locale.currency_group_separator_);
  EXPECT_EQ(',', locale.currency_decimal_separator_);
}

TEST(Pow10, TheEighthPowerStandsTwice) {
  EXPECT_EQ(10000U, Locale::pow10[4]);
  EXPECT_EQ(100000000U, Locale::pow10[8]);
  EXPECT_EQ(100000000U, Locale::pow10[9]);
  EXPECT_EQ(1000000000U, Locale::pow10[10]);
}

}  // namespace
