// Readers: they see a moment of the file, also while another program writes it, and change nothing
// of it.
//
// A reader and the writer know of each other by the index of the log, which lies in shared memory
// beside the file ("-shm"). The reader opens the file itself for reading alone, so that whatever
// happens it writes nothing into it; it takes no log over into it, not even as the last one to
// close it. Only the log's index, and a log without anything in it, may be made by a reader, and go
// again with it: by one whose files the register's owner can use, or they would be in his way.
//
// Who may not make them reads those that are there, as long as a register is at work or when it was
// killed. Where there are none nobody writes the file, and it is read without a log; a register
// that begins its work meanwhile does not know of such a reader, who finds out in the end.
#include <fcntl.h>
#include <fmt/format.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cctype>
#include <cerrno>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include "register/storage/database.h"

namespace lorimat {
namespace {

constexpr char kIndex[] = "-shm";

// A name that SQLite takes for a file whatever it holds, with a wish behind it.
std::string Uri(const std::string& file, const char* wish) {
  std::string uri = "file:";
  for (const char c : file) {
    const auto byte = static_cast<unsigned char>(c);
    uri +=
        std::isalnum(byte) != 0 && byte < 0x80 ? std::string(1, c) : fmt::format("%{:02X}", byte);
  }
  return uri + "?" + wish;
}

bool IsThere(const std::string& file) {
  struct stat status = {};
  return stat(file.c_str(), &status) == 0;
}

// Whether what this process makes beside a file is the file's owner's as well.
bool ActsForOwner(const std::string& file) {
  struct stat status = {};
  const uid_t user = geteuid();
  return stat(file.c_str(), &status) == 0 && (user == 0 || user == status.st_uid);
}

}  // namespace

Database::FileMark Database::MarkOf(const std::string& file) noexcept {
  struct stat status = {};
  if (stat(file.c_str(), &status) != 0) return {};
  return {status.st_dev, status.st_ino, status.st_size, status.st_mtim.tv_sec,
          status.st_mtim.tv_nsec};
}

void Database::OpenToRead(const std::string& name, const DatabaseKind& kind) {
  mark_ = MarkOf(file_);
  OpenHandle(name, SQLITE_OPEN_READONLY);
  sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  const char* const real_name = sqlite3_db_filename(handle_.get(), "main");
  log_name_ = sqlite3_filename_wal(real_name);
  index_name_ = std::string(real_name) + kIndex;
  log_mark_ = MarkOf(log_name_);
  CheckHead(kind);
  RefuseOtherName();
  may_make_ = faccessat(AT_FDCWD, file_.c_str(), W_OK, AT_EACCESS) == 0 && FolderRefusal() == 0 &&
              ActsForOwner(file_);
  if (may_make_) {
    // SQLite makes what it needs.
  } else if (IsThere(log_name_) && IsThere(index_name_)) {
    OpenHandle(Uri(file_, "readonly_shm=1"), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
    sqlite3_db_config(handle_.get(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
  } else {
    OpenAlone();
  }
  try {
    FirstMoment(kind);
  } catch (const RegisterError&) {
    // What a log needs may find no room on the disk. Where no log is, none is needed to read.
    if (!may_make_ || IsReserved() || MarkOf(log_name_).size > 0) throw;
    OpenAlone();
    FirstMoment(kind);
  }
  if (version_ < kind.newest_version) CopyIntoMemory();
}

void Database::FirstMoment(const DatabaseKind& kind) {
  Execute("PRAGMA query_only = ON");
  PrepareUnits();
  {
    const Moment moment(*this);
    Identify(Open::kRead, kind);
  }
  seen_ = Value("PRAGMA data_version");
}

// Without its log SQLite reads what stands in the file itself, and takes no locks.
void Database::OpenAlone() {
  const char* const name = sqlite3_db_filename(handle_.get(), "main");
  for (const std::string& log : {log_name_, std::string(sqlite3_filename_journal(name))}) {
    if (MarkOf(log).size <= 0) continue;
    Fail(FailureCause::kLogToTakeOver, {}, log);
  }
  OpenHandle(Uri(file_, "immutable=1"), SQLITE_OPEN_READONLY | SQLITE_OPEN_URI);
  alone_ = true;
  log_mark_ = MarkOf(log_name_);
  CheckUndisturbed();
}

void Database::CheckUndisturbed() const {
  if (!alone_) return;
  if (!IsReserved() && MarkOf(file_) == mark_ && MarkOf(log_name_).size <= 0) return;
  throw DisturbedError(Failure(FailureCause::kDisturbed));
}

// By another name a file has another log: that of its writer, or of one that was killed, is not
// seen. A writer that has stored nothing yet has an empty one.
void Database::RefuseOtherName() const {
  struct stat status = {};
  if (stat(file_.c_str(), &status) != 0 || status.st_nlink < 2 || IsThere(log_name_)) return;
  Fail(FailureCause::kNamesNoLog, {static_cast<int64_t>(status.st_nlink)});
}

// The file stays of its version.
void Database::CopyIntoMemory() {
  sqlite3* opened = nullptr;
  const int code =
      sqlite3_open_v2(":memory:", &opened,
                      SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
  std::unique_ptr<sqlite3, DatabaseCloser> copy(opened);
  if (code != SQLITE_OK) throw std::bad_alloc();
  sqlite3_backup* const backup = sqlite3_backup_init(opened, "main", handle_.get(), "main");
  if (backup == nullptr) throw std::bad_alloc();
  const int done = sqlite3_backup_step(backup, -1);
  sqlite3_backup_finish(backup);
  if (done != SQLITE_DONE) FailWith(done);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
  sqlite3_db_config(opened, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
  CheckUndisturbed();
  DropStatements();
  handle_.swap(copy);
  copied_ = true;
  PrepareUnits();
}

bool Database::BeginMoment() {
  if (sqlite3_get_autocommit(handle_.get()) == 0) {
    if (in_moment_ || in_unit_) return false;
    // One that could not be ended the last time.
    int code = SQLITE_OK;
    if (!Step(rollback_, &code)) FailWith(code);
  }
  if (reads_) {
    if (!alone_ && !copied_) RefuseOtherName();
    CheckUndisturbed();
  }
  int code = SQLITE_OK;
  if (!Step(begin_moment_, &code)) FailWith(code);
  in_moment_ = true;
  try {
    // It is that of the first reading.
    static_cast<void>(Value("SELECT count(*) FROM sqlite_master"));
  } catch (...) {
    EndMoment();
    throw;
  }
  return true;
}

// Needs no memory: a reader that stayed in its moment would see nothing new any more.
void Database::EndMoment() noexcept {
  in_moment_ = false;
  int code = SQLITE_OK;
  if (sqlite3_get_autocommit(handle_.get()) == 0) Step(rollback_, &code);
}

Database::News Database::FindNews() {
  const FileMark now = MarkOf(file_);
  if (!now.IsSameFile(mark_)) return News::kGone;
  if (alone_ || copied_) {
    const bool same = now == mark_ && MarkOf(log_name_) == log_mark_;
    return same ? News::kNone : News::kAnew;
  }
  const int64_t data = Value("PRAGMA data_version");
  if (data == seen_) return News::kNone;
  seen_ = data;
  return News::kChanged;
}

// An empty log and its index go with the last one who reads, as they go with a writer, also where
// there was room for a part of them alone. Whoever has them open has the file locked: alone with
// it, for which it has to be opened for writing, nobody has them.
void Database::ClearAway() noexcept {
  if (!may_make_ || log_name_.empty()) return;
  if (MarkOf(log_name_).size != 0 || !MarkOf(file_).IsSameFile(mark_)) return;
  sqlite3* opened = nullptr;
  if (sqlite3_open_v2(open_name_.c_str(), &opened, SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX,
                      nullptr) == SQLITE_OK) {
    sqlite3_file* file = nullptr;
    sqlite3_file_control(opened, "main", SQLITE_FCNTL_FILE_POINTER, &file);
    if (file != nullptr && file->pMethods != nullptr) {
      const bool alone = file->pMethods->xLock(file, SQLITE_LOCK_SHARED) == SQLITE_OK &&
                         file->pMethods->xLock(file, SQLITE_LOCK_EXCLUSIVE) == SQLITE_OK;
      if (alone && MarkOf(log_name_).size == 0) {
        unlink(log_name_.c_str());
        unlink(index_name_.c_str());
      }
      file->pMethods->xUnlock(file, SQLITE_LOCK_NONE);
    }
  }
  sqlite3_close(opened);
}

}  // namespace lorimat
