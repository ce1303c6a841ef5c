// What a receipt comes to, by the register's own arithmetic and the device's tables, as far as it
// tells them, before anything is sent.
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

  // Whether anything is known: which line is taken back can rest on names that the device keeps to
  // itself.
  bool is_known = true;
  std::vector<int64_t> items;  // what each item adds to the total, its adjustment included
  int64_t subtotal = 0;        // ahead of its discount
  int64_t total = 0;
  // Whether the two below are known: what rounds cash to five cents, and who gives change, only
  // the device may know, and what takes a sale back rounds as that sale did.
  bool has_paid = true;
  int64_t paid = 0;
  int64_t change = 0;
  // Nothing where the device does not tell which department has which rate, or of an article which
  // department it has, or how it names its tenders; nor `payments` where `has_paid` is not.
  std::optional<std::map<int, VatSum>> by_vat;
  std::optional<std::map<int, int64_t>> by_department;
  std::optional<std::vector<PaymentSum>> payments;
};

// Not of a void without items. What the device would refuse for its tables or for its sums is told
// as a problem, with the place; what rests on earlier documents only the device knows. `device` is
// null where it does not tell its tables: each item has to have a price then, and what rests on the
// tables is for the device to judge.
std::optional<ReceiptProblem> SumReceipt(const ReceiptRequest& receipt, const DeviceTables* device,
                                         ReceiptSums* sums);

}  // namespace lorimat::door
