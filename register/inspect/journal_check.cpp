#include "register/inspect/journal_check.h"

#include <optional>
#include <utility>

#include "register/desk/clock_check.h"
#include "register/storage/chain.h"
#include "register/storage/chain_state.h"
#include "register/storage/entry_digest.h"
#include "register/storage/file_check.h"
#include "register/storage/store_rows.h"
#include "register/storage/work_watch.h"
#include "register/value/row_encoding.h"

namespace lorimat {
namespace {

constexpr uint64_t kProgressStep = 256;

// The first event, when it is what the chain begins with.
std::optional<ChainEvent> FirstEvent(Database& database) {
  Statement row = database.Prepare(
      kSql<"SELECT ", kEventColumns,
           " FROM event WHERE place = 1 AND kind = ", kSqlNumber<EventKind::kBeginning>>);
  if (!row.Step()) return std::nullopt;
  return ReadEvent(row);
}

class Checker {
 public:
  Checker(Database& database, const RegisterStore& store,
          const std::optional<StoredOpenDocument>& open)
      : database_(database), store_(store), open_(open) {}

  JournalCheck Run(const std::function<bool(uint64_t, uint64_t)>& progress) {
    std::optional<WorkWatch> watch;
    if (progress) {
      watch.emplace(database_, [&] { return progress(check_.entries, store_.journal_count()); });
    }
    try {
      RunAll(progress);
    } catch (const WorkStopped&) {
      check_.stopped = true;
    }
    return std::move(check_);
  }

 private:
  void RunAll(const std::function<bool(uint64_t, uint64_t)>& progress) {
    // Damaged pages end the reading: what was found before them is told all the same.
    try {
      CheckPages(database_, [this](Finding finding) {
        check_.damaged = true;
        Find(std::move(finding));
      });
    } catch (const RegisterError& failure) {
      Unreadable(failure);
    }
    try {
      CheckRows(progress);
    } catch (const RegisterError& failure) {
      Unreadable(failure);
    }
  }

  void Unreadable(const RegisterError& error) {
    Finding finding = {.kind = FindingKind::kUnreadable, .failure = error.failure()};
    finding.failure.place = FailurePlace::kNone;
    finding.failure.file.clear();
    if (check_.findings.empty() || check_.findings.back() != finding) Find(std::move(finding));
    check_.damaged = true;
  }

  void CheckRows(const std::function<bool(uint64_t, uint64_t)>& progress) {
    CheckReferences(database_, finder_);
    const std::optional<ChainEvent> first = FirstEvent(database_);
    std::optional<Beginning> beginning;
    if (first) beginning = ReadBeginning(first->value);
    if (!beginning) Find({.kind = FindingKind::kNoBeginning});
    if (first) begun_behind_ = first->entry;
    state_.emplace(beginning, finder_);
    const uint64_t all = store_.journal_count();
    Statement rows =
        database_.Prepare(kSql<"SELECT ", kJournalColumns, " FROM journal ORDER BY place">);
    Statement events =
        database_.Prepare(kSql<"SELECT ", kEventColumns, " FROM event ORDER BY place">);
    next_event_ = events.Step();
    while (rows.Step()) {
      CheckEvents(events, rows.Integer(0));
      CheckEntry(rows);
      ++check_.entries;
      if (!progress || check_.entries % kProgressStep != 0) continue;
      if (!progress(check_.entries, all)) throw WorkStopped();
    }
    CheckEvents(events, std::nullopt);
    CheckEnd();
    CheckValues(database_, finder_);
    if (progress) static_cast<void>(progress(check_.entries, all));
  }

  void Find(Finding finding) {
    if (check_.findings.size() < JournalCheck::kMostFindings) {
      check_.findings.push_back(std::move(finding));
    } else {
      ++check_.findings_left_out;
    }
  }
  void Find(FindingKind kind, int64_t place, const JournalEntry& entry, int64_t value = 0,
            int64_t expected = 0) {
    Finding finding = Of(kind, place, entry);
    finding.value = value;
    finding.expected = expected;
    Find(std::move(finding));
  }
  static Finding Of(FindingKind kind, int64_t place, const JournalEntry& entry) {
    return {.kind = kind,
            .entry = place,
            .document = entry.kind,
            .closure = entry.closure,
            .number = entry.number};
  }
  // Those of a row of documents.
  static Finding Of(FindingKind kind, const Statement& row) {
    Finding finding = {.kind = kind, .closure = row.Integer(2), .number = row.Integer(3)};
    const int64_t index = row.Integer(1);
    if (index >= 0 && index <= static_cast<int64_t>(DocumentKind::kCancel)) {
      finding.document = JournalKindOf(static_cast<DocumentKind>(index));
    }
    return finding;
  }

