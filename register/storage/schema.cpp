#include "register/storage/schema.h"

#include <optional>

#include "register/storage/chain.h"

namespace lorimat {
namespace {

// Version 1.
//
// Times are numbers that read as YYYYMMDDHHMMSS, amounts ten-thousandths, quantities thousandths,
// flags 0 and 1. "totals", "sums" and "rows" hold many values in one text
// (register/value/row_encoding.h). What is registered is never changed: what was sent, and which
// document is void, stands in rows of its own.
constexpr char kTables[] = R"(
-- Identity, and what is programmed.
CREATE TABLE setting (name TEXT PRIMARY KEY, value NOT NULL) WITHOUT ROWID;
CREATE TABLE header_line (number INTEGER PRIMARY KEY, text TEXT NOT NULL);
CREATE TABLE vat_rate (number INTEGER PRIMARY KEY, rate INTEGER NOT NULL, mark TEXT NOT NULL);
CREATE TABLE department (
  number INTEGER PRIMARY KEY, name TEXT NOT NULL, vat INTEGER NOT NULL, price INTEGER NOT NULL,
  max_price INTEGER NOT NULL, department_group INTEGER NOT NULL, quantity INTEGER NOT NULL,
  single_shoot INTEGER NOT NULL, allow_discount INTEGER NOT NULL,
  force_description INTEGER NOT NULL, is_service INTEGER NOT NULL);
CREATE TABLE operator_group (
  number INTEGER PRIMARY KEY, description TEXT NOT NULL, password TEXT NOT NULL,
  flags INTEGER NOT NULL, options INTEGER NOT NULL);
CREATE TABLE subtender (
  number INTEGER PRIMARY KEY, kind INTEGER NOT NULL, description TEXT NOT NULL,
  flags INTEGER NOT NULL, preset_value INTEGER NOT NULL, max_digits INTEGER NOT NULL);
CREATE TABLE article (
  place INTEGER PRIMARY KEY, code TEXT NOT NULL UNIQUE, description TEXT NOT NULL,
  department INTEGER NOT NULL, price INTEGER NOT NULL);
CREATE TABLE logo (number INTEGER PRIMARY KEY, file TEXT NOT NULL);
CREATE TABLE device_option (number INTEGER PRIMARY KEY, value TEXT NOT NULL);
CREATE TABLE programmed_key (
  keyboard INTEGER NOT NULL, position INTEGER NOT NULL, code INTEGER NOT NULL,
  macro TEXT NOT NULL, PRIMARY KEY (keyboard, position)) WITHOUT ROWID;

-- Counters and totals: one row.
CREATE TABLE ledger (
  id INTEGER PRIMARY KEY CHECK (id = 1), last_closure INTEGER NOT NULL,
  next_invoice INTEGER NOT NULL, documents INTEGER NOT NULL, sales INTEGER NOT NULL,
  invoices INTEGER NOT NULL, refunds INTEGER NOT NULL, cancels INTEGER NOT NULL,
  abandoned INTEGER NOT NULL, non_fiscal INTEGER NOT NULL, grand_total INTEGER NOT NULL,
  last_document INTEGER NOT NULL, first_of_day INTEGER NOT NULL, day_totals TEXT NOT NULL,
  journal_place INTEGER NOT NULL, journal_hash TEXT NOT NULL);
-- The closed days since a period began, and where it began. Period 0 is all of them.
CREATE TABLE period (
  number INTEGER PRIMARY KEY, cleared INTEGER NOT NULL, time INTEGER NOT NULL,
  first_document INTEGER NOT NULL, totals TEXT NOT NULL);

-- Registered documents.
CREATE TABLE document (
  id INTEGER PRIMARY KEY, kind INTEGER NOT NULL, closure INTEGER NOT NULL,
  number INTEGER NOT NULL, time INTEGER NOT NULL, operator INTEGER NOT NULL,
  total INTEGER NOT NULL, not_paid INTEGER NOT NULL, change INTEGER NOT NULL,
  discounts INTEGER NOT NULL, surcharges INTEGER NOT NULL, lottery_code TEXT NOT NULL,
  referred_closure INTEGER NOT NULL, referred_number INTEGER NOT NULL, sums TEXT NOT NULL);
CREATE INDEX document_by_number ON document (closure, number) WHERE kind <> 1;
CREATE INDEX document_by_time ON document (time);
CREATE INDEX document_that_refers ON document (referred_closure, referred_number, kind)
  WHERE referred_closure <> 0;
CREATE INDEX document_of_lottery ON document (closure, number) WHERE lottery_code <> '';
CREATE TABLE document_line (
  document INTEGER NOT NULL REFERENCES document (id), place INTEGER NOT NULL,
  kind INTEGER NOT NULL, adjustment_type INTEGER NOT NULL, description TEXT NOT NULL,
  article TEXT NOT NULL, department INTEGER NOT NULL, vat INTEGER NOT NULL,
  quantity INTEGER NOT NULL, unit_price INTEGER NOT NULL, amount INTEGER NOT NULL,
  quantity_taken_back INTEGER NOT NULL, taken_back INTEGER NOT NULL,
  PRIMARY KEY (document, place)) WITHOUT ROWID;
CREATE TABLE document_payment (
  document INTEGER NOT NULL REFERENCES document (id), place INTEGER NOT NULL,
  tender TEXT NOT NULL, amount INTEGER NOT NULL, PRIMARY KEY (document, place)) WITHOUT ROWID;
CREATE TABLE lottery_waiting (document INTEGER PRIMARY KEY REFERENCES document (id));

-- Day closings, and those whose summary has not been sent.
CREATE TABLE closure (
  number INTEGER PRIMARY KEY, time INTEGER NOT NULL, documents INTEGER NOT NULL,
  sales INTEGER NOT NULL, invoices INTEGER NOT NULL, refunds INTEGER NOT NULL,
  cancels INTEGER NOT NULL, abandoned INTEGER NOT NULL, non_fiscal INTEGER NOT NULL,
  grand_total INTEGER NOT NULL, vat_rates TEXT NOT NULL, totals TEXT NOT NULL);
CREATE INDEX closure_by_time ON closure (time);
CREATE TABLE summary_waiting (closure INTEGER PRIMARY KEY REFERENCES closure (number));

-- What was printed of each document, chained by its hash. Lines end with a line feed.
CREATE TABLE journal (
  place INTEGER PRIMARY KEY, kind INTEGER NOT NULL, closure INTEGER NOT NULL,
  number INTEGER NOT NULL, time INTEGER NOT NULL, document INTEGER NOT NULL,
  lines TEXT NOT NULL, hash TEXT NOT NULL);
CREATE INDEX journal_by_closure ON journal (closure);
CREATE INDEX journal_by_time ON journal (time);

-- The document in progress: one row while there is one.
CREATE TABLE open_document (
  id INTEGER PRIMARY KEY CHECK (id = 1), state INTEGER NOT NULL, kind INTEGER NOT NULL,
  begun INTEGER NOT NULL, lines INTEGER NOT NULL, subtotal INTEGER NOT NULL,
  notes TEXT NOT NULL);
)";

// Version 2: the roll of paper, in pieces of what one operation printed. Lines end with a line
// feed; first_line counts from the first line that the register ever printed.
constexpr char kRoll[] = R"(
CREATE TABLE roll (
  first_line INTEGER PRIMARY KEY, lines INTEGER NOT NULL, text TEXT NOT NULL,
  rows TEXT NOT NULL);
)";

