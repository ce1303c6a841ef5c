#include "register/report/telematic.h"

#include <fmt/format.h>

#include <map>
#include <optional>
#include <utility>

#include "register/desk/day_notice.h"
#include "register/report/report_file.h"
#include "register/report/report_sections.h"
#include "register/totals/rate_sums.h"
#include "register/value/nature.h"
#include "register/value/refusal.h"
#include "register/value/row_encoding.h"
#include "rpccommon/services/rtfconst.h"

namespace lorimat {
namespace {

constexpr std::string_view kXmlHead = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
constexpr std::string_view kNamespace =
    "http://ivaservizi.agenziaentrate.gov.it/docs/xsd/corrispettivi/dati/v1.0";

// Texts of the register may hold any byte: those that a text of UTF-8 cannot hold become
// question marks.
std::string Escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    switch (c) {
      case '<':
        result += "&lt;";
        break;
      case '>':
        result += "&gt;";
        break;
      case '&':
        result += "&amp;";
        break;
      default:
        result +=
            static_cast<unsigned char>(c) >= 0x20 && static_cast<unsigned char>(c) < 0x7F ? c : '?';
    }
  }
  return result;
}

// "12.34".
std::string Decimal(Amount amount) {
  const Amount cents = amount / kCent;
  const Amount size = cents < 0 ? -cents : cents;
  return fmt::format("{}{}.{:02}", cents < 0 ? "-" : "", size / 100, size % 100);
}

void Element(std::string_view indent, std::string_view name, std::string_view value,
             std::string* xml) {
  *xml += fmt::format("{}<{}>{}</{}>\n", indent, name, Escaped(value), name);
}

std::string Date(const std::tm& time) {
  return fmt::format("{:04}-{:02}-{:02}", 1900 + time.tm_year, time.tm_mon + 1, time.tm_mday);
}

std::string DateTime(const std::tm& time) {
  return fmt::format("{}T{:02}:{:02}:{:02}", Date(time), time.tm_hour, time.tm_min, time.tm_sec);
}

// A VAT entry's amounts, net of tax.
struct VatElement {
  const char* name;
  unsigned kinds;
  TaxedFigure figure;
};

constexpr unsigned kTaken = Totals::kSales | Totals::kInvoices;

constexpr VatElement kVatElements[] = {
    {"Ammontare", kTaken, TaxedFigure::kGross},
    {"TotaleAmmontareResi", Totals::kRefunds, TaxedFigure::kGross},
    {"TotaleAmmontareAnnulli", Totals::kCancels, TaxedFigure::kGross},
    {"BeniInSospeso", kTaken, TaxedFigure::kUndeliveredNotPaid},
    {"NonRiscossoServizi", kTaken, TaxedFigure::kServicesNotPaid},
    {"NonRiscossoFatture", kTaken, TaxedFigure::kInvoicesNotPaid},
    {"TotaleDaFattureRT", Totals::kInvoices, TaxedFigure::kGross},
    {"NonRiscossoDCRaSSN", kTaken, TaxedFigure::kSsnNotPaid},
    {"NonRiscossoOmaggio", kTaken, TaxedFigure::kGiftsNotPaid},
};

Amount Net(const RateSums& sums, unsigned kinds, TaxedFigure figure) {
  const Amount net = sums.Sum(kinds, figure).net();
  Amount size = 0;
  AddTo(&size, net, net < 0 ? -1 : 1);
  return size;
}

void AddRate(const RateSums& sums, std::string* xml) {
  *xml += "    <Riepilogo>\n";
  if (sums.rate.rate > 0) {
    *xml += "      <IVA>\n";
    Element("        ", "AliquotaIVA", Decimal(sums.rate.rate), xml);
    Element("        ", "Imposta", Decimal(sums.Sum(kTaken, TaxedFigure::kGross).tax), xml);
    *xml += "      </IVA>\n";
  } else {
    Element("      ", "Natura", NatureOf(sums.rate.mark).code, xml);
  }
  for (const VatElement& element : kVatElements) {
    Element("      ", element.name, Decimal(Net(sums, element.kinds, element.figure)), xml);
  }
  *xml += "    </Riepilogo>\n";
}

// By what the tenders are today.
std::map<int, Collected> CollectedToday(const Tables& tables, const KindTotals& kind) {
  std::map<int, Collected> sums;
  for (const Tender& tender : tables.tenders()) {
    const auto amount = kind.by_tender.find(tender.id);
    if (amount == kind.by_tender.end()) continue;
    const auto count = kind.tender_counts.find(tender.id);
    AddTo(&sums[static_cast<int>(tender.element)],
          {amount->second, count == kind.tender_counts.end() ? 0 : count->second});
  }
  return sums;
}

