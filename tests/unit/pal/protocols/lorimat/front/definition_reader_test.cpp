// What the reader of definition files tells of each line.

#include "pal/protocols/lorimat/front/definition_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <memory>
#include <string>
#include <vector>

#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "support/definition_record.h"
#include "support/temporary_folder.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class DefinitionNotes : public testing::Test {
 protected:
  DefinitionNotes() : folder_(MakeTemporaryFolder()), file_(folder_ / "words.ini") {}
  ~DefinitionNotes() override {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
  }

  // The notes of a text, which is read to its end or to the line that stops the reading.
  std::vector<Told> NotesOf(const std::string& text) {
    std::ofstream(file_, std::ios::binary) << text;
    Record record;
    std::make_unique<EcrCmdCommand>()->ReadDefinition(file_.string().c_str(), &record);
    return record.told;
  }
  std::vector<DefinitionCause> CausesOf(const std::string& text) {
    std::vector<DefinitionCause> causes;
    for (const Told& told : NotesOf(text)) causes.push_back(told.cause);
    return causes;
  }

 private:
  const std::filesystem::path folder_;
  const std::filesystem::path file_;
};

TEST_F(DefinitionNotes, TellsWhatItStores) {
  const std::vector<Told> told = NotesOf("[OPCOD]\n 10 = SELL , 9 ; c\n[EQU]\nCASH=1\n");
  ASSERT_EQ(told.size(), 5u);
  EXPECT_EQ(told[2].cause, DefinitionCause::kCommand);
  EXPECT_EQ(told[2].line, 2u);
  EXPECT_EQ(told[2].column, 7u);
  EXPECT_EQ(told[2].text, "SELL");
  EXPECT_EQ(told[2].row, 10);
  EXPECT_EQ(told[2].number, 9);
  EXPECT_EQ(told[4].cause, DefinitionCause::kSymbol);
  EXPECT_EQ(told[4].text, "CASH");
  EXPECT_EQ(told[4].number, 1);
}

TEST_F(DefinitionNotes, TellsWhatItCuts) {
  const std::vector<Told> told = NotesOf("[OPCOD\n[OPCOD]\n\t10=ELEVENCHARS\n");
  ASSERT_EQ(told.size(), 6u);
  EXPECT_EQ(told[0].cause, DefinitionCause::kHeaderNotClosed);
  EXPECT_EQ(told[0].kept, "OPCO");
  EXPECT_EQ(told[3].cause, DefinitionCause::kNameCut);
  EXPECT_EQ(told[3].column, 5u);
  EXPECT_EQ(told[3].kept, "ELEVENCHAR");
  EXPECT_THAT(CausesOf("[EQU]\n" + std::string(80, 'x') + "=1\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kPartCut,
                          DefinitionCause::kNameCut, DefinitionCause::kSymbol));
}

TEST_F(DefinitionNotes, TellsWhatItSkips) {
  const struct {
    const char* text;
    DefinitionCause cause;
  } kSkipped[] = {{"[OPCOD]\n-1=X\n", DefinitionCause::kRowOutOfRange},
                  {"[10]\n41=X\n", DefinitionCause::kRowOutOfRange},
                  {"[INTMSG]\n40=X\n", DefinitionCause::kRowOutOfRange},
                  {"[150]\n1=X\n", DefinitionCause::kSectionOutOfRange},
                  {"[ERRMSG10]\n1=X\n", DefinitionCause::kNoSuchTable},
                  {"[TOTG]\n1=123456789012345678901234567890123\n", DefinitionCause::kTextTooLong},
                  {"[TOTG]\n1='X\n", DefinitionCause::kTextBadlyQuoted}};
  for (const auto& skipped : kSkipped) {
    EXPECT_EQ(CausesOf(skipped.text).back(), skipped.cause) << skipped.text;
  }
  std::string symbols = "[EQU]\n";
  for (int i = 1; i <= 300; ++i) symbols += "S" + std::to_string(i) + "=1\n";
  EXPECT_EQ(NotesOf(symbols).back().cause, DefinitionCause::kTableFull);
  EXPECT_EQ(NotesOf(symbols).back().line, 301u);
}

TEST_F(DefinitionNotes, TellsWhatItReadsAsSomethingElse) {
  EXPECT_THAT(CausesOf("[OPCOD]\n5x=SELL,O\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kRowNotANumber,
                          DefinitionCause::kNameRead, DefinitionCause::kMarkIgnored,
                          DefinitionCause::kCommand));
  EXPECT_THAT(
      CausesOf("[10]\n1=,O\n2=A,x\n3=\n"),
      ElementsAre(DefinitionCause::kSection, DefinitionCause::kNameRead, DefinitionCause::kField,
                  DefinitionCause::kNameRead, DefinitionCause::kNumberNotANumber,
                  DefinitionCause::kField, DefinitionCause::kNameMissing, DefinitionCause::kField));
  EXPECT_THAT(CausesOf("[EQU]\nA=1x\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kValueNotANumber,
                          DefinitionCause::kSymbol));
  EXPECT_THAT(CausesOf("[OPCOD]\n150=X\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kNameRead,
                          DefinitionCause::kCommand, DefinitionCause::kRowOutOfReach));
}

TEST_F(DefinitionNotes, TellsWhereItStops) {
  EXPECT_THAT(CausesOf("x\n1=A\n"),
              ElementsAre(DefinitionCause::kNoSection, DefinitionCause::kNoEquals));
  EXPECT_EQ(CausesOf("[10]\n=A\n1=A\n").back(), DefinitionCause::kNothingInFront);
  EXPECT_EQ(CausesOf("[10]\nA=1\n1=A\n").back(), DefinitionCause::kNoRowNumber);
  EXPECT_EQ(CausesOf("[OPCOD]\n151=A\n1=A\n").back(), DefinitionCause::kRowAboveLast);
  EXPECT_THAT(CausesOf("; nothing\n\n \t\n"), IsEmpty());
}

TEST_F(DefinitionNotes, SayNothingOfCutsOfATextThatIsTakenWhole) {
  // A message may be longer than the parts of other entries.
  EXPECT_THAT(CausesOf("[ERRMSG1]\n1=" + std::string(80, 'x') + "\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kText));
  EXPECT_THAT(CausesOf("[INTMSG]\n1=" + std::string(80, 'x') + "\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kTextTooLong));
  const std::vector<Told> told = NotesOf("[10]\n1=" + std::string(80, 'x') + "\n");
  ASSERT_EQ(told.size(), 5u);
  EXPECT_EQ(told[1].cause, DefinitionCause::kPartCut);
  EXPECT_EQ(told[1].text, std::string(80, 'x'));
  EXPECT_EQ(told[1].kept, std::string(79, 'x'));
}

TEST_F(DefinitionNotes, TakeANegativeNumberForANumber) {
  EXPECT_THAT(CausesOf("[EQU]\nA=-1\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kSymbol));
  EXPECT_THAT(CausesOf("[EQU]\nA=-\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kValueNotANumber,
                          DefinitionCause::kSymbol));
  EXPECT_THAT(CausesOf("[EQU]\nA=\n"),
              ElementsAre(DefinitionCause::kSection, DefinitionCause::kValueNotANumber,
                          DefinitionCause::kSymbol));
}

}  // namespace