  // --- The links of the chain

  // Whether the hash of a link is the one that follows the link before, by `hash_behind`. Where
  // the hash of that one was changed, this one shows that it was another.
  template <typename HashBehind>
  bool Follows(std::string hash, HashBehind hash_behind) {
    std::string right = hash_behind(previous_);
    const bool fits = right == hash || hash_behind(computed_) == hash;
    computed_ = std::move(right);
    previous_ = std::move(hash);
    return fits;
  }

  // Those ahead of the entry in a place, or all that are left.
  void CheckEvents(Statement& events, std::optional<int64_t> entry) {
    for (; next_event_ && (!entry || events.Integer(1) < *entry); next_event_ = events.Step()) {
      CheckEvent(events);
    }
  }

  void CheckEvent(const Statement& row) {
    const int64_t place = row.Integer(0);
    const int64_t expected = last_event_ + 1;
    const bool gap = place != expected;
    if (gap) {
      const bool one = place == expected + 1;
      Find({.kind = one ? FindingKind::kEventMissing : FindingKind::kEventsMissing,
            .entry = expected,
            .last = place - 1});
    }
    last_event_ = place;
    event_is_last_ = true;
    try {
      const ChainEvent event = ReadEvent(row);
      const bool fits = Follows(
          event.hash, [&event](const std::string& previous) { return EventHash(previous, event); });
      if (!fits && !gap && !after_gap_) {
        Find({.kind = FindingKind::kEventHash, .entry = place});
      }
      after_gap_ = false;
      if (event.place == 1 && day_closure_ == 0) {
        if (const std::optional<Beginning> beginning = ReadBeginning(event.value)) {
          day_closure_ = beginning->last_closure + 1;
        }
      }
      state_->Add(event);
      if (fits) NoteSetBack(event);
    } catch (const DamageError&) {
      Find({.kind = FindingKind::kEventUnreadable, .entry = place});
      after_gap_ = true;
    }
  }

  void CheckEntry(const Statement& row) {
    const int64_t place = row.Integer(0);
    const int64_t expected = last_place_ + 1;
    if (place < 1) {
      Find({.kind = FindingKind::kEntryWithoutPlace, .entry = place});
      return;
    }
    const bool gap = place != expected;
    if (gap) {
      const bool one = place == expected + 1;
      Find({.kind = one ? FindingKind::kEntryMissing : FindingKind::kEntriesMissing,
            .entry = expected,
            .last = place - 1});
    }
    last_place_ = place;
    event_is_last_ = false;
    JournalEntry entry;
    try {
      entry = ReadEntry(database_, row);
    } catch (const DamageError&) {
      Find({.kind = FindingKind::kEntryUnreadable, .entry = place});
      after_gap_ = true;
      day_closure_ = 0;
      return;
    }
    if (entry.kind == kJournalAbandoned) state_->CountAbandoned();
    const std::optional<std::string> facts = Facts(place, entry);
    const bool fits = Follows(entry.hash, [&](const std::string& previous) {
      return EntryHash(previous, static_cast<uint64_t>(place), entry, facts.value_or(""));
    });
    // Behind a gap there is no hash to go on from, and without its facts none to compare.
    if (!fits && !gap && !after_gap_ && facts) Find(FindingKind::kEntryHash, place, entry);
    if (gap || after_gap_) day_closure_ = 0;
    FollowDays(place, entry, fits && !gap);
    if (fits) FollowTimes(place, entry);
    after_gap_ = false;
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
      Find(FindingKind::kEntryDay, place, entry, entry.closure, day_closure_);
    }
    day_closure_ = int64_t{entry.closure} + (closing ? 1 : 0);
  }

  // --- Times

  void Note(Finding note) {
    if (check_.notes.size() < JournalCheck::kMostFindings) {
      check_.notes.push_back(std::move(note));
    } else {
      ++check_.notes_left_out;
    }
  }

  void NoteSetBack(const ChainEvent& event) {
    if (event.kind != EventKind::kProgrammed || event.subject != kClockSetBackName) return;
    const std::optional<ProgrammedChange> change = ReadProgrammedChange(event.value);
    const std::optional<ClockSetBack> back =
        change ? ReadClockSetBack(change->after) : std::nullopt;
    if (!back) return;
    Note({.kind = FindingKind::kClockSetBack,
          .entry = event.place,
          .value = back->from,
          .expected = back->to});
    last_time_ = back->to;
  }

