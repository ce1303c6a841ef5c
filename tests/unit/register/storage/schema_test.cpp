// Files of older versions, and disks that fail while the tables are made or brought up to date.
#include "register/storage/schema.h"

#include <new>

#include "register/inspect/register_file.h"
#include "register/value/row_encoding.h"
#include "unit/register/filled_register.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

// The files in tests/unit/register/files hold the same days, of which four closings are made or
// under way: nine documents of every kind in the first. That of version 1 has no roll, that of
// version 2 a receipt that is paid and has not ended.
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
  // Brings the tables up to date, and does nothing else.
  void CarryOver(const std::string& name) const {
    RegisterFile::ChangeFaults(Path(name), [](FaultPlan*) {});
  }
  void ExpectGood(const std::string& name, const char* when) const {
    for (const std::string& finding : FindingTexts(RegisterFile(Path(name)).VerifyJournal({}))) {
      ADD_FAILURE() << name << ", " << when << ": " << finding;
    }
  }
  // A document of version 1 that was in progress: a receipt of one line, 0,50, not paid.
  void LeaveOpen(const std::string& name) const {
    Sql(name,
        "INSERT INTO open_document VALUES (1, 2, 0, 20240115103000, 1, 5000, '2 0 20240115103000 "
        "1 5000 0 0 0 0 0 0: 19000100000000 0 ')");
  }
};

TEST_F(MigrationTest, RegistersOfOlderVersionsAreCarriedOverAndGood) {
  for (const int version : {1, 2}) {
    const std::string name = fmt::format("version{}", version);
    MakeVersion(version, name);
    const std::string hashes = Sql(name, "SELECT hash FROM journal ORDER BY place");
    const std::string last = Sql(name, "SELECT journal_hash FROM ledger");
    EXPECT_EQ(Sql(name, "PRAGMA user_version"), fmt::format("{}\n", version));
    ExpectGood(name, "looked at");
    EXPECT_EQ(RegisterFile(Path(name)).Status().schema_version, kSchemaVersion);
    EXPECT_EQ(Sql(name, "PRAGMA user_version"), fmt::format("{}\n", version));
    CarryOver(name);
    ExpectGood(name, "carried over");
    // The entries stay as they were, and the events go on behind the last one.
    EXPECT_EQ(Sql(name, "SELECT hash FROM journal ORDER BY place"), hashes);
    EXPECT_EQ(Sql(name, "SELECT count(*) FROM journal"), "22\n");
    EXPECT_EQ(Sql(name, "SELECT count(*) FROM event WHERE entry <> 22"), "0\n");
    EXPECT_NE(Sql(name, "SELECT journal_hash FROM ledger"), last);
    {
      VirtualRegister device(FileSettings(name));
      EXPECT_EQ(device.paper_lines().empty(), version == 1);
      EXPECT_EQ(device.cut_off().has_value(), version == 2);
    }
    ExpectGood(name, "switched on");
    {
      VirtualRegister device(FileSettings(name));
      ASSERT_EQ(device.PrintZReportEx(true), RTF_SUCCESS);  // sends the old ones, too
      ASSERT_EQ(device.TelematicDocument(0, 5, 1, 0, 0, 0, 0, ""), RTF_SUCCESS);
    }
    ExpectGood(name, "closed and sent");
    Write("logo.png", "x");
    {
      VirtualRegister device(FileSettings(name));
      RegisterFiller(device).Work(Path("logo.png").c_str());
    }
    ExpectGood(name, "further days");
  }
}

// A file of version 3 with a closed day and one that is open: 8,00 less 0,50 at 22 %, paid by the
// first subtender, electronic. The day goes on in a register that counts.
TEST_F(MigrationTest, ADayOfTheThirdVersionGoesOn) {
  MakeVersion(3, "old");
  const std::string hashes =
      Sql("old", "SELECT hash FROM journal UNION ALL SELECT hash FROM event");
  ExpectGood("old", "looked at");
  CarryOver("old");
  ExpectGood("old", "carried over");
  EXPECT_EQ(Sql("old", "PRAGMA user_version"), std::to_string(kSchemaVersion) + "\n");
  EXPECT_EQ(Sql("old", "SELECT hash FROM journal UNION ALL SELECT hash FROM event"), hashes);
  {
    RegisterSettings settings = FileSettings("old");
    settings.clock = [] { return NumberTime(20240116113000); };
    VirtualRegister device(settings);
    ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
    // A document of before goes back: it is counted as one of today.
    ASSERT_EQ(device.BeginDocTelematicCancel(1, 2, "", true, ""), RTF_SUCCESS);
    ASSERT_EQ(device.PrintZReport(), RTF_SUCCESS);
    const std::string paper = device.paper_text();
    const std::string closing = paper.substr(paper.rfind("CHIUSURA GIORNALIERA"));
    EXPECT_NE(closing.find("Totale 22% n. 2                       1,00\n"), std::string::npos)
        << closing;
    EXPECT_NE(closing.find("Sconti 22%                            0,50\n"), std::string::npos);
    EXPECT_NE(closing.find("Annulli 22% n. 1                      7,50\n"), std::string::npos);
    // Payments were counted before.
    EXPECT_NE(closing.find("Pagamento elettronico 01 n. 2         0,00\n"), std::string::npos);
  }
  ExpectGood("old", "closed");
}

