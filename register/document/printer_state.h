// The printer's state machine: which operation is allowed in which state.
#pragma once

#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {

// The states that this register enters; the values are those of RTF_PIDXFptr_PrinterState.
// Invoices, credit notes and void documents go through the states of a receipt.
enum class PrinterState {
  kMonitor = RTF_FPTR_PS_MONITOR,
  kReceipt = RTF_FPTR_PS_FISCAL_RECEIPT,
  kTotal = RTF_FPTR_PS_FISCAL_RECEIPT_TOTAL,
  kEnding = RTF_FPTR_PS_FISCAL_RECEIPT_ENDING,
  kNonFiscal = RTF_FPTR_PS_NONFISCAL,
  kItemList = RTF_FPTR_PS_ITEM_LIST,
};

enum class Operation {
  kBeginDocument,  // a receipt, invoice, credit note, void or non-fiscal document
  kLine,           // sale, refund, deposit, voucher lines and their corrections
  kAdjustment,     // on a line or on the subtotal
  kSubtotal,       // printed or compared
  kTotal,          // payment
  kVoidReceipt,
  kTaxId,     // the customer's tax code
  kLottery,   // the customer's lottery code
  kMessage,   // a text line in a receipt
  kGraphics,  // barcode, logo
  kAdditionalTrailer,
  kEndReceipt,
  kPrintNormal,
  kEndNonFiscal,
  kCut,
  kReport,
  kTurnKey,
  kProgram,  // writing of tables, options, keyboards, logos, articles
  kCash,     // a line of a cash-in or cash-out document
  kTraining,
  kDuplicate,  // the copy of a buffered document
  kItemList,   // comparing an item, ending the list
  kSelfTest,   // a test that prints
};

// Whether an operation is allowed in a state.
bool Allows(PrinterState state, Operation operation);

}  // namespace lorimat
