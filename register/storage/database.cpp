#include "register/storage/database.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <filesystem>
#include <limits>
#include <new>
#include <system_error>
#include <utility>

#include "register/storage/work_watch.h"
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

// Milliseconds. Others hold the locks of a log for moments: the first to open it for as long as it
// takes to read it.
constexpr int kPatience = 5000;

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

// A pragma takes no bound value.
template <size_t... versions>
consteval std::array<SqlLiteral, sizeof...(versions)> VersionStatements(
    std::index_sequence<versions...>) {
  return {kSql<"PRAGMA user_version = ", kSqlNumber<versions>>...};
}
constexpr auto kSetVersion = VersionStatements(std::make_index_sequence<100>());

}  // namespace

void DatabaseCloser::operator()(sqlite3* handle) const { sqlite3_close(handle); }
void StatementCloser::operator()(sqlite3_stmt* handle) const { sqlite3_finalize(handle); }

// --- Statement

Statement::~Statement() {
  if (row_.empty()) return;
  sqlite3_reset(handle_);
  sqlite3_clear_bindings(handle_);
  try {
    database_->idle_.insert(std::move(row_));
  } catch (...) {
    // It is prepared again the next time.
  }
}

void Statement::Check(int code) const {
  if (code != SQLITE_OK) database_->FailWith(code);
}

// What it answered the last time has been reported.
void Statement::Reset() { sqlite3_reset(handle_); }

void Statement::BindNull(int parameter) { Check(sqlite3_bind_null(handle_, parameter)); }

void Statement::BindInteger(int parameter, int64_t value) {
  Check(sqlite3_bind_int64(handle_, parameter, value));
}

void Statement::BindText(int parameter, std::string_view value) {
  const char* bytes = value.data() != nullptr ? value.data() : "";
  Check(
      sqlite3_bind_text64(handle_, parameter, bytes, value.size(), SQLITE_TRANSIENT, SQLITE_UTF8));
}

bool Statement::Step() {
  const int code = sqlite3_step(handle_);
  if (code == SQLITE_ROW) return true;
  if (code == SQLITE_DONE) return false;
  database_->FailWith(code);
}

void Statement::Run() {
  while (Step()) {
  }
}

int64_t Statement::Integer(int column) const { return sqlite3_column_int64(handle_, column); }

int Statement::Int(int column) const {
  const int64_t value = Integer(column);
  if (value < std::numeric_limits<int>::min() || value > std::numeric_limits<int>::max()) {
    database_->Damaged(sqlite3_column_name(handle_, column));
  }
  return static_cast<int>(value);
}

std::string_view Statement::Text(int column) const {
  const void* bytes = sqlite3_column_blob(handle_, column);
  const int size = sqlite3_column_bytes(handle_, column);
  // Nothing is given out for an empty text, and for one for which there was no memory.
  if (bytes == nullptr && sqlite3_errcode(sqlite3_db_handle(handle_)) == SQLITE_NOMEM) {
    throw std::bad_alloc();
  }
  if (bytes == nullptr) return {};
  return {static_cast<const char*>(bytes), static_cast<size_t>(size)};
}

bool Statement::IsNull(int column) const {
  return sqlite3_column_type(handle_, column) == SQLITE_NULL;
}

// --- Database

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
       {&begin_moment_, &begin_, &commit_, &rollback_, &data_version_}) {
    static_cast<void>(statement->release());
  }
  made_.Keep();
  static_cast<void>(handle_.release());
}

