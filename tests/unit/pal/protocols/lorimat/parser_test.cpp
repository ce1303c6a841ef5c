// The tokenisers, called directly with tables of the test's own.

#include <gtest/gtest.h>

#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"

namespace {

class Parser : public ::testing::Test {
 protected:
  void command(int row, const char* name, int id = 0) {
    copy_text(t().szOpCodes[row], name);
    t().iIdOpCodes[row] = id != 0 ? id : row;
    if (row > t().iTotOpCodes) t().iTotOpCodes = row;
  }
  void field(int opcode, int row, const char* name, int number = 0) {
    copy_text(t().szKeyI[opcode][row], name);
    t().iNCI[opcode][row] = number != 0 ? number : row;
    if (row > t().iNumOper[opcode]) t().iNumOper[opcode] = row;
  }
  void symbol(const char* name, int value) {
    copy_text(t().szSimb[++t().iTotSimb], name);
    t().iVSimb[t().iTotSimb] = value;
  }

  // The opcode id of a line; a refusal gives minus its index.
  int opcode(std::string line) {
    int place = 1;
    int id = -1;
    const int result = t().GetCodOp(line.data(), &place, &id);
    place_ = place;
    return result == 0 ? id : -result;
  }
  int number_of(int opcode, std::string key) {
    int number = -1;
    const int result = t().GetNumOper(opcode, key.data(), &number);
    return result == 0 ? number : -result;
  }
  int fields(int opcode, std::string line) {
    int place = 1;
    return t().GetCampi(line.data(), opcode, &place);
  }
  int operand(std::string line) {
    int place = 1;
    quoted_ = false;
    const int result = t().GetOper(line.data(), &place, key_, value_, &quoted_);
    place_ = place;
    return result;
  }
  int batch_operand(std::string line) {
    int place = 1;
    quoted_ = false;
    const int result = t().GetEMOper(line.data(), &place, batch_value_, &quoted_);
    place_ = place;
    return result;
  }

  EcrCmdCommand& t() { return *translator_; }

