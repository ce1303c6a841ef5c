#include "register/report/report_sections.h"

#include <fmt/format.h>

#include "register/desk/layout.h"

namespace lorimat {
namespace {

void PrintDay(const ReportFigures& figures, Paper* paper) {
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
  paper->Pair("Vendite", FormatAmount(totals.receipts));
  paper->Pair("Resi", FormatAmount(totals.refunds));
  paper->Pair("Annulli", FormatAmount(totals.cancels));
  paper->Pair("Non riscosso", FormatAmount(totals.not_paid));
  if (figures.counters != nullptr) {
    paper->Pair("TOTALE GIORNALIERO", FormatAmount(totals.net()));
    paper->Pair("GRAN TOTALE", FormatAmount(figures.grand_total));
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
  for (const auto& [vat, gross] : figures.totals.GrossByVat()) {
    paper->Pair("Totale " + VatName(figures.vat_rates, vat), FormatAmount(gross));
    const Amount tax = figures.totals.Sum(Totals::kAll, vat, TaxedFigure::kGross).tax;
    paper->Pair("  di cui imposta", FormatAmount(tax));
  }
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

std::string VatName(const std::vector<VatRate>& rates, int vat) {
  if (vat < 1 || static_cast<size_t>(vat) > rates.size()) return std::to_string(vat);
  const VatRate& rate = rates[static_cast<size_t>(vat) - 1];
  return rate.mark.empty() ? FormatRate(rate.rate) : rate.mark;
}

void PrintSections(const RegisterCore& core, const ReportFigures& figures, unsigned sections,
                   Paper* paper) {
  bool first = true;
  const auto begin = [&](unsigned section) {
    if ((sections & section) == 0) return false;
    if (!first) paper->Blank();
    first = false;
    return true;
  };
  if (begin(kDaySection)) PrintDay(figures, paper);
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
  for (const auto& [vat, gross] : closure.totals.GrossByVat()) {
    paper->Pair("Totale " + VatName(closure.vat_rates, vat), FormatAmount(gross));
    const Amount tax = closure.totals.Sum(Totals::kAll, vat, TaxedFigure::kGross).tax;
    paper->Pair("  di cui imposta", FormatAmount(tax));
  }
  paper->Pair("TOTALE GIORNALIERO", FormatAmount(totals.net()));
  paper->Pair("GRAN TOTALE", FormatAmount(closure.grand_total));
}

}  // namespace lorimat
