// A door to SQLite: a file that is known to be one of ours, statements that are prepared once,
// units of work. Everything that fails throws RegisterError.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>

#include "register/storage/new_file.h"
#include "register/storage/sql_text.h"
#include "register/value/register_error.h"

struct sqlite3;
struct sqlite3_file;
struct sqlite3_stmt;

namespace lorimat {

class Database;
class PartFile;

// What is stored can be read and makes no sense.
class DamageError : public RegisterError {
 public:
  using RegisterError::RegisterError;
};

// What was read may be of more than one moment, as somebody has begun to write the file.
class DisturbedError : public RegisterError {
 public:
  using RegisterError::RegisterError;
};

struct DatabaseCloser {
  void operator()(sqlite3* handle) const;
};
struct StatementCloser {
  void operator()(sqlite3_stmt* handle) const;
};
using StatementHandle = std::unique_ptr<sqlite3_stmt, StatementCloser>;
// Prepared statements that wait for their next use, by where their text stands: each is a literal.
using IdleStatements = std::unordered_map<const char*, StatementHandle>;

// A prepared statement with its values. When it goes it is reset and kept for the next use.
//
//   database.Prepare("INSERT INTO logo (number, file) VALUES (?, ?)").With(number, file).Run();
//   Statement logos = database.Prepare("SELECT number, file FROM logo");
//   while (logos.Step()) Use(logos.Integer(0), logos.Text(1));
class Statement {
 public:
  // `row` is that of the idle statements, taken out.
  Statement(Database& database, IdleStatements::node_type row)
      : database_(&database), row_(std::move(row)), handle_(row_.mapped().get()) {}
  ~Statement();
  Statement(Statement&&) = default;
  Statement& operator=(Statement&&) = delete;

  // Gives the parameters their values, from the first one on: integers, flags, texts, nullptr, or
  // an optional one of these.
  template <typename... Values>
  Statement& With(const Values&... values) {
    Reset();
    int parameter = 0;
    (Bind(++parameter, values), ...);
    return *this;
  }
  // The next row; false behind the last one.
  bool Step();
  // For a statement without rows, or whose rows do not matter.
  void Run();

  int64_t Integer(int column) const;
  // An integer that fits an int; another is damage.
  int Int(int column) const;
  bool Flag(int column) const { return Integer(column) != 0; }
  // Holds until the next step.
  std::string_view Text(int column) const;
  std::string String(int column) const { return std::string(Text(column)); }
  bool IsNull(int column) const;

 private:
  template <typename Value>
  void Bind(int parameter, const Value& value) {
    if constexpr (std::is_same_v<Value, std::nullptr_t>) {
      BindNull(parameter);
    } else if constexpr (std::is_integral_v<Value>) {
      BindInteger(parameter, static_cast<int64_t>(value));
    } else if constexpr (requires { value.has_value(); }) {
      value ? Bind(parameter, *value) : BindNull(parameter);
    } else {
      BindText(parameter, value);
    }
  }
  void Reset();
  void BindNull(int parameter);
  void BindInteger(int parameter, int64_t value);
  void BindText(int parameter, std::string_view value);
  void Check(int code) const;

  Database* database_;
  IdleStatements::node_type row_;
  sqlite3_stmt* handle_;
};

// What makes a file one of ours.
struct DatabaseKind {
  int32_t application_id = 0;
  int newest_version = 0;  // of the schema, above 0
};

class Database {
 public:
  using CopyProgress = std::function<bool(uint64_t done, uint64_t all)>;

  enum class Open {
    kCreate,  // written, and made when it is not there
    kChange,  // written; has to be there
    kRead,    // has to be there, and never changes by it
  };

  // An empty name is a database in memory. A file that is not ours is refused and left as it
  // is. A new one, and an empty file, have version 0 and no tables; a new one that no unit of work
  // is stored in goes again.
  //
  // One program writes a file; a second one is refused, by whatever name it calls it. Any number
  // reads it meanwhile, and keeps nobody waiting. A file of an older version that is read is
  // copied into memory, where its tables can be brought up to date.
  Database(const std::string& file, Open how, const DatabaseKind& kind);
  // Looks at one that is in the making. It is only read.
  Database(const PartFile& part, const DatabaseKind& kind);
  ~Database();
  Database(const Database&) = delete;
  Database& operator=(const Database&) = delete;

  const std::string& file() const { return file_; }
  bool in_memory() const { return file_.empty(); }
  int version() const { return version_; }
  // Part of the unit of work that is under way. Throws kCannotWrite for a version that is not 0 to
  // kMostVersion.
  static constexpr int kMostVersion = 99;
  void SetVersion(int version);

