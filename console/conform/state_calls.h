// The states of a device, and every operation that they allow or refuse: the table of
// docs/devices.md, by which devices are tried.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

class RtfClientInterface;

namespace lorimat::console {

enum State : uint8_t { kMonitor, kReceipt, kTotal, kEnding, kNonFiscal, kItemList, kStates };

struct DeviceStateName {
  int printer;  // of RTF_PIDXFptr_PrinterState
  std::string_view name;
};
const DeviceStateName& NameOfState(State state);

// Bits of StateCall::flags.
enum StateCallFlag : unsigned {
  kOwnRules = 1,       // where it is allowed, the device may refuse it for a reason of its own
  kNotInTraining = 2,  // programs or reports: a device in training may refuse it in every state
  kLeftAlone = 4,      // ends or begins training, and is not for a device that is being tried
};

struct StateCall {
  std::string_view name;  // the operation, and behind a blank what is special about the call
  int (*call)(RtfClientInterface& device);
  bool allowed[kStates];
  unsigned flags = 0;
  State after = kStates;  // the state behind one that was done; kStates where it is not told
};
std::span<const StateCall> StateCalls();

// What leads from the monitor's state into the others, one step after the other.
struct StateStep {
  unsigned states;  // bits 1 << State: those that it leads to
  std::string_view operation;
  int (*call)(RtfClientInterface& device);
  bool optional = false;  // a device that has it not goes on
};
std::span<const StateStep> StateSteps();

}  // namespace lorimat::console
