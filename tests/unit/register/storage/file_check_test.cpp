// Values of another type than their columns have, as the check of a file finds them.
#include "register/storage/file_check.h"

#include <sstream>
#include <type_traits>

#include "register/storage/schema.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

// A text that the program has put together, or was given, is no statement.
static_assert(!std::is_constructible_v<SqlLiteral, const char*>);
static_assert(!std::is_constructible_v<SqlLiteral, std::string>);
static_assert(!std::is_constructible_v<SqlLiteral, std::string_view>);

class FileCheckTest : public StoreTest {
 protected:
  void SetUp() override {
    StoreTest::SetUp();
    Database database(Path("file"), Database::Open::kCreate, kRegisterKind);
    Transaction transaction(database);
    MakeSchema(database);
    transaction.Commit();
  }
  std::vector<std::string> Lines(const std::string& sql) const {
    std::istringstream rows(Sql("file", sql));
    std::vector<std::string> lines;
    for (std::string line; std::getline(rows, line);) lines.push_back(line);
    return lines;
  }
  // The tables that the check names.
  std::vector<std::string> Strange() const {
    Database database(Path("file"), Database::Open::kRead, kRegisterKind);
    std::vector<std::string> tables;
    CheckValues(database, [&](Finding finding) {
      EXPECT_EQ(finding.kind, FindingKind::kStrangeValue);
      tables.push_back(finding.text);
    });
    return tables;
  }
  // One row for the table, with `value` in a column and what is right for it in all others.
  void Fill(const std::string& table, const std::string& column, const std::string& value) const {
    std::string values;
    for (const std::string& row :
         Lines("SELECT name || ' ' || type FROM pragma_table_info('" + table + "')")) {
      const std::string name = row.substr(0, row.find(' '));
      const bool number = row.substr(row.find(' ') + 1) == "INTEGER";
      values += (values.empty() ? "" : ", ") + (name == column ? value : number ? "1" : "'a'");
    }
    Sql("file", "PRAGMA synchronous = OFF; DELETE FROM " + table + "; INSERT INTO " + table +
                    " VALUES (" + values + ")");
  }
};

TEST_F(FileCheckTest, AValueOfAnotherTypeIsFoundInEachColumn) {
  int checked = 0;
  for (const std::string& table :
       Lines("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name")) {
    // The number of a row is always one: SQLite takes nothing else for it.
    const std::vector<std::string> numbers =
        Lines("SELECT name FROM pragma_table_info('" + table +
              "') WHERE pk = 1 AND type = 'INTEGER' "
              "AND (SELECT sql NOT LIKE '%WITHOUT ROWID' FROM sqlite_master WHERE name = '" +
              table + "')");
    const std::vector<std::string> typed =
        Lines("SELECT name FROM pragma_table_info('" + table + "') WHERE type <> ''");
    for (const std::string& column : typed) {
      if (!numbers.empty() && numbers.front() == column) continue;
      Fill(table, column, "x'00'");
      EXPECT_EQ(Strange(), std::vector<std::string>{table}) << column;
      ++checked;
    }
    Fill(table, "", "");
    EXPECT_EQ(Strange(), std::vector<std::string>{}) << table;
  }
  EXPECT_GT(checked, 100);
}

TEST_F(FileCheckTest, AValueWithoutATypeOfItsOwnMayBeAny) {
  for (const std::string value : {"1", "'a'", "x'00'"}) {
    Fill("setting", "value", value);
    EXPECT_EQ(Strange(), std::vector<std::string>{}) << value;
  }
}

TEST_F(FileCheckTest, TheTablesAreNamedInTheOrderOfTheirNames) {
  Fill("vat_rate", "mark", "x'00'");
  Fill("article", "code", "x'00'");
  Fill("journal", "hash", "x'00'");
  EXPECT_EQ(Strange(), (std::vector<std::string>{"article", "journal", "vat_rate"}));
}

}  // namespace
}  // namespace lorimat
