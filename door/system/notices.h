// What the program tells whoever looks after it: lines on standard error, or entries of the journal
// with fields where standard error is the journal.
#pragma once

#include <atomic>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>

#include "console/terminal/streams.h"
#include "door/log/job.h"

namespace lorimat::door {

enum class Level : uint8_t {
  kError,  // what ends the program
  kNote,   // what keeps jobs waiting, and what somebody should look at
  kJob,    // each job that comes or moves
};

class Notices {
 public:
  using Fields = std::initializer_list<std::pair<std::string_view, std::string>>;
  static constexpr const char* kJournal = "/run/systemd/journal/socket";

  // The streams outlive it. `journal` is the socket of the journal's own protocol.
  explicit Notices(console::Streams& streams, std::string journal = kJournal);

  bool is_journal() const { return is_journal_; }
  // Nothing beyond it is told. Without it jobs are told to the journal alone.
  void SetMost(Level most) { most_ = most; }

  // A sentence, with control characters as "\xNN". From any thread; keeps nobody waiting for the
  // journal.
  void Tell(Level level, const std::string& text, Fields fields = {}) noexcept;
  // Its last step: LORIMAT_JOB, LORIMAT_STATE, LORIMAT_WHY, LORIMAT_DESK; of what its client has
  // sent nothing else.
  void TellJob(const Job& job) noexcept;
  // How many the journal did not take in time, and nobody is told any more. Any thread may ask.
  int64_t lost() const { return lost_; }

 private:
  bool Send(Level level, const std::string& text, Fields fields) const;
  // To the journal as a line, without its own protocol. False when that does not take it whole.
  bool SendLine(const std::string& line) const;

  console::Streams& streams_;
  std::string journal_;
  bool is_journal_ = false;
  Level most_ = Level::kNote;
  std::atomic<int64_t> lost_{0};
};

}  // namespace lorimat::door
