// What a paper says of marks and of the customer's codes.
#include "properties/paper_reader.h"

namespace lorimat {

namespace {

const std::map<std::string, std::string> kLegends = {
    {"EE*", "N1 escluso art. 15"},    {"NS*", "N2 non soggetto"},
    {"NI*", "N3 non imponibile"},     {"ES*", "N4 esente"},
    {"RM*", "N5 regime del margine"}, {"AL*", "N6 operazione non IVA"}};

}  // namespace

std::string NatureOfMark(const std::string& mark) {
  const auto legend = kLegends.find(mark);
  return legend == kLegends.end() ? std::string() : legend->second.substr(0, 2);
}

// "ES* = N4 esente": every mark that is no rate has its line, and no other has one.
std::string ReadNatures(ReadPaper* paper) {
  std::map<std::string, std::string> told;
  for (const std::string& line : paper->lines) {
    const size_t sign = line.find(" = ");
    if (sign == line.npos) continue;
    if (!told.emplace(line.substr(0, sign), line.substr(sign + 3)).second) {
      return "a nature is told twice: " + line;
    }
  }
  for (const auto& [mark, gross] : paper->by_mark) {
    if (mark.empty()) return "a rate is missing";
    if (mark.back() == '%' && mark != "0%") continue;
    const auto legend = kLegends.find(mark);
    if (legend == kLegends.end() || told[mark] != legend->second) {
      return "nobody says what the mark means: " + mark;
    }
    told.erase(mark);
    ++paper->natures;
  }
  if (!told.empty()) return "a nature is told that nothing has";
  return {};
}

// A code goes with 1,00 and more, paid by cards alone, and no tax code; else the paper says why
// not.
std::string ReadLottery(ReadPaper* paper) {
  bool tax_code = false;
  const std::string begin = "Codice lotteria: ", refused = "Codice lotteria non accettato:";
  for (size_t at = 0; at < paper->lines.size(); ++at) {
    const std::string& line = paper->lines[at];
    if (line.starts_with("C.F. cliente: ")) tax_code = true;
    if (line.starts_with(begin)) paper->lottery_code = line.substr(begin.size());
    if (line == refused && at + 1 < paper->lines.size()) {
      paper->lottery_refused = paper->lines[at + 1].substr(2);
    }
  }
  bool by_card = true;
  for (const NamedAmount& payment : paper->payments) {
    if (payment.amount == 0) continue;
    by_card = by_card && (payment.name.starts_with("Pagamento elettronico") ||
                          payment.name == "Pagamento bancomat");
  }
  const std::string why = paper->total < 100 ? "totale inferiore a 1,00"
                          : !by_card         ? "pagamento non tutto elettronico"
                          : tax_code         ? "con un codice fiscale"
                                             : "";
  if (!paper->lottery_code.empty() && !paper->lottery_refused.empty()) {
    return "it has a lottery code and has none";
  }
  if (!paper->lottery_refused.empty() &&
      (paper->lottery_refused != why || paper->kind != PaperKind::kSale)) {
    return "a lottery code is refused for another reason";
  }
  if (!paper->lottery_code.empty() && paper->kind == PaperKind::kSale && !why.empty()) {
    return "a lottery code is on a document that takes none";
  }
  return {};
}

}  // namespace lorimat
