#include "register/journal_check.h"

#include <fmt/format.h>

#include <utility>

#include "register/store_facts.h"
#include "register/store_rows.h"

namespace lorimat {
namespace {

constexpr uint64_t kProgressStep = 256;

struct EntryName {
  int kind;
  const char* name;
};
constexpr EntryName kEntryNames[] = {
    {kJournalSale, "receipt"},
    {kJournalInvoice, "invoice"},
    {kJournalRefund, "credit note"},
    {kJournalCancel, "void"},
    {kJournalAbandoned, "cancelled document"},
    {kJournalClosure, "closing"},
    {kJournalNonFiscal, "non-fiscal document"},
};

// "receipt 0001-0005".
std::string NameOf(const JournalEntry& entry) {
  std::string name = "document";
  for (const EntryName& row : kEntryNames) {
    if (row.kind == entry.kind) name = row.name;
  }
  if (entry.kind == kJournalClosure) return fmt::format("{} {:04}", name, entry.closure);
  if (entry.kind == kJournalInvoice) return fmt::format("{} {}", name, entry.number);
  if (entry.number != 0) return fmt::format("{} {:04}-{:04}", name, entry.closure, entry.number);
  return name;
}

// Non-fiscal documents are counted whether or not they go into the journal.
bool SameCounts(const DailyCounters& a, const DailyCounters& b) {
  return a.documents == b.documents && a.sales == b.sales && a.invoices == b.invoices &&
         a.refunds == b.refunds && a.cancels == b.cancels && a.abandoned == b.abandoned;
}

class Checker {
 public:
  Checker(Database& database, const RegisterStore& store,
          const std::optional<StoredOpenDocument>& open)
      : database_(database), store_(store), open_(open) {}

  JournalCheck Run(const std::function<bool(uint64_t, uint64_t)>& progress) {
    // Damaged pages end the reading: what was found before them is told all the same.
    try {
      CheckFile();
    } catch (const RegisterError& failure) {
      Find("{}", failure.cause());
      check_.damaged = true;
    }
    try {
      CheckRows(progress);
    } catch (const RegisterError& failure) {
      if (check_.findings.empty() || check_.findings.back() != failure.cause()) {
        Find("{}", failure.cause());
      }
      check_.damaged = true;
    }
    return std::move(check_);
  }

 private:
  void CheckRows(const std::function<bool(uint64_t, uint64_t)>& progress) {
    Statement strangers = database_.Prepare("PRAGMA foreign_key_check");
    while (strangers.Step()) Find("file: a row of {} belongs to nothing", strangers.Text(0));
    const uint64_t all = store_.journal_count();
    Statement rows =
        database_.Prepare("SELECT " LORIMAT_JOURNAL_COLUMNS " FROM journal ORDER BY place");
    bool whole = true;
    while (whole && rows.Step()) {
      CheckEntry(rows);
      ++check_.entries;
      if (progress && check_.entries % kProgressStep == 0) whole = progress(check_.entries, all);
    }
    // Somebody stopped it: nothing can be said of the end.
    if (!whole) return;
    CheckEnd();
    if (progress) static_cast<void>(progress(check_.entries, all));
  }

  template <typename... Values>
  void Find(fmt::format_string<Values...> text, Values&&... values) {
    if (check_.findings.size() < JournalCheck::kMostFindings) {
      check_.findings.push_back(fmt::format(text, std::forward<Values>(values)...));
    } else {
      ++check_.findings_left_out;
    }
  }

  // The pages of the file, indexes included.
  void CheckFile() {
    Statement rows = database_.Prepare("PRAGMA integrity_check(20)");
    while (rows.Step()) {
      if (rows.Text(0) == "ok") continue;
      // A row may have several lines, the first of them with the name of the database in asterisks.
      for (const std::string& line : SplitLines(rows.Text(0))) {
        if (line.rfind("*** ", 0) == 0) continue;
        Find("the file is damaged ({})", line);
        check_.damaged = true;
      }
    }
  }

