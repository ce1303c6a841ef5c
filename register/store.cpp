#include "register/store.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace lorimat {
namespace {

// Room for one more, so that adding it cannot fail.
template <typename Row>
void MakeRoom(std::vector<Row>* rows) {
  if (rows->size() == rows->capacity()) rows->reserve(2 * rows->size() + 16);
}

}  // namespace

const StoredDocument& RegisterStore::Register(StoredDocument document) {
  // Room and totals first: nothing below can fail once the first total has moved.
  MakeRoom(&documents_);
  DailyCounters counters = counters_;
  int next_invoice = next_invoice_;

  document.closure = last_closure_ + 1;
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
  Totals day = day_;
  day.Add(document);

  if (document.kind == DocumentKind::kCancel) {
    for (StoredDocument& earlier : documents_) {
      if (earlier.kind != DocumentKind::kInvoice && earlier.closure == document.referred_closure &&
          earlier.number == document.referred_number) {
        earlier.voided = true;
      }
    }
  }
  grand_total_ += DailySign(document.kind) * document.total;
  day_ = std::move(day);
  counters_ = counters;
  next_invoice_ = next_invoice;
  documents_.push_back(std::move(document));
  return documents_.back();
}

void RegisterStore::AddToJournal(JournalEntry entry) {
  entry.closure = last_closure_ + 1;
  journal_.push_back(std::move(entry));
}

void RegisterStore::CloseDay(const std::tm& time, const std::vector<VatRate>& vat_rates,
                             JournalEntry entry) {
  MakeRoom(&closures_);
  MakeRoom(&journal_);
  Closure closure;
  closure.number = last_closure_ + 1;
  closure.time = time;
  closure.counters = counters_;
  closure.grand_total = grand_total_;
  closure.vat_rates = vat_rates;
  entry.closure = closure.number;
  // From here on nothing fails.
  std::swap(closure.totals, day_);
  counters_ = DailyCounters{};
  last_closure_ = closure.number;
  closures_.push_back(std::move(closure));
  journal_.push_back(std::move(entry));
}

void RegisterStore::MarkSent(int number) {
  for (Closure& closure : closures_) {
    if (closure.number == number) closure.sent = true;
  }
}

void RegisterStore::MarkLotterySent() {
  for (StoredDocument& document : documents_) {
    if (!document.lottery_code.empty()) document.lottery_sent = true;
  }
}

void RegisterStore::ClearPeriod(int period, const std::tm& time) {
  periods_[static_cast<size_t>(period) - 1] = {documents_.size(), time, true};
}

int RegisterStore::pending_closures() const {
  return static_cast<int>(std::count_if(closures_.begin(), closures_.end(),
                                        [](const Closure& closure) { return !closure.sent; }));
}

const Closure* RegisterStore::FirstPending() const {
  for (const Closure& closure : closures_) {
    if (!closure.sent) return &closure;
  }
  return nullptr;
}

const StoredDocument* RegisterStore::Find(int closure, int number) const {
  for (const StoredDocument& document : documents_) {
    if (document.kind != DocumentKind::kInvoice && document.closure == closure &&
        document.number == number) {
      return &document;
    }
  }
  return nullptr;
}

const StoredDocument* RegisterStore::FindLast() const {
  for (auto document = documents_.rbegin(); document != documents_.rend(); ++document) {
    if (document->kind != DocumentKind::kInvoice) return &*document;
  }
  return nullptr;
}

bool RegisterStore::HasRoom() const {
  return grand_total_ < std::numeric_limits<Amount>::max() - kMaxAmount &&
         grand_total_ > std::numeric_limits<Amount>::min() + kMaxAmount;
}

bool RegisterStore::day_open() const {
  return counters_.documents > 0 || counters_.invoices > 0 || counters_.non_fiscal > 0 ||
         counters_.abandoned > 0;
}

}  // namespace lorimat