// Takes the log over into the file, which has everything then, also while somebody goes on reading
// it. Those who read just now are not waited for.
void Database::EmptyLog() noexcept {
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
  if (code != SQLITE_OK) {
    ExplainOpening(code);
    FailWith(code);
  }
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
  OpenHandle(open_name_, SQLITE_OPEN_READWRITE | (how == Open::kCreate ? SQLITE_OPEN_CREATE : 0));
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

// SQLite tries to read a file that it could not make, and reports that there is none.
void Database::ExplainOpening(int code) const {
  if ((code & 0xFF) != SQLITE_CANTOPEN) return;
  // It is not opened to find out: closing it would take every lock on it from this process.
  const bool refused = faccessat(AT_FDCWD, file_.c_str(), reads_ ? R_OK : W_OK, AT_EACCESS) != 0;
  const int error = errno;
  if (refused) Fail(FailureCause::kOpenRefused, {error});
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

void Database::SetVersion(int version) {
  if (version < 0 || static_cast<size_t>(version) >= kSetVersion.size()) {
    Fail(fmt::format("there is no version {}", version));
  }
  Execute(kSetVersion[static_cast<size_t>(version)]);
  version_ = version;
}

Statement Database::Prepare(SqlLiteral sql) {
  const std::string_view text = sql.text();
  if (auto idle = idle_.extract(text)) return {*this, std::move(idle)};
  sqlite3_stmt* made = nullptr;
  const int code = sqlite3_prepare_v3(handle_.get(), text.data(), static_cast<int>(text.size()),
                                      SQLITE_PREPARE_PERSISTENT, &made, nullptr);
  StatementHandle handle(made);
  if (code != SQLITE_OK) FailWith(code);
  idle_.try_emplace(text, std::move(handle));
  return {*this, idle_.extract(text)};
}

void Database::Execute(SqlLiteral sql) {
  const int code = sqlite3_exec(handle_.get(), sql.c_str(), nullptr, nullptr, nullptr);
  if (code != SQLITE_OK) FailWith(code);
}

int64_t Database::Value(SqlLiteral sql) {
  sqlite3_stmt* made = nullptr;
  int code = sqlite3_prepare_v2(handle_.get(), sql.c_str(), -1, &made, nullptr);
  const StatementHandle statement(made);
  if (code == SQLITE_OK) code = sqlite3_step(made);
  if (code != SQLITE_ROW) FailWith(code);
  return sqlite3_column_int64(made, 0);
}

// With NORMAL a commit reaches the log and is not waited for; the next one in FULL takes it along.
void Database::SetDurable(bool durable) {
  if (durable == durable_ || in_memory()) return;
  Execute(durable ? SqlLiteral("PRAGMA synchronous = FULL")
                  : SqlLiteral("PRAGMA synchronous = NORMAL"));
  durable_ = durable;
}

RegisterFailure Database::Failure(FailureCause cause, std::initializer_list<int64_t> numbers,
                                  std::string text) const {
  RegisterFailure failure = MakeFileFailure(file_, cause, numbers, std::move(text));
  if (in_memory()) failure.place = FailurePlace::kMemory;
  return failure;
}

void Database::Fail(FailureCause cause, std::initializer_list<int64_t> numbers,
                    std::string text) const {
  throw RegisterError(Failure(cause, numbers, std::move(text)));
}

// Why the system has refused what failed last; 0 when it is not known. SQLite does not note it for
// a commit, but its files do.
int Database::SystemError() const noexcept {
  if (handle_ == nullptr) return 0;
  int error = sqlite3_system_errno(handle_.get());
  for (sqlite3_file* file : {logged_ ? Log() : nullptr, File()}) {
    if (error != 0 || file == nullptr) continue;
    if (file->pMethods->xFileControl(file, SQLITE_FCNTL_LAST_ERRNO, &error) != SQLITE_OK) error = 0;
  }
  return error;
}

// By its code. What SQLite says comes along where it tells more.
void Database::FailWith(int code, int error) const {
  if (code == SQLITE_IOERR_NOMEM) throw std::bad_alloc();
  // What is read of two moments may look like damage.
  switch (code & 0xFF) {
    case SQLITE_CORRUPT:
    case SQLITE_NOTADB:
    case SQLITE_ERROR:
    case SQLITE_IOERR:
      CheckUndisturbed();
  }
  const int folder = handle_ != nullptr ? FolderRefusal() : 0;
  switch (code & 0xFF) {
    case SQLITE_NOMEM:
      throw std::bad_alloc();
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
      made_.Keep();
      Fail(FailureCause::kInUse);
    case SQLITE_NOTADB:
      Fail(FailureCause::kNoDatabase);
    case SQLITE_READONLY:
      if (reads_) Fail(FailureCause::kUntidy);
      if (folder != 0) Fail(FailureCause::kFolderRefused, {folder});
      FailUnwritable();
    case SQLITE_CANTOPEN:
      if (folder != 0) Fail(FailureCause::kFolderRefused, {folder});
      if (error != 0) Fail(FailureCause::kOpenRefused, {error});
      Fail(FailureCause::kCannotOpen);
    case SQLITE_IOERR:
      if (error != 0) Fail(FailureCause::kCutOffBySystem, {error});
      Fail(FailureCause::kCutOff);
    case SQLITE_FULL:
      Fail(FailureCause::kDiskFull);
    case SQLITE_INTERRUPT:
      throw WorkStopped();
    case SQLITE_CORRUPT:
      Fail(FailureCause::kDamagedFile);
    case SQLITE_ERROR:
      // What a file lacks that has our mark: "no such table: journal".
      Fail(FailureCause::kDamagedTables, {code},
           handle_ != nullptr ? sqlite3_errmsg(handle_.get()) : sqlite3_errstr(code));
    default:
      Fail(FailureCause::kStorage, {code}, sqlite3_errstr(code));
  }
}

void Database::Damaged(std::string_view what) const {
  CheckUndisturbed();
  throw DamageError(Failure(FailureCause::kDamagedValue, {}, std::string(what)));
}

}  // namespace lorimat
