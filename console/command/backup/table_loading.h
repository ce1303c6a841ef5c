// The tables of a backup, read, compared with a register's and loaded into it.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "console/command/backup/backup_manifest.h"
#include "console/command/backup/backup_tables.h"
#include "console/command/backup/table_session.h"
#include "console/terminal/streams.h"

namespace lorimat::console {

struct TableBackup {
  const BackupTable* table = nullptr;
  std::string text;
  std::vector<DumpRow> rows;
};

struct Backup {
  BackupManifest manifest;
  std::vector<TableBackup> tables;
};

// Throws Failure when the folder is not there. Asked before the register is, and switched on.
void RequireBackupFolder(const std::string& folder);

// Reads a backup and checks it as a whole. Throws Failure.
Backup ReadBackup(const std::string& folder, const Language& language);

using Differences = std::vector<RowDifference>;

// Shows how far it is. A signal stops it where `stops` is set: nobody is to use the answer then.
Differences CompareTables(const Backup& backup, TableSession& session, Streams& streams,
                          bool stops);

// Rows that only the register has stay, but for articles, whose table is emptied first.
bool Stays(const RowDifference& one);

// How many of them are to be loaded.
uint64_t CountToLoad(const Differences& differences);

// What the library answered, or what failed ahead of it. It becomes a text when it is shown:
// reports for programs are English.
struct LoadRefusal {
  long code = 0;  // 0: `answer` is all
  std::string answer;

  std::string text() const;
};

// What was refused: file and line.
using RowRefusals = std::map<std::pair<std::string, uint64_t>, LoadRefusal>;

class TableLoader {
 public:
  TableLoader(const Backup& backup, TableSession& session, Streams& streams)
      : backup_(backup), session_(session), streams_(streams) {}

  // Loads what differs, with the key in its position for programming meanwhile. False when
  // a signal stopped it.
  bool Run(const Differences& differences);

  const RowRefusals& refusals() const { return refusals_; }
  // Empty when the key has its position again.
  std::string key_failure() const { return key_failure_.text(); }

 private:
  void Load(const RowDifference& one);
  void TurnBack();

  const Backup& backup_;
  TableSession& session_;
  Streams& streams_;
  RowRefusals refusals_;
  LoadRefusal key_failure_;
};

// Why a row is still different.
std::string CauseOf(const RowDifference& one, const RowRefusals& refusals, bool stopped);

// What became of the tables of a backup.
struct LoadedTables {
  std::string serial_number;              // of the register that the backup is of
  uint64_t rows = 0;                      // that are as in the backup now, and were not
  std::vector<std::string> not_restored;  // "vat.txt:3: not restored: ..."
  bool stopped = false;                   // by a signal
};

// Loads the tables of a backup into a new register. Throws Failure, before anything is changed,
// when the backup is not whole.
LoadedTables LoadTables(const std::string& folder, TableSession& session, Streams& streams);

}  // namespace lorimat::console