  void CheckEntry(const Statement& row) {
    const int64_t place = row.Integer(0);
    const int64_t expected = last_place_ + 1;
    if (place < 1) {
      Find("entry {}: no place in the journal", place);
      return;
    }
    const bool gap = place != expected;
    if (gap && place == expected + 1) Find("entry {}: missing", expected);
    if (gap && place != expected + 1) Find("entries {} to {}: missing", expected, place - 1);
    last_place_ = place;
    JournalEntry entry;
    try {
      entry = ReadEntry(database_, row);
    } catch (const DamageError&) {
      Find("entry {}: it cannot be read", place);
      after_gap_ = true;
      day_closure_ = 0;
      return;
    }
    if (entry.kind == kJournalAbandoned) ++counters_.abandoned;
    const std::optional<std::string> facts = Facts(place, entry);
    const std::string hash =
        EntryHash(previous_, static_cast<uint64_t>(place), entry, facts.value_or(""));
    // Where the hash of the entry before was changed, this one shows that it was another.
    const bool fits = hash == entry.hash || EntryHash(computed_, static_cast<uint64_t>(place),
                                                      entry, facts.value_or("")) == entry.hash;
    // Behind a gap there is no hash to go on from, and without its facts none to compare.
    if (!fits && !gap && !after_gap_ && facts) {
      Find("entry {}, {}: its hash does not fit: the entry, or what it stands for, was changed",
           place, NameOf(entry));
    }
    if (gap || after_gap_) day_closure_ = 0;
    FollowDays(place, entry, fits && !gap);
    after_gap_ = false;
    computed_ = hash;
    previous_ = std::move(entry.hash);
  }

  // Every entry belongs to the closing that ends its day, and the days count on by one: otherwise
  // numbers of documents would be given out again, or left out. What does not fit is told already.
  void FollowDays(int64_t place, const JournalEntry& entry, bool fits) {
    const bool closing = entry.kind == kJournalClosure;
    if (!fits) {
      if (closing) day_closure_ = 0;
      return;
    }
    if (day_closure_ != 0 && entry.closure != day_closure_) {
      Find("entry {}, {}: it is of the day {:04}, and the day was {:04}", place, NameOf(entry),
           entry.closure, day_closure_);
    }
    day_closure_ = int64_t{entry.closure} + (closing ? 1 : 0);
  }

  // The facts that an entry stands for, compared with the sums on the way. Nothing when they are
  // not there.
  std::optional<std::string> Facts(int64_t place, const JournalEntry& entry) {
    if (entry.kind == kJournalClosure) return ClosingFacts(place, entry);
    if (entry.document == 0) return std::string();
    if (entry.document <= last_document_) {
      Find("entry {}, {}: its document has an entry already", place, NameOf(entry));
      return std::nullopt;
    }
    FindDocumentsWithoutEntry(entry.document);
    last_document_ = entry.document;
    try {
      const std::optional<StoredDocument> document = store_.FindById(entry.document);
      if (!document) {
        Find("entry {}, {}: its document is missing", place, NameOf(entry));
        return std::nullopt;
      }
      Count(*document);
      return DocumentFacts(*document);
    } catch (const DamageError&) {
      Find("entry {}, {}: its document cannot be read", place, NameOf(entry));
      return std::nullopt;
    }
  }

  std::optional<std::string> ClosingFacts(int64_t place, const JournalEntry& entry) {
    std::vector<Closure> found;
    try {
      found = store_.FindClosures(entry.closure, entry.closure);
    } catch (const DamageError&) {
      Find("entry {}, {}: the closing cannot be read", place, NameOf(entry));
    }
    std::optional<std::string> facts;
    if (found.size() == 1) {
      const Closure& closure = found[0];
      facts = ClosureFacts(closure);
      CheckSums(NameOf(entry), closure.totals, closure.counters, closure.grand_total);
      closed_.Add(closure.totals);
      grand_total_ = closure.grand_total;
    } else {
      Find("entry {}, {}: the closing is missing", place, NameOf(entry));
    }
    day_ = Totals();
    counters_ = DailyCounters();
    return facts;
  }

