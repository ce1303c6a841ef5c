// What became of the lines of a batch that the library has run as one line: how many ran, which of
// them failed and why, and behind which one it was stopped. It follows from the file, and from the
// codes in the error file; the library tells neither.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/host/batch_refusals.h"
#include "console/host/batch_request.h"
#include "console/host/failure_report.h"
#include "console/host/memory_watch.h"

namespace lorimat::console {

// Where a batch was stopped: the lines up to `ran` have run, and `refused` and those behind it have
// done nothing. Lines between the two answer for themselves whatever the device says to them, and
// may have run or not. `refused` is 0 when nothing is known.
struct StopPlace {
  uint64_t ran = 0;
  uint64_t refused = 0;

  bool is_exact() const { return refused == ran + 1; }
};

// A batch that the library has run.
struct RunBatch {
  std::string file;   // as it can be opened now
  std::string place;  // as it is shown
  // The failing lines, in their order; none when they are not known.
  std::optional<std::vector<BatchError>> errors;
  bool all_errors = true;  // none of them may be missing, as on a full disk
  bool stopped = false;    // calls were refused by StoppableClient
};

struct BatchOutcome {
  uint64_t lines = 0;  // that ran, empty ones too
  bool lines_known = true;
  std::string unread;  // why its lines cannot be read any more; empty when they can
  std::optional<StopPlace> stop;
  std::vector<FailedLine> failures;  // of those that ran
};

// Follows the lines in the memory, too.
BatchOutcome WalkBatch(const RunBatch& batch, const BatchRefusals& refusals, MemoryWatch& memory);

// Whether a line of the command may be answered in another way than with the device's refusal of
// its first call, so that a stop does not show in its code.
bool AnswersForItself(int opcode);

}  // namespace lorimat::console
