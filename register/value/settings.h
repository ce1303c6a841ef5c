// What a virtual register is made with: identity, header, VAT table, departments, articles,
// clock. The defaults give a small Italian shop that can sell at once.
#pragma once

#include <cstdint>
#include <ctime>
#include <functional>
#include <string>
#include <vector>

#include "register/value/money.h"

namespace lorimat {

struct VatRate {
  int32_t rate = 0;  // ten-thousandths of a percent
  // Shown on the lines in place of the rate, for sales without tax: of their nature
  // (register/value/nature.h).
  std::string mark = {};
};

struct Department {
  std::string name = {};
  int vat = 1;                     // entry of the VAT table, from 1
  Amount price = 0;                // preset price of one piece; 0 for none
  Amount max_price = 0;            // the highest price of a line; 0 for no limit
  int group = 0;                   // 0 for none
  int32_t quantity = 0;            // kept for the host
  bool single_shoot = false;       // a line by key makes a whole receipt, paid in cash
  bool allow_discount = true;      // discounts on its lines
  bool force_description = false;  // a line wants a text of its own
  bool is_service = false;         // services, not goods
};

struct Article {
  std::string code = {};
  std::string description = {};
  int department = 1;
  Amount price = 0;  // price of one piece; 0 for none
};

struct RegisterSettings {
  // Where the register is kept: a database file, made when it is not there. What it holds goes
  // before the settings below, which a new one is made with. Empty: in memory, gone with the
  // object.
  std::string file = {};
  // At most 32 characters; the translator reads the model from the characters 13 and 14.
  std::string serial_number = "99LRM0000001VR";
  std::string firmware_version = "1.00";  // at most 20 characters
  // Put into service with the revenue agency: documents carry the number of the closure.
  bool commissioned = true;
  std::vector<std::string> header_lines = {"NEGOZIO DI PROVA", "Via Esempio 1 - 00100 ROMA",
                                           "P.IVA 01234567897"};
  // Entry 1 is the first element. 22, 10, 5 and 4 percent and exempt.
  std::vector<VatRate> vat_rates = {{220000}, {100000}, {50000}, {40000}, {0, "ES*"}};
  // Department 1 is the first element; at most 40. Empty gives forty of them: 1 to 5 on the
  // VAT entries 1 to 5, the others on entry 1.
  std::vector<Department> departments = {};
  std::vector<Article> articles = {};
  // At most 99 each.
  int operators = 10;
  int groups = 10;
  // Whether the device has the extended record of a department. One without refuses it, and
  // knows no services.
  bool extended_departments = true;
  // Whether tables and options can only be programmed with the key in that position (4).
  bool programming_needs_key = false;
  bool open_drawer_at_end = false;   // data item 459
  bool fixed_decimal_point = false;  // data item 352: keyed digits count cents
  // How many reads of the printer's state behind a report still answer "at a report".
  int report_polls = 0;
  // The shop's VAT number, for the telematic summary.
  std::string vat_number = "01234567897";
  bool round_cash = false;  // what is paid wholly in cash, to five cents
  // Where summaries and lottery documents that are sent are put, one file each; the folder has
  // to exist. Empty: the one that the shop has set up (register/desk/shop_setup.h); without that
  // they are noted as sent, and no file is written.
  std::string outbox = {};
  int last_closure = 0;  // number of the last day closing made
  int last_invoice = 0;
  // The device's clock. Empty takes the local time of the system; tests fix it.
  std::function<std::tm()> clock = {};
};

}  // namespace lorimat
