// What stands in the place of an operator's password.
#include "console/check/password_mask.h"

#include <gtest/gtest.h>

#include <string>

namespace lorimat::console {
namespace {

std::string Masked(const std::string& line) {
  static const Language words = Language::FromText(
      "[OPCOD]\n10=VEND\n53=POPER\n[10]\n1=REP\n4=PRE\n[53]\n1=OPE\n2=DES\n3=PASS\n");
  return WithoutPasswords(&words, line);
}

TEST(PasswordMask, TheValueOfAnOperatorsPasswordBecomesStars) {
  EXPECT_EQ("POPER OPE=3, DES='ANNA', PASS='****'", Masked("POPER OPE=3, DES='ANNA', PASS='1234'"));
  EXPECT_EQ("poper p = ****, DES='PASS=1'", Masked("poper p = 1234, DES='PASS=1'"));
  EXPECT_EQ("#53 #1=3, #3='**''*'", Masked("#53 #1=3, #3='12''3'"));
  EXPECT_EQ(" POPER PASS='****', OPE=3", Masked(" POPER PASS='1, 2', OPE=3"));
}

TEST(PasswordMask, ALineThatIsMisspeltShowsNoneEither) {
  EXPECT_EQ("POPRE OPE=3, PASS='****'", Masked("POPRE OPE=3, PASS='1234'"));
  EXPECT_EQ("POPER OPE=3 PASS='****", Masked("POPER OPE=3 PASS='1234"));
  EXPECT_EQ("POPER PASS=''****'", Masked("POPER PASS=''1234'"));
  EXPECT_EQ("POPER PASS=", Masked("POPER PASS="));
  EXPECT_EQ("X pass='****'", WithoutPasswords(nullptr, "X pass='1234'"));
}

TEST(PasswordMask, OtherLinesStayAsTheyAre) {
  for (const char* line : {"", "=", "VEND REP=1, P=1234", "VEND PRE=1.00, DES='PASS'", "; PASS",
                           "POPER OPE=3, DES='PASS'"}) {
    EXPECT_EQ(line, Masked(line));
  }
}

// --- What a recording does not show.

std::string Blanked(const std::string& line) {
  static const Language words = Language::FromText(
      "[OPCOD]\n9=INP\n10=VEND\n23=FATTURA\n53=POPER\n[9]\n1=NUM\n2=ALFA\n3=LOTTERIA\n4=TASTO\n"
      "[10]\n1=REP\n4=PRE\n7=DES\n[23]\n1=TIPO\n4=RIGA1\n5=RIGA2\n[53]\n1=OPE\n2=DES\n3=PASS\n");
  return WithoutSecrets(&words, line);
}

TEST(SecretMask, PasswordsCodesAndCustomersKeepTheirFormAlone) {
  EXPECT_EQ("POPER OPE=3, DES='ANNA', PASS='XXXX00'",
            Blanked("POPER OPE=3, DES='ANNA', PASS='abCD12'"));
  EXPECT_EQ("INP LOTTERIA='XXXX0000', TASTO=5", Blanked("INP LOTTERIA='ABCD1234', TASTO=5"));
  EXPECT_EQ("INP ALFA=XXXXXX00X00X000X", Blanked("INP ALFA=RSSMRA80A01H501U"));
  EXPECT_EQ("FATTURA TIPO=2, RIGA1='XXXXX XXX', RIGA2='XXX XXXX 0'",
            Blanked("FATTURA TIPO=2, RIGA1='ROSSI SRL', RIGA2='VIA ROMA 1'"));
  EXPECT_EQ("IMP LOTTERIA=XXXX0000", Blanked("IMP LOTTERIA=ABCD1234"));
}

TEST(SecretMask, AmountsThatAreKeyedAreNone) {
  EXPECT_EQ("INP NUM=1000.00", Blanked("INP NUM=1000.00"));
  EXPECT_EQ("INP NUM=00000000000", Blanked("INP NUM=12345678901"));
}

TEST(SecretMask, OtherLinesStayAsTheyAre) {
  for (const char* line :
       {"", "=", "VEND REP=1, PRE=12345678901", "VEND DES='ANNA'", "; FATTURA RIGA1='ROSSI'"}) {
    EXPECT_EQ(line, Blanked(line));
  }
}

}  // namespace

}  // namespace lorimat::console
