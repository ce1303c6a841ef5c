// The kind of a sale line, first argument of RtfClientInterface::PrintRecItemEx.
#pragma once

struct PflItemType {
  enum Enum {
    kPrintRecItem = 0,                  // plain sale
    kPrintRecItemVoid = 1,              // correction of an earlier line
    kPrintRecItemRefund = 2,            // refund line
    kPrintRecItemRefundVoid = 3,        // correction of a refund line
    kPrintRecItemVoidOfVoid = 4,        // correction of a correction
    kPrintRecItemDeposit = 5,           // deposit line
    kPrintRecItemDepositVoid = 6,       // correction of a deposit line
    kPrintRecItemBuoniMonouso = 7,      // single-use voucher line
    kPrintRecItemBuoniMonousoVoid = 8,  // correction of a single-use voucher line
  };
};
