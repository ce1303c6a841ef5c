// Files and folders that cannot be written: a register cannot work there, and can be looked at.
#include <sys/stat.h>

#include <algorithm>
#include <optional>

#include "register/inspect/register_file.h"
#include "register/storage/database.h"
#include "register/storage/schema.h"
#include "unit/register/as_nobody.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

// A register with a receipt of 1,00 and a closing.
class UnwritableTest : public StoredRegisterTest {
 protected:
  static constexpr mode_t kFolder = 0777;
  static constexpr mode_t kReadOnlyFolder = 0555;

  void SetUp() override {
    Receipt(1, 10000);
    ASSERT_EQ(device->PrintZReport(), RTF_SUCCESS);
    ASSERT_EQ(chmod(folder_.c_str(), kFolder), 0);
  }
  void TearDown() override { chmod(folder_.c_str(), kFolder); }
  void Protect(const std::string& name) const { ASSERT_EQ(chmod(Path(name).c_str(), 0444), 0); }
  void ProtectFolder() const { ASSERT_EQ(chmod(folder_.c_str(), kReadOnlyFolder), 0); }

  std::string Refusal(const std::string& name) const {
    try {
      const VirtualRegister refused(FileSettings(name));
    } catch (const RegisterError& error) {
      return error.what();
    }
    return {};
  }
  std::string LookRefusal(const std::string& name) const {
    try {
      RegisterFile look(Path(name));
    } catch (const RegisterError& error) {
      return error.what();
    }
    return {};
  }
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      names.push_back(entry.path().filename().string());
    }
    std::sort(names.begin(), names.end());
    return names;
  }
  // Everything that there is to see.
  static void ExpectWhole(const RegisterFile& look) {
    EXPECT_EQ(look.Status().closures, 1);
    EXPECT_EQ(look.Status().grand_total, 10000);
    EXPECT_FALSE(look.Roll().lines().empty());
    ASSERT_TRUE(look.Entry(2));
    EXPECT_EQ(look.Entry(2)->kind, kJournalClosure);
    const JournalCheck check = look.VerifyJournal({});
    EXPECT_TRUE(check.good());
    EXPECT_EQ(check.entries, 2u);
  }
};

TEST_F(UnwritableTest, AFileIsLookedAtAndNothingIsMadeBesideIt) {
  device.reset();
  Protect("shop.register");
  const std::string before = Bytes("shop.register");
  const AsNobody nobody;
  {
    RegisterFile look(Path("shop.register"));
    ExpectWhole(look);
    EXPECT_EQ(Names(), std::vector<std::string>{"shop.register"});
  }
  EXPECT_EQ(Names(), std::vector<std::string>{"shop.register"});
  EXPECT_EQ(Bytes("shop.register"), before);
  EXPECT_EQ(Refusal("shop.register"),
            Path("shop.register") + ": cannot be written: Permission denied");
}

TEST_F(UnwritableTest, AFolderIsLookedInto) {
  device.reset();
  ASSERT_EQ(chmod(Path("shop.register").c_str(), 0666), 0);
  ProtectFolder();
  {
    const AsNobody nobody;
    ExpectWhole(RegisterFile(Path("shop.register")));
    EXPECT_EQ(Refusal("shop.register"),
              Path("shop.register") + ": its folder cannot be written: Permission denied");
    EXPECT_EQ(Refusal("new"), Path("new") + ": cannot be opened: Permission denied");
  }
  ASSERT_EQ(chmod(folder_.c_str(), kFolder), 0);
  EXPECT_EQ(Refusal("shop.register"), "");
}

TEST_F(UnwritableTest, NamesMayHoldAnything) {
  device.reset();
  for (const std::string name :
       {"negozio \xc3\xa8 \xff", "a?mode=memory", "file:shop", "%41", "a#b&c"}) {
    std::filesystem::copy_file(Path("shop.register"), Path(name));
    Protect(name);
    const AsNobody nobody;
    EXPECT_EQ(LookRefusal(name), "") << name;
  }
}

TEST_F(UnwritableTest, FaultsCannotBePlanned) {
  device.reset();
  Protect("shop.register");
  const AsNobody nobody;
  try {
    RegisterFile::ChangeFaults(Path("shop.register"),
                               [](FaultPlan* plan) { plan->Add({.name = "paper-end"}); });
    ADD_FAILURE();
  } catch (const RegisterError& error) {
    EXPECT_EQ(error.what(), Path("shop.register") + ": cannot be written: Permission denied");
  }
  EXPECT_TRUE(RegisterFile(Path("shop.register")).Faults().empty());
}

TEST_F(UnwritableTest, ALogThatWaitsIsNotLeftOut) {
  ASSERT_GT(Bytes("shop.register-wal").size(), 0u);
  CopyAsCut("shop.register", "copy");
  Protect("copy");
  const std::string before = Bytes("copy");
  const std::string log = Bytes("copy-wal");
  const std::vector<std::string> names = Names();
  {
    const AsNobody nobody;
    EXPECT_EQ(LookRefusal("copy"), Path("copy") + ": cannot be written here, and " +
                                       Path("copy-wal") +
                                       " has to be taken over into it: copy both to a folder "
                                       "where they can be written");
  }
  EXPECT_EQ(Names(), names);
  EXPECT_EQ(Bytes("copy"), before);
  EXPECT_EQ(Bytes("copy-wal"), log);
  // As it says.
  ASSERT_EQ(chmod(Path("copy").c_str(), 0644), 0);
  ExpectWhole(RegisterFile(Path("copy")));
}

