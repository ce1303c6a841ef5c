#include "register/desk/layout.h"

#include <fmt/format.h>

#include <filesystem>
#include <set>
#include <system_error>

#include "register/value/nature.h"

namespace lorimat {
namespace {

struct TitleRow {
  DocumentKind kind;
  const char* first;
  const char* second;
};

constexpr TitleRow kTitles[] = {
    {DocumentKind::kSale, "DOCUMENTO COMMERCIALE", "di vendita o prestazione"},
    {DocumentKind::kInvoice, "FATTURA", ""},
    {DocumentKind::kRefund, "DOCUMENTO COMMERCIALE", "emesso per RESO MERCE"},
    {DocumentKind::kCancel, "DOCUMENTO COMMERCIALE", "emesso per ANNULLAMENTO"},
};

struct LineRow {
  LineKind kind;
  const char* description;  // for a line that has none
  const char* enter;        // what stands ahead of the description
  const char* take_back;
};

constexpr LineRow kLines[] = {
    {LineKind::kSale, "VENDITA", "", "STORNO "},
    {LineKind::kRefund, "VENDITA", "RESO ", "STORNO RESO "},
    {LineKind::kDeposit, "ACCONTO", "", "STORNO "},
    {LineKind::kVoucher, "BUONO MONOUSO", "", "STORNO "},
};

struct LotteryDropRow {
  LotteryDropCause cause;
  const char* text;
};

constexpr LotteryDropRow kLotteryDrops[] = {
    {LotteryDropCause::kTotal, "  totale inferiore a 1,00"},
    {LotteryDropCause::kPayment, "  pagamento non tutto elettronico"},
    {LotteryDropCause::kTaxCode, "  con un codice fiscale"},
};

// The file's whole name, which stays the same file wherever the program goes from here.
std::string LogoFile(const std::string* name) {
  if (name == nullptr) return {};
  std::error_code error;
  const std::filesystem::path whole = std::filesystem::absolute(*name, error);
  return error ? *name : whole.string();
}

}  // namespace

std::string FormatDateTime(const std::tm& time) {
  return fmt::format("{:02}/{:02}/{:04} {:02}:{:02}", time.tm_mday, time.tm_mon + 1,
                     1900 + time.tm_year, time.tm_hour, time.tm_min);
}

std::string Layout::VatMark(int vat) const {
  return VatEntry(core_.rates(), vat) == nullptr ? std::string() : VatName(core_.rates(), vat);
}

void Layout::TrainingMark() {
  if (core_.setup.training) core_.paper.Centred(kTrainingMark);
}

void Layout::Logo(int number) { core_.paper.Logo(number, LogoFile(core_.tables.FindLogo(number))); }

void Layout::Header() {
  if (core_.setup.header_logo != 0) Logo(core_.setup.header_logo);
  for (const std::string& line : core_.tables.settings().header_lines) {
    if (!line.empty()) core_.paper.Centred(line);
  }
  core_.paper.Gap();
}

void Layout::Title(DocumentKind kind, const Reference& reference) {
  Paper& paper = core_.paper;
  for (const TitleRow& row : kTitles) {
    if (row.kind != kind) continue;
    paper.Centred(row.first);
    if (*row.second != '\0') paper.Centred(row.second);
  }
  if (kind != DocumentKind::kRefund && kind != DocumentKind::kCancel) return;
  paper.Gap();
  if (reference.empty()) {
    paper.Text("Documento di riferimento: non indicato");
    return;
  }
  paper.Text(
      fmt::format("Documento di riferimento: {:04}-{:04}", reference.closure, reference.number));
  if (reference.date.size() == 8) {
    paper.Text(fmt::format("del {}/{}/{}", reference.date.substr(0, 2), reference.date.substr(2, 2),
                           reference.date.substr(4)));
  }
  if (!reference.serial.empty()) paper.Text("RT " + reference.serial);
  // Nobody here can say what was sold there.
  if (!reference.IsOf(core_.tables.settings().serial_number)) {
    paper.Text("Documento di altro registratore");
  }
}

void Layout::ColumnHead() {
  core_.paper.Gap();
  core_.paper.Item("DESCRIZIONE", "IVA", "Prezzo(EUR)");
}

void Layout::Line(LineAction action, const Item& item, Amount amount) {
  Paper& paper = core_.paper;
  if (!core_.options.pre_line.empty()) paper.Text(core_.options.pre_line);
  if (item.quantity_given) {
    const std::string unit = ReadHostText(item.unit_name).text;
    paper.Text(fmt::format("  {}{}{} x {}", FormatQuantity(item.quantity), unit.empty() ? "" : " ",
                           unit.substr(0, 15), FormatUnitPrice(item.unit_price)));
  }
  for (const LineRow& row : kLines) {
    if (row.kind != item.kind) continue;
    const char* prefix = action == LineAction::kVoid ? row.take_back : row.enter;
    paper.Item(prefix + (item.description.empty() ? row.description : item.description),
               VatMark(item.vat), FormatAmount(amount));
  }
  if (item.special_tax > 0) {
    const std::string name = ReadHostText(item.special_tax_name).text;
    paper.Pair("  di cui " + (name.empty() ? "accisa" : name),
               FormatAmount(amount < 0 ? -item.special_tax : item.special_tax));
  }
  if (!core_.options.post_line.empty()) paper.Text(core_.options.post_line);
}

void Layout::LineGoneBack(const DocumentLine& line, const std::string& mark) {
  const Amount left = line.amount - line.taken_back;
  if (left == 0) return;
  const int32_t pieces = line.quantity - line.quantity_taken_back;
  if (pieces != kOnePiece && LineAmount(pieces, line.unit_price) == left) {
    core_.paper.Text(
        fmt::format("  {} x {}", FormatQuantity(pieces), FormatUnitPrice(line.unit_price)));
  }
  for (const LineRow& row : kLines) {
    if (row.kind != line.kind) continue;
    core_.paper.Item(row.enter + (line.description.empty() ? row.description : line.description),
                     mark, FormatAmount(line.kind == LineKind::kSale ? left : -left));
  }
}

void Layout::AdjustmentGoneBack(Amount amount, const std::string& mark) {
  if (amount == 0) return;
  core_.paper.Item(amount < 0 ? "SCONTO" : "MAGGIORAZIONE", mark, FormatAmount(amount));
}

void Layout::AdjustmentLine(const Adjustment& adjustment, std::string_view description) {
  const int type = adjustment.request.type;
  std::string text(description);
  if (text.empty()) {
    text = IsCoupon(type) ? "COUPON" : IsSurcharge(type) ? "MAGGIORAZIONE" : "SCONTO";
  }
  if (adjustment.is_void) text.insert(0, "STORNO ");
  std::map<int, Amount> shares = adjustment.by_vat;
  std::erase_if(shares, [](const auto& share) { return share.second == 0; });
  const bool one_vat = shares.size() == 1;
  core_.paper.Item(text, one_vat ? VatMark(shares.begin()->first) : "",
                   FormatAmount(adjustment.delta));
  // Who redoes the tax from the paper has to know what falls on which rate.
  for (const auto& [vat, share] : shares) {
    if (!one_vat) core_.paper.Item("  di cui", VatMark(vat), FormatAmount(share));
  }
}

void Layout::Subtotal(Amount amount) { core_.paper.Pair("Subtotale", FormatAmount(amount)); }

void Layout::Total(Amount total, Amount vat) {
  core_.paper.Gap();
  core_.paper.Pair("TOTALE COMPLESSIVO", FormatAmount(total));
  core_.paper.Pair("di cui IVA", FormatAmount(vat));
  core_.paper.Gap();
}

void Layout::VatTable(const std::map<int, Amount>& by_vat) {
  const auto row = [this](std::string_view rate, std::string_view net, std::string_view tax) {
    core_.paper.Text(fmt::format("{:<12}{:>15}{:>15}", rate, net, tax));
  };
  row("IVA", "Imponibile", "Imposta");
  for (const auto& [vat, gross] : by_vat) {
    const VatRate* rate = VatEntry(core_.rates(), vat);
    if (gross == 0 || rate == nullptr) continue;
    const Amount tax = VatPart(gross, rate->rate);
    row(VatMark(vat), FormatAmount(gross - tax), FormatAmount(tax));
  }
  core_.paper.Gap();
}

void Layout::Tender(std::string_view name, Amount amount, Amount face) {
  core_.paper.Pair(name, FormatAmount(amount));
  if (face != 0) core_.paper.Text(fmt::format("  su {}, senza resto", FormatAmount(face)));
}

void Layout::Paid(DocumentKind kind, Amount change, int tickets, Amount collected) {
  if (change > 0) core_.paper.Pair("Resto", FormatAmount(change));
  if (tickets > 0) core_.paper.Pair("Numero ticket", std::to_string(tickets));
  const bool goes_out = kind == DocumentKind::kRefund || kind == DocumentKind::kCancel;
  core_.paper.Pair(goes_out ? "Importo rimborsato" : "Importo pagato", FormatAmount(collected));
}

void Layout::Natures(const std::map<int, Amount>& by_vat) {
  const std::vector<VatRate>& rates = core_.rates();
  std::set<std::string> told;
  for (const auto& [vat, gross] : by_vat) {
    const VatRate* rate = VatEntry(rates, vat);
    if (rate == nullptr || rate->rate != 0) continue;
    const std::string mark = VatName(rates, vat);
    const Nature& nature = NatureOf(rate->mark);
    if (told.insert(mark).second) {
      core_.paper.Text(fmt::format("{} = {} {}", mark, nature.code, nature.legend));
    }
  }
}

void Layout::Lottery(const OpenDocument& document) {
  Paper& paper = core_.paper;
  if (!document.lottery_code.empty()) paper.Text("Codice lotteria: " + document.lottery_code);
  for (const LotteryDropRow& row : kLotteryDrops) {
    if (row.cause != document.lottery_drop) continue;
    paper.Text("Codice lotteria non accettato:");
    paper.Text(row.text);
  }
}

void Layout::Settled(const OpenDocument& document) {
  Paper& paper = core_.paper;
  if (!document.tax_id.empty()) paper.Text("C.F. cliente: " + document.tax_id);
  Lottery(document);
  if (!core_.options.courtesy_text.empty()) paper.Centred(core_.options.courtesy_text);
}

void Layout::Trailer(const OpenDocument& document) {
  Paper& paper = core_.paper;
  paper.Gap();
  paper.Centred(FormatDateTime(document.time));
  paper.Centred(document.number_text);
  if (!core_.in_service()) paper.Centred("REGISTRATORE NON IN SERVIZIO");
  const DeviceSetup& setup = core_.setup;
  if (!setup.pos_id.empty()) paper.Centred("CASSA " + setup.pos_id);
  if (!setup.cashier_id.empty()) paper.Centred("CASSIERE " + setup.cashier_id);
  paper.Centred("RT " + core_.tables.settings().serial_number);
  for (const std::string& line : setup.trailer_lines) {
    if (!line.empty()) paper.Centred(line);
  }
  if (setup.trailer_logo != 0) Logo(setup.trailer_logo);
}

void Layout::Abandoned() {
  core_.paper.Gap();
  core_.paper.Centred("*** DOCUMENTO ANNULLATO ***");
  core_.paper.Centred(FormatDateTime(core_.Now()));
}

}  // namespace lorimat
