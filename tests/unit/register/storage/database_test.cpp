// Files that are registers, files that are not, and units of work.
#include "register/storage/database.h"

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <optional>
#include <system_error>

#include "register/inspect/register_file.h"
#include "register/storage/new_file.h"
#include "register/storage/schema.h"
#include "unit/register/store_fixture.h"

namespace lorimat {
namespace {

class DatabaseTest : public StoreTest {
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
  std::string LookRefusal(const std::string& file) const {
    try {
      RegisterFile look(file);
    } catch (const RegisterError& error) {
      return error.what();
    }
    return {};
  }
  // Refused with the file's name and this cause, by both doors, and left as it is.
  void ExpectRefused(const std::string& name, const std::string& cause) {
    const std::string before = Bytes(name);
    EXPECT_EQ(Refusal(Path(name)), Path(name) + ": " + cause);
    EXPECT_EQ(LookRefusal(Path(name)), Path(name) + ": " + cause);
    EXPECT_EQ(Bytes(name), before);
    for (const char* end : {"-wal", "-shm", "-journal"}) {
      EXPECT_FALSE(std::filesystem::exists(Path(name + end))) << end;
    }
  }
  void MakeRegister(const std::string& name) {
    VirtualRegister device(FileSettings(name));
    ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
    ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  }
};

TEST_F(DatabaseTest, ANewFileIsMadeAndMarkedAsARegister) {
  MakeRegister("shop.register");
  EXPECT_EQ(Sql("shop.register", "PRAGMA application_id"), "1280135750\n");  // "LMRF"
  EXPECT_EQ(Sql("shop.register", "PRAGMA user_version"), std::to_string(kSchemaVersion) + "\n");
  EXPECT_EQ(Sql("shop.register", "PRAGMA journal_mode"), "wal\n");
  EXPECT_EQ(Refusal(Path("shop.register")), "");
}

TEST_F(DatabaseTest, AnEmptyFileBecomesARegister) {
  // So does a start leave it that is cut off at its very beginning.
  Write("shop.register", "");
  EXPECT_EQ(LookRefusal(Path("shop.register")), Path("shop.register") + ": the file is empty");
  EXPECT_EQ(Bytes("shop.register"), "");
  EXPECT_EQ(Refusal(Path("shop.register")), "");
  EXPECT_EQ(Sql("shop.register", "PRAGMA user_version"), std::to_string(kSchemaVersion) + "\n");
}

// The register was moved away, or deleted: with its log SQLite would throw away receipts that stand
// nowhere else, and a new register would begin in silence.
TEST_F(DatabaseTest, ALogWithoutItsFileIsKept) {
  Write("shop.register-wal", "what was stored last");
  const std::string told = Path("shop.register") + ": is not there, or empty, and " +
                           Path("shop.register-wal") +
                           " is: what was stored last stands in it alone. Put the register back "
                           "beside it, or move it away";
  EXPECT_EQ(Refusal(Path("shop.register")), told);
  EXPECT_FALSE(std::filesystem::exists(Path("shop.register")));
  Write("shop.register", "");
  EXPECT_EQ(Refusal(Path("shop.register")), told);
  EXPECT_EQ(Bytes("shop.register-wal"), "what was stored last");
  std::filesystem::remove(Path("shop.register-wal"));
  EXPECT_EQ(Refusal(Path("shop.register")), "");
}

// A seller that goes on in a file without its name sells into nothing.
TEST_F(DatabaseTest, NothingIsStoredInAFileThatLostItsName) {
  const auto sell = [](VirtualRegister* device) {
    return device->BeginFiscalReceipt(true) == RTF_SUCCESS &&
           device->PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, "") == RTF_SUCCESS &&
           device->PrintRecTotalEx(0, "0", true) == RTF_SUCCESS;
  };
  const std::string file = Path("shop.register");
  const std::string log = file + "-wal";
  const std::string away = Path("away");
  const std::string told = "was removed, moved or replaced while the register worked on it";
  const auto lose = [&](const std::string& name, const std::string& cause, const auto& loss) {
    MakeRegister("shop.register");
    MakeRegister("other");
    VirtualRegister device(FileSettings("shop.register"));
    EXPECT_TRUE(sell(&device));
    loss(name);
    EXPECT_FALSE(sell(&device));
    EXPECT_EQ(device.last_failure(), file + ": " + cause);
    // Back in its place it is what it was.
    if (std::filesystem::exists(away)) {
      std::filesystem::rename(away, name);
      EXPECT_TRUE(sell(&device));
    }
  };
  const auto remove = [](const std::string& name) { std::filesystem::remove(name); };
  const auto move = [&](const std::string& name) { std::filesystem::rename(name, away); };
  const auto replace = [&](const std::string& name) {
    std::filesystem::rename(Path("other"), name);
  };
  lose(file, told, remove);
  std::filesystem::remove(log);
  lose(file, told, move);
  lose(file, told, replace);
  std::filesystem::remove(log);
  lose(log, "its log " + told, remove);
  lose(log, "its log " + told, move);
  lose(log, "its log " + told, replace);
}

// A limit of file sizes, which the commit meets.
TEST_F(DatabaseTest, ACommitThatFailsTellsTheSystemsCause) {
  VirtualRegister device(FileSettings("shop.register"));
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  rlimit before = {};
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
  const auto handler = std::signal(SIGXFSZ, SIG_IGN);
  const rlimit none = {std::filesystem::file_size(Path("shop.register-wal")), before.rlim_max};
  setrlimit(RLIMIT_FSIZE, &none);
  EXPECT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_E_FAILURE);
  setrlimit(RLIMIT_FSIZE, &before);
  std::signal(SIGXFSZ, handler);
  EXPECT_EQ(device.last_failure(), Path("shop.register") +
                                       ": cannot be read or written to its end: " +
                                       std::generic_category().message(EFBIG));
  EXPECT_EQ(device.PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
}

// Another program may be at the file before its lock is taken.
TEST(NewFileTest, OnlyGoesWhileItIsEmptyOrLocked) {
  const std::string file = testing::TempDir() + "new_file_test";
  const auto make = [&file](NewFile* made) {
    std::filesystem::remove(file);
    ASSERT_EQ(made->Make(file), 0);
  };
  const auto write = [&file] { std::ofstream(file) << "theirs"; };
  {
    NewFile made;
    make(&made);
  }
  EXPECT_FALSE(std::filesystem::exists(file));
  {
    NewFile made;
    make(&made);
    write();
  }
  EXPECT_TRUE(std::filesystem::exists(file));
  {
    NewFile made;
    make(&made);
    made.Lock();
    write();
  }
  EXPECT_FALSE(std::filesystem::exists(file));
  {
    // Another file in its place.
    NewFile made;
    make(&made);
    made.Lock();
    std::filesystem::rename(file, file + ".old");
    write();
  }
  EXPECT_TRUE(std::filesystem::exists(file));
  std::filesystem::remove(file);
  std::filesystem::remove(file + ".old");
}

// SQLite takes 512 bytes with its journal's name, "-journal"; a name has 255.
TEST_F(DatabaseTest, ANewFileThatIsRefusedIsNotLeftBehind) {
  const std::string long_folder = Path(std::string(200, 'a')) + "/" + std::string(200, 'b');
  std::filesystem::create_directories(long_folder);
  const std::string room(512 - 8 - long_folder.size() - 1, 'c');
  const std::string too_long = long_folder + "/" + room + "c";
  EXPECT_EQ(Refusal(too_long), too_long + ": cannot be opened: File name too long");
  EXPECT_EQ(LookRefusal(too_long), too_long + ": cannot be opened: File name too long");
  EXPECT_TRUE(std::filesystem::is_empty(long_folder));
  // Where it leads to counts, and not what it is called.
  std::filesystem::create_directory_symlink(long_folder, Path("short"));
  EXPECT_EQ(Refusal(Path("short/") + room + "c"),
            Path("short/") + room + "c: cannot be opened: File name too long");
  EXPECT_TRUE(std::filesystem::is_empty(long_folder));
  EXPECT_EQ(Refusal(long_folder + "/" + room), "");

  // Room for the file, and none for what SQLite makes beside it.
  for (const size_t size : {256u, 255u, 252u}) {
    const std::string name = Path(std::string(size, 'd'));
    EXPECT_NE(Refusal(name), "") << size;
    std::error_code none;
    EXPECT_FALSE(std::filesystem::exists(name, none)) << size;
  }
  EXPECT_EQ(Refusal(Path(std::string(247, 'd'))), "");
  EXPECT_EQ(Refusal(Path("missing/shop")),
            Path("missing/shop") + ": cannot be opened: No such file or directory");
  EXPECT_FALSE(std::filesystem::exists(Path("missing")));
}

TEST_F(DatabaseTest, ANewFileThatTheDiskHasNoRoomForIsNotLeftBehind) {
  const auto names = [this] {
    std::vector<std::string> found;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      found.push_back(entry.path().filename().string());
    }
    return found;
  };
  bool made = false;
  int failures = 0;
  for (int n = 1; !made; ++n) {
    ASSERT_LT(n, 1000);
    disk.FailAt(n % 2 == 0 ? FailingDisk::Fault::kWrite : FailingDisk::Fault::kFull, n, true);
    const std::string refusal = Refusal(Path("shop.register"));
    disk.Heal();
    made = refusal.empty();
    if (made) break;
    ++failures;
    EXPECT_EQ(names(), std::vector<std::string>{}) << n;
  }
  EXPECT_GE(failures, 5);
  EXPECT_EQ(LookRefusal(Path("shop.register")), "");
  // An empty file of the host's is its own.
  Write("empty", "");
  disk.FailAt(FailingDisk::Fault::kFull, 1, true);
  EXPECT_NE(Refusal(Path("empty")), "");
  disk.Heal();
  EXPECT_TRUE(std::filesystem::exists(Path("empty")));
}

