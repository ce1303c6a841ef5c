// The translator's memory of receipts, followed over every line that reaches it: those that are
// sent, and those of a batch that it reads by itself.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "console/check/language.h"
#include "console/check/translator_memory.h"
#include "console/host/register_client.h"

namespace lorimat::console {

class MemoryWatch {
 public:
  // The answer of a sale where no document is open.
  static constexpr long kNoDocument = 1231;

  // Both have to outlive this object, which is to be made ahead of the first line.
  MemoryWatch(const Language& language, RegisterClient& client);
  ~MemoryWatch();
  MemoryWatch(const MemoryWatch&) = delete;
  MemoryWatch& operator=(const MemoryWatch&) = delete;

  // The library has answered the line that was sent. A batch is followed line by line, by what the
  // register shows between them: their answers are not seen.
  void Answered(const std::string& line, long code);

  TranslatorMemory::NextSale next_sale() const { return memory_.next_sale(); }
  // Whether a sale now would find no receipt and open none.
  bool sale_is_lost() const { return memory_.SaleIsLost(ready()); }
  // The same ahead of the line that runs, or ran last.
  bool sale_was_lost() const { return was_lost_; }
  // Why that line was answered with this code, and the way out, for a person; empty when a sale
  // was not lost.
  std::string LostSaleReason(bool was_lost, long code) const;
  // For a person, in the words of the definition file: "CLEAR, CHIU or RESPRN".
  std::string ways_out() const;

 private:
  void Take(std::string_view line);
  void Settle(std::optional<long> code);
  bool ready() const;

  const Language& language_;
  RegisterClient& client_;
  TranslatorMemory memory_;
  std::optional<std::string> pending_;  // the line at work
  bool ready_before_ = true;
  bool was_lost_ = false;
};

}  // namespace lorimat::console
