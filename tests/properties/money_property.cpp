// Money is conserved, on days by chance:
//
// - of a document: its lines, less what was taken back, less discounts, with surcharges, come to
// its
//   total, and so do its payments less the change, what is not paid among them;
// - of a day: the closing has the sums of its documents, and the grand total goes on by them;
// - of all: the totals since the beginning are those of all documents, and no more of a sale goes
//   back than was sold (WrongSums);
// - the telematic summary says the same: net and tax of each VAT entry, and the means of payment
//   with what was not collected, come to the day's sales and invoices.
#include <cmath>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "properties/day_generators.h"
#include "rpccommon/services/rtfconst.h"
#include "support/temporary_folder.h"

namespace lorimat {
namespace {

Amount SignOf(LineKind kind) {
  return kind == LineKind::kRefund || kind == LineKind::kDeposit || kind == LineKind::kVoucher ? -1
                                                                                               : 1;
}

// What is wrong with the sums of a document; empty when nothing is.
std::string WrongDocument(const StoredDocument& document, const Tables& tables, Seen* seen) {
  Amount lines = 0, discounts = 0, surcharges = 0;
  for (const DocumentLine& line : document.lines) {
    const Amount stands = line.amount - line.taken_back;
    lines += SignOf(line.kind) * stands;
    if (line.kind != LineKind::kAdjustment && line.kind != LineKind::kSubtotalAdjustment) {
      if (line.taken_back != 0) seen->Add("lines taken back");
      if (line.kind == LineKind::kRefund) seen->Add("refund lines");
      continue;
    }
    (IsSurcharge(line.adjustment_type) ? surcharges : discounts) += std::abs(stands);
  }
  if (lines != document.total) return "the lines do not come to the total";
  if (discounts != document.discounts) return "the discounts are other ones";
  if (surcharges != document.surcharges) return "the surcharges are other ones";
  if (document.total < 0) return "a total is below zero";
  if (discounts != 0) seen->Add("documents with discounts");
  if (surcharges != 0) seen->Add("documents with surcharges");
  if (document.change != 0) seen->Add("documents with change");
  if (document.not_paid != 0) seen->Add("documents that are not paid");

  Amount paid = 0, by_tender = 0, not_paid = 0, by_entry = 0;
  for (const DocumentPayment& payment : document.payments) paid += payment.amount;
  for (const auto& [id, amount] : document.by_tender) {
    by_tender += amount;
    const Tender* tender = tables.FindTender(id);
    if (tender == nullptr) return "a tender is unknown";
    if (tender->kind == TenderKind::kNotPaid) not_paid += amount;
  }
  // A void has no payments of its own.
  if (!document.payments.empty() && paid - document.change != document.total) {
    return "the payments less the change do not come to the total";
  }
  if (!document.by_tender.empty() && by_tender != document.total) {
    return "the tenders do not come to the total";
  }
  if (not_paid != document.not_paid) return "what is not paid is another sum";
  for (const auto& [vat, figures] : document.figures) {
    Amount of_entry = 0;
    for (const TaxedFigure figure :
         {TaxedFigure::kServicesNotPaid, TaxedFigure::kSsnNotPaid, TaxedFigure::kInvoicesNotPaid,
          TaxedFigure::kUndeliveredNotPaid, TaxedFigure::kGiftsNotPaid}) {
      of_entry += figures[figure].amount;
    }
    by_entry += of_entry;
    const Amount gross = figures[TaxedFigure::kGross].amount;
    if (of_entry < 0 || of_entry > gross) return "more of a VAT entry is not paid than was sold";
    if (not_paid == document.total && of_entry != gross) return "nobody paid, and an entry differs";
  }
  if (not_paid == document.total && document.payments.size() > 1) seen->Add("twice not paid");
  if (by_entry != not_paid) return "what is not paid is another sum by VAT entry";
  const bool taken =
      document.kind == DocumentKind::kSale || document.kind == DocumentKind::kInvoice;
  if (taken && document.total != 0 && document.payments.empty()) return "nobody has paid";
  return {};
}

// The sum of what stands in all elements of a name, in ten-thousandths.
Amount ElementSum(const std::string& xml, const std::string& name) {
  Amount sum = 0;
  const std::string begin = "<" + name + ">", end = "</" + name + ">";
  size_t at = 0;
  while ((at = xml.find(begin, at)) != xml.npos) {
    at += begin.size();
    const std::string text = xml.substr(at, xml.find(end, at) - at);
    // One of the elements stands in another of its name.
    if (text.find('<') != text.npos) continue;
    const size_t point = text.find('.');
    if (point == text.npos) return -1;
    sum += (std::stoll(text.substr(0, point)) * 100 + std::stoll(text.substr(point + 1))) * kCent;
  }
  return sum;
}

struct DaySums {
  Totals totals;
  Amount net = 0, tax = 0, taken = 0, not_paid = 0, back = 0;
  Amount change_to_grand_total = 0;
};

std::string WrongSummary(VirtualRegister& device, int closure, const DaySums& day,
                         const std::string& file, Seen* seen) {
  std::filesystem::remove(file);
  if (device.SaveTelematicSummary(closure, closure, file.c_str()) != RTF_SUCCESS) {
    return "no summary can be had";
  }
  std::ifstream in(file, std::ios::binary);
  const std::string xml(std::istreambuf_iterator<char>(in), {});
  if (ElementSum(xml, "Ammontare") != day.net) return "the summary has another net";
  if (ElementSum(xml, "Imposta") != day.tax) return "the summary has another tax";
  if (ElementSum(xml, "TotaleAmmontareResi") + ElementSum(xml, "TotaleAmmontareAnnulli") !=
      day.back) {
    return "the summary has other credit notes and voids";
  }
  const Amount collected = ElementSum(xml, "PagatoContanti") +
                           ElementSum(xml, "PagatoElettronico") + ElementSum(xml, "ScontoApagare") +
                           ElementSum(xml, "PagatoTicket");
  if (collected + day.not_paid != day.taken) return "the summary has other payments";
  seen->Add("summaries");
  if (day.taken != 0) seen->Add("summaries of sales");
  if (day.back != 0) seen->Add("summaries with something back");
  return {};
}

std::string WrongMoney(VirtualRegister& device, const std::string& file, Seen* seen) {
  const RegisterStore& store = device.store();
  std::map<int, DaySums> days;
  std::string wrong;
  Totals all;
  DocumentSelection everything;
  everything.details = true;
  store.ForEachDocument(everything, [&](const StoredDocument& document) {
    wrong = WrongDocument(document, device.tables(), seen);
    DaySums& day = days[document.closure];
    day.totals.Add(document);
    all.Add(document);
    const int sign = DailySign(document.kind);
    day.change_to_grand_total += sign * document.total;
    for (const auto& [vat, figures] : document.figures) {
      const TaxedAmount& gross = figures[TaxedFigure::kGross];
      if (sign > 0) {
        day.net += gross.amount - gross.tax;
        day.tax += gross.tax;
      } else {
        day.back += gross.amount - gross.tax;
      }
    }
    if (sign > 0) {
      day.taken += document.total;
      day.not_paid += document.not_paid;
    } else {
      seen->Add("credit notes and voids");
    }
    return wrong.empty();
  });
  if (!wrong.empty()) return wrong;
  if (all.ToRecord() != store.GrandTotals().ToRecord()) return "the totals are not the documents'";
  Amount grand_total = 0;
  for (const Closure& closure : store.closures()) {
    const DaySums& day = days[closure.number];
    if (day.totals.ToRecord() != closure.totals.ToRecord()) {
      return "a closing has other sums than its documents";
    }
    grand_total += day.change_to_grand_total;
    if (closure.grand_total != grand_total) return "a closing has another grand total";
    if (const DailyTotals sums = closure.totals.Summary();
        sums.net() != day.change_to_grand_total) {
      return "a closing has another net";
    }
    wrong = WrongSummary(device, closure.number, day, file, seen);
    if (!wrong.empty()) return wrong;
  }
  return WrongSums(store);
}

TEST(MoneyProperty, WhatIsSoldIsPaidAndSummedUp) {
  const PropertyRun run = RunOf(400);
  Seen seen("money");
  const std::filesystem::path folder = MakeTemporaryFolder();
  Holds(run, [&] {
    const Day steps = *Days(40, 0);
    TroubledDay::Counts counts;
    TroubledDay day("", nullptr, &counts);
    for (const DayStep& step : steps) {
      if (!day.Do(step)) RC_FAIL(day.wrong() + ": " + DescribeStep(step));
    }
    // No report goes out beside an open document.
    day.device().ResetPrn();
    day.device().EndTraining();
    const std::string wrong = WrongMoney(day.device(), (folder / "summary.xml").string(), &seen);
    if (!wrong.empty()) RC_FAIL(wrong);
    seen.Add("documents", counts.documents);
  });
  std::filesystem::remove_all(folder);
  seen.Require(run, {{"documents", 500},
                     {"lines taken back", 50},
                     {"refund lines", 50},
                     {"documents with discounts", 50},
                     {"documents with surcharges", 50},
                     {"documents with change", 5},
                     {"documents that are not paid", 20},
                     {"twice not paid", 2},
                     {"credit notes and voids", 50},
                     {"summaries of sales", 100},
                     {"summaries with something back", 20}});
}

}  // namespace
}  // namespace lorimat
