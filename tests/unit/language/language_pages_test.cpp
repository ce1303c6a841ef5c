// docs/language.it.md says what docs/language.md says: the two pages have the same chapters,
// tables and examples in the same order, with the same commands, fields, values, codes and numbers,
// and every text of the one is there in the language of the other.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cctype>
#include <map>
#include <regex>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "language/command_help.h"
#include "unit/language/shipped_language.h"

using language::CommandGroup;
using language::CommandHelp;
using language::PageLanguage;
using testing::IsEmpty;
using testing::Not;

namespace {

// A heading, a paragraph, an item of a list, a table or the lines between two fences.
struct Block {
  enum class Kind { kHeading, kParagraph, kItem, kTable, kFence };

  Kind kind = Kind::kParagraph;
  int line = 0;
  std::string mark;  // "##", or what stands behind the fence
  std::string text;  // of a heading, paragraph or item, on one line
  std::vector<std::vector<std::string>> rows;
  std::vector<std::string> lines;
};

std::vector<std::string> Cells(const std::string& line) {
  std::vector<std::string> cells;
  size_t at = 1;
  while (at < line.size()) {
    const size_t end = std::min(line.find('|', at), line.size());
    cells.push_back(shipped::Trim(line.substr(at, end - at)));
    at = end + 1;
  }
  return cells;
}

std::vector<Block> ReadBlocks(const std::string& name) {
  std::vector<Block> blocks;
  bool open = false;  // whether a line goes on with the last block
  bool fenced = false;
  int number = 0;
  const auto begin = [&](Block::Kind kind) -> Block& {
    blocks.push_back({});
    blocks.back().kind = kind;
    blocks.back().line = number;
    return blocks.back();
  };
  for (const std::string& line :
       shipped::Lines(std::filesystem::path(LORIMAT_SOURCE_DIR) / "docs" / name)) {
    ++number;
    if (line.rfind("```", 0) == 0) {
      fenced = !fenced;
      if (fenced) begin(Block::Kind::kFence).mark = line.substr(3);
      open = false;
    } else if (fenced) {
      blocks.back().lines.push_back(line);
    } else if (shipped::Trim(line).empty()) {
      open = false;
    } else if (line[0] == '#') {
      const size_t blank = line.find(' ');
      Block& heading = begin(Block::Kind::kHeading);
      heading.mark = line.substr(0, blank);
      heading.text = shipped::Trim(line.substr(blank));
      open = false;
    } else if (line[0] == '|') {
      if (!open || blocks.back().kind != Block::Kind::kTable) begin(Block::Kind::kTable);
      blocks.back().rows.push_back(Cells(line));
      open = true;
    } else if (line.rfind("- ", 0) == 0) {
      begin(Block::Kind::kItem).text = line.substr(2);
      open = true;
    } else if (open) {
      blocks.back().text += " " + shipped::Trim(line);
    } else {
      begin(Block::Kind::kParagraph).text = shipped::Trim(line);
      open = true;
    }
  }
  return blocks;
}

const std::vector<Block>& EnglishBlocks() {
  static const std::vector<Block> blocks = ReadBlocks("language.md");
  return blocks;
}

const std::vector<Block>& ItalianBlocks() {
  static const std::vector<Block> blocks = ReadBlocks("language.it.md");
  return blocks;
}

// The pairs of blocks of one kind, as far as both pages have them.
std::vector<std::pair<const Block*, const Block*>> Pairs(Block::Kind kind) {
  std::vector<std::pair<const Block*, const Block*>> found;
  const size_t count = std::min(EnglishBlocks().size(), ItalianBlocks().size());
  for (size_t i = 0; i < count; ++i) {
    if (EnglishBlocks()[i].kind == kind && ItalianBlocks()[i].kind == kind) {
      found.emplace_back(&EnglishBlocks()[i], &ItalianBlocks()[i]);
    }
  }
  return found;
}

std::string Place(const std::pair<const Block*, const Block*>& pair) {
  return "line " + std::to_string(pair.first->line) + " and, in Italian, " +
         std::to_string(pair.second->line);
}

bool IsUpper(char c) { return std::isupper(static_cast<unsigned char>(c)) != 0; }
bool IsDigit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }
// A byte of an accented letter counts as one, too.
bool IsWordByte(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_' ||
         static_cast<unsigned char>(c) >= 0x80;
}

