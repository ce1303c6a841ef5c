// Jobs of a door as a person reads them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/message/json_text.h"

namespace lorimat::console {

// "0001-0012", "0001" of a closing; empty without a document.
std::string JobDocumentText(const Json& job);
// Its fields under each other, its lines that failed, and its history.
std::string JobText(const Json& job);
// Jobs, one a line, below a heading.
std::string JobListText(const std::vector<Json>& jobs);
// The lines that failed, one a line, with what their codes mean; empty for none.
std::string FailedLinesText(const Json& job);
// A member that is a whole number; 0 where it is none.
int64_t NumberOf(const Json& json, const char* name);

}  // namespace lorimat::console
