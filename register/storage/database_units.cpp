// Units of work: how they begin, are committed, and leave nothing behind when they fail.
//
// SQLite writes a unit into the log, complete with the mark of its commit, and only then notes it
// in memory and, for a durable one, waits for the disk. When the last two fail it says so and goes
// on with the state before. The next start, though, would find the mark and take the unit for
// valid. So its remains are made unreadable at once, and where that fails too, nothing more is
// stored until it succeeds.
//
// Others may read the file all the time. They see of the log what its index in shared memory tells
// them, and that ends with the last commit that stands: the remains of a failed one lie behind its
// end, where no reader looks, also while they are cut off or overwritten. As long as the writer has
// the file open and its index is whole, nobody makes the index anew from the log.
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>

#include "register/storage/database.h"
#include "register/storage/log_layer.h"

namespace lorimat {
namespace {

// The head of a log, and of each frame in it, which a page follows
// (https://www.sqlite.org/fileformat2.html, 4.1).
constexpr int kLogHeadSize = 32;
constexpr int kFrameHeadSize = 24;
constexpr size_t kLogPageSizeAt = 8;
constexpr size_t kGenerationAt = 16;
using LogHead = std::array<unsigned char, kLogHeadSize>;

// Bytes of which one says that a disk is full. A limit of another kind leaves more, and may be gone
// at the next try.
constexpr uint64_t kLittleRoom = 1 << 20;

// Taken over into the file from so many frames on.
constexpr int64_t kLongLog = 1000;

bool ReadHead(sqlite3_file* log, LogHead* head) noexcept {
  return log->pMethods->xRead(log, head->data(), kLogHeadSize, 0) == SQLITE_OK;
}

template <size_t size>
void CopyGeneration(const LogHead& head, std::array<unsigned char, size>* generation) {
  std::copy_n(head.begin() + kGenerationAt, size, generation->begin());
}

}  // namespace

// What a unit needs to begin and to end is there before it begins: also without memory one that
// fails can be taken back.
void Database::PrepareUnits() {
  const auto prepare = [this](const char* sql) {
    sqlite3_stmt* made = nullptr;
    const int code =
        sqlite3_prepare_v3(handle_.get(), sql, -1, SQLITE_PREPARE_PERSISTENT, &made, nullptr);
    StatementHandle handle(made);
    if (code != SQLITE_OK) FailWith(code);
    return handle;
  };
  begin_moment_ = prepare("BEGIN");
  begin_ = prepare("BEGIN IMMEDIATE");
  commit_ = prepare("COMMIT");
  rollback_ = prepare("ROLLBACK");
  data_version_ = prepare("PRAGMA data_version");
  hold_ = prepare("SELECT 1 FROM sqlite_schema");
  sqlite3_rollback_hook(
      handle_.get(), [](void* self) { static_cast<Database*>(self)->taken_back_ = true; }, this);
}

// SQLite closes no connection that has some left.
void Database::DropStatements() noexcept {
  LetGo();
  idle_.clear();
  for (StatementHandle* statement :
       {&begin_moment_, &begin_, &commit_, &rollback_, &data_version_, &hold_}) {
    statement->reset();
  }
}

// A number that other connections' commits change, and this one's own do not. -1: not known.
int64_t Database::DataVersion() noexcept {
  const int code = sqlite3_step(data_version_.get());
  const int64_t version = code == SQLITE_ROW ? sqlite3_column_int64(data_version_.get(), 0) : -1;
  sqlite3_reset(data_version_.get());
  return version;
}

// The reservation keeps other registers out, and is lost when anything in this process closes the
// file; who writes by other means does not ask for it. What this register knows is then old: a unit
// on top of it would give numbers twice. It is asked within the unit, when nobody else can write.
void Database::RequireOwn() {
  if (!logged_) return;
  const int64_t version = DataVersion();
  const int failure = version < 0 ? sqlite3_errcode(handle_.get()) : SQLITE_OK;
  if (seen_ < 0) seen_ = version;
  overtaken_ = failure == SQLITE_OK && version != seen_;
  if (failure == SQLITE_OK && !overtaken_) return;
  int code = SQLITE_OK;
  Step(rollback_, &code);
  if (!overtaken_) FailWith(failure);
  FailOvertaken();
}

void Database::FailOvertaken() const { Fail(FailureCause::kOvertaken); }

// Learns of each commit that stands, and how far the log reaches with it. SQLite asks the hook
// when nothing of the commit can fail any more, whatever it answers then.
void Database::FollowLog() {
  logged_ = true;
  log_name_ = sqlite3_filename_wal(sqlite3_db_filename(handle_.get(), "main"));
  log_mark_ = MarkOf(log_name_);
  sqlite3_wal_hook(
      handle_.get(),
      [](void* self, sqlite3*, const char*, int frames) {
        auto* database = static_cast<Database*>(self);
        database->committed_ = true;
        if (!database->generation_known_) {
          LogHead head;
          sqlite3_file* const log = database->Log();
          const bool known = log != nullptr && ReadHead(log, &head);
          if (known) CopyGeneration(head, &database->log_end_.generation);
          database->log_end_.frames = known ? frames : -1;
          database->generation_known_ = known && database->held_;
        } else {
          database->log_end_.frames = frames;
        }
        return SQLITE_OK;
      },
      this);
  static_cast<void>(CountFrames());
}

// Within a unit, which reads already. A new file has nothing to be read.
void Database::Hold() {
  if (!logged_ || held_) return;
  const int code = sqlite3_step(hold_.get());
  held_ = code == SQLITE_ROW;
  if (held_) return;
  sqlite3_reset(hold_.get());
  if (code == SQLITE_DONE) return;
  // Without memory SQLite has given the unit up.
  Rollback();
  FailWith(code);
}

// Ahead of all that needs the log for itself, or another state than the one that is read.
void Database::LetGo() noexcept {
  if (held_) sqlite3_reset(hold_.get());
  held_ = generation_known_ = false;
}

sqlite3_file* Database::Log() const noexcept {
  sqlite3_file* log = nullptr;
  sqlite3_file_control(handle_.get(), "main", SQLITE_FCNTL_JOURNAL_POINTER, &log);
  return log != nullptr && log->pMethods != nullptr ? log : nullptr;
}

// How many frames stand, by a checkpoint, outside of a unit. False when it cannot be found out.
bool Database::CountFrames() noexcept {
  LetGo();
  int frames = -1;
  const int code =
      sqlite3_wal_checkpoint_v2(handle_.get(), "main", SQLITE_CHECKPOINT_PASSIVE, &frames, nullptr);
  NoteWait(code);
  if (code != SQLITE_OK || frames < 0) return false;
  LogHead head = {};
  sqlite3_file* const log = Log();
  if (frames > 0 && (log == nullptr || !ReadHead(log, &head))) return false;
  CopyGeneration(head, &log_end_.generation);
  log_end_.frames = frames;
  return true;
}

int Database::SyncLog() noexcept {
  sqlite3_file* const log = Log();
  if (log == nullptr) return SQLITE_IOERR_FSYNC;
  const int code = log->pMethods->xSync(log, SQLITE_SYNC_NORMAL);
  NoteWait(code);
  return code;
}

// Makes unreadable what stands in the log behind the last commit. False when that, or waiting for
// the disk to have it, fails.
bool Database::DropRemains() noexcept {
  if (!logged_) return true;
  sqlite3_file* const log = Log();
  if (log == nullptr) return true;
  sqlite3_int64 size = 0;
  if (log->pMethods->xFileSize(log, &size) != SQLITE_OK) return false;
  if (size <= kLogHeadSize) {
    return !doubtful_ || SyncLog() == SQLITE_OK;
  }
  LogHead head;
  if (!ReadHead(log, &head)) return false;
  if (log_end_.frames < 0 && !CountFrames()) return false;
  // Another generation is that of the unit itself, which began the log anew when all that it held
  // had been taken over into the file.
  sqlite3_int64 end = kLogHeadSize;
  if (std::equal(log_end_.generation.begin(), log_end_.generation.end(),
                 head.begin() + kGenerationAt)) {
    sqlite3_int64 page = 0;
    for (size_t at = kLogPageSizeAt; at < kLogPageSizeAt + 4; ++at) page = page << 8 | head[at];
    end += log_end_.frames * (kFrameHeadSize + page);
  }
  if (size <= end && !doubtful_) return true;
  if (size > end && log->pMethods->xTruncate(log, end) != SQLITE_OK) {
    // A frame of page 0 ends the log as well.
    constexpr char kNoFrame[kFrameHeadSize] = {};
    if (log->pMethods->xWrite(log, kNoFrame, kFrameHeadSize, end) != SQLITE_OK) return false;
  }
  return SyncLog() == SQLITE_OK;
}

bool Database::Step(const StatementHandle& statement, int* code) noexcept {
  *code = sqlite3_step(statement.get());
  sqlite3_reset(statement.get());
  return *code == SQLITE_DONE;
}

// Whether a name leads to another file than the one that was opened by it, or to none. One that
// cannot be looked at is not known to have gone.
bool Database::HasGone(const char* name, const FileMark& mark) noexcept {
  struct stat status = {};
  if (stat(name, &status) != 0) return errno == ENOENT || errno == ENOTDIR;
  return status.st_dev != mark.device || status.st_ino != mark.inode;
}

// What is written into a file without a name is gone with the process, and what is written into one
// that was moved is not where it is looked for: neither is stored.
void Database::RefuseGone() const {
  // By the name that SQLite made of it, which holds whatever folder the process works in.
  if (HasGone(sqlite3_db_filename(handle_.get(), "main"), mark_)) {
    Fail(FailureCause::kGone);
  }
  if (log_mark_.size >= 0 && HasGone(log_name_.c_str(), log_mark_)) {
    Fail(FailureCause::kLogGone);
  }
}

void Database::Begin(bool durable) {
  if (getpid() != owner_) Fail(FailureCause::kInUse);
  if (overtaken_) FailOvertaken();
  if (logged_) RefuseGone();
  // One that could not be taken back the last time.
  if (sqlite3_get_autocommit(handle_.get()) == 0) Rollback();
  if (doubtful_) {
    if (doubtful_ = !DropRemains(); doubtful_) {
      Fail(FailureCause::kLogUntidy);
    }
  }
  if (unsynced_) RenewLog();
  if (not_on_disk_) Fail(FailureCause::kNotOnDisk);
  SetDurable(durable);
  int code = SQLITE_OK;
  bool begun = Step(begin_, &code);
  if (!begun && code == SQLITE_BUSY_SNAPSHOT) {
    // Somebody has written behind what is read.
    LetGo();
    begun = Step(begin_, &code);
  }
  if (!begun) FailWith(code);
  RequireOwn();
  in_unit_ = true;
  owes_ = false;
  version_before_ = version_;
  Hold();
}

void Database::Commit() {
  committed_ = false;
  taken_back_ = false;
  int code = SQLITE_OK;
  const bool done = Step(commit_, &code);
  // What counts is what has happened: a failure behind the commit changes nothing of it.
  const bool over = sqlite3_get_autocommit(handle_.get()) != 0;
  const bool stands = logged_ ? committed_ : done || (over && !taken_back_);
  // A unit that changed no page is none for the log.
  if (stands || done) {
    in_unit_ = false;
    full_.reset();
    // A durable one has waited for all of the log.
    owed_ = logged_ && (owes_ || (owed_ && !(durable_ && stands)));
    made_.Keep();
    if (logged_) TakeOverLongLog();
    return;
  }
  const int error = SystemError();  // taking it back may meet another one
  NoteWait(code);
  Rollback();
  doubtful_ = !DropRemains();
  full_ = (code & 0xFF) == SQLITE_FULL ? LittleRoom() : std::nullopt;
  FailWith(code, error);
}

// None where there is much, or where it is not known.
std::optional<Database::Room> Database::LittleRoom() const noexcept {
  struct statvfs status = {};
  if (statvfs(file_.c_str(), &status) != 0) return std::nullopt;
  if (status.f_frsize != 0 && status.f_bavail > kLittleRoom / status.f_frsize) return std::nullopt;
  return Room{status.f_bfree, status.f_bavail};
}

void Database::RefuseStillFull() const {
  if (!full_) return;
  const std::optional<Room> now = LittleRoom();
  if (now && now->all <= full_->all && now->others <= full_->others) Fail(FailureCause::kDiskFull);
}

// Those who read an older moment hold back what is behind it. It is tried again when as much has
// come once more: to look through a log that stays would cost each unit its length.
void Database::TakeOverLongLog() noexcept {
  if (log_end_.frames < taken_over_) taken_over_ = 0;  // it began anew
  if (log_end_.frames - taken_over_ < kLongLog) return;
  LetGo();
  const int code =
      sqlite3_wal_checkpoint_v2(handle_.get(), "main", SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
  taken_over_ = log_end_.frames;
  NoteWait(code);
}

// The system tells of a failed sync once, and the next one may well succeed.
void Database::NoteWait(int code) noexcept {
  if (!logged_ || code != SQLITE_IOERR_FSYNC) return;
  unsynced_ = true;
  if (owed_) not_on_disk_ = true;
}

void Database::WaitForDisk() {
  if (!owed_) return;
  if (not_on_disk_) Fail(FailureCause::kNotOnDisk);
  const int code = SyncLog();
  if (code == SQLITE_OK) {
    owed_ = false;
    return;
  }
  NoteWait(SQLITE_IOERR_FSYNC);
  FailWith(code);
}

// Whoever is told while the log still stands is told again when something is stored.
void Database::NoteTold() noexcept {
  if (!unsynced_) not_on_disk_ = owed_ = false;
}

// What a sync did not bring to the disk no later one is known to bring there, and what would be
// written behind it in the log would be lost with it. So the log is taken over into the file, all
// of it, and begins anew, also on the disk. Whoever reads a moment of the log holds that back until
// they end: the host is told so at once, and not kept waiting.
void Database::RenewLog() {
  LetGo();
  sqlite3_busy_timeout(handle_.get(), 0);
  const int code = sqlite3_wal_checkpoint_v2(handle_.get(), "main", SQLITE_CHECKPOINT_TRUNCATE,
                                             nullptr, nullptr);
  sqlite3_busy_timeout(handle_.get(), kPatience);
  unsynced_ = code != SQLITE_OK || SyncLog() != SQLITE_OK;
  if (!unsynced_) return;
  // What is not on the disk is told when the log is no longer in the way.
  if (code == SQLITE_BUSY) Fail(FailureCause::kLogRead);
  Fail(not_on_disk_ ? FailureCause::kNotOnDisk : FailureCause::kLogUntidy);
}

void Database::Rollback() noexcept {
  const bool in_one = in_unit_ || sqlite3_get_autocommit(handle_.get()) == 0;
  LetGo();
  // Behind some failures SQLite has done it already.
  int code = SQLITE_OK;
  if (sqlite3_get_autocommit(handle_.get()) == 0) Step(rollback_, &code);
  const bool over = sqlite3_get_autocommit(handle_.get()) != 0;
  if (sqlite3_file* const log = logged_ && over ? Log() : nullptr) {
    static_cast<void>(log->pMethods->xFileControl(log, LogLayer::kTakenBack, nullptr));
  }
  if (in_unit_) version_ = version_before_;
  in_unit_ = false;
  // Behind a failure SQLite forgets what it had read, and counts that as a change. Until now nobody
  // else could write.
  if (logged_ && in_one) seen_ = DataVersion();
}

}  // namespace lorimat
