#include "register/fault/fault_operations.h"

#include <cstddef>
#include <type_traits>

#include "pal/peripherals/keyboard/functioncode.h"

namespace lorimat {
namespace {

// The words of the list of operations.
constexpr unsigned kHost = 0;
constexpr unsigned kReads = kEffectReads;
constexpr unsigned kActs = kEffectActs;
constexpr unsigned kRecords = kEffectReads | kEffectActs;
constexpr unsigned kPrints = kEffectActs | kEffectPrints;
constexpr unsigned kOpens = kPrints | kEffectOpens;
constexpr unsigned kPays = kPrints | kEffectRegisters;
constexpr unsigned kTotals = kPrints | kEffectTotals;
constexpr unsigned kSettles = kPays | kTotals;
constexpr unsigned kKeys = kOpens | kPays | kTotals;

struct Row {
  unsigned effects;
  bool answers_code;
};

constexpr Row kRows[] = {
#define RTF_CLIENT_OPERATION(Does, Result, Name, Parameters, Arguments) \
  {k##Does, std::is_same_v<Result, int> && ClientOperation::k##Name != ClientOperation::kGetState},
#include "rpccommon/client/rtfclientoperations.inc"
};

const Row& RowOf(ClientOperation operation) { return kRows[static_cast<size_t>(operation)]; }

}  // namespace

unsigned EffectsOf(ClientOperation operation) { return RowOf(operation).effects; }
bool AnswersCode(ClientOperation operation) { return RowOf(operation).answers_code; }

unsigned EffectsOfKey(uint8_t key) {
  using F = FunctionCode;
  if (key >= F::kDepartment01 && key <= F::kLastDepartment) return kOpens;
  if (key >= F::kSubTender01 && key <= F::kLastSubTender) return kSettles;
  // What a macro plays is not looked into.
  if (key >= F::kMacro01 && key <= F::kMacro20) return kKeys;
  switch (key) {
    case F::kDepartment:
    case F::kPlu:
    case F::kOpenTransaction:
    case F::kInvoice:
    case F::kOpenRefundDoc:
    case F::kOpenCancelDoc:
      return kOpens;
    case F::kTotal:
    case F::kCredit:
    case F::kCheque:
    case F::kTicket:
    case F::kCreditCard:
    case F::kCreditInvoice:
    case F::kCreditServices:
    case F::kCreditSSN:
      return kSettles;
    case F::kSubtotal:
      return kTotals;
    case F::kCancel:
    case F::kPercentageA:
    case F::kPercentageB:
    case F::kAbsoluteDecrease:
    case F::kAbsoluteIncrease:
    case F::kVoidReceipt:
    case F::kTaxCode:
    case F::kCloseTransaction:
    case F::kPaperFeed:
    case F::kShortPaperFeed:
      return kPrints;
    default:
      return kActs;
  }
}

}  // namespace lorimat