  // A register that did not hold its clock against them may have documents that go back.
  void FollowTimes(int64_t place, const JournalEntry& entry) {
    if (entry.kind != kJournalClosure && entry.document == 0) return;
    const int64_t time = TimeNumber(entry.time);
    if (last_time_ != 0 && LiesBehind(time, last_time_)) {
      Finding note = Of(FindingKind::kTimeBackwards, place, entry);
      note.value = time;
      note.expected = last_time_;
      Note(std::move(note));
    }
    last_time_ = time;
  }

  // --- What they stand for

  // The facts that an entry stands for, compared with the sums on the way. Nothing when they are
  // not there.
  std::optional<std::string> Facts(int64_t place, const JournalEntry& entry) {
    if (entry.kind == kJournalClosure) return ClosingFacts(place, entry);
    if (entry.document == 0) return std::string();
    if (entry.document <= last_document_) {
      Find(FindingKind::kDocumentTwice, place, entry);
      return std::nullopt;
    }
    FindDocumentsWithoutEntry(entry.document);
    last_document_ = entry.document;
    try {
      const std::optional<StoredDocument> document = store_.FindById(entry.document);
      if (!document) {
        Find(FindingKind::kDocumentMissing, place, entry);
        return std::nullopt;
      }
      ++check_.documents;
      state_->Add(*document, Of({}, place, entry));
      return DocumentFacts(*document);
    } catch (const DamageError&) {
      Find(FindingKind::kDocumentUnreadable, place, entry);
      return std::nullopt;
    }
  }

  std::optional<std::string> ClosingFacts(int64_t place, const JournalEntry& entry) {
    std::vector<Closure> found;
    try {
      found = store_.FindClosures(entry.closure, entry.closure);
    } catch (const DamageError&) {
      Find(FindingKind::kClosureUnreadable, place, entry);
    }
    std::optional<std::string> facts;
    if (found.size() == 1) {
      const Closure& closure = found[0];
      facts = ClosureFacts(closure);
      DailyCounters counters = closure.counters;
      // Earlier on nothing tells how many non-fiscal documents the journal does not have.
      if (place <= begun_behind_) counters.non_fiscal = state_->counters().non_fiscal;
      if (closure.totals.ToRecord() != state_->day().ToRecord()) {
        Find(FindingKind::kClosureTotals, 0, entry);
      }
      if (counters != state_->counters()) Find(FindingKind::kClosureCounters, 0, entry);
      if (!Continues(closure.totals, closure.grand_total)) {
        Find(FindingKind::kClosureGrandTotal, 0, entry);
      }
      grand_total_ = closure.grand_total;
    } else {
      Find(FindingKind::kClosureMissing, place, entry);
    }
    state_->Close(entry.closure, last_document_);
    return facts;
  }

  // Whether the grand total is that of the days before and these totals.
  bool Continues(const Totals& totals, Amount grand_total) const {
    Amount expected = grand_total_;
    AddTo(&expected, totals.Summary().net());
    return grand_total == expected;
  }

  // Those between the last one that had an entry and this one.
  void FindDocumentsWithoutEntry(int64_t before) {
    Statement rows = database_.Prepare(
        kSql<"SELECT ", kDocumentColumns, " FROM document WHERE id > ? AND id < ? ORDER BY id">);
    rows.With(last_document_, before);
    while (rows.Step()) {
      const int64_t id = rows.Integer(0);
      Finding finding = Of(FindingKind::kNoEntry, rows);
      if (!open_ || open_->notes.id != id) Find(finding);
      try {
        const StoredDocument document = ReadDocument(database_, rows);
        ++check_.documents;
        state_->Add(document, finding);
      } catch (const DamageError&) {
        finding.kind = FindingKind::kLoneDocumentUnreadable;
        Find(std::move(finding));
      }
      last_document_ = id;
    }
  }

  // --- The end

