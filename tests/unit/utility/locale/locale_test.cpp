#include "utility/locale/locale.h"

#include <gtest/gtest.h>

#include <type_traits>

#include "utility/locale/texts_default.h"
#include "utility/locale/texts_greek.h"

namespace {

static_assert(std::is_same_v<decltype(loc), Locale>);
static_assert(sizeof(Locale::Languages) == 1);
static_assert(Locale::kDefault == 0 && Locale::kItalian == 1 && Locale::kEnglish == 2 &&
              Locale::kFrench == 3 && Locale::kGreek == 4 && Locale::kEnd == 5);
// The object is built by the compiler.
constexpr Locale built_by_the_compiler;
static_assert(built_by_the_compiler.number_decimal_digits_ == 2);
static_assert(built_by_the_compiler.currency_group_size_ == 3);

TEST(Locale, StartsWithItsDefaults) {
  const Locale locale;
  EXPECT_EQ(2, locale.number_decimal_digits_);
  EXPECT_EQ(',', locale.number_decimal_separator_);
  EXPECT_FALSE(locale.number_force_decimals_);
  EXPECT_EQ(0, locale.number_group_size_);
  EXPECT_EQ('.', locale.number_group_separator_);
  EXPECT_EQ(2, locale.currency_decimal_digits_);
  EXPECT_EQ(',', locale.currency_decimal_separator_);
  EXPECT_TRUE(locale.currency_force_decimals_);
  EXPECT_EQ(3, locale.currency_group_size_);
  EXPECT_EQ('.', locale.currency_group_separator_);
  EXPECT_EQ(0, locale.language_index_);
  EXPECT_EQ(0, locale.currency_index_);
}

TEST(Languages, TwoAreAvailable) {
  EXPECT_EQ(2, Locale::getAvailableLanguagesCount());
  EXPECT_EQ(Locale::kDefault, Locale::getLanguageCode(0));
  EXPECT_EQ(Locale::kGreek, Locale::getLanguageCode(1));
  EXPECT_EQ(0, Locale::getLanguageIndexFromCode(Locale::kDefault));
  EXPECT_EQ(1, Locale::getLanguageIndexFromCode(Locale::kGreek));
}

TEST(Languages, TheOthersAreNotAvailable) {
  EXPECT_EQ(-1, Locale::getLanguageIndexFromCode(Locale::kItalian));
  EXPECT_EQ(-1, Locale::getLanguageIndexFromCode(Locale::kEnglish));
  EXPECT_EQ(-1, Locale::getLanguageIndexFromCode(Locale::kFrench));
  EXPECT_EQ(-1, Locale::getLanguageIndexFromCode(Locale::kEnd));
  EXPECT_EQ(-1, Locale::getLanguageIndexFromCode(static_cast<Locale::Languages>(255)));
}

TEST(Languages, AnIndexOutOfRangeIsTheDefaultLanguage) {
  EXPECT_EQ(Locale::kDefault, Locale::getLanguageCode(2));
  EXPECT_EQ(Locale::kDefault, Locale::getLanguageCode(-1));
  EXPECT_EQ(Locale::kDefault, Locale::getLanguageCode(INT32_MAX));
  EXPECT_EQ(Locale::kDefault, Locale::getLanguageCode(INT32_MIN));
}

TEST(Languages, TheIndexIsTakenInRangeOnly) {
  Locale locale;
  locale.setCurrentLanguageIndex(1);
  EXPECT_EQ(1, locale.getCurrentLanguageIndex());
  EXPECT_EQ(Locale::kGreek, locale.getCurrentLanguageCode());
  locale.setCurrentLanguageIndex(2);
  EXPECT_EQ(1, locale.getCurrentLanguageIndex());
  locale.setCurrentLanguageIndex(-1);
  EXPECT_EQ(1, locale.getCurrentLanguageIndex());
  locale.setCurrentLanguageIndex(0);
  EXPECT_EQ(0, locale.getCurrentLanguageIndex());
}

TEST(Languages, ACodeThatIsNotAvailableSelectsTheDefault) {
  Locale locale;
  for (const Locale::Languages code : {Locale::kFrench, Locale::kItalian, Locale::kEnglish,
                                       Locale::kEnd, static_cast<Locale::Languages>(200)}) {
    locale.setCurrentLanguageCode(Locale::kGreek);
    EXPECT_EQ(1, locale.getCurrentLanguageIndex());
    locale.setCurrentLanguageCode(code);
    EXPECT_EQ(0, locale.getCurrentLanguageIndex());
    EXPECT_EQ(Locale::kDefault, locale.getCurrentLanguageCode());
  }
}

TEST(Languages, EachTellsItsEncoding) {
  Locale locale;
  EXPECT_STREQ("utf-8", locale.getCurrentLanguageEncoding());
  locale.setCurrentLanguageCode(Locale::kGreek);
  EXPECT_STREQ("cp1253", locale.getCurrentLanguageEncoding());
}

TEST(Languages, HaveNamesInTheCurrentLanguage) {
  Locale locale;
  EXPECT_STREQ("DEFAULT", locale.getLanguageName(Locale::kDefault));
  EXPECT_STREQ("ITALIANO", locale.getLanguageName(Locale::kItalian));
  EXPECT_STREQ("INGLESE", locale.getLanguageName(Locale::kEnglish));
  EXPECT_STREQ("FRANCESE", locale.getLanguageName(Locale::kFrench));
  EXPECT_STREQ("GRECO", locale.getLanguageName(Locale::kGreek));
  locale.setCurrentLanguageCode(Locale::kGreek);
  // epsilon, lambda, lambda, eta, nu, iota, kappa, alpha
  EXPECT_STREQ("\xC5\xCB\xCB\xC7\xCD\xC9\xCA\xC1", locale.getLanguageName(Locale::kGreek));
}

TEST(Languages, NoNameFromTheEndOn) {
  const Locale locale;
  EXPECT_STREQ("", locale.getLanguageName(Locale::kEnd));
  EXPECT_STREQ("", locale.getLanguageName(static_cast<Locale::Languages>(6)));
  EXPECT_STREQ("", locale.getLanguageName(static_cast<Locale::Languages>(255)));
}

TEST(Languages, AreNamedByIndexToo) {
  const Locale locale;
  EXPECT_STREQ("DEFAULT", locale.getLanguageName(0));
  EXPECT_STREQ("GRECO", locale.getLanguageName(1));
  // Out of range it is the default language's name.
  EXPECT_STREQ("DEFAULT", locale.getLanguageName(2));
  EXPECT_STREQ("DEFAULT", locale.getLanguageName(-1));
}

TEST(Texts, FollowTheCurrentLanguage) {
  Locale locale;
  EXPECT_STREQ("SCONTO", locale.getText(TextCode::kDiscount));
  locale.setCurrentLanguageCode(Locale::kGreek);
  EXPECT_STREQ("\xC5\xCA\xD0\xD4\xD9\xD3\xC7 \xD0\xCF\xD3\xCF\xD5",
               locale.getText(TextCode::kDiscount));
  EXPECT_STREQ("SCONTO", locale.getDefaultLanguageText(TextCode::kDiscount));
}

TEST(Texts, ErrorTextsEndAt149) {
  Locale locale;
  EXPECT_STREQ("ERR.INTERNO", locale.getErrorText(0));
  EXPECT_STREQ("CARTA SCADUTA", locale.getErrorText(148));
  EXPECT_STREQ("", locale.getErrorText(149));
  EXPECT_STREQ("", locale.getErrorText(UINT32_MAX));
  locale.setCurrentLanguageCode(Locale::kGreek);
  EXPECT_STREQ("\xC5\xD3\xD9\xD4. \xCB\xC1\xC8\xCF\xD3", locale.getErrorText(0));
  EXPECT_STREQ("", locale.getErrorText(149));
}

TEST(Texts, AnUntranslatedCodeIsTheDefaultTextItself) {
  Locale locale;
  locale.setCurrentLanguageCode(Locale::kGreek);
  EXPECT_EQ(texts_default::text_kBuoniMonouso, locale.getText(TextCode::kBuoniMonouso));
  EXPECT_STREQ("BUONI MONOUSO", locale.getText(TextCode::kBuoniMonouso));
}

}  // namespace
