#include "console/host/memory_watch.h"

#include <vector>

#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {

bool MemoryWatch::ready() const { return device_.ready(); }

void MemoryWatch::Begin() {
  was_lost_ = sale_is_lost();
  ready_before_ = ready();
}

void MemoryWatch::Answered(const std::string& line, long code) {
  memory_.Follow(line, {ready_before_, ready(), code});
}

std::string MemoryWatch::LostSaleReason(bool was_lost, long code) const {
  if (!was_lost || code != kNoDocument) return {};
  return Tr(
      "No sale opens a receipt now: the library takes one for open, and the printer has none. "
      "The way out is {}.",
      ways_out());
}

std::string MemoryWatch::ways_out() const {
  constexpr int kClear = 8;
  constexpr int kClose = 11;
  constexpr int kReset = 74;
  std::vector<std::string> names;
  for (const int opcode : {kClear, kClose, kReset}) {
    const std::string name = Shown(language_.CommandName(opcode));
    if (!name.empty()) names.push_back(name);
  }
  if (names.empty()) return Tr("a start of the library");
  std::string text = names.front();
  for (size_t i = 1; i < names.size(); ++i) {
    text = i + 1 == names.size() ? Tr("{} or {}", text, names[i]) : text + ", " + names[i];
  }
  return text;
}

}  // namespace lorimat::console
