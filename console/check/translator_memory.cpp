#include "console/check/translator_memory.h"

#include "console/terminal/line_reader.h"
#include "pal/peripherals/keyboard/functioncode.h"
#include "pal/protocols/lorimat/ascii.h"
#include "pal/protocols/lorimat/ecrcmdcommand.h"
#include "pal/protocols/lorimat/front/messages.h"
#include "pal/protocols/lorimat/front/opcodes.h"
#include "pal/protocols/lorimat/lorimatutility.h"

namespace lorimat::console {
namespace {

// INP and CHIUDETRAN answer so when the state of the device cannot be read.
constexpr long kStateNotRead = CLASS_CRITICAL | syntax_error(ILLEGAL_VALUE);

bool given(const EcrCmdCommand& translator, int field) { return translator.szCampi[field][0] != 0; }

ReceiptEffect sale(const EcrCmdCommand& translator) {
  const int special = given(translator, 16) + given(translator, 17) + given(translator, 19);
  const bool refused = special >= 2 || given(translator, 1) == given(translator, 2);
  return refused ? ReceiptEffect::kNone : ReceiptEffect::kSale;
}

ReceiptEffect key(const EcrCmdCommand& translator) {
  const int code = text_to_int(translator.szCampi[4]);
  if (code >= FunctionCode::kSubTender01 && code <= FunctionCode::kLastSubTender) {
    return ReceiptEffect::kForgets;
  }
  switch (code) {
    case FunctionCode::kClear:
      return ReceiptEffect::kForgets;
    case FunctionCode::kOpenTransaction:
      return ReceiptEffect::kOpensByKey;
    case FunctionCode::kCloseTransaction:
      return ReceiptEffect::kClosesByKey;
    case FunctionCode::kOpenRefundDoc:
    case FunctionCode::kOpenCancelDoc:
    case FunctionCode::kInvoice:
      return ReceiptEffect::kOpens;
    default:
      return ReceiptEffect::kNone;
  }
}

ReceiptEffect invoice(const EcrCmdCommand& translator) {
  return text_to_int(translator.szCampi[1]) == 2 ? ReceiptEffect::kOpens : ReceiptEffect::kNone;
}

ReceiptEffect referring(const EcrCmdCommand& translator) {
  const bool refused = given(translator, 1) && !given(translator, 2);
  return refused ? ReceiptEffect::kNone : ReceiptEffect::kOpens;
}

ReceiptEffect forgets(const EcrCmdCommand&) { return ReceiptEffect::kForgets; }

struct EffectRow {
  int opcode;
  ReceiptEffect (*effect)(const EcrCmdCommand& translator);
};

constexpr EffectRow kEffects[] = {
    {8, forgets},     // CLEAR
    {9, key},         // INP
    {10, sale},       // VEND
    {11, forgets},    // CHIU
    {23, invoice},    // FATTURA
    {24, referring},  // NOTACRED
    {74, forgets},    // RESPRN
    {124, referring}  // DOCANNULLO
};

// Whether an "@" line was answered without a line of its file having run.
bool refused_batch(const std::optional<long>& code) {
  return code == INVALID_BATCH_LINE || code == FILE_OPEN_ERROR || code == ERROR_FILE_OPEN_ERROR;
}

// CHIUDETRAN answers 0 and does nothing when nothing is open. A refusal shows that it tried: a
// device that is ready with its key turned away counts as busy.
bool closed_by_key(const TranslatorMemory::Seen& seen) {
  if (seen.code == kStateNotRead) return false;
  return !seen.ready_before || seen.code.value_or(0) != 0;
}

}  // namespace

ReceiptEffect receipt_effect(const EcrCmdCommand& translator, int opcode) {
  for (const EffectRow& row : kEffects) {
    if (row.opcode == opcode) return row.effect(translator);
  }
  return ReceiptEffect::kNone;
}

void TranslatorMemory::follow(const std::string& line, const Seen& seen) {
  // The library reads a line up to its first NUL byte.
  std::string source(line.c_str());
  if (source.size() > kLongestLine) return;
  EcrCmdCommand& translator = language_.translator();
  std::string cleaned(source.size() + 1, '\0');
  if (lorimatutility::TogliCommento(cleaned.data(), source.data(), translator.cChQuote) == 0) {
    return;
  }
  if (cleaned.front() == '@') {
    if (!refused_batch(seen.code)) next_sale_ = NextSale::kUnknown;
    return;
  }
  int position = 1;
  int opcode = 0;
  if (translator.GetCodOp(cleaned.data(), &position, &opcode) != 0) return;
  if (translator.GetCampi(cleaned.data(), opcode, &position) != 0) return;
  take(receipt_effect(translator, opcode), seen);
}

void TranslatorMemory::take(ReceiptEffect effect, const Seen& seen) {
  switch (effect) {
    case ReceiptEffect::kNone:
      return;
    case ReceiptEffect::kSale:
      // A receipt that was due and could not be opened is still due.
      if (seen.ready_before && seen.ready_after && seen.code != 0) return;
      next_sale_ = NextSale::kOpensNone;
      return;
    case ReceiptEffect::kOpens:
      next_sale_ = NextSale::kOpensNone;
      return;
    case ReceiptEffect::kOpensByKey:
      if (seen.code != kStateNotRead) next_sale_ = NextSale::kOpensNone;
      return;
    case ReceiptEffect::kForgets:
      next_sale_ = NextSale::kOpensReceipt;
      return;
    case ReceiptEffect::kClosesByKey:
      if (closed_by_key(seen)) next_sale_ = NextSale::kOpensReceipt;
      return;
  }
}

}  // namespace lorimat::console
