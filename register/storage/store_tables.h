// What is programmed, as rows of the database: the tables, the keyboards, options and single
// values, the roll of paper and the open document.
#pragma once

#include <optional>
#include <string>

#include "register/paper/paper.h"
#include "register/state/register_state.h"
#include "register/storage/database.h"
#include "register/tables/tables.h"

namespace lorimat {

// --- Tables
// A new register's tables, whole.
void InsertTables(Database& database, const Tables& tables);
// The rows of what has been programmed since the tables were stored.
void StoreTables(Database& database, const Tables& tables);
// Whether one of them changes that belongs to the journal's chain (register/storage/chain.h).
bool ChainedTablesChange(const Tables& tables);
// The same of what is stored with the single values.
bool ChainedSettingsChange(const Tables& tables);
// The tables as they were stored. What belongs to the place where a register runs (clock,
// outbox, polls of a report) is taken from `given`.
Tables LoadTables(Database& database, const RegisterSettings& given);

// --- Single values, device options and keyboards
// Whether one of them differs.
bool SettingsDiffer(const RegisterState& state, const RegisterState& kept);
// Stores those that differ.
void StoreSettings(Database& database, const RegisterState& state, const RegisterState& kept);
// Reads them all; what was never stored stays as it is.
void LoadSettings(Database& database, RegisterState* state);

// --- The roll
// The lines of paper from `from` on, as one piece, or several if they are many.
void StoreRoll(Database& database, const Paper& paper, const Paper::Extent& from);
// The lines that are kept.
Paper LoadRoll(Database& database);
// Removes the oldest pieces, as long as this number of lines is left at least. Answers the first
// line that is left, of all that were ever printed.
size_t TrimRoll(Database& database, const Paper& paper, size_t lines);

// --- The open document
// Of its lines there is how many and what they come to: a document that was cut off is ended, and
// goes on never.
struct StoredOpenDocument {
  PrinterState state = PrinterState::kMonitor;
  DocumentKind kind = DocumentKind::kSale;
  int lines = 0;
  Amount subtotal = 0;
  size_t start = 0;  // its first line, of all that were ever printed
  bool keep_non_fiscal = true;
  DocumentNotes notes;  // what ending it needs
};

// All of it in a text, for comparison; empty when no document is open.
std::string OpenDocumentRecord(const RegisterState& state, const OpenDocument& document,
                               const Paper& paper);
void StoreOpenDocument(Database& database, const RegisterState& state, const OpenDocument& document,
                       const std::string& record);
std::optional<StoredOpenDocument> LoadOpenDocument(Database& database);

}  // namespace lorimat
