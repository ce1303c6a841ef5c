// docs/language.md and its Italian, docs/language.it.md, say what the definition file binds: the
// same commands and fields under the same numbers, words with their values, short forms that hold,
// and example lines that the translator reads.
#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <memory>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "pal/protocols/lorimat/dfltmsg.h"
#include "pal/protocols/lorimat/front/opcodes.h"
#include "pal/threading/posix/thread.h"
#include "unit/language/shipped_language.h"

namespace {

using TableRow = std::vector<std::string>;

struct Table {
  TableRow header;
  std::vector<TableRow> rows;
  int line = 0;
};

// A part of the page under one heading.
struct Chapter {
  std::string title;    // of the nearest "##"
  std::string heading;  // of the "###", empty in front of the first one
  int id = 0;           // of the command, 0 when it is no command's chapter
  std::string command;
  std::string short_form;
  std::vector<Table> tables;
  std::vector<std::string> examples;
};

// A page, and what its own words for chapters, columns and codes are in English.
struct Page {
  std::string name;
  std::string file;
  std::string shortest;
  std::map<std::string, std::string> english;

  std::string InEnglish(const std::string& word) const {
    const auto found = english.find(word);
    return found == english.end() ? word : found->second;
  }
};

const Page kPages[] = {
    {"English", "language.md", "Short: `", {}},
    {"Italian",
     "language.it.md",
     "Abbreviazione: `",
     {{"Righe", "Lines"},
      {"Non ancora presenti", "Not there yet"},
      {"Comandi senza effetto", "Commands without effect"},
      {"Parole dei dump", "Words of dumps"},
      {"N.", "No"},
      {"Campo", "Field"},
      {"Abbrev.", "Short"},
      {"Prende", "Takes"},
      {"Codice", "Code"},
      {"Quando", "When"},
      {"Comando", "Command"},
      {"Per", "For"},
      {"Valore", "Value"},
      {"Parola", "Word"},
      {"Campi", "Fields"},
      {"Tasto", "Key"},
      {"dispositivo", "device"},
      {"dispositivo due volte", "device twice"}}},
};

void PrintTo(const Page& page, std::ostream* stream) { *stream << page.file; }

TableRow Cells(const std::string& line) {
  TableRow cells;
  std::istringstream stream(line.substr(1));
  for (std::string cell; std::getline(stream, cell, '|');) cells.push_back(shipped::Trim(cell));
  if (!cells.empty() && cells.back().empty()) cells.pop_back();
  return cells;
}

std::vector<Chapter> ReadPage(const Page& page) {
  std::vector<Chapter> chapters(1);
  bool in_table = false;
  std::string fence;
  int number = 0;
  for (const std::string& line :
       shipped::Lines(std::filesystem::path(LORIMAT_SOURCE_DIR) / "docs" / page.file)) {
    ++number;
    if (line.rfind("```", 0) == 0) {
      fence = fence.empty() ? line : "";
      in_table = false;
      continue;
    }
    if (!fence.empty()) {
      if (fence == "```lorimat" && !shipped::Trim(line).empty()) {
        chapters.back().examples.push_back(line);
      }
      continue;
    }
    if (line.rfind("## ", 0) == 0 || line.rfind("### ", 0) == 0) {
      Chapter chapter;
      if (line[2] == ' ') {
        chapter.title = page.InEnglish(line.substr(3));
      } else {
        chapter.title = chapters.back().title;
        chapter.heading = line.substr(4);
        chapter.id = std::atoi(chapter.heading.c_str());
        if (chapter.id != 0) {
          chapter.command = chapter.heading.substr(chapter.heading.find(' ') + 1);
        }
      }
      chapters.push_back(chapter);
    }
    if (line.rfind(page.shortest, 0) == 0) {
      const size_t begin = page.shortest.size();
      chapters.back().short_form = line.substr(begin, line.find('`', begin) - begin);
    }
    if (line.empty() || line.front() != '|') {
      in_table = false;
      continue;
    }
    if (!in_table) {
      TableRow header = Cells(line);
      for (std::string& cell : header) cell = page.InEnglish(cell);
      chapters.back().tables.push_back({header, {}, number});
      in_table = true;
    } else if (line.rfind("|--", 0) != 0) {
      Table& table = chapters.back().tables.back();
      table.rows.push_back(Cells(line));
      std::string& first = table.rows.back().front();
      if (table.header.front() == "Code") first = page.InEnglish(first);
    }
  }
  return chapters;
}

class LanguageDocs : public testing::TestWithParam<Page> {
 protected:
  static void SetUpTestSuite() {
    int result = 0;
    translator_ = shipped::Read(&result).release();
    ASSERT_EQ(1, result);
  }
  static void TearDownTestSuite() {
    delete translator_;
    translator_ = nullptr;
  }

