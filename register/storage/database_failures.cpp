// What is told when something fails, in words for whom the register belongs to.
#include <sqlite3.h>

#include <cerrno>
#include <new>
#include <utility>

#include "register/storage/database.h"
#include "register/storage/work_watch.h"

namespace lorimat {

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
  const int refused = errno;  // of the call that failed
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
      // SQLite takes a file system that has no locks for a file that is locked. Nobody is at work
      // in a new file then.
      if (refused == ENOLCK) Fail(FailureCause::kOpenRefused, {ENOLCK});
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
