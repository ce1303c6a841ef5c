// Words looked up by an index, beside a scan of all rows as the rules have it, while somebody
// changes the tables between two look-ups.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "pal/protocols/lorimat/buffers.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/front/messages.h"

namespace {

constexpr std::string_view kAlphabet = "AbB_9x";

std::vector<std::string> EveryWord(size_t longest) {
  std::vector<std::string> words = {""};
  for (size_t begin = 0, length = 1; length <= longest; ++length) {
    const size_t end = words.size();
    for (; begin < end; ++begin) {
      for (const char c : kAlphabet) words.push_back(words[begin] + c);
    }
  }
  return words;
}

bool SameStart(const std::string& a, const std::string& b) {
  const size_t length = std::min(a.size(), b.size());
  return std::equal(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(length), b.begin(),
                    [](char x, char y) { return std::tolower(x) == std::tolower(y); });
}

struct Row {
  std::string name;
  int number;
};

struct Found {
  int result;
  int number;
  bool operator==(const Found&) const = default;
};

// The rules of commands: the first row that matches counts, but for one in full behind it, when no
// other stands between.
Found ScanCommands(const std::vector<Row>& rows, const std::string& word) {
  const auto matches = [&](const Row& row) {
    return !row.name.empty() && SameStart(row.name, word);
  };
  auto row = std::find_if(rows.begin(), rows.end(), matches);
  if (row == rows.end()) return {INSTRUCTION_NOT_FOUND, 0};
  Found found = {0, row->number};
  bool exact = row->name.size() == word.size();
  size_t longest = std::min(row->name.size(), word.size());
  while ((row = std::find_if(row + 1, rows.end(), matches)) != rows.end()) {
    const size_t compared = std::min(row->name.size(), word.size());
    if (compared < longest) continue;
    const bool exact_too = row->name.size() == word.size();
    if (exact_too == exact) return {INSTRUCTION_NOT_UNIC, 0};
    if (exact) continue;
    exact = true;
    longest = compared;
    found.number = row->number;
  }
  return found;
}

// And of fields: names of one number never conflict.
Found ScanFields(const std::vector<Row>& rows, const std::string& word) {
  const auto matches = [&](const Row& row) {
    return !row.name.empty() && SameStart(row.name, word);
  };
  auto row = std::find_if(rows.begin(), rows.end(), matches);
  if (row == rows.end()) return {FIELD_NAME_NOT_FOUND, 0};
  const Found found = {0, row->number};
  if (row->name.size() == word.size()) return found;
  const size_t longest = std::min(row->name.size(), word.size());
  row = std::find_if(row + 1, rows.end(), [&](const Row& other) {
    return matches(other) && std::min(other.name.size(), word.size()) >= longest &&
           other.number != found.number;
  });
  if (row == rows.end()) return found;
  if (row->name.size() == word.size()) return {0, row->number};
  return {FIELD_NAME_NOT_UNIC, 0};
}

class NameIndexTest : public ::testing::Test {
 protected:
  static constexpr int kOpcode = 10;

  // A name by chance, or none.
  std::string AnyName() {
    std::string name(Below(6), ' ');
    for (char& c : name) c = kAlphabet[Below(kAlphabet.size())];
    return name;
  }
  size_t Below(size_t limit) { return chance_() % limit; }

  // Changes a row of either table, or how many fields there are.
  void ChangeSomething() {
    const Row row = {AnyName(), static_cast<int>(Below(4)) + 1};
    switch (Below(3)) {
      case 0: {
        const size_t place = Below(MAXOPCOD - 1) + 1;
        commands_[place] = row;
        CopyText(t().szOpCodes[place], row.name.c_str());
        t().iIdOpCodes[place] = row.number;
        return;
      }
      case 1: {
        const size_t place = Below(MAXCAMPI) + 1;
        fields_[place] = row;
        CopyText(t().szKeyI[kOpcode][place], row.name.c_str());
        t().iNCI[kOpcode][place] = row.number;
        return;
      }
      default:
        field_rows_ = Below(MAXCAMPI + 1);
        t().iNumOper[kOpcode] = static_cast<int>(field_rows_);
        return;
    }
  }

  Found Command(std::string word) {
    int place = 1;
    int id = 0;
    const int result = t().GetCodOp(word.data(), &place, &id);
    return {result, id};
  }
  Found Field(std::string word) {
    int number = 0;
    const int result = t().GetNumOper(kOpcode, word.data(), &number);
    return {result, number};
  }
  void CompareAll(const std::vector<std::string>& words) {
    const std::vector<Row> fields(fields_.begin(),
                                  fields_.begin() + static_cast<std::ptrdiff_t>(field_rows_) + 1);
    for (const std::string& word : words) {
      ASSERT_EQ(Command(word), ScanCommands(commands_, word)) << "command '" << word << "'";
      ASSERT_EQ(Field(word), ScanFields(fields, word)) << "field '" << word << "'";
    }
  }

  EcrCmdCommand& t() { return *translator_; }

  std::unique_ptr<EcrCmdCommand> translator_ = std::make_unique<EcrCmdCommand>();
  std::vector<Row> commands_ = std::vector<Row>(MAXOPCOD);
  std::vector<Row> fields_ = std::vector<Row>(MAXCAMPI + 1);
  size_t field_rows_ = 0;
  std::mt19937 chance_{20261122};
};

TEST_F(NameIndexTest, FindsWhatAScanOfAllRowsFinds) {
  const std::vector<std::string> words = EveryWord(4);
  for (int tables = 0; tables < 300; ++tables) {
    for (int change = 0; change < 10; ++change) ChangeSomething();
    CompareAll(words);
    if (HasFatalFailure()) return;
  }
}

TEST_F(NameIndexTest, SeesEveryChangeOfTheTables) {
  const std::vector<std::string> words = EveryWord(1);
  for (int change = 0; change < 3000; ++change) {
    ChangeSomething();
    CompareAll(words);
    if (HasFatalFailure()) return;
  }
}

}  // namespace
