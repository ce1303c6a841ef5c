// A device put through its paces: each row of the tables beside this file is tried, from rest, and
// what comes of it is held against the contract of docs/devices.md. No row hangs on the one before.
#pragma once

#include <array>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "console/conform/conform_report.h"
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
  recording::Recorder* recorder = nullptr;   // of what passes; null for none
  std::function<void(size_t calls)> behind;  // told of each call that was tried, of CallsTried()
};

class Conformance {
 public:
  // The device is at rest, and outlives this object, as the recorder does.
  Conformance(Device& device, ConformSettings settings);

  // Ends early at a signal of interrupt.h.
  ConformReport Run();

  static size_t CallsTried();

 private:
  // What came of a call.
  struct Outcome {
    std::optional<ConformCause> fault = {};
    int code = 0;
  };
  // What an operation answered in a state, by rows.
  struct Cell {
    bool tried = false;
    int code = 0;
  };

  template <typename Call>
  Outcome Make(Call&& call);
  // Begins a piece of the recording and of the progress; false when no more is to be tried.
  bool Begin(std::string_view what);
  void End(std::string_view result);

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
  void ReadAll();
  void ReadAgain();
  void TryStates();
  void TryCell(size_t place, State state, ConformRow* row);
  void JudgeCells(size_t place, ConformRow* row) const;
  void TryRefusals();
  void TryRefusal(const RefusalCall& refusal, ConformRow* row);
  bool ExpectState(std::string_view behind, State at, int expected, ConformRow* row);
  void CheckTexts(const ReadingCall& reading, const AskedTextRooms& texts, ConformRow* row) const;

  static void Add(ConformRow* row, ConformFinding finding);
  // Adds what went wrong with the call itself; false when nothing did.
  static bool AddFault(const Outcome& outcome, std::string_view operation, State state,
                       ConformRow* row);

  Device& device_;
  const ConformSettings settings_;
  RtfClientInterface& client_;
  ConformReport report_;
  std::vector<std::array<Cell, kStates>> cells_;
  std::vector<std::string> first_answers_;
  std::optional<State> at_;  // nothing was done there since it was entered
  bool waits_ = false;       // settled documents wait to be closed
  size_t calls_ = 0;
  bool gone_ = false;  // nothing more is tried
};

}  // namespace lorimat::console