TEST_F(DatabaseTest, OtherFilesAreRefusedAndLeftAlone) {
  Write("text", "Dear diary,\n");
  ExpectRefused("text", "is not a register of this program: it is no SQLite database");
  Write("long text", std::string(20000, 'x'));
  ExpectRefused("long text", "is not a register of this program: it is no SQLite database");
  Write("head alone", std::string("SQLite format 3\0", 16));
  ExpectRefused("head alone", "is not a register of this program: it is no SQLite database");

  Write("notes", "");
  Sql("notes", "CREATE TABLE note (text); INSERT INTO note VALUES ('milk')");
  ExpectRefused("notes", "is the database of another program");
  Write("marked", "");
  Sql("marked", "PRAGMA application_id = 7; CREATE TABLE note (text)");
  ExpectRefused("marked", "is the database of another program");
  Write("versioned", "");
  Sql("versioned", "PRAGMA user_version = 2");
  ExpectRefused("versioned", "is the database of another program");
}

TEST_F(DatabaseTest, ADatabaseWithALogOfAnotherProgramIsLeftAlone) {
  // Its log waits to be taken over: that is not ours to do.
  Write("notes", "");
  sqlite3* other = nullptr;
  ASSERT_EQ(sqlite3_open_v2(Path("notes").c_str(), &other, SQLITE_OPEN_READWRITE,
                            FailingDisk::RealName()),
            SQLITE_OK);
  ASSERT_EQ(sqlite3_exec(other,
                         "PRAGMA journal_mode = WAL; CREATE TABLE note (text);"
                         "INSERT INTO note VALUES ('milk')",
                         nullptr, nullptr, nullptr),
            SQLITE_OK);
  CopyAsCut("notes", "copy");
  sqlite3_close(other);
  ASSERT_GT(Bytes("copy-wal").size(), 0u);
  const std::string before = Bytes("copy");
  const std::string log = Bytes("copy-wal");
  EXPECT_EQ(Refusal(Path("copy")), Path("copy") + ": is the database of another program");
  EXPECT_EQ(Bytes("copy"), before);
  EXPECT_EQ(Bytes("copy-wal"), log);
}

