// What the papers of a day come to, and a closing held against it.
#include <cstdlib>

#include "properties/paper_reader.h"

namespace lorimat {
namespace {

// Rates that come to nothing may be missing.
template <typename Sums>
bool Same(const Sums& one, const Sums& other) {
  const auto of = [](const Sums& sums, const std::string& name) {
    const auto found = sums.find(name);
    return found == sums.end() ? 0 : found->second;
  };
  for (const auto& [name, sum] : one) {
    if (of(other, name) != sum) return false;
  }
  for (const auto& [name, sum] : other) {
    if (of(one, name) != sum) return false;
  }
  return true;
}

void AddTo(const SumsByMark& sums, SumsByMark* all) {
  for (const auto& [mark, sum] : sums) {
    (*all)[mark].count += sum.count;
    (*all)[mark].amount += sum.amount;
  }
}

// The rows of a closing that tell amounts and counts by rate are those of the documents.
std::string WrongSums(const ReadPaper& closing, const char* name, const SumsByMark& sums) {
  SumsByMark told, known;
  if (const auto row = closing.by_mark_of.find(name); row != closing.by_mark_of.end()) {
    for (const auto& [mark, amount] : row->second) {
      told[mark] = {closing.counts_of.at(name).at(mark), amount};
    }
  }
  for (const auto& [mark, sum] : sums) {
    if (sum != ReadSum()) known[mark] = sum;
  }
  if (told == known) return {};
  return std::string("a closing has other sums or counts by rate: ") + name;
}

bool SameCounts(const ReadPaper& closing, const char* name, const std::map<std::string, int>& day) {
  const auto told = closing.counts_of.find(name);
  return Same(told == closing.counts_of.end() ? std::map<std::string, int>() : told->second, day);
}

// The days from 1 January of the year 0 to "15/01/2024".
int DayNumber(const std::string& date) {
  static constexpr int kBefore[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
  const int day = std::atoi(date.c_str()), month = std::atoi(date.c_str() + 3);
  const int year = std::atoi(date.c_str() + 6);
  const bool leap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
  const int leaps = (year + 3) / 4 - (year + 99) / 100 + (year + 399) / 400;
  return 365 * year + leaps + kBefore[month - 1] + (leap && month > 2 ? 1 : 0) + day - 1;
}

// A closing tells of a day that was opened on another date, and of the dates between the closing
// ahead and the first document, or itself.
std::string WrongDates(const ReadPaper& closing, const ReadDay& day, const std::string& closed_on) {
  if (closing.date.empty()) return "a closing has no date";
  const bool late = !day.first_date.empty() && day.first_date != closing.date;
  if (closing.opened != (late ? day.first_date : "")) return "a closing tells of another opening";
  const std::string& until = day.first_date.empty() ? closing.date : day.first_date;
  const int idle = closed_on.empty() ? 0 : DayNumber(until) - DayNumber(closed_on) - 1;
  if ((idle > 0) != !closing.idle_from.empty()) return "a closing tells of other dates";
  if (idle > 0 && (DayNumber(closing.idle_from) != DayNumber(closed_on) + 1 ||
                   DayNumber(closing.idle_to) != DayNumber(until) - 1)) {
    return "a closing tells of other dates";
  }
  return {};
}

}  // namespace

void AddToDay(const ReadPaper& paper, ReadDay* day) {
  if (paper.kind == PaperKind::kAbandoned) ++day->abandoned;
  if (!paper.fiscal()) return;
  if (day->first_date.empty()) day->first_date = paper.date;
  ++(paper.kind == PaperKind::kInvoice ? day->invoices : day->documents);
  const int sign = paper.sign();
  if (sign > 0) day->sales += paper.total;
  if (paper.kind == PaperKind::kInvoice) day->of_invoices += paper.total;
  if (paper.kind == PaperKind::kCreditNote) day->credit_notes += paper.total;
  if (paper.kind == PaperKind::kVoid) day->voids += paper.total;
  day->tax += sign * paper.tax;
  if (paper.kind == PaperKind::kSale) ++day->of_sale;
  if (paper.kind == PaperKind::kCreditNote) ++day->of_credit;
  if (paper.kind == PaperKind::kVoid) ++day->of_void;
  if (sign > 0) {
    AddTo(paper.discounts, &day->discounts);
    AddTo(paper.surcharges, &day->surcharges);
    AddTo(paper.refund_lines, &day->refund_lines);
    day->unsure = day->unsure || paper.unsure;
  }
  for (const auto& [mark, gross] : paper.by_mark) {
    const int one = gross != 0 ? 1 : 0;
    day->moved[mark] += one;
    if (paper.kind == PaperKind::kCreditNote) day->credited[mark] += one;
    if (paper.kind == PaperKind::kVoid) day->voided[mark] += one;
    const Cents tax = paper.TaxOf(mark);
    day->gross_by_mark[mark] += sign * gross;
    day->tax_by_mark[mark] += sign * tax;
    if (sign > 0) day->sold_tax[mark] += tax;
    if (paper.kind == PaperKind::kCreditNote) day->credit_gross[mark] += gross;
    if (paper.kind == PaperKind::kVoid) day->void_gross[mark] += gross;
    (sign > 0                               ? day->sold_net
     : paper.kind == PaperKind::kCreditNote ? day->credit_net
                                            : day->void_net)[mark] += gross - tax;
  }
  day->not_collected += sign * paper.not_collected();
  day->discount_on_payment += sign * paper.discount_on_payment();
  day->rounded_down += sign * paper.rounded_down();
  day->rounded_up += sign * paper.rounded_up();
  for (size_t at = 0; at < paper.payments.size(); ++at) {
    const NamedAmount& payment = paper.payments[at];
    // The change is given back of what was paid last.
    const bool last = at + 1 == paper.payments.size();
    const Cents kept = payment.amount - (last ? paper.change : 0);
    day->by_tender[payment.name] += sign * kept;
    ++day->payments[payment.name];
    if (sign < 0) continue;
    day->sold_by_tender[payment.name] += kept;
    ++day->sold_payments[payment.name];
  }
}

std::string WrongClosing(const ReadPaper& closing, const ReadDay& day, const ReadDay& before) {
  const auto money = [&](const char* name, Cents sum) {
    const auto row = closing.rows.find(name);
    Cents amount = 0;
    return row != closing.rows.end() && ReadCents(row->second, &amount) && amount == sum;
  };
  const auto count = [&](const char* name, int number) {
    const auto row = closing.rows.find(name);
    return row != closing.rows.end() && row->second == std::to_string(number);
  };
  if (!count("Documenti", day.documents)) return "a closing counts other documents";
  if (!count("Fatture", day.invoices)) return "a closing counts other invoices";
  if (!count("Documenti annullati in corso", day.abandoned)) {
    return "a closing counts other abandoned documents";
  }
  // Those of which there are none are not named.
  for (const auto& [name, number] : {std::pair("Documenti di vendita", day.of_sale),
                                     std::pair("Documenti di reso", day.of_credit),
                                     std::pair("Documenti di annullo", day.of_void)}) {
    if (number == 0 ? closing.rows.count(name) != 0 : !count(name, number)) {
      return std::string("a closing counts other documents: ") + name;
    }
  }
  if (!money("Vendite", day.sales)) return "a closing has other sales";
  if (!money("Resi", day.credit_notes)) return "a closing has other credit notes";
  if (!money("Annulli", day.voids)) return "a closing has other voids";
  if (!money("Totale non riscosso", day.not_collected))
    return "a closing has another sum not collected";
  if (!money("TOTALE GIORNALIERO", day.net())) return "a closing has another total";
  if (!money("GRAN TOTALE", before.net() + day.net())) {
    return "a closing has another grand total";
  }
  if (!money("Progressivo vendite", before.sales + day.sales) ||
      !money("Progressivo resi", before.credit_notes + day.credit_notes) ||
      !money("Progressivo annulli", before.voids + day.voids)) {
    return "what only grows is another sum";
  }
  std::map<std::string, Cents> tenders;
  for (const NamedAmount& tender : closing.tenders) tenders[tender.name] += tender.amount;
  if (!Same(tenders, day.by_tender)) return "a closing has other payments";
  if (!Same(closing.payment_counts, day.payments)) return "a closing counts other payments";
  const auto of = [&closing](const char* name) {
    const auto found = closing.by_mark_of.find(name);
    return found == closing.by_mark_of.end() ? std::map<std::string, Cents>() : found->second;
  };
  if (std::string wrong = WrongDates(closing, day, before.closed_on); !wrong.empty()) return wrong;
  Cents tax = 0;
  for (const auto& [mark, sum] : of("Imposta")) tax += sum;
  if (tax != day.tax) return "a closing has another tax";
  std::map<std::string, Cents> net = day.gross_by_mark;
  for (const auto& [mark, sum] : day.tax_by_mark) net[mark] -= sum;
  struct Row {
    const char* name;
    const std::map<std::string, Cents>& sums;
  };
  for (const Row& row :
       {Row{"Totale", day.gross_by_mark}, Row{"Imponibile", net}, Row{"Imposta", day.tax_by_mark},
        Row{"Documenti di reso", day.credit_gross}, Row{"Annulli", day.void_gross}}) {
    if (!Same(of(row.name), row.sums)) {
      return std::string("a closing has other sums by rate: ") + row.name;
    }
  }
  if (!SameCounts(closing, "Totale", day.moved) ||
      !SameCounts(closing, "Documenti di reso", day.credited) ||
      !SameCounts(closing, "Annulli", day.voided)) {
    return "a closing counts other documents by rate";
  }
  if (day.unsure) return {};
  for (const auto& [name, sums] :
       {std::pair("Sconti", &day.discounts), std::pair("Maggiorazioni", &day.surcharges),
        std::pair("Resi di riga", &day.refund_lines)}) {
    if (std::string wrong = WrongSums(closing, name, *sums); !wrong.empty()) return wrong;
  }
  return {};
}

}  // namespace lorimat
