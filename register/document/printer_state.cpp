#include "register/document/printer_state.h"

namespace lorimat {
namespace {

constexpr unsigned Bit(PrinterState state) { return 1u << static_cast<unsigned>(state); }

constexpr unsigned kM = Bit(PrinterState::kMonitor);
constexpr unsigned kR = Bit(PrinterState::kReceipt);
constexpr unsigned kT = Bit(PrinterState::kTotal);
constexpr unsigned kE = Bit(PrinterState::kEnding);
constexpr unsigned kN = Bit(PrinterState::kNonFiscal);
constexpr unsigned kI = Bit(PrinterState::kItemList);

struct Row {
  Operation operation;
  unsigned states;
};

constexpr Row kTable[] = {
    {Operation::kBeginDocument, kM},
    {Operation::kLine, kR},
    {Operation::kAdjustment, kR},
    {Operation::kSubtotal, kR},
    {Operation::kTotal, kR | kT},
    {Operation::kVoidReceipt, kR | kT},
    {Operation::kTaxId, kR},
    {Operation::kLottery, kR},
    {Operation::kMessage, kR | kT | kE},
    {Operation::kGraphics, kR | kT | kE | kN},
    {Operation::kAdditionalTrailer, kE},
    {Operation::kEndReceipt, kE},
    {Operation::kPrintNormal, kN},
    {Operation::kEndNonFiscal, kN},
    {Operation::kCut, kM | kE | kN},
    {Operation::kReport, kM},
    {Operation::kTurnKey, kM},
    {Operation::kProgram, kM},
    {Operation::kCash, kR},
    {Operation::kTraining, kM},
    {Operation::kDuplicate, kM},
    {Operation::kItemList, kI},
    {Operation::kSelfTest, kM},
};

}  // namespace

bool Allows(PrinterState state, Operation operation) {
  for (const Row& row : kTable) {
    if (row.operation == operation) return (row.states & Bit(state)) != 0;
  }
  return false;
}

}  // namespace lorimat
