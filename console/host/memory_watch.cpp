#include "console/host/memory_watch.h"

#include <vector>

#include "console/host/batch_run.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "register/client/virtual_register.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {

MemoryWatch::MemoryWatch(const Language& language, RegisterClient& client)
    : language_(language), client_(client), memory_(language) {
  client_.OnCommand([this](std::string_view line) { Take(line); });
}

MemoryWatch::~MemoryWatch() { client_.OnCommand(nullptr); }

bool MemoryWatch::ready() const { return client_.device().printer_state() == RTF_FPTR_PS_MONITOR; }

// Ahead of each line, and so behind the one before it.
void MemoryWatch::Take(std::string_view line) {
  Settle(std::nullopt);
  constexpr std::string_view kEnd = ">";
  const bool whole = line.size() >= kEnd.size() && line.substr(line.size() - 1) == kEnd;
  was_lost_ = sale_is_lost();
  pending_.emplace(whole ? line.substr(0, line.size() - 1) : line);
  ready_before_ = ready();
  // A line that the trace cuts may have done anything, as a batch that nobody followed.
  if (!whole) memory_.Follow("@cut", {ready_before_, ready_before_, 0});
}

void MemoryWatch::Settle(std::optional<long> code) {
  if (!pending_) return;
  // An "@" line by itself does nothing, and one within a batch is refused.
  if (!IsBatchLine(*pending_)) memory_.Follow(*pending_, {ready_before_, ready(), code});
  pending_.reset();
}

void MemoryWatch::Answered(const std::string& line, long code) {
  if (IsBatchLine(line)) {
    Settle(std::nullopt);
    return;
  }
  // As it was sent: the trace shows less of a long line.
  if (pending_) pending_ = line;
  Settle(code);
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
