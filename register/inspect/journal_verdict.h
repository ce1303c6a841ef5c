// What a check of the journal says.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "register/storage/finding.h"

namespace lorimat {

// What a check of the journal found.
struct JournalCheck {
  uint64_t entries = 0;    // that were read
  uint64_t documents = 0;  // registered documents that were compared
  // A hash that does not fit, an entry that is missing, a document without an entry, totals that
  // are not the sum of the documents and the like. At most kMostFindings; `findings_left_out`
  // counts the rest.
  static constexpr size_t kMostFindings = 100;
  std::vector<Finding> findings;
  uint64_t findings_left_out = 0;
  // What is in order and worth knowing: times that go backwards. At most kMostFindings of them.
  std::vector<Finding> notes;
  uint64_t notes_left_out = 0;
  bool damaged = false;  // pages of the file cannot be read, or do not fit one another
  bool stopped = false;  // `progress` ended the check: nothing is said of what comes behind

  bool good() const { return findings.empty(); }
};

}  // namespace lorimat
