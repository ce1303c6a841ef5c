// What a register is at a moment beside its tables, its receipts and its paper: values that an
// operation may change, and the open document.
#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "register/document/printer_state.h"
#include "register/document/receipt.h"
#include "register/document/reference.h"
#include "register/fault/faults.h"
#include "register/state/lottery_drop.h"
#include "register/tables/device_setup.h"
#include "register/tables/keyboards.h"
#include "register/tables/options.h"
#include "register/value/money.h"
#include "register/value/settings.h"
#include "rpccommon/services/rtffptrconst.h"

namespace lorimat {

// Positions of the key lock.
enum class KeyPosition { kRegister = 1, kRead = 2, kReset = 3, kProgram = 4 };

// A document that moves cash into the drawer or out of it, and registers nothing.
enum class CashMove { kNone, kIn, kOut };

// What goes with the open document, on paper and into the store.
struct DocumentNotes {
  std::tm begun = {};  // when it was opened
  Reference reference;
  Amount referred_total = 0;  // what a void has to come to
  // Of the day of the sale that it refers to; null for those in force.
  std::shared_ptr<const std::vector<VatRate>> rates;
  std::string lottery_code;
  LotteryDropCause lottery_drop = LotteryDropCause::kNone;  // why it goes out without one
  std::string tax_id;
  // These once it is settled: its place among the registered ones, its number, and when.
  int64_t id = 0;
  int number = 0;
  std::string number_text;  // "DOCUMENTO N. 0001-0001"
  std::tm time = {};
  bool total_shown = false;
  bool trailer_printed = false;
  CashMove cash = CashMove::kNone;
  Amount cash_total = 0;
};

// The open document: what was sold, and what goes with it.
struct OpenDocument : DocumentNotes {
  Receipt receipt{DocumentKind::kSale};
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

// How far a host has come with the device; each state has all of those before it.
enum class ServiceState { kClosed, kOpen, kClaimed, kEnabled };

// What a host does with the device beyond its documents; a new start begins with another.
struct HostSession {
  int receipt_type = RTF_FPTR_RT_SALES;  // what BeginFiscalReceipt opens, RTF_FPTR_RT_*
  bool buffer_receipts = false;          // documents are kept for a copy as they end
  std::shared_ptr<const std::vector<std::string>> buffered;  // the last one; null for none
  int item_list_vat = 0;                                     // of the open item list
  std::string health;                                        // what the last test found
  bool article_transfer = false;                             // articles are on their way
  // The last lottery code that was left out, until something fails; and how many were.
  LotteryDrop lottery_drop;
  uint64_t lottery_drops = 0;
};

// Whether the last unit of work registered something: then the file says so until another is
// stored, or until the register is switched off in order. A document that is begun behind it shows
// that something was, so that nothing is written for it before it ends.
enum class AnswerDue { kNone, kDocument, kClosure };

// What an operation may change in memory, beside the receipt, the tables, the paper and the
// store, which know themselves how to take a change back. It is copied before each operation:
// keep what is large elsewhere. What lasts beyond the switching off has a row in
// store_settings.cpp.
struct RegisterState {
  PrinterState state = PrinterState::kMonitor;
  RegisterOptions options;
  DeviceOptions device_options;
  DeviceSetup setup;  // lasts
  HostSession session;
  Keyboards keyboards;
  KeyPosition key = KeyPosition::kRegister;
  int current_operator = 1;
  int drawer_count = 0;
  size_t document_start = 0;    // the line of paper that the open document begins with
  bool keep_non_fiscal = true;  // the open non-fiscal document goes to the journal
  std::string firmware_version;
  int report_polls = 0;  // reads of the state that still show a report on its way
  bool pass_through = false;
  FaultPlan faults;  // that wait
  AnswerDue answer_due = AnswerDue::kNone;
  std::map<int, Display> displays;  // 0 and 1 face the operator, 2 the customer
};

}  // namespace lorimat
