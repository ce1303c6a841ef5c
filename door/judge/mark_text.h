// The marks of jobs in texts: a job's mark is printed on its document and tells it from all others,
// so that no line of a client may bring one.
#pragma once

#include <set>
#include <string>
#include <string_view>

namespace lorimat::door {

// Whether anything in it, however it is cut into lines of paper, has the form of a mark. Small
// letters count as capitals, which a device may make of them.
bool MayHoldMark(std::string_view text);
// Whether one of these marks is in it.
bool HoldsMark(std::string_view text, const std::set<std::string>& marks);

}  // namespace lorimat::door