  std::unique_ptr<EcrCmdCommand> translator_ = std::make_unique<EcrCmdCommand>();
  char key_[MAXSIMBLN + 1];
  char value_[MAXVALLN + 1];
  char batch_value_[256];
  bool quoted_;
  int place_;
};

TEST_F(Parser, AnExactNameIsFoundBehindAnAbbreviation) {
  command(1, "PERCA");
  std::memset(t().szOpCodes[2], 0, sizeof t().szOpCodes[2]);
  command(2, "PER");
  EXPECT_EQ(opcode("PERCA"), 1);
  EXPECT_EQ(opcode("PER"), 2);
  EXPECT_EQ(opcode("PE"), -2);
}

TEST_F(Parser, TheOrderOfTheRowsDecidesOnAmbiguity) {
  command(1, "PER");
  command(2, "PERCA");
  EXPECT_EQ(opcode("PERCATO"), -2);
  command(1, "PERCA");
  std::memset(t().szOpCodes[2], 0, sizeof t().szOpCodes[2]);
  command(2, "PER");
  EXPECT_EQ(opcode("PERCATO"), 1);
}

TEST_F(Parser, AnExactNameBehindTwoAbbreviationsComesTooLate) {
  command(1, "VENDITA");
  command(2, "VENDO");
  command(3, "VEN");
  EXPECT_EQ(opcode("VEN"), -2);
}

TEST_F(Parser, TwoNamesThatEqualTheWordAreAmbiguous) {
  command(1, "CHIU", 11);
  command(2, "chiu", 12);
  EXPECT_EQ(opcode("CHIU"), -2);
}

TEST_F(Parser, TheWordEndsAtABlankOrTab) {
  command(1, "CHIU");
  EXPECT_EQ(opcode("chiu   T=1"), 1);
  EXPECT_EQ(place_, 8);
  EXPECT_EQ(opcode("CHIU"), 1);
  EXPECT_EQ(place_, 5);
  EXPECT_EQ(opcode("CHIU\tT"), 1);
  EXPECT_EQ(opcode("CHIU,T"), 1);  // the word is longer than the name
}

TEST_F(Parser, AWordIsComparedOnSixteenCharacters) {
  command(1, "ABCDEFGHIJ");
  EXPECT_EQ(opcode("ABCDEFGHIJKLMNOPQRSTUVWXYZ"), 1);
}

TEST_F(Parser, NumbersReachIdsWithoutNames) {
  command(12, "X");
  EXPECT_EQ(opcode("#10"), 10);
  EXPECT_EQ(opcode("#0010"), 10);
  EXPECT_EQ(opcode("#12"), 12);
  EXPECT_EQ(opcode("#13"), -1);
  EXPECT_EQ(opcode("#0"), -1);
  EXPECT_EQ(opcode("#x1"), -1);
  EXPECT_EQ(opcode("#"), -1);
  EXPECT_EQ(opcode("#99999999999999999999"), -1);
}

TEST_F(Parser, AnUnknownWordIsNotFound) {
  command(1, "CHIU");
  EXPECT_EQ(opcode("VEND"), -1);
  EXPECT_EQ(opcode("\xFF\x80"), -1);
}

TEST_F(Parser, FieldNamesFollowTheSameRuleWithAliases) {
  field(10, 1, "REP");
  field(10, 2, "REPARTO", 1);
  field(10, 3, "PREZZO");
  field(10, 4, "PRE", 3);
  field(10, 5, "PRELINE");
  EXPECT_EQ(number_of(10, "REP"), 1);
  EXPECT_EQ(number_of(10, "RE"), 1);  // two names of one number
  EXPECT_EQ(number_of(10, "PREZZO"), 3);
  EXPECT_EQ(number_of(10, "PR"), -5);
  // PREZZO matches first, its alias PRE does not stop the scan, PRELINE does, and is not
  // exact: the alias written in full comes too late.
  EXPECT_EQ(number_of(10, "PRE"), -5);
  EXPECT_EQ(number_of(10, "PREL"), -5);  // PRE is a beginning of the word, PRELINE conflicts
  EXPECT_EQ(number_of(10, "QTA"), -4);
  EXPECT_EQ(number_of(10, "#5"), 5);
  EXPECT_EQ(number_of(10, "#6"), -4);
  EXPECT_EQ(number_of(10, "#0"), -4);
}

TEST_F(Parser, AnExactFieldNameBehindAnAbbreviationWins) {
  field(10, 1, "DESCR");
  field(10, 2, "DES");
  EXPECT_EQ(number_of(10, "DES"), 2);
  EXPECT_EQ(number_of(10, "DE"), -5);
}

TEST_F(Parser, ANumberSkipsTheBinding) {
  field(10, 1, "A", 7);
  EXPECT_EQ(number_of(10, "A"), 7);
  EXPECT_EQ(number_of(10, "#1"), 1);
}

TEST_F(Parser, AnEmptyKeyMatchesOnlyAFieldAlone) {
  field(10, 1, "A");
  EXPECT_EQ(number_of(10, ""), 1);
  field(10, 2, "B");
  EXPECT_EQ(number_of(10, ""), -5);
}

TEST_F(Parser, IdsOutsideTheTablesHaveNoFields) {
  for (const int id : {-3, 150, 200, 100000, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(number_of(id, "A"), -4) << id;
    EXPECT_EQ(fields(id, ""), 0) << id;
    EXPECT_EQ(fields(id, "A=1"), 4) << id;
  }
}

TEST_F(Parser, ANameBoundToNoFieldIsNotFound) {
  field(10, 1, "A", 200);
  field(10, 2, "B", -3);
  EXPECT_EQ(fields(10, "A=1"), 4);
  EXPECT_EQ(fields(10, "B=1"), 4);
}

TEST_F(Parser, OperandsSplitIntoKeyAndValue) {
  EXPECT_EQ(operand("PRE = 12.34 , REP=1"), 0);
  EXPECT_STREQ(key_, "PRE");
  EXPECT_STREQ(value_, "12.34");
  EXPECT_FALSE(quoted_);
  EXPECT_EQ(place_, 15);
}

TEST_F(Parser, AnEmptyValueIsVero) {
  EXPECT_EQ(operand("QTY"), 0);
  EXPECT_STREQ(value_, "VERO");
  EXPECT_EQ(operand("QTY="), 0);
  EXPECT_STREQ(value_, "VERO");
  EXPECT_EQ(operand("QTY=''"), 0);
  EXPECT_STREQ(value_, "");
  EXPECT_TRUE(quoted_);
}

TEST_F(Parser, KeysAreCutAtTenCharacters) {
  EXPECT_EQ(operand("ABCDEFGHIJKLMN=1"), 0);
  EXPECT_STREQ(key_, "ABCDEFGHIJ");
}

TEST_F(Parser, QuotedValues) {
  EXPECT_EQ(operand("NAME='IT''S'"), 0);
  EXPECT_STREQ(value_, "IT'S");
  EXPECT_EQ(operand("NAME='A=B,C'"), 0);
  EXPECT_STREQ(value_, "A=B,C");
  EXPECT_EQ(operand("NAME='A' B"), 0);
  EXPECT_STREQ(value_, "A B");
  EXPECT_EQ(operand("NAME='A' , X=1"), 0);
  EXPECT_STREQ(value_, "A ");  // the blank behind the closing quote joins
  EXPECT_EQ(operand("NAME='A"), 8);
  EXPECT_EQ(operand("NAME='"), 8);
  EXPECT_EQ(operand("NAME=A'B'"), 8);
  EXPECT_EQ(operand("NAME='A''"), 8);
  EXPECT_EQ(operand("NAME='A''B"), 8);
  EXPECT_EQ(operand("'A'=1"), 6);
}

TEST_F(Parser, WordsMustBeSymbols) {
  symbol("CASH", 7);
  EXPECT_EQ(operand("T=CASH"), 0);
  EXPECT_STREQ(value_, "7");
  EXPECT_EQ(operand("T= CASH "), 0);
  EXPECT_STREQ(value_, "7");
  EXPECT_EQ(operand("T=cash"), 7);
  EXPECT_EQ(operand("T=VERO"), 7);
  EXPECT_EQ(operand("T='CASH'"), 0);
  EXPECT_STREQ(value_, "CASH");
}

TEST_F(Parser, ASecondEqualsIsTakenTheSameWay) {
  EXPECT_EQ(operand("A=1=2"), 0);
  EXPECT_STREQ(value_, "12");
}

TEST_F(Parser, AValueHoldsTwoThousandAndFortyEightCharacters) {
  EXPECT_EQ(operand("A='" + std::string(2048, 'x') + "'"), 0);
  EXPECT_EQ(std::strlen(value_), 2048u);
  EXPECT_EQ(operand("A='" + std::string(2049, 'x') + "'"), 9);
  EXPECT_EQ(operand("A='" + std::string(2048, 'x') + "''x'"), 9);
}

TEST_F(Parser, TheEndOfTheLineIsUnexpectedWhereAFieldIsDue) {
  EXPECT_EQ(operand(""), 11);
  EXPECT_EQ(operand("   "), 11);
}

TEST_F(Parser, FieldsKeepTheirLastValueAndTheQuotedFlag) {
  field(10, 1, "A");
  field(10, 2, "B");
  EXPECT_EQ(fields(10, "A=1,A='2',B=3"), 0);
  EXPECT_STREQ(t().szCampi[1], "2");
  EXPECT_STREQ(t().szCampi[2], "3");
  EXPECT_TRUE(t().bCampiA[1]);
  EXPECT_FALSE(t().bCampiA[2]);
  EXPECT_EQ(fields(10, ""), 0);
  EXPECT_STREQ(t().szCampi[1], "");
  EXPECT_TRUE(t().bCampiA[1]);  // kept from line to line
}

TEST_F(Parser, AFailureKeepsTheFieldsParsedSoFar) {
  field(10, 1, "A");
  EXPECT_EQ(fields(10, "A=1,X=2"), 4);
  EXPECT_STREQ(t().szCampi[1], "1");
}

TEST_F(Parser, MandatoryRowsAreTestedAsFieldNumbers) {
  field(10, 1, "A");
  t().bObl[10][1] = true;
  EXPECT_EQ(fields(10, ""), 10);
  EXPECT_EQ(fields(10, "A=''"), 10);
  EXPECT_EQ(fields(10, "A=1"), 0);
  field(10, 2, "B", 5);
  t().bObl[10][2] = true;
  EXPECT_EQ(fields(10, "A=1,B=1"), 10);  // row 2 asks for field 2
}

TEST_F(Parser, BatchOperands) {
  EXPECT_EQ(batch_operand(" a.cmd , b.err"), 0);
  EXPECT_STREQ(batch_value_, "a.cmd");
  EXPECT_EQ(place_, 10);
  EXPECT_EQ(batch_operand("'a, b' ,c"), 0);
  EXPECT_STREQ(batch_value_, "a, b");
  EXPECT_TRUE(quoted_);
  EXPECT_EQ(batch_operand("'it''s'"), 0);
  EXPECT_STREQ(batch_value_, "it's");
  EXPECT_EQ(batch_operand("''"), 0);
  EXPECT_STREQ(batch_value_, "");
  EXPECT_EQ(batch_operand("'a"), 2);
  EXPECT_EQ(batch_operand("a'b'"), 2);
  EXPECT_EQ(batch_operand("'a''"), 2);
  EXPECT_EQ(batch_operand("'a''b"), 2);
  EXPECT_EQ(batch_operand("  "), 11);
  EXPECT_STREQ(batch_value_, "");
  EXPECT_EQ(batch_operand("a  "), 0);
  EXPECT_STREQ(batch_value_, "a  ");  // the end of the line keeps blanks
  t().cChSep = ';';
  EXPECT_EQ(batch_operand("a,b;c"), 0);
  EXPECT_STREQ(batch_value_, "a,b");
}

TEST_F(Parser, BatchOperandsAreCutToTheirBuffers) {
  EXPECT_EQ(batch_operand(std::string(3000, 'a')), 0);
  EXPECT_EQ(std::strlen(batch_value_), 255u);
}

TEST_F(Parser, SymbolsCompareExactly) {
  symbol("A", 1);
  symbol("AB", 2);
  symbol("A", 3);
  int value = 0;
  char word[] = "  AB ";
  EXPECT_TRUE(t().TradSimb(word, &value));
  EXPECT_EQ(value, 2);
  char first[] = "A";
  EXPECT_TRUE(t().TradSimb(first, &value));
  EXPECT_EQ(value, 1);  // the first of two
  char unknown[] = "ABC";
  EXPECT_FALSE(t().TradSimb(unknown, &value));
}

TEST_F(Parser, MacrosAreBlankSeparatedKeys) {
  symbol("TOT", 49);
  unsigned char keys[100];
  const auto macro = [&](std::string text) { return t().GetMacro(text.data(), keys); };
  EXPECT_EQ(macro(""), 0);
  EXPECT_EQ(macro("   "), 0);
  EXPECT_EQ(macro("1 TOT "), 2);
  EXPECT_EQ(keys[0], 1);
  EXPECT_EQ(keys[1], 49);
  EXPECT_EQ(macro("1   2 "), 2);
  EXPECT_EQ(macro("1 TOT"), 1);  // the last key needs its blank
  EXPECT_EQ(macro("256 "), -1);
  EXPECT_EQ(macro("255 "), 1);
  EXPECT_EQ(macro("XYZ "), -1);
  EXPECT_EQ(macro(std::string(32, '1') + " "), -1);
  EXPECT_EQ(macro(std::string(31, '0') + " "), 1);
  std::string many;
  for (int i = 0; i < 99; ++i) many += "7 ";
  EXPECT_EQ(macro(many), 99);
  EXPECT_EQ(macro(many + "8 9 "), -2);
  EXPECT_EQ(keys[99], 8);
}

TEST_F(Parser, EditedTextsReadBack) {
  char out[32];
  char in[] = "it's";
  char* end = t().EditAlfa(out, in, 4);
  EXPECT_STREQ(out, "'it''s'");
  EXPECT_EQ(*end, 0);
  EXPECT_EQ(end - out, 7);
  EXPECT_EQ(operand(std::string("A=") + out), 0);
  EXPECT_STREQ(value_, "it's");
}

TEST_F(Parser, FieldNamesAreAppended) {
  char line[32] = "PREP ";
  char name[] = "DES";
  EXPECT_EQ(t().LdNomeCampo(line, name, 7, false), line);
  EXPECT_STREQ(line, "PREP DES");
  t().LdNomeCampo(line, name, 12, true);
  EXPECT_STREQ(line, "PREP DES#12");
}

}  // namespace
