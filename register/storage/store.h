// What the register keeps: its counters, the totals of the day, the grand total, the documents
// that it registered, the journal and the day closings. Counters and totals are in memory;
// documents, journal and closings are rows of the database, read when they are asked for.
//
// What changes becomes part of the database's unit of work at once; Keep writes counters and
// totals at its end. Mark goes before a unit of work, TakeBack forgets what it did to them.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "register/document/documents.h"
#include "register/storage/chain.h"
#include "register/storage/database.h"
#include "register/totals/closures.h"
#include "register/totals/journal.h"
#include "register/totals/rate_sums.h"
#include "register/totals/totals.h"

namespace lorimat {

// Which documents are wanted; times count to the minute, both ends included.
struct DocumentSelection {
  std::optional<std::tm> from = {};
  std::optional<std::tm> to = {};
  int64_t first = 1;     // by their place among all
  bool details = false;  // lines and payments too
};

// Documents by time, for those who read part by part; times to the second, YYYYMMDDHHMMSS, both
// ends included.
struct DocumentSpan {
  int64_t from = 0;
  int64_t to = 99'999'999'999'999;
  int64_t behind = 0;  // the document, by its place among all, where the part before ended; 0: none
  size_t most = 100;
};

// A registered document with its lines and payments, and its entry of the journal.
struct KeptDocument {
  StoredDocument document;
  JournalEntry entry;
};

// What went back of a sale.
struct PaidBack {
  Amount total = 0;
  std::map<int, Amount> by_vat;  // gross by VAT entry
};

class RegisterStore {
 public:
  static constexpr int kLastNumber = 9999;  // of documents in a day, and of closures
  static constexpr int kToldAhead = 9900;   // from here on the paper says how many are left
  static constexpr int kPeriods = 5;        // numbered from 1

  // The database has its tables. LoadLedger or MakeLedger is to follow.
  explicit RegisterStore(Database& database) : database_(database) {}

  void MakeLedger(int last_closure, int last_invoice);
  void LoadLedger();
  // Begins the chain of a new register, whose tables and values are stored.
  void BeginChain(const std::tm& time);

  // Registers a settled document: gives it its numbers and adds it to the totals. The
  // document's kind, time, sums, reference, lines and payments are filled in. Answers its
  // stored form.
  StoredDocument Register(StoredDocument document);
  // Counts what does not touch any total.
  void CountAbandoned() { ++ledger_.counters.abandoned; }
  void CountNonFiscal(const std::tm& time);
  // Keeps a document that has ended. Its kind, number, time and lines are filled in, and the
  // document if it is of a registered one.
  void AddToJournal(JournalEntry entry);
  // Makes the day closing in one step: it is kept with its totals, and the counters and totals
  // of the day start again. The entry is its own paper for the journal.
  void CloseDay(const std::tm& time, const std::vector<VatRate>& vat_rates, JournalEntry entry);
  // Notes that the summary of a closure, or the lottery data of all documents, has been sent.
  void MarkSent(int closure, const std::tm& time);
  void MarkLotterySent(const std::tm& time);
  // The totals of a period (1 to kPeriods) begin again.
  void ClearPeriod(int period, const std::tm& time);
  // The next invoice gets this number.
  void SetNextInvoice(int number, const std::tm& time);
  // Takes into the chain what has been programmed: the values before and those that are stored
  // now.
  void NoteProgrammed(const ProgrammedTexts& before, ProgrammedTexts&& now, const std::tm& time);

  // Whether the next document still has a number in this day.
  bool HasNumber() const { return ledger_.counters.documents < kLastNumber; }
  // Whether the grand total takes another document of any size.
  bool HasRoom() const;
  bool HasClosure() const { return ledger_.last_closure < kLastNumber; }

  // --- Documents. Nothing for one that this register did not make, or that is an invoice.
  std::optional<StoredDocument> Find(int closure, int number) const;
  // The last receipt, invoices left aside.
  std::optional<StoredDocument> FindLast() const;
  std::optional<StoredDocument> FindById(int64_t id) const;
  // When the first document of a day was registered, by the number of its closing, YYYYMMDDHHMMSS;
  // nothing where it had none.
  std::optional<int64_t> FirstTimeOf(int closure) const;
  // What the credit notes and voids that refer to the document come to; nothing without one.
  std::optional<PaidBack> FindPaidBack(int closure, int number) const;
  // In the order in which they were registered, until `each` answers false.
  void ForEachDocument(const DocumentSelection& selection,
                       const std::function<bool(const StoredDocument&)>& each) const;
  // In the order of their times, without lines and payments.
  std::vector<StoredDocument> FindDocuments(const DocumentSpan& span) const;
  // Those of a day and a number: a receipt, credit note or void, an invoice, or both.
  std::vector<KeptDocument> FindKept(int closure, int number) const;
  // Receipts with a lottery code: those that wait to be sent, and those of a range of closures
  // and numbers.
  std::vector<StoredDocument> PendingLottery() const;
  std::vector<StoredDocument> Lottery(int from_closure, int from_number, int to_closure,
                                      int to_number) const;

