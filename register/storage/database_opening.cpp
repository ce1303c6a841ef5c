// How a database is opened to be written, and closed: which files are taken for ours, who may write
// them, and what becomes of the log.
#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <new>
#include <system_error>

#include "register/storage/database.h"
#include "register/storage/log_layer.h"
#include "register/value/cancellation.h"

namespace lorimat {
namespace {

// The head of a database file (https://www.sqlite.org/fileformat2.html, 1.3).
constexpr char kMagic[] = "SQLite format 3";
constexpr int kHeadSize = 100;
constexpr size_t kPageSizeAt = 16;
constexpr size_t kChangeCounterAt = 24;
constexpr size_t kPageCountAt = 28;
constexpr size_t kUserVersionAt = 60;
constexpr size_t kApplicationIdAt = 68;
constexpr size_t kValidForAt = 92;

bool HasContent(const char* file) {
  std::error_code error;
  const std::uintmax_t size = std::filesystem::file_size(file, error);
  return !error && size > 0;
}

uint32_t BigEndian(const unsigned char* bytes, int size) {
  uint32_t number = 0;
  for (int index = 0; index < size; ++index) number = number << 8 | bytes[index];
  return number;
}

}  // namespace

Database::Database(const std::string& file, Open how, const DatabaseKind& kind)
    : file_(file), reads_(how == Open::kRead), owner_(getpid()) {
  CheckFile(how);
  try {
    OpenFile(how, kind);
  } catch (...) {
    // A new file goes again, unless somebody else has it by now.
    if (made_.is_there() && handle_ != nullptr && LockOutWriters() == SQLITE_OK) made_.Lock();
    DropStatements();
    if (reads_) {
      handle_.reset();
      ClearAway();
    }
    throw;
  }
}

Database::~Database() {
  const CancellationDelay whole;
  if (getpid() != owner_) {
    Abandon();
    return;
  }
  if (in_unit_) Rollback();
  if (logged_) EmptyLog();
  DropStatements();
  made_.Remove();
  const bool writes = logged_;
  if (writes) LetWritersIn();
  handle_.reset();
  if (reads_) ClearAway();
}

// In a process that was forked off: the locks are the other's, and so is what is under way.
void Database::Abandon() noexcept {
  for (auto& [sql, statement] : idle_) static_cast<void>(statement.release());
  for (StatementHandle* statement :
       {&begin_moment_, &begin_, &commit_, &rollback_, &data_version_, &hold_}) {
    static_cast<void>(statement->release());
  }
  made_.Keep();
  static_cast<void>(handle_.release());
}

// Takes the log over into the file, which has everything then, also while somebody goes on reading
// it. Those who read just now are not waited for.
void Database::EmptyLog() noexcept {
  LetGo();
  sqlite3_busy_timeout(handle_.get(), 0);
  sqlite3_wal_checkpoint_v2(handle_.get(), "main", SQLITE_CHECKPOINT_TRUNCATE, nullptr, nullptr);
}

// SQLite reserves a file for one that writes it without a log; with a log it takes no lock but the
// shared one, in all programs. So the reservation is free to tell who may write: it goes with the
// process, however that ends, is not inherited, belongs to the file whatever its name is, and is no
// hindrance to those who read.
int Database::LockOutWriters() noexcept {
  sqlite3_file* file = File();
  if (file == nullptr) return SQLITE_CANTOPEN;
  if (const int code = file->pMethods->xLock(file, SQLITE_LOCK_SHARED)) return code;
  return file->pMethods->xLock(file, SQLITE_LOCK_RESERVED);
}

// Ahead of the closing, in which SQLite takes more of the locks that it has, or tries to.
void Database::LetWritersIn() noexcept {
  if (sqlite3_file* file = File()) file->pMethods->xUnlock(file, SQLITE_LOCK_SHARED);
}

// What SQLite would make something of, though it is no place for a register.
void Database::CheckFile(Open how) {
  if (file_.empty()) return;
  if (file_.find('\0') != file_.npos) {
    Fail(FailureCause::kSystem, {EINVAL});
  }
  if (IsTooLong()) {
    Fail(FailureCause::kOpenRefused, {ENAMETOOLONG});
  }
  std::error_code error;
  const std::filesystem::file_status status = std::filesystem::status(file_, error);
  if (std::filesystem::is_directory(status)) {
    Fail(FailureCause::kIsFolder);
  }
  if (how == Open::kCreate) CheckLoneLog();
  if (!std::filesystem::exists(status)) {
    if (how != Open::kCreate) {
      Fail(FailureCause::kSystem, {error ? error.value() : ENOENT});
    }
    if (const int refusal = made_.Make(file_)) {
      Fail(FailureCause::kOpenRefused, {refusal});
    }
    return;
  }
  if (!std::filesystem::is_regular_file(status)) Fail(FailureCause::kNoRegularFile);
}

// SQLite wants room for its journal's name behind that of the file, wherever it really lies.
bool Database::IsTooLong() const {
  constexpr size_t kJournal = 8;
  const sqlite3_vfs* system = sqlite3_vfs_find(nullptr);
  std::error_code error;
  const std::filesystem::path whole =
      std::filesystem::weakly_canonical(std::filesystem::absolute(file_, error), error);
  return !error && system != nullptr &&
         whole.native().size() + kJournal > static_cast<size_t>(system->mxPathname);
}

// SQLite throws the log of a file away that is not there, or empty.
void Database::CheckLoneLog() const {
  // Beside what a link leads to.
  std::error_code error;
  const std::filesystem::path target = std::filesystem::weakly_canonical(file_, error);
  const std::string log = (error ? file_ : target.string()) + "-wal";
  if (!HasContent(log.c_str()) || HasContent(file_.c_str())) return;
  Fail(FailureCause::kLoneLog, {}, log);
}

void Database::OpenHandle(const std::string& name, int flags, const char* layer) {
  sqlite3* opened = nullptr;
  const int code = sqlite3_open_v2(name.c_str(), &opened,
                                   flags | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, layer);
  DropStatements();
  handle_.reset(opened);
  if (opened == nullptr) throw std::bad_alloc();
  if (code != SQLITE_OK) FailWith(code);
  sqlite3_busy_timeout(opened, kPatience);
  // A file's tables are not trusted to be those that we made.
  sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
}

void Database::OpenFile(Open how, const DatabaseKind& kind) {
  // In front of a name that SQLite takes for something else than a file.
  const bool other = file_.compare(0, 1, ":") == 0 || file_.compare(0, 5, "file:") == 0;
  open_name_ = file_.empty() ? ":memory:" : other ? "./" + file_ : file_;
  if (reads_ && !in_memory()) {
    OpenToRead(open_name_, kind);
    return;
  }
  const char* const layer = !in_memory() && LogLayer::Register() ? LogLayer::kName : nullptr;
  OpenHandle(open_name_, SQLITE_OPEN_READWRITE | (how == Open::kCreate ? SQLITE_OPEN_CREATE : 0),
             layer);
  if (in_memory()) {
    Execute("PRAGMA foreign_keys = ON");
    PrepareUnits();
    return;
  }
  OpenToWrite(how, kind);
}

void Database::OpenToWrite(Open how, const DatabaseKind& kind) {
  // Until the file is known to be ours, nothing of its log goes into it. One that SQLite makes on
  // opening is taken away in the end.
  sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, HasLog() ? 1 : 0, nullptr);
  CheckHead(kind);
  if (sqlite3_db_readonly(handle_.get(), "main") != 0) FailUnwritable();
  if (how == Open::kChange) {
    if (const int error = FolderRefusal()) Fail(FailureCause::kFolderRefused, {error});
  }
  // Ahead of the first look into it: by another name it would be with another log.
  if (IsReserved()) FailWith(SQLITE_BUSY);
  RefuseSecondName();
  Identify(how, kind);
  Execute("PRAGMA journal_mode = WAL; PRAGMA synchronous = FULL; PRAGMA foreign_keys = ON");
  {
    Statement mode = Prepare("PRAGMA journal_mode");
    if (!mode.Step() || mode.Text(0) != "wal") {
      Fail(FailureCause::kLogNotShared);
    }
  }
  // SQLite does not let go of a file with a log before it is closed; of one without it would.
  static_cast<void>(Value("PRAGMA user_version"));
  if (const int code = LockOutWriters()) FailWith(code);
  // Ahead of the look whether the name still leads to it.
  mark_ = MarkOf(sqlite3_db_filename(handle_.get(), "main"));
  if (IsMoved()) FailWith(SQLITE_BUSY);
  // Somebody else may have made it, or brought it up to date, in between.
  Identify(how, kind);
  if (version_ == 0) made_.Lock();
  sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 0, nullptr);
  PrepareUnits();
  FollowLog();
  // What is read from now on is of this state, or of none that is written on.
  seen_ = DataVersion();
}

