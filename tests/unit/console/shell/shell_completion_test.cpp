#include "console/shell/shell_completion.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace lorimat::console {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

namespace {

std::string ShippedWords() {
  std::ifstream file(std::string(LORIMAT_SOURCE_DIR) + "/language/merkelin.ini");
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

class ShellCompletion : public testing::Test {
 protected:
  ShellCompletion()
      : language_(Language::FromText(ShippedWords())),
        completer_(language_, {".batch", ".fault", ".help"}, {"busy", "paper-end"}) {}

  // The texts for a line with the cursor at its end, each with what stands in front of it.
  std::vector<std::string> Complete(const std::string& line) const {
    const Completion completion = completer_.Complete(line, line.size());
    std::vector<std::string> lines;
    for (const auto& candidate : completion.candidates) {
      lines.push_back(line.substr(0, completion.begin) + candidate.text);
    }
    return lines;
  }

  const Language language_;
  const ShellCompleter completer_;
};

TEST_F(ShellCompletion, ACommandIsCompletedInTheLettersOfTheDefinitionFile) {
  EXPECT_THAT(Complete("ve"), ElementsAre("VEND "));
  EXPECT_THAT(Complete("  VEN"), ElementsAre("  VEND "));
  EXPECT_THAT(Complete("PERC"), ElementsAre("PERCA ", "PERCB "));
  EXPECT_THAT(Complete("xyz"), IsEmpty());
}

TEST_F(ShellCompletion, ACommandWithoutFieldsGetsNoBlank) {
  EXPECT_THAT(Complete("SUB"), ElementsAre("SUBT"));
}

TEST_F(ShellCompletion, AnEmptyLineOffersEveryCommand) {
  EXPECT_THAT(Complete(""), SizeIs(testing::Gt(50u)));
}

TEST_F(ShellCompletion, AFieldIsCompletedWithItsEqualsSign) {
  EXPECT_THAT(Complete("VEND de"), ElementsAre("VEND DES="));
  EXPECT_THAT(Complete("VEND REP=1,pr"), ElementsAre("VEND REP=1,PRE="));
  EXPECT_THAT(Complete("VEND  REP = 1 ,  pr"), ElementsAre("VEND  REP = 1 ,  PRE="));
  // A shortened command, and one by number.
  EXPECT_THAT(Complete("ve de"), ElementsAre("ve DES="));
  EXPECT_THAT(Complete("#10 de"), ElementsAre("#10 DES="));
}

TEST_F(ShellCompletion, AFlagStandsAlone) {
  EXPECT_THAT(Complete("VEND REP=1, ri"), ElementsAre("VEND REP=1, RIGASOPRA"));
  EXPECT_THAT(Complete("CHIAVE re"), ElementsAre("CHIAVE REG"));
  // It takes a number, of flags.
  EXPECT_THAT(Complete("POPER OPE=1, f"), ElementsAre("POPER OPE=1, FLAG="));
}

TEST_F(ShellCompletion, FieldsThatTheLineHasAreNotOfferedAgain) {
  EXPECT_THAT(Complete("VEND RE"), ElementsAre("VEND REP=", "VEND RESO"));
  EXPECT_THAT(Complete("VEND REP=1, RE"), ElementsAre("VEND REP=1, RESO"));
  // Shortened, and by the name of an alias.
  EXPECT_THAT(Complete("VEND QUANT=1, "), Not(Contains("VEND QUANT=1, QTA=")));
  EXPECT_THAT(Complete("VEND q=1, "), Not(Contains("VEND q=1, QTA=")));
}

TEST_F(ShellCompletion, TheFieldsOfAnUnknownCommandAreUnknown) {
  EXPECT_THAT(Complete("VNED RE"), IsEmpty());
  EXPECT_THAT(Complete("P RE"), IsEmpty());  // fits several
}

TEST_F(ShellCompletion, WordsForValuesAreThoseOfTheCommandFirst) {
  EXPECT_THAT(Complete("CHIU TEND=C"),
              ElementsAre("CHIU TEND=CONTANTI", "CHIU TEND=CREDITO", "CHIU TEND=CARTA"));
  EXPECT_THAT(Complete("CHIU TEND= con"), ElementsAre("CHIU TEND= CONTANTI"));
  EXPECT_THAT(Complete("CHIU TEND="), Contains("CHIU TEND=BANCOMAT"));
  // Where the command has none, any word.
  EXPECT_THAT(Complete("INP TASTO=CONF"), ElementsAre("INP TASTO=CONFERMA"));
  EXPECT_THAT(Complete("VEND REP="), IsEmpty());
}

TEST_F(ShellCompletion, NothingIsCompletedInTextsAndComments) {
  EXPECT_THAT(Complete("VEND DES='re"), IsEmpty());
  EXPECT_THAT(Complete("VEND DES='a, re"), IsEmpty());
  EXPECT_THAT(Complete("VEND ; re"), IsEmpty());
  EXPECT_THAT(Complete("VEND DES='it''s', ART"), ElementsAre("VEND DES='it''s', ART="));
}

TEST_F(ShellCompletion, WhatStandsBehindTheCursorDoesNotCount) {
  const Completion completion = completer_.Complete("VEND re, PRE=1", 7);
  EXPECT_EQ(5u, completion.begin);
  EXPECT_THAT(completion.candidates, SizeIs(2));
}

TEST_F(ShellCompletion, HelpIsAskedForCommands) {
  EXPECT_THAT(Complete("?ve"), ElementsAre("?VEND"));
  EXPECT_THAT(Complete("? ve"), ElementsAre("? VEND"));
}

TEST_F(ShellCompletion, TheShellsOwnWordsBeginWithADotOrAColon) {
  EXPECT_THAT(Complete(".h"), ElementsAre(".help "));
  EXPECT_THAT(Complete(":H"), ElementsAre(":help "));
  EXPECT_THAT(Complete("."), SizeIs(3));
  EXPECT_THAT(Complete(".help x"), IsEmpty());
  EXPECT_THAT(Complete(".fault pa"), ElementsAre(".fault paper-end "));
  EXPECT_THAT(Complete(".fault code 12 b"), ElementsAre(".fault code 12 busy "));
}

TEST_F(ShellCompletion, ADefinitionFileWithoutCommandsOffersNothing) {
  const Language empty = Language::FromText("");
  const ShellCompleter completer(empty, {}, {});
  EXPECT_THAT(completer.Complete("", 0).candidates, IsEmpty());
  EXPECT_THAT(completer.Complete("VEND R", 6).candidates, IsEmpty());
}

TEST_F(ShellCompletion, FieldsOfAnotherDefinitionFileAreOfferedByItsNames) {
  const Language english =
      Language::FromText("[OPCOD]\n1=SELL,10\n2=SELECT,5\n[10]\n1=DEPT\n4=PRICE\n5=REFUND\n");
  const ShellCompleter completer(english, {}, {});
  EXPECT_EQ("SEL", completer.Complete("s", 1).common_beginning());
  const Completion fields = completer.Complete("sell ", 5);
  ASSERT_THAT(fields.candidates, SizeIs(3));
  EXPECT_EQ("DEPT=", fields.candidates[0].text);
  EXPECT_EQ("REFUND", fields.candidates[2].text);  // a flag by its number
}

TEST_F(ShellCompletion, AnyBytesAreTaken) {
  const std::string start[] = {"", "VEND ", "@", "@'", ".batch ", "?", "VEND REP=", "VEND D='"};
  for (const std::string& text : start) {
    for (int byte = 0; byte < 256; ++byte) {
      const std::string line = text + static_cast<char>(byte) + static_cast<char>(255 - byte);
      for (size_t cursor = 0; cursor <= line.size(); ++cursor) {
        EXPECT_LE(completer_.Complete(line, cursor).begin, cursor);
      }
    }
  }
  const std::string longest(1 << 20, 'v');
  EXPECT_THAT(completer_.Complete(longest, longest.size()).candidates, IsEmpty());
  EXPECT_THAT(completer_.Complete("VEND " + longest, longest.size()).candidates, IsEmpty());
}

TEST(CompletionCommonBeginning, IsWhatAllTextsShare) {
  Completion completion;
  EXPECT_EQ("", completion.common_beginning());
  completion.candidates = {{"PERCA ", ""}, {"percb ", ""}};
  EXPECT_EQ("PERC", completion.common_beginning());
  // Not half a character.
  completion.candidates = {{"x\xC3\xA8", ""}, {"x\xC3\xA9", ""}};
  EXPECT_EQ("x", completion.common_beginning());
}

class CompletionFiles : public testing::Test {
 protected:
  CompletionFiles() : folder_("/tmp/lorimat-completion-" + std::to_string(getpid())) {
    std::filesystem::create_directories(folder_ + "/inner");
    for (const char* name :
         {"day.cmd", "day two.cmd", "Day.cmd", ".hidden", "it's.cmd", "inner/x", "a\nb"}) {
      std::ofstream(folder_ + "/" + name) << "SUBT\n";
    }
  }
  ~CompletionFiles() override { std::filesystem::remove_all(folder_); }

  std::vector<std::string> Complete(const std::string& line, size_t begin, bool plain) const {
    std::vector<std::string> texts;
    for (const auto& candidate : CompleteFile(line, begin, plain).candidates) {
      texts.push_back(candidate.text);
    }
    return texts;
  }

  const std::string folder_;
};

TEST_F(CompletionFiles, NamesAreTakenAsTheyAre) {
  EXPECT_THAT(Complete(folder_ + "/d", 0, true),
              ElementsAre(folder_ + "/day two.cmd", folder_ + "/day.cmd"));
  EXPECT_THAT(Complete(folder_ + "/D", 0, true), ElementsAre(folder_ + "/Day.cmd"));
  EXPECT_THAT(Complete(folder_ + "/.", 0, true), ElementsAre(folder_ + "/.hidden"));
  EXPECT_THAT(Complete(folder_ + "/in", 0, true), ElementsAre(folder_ + "/inner/"));
  EXPECT_THAT(Complete(folder_ + "/none/x", 0, true), IsEmpty());
}

TEST_F(CompletionFiles, ControlCharactersAreNotPutOnTheLine) {
  EXPECT_THAT(Complete(folder_ + "/a", 0, true), IsEmpty());
}

TEST_F(CompletionFiles, OperandsAreQuotedWhereThatIsNeeded) {
  EXPECT_THAT(Complete("@" + folder_ + "/day", 1, false),
              ElementsAre("'" + folder_ + "/day two.cmd'", folder_ + "/day.cmd"));
  EXPECT_THAT(Complete("@'" + folder_ + "/day.", 1, false),
              ElementsAre("'" + folder_ + "/day.cmd'"));
  EXPECT_THAT(Complete("@" + folder_ + "/it", 1, false),
              ElementsAre("'" + folder_ + "/it''s.cmd'"));
  EXPECT_THAT(Complete("@'" + folder_ + "/it''", 1, false),
              ElementsAre("'" + folder_ + "/it''s.cmd'"));
  // The quote stays open for what follows.
  EXPECT_THAT(Complete("@'" + folder_ + "/inn", 1, false), ElementsAre("'" + folder_ + "/inner/"));
}

TEST_F(CompletionFiles, NamesWithCapitalLettersAreNoneForABatchLine) {
  EXPECT_THAT(Complete("@" + folder_ + "/D", 1, false), IsEmpty());
}

TEST_F(CompletionFiles, TheSecondOperandIsCompletedToo) {
  const Language empty = Language::FromText("");
  const ShellCompleter completer(empty, {}, {});
  const std::string line = "@'a,b.cmd', " + folder_ + "/day.";
  const Completion completion = completer.Complete(line, line.size());
  EXPECT_EQ(12u, completion.begin);
  ASSERT_THAT(completion.candidates, SizeIs(1));
  EXPECT_EQ(folder_ + "/day.cmd", completion.candidates[0].text);
}

}  // namespace

}  // namespace lorimat::console
