#include "register/storage/chain_state.h"

#include <algorithm>
#include <charconv>
#include <iterator>
#include <utility>
#include <vector>

namespace lorimat {
namespace {

int64_t Number(const std::string& text) {
  int64_t number = 0;
  std::from_chars(text.data(), text.data() + text.size(), number);
  return number;
}

std::set<int64_t> Numbers(Statement rows) {
  std::set<int64_t> numbers;
  while (rows.Step()) numbers.insert(rows.Integer(0));
  return numbers;
}

std::vector<int64_t> Without(const std::set<int64_t>& all, const std::set<int64_t>& those) {
  std::vector<int64_t> left;
  std::set_difference(all.begin(), all.end(), those.begin(), those.end(), std::back_inserter(left));
  return left;
}

}  // namespace

ChainState::ChainState(const std::optional<Beginning>& beginning, Finder find)
    : beginning_(beginning), find_(std::move(find)) {
  if (!beginning_) return;
  for (const auto& [number, start] : beginning_->periods) {
    periods_[number];
    if (start.cleared) begin_later_[number] = start;
  }
}

void ChainState::Add(const StoredDocument& document, const Finding& entry) {
  for (auto later = begin_later_.begin(); later != begin_later_.end();) {
    const auto one = later++;
    if (document.id < one->second.first_document) continue;
    Clear(one->first, one->second);
    begin_later_.erase(one);
  }
  day_.Add(document);
  for (auto& [number, period] : periods_) {
    if (period.within_day) period.day.Add(document);
  }
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
  // The beginning knows what came of those that were registered before it, though the entry of one
  // that was in its ending comes later.
  if (!begun_ || document.id <= beginning_->last_document) return;
  if (document.kind == DocumentKind::kSale && !document.lottery_code.empty()) {
    lottery_.insert(document.id);
  }
  if (document.kind != DocumentKind::kInvoice) return;
  if (document.number != next_invoice_) {
    Finding finding = entry;
    finding.kind = FindingKind::kInvoiceNumber;
    finding.value = document.number;
    finding.expected = next_invoice_;
    find_(std::move(finding));
  }
  next_invoice_ = int64_t{document.number} + 1;
}

void ChainState::Add(const ChainEvent& event) {
  switch (event.kind) {
    case EventKind::kBeginning:
      Begin();
      break;
    case EventKind::kProgrammed:
      Program(event);
      break;
    case EventKind::kInvoiceNumber:
      next_invoice_ = Number(event.value);
      break;
    case EventKind::kPeriodCleared:
      Clear(Number(event.subject), {true, event.time, Number(event.value)});
      break;
    case EventKind::kSummarySent:
      Send(event, {Number(event.value)}, &summaries_);
      break;
    case EventKind::kLotterySent:
      Send(event, ReadNumbers(event.value), &lottery_);
      break;
    case EventKind::kNonFiscal:
      ++counters_.non_fiscal;
      break;
  }
}

void ChainState::Program(const ChainEvent& event) {
  const std::optional<ProgrammedChange> change = ReadProgrammedChange(event.value);
  if (!change) return;
  std::string& value = programmed_[event.subject];
  if (value != change->before) {
    find_({.kind = FindingKind::kProgrammedBefore, .entry = event.place, .text = event.subject});
  }
  value = change->after;
}

void ChainState::Send(const ChainEvent& event, const std::set<int64_t>& sent,
                      std::set<int64_t>* waiting) {
  for (const int64_t number : sent) {
    if (waiting->erase(number) != 0) continue;
    find_({.kind = FindingKind::kSentTwice, .entry = event.place, .value = number});
  }
}

void ChainState::Begin() {
  if (begun_ || !beginning_) return;
  begun_ = true;
  for (const auto& [number, start] : begin_later_) Clear(number, start);
  begin_later_.clear();
  next_invoice_ = beginning_->next_invoice;
  counters_.non_fiscal = static_cast<int>(beginning_->non_fiscal);
  summaries_ = beginning_->summaries_waiting;
  lottery_ = beginning_->lottery_waiting;
}

void ChainState::Clear(int64_t number, const PeriodBeginning& start) {
  const auto found = periods_.find(number);
  if (found == periods_.end()) return;
  found->second = {start, Totals(), true, Totals()};
}

void ChainState::Close(int64_t closure, int64_t last_document) {
  for (auto& [number, period] : periods_) {
    period.closed.Add(period.within_day ? period.day : day_);
    period.within_day = false;
    period.day = Totals();
  }
  day_ = Totals();
  counters_ = DailyCounters();
  first_of_day_ = last_document + 1;
  if (begun_) summaries_.insert(closure);
}

void ChainState::Compare(Database& database) const {
  if (!begun_) return;
  {
    Statement ledger = database.Prepare("SELECT next_invoice, first_of_day FROM ledger");
    if (!ledger.Step()) database.Damaged("ledger");
    const int64_t next = ledger.Integer(0);
    const int64_t first = ledger.Integer(1);
    if (next != next_invoice_) {
      find_({.kind = FindingKind::kNextInvoice, .value = next, .expected = next_invoice_});
    }
    if (first != first_of_day_) {
      find_({.kind = FindingKind::kFirstDocument, .value = first, .expected = first_of_day_});
    }
  }
  ComparePeriods(database);
  CompareWaiting(database);
  CompareProgrammed(database);
}

void ChainState::ComparePeriods(Database& database) const {
  std::set<int64_t> good;
  for (Statement row =
           database.Prepare("SELECT number, cleared, time, first_document, totals FROM period");
       row.Step();) {
    const auto found = periods_.find(row.Integer(0));
    if (found == periods_.end()) continue;
    const auto& [number, period] = *found;
    if (row.Integer(1) == (period.start.cleared ? 1 : 0) && row.Integer(2) == period.start.time &&
        row.Integer(3) == period.start.first_document && row.Text(4) == period.closed.ToRecord()) {
      good.insert(number);
    }
  }
  for (const auto& [number, period] : periods_) {
    if (good.count(number) != 0) continue;
    // The first takes in all days.
    find_({.kind = number == 0 ? FindingKind::kAllTotals : FindingKind::kPeriod, .value = number});
  }
}

void ChainState::CompareWaiting(Database& database) const {
  const std::set<int64_t> summaries =
      Numbers(database.Prepare("SELECT closure FROM summary_waiting"));
  for (const int64_t number : Without(summaries, summaries_)) {
    find_({.kind = FindingKind::kSummaryWaits, .closure = number});
  }
  for (const int64_t number : Without(summaries_, summaries)) {
    find_({.kind = FindingKind::kSummaryWaitsNot, .closure = number});
  }
  const std::set<int64_t> lottery =
      Numbers(database.Prepare("SELECT document FROM lottery_waiting"));
  const auto tell = [&](FindingKind kind, const std::vector<int64_t>& documents) {
    for (const int64_t id : documents) {
      Finding finding = {.kind = kind, .document = kJournalSale};
      Statement row = database.Prepare("SELECT closure, number FROM document WHERE id = ?");
      if (row.With(id).Step()) {
        finding.closure = row.Integer(0);
        finding.number = row.Integer(1);
      }
      find_(std::move(finding));
    }
  };
  tell(FindingKind::kLotteryWaits, Without(lottery, lottery_));
  tell(FindingKind::kLotteryWaitsNot, Without(lottery_, lottery));
}

void ChainState::CompareProgrammed(Database& database) const {
  const std::map<std::string, std::string> stored = ProgrammedValues(database, true, true);
  std::set<std::string> names;
  for (const auto& [name, value] : stored) {
    const auto found = programmed_.find(name);
    if (found == programmed_.end() || found->second != value) names.insert(name);
  }
  for (const auto& [name, value] : programmed_) {
    if (stored.count(name) == 0) names.insert(name);
  }
  for (const std::string& name : names) {
    find_({.kind = FindingKind::kProgrammed, .text = name});
  }
}

}  // namespace lorimat
