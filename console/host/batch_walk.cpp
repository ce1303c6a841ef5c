#include "console/host/batch_walk.h"

#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <iterator>
#include <map>
#include <system_error>

#include "console/device/stoppable_client.h"
#include "console/message/failure.h"
#include "console/terminal/line_reader.h"
#include "register/value/refusal.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat::console {
namespace {

constexpr int kSale = 10;
constexpr int kPayment = 11;

// Commands that go on behind a refusal, or give another code of their own: those of programming and
// reading, keys, the displays.
constexpr int kAnswerForThemselves[] = {1, 2, 3, 8, 9, 14, 30, 36, 38, 53, 71};

// A failing line while the file is read.
struct Failing {
  BatchError error;
  std::string text;
  bool sale_found_none = false;  // a sale for which the translator would not open a receipt
};

class Walk {
 public:
  Walk(const RunBatch& batch, MemoryWatch& memory) : batch_(batch), memory_(memory) {
    if (!batch.errors) return;
    failing_.reserve(batch.errors->size());
    for (const BatchError& error : *batch.errors) {
      failing_.push_back({error, {}, false});
      if (stop_line_ == 0 && StoppableClient::IsStop(error.code)) stop_line_ = error.line;
    }
  }

  void Read() {
    std::error_code unknown;
    if (!std::filesystem::is_regular_file(batch_.file, unknown)) {
      lines_known_ = false;
      memory_.memory().Lose();
      return;
    }
    try {
      LineReader reader(batch_.file);
      SourceLine line;
      while (!ended_ && reader.Next(&line)) Take(line);
    } catch (const Failure& failure) {
      unread_ = failure.what();
      lines_known_ = false;
      memory_.memory().Lose();
    }
  }

  // Of all that were read.
  uint64_t lines() const { return lines_; }
  bool lines_known() const { return lines_known_; }
  const std::string& unread() const { return unread_; }
  const std::vector<Failing>& failing() const { return failing_; }

  StopPlace stop() const {
    if (!batch_.errors || !lines_known_) return {};
    const uint64_t seen = stop_line_ != 0 ? stop_line_ : lines_ + 1;
    const auto first = std::find_if(failing_.begin(), failing_.end(), [this](const Failing& one) {
      return one.error.line == stop_line_;
    });
    if (stop_line_ != 0 && first->error.code == language::kStoppedHere) {
      return {seen - 1, seen};
    }
    if (doubtful_ == 0 || !batch_.all_errors) return {};
    if (doubtful_ == 1) return {first_doubtful_ - 1, first_doubtful_};
    return {first_doubtful_ - 1, seen};
  }

 private:
  void Take(const SourceLine& line) {
    lines_ = line.number;
    while (next_ < failing_.size() && failing_[next_].error.line < line.number) ++next_;
    Failing* failed = nullptr;
    if (next_ < failing_.size() && failing_[next_].error.line == line.number) {
      failed = &failing_[next_];
      failed->text = line.text;
    }
    TranslatorMemory& memory = memory_.memory();
    const bool opens_none = memory.next_sale() == TranslatorMemory::NextSale::kOpensNone;
    TranslatorMemory::Seen seen = {std::nullopt, std::nullopt, std::nullopt};
    if (failed != nullptr) seen.code = failed->error.code;
    if (failed == nullptr && batch_.errors && batch_.all_errors) seen.code = 0;
    const bool behind_stop = stop_line_ != 0 && line.number >= stop_line_;
    // Nothing has changed the register since.
    if (behind_stop) seen.ready_before = seen.ready_after = memory_.ready();
    // One within a batch is refused.
    const int opcode = IsBatchLine(line.text) ? 0 : memory.Follow(line.text, seen);
    if (failed != nullptr) failed->sale_found_none = opens_none && opcode == kSale;
    if (!behind_stop && batch_.stopped) Doubt(line.number, opcode, seen.code == 0);
    if (!memory.aborts()) return;
    if (!batch_.errors || !batch_.all_errors) lines_known_ = false;
    ended_ = failed != nullptr;
  }

  // Whether the stop can have been at this line, which does not show it.
  void Doubt(uint64_t line, int opcode, bool succeeded) {
    if (succeeded && (opcode == kSale || opcode == kPayment)) doubtful_ = 0;
    if (!AnswersForItself(opcode)) return;
    if (++doubtful_ == 1) first_doubtful_ = line;
  }

  const RunBatch& batch_;
  MemoryWatch& memory_;
  std::vector<Failing> failing_;
  size_t next_ = 0;         // of those
  uint64_t stop_line_ = 0;  // the first with its code; 0 for none
  uint64_t lines_ = 0;
  bool lines_known_ = true;
  std::string unread_;
  bool ended_ = false;     // by ABORT
  uint64_t doubtful_ = 0;  // lines since the last that has run for certain
  uint64_t first_doubtful_ = 0;
};

}  // namespace

bool AnswersForItself(int opcode) {
  return std::find(std::begin(kAnswerForThemselves), std::end(kAnswerForThemselves), opcode) !=
         std::end(kAnswerForThemselves);
}

BatchOutcome WalkBatch(const RunBatch& batch, const BatchRefusals& refusals, MemoryWatch& memory) {
  BatchOutcome outcome;
  Walk walk(batch, memory);
  walk.Read();
  outcome.lines = walk.lines();
  outcome.lines_known = walk.lines_known();
  outcome.unread = walk.unread();
  uint64_t end = UINT64_MAX;  // no line from here on ran for certain
  if (batch.stopped) {
    outcome.stop = walk.stop();
    outcome.lines = outcome.stop->ran;
    outcome.lines_known = outcome.stop->refused != 0;
    end = outcome.stop->ran + 1;
  }
  const auto ran = [end](const Failing& one) {
    return one.error.line < end && !StoppableClient::IsStop(one.error.code);
  };
  std::map<long, uint64_t> with_code;
  for (const Failing& one : walk.failing()) {
    if (ran(one)) ++with_code[one.error.code];
  }
  std::map<long, uint64_t> place;
  outcome.failures.reserve(walk.failing().size());
  for (const Failing& one : walk.failing()) {
    if (!ran(one)) continue;
    const long code = one.error.code;
    const DeviceRefusal* refusal = refusals.Find(code, place[code]++, with_code[code]);
    std::string reason;
    if (refusal != nullptr) {
      reason = memory.LostSaleReason(one.sale_found_none && refusal->no_document, code);
      if (reason.empty()) reason = Device::Reason(*refusal, code);
    }
    outcome.failures.push_back(
        {one.error.line == 0 ? batch.place : fmt::format("{}:{}", batch.place, one.error.line),
         code, one.error.text, one.text, std::move(reason)});
  }
  return outcome;
}

}  // namespace lorimat::console