  // The commands that have a chapter.
  std::vector<Chapter> Commands() const {
    std::vector<Chapter> commands;
    std::copy_if(chapters_.begin(), chapters_.end(), std::back_inserter(commands),
                 [](const Chapter& chapter) { return chapter.id != 0; });
    return commands;
  }

  static std::vector<Table> Tables(const Chapter& chapter, const TableRow& header) {
    std::vector<Table> tables;
    std::copy_if(chapter.tables.begin(), chapter.tables.end(), std::back_inserter(tables),
                 [&](const Table& table) { return table.header == header; });
    return tables;
  }

  // Rows of number and name of the table of a "##" chapter.
  std::map<int, std::string> Listed(const std::string& title, const TableRow& header) const {
    std::map<int, std::string> listed;
    for (const Chapter& chapter : chapters_) {
      if (chapter.title != title || !chapter.heading.empty()) continue;
      for (const Table& table : Tables(chapter, header)) {
        for (const TableRow& row : table.rows) listed[std::atoi(row[0].c_str())] = row[1];
      }
    }
    return listed;
  }

  std::map<int, std::string> Pending() const {
    return Listed("Not there yet", {"No", "Command", "For"});
  }
  std::map<int, std::string> Stubs() const {
    return Listed("Commands without effect", {"No", "Command", "Code"});
  }
  std::map<int, std::string> DumpWords() const {
    return Listed("Words of dumps", {"No", "Word", "Fields"});
  }

