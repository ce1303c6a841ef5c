// The traps in lines that the library has answered with OK: what it understood otherwise than it
// reads. They fail nothing, and who types or runs them would not learn of it.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "console/check/batch_check.h"
#include "console/check/finding.h"
#include "console/check/language.h"
#include "console/terminal/line_reader.h"

namespace lorimat::console {

class LineHints {
 public:
  // Of each rule.
  static constexpr uint64_t kShown = 20;

  // The words have to outlive this object.
  explicit LineHints(const Language& language) : check_(language, found_) {}

  // Of a line that was answered with 0, each as "PLACE:COLUMN: warning: ..." with the line and a
  // caret below it; without a place, where the line stands right above, the sentence alone. Empty
  // for a line without a trap, and behind the kShown-th one of a rule, which says so.
  std::string Take(const SourceLine& line, const std::string& place, bool colours);

 private:
  Findings found_;
  BatchCheck check_;
  std::map<std::string, uint64_t> told_;  // by rule
};

}  // namespace lorimat::console
