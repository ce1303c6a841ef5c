// What a shop sets of its register: who it is, what its receipts say, its tables, and where it
// stands on its way into service. One setting takes as many of these as are given, all or none.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "register/value/money.h"

namespace lorimat {

struct RegisterCore;

// What is not given stays as it is.
struct ShopSetup {
  struct DepartmentChange {
    std::optional<std::string> name = {};
    std::optional<int> vat = {};       // entry of the VAT table, from 1
    std::optional<Amount> price = {};  // preset price of one piece; 0 for none
  };

  std::optional<std::string> serial_number = {};
  std::optional<std::string> vat_number = {};
  std::optional<std::vector<std::string>> header_lines = {};  // the whole header
  std::map<int, int32_t> vat_rates = {};  // by entry, in ten-thousandths of a percent
  // Of entries without tax, "N1" to "N6": what nature their sales are of.
  std::map<int, std::string> vat_natures = {};
  std::map<int, DepartmentChange> departments = {};
  std::optional<std::string> outbox = {};  // the folder of what is sent; empty for none
  std::optional<bool> round_cash = {};     // what is paid wholly in cash, to five cents
  std::optional<bool> training = {};
  std::optional<bool> in_service = {};
};

// Which of them was refused.
enum class ShopValue {
  kSerialNumber,
  kVatNumber,
  kHeaderLines,
  kVatRates,
  kDepartments,
  kOutbox,
  kRoundCash,
  kTraining,
  kInService,
};
struct ShopRefusal {
  ShopValue value = ShopValue::kSerialNumber;
  int number = 0;  // of the header line, VAT entry or department, from 1; 0 for none
};

// The line of a header that names a shop's VAT number, as a new register has it.
std::string VatNumberLine(std::string_view number);

// Part of an operation. A line of the header that is VatNumberLine of the VAT number till then goes
// along with another number, where no header is given; other lines stay. A code other than 0 has
// changed nothing, and `refused` tells which value it is about. The key does not count: this is no
// keyboard. Refused are, beside what the tables refuse,
// - serial number and VAT number, where they change, once the register has made a document;
// - a header line that is wider than the paper, or holds control characters other than ESC;
// - a department's name that holds control characters;
// - another VAT number, other rates and another state of service while a day is open;
// - everything but the end of training while the register is in training.
int SetUpShop(RegisterCore& core, const ShopSetup& setup, ShopRefusal* refused);

}  // namespace lorimat
