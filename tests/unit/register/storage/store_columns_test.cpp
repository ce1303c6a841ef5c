// Statements go by the names of the columns, whatever their order in a file's tables.
#include "register/storage/sql_text.h"
#include "unit/register/store_day.h"

namespace lorimat {
namespace {

class StoreColumnsTest : public StoreDayTest {
 protected:
  // Makes every table again with its columns in the opposite order.
  void TurnColumnsRound(const std::string& name) const {
    const std::string statements = Sql(name, R"(
      WITH part AS (
        SELECT made.name AS tbl, col.cid, col.pk, col.name AS col,
               col.name || ' ' || col.type || iif(col."notnull", ' NOT NULL', '') AS definition
        FROM sqlite_master AS made JOIN pragma_table_info(made.name) AS col
        WHERE made.type = 'table')
      SELECT 'CREATE TABLE turned (' ||
             (SELECT group_concat(definition, ', ') FROM
               (SELECT definition FROM part WHERE part.tbl = made.name ORDER BY cid DESC)) ||
             ', PRIMARY KEY (' ||
             (SELECT group_concat(col, ', ') FROM
               (SELECT col FROM part WHERE part.tbl = made.name AND pk > 0 ORDER BY pk)) ||
             ')); INSERT INTO turned (' ||
             (SELECT group_concat(col, ', ') FROM part WHERE part.tbl = made.name) ||
             ') SELECT ' || (SELECT group_concat(col, ', ') FROM part WHERE part.tbl = made.name) ||
             ' FROM ' || made.name || '; DROP TABLE ' || made.name ||
             '; ALTER TABLE turned RENAME TO ' || made.name || ';'
      FROM sqlite_master AS made WHERE made.type = 'table')");
    ASSERT_NE(statements, "");
    Sql(name, statements);
  }
};

TEST_F(StoreColumnsTest, ADayIsStoredAlikeInTablesOfAnotherOrder) {
  const RegisterSettings straight = FileSettings("straight.register");
  const RegisterSettings turned = FileSettings("turned.register");
  { VirtualRegister device(straight); }
  { VirtualRegister device(turned); }
  TurnColumnsRound("turned.register");
  ASSERT_EQ(Sql("turned.register", "SELECT name FROM pragma_table_info('document_payment')"),
            "amount\ntender\nplace\ndocument\n");
  std::unique_ptr<VirtualRegister> one;
  std::unique_ptr<VirtualRegister> other;
  const auto restart = [&] {
    one.reset();
    other.reset();
    one = std::make_unique<VirtualRegister>(straight);
    other = std::make_unique<VirtualRegister>(turned);
  };
  restart();
  for (const DayStep& step : Day()) {
    if (step.restart) restart();
    ASSERT_EQ(step.call(*one), RTF_SUCCESS) << step.name;
    ASSERT_EQ(step.call(*other), RTF_SUCCESS) << step.name;
    ASSERT_EQ(Image(*one), Image(*other)) << step.name;
  }
  restart();
  ASSERT_EQ(Image(*one), Image(*other));
  one.reset();
  other.reset();
  // The tables are not those that this version makes; all that is in them is as it should be.
  const JournalCheck check = RegisterFile(turned.file).VerifyJournal(nullptr);
  EXPECT_GT(check.findings.size(), 0u);
  for (const Finding& finding : check.findings) {
    EXPECT_EQ(finding.kind, FindingKind::kStrangeTable) << finding.text;
  }
}

TEST(SqlTextTest, NumbersAreThoseOfTheEnumerators) {
  enum class Kind { kFirst = 0, kLast = 1207 };
  EXPECT_EQ(SqlLiteral(kSql<"kind = ", kSqlNumber<Kind::kFirst>>).text(), "kind = 0");
  EXPECT_EQ(SqlLiteral(kSql<"kind IN (", kSqlNumber<Kind::kLast>, ", 1)">).text(),
            "kind IN (1207, 1)");
}

}  // namespace
}  // namespace lorimat
