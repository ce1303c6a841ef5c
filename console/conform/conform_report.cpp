#include "console/conform/conform_report.h"

#include <algorithm>

#include "console/message/load_failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

struct VerdictRow {
  ConformVerdict verdict;
  const char* name;
  const char* text;
};

constexpr VerdictRow kVerdicts[] = {
    {ConformVerdict::kFits, "fits", TR_TEXT("fits")},
    {ConformVerdict::kMissing, "missing", TR_TEXT("missing")},
    {ConformVerdict::kAgainst, "against", TR_TEXT("against")},
    {ConformVerdict::kNotTried, "not-tried", TR_TEXT("not tried")},
};

constexpr std::string_view kCauses[] = {
    "accepted",     "refused", "other-code",    "minus-one",   "unknown-code", "threw",
    "overrun",      "no-end",  "hung",          "other-state", "form",         "changed",
    "changed-mind", "no-rest", "training-over", "killed",      "exited"};
static_assert(sizeof kCauses / sizeof kCauses[0] == static_cast<size_t>(ConformCause::kExited) + 1);

const VerdictRow& RowOf(ConformVerdict verdict) { return kVerdicts[static_cast<size_t>(verdict)]; }

std::string CauseText(const ConformFinding& finding) {
  const std::string operation = Shown(finding.operation);
  switch (finding.cause) {
    case ConformCause::kAccepted:
      return Tr("{} is accepted, and has to be refused with {}", operation, finding.expected);
    case ConformCause::kRefused:
      return Tr("{} is refused with {}, and is allowed", operation, finding.got);
    case ConformCause::kOtherCode:
      return Tr("{} answers {}, and has to answer {}", operation, finding.got, finding.expected);
    case ConformCause::kMinusOne:
      return Tr("{} answers -1, the sign that there is no device", operation);
    case ConformCause::kUnknownCode:
      return Tr("{} answers {}, which is no result", operation, finding.got);
    case ConformCause::kThrew:
      return Tr("an exception leaves {}", operation);
    case ConformCause::kOverrun:
      return Tr("{} writes behind the room of a text", operation);
    case ConformCause::kNoEnd:
      return Tr("a text of {} has no end within its {} bytes", operation, finding.expected);
    case ConformCause::kHung:
      return Tr("{} did not come back in its time, and the device is given up", operation);
    case ConformCause::kOtherState:
      return Tr("behind {} the state of the printer is {}, and has to be {}", operation,
                finding.got, finding.expected);
    case ConformCause::kForm:
      return Tr("{} answers '{}', which is not of its form", operation, Shown(finding.text));
    case ConformCause::kChanged:
      return Tr("{} answered '{}' at first, and something else now", operation,
                Shown(finding.text));
    case ConformCause::kChangedMind:
      return Tr("{} answers that the device does not have it, which it has elsewhere", operation);
    case ConformCause::kNoRest:
      return Tr("behind {} nothing leads back to the state 1: it stays {}", operation, finding.got);
    case ConformCause::kTrainingOver:
      return Tr("behind {} the device is not in training any more", operation);
    case ConformCause::kKilled:
    case ConformCause::kExited: {
      const std::string end = EndText(finding.cause, finding.got);
      return operation.empty() ? Tr("the device ended the process: {}", end)
                               : Tr("{} ended the process: {}", operation, end);
    }
  }
  return {};
}

}  // namespace

std::string EndText(ConformCause cause, int number) {
  return cause == ConformCause::kKilled ? SignalText(number) : Tr("exit code {}", number);
}

size_t ConformReport::Count(ConformVerdict verdict) const {
  return static_cast<size_t>(
      std::count_if(rows.begin(), rows.end(),
                    [verdict](const ConformRow& row) { return row.verdict == verdict; }));
}

std::string_view NameOf(ConformVerdict verdict) { return RowOf(verdict).name; }

std::string_view NameOf(ConformCause cause) { return kCauses[static_cast<size_t>(cause)]; }

std::string VerdictText(ConformVerdict verdict) {
  return std::string(Translated(RowOf(verdict).text));
}

std::string FindingText(const ConformFinding& finding) {
  if (finding.state == kStates) return CauseText(finding);
  return fmt::format("{}: {}", NameOfState(finding.state).name, CauseText(finding));
}

}  // namespace lorimat::console
