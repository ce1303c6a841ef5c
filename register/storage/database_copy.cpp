// Copies of a database, and databases in files that have no name yet.
#include <sqlite3.h>
#include <unistd.h>

#include <cerrno>
#include <memory>
#include <new>

#include "register/storage/change_copy.h"
#include "register/storage/database.h"
#include "register/storage/descriptor_files.h"
#include "register/storage/part_file.h"

namespace lorimat {
namespace {

// Between two words of progress.
constexpr int kPagesAtOnce = 16;

// Both numbers of the form in the head of a file, and the form that a log goes with
// (https://www.sqlite.org/fileformat2.html, 1.3).
constexpr off_t kFormAt = 18;
constexpr char kFormWithLog[2] = {2, 2};
constexpr char kFormAlone[2] = {1, 1};

void RequireLayer() {
  if (!DescriptorFiles::Register()) throw std::bad_alloc();
}

[[noreturn]] void FailToWrite(const PartFile& part, int error) {
  throw RegisterError(MakeFileFailure(part.file(), FailureCause::kWriteRefused, {error}));
}

void WriteForm(const PartFile& part, const char (&form)[2]) {
  for (size_t done = 0; done < sizeof(form);) {
    const ssize_t written = pwrite(part.descriptor(), form + done, sizeof(form) - done,
                                   kFormAt + static_cast<off_t>(done));
    if (written <= 0) FailToWrite(part, written < 0 ? errno : EIO);
    done += static_cast<size_t>(written);
  }
}

struct BackupCloser {
  void operator()(sqlite3_backup* backup) const { sqlite3_backup_finish(backup); }
};

}  // namespace

Database::Database(const PartFile& part, const DatabaseKind& kind)
    : file_(part.file()), owner_(getpid()) {
  RequireLayer();
  OpenHandle("file:" + DescriptorFiles::NameOf(part.descriptor()) + "?immutable=1",
             SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, DescriptorFiles::kLayer);
  Execute("PRAGMA query_only = ON; PRAGMA temp_store = MEMORY");
  PrepareUnits();
  Identify(Open::kRead, kind);
}

bool Database::CopyTo(PartFile& part, const CopyProgress& progress) {
  RequireLayer();
  // What lies in memory is read as it is: then the copy has failed.
  const auto fail = [&](int code) {
    if (in_memory() && (code & 0xFF) == SQLITE_IOERR) {
      throw RegisterError(MakeFileFailure(part.file(), FailureCause::kCutOff));
    }
    FailWith(code);
  };
  sqlite3* opened = nullptr;
  const int opening = sqlite3_open_v2(
      DescriptorFiles::NameOf(part.descriptor()).c_str(), &opened,
      SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, DescriptorFiles::kLayer);
  const std::unique_ptr<sqlite3, DatabaseCloser> copy(opened);
  if (opened == nullptr) throw std::bad_alloc();
  if (opening != SQLITE_OK) fail(opening);
  // Nobody sees it before it is whole.
  if (sqlite3_exec(opened, "PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF", nullptr, nullptr,
                   nullptr) != SQLITE_OK) {
    throw std::bad_alloc();
  }
  DescriptorFiles::TakeWriteError();
  int code = SQLITE_OK;
  bool stopped = false;
  {
    // Whoever writes meanwhile goes on, and is not seen.
    const Moment moment(*this);
    const std::unique_ptr<sqlite3_backup, BackupCloser> backup(
        sqlite3_backup_init(opened, "main", handle_.get(), "main"));
    if (backup == nullptr) throw std::bad_alloc();
    do {
      code = sqlite3_backup_step(backup.get(), kPagesAtOnce);
      const int all = sqlite3_backup_pagecount(backup.get());
      const int left = sqlite3_backup_remaining(backup.get());
      stopped =
          progress && !progress(static_cast<uint64_t>(all - left), static_cast<uint64_t>(all));
    } while (code == SQLITE_OK && !stopped);
  }
  CheckUndisturbed();
  if (const int error = DescriptorFiles::TakeWriteError()) FailToWrite(part, error);
  if (stopped) return false;
  if (code != SQLITE_DONE) fail(code);
  // As a register leaves it behind, wherever it was copied from.
  WriteForm(part, kFormWithLog);
  return true;
}

void ChangeCopy(PartFile& part, SqlLiteral sql) {
  RequireLayer();
  // One with a log would want it beside a file that has no name.
  WriteForm(part, kFormAlone);
  {
    sqlite3* opened = nullptr;
    const int opening =
        sqlite3_open_v2(DescriptorFiles::NameOf(part.descriptor()).c_str(), &opened,
                        SQLITE_OPEN_READWRITE | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE,
                        DescriptorFiles::kLayer);
    const std::unique_ptr<sqlite3, DatabaseCloser> copy(opened);
    if (opened == nullptr) throw std::bad_alloc();
    DescriptorFiles::TakeWriteError();
    int code = opening;
    for (const char* text : {"PRAGMA journal_mode = OFF; PRAGMA synchronous = OFF", sql.c_str()}) {
      if (code == SQLITE_OK) code = sqlite3_exec(opened, text, nullptr, nullptr, nullptr);
    }
    const int error = DescriptorFiles::TakeWriteError();
    if (error != 0) FailToWrite(part, error);
    if ((code & 0xFF) == SQLITE_NOMEM) throw std::bad_alloc();
    if (code != SQLITE_OK) FailToWrite(part, EIO);
  }
  WriteForm(part, kFormWithLog);
}

}  // namespace lorimat