// By each of its names a file would have another log: what was stored last, when the writer was
// killed, is missing by all names but one. Which of them that is nobody can tell from here.
void Database::RefuseSecondName() const {
  struct stat status = {};
  if (stat(file_.c_str(), &status) != 0 || status.st_nlink < 2) return;
  Fail(FailureCause::kNames, {static_cast<int64_t>(status.st_nlink)});
}

// Whether somebody has locked out other writers.
bool Database::IsReserved() const {
  sqlite3_file* file = File();
  int reserved = 0;
  return file != nullptr && file->pMethods->xCheckReservedLock(file, &reserved) == SQLITE_OK &&
         reserved != 0;
}

// Whether the name that it was opened by leads to another file by now, or to none.
bool Database::IsMoved() const {
  int moved = 0;
  return sqlite3_file_control(handle_.get(), "main", SQLITE_FCNTL_HAS_MOVED, &moved) == SQLITE_OK &&
         moved != 0;
}

// Whether the file is one of ours, and of a version that can be read.
void Database::Identify(Open how, const DatabaseKind& kind) {
  version_ = static_cast<int>(Value("PRAGMA user_version"));
  const int64_t application = Value("PRAGMA application_id");
  const bool blank =
      application == 0 && version_ == 0 && Value("SELECT count(*) FROM sqlite_master") == 0;
  if (!blank) made_.Keep();  // somebody else was faster
  if (!blank && application != kind.application_id) Fail(FailureCause::kOtherProgram);
  if (blank && how != Open::kCreate) Fail(FailureCause::kEmptyFile);
  if (!blank && version_ < 1) {
    CheckUndisturbed();
    throw DamageError(Failure(FailureCause::kDamagedVersion));
  }
  if (version_ > kind.newest_version) {
    Fail(FailureCause::kNewerVersion, {version_, kind.newest_version});
  }
}

