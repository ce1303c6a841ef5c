// A device put through its paces: each row of the tables beside this file is tried, from rest, and
// what comes of it is held against the contract of docs/devices.md. No row hangs on the one before.
#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "console/conform/conform_progress.h"
#include "console/conform/reading_calls.h"
#include "console/conform/refusal_calls.h"
#include "console/conform/state_calls.h"
#include "console/device/device.h"
#include "recording/recorder.h"

namespace lorimat::console {

struct ConformSettings {
  // The device says that it is in training: it may refuse what programs and reports, and is left
  // alone once it is not any more.
  bool training = false;
  recording::Recorder* recorder = nullptr;  // of what passes; null for none
  // A client around the device's own; null takes that.
  RtfClientInterface* client = nullptr;
  std::function<void(size_t piece)> behind;  // told of each piece that was tried
};

class Conformance {
 public:
  // The device is at rest, or was left by a process that ended; it outlives this object, as the
  // recorder and what is known do.
  Conformance(Device& device, ConformProgress& progress, ConformSettings settings);

  // Tries the pieces that are left. Ends early at a signal of interrupt.h.
  void Run();

 private:
  // What came of a call.
  struct Outcome {
    std::optional<ConformCause> fault = {};
    int code = 0;
  };

  template <typename Call>
  Outcome Make(Call&& call);
  // What stands behind a piece in the recording.
  std::string_view Try(const ConformPiece& piece);

  // Nothing where it is not told; what goes wrong with the call itself is noted in the row.
  std::optional<int> PrinterState(ConformRow* row);
  // Brings the device back to the monitor's state. False when it does not come back: then that was
  // noted in the row.
  bool Rest(ConformRow* row, std::string_view behind);
  // Rest, and the steps into the state. False, with the verdict of the state's row, when the device
  // does not get there.
  bool Enter(State state, ConformRow* state_row);
  bool TakeStep(const StateStep& step, State state, ConformRow* state_row);

  void Read(const ReadingCall& reading, ConformRow* row, std::string* first_answer);
  void ReadAgain(const ConformPiece& piece, ConformRow* row);
  void TryCell(const ConformPiece& piece, ConformRow* row);
  void TryRefusal(const RefusalCall& refusal, ConformRow* row);
  bool ExpectState(std::string_view behind, State at, int expected, ConformRow* row);
  void CheckTexts(const ReadingCall& reading, const AskedTextRooms& texts, ConformRow* row) const;

  // Adds what went wrong with the call itself; false when nothing did.
  static bool AddFault(const Outcome& outcome, std::string_view operation, State state,
                       ConformRow* row);

  Device& device_;
  ConformProgress& progress_;
  const ConformSettings settings_;
  RtfClientInterface& client_;
  std::optional<State> at_;  // nothing was done there since it was entered
  bool waits_ = false;       // settled documents wait to be closed
  bool at_rest_ = false;     // or in a state that was entered; not where a process was ended
};

}  // namespace lorimat::console