TEST_F(UnwritableTest, AnOlderVersionIsBroughtUpToDateInACopyAlone) {
  device.reset();
  std::filesystem::remove(Path("shop.register"));
  MakeVersion(1, "shop.register");
  const std::string documents = Sql("shop.register", "SELECT count(*) FROM document");
  Protect("shop.register");
  const std::string before = Bytes("shop.register");
  {
    const AsNobody nobody;
    const RegisterFile look(Path("shop.register"));
    EXPECT_EQ(fmt::format("{}\n", look.Status().documents), documents);
    EXPECT_EQ(look.Status().schema_version, kSchemaVersion);
    EXPECT_TRUE(look.VerifyJournal({}).good());
  }
  EXPECT_EQ(Bytes("shop.register"), before);
  EXPECT_EQ(Names(), std::vector<std::string>{"shop.register"});
}

TEST_F(UnwritableTest, ARegisterAtWorkIsLookedAt) {
  Protect("shop.register");
  const std::vector<std::string> names = Names();
  {
    const AsNobody nobody;
    RegisterFile look(Path("shop.register"));
    ExpectWhole(look);
  }
  EXPECT_EQ(Names(), names);
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  ASSERT_EQ(Sell(1, 5000), RTF_SUCCESS);
  const AsNobody nobody;
  EXPECT_EQ(RegisterFile(Path("shop.register")).Status().open_document->subtotal, 5000);
}

// Its log and the index of it are still there, and nobody has them open.
TEST_F(UnwritableTest, AKilledRegisterIsLookedAt) {
  CopyAsCut("shop.register", "copy");
  std::filesystem::copy_file(Path("shop.register-shm"), Path("copy-shm"));
  Protect("copy");
  Protect("copy-wal");
  Protect("copy-shm");
  ASSERT_GT(Bytes("copy-wal").size(), 0u);
  const std::string before = Bytes("copy") + Bytes("copy-wal") + Bytes("copy-shm");
  const std::vector<std::string> names = Names();
  {
    const AsNobody nobody;
    ExpectWhole(RegisterFile(Path("copy")));
  }
  EXPECT_EQ(Names(), names);
  EXPECT_EQ(Bytes("copy") + Bytes("copy-wal") + Bytes("copy-shm"), before);
}

TEST_F(UnwritableTest, ALookThatARegisterDoesNotKnowOfEndsWhenItBeginsToWork) {
  device.reset();
  Protect("shop.register");
  std::optional<RegisterFile> look;
  {
    const AsNobody nobody;
    look.emplace(Path("shop.register"));
  }
  EXPECT_EQ(look->Look(), RegisterFile::News::kNone);
  ASSERT_EQ(chmod(Path("shop.register").c_str(), 0644), 0);
  Start();
  ASSERT_EQ(Begin(), RTF_SUCCESS);
  try {
    static_cast<void>(look->Roll());
    ADD_FAILURE();
  } catch (const RegisterError& error) {
    EXPECT_EQ(error.what(),
              Path("shop.register") +
                  ": another program has begun to work with it meanwhile; read it again");
  }
  // The next look is of the register at work.
  const AsNobody nobody;
  EXPECT_EQ(look->Look(), RegisterFile::News::kChanged);
  EXPECT_TRUE(look->Status().open_document);
}

// What is read of two moments may look like damage.
TEST_F(UnwritableTest, ADisturbedLookTellsOfTheDisturbanceAndNotOfDamage) {
  device.reset();
  Protect("shop.register");
  std::optional<Database> look;
  {
    const AsNobody nobody;
    look.emplace(Path("shop.register"), Database::Open::kRead, kRegisterKind);
  }
  std::string bytes = Bytes("shop.register");
  constexpr size_t kFirstPage = 4096;
  ASSERT_GT(bytes.size(), kFirstPage);
  std::fill(bytes.begin() + kFirstPage, bytes.end(), 'x');
  Write("shop.register", bytes);
  Statement documents = look->Prepare("SELECT * FROM document");
  EXPECT_THROW(static_cast<void>(documents.Step()), DisturbedError);
  EXPECT_THROW(look->Damaged("a value"), DisturbedError);
}

// A file may belong to somebody else than the one who may write it: what is made beside it would be
// in its owner's way.
TEST_F(UnwritableTest, NothingIsMadeBesideTheFileOfSomebodyElse) {
  device.reset();
  ASSERT_EQ(chmod(Path("shop.register").c_str(), 0666), 0);
  const AsNobody nobody;
  const RegisterFile look(Path("shop.register"));
  ExpectWhole(look);
  EXPECT_EQ(Names(), std::vector<std::string>{"shop.register"});
}

TEST_F(UnwritableTest, WhatIsNoRegisterIsRefusedAsElsewhere) {
  device.reset();
  const struct {
    const char* bytes;
    const char* cause;
  } files[] = {
      {"Dear diary", "is not a register of this program: it is no SQLite database"},
      {"", "the file is empty"},
  };
  for (const auto& file : files) {
    ASSERT_EQ(chmod(Path("shop.register").c_str(), 0644), 0);
    Write("shop.register", file.bytes);
    Protect("shop.register");
    const AsNobody nobody;
    EXPECT_EQ(LookRefusal("shop.register"), Path("shop.register") + ": " + file.cause);
  }
  ASSERT_EQ(chmod(Path("shop.register").c_str(), 0000), 0);
  for (const mode_t folder : {kFolder, kReadOnlyFolder}) {
    ASSERT_EQ(chmod(folder_.c_str(), folder), 0);
    const AsNobody nobody;
    for (const std::string& refusal : {LookRefusal("shop.register"), Refusal("shop.register")}) {
      EXPECT_EQ(refusal, Path("shop.register") + ": cannot be opened: Permission denied");
    }
  }
}

}  // namespace
}  // namespace lorimat