std::vector<std::string> Words(const std::string& text) {
  std::vector<std::string> found;
  for (size_t at = 0; at < text.size(); ++at) {
    const size_t begin = at;
    while (at < text.size() && IsWordByte(text[at])) ++at;
    if (at != begin) found.push_back(text.substr(begin, at - begin));
  }
  return found;
}

// Numbers, and the words in capitals: commands, fields, values. None of them is translated but
// those of the map.
std::multiset<std::string> NamesAndNumbers(const std::string& text) {
  static const std::map<std::string, std::string> english = {
      {"IVA", "VAT"}, {"GGMMAA", "DDMMYY"}, {"GG", "DD"}, {"AA", "YY"}};
  std::multiset<std::string> found;
  for (const std::string& word : Words(text)) {
    const std::string start = word.substr(0, word.find_first_not_of("0123456789"));
    const bool capitals = word.size() > 1 && std::all_of(word.begin(), word.end(), [](char c) {
                            return IsUpper(c) || IsDigit(c) || c == '_';
                          });
    const auto other = english.find(word);
    if (capitals) {
      found.insert(other == english.end() ? word : other->second);
    } else if (!start.empty()) {
      found.insert(start);  // "50th"
    }
  }
  return found;
}

// Whether a text stands in both pages as it should: translated, with what is not translated.
void CompareTexts(const std::string& english, const std::string& italian) {
  EXPECT_THAT(english, Not(IsEmpty()));
  EXPECT_THAT(italian, Not(IsEmpty())) << english;
  if (Words(english).size() > 3) {
    EXPECT_NE(english, italian);
  }
  EXPECT_EQ(NamesAndNumbers(english), NamesAndNumbers(italian)) << english << "\n" << italian;
}

// A line of the language up to its comment, and the comment.
std::pair<std::string, std::string> WithoutComment(const std::string& line) {
  bool quoted = false;
  for (size_t i = 0; i < line.size(); ++i) {
    if (line[i] == '\'') quoted = !quoted;
    if (line[i] == ';' && !quoted) return {line.substr(0, i), line.substr(i)};
  }
  return {line, ""};
}

// The headings of columns whose cells are the same in both pages.
const std::map<std::string, std::string> kSameColumns = {
    {"N.", "No"},        {"Campo", "Field"}, {"Abbrev.", "Short"}, {"Codice", "Code"},
    {"Valore", "Value"}, {"Parola", "Word"}, {"Campi", "Fields"},  {"Comando", "Command"},
};
// The headings of columns whose cells are texts; those of values are told with their table.
const std::map<std::string, std::string> kTextColumns = {
    {"Prende", "Takes"}, {"Quando", "When"}, {"Tasto", "Key"}};
// The words for a refusal of the device stand among the codes.
const std::map<std::string, std::string> kCodeWords = {{"dispositivo", "device"},
                                                       {"dispositivo due volte", "device twice"}};

std::string InEnglish(const std::map<std::string, std::string>& map, const std::string& italian) {
  const auto found = map.find(italian);
  return found == map.end() ? "" : found->second;
}

}  // namespace

TEST(LanguagePages, HaveTheSameBlocksInTheSameOrder) {
  ASSERT_GT(EnglishBlocks().size(), 300u);
  for (size_t i = 0; i < std::min(EnglishBlocks().size(), ItalianBlocks().size()); ++i) {
    const Block& english = EnglishBlocks()[i];
    const Block& italian = ItalianBlocks()[i];
    ASSERT_EQ(english.kind, italian.kind) << Place({&english, &italian});
    ASSERT_EQ(english.mark, italian.mark) << Place({&english, &italian});
  }
  EXPECT_EQ(EnglishBlocks().size(), ItalianBlocks().size());
}

TEST(LanguagePages, HaveTheSameCommandsUnderTranslatedHeadings) {
  int commands = 0;
  for (const auto& pair : Pairs(Block::Kind::kHeading)) {
    SCOPED_TRACE(Place(pair));
    if (IsDigit(pair.first->text[0])) {
      ++commands;
      EXPECT_EQ(pair.first->text, pair.second->text);
    } else {
      EXPECT_NE(pair.first->text, pair.second->text);
    }
  }
  EXPECT_GT(commands, 40);
}

