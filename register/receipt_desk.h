// The operations on documents: each tests the printer's state, works out the whole result,
// and only then changes anything and prints. A refused operation answers its code and leaves
// register and paper as they were.
#pragma once

#include <cstdint>
#include <string_view>

#include "register/core.h"
#include "register/layout.h"

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
};

struct BarcodeArguments {
  std::string_view type;
  std::string_view alignment;      // "1" left, "2" right, "3" centred
  std::string_view text_position;  // "0" none, "1" above, "2" below, "3" both
  std::string_view data;
  bool cut = false;
  std::string_view scale = {};  // "1" to "9"
  bool check_digit = false;     // added to a CODE39
};

class ReceiptDesk {
 public:
  explicit ReceiptDesk(RegisterCore& core) : core_(core), layout_(core) {}

  // --- Opening
  int BeginReceipt(bool print_header);
  // `customer` points to the five lines of the invoice's head.
  int BeginInvoice(const std::string_view (&customer)[5], bool opposition);
  int BeginRefund(const Reference& reference);
  // A void of one of this register's sales; an empty reference names the last one. With
  // `automatic` the register makes the whole document, otherwise its lines follow and have to
  // come to the same total.
  int BeginCancel(const Reference& reference, bool automatic, std::string_view text);

  // --- Lines
  int Line(const LineArguments& arguments);
  // What Line would answer if it were the first line of a receipt.
  int TryLine(const LineArguments& arguments) const;
  int VoidLastLine();
  int Adjust(int type, std::string_view description, int64_t value, int vat, int department,
             bool is_void);
  int AdjustSubtotal(int type, std::string_view description, int64_t value, bool is_void);
  int PrintSubtotal();
  int CheckSubtotal(Amount expected);
  int Message(std::string_view text);
  int TaxId(std::string_view text);
  int LotteryCode(std::string_view code);

  // --- Payment and closing
  int Total(Amount payment, std::string_view tender, bool automatic);
  int AdditionalTrailer();
  int EndReceipt();
  int VoidReceipt(std::string_view description);
  void Reset();

  // --- Printing
  int BeginNonFiscal(bool save_on_journal);
  int PrintNormal(int station, std::string_view text);
  int EndNonFiscal();
  int Barcode(const BarcodeArguments& arguments);
  int Bitmap(int number);
  int Cut();

 private:
  int Resolve(const LineArguments& arguments, const Item* last, LineAction* action,
              Item* item) const;
  int CheckBegin() const;
  bool AllowsDiscount(int department) const;
  void Open(DocumentKind kind, const Reference& reference);
  void Settle();
  void Store(StoredDocument stored);
  void FinishDocument();
  void KeepInJournal(JournalKind kind, int number, const std::tm& time);

  RegisterCore& core_;
  Layout layout_;
};

}  // namespace lorimat
