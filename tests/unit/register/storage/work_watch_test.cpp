// Long work of a database that somebody stops.
#include "register/storage/work_watch.h"

#include <new>

#include "register/storage/schema.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

constexpr SqlLiteral kLongWork =
    "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 50000) "
    "SELECT count(*) FROM n";

int64_t Work(Database& database) {
  Statement row = database.Prepare(kLongWork);
  return row.Step() ? row.Integer(0) : 0;
}

TEST(WorkWatch, StopsAStatementWhereItIsTold) {
  Database database("", Database::Open::kCreate, kRegisterKind);
  int all = 0;
  {
    const WorkWatch watch(database, [&] { return ++all != 0; });
    EXPECT_EQ(Work(database), 50000);
  }
  ASSERT_GT(all, 2);
  for (int at = 1; at <= all; ++at) {
    int asked = 0;
    const WorkWatch watch(database, [&] { return ++asked != at; });
    EXPECT_THROW(static_cast<void>(Work(database)), WorkStopped) << at;
    EXPECT_EQ(asked, at);
  }
  // Nobody asks any more, and the statement is as good as before.
  const int before = all;
  EXPECT_EQ(Work(database), 50000);
  EXPECT_EQ(all, before);
}

TEST(WorkWatch, GoesOnWhereNobodyCanBeAsked) {
  Database database("", Database::Open::kCreate, kRegisterKind);
  const WorkWatch watch(database, []() -> bool { throw std::bad_alloc(); });
  EXPECT_EQ(Work(database), 50000);
}

TEST(WorkWatch, GoesOnWhateverIsThrown) {
  Database database("", Database::Open::kCreate, kRegisterKind);
  const WorkWatch watch(database, []() -> bool { throw 1; });
  EXPECT_EQ(Work(database), 50000);
}

class VerifyStopTest : public StoredRegisterTest {};

// Of a file whose pages take a while: there is no entry to stop behind.
TEST_F(VerifyStopTest, ACheckStopsWithinThePagesAndFindsNothing) {
  Receipt(1, 10000);
  device.reset();
  Sql("shop.register",
      "WITH RECURSIVE n(i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 5000) "
      "INSERT INTO article SELECT i + 1000, 'code ' || i, 'text', 1, 100 FROM n");
  const RegisterFile file(Path("shop.register"));
  uint64_t calls = 0;
  EXPECT_FALSE(file.VerifyJournal([&](uint64_t, uint64_t) { return ++calls != 0; }).stopped);
  ASSERT_GT(calls, 2u);
  for (uint64_t at = 1; at < calls; ++at) {
    uint64_t asked = 0;
    const JournalCheck check =
        file.VerifyJournal([&](uint64_t, uint64_t) { return ++asked != at; });
    EXPECT_TRUE(check.stopped) << at;
    EXPECT_EQ(asked, at);
    if (at == 1) {
      EXPECT_EQ(check.entries, 0u);
      EXPECT_TRUE(check.findings.empty());
    }
  }
}

}  // namespace
}  // namespace lorimat