// A period that was cleared behind the last document of a register that had no chain of events, and
// is cleared again ahead of the next.
TEST_F(MigrationTest, APeriodThatIsClearedOnceMoreBehindACarryOverIsGood) {
  MakeVersion(1, "old");
  Sql("old", fmt::format("UPDATE period SET cleared = 1, time = 20240115103000, first_document = "
                         "(SELECT max(id) + 1 FROM document), totals = '{}' WHERE number = 3",
                         Totals().ToRecord()));
  CarryOver("old");
  ExpectGood("old", "carried over");
  RegisterSettings settings = FileSettings("old");
  settings.clock = [] { return NumberTime(20240116113000); };
  {
    VirtualRegister device(settings);
    ASSERT_EQ(device.PeriodicReportMessageEx(3, 0, "txt", "", 1, true), RTF_SUCCESS);
    ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }
  ExpectGood("old", "cleared again, and sold");
}

TEST_F(MigrationTest, WhatWasChangedBeforeIsFoundBehindACarryOver) {
  for (const char* change :
       {"UPDATE document SET total = total + 100 WHERE id = 2",
        "UPDATE period SET totals = (SELECT day_totals FROM ledger) WHERE number = 4",
        "UPDATE ledger SET first_of_day = 1", "UPDATE ledger SET grand_total = 0",
        "DELETE FROM journal WHERE place = 3"}) {
    MakeVersion(2, "changed");
    Sql("changed", change);
    EXPECT_FALSE(RegisterFile(Path("changed")).VerifyJournal({}).good()) << change;
    std::filesystem::remove(Path("changed"));
  }
}

TEST_F(MigrationTest, WhatIsChangedAfterACarryOverIsFound) {
  for (const char* change :
       {"UPDATE setting SET value = '99LRM9999999VR' WHERE name = 'serial_number'",
        "UPDATE setting SET value = '00000000000' WHERE name = 'fiscal_id'",
        "UPDATE ledger SET next_invoice = 1", "UPDATE ledger SET non_fiscal = non_fiscal + 1",
        "DELETE FROM summary_waiting WHERE closure = 2", "DELETE FROM lottery_waiting",
        "UPDATE period SET cleared = 0, time = 0 WHERE number = 2",
        "UPDATE vat_rate SET rate = 50000 WHERE number = 1"}) {
    MakeVersion(2, "changed");
    CarryOver("changed");
    Sql("changed", change);
    EXPECT_FALSE(RegisterFile(Path("changed")).VerifyJournal({}).good()) << change;
    std::filesystem::remove(Path("changed"));
  }
}

TEST_F(MigrationTest, ARegisterOfTheFirstVersionSellsOn) {
  MakeVersion(1, "old");
  VirtualRegister device(FileSettings("old"));
  const int64_t grand_total = device.store().grand_total();
  const int number = device.store().documents().back().number;
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemEx(0, "", 2500, 0, -1, 0, "", 2, true, ""), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  EXPECT_EQ(device.store().grand_total(), grand_total + 2500);
  EXPECT_EQ(device.store().counters().documents, 4);
  EXPECT_EQ(device.store().documents().back().number, 4);
  EXPECT_EQ(number, 42);  // an invoice
}

TEST_F(MigrationTest, ADocumentThatWasOpenIsEndedWithoutItsRoll) {
  MakeVersion(1, "old");
  LeaveOpen("old");
  const int abandoned = std::stoi(Sql("old", "SELECT abandoned FROM ledger"));
  const int64_t grand_total = std::stoll(Sql("old", "SELECT grand_total FROM ledger"));
  {
    VirtualRegister device(FileSettings("old"));
    ASSERT_TRUE(device.cut_off());
    EXPECT_EQ(device.cut_off()->subtotal, 5000);
    EXPECT_EQ(device.store().grand_total(), grand_total);
    EXPECT_EQ(device.store().counters().abandoned, abandoned + 1);
  }
  ExpectGood("old", "ended");
}

