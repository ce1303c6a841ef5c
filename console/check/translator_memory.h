// The translator's only memory of receipts: whether the next sale is to open one. It is kept apart
// from the printer's state, and the two can part: behind a document that ended by itself, by a key
// or by a reset, the printer is ready and yet no sale opens a receipt. What it holds is nowhere to
// be asked for, but it follows from the lines that were sent.
#pragma once

#include <optional>
#include <string>

#include "console/check/language.h"

class EcrCmdCommand;

namespace lorimat::console {

// What a command does to that memory, once the library has read its line.
enum class ReceiptEffect {
  kNone,
  kSale,         // opens a receipt when that is due and the printer is ready; the next opens none
  kOpens,        // opens a document or tries to: the next sale opens none, also when refused
  kOpensByKey,   // the same, but not when the state of the device could not be read
  kForgets,      // the next sale opens a receipt, whatever is answered
  kClosesByKey,  // the same, if something is open
};

// The effect of a line whose fields the translator has just read (GetCodOp, then GetCampi without
// a failure). A line that its command refuses by itself has none.
ReceiptEffect EffectOf(const EcrCmdCommand& translator, int opcode);

class TranslatorMemory {
 public:
  enum class NextSale {
    kOpensReceipt,  // as at the start
    kOpensNone,     // it goes into what is open; with nothing open it is refused (1231)
    kUnknown,       // lines were run that nobody followed
  };

  // How the device was seen around a line: whether its state was "ready" (monitor), with no
  // document open. Neither is known of a line within a batch.
  struct Seen {
    std::optional<bool> ready_before = true;
    std::optional<bool> ready_after = true;
    std::optional<long> code;  // the answer, where it is known
  };

  // The words have to outlive this object.
  explicit TranslatorMemory(const Language& language) : language_(language) {}

  // Follows a line that was sent, whatever was answered. Behind an "@" line that ran its file the
  // memory is unknown: its lines are to be followed one by one, in its place. Answers the opcode of
  // the line's command, 0 when it was not read.
  int Follow(const std::string& line, const Seen& seen);
  // Lines were run that nobody can follow.
  void Lose() { next_sale_ = NextSale::kUnknown; }

  NextSale next_sale() const { return next_sale_; }
  // Whether a line that fails ends its batch: ABORT of SETP.
  bool aborts() const { return aborts_; }
  // Whether a sale now would be refused for want of a receipt, with the printer ready or not. The
  // ways out are CLEAR, RESPRN and CHIU.
  bool SaleIsLost(bool ready) const { return ready && next_sale_ == NextSale::kOpensNone; }

 private:
  void Take(ReceiptEffect effect, const Seen& seen);
  void TakeIfUnlike(NextSale next_sale);

  const Language& language_;
  NextSale next_sale_ = NextSale::kOpensReceipt;
  bool aborts_ = false;
};

}  // namespace lorimat::console
