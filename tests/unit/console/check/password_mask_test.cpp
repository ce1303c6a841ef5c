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

}  // namespace

}  // namespace lorimat::console
