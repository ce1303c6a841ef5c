#include "register/report/report_sections.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>
#include <utility>

#include "register/desk/layout.h"

namespace lorimat {
namespace {

struct DocumentKindRow {
  DocumentKind kind;
  const char* name;
};
constexpr DocumentKindRow kDocumentKinds[] = {
    {DocumentKind::kSale, "Documenti di vendita"},
    {DocumentKind::kRefund, "Documenti di reso"},
    {DocumentKind::kCancel, "Documenti di annullo"},
};

struct NotPaidRow {
  TaxedFigure figure;
  const char* name;
};
constexpr NotPaidRow kNotPaid[] = {
    {TaxedFigure::kInvoicesNotPaid, "  di cui con fattura a seguire"},
    {TaxedFigure::kServicesNotPaid, "  di cui servizi"},
    {TaxedFigure::kSsnNotPaid, "  di cui SSN"},
    {TaxedFigure::kUndeliveredNotPaid, "  di cui altro"},
    {TaxedFigure::kGiftsNotPaid, "  di cui omaggi"},
};

constexpr unsigned kSold = Totals::kSales | Totals::kInvoices;

// What credit notes or voids came to, without their sign.
Amount GoneBack(const RateSums& sums, unsigned kinds) {
  Amount sum = 0;
  AddTo(&sum, sums.Sum(kinds, TaxedFigure::kGross).amount, -1);
  return sum;
}

Amount Given(const RateSums& sums, EnteredFigure one, EnteredFigure other) {
  Amount sum = sums.Stands(kSold, one);
  AddTo(&sum, sums.Stands(kSold, other));
  return sum;
}

// What is told of a rate; all but the first only where it is something. Base and tax are of the
// documents that the total counts.
struct VatRow {
  const char* name;
  Amount (*of)(const RateSums& sums);
  int64_t (*count)(const RateSums& sums) = nullptr;
};
constexpr VatRow kVatRows[] = {
    {"Totale",
     [](const RateSums& sums) { return sums.Sum(Totals::kAll, TaxedFigure::kGross).amount; },
     [](const RateSums& sums) { return sums.Count(Totals::kAll, Counted::kDocuments); }},
    {"Imponibile",
     [](const RateSums& sums) { return sums.Sum(Totals::kAll, TaxedFigure::kGross).net(); }},
    {"Imposta",
     [](const RateSums& sums) { return sums.Sum(Totals::kAll, TaxedFigure::kGross).tax; }},
    {"Sconti",
     [](const RateSums& sums) {
       return Given(sums, EnteredFigure::kDiscounts, EnteredFigure::kSubtotalDiscounts);
     },
     [](const RateSums& sums) { return sums.Count(kSold, Counted::kDiscounts); }},
    {"Maggiorazioni",
     [](const RateSums& sums) {
       return Given(sums, EnteredFigure::kSurcharges, EnteredFigure::kSubtotalSurcharges);
     },
     [](const RateSums& sums) { return sums.Count(kSold, Counted::kSurcharges); }},
    {"Resi di riga",
     [](const RateSums& sums) { return sums.Stands(kSold, EnteredFigure::kRefundLines); },
     [](const RateSums& sums) { return sums.Count(kSold, Counted::kRefundLines); }},
    {"Documenti di reso", [](const RateSums& sums) { return GoneBack(sums, Totals::kRefunds); },
     [](const RateSums& sums) { return sums.Count(Totals::kRefunds, Counted::kDocuments); }},
    {"Annulli", [](const RateSums& sums) { return GoneBack(sums, Totals::kCancels); },
     [](const RateSums& sums) { return sums.Count(Totals::kCancels, Counted::kDocuments); }},
};
// Of a closing of the fiscal memory: total, base and tax.
constexpr size_t kMemoryRows = 3;

// A name, and how many there are; days of earlier versions do not know it.
std::string Counting(std::string_view name, int64_t count) {
  return count == 0 ? std::string(name) : fmt::format("{} n. {}", name, count);
}

void PrintRates(const std::vector<RateSums>& rates, std::span<const VatRow> rows, Paper* paper) {
  for (const RateSums& sums : rates) {
    for (const VatRow& row : rows) {
      const Amount amount = row.of(sums);
      const int64_t count = row.count != nullptr ? row.count(sums) : 0;
      if (amount == 0 && count == 0 && &row != rows.data()) continue;
      paper->Pair(Counting(fmt::format("{} {}", row.name, sums.name), count), FormatAmount(amount));
    }
  }
}

void PrintDay(const RegisterCore& core, const ReportFigures& figures, Paper* paper) {
  const DailyTotals totals = figures.totals.Summary();
  if (figures.counters != nullptr) {
    paper->Pair("Documenti", std::to_string(figures.counters->documents));
    paper->Pair("Fatture", std::to_string(figures.counters->invoices));
    paper->Pair("Documenti annullati in corso", std::to_string(figures.counters->abandoned));
  } else {
    const int invoices = figures.totals.of(DocumentKind::kInvoice).documents;
    paper->Pair("Documenti", std::to_string(figures.totals.documents() - invoices));
    paper->Pair("Fatture", std::to_string(invoices));
  }
  for (const auto& [kind, name] : kDocumentKinds) {
    if (const int count = figures.totals.of(kind).documents) {
      paper->Pair(name, std::to_string(count));
    }
  }
  paper->Pair("Vendite", FormatAmount(totals.receipts));
  paper->Pair("Resi", FormatAmount(totals.refunds));
  paper->Pair("Annulli", FormatAmount(totals.cancels));
  paper->Pair("Totale non riscosso", FormatAmount(totals.not_paid));
  for (const NotPaidRow& row : kNotPaid) {
    const Amount amount = figures.totals.Sum(Totals::kAll, 0, row.figure).amount;
    if (amount != 0) paper->Pair(row.name, FormatAmount(amount));
  }
  if (figures.counters != nullptr) {
    paper->Pair("TOTALE GIORNALIERO", FormatAmount(totals.net()));
    paper->Pair("GRAN TOTALE", FormatAmount(figures.grand_total));
    // The grand total goes down with what goes back; these only grow.
    const DailyTotals all = core.store.GrandTotals().Summary();
    paper->Pair("Progressivo vendite", FormatAmount(all.receipts));
    paper->Pair("Progressivo resi", FormatAmount(all.refunds));
    paper->Pair("Progressivo annulli", FormatAmount(all.cancels));
  } else {
    paper->Pair("TOTALE DEL PERIODO", FormatAmount(totals.net()));
  }
}

// Each line has a name of its own: subtenders may be called alike, or as another tender.
std::string NameOf(const Tender& tender, const Tables& tables) {
  for (const Tender& other : tables.tenders()) {
    if (&other != &tender && other.name == tender.name) {
      return fmt::format("{} ({})", tender.name, tender.id);
    }
  }
  return tender.name;
}

void PrintTenders(const RegisterCore& core, const ReportFigures& figures, Paper* paper) {
  paper->Text("PAGAMENTI");
  const std::map<std::string, Amount> sums = figures.totals.Summary().by_tender;
  for (const Tender& tender : core.tables.tenders()) {
    const auto sum = sums.find(tender.id);
    if (sum == sums.end()) continue;
    paper->Pair(Counting(NameOf(tender, core.tables), figures.totals.Payments(tender.id)),
                FormatAmount(sum->second));
  }
}

void PrintVat(const ReportFigures& figures, Paper* paper) {
  paper->Text("IVA");
  PrintRates(figures.rates, kVatRows, paper);
}

void PrintDepartments(const RegisterCore& core, const ReportFigures& figures, Paper* paper) {
  paper->Text("REPARTI");
  for (const auto& [number, sum] : figures.totals.Summary().by_department) {
    const Department* department = core.tables.FindDepartment(number);
    const std::string name = department != nullptr ? department->name : std::string();
    paper->Pair(fmt::format("{:02} {}", number, name), FormatAmount(sum.amount));
    const DepartmentSum sold = figures.totals.Sold(number);
    paper->Pair("  venduto pezzi " +
                    fmt::format("{}{}{:03}", sold.quantity / 1000, ',', sold.quantity % 1000),
                FormatAmount(sold.amount));
  }
}

void PrintOperators(const ReportFigures& figures, Paper* paper) {
  paper->Text("OPERATORI");
  const std::map<int, int> counts = figures.totals.OperatorCounts();
  for (const auto& [number, amount] : figures.totals.ByOperator()) {
    const auto count = counts.find(number);
    paper->Pair(
        fmt::format("{:02} documenti {}", number, count != counts.end() ? count->second : 0),
        FormatAmount(amount));
  }
}

}  // namespace

void PrintSections(const RegisterCore& core, const ReportFigures& figures, unsigned sections,
                   Paper* paper) {
  bool first = true;
  const auto begin = [&](unsigned section) {
    if ((sections & section) == 0) return false;
    if (!first) paper->Blank();
    first = false;
    return true;
  };
  if (begin(kDaySection)) PrintDay(core, figures, paper);
  if (begin(kTenderSection)) PrintTenders(core, figures, paper);
  if (begin(kVatSection)) PrintVat(figures, paper);
  if (begin(kDepartmentSection)) PrintDepartments(core, figures, paper);
  if (begin(kOperatorSection)) PrintOperators(figures, paper);
}

void PrintClosure(const Closure& closure, Paper* paper) {
  const DailyTotals totals = closure.totals.Summary();
  paper->Pair(fmt::format("CHIUSURA N. {:04}", closure.number), FormatDateTime(closure.time));
  paper->Pair("Documenti", std::to_string(closure.counters.documents));
  paper->Pair("Fatture", std::to_string(closure.counters.invoices));
  PrintRates(SumsByRate(closure.totals, closure.vat_rates), std::span(kVatRows).first(kMemoryRows),
             paper);
  paper->Pair("TOTALE GIORNALIERO", FormatAmount(totals.net()));
  paper->Pair("GRAN TOTALE", FormatAmount(closure.grand_total));
}

}  // namespace lorimat
