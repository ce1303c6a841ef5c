// The day of a host that speaks in lines: the same register, by way of the translator.
#include <stdexcept>

#include "host.h"
#include "lorimatrt/lorimatrt.h"

namespace lorimat {
namespace {

constexpr int64_t kCents = 100;

RtfClientInterface* client = nullptr;

long EcrIo(long code, long, char*, long, char*, long*, long* out) {
  if (code != ECRIOIC_GET_CLIENT_RT) return -1;
  *reinterpret_cast<void**>(out) = client;
  return 0;
}

}  // namespace

void StartTranslator(VirtualRegister* device) {
  client = device;
  char definition[] = DEFINITION_FILE;
  if (TradInit(definition, 0, nullptr, &EcrIo) != 0) {
    throw std::runtime_error("the translator cannot read " DEFINITION_FILE);
  }
}

bool Host::Send(const char* line, Fact fact) {
  char text[512];
  char result[512];
  std::snprintf(text, sizeof text, "%s", line);
  return Call(
      line, [&] { return static_cast<int>(EcrCmd(text, result)); }, fact);
}

bool Host::LineReceipt() {
  if (!(Send("VEND REP=1, PRE=10.00") && Send("VEND REP=2, QTA=2, PRE=2.50") &&
        Send("CHIU TEND=CARTA, IMP=4.00") && Send("CHIU", {Fact::kSale, 1500 * kCents}))) {
    return false;
  }
  receipt_number_ = device_.store().counters().documents;
  return true;
}

bool Host::LineInvoice() {
  return Send("FATTURA TIPO=2, RIGA1='ROSSI MARIO SRL', RIGA2='P.IVA 12345678903'") &&
         Send("VEND REP=4, PRE=7.00") && Send("CHIU", {Fact::kInvoice, 700 * kCents});
}

bool Host::LineCreditNote() {
  char line[100];
  std::snprintf(line, sizeof line, "NOTACRED DOC='0001%04d', DATA='150124', MATR='99LRM0000001VR'",
                receipt_number_);
  return Send(line) && Send("VEND REP=1, PRE=3.00") && Send("CHIU", {Fact::kRefund, 300 * kCents});
}

bool Host::LineNonFiscal() {
  return Send("NOFIS INIZIO") && Send("NOFIS MSG='CHIUSURA TURNO'") &&
         Send("NOFIS FINE", {Fact::kNonFiscal, 0});
}

bool Host::LineClosing() { return Send("AZZGIO TIPO=1", {Fact::kClosure, 0}); }

const std::vector<Host::Step>& Host::DayOfLines() {
  static const std::vector<Step> day = {
      {"receipt", &Host::LineReceipt},        {"invoice", &Host::LineInvoice},
      {"credit note", &Host::LineCreditNote}, {"non-fiscal document", &Host::LineNonFiscal},
      {"closing", &Host::LineClosing},        {"second day", &Host::LineReceipt},
      {"second closing", &Host::LineClosing},
  };
  return day;
}

}  // namespace lorimat
