// Counters, totals and what moves them.
#include "register/storage/store.h"

#include <limits>
#include <utility>

#include "register/storage/entry_digest.h"
#include "register/storage/store_rows.h"
#include "register/value/row_encoding.h"

namespace lorimat {
namespace {

// Far beyond what a register can come to; what is counted on from there stays in range.
constexpr int kLastInvoice = 1'000'000'000;
constexpr int64_t kLastRow = int64_t{1} << 62;

// The columns of the ledger behind its `id`.
constexpr SqlText kLedgerStored =
    "last_closure, next_invoice, documents, sales, invoices, refunds, cancels, abandoned, "
    "non_fiscal, grand_total, last_document, first_of_day, day_totals, journal_place, journal_hash";

std::shared_ptr<const Totals> Shared(Totals totals) {
  return std::make_shared<const Totals>(std::move(totals));
}

std::shared_ptr<const Totals> ReadTotals(const Database& database, std::string_view text) {
  Totals totals;
  if (!Totals::FromRecord(text, &totals)) database.Damaged("totals");
  return Shared(std::move(totals));
}

}  // namespace

void RegisterStore::BeginWrite() {
  if (!database_.in_unit()) database_.Begin(true);
}

void RegisterStore::MakeLedger(int last_closure, int last_invoice) {
  ledger_ = Ledger{};
  ledger_.last_closure = last_closure;
  ledger_.next_invoice = last_invoice + 1;
  ledger_.day = Shared({});
  for (StoredPeriod& period : ledger_.periods) period.closed = ledger_.day;
  WriteLedger();
  WritePeriods(true);
}

void RegisterStore::LoadLedger() {
  Statement row =
      database_.Prepare(kSql<"SELECT ", kLedgerStored,
                             ", (SELECT count(*) FROM summary_waiting), "
                             "(SELECT time FROM document WHERE document.id = last_document), "
                             "(SELECT time FROM closure WHERE number = last_closure), "
                             "(SELECT time FROM document WHERE document.id = first_of_day) "
                             "FROM ledger">);
  if (!row.Step()) database_.Damaged("ledger");
  ledger_ = Ledger{};
  ledger_.last_closure = row.Int(0);
  ledger_.next_invoice = row.Int(1);
  if (ledger_.last_closure < 0 || ledger_.last_closure > kLastNumber || ledger_.next_invoice < 1 ||
      ledger_.next_invoice > kLastInvoice) {
    database_.Damaged("ledger");
  }
  ledger_.counters = ReadCounters(database_, row, 2);
  ledger_.grand_total = row.Integer(9);
  ledger_.last_document = row.Integer(10);
  ledger_.first_of_day = row.Integer(11);
  ledger_.day = ReadTotals(database_, row.Text(12));
  ledger_.journal_place = row.Integer(13);
  ledger_.journal_hash = row.Text(14);
  ledger_.pending_closures = row.Int(15);
  ledger_.last_document_time = row.Integer(16);
  ledger_.last_closure_time = row.Integer(17);
  ledger_.first_of_day_time = row.Integer(18);
  if (ledger_.last_document < 0 || ledger_.last_document >= kLastRow || ledger_.first_of_day < 1 ||
      ledger_.journal_place < 0 || ledger_.journal_place >= kLastRow) {
    database_.Damaged("ledger");
  }
  Statement periods = database_.Prepare(
      "SELECT number, cleared, time, first_document, totals FROM period ORDER BY number");
  int expected = 0;
  for (; periods.Step(); ++expected) {
    if (expected > kPeriods || periods.Integer(0) != expected) database_.Damaged("period");
    StoredPeriod& period = ledger_.periods[static_cast<size_t>(expected)];
    period.start.cleared = periods.Flag(1);
    if (period.start.cleared) period.start.time = NumberTime(periods.Integer(2));
    period.start.first_document = periods.Integer(3);
    period.closed = ReadTotals(database_, periods.Text(4));
  }
  if (expected != kPeriods + 1) database_.Damaged("period");
}

void RegisterStore::Keep() {
  if (!Changed()) return;
  BeginWrite();
  WriteLedger();
  WritePeriods(false);
}

void RegisterStore::WriteLedger() {
  const DailyCounters& counters = ledger_.counters;
  database_
      .Prepare(kSql<"REPLACE INTO ledger (id, ", kLedgerStored,
                    ") VALUES (1, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)">)
      .With(ledger_.last_closure, ledger_.next_invoice, counters.documents, counters.sales,
            counters.invoices, counters.refunds, counters.cancels, counters.abandoned,
            counters.non_fiscal, ledger_.grand_total, ledger_.last_document, ledger_.first_of_day,
            ledger_.day->ToRecord(), ledger_.journal_place, ledger_.journal_hash)
      .Run();
}

void RegisterStore::WritePeriods(bool all) {
  for (size_t number = 0; number < ledger_.periods.size(); ++number) {
    const StoredPeriod& period = ledger_.periods[number];
    if (!all && period == kept_.periods[number]) continue;
    const int64_t time = period.start.cleared ? TimeNumber(period.start.time) : 0;
    database_
        .Prepare(
            "REPLACE INTO period (number, cleared, time, first_document, totals) VALUES (?, ?, ?, "
            "?, ?)")
        .With(number, period.start.cleared, time, period.start.first_document,
              period.closed->ToRecord())
        .Run();
  }
}

StoredDocument RegisterStore::Register(StoredDocument document) {
  BeginWrite();
  DailyCounters counters = ledger_.counters;
  int next_invoice = ledger_.next_invoice;
  document.id = ledger_.last_document + 1;
  document.closure = ledger_.last_closure + 1;
  if (document.kind == DocumentKind::kInvoice) {
    document.number = next_invoice++;
  } else {
    document.number = ++counters.documents;
  }
  switch (document.kind) {
    case DocumentKind::kSale:
      ++counters.sales;
      break;
    case DocumentKind::kInvoice:
      ++counters.invoices;
      break;
    case DocumentKind::kRefund:
      ++counters.refunds;
      break;
    case DocumentKind::kCancel:
      ++counters.cancels;
      break;
  }
  Totals day = *ledger_.day;
  day.Add(document);
  SharedTotals shared = Shared(std::move(day));
  const std::string sums = SumsRecord(document);
  InsertDocument(document, sums);
  last_facts_ = DocumentFacts(document, sums);
  last_facts_of_ = document.id;
  ledger_.day = std::move(shared);
  ledger_.grand_total += DailySign(document.kind) * document.total;
  ledger_.counters = counters;
  ledger_.next_invoice = next_invoice;
  ledger_.last_document = document.id;
  ledger_.last_document_time = TimeNumber(document.time);
  if (document.id == ledger_.first_of_day) {
    ledger_.first_of_day_time = ledger_.last_document_time;
  }
  return document;
}

void RegisterStore::CloseDay(const std::tm& time, const std::vector<VatRate>& vat_rates,
                             JournalEntry entry) {
  BeginWrite();
  Closure closure;
  closure.number = ledger_.last_closure + 1;
  closure.time = time;
  closure.counters = ledger_.counters;
  closure.grand_total = ledger_.grand_total;
  closure.vat_rates = vat_rates;
  closure.totals = *ledger_.day;
  const DailyCounters& counters = closure.counters;
  database_
      .Prepare(kSql<"INSERT INTO closure (", kClosureStored,
                    ") VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?)">)
      .With(closure.number, TimeNumber(time), counters.documents, counters.sales, counters.invoices,
            counters.refunds, counters.cancels, counters.abandoned, counters.non_fiscal,
            closure.grand_total, VatRatesRecord(vat_rates), closure.totals.ToRecord())
      .Run();
  database_.Prepare("INSERT INTO summary_waiting (closure) VALUES (?)").With(closure.number).Run();
  InsertEntry(std::move(entry), ClosureFacts(closure));

  for (StoredPeriod& period : ledger_.periods) {
    Totals closed = *period.closed;
    closed.Add(DaySince(period.start));
    period.closed = Shared(std::move(closed));
  }
  ledger_.day = Shared({});
  ledger_.counters = DailyCounters{};
  ledger_.last_closure = closure.number;
  ledger_.last_closure_time = TimeNumber(time);
  ledger_.first_of_day = ledger_.last_document + 1;
  ledger_.first_of_day_time = 0;
  ++ledger_.pending_closures;
}

void RegisterStore::MarkSent(int number, const std::tm& time) {
  AddEvent(EventKind::kSummarySent, time, {}, std::to_string(number));
  database_.Prepare("DELETE FROM summary_waiting WHERE closure = ?").With(number).Run();
  --ledger_.pending_closures;
}

void RegisterStore::MarkLotterySent(const std::tm& time) {
  std::set<int64_t> waiting;
  for (Statement row = database_.Prepare("SELECT document FROM lottery_waiting"); row.Step();) {
    waiting.insert(row.Integer(0));
  }
  AddEvent(EventKind::kLotterySent, time, {}, NumbersRecord(waiting));
  database_.Prepare("DELETE FROM lottery_waiting").Run();
}

Totals RegisterStore::DaySince(const PeriodStart& start) const {
  return start.first_document <= ledger_.first_of_day ? day() : RestOfDay(start.first_document);
}

Totals RegisterStore::RestOfDay(int64_t first) const {
  Totals totals;
  std::optional<int> closure;
  DocumentSelection selection;
  selection.first = first;
  ForEachDocument(selection, [&](const StoredDocument& document) {
    if (document.closure != closure.value_or(document.closure)) return false;
    closure = document.closure;
    totals.Add(document);
    return true;
  });
  return totals;
}

Totals RegisterStore::PeriodTotals(int period) const {
  const StoredPeriod& stored = Period(period);
  Totals totals = *stored.closed;
  totals.Add(DaySince(stored.start));
  return totals;
}

std::vector<RateSums> RegisterStore::PeriodRates(int period,
                                                 const std::vector<VatRate>& rates) const {
  std::vector<RateSums> all;
  const PeriodStart& start = Period(period).start;
  if (const std::optional<StoredDocument> first = FindById(start.first_document);
      first && first->closure <= ledger_.last_closure) {
    const std::optional<StoredDocument> ahead = FindById(first->id - 1);
    const bool within = ahead && ahead->closure == first->closure;
    // One by one: a memory may have thousands.
    for (int number = first->closure; number <= ledger_.last_closure; ++number) {
      for (const Closure& closure : FindClosures(number, number)) {
        AddByRate(number == first->closure && within ? RestOfDay(first->id) : closure.totals,
                  closure.vat_rates, &all);
      }
    }
  }
  AddByRate(DaySince(start), rates, &all);
  return Something(std::move(all));
}

Totals RegisterStore::GrandTotals() const {
  Totals totals = closed();
  totals.Add(day());
  return totals;
}

void RegisterStore::ClearPeriod(int period, const std::tm& time) {
  AddEvent(EventKind::kPeriodCleared, time, std::to_string(period),
           std::to_string(ledger_.last_document + 1));
  ledger_.periods[static_cast<size_t>(period)] = {{ledger_.last_document + 1, time, true},
                                                  Shared({})};
}

void RegisterStore::SetNextInvoice(int number, const std::tm& time) {
  if (number == ledger_.next_invoice) return;
  AddEvent(EventKind::kInvoiceNumber, time, {}, std::to_string(number));
  ledger_.next_invoice = number;
}

void RegisterStore::CountNonFiscal(const std::tm& time) {
  AddEvent(EventKind::kNonFiscal, time);
  ++ledger_.counters.non_fiscal;
}

// Only what the operation itself changed: what was changed in the file by hand stays apart from the
// chain, or shows in the value before.
void RegisterStore::NoteProgrammed(const ProgrammedTexts& before, ProgrammedTexts&& now,
                                   const std::tm& time) {
  for (auto& [subject, value] : now) {
    const auto found = before.find(subject);
    ProgrammedChange change;
    if (found != before.end()) change.before = found->second;
    if (change.before == value) continue;
    change.after = std::move(value);
    AddEvent(EventKind::kProgrammed, time, subject, ToRecord(change));
  }
}

void RegisterStore::BeginChain(const std::tm& time) {
  ledger_.journal_hash = lorimat::BeginChain(database_, TimeNumber(time));
}

void RegisterStore::AddEvent(EventKind kind, const std::tm& time, std::string subject,
                             std::string value) {
  BeginWrite();
  ChainEvent event;
  event.entry = ledger_.journal_place;
  event.kind = kind;
  event.time = TimeNumber(time);
  event.subject = std::move(subject);
  event.value = std::move(value);
  ledger_.journal_hash = InsertEvent(database_, ledger_.journal_hash, std::move(event));
}

bool RegisterStore::HasRoom() const {
  return ledger_.grand_total < std::numeric_limits<Amount>::max() - kMaxAmount &&
         ledger_.grand_total > std::numeric_limits<Amount>::min() + kMaxAmount;
}

bool RegisterStore::day_open() const {
  const DailyCounters& counters = ledger_.counters;
  return counters.documents > 0 || counters.invoices > 0 || counters.non_fiscal > 0 ||
         counters.abandoned > 0;
}

}  // namespace lorimat
