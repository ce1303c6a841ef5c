// Documents, journal and closings as rows.
#include <utility>

#include "register/storage/entry_digest.h"
#include "register/storage/store.h"
#include "register/storage/store_rows.h"
#include "register/value/row_encoding.h"

namespace lorimat {
namespace {

// The ends of a span of minutes as numbers of times.
int64_t MinuteStart(const std::tm& time) { return TimeNumber(time) / 100 * 100; }
int64_t MinuteEnd(const std::tm& time) { return MinuteStart(time) + 99; }

constexpr int64_t kFirstTime = 0;
constexpr int64_t kLastTime = 99'999'999'999'999;

}  // namespace

// --- Documents

void RegisterStore::InsertDocument(const StoredDocument& document, std::string_view sums) {
  database_
      .Prepare(kSql<"INSERT INTO document (", kDocumentStored,
                    ") VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)">)
      .With(document.id, static_cast<int>(document.kind), document.closure, document.number,
            TimeNumber(document.time), document.operator_number, document.total, document.not_paid,
            document.change, document.discounts, document.surcharges, document.lottery_code,
            document.referred_closure, document.referred_number, sums)
      .Run();
  {
    Statement insert = database_.Prepare(
        "INSERT INTO document_line (document, place, kind, adjustment_type, description, article, "
        "department, vat, quantity, unit_price, amount, quantity_taken_back, taken_back) VALUES "
        "(?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)");
    int place = 0;
    for (const DocumentLine& line : document.lines) {
      insert
          .With(document.id, ++place, static_cast<int>(line.kind), line.adjustment_type,
                line.description, line.article, line.department, line.vat, line.quantity,
                line.unit_price, line.amount, line.quantity_taken_back, line.taken_back)
          .Run();
    }
  }
  {
    Statement insert = database_.Prepare(
        "INSERT INTO document_payment (document, place, tender, amount) VALUES (?, ?, ?, ?)");
    int place = 0;
    for (const DocumentPayment& payment : document.payments) {
      insert.With(document.id, ++place, payment.tender, payment.amount).Run();
    }
  }
  if (document.kind == DocumentKind::kSale && !document.lottery_code.empty()) {
    database_.Prepare("INSERT INTO lottery_waiting (document) VALUES (?)").With(document.id).Run();
  }
}

std::optional<StoredDocument> RegisterStore::Find(int closure, int number) const {
  Statement row = database_.Prepare(
      kSql<"SELECT ", kDocumentColumns, " FROM document WHERE kind <> ",
           kSqlNumber<DocumentKind::kInvoice>, " AND closure = ? AND number = ?">);
  if (!row.With(closure, number).Step()) return std::nullopt;
  StoredDocument document = ReadDocument(database_, row);
  ReadDetails(database_, &document);
  return document;
}

std::optional<StoredDocument> RegisterStore::FindLast() const {
  Statement row = database_.Prepare(
      kSql<"SELECT ", kDocumentColumns, " FROM document WHERE kind <> ",
           kSqlNumber<DocumentKind::kInvoice>, " ORDER BY closure DESC, number DESC LIMIT 1">);
  if (!row.Step()) return std::nullopt;
  StoredDocument document = ReadDocument(database_, row);
  ReadDetails(database_, &document);
  return document;
}

std::optional<PaidBack> RegisterStore::FindPaidBack(int closure, int number) const {
  Statement rows = database_.Prepare(
      kSql<"SELECT ", kDocumentColumns, " FROM document WHERE kind IN (",
           kSqlNumber<DocumentKind::kRefund>, ", ", kSqlNumber<DocumentKind::kCancel>,
           ") AND referred_closure <> 0 AND referred_closure = ? AND referred_number = ?">);
  rows.With(closure, number);
  std::optional<PaidBack> sum;
  while (rows.Step()) {
    if (!sum) sum.emplace();
    const StoredDocument document = ReadDocument(database_, rows);
    AddTo(&sum->total, document.total);
    for (const auto& [vat, gross] : document.by_vat) AddTo(&sum->by_vat[vat], gross);
  }
  return sum;
}

std::optional<StoredDocument> RegisterStore::FindById(int64_t id) const {
  Statement row =
      database_.Prepare(kSql<"SELECT ", kDocumentColumns, " FROM document WHERE id = ?">);
  if (!row.With(id).Step()) return std::nullopt;
  StoredDocument document = ReadDocument(database_, row);
  ReadDetails(database_, &document);
  return document;
}

// Invoices have no place in the index of numbers: looked at is what lies between the receipts of
// the days beside it.
std::optional<int64_t> RegisterStore::FirstTimeOf(int closure) const {
  Statement row = database_.Prepare(
      kSql<
          "SELECT time FROM document WHERE closure = ?1 AND id > coalesce((SELECT id FROM document "
          "WHERE kind <> ",
          kSqlNumber<DocumentKind::kInvoice>,
          " AND closure < ?1 ORDER BY closure DESC, number DESC LIMIT 1), 0) AND id < "
          "coalesce((SELECT id FROM document WHERE kind <> ",
          kSqlNumber<DocumentKind::kInvoice>,
          " AND closure > ?1 ORDER BY closure, number LIMIT 1), (SELECT max(id) + 1 FROM "
          "document)) ORDER BY id LIMIT 1">);
  if (!row.With(closure).Step()) return std::nullopt;
  return row.Integer(0);
}

void RegisterStore::ForEachDocument(const DocumentSelection& selection,
                                    const std::function<bool(const StoredDocument&)>& each) const {
  const bool by_time = selection.from || selection.to;
  Statement rows =
      by_time ? database_.Prepare(
                    kSql<"SELECT ", kDocumentColumns,
                         " FROM document WHERE +id >= ? AND time BETWEEN ? AND ? ORDER BY +id">)
              : database_.Prepare(
                    kSql<"SELECT ", kDocumentColumns, " FROM document WHERE id >= ? ORDER BY id">);
  if (by_time) {
    rows.With(selection.first, selection.from ? MinuteStart(*selection.from) : kFirstTime,
              selection.to ? MinuteEnd(*selection.to) : kLastTime);
  } else {
    rows.With(selection.first);
  }
  while (rows.Step()) {
    StoredDocument document = ReadDocument(database_, rows);
    if (selection.details) ReadDetails(database_, &document);
    if (!each(document)) return;
  }
}

std::vector<StoredDocument> RegisterStore::documents() const {
  std::vector<StoredDocument> all;
  DocumentSelection selection;
  selection.details = true;
  ForEachDocument(selection, [&all](const StoredDocument& document) {
    all.push_back(document);
    return true;
  });
  return all;
}

std::vector<StoredDocument> RegisterStore::FindDocuments(const DocumentSpan& span) const {
  int64_t time = kFirstTime;
  if (span.behind != 0) {
    Statement last = database_.Prepare("SELECT time FROM document WHERE id = ?");
    if (!last.With(span.behind).Step()) return {};
    time = last.Integer(0);
  }
  Statement rows = database_.Prepare(
      kSql<
          "SELECT ", kDocumentColumns,
          " FROM document WHERE time BETWEEN ?1 AND ?2 AND (time, id) > (?3, ?4) ORDER BY time, id "
          "LIMIT ?5">);
  rows.With(span.from, span.to, time, span.behind, static_cast<int64_t>(span.most));
  std::vector<StoredDocument> found;
  while (rows.Step()) found.push_back(ReadDocument(database_, rows));
  return found;
}

// By the journal, whose index of closings invoices are in as well.
std::vector<KeptDocument> RegisterStore::FindKept(int closure, int number) const {
  Statement rows = database_.Prepare(
      kSql<"SELECT ", kJournalColumns,
           " FROM journal WHERE closure = ? AND number = ? AND document <> 0 ORDER BY place">);
  rows.With(closure, number);
  std::vector<KeptDocument> found;
  while (rows.Step()) {
    JournalEntry entry = ReadEntry(database_, rows);
    std::optional<StoredDocument> document = FindById(entry.document);
    if (!document) database_.Damaged("journal");
    found.push_back({*std::move(document), std::move(entry)});
  }
  return found;
}

std::vector<StoredDocument> RegisterStore::PendingLottery() const {
  std::vector<StoredDocument> found;
  Statement rows =
      database_.Prepare(kSql<"SELECT ", kDocumentColumns,
                             " FROM document WHERE id IN (SELECT lottery_waiting.document FROM "
                             "lottery_waiting) ORDER BY id">);
  while (rows.Step()) found.push_back(ReadDocument(database_, rows));
  return found;
}

std::vector<StoredDocument> RegisterStore::Lottery(int from_closure, int from_number,
                                                   int to_closure, int to_number) const {
  std::vector<StoredDocument> found;
  Statement rows = database_.Prepare(
      kSql<"SELECT ", kDocumentColumns,
           " FROM document WHERE lottery_code <> '' AND kind = ", kSqlNumber<DocumentKind::kSale>,
           " AND (closure, number) >= (?, ?) AND (closure, number) <= (?, ?) ORDER BY closure, "
           "number">);
  rows.With(from_closure, from_number, to_closure, to_number);
  while (rows.Step()) found.push_back(ReadDocument(database_, rows));
  return found;
}

// --- Journal

void RegisterStore::AddToJournal(JournalEntry entry) {
  BeginWrite();
  std::string facts;
  if (entry.document != 0 && entry.document == last_facts_of_) {
    facts = last_facts_;
  } else if (entry.document != 0) {
    // Registered before the register was switched on again.
    const std::optional<StoredDocument> document = FindById(entry.document);
    if (!document) database_.Damaged("document");
    facts = DocumentFacts(*document);
  }
  InsertEntry(std::move(entry), facts);
}

void RegisterStore::InsertEntry(JournalEntry entry, const std::string& facts) {
  entry.closure = ledger_.last_closure + 1;
  const int64_t place = ledger_.journal_place + 1;
  entry.hash = EntryHash(ledger_.journal_hash, static_cast<uint64_t>(place), entry, facts);
  database_
      .Prepare(kSql<"INSERT INTO journal (", kJournalColumns, ") VALUES (?, ?, ?, ?, ?, ?, ?, ?)">)
      .With(place, static_cast<int>(entry.kind), entry.closure, entry.number,
            TimeNumber(entry.time), entry.document, JoinLines(entry.lines), entry.hash)
      .Run();
  ledger_.journal_place = place;
  ledger_.journal_hash = std::move(entry.hash);
}

void RegisterStore::ForEachEntry(
    const JournalSelection& selection,
    const std::function<bool(uint64_t place, const JournalEntry&)>& each) const {
  Statement rows =
      selection.by_date
          ? database_.Prepare(kSql<"SELECT ", kJournalColumns,
                                   " FROM journal WHERE time BETWEEN ? AND ? ORDER BY +place">)
          : database_.Prepare(
                kSql<"SELECT ", kJournalColumns,
                     " FROM journal WHERE closure BETWEEN ? AND ? ORDER BY closure, place">);
  if (selection.by_date) {
    rows.With(MinuteStart(selection.from), MinuteEnd(selection.to));
  } else {
    rows.With(selection.from_closure, selection.to_closure);
  }
  while (rows.Step()) {
    const JournalEntry entry = ReadEntry(database_, rows);
    if (!Selects(selection, entry)) continue;
    if (!each(static_cast<uint64_t>(rows.Integer(0)), entry)) return;
  }
}

std::vector<uint64_t> RegisterStore::FindPlaces(const JournalSelection& selection, uint64_t behind,
                                                size_t most) const {
  // From the beginning by the index of what is selected, from elsewhere by the place.
  Statement rows =
      selection.by_date
          ? (behind == 0
                 ? database_.Prepare(
                       "SELECT place FROM journal WHERE time BETWEEN ? AND ? AND +place > ? "
                       "ORDER BY +place LIMIT ?")
                 : database_.Prepare(
                       "SELECT place FROM journal WHERE +time BETWEEN ? AND ? AND place > ? "
                       "ORDER BY place LIMIT ?"))
          : (behind == 0
                 ? database_.Prepare(
                       "SELECT place FROM journal WHERE closure BETWEEN ? AND ? AND +place > ? "
                       "ORDER BY +place LIMIT ?")
                 : database_.Prepare(
                       "SELECT place FROM journal WHERE +closure BETWEEN ? AND ? AND place > ? "
                       "ORDER BY place LIMIT ?"));
  const auto last = static_cast<int64_t>(behind);
  const auto limit = static_cast<int64_t>(most);
  if (selection.by_date) {
    rows.With(MinuteStart(selection.from), MinuteEnd(selection.to), last, limit);
  } else {
    rows.With(selection.from_closure, selection.to_closure, last, limit);
  }
  std::vector<uint64_t> places;
  while (rows.Step()) places.push_back(static_cast<uint64_t>(rows.Integer(0)));
  return places;
}

std::optional<JournalEntry> RegisterStore::FindEntry(uint64_t place) const {
  Statement row =
      database_.Prepare(kSql<"SELECT ", kJournalColumns, " FROM journal WHERE place = ?">);
  row.With(static_cast<int64_t>(place));
  if (!row.Step()) return std::nullopt;
  return ReadEntry(database_, row);
}

void RegisterStore::ForEveryEntry(
    const std::function<bool(uint64_t place, const JournalEntry&)>& each) const {
  Statement rows =
      database_.Prepare(kSql<"SELECT ", kJournalColumns, " FROM journal ORDER BY place">);
  while (rows.Step()) {
    const JournalEntry entry = ReadEntry(database_, rows);
    if (!each(static_cast<uint64_t>(rows.Integer(0)), entry)) return;
  }
}

std::vector<JournalEntry> RegisterStore::journal() const {
  std::vector<JournalEntry> all;
  ForEveryEntry([&all](uint64_t, const JournalEntry& entry) {
    all.push_back(entry);
    return true;
  });
  return all;
}

// --- Closings

std::vector<Closure> RegisterStore::FindClosures(int from, int to) const {
  std::vector<Closure> found;
  Statement rows =
      database_.Prepare(kSql<"SELECT ", kClosureColumns,
                             " FROM closure WHERE number BETWEEN ? AND ? ORDER BY number">);
  rows.With(from, to);
  while (rows.Step()) found.push_back(ReadClosure(database_, rows));
  return found;
}

std::vector<Closure> RegisterStore::FindClosures(const std::tm& from, const std::tm& to) const {
  std::vector<Closure> found;
  Statement rows = database_.Prepare(
      kSql<"SELECT ", kClosureColumns, " FROM closure WHERE time BETWEEN ? AND ? ORDER BY number">);
  rows.With(MinuteStart(from), MinuteEnd(to));
  while (rows.Step()) found.push_back(ReadClosure(database_, rows));
  return found;
}

std::optional<Closure> RegisterStore::LastClosure() const {
  Statement row = database_.Prepare(
      kSql<"SELECT ", kClosureColumns, " FROM closure ORDER BY number DESC LIMIT 1">);
  if (!row.Step()) return std::nullopt;
  return ReadClosure(database_, row);
}

std::optional<Closure> RegisterStore::FirstPending() const {
  Statement row = database_.Prepare(kSql<"SELECT ", kClosureColumns,
                                         " FROM closure WHERE number = (SELECT "
                                         "min(summary_waiting.closure) FROM summary_waiting)">);
  if (!row.Step()) return std::nullopt;
  return ReadClosure(database_, row);
}

}  // namespace lorimat
