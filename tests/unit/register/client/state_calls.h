// Every operation that the state of the printer allows or refuses, with the states that allow it.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "register/client/virtual_register.h"

namespace lorimat {

enum State { kMonitor, kReceipt, kTotal, kEnding, kNonFiscal, kItemList, kStates };

// The same as values of RTF_PIDXFptr_PrinterState.
extern const int kPrinterStates[kStates];

struct StateCall {
  std::string name;  // the operation, and behind a blank what is special about the call
  std::function<int(VirtualRegister&)> call;
  bool allowed[kStates];
};

const std::vector<StateCall>& StateCalls();

// Brings a fresh register into the state, behind one registered sale.
void Enter(VirtualRegister& device, State state);

}  // namespace lorimat
