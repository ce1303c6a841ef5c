// The paper says what the register counts. Days by chance; then the roll is read back by a reader
// that has nothing but the paper (paper_reader.h), and what it adds up by itself is held against
//
// - each document: lines, subtotals, shares of the rates, tax, payments;
// - each closing: counts, kinds, tenders, rates, and the grand total that goes on;
// - the totals that a host could read just ahead of the closing;
// - the sum of all closings, and that of a period, by rates;
// - the telematic summary;
// - the documents and closings that are stored.
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

#include "properties/paper_day.h"
#include "properties/paper_reader.h"
#include "properties/property.h"
#include "rpccommon/services/rtfconst.h"
#include "rpccommon/services/rtffptrconst.h"
#include "support/temporary_folder.h"

namespace lorimat {
namespace {

// The register counts ten-thousandths.
constexpr int64_t kTenThousandths = 100;

struct TotalizerRow {
  int kind;
  Cents (*sum)(const ReadDay& day);
};

Cents Tender(const ReadDay& day, const char* name) {
  const auto sum = day.by_tender.find(name);
  return sum == day.by_tender.end() ? 0 : sum->second;
}

const TotalizerRow kTotalizers[] = {
    {RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS, [](const ReadDay& day) { return day.net(); }},
    {RTF_FPTR_GT_VAT_CATEGORY_REFUND_GROSS, [](const ReadDay& day) { return day.credit_notes; }},
    {RTF_FPTR_GT_VAT_CATEGORY_CANCEL_GROSS, [](const ReadDay& day) { return day.voids; }},
    {RTF_FPTR_GT_VAT_CATEGORY_INVOICE_GROSS, [](const ReadDay& day) { return day.of_invoices; }},
    {RTF_FPTR_GT_VAT_CATEGORY_TAXALL, [](const ReadDay& day) { return day.tax; }},
    {RTF_FPTR_GT_NOT_PAID, [](const ReadDay& day) { return day.not_collected; }},
    {RTF_FPTR_GT_DISCOUNT_ON_PAYMENT,
     [](const ReadDay& day) { return Tender(day, "Sconto a pagare"); }},
    {RTF_FPTR_GT_TICKET_PAYED_GROSS, [](const ReadDay& day) { return Tender(day, "Ticket"); }},
    {RTF_FPTR_GT_GENERIC_VOUCHER_GROSS,
     [](const ReadDay& day) { return Tender(day, "Buono multiuso"); }},
};

std::string WrongTotals(const DayFigures& figures, const ReadDay& day, bool by_rate) {
  for (const TotalizerRow& row : kTotalizers) {
    if (figures.totalizers.at(row.kind) != row.sum(day) * kTenThousandths) {
      return "totalizer " + std::to_string(row.kind) + " is not what the paper comes to";
    }
  }
  if (!by_rate) return {};
  std::map<int64_t, Cents> gross, tax;
  for (const auto& [mark, sum] : day.gross_by_mark) gross[RateOfMark(mark)] += sum;
  for (const auto& [mark, sum] : day.tax_by_mark) tax[RateOfMark(mark)] += sum;
  for (const auto& [text, kinds] : figures.by_mark) {
    const int64_t rate = std::stoll(text) / 100;
    if (kinds.at(RTF_FPTR_GT_VAT_CATEGORY_DAILY_GROSS) != gross[rate] * kTenThousandths ||
        kinds.at(RTF_FPTR_GT_VAT_CATEGORY_TAXALL) != tax[rate] * kTenThousandths) {
      return "the totalizers of a rate are not what the paper comes to";
    }
  }
  return {};
}

// What stands in the first element of a name, behind a place; empty without one.
std::string Element(const std::string& xml, const std::string& name, size_t at = 0) {
  const std::string begin = "<" + name + ">", end = "</" + name + ">";
  at = xml.find(begin, at);
  if (at == xml.npos) return {};
  at += begin.size();
  return xml.substr(at, xml.find(end, at) - at);
}

// "-12.34" in cents.
Cents CentsOf(std::string text) {
  const size_t point = text.find('.');
  if (point == text.npos) return -1;
  text.erase(point, 1);
  return std::stoll(text);
}

// Of a rate, or of a nature where there is none.
Cents SumOf(const std::map<std::string, Cents>& sums, int64_t rate, const std::string& nature) {
  Cents sum = 0;
  for (const auto& [mark, amount] : sums) {
    if (RateOfMark(mark) == rate && NatureOfMark(mark) == nature) sum += amount;
  }
  return sum;
}

std::string WrongSummary(const std::string& xml, const ReadDay& day) {
  const std::string begin = "<Riepilogo>";
  Cents sold = 0, credit = 0, voids = 0, tax = 0;
  for (size_t at = xml.find(begin); at != xml.npos; at = xml.find(begin, at + 1)) {
    const std::string block = xml.substr(at, xml.find("</Riepilogo>", at) - at);
    const std::string rate_text = Element(block, "AliquotaIVA");
    const int64_t rate = rate_text.empty() ? 0 : CentsOf(rate_text);
    const std::string nature = Element(block, "Natura");
    const Cents block_tax = rate == 0 ? 0 : CentsOf(Element(block, "Imposta"));
    const Cents net = CentsOf(Element(block, "Ammontare"));
    const Cents back = CentsOf(Element(block, "TotaleAmmontareResi"));
    const Cents cancelled = CentsOf(Element(block, "TotaleAmmontareAnnulli"));
    sold += net;
    credit += back;
    voids += cancelled;
    tax += block_tax;
    if (net != SumOf(day.sold_net, rate, nature) ||
        block_tax != SumOf(day.sold_tax, rate, nature) ||
        back != SumOf(day.credit_net, rate, nature) ||
        cancelled != SumOf(day.void_net, rate, nature)) {
      return "a rate of the summary is not what the paper comes to";
    }
  }
  const auto all = [](const std::map<std::string, Cents>& sums) {
    Cents sum = 0;
    for (const auto& [mark, amount] : sums) sum += amount;
    return sum;
  };
  if (sold != all(day.sold_net) || tax != all(day.sold_tax) || credit != all(day.credit_net) ||
      voids != all(day.void_net)) {
    return "the summary is not what the paper comes to";
  }
  struct Row {
    const char* element;
    std::vector<const char*> tenders;
  };
  static const Row kRows[] = {
      {"PagatoContanti", {"Pagamento contante", "Pagamento assegno"}},
      {"PagatoElettronico",
       {"Pagamento elettronico", "Pagamento bancomat", "Pagamento elettronico 01"}},
      {"ScontoApagare", {"Sconto a pagare", "Buono multiuso", "Arrotondamento per difetto"}},
  };
  for (const Row& row : kRows) {
    Cents sum = 0;
    for (const char* tender : row.tenders) {
      const auto found = day.sold_by_tender.find(tender);
      if (found != day.sold_by_tender.end()) sum += found->second;
    }
    if (CentsOf(Element(xml, row.element)) != sum) {
      return std::string("the summary has another sum in ") + row.element;
    }
  }
  Cents tickets = 0;
  int payments = 0;
  for (const char* tender : {"Ticket", "TICKET PRANZO"}) {
    const auto found = day.sold_by_tender.find(tender);
    if (found == day.sold_by_tender.end()) continue;
    tickets += found->second;
    payments += day.sold_payments.at(tender);
  }
  const std::string element = Element(xml, "PagatoTicket");
  if (CentsOf(Element(element + "</PagatoTicket>", "PagatoTicket")) != tickets ||
      Element(xml, "NumeroTicket") != std::to_string(payments)) {
    return "the summary has other tickets";
  }
  return {};
}

std::string SummaryOf(VirtualRegister& device, int closure, const std::string& file) {
  std::filesystem::remove(file);
  if (device.SaveTelematicSummary(closure, closure, file.c_str()) != RTF_SUCCESS) return {};
  std::ifstream in(file, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(in), {});
}

struct StoredKindRow {
  DocumentKind stored;
  PaperKind paper;
};
constexpr StoredKindRow kStoredKinds[] = {{DocumentKind::kSale, PaperKind::kSale},
                                          {DocumentKind::kInvoice, PaperKind::kInvoice},
                                          {DocumentKind::kRefund, PaperKind::kCreditNote},
                                          {DocumentKind::kCancel, PaperKind::kVoid}};

std::string NumberOf(const StoredDocument& document) {
  if (document.kind == DocumentKind::kInvoice) return std::to_string(document.number);
  const auto digits = [](int number) {
    const std::string text = std::to_string(number);
    return std::string(4 - text.size(), '0') + text;
  };
  return digits(document.closure) + "-" + digits(document.number);
}

// The documents that are stored are those on paper, in their order.
std::string WrongStore(const RegisterStore& store, const std::vector<ReadPaper>& papers) {
  std::vector<const ReadPaper*> printed;
  std::map<std::string, std::string> codes;  // of the lottery, by the number of the sale
  for (const ReadPaper& paper : papers) {
    if (paper.fiscal()) printed.push_back(&paper);
  }
  const std::vector<StoredDocument> stored = store.documents();
  if (stored.size() != printed.size()) return "there are other documents than on paper";
  for (size_t at = 0; at < stored.size(); ++at) {
    const StoredDocument& document = stored[at];
    const ReadPaper& paper = *printed[at];
    if (NumberOf(document) != paper.number) return "a document has another number on paper";
    for (const StoredKindRow& row : kStoredKinds) {
      if (row.stored == document.kind && row.paper != paper.kind) {
        return "a document is of another kind on paper";
      }
    }
    if (paper.kind == PaperKind::kSale) codes[paper.number] = paper.lottery_code;
    const bool goes_back = paper.sign() < 0 && document.referred_number != 0;
    if (document.lottery_code != paper.lottery_code ||
        paper.lottery_code != (goes_back                        ? codes[paper.referred]
                               : paper.kind == PaperKind::kSale ? paper.lottery_code
                                                                : "")) {
      return "a document has another lottery code: " + paper.number;
    }
    int64_t tax = 0;
    for (const auto& [vat, figures] : document.figures) tax += figures[TaxedFigure::kGross].tax;
    if (document.total != paper.total * kTenThousandths || tax != paper.tax * kTenThousandths) {
      return "a document has another total on paper: " + paper.number;
    }
    if (document.not_paid != paper.not_collected() * kTenThousandths ||
        document.change != paper.change * kTenThousandths) {
      return "a document was paid otherwise on paper: " + paper.number;
    }
  }
  return {};
}

using ByMark = std::map<std::string, Cents>;

// What a report that was written into a file says of the rates.
struct ReadRates {
  ByMark gross, tax;
};
void Add(const ReadDay& day, ReadRates* rates) {
  for (const auto& [mark, sum] : day.gross_by_mark) rates->gross[mark] += sum;
  for (const auto& [mark, sum] : day.tax_by_mark) rates->tax[mark] += sum;
}
ReadRates RatesOf(const std::string& file) {
  ReadRates read;
  std::ifstream in(file);
  bool within = false;
  for (std::string line; std::getline(in, line);) {
    within = line == "IVA" || (within && !line.empty());
    std::istringstream words(line);
    std::string name, mark, last;
    words >> name >> mark;
    for (std::string word; words >> word;) last = word;
    Cents amount = 0;
    if (!within || !ReadCents(last, &amount)) continue;
    if (name == "Totale" && amount != 0) read.gross[mark] = amount;
    if (name == "Imposta" && amount != 0) read.tax[mark] = amount;
  }
  return read;
}

// Over all closings, and over a period that began with the register, the rates are what the papers
// of each day had, whatever the table is by now.
std::string WrongSumsOfClosings(VirtualRegister& device, ReadRates expected, const ReadDay& open,
                                const std::string& file) {
  const auto is_nothing = [](const auto& row) { return row.second == 0; };
  constexpr int kFile = 2;
  for (const bool period : {false, true}) {
    if (period) Add(open, &expected);
    std::erase_if(expected.gross, is_nothing);
    std::erase_if(expected.tax, is_nothing);
    if (!period && device.store().last_closure() == 0) continue;
    std::filesystem::remove(file);
    const int code =
        period ? device.PeriodicReportMessageEx(3, 0, "txt", file.c_str(), kFile, false)
               : device.FiscalReportMessageEx(2, 0, 3, 0, 0, 1,
                                              static_cast<uint32_t>(device.store().last_closure()),
                                              "", "", "txt", file.c_str(), kFile);
    if (code != RTF_SUCCESS) return "a report of all closings is refused";
    const ReadRates read = RatesOf(file);
    if (read.gross != expected.gross || read.tax != expected.tax) {
      return period ? "the period has other rates than the papers"
                    : "the sum of all closings has other rates than the papers";
    }
  }
  return {};
}

void Count(const ReadPaper& paper, Seen* seen) {
  static constexpr const char* kNames[] = {"sales",     "invoices", "credit notes",    "voids",
                                           "abandoned", "closings", "papers of others"};
  seen->Add(kNames[static_cast<int>(paper.kind)]);
  seen->Add("lines with a quantity", paper.quantities);
  seen->Add("subtotals", paper.subtotals);
  seen->Add("natures", paper.natures);
  for (const auto& [mark, gross] : paper.by_mark) {
    if (mark == "NS*" || mark == "AL*") seen->Add("natures other than exempt");
  }
  seen->Add("adjustments", paper.adjustments);
  seen->Add("adjustments of several rates", paper.shared_adjustments);
  if (paper.by_mark.size() > 2) seen->Add("documents of three rates and more");
  if (paper.payments.size() > 1) seen->Add("documents with several payments");
  if (paper.change != 0) seen->Add("documents with change");
  if (paper.not_collected() != 0) seen->Add("documents not collected");
  if (!paper.lottery_code.empty()) {
    seen->Add(paper.sign() > 0 ? "lottery codes" : "lottery codes that go back");
  }
  if (!paper.lottery_refused.empty()) seen->Add("lottery: " + paper.lottery_refused);
  if (paper.tickets != 0) seen->Add("documents with tickets");
  if (paper.tickets_above != 0) seen->Add("tickets above the rest");
  if (paper.rounded_down() != 0) seen->Add("documents rounded down");
  if (paper.rounded_up() != 0) seen->Add("documents rounded up");
  if (paper.discount_on_payment() != 0) seen->Add("documents with a discount on payment");
}

std::string WrongPapers(PaperShop* shop, const std::string& file, Seen* seen) {
  VirtualRegister& device = shop->device();
  if (device.paper().dropped() != 0) return {};  // the roll has lost its beginning
  const std::vector<ReadPaper> papers = ReadRoll(device.paper_lines());
  ReadDay day;
  ReadDay before;       // the sales and what went back of all closed days
  ReadRates all_rates;  // of all closed days
  bool by_rate = true;
  for (const ReadPaper& paper : papers) {
    if (!paper.wrong.empty()) return paper.wrong;
    if (paper.fiscal() && paper.wholly_in_cash() &&
        (shop->rounds_cash() ? paper.paid % 5 : paper.rounded_down() + paper.rounded_up()) != 0) {
      return "cash is taken otherwise than the shop does: " + paper.number;
    }
    Count(paper, seen);
    if (paper.kind != PaperKind::kClosing) {
      AddToDay(paper, &day);
      // A document of old rates may go back on a day that has others; totalizers are by entry.
      if (paper.sign() < 0 && !paper.referred.empty()) {
        const int sold = std::atoi(paper.referred.c_str());
        for (const auto& [closure, figures] : shop->figures()) {
          if (closure > sold && figures.rates_changed) by_rate = false;
        }
      }
      continue;
    }
    const int closure = std::atoi(paper.number.c_str());
    std::string wrong = WrongClosing(paper, day, before);
    if (wrong.empty()) wrong = WrongTotals(shop->figures().at(closure), day, by_rate);
    if (wrong.empty()) wrong = WrongSummary(SummaryOf(device, closure, file), day);
    if (!wrong.empty()) return wrong + " (closing " + paper.number + ")";
    seen->Add(by_rate ? "closings of one table of rates" : "closings of two tables of rates");
    if (day.documents != 0) seen->Add("closings with documents");
    if (!day.unsure && day.discounts.size() + day.surcharges.size() != 0) {
      seen->Add("closings with adjustments compared");
    }
    if (!day.unsure && !day.refund_lines.empty()) seen->Add("closings with refund lines compared");
    if (day.unsure) seen->Add("closings with a correction that may mean either of two lines");
    before.sales += day.sales;
    before.credit_notes += day.credit_notes;
    before.voids += day.voids;
    before.closed_on = paper.date;
    if (!paper.opened.empty()) seen->Add("closings behind midnight");
    if (!paper.idle_from.empty()) seen->Add("closings behind idle dates");
    Add(day, &all_rates);
    if (all_rates.gross.size() > 5) seen->Add("sums of more rates than the table has");
    day = {};
    by_rate = true;
  }
  if (const std::string wrong = WrongSumsOfClosings(device, all_rates, day, file); !wrong.empty()) {
    return wrong;
  }
  if (before.net() * kTenThousandths != device.store().grand_total()) {
    return "the grand total is not that of the paper";
  }
  return WrongStore(device.store(), papers);
}

void Count(const PaperShop& shop, Seen* seen) {
  seen->Add("moves", shop.moves());
  seen->Add("refused", shop.refused());
  seen->Add("cuts", shop.cuts());
  seen->Add("rates changed", shop.rate_changes());
  for (int kind = 1; kind < kTroubleKinds; ++kind) {
    seen->Add(NameOf(static_cast<TroubleKind>(kind)), shop.struck()[kind]);
  }
}

TEST(PaperProperty, ThePaperAddsUpToWhatIsCounted) {
  const PropertyRun run = RunOf(2000);
  Seen seen("paper");
  const std::filesystem::path folder = MakeTemporaryFolder();
  int64_t days = 0;
  Holds(run, [&] {
    const PaperMoves moves = *PaperDays(25, false);
    // Some in a file, which is cut off; by the day itself, so that it is the same when it gets
    // shorter.
    const std::string file = moves.size() % 5 == 0
                                 ? (folder / (std::to_string(++days) + ".register")).string()
                                 : std::string();
    PaperShop shop(file, moves.size() % 2 == 0, nullptr);
    for (const PaperMove& move : moves) shop.Do(move);
    shop.End();
    const std::string wrong = WrongPapers(&shop, (folder / "summary.xml").string(), &seen);
    if (!wrong.empty()) RC_FAIL(wrong + "\n" + shop.device().paper_text());
    Count(shop, &seen);
    if (!file.empty()) std::filesystem::remove(file);
  });
  std::filesystem::remove_all(folder);
  seen.Require(run, {{"sales", 1000},
                     {"invoices", 200},
                     {"credit notes", 300},
                     {"voids", 200},
                     {"abandoned", 200},
                     {"cuts", 20},
                     {"rates changed", 100},
                     {"closings of one table of rates", 1000},
                     {"closings of two tables of rates", 20},
                     {"sums of more rates than the table has", 20},
                     {"closings with documents", 1000},
                     {"closings behind midnight", 100},
                     {"closings behind idle dates", 100},
                     {"closings with adjustments compared", 500},
                     {"closings with refund lines compared", 50},
                     {"lines with a quantity", 500},
                     {"subtotals", 200},
                     {"natures", 300},
                     {"natures other than exempt", 10},
                     {"adjustments", 500},
                     {"adjustments of several rates", 50},
                     {"documents of three rates and more", 500},
                     {"documents with several payments", 300},
                     {"documents with change", 100},
                     {"lottery codes", 50},
                     {"lottery codes that go back", 5},
                     {"lottery: pagamento non tutto elettronico", 50},
                     {"lottery: con un codice fiscale", 5},
                     {"documents with tickets", 100},
                     {"tickets above the rest", 20},
                     {"documents rounded down", 50},
                     {"documents rounded up", 50},
                     {"documents not collected", 300},
                     {"documents with a discount on payment", 50}});
}

// The same where disk, memory, process and power fail in the middle of it: what is not stored is
// not on the paper, and the other way round.
TEST(PaperProperty, ThePaperAddsUpBehindTroubles) {
  const PropertyRun run = RunOf(300);
  Seen seen("paper under troubles");
  const std::filesystem::path folder = MakeTemporaryFolder();
  int64_t days = 0;
  Holds(run, [&] {
    const PaperMoves moves = *PaperDays(25, true);
    FailingDisk disk;
    FailingDisk::Remember();
    const std::string file = (folder / (std::to_string(++days) + ".register")).string();
    std::string wrong;
    {
      PaperShop shop(file, moves.size() % 2 == 0, &disk);
      for (const PaperMove& move : moves) shop.Do(move);
      shop.End();
      wrong = WrongPapers(&shop, (folder / "summary.xml").string(), &seen);
      if (!wrong.empty()) wrong += "\n" + shop.device().paper_text();
      Count(shop, &seen);
    }
    for (const char* end : {"", "-wal", "-shm"}) std::filesystem::remove(file + end);
    if (!wrong.empty()) RC_FAIL(wrong);
  });
  std::filesystem::remove_all(folder);
  seen.Require(run, {{"closings with documents", 100},
                     {"disk full", 15},
                     {"half a write", 15},
                     {"sync fails", 2},
                     {"no memory", 10},
                     {"ordered fault", 20},
                     {"killed", 15},
                     {"power cut", 15},
                     {"closings with adjustments compared", 50}});
}

}  // namespace
}  // namespace lorimat
