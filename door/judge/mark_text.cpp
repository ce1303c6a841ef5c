#include "door/judge/mark_text.h"

#include <algorithm>
#include <functional>

#include "door/log/job.h"

namespace lorimat::door {
namespace {

// Goes through all parts that have the form of one, until `found` holds for one.
bool AnyMark(std::string_view text, const std::function<bool(const std::string& mark)>& found) {
  std::string capitals(text);
  for (char& c : capitals) {
    if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
  }
  // How many letters of marks end here.
  size_t run = 0;
  for (size_t at = 0; at < capitals.size(); ++at) {
    run = kMarkLetters.find(capitals[at]) == kMarkLetters.npos ? 0 : run + 1;
    if (run < kMarkSize || capitals[at + 1 - kMarkSize] != kMarkBegin) continue;
    if (found(capitals.substr(at + 1 - kMarkSize, kMarkSize))) return true;
  }
  return false;
}

}  // namespace

bool MayHoldMark(std::string_view text) {
  return AnyMark(text, [](const std::string&) { return true; });
}

bool HoldsMark(std::string_view text, const std::set<std::string>& marks) {
  return AnyMark(text, [&](const std::string& mark) { return marks.contains(mark); });
}

}  // namespace lorimat::door