TEST(LanguagePages, HaveTheSameShortForms) {
  const std::string english = "Short: ";
  const std::string italian = "Abbreviazione: ";
  int forms = 0;
  for (const auto& pair : Pairs(Block::Kind::kParagraph)) {
    SCOPED_TRACE(Place(pair));
    const bool is_form = pair.first->text.rfind(english, 0) == 0;
    ASSERT_EQ(is_form, pair.second->text.rfind(italian, 0) == 0);
    if (!is_form) continue;
    ++forms;
    EXPECT_EQ(pair.first->text.substr(english.size()), pair.second->text.substr(italian.size()));
  }
  EXPECT_GT(forms, 40);
}

TEST(LanguagePages, SayTheSameInTheirTexts) {
  for (const Block::Kind kind : {Block::Kind::kParagraph, Block::Kind::kItem}) {
    for (const auto& pair : Pairs(kind)) {
      SCOPED_TRACE(Place(pair));
      CompareTexts(pair.first->text, pair.second->text);
    }
  }
}

TEST(LanguagePages, HaveTheSameRowsInTheirTables) {
  int rows = 0;
  for (const auto& pair : Pairs(Block::Kind::kTable)) {
    SCOPED_TRACE(Place(pair));
    const auto& english = pair.first->rows;
    const auto& italian = pair.second->rows;
    ASSERT_EQ(english.size(), italian.size());
    ASSERT_EQ(english[0].size(), italian[0].size());
    for (size_t column = 0; column < english[0].size(); ++column) {
      const std::string same = InEnglish(kSameColumns, italian[0][column]);
      const std::string text = InEnglish(kTextColumns, italian[0][column]);
      if (same.empty() && text.empty()) {
        EXPECT_EQ("Value", english[0][0]);
        EXPECT_EQ(2u, column);
        EXPECT_NE(english[0][column], italian[0][column]);
      } else {
        EXPECT_EQ(english[0][column], same.empty() ? text : same);
      }
      for (size_t row = 2; row < english.size(); ++row) {
        ASSERT_EQ(english[row].size(), italian[row].size());
        ++rows;
        const std::string& cell = italian[row][column];
        if (same.empty()) {
          CompareTexts(english[row][column], cell);
        } else {
          const std::string word = InEnglish(kCodeWords, cell);
          EXPECT_EQ(english[row][column], word.empty() ? cell : word);
        }
      }
    }
  }
  EXPECT_GT(rows, 1500);
}

// A text that stands in several tables is translated in one way.
TEST(LanguagePages, CallAThingByOneName) {
  std::map<std::string, std::pair<std::string, int>> known;
  for (const auto& pair : Pairs(Block::Kind::kTable)) {
    const size_t columns = std::min(pair.first->rows[0].size(), pair.second->rows[0].size());
    for (size_t row = 2; row < std::min(pair.first->rows.size(), pair.second->rows.size()); ++row) {
      const std::string& english = pair.first->rows[row].at(columns - 1);
      const std::string& italian = pair.second->rows[row].at(columns - 1);
      const auto& [other, line] = known
                                      .emplace(pair.first->rows[0].back() + "/" + english,
                                               std::make_pair(italian, pair.second->line))
                                      .first->second;
      EXPECT_EQ(other, italian) << "\"" << english << "\", lines " << line << " and "
                                << pair.second->line;
    }
  }
}

// What a field takes begins with the same kind of value.
TEST(LanguagePages, GiveFieldsTheSameKinds) {
  const std::map<std::string, std::string> kinds = {
      {"flag", "indicatore"},    {"bare flag", "solo nome"}, {"yes/no", "sì/no"},
      {"number", "numero"},      {"text", "testo"},          {"price", "prezzo"},
      {"quantity", "quantità"},  {"amount", "importo"},      {"percentage", "percentuale"},
      {"the same", "lo stesso"},
  };
  const auto begins_with_word = [](const std::string& text, const std::string& word) {
    return text.rfind(word, 0) == 0 &&
           (text.size() == word.size() || !IsWordByte(text[word.size()]));
  };
  int found = 0;
  for (const auto& pair : Pairs(Block::Kind::kTable)) {
    if (pair.first->rows[0].back() != "Takes") continue;
    for (size_t row = 2; row < std::min(pair.first->rows.size(), pair.second->rows.size()); ++row) {
      for (const auto& [english, italian] : kinds) {
        const std::string& cell = pair.first->rows[row].back();
        if (!begins_with_word(cell, english)) continue;
        ++found;
        EXPECT_TRUE(begins_with_word(pair.second->rows[row].back(), italian)) << cell;
      }
    }
  }
  EXPECT_GT(found, 100);
}

