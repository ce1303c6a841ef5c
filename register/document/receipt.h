// The document in progress: its lines, what they add up to, and what has been paid. Nothing
// here prints, and nothing is stored: a document that is abandoned leaves no trace.
//
// Every operation answers a result code of rpccommon/services; one that is refused changes
// nothing.
#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include "register/tables/tables.h"
#include "register/value/money.h"

namespace lorimat {

enum class DocumentKind { kSale, kInvoice, kRefund, kCancel };

// What a line does to the total, as it is stored: a sale adds, the next three take off. Deposit and
// voucher are redeemed: paid for on an earlier document, they lower this one. The last two are the
// adjustments of a registered document, and no kinds of items.
enum class LineKind { kSale, kRefund, kDeposit, kVoucher, kAdjustment, kSubtotalAdjustment };

// A line resolved against the tables: every value known, amounts not negative.
struct Item {
  LineKind kind = LineKind::kSale;
  std::string description = {};
  bool description_given = false;  // by the host, not by the tables
  std::string article = {};
  std::string unit_name = {};
  int department = 0;  // 0 for a line that names a VAT entry alone
  int vat = 0;
  int32_t quantity = kOnePiece;
  bool quantity_given = false;
  Amount unit_price = 0;
  Amount amount = 0;  // whole cents
  // A tax of its own that the price of fuel contains; 0 for none. It is printed, and not summed.
  Amount special_tax = 0;
  std::string special_tax_name = {};
};

// What else the line has to meet that a correction takes back.
struct VoidTerms {
  bool by_amount = false;   // without a quantity a whole line of the amount, and no piece
  int adjustment_type = 0;  // has this adjustment
  int64_t adjustment = 0;   // of this value; 0 for any line
};

// An adjustment as the host asks for it.
struct AdjustmentRequest {
  int type = 0;          // RTF_FPTR_AT_*
  int64_t value = 0;     // amount or percentage
  int department = 0;    // 0 for the last line
  int vat = 0;           // VAT entry that it falls on; 0 for that of the line, of a void for any
  bool spread = false;   // of a department: over the entries of its lines, `vat` where it has none
  bool is_void = false;  // takes an earlier one back
  // On the subtotal: shares by VAT entry, whole cents, that the host gives by itself.
  std::map<int, Amount> package = {};
};

// An adjustment as it was carried out.
struct Adjustment {
  AdjustmentRequest request;
  bool on_subtotal = false;
  Amount delta = 0;              // what it did to the total
  std::map<int, Amount> by_vat;  // the same by VAT entry
  std::optional<size_t> line;    // the line that it belongs to
  bool is_void = false;          // takes an earlier one back
  bool voided = false;           // has been taken back
};

struct Payment {
  const Tender* tender = nullptr;
  Amount amount = 0;
  Amount face = 0;  // of a ticket above what was due; 0 for what counts whole
};

// The tenders of what rounding cash to five cents does, each with its sign.
struct CashRounding {
  const Tender* down = nullptr;
  const Tender* up = nullptr;
};

struct DepartmentSum {
  int64_t quantity = 0;  // thousandths
  Amount amount = 0;
};

bool IsPercentage(int adjustment_type);
bool IsSurcharge(int adjustment_type);
bool IsCoupon(int adjustment_type);

class Receipt {
 public:
  struct Line {
    Item item;
    int32_t open_quantity = 0;
    Amount open_amount = 0;  // not yet taken back, without adjustments
    Amount adjusted = 0;     // what adjustments did to it, as it counts in the total
  };

  // Starts an empty document.
  explicit Receipt(DocumentKind kind = DocumentKind::kSale) : kind_(kind) {}

  // --- The state to go back to
  // Notes the receipt as it stands. Costs what a few sums cost, however many lines there are, and
  // may fail, with the earlier state still noted or none; then nothing may be taken back.
  void Mark();
  // Makes it again what it was at Mark, at the cost of what has changed since. Needs no memory.
  void TakeBack() noexcept;

