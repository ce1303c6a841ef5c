// Why the register refused lines of an "@" batch, which runs as one line: noted line by line while
// the library runs it.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "console/host/memory_watch.h"
#include "console/host/register_client.h"
#include "register/value/refusal.h"

namespace lorimat::console {

class BatchRefusals {
 public:
  // What is given has to outlive this object. With a memory it is told, too, why a sale opened no
  // receipt.
  BatchRefusals(const RegisterClient& client, const MemoryWatch* memory)
      : client_(client), memory_(memory), seen_(client.refusals()) {}

  // The line of this number, from 1, has run.
  void Note(uint64_t line);
  // Why it was refused, when that led to the code; empty when that is not known.
  std::string Reason(uint64_t line, long code) const;

 private:
  struct Refused {
    lorimat::Refusal refusal;
    bool sale_was_lost = false;
  };

  const RegisterClient& client_;
  const MemoryWatch* memory_;
  uint64_t seen_;  // refusals
  std::map<uint64_t, Refused> by_line_;
  std::map<int, uint64_t> counts_;  // by the code that the register answered
};

}  // namespace lorimat::console
