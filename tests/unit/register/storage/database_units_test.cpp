// Statements and units of work of a database.
#include <filesystem>

#include "register/storage/database.h"
#include "register/storage/schema.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class DatabaseUnitsTest : public StoreTest {};

TEST_F(DatabaseUnitsTest, AUnitIsThereWholeOrNotAtAll) {
  Database database(Path("units"), Database::Open::kCreate, kRegisterKind);
  database.Begin(true);
  database.Execute("CREATE TABLE number (value INTEGER)");
  database.Commit();
  const auto count = [&database] {
    Statement row = database.Prepare("SELECT count(*) FROM number");
    EXPECT_TRUE(row.Step());
    return row.Integer(0);
  };
  {
    Transaction transaction(database);
    for (int value = 0; value < 3; ++value) {
      database.Prepare("INSERT INTO number VALUES (?)").With(value).Run();
    }
    EXPECT_TRUE(database.in_unit());
  }
  EXPECT_FALSE(database.in_unit());
  EXPECT_EQ(count(), 0);
  Transaction transaction(database);
  database.Prepare("INSERT INTO number VALUES (?)").With(7).Run();
  transaction.Commit();
  EXPECT_EQ(count(), 1);
}

TEST_F(DatabaseUnitsTest, AStatementCanBeUsedWithinItself) {
  Database database("", Database::Open::kCreate, kRegisterKind);
  database.Execute("CREATE TABLE number (value INTEGER); INSERT INTO number VALUES (1), (2), (3)");
  int64_t pairs = 0;
  for (Statement outer = database.Prepare("SELECT value FROM number ORDER BY value");
       outer.Step();) {
    for (Statement inner = database.Prepare("SELECT value FROM number ORDER BY value");
         inner.Step();) {
      pairs += 10 * outer.Integer(0) + inner.Integer(0);
    }
  }
  EXPECT_EQ(pairs, 3 * (10 + 20 + 30) + 3 * (1 + 2 + 3));
}

TEST_F(DatabaseUnitsTest, ValuesComeBackAsTheyWere) {
  Database database("", Database::Open::kCreate, kRegisterKind);
  database.Execute("CREATE TABLE one (a, b TEXT, c, d, e)");
  std::string bytes;
  for (int byte = 0; byte < 256; ++byte) bytes += static_cast<char>(byte);
  database.Prepare("INSERT INTO one VALUES (?, ?, ?, ?, ?)")
      .With(INT64_MIN, bytes, nullptr, true, std::string_view())
      .Run();
  Statement row = database.Prepare("SELECT a, b, c, d, e FROM one");
  ASSERT_TRUE(row.Step());
  EXPECT_EQ(row.Integer(0), INT64_MIN);
  EXPECT_EQ(row.Text(1), bytes);
  EXPECT_TRUE(row.IsNull(2));
  EXPECT_TRUE(row.Flag(3));
  EXPECT_FALSE(row.IsNull(4));
  EXPECT_EQ(row.Text(4), "");
  EXPECT_THROW(row.Int(0), DamageError);
  EXPECT_FALSE(row.Step());
}

TEST_F(DatabaseUnitsTest, AStatementThatIsNoneNamesTheFile) {
  Database database(Path("units"), Database::Open::kCreate, kRegisterKind);
  EXPECT_THROW(database.Execute("NO SUCH"), RegisterError);
  EXPECT_THROW(database.Prepare("SELECT x FROM nowhere"), RegisterError);
}

// How far the log reaches is known from one unit to the next: nothing of it is read again.
TEST_F(DatabaseUnitsTest, NothingOfTheLogIsReadForAUnit) {
  Database database(Path("units"), Database::Open::kCreate, kRegisterKind);
  database.Begin(true);
  database.Execute("CREATE TABLE number (value INTEGER)");
  database.Commit();
  for (int unit = 0; unit < 10; ++unit) {
    if (unit == 3) disk.FailAt(FailingDisk::Fault::kRead, 1, true);
    database.Begin(true);
    database.Prepare("INSERT INTO number VALUES (?)").With(unit).Run();
    database.Commit();
  }
  EXPECT_FALSE(disk.failed());
  disk.Heal();
}

TEST_F(DatabaseUnitsTest, TheLogOfManyUnitsIsTakenOverAsItGrows) {
  constexpr int kUnits = 3000;             // of one page each, at least
  constexpr uintmax_t kFrame = 4096 + 24;  // of the log: a page, and what it says of it
  const std::string file = Path("units");
  Database database(file, Database::Open::kCreate, kRegisterKind);
  database.Begin(true);
  database.Execute("CREATE TABLE number (value INTEGER); INSERT INTO number VALUES (0)");
  database.Commit();
  Statement page = database.Prepare("PRAGMA page_size");
  ASSERT_TRUE(page.Step());
  ASSERT_EQ(page.Integer(0), 4096);
  for (int unit = 0; unit < kUnits; ++unit) {
    database.Begin(false);
    database.Prepare("UPDATE number SET value = ?").With(unit).Run();
    database.Commit();
  }
  // It begins anew behind a thousand pages.
  EXPECT_GT(std::filesystem::file_size(file + "-wal"), 900 * kFrame);
  EXPECT_LT(std::filesystem::file_size(file + "-wal"), 1100 * kFrame);
}

}  // namespace
}  // namespace lorimat