  // --- Journal, oldest first, until `each` answers false; and the entry in a place.
  void ForEachEntry(const JournalSelection& selection,
                    const std::function<bool(uint64_t place, const JournalEntry&)>& each) const;
  std::optional<JournalEntry> FindEntry(uint64_t place) const;
  // The first places behind one that a selection takes, by closings and times alone.
  std::vector<uint64_t> FindPlaces(const JournalSelection& selection, uint64_t behind,
                                   size_t most) const;
  void ForEveryEntry(const std::function<bool(uint64_t place, const JournalEntry&)>& each) const;

  // --- Closings that this register made, oldest first; both ends included
  std::vector<Closure> FindClosures(int from, int to) const;
  std::vector<Closure> FindClosures(const std::tm& from, const std::tm& to) const;
  std::optional<Closure> LastClosure() const;
  // How many of them wait to be sent, and the oldest of these.
  int pending_closures() const { return ledger_.pending_closures; }
  std::optional<Closure> FirstPending() const;

  // --- All of them, for those who look at a small register
  std::vector<StoredDocument> documents() const;
  std::vector<JournalEntry> journal() const;
  std::vector<Closure> closures() const { return FindClosures(0, kLastNumber); }

  // --- Counters and totals
  int last_closure() const { return ledger_.last_closure; }
  int next_invoice() const { return ledger_.next_invoice; }
  DailyTotals daily() const { return day().Summary(); }
  const Totals& day() const { return *ledger_.day; }
  const DailyCounters& counters() const { return ledger_.counters; }
  Amount grand_total() const { return ledger_.grand_total; }
  bool day_open() const;
  // Since the register began.
  Totals GrandTotals() const;
  const PeriodStart& period_start(int period) const { return Period(period).start; }
  Totals PeriodTotals(int period) const;
  // The same by rate, each day at the rates that it had, the open one at `rates`: reads the
  // closings of the period.
  std::vector<RateSums> PeriodRates(int period, const std::vector<VatRate>& rates) const;
  // Numbers of rows: the place of the last one, which all count from 1.
  int64_t document_count() const { return ledger_.last_document; }
  uint64_t journal_count() const { return static_cast<uint64_t>(ledger_.journal_place); }
  // Of the chain's last link: an entry, or an event (register/storage/chain.h).
  const std::string& journal_hash() const { return ledger_.journal_hash; }
  // Of the last document and closing, YYYYMMDDHHMMSS; 0 when there is none.
  int64_t last_document_time() const { return ledger_.last_document_time; }
  int64_t last_closure_time() const { return ledger_.last_closure_time; }
  // Of the document that opened the day, likewise.
  int64_t first_of_day_time() const { return ledger_.first_of_day_time; }
  // The sum of all closed days.
  const Totals& closed() const { return *ledger_.periods[0].closed; }

  // --- The unit of work. Begins one if none is under way.
  void BeginWrite();
  // Notes counters and totals as they are stored. To be called ahead of each unit of work; when it
  // fails, nothing of them has changed.
  void Mark() { kept_ = ledger_; }
  // Whether counters or totals have changed since then, and are to be written.
  bool Changed() const { return !(ledger_ == kept_); }
  // Whether a document has been registered since then, or a day closed.
  bool Registered() const { return ledger_.last_document != kept_.last_document; }
  bool ClosedDay() const { return ledger_.last_closure != kept_.last_closure; }
  // Writes what has changed of them.
  void Keep();
  // They are again as Mark found them; it has to come again before the next unit. Needs no memory.
  void TakeBack() noexcept {
    static_assert(std::is_nothrow_move_assignable_v<Ledger>);
    ledger_ = std::move(kept_);
    last_facts_of_ = 0;
  }

 private:
  // Never changed, so that states share them.
  using SharedTotals = std::shared_ptr<const Totals>;

  struct StoredPeriod {
    PeriodStart start;
    SharedTotals closed;  // the closings since

    bool operator==(const StoredPeriod& other) const {
      return closed == other.closed && start.cleared == other.start.cleared &&
             start.first_document == other.start.first_document;
    }
  };

  struct Ledger {
    int last_closure = 0;
    int next_invoice = 1;
    DailyCounters counters;
    Amount grand_total = 0;
    int64_t last_document = 0;
    int64_t first_of_day = 1;  // the first document of the day, or the one to come
    SharedTotals day;
    int64_t journal_place = 0;
    std::string journal_hash;
    std::array<StoredPeriod, kPeriods + 1> periods;  // 0: since the register began
    int pending_closures = 0;
    // Of rows beside it.
    int64_t last_document_time = 0;
    int64_t last_closure_time = 0;
    int64_t first_of_day_time = 0;

    bool operator==(const Ledger&) const = default;
  };

  const StoredPeriod& Period(int period) const {
    return ledger_.periods[static_cast<size_t>(period)];
  }
  // The part of the day that falls into a period.
  Totals DaySince(const PeriodStart& start) const;
  // The documents from this place on, up to the end of their day.
  Totals RestOfDay(int64_t first) const;
  void InsertDocument(const StoredDocument& document, std::string_view sums);
  void InsertEntry(JournalEntry entry, const std::string& facts);
  void AddEvent(EventKind kind, const std::tm& time, std::string subject = {},
                std::string value = {});
  void WriteLedger();
  void WritePeriods(bool all);

  Database& database_;
  Ledger ledger_;
  Ledger kept_;
  // What the journal says of the document that was registered last.
  int64_t last_facts_of_ = 0;
  std::string last_facts_;
};

}  // namespace lorimat
