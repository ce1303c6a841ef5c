// A registered document with everything that reports and totalizers add up. What is summed
// later is worked out once, when the document is registered: a later change of a VAT rate or
// of a department leaves it as it is.
#pragma once

#include <ctime>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "register/document/receipt.h"
#include "register/value/figures.h"

namespace lorimat {

// A line of a registered document. An adjustment is a line too; the voids of lines and
// adjustments show in what was taken back.
struct DocumentLine {
  LineKind kind = LineKind::kSale;
  int adjustment_type = 0;  // RTF_FPTR_AT_*, of the last two kinds
  std::string description = {};
  std::string article = {};
  int department = 0;
  int vat = 0;
  int32_t quantity = 0;
  Amount unit_price = 0;  // of an adjustment: its value, as it was asked for
  Amount amount = 0;      // as it was entered; of an adjustment with its sign
  int32_t quantity_taken_back = 0;
  Amount taken_back = 0;
};

struct DocumentPayment {
  std::string tender = {};
  Amount amount = 0;  // with the change
};

// What was paid by some tenders.
struct Collected {
  Amount amount = 0;
  int payments = 0;
};
inline void AddTo(Collected* sum, const Collected& value) {
  AddTo(&sum->amount, value.amount);
  AddTo(&sum->payments, value.payments);
}

// A rate that an entry of the VAT table had, and may have no longer.
struct EntryRate {
  int vat = 0;
  VatRate rate = {};

  bool operator<(const EntryRate& other) const {
    return std::tie(vat, rate.rate, rate.mark) <
           std::tie(other.vat, other.rate.rate, other.rate.mark);
  }
};

// Its number is that of the receipt, or of the invoice for kInvoice.
struct StoredDocument {
  int64_t id = 0;  // its place among all that were registered, from 1
  DocumentKind kind = DocumentKind::kSale;
  int closure = 0;  // the closure that the document falls under: the one to come
  int number = 0;
  std::tm time = {};
  int operator_number = 0;
  Amount total = 0;
  std::map<int, Amount> by_vat;       // gross by VAT entry
  std::map<int, VatFigures> figures;  // by VAT entry
  std::map<int, DepartmentSum> by_department;
  std::map<int, DepartmentSum> sold_by_department;  // without refund, deposit and voucher lines
  std::map<std::string, Amount> by_tender;          // without the change
  std::map<std::string, int> tender_counts;         // payments by tender
  // By what each tender was at the payment (SummaryElement); kNone is what was not paid.
  std::map<int, Collected> collected;
  // Where a sale goes back: the entries whose figures are at the rate of its day, which is another
  // by now.
  std::map<int, VatRate> other_rates;
  Amount not_paid = 0;
  Amount change = 0;
  Amount discounts = 0;
  Amount surcharges = 0;
  std::string lottery_code;
  bool lottery_sent = false;
  // The document that it refers to, for a credit note or a void of one of this register's own.
  int referred_closure = 0;
  int referred_number = 0;
  bool voided = false;  // a later document made it void
  std::vector<DocumentLine> lines;
  std::vector<DocumentPayment> payments;
};

// The sums of a document as it stands, paid or not, with the tax by these rates. Numbers, time,
// references, customer's codes and lines are the caller's to fill in.
StoredDocument Summarize(const Receipt& receipt, const Tables& tables,
                         const std::vector<VatRate>& rates);

// Counts a document in the entries that come to something, and keeps which of these had another
// rate than today. Of entries that have one rate the first counts: who adds papers up sees the
// rate. `rates` are those of the document.
void TellRates(const Tables& tables, const std::vector<VatRate>& rates, StoredDocument* document);

// What the payments of a document are, without the change. They come to its total, and what cash
// was rounded up by.
struct PaidParts {
  Amount collected = 0;
  Amount not_collected = 0;
  Amount discount = 0;    // on the payment
  Amount rounded_up = 0;  // cash above the total, collected too
};
// Nothing for payments that do not come to the total.
std::optional<PaidParts> PartsOf(const StoredDocument& document, const Tables& tables);

// How many tickets paid it.
int TicketsOf(const StoredDocument& document, const Tables& tables);

// The sums by VAT entry, department and tender as one text (register/value/row_encoding.h), and
// back; false for a text that is none.
std::string SumsRecord(const StoredDocument& document);
bool ReadSums(std::string_view text, StoredDocument* document);

// Its lines and payments.
void AddDetails(const Receipt& receipt, StoredDocument* stored);

}  // namespace lorimat
