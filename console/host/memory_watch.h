// The translator's memory of receipts, followed over every line that reaches it: those that are
// sent, and behind a batch those of its file.
#pragma once

#include <string>

#include "console/check/language.h"
#include "console/check/translator_memory.h"
#include "console/device/device.h"

namespace lorimat::console {

class MemoryWatch {
 public:
  // The answer of a sale where no document is open.
  static constexpr long kNoDocument = 1231;

  // Both have to outlive this object, which is to be made ahead of the first line.
  MemoryWatch(const Language& language, Device& device)
      : language_(language), device_(device), memory_(language) {}

  // A line is sent now, and was answered. An "@" line is followed by the lines of its file, and
  // not by itself.
  void Begin();
  void Answered(const std::string& line, long code);

  // For those lines.
  TranslatorMemory& memory() { return memory_; }
  // Whether the register has no document open.
  bool ready() const;

  TranslatorMemory::NextSale next_sale() const { return memory_.next_sale(); }
  // Whether a sale now would find no receipt and open none.
  bool sale_is_lost() const { return memory_.SaleIsLost(ready()); }
  // Why the last line was answered with this code, and the way out, for a person; empty when a sale
  // was not lost.
  std::string LostSaleReason(long code) const { return LostSaleReason(was_lost_, code); }
  // The same of a line of which that is known.
  std::string LostSaleReason(bool was_lost, long code) const;
  // For a person, in the words of the definition file: "CLEAR, CHIU or RESPRN".
  std::string ways_out() const;

 private:
  const Language& language_;
  Device& device_;
  TranslatorMemory memory_;
  bool ready_before_ = true;
  bool was_lost_ = false;
};

}  // namespace lorimat::console
