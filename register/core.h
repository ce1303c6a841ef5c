// The register's parts in one place: tables, store, paper, printer state and the document in
// progress. The classes that carry out the operations work on this.
#pragma once

#include <array>
#include <ctime>
#include <map>
#include <string>

#include "register/keyboards.h"
#include "register/options.h"
#include "register/paper.h"
#include "register/printer_state.h"
#include "register/receipt.h"
#include "register/store.h"
#include "register/tables.h"

namespace lorimat {

// Positions of the key lock.
enum class KeyPosition { kRegister = 1, kRead = 2, kReset = 3, kProgram = 4 };

// The document that a credit note or a void refers to.
struct Reference {
  int closure = 0;
  int number = 0;
  std::string date = {};    // DDMMYYYY, or empty
  std::string serial = {};  // of the register that made it; empty for this one

  bool empty() const { return closure == 0 && number == 0 && date.empty() && serial.empty(); }
};

// The open document: what was sold, and what goes with it on paper and into the store.
struct OpenDocument {
  Receipt receipt{DocumentKind::kSale};
  Reference reference;
  Amount referred_total = 0;  // what a void has to come to
  std::string lottery_code;
  std::string tax_id;
  int number = 0;           // these two once it is settled
  std::string number_text;  // "DOCUMENTO N. 0001-0001"
  std::tm time = {};        // when it was settled
  bool total_shown = false;
  bool trailer_printed = false;
};

struct Display {
  static constexpr int kRows = 2;
  static constexpr int kColumns = 20;
  std::array<std::string, kRows> rows;
};

// What a host sets by data items and properties.
struct RegisterOptions {
  bool auto_cut = true;       // data item 148, for the document in progress or the next one
  bool hold_settled = false;  // data item 600: the document waits to be closed
  std::string courtesy_text;  // data item 152
  bool send_lottery = false;
  bool auto_close = false;
  int date_type = RTF_FPTR_DT_RTC;
  int totalizer_scope = RTF_FPTR_TT_DAY;  // of GetTotalizer
  std::string pre_line;
  std::string post_line;
  std::string invoice_series;
};

struct RegisterCore {
  explicit RegisterCore(RegisterSettings settings);

  std::tm Now() const;
  // Whether an operation is allowed now; documents want the key in the registering position,
  // and programming may want it in its own.
  bool Allows(Operation operation) const;

  Tables tables;
  RegisterStore store;
  Paper paper;
  PrinterState state = PrinterState::kMonitor;
  OpenDocument document;
  RegisterOptions options;
  DeviceOptions device_options;
  Keyboards keyboards;
  KeyPosition key = KeyPosition::kRegister;
  int current_operator = 1;
  int drawer_count = 0;
  size_t document_start = 0;    // the line of paper that the open document begins with
  bool keep_non_fiscal = true;  // the open non-fiscal document goes to the journal
  std::string firmware_version;
  int report_polls = 0;  // reads of the state that still show a report on its way
  bool pass_through = false;
  std::map<int, Display> displays;  // 0 and 1 face the operator, 2 the customer
};

}  // namespace lorimat
