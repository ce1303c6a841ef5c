// What a device's numbers say of a job that may have had its effect. Nothing here asks or changes
// anything: the same facts give the same verdict.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "door/job/fiscal_device.h"

namespace lorimat::door {

enum class Outcome : uint8_t { kDone, kNotDone, kNobodyKnows };

struct Verdict {
  Outcome outcome = Outcome::kNobodyKnows;
  Why why = Why::kUnclearNumbers;
  std::optional<JobDocument> document = {};  // of kDone; of a closing without a number
  // Whether it would be the same without the answers, which a process takes along when it ends.
  bool is_lasting = true;
};

struct Evidence {
  JobEffect effect = JobEffect::kDocument;
  DeviceNumbers before;  // ahead of the first line
  DeviceNumbers now;     // with nothing open
  std::string mark;
  // The document that came makes void the sale that the job makes void: once is all that can be
  // done.
  bool is_void_of_sale = false;
  std::optional<LastDocument> last = {};  // of the name that NextDocument answers
  std::optional<JobDocument> last_closing = {};
  // What the lines open, for a device that does not tell the kind of its document.
  std::optional<DocumentKind> kind = {};
  // The line that has the effect was answered well, in this process, and nothing took it back, so
  // that a document that came meanwhile needs no mark.
  bool is_answered = false;
};

// The document that the numbers are further by, where that is exactly one.
std::optional<DocumentName> NextDocument(const DeviceNumbers& before, const DeviceNumbers& now);

// A job whose effect is a document or a closing. An amount proves nothing: two coffees cost the
// same. But a document whose total is not what the day has more by is not the only one that came.
Verdict Judge(const Evidence& evidence);

// Whether the mark stands in a line of a paper.
bool HasMark(const std::vector<std::string>& paper, const std::string& mark);

}  // namespace lorimat::door
