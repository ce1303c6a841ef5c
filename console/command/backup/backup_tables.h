// The programmable tables of a register as a backup holds them: dumps of the command language,
// one file for each table, and the rows in them.
#pragma once

#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "console/check/language.h"
#include "console/host/library.h"
#include "console/message/json_text.h"

namespace lorimat::console {

struct BackupTable {
  const char* name;  // for programs
  const char* file;
  const char* text;  // for a person
  int number;        // in the dump command of the language; 0 for the articles
  int opcode;        // of the command that its rows are; 0 for the articles
  bool one_row;      // the table is one line as a whole
};

// In the order in which they load: departments need VAT entries and groups, articles need
// departments.
std::span<const BackupTable> BackupTables();

// A row that loads: a line of a dump.
struct DumpRow {
  uint64_t line = 0;  // of the file, from 1
  std::string text;
};

// Has the library dump a table, and reads it. The library answers OK to a dump that a full disk has
// cut, so it writes into memory. Throws Failure when the dump fails or may be cut; path names the
// file that it is for.
std::string DumpTable(const BackupTable& table, const std::string& path, Library& library);

// The rows of a dump. Throws Failure, naming `path` and the line, when the text is no whole dump
// of this table: a line that the language does not take or that is another command, a frame that
// is missing.
std::vector<DumpRow> DumpRows(const BackupTable& table, const std::string& path,
                              const std::string& text, const Language& language);

// A row that is not the same in a backup and in a register.
struct RowDifference {
  const BackupTable* table = nullptr;
  uint64_t line = 0;        // of the backup's file; 0 for a row that only the register has
  std::string in_backup;    // empty for such a row
  std::string in_register;  // empty for a row that only the backup has
};

// By the lines of the backup; rows that only the register has come last.
std::vector<RowDifference> CompareRows(const BackupTable& table, const std::vector<DumpRow>& backup,
                                       const std::vector<DumpRow>& in_register);

// Works in a folder, and goes back to the one before at the end. Throws Failure.
class FolderStay {
 public:
  explicit FolderStay(const std::string& folder);
  ~FolderStay();
  FolderStay(const FolderStay&) = delete;
  FolderStay& operator=(const FolderStay&) = delete;

 private:
  Descriptor before_;
};

// A whole file. Throws Failure when it cannot be read or is larger than `most` bytes.
std::string ReadWholeFile(const std::string& path, size_t most);

}  // namespace lorimat::console
