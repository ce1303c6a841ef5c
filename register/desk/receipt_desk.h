// The operations on documents: each tests the printer's state, works out the whole result,
// and only then changes anything and prints. A refused operation answers its code and leaves
// register and paper as they were.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string_view>
#include <vector>

#include "register/core/core.h"
#include "register/desk/layout.h"
#include "register/document/receipt_entry.h"

namespace lorimat {

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
  // The kind of document that the host has chosen by RTF_PIDXFptr_FiscalReceiptType.
  int BeginChosen(bool print_header);
  // `customer` points to the five lines of the invoice's head.
  int BeginInvoice(const std::string_view (&customer)[5], bool opposition);
  // A credit note for a sale of this register that something is left of, of another register, or
  // for none that is named.
  int BeginRefund(const Reference& reference);
  // A credit note over the whole of one of this register's sales, made at once.
  int RefundWhole(const Reference& reference);
  // A void of one of this register's sales that has no credit note; an empty reference names the
  // last one. With `automatic` the register makes the whole document, otherwise its lines follow
  // and have to come to the same total.
  int BeginCancel(const Reference& reference, bool automatic, std::string_view text);

  // --- Lines
  int Line(const LineArguments& arguments, const VoidTerms& terms = {});
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
  // An adjustment of the subtotal with its shares: "1,10000;2,5000", VAT entries and amounts.
  int AdjustPackage(int type, std::string_view description, std::string_view shares, bool is_void);
  // Takes a line back; with an adjustment, the line has to have it.
  int VoidItem(const LineArguments& arguments, int adjustment_type, int64_t adjustment);
  // A line of a document that moves cash.
  int Cash(Amount amount);

  // --- Payment and closing
  // `text` is printed ahead of the tender.
  int Total(Amount payment, std::string_view tender, bool automatic, std::string_view text = {});
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
  // The last document that was buffered, as a copy; once.
  int PrintDuplicate();

 private:
  int CheckBegin() const;
  bool IsOwn(const Reference& reference) const;
  int FindSale(const Reference& reference, StoredDocument* sale) const;
  int FindWholeSale(const Reference& reference, StoredDocument* sale) const;
  int CheckPaidBack() const;
  bool RoundsCash() const;
  void MakeWhole(DocumentKind kind, const StoredDocument& sale);
  std::vector<VatRate> RatesOf(const StoredDocument& sale) const;
  std::map<int, Amount> PrintGoneBack(const StoredDocument& sale);
  int BeginCash(CashMove move, bool print_header);
  int TotalCash(Amount payment, std::string_view tender, bool automatic);
  void Buffer();
  void Open(DocumentKind kind, const Reference& reference, std::vector<VatRate> rates = {});
  void Settle();
  PaidParts CheckedParts(const StoredDocument& stored) const;
  void SetLottery(const StoredDocument& stored);
  void Store(StoredDocument stored);
  void TellRoom();
  void FinishDocument();
  void KeepInJournal(JournalKind kind, int number, const std::tm& time);

  RegisterCore& core_;
  Layout layout_;
};

}  // namespace lorimat