TEST_F(DatabaseTest, ANewerRegisterIsRefused) {
  MakeRegister("shop.register");
  Sql("shop.register",
      fmt::format("PRAGMA user_version = {}; PRAGMA journal_mode = DELETE", kSchemaVersion + 1));
  ExpectRefused("shop.register",
                fmt::format("was made by a newer version: its tables are of version {}, known are "
                            "those up to {}",
                            kSchemaVersion + 1, kSchemaVersion));
}

TEST_F(DatabaseTest, AFileThatWasCutShortIsRefused) {
  MakeRegister("shop.register");
  const std::string whole = Bytes("shop.register");
  ASSERT_EQ(whole.size() % 4096, 0u);
  for (const size_t size :
       {whole.size() - 1, whole.size() - 4096, size_t{4096}, size_t{5000}, size_t{100}}) {
    Write("cut", whole.substr(0, size));
    ExpectRefused(
        "cut", fmt::format("the file is cut short: {} bytes are left of {}", size, whole.size()));
  }
  Write("cut", whole.substr(0, 99));
  ExpectRefused("cut", "is not a register of this program: it is no SQLite database");
}

TEST_F(DatabaseTest, ADamagedFileIsRefusedWhenItIsReadOrFoundByItsCheck) {
  MakeRegister("shop.register");
  const std::string whole = Bytes("shop.register");
  int refused = 0, found = 0;
  // Every page in its turn is overwritten, behind the head of the first one.
  for (size_t at = 0; at < whole.size(); at += 4096) {
    std::string damaged = whole;
    const size_t from = at == 0 ? 100 : at;
    damaged.replace(from, at + 4096 - from, at + 4096 - from, '\x5a');
    Write("damaged", damaged);
    try {
      RegisterFile look(Path("damaged"));
      static_cast<void>(look.Roll());
      const JournalCheck check = look.VerifyJournal({});
      EXPECT_FALSE(check.good()) << "page " << at / 4096 + 1;
      ++found;
    } catch (const RegisterError& error) {
      EXPECT_EQ(std::string(error.what()).find(Path("damaged") + ": "), 0u) << error.what();
      ++refused;
    }
    // Opening or selling never crashes.
    try {
      VirtualRegister device(FileSettings("damaged"));
      device.BeginFiscalReceipt(true);
      device.PrintZReport();
    } catch (const RegisterError&) {
    }
  }
  EXPECT_GT(refused, 0);
  EXPECT_GT(found, 0);
}

