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
};

Amount Stands(const EnteredAmount& entered) {
  Amount sum = entered.amount;
  AddTo(&sum, entered.taken_back, -1);
  return sum;
}

Amount Stands(const Totals& totals, int vat, EnteredFigure one, EnteredFigure other) {
  Amount sum = Stands(totals.Sum(Totals::kAll, vat, one));
  AddTo(&sum, Stands(totals.Sum(Totals::kAll, vat, other)));
  return sum;
}

// What credit notes or voids came to, without their sign.
Amount GoneBack(const Totals& totals, unsigned kinds, int vat) {
  Amount sum = 0;
  AddTo(&sum, totals.Sum(kinds, vat, TaxedFigure::kGross).amount, -1);
  return sum;
}

// What is told of a rate; all but the first only where it is something.
struct VatRow {
  const char* name;
  Amount (*of)(const Totals& totals, int vat);
};
constexpr VatRow kVatRows[] = {
    {"Totale ", [](const Totals& totals,
                   int vat) { return totals.Sum(Totals::kAll, vat, TaxedFigure::kGross).amount; }},
    {"Imponibile ",
     [](const Totals& totals, int vat) {
       return totals.Sum(Totals::kAll, vat, TaxedFigure::kGross).net();
     }},
    {"Imposta ", [](const Totals& totals,
                    int vat) { return totals.Sum(Totals::kAll, vat, TaxedFigure::kGross).tax; }},
    {"Sconti ",
     [](const Totals& totals, int vat) {
       return Stands(totals, vat, EnteredFigure::kDiscounts, EnteredFigure::kSubtotalDiscounts);
     }},
    {"Maggiorazioni ",
     [](const Totals& totals, int vat) {
       return Stands(totals, vat, EnteredFigure::kSurcharges, EnteredFigure::kSubtotalSurcharges);
     }},
    {"Resi di riga ",
     [](const Totals& totals, int vat) {
       return Stands(
           totals.Sum(Totals::kSales | Totals::kInvoices, vat, EnteredFigure::kRefundLines));
     }},
    {"Documenti di reso ",
     [](const Totals& totals, int vat) { return GoneBack(totals, Totals::kRefunds, vat); }},
    {"Annulli ",
     [](const Totals& totals, int vat) { return GoneBack(totals, Totals::kCancels, vat); }},
};
// Of a closing of the fiscal memory: total, base and tax.
constexpr size_t kMemoryRows = 3;

// By rate: entries of the same one are told as one.
void PrintRates(const Totals& totals, const std::vector<VatRate>& rates,
                std::span<const VatRow> rows, Paper* paper) {
  std::vector<std::pair<std::string, std::vector<int>>> names;
  for (const auto& [vat, gross] : totals.GrossByVat()) {
    const std::string name = VatName(rates, vat);
    auto found = std::find_if(names.begin(), names.end(),
                              [&name](const auto& known) { return known.first == name; });
    if (found == names.end()) found = names.insert(names.end(), {name, {}});
    found->second.push_back(vat);
  }
  for (const auto& [name, entries] : names) {
    for (const VatRow& row : rows) {
      Amount amount = 0;
      for (const int vat : entries) AddTo(&amount, row.of(totals, vat));
      if (amount != 0 || &row == rows.data()) paper->Pair(row.name + name, FormatAmount(amount));
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
  const Amount gifts = figures.totals.Tender(kGiftTender);
  for (const NotPaidRow& row : kNotPaid) {
    Amount amount = figures.totals.Sum(Totals::kAll, 0, row.figure).amount;
    if (row.figure == TaxedFigure::kUndeliveredNotPaid) AddTo(&amount, gifts, -1);
    if (amount != 0) paper->Pair(row.name, FormatAmount(amount));
  }
  if (gifts != 0) paper->Pair("  di cui omaggi", FormatAmount(gifts));
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

void PrintTenders(const RegisterCore& core, const ReportFigures& figures, Paper* paper) {
  paper->Text("PAGAMENTI");
  const std::map<std::string, Amount> sums = figures.totals.Summary().by_tender;
  for (const Tender& tender : core.tables.tenders()) {
    const auto sum = sums.find(tender.id);
    if (sum != sums.end()) paper->Pair(tender.name, FormatAmount(sum->second));
  }
}

void PrintVat(const ReportFigures& figures, Paper* paper) {
  paper->Text("IVA");
  PrintRates(figures.totals, figures.vat_rates, kVatRows, paper);
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
  PrintRates(closure.totals, closure.vat_rates, std::span(kVatRows).first(kMemoryRows), paper);
  paper->Pair("TOTALE GIORNALIERO", FormatAmount(totals.net()));
  paper->Pair("GRAN TOTALE", FormatAmount(closure.grand_total));
}

}  // namespace lorimat
