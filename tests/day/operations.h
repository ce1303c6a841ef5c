// The operations of a day that chance makes: each by its number, with values out of bytes. The
// numbers are those of the fuzzer's inputs, and stay.
#pragma once

#include "day/input_numbers.h"
#include "register/client/virtual_register.h"

namespace lorimat {

enum DayOperation : int {
  kDayBegin = 0,  // two numbers, as what is done often has more than one
  kDaySell = 2,   // five of them
  kDayAnyLine = 7,
  kDayTakeBack = 8,
  kDayDiscount = 9,
  kDayAdjust = 10,
  kDayAdjustSubtotal = 11,
  kDayTakeAdjustmentBack = 12,
  kDaySubtotal = 13,
  kDayPayRest = 14,  // four
  kDayPay = 18,      // two
  kDayNotPaid = 20,
  kDayEnd = 21,
  kDayVoidDocument = 22,
  kDayReset = 23,
  kDayTelematicRefund = 24,  // two
  kDayTelematicCancel = 26,
  kDayRefund = 27,
  kDayCancel = 28,
  kDayInvoice = 29,
  kDayBeginNonFiscal = 30,
  kDayPrint = 31,
  kDayEndNonFiscal = 32,
  kDayClose = 33,
  kDayReport = 34,
  kDayMessage = 35,
  kDayTaxId = 36,
  kDayBarcode = 37,
  kDayTrailer = 38,
  kDayDuplicate = 39,
  kDayTakeItemBack = 40,
  kDayPackage = 41,
  kDayRefundLine = 42,
  kDaySetItem = 43,
  kDayBeginTraining = 44,
  kDayEndTraining = 45,
  kDaySetVat = 46,
  kDayGetItem = 47,
  kDayOperations = 48,
};

// Carries out an operation; takes its values out of the bytes. Answers what the register does.
int OperateDay(VirtualRegister& device, int operation, InputNumbers& input);

}  // namespace lorimat
