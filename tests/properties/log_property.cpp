// Units of work of more pages than memory holds, so that they are in the log ahead of their end:
// ended or taken back, with reads within them, disks that fail, and a process that is killed at any
// moment. What was answered with success is in the file, and nothing else is: now, for whoever
// reads what a killed process leaves, and at the next start. A unit of which nobody knows is there
// whole or not at all.
#include <algorithm>
#include <filesystem>
#include <map>
#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "properties/property.h"
#include "register/storage/database.h"
#include "register/storage/schema.h"
#include "support/temporary_folder.h"
#include "unit/register/failing_disk.h"

namespace lorimat {
namespace {

namespace gen = rc::gen;

constexpr int kRows = 40;  // of a page each
using Rows = std::map<int, int64_t>;

struct Move {
  std::vector<int> rows;  // to be changed; those below 0 are read, by their size
  bool ends = true;       // else it is taken back
  int fault = -1;         // of the disk; -1: none
  int at = 1;             // the access that it strikes
  bool lasts = false;
  bool killed = false;  // behind it
};

std::ostream& operator<<(std::ostream& out, const Move& move) {
  out << (move.ends ? "commit" : "rollback") << " of";
  for (const int row : move.rows) out << ' ' << row;
  if (move.fault >= 0) out << ", fault " << move.fault << " at " << move.at;
  if (move.lasts) out << " and on";
  return out << (move.killed ? ", killed\n" : "\n");
}

constexpr FailingDisk::Fault kFaults[] = {FailingDisk::Fault::kFull, FailingDisk::Fault::kWrite,
                                          FailingDisk::Fault::kRead, FailingDisk::Fault::kSync,
                                          FailingDisk::Fault::kHalf, FailingDisk::Fault::kUncut,
                                          FailingDisk::Fault::kDead};

rc::Gen<Move> Moves() {
  return gen::resize(rc::kNominalSize, gen::exec([] {
                       Move move;
                       const int rows = *gen::inRange(1, 60);
                       for (int row = 0; row < rows; ++row) {
                         const int one = *gen::inRange(1, kRows + 1);
                         move.rows.push_back(*gen::inRange(0, 4) == 0 ? -one : one);
                       }
                       move.ends = *gen::inRange(0, 3) != 0;
                       if (*gen::inRange(0, 2) == 0) {
                         move.fault = *gen::inRange(0, static_cast<int>(std::size(kFaults)));
                         move.at = *gen::inRange(1, 8);
                         move.lasts = *gen::arbitrary<bool>();
                       }
                       move.killed = *gen::inRange(0, 4) == 0;
                       return move;
                     }));
}

class LogShop {
 public:
  explicit LogShop(std::filesystem::path folder, Seen* seen)
      : folder_(std::move(folder)), seen_(seen) {
    Open();
    database_->Begin(true);
    MakeSchema(*database_);
    database_->Execute("CREATE TABLE page (id INTEGER PRIMARY KEY, value INTEGER, filler BLOB)");
    for (int row = 1; row <= kRows; ++row) {
      database_->Prepare("INSERT INTO page VALUES (?, 0, zeroblob(3900))").With(row).Run();
      stands_[row] = 0;
    }
    database_->Commit();
  }

  void Do(const Move& move, FailingDisk* disk) {
    ++value_;
    if (move.fault >= 0) disk->FailAt(kFaults[move.fault], move.at, move.lasts);
    Rows after = stands_;
    bool stands = false;
    try {
      database_->Begin(value_ % 2 == 0);
      for (const int row : move.rows) Touch(row, &after);
      // What a killed process leaves within a unit has nothing of it.
      ExpectLeft({stands_}, "within a unit");
      if (move.ends) {
        database_->Commit();
        stands = true;
        seen_->Add("units that stand");
      } else {
        database_->Rollback();
        seen_->Add("units taken back");
      }
    } catch (const RegisterError&) {
      if (database_->in_unit()) database_->Rollback();
      seen_->Add("units that failed");
    }
    if (disk->failed()) seen_->Add("faults that struck");
    if (stands) stands_ = after;
    std::vector<Rows> possible = {stands_};
    const bool doubtful = !stands && database_->doubtful();
    const bool dead =
        disk->failed() && kFaults[std::max(move.fault, 0)] == FailingDisk::Fault::kDead;
    if (doubtful) {
      possible.push_back(after);
      seen_->Add("units of which nobody knows");
    }
    if (dead) database_.reset();
    disk->Heal();
    ExpectLeft(possible, "behind a unit");
    if (move.killed || dead || doubtful) {
      Restart(!dead);
      if (doubtful) stands_ = Read(*database_);
      RC_ASSERT(std::find(possible.begin(), possible.end(), stands_) != possible.end());
    }
    RC_ASSERT(Read(*database_) == stands_);
  }

