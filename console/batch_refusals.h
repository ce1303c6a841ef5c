// Why the register refused lines of an "@" batch, which runs as one line: noted line by line while
// the library runs it.
#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "register/refusal.h"
#include "register_client.h"

class BatchRefusals {
 public:
  // The client has to outlive this object.
  explicit BatchRefusals(const RegisterClient& client)
      : client_(client), seen_(client.refusals()) {}

  // The line of this number, from 1, has run.
  void note(uint64_t line);
  // Why it was refused, when that led to the code; empty when that is not known.
  std::string reason(uint64_t line, long code) const;

 private:
  const RegisterClient& client_;
  uint64_t seen_;  // refusals
  std::map<uint64_t, lorimat::Refusal> by_line_;
  std::map<int, uint64_t> counts_;  // by the code that the register answered
};