// Version 3: what moves the register and is no entry of the journal has its links in the chain,
// each behind the entry of that place.
constexpr char kEvents[] = R"(
CREATE TABLE event (
  place INTEGER PRIMARY KEY, entry INTEGER NOT NULL, kind INTEGER NOT NULL,
  time INTEGER NOT NULL, subject TEXT NOT NULL, value TEXT NOT NULL, hash TEXT NOT NULL);
)";

// Version 4: "totals" and "sums" hold more, behind what they held before; texts of before stay.
constexpr char kMoreSums[] = "";

// The chain takes in what stands in the file. The register's own clock is not known here: the
// time is the computer's.
void CarryOverChain(Database& database) {
  Statement now =
      database.Prepare("SELECT CAST(strftime('%Y%m%d%H%M%S', 'now', 'localtime') AS INTEGER)");
  BeginChain(database, now.Step() ? now.Integer(0) : 0);
}

constexpr SchemaStep kSteps[] = {{1, kRoll}, {2, kEvents, CarryOverChain}, {3, kMoreSums}};

}  // namespace

std::span<const SchemaStep> SchemaSteps() { return kSteps; }

void MakeSchema(Database& database) {
  database.Execute(kSql<"PRAGMA application_id = ", kSqlNumber<kRegisterId>>);
  database.Execute(kTables);
  for (const SchemaStep& step : kSteps) database.Execute(step.sql);
  database.SetVersion(kSchemaVersion);
}

void Migrate(Database& database, std::span<const SchemaStep> steps) {
  std::optional<Transaction> transaction;
  for (const SchemaStep& step : steps) {
    if (database.version() != step.from) continue;
    if (!transaction) transaction.emplace(database);
    database.Execute(step.sql);
    if (step.fill != nullptr) step.fill(database);
    database.SetVersion(step.from + 1);
  }
  if (transaction) transaction->Commit();
}

}  // namespace lorimat
