#include "console/host/journal_checking.h"

#include <utility>

#include "register/inspect/register_file.h"
#include "register/value/register_error.h"

namespace lorimat::console {

lorimat::JournalCheck CheckJournalOf(
    const std::string& file, const std::function<bool(uint64_t done, uint64_t all)>& progress) {
  try {
    return lorimat::RegisterFile(file).VerifyJournal(progress);
  } catch (const lorimat::RegisterError& error) {
    if (error.failure().cause != lorimat::FailureCause::kDamagedValue) throw;
    lorimat::Finding finding = {.kind = lorimat::FindingKind::kUnreadable,
                                .failure = error.failure()};
    finding.failure.place = lorimat::FailurePlace::kNone;
    finding.failure.file.clear();
    lorimat::JournalCheck check;
    check.damaged = true;
    check.findings.push_back(std::move(finding));
    return check;
  }
}

}  // namespace lorimat::console
