#include "console/check/line_traps.h"

#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <iterator>
#include <set>
#include <string>

#include "console/check/batch_check.h"
#include "console/check/number_reading.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "unit/support/null_client.h"

namespace lorimat::console {

namespace {

std::string TextOf(const std::string& name) {
  std::ifstream file(std::string(LORIMAT_SOURCE_DIR) + "/" + name);
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

std::set<std::string> RulesOf(const Language& language, const std::string& line) {
  Findings findings;
  BatchCheck(language, findings).Take({1, line, line.size(), 0});
  std::set<std::string> rules;
  for (const Finding& finding : findings.sorted()) rules.insert(finding.rule());
  return rules;
}

// Keeps the tender that it was given.
class TenderClient : public NullClient {
 public:
  int PrintRecTotalEx(int64_t, const char* tender, bool) override {
    tender_ = tender;
    return 0;
  }
  std::string tender_;
};

}  // namespace

// A number of the table has an identifier of its own; any other goes to the device as it stands.
TEST(LineTraps, TheTendersAreThoseOfTheLibrary) {
  const Language language = Language::FromText(TextOf("language/merkelin.ini"));
  TenderClient client;
  EcrCmdCommand& translator = language.translator();
  translator.TStato.bInitOK = true;
  translator.rtfClient_ = &client;
  for (int tender = 0; tender <= 400; ++tender) {
    const std::string number = std::to_string(tender);
    std::string line = "CHIU TEND=" + number;
    std::array<char, 4096> answer{};
    ASSERT_EQ(0, translator.EcrCmd(line.data(), answer.data()));
    // The voucher is 30 on both sides.
    const bool known = client.tender_ != number || tender == 30;
    EXPECT_EQ(known, RulesOf(language, "CHIU TEND=" + number).count("tender-unknown") == 0)
        << tender;
  }
}

// Of eight characters each four are a number: "000X" is 0, and names no document.
TEST(LineTraps, EightCharactersThatAreNoDigitsAreNoDocument) {
  const Language language = Language::FromText(TextOf("language/merkelin.ini"));
  EXPECT_EQ(RulesOf(language, "NOTACRED DOC='0001000X'").count("document-number"), 1u);
  EXPECT_EQ(RulesOf(language, "NOTACRED DOC='00010001'").count("document-number"), 0u);
}

TEST(LineTraps, OnlyADepositsArticleMayHaveAnyLength) {
  const Language language = Language::FromText(TextOf("language/merkelin.ini"));
  const std::string sale = "VEND ART='" + std::string(90, '8') + "', PRE=1.00";
  EXPECT_EQ(RulesOf(language, sale).count("text-cut"), 1u);
  EXPECT_EQ(RulesOf(language, sale + ", ACCONTO").count("text-cut"), 0u);
  EXPECT_EQ(RulesOf(language, sale + ", MONOUSO").count("text-cut"), 0u);
}

TEST(LineTraps, AFlagIsSetByEveryWordThatSaysNo) {
  const Language language = Language::FromText(TextOf("language/merkelin.ini"));
  for (const char* no : {"'N'", "'no'", "'Falso'", "'f'", "0", "NO", "FALSO"}) {
    const std::string line = std::string("VEND REP=1, PRE=1.00, RESO=") + no;
    EXPECT_EQ(RulesOf(language, line).count("flag-set-by-no"), 1u) << no;
  }
  for (const char* yes : {"'S'", "SI", "2"}) {
    const std::string line = std::string("VEND REP=1, PRE=1.00, RESO=") + yes;
    EXPECT_EQ(RulesOf(language, line).count("flag-set-by-no"), 0u) << yes;
  }
}

TEST(NumberReading, ReadsAsTheLibraryDoes) {
  EXPECT_EQ("150", ReadNumber(NumberKind::kPrice, "1,50").text);
  EXPECT_EQ("0", ReadNumber(NumberKind::kPrice, "1.234,56").text);
  EXPECT_EQ("0.5", ReadNumber(NumberKind::kPrice, ".5").text);
  EXPECT_EQ("-12.3456", ReadNumber(NumberKind::kPrice, "-12.3456").text);
  EXPECT_EQ("0.704", ReadNumber(NumberKind::kQuantity, "4294968").text);
  EXPECT_EQ("2147483647", ReadNumber(NumberKind::kDepartment, "4294967297").text);
  EXPECT_EQ("0", ReadNumber(NumberKind::kWhole, "VERO").text);
}

TEST(NumberReading, KnowsWhatIsReadAsItIsWritten) {
  for (const char* number : {"1", "01", "1.50", "1.5000", ".5", "5.", "-0", "-1.5", "0.0001"}) {
    EXPECT_TRUE(ReadNumber(NumberKind::kPrice, number).exact) << number;
  }
  for (const char* number : {"1.50000", "0.00001", "9999999999999999999"}) {
    EXPECT_TRUE(ReadNumber(NumberKind::kPrice, number).plain) << number;
    EXPECT_FALSE(ReadNumber(NumberKind::kPrice, number).exact) << number;
  }
  for (const char* number : {"", "-", ".", "1,5", "1 ", "1.2.3", "+1", "1e3"}) {
    EXPECT_FALSE(ReadNumber(NumberKind::kPrice, number).plain) << number;
  }
}

TEST(NumberReading, GuessesTheNumberThatWasMeant) {
  EXPECT_EQ("1.50", LikelyNumber(NumberKind::kPrice, "1,50"));
  EXPECT_EQ("1234.56", LikelyNumber(NumberKind::kPrice, "1.234,56"));
  EXPECT_EQ("1234.56", LikelyNumber(NumberKind::kPrice, "1,234.56"));
  EXPECT_EQ("1234567", LikelyNumber(NumberKind::kPrice, "1.234.567"));
  EXPECT_EQ("1234.5", LikelyNumber(NumberKind::kPrice, "1 234,5"));
  EXPECT_EQ("1.5", LikelyNumber(NumberKind::kQuantity, "1,5"));
  for (const char* number : {"", ",", "x", "1e3", "1,23456", "1-2", "EUR 5"}) {
    EXPECT_EQ("", LikelyNumber(NumberKind::kPrice, number)) << number;
  }
}

}  // namespace lorimat::console