TEST(LanguagePages, HaveTheSameExamplesUpToTheirComments) {
  int lines = 0;
  int comments = 0;
  for (const auto& pair : Pairs(Block::Kind::kFence)) {
    SCOPED_TRACE(Place(pair));
    ASSERT_EQ(pair.first->lines.size(), pair.second->lines.size());
    for (size_t i = 0; i < pair.first->lines.size(); ++i) {
      const auto [english, english_comment] = WithoutComment(pair.first->lines[i]);
      const auto [italian, italian_comment] = WithoutComment(pair.second->lines[i]);
      EXPECT_EQ(english, italian);
      EXPECT_EQ(english_comment.empty(), italian_comment.empty());
      ++lines;
      if (english_comment.empty()) continue;
      ++comments;
      // An answer that a comment tells is the same.
      CompareTexts(english_comment, italian_comment);
      EXPECT_NE(english_comment, italian_comment);
    }
  }
  EXPECT_GT(lines, 90);
  EXPECT_GT(comments, 0);
}

TEST(LanguagePages, HaveNoEnglishInTheItalian) {
  const std::set<std::string> english = {"the", "of", "and", "is",  "are", "when", "with",
                                         "to",  "it", "its", "for", "not", "by",   "or"};
  const auto look = [&](const std::string& text, int line) {
    // Names of files are no text.
    const std::string read = std::regex_replace(text, std::regex("[a-z]+\\.(it\\.)?md"), "");
    for (const std::string& word : Words(read)) {
      EXPECT_EQ(0u, english.count(word)) << "line " << line << ": " << text;
    }
  };
  for (const Block& block : ItalianBlocks()) {
    look(block.text, block.line);
    for (const auto& row : block.rows) {
      for (const std::string& cell : row) look(cell, block.line);
    }
  }
}

// --- The pages as they were compiled in.

namespace {

void CompareCommands(const CommandHelp& english, const CommandHelp& italian) {
  SCOPED_TRACE(english.name);
  EXPECT_EQ(english.id, italian.id);
  EXPECT_EQ(english.name, italian.name);
  EXPECT_EQ(english.shortest, italian.shortest);
  ASSERT_EQ(english.examples.size(), italian.examples.size());
  for (size_t i = 0; i < english.examples.size(); ++i) {
    EXPECT_EQ(WithoutComment(english.examples[i]).first, WithoutComment(italian.examples[i]).first);
  }
  ASSERT_EQ(english.text.size(), italian.text.size());
  for (size_t i = 0; i < english.text.size(); ++i) CompareTexts(english.text[i], italian.text[i]);
  CompareTexts(english.summary(), italian.summary());
  ASSERT_EQ(english.remarks.size(), italian.remarks.size());
  for (size_t i = 0; i < english.remarks.size(); ++i) {
    CompareTexts(english.remarks[i], italian.remarks[i]);
  }
  ASSERT_EQ(english.fields.size(), italian.fields.size());
  for (size_t i = 0; i < english.fields.size(); ++i) {
    EXPECT_EQ(english.fields[i].number, italian.fields[i].number);
    EXPECT_EQ(english.fields[i].names, italian.fields[i].names);
    EXPECT_EQ(english.fields[i].shortest, italian.fields[i].shortest);
    CompareTexts(english.fields[i].takes, italian.fields[i].takes);
  }
  ASSERT_EQ(english.values.size(), italian.values.size());
  for (size_t i = 0; i < english.values.size(); ++i) {
    EXPECT_NE(english.values[i].what, italian.values[i].what);
    ASSERT_EQ(english.values[i].rows.size(), italian.values[i].rows.size());
    for (size_t row = 0; row < english.values[i].rows.size(); ++row) {
      EXPECT_EQ(english.values[i].rows[row].value, italian.values[i].rows[row].value);
      EXPECT_EQ(english.values[i].rows[row].word, italian.values[i].rows[row].word);
      CompareTexts(english.values[i].rows[row].meaning, italian.values[i].rows[row].meaning);
    }
  }
  ASSERT_EQ(english.codes.size(), italian.codes.size());
  for (size_t i = 0; i < english.codes.size(); ++i) {
    const std::string word = InEnglish(kCodeWords, italian.codes[i].code);
    EXPECT_EQ(english.codes[i].code, word.empty() ? italian.codes[i].code : word);
    CompareTexts(english.codes[i].when, italian.codes[i].when);
  }
}

}  // namespace