// What a day collected by the tenders of each element, as these were then; of days that began in
// an earlier version by what they are today.
std::map<int, Collected> CollectedBy(const Tables& tables, const KindTotals& kind) {
  Collected paid, known;
  for (const auto& [id, amount] : kind.by_tender) AddTo(&paid.amount, amount);
  for (const auto& [id, count] : kind.tender_counts) AddTo(&paid.payments, count);
  for (const auto& [element, collected] : kind.collected) AddTo(&known, collected);
  const bool whole = paid.amount == known.amount && paid.payments == known.payments;
  return whole ? kind.collected : CollectedToday(tables, kind);
}

std::string DocumentXml(const StoredDocument& document, const Tables& tables) {
  std::string xml = "  <Documento>\n";
  Element("    ", "Numero", fmt::format("{:04}-{:04}", document.closure, document.number), &xml);
  Element("    ", "DataOra", DateTime(document.time), &xml);
  Element("    ", "CodiceLotteria", document.lottery_code, &xml);
  Element("    ", "Importo", Decimal(document.total), &xml);
  Amount electronic = 0;
  if (const auto paid = document.collected.find(static_cast<int>(SummaryElement::kElectronic));
      paid != document.collected.end()) {
    electronic = paid->second.amount;
  }
  // Versions before did not keep what the tenders were.
  for (const auto& [id, amount] : document.by_tender) {
    const Tender* tender = document.collected.empty() ? tables.FindTender(id) : nullptr;
    if (tender != nullptr && tender->kind == TenderKind::kElectronic) AddTo(&electronic, amount);
  }
  Element("    ", "PagatoElettronico", Decimal(electronic), &xml);
  Element("    ", "Annullato", document.voided ? "SI" : "NO", &xml);
  xml += "  </Documento>\n";
  return xml;
}

int NoFileGiven() {
  return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kMissing, Subject::kReportFile);
}

}  // namespace

std::string SummaryXml(const RegisterCore& core, const Closure& closure) {
  const RegisterSettings& settings = core.tables.settings();
  // Marked as a simulation: nobody may take it for a real register's.
  std::string xml = fmt::format(
      "<n1:DatiCorrispettivi versione=\"COR10\" simulazione=\"true\" xmlns:n1=\"{}\">\n"
      "  <Trasmissione>\n",
      kNamespace);
  Element("    ", "Progressivo", std::to_string(closure.number), &xml);
  Element("    ", "Formato", "RT", &xml);
  xml += "    <Dispositivo>\n";
  Element("      ", "Tipo", "RT", &xml);
  Element("      ", "IdDispositivo", settings.serial_number, &xml);
  xml += "    </Dispositivo>\n";
  Element("    ", "PIVAEsercente", core.setup.fiscal_id, &xml);
  xml += "  </Trasmissione>\n";
  if (const std::optional<IdleDates> idle = IdleAheadOf(core.store, closure)) {
    xml += "  <PeriodoInattivo>\n";
    Element("    ", "Dal", Date(NumberTime(idle->from)), &xml);
    Element("    ", "Al", Date(NumberTime(idle->to)), &xml);
    xml += "  </PeriodoInattivo>\n";
  }
  Element("  ", "DataOraRilevazione", DateTime(closure.time), &xml);
  xml += "  <DatiRT>\n";
  for (const RateSums& sums : SumsByRate(closure.totals, closure.vat_rates)) AddRate(sums, &xml);
  xml += "    <Totali>\n";
  std::map<int, Collected> sums;
  for (const DocumentKind kind : {DocumentKind::kSale, DocumentKind::kInvoice}) {
    for (const auto& [element, paid] : CollectedBy(core.tables, closure.totals.of(kind))) {
      AddTo(&sums[element], paid);
    }
  }
  const auto collected = [&sums](SummaryElement element) -> const Collected& {
    return sums[static_cast<int>(element)];
  };
  const Collected& tickets = collected(SummaryElement::kTicket);
  Element("      ", "NumeroDocCommerciali", std::to_string(closure.counters.documents), &xml);
  Element("      ", "PagatoContanti", Decimal(collected(SummaryElement::kCash).amount), &xml);
  Element("      ", "PagatoElettronico", Decimal(collected(SummaryElement::kElectronic).amount),
          &xml);
  Element("      ", "ScontoApagare", Decimal(collected(SummaryElement::kDiscount).amount), &xml);
  xml += "      <PagatoTicket>\n";
  Element("        ", "PagatoTicket", Decimal(tickets.amount), &xml);
  Element("        ", "NumeroTicket", std::to_string(tickets.payments), &xml);
  xml +=
      "      </PagatoTicket>\n"
      "    </Totali>\n"
      "  </DatiRT>\n"
      "</n1:DatiCorrispettivi>\n";
  return xml;
}

std::string TelematicDesk::OutboxFile(std::string_view name) const {
  return fmt::format("{}/{}", core_.outbox(), name);
}