  static EcrCmdCommand* translator_;
  const std::vector<Chapter> chapters_ = ReadPage(GetParam());
};

EcrCmdCommand* LanguageDocs::translator_ = nullptr;

INSTANTIATE_TEST_SUITE_P(Languages, LanguageDocs, testing::ValuesIn(kPages),
                         [](const auto& test) { return test.param.name; });

const TableRow kFieldHeader = {"No", "Field", "Short", "Takes"};
const TableRow kCodeHeader = {"Code", "When"};

std::vector<std::string> Names(const std::string& cell) {
  std::vector<std::string> names;
  std::istringstream stream(cell);
  for (std::string name; std::getline(stream, name, ',');) names.push_back(shipped::Trim(name));
  return names;
}

TEST_P(LanguageDocs, EveryTableHasAKnownFormAndWholeRows) {
  const std::set<TableRow> known = {kFieldHeader,
                                    kCodeHeader,
                                    {"No", "Command", "For"},
                                    {"No", "Command", "Code"},
                                    {"No", "Word", "Fields"},
                                    {"Code", "Word", "Key"}};
  for (const Chapter& chapter : chapters_) {
    for (const Table& table : chapter.tables) {
      SCOPED_TRACE("line " + std::to_string(table.line));
      const bool words =
          table.header.size() == 3 && table.header[0] == "Value" && table.header[1] == "Word";
      EXPECT_TRUE(words || known.count(table.header));
      EXPECT_FALSE(table.rows.empty());
      for (const TableRow& row : table.rows) EXPECT_EQ(table.header.size(), row.size());
    }
  }
}

TEST_P(LanguageDocs, NamesEveryCommandOfTheFileAndNoOther) {
  std::map<int, std::string> named = Pending();
  for (const auto& listed : {Stubs(), DumpWords()}) {
    for (const auto& [id, name] : listed) {
      EXPECT_TRUE(named.emplace(id, name).second) << name << " is listed twice";
    }
  }
  std::set<int> chapters;
  for (const Chapter& command : Commands()) {
    EXPECT_TRUE(chapters.insert(command.id).second) << command.command << " has two chapters";
    EXPECT_EQ(0u, Stubs().count(command.id) + DumpWords().count(command.id)) << command.command;
    const auto [entry, added] = named.emplace(command.id, command.command);
    EXPECT_EQ(command.command, entry->second);
  }
  for (int row = 1; row < MAXOPCOD; ++row) {
    const std::string name = translator_->szOpCodes[row];
    const auto found = named.find(row);
    EXPECT_EQ(name, found == named.end() ? "" : found->second) << row;
  }
}

// A command works exactly when the page does not list it as missing. Without a client and
// without fields every handler comes back at once.
TEST_P(LanguageDocs, ListsAsMissingExactlyTheCommandsThatAreNotBuilt) {
  // Without a client the reports wait for the whole of their time.
  Thread::SetSleepFunction([](int) {});
  for (int row = 1; row < MAXOPCOD; ++row) {
    const CommandHandler handler = FindHandler(row);
    if (handler == nullptr) {
      EXPECT_EQ(0u, Pending().count(row) + Stubs().count(row)) << row;
      continue;
    }
    for (auto& field : translator_->szCampi) field[0] = 0;
    const int code = (translator_->*handler)();
    EXPECT_EQ(Pending().count(row) != 0, code == 268)
        << row << " " << translator_->szOpCodes[row] << " answers " << code;
  }
  Thread::SetSleepFunction(nullptr);
}

TEST_P(LanguageDocs, StubsAnswerAsThePageSays) {
  for (const Chapter& chapter : chapters_) {
    for (const Table& table : Tables(chapter, {"No", "Command", "Code"})) {
      for (const TableRow& row : table.rows) {
        SCOPED_TRACE(row[1]);
        const CommandHandler handler = FindHandler(std::atoi(row[0].c_str()));
        ASSERT_NE(nullptr, handler);
        EXPECT_EQ(std::atoi(row[2].c_str()), (translator_->*handler)());
        EXPECT_EQ(0, translator_->iNumOper[std::atoi(row[0].c_str())]);
      }
    }
  }
}

TEST_P(LanguageDocs, NamesEveryFieldOfACommandAndNoOther) {
  for (const Chapter& command : Commands()) {
    SCOPED_TRACE(command.command);
    std::multimap<int, std::string> written;
    const std::vector<Table> tables = Tables(command, kFieldHeader);
    EXPECT_LE(tables.size(), 1u);
    for (const Table& table : tables) {
      for (const TableRow& row : table.rows) {
        for (const std::string& name : Names(row[1])) {
          written.emplace(std::atoi(row[0].c_str()), name);
        }
      }
    }
    std::multimap<int, std::string> bound;
    for (int row = 1; row <= translator_->iNumOper[command.id]; ++row) {
      const std::string name = translator_->szKeyI[command.id][row];
      if (!name.empty()) bound.emplace(translator_->iNCI[command.id][row], name);
    }
    EXPECT_EQ(bound, written);
  }
}

TEST_P(LanguageDocs, NamesTheFieldsOfTheWordsOfDumps) {
  for (const auto& [id, word] : DumpWords()) {
    for (const Chapter& chapter : chapters_) {
      for (const Table& table : Tables(chapter, {"No", "Word", "Fields"})) {
        for (const TableRow& row : table.rows) {
          if (std::atoi(row[0].c_str()) != id) continue;
          const std::vector<std::string> names = Names(row[2]);
          ASSERT_EQ(translator_->iNumOper[id], static_cast<int>(names.size())) << word;
          for (size_t i = 0; i < names.size(); ++i) {
            EXPECT_EQ(names[i], translator_->szKeyI[id][i + 1]) << word;
          }
        }
      }
    }
  }
}

// The short form and everything longer find the command or field; one letter less does
// not.
TEST_P(LanguageDocs, ShortFormsHoldAndAreTheShortest) {
  for (const Chapter& command : Commands()) {
    const std::string& brief = command.short_form;
    SCOPED_TRACE(command.command);
    ASSERT_FALSE(brief.empty());
    ASSERT_EQ(0u, command.command.find(brief));
    for (size_t length = brief.size(); length <= command.command.size(); ++length) {
      const std::string word = command.command.substr(0, length);
      EXPECT_EQ(command.id, shipped::Command(*translator_, word)) << word;
    }
    if (brief.size() > 1) {
      const std::string word = brief.substr(0, brief.size() - 1);
      EXPECT_NE(command.id, shipped::Command(*translator_, word)) << word;
    }
    for (const Table& table : Tables(command, kFieldHeader)) {
      for (const TableRow& row : table.rows) {
        const int number = std::atoi(row[0].c_str());
        const std::string name = Names(row[1]).front();
        ASSERT_FALSE(row[2].empty()) << name;
        ASSERT_EQ(0u, name.find(row[2])) << name;
        for (size_t length = row[2].size(); length <= name.size(); ++length) {
          const std::string word = name.substr(0, length);
          EXPECT_EQ(number, shipped::Field(*translator_, command.id, word)) << word;
        }
        if (row[2].size() > 1) {
          const std::string word = row[2].substr(0, row[2].size() - 1);
          EXPECT_NE(number, shipped::Field(*translator_, command.id, word)) << word;
        }
      }
    }
  }
}

// The code that an example says it answers; 0 for OK.
int SaidAnswer(const std::string& line) {
  for (const std::string word : {"; answers ", "; risponde "}) {
    const size_t at = line.find(word);
    if (at != std::string::npos) return std::atoi(line.c_str() + at + word.size());
  }
  return 0;
}

TEST_P(LanguageDocs, EveryExampleReadsAsItsCommand) {
  int examples = 0;
  for (const Chapter& chapter : chapters_) {
    for (const std::string& line : chapter.examples) {
      SCOPED_TRACE(line);
      ++examples;
      const int id = shipped::Parse(*translator_, line);
      if (id <= 0) {
        EXPECT_EQ(256 - id, SaidAnswer(line));
        continue;
      }
      if (chapter.id != 0) {
        EXPECT_EQ(chapter.id, id);
      }
    }
  }
  EXPECT_GT(examples, 0);
  for (const Chapter& command : Commands()) {
    EXPECT_FALSE(command.examples.empty()) << command.command;
  }
}

// The three spellings of one sale in the chapter on lines give the same fields.
TEST_P(LanguageDocs, TheSpellingsOfALineMeanTheSame) {
  for (const Chapter& chapter : chapters_) {
    if (chapter.title != "Lines" || !chapter.heading.empty()) continue;
    ASSERT_EQ(3u, chapter.examples.size());
    for (const std::string& line : chapter.examples) {
      EXPECT_EQ(10, shipped::Parse(*translator_, line)) << line;
      EXPECT_STREQ("1", translator_->szCampi[1]) << line;
      EXPECT_STREQ("1.50", translator_->szCampi[4]) << line;
    }
    return;
  }
  FAIL() << "no chapter on lines";
}

TEST_P(LanguageDocs, EveryCommandTellsItsResultCodes) {
  auto defaults = std::make_unique<EcrCmdCommand>();
  WriteDefaultMessages(*defaults);
  for (const Chapter& command : Commands()) {
    SCOPED_TRACE(command.command);
    const std::vector<Table> tables = Tables(command, kCodeHeader);
    ASSERT_EQ(1u, tables.size());
    for (const TableRow& row : tables.front().rows) {
      if (row[0] == "device" || row[0] == "device twice" || row[0] == "0") continue;
      const int code = std::atoi(row[0].c_str());
      EXPECT_EQ(std::to_string(code), row[0]);
      // Codes of the translator's own have a text; the others carry a device's class bit.
      if (code < 0x100) {
        EXPECT_STRNE("", defaults->TabErrTradBase[code]) << code;
      } else if (code < 0x200) {
        EXPECT_STRNE("", defaults->TabErrTrad1[code & 0xFF]) << code;
      } else if ((code & 0xFFFF00) == 0x2000) {
        EXPECT_STRNE("", defaults->TabErrTrad6[code & 0xFF]) << code;
      } else {
        EXPECT_NE(0, code & 0x400) << code;
      }
    }
  }
}

// Every word for a value stands in the page, with its value.
TEST_P(LanguageDocs, GivesEveryWordItsValue) {
  std::map<std::string, int> written;
  for (const Chapter& chapter : chapters_) {
    for (const Table& table : chapter.tables) {
      if (table.header[0] != "Value" || table.header[1] != "Word") continue;
      for (const TableRow& row : table.rows) {
        if (row[1] == "-") continue;
        int value = -1;
        std::string word = row[1];
        EXPECT_TRUE(translator_->TradSimb(word.data(), &value)) << word;
        EXPECT_EQ(row[0], std::to_string(value)) << word;
        written[word] = value;
      }
    }
  }
  const auto sections = shipped::Sections();
  for (const auto& [word, value] : sections.at("EQU")) {
    EXPECT_EQ(1u, written.count(word)) << word;
  }
}

TEST_P(LanguageDocs, GivesEveryKeyItsCode) {
  std::set<int> written;
  for (const Chapter& chapter : chapters_) {
    for (const Table& table : Tables(chapter, {"Code", "Word", "Key"})) {
      for (const TableRow& row : table.rows) {
        SCOPED_TRACE(row[0] + " " + row[1]);
        const size_t dash = row[0].find('-');
        const int first = std::atoi(row[0].c_str());
        const int last = dash == std::string::npos ? first : std::atoi(row[0].c_str() + dash + 1);
        ASSERT_LE(first, last);
        const size_t word_dash = row[1].find('-');
        ASSERT_EQ(dash == std::string::npos, word_dash == std::string::npos);
        const std::string first_word = row[1].substr(0, word_dash);
        const std::string last_word =
            word_dash == std::string::npos ? first_word : row[1].substr(word_dash + 1);
        EXPECT_EQ(first_word, translator_->szSimb[translator_->iInvTast[first]]);
        EXPECT_EQ(last_word, translator_->szSimb[translator_->iInvTast[last]]);
        for (int code = first; code <= last; ++code) {
          EXPECT_TRUE(written.insert(code).second) << code;
          const std::string word = translator_->szSimb[translator_->iInvTast[code]];
          EXPECT_EQ(first_word[0], word[0]) << code;
        }
      }
    }
  }
  std::set<int> bound;
  const auto sections = shipped::Sections();
  for (const auto& [word, code] : sections.at("EQUTASTI")) bound.insert(std::atoi(code.c_str()));
  EXPECT_EQ(bound, written);
}

}  // namespace