  void End() {
    database_.reset();
    Open();
    RC_ASSERT(Read(*database_) == stands_);
  }

 private:
  // A read that fails ends the unit as a write does: SQLite has taken it back by then.
  void Touch(int row, Rows* after) {
    if (row > 0) {
      database_->Prepare("UPDATE page SET value = ? WHERE id = ?").With(value_, row).Run();
      (*after)[row] = value_;
      return;
    }
    Statement one = database_->Prepare("SELECT value FROM page WHERE id = ?");
    one.With(-row);
    RC_ASSERT(one.Step());
    RC_ASSERT(one.Integer(0) == (*after)[-row]);
    seen_->Add("reads within a unit");
  }

  std::string File(const std::string& name) const { return (folder_ / name).string(); }
  void Open() {
    database_ = std::make_unique<Database>(File("units"), Database::Open::kCreate, kRegisterKind);
    database_->Execute("PRAGMA cache_size = 5");
  }
  static Rows Read(Database& database) {
    Rows rows;
    for (Statement row = database.Prepare("SELECT id, value FROM page"); row.Step();) {
      rows[row.Int(0)] = row.Integer(1);
    }
    return rows;
  }
  void Copy(const std::string& to) const {
    for (const char* end : {"", "-wal"}) {
      std::filesystem::remove(File(to + end));
      if (!std::filesystem::exists(File(std::string("units") + end))) continue;
      std::filesystem::copy_file(File(std::string("units") + end), File(to + end));
    }
  }
  // What a process leaves that is killed now.
  void ExpectLeft(const std::vector<Rows>& possible, const char* when) {
    Copy("left");
    FailingDisk::Pause pause;
    Database left(File("left"), Database::Open::kCreate, kRegisterKind);
    const Rows rows = Read(left);
    if (std::find(possible.begin(), possible.end(), rows) == possible.end()) {
      RC_FAIL(std::string("what is left ") + when + " is another state");
    }
  }
  // What was left behind is gone on with.
  void Restart(bool copies) {
    if (copies) {
      Copy("left");
      database_.reset();
      for (const char* end : {"", "-wal", "-shm"}) {
        std::filesystem::remove(File(std::string("units") + end));
        if (*end == '-' && !std::filesystem::exists(File(std::string("left") + end))) continue;
        std::filesystem::rename(File(std::string("left") + end), File(std::string("units") + end));
      }
    }
    database_.reset();
    Open();
    seen_->Add("kills");
  }

  std::filesystem::path folder_;
  Seen* seen_;
  std::unique_ptr<Database> database_;
  Rows stands_;
  int64_t value_ = 0;
};

TEST(LogProperty, WhatStandsIsInTheFileAndNothingElse) {
  const PropertyRun run = RunOf(150);
  Seen seen("log");
  Holds(run, [&seen] {
    const auto moves = *gen::container<std::vector<Move>>(Moves());
    const std::filesystem::path folder = MakeTemporaryFolder();
    {
      FailingDisk disk;
      LogShop shop(folder, &seen);
      for (const Move& move : moves) shop.Do(move, &disk);
      shop.End();
    }
    std::filesystem::remove_all(folder);
  });
  seen.Require(run, {{"units that stand", 500},
                     {"units taken back", 300},
                     {"units that failed", 200},
                     {"faults that struck", 300},
                     {"reads within a unit", 1000},
                     {"kills", 200}});
}

}  // namespace
}  // namespace lorimat
