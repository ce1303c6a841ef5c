// The tokenisers, called directly with tables of the test's own: places, buffers and members that
// no line shows, and the tokens of batches and macros. How words and values are read is in
// tests/conversations/parser.

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"

namespace {

class Parser : public ::testing::Test {
 protected:
  void Command(int row, const char* name, int id = 0) {
    CopyText(t().szOpCodes[row], name);
    t().iIdOpCodes[row] = id != 0 ? id : row;
    if (row > t().iTotOpCodes) t().iTotOpCodes = row;
  }
  void Field(int opcode, int row, const char* name, int number = 0) {
    CopyText(t().szKeyI[opcode][row], name);
    t().iNCI[opcode][row] = number != 0 ? number : row;
    if (row > t().iNumOper[opcode]) t().iNumOper[opcode] = row;
  }
  void Symbol(const char* name, int value) {
    CopyText(t().szSimb[++t().iTotSimb], name);
    t().iVSimb[t().iTotSimb] = value;
  }

  // The opcode id of a line; a refusal gives minus its index.
  int Opcode(std::string line) {
    int place = 1;
    int id = -1;
    const int result = t().GetCodOp(line.data(), &place, &id);
    place_ = place;
    return result == 0 ? id : -result;
  }
  int NumberOf(int opcode, std::string key) {
    int number = -1;
    const int result = t().GetNumOper(opcode, key.data(), &number);
    return result == 0 ? number : -result;
  }
  int Fields(int opcode, std::string line) {
    int place = 1;
    return t().GetCampi(line.data(), opcode, &place);
  }
  int Operand(std::string line) {
    int place = 1;
    quoted_ = false;
    const int result = t().GetOper(line.data(), &place, key_, value_, &quoted_);
    place_ = place;
    return result;
  }
  int BatchOperand(std::string line) {
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

TEST_F(Parser, TheWordEndsAtABlankOrTab) {
  Command(1, "CHIU");
  EXPECT_EQ(Opcode("chiu   T=1"), 1);
  EXPECT_EQ(place_, 8);
  EXPECT_EQ(Opcode("CHIU"), 1);
  EXPECT_EQ(place_, 5);
  EXPECT_EQ(Opcode("CHIU\tT"), 1);
  EXPECT_EQ(Opcode("CHIU,T"), 1);  // the word is longer than the name
}

TEST_F(Parser, IdsOutsideTheTablesHaveNoFields) {
  for (const int id : {-3, 150, 200, 100000, INT32_MIN, INT32_MAX}) {
    EXPECT_EQ(NumberOf(id, "A"), -4) << id;
    EXPECT_EQ(Fields(id, ""), 0) << id;
    EXPECT_EQ(Fields(id, "A=1"), 4) << id;
  }
}

TEST_F(Parser, ANameBoundToNoFieldIsNotFound) {
  Field(10, 1, "A", 200);
  Field(10, 2, "B", -3);
  EXPECT_EQ(Fields(10, "A=1"), 4);
  EXPECT_EQ(Fields(10, "B=1"), 4);
}

TEST_F(Parser, OperandsSplitIntoKeyAndValue) {
  EXPECT_EQ(Operand("PRE = 12.34 , REP=1"), 0);
  EXPECT_STREQ(key_, "PRE");
  EXPECT_STREQ(value_, "12.34");
  EXPECT_FALSE(quoted_);
  EXPECT_EQ(place_, 15);
}

TEST_F(Parser, KeysAreCutAtTenCharacters) {
  EXPECT_EQ(Operand("ABCDEFGHIJKLMN=1"), 0);
  EXPECT_STREQ(key_, "ABCDEFGHIJ");
}

TEST_F(Parser, AValueHoldsTwoThousandAndFortyEightCharacters) {
  EXPECT_EQ(Operand("A='" + std::string(2048, 'x') + "'"), 0);
  EXPECT_EQ(std::strlen(value_), 2048u);
  EXPECT_EQ(Operand("A='" + std::string(2049, 'x') + "'"), 9);
  EXPECT_EQ(Operand("A='" + std::string(2048, 'x') + "''x'"), 9);
}

TEST_F(Parser, TheEndOfTheLineIsUnexpectedWhereAFieldIsDue) {
  EXPECT_EQ(Operand(""), 11);
  EXPECT_EQ(Operand("   "), 11);
}

TEST_F(Parser, FieldsKeepTheirLastValueAndTheQuotedFlag) {
  Field(10, 1, "A");
  Field(10, 2, "B");
  EXPECT_EQ(Fields(10, "A=1,A='2',B=3"), 0);
  EXPECT_STREQ(t().szCampi[1], "2");
  EXPECT_STREQ(t().szCampi[2], "3");
  EXPECT_TRUE(t().bCampiA[1]);
  EXPECT_FALSE(t().bCampiA[2]);
  EXPECT_EQ(Fields(10, ""), 0);
  EXPECT_STREQ(t().szCampi[1], "");
  EXPECT_TRUE(t().bCampiA[1]);  // kept from line to line
}

TEST_F(Parser, AFailureKeepsTheFieldsParsedSoFar) {
  Field(10, 1, "A");
  EXPECT_EQ(Fields(10, "A=1,X=2"), 4);
  EXPECT_STREQ(t().szCampi[1], "1");
}

TEST_F(Parser, MandatoryRowsAreTestedAsFieldNumbers) {
  Field(10, 1, "A");
  t().bObl[10][1] = true;
  EXPECT_EQ(Fields(10, ""), 10);
  EXPECT_EQ(Fields(10, "A=''"), 10);
  EXPECT_EQ(Fields(10, "A=1"), 0);
  Field(10, 2, "B", 5);
  t().bObl[10][2] = true;
  EXPECT_EQ(Fields(10, "A=1,B=1"), 10);  // row 2 asks for field 2
}

TEST_F(Parser, BatchOperands) {
  EXPECT_EQ(BatchOperand(" a.cmd , b.err"), 0);
  EXPECT_STREQ(batch_value_, "a.cmd");
  EXPECT_EQ(place_, 10);
  EXPECT_EQ(BatchOperand("'a, b' ,c"), 0);
  EXPECT_STREQ(batch_value_, "a, b");
  EXPECT_TRUE(quoted_);
  EXPECT_EQ(BatchOperand("'it''s'"), 0);
  EXPECT_STREQ(batch_value_, "it's");
  EXPECT_EQ(BatchOperand("''"), 0);
  EXPECT_STREQ(batch_value_, "");
  EXPECT_EQ(BatchOperand("'a"), 2);
  EXPECT_EQ(BatchOperand("a'b'"), 2);
  EXPECT_EQ(BatchOperand("'a''"), 2);
  EXPECT_EQ(BatchOperand("'a''b"), 2);
  EXPECT_EQ(BatchOperand("  "), 11);
  EXPECT_STREQ(batch_value_, "");
  EXPECT_EQ(BatchOperand("a  "), 0);
  EXPECT_STREQ(batch_value_, "a  ");  // the end of the line keeps blanks
  t().cChSep = ';';
  EXPECT_EQ(BatchOperand("a,b;c"), 0);
  EXPECT_STREQ(batch_value_, "a,b");
}

TEST_F(Parser, BatchOperandsAreCutToTheirBuffers) {
  EXPECT_EQ(BatchOperand(std::string(3000, 'a')), 0);
  EXPECT_EQ(std::strlen(batch_value_), 255u);
}

TEST_F(Parser, MacrosAreBlankSeparatedKeys) {
  Symbol("TOT", 49);
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
  EXPECT_EQ(Operand(std::string("A=") + out), 0);
  EXPECT_STREQ(value_, "it's");
}

TEST_F(Parser, AnEditedTextIsCutAtTheEndOfItsBuffer) {
  char out[9] = "xxxxxxxx";
  EXPECT_EQ(t().EditAlfa(out, 8, "it's", 4) - out, 7);
  EXPECT_STREQ(out, "'it''s'");
  EXPECT_EQ(out[8], 0);
  std::memset(out, 'x', sizeof out);
  EXPECT_EQ(t().EditAlfa(out, 6, "it's", 4) - out, 5);
  EXPECT_EQ(std::string(out, 8), std::string("'it''\0xx", 8));
  EXPECT_EQ(t().EditAlfa(out, 2, "it's", -1) - out, 1);
  EXPECT_EQ(std::string(out, 3), std::string("'\0t", 3));
}

TEST_F(Parser, AFieldNameIsCutAtTheEndOfItsBuffer) {
  char line[12] = "PREP \0xxxxx";
  EXPECT_EQ(t().LdNomeCampo(line, 8, "DES", 7, false), line);
  EXPECT_EQ(std::string(line, 10), std::string("PREP DE\0xx", 10));
  t().LdNomeCampo(line, 10, "DES", -12, true);
  EXPECT_EQ(std::string(line, 11), std::string("PREP DE#-\0x", 11));
  t().LdNomeCampo(line, 10, "DES", 1, false);
  EXPECT_EQ(std::string(line, 11), std::string("PREP DE#-\0x", 11));
}

TEST_F(Parser, FieldNamesAreAppended) {
  char line[32] = "PREP ";
  char name[] = "DES";
  EXPECT_EQ(t().LdNomeCampo(line, name, 7, false), line);
  EXPECT_STREQ(line, "PREP DES");
  t().LdNomeCampo(line, name, 12, true);
  EXPECT_STREQ(line, "PREP DES#12");
  t().LdNomeCampo(line, name, INT_MIN, true);  // the longest number
  EXPECT_STREQ(line, "PREP DES#12#-2147483648");
}

}  // namespace
