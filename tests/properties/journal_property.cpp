// The journal of days by chance, with troubles:
//
// - `journal verify` finds nothing in what a register has written, whatever struck it (the days
//   themselves look at this: TroubledDay);
// - it finds any change of a row that it can know of: deleted, copied, one of its values another;
// - whatever byte of the file is changed: it finds it, or everything is read as it was.
#include <filesystem>
#include <fstream>
#include <iterator>

#include "properties/day_generators.h"
#include "register/inspect/register_file.h"
#include "register/value/register_error.h"
#include "support/temporary_folder.h"
#include "unit/register/database_dump.h"
#include "unit/register/journal_exceptions.h"

namespace lorimat {
namespace {

namespace fs = std::filesystem;
namespace gen = rc::gen;

// One connection to a copy of a register's file.
class Copy {
 public:
  Copy(const fs::path& from, const fs::path& to) : file_(to.string()) {
    fs::copy_file(from, to, fs::copy_options::overwrite_existing);
    sqlite3_open_v2(file_.c_str(), &database_, SQLITE_OPEN_READWRITE, FailingDisk::RealName());
    sqlite3_exec(database_, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
  }
  ~Copy() { sqlite3_close(database_); }
  Copy(const Copy&) = delete;
  Copy& operator=(const Copy&) = delete;

  // The first column of all rows.
  std::vector<std::string> Column(const std::string& sql) const {
    std::vector<std::string> values;
    sqlite3_stmt* rows = nullptr;
    if (sqlite3_prepare_v2(database_, sql.c_str(), -1, &rows, nullptr) == SQLITE_OK) {
      while (sqlite3_step(rows) == SQLITE_ROW) {
        const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(rows, 0));
        values.emplace_back(text != nullptr ? text : "");
      }
    }
    sqlite3_finalize(rows);
    return values;
  }
  // Whether it changed a row; SQLite refuses what breaks the table's own rules.
  bool Change(const std::string& sql) const {
    return sqlite3_exec(database_, sql.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK &&
           sqlite3_changes(database_) > 0;
  }

 private:
  std::string file_;
  sqlite3* database_ = nullptr;
};

bool FindsNothing(const std::string& file) {
  try {
    const JournalCheck check = RegisterFile(file).VerifyJournal({});
    return check.good() && !check.damaged;
  } catch (const RegisterError&) {
    return false;
  }
}

// Lives a day into a file; the file of a day that ended is there behind it.
void LiveInto(const std::string& file, const Day& steps, TroubledDay::Counts* counts) {
  for (const char* beside : {"", "-wal", "-shm", "-journal"}) fs::remove(file + beside);
  FailingDisk disk;
  FailingDisk::Remember();
  TroubledDay day(file, &disk, counts);
  for (const DayStep& step : steps) {
    if (!day.Do(step)) RC_FAIL(day.wrong() + ": " + DescribeStep(step));
  }
  if (!day.End()) RC_FAIL(day.wrong());
}

bool IsKnown(const std::string& table) { return !IsJournalException(table, "*"); }

// A change of one row by chance, as SQL; empty where there is nothing to change. `kind` is what it
// is called.
std::string AnyChange(const Copy& copy, std::string* kind) {
  std::vector<std::string> tables =
      copy.Column("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name");
  std::erase_if(tables, [](const std::string& name) { return !IsKnown(name); });
  const std::string table = *gen::resize(rc::kNominalSize, gen::elementOf(tables));
  // A row by its key.
  std::string keys;
  for (const std::string& key :
       copy.Column("SELECT name FROM pragma_table_info('" + table + "') WHERE pk > 0")) {
    keys += (keys.empty() ? "'" : " || ' AND ") + key + " = ' || quote(" + key + ")";
  }
  const auto rows = copy.Column("SELECT " + keys + " FROM " + table);
  if (rows.empty()) return {};
  const std::string where = " WHERE " + *gen::resize(rc::kNominalSize, gen::elementOf(rows));
  const auto columns = copy.Column("SELECT name FROM pragma_table_info('" + table + "')");
  const std::string column = *gen::resize(rc::kNominalSize, gen::elementOf(columns));
  if (table == "setting") {
    const auto key = copy.Column("SELECT name FROM setting" + where);
    if (key.empty() || IsJournalException(table, key[0])) return {};
  } else if (IsJournalException(table, column)) {
    return {};
  }
  const int by = *gen::resize(rc::kNominalSize, gen::inRange(1, 100));
  const std::string update = "UPDATE " + table + " SET " + column + " = ";
  switch (*gen::resize(rc::kNominalSize, gen::inRange(0, 5))) {
    case 0:
      *kind = "rows deleted";
      return "DELETE FROM " + table + where;
    case 1:
      *kind = "numbers changed";
      return update + column + " + " + std::to_string(by) + where + " AND typeof(" + column +
             ") = 'integer'";
    case 2:
      *kind = "numbers changed";
      return update + column + " - " + std::to_string(by) + where + " AND typeof(" + column +
             ") = 'integer'";
    case 3:
      *kind = "texts longer";
      return update + column + " || '" + std::to_string(by) + "'" + where + " AND typeof(" +
             column + ") = 'text'";
    default:
      // One character is another.
      *kind = "characters changed";
      return update + "substr(" + column + ", 1, " + std::to_string(by) + " % length(" + column +
             ")) || CASE substr(" + column + ", 1 + " + std::to_string(by) + " % length(" + column +
             "), 1) WHEN '7' THEN '3' ELSE '7' END || substr(" + column + ", 2 + " +
             std::to_string(by) + " % length(" + column + "))" + where + " AND typeof(" + column +
             ") = 'text' AND length(" + column + ") > 0";
  }
}

TEST(JournalProperty, AChangedRowIsFound) {
  const PropertyRun run = RunOf(60);
  constexpr int kChangesOfADay = 30;
  Seen seen("changed rows");
  const fs::path folder = MakeTemporaryFolder();
  Holds(run, [&] {
    const std::string file = (folder / "register").string();
    const fs::path changed = folder / "changed";
    TroubledDay::Counts counts;
    LiveInto(file, *Days(20, 5), &counts);
    const FailingDisk disk;
    for (int i = 0; i < kChangesOfADay; ++i) {
      std::string kind, sql;
      bool done = false;
      {
        const Copy copy(file, changed);
        sql = AnyChange(copy, &kind);
        done = !sql.empty() && copy.Change(sql);
      }
      if (!done) continue;
      seen.Add(kind);
      RC_LOG() << sql;
      RC_ASSERT(!FindsNothing(changed.string()));
    }
    seen.Add("documents", counts.documents);
  });
  fs::remove_all(folder);
  seen.Require(run, {{"documents", 50},
                     {"rows deleted", 50},
                     {"numbers changed", 50},
                     {"texts longer", 20},
                     {"characters changed", 20}});
}

TEST(JournalProperty, AChangedByteIsFoundOrChangesNothing) {
  const PropertyRun run = RunOf(30);
  constexpr int kBytesOfADay = 60;
  Seen seen("changed bytes");
  const fs::path folder = MakeTemporaryFolder();
  // What may change in it unseen is beside the point.
  const auto compared = [](const std::string& table) {
    return IsKnown(table) && table != "setting";
  };
  Holds(run, [&] {
    const std::string file = (folder / "register").string();
    const std::string changed = (folder / "changed").string();
    TroubledDay::Counts counts;
    LiveInto(file, *Days(12, 5), &counts);
    const FailingDisk disk;
    const std::string rows = DumpDatabase(file, compared);
    std::ifstream in(file, std::ios::binary);
    const std::string bytes(std::istreambuf_iterator<char>(in), {});
    for (int i = 0; i < kBytesOfADay; ++i) {
      auto at = *gen::resize(rc::kNominalSize, gen::inRange<size_t>(0, bytes.size()));
      // Rarely where nothing is.
      if (*gen::resize(rc::kNominalSize, gen::inRange(0, 10)) != 0) {
        while (bytes[at] == 0) at = (at + 1) % bytes.size();
      }
      std::string other = bytes;
      other[at] = static_cast<char>(
          other[at] ^ static_cast<char>(*gen::resize(rc::kNominalSize, gen::inRange(1, 256))));
      for (const char* beside : {"-wal", "-shm", "-journal"}) fs::remove(changed + beside);
      std::ofstream(changed, std::ios::binary) << other;
      if (!FindsNothing(changed)) {
        seen.Add("found");
        continue;
      }
      seen.Add("nothing found");
      RC_LOG() << "byte " << at;
      RC_ASSERT(DumpDatabase(changed, compared) == rows);
    }
  });
  fs::remove_all(folder);
  seen.Require(run, {{"found", 100}, {"nothing found", 100}});
}

}  // namespace
}  // namespace lorimat
