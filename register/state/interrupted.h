// What a switching off without order leaves behind: a document that was cut off, and one that is
// registered and whose answer the host may not have got.
#pragma once

#include <cstdint>
#include <ctime>
#include <string>
#include <string_view>

#include "register/value/money.h"

namespace lorimat {

// What was under way, or was stored last.
enum class InterruptedKind : uint8_t {
  kReceipt,
  kInvoice,
  kCreditNote,
  kVoid,
  kNonFiscal,
  kTraining,
  kClosure,
  kLast = kClosure,
};

// "receipt", "invoice", "credit note", "void", "non-fiscal", "training", "closing".
std::string_view InterruptedKindName(InterruptedKind kind);

// A document that was cut off: begun and not ended when the register was switched off.
struct CutOffDocument {
  InterruptedKind kind = InterruptedKind::kReceipt;
  std::tm begun = {};
  int lines = 0;  // of items
  Amount subtotal = 0;
  bool registered = false;  // paid: it has its number, and only its end is missing
  int number = 0;           // once it is registered
};

// What was registered last when the register was switched off, if its answer may not have gone out.
struct UnansweredDocument {
  InterruptedKind kind = InterruptedKind::kReceipt;
  int closure = 0;  // that it falls under
  int number = 0;   // of a document
  std::tm time = {};
  Amount total = 0;  // of a closing: of its day

  // "0001-0002"; of a closing "0001", of an invoice "12".
  std::string number_text() const;
};

}  // namespace lorimat