  // For kRead, outside of a Moment: what has become of the file since the database was opened, or
  // since the last time that kChanged was answered. Behind kAnew it has to be opened again to see
  // more of it. kGone is a file that is not there any more, or is another one.
  enum class News { kNone, kChanged, kAnew, kGone };
  News FindNews();
  // For kRead: throws when the file is read without the writer's knowledge, and one has begun to
  // write it. What was read may be of more than one moment then.
  void CheckUndisturbed() const;

  Statement Prepare(SqlLiteral sql);
  // One or more statements without parameters and results.
  void Execute(SqlLiteral sql);

  // A unit of work: all of it or nothing. One that is not durable may be lost, whole, when the
  // computer goes down, never when only the program does. None begins on a file that lost its name.
  void Begin(bool durable);
  bool in_unit() const { return in_unit_; }
  // True as far as it comes back: the unit stands. When it throws, nothing of it does, now and at
  // the next start, but for what `doubtful` tells.
  void Commit();
  // The unit of work that is under way, which is not durable, will have to be waited for with
  // others like it: by WaitForDisk, or by the next durable one.
  void OweWaiting() noexcept { owes_ = true; }
  // Waits for the disk to have all units that this is owed to. When it fails, or something did on
  // the way, the computer's going down may take them along: this throws, and so does each Begin
  // until it is told, for whoever did not hear of it. Nothing else is stored before the log they
  // stand in has been taken over into the file.
  void WaitForDisk();
  // Somebody was told kNotOnDisk.
  void NoteTold() noexcept;
  // Throws kDiskFull, without a try, when the last unit found no room and the file system has had
  // no more since: for one of many units in a row, of which none may matter more than another.
  void RefuseStillFull() const;
  // Needs no memory.
  void Rollback() noexcept;
  // A unit failed, and its remains in the log could not be made unreadable: a later start may find
  // it stored. No other unit begins before they are.
  bool doubtful() const { return doubtful_; }

  // Copies all of it, as it is at this moment, into a file that is empty. `progress` is told how
  // many pages of all are there; it answers false to stop, and may be null. False when it was
  // stopped.
  bool CopyTo(PartFile& part, const CopyProgress& progress);

  // Throws RegisterError of this file.
  [[noreturn]] void Fail(FailureCause cause, std::initializer_list<int64_t> numbers = {},
                         std::string text = {}) const;
  // The same for what SQLite answered.
  [[noreturn]] void FailWith(int code) const { FailWith(code, SystemError()); }
  // DamageError, for stored values that make no sense.
  [[noreturn]] void Damaged(std::string_view what) const;

 private:
  friend class Moment;
  friend class Statement;
  friend class WorkWatch;
  [[noreturn]] void FailWith(int code, int system_error) const;
  int SystemError() const noexcept;
  void OpenHandle(const std::string& name, int flags, const char* layer = nullptr);
  void OpenFile(Open how, const DatabaseKind& kind);
  void OpenToWrite(Open how, const DatabaseKind& kind);
  void OpenToRead(const std::string& name, const DatabaseKind& kind);
  void OpenAlone();
  void FirstMoment(const DatabaseKind& kind);
  void RefuseOtherName() const;
  void RefuseSecondName() const;
  void CopyIntoMemory();
  int LockOutWriters() noexcept;
  void LetWritersIn() noexcept;
  void EmptyLog() noexcept;
  void Abandon() noexcept;
  bool IsReserved() const;
  bool IsMoved() const;
  void ClearAway() noexcept;
  bool BeginMoment();
  void EndMoment() noexcept;
  void Identify(Open how, const DatabaseKind& kind);
  void CheckLoneLog() const;
  void CheckFile(Open how);
  bool IsTooLong() const;
  sqlite3_file* File() const;
  bool HasLog() const;
  RegisterFailure Failure(FailureCause cause, std::initializer_list<int64_t> numbers = {},
                          std::string text = {}) const;
  [[noreturn]] void FailUnwritable() const;
  int FolderRefusal() const;
  void CheckHead(const DatabaseKind& kind) const;
  void SetDurable(bool durable);
  void RenewLog();
  int64_t Value(SqlLiteral sql);
  void PrepareUnits();
  void DropStatements() noexcept;
  int64_t DataVersion() noexcept;
  void RequireOwn();
  [[noreturn]] void FailOvertaken() const;
  void FollowLog();
  void Hold();
  void LetGo() noexcept;
  bool Step(const StatementHandle& statement, int* code) noexcept;
  void RefuseGone() const;
  bool DropRemains() noexcept;
  void TakeOverLongLog() noexcept;
  void NoteWait(int code) noexcept;
  int SyncLog() noexcept;
  bool CountFrames() noexcept;
  sqlite3_file* Log() const noexcept;

