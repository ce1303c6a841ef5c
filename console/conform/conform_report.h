// What comes of trying a device: rows with a verdict, and what was found.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "console/conform/state_calls.h"

namespace lorimat::console {

enum class ConformVerdict : uint8_t { kFits, kMissing, kAgainst, kNotTried };

// What a device does against its contract. Behind each what `expected`, `got` and `text` are.
enum class ConformCause : uint8_t {
  kAccepted,      // and has to be refused with `expected`
  kRefused,       // with `got`, where it is allowed
  kOtherCode,     // `got` for `expected`
  kMinusOne,      // the library's sign for no device
  kUnknownCode,   // `got`
  kThrew,         // an exception
  kOverrun,       // wrote behind the room of a text
  kNoEnd,         // no NUL within the `expected` bytes of a text
  kHung,          // did not come back in its time
  kOtherState,    // the printer's state behind it is `got`, and not `expected`
  kForm,          // `text` is none of its form
  kChanged,       // `text` at first, and something else now
  kChangedMind,   // does not have the operation in one state, and in another has it
  kNoRest,        // does not come back to the monitor's state: `got`
  kTrainingOver,  // it was in training, and is not any more
  kKilled,        // it ended the process it was tried in by the signal `got`; so does the next
  kExited,        // by an exit with the code `got`. An empty operation: beside the calls
};

struct ConformFinding {
  ConformCause cause = {};
  std::string operation = {};  // and behind a blank what is special about the call
  State state = kStates;       // kStates where it does not matter
  int expected = 0;
  int got = 0;
  std::string text = {};
};

struct ConformRow {
  std::string_view group;  // for programs: "readings", "states", "operations", "refusals", "again"
  std::string name;        // of the operation or state
  std::string_view what;   // what is refused, in English, marked with TR_TEXT; may be empty
  ConformVerdict verdict = ConformVerdict::kNotTried;
  std::vector<ConformFinding> findings = {};
};

struct ConformReport {
  std::vector<ConformRow> rows;
  bool stopped = false;  // by a signal

  size_t Count(ConformVerdict verdict) const;
};

// For programs: "fits", "accepted".
std::string_view NameOf(ConformVerdict verdict);
std::string_view NameOf(ConformCause cause);
// For a person.
std::string EndText(ConformCause cause, int number);  // of kKilled or kExited
std::string VerdictText(ConformVerdict verdict);
std::string FindingText(const ConformFinding& finding);

}  // namespace lorimat::console