TEST_F(DatabaseTest, ValuesThatMakeNoSenseAreNamed) {
  const struct {
    const char* sql;
    const char* what;
  } rows[] = {
      {"UPDATE ledger SET day_totals = 'x'", "totals"},
      {"DELETE FROM ledger", "ledger"},
      {"DELETE FROM period WHERE number = 3", "period"},
      {"UPDATE period SET totals = '1 '", "totals"},
      {"UPDATE ledger SET sales = 99999999999", "counters"},
      {"UPDATE ledger SET abandoned = -1", "counters"},
      {"UPDATE ledger SET last_closure = 10000", "ledger"},
      {"UPDATE ledger SET next_invoice = 0", "ledger"},
      {"UPDATE ledger SET last_document = 9223372036854775807", "ledger"},
      {"UPDATE ledger SET journal_place = -1", "ledger"},
      {"INSERT OR REPLACE INTO setting VALUES ('key', 'nine')", "key"},
      {"INSERT OR REPLACE INTO setting VALUES ('key', '5')", "key"},
      {"INSERT OR REPLACE INTO setting VALUES ('key', '0')", "key"},
      {"INSERT OR REPLACE INTO setting VALUES ('commissioning', '4')", "commissioning"},
      {"INSERT OR REPLACE INTO setting VALUES ('training', '2')", "training"},
      {"INSERT OR REPLACE INTO setting VALUES ('faults', 'flood')", "faults"},
      {"DELETE FROM setting WHERE name = 'serial_number'", "serial_number"},
      {"DELETE FROM operator_group WHERE number = 20", "operator_group"},
      {"UPDATE subtender SET kind = 9 WHERE number = 1", "subtender"},
      {"INSERT INTO device_option VALUES (317, 'x')", "device_option"},
      {"INSERT INTO programmed_key VALUES (0, 41, 300, '')", "programmed_key"},
      {"UPDATE roll SET lines = lines + 1", "roll"},
      {"UPDATE roll SET first_line = first_line + 50 WHERE first_line = "
       "(SELECT max(first_line) FROM roll)",
       "roll"},
      {"UPDATE roll SET rows = '5 1 0 '", "roll"},
      {"UPDATE roll SET rows = '0 1 9 '", "roll"},
      {"INSERT INTO open_document VALUES (1, 99, 0, 0, 0, 0, '')", "open_document"},
  };
  MakeRegister("shop.register");
  for (const auto& row : rows) {
    std::filesystem::copy_file(Path("shop.register"), Path("changed"),
                               std::filesystem::copy_options::overwrite_existing);
    Sql("changed", row.sql);
    EXPECT_EQ(Refusal(Path("changed")),
              Path("changed") + ": the register is damaged: " + row.what + " makes no sense")
        << row.sql;
  }
}