  // Adds a line.
  int Enter(const Item& item);
  // Takes back a line, or some pieces of one: of the same kind, department, VAT entry and unit
  // price, and of the article and description where `item` names them, that has the quantity left;
  // without a quantity also a whole line of that amount. Of several it is the latest with the very
  // article, or none, and the description of `item`; without such a one the latest that comes to
  // the amount of `item`; without one the latest. `amount` takes what it
  // did to the total: for a line with adjustments, which only goes as a whole, the adjusted amount;
  // `description` what the line is called. A line that was not sold answers
  // RTF_EFPTR_BAD_ITEM_AMOUNT, as does one that adjustments of its department count on.
  int Void(const Item& item, Amount* amount, const VoidTerms& terms = {},
           std::string* description = nullptr);
  // Takes back a correction that Void made; which one of several, as Void finds its line.
  int Restore(const Item& item, Amount* amount, std::string* description = nullptr);
  // Discounts or surcharges a line or a department.
  int Adjust(const AdjustmentRequest& request, Adjustment* done);
  // Discounts or surcharges the whole document, spread over its VAT entries.
  int AdjustSubtotal(const AdjustmentRequest& request, Adjustment* done);
  // The same with the shares by VAT entry that the request gives; each above 0. Only an amount.
  int AdjustPackage(const AdjustmentRequest& request, Adjustment* done);
  // Pays an amount, or with `automatic` the rest. With a rounding, what is paid wholly in cash
  // comes to five cents: the rest is rounded, an amount from the one to the other counts as the
  // rounded one, and what was rounded stands ahead of the last payment as one of its own.
  int Pay(const Tender& tender, Amount amount, bool automatic, Payment* done,
          const CashRounding* rounding = nullptr);
  // Notes that the subtotal has been shown; the next line or payment takes it off.
  void ShowSubtotal() { at_subtotal_ = true; }

  // The last line, for the markers "as the last line"; null when there is none.
  const Item* last_line() const { return lines_.empty() ? nullptr : &lines_.back().item; }
  // The last line as the document stands, for its correction; null when it has been taken back.
  const Item* last_open_line() const;

  DocumentKind kind() const { return kind_; }
  bool empty() const { return lines_.empty(); }
  bool at_subtotal() const { return at_subtotal_; }
  Amount total() const { return total_; }
  Amount paid() const { return paid_; }
  // What is still to be paid; 0 when the payments cover the total.
  Amount remaining() const;
  Amount change() const;
  const std::map<int, Amount>& by_vat() const { return by_vat_; }
  const std::map<int, DepartmentSum>& by_department() const { return by_department_; }
  // Every line that was entered, those taken back too.
  const std::vector<Line>& lines() const { return lines_; }
  const std::vector<Payment>& payments() const { return payments_; }
  const std::vector<Adjustment>& adjustments() const { return adjustments_; }
  // The tax contained in the total, rounded for each VAT entry by itself.
  Amount VatTotal(const std::vector<VatRate>& rates) const;

 private:
  struct FoundLine {
    size_t index = 0;
    bool whole = false;  // all that is left of it, else pieces
  };
  // What rounding takes off the total, or adds to it, if this tender pays the rest.
  Amount RoundingBy(const Tender& tender, const CashRounding* rounding) const;
  std::optional<FoundLine> FindOpenLine(const Item& item, const VoidTerms& terms) const;
  bool HasAdjustment(size_t line, int type, int64_t value) const;
  // What the lines and the adjustments of a department come to, by VAT entry.
  std::map<int, Amount> DepartmentByVat(int department) const;
  // What the sale lines and the adjustments of a department come to.
  Amount SoldBy(int department) const;
  // Whether that stays at zero or above with a change; one upwards always goes.
  bool LeavesDepartment(int department, Amount delta) const;
  int CheckSums(const std::map<int, Amount>& deltas) const;
  void AddToSums(const std::map<int, Amount>& deltas);
  void AddToDepartment(const Item& item, int32_t quantity, Amount amount);
  int TakeBackAdjustment(const AdjustmentRequest& request, bool on_subtotal, Adjustment* done);
  // The numbers of a line, or the mark of an adjustment, that are about to change.
  Line& Change(size_t line);
  void SetVoided(size_t adjustment);

  // What changes of a line.
  struct LineNumbers {
    size_t index = 0;
    int32_t open_quantity = 0;
    Amount open_amount = 0;
    Amount adjusted = 0;
  };
  // The sums and counts as they were at the mark, and of the lines and adjustments that stood then
  // those that have changed since, as they were, the last one last.
  struct Marked {
    size_t lines = 0;
    size_t adjustments = 0;
    size_t payments = 0;
    std::map<int, Amount> by_vat;
    std::map<int, DepartmentSum> by_department;
    Amount total = 0;
    Amount paid = 0;
    bool at_subtotal = false;
    std::vector<LineNumbers> changed_lines;
    std::vector<size_t> voided;  // adjustments
  };

  DocumentKind kind_;
  std::vector<Line> lines_;
  std::vector<Adjustment> adjustments_;
  std::vector<Payment> payments_;
  std::map<int, Amount> by_vat_;
  std::map<int, DepartmentSum> by_department_;
  Amount total_ = 0;
  Amount paid_ = 0;
  bool at_subtotal_ = false;
  Marked marked_;
};

}  // namespace lorimat
