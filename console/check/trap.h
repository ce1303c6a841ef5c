// Traps: lines that the library takes, answers with OK more often than not, and understands
// otherwise than they read. A trap that was found is a value, of a kind and with arguments; its
// sentences stand in one table.
#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "console/check/finding.h"

namespace lorimat::console {

enum class Trap {
  // Numbers
  kDecimalComma,
  kNumberText,
  kNumberRefused,
  kNumberMisread,
  kNumberBare,
  kNumberEmpty,
  kNumberCut,
  kWordAsNumber,
  kQuantityZero,
  kKeyedText,
  // Fields that the command leaves alone
  kFieldUnused,
  kFieldUnusedWithout,
  kTextNotPrinted,
  kDoesNothing,
  // Sales and payments
  kDepositQuantity,
  kDepositTooLarge,
  kTwoPrices,
  kTenderQuoted,
  kTenderUnknown,
  kPaysNothing,
  // Flags and texts
  kFlagSetByNo,
  kFlagNotSet,
  kYesNoOne,
  kTextBehindQuote,
  kTextCut,
  kFileNameLowered,
  kMacroLastKey,
  kCheckDigitPrinted,
  kCheckDigitRefused,
  // References
  kDateCut,
  kDateIgnored,
  kDocumentNumber,
  // Sequences of lines
  kNoReceiptOpens,
  kNextSaleLost,
  kSaleBehindPayment,
  kPaidTooLittle,
  kReceiptNotEnded,
  kSaleInNonFiscal,
  kKeyTurned,
  kSubtotalDiffers,
};

struct FoundTrap {
  Trap trap = Trap::kNumberText;
  std::vector<std::string> arguments;  // as the table's sentences number them
  std::string instead;                 // what to write instead, where it is one word or value
};

struct TrapSentences {
  Trap trap;
  Severity severity;
  const char* rule;    // a fixed name, for programs
  int code;            // what the library answers to the line; 0 for OK, or where that depends
  const char* what;    // English, for translated(); the fields are numbered
  const char* effect;  // what will happen
  const char* remedy;  // what to write instead; empty where `instead` says all
};

std::span<const TrapSentences> SentencesOfTraps();

// In the user's language. Line, column and source are the caller's to fill in.
Finding TrapFinding(const FoundTrap& found);

}  // namespace lorimat::console
