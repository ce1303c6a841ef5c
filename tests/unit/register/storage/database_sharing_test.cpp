// Files that others know, write or disturb: second names, strangers, and moments that end without
// memory.
#include <sqlite3.h>

#include <optional>

#include "register/storage/database.h"
#include "register/storage/schema.h"
#include "unit/register/failing_memory.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class DatabaseSharingTest : public StoredRegisterTest {
 protected:
  std::string OpenRefusal(const std::string& name, Database::Open how) const {
    try {
      const Database database(Path(name), how, kRegisterKind);
    } catch (const RegisterError& error) {
      return error.what();
    }
    return {};
  }
  static int64_t Documents(Database& database) {
    const Moment moment(database);
    Statement row = database.Prepare("SELECT count(*) FROM document");
    return row.Step() ? row.Integer(0) : -1;
  }
};

// While it stands, files are where programs share no memory, and so no log.
class NoSharedMemory {
 public:
  NoSharedMemory() {
    usual_ = sqlite3_vfs_find(nullptr);
    layer_ = *usual_;
    layer_.zName = "no-shared-memory";
    layer_.pNext = nullptr;
    layer_.xOpen = &Open;
    EXPECT_EQ(sqlite3_vfs_register(&layer_, 1), SQLITE_OK);
  }
  ~NoSharedMemory() {
    sqlite3_vfs_unregister(&layer_);
    EXPECT_EQ(sqlite3_vfs_register(usual_, 1), SQLITE_OK);
  }

 private:
  static int Open(sqlite3_vfs*, const char* name, sqlite3_file* file, int flags, int* out) {
    static sqlite3_io_methods methods;
    const int code = usual_->xOpen(usual_, name, file, flags, out);
    if (code == SQLITE_OK && (flags & SQLITE_OPEN_MAIN_DB) != 0) {
      methods = *file->pMethods;
      methods.iVersion = 1;
      file->pMethods = &methods;
    }
    return code;
  }

  static inline sqlite3_vfs* usual_ = nullptr;
  sqlite3_vfs layer_ = {};
};

TEST_F(DatabaseSharingTest, WhereNoLogIsSharedNoRegisterIsKept) {
  const NoSharedMemory place;
  std::optional<FailureCause> cause;
  try {
    const Database database(Path("new"), Database::Open::kCreate, kRegisterKind);
  } catch (const RegisterError& error) {
    cause = error.failure().cause;
  }
  EXPECT_EQ(cause, FailureCause::kLogNotShared);
}

// What was sold last stands in a log that goes by one of the names.
TEST_F(DatabaseSharingTest, AKilledRegistersFileWithTwoNamesIsReadByThatOfItsLogAndNotWritten) {
  Receipt(1, 10000);
  CopyAsCut("shop.register", "killed");
  std::filesystem::create_hard_link(Path("killed"), Path("twin"));
  const std::string before = Bytes("killed") + Bytes("killed-wal");
  for (const char* name : {"killed", "twin"}) {
    for (const Database::Open how : {Database::Open::kCreate, Database::Open::kChange}) {
      EXPECT_EQ(OpenRefusal(name, how),
                Path(name) +
                    ": has 2 names (hard links), and its log goes by one of them: keep one name, "
                    "that with the log beside it, and copy with lorimat copy");
    }
  }
  EXPECT_EQ(OpenRefusal("twin", Database::Open::kRead),
            Path("twin") +
                ": has 2 names (hard links), and no log lies beside this one: what was stored "
                "last may stand beside another; read it by that name, or keep one name");
  EXPECT_FALSE(std::filesystem::exists(Path("twin-wal")));
  {
    Database look(Path("killed"), Database::Open::kRead, kRegisterKind);
    EXPECT_EQ(Documents(look), 1);
  }
  EXPECT_EQ(Bytes("killed") + Bytes("killed-wal"), before);
  std::filesystem::remove(Path("twin"));
  Database writer(Path("killed"), Database::Open::kChange, kRegisterKind);
  EXPECT_EQ(Documents(writer), 1);
}

TEST_F(DatabaseSharingTest, AWriterThatHasStoredNothingYetIsReadByItsOwnName) {
  device.reset();
  const Database writer(Path("shop.register"), Database::Open::kChange, kRegisterKind);
  ASSERT_TRUE(std::filesystem::exists(Path("shop.register-wal")));
  ASSERT_EQ(Bytes("shop.register-wal"), "");
  std::filesystem::create_hard_link(Path("shop.register"), Path("twin"));
  EXPECT_EQ(OpenRefusal("shop.register", Database::Open::kRead), "");
  EXPECT_NE(OpenRefusal("twin", Database::Open::kRead), "");
}

