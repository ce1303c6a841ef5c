// The help on the language says what docs/language.md says, and docs/language.it.md, all of it and
// nothing else. The pages themselves are held against the definition file by
// language_docs_test.cpp, and against each other by language_pages_test.cpp.
#include "language/command_help.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <string>
#include <vector>

#include "language/handler_fields.h"
#include "unit/language/shipped_language.h"

using language::CommandGroup;
using language::CommandHelp;
using language::find_command_help;
using language::PageLanguage;
using language::read_command_help;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

namespace {

// A page, and its headings of tables.
struct Page {
  PageLanguage language;
  const char* name;
  const char* file;
  std::string fields;
  std::string values;
  std::string codes;
  std::string shortest;
};

const Page kPages[] = {
    {PageLanguage::kEnglish, "English", "language.md", "| No | Field | Short | Takes |",
     "| Value | Word |", "| Code | When |", "Short: "},
    {PageLanguage::kItalian, "Italian", "language.it.md", "| N. | Campo | Abbrev. | Prende |",
     "| Valore | Parola |", "| Codice | Quando |", "Abbreviazione: "},
};

void PrintTo(const Page& page, std::ostream* stream) { *stream << page.file; }

std::vector<std::string> PageLines(const Page& page) {
  std::vector<std::string> lines =
      shipped::Lines(std::filesystem::path(LORIMAT_SOURCE_DIR) / "docs" / page.file);
  for (std::string& line : lines)
    line.erase(std::remove(line.begin(), line.end(), '`'), line.end());
  return lines;
}

// The rows of the page's tables that begin with these headings, and that stand in the chapter of
// a command.
std::multiset<std::string> PageRows(const Page& page, const std::string& heading) {
  std::multiset<std::string> rows;
  bool in_command = false;
  bool in_table = false;
  for (const std::string& line : PageLines(page)) {
    if (line.rfind("## ", 0) == 0) in_command = false;
    if (line.rfind("### ", 0) == 0) in_command = std::isdigit(static_cast<unsigned char>(line[4]));
    if (line.rfind("|", 0) != 0) {
      in_table = false;
    } else if (!in_table) {
      in_table = in_command && line.rfind(heading, 0) == 0;
      if (!in_table && line.rfind("|", 0) == 0 && line.rfind("|--", 0) != 0) continue;
    } else if (line.rfind("|--", 0) != 0) {
      rows.insert(line);
    }
  }
  return rows;
}

std::string Joined(const std::vector<std::string>& texts, const std::string& between) {
  std::string out;
  for (const std::string& text : texts) out += (out.empty() ? "" : between) + text;
  return out;
}

// The commands that have a chapter of their own.
std::vector<const CommandHelp*> Chapters(PageLanguage language) {
  std::vector<const CommandHelp*> all;
  for (const CommandGroup& group : language::command_groups(language)) {
    for (const CommandHelp& command : group.commands) {
      if (!command.examples.empty()) all.push_back(&command);
    }
  }
  return all;
}

class CommandHelpPage : public testing::TestWithParam<Page> {
 protected:
  static std::vector<const CommandHelp*> chapters() { return ::Chapters(GetParam().language); }
};

INSTANTIATE_TEST_SUITE_P(Languages, CommandHelpPage, testing::ValuesIn(kPages),
                         [](const auto& test) { return std::string(test.param.name); });

TEST_P(CommandHelpPage, EveryRowOfFieldsIsThereOnceAndNoOther) {
  std::multiset<std::string> rows;
  for (const CommandHelp* command : chapters()) {
    for (const auto& field : command->fields) {
      rows.insert("| " + std::to_string(field.number) + " | " + Joined(field.names, ", ") + " | " +
                  field.shortest + " | " + field.takes + " |");
    }
  }
  EXPECT_EQ(PageRows(GetParam(), GetParam().fields), rows);
  EXPECT_GT(rows.size(), 200u);
}

TEST_P(CommandHelpPage, EveryWordForAValueIsThereOnceAndNoOther) {
  std::multiset<std::string> rows;
  for (const CommandHelp* command : chapters()) {
    for (const auto& table : command->values) {
      for (const auto& value : table.rows) {
        rows.insert("| " + value.value + " | " + value.word + " | " + value.meaning + " |");
      }
    }
  }
  EXPECT_EQ(PageRows(GetParam(), GetParam().values), rows);
  EXPECT_GT(rows.size(), 80u);
}

TEST_P(CommandHelpPage, EveryResultCodeIsThereOnceAndNoOther) {
  std::multiset<std::string> rows;
  for (const CommandHelp* command : chapters()) {
    for (const auto& code : command->codes) {
      rows.insert("| " + code.code + " | " + code.when + " |");
    }
  }
  EXPECT_EQ(PageRows(GetParam(), GetParam().codes), rows);
  EXPECT_GT(rows.size(), 80u);
}

// Every line of the commands' chapters that is in no table.
TEST_P(CommandHelpPage, EveryTextAndExampleIsThereInItsOrder) {
  std::string written;
  bool in_command = false;
  bool in_table = false;
  for (const std::string& line : PageLines(GetParam())) {
    if (line.rfind("## ", 0) == 0) in_command = false;
    if (line.rfind("### ", 0) == 0) {
      in_command = std::isdigit(static_cast<unsigned char>(line[4]));
      if (in_command) written += line.substr(line.find(' ', 4)) + " ";
      continue;
    }
    in_table = line.rfind("|", 0) == 0;
    if (!in_command || in_table || line.empty() || line == "lorimat") continue;
    written += shipped::Trim(line) + " ";
  }
  std::string given;
  for (const CommandHelp* command : chapters()) {
    given += " " + command->name + " " + GetParam().shortest + command->shortest + ". ";
    for (const std::string& text : command->text) given += text + " ";
    for (const std::string& text : command->remarks) given += text + " ";
    for (const std::string& line : command->examples) given += line + " ";
  }
  EXPECT_EQ(written, given);
}

TEST_P(CommandHelpPage, EveryCommandOfTheDefinitionFileHasHelp) {
  for (const auto& [number, row] : shipped::Rows(shipped::Sections().at("OPCOD"))) {
    const CommandHelp* help = find_command_help(row.number, GetParam().language);
    ASSERT_NE(nullptr, help) << row.name;
    EXPECT_EQ(row.name, help->name);
    EXPECT_FALSE(help->summary().empty()) << row.name;
    EXPECT_FALSE(help->codes.empty()) << row.name;
  }
  for (const auto& command : language::handler_fields()) {
    EXPECT_NE(nullptr, find_command_help(command.id, GetParam().language)) << command.id;
  }
  EXPECT_EQ(nullptr, find_command_help(0, GetParam().language));
  EXPECT_EQ(nullptr, find_command_help(149, GetParam().language));
}

TEST_P(CommandHelpPage, ASummaryIsOneSentence) {
  for (const CommandHelp* command : chapters()) {
    const std::string summary = command->summary();
    EXPECT_EQ('.', summary.back()) << summary;
    EXPECT_EQ(std::string::npos, summary.find(". ")) << summary;
    EXPECT_LT(summary.size(), 150u) << summary;
  }
}

TEST(CommandHelpEnglish, ASaleIsTold) {
  const CommandHelp* vend = find_command_help(10);
  ASSERT_NE(nullptr, vend);
  EXPECT_EQ("VEND", vend->name);
  EXPECT_EQ("VE", vend->shortest);
  EXPECT_EQ("Sale", vend->group);
  EXPECT_EQ("Sells one line.", vend->summary());
  ASSERT_NE(nullptr, vend->find_field(3));
  EXPECT_THAT(vend->find_field(3)->names, ElementsAre("QTA", "QUANT"));
  EXPECT_EQ("quantity", vend->find_field(3)->takes);
  EXPECT_EQ(nullptr, vend->find_field(8));
  EXPECT_EQ("265", vend->codes.front().code);
}

TEST(CommandHelpEnglish, CommandsWithoutAChapterAreTold) {
  const CommandHelp* selez = find_command_help(5);
  ASSERT_NE(nullptr, selez);
  EXPECT_EQ("Without effect; answers 1.", selez->summary());
  const CommandHelp* total = find_command_help(63);
  ASSERT_NE(nullptr, total);
  EXPECT_EQ("TOTREP", total->name);
  EXPECT_THAT(total->fields, SizeIs(4));
  EXPECT_EQ("268", total->codes.front().code);
}

TEST(CommandHelpReader, ReadsTheParagraphsOfAGroupAndOfACommand) {
  const auto groups = read_command_help(
      "# Title\n\ntext\n\n## Group\n\nShared one\nline.\n\nShared two.\n\n### 7 SELL\n\nShort: "
      "`SE`.\n\n"
      "Sells `it`. More.\n\n| No | Field | Short | Takes |\n|---|---|---|---|\n| 2 | A, B | A | "
      "text "
      "|\n\nAfter:\n\n- one\n  more\n- two\n\n```lorimat\nSELL A=1\n```\n");
  ASSERT_THAT(groups, SizeIs(1));
  EXPECT_EQ("Group", groups[0].title);
  EXPECT_THAT(groups[0].text, ElementsAre("Shared one line.", "Shared two."));
  ASSERT_THAT(groups[0].commands, SizeIs(1));
  const CommandHelp& sell = groups[0].commands[0];
  EXPECT_EQ(7, sell.id);
  EXPECT_EQ("SELL", sell.name);
  EXPECT_EQ("SE", sell.shortest);
  EXPECT_THAT(sell.text, ElementsAre("Sells it. More."));
  EXPECT_EQ("Sells it.", sell.summary());
  ASSERT_THAT(sell.fields, SizeIs(1));
  EXPECT_THAT(sell.fields[0].names, ElementsAre("A", "B"));
  EXPECT_THAT(sell.remarks, ElementsAre("After:", "- one more", "- two"));
  EXPECT_THAT(sell.examples, ElementsAre("SELL A=1"));
}

TEST(CommandHelpReader, OddPagesGiveWhatCanBeRead) {
  EXPECT_THAT(read_command_help(""), IsEmpty());
  EXPECT_THAT(read_command_help("| a |\n### 3 X\ntext"), IsEmpty());
  EXPECT_THAT(read_command_help("## \n### \n### x\n| |\n|\n||\n")[0].commands, IsEmpty());
  const auto groups = read_command_help(
      "## G\n### 3\nShort: \n| No | Field | Short | Takes |\n| 1 | A |\n|\n```\nline without end");
  ASSERT_THAT(groups, SizeIs(1));
  ASSERT_THAT(groups[0].commands, SizeIs(1));
  EXPECT_EQ("", groups[0].commands[0].name);
  EXPECT_THAT(groups[0].commands[0].fields, IsEmpty());
  EXPECT_THAT(groups[0].commands[0].examples, ElementsAre("line without end"));
  EXPECT_EQ("", groups[0].commands[0].summary());
}

TEST(CommandHelpReader, AnyByteMayStandAnywhere) {
  const std::string page =
      "## G\n### 3 X\n\nShort: `X`.\n\n| No | Field | Short | Takes |\n| 1 | A | A | t |\n";
  for (size_t at = 0; at < page.size(); ++at) {
    for (int byte = 0; byte < 256; ++byte) {
      std::string odd = page;
      odd[at] = static_cast<char>(byte);
      EXPECT_LE(read_command_help(odd).size(), 2u);
    }
    EXPECT_LE(read_command_help(page.substr(0, at)).size(), 1u);
  }
}

}  // namespace