  void CheckSums(const std::string& name, const Totals& totals, const DailyCounters& counters,
                 Amount grand_total) {
    if (totals.ToRecord() != day_.ToRecord()) {
      Find("{}: its totals are not the sum of its documents", name);
    }
    if (!SameCounts(counters, counters_)) {
      Find("{}: its counters are not those of its documents", name);
    }
    Amount expected = grand_total_;
    AddTo(&expected, totals.Summary().net());
    if (grand_total != expected) {
      Find("{}: the grand total is not that of the days before and this one", name);
    }
  }

  void Count(const StoredDocument& document) {
    ++check_.documents;
    day_.Add(document);
    switch (document.kind) {
      case DocumentKind::kSale:
        ++counters_.sales;
        break;
      case DocumentKind::kInvoice:
        ++counters_.invoices;
        break;
      case DocumentKind::kRefund:
        ++counters_.refunds;
        break;
      case DocumentKind::kCancel:
        ++counters_.cancels;
        break;
    }
    if (document.kind != DocumentKind::kInvoice) ++counters_.documents;
  }

  // Those between the last one that had an entry and this one.
  void FindDocumentsWithoutEntry(int64_t before) {
    Statement rows = database_.Prepare("SELECT " LORIMAT_DOCUMENT_COLUMNS
                                       " FROM document WHERE id > ? AND id < ? ORDER BY id");
    rows.With(last_document_, before);
    while (rows.Step()) {
      const int64_t id = rows.Integer(0);
      if (!open_ || open_->notes.id != id) {
        Find("document {:04}-{:04}: it has no entry in the journal", rows.Integer(2),
             rows.Integer(3));
      }
      try {
        Count(ReadDocument(database_, rows));
      } catch (const DamageError&) {
        Find("document {:04}-{:04}: it cannot be read", rows.Integer(2), rows.Integer(3));
      }
      last_document_ = id;
    }
  }

  void CheckEnd() {
    const int64_t made = static_cast<int64_t>(store_.journal_count());
    if (last_place_ == made - 1) {
      Find("entry {}: missing at the end", made);
    } else if (last_place_ < made) {
      Find("entries {} to {}: missing at the end", last_place_ + 1, made);
    } else if (last_place_ > made) {
      Find("entry {}: behind the last one, which is {}", last_place_, made);
    } else if (made > 0 && previous_ != store_.journal_hash()) {
      Find("entry {}: it is not the one that was made last", made);
    } else if (day_closure_ != 0 && day_closure_ != int64_t{store_.last_closure()} + 1) {
      Find("the day: its number is {:04}, and the journal is at {:04}",
           int64_t{store_.last_closure()} + 1, day_closure_);
    }
    FindDocumentsWithoutEntry(INT64_MAX);
    if (last_document_ != store_.document_count()) {
      Find("documents: {} were registered, the last one there is the {}.", store_.document_count(),
           last_document_);
    }
    CheckSums("the day", store_.day(), store_.counters(), store_.grand_total());
    if (closed_.ToRecord() != store_.closed().ToRecord()) {
      Find("the totals of all days are not the sum of the closings");
    }
    Statement rows = database_.Prepare(
        "SELECT number FROM closure WHERE number NOT IN "
        "(SELECT journal.closure FROM journal WHERE kind = ?) ORDER BY number");
    rows.With(static_cast<int>(kJournalClosure));
    while (rows.Step()) Find("closing {:04}: it has no entry in the journal", rows.Integer(0));
  }

  Database& database_;
  const RegisterStore& store_;
  const std::optional<StoredOpenDocument>& open_;
  JournalCheck check_;
  int64_t last_place_ = 0;
  int64_t last_document_ = 0;
  std::string previous_;  // the hash of the entry before, as it is stored
  std::string computed_;  // and as it comes out
  bool after_gap_ = false;
  int64_t day_closure_ = 0;  // that the next entry belongs to; 0: not known
  Totals day_;
  Totals closed_;
  DailyCounters counters_;
  Amount grand_total_ = 0;
};

}  // namespace

JournalCheck CheckJournal(Database& database, const RegisterStore& store,
                          const std::optional<StoredOpenDocument>& open,
                          const std::function<bool(uint64_t done, uint64_t all)>& progress) {
  return Checker(database, store, open).Run(progress);
}

}  // namespace lorimat
