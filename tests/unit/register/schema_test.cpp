// Files of older versions, and disks that fail while the tables are made or brought up to date.
#include "register/schema.h"

#include "register/register_file.h"
#include "store_fixture.h"

namespace lorimat {
namespace {

// The tables of version 1 are those of today without the roll.
class MigrationTest : public StoreTest {
 protected:
  // Why a register cannot be opened; empty when it can.
  std::string Refusal(const std::string& file) const {
    RegisterSettings settings = TestSettings();
    settings.file = file;
    try {
      VirtualRegister device(settings);
    } catch (const RegisterError& error) {
      return error.what();
    }
    return {};
  }
  // A register of version 1, with a receipt, and a document in progress when `open`.
  void MakeOld(const std::string& name, bool open) {
    {
      VirtualRegister device(FileSettings("today"));
      ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
      ASSERT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
      ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
      if (open) {
        ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
        ASSERT_EQ(device.PrintRecItemEx(0, "", 5000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
      }
      CopyAsCut("today", name);
    }
    Sql(name, "DROP TABLE roll; PRAGMA user_version = 1; PRAGMA wal_checkpoint(TRUNCATE)");
  }
};

TEST_F(MigrationTest, ARegisterOfTheFirstVersionIsBroughtUpToDate) {
  MakeOld("old", false);
  VirtualRegister device(FileSettings("old"));
  EXPECT_TRUE(device.paper_lines().empty());  // it had no roll
  EXPECT_EQ(device.store().grand_total(), 10000);
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemEx(0, "", 2500, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  EXPECT_EQ(device.store().grand_total(), 12500);
  EXPECT_EQ(device.store().documents().back().number, 2);
}

TEST_F(MigrationTest, ALookBringsItUpToDateToo) {
  MakeOld("old", false);
  RegisterFile look(Path("old"));
  EXPECT_EQ(look.Status().schema_version, 2);
  EXPECT_TRUE(look.VerifyJournal({}).good());
  EXPECT_TRUE(look.Roll().lines().empty());
}

TEST_F(MigrationTest, ADocumentThatWasOpenIsEndedWithoutItsRoll) {
  MakeOld("old", true);
  VirtualRegister device(FileSettings("old"));
  ASSERT_TRUE(device.cut_off());
  EXPECT_EQ(device.cut_off()->subtotal, 5000);
  EXPECT_EQ(device.store().grand_total(), 10000);
  EXPECT_EQ(device.store().counters().abandoned, 1);
}

TEST_F(MigrationTest, AStepThatFailsLeavesTheFileAsItWas) {
  MakeOld("old", false);
  const std::string before = Dump("old");
  {
    Database database(Path("old"), Database::Open::kLook, kRegisterKind);
    const SchemaStep steps[] = {{1, "CREATE TABLE roll (x); CREATE TABLE half (x); NO SUCH;"}};
    EXPECT_THROW(Migrate(database, steps), RegisterError);
    EXPECT_EQ(database.version(), 1);
  }
  EXPECT_EQ(Dump("old"), before);
  EXPECT_EQ(Sql("old", "PRAGMA user_version"), "1\n");
  EXPECT_EQ(Sql("old", "SELECT count(*) FROM sqlite_master WHERE name IN ('roll', 'half')"), "0\n");
  EXPECT_EQ(Refusal(Path("old")), "");
}

TEST_F(MigrationTest, StepsGoOnFromWhereACutLeftThem) {
  Database database("", Database::Open::kCreate, kRegisterKind);
  database.SetVersion(1);
  const SchemaStep steps[] = {{1, "CREATE TABLE a (x)"}, {2, "CREATE TABLE b (x)"}};
  const SchemaStep broken[] = {{1, "CREATE TABLE a (x)"}, {2, "NO SUCH"}};
  EXPECT_THROW(Migrate(database, broken), RegisterError);
  EXPECT_EQ(database.version(), 2);
  Migrate(database, steps);
  EXPECT_EQ(database.version(), 3);
}

TEST_F(MigrationTest, ADiskThatFailsAtAnyPlaceOfAMigration) {
  MakeOld("kept", false);
  for (const auto fault : {FailingDisk::Fault::kFull, FailingDisk::Fault::kSync}) {
    for (int n = 1;; ++n) {
      ASSERT_LT(n, 200);
      std::filesystem::copy_file(Path("kept"), Path("old"),
                                 std::filesystem::copy_options::overwrite_existing);
      std::string refusal;
      bool failed = false;
      {
        disk.FailAt(fault, n, true);
        refusal = Refusal(Path("old"));
        failed = disk.failed();
        disk.Heal();
      }
      // Cut off there or not, the next start makes it good.
      EXPECT_EQ(Refusal(Path("old")), "") << n;
      EXPECT_TRUE(RegisterFile(Path("old")).VerifyJournal({}).good()) << n;
      if (!failed) {
        EXPECT_EQ(refusal, "");
        break;
      }
    }
  }
}

TEST_F(MigrationTest, ADiskThatFailsAtAnyPlaceOfAMaking) {
  for (const auto fault : {FailingDisk::Fault::kFull, FailingDisk::Fault::kWrite,
                           FailingDisk::Fault::kSync, FailingDisk::Fault::kHalf}) {
    for (int n = 1;; ++n) {
      ASSERT_LT(n, 200);
      for (const char* end : {"", "-wal", "-journal"}) {
        std::filesystem::remove(Path(std::string("new") + end));
      }
      bool failed = false;
      {
        disk.FailAt(fault, n, true);
        const std::string refusal = Refusal(Path("new"));
        failed = disk.failed();
        disk.Heal();
        if (!refusal.empty()) {
          EXPECT_EQ(refusal.find(Path("new") + ": "), 0u) << refusal;
        }
      }
      EXPECT_EQ(Refusal(Path("new")), "") << n;
      if (!failed) break;
    }
  }
}

}  // namespace
}  // namespace lorimat
