#include "console/check/translator_memory.h"

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

// Whether CHIUDETRAN closed something, where that is known: it answers 0 and does nothing when
// nothing is open. A refusal shows that it tried: a device that is ready with its key turned away
// counts as busy.
std::optional<bool> ClosedByKey(const TranslatorMemory::Seen& seen) {
  if (seen.code == kStateNotRead) return false;
  if (seen.code.value_or(0) != 0) return true;
  if (!seen.ready_before) return std::nullopt;
  return !*seen.ready_before;
}

// Whether a sale left the memory as it was, where that is known: a receipt that was due and could
// not be opened is still due.
std::optional<bool> LeftReceiptDue(const TranslatorMemory::Seen& seen) {
  if (seen.code == 0 || seen.ready_before == false || seen.ready_after == false) return false;
  if (!seen.ready_before || !seen.ready_after) return std::nullopt;
  return true;
}

// SETP.
constexpr int kSetProperties = 48;

// ABORT as the translator takes it: a true word or 2 sets it, 1 clears it, any other text leaves
// it.
bool Aborts(EcrCmdCommand& translator, bool before) {
  char* const field = translator.szCampi[7];
  if (!Given(translator, 7)) return before;
  if (lorimatutility::CheckTrue(field)) return true;
  const int number = TextToInt(field);
  if (number == 1) return false;
  return number == 2 || before;
}

}  // namespace

ReceiptEffect EffectOf(const EcrCmdCommand& translator, int opcode) {
  for (const EffectRow& row : kEffects) {
    if (row.opcode == opcode) return row.effect(translator);
  }
  return ReceiptEffect::kNone;
}

int TranslatorMemory::Follow(const std::string& line, const Seen& seen) {
  const int opcode = language_.ReadLine(line);
  if (opcode == Language::kNamesBatch) {
    if (!RefusedBatch(seen.code)) Lose();
    return 0;
  }
  if (opcode == 0) return 0;
  EcrCmdCommand& translator = language_.translator();
  Take(EffectOf(translator, opcode), seen);
  if (opcode == kSetProperties && seen.code.value_or(0) == 0) aborts_ = Aborts(translator, aborts_);
  return opcode;
}

void TranslatorMemory::Take(ReceiptEffect effect, const Seen& seen) {
  switch (effect) {
    case ReceiptEffect::kNone:
      return;
    case ReceiptEffect::kSale:
      if (const std::optional<bool> due = LeftReceiptDue(seen); !due) {
        TakeIfUnlike(NextSale::kOpensNone);
      } else if (!*due) {
        next_sale_ = NextSale::kOpensNone;
      }
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
      if (const std::optional<bool> closed = ClosedByKey(seen); !closed) {
        TakeIfUnlike(NextSale::kOpensReceipt);
      } else if (*closed) {
        next_sale_ = NextSale::kOpensReceipt;
      }
      return;
  }
}

// It became so, or stayed as it was.
void TranslatorMemory::TakeIfUnlike(NextSale next_sale) {
  if (next_sale_ != next_sale) Lose();
}

}  // namespace lorimat::console
