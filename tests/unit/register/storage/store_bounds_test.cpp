// The ends of what a register's file may hold: the last number that is read and the first that is
// damage.
#include <string>
#include <vector>

#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

struct Bound {
  const char* table;
  const char* column;
  int64_t value;
  const char* damaged;  // what is told to make no sense; null for a value that is read
};

constexpr int64_t kBeyondRows = int64_t{1} << 62;
constexpr int64_t kCountMost = 1'000'000'000;

class StoreBoundsTest : public StoredRegisterTest {
 protected:
  // A receipt of 1,00 and a closing, and the file of a register that is switched off.
  StoreBoundsTest() {
    Receipt(1, 10000);
    EXPECT_EQ(device->PrintZReport(), RTF_SUCCESS);
    device.reset();
  }
  // What a register with these statements run on its file tells of it: opened, and all read that it
  // has registered. Empty when all is well.
  std::string Told(const std::string& sql) {
    CopyAsCut("shop.register", "copy");
    Sql("copy", sql);
    try {
      const VirtualRegister changed(FileSettings("copy"));
      static_cast<void>(changed.store().documents());
      static_cast<void>(changed.store().closures());
    } catch (const RegisterError& error) {
      return error.what();
    }
    return {};
  }
  std::string Damage(const std::string& what) const {
    return Path("copy") + ": the register is damaged: " + what + " makes no sense";
  }
  void Hold(const std::vector<Bound>& bounds) {
    for (const Bound& bound : bounds) {
      const std::string sql =
          fmt::format("UPDATE {} SET {} = {}", bound.table, bound.column, bound.value);
      EXPECT_EQ(Told(sql), bound.damaged != nullptr ? Damage(bound.damaged) : "") << sql;
    }
  }
};

TEST_F(StoreBoundsTest, OfTheLedger) {
  Hold({{"ledger", "last_closure", -1, "ledger"},
        {"ledger", "last_closure", 0, nullptr},
        {"ledger", "last_closure", 9999, nullptr},
        {"ledger", "last_closure", 10000, "ledger"},
        {"ledger", "next_invoice", 0, "ledger"},
        {"ledger", "next_invoice", 1, nullptr},
        {"ledger", "next_invoice", kCountMost, nullptr},
        {"ledger", "next_invoice", kCountMost + 1, "ledger"},
        {"ledger", "last_document", -1, "ledger"},
        {"ledger", "last_document", 0, nullptr},
        {"ledger", "last_document", kBeyondRows - 1, nullptr},
        {"ledger", "last_document", kBeyondRows, "ledger"},
        {"ledger", "first_of_day", 0, "ledger"},
        {"ledger", "first_of_day", 1, nullptr},
        {"ledger", "journal_place", -1, "ledger"},
        {"ledger", "journal_place", 0, nullptr},
        {"ledger", "journal_place", kBeyondRows - 1, nullptr},
        {"ledger", "journal_place", kBeyondRows, "ledger"}});
}

TEST_F(StoreBoundsTest, OfCounters) {
  for (const char* column :
       {"documents", "sales", "invoices", "refunds", "cancels", "abandoned", "non_fiscal"}) {
    for (const char* table : {"ledger", "closure"}) {
      Hold({{table, column, -1, "counters"},
            {table, column, 0, nullptr},
            {table, column, kCountMost, nullptr},
            {table, column, kCountMost + 1, "counters"}});
    }
  }
}

TEST_F(StoreBoundsTest, OfDocuments) {
  Hold({{"document", "kind", -1, "document"},
        {"document", "kind", 0, nullptr},
        {"document", "kind", 3, nullptr},
        {"document", "kind", 4, "document"},
        {"document", "total", -1, "document"},
        {"document", "total", 0, nullptr},
        {"document", "total", kMaxAmount, nullptr},
        {"document", "total", kMaxAmount + 1, "document"},
        {"document", "time", -1, "time"},
        {"document", "time", 99999999999999, nullptr},
        {"document", "time", 100000000000000, "time"},
        {"closure", "time", -1, "time"},
        {"closure", "time", 99999999999999, nullptr},
        {"closure", "time", 100000000000000, "time"}});
}

TEST_F(StoreBoundsTest, OfPeriods) {
  EXPECT_EQ(Told("DELETE FROM period WHERE number = (SELECT max(number) FROM period)"),
            Damage("period"));
  EXPECT_EQ(Told("DELETE FROM period WHERE number = 0"), Damage("period"));
  EXPECT_EQ(Told("INSERT INTO period SELECT number + 1, cleared, time, first_document, totals "
                 "FROM period ORDER BY number DESC LIMIT 1"),
            Damage("period"));
  EXPECT_EQ(Told("UPDATE period SET totals = 'x' WHERE number = 1"), Damage("totals"));
  EXPECT_EQ(Told("UPDATE ledger SET day_totals = 'x'"), Damage("totals"));
  EXPECT_EQ(Told("UPDATE closure SET totals = 'x'"), Damage("closure"));
  EXPECT_EQ(Told("UPDATE closure SET vat_rates = 'x'"), Damage("closure"));
  EXPECT_EQ(Told("UPDATE document SET sums = 'x'"), Damage("document"));
  EXPECT_EQ(Told("DELETE FROM ledger"), Damage("ledger"));
}

}  // namespace
}  // namespace lorimat