TEST(CommandHelpLanguages, HaveTheSameCommandsInTheSameGroups) {
  const std::vector<CommandGroup>& english = language::command_groups();
  const std::vector<CommandGroup>& italian = language::command_groups(PageLanguage::kItalian);
  ASSERT_EQ(english.size(), italian.size());
  for (size_t i = 0; i < english.size(); ++i) {
    SCOPED_TRACE(english[i].title);
    EXPECT_NE(english[i].title, italian[i].title);
    ASSERT_EQ(english[i].text.size(), italian[i].text.size());
    for (size_t text = 0; text < english[i].text.size(); ++text) {
      CompareTexts(english[i].text[text], italian[i].text[text]);
    }
    ASSERT_EQ(english[i].commands.size(), italian[i].commands.size());
    for (size_t command = 0; command < english[i].commands.size(); ++command) {
      EXPECT_EQ(italian[i].title, italian[i].commands[command].group);
      CompareCommands(english[i].commands[command], italian[i].commands[command]);
    }
  }
}

TEST(CommandHelpLanguages, EnglishIsTheOneThatIsGivenUnasked) {
  EXPECT_EQ("Sells one line.", language::find_command_help(10)->summary());
  EXPECT_EQ(language::find_command_help(10),
            language::find_command_help(10, PageLanguage::kEnglish));
  EXPECT_EQ(&language::command_groups(), &language::command_groups(PageLanguage::kEnglish));
  const CommandHelp* vend = language::find_command_help(10, PageLanguage::kItalian);
  ASSERT_NE(nullptr, vend);
  EXPECT_EQ("Vende una riga.", vend->summary());
  EXPECT_EQ("Vendita", vend->group);
  EXPECT_EQ("quantità", vend->find_field(3)->takes);
  EXPECT_EQ(nullptr, language::find_command_help(149, PageLanguage::kItalian));
}

TEST(CommandHelpLanguages, CommandsWithoutAChapterAreToldInItalian) {
  const CommandHelp* selez = language::find_command_help(5, PageLanguage::kItalian);
  ASSERT_NE(nullptr, selez);
  EXPECT_EQ("Senza effetto; risponde 1.", selez->summary());
  EXPECT_EQ("sempre", selez->codes.at(0).when);
  const CommandHelp* total = language::find_command_help(63, PageLanguage::kItalian);
  ASSERT_NE(nullptr, total);
  EXPECT_EQ("compare nei dump", total->fields.at(3).takes);
  EXPECT_EQ("268", total->codes.at(0).code);
}

TEST(CommandHelpLanguages, APageIsReadByTheWordsOfItsLanguage) {
  const std::string page =
      "## G\n### 7 SELL\n\nAbbreviazione: `SE`.\n\n| N. | Campo | Abbrev. | Prende |\n|---|---|---|"
      "---|\n| 2 | A | A | solo nome: x |\n\n| Codice | Quando |\n|---|---|\n| 3 | mai |\n";
  const CommandHelp italian =
      language::read_command_help(page, PageLanguage::kItalian).at(0).commands.at(0);
  EXPECT_EQ("SE", italian.shortest);
  ASSERT_EQ(1u, italian.fields.size());
  EXPECT_EQ("solo nome: x", italian.fields[0].takes);
  EXPECT_EQ("mai", italian.codes.at(0).when);
  const CommandHelp english = language::read_command_help(page).at(0).commands.at(0);
  EXPECT_EQ("", english.shortest);
  EXPECT_THAT(english.fields, IsEmpty());
  EXPECT_THAT(english.codes, IsEmpty());
}
