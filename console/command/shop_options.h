// The options of "init" and "set": what a shop sets of its register.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "register/desk/shop_setup.h"
#include "register/value/refusal.h"
#include "register/value/settings.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct ShopOptions {
  std::string serial;
  std::string vat_number;
  std::vector<std::string> header;
  std::vector<std::string> vat;
  std::vector<std::string> departments;
  std::string outbox;
  bool no_outbox = false;
  bool round_cash = false;
  bool no_round_cash = false;
  bool training = false;
  bool no_training = false;
  bool not_in_service = false;
  bool in_service = false;
};

// Adds those that a new register takes.
void AddShopOptions(CLI::App* command, ShopOptions* options);
// Adds those besides that take a setting back.
void AddShopChangeOptions(CLI::App* command, ShopOptions* options);

// What the options say, and how each was written.
struct ShopValues {
  lorimat::ShopSetup setup;
  std::vector<std::string> header;
  std::map<int, std::string> vat;          // by entry
  std::map<int, std::string> departments;  // by number
  // The options that were given, as "--vat-number".
  std::vector<std::string> given;
};

// Throws Failure, with the option, what is wrong with its value, the rule and an example.
ShopValues ReadShopOptions(const ShopOptions& options);

// The same of what the register refused.
std::string ShopRefusalText(const ShopValues& values, const lorimat::ShopRefusal& refused,
                            const lorimat::Refusal& refusal);

// A rate and a department as an option takes them: "22", "5.5"; "1=PANE:4:2.50".
std::string VatOptionText(int32_t rate);
std::string DepartmentOptionText(int number, const lorimat::Department& department);

}  // namespace lorimat::console
