#include "door/job/verdict.h"

#include <algorithm>

namespace lorimat::door {
namespace {

Verdict Unclear(Why why) { return {Outcome::kNobodyKnows, why}; }
Verdict NotDone() { return {Outcome::kNotDone, Why::kFoundNotDone}; }

Verdict JudgeClosing(const Evidence& evidence) {
  const DeviceNumbers& before = evidence.before;
  const DeviceNumbers& now = evidence.now;
  if (now == before) return NotDone();
  if (now.closure == before.closure) return Unclear(Why::kFurtherOn);
  // Of a day that holds documents again somebody else knows.
  const std::optional<JobDocument>& closing = evidence.last_closing;
  if (now.closure != before.closure + 1 || now.document != 0 || now.invoice != before.invoice) {
    return Unclear(Why::kFurtherOn);
  }
  if (!closing || closing->closure != now.closure || closing->total != before.day_total) {
    return Unclear(Why::kOtherDocument);
  }
  return {Outcome::kDone, Why::kFoundDone, closing};
}

Verdict JudgeDocument(const Evidence& evidence) {
  const DeviceNumbers& before = evidence.before;
  const DeviceNumbers& now = evidence.now;
  if (now == before) return NotDone();
  if (now.closure != before.closure) return Unclear(Why::kClosedBetween);
  if (now.document < before.document || now.invoice < before.invoice) {
    return Unclear(Why::kWentBack);
  }
  const int receipts = now.document - before.document;
  const int invoices = now.invoice - before.invoice;
  // The day's total has changed, and no number says by what.
  if (receipts == 0 && invoices == 0) return Unclear(Why::kUnclearNumbers);
  if (receipts > 1 || invoices > 1 || (receipts == 1 && invoices == 1)) {
    return Unclear(Why::kFurtherOn);
  }
  const std::optional<LastDocument>& last = evidence.last;
  const bool is_next = last && last->is_invoice == (invoices == 1) &&
                       last->facts.closure == now.closure + 1 &&
                       last->facts.number == (last->is_invoice ? now.invoice : now.document);
  if (!is_next) return Unclear(Why::kOtherDocument);
  if (!evidence.all_answered && !HasMark(last->paper, evidence.mark)) {
    return Unclear(Why::kOtherDocument);
  }
  return {Outcome::kDone, Why::kFoundDone, last->facts};
}

}  // namespace

bool HasMark(const std::vector<std::string>& paper, const std::string& mark) {
  return !mark.empty() && std::any_of(paper.begin(), paper.end(), [&](const std::string& line) {
    return line.find(mark) != line.npos;
  });
}

Verdict Judge(const Evidence& evidence) {
  if (evidence.now.serial != evidence.before.serial) return Unclear(Why::kOtherDevice);
  if (evidence.now.closure < evidence.before.closure) return Unclear(Why::kWentBack);
  return evidence.effect == JobEffect::kClosing ? JudgeClosing(evidence) : JudgeDocument(evidence);
}

}  // namespace lorimat::door