TEST_F(MigrationTest, AStepThatFailsLeavesTheFileAsItWas) {
  MakeVersion(1, "old");
  const std::string before = Dump("old");
  {
    Database database(Path("old"), Database::Open::kChange, kRegisterKind);
    const SchemaStep steps[] = {{1, "CREATE TABLE roll (x);"},
                                {2, "CREATE TABLE half (x); NO SUCH;"}};
    EXPECT_THROW(Migrate(database, steps), RegisterError);
    EXPECT_EQ(database.version(), 1);
  }
  EXPECT_EQ(Dump("old"), before);
  EXPECT_EQ(Sql("old", "PRAGMA user_version"), "1\n");
  EXPECT_EQ(Sql("old", "SELECT count(*) FROM sqlite_master WHERE name IN ('roll', 'half')"), "0\n");
  EXPECT_EQ(Refusal(Path("old")), "");
}

TEST_F(MigrationTest, AVersionThatNoStatementWritesIsNoNewerFile) {
  Database database("", Database::Open::kCreate, kRegisterKind);
  for (const int version : {-1, Database::kMostVersion + 1}) {
    try {
      database.SetVersion(version);
      ADD_FAILURE() << version;
    } catch (const RegisterError& error) {
      EXPECT_EQ(FailureCause::kCannotWrite, error.failure().cause) << version;
    }
  }
  for (const int version : {Database::kMostVersion, 0}) {
    database.SetVersion(version);
    EXPECT_EQ(version, database.version());
  }
}

TEST_F(MigrationTest, AllStepsAreOneUnitOfWork) {
  Database database("", Database::Open::kCreate, kRegisterKind);
  database.SetVersion(1);
  const SchemaStep steps[] = {{1, "CREATE TABLE a (x)"},
                              {2, "CREATE TABLE b (x)", [](Database& filled) {
                                 filled.Execute("INSERT INTO b VALUES (1)");
                               }}};
  const SchemaStep broken[] = {{1, "CREATE TABLE a (x)"}, {2, "CREATE TABLE b (x)", [](Database&) {
                                                             throw std::bad_alloc();
                                                           }}};
  EXPECT_THROW(Migrate(database, broken), std::bad_alloc);
  EXPECT_EQ(database.version(), 1);
  EXPECT_FALSE(database.in_unit());
  Migrate(database, steps);
  EXPECT_EQ(database.version(), 3);
  EXPECT_TRUE(database.Prepare("SELECT x FROM b").Step());
}

TEST_F(MigrationTest, ADiskThatFailsAtAnyPlaceOfAMigration) {
  for (const int version : {1, 2}) {
    const std::string kept = fmt::format("kept{}", version);
    MakeVersion(version, kept);
    const std::string before = Dump(kept);
    for (const auto fault : {FailingDisk::Fault::kFull, FailingDisk::Fault::kWrite,
                             FailingDisk::Fault::kSync, FailingDisk::Fault::kHalf}) {
      for (int n = 1;; ++n) {
        ASSERT_LT(n, 300);
        for (const char* end : {"", "-wal", "-journal"}) {
          std::filesystem::remove(Path(std::string("old") + end));
        }
        std::filesystem::copy_file(Path(kept), Path("old"));
        std::string refusal;
        disk.FailAt(fault, n, true);
        try {
          CarryOver("old");
        } catch (const RegisterError& error) {
          refusal = error.what();
        }
        const bool failed = disk.failed();
        disk.Heal();
        // Of the old version, whole, or of the newest one.
        if (Sql("old", "PRAGMA user_version") != std::to_string(kSchemaVersion) + "\n") {
          EXPECT_NE(refusal, "") << n;
          EXPECT_EQ(Dump("old"), before) << n;
        }
        ExpectGood("old", "behind a failure");
        CarryOver("old");
        EXPECT_EQ(Sql("old", "SELECT count(*) FROM event WHERE kind = 1"), "1\n") << n;
        if (!failed) {
          EXPECT_EQ(refusal, "");
          break;
        }
      }
    }
  }
}

TEST_F(MigrationTest, ANewerVersionIsRefused) {
  { VirtualRegister device(FileSettings("newer")); }
  Sql("newer", fmt::format("PRAGMA user_version = {}", kSchemaVersion + 1));
  const std::string before = Bytes("newer");
  EXPECT_EQ(Refusal(Path("newer")),
            fmt::format("{}: was made by a newer version: its tables are of version {}, known are "
                        "those up to {}",
                        Path("newer"), kSchemaVersion + 1, kSchemaVersion));
  EXPECT_EQ(Bytes("newer"), before);
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
