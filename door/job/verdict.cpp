#include "door/job/verdict.h"

#include <algorithm>
#include <limits>

namespace lorimat::door {
namespace {

Verdict Unclear(Why why) { return {Outcome::kNobodyKnows, why}; }
Verdict NotDone() { return {Outcome::kNotDone, Why::kFoundNotDone}; }

// Of two amounts; nothing for one that no document has.
std::optional<int64_t> Distance(int64_t one, int64_t other) {
  const uint64_t distance =
      static_cast<uint64_t>(std::max(one, other)) - static_cast<uint64_t>(std::min(one, other));
  if (distance > static_cast<uint64_t>(std::numeric_limits<int64_t>::max())) return std::nullopt;
  return static_cast<int64_t>(distance);
}

// Whether it is the day of the baseline that was closed, as it was.
bool IsClosingOf(const Evidence& evidence) {
  const DeviceNumbers& before = evidence.before;
  const DeviceNumbers& now = evidence.now;
  if (const std::optional<JobDocument>& closing = evidence.last_closing) {
    return closing->closure == now.closure && closing->total == before.day_total;
  }
  // What was sold in between would be in it.
  if (before.grand_total && now.grand_total) {
    if (before.grand_total == now.grand_total) return true;
    // Some take the day in as they close it; but so much may have been sold as well.
    return evidence.is_answered &&
           Distance(*before.grand_total, *now.grand_total) == before.day_total;
  }
  return evidence.is_answered;
}

Verdict JudgeClosing(const Evidence& evidence) {
  const DeviceNumbers& before = evidence.before;
  const DeviceNumbers& now = evidence.now;
  if (now == before) return NotDone();
  if (now.closure == before.closure) return Unclear(Why::kFurtherOn);
  // Of a day that holds documents again somebody else knows.
  if (now.closure != before.closure + 1 || now.document != 0 || now.invoice != before.invoice) {
    return Unclear(Why::kFurtherOn);
  }
  if (!IsClosingOf(evidence)) return Unclear(Why::kOtherDocument);
  Verdict verdict{Outcome::kDone, Why::kFoundDone, evidence.last_closing};
  if (!verdict.document) {
    verdict.document = JobDocument{now.closure, 0, now.serial, {}, before.day_total};
  }
  return verdict;
}

Verdict JudgeDocument(const Evidence& evidence) {
  const DeviceNumbers& before = evidence.before;
  const DeviceNumbers& now = evidence.now;
  if (now == before) return NotDone();
  if (now.closure != before.closure) return Unclear(Why::kClosedBetween);
  if (now.document < before.document || now.invoice < before.invoice) {
    return Unclear(Why::kWentBack);
  }
  // The day's total has changed, and no number says by what.
  if (now.document == before.document && now.invoice == before.invoice) {
    return Unclear(Why::kUnclearNumbers);
  }
  const std::optional<DocumentName> next = NextDocument(before, now);
  if (!next) return Unclear(Why::kFurtherOn);
  const std::optional<LastDocument>& last = evidence.last;
  const bool is_other =
      last && (last->is_invoice != next->is_invoice || last->facts.closure != next->closure ||
               last->facts.number != next->number);
  const bool is_ours = evidence.is_answered || evidence.is_void_of_sale ||
                       (last && HasMark(last->paper, evidence.mark));
  if (is_other || !is_ours) return Unclear(Why::kOtherDocument);
  if (last && last->facts.total && last->facts.total != Distance(now.day_total, before.day_total)) {
    return Unclear(Why::kUnclearNumbers);
  }
  JobDocument document{next->closure, next->number, now.serial, {}, {}};
  if (last) document = last->facts;
  // There was no other one: what the day has more is its total.
  document.serial = now.serial;
  // Where the numbers say otherwise, nobody knows.
  const bool fits = (evidence.kind == DocumentKind::kInvoice) == next->is_invoice;
  if (!document.kind && fits) document.kind = evidence.kind;
  if (!document.total) document.total = Distance(now.day_total, before.day_total);
  return {Outcome::kDone, Why::kFoundDone, document};
}

}  // namespace

bool HasMark(const std::vector<std::string>& paper, const std::string& mark) {
  return !mark.empty() && std::any_of(paper.begin(), paper.end(), [&](const std::string& line) {
    return line.find(mark) != line.npos;
  });
}

std::optional<DocumentName> NextDocument(const DeviceNumbers& before, const DeviceNumbers& now) {
  if (now.serial != before.serial || now.closure != before.closure) return std::nullopt;
  const bool receipt = now.document == before.document + 1 && now.invoice == before.invoice;
  const bool invoice = now.invoice == before.invoice + 1 && now.document == before.document;
  if (receipt == invoice) return std::nullopt;
  return DocumentName{now.closure + 1, invoice ? now.invoice : now.document, invoice};
}

Verdict Judge(const Evidence& evidence) {
  if (evidence.now.serial != evidence.before.serial) return Unclear(Why::kOtherDevice);
  if (evidence.now.closure < evidence.before.closure) return Unclear(Why::kWentBack);
  return evidence.effect == JobEffect::kClosing ? JudgeClosing(evidence) : JudgeDocument(evidence);
}

}  // namespace lorimat::door
