#include "console/shell/shell_help.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string>
#include <vector>

#include "console/terminal/shell_text.h"
#include "language/command_help.h"

namespace lorimat::console {

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

std::string ShippedWords() {
  std::ifstream file(std::string(LORIMAT_SOURCE_DIR) + "/language/merkelin.ini");
  return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

size_t WidestLine(const std::string& text) {
  std::istringstream stream(text);
  size_t widest = 0;
  for (std::string line; std::getline(stream, line);) widest = std::max(widest, ColumnsOf(line));
  return widest;
}

std::vector<std::string> WordsOf(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

size_t CountOf(const std::string& text, const std::string& part) {
  size_t count = 0;
  for (size_t at = text.find(part); at != std::string::npos; at = text.find(part, at + 1)) ++count;
  return count;
}

class ShellHelpTexts : public testing::Test {
 protected:
  ShellHelpTexts() : language_(Language::FromText(ShippedWords())), help_(language_) {}

  const Language language_;
  const ShellHelp help_;
};

TEST_F(ShellHelpTexts, TheOverviewHasEveryCommandOnceUnderItsGroup) {
  const std::string text = help_.Overview(0);
  EXPECT_THAT(text, StartsWith("Sale\n  VEND        VE          Sells one line.\n\nPayment\n"));
  for (const CommandWord& command : language_.commands()) {
    EXPECT_EQ(1u, CountOf(text, "\n  " + command.name + " ")) << command.name;
  }
  for (const auto& group : language::command_groups()) {
    EXPECT_THAT("\n" + text, HasSubstr("\n" + group.title + "\n"));
  }
  EXPECT_THAT(text, Not(HasSubstr("Others")));
}

TEST_F(ShellHelpTexts, TheOverviewFitsTheWindowAndLosesNoWord) {
  const std::vector<std::string> words = WordsOf(help_.Overview(0));
  for (const size_t columns : {30u, 40u, 46u, 80u}) {
    const std::string text = help_.Overview(columns);
    EXPECT_LE(WidestLine(text), columns);
    EXPECT_EQ(words, WordsOf(text)) << columns;
  }
}

TEST_F(ShellHelpTexts, TheOverviewHangsASummaryBehindItsCommand) {
  EXPECT_THAT(help_.Overview(80),
              HasSubstr("\n  CHIU        CHIU        Pays, and closes the receipt when the payment "
                        "covers\n                          "));
  // And below it, in a window that has no room beside it.
  EXPECT_THAT(help_.Overview(30), HasSubstr("\n  VEND        VE\n    Sells one line.\n"));
}

TEST_F(ShellHelpTexts, WithoutAWindowACommandIsALine) {
  const std::string text = help_.Overview(0);
  for (const auto& group : language::command_groups()) {
    for (const language::CommandHelp& help : group.commands) {
      EXPECT_THAT(text, HasSubstr("  " + help.summary() + "\n")) << help.name;
    }
  }
}

TEST_F(ShellHelpTexts, ACommandShowsItsFieldsWithShortFormAndWhatTheyTake) {
  const HelpText vend = help_.Command("VEND", 80);
  EXPECT_TRUE(vend.found);
  EXPECT_THAT(vend.text, StartsWith("VEND: command 10, short VE\nSells one line. The first sale"));
  EXPECT_THAT(vend.text,
              HasSubstr("\n  Field      Short  Takes\n  REP        REP    department number\n"));
  EXPECT_THAT(vend.text,
              HasSubstr("\n  DES        D      description, text of up to 50 characters\n"));
  EXPECT_THAT(vend.text, HasSubstr("\n  QUANT      Q      the same as QTA\n"));
  EXPECT_THAT(vend.text, HasSubstr("\n  VEND REP=1, PRE=12.34\n"));
  EXPECT_THAT(vend.text, HasSubstr("\n  269     neither REP nor ART, or both\n"));
}

TEST_F(ShellHelpTexts, ACommandMayBeShortenedOrANumber) {
  EXPECT_EQ(help_.Command("VEND", 80).text, help_.Command("ve", 80).text);
  EXPECT_EQ(help_.Command("VEND", 80).text, help_.Command("#10", 80).text);
}

TEST_F(ShellHelpTexts, WordsForValuesAndWhatTheGroupSharesAreShown) {
  EXPECT_THAT(help_.Command("CHIU", 80).text,
              HasSubstr("\n  Value  Word       Identifier\n  1      CONTANTI   0, cash; 6,"));
  EXPECT_THAT(help_.Command("SCONTO", 80).text, HasSubstr("The four adjustments share their"));
}

TEST_F(ShellHelpTexts, EveryCommandHasAPageThatFitsTheWindow) {
  for (const CommandWord& command : language_.commands()) {
    const HelpText page = help_.Command(command.name, 80);
    EXPECT_TRUE(page.found) << command.name;
    for (const FieldWord& field : command.fields) {
      EXPECT_THAT(page.text, HasSubstr("\n  " + field.name + " ")) << command.name;
    }
    EXPECT_EQ('\n', page.text.back()) << command.name;
    const language::CommandHelp* help = language::find_command_help(command.id);
    // Examples stay as they are to be typed.
    size_t limit = 80;
    for (const std::string& example : help->examples) limit = std::max(limit, example.size() + 2);
    EXPECT_LE(WidestLine(page.text), limit) << command.name;
  }
}

TEST_F(ShellHelpTexts, NoPageLosesAWordInANarrowWindow) {
  for (const CommandWord& command : language_.commands()) {
    const std::vector<std::string> words = WordsOf(help_.Command(command.name, 0).text);
    for (const size_t columns : {30u, 40u, 46u}) {
      EXPECT_EQ(words, WordsOf(help_.Command(command.name, columns).text)) << command.name;
    }
  }
}

TEST_F(ShellHelpTexts, AnUnknownWordGetsASuggestion) {
  const HelpText misspelt = help_.Command("VNED", 80);
  EXPECT_FALSE(misspelt.found);
  EXPECT_EQ("no command is called 'VNED'; did you mean VEND?", misspelt.text);
  EXPECT_EQ("no command is called 'zzzzzzz'; \"?\" lists them", help_.Command("zzzzzzz", 80).text);
  EXPECT_EQ("'PERC' fits more than one command: PERCA, PERCB", help_.Command("PERC", 80).text);
}

TEST_F(ShellHelpTexts, OddWordsAreNoCommands) {
  for (int byte = 1; byte < 256; ++byte) {
    const std::string word(3, static_cast<char>(byte));
    const HelpText text = help_.Command(word, 80);
    if (!text.found) {
      EXPECT_THAT(text.text, Not(HasSubstr("\x1b"))) << byte;
    }
  }
  EXPECT_LT(help_.Command(std::string(1 << 20, 'x'), 80).text.size(), 200u);
  EXPECT_FALSE(help_.Command("#149", 80).found);
}

TEST(ShellHelpOtherWords, TheNamesAreThoseOfTheDefinitionFile) {
  const Language english = Language::FromText(
      "[OPCOD]\n1=SELL,10\n2=SELLIT,10\n3=MYSTERY,99\n[10]\n1=DEPT,O\n4=PRICE\n30=SPARE\n[99]\n1="
      "A\n");
  const ShellHelp help(english);
  const std::string overview = help.Overview(0);
  EXPECT_THAT(overview, StartsWith("Sale\n  SELL        "));
  EXPECT_THAT(overview, HasSubstr("Others\n  MYSTERY     M           No command of the library"));
  const std::string sell = help.Command("SELL", 80).text;
  EXPECT_THAT(sell, HasSubstr("command 10"));
  EXPECT_THAT(sell, HasSubstr(", also SELLIT\n"));
  EXPECT_THAT(sell, HasSubstr("\n  DEPT   D      department number, must be given\n"));
  EXPECT_THAT(sell, HasSubstr("\n  SPARE  S      not read\n"));
  // The examples would not run.
  EXPECT_THAT(sell, Not(HasSubstr("VEND REP=1")));
  EXPECT_THAT(sell, HasSubstr("These texts call VEND and its fields as the definition file"));
  EXPECT_THAT(help.Command("MYSTERY", 80).text, HasSubstr("answers 268"));
}

TEST(ShellHelpOtherWords, AFileWithoutCommandsSaysSo) {
  const Language empty = Language::FromText("");
  const ShellHelp help(empty);
  EXPECT_EQ("The definition file names no commands.\n", help.Overview(80));
  EXPECT_EQ("no command is called 'VEND'; \"?\" lists them", help.Command("VEND", 80).text);
}

}  // namespace

}  // namespace lorimat::console
