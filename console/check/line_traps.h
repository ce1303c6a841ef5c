// The traps of a single line: fields that the library reads otherwise than they are written, that
// it cuts, or that it leaves alone.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "console/check/language.h"
#include "console/message/finding.h"

namespace lorimat::console {

// A field of a line, as it stands there and as a handler sees it.
struct GivenField {
  int number = 0;
  std::string key;      // as written
  std::string value;    // in szCampi: a symbol is its number, a bare name "VERO"
  std::string written;  // an unquoted value as written; empty for a bare name and for a quoted one
  bool quoted = false;
  std::string behind;   // what stands behind the closing quote
  uint64_t column = 0;  // of the key
};

// Takes a trap with the column that it stands in.
using TrapSink = std::function<void(Finding trap)>;

// The traps of a line whose fields were read without a failure. A field that is given twice stands
// there twice; the last counts.
void FindLineTraps(const Language& language, int opcode, const std::string& command,
                   const std::vector<GivenField>& fields, const TrapSink& sink);

// A comma that was meant as the decimal point: "PRE=1,50" is PRE=1 and a field called 50. The field
// in front of the unknown one; null when that is not what happened.
const GivenField* FieldBeforeDecimalComma(const std::vector<GivenField>& fields,
                                          const std::string& unknown_key);

}  // namespace lorimat::console
