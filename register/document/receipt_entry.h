// What a client's call for a line, an adjustment or a payment makes of a receipt, by the tables:
// the arithmetic of a document without its paper and its storage. Each answers a result code; one
// that is refused changes nothing, and notes its cause (register/value/refusal.h).
#pragma once

#include <string_view>

#include "register/document/receipt.h"
#include "register/tables/tables.h"

namespace lorimat {

// A line as a client call gives it.
struct LineArguments {
  int pfl_item_type = 0;  // PflItemType::Enum
  std::string_view description = {};
  Amount price = 0;  // -1: the preset price of the department or article
  int32_t quantity = 0;
  int vat = -1;  // -1: that of the department; -2: that of the last line
  Amount unit_price = 0;
  std::string_view unit_name = {};
  int department = -1;  // -1: none; -2: that of the last line
  std::string_view article = {};
  // Of fuel: a tax that the price of the line contains, 0 for none.
  Amount special_tax = 0;
  std::string_view special_tax_name = {};
};

enum class LineAction { kEnter, kVoid, kRestore };

// An adjustment of a line or a department as a client call gives it.
struct AdjustmentArguments {
  int type = 0;       // RTF_FPTR_AT_*
  int64_t value = 0;  // amount or percentage
  int vat = -1;
  int department = -2;  // -1 or -2: the last line
  bool is_void = false;
};

// Quantity, price of a piece and amount of a line. A quantity goes with a unit price; without one,
// the line is one piece at its price. `preset` is the price of a line that has none.
int PriceLine(const LineArguments& arguments, Amount preset, Item* item);
// The line as the tables have it. `last` is the last line of its document, null for none.
int ResolveLine(const Tables& tables, const LineArguments& arguments, const Item* last,
                LineAction* action, Item* item);
// The same, carried out on the receipt; `amount` takes what it did to the total.
int EnterLine(const Tables& tables, const LineArguments& arguments, const VoidTerms& terms,
              Receipt* receipt, LineAction* action, Item* item, Amount* amount);
int EnterAdjustment(const Tables& tables, const AdjustmentArguments& arguments, Receipt* receipt,
                    Adjustment* done);
// A tender that a host may pay with.
int FindPayingTender(const Tables& tables, std::string_view id, const Tender** tender);
// Pays an amount, or with `automatic` the rest.
int EnterPayment(const Tables& tables, const Tender& tender, Amount amount, bool automatic,
                 bool round_cash, Receipt* receipt, Payment* done);

}  // namespace lorimat