// One summary is a file of the national form; several stand in an element of this register.
int TelematicDesk::WriteSummaries(const std::vector<Closure>& closures,
                                  std::string_view file) const {
  if (file.empty()) return NoFileGiven();
  if (closures.empty()) return Refuse(RTF_E_NOEXIST, RefusalCause::kNothingWaits);
  std::string xml(kXmlHead);
  if (closures.size() > 1) xml += "<CorrispettiviSalvati>\n";
  for (const Closure& closure : closures) xml += SummaryXml(core_, closure);
  if (closures.size() > 1) xml += "</CorrispettiviSalvati>\n";
  return WriteOut(file, xml);
}

// The names of what is sent are the numbers of a register: in a folder of several registers, or one
// that holds other files, nothing is replaced but what this register sent before.
int TelematicDesk::WriteOut(std::string_view file, std::string_view xml) const {
  if (core_.outbox().empty() || !file.starts_with(OutboxFile(""))) return WriteFile(file, xml);
  std::string mark;
  Element("", "IdDispositivo", core_.tables.settings().serial_number, &mark);
  return WriteOwnFile(file, xml, mark);
}

int TelematicDesk::SendSummaries() {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  while (const std::optional<Closure> closure = core_.store.FirstPending()) {
    if (!core_.outbox().empty()) {
      const std::string name = OutboxFile(fmt::format("corrispettivi_{:04}.xml", closure->number));
      if (const int code = WriteSummaries({*closure}, name)) return code;
    }
    core_.store.MarkSent(closure->number, core_.Now());
  }
  return RTF_SUCCESS;
}

int TelematicDesk::ExportSummaries(std::string_view file) const {
  return SaveSummaries(1, RegisterStore::kLastNumber, file, 1);
}

int TelematicDesk::SaveSummaries(int from, int to, std::string_view file, int options) const {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  if (to < from) return Refuse(RTF_E_ILLEGAL, RefusalCause::kRangeReversed, {from, to});
  if (from < 1 || to > RegisterStore::kLastNumber) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kOutOfRange, Subject::kClosure,
                       {from < 1 ? from : to, 1, RegisterStore::kLastNumber});
  }
  if (options < 0 || options > 2) {
    return RefuseValue(RTF_E_ILLEGAL, RefusalCause::kNotOneOf, Subject::kSummaries, {options});
  }
  std::vector<Closure> wanted = core_.store.FindClosures(from, to);
  if (options != 0) {
    std::erase_if(wanted,
                  [options](const Closure& closure) { return closure.sent != (options == 2); });
  }
  return WriteSummaries(wanted, file);
}

int TelematicDesk::WriteLottery(const std::vector<StoredDocument>& documents,
                                std::string_view file) const {
  if (file.empty()) return NoFileGiven();
  if (documents.empty()) return Refuse(RTF_E_NOEXIST, RefusalCause::kNothingWaits);
  std::string xml(kXmlHead);
  xml += "<DocumentiLotteria>\n";
  Element("  ", "IdDispositivo", core_.tables.settings().serial_number, &xml);
  for (const StoredDocument& document : documents) xml += DocumentXml(document, core_.tables);
  xml += "</DocumentiLotteria>\n";
  return WriteOut(file, xml);
}

int TelematicDesk::SendLottery() {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  const std::vector<StoredDocument> waiting = core_.store.PendingLottery();
  if (waiting.empty()) return RTF_SUCCESS;
  if (!core_.outbox().empty()) {
    const std::string name =
        OutboxFile(fmt::format("lotteria_{:04}_{:04}.xml", waiting[0].closure, waiting[0].number));
    if (const int code = WriteLottery(waiting, name)) return code;
  }
  core_.store.MarkLotterySent(core_.Now());
  return RTF_SUCCESS;
}

int TelematicDesk::SavePendingLottery(std::string_view file) const {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  return WriteLottery(core_.store.PendingLottery(), file);
}

int TelematicDesk::SaveLottery(int from_closure, int from_number, int to_closure, int to_number,
                               std::string_view file) const {
  if (!core_.Allows(Operation::kReport)) return RTF_EFPTR_WRONG_STATE;
  const auto known = [](int number, int lowest) {
    return number >= lowest && number <= RegisterStore::kLastNumber;
  };
  if (!known(from_closure, 1) || !known(to_closure, 1) || !known(from_number, 0) ||
      !known(to_number, 0)) {
    return Refuse(RTF_E_ILLEGAL, RefusalCause::kReference,
                  known(from_closure, 1) && known(from_number, 0)
                      ? std::initializer_list<int64_t>{to_closure, to_number}
                      : std::initializer_list<int64_t>{from_closure, from_number});
  }
  const std::pair from(from_closure, from_number);
  const std::pair to(to_closure, to_number);
  if (from > to)
    return Refuse(RTF_E_ILLEGAL, RefusalCause::kRangeReversed, {from_closure, to_closure});
  return WriteLottery(core_.store.Lottery(from_closure, from_number, to_closure, to_number), file);
}

}  // namespace lorimat
