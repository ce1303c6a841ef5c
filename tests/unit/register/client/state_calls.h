// A register in each state of the printer, for the operations of console/conform/state_calls.h.
#pragma once

#include "console/conform/state_calls.h"
#include "register/client/virtual_register.h"

namespace lorimat {

using console::kEnding;
using console::kItemList;
using console::kNonFiscal;
using console::kReceipt;
using console::kStates;
using console::kTotal;
using console::State;
using console::StateCall;
using console::StateCalls;

// The values of RTF_PIDXFptr_PrinterState.
extern const int kPrinterStates[kStates];

// Brings a fresh register into the state, behind one registered sale.
void Enter(VirtualRegister& device, State state);

}  // namespace lorimat
