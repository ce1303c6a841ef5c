#include "console/host/batch_refusals.h"

#include "console/host/failure_report.h"
#include "language/code_table.h"

namespace lorimat::console {

void BatchRefusals::Note() {
  if (device_.refusals() == seen_) return;
  seen_ = device_.refusals();
  Kind& kind = kinds_[device_.last_result()];
  ++kind.lines;
  if (kind.first.size() < FailureReport::kShown) kind.first.push_back(device_.last_refusal());
}

const DeviceRefusal* BatchRefusals::Find(long code, uint64_t place, uint64_t lines) const {
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
