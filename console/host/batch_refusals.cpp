#include "console/host/batch_refusals.h"

#include "console/host/failure_report.h"

namespace lorimat::console {

void BatchRefusals::Note(uint64_t line) {
  if (client_.refusals() == seen_) return;
  seen_ = client_.refusals();
  const lorimat::Refusal& refusal = client_.last_refusal();
  // No more are shown. The library may give one code for several of the register's.
  if (++counts_[refusal.code] <= FailureReport::kShown) {
    by_line_[line] = {refusal, memory_ != nullptr && memory_->sale_was_lost()};
  }
}

std::string BatchRefusals::Reason(uint64_t line, long code) const {
  const auto found = by_line_.find(line);
  if (found == by_line_.end()) return {};
  const Refused& refused = found->second;
  const std::string lost = refused.sale_was_lost ? memory_->LostSaleReason(true, code) : "";
  return lost.empty() ? client_.Reason(refused.refusal, code) : lost;
}

}  // namespace lorimat::console