sqlite3_file* Database::File() const {
  sqlite3_file* file = nullptr;
  sqlite3_file_control(handle_.get(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
  return file != nullptr && file->pMethods != nullptr ? file : nullptr;
}

void Database::FailUnwritable() const {
  const bool refused = faccessat(AT_FDCWD, file_.c_str(), W_OK, AT_EACCESS) != 0;
  const int error = errno;
  if (refused) Fail(FailureCause::kWriteRefused, {error});
  Fail(FailureCause::kCannotWrite);
}

// Why the log cannot be made beside the file, an errno value; 0 when it can.
int Database::FolderRefusal() const {
  const char* const name = sqlite3_db_filename(handle_.get(), "main");
  if (name == nullptr || *name == 0) return 0;
  const std::string folder = std::filesystem::path(name).parent_path().string();
  if (folder.empty()) return 0;  // it has no name
  if (faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0) return 0;
  return errno;
}

bool Database::HasLog() const {
  return HasContent(sqlite3_filename_wal(sqlite3_db_filename(handle_.get(), "main")));
}

// Refuses another program's file, and one that was cut short, by its head alone: SQLite would
// begin to repair it. A file that has a log beside it may be ahead of its head.
void Database::CheckHead(const DatabaseKind& kind) const {
  if (HasLog()) return;
  sqlite3_file* file = File();
  if (file == nullptr) return;
  sqlite3_int64 size = 0;
  if (const int code = file->pMethods->xFileSize(file, &size)) FailWith(code);
  if (size == 0) {
    // SQLite takes a single byte for none.
    std::error_code error;
    if (std::filesystem::file_size(file_, error) == 1 && !error) FailWith(SQLITE_NOTADB);
    return;
  }
  unsigned char head[kHeadSize] = {};
  const int code = file->pMethods->xRead(file, head, kHeadSize, 0);
  if (code != SQLITE_OK && code != SQLITE_IOERR_SHORT_READ) FailWith(code);
  if (size < kHeadSize || std::memcmp(head, kMagic, sizeof(kMagic)) != 0) FailWith(SQLITE_NOTADB);

  const uint32_t application = BigEndian(head + kApplicationIdAt, 4);
  const uint32_t page_field = BigEndian(head + kPageSizeAt, 2);
  const sqlite3_int64 page_size = page_field == 1 ? 65536 : page_field;
  const bool one_page = size <= page_size;
  const bool blank = application == 0 && BigEndian(head + kUserVersionAt, 4) == 0 && one_page;
  if (!blank && application != static_cast<uint32_t>(kind.application_id)) {
    Fail(FailureCause::kOtherProgram);
  }
  const sqlite3_int64 pages = BigEndian(head + kPageCountAt, 4);
  const bool counted =
      BigEndian(head + kChangeCounterAt, 4) == BigEndian(head + kValidForAt, 4) && pages > 0;
  // A journal beside it, as a new file has one, holds what is to be put back.
  const bool repairable =
      HasContent(sqlite3_filename_journal(sqlite3_db_filename(handle_.get(), "main")));
  if (counted && !repairable && size < pages * page_size) {
    Fail(FailureCause::kCutShort, {size, pages * page_size});
  }
}

}  // namespace lorimat