  void CheckEnd() {
    const int64_t made = static_cast<int64_t>(store_.journal_count());
    if (last_place_ < made) {
      const bool one = last_place_ == made - 1;
      Find({.kind = one ? FindingKind::kEntryMissingAtEnd : FindingKind::kEntriesMissingAtEnd,
            .entry = last_place_ + 1,
            .last = made});
    } else if (last_place_ > made) {
      Find({.kind = FindingKind::kEntryBehindLast, .entry = last_place_, .expected = made});
    } else if (previous_ != store_.journal_hash()) {
      Find({.kind = event_is_last_ ? FindingKind::kEventNotLast : FindingKind::kEntryNotLast,
            .entry = event_is_last_ ? last_event_ : made});
    } else if (day_closure_ != 0 && day_closure_ != int64_t{store_.last_closure()} + 1) {
      Find({.kind = FindingKind::kDayNumber,
            .value = int64_t{store_.last_closure()} + 1,
            .expected = day_closure_});
    }
    const int64_t last_with_entry = last_document_;
    FindDocumentsWithoutEntry(INT64_MAX);
    if (last_document_ != store_.document_count()) {
      Find({.kind = FindingKind::kDocumentCount,
            .value = store_.document_count(),
            .expected = last_document_});
    }
    if (store_.day().ToRecord() != state_->day().ToRecord()) {
      Find({.kind = FindingKind::kDayTotals});
    }
    DailyCounters counters = store_.counters();
    if (!state_->begun()) counters.non_fiscal = state_->counters().non_fiscal;
    if (counters != state_->counters()) Find({.kind = FindingKind::kDayCounters});
    if (!Continues(store_.day(), store_.grand_total())) {
      Find({.kind = FindingKind::kDayGrandTotal});
    }
    state_->Compare(database_);
    CheckOpenDocument(last_with_entry);
    Statement closings = database_.Prepare(
        "SELECT number FROM closure WHERE number NOT IN "
        "(SELECT journal.closure FROM journal WHERE kind = ?) ORDER BY number");
    closings.With(static_cast<int>(kJournalClosure));
    while (closings.Step()) {
      Find({.kind = FindingKind::kClosureNoEntry, .closure = closings.Integer(0)});
    }
    // Their facts have lines and payments in their order alone.
    Statement places = database_.Prepare(
        "SELECT id, kind, closure, number FROM document WHERE id IN "
        "(SELECT document_line.document FROM document_line GROUP BY document_line.document "
        "HAVING min(place) <> 1 OR max(place) <> count(*) UNION "
        "SELECT document_payment.document FROM document_payment GROUP BY document_payment.document "
        "HAVING min(place) <> 1 OR max(place) <> count(*)) ORDER BY id");
    while (places.Step()) Find(Of(FindingKind::kLineOrder, places));
  }

  // What a start goes by that ends the document: one that was paid is the last that was
  // registered, and has no entry yet.
  void CheckOpenDocument(int64_t last_with_entry) {
    if (!open_) return;
    Statement row = database_.Prepare(
        "SELECT state, kind, begun, lines, subtotal, (SELECT count(*) FROM open_document) "
        "FROM open_document");
    if (!row.Step()) return;
    const DocumentNotes& notes = open_->notes;
    bool good = row.Integer(0) == static_cast<int>(open_->state) &&
                row.Integer(1) == static_cast<int>(open_->kind) &&
                row.Integer(2) == TimeNumber(notes.begun) && row.Integer(3) == open_->lines &&
                (notes.cash != CashMove::kNone || row.Integer(4) == open_->subtotal);
    if (notes.id != 0) {
      const bool last = notes.id == store_.document_count() && notes.id > last_with_entry;
      const std::optional<StoredDocument> document = store_.FindById(notes.id);
      good = good && last && document && document->number == notes.number &&
             document->kind == open_->kind && document->total == open_->subtotal &&
             TimeNumber(document->time) == TimeNumber(notes.time);
    }
    if (!good) Find({.kind = FindingKind::kOpenDocument});
  }

  Database& database_;
  const RegisterStore& store_;
  const std::optional<StoredOpenDocument>& open_;
  JournalCheck check_;
  const ChainState::Finder finder_ = [this](Finding finding) { Find(std::move(finding)); };
  std::optional<ChainState> state_;
  int64_t last_place_ = 0;
  int64_t last_event_ = 0;
  bool next_event_ = false;     // whether there is one
  bool event_is_last_ = false;  // of the links so far
  int64_t begun_behind_ = 0;    // the entries that are older than the beginning
  int64_t last_document_ = 0;
  std::string previous_;  // the hash of the link before, as it is stored
  std::string computed_;  // and as it comes out
  bool after_gap_ = false;
  int64_t day_closure_ = 0;  // that the next entry belongs to; 0: not known
  Amount grand_total_ = 0;
  int64_t last_time_ = 0;  // of the document or closing before; 0: there is none
};

}  // namespace

JournalCheck CheckJournal(Database& database, const RegisterStore& store,
                          const std::optional<StoredOpenDocument>& open,
                          const std::function<bool(uint64_t done, uint64_t all)>& progress) {
  return Checker(database, store, open).Run(progress);
}

}  // namespace lorimat
