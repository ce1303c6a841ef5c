#include "console/host/line_hints.h"

#include "console/message/translate.h"

namespace lorimat::console {

std::string LineHints::Take(const SourceLine& line, const std::string& place, bool colours) {
  found_ = Findings();
  check_.Take(line);
  std::string text;
  for (Finding& finding : found_.sorted()) {
    // What a check refuses the library took: an "@" line. What stands at another line is of a
    // sequence, which shows when it comes to it.
    if (finding.severity() != Severity::kWarning || finding.code != 0 ||
        finding.line != line.number) {
      continue;
    }
    const uint64_t told = ++told_[finding.rule()];
    if (told > kShown) continue;
    finding.line = 0;
    if (place.empty()) finding.column = 0;
    text += FindingText(place, finding, colours);
    if (told == kShown) text += Tr("(further lines like this one are not told of)") + "\n";
  }
  return text;
}

}  // namespace lorimat::console