TEST_F(DatabaseTest, PlacesWhereNoFileCanBe) {
  EXPECT_EQ(Refusal(folder_.string()), folder_.string() + ": is a directory, not a register");
  EXPECT_EQ(LookRefusal(folder_.string()), folder_.string() + ": is a directory, not a register");
  EXPECT_EQ(LookRefusal(Path("none")), Path("none") + ": No such file or directory");
  EXPECT_EQ(Refusal(Path("none/shop")),
            Path("none/shop") + ": cannot be opened: No such file or directory");
  EXPECT_EQ(LookRefusal(Path("none/shop")), Path("none/shop") + ": No such file or directory");
  EXPECT_EQ(Refusal(Path(std::string("a\0b", 3))), Path("a?b") + ": Invalid argument");
  EXPECT_NE(Refusal(Path(std::string(300, 'n'))), "");
  ASSERT_EQ(mkfifo(Path("pipe").c_str(), 0600), 0);
  EXPECT_EQ(Refusal(Path("pipe")), Path("pipe") + ": is no regular file");
  EXPECT_EQ(LookRefusal(""), "the register's file has no name");
}

TEST_F(DatabaseTest, ASecondWriterIsRefused) {
  auto device = std::make_unique<VirtualRegister>(FileSettings());
  const std::string cause = ": is in use by another program";
  const auto faults_refusal = [this](const std::string& name) -> std::string {
    try {
      RegisterFile::ChangeFaults(Path(name), [](FaultPlan*) {});
    } catch (const RegisterError& error) {
      return error.what();
    }
    return {};
  };
  // Whatever it calls the file.
  std::filesystem::create_symlink(Path("shop.register"), Path("link"));
  std::filesystem::create_hard_link(Path("shop.register"), Path("twin"));
  for (const std::string name : {"shop.register", "link", "twin"}) {
    EXPECT_EQ(Refusal(Path(name)), Path(name) + cause);
    EXPECT_EQ(faults_refusal(name), Path(name) + cause);
  }
  // The refused ones have not loosened its hold.
  EXPECT_EQ(device->BeginFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_EQ(Refusal(Path("shop.register")), Path("shop.register") + cause);
  device.reset();
  std::filesystem::remove(Path("twin"));
  EXPECT_EQ(Refusal(Path("link")), "");
}

// A log goes by the name of its file: under another name its receipts would be missing.
TEST_F(DatabaseTest, ALookUnderAnotherNameOfAFileAtWorkIsRefused) {
  MakeRegister("shop.register");
  std::filesystem::create_symlink(Path("shop.register"), Path("link"));
  VirtualRegister device(FileSettings());
  std::filesystem::create_hard_link(Path("shop.register"), Path("twin"));
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_NE(LookRefusal(Path("twin")), "");
  EXPECT_TRUE(RegisterFile(Path("link")).Status().open_document);
  EXPECT_EQ(LookRefusal(Path("shop.register")), "");
}

TEST_F(DatabaseTest, AForkedProcessHasNoPartInTheRegister) {
  auto device = std::make_unique<VirtualRegister>(FileSettings());
  const pid_t child = fork();
  if (child == 0) {
    const bool refused = device->BeginFiscalReceipt(true) == RTF_E_FAILURE;
    device.reset();
    _exit(refused ? 0 : 1);
  }
  int status = -1;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  EXPECT_EQ(status, 0);
  // Nor has its end taken the register from its own process.
  EXPECT_EQ(Refusal(Path("shop.register")),
            Path("shop.register") + ": is in use by another program");
  EXPECT_EQ(device->BeginFiscalReceipt(true), RTF_SUCCESS);
  EXPECT_EQ(device->PrintRecItemEx(0, "", 10000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
}

TEST_F(DatabaseTest, ALookKeepsNobodyFromWork) {
  MakeRegister("shop.register");
  RegisterFile look(Path("shop.register"));
  EXPECT_EQ(Refusal(Path("shop.register")), "");
  VirtualRegister device(FileSettings());
  EXPECT_EQ(LookRefusal(Path("shop.register")), "");
  EXPECT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
}

TEST_F(DatabaseTest, ANameThatReadsLikeAPlaceInMemoryIsAFile) {
  const std::filesystem::path before = std::filesystem::current_path();
  std::filesystem::current_path(folder_);
  RegisterSettings settings = TestSettings();
  settings.file = ":memory:";
  { VirtualRegister device(settings); }
  std::filesystem::current_path(before);
  EXPECT_TRUE(std::filesystem::exists(Path(":memory:")));
}

TEST_F(DatabaseTest, NamesMayHoldAnything) {
  for (const std::string name : {"negozio è \xff", "a?mode=memory", "file:shop", "%41", "a b"}) {
    MakeRegister(name);
    EXPECT_TRUE(std::filesystem::exists(Path(name))) << name;
  }
}

}  // namespace
}  // namespace lorimat
