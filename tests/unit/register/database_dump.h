// Every row of every table of a database, as one text.
#pragma once

#include <sqlite3.h>

#include <functional>
#include <string>

#include "unit/register/failing_disk.h"

namespace lorimat {

inline bool EveryTable(const std::string&) { return true; }

// Ends with "error CODE" where the database cannot be read. Needs a FailingDisk.
inline std::string DumpDatabase(
    const std::string& file,
    const std::function<bool(const std::string& table)>& wanted = EveryTable) {
  sqlite3* database = nullptr;
  std::string dump;
  int code =
      sqlite3_open_v2(file.c_str(), &database, SQLITE_OPEN_READWRITE, FailingDisk::RealName());
  // Nobody waits for the disk to have a copy that is looked at once.
  sqlite3_exec(database, "PRAGMA synchronous = OFF", nullptr, nullptr, nullptr);
  sqlite3_stmt* tables = nullptr;
  if (code == SQLITE_OK) {
    code = sqlite3_prepare_v2(database,
                              "SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name",
                              -1, &tables, nullptr);
  }
  while (code == SQLITE_OK && sqlite3_step(tables) == SQLITE_ROW) {
    const std::string table = reinterpret_cast<const char*>(sqlite3_column_text(tables, 0));
    if (!wanted(table)) continue;
    sqlite3_stmt* rows = nullptr;
    sqlite3_prepare_v2(database, ("SELECT * FROM " + table).c_str(), -1, &rows, nullptr);
    int row = 0;
    while ((row = sqlite3_step(rows)) == SQLITE_ROW) {
      dump += table;
      for (int column = 0; column < sqlite3_column_count(rows); ++column) {
        const char* bytes = static_cast<const char*>(sqlite3_column_blob(rows, column));
        const int size = sqlite3_column_bytes(rows, column);
        dump.append("|").append(bytes != nullptr ? bytes : "", static_cast<size_t>(size));
      }
      dump += '\n';
    }
    if (row != SQLITE_DONE) code = row;
    sqlite3_finalize(rows);
  }
  if (code != SQLITE_OK) dump += "error " + std::to_string(code);
  sqlite3_finalize(tables);
  sqlite3_close(database);
  return dump;
}

}  // namespace lorimat
