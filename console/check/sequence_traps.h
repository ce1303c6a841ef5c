// The traps of a sequence of lines, as far as a file alone can tell: what each line leaves the
// printer and the translator's memory in, if the device takes what it can take.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "console/check/finding.h"
#include "console/check/language.h"
#include "console/check/translator_memory.h"

namespace lorimat::console {

// A line's place: its number, the column of its command, and its text.
struct LinePlace {
  uint64_t line = 0;
  uint64_t column = 1;
  std::string source;
};

class SequenceTraps {
 public:
  // Both have to outlive this object.
  SequenceTraps(const Language& language, Findings& findings)
      : language_(language), findings_(findings) {}

  // Takes a line that the translator has just read without a failure.
  void Take(int opcode, const std::string& command, const LinePlace& place);
  // Behind the last line.
  void Finish();

 private:
  // What the printer is doing; kUnknown where the lines do not tell.
  enum class State { kReady, kOpen, kPaying, kEnding, kNonFiscal, kUnknown };

  // A line that a later one has to name.
  struct Mark {
    std::string command;
    LinePlace place;
  };

  void TakeEffect(int opcode);
  void Sell();
  void AddLine();
  void Adjust(int opcode);
  void CheckSubtotal();
  void Pay(std::optional<int64_t> amount, bool whole, bool forgets);
  void PayByCommand();
  void PlayKey();
  void OpenDocument(int opcode);
  void TurnLock(int opcode);
  void Attach();
  void PrintNonFiscal();
  void Settle();
  void Become(State state);
  void NoteMemory();

  bool Given(int field) const;
  int Whole(int field) const;
  int64_t Amount(int field) const;
  std::string CommandWord(int opcode) const;
  void Tell(FindingCause trap, std::vector<FindingArgument> arguments, const Mark& mark);

  const Language& language_;
  Findings& findings_;
  Mark here_;

  State state_ = State::kReady;
  bool opens_ = true;         // whether the next sale opens a receipt
  bool by_key_ = false;       // the receipt was opened by a key
  bool attachments_ = false;  // the receipt stays open behind its payment
  bool lottery_ = false;      // the next key brings a lottery code
  std::optional<Mark> lost_;  // what left the printer ready and the translator with a document
  bool lost_told_ = false;
  std::optional<Mark> key_;  // what turned the key away from registering
  bool key_told_ = false;
  Mark opened_;                   // the document that is no receipt
  Mark paid_;                     // the last payment
  bool refusal_told_ = false;     // of a sale in the state that the printer is in
  bool has_lines_ = false;        // in the open document
  std::optional<int64_t> total_;  // of the receipt, in ten-thousandths, where it is known
  int64_t paid_sum_ = 0;
};

}  // namespace lorimat::console
