// The paper read back as somebody reads it who has nothing but the roll and the form of the
// documents (docs/register.md): texts, amounts in whole cents and rates, with arithmetic of its
// own. It knows no table, no store and no total of the register.
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

namespace lorimat {

using Cents = int64_t;

// "-1234,50" in cents; false for another text.
bool ReadCents(const std::string& text, Cents* cents);
// "22%" and "7,3%" in hundredths of a percent; 0 for what is no rate.
int64_t RateOfMark(const std::string& mark);
// The tax that a gross amount contains, rounded half away from zero.
Cents TaxWithin(Cents gross, int64_t rate);

enum class PaperKind { kSale, kInvoice, kCreditNote, kVoid, kAbandoned, kClosing, kOther };

// A row with a name and an amount.
struct NamedAmount {
  std::string name;
  Cents amount = 0;
};

// How many there are, and what they come to.
struct ReadSum {
  int count = 0;
  Cents amount = 0;

  bool operator==(const ReadSum&) const = default;
};
using SumsByMark = std::map<std::string, ReadSum>;

struct ReadPaper {
  PaperKind kind = PaperKind::kOther;
  std::vector<std::string> lines;
  // --- Of a document
  std::string number;                    // "0001-0002", or of an invoice "7"
  std::string referred;                  // "0001-0001", where one is named
  std::string date;                      // "15/01/2024", of a closing too
  std::map<std::string, Cents> by_mark;  // gross by what stands in the column of the rates
  Cents total = 0;
  Cents tax = 0;                      // as printed
  std::vector<NamedAmount> payments;  // as printed
  Cents change = 0;
  int tickets = 0;        // as printed
  int tickets_above = 0;  // that were more than what was due
  bool shows_paid = false;
  Cents paid = 0;
  std::string lottery_code;
  std::string lottery_refused;  // why there is none
  int adjustments = 0;          // of lines, departments and the subtotal
  int shared_adjustments = 0;   // that fall on several rates
  int subtotals = 0;
  int quantities = 0;
  int natures = 0;  // that its legend tells
  // As they stand in the end, by rates.
  SumsByMark discounts, surcharges, refund_lines;
  // Nobody can say from the paper which line a correction means, and it makes a difference to them.
  bool unsure = false;
  // --- Of a closing
  std::map<std::string, std::string> rows;  // what stands at the right, by what stands at the left
  std::vector<NamedAmount> tenders;
  // "Totale", "Imposta" and the like, each by rates.
  std::map<std::string, std::map<std::string, Cents>> by_mark_of;
  // How many there are: of payments by their name, of the others by name and rate.
  std::map<std::string, int> payment_counts;
  std::map<std::string, std::map<std::string, int>> counts_of;

  std::string opened, idle_from, idle_to;  // dates that it tells; empty for none

  // What is wrong with it by itself, empty when nothing is.
  std::string wrong;

  bool fiscal() const { return kind < PaperKind::kAbandoned; }
  // 1 for what adds to a day, -1 for what goes back.
  int sign() const { return kind == PaperKind::kSale || kind == PaperKind::kInvoice ? 1 : -1; }
  Cents not_collected() const;
  Cents discount_on_payment() const;
  // What rounding cash let go, and what it took besides.
  Cents rounded_down() const;
  Cents rounded_up() const;
  // Whether nothing but cash paid.
  bool wholly_in_cash() const;
  // The tax of each rate, from its gross.
  Cents TaxOf(const std::string& mark) const;
};

// Reads the legend of the natures, and the lottery code or why there is none; answers what is wrong
// with them, empty when nothing is.
std::string ReadNatures(ReadPaper* paper);
// "N4" of "ES*"; empty for a rate.
std::string NatureOfMark(const std::string& mark);
std::string ReadLottery(ReadPaper* paper);
// A row of a name, maybe a rate, and an amount at the right edge; false for another.
bool ReadRow(const std::string& line, std::string* name, std::string* mark, Cents* amount);
// The discounts, surcharges and refund lines of a document (paper_goods.cpp).
void ReadGoods(ReadPaper* paper);

// The papers of a roll, in their order: what lies between its cuts.
std::vector<ReadPaper> ReadRoll(const std::vector<std::string>& lines);

// What a day comes to, from its documents.
struct ReadDay {
  int documents = 0, invoices = 0, abandoned = 0;
  Cents sales = 0, credit_notes = 0, voids = 0, not_collected = 0, of_invoices = 0;
  Cents tax = 0, discount_on_payment = 0, rounded_down = 0, rounded_up = 0;
  std::map<std::string, Cents> gross_by_mark, tax_by_mark;
  // Net and tax of sales and invoices; net of credit notes, net of voids.
  std::map<std::string, Cents> sold_net, sold_tax, credit_net, void_net;
  std::map<std::string, Cents> credit_gross, void_gross;
  std::map<std::string, Cents> by_tender;
  std::map<std::string, Cents> sold_by_tender;  // of sales and invoices alone
  std::map<std::string, int> sold_payments;
  std::map<std::string, int> payments;  // of all documents
  // Of sales and invoices.
  SumsByMark discounts, surcharges, refund_lines;
  bool unsure = false;
  // Documents by rate.
  std::map<std::string, int> moved, credited, voided;
  int of_sale = 0, of_credit = 0, of_void = 0;
  std::string first_date;  // of its first document
  std::string closed_on;   // of all days before: the date of the last closing

  Cents net() const { return sales - credit_notes - voids; }
};

// Adds a document, or what is abandoned.
void AddToDay(const ReadPaper& paper, ReadDay* day);

// What is wrong with a closing, from the documents of its day and of all days before; empty when
// nothing is.
std::string WrongClosing(const ReadPaper& closing, const ReadDay& day, const ReadDay& before);

}  // namespace lorimat
