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
constexpr long kStateNotRead = CLASS_CRITICAL | SyntaxError(ILLEGAL_VALUE);

bool Given(const EcrCmdCommand& translator, int field) { return translator.szCampi[field][0] != 0; }

ReceiptEffect Sale(const EcrCmdCommand& translator) {
  const int special = Given(translator, 16) + Given(translator, 17) + Given(translator, 19);
  const bool refused = special >= 2 || Given(translator, 1) == Given(translator, 2);
  return refused ? ReceiptEffect::kNone : ReceiptEffect::kSale;
}

ReceiptEffect Key(const EcrCmdCommand& translator) {
  const int code = TextToInt(translator.szCampi[4]);
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

ReceiptEffect Invoice(const EcrCmdCommand& translator) {
  return TextToInt(translator.szCampi[1]) == 2 ? ReceiptEffect::kOpens : ReceiptEffect::kNone;
}

ReceiptEffect Referring(const EcrCmdCommand& translator) {
  const bool refused = Given(translator, 1) && !Given(translator, 2);
  return refused ? ReceiptEffect::kNone : ReceiptEffect::kOpens;
}

ReceiptEffect Forgets(const EcrCmdCommand&) { return ReceiptEffect::kForgets; }

struct EffectRow {
  int opcode;
  ReceiptEffect (*effect)(const EcrCmdCommand& translator);
};

constexpr EffectRow kEffects[] = {
    {8, Forgets},     // CLEAR
    {9, Key},         // INP
    {10, Sale},       // VEND
    {11, Forgets},    // CHIU
    {23, Invoice},    // FATTURA
    {24, Referring},  // NOTACRED
    {74, Forgets},    // RESPRN
    {124, Referring}  // DOCANNULLO
};

// Whether an "@" line was answered without a line of its file having run.
bool RefusedBatch(const std::optional<long>& code) {
  if (!code) return false;
  return *code == INVALID_BATCH_LINE || *code == FILE_OPEN_ERROR || *code == ERROR_FILE_OPEN_ERROR;
}

// CHIUDETRAN answers 0 and does nothing when nothing is open. A refusal shows that it tried: a
// device that is ready with its key turned away counts as busy.
bool ClosedByKey(const TranslatorMemory::Seen& seen) {
  if (seen.code == kStateNotRead) return false;
  return !seen.ready_before || seen.code.value_or(0) != 0;
}

}  // namespace

ReceiptEffect EffectOf(const EcrCmdCommand& translator, int opcode) {
  for (const EffectRow& row : kEffects) {
    if (row.opcode == opcode) return row.effect(translator);
  }
  return ReceiptEffect::kNone;
}

void TranslatorMemory::Follow(const std::string& line, const Seen& seen) {
  // The library reads a line up to its first NUL byte.
  std::string source(line.c_str());
  if (source.size() > kLongestLine) return;
  EcrCmdCommand& translator = language_.translator();
  std::string cleaned(source.size() + 1, '\0');
  if (lorimatutility::TogliCommento(cleaned.data(), source.data(), translator.cChQuote) == 0) {
    return;
  }
  if (cleaned.front() == '@') {
    if (!RefusedBatch(seen.code)) next_sale_ = NextSale::kUnknown;
    return;
  }
  int position = 1;
  int opcode = 0;
  if (translator.GetCodOp(cleaned.data(), &position, &opcode) != 0) return;
  if (translator.GetCampi(cleaned.data(), opcode, &position) != 0) return;
  Take(EffectOf(translator, opcode), seen);
}

void TranslatorMemory::Take(ReceiptEffect effect, const Seen& seen) {
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
      if (ClosedByKey(seen)) next_sale_ = NextSale::kOpensReceipt;
      return;
  }
}

}  // namespace lorimat::console
