// What a receipt comes to, by the register's own arithmetic and the device's tables, before
// anything is sent.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "door/receipt/receipt_request.h"
#include "register/tables/tables.h"

namespace lorimat::door {

// What a device is programmed with, as far as sums rest on it.
struct DeviceTables {
  Tables tables;
  bool round_cash = false;  // what is paid wholly in cash, to five cents
};

// Amounts in ten-thousandths of the currency.
struct ReceiptSums {
  struct PaymentSum {
    std::string name;  // as the paper has it
    int64_t amount = 0;
  };
  struct VatSum {
    std::string rate;  // "22%", or a mark
    int64_t amount = 0;
  };

  std::vector<int64_t> items;  // what each item adds to the total, its adjustment included
  int64_t subtotal = 0;        // ahead of its discount
  int64_t total = 0;
  // Whether the three below are known: what takes a sale back rounds cash as that sale did, which
  // only the device knows.
  bool has_payments = true;
  int64_t paid = 0;
  int64_t change = 0;
  std::map<int, VatSum> by_vat;
  std::map<int, int64_t> by_department;
  std::vector<PaymentSum> payments;
};

// Not of a void without items. What the device would refuse for its tables or for its sums is told
// as a problem, with the place; what rests on earlier documents only the device knows.
std::optional<ReceiptProblem> SumReceipt(const ReceiptRequest& receipt, const DeviceTables& device,
                                         ReceiptSums* sums);

}  // namespace lorimat::door
