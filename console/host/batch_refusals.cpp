#include "console/host/batch_refusals.h"

#include "console/host/failure_report.h"
#include "language/code_table.h"

namespace lorimat::console {

void BatchRefusals::Note() {
  if (client_.refusals() == seen_) return;
  seen_ = client_.refusals();
  const lorimat::Refusal& refusal = client_.last_refusal();
  Kind& kind = kinds_[RegisterClient::ResultOf(refusal)];
  ++kind.lines;
  if (kind.first.size() < FailureReport::kShown) kind.first.push_back(refusal);
}

const lorimat::Refusal* BatchRefusals::Find(long code, uint64_t place, uint64_t lines) const {
  const Kind* found = nullptr;
  for (const auto& [result, kind] : kinds_) {
    if (!language::ComesFrom(code, result)) continue;
    if (found != nullptr) return nullptr;
    found = &kind;
  }
  const bool known = found != nullptr && found->lines == lines && place < found->first.size();
  return known ? &found->first[place] : nullptr;
}

}  // namespace lorimat::console