// Each moment is looked at: whoever writes by the other name from now on has a log that is not
// seen.
TEST_F(DatabaseSharingTest, ALookThatLosesItsLogToAnotherNameIsRefused) {
  device.reset();
  Database look(Path("shop.register"), Database::Open::kRead, kRegisterKind);
  ASSERT_EQ(Documents(look), 0);
  std::filesystem::create_hard_link(Path("shop.register"), Path("twin"));
  EXPECT_EQ(Documents(look), 0);
  std::filesystem::rename(Path("shop.register-wal"), Path("twin-wal"));
  FailureCause cause = {};
  try {
    Documents(look);
  } catch (const RegisterError& error) {
    cause = error.failure().cause;
  }
  EXPECT_EQ(cause, FailureCause::kNamesNoLog);
  std::filesystem::remove(Path("twin"));
  EXPECT_EQ(Documents(look), 0);
}

// What is read without a log, or from a copy, has lost none.
TEST_F(DatabaseSharingTest, ALookWithoutALogGoesOnWhenItsFileGetsAnotherName) {
  device.reset();
  std::filesystem::remove(Path("shop.register"));
  MakeVersion(1, "shop.register");
  Database copied(Path("shop.register"), Database::Open::kRead, kRegisterKind);
  std::filesystem::remove(Path("shop.register-wal"));
  std::filesystem::create_hard_link(Path("shop.register"), Path("twin"));
  EXPECT_NO_THROW(Documents(copied));
}

TEST_F(DatabaseSharingTest, AMomentEndsWithoutMemory) {
  Database look(Path("shop.register"), Database::Open::kRead, kRegisterKind);
  ASSERT_EQ(Documents(look), 0);
  {
    std::optional<Moment> moment(look);
    FailingMemory::FailAt(1, FailingMemory::kForGood);
    moment.reset();
    FailingMemory::Heal();
  }
  Receipt(1, 10000);
  EXPECT_EQ(look.FindNews(), Database::News::kChanged);
  EXPECT_EQ(Documents(look), 1);
}

TEST_F(DatabaseSharingTest, AMomentWithinAnotherIsPartOfIt) {
  Database look(Path("shop.register"), Database::Open::kRead, kRegisterKind);
  {
    const Moment moment(look);
    ASSERT_EQ(Documents(look), 0);
    Receipt(1, 10000);
    EXPECT_EQ(Documents(look), 0);
  }
  EXPECT_EQ(Documents(look), 1);
}

TEST_F(DatabaseSharingTest, ALookEndsWithoutMemory) {
  device.reset();
  const std::string name = std::string(100, 'n');
  std::filesystem::copy_file(Path("shop.register"), Path(name));
  std::optional<Database> look;
  look.emplace(Path(name), Database::Open::kRead, kRegisterKind);
  ASSERT_EQ(Documents(*look), 0);
  FailingMemory::FailAt(1, FailingMemory::kForGood);
  look.reset();
  FailingMemory::Heal();
  EXPECT_TRUE(FailingMemory::failed());
  EXPECT_EQ(OpenRefusal(name, Database::Open::kRead), "");
}

// Whoever writes by other means, or is let in when the reservation is lost, is noticed before
// anything is stored on top of what is not known.
TEST_F(DatabaseSharingTest, AWriterStoresNothingOnTopOfAnothers) {
  device.reset();
  {
    Database writer(Path("shop.register"), Database::Open::kChange, kRegisterKind);
    {
      Transaction own(writer);
      writer.Execute("CREATE TABLE own (number INTEGER)");
      own.Commit();
    }
    { Transaction taken_back(writer); }
    Sql("shop.register", "CREATE TABLE foreign_one (number INTEGER)");
    for (int n = 0; n < 2; ++n) {
      try {
        writer.Begin(true);
        ADD_FAILURE() << n;
        writer.Rollback();
      } catch (const RegisterError& error) {
        EXPECT_EQ(error.what(), Path("shop.register") +
                                    ": was written by another program meanwhile; nothing more is "
                                    "stored until it is opened again");
      }
      EXPECT_FALSE(writer.in_unit());
    }
  }
  Database again(Path("shop.register"), Database::Open::kChange, kRegisterKind);
  Transaction unit(again);
  again.Execute("INSERT INTO foreign_one VALUES (1)");
  again.Execute("INSERT INTO own VALUES (1)");
  unit.Commit();
}

}  // namespace
}  // namespace lorimat
