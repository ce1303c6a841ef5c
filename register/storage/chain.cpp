#include "register/storage/chain.h"

#include <charconv>
#include <utility>

#include "register/value/digest.h"
#include "register/value/row_encoding.h"

namespace lorimat {
namespace {

// Of a table of records a digest is enough: who wants to know what stood in it reads the paper.
struct ChainedTable {
  const char* name;
  SqlLiteral rows;
  int columns;
};
// The options of the device go with the single values, in which a host sets them.
constexpr ChainedTable kOptionTable = {
    "device_option", "SELECT number, value FROM device_option ORDER BY number", 2};
constexpr ChainedTable kTables[] = {
    {"vat_rate", "SELECT number, rate, mark FROM vat_rate ORDER BY number", 3},
    {"department",
     "SELECT number, name, vat, price, max_price, department_group, quantity, single_shoot, "
     "allow_discount, force_description, is_service FROM department ORDER BY number",
     11},
    {"operator_group",
     "SELECT number, description, password, flags, options FROM operator_group ORDER BY number", 5},
    {"subtender",
     "SELECT number, kind, description, flags, preset_value, max_digits FROM subtender "
     "ORDER BY number",
     6},
};

// Left out is what changes with the work of a day and counts for nothing, and what is printed and
// nothing else: the journal has it, document by document (docs/register.md).
constexpr char kChainedSettings[] =
    "SELECT name, value FROM setting WHERE name NOT IN ('key', 'operator', 'drawer_openings', "
    "'faults', 'answer_due', 'courtesy_text', 'header_logo', 'trailer_logo') AND "
    "name NOT LIKE 'trailer_line_%'";

std::string TableDigest(Database& database, const ChainedTable& table) {
  RowEncoder record;
  for (Statement row = database.Prepare(table.rows); row.Step();) {
    for (int column = 0; column < table.columns; ++column) record.Text(row.Text(column));
  }
  return Sha256(record.text());
}

void PutWaiting(const std::set<int64_t>& waiting, RowEncoder* record) {
  record->Number(static_cast<int64_t>(waiting.size()));
  for (const int64_t number : waiting) record->Number(number);
}

void TakeWaiting(RowDecoder* record, std::set<int64_t>* waiting) {
  for (int64_t left = record->Number(); left > 0 && record->good(); --left) {
    waiting->insert(waiting->end(), record->Number());
  }
}

// Of the ledger, and of what waits, as they are now.
Beginning BeginningNow(Database& database) {
  Beginning beginning;
  Statement ledger =
      database.Prepare("SELECT last_closure, next_invoice, non_fiscal, last_document FROM ledger");
  if (!ledger.Step()) database.Damaged("ledger");
  beginning.last_closure = ledger.Integer(0);
  beginning.next_invoice = ledger.Integer(1);
  beginning.non_fiscal = ledger.Integer(2);
  beginning.last_document = ledger.Integer(3);
  for (Statement row = database.Prepare("SELECT number, cleared, time, first_document FROM period");
       row.Step();) {
    beginning.periods[row.Integer(0)] = {row.Flag(1), row.Integer(2), row.Integer(3)};
  }
  for (Statement row = database.Prepare("SELECT closure FROM summary_waiting"); row.Step();) {
    beginning.summaries_waiting.insert(row.Integer(0));
  }
  for (Statement row = database.Prepare("SELECT document FROM lottery_waiting"); row.Step();) {
    beginning.lottery_waiting.insert(row.Integer(0));
  }
  return beginning;
}

std::string ToRecord(const Beginning& beginning) {
  RowEncoder record;
  record.Number(beginning.last_closure).Number(beginning.next_invoice);
  record.Number(beginning.non_fiscal).Number(beginning.last_document);
  record.Number(static_cast<int64_t>(beginning.periods.size()));
  for (const auto& [number, period] : beginning.periods) {
    record.Number(number).Number(period.cleared ? 1 : 0).Number(period.time);
    record.Number(period.first_document);
  }
  PutWaiting(beginning.summaries_waiting, &record);
  PutWaiting(beginning.lottery_waiting, &record);
  return record.Take();
}

}  // namespace

ChainEvent ReadEvent(const Statement& row) {
  ChainEvent event;
  event.place = row.Integer(0);
  event.entry = row.Integer(1);
  event.kind = static_cast<EventKind>(row.Int(2));
  event.time = row.Integer(3);
  event.subject = row.Text(4);
  event.value = row.Text(5);
  event.hash = row.Text(6);
  return event;
}

std::optional<Beginning> ReadBeginning(std::string_view text) {
  RowDecoder record(text);
  Beginning beginning;
  beginning.last_closure = record.Number();
  beginning.next_invoice = record.Number();
  beginning.non_fiscal = record.Number();
  beginning.last_document = record.Number();
  for (int64_t left = record.Number(); left > 0 && record.good(); --left) {
    PeriodBeginning& period = beginning.periods[record.Number()];
    period.cleared = record.Number() != 0;
    period.time = record.Number();
    period.first_document = record.Number();
  }
  TakeWaiting(&record, &beginning.summaries_waiting);
  TakeWaiting(&record, &beginning.lottery_waiting);
  if (!record.done()) return std::nullopt;
  return beginning;
}

std::string EventHash(std::string_view previous, const ChainEvent& event) {
  RowEncoder text;
  text.Text(previous).Text("event").Number(event.place).Number(event.entry);
  text.Number(static_cast<int>(event.kind)).Number(event.time);
  text.Text(event.subject).Text(event.value);
  return Sha256(text.text());
}

std::string InsertEvent(Database& database, std::string_view previous, ChainEvent event) {
  {
    Statement last = database.Prepare("SELECT coalesce(max(place), 0) FROM event");
    event.place = last.Step() ? last.Integer(0) + 1 : 1;
  }
  event.hash = EventHash(previous, event);
  database.Prepare(kSql<"INSERT INTO event (", kEventColumns, ") VALUES (?, ?, ?, ?, ?, ?, ?)">)
      .With(event.place, event.entry, static_cast<int>(event.kind), event.time, event.subject,
            event.value, event.hash)
      .Run();
  return std::move(event.hash);
}

std::string BeginChain(Database& database, int64_t time) {
  ChainEvent event;
  event.time = time;
  std::string hash;
  {
    Statement ledger = database.Prepare("SELECT journal_place, journal_hash FROM ledger");
    if (!ledger.Step()) database.Damaged("ledger");
    event.entry = ledger.Integer(0);
    hash = ledger.Text(1);
  }
  event.value = ToRecord(BeginningNow(database));
  hash = InsertEvent(database, hash, event);
  event.kind = EventKind::kProgrammed;
  for (const auto& [subject, value] : ProgrammedValues(database, true, true)) {
    event.subject = subject;
    event.value = ToRecord(ProgrammedChange{{}, value});
    hash = InsertEvent(database, hash, event);
  }
  database.Prepare("UPDATE ledger SET journal_hash = ?").With(hash).Run();
  return hash;
}

ProgrammedTexts ProgrammedValues(Database& database, bool settings, bool tables) {
  ProgrammedTexts values;
  if (settings) {
    for (Statement row = database.Prepare(kChainedSettings); row.Step();) {
      values[row.String(0)] = row.Text(1);
    }
    values[kOptionTable.name] = TableDigest(database, kOptionTable);
  }
  if (tables) {
    for (const ChainedTable& table : kTables) values[table.name] = TableDigest(database, table);
  }
  return values;
}

std::string ToRecord(const ProgrammedChange& change) {
  RowEncoder record;
  record.Text(change.before).Text(change.after);
  return record.Take();
}

std::optional<ProgrammedChange> ReadProgrammedChange(std::string_view text) {
  RowDecoder record(text);
  ProgrammedChange change;
  change.before = record.Text();
  change.after = record.Text();
  if (!record.done()) return std::nullopt;
  return change;
}

std::string NumbersRecord(const std::set<int64_t>& numbers) {
  RowEncoder record;
  for (const int64_t number : numbers) record.Number(number);
  return record.Take();
}

std::set<int64_t> ReadNumbers(std::string_view text) {
  RowDecoder record(text);
  std::set<int64_t> numbers;
  while (record.good() && !record.done()) {
    const int64_t number = record.Number();
    if (record.good()) numbers.insert(number);
  }
  return numbers;
}

}  // namespace lorimat
