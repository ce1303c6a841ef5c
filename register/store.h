// What the register keeps: its counters, the totals of the day, the grand total, the documents
// that it registered, the journal and the day closings. This is the one place that a database
// takes over: a document is stored by one call, and so is a closing, whole or not at all.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <vector>

#include "register/closures.h"
#include "register/documents.h"
#include "register/journal.h"
#include "register/totals.h"

namespace lorimat {

class RegisterStore {
 public:
  static constexpr int kLastNumber = 9999;  // of documents in a day, and of closures
  static constexpr int kPeriods = 5;        // numbered from 1

  RegisterStore(int last_closure, int last_invoice)
      : last_closure_(last_closure), next_invoice_(last_invoice + 1) {}

  // Registers a settled document: gives it its numbers and adds it to the totals. The
  // document's kind, time, sums and reference are filled in. Answers its stored form.
  const StoredDocument& Register(StoredDocument document);
  // Counts what does not touch any total.
  void CountAbandoned() { ++counters_.abandoned; }
  void CountNonFiscal() { ++counters_.non_fiscal; }
  // Keeps a document that has ended. Its kind, number, time and lines are filled in.
  void AddToJournal(JournalEntry entry);
  // Makes the day closing in one step: it is kept with its totals, and the counters and totals
  // of the day start again. The entry is its own paper for the journal.
  void CloseDay(const std::tm& time, const std::vector<VatRate>& vat_rates, JournalEntry entry);
  // Notes that the summary of a closure, or the lottery data of a document, has been sent.
  void MarkSent(int closure);
  void MarkLotterySent();
  // The totals of a period (1 to kPeriods) begin again.
  void ClearPeriod(int period, const std::tm& time);

  // Whether the next document still has a number in this day.
  bool HasNumber() const { return counters_.documents < kLastNumber; }
  // Whether the grand total takes another document of any size.
  bool HasRoom() const;
  bool HasClosure() const { return last_closure_ < kLastNumber; }
  // Null for a document that this register did not make.
  const StoredDocument* Find(int closure, int number) const;
  // The last receipt, invoices left aside; null when there is none.
  const StoredDocument* FindLast() const;

  int last_closure() const { return last_closure_; }
  int next_invoice() const { return next_invoice_; }
  void set_next_invoice(int number) { next_invoice_ = number; }
  // The closings that this register made, oldest first.
  const std::vector<Closure>& closures() const { return closures_; }
  // How many of them wait to be sent; the oldest of these, or null.
  int pending_closures() const;
  const Closure* FirstPending() const;
  DailyTotals daily() const { return day_.Summary(); }
  const Totals& day() const { return day_; }
  const DailyCounters& counters() const { return counters_; }
  Amount grand_total() const { return grand_total_; }
  const std::vector<StoredDocument>& documents() const { return documents_; }
  const std::vector<JournalEntry>& journal() const { return journal_; }
  const PeriodStart& period_start(int period) const {
    return periods_[static_cast<size_t>(period) - 1];
  }
  bool day_open() const;

 private:
  int last_closure_;
  int next_invoice_;
  Totals day_;
  DailyCounters counters_;
  Amount grand_total_ = 0;
  std::vector<StoredDocument> documents_;
  std::vector<JournalEntry> journal_;
  std::vector<Closure> closures_;
  std::array<PeriodStart, kPeriods> periods_ = {};
};

}  // namespace lorimat
