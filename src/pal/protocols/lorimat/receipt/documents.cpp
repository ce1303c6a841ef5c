// Documents of another kind than a receipt: invoices, refund documents and cancel documents.
// Their lines follow by the commands of a receipt, so that opening one clears bOnFirstSale.

#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/client_call.h"
#include "pal/protocols/lorimat/fields.h"
#include "pal/protocols/lorimat/front/messages.h"

// The earlier document that a refund or cancel document refers to.
struct DocumentReference {
  int number = 0;
  int closure = 0;
  char date[16] = {};  // DDMMYYYY
};

namespace {

// "EM-BOARD NOT INITALIZED ON ECR ": the settled answer to a wrong document type, odd as it
// reads.
constexpr int kWrongDocumentType = 9;

// The first length characters of a text as a number.
int LeadingNumber(const char* text, size_t length) {
  char part[MAXVALLN + 1];
  CopyBytes(part, sizeof part, text, RowLength(text, length));
  return ClientInt(lorimatutility::TradNumLong(part));
}

}  // namespace

int EcrCmdCommand::Trad_FATTURA() {
  constexpr int kInvoice = 2;
  constexpr int kOppositionClause = 1;
  if (TextToInt(szCampi[1]) != kInvoice) return kWrongDocumentType;
  const bool opposition = TextToInt(szCampi[2]) == kOppositionClause;
  const int result =
      checkResult(opposition ? RTF_FP_INVOKE(BeginDocInvoiceOppositionJurisprudence, szCampi[4],
                                             szCampi[5], szCampi[6], szCampi[7], szCampi[8], true)
                             : RTF_FP_INVOKE(BeginDocInvoice, szCampi[4], szCampi[5], szCampi[6],
                                             szCampi[7], szCampi[8]));
  bOnFirstSale = false;
  return result;
}

int EcrCmdCommand::TakeReference(DocumentReference& reference) {
  constexpr size_t kFullReference = 8;  // ZZZZNNNN
  if (Given(*this, 1) && !Given(*this, 2)) return SyntaxError(CAMPO_OBBLIGATORIO);
  if (Given(*this, 1)) {
    if (std::strlen(szCampi[1]) == kFullReference) {
      reference.closure = LeadingNumber(szCampi[1], 4);
      reference.number = LeadingNumber(szCampi[1] + 4, 4);
    } else {
      reference.number = LeadingNumber(szCampi[1], MAXVALLN);
    }
  }
  if (Given(*this, 3)) reference.closure = LeadingNumber(szCampi[3], MAXVALLN);
  // A shorter date goes out as far as its text reads.
  if (Given(*this, 2)) lorimatutility::zup_2_upos_datetime(reference.date, szCampi[2], "");
  return 0;
}

int EcrCmdCommand::Trad_NOTACRED() {
  constexpr int kLongestRegister = 20;
  DocumentReference reference;
  const int refused = TakeReference(reference);
  if (refused != 0) return refused;
  char matricola[kLongestRegister + 1] = {};
  // A malformed text stays as far as it came.
  if (Given(*this, 4)) {
    lorimatutility::EstraeAlfa(szCampi[4], matricola, kLongestRegister, cChQuote);
  }
  const int result = checkResult(RTF_FP_INVOKE(BeginDocTelematicRefund, reference.number,
                                               reference.closure, reference.date, matricola));
  bOnFirstSale = false;
  return result;
}

int EcrCmdCommand::Trad_DOCANNULLO() {
  DocumentReference reference;
  const int refused = TakeReference(reference);
  if (refused != 0) return refused;
  const bool automatic = Given(*this, 5);
  bOnFirstSale = false;
  return checkResult(RTF_FP_INVOKE(BeginDocTelematicCancel, reference.number, reference.closure,
                                   reference.date, automatic, szCampi[4]));
}
