// New files that are there whole or not at all, and registers that are written into them.
#include "register/storage/part_file.h"

#include <gmock/gmock.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstddef>
#include <filesystem>

#include "register/storage/change_copy.h"
#include "register/storage/descriptor_files.h"
#include "register/storage/schema.h"
#include "register/value/register_error.h"
#include "unit/register/failing_memory.h"
#include "unit/register/store_fixture.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::UnorderedElementsAre;

namespace lorimat {
namespace {

class PartFileTest : public StoreTest {
 protected:
  std::vector<std::string> Names() const {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::directory_iterator(folder_)) {
      names.push_back(entry.path().filename().string());
    }
    return names;
  }
  // Why a file of that name is not made; empty when it is.
  std::string Refusal(const std::string& name, PartFile::Way way = PartFile::Way::kNameless) const {
    try {
      const PartFile part(Path(name), way);
      return {};
    } catch (const RegisterError& error) {
      return EnglishCause(error.failure());
    }
  }
  static void Put(const PartFile& part, const std::string& text) {
    ASSERT_EQ(write(part.descriptor(), text.data(), text.size()),
              static_cast<ssize_t>(text.size()));
  }
};

// While it stands, no file of this process grows beyond so many bytes.
class FileLimit {
 public:
  explicit FileLimit(rlim_t bytes) {
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit limit = before_;
    limit.rlim_cur = bytes;
    handler_ = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  ~FileLimit() {
    setrlimit(RLIMIT_FSIZE, &before_);
    std::signal(SIGXFSZ, handler_);
  }

 private:
  rlimit before_ = {};
  void (*handler_)(int) = nullptr;
};

constexpr PartFile::Way kWays[] = {PartFile::Way::kNameless, PartFile::Way::kNamed};

}  // namespace

TEST_F(PartFileTest, AHostWithoutStandardInputGetsItsFileToo) {
  const int input = dup(STDIN_FILENO);
  ASSERT_NE(input, -1);
  close(STDIN_FILENO);
  {
    PartFile part(Path("new"), PartFile::Way::kNameless);
    EXPECT_EQ(part.descriptor(), STDIN_FILENO);
    EXPECT_THAT(Names(), IsEmpty());  // without a name until it is whole
    Put(part, "text");
    EXPECT_EQ(part.Finish(), 0);
  }
  dup2(input, STDIN_FILENO);
  close(input);
  EXPECT_EQ(Bytes("new"), "text");
}

TEST_F(PartFileTest, HasItsNameWhenItIsFinishedAndNotBefore) {
  for (const PartFile::Way way : kWays) {
    const std::string name = way == PartFile::Way::kNamed ? "named" : "nameless";
    PartFile part(Path(name), way);
    Put(part, "whole");
    EXPECT_FALSE(std::filesystem::exists(Path(name)));
    EXPECT_EQ(part.Finish(), 0);
    EXPECT_EQ(Bytes(name), "whole");
  }
  EXPECT_THAT(Names(), UnorderedElementsAre("named", "nameless"));
}

TEST_F(PartFileTest, LeavesNothingWhenItIsNotFinished) {
  for (const PartFile::Way way : kWays) {
    const PartFile part(Path("shop"), way);
    Put(part, "half");
    const bool named = way == PartFile::Way::kNamed;
    EXPECT_EQ(Names(), named ? std::vector<std::string>{"shop.part"} : std::vector<std::string>{});
  }
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(PartFileTest, WithoutANameAKillLeavesNothing) {
  const pid_t child = fork();
  if (child == 0) {
    const PartFile part(Path("shop"));
    if (write(part.descriptor(), "half", 4) == 4) raise(SIGKILL);
    _exit(0);
  }
  int status = 0;
  ASSERT_EQ(waitpid(child, &status, 0), child);
  ASSERT_TRUE(WIFSIGNALED(status));
  EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(PartFileTest, WhatHasTheNameStays) {
  Write("file", "mine");
  Write("empty", "");
  std::filesystem::create_directory(folder_ / "folder");
  std::filesystem::create_symlink("nowhere", folder_ / "dangling");
  std::filesystem::create_symlink("file", folder_ / "link");
  const std::vector<std::string> before = Names();
  for (const PartFile::Way way : kWays) {
    for (const char* name : {"file", "empty", "folder", "dangling", "link"}) {
      EXPECT_EQ(Refusal(name, way), "is there already, and is not overwritten") << name;
    }
  }
  EXPECT_EQ(Names(), before);
  EXPECT_EQ(Bytes("file"), "mine");
}

TEST_F(PartFileTest, WhatTakesTheNameMeanwhileStays) {
  for (const PartFile::Way way : kWays) {
    {
      PartFile part(Path("shop"), way);
      Put(part, "new");
      Write("shop", "mine");
      EXPECT_THROW(part.Finish(), RegisterError);
    }
    EXPECT_EQ(Bytes("shop"), "mine");
    EXPECT_THAT(Names(), UnorderedElementsAre("shop"));
    std::filesystem::remove(folder_ / "shop");
  }
}

TEST_F(PartFileTest, ALogBesideItIsNamed) {
  for (const char* log : {"shop-wal", "shop-journal"}) {
    Write(log, "of another");
    EXPECT_THAT(Refusal("shop"), HasSubstr(std::string(log) + " is, which would be taken for"));
    std::filesystem::remove(folder_ / log);
  }
  Write("shop-journal", "");
  EXPECT_THAT(Refusal("shop"), HasSubstr("shop-journal is, which would be taken for"));
  std::filesystem::remove(folder_ / "shop-journal");
  Write("shop-wal", "");
  EXPECT_EQ(Refusal("shop"), "");
  PartFile part(Path("shop"));
  Write("shop-wal", "of another");
  EXPECT_THROW(part.Finish(), RegisterError);
  EXPECT_THAT(Names(), UnorderedElementsAre("shop-wal"));
}

// No call has failed at the end of a file, and what an earlier one has left says nothing of it.
TEST_F(PartFileTest, AReadBehindTheEndIsShortWhateverFailedBefore) {
  PartFile part(Path("shop"));
  Put(part, "abc");
  ASSERT_TRUE(DescriptorFiles::Register());
  sqlite3* database = nullptr;
  ASSERT_EQ(sqlite3_open_v2(DescriptorFiles::NameOf(part.descriptor()).c_str(), &database,
                            SQLITE_OPEN_READWRITE, DescriptorFiles::kLayer),
            SQLITE_OK);
  sqlite3_file* file = nullptr;
  ASSERT_EQ(sqlite3_file_control(database, "main", SQLITE_FCNTL_FILE_POINTER, &file), SQLITE_OK);
  char bytes[] = "xxxxx";
  errno = EINTR;
  EXPECT_EQ(file->pMethods->xRead(file, bytes, 5, 1), SQLITE_IOERR_SHORT_READ);
  EXPECT_EQ(std::string(bytes, 5), std::string("bc\0\0\0", 5));
  sqlite3_close(database);
}

TEST_F(PartFileTest, FoldersThatAreNotThereAreNamed) {
  EXPECT_EQ(Refusal("none/shop"), "cannot be made: No such file or directory");
  Write("file", "");
  EXPECT_EQ(Refusal("file/shop"), "cannot be made: Not a directory");
  EXPECT_EQ(Refusal(std::string(300, 'x')), "cannot be made: File name too long");
  EXPECT_THROW(PartFile(""), RegisterError);
}

TEST_F(PartFileTest, WhatAKillHasLeftIsNamedAndStays) {
  Write("shop.part", "half");
  EXPECT_THAT(Refusal("shop", PartFile::Way::kNamed), HasSubstr("is left of a register"));
  EXPECT_EQ(Bytes("shop.part"), "half");
}

// --- A register that is saved as a file

// SQLite takes what lies behind the end for zeros.
TEST_F(PartFileTest, BehindItsEndAFileIsZeros) {
  const PartFile part(Path("part"));
  Put(part, "abc");
  ASSERT_TRUE(DescriptorFiles::Register());
  sqlite3_vfs* layer = sqlite3_vfs_find(DescriptorFiles::kLayer);
  ASSERT_NE(layer, nullptr);
  std::vector<std::max_align_t> room(
      static_cast<size_t>(layer->szOsFile) / sizeof(std::max_align_t) + 1);
  auto* file = reinterpret_cast<sqlite3_file*>(room.data());
  ASSERT_EQ(layer->xOpen(layer, DescriptorFiles::NameOf(part.descriptor()).c_str(), file,
                         SQLITE_OPEN_MAIN_DB | SQLITE_OPEN_READWRITE, nullptr),
            SQLITE_OK);
  std::string bytes(6, '#');
  EXPECT_EQ(file->pMethods->xRead(file, bytes.data(), 5, 1), SQLITE_IOERR_SHORT_READ);
  EXPECT_EQ(bytes, std::string("bc\0\0\0#", 6));
  EXPECT_EQ(file->pMethods->xRead(file, bytes.data(), 3, 0), SQLITE_OK);
  EXPECT_EQ(bytes, std::string("abc\0\0#", 6));
  file->pMethods->xClose(file);
}

TEST_F(PartFileTest, ASavedRegisterIsTheSame) {
  RegisterSettings settings = TestSettings();
  settings.serial_number = "99LRM0000042VR";
  VirtualRegister device(settings);
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecItemEx(0, "", 25000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
  ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  const std::string before = Image(device);
  EXPECT_EQ(device.SaveAs(Path("saved")), 0);
  EXPECT_THAT(Names(), UnorderedElementsAre("saved"));
  EXPECT_THROW(device.SaveAs(Path("saved")), RegisterError);
  VirtualRegister saved(FileSettings("saved"));
  EXPECT_EQ(Image(saved), before);
  // Both go on, each on its own.
  ASSERT_EQ(saved.PrintZReport(), RTF_SUCCESS);
  EXPECT_EQ(Image(device), before);
}

// It stores a document as it ends, and is saved with what is open all the same.
TEST_F(PartFileTest, ARegisterInMemoryIsSavedInTheMiddleOfADocument) {
  VirtualRegister device(TestSettings());
  const auto sell = [&device] {
    return device.PrintRecItemEx(0, "PANE", 25000, 0, -1, 0, "", 1, true, "");
  };
  ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
  for (const char* name : {"first", "second"}) {
    ASSERT_EQ(sell(), RTF_SUCCESS);
    ASSERT_EQ(device.SaveAs(Path(name)), 0);
    const RegisterFile saved(Path(name));
    const std::optional<CutOffDocument> open = saved.Status().open_document;
    ASSERT_TRUE(open) << name;
    EXPECT_EQ(open->lines, name == std::string("first") ? 1 : 2);
    EXPECT_EQ(open->subtotal, open->lines * 25000);
    EXPECT_EQ(PaperImage(saved.Roll()), PaperImage(device.paper()));
    EXPECT_TRUE(FindingTexts(saved.VerifyJournal({})).empty()) << name;
  }
  ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
  ASSERT_EQ(device.SaveAs(Path("ended")), 0);
  const RegisterFile ended(Path("ended"));
  EXPECT_FALSE(ended.Status().open_document);
  EXPECT_EQ(ended.Status().documents, 1u);
  EXPECT_EQ(PaperImage(ended.Roll()), PaperImage(device.paper()));
  EXPECT_TRUE(FindingTexts(ended.VerifyJournal({})).empty());
  // What was saved in the middle is a document that was cut off.
  EXPECT_EQ(VirtualRegister(FileSettings("second")).cut_off()->lines, 2);
}

TEST_F(PartFileTest, ASavedRegisterIsAGoodFile) {
  {
    VirtualRegister device(TestSettings());
    ASSERT_EQ(device.SaveAs(Path("saved")), 0);
  }
  EXPECT_EQ(Sql("saved", "PRAGMA integrity_check; PRAGMA journal_mode; PRAGMA application_id"),
            "ok\nwal\n1280135750\n");
  EXPECT_TRUE(FindingTexts(RegisterFile(Path("saved")).VerifyJournal(nullptr)).empty());
}

TEST_F(PartFileTest, ADiskThatFillsAtAnyPlaceLeavesNothing) {
  VirtualRegister device(TestSettings());
  ASSERT_EQ(device.SaveAs(Path("whole")), 0);
  const uintmax_t size = std::filesystem::file_size(folder_ / "whole");
  std::filesystem::remove(folder_ / "whole");
  for (rlim_t limit = 0; limit < size; limit += 3000) {
    const FileLimit full(limit);
    try {
      device.SaveAs(Path("saved"));
      ADD_FAILURE() << limit;
    } catch (const RegisterError& error) {
      EXPECT_EQ(error.what(), Path("saved") + ": cannot be written: File too large");
    }
    EXPECT_THAT(Names(), IsEmpty()) << limit;
  }
  EXPECT_EQ(device.SaveAs(Path("saved")), 0);
}

TEST_F(PartFileTest, WithoutMemoryARegisterIsSavedOrNot) {
  VirtualRegister device(TestSettings());
  bool saved = false;
  int place = 0;
  while (!saved) {
    FailingMemory::FailAt(++place, 1);
    try {
      saved = device.SaveAs(Path("saved")) == 0;
    } catch (const std::bad_alloc&) {
    } catch (const RegisterError& error) {
      ADD_FAILURE() << place << ": " << error.what();
    }
    FailingMemory::Heal();
    if (!saved) {
      EXPECT_THAT(Names(), IsEmpty()) << place;
    }
    // SQLite does without some: then it is whole.
    if (saved && FailingMemory::failed()) {
      EXPECT_TRUE(FindingTexts(RegisterFile(Path("saved")).VerifyJournal(nullptr)).empty());
      for (const std::string& name : Names()) std::filesystem::remove(folder_ / name);
      saved = false;
    }
  }
  EXPECT_GT(place, 10);
}

// --- A copy of a register

namespace {

class RegisterCopyTest : public PartFileTest {
 protected:
  void SetUp() override {
    VirtualRegister device(FileSettings());
    for (int n = 0; n < 3; ++n) {
      ASSERT_EQ(device.BeginFiscalReceipt(true), RTF_SUCCESS);
      ASSERT_EQ(device.PrintRecItemEx(0, "", 25000, 0, -1, 0, "", 1, true, ""), RTF_SUCCESS);
      ASSERT_EQ(device.PrintRecTotalEx(0, "0", true), RTF_SUCCESS);
    }
  }
};

}  // namespace

TEST_F(RegisterCopyTest, HoldsEveryRow) {
  {
    RegisterFile file(Path("shop.register"));
    PartFile part(Path("copy"));
    uint64_t last = 0;
    ASSERT_TRUE(file.CopyTo(part, [&last](uint64_t done, uint64_t all) {
      EXPECT_LE(done, all);
      last = all - done;
      return true;
    }));
    EXPECT_EQ(last, 0u);
    const RegisterFile copy(part);
    EXPECT_TRUE(FindingTexts(copy.VerifyJournal(nullptr)).empty());
    EXPECT_EQ(copy.Status().documents, 3u);
    EXPECT_EQ(copy.Status().journal_hash, file.Status().journal_hash);
    EXPECT_FALSE(std::filesystem::exists(Path("copy")));
    ASSERT_EQ(part.Finish(), 0);
  }
  EXPECT_EQ(Dump("copy"), Dump("shop.register"));
}

TEST_F(RegisterCopyTest, ALastChangeIsMadeOrTold) {
  Database look(Path("shop.register"), Database::Open::kRead, kRegisterKind);
  PartFile part(Path("copy"));
  ASSERT_TRUE(look.CopyTo(part, nullptr));
  EXPECT_NO_THROW(ChangeCopy(part, "CREATE TABLE extra (x)"));
  EXPECT_THROW(ChangeCopy(part, "CREATE TABLE extra (x)"), RegisterError);  // it is there
  {
    const FileLimit full(0);
    try {
      ChangeCopy(part, "CREATE TABLE another (x)");
      ADD_FAILURE();
    } catch (const RegisterError& error) {
      EXPECT_EQ(error.what(), Path("copy") + ": cannot be written: File too large");
    }
  }
  ASSERT_EQ(part.Finish(), 0);
  EXPECT_EQ(Sql("copy", "SELECT count(*) FROM sqlite_master WHERE name = 'extra'"), "1\n");
}

TEST_F(RegisterCopyTest, OfAFileThatCannotBeReadNamesThatFile) {
  Database look(Path("shop.register"), Database::Open::kRead, kRegisterKind);
  int failures = 0;
  for (int read = 1;; ++read) {
    PartFile part(Path("copy"));
    disk.FailAt(FailingDisk::Fault::kRead, read, false);
    try {
      if (look.CopyTo(part, nullptr)) break;
    } catch (const RegisterError& error) {
      EXPECT_EQ(error.failure().file, Path("shop.register")) << read;
      EXPECT_EQ(error.failure().cause, FailureCause::kCutOff) << read;
      ++failures;
    }
  }
  EXPECT_GT(failures, 5);
}

TEST_F(RegisterCopyTest, IsOfTheMomentThoughARegisterIsAtWork) {
  VirtualRegister device(FileSettings());
  PartFile part(Path("copy"));
  RegisterFile file(Path("shop.register"));
  // Ahead of the last pages: one that began anew would have it.
  ASSERT_TRUE(file.CopyTo(part, [&device](uint64_t, uint64_t) {
    if (device.store().last_closure() == 0) {
      EXPECT_EQ(device.PrintZReport(), RTF_SUCCESS);
    }
    return true;
  }));
  EXPECT_EQ(device.store().last_closure(), 1);
  const RegisterFile copy(part);
  EXPECT_EQ(copy.Status().closures, 0);
  EXPECT_TRUE(FindingTexts(copy.VerifyJournal(nullptr)).empty());
}

TEST_F(RegisterCopyTest, OneThatIsStoppedLeavesNothing) {
  const std::vector<std::string> before = Names();
  {
    RegisterFile file(Path("shop.register"));
    PartFile part(Path("copy"));
    EXPECT_FALSE(file.CopyTo(part, [](uint64_t, uint64_t) { return false; }));
  }
  EXPECT_EQ(Names(), before);
}

TEST_F(RegisterCopyTest, AKillInTheMiddleLeavesNothing) {
  const std::vector<std::string> before = Names();
  for (const bool in_check : {false, true}) {
    const pid_t child = fork();
    if (child == 0) {
      const auto die = [](uint64_t, uint64_t) {
        raise(SIGKILL);
        return true;
      };
      RegisterFile file(Path("shop.register"));
      PartFile part(Path("copy"));
      if (!in_check) file.CopyTo(part, die);
      file.CopyTo(part, nullptr);
      RegisterFile(part).VerifyJournal(die);
      _exit(0);
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFSIGNALED(status)) << in_check;
    EXPECT_FALSE(std::filesystem::exists(Path("copy")));
    EXPECT_FALSE(std::filesystem::exists(Path("copy.part")));
    EXPECT_EQ(RegisterFile(Path("shop.register")).Status().documents, 3u);
  }
  EXPECT_EQ(Names(), before);
}

TEST_F(RegisterCopyTest, ADiskThatFillsAtAnyPlaceLeavesNothing) {
  RegisterFile file(Path("shop.register"));
  const uintmax_t size = std::filesystem::file_size(Path("shop.register"));
  for (rlim_t limit = 0; limit < size; limit += 4096) {
    const FileLimit full(limit);
    PartFile part(Path("copy"));
    EXPECT_THROW(file.CopyTo(part, nullptr), RegisterError) << limit;
  }
  PartFile part(Path("copy"));
  EXPECT_TRUE(file.CopyTo(part, nullptr));
  EXPECT_TRUE(FindingTexts(RegisterFile(part).VerifyJournal(nullptr)).empty());
}

}  // namespace lorimat