  // What tells a file, and what is written into it, from another time.
  struct FileMark {
    uint64_t device = 0;
    uint64_t inode = 0;
    int64_t size = -1;  // -1: not there
    int64_t changed = 0;
    int64_t changed_nanoseconds = 0;
    bool operator==(const FileMark&) const = default;
    bool IsSameFile(const FileMark& other) const {
      return size >= 0 && other.size >= 0 && device == other.device && inode == other.inode;
    }
  };
  // What is left on a file system, in blocks: for all, and for those who are not root.
  struct Room {
    uint64_t all = 0;
    uint64_t others = 0;
  };
  std::optional<Room> LittleRoom() const noexcept;
  static FileMark MarkOf(const std::string& file) noexcept;
  static bool HasGone(const char* name, const FileMark& mark) noexcept;

  // Milliseconds. Others hold the locks of a log for moments: the first to open it for as long as
  // it takes to read it.
  static constexpr int kPatience = 5000;

  std::string file_;
  std::string open_name_;  // what SQLite takes for the file, and for nothing else
  bool reads_ = false;     // kRead
  bool may_make_ = false;  // what a log needs, for reading
  bool alone_ = false;     // read without its log, which writers do not know of
  bool copied_ = false;
  // As they were opened, or last seen to change; of a writer without a file, or a log, not there.
  FileMark mark_;
  FileMark log_mark_;
  std::string log_name_;
  std::string index_name_;  // of the log
  // The state of the data, by SQLite's count; of a writer the last one of its own, -1: not known.
  int64_t seen_ = 0;
  int64_t owner_ = 0;  // the process that has opened it
  int version_ = 0;
  int version_before_ = 0;  // of the unit of work
  bool in_unit_ = false;
  bool in_moment_ = false;
  bool durable_ = true;
  bool doubtful_ = false;
  bool owes_ = false;         // the unit under way, see OweWaiting
  bool owed_ = false;         // units that stand
  bool not_on_disk_ = false;  // a wait for those failed, and nobody was told yet
  bool unsynced_ = false;     // a sync failed, and the log has not been begun anew since
  bool overtaken_ = false;    // another program has written the file
  std::optional<Room> full_;  // as the last unit that found no room left it
  // The log as far as it holds what stands: its generation, which its head names, and the frames.
  struct LogEnd {
    std::array<unsigned char, 8> generation = {};
    int64_t frames = -1;  // -1: not known
  };
  bool logged_ = false;      // commits go into a log
  bool committed_ = false;   // since the COMMIT began
  bool taken_back_ = false;  // since the COMMIT began
  LogEnd log_end_;
  // A reading goes on from unit to unit: to begin one anew takes locks. While it does, the log
  // does not begin anew behind a unit that is in it.
  bool held_ = false;
  bool generation_known_ = false;  // of the log, since it is held
  int64_t taken_over_ = 0;         // so many frames the log had when it was last taken over
  std::unique_ptr<sqlite3, DatabaseCloser> handle_;
  // Until the first unit of work stands in it, or somebody else has it. It goes ahead of the
  // handle, whose lock keeps others out of it.
  mutable NewFile made_;
  // Ready to be run when nothing can be prepared.
  StatementHandle begin_moment_;
  StatementHandle begin_;
  StatementHandle commit_;
  StatementHandle rollback_;
  StatementHandle data_version_;
  StatementHandle hold_;
  IdleStatements idle_;
};

// What is read of a database while this lives is of one moment of it, whatever is stored meanwhile.
// Made to be short: the log grows until it ends. One within another is part of it.
class Moment {
 public:
  explicit Moment(Database& database) : database_(database), begun_(database.BeginMoment()) {}
  ~Moment() {
    if (begun_) database_.EndMoment();
  }
  Moment(const Moment&) = delete;
  Moment& operator=(const Moment&) = delete;

 private:
  Database& database_;
  bool begun_;
};

// A unit of work that is taken back unless it is committed.
class Transaction {
 public:
  explicit Transaction(Database& database) : database_(database) { database_.Begin(true); }
  ~Transaction() {
    if (database_.in_unit()) database_.Rollback();
  }
  Transaction(const Transaction&) = delete;
  Transaction& operator=(const Transaction&) = delete;
  void Commit() { database_.Commit(); }

 private:
  Database& database_;
};

}  // namespace lorimat
