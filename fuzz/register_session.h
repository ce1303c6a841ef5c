// A register in a file and a clock that goes on, and what has to hold of it whatever was done.
#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>

#include "fuzz/scratch.h"
#include "register/client/virtual_register.h"

// The settings of the fuzzers' registers: everything but the clock is as it comes.
lorimat::RegisterSettings FuzzSettings(const std::string& file);

// The minute that the registers' clock shows, from the fuzzers' epoch.
extern int64_t fuzz_minutes;

// What no refused operation may change.
std::string RegisterFacts(const lorimat::VirtualRegister& device);

// Documents against the sums that are kept of them, and what went back against what was sold.
void CheckSums(const lorimat::RegisterStore& store);

// The journal of a file, as `lorimat journal verify` judges it.
void CheckJournalOf(const std::string& file, int64_t documents, uint64_t entries);

// Numbers out of the input; zeros behind its end.
class InputNumbers {
 public:
  explicit InputNumbers(std::string_view bytes) : bytes_(bytes) {}
  bool empty() const { return place_ >= bytes_.size(); }
  uint8_t Byte() { return empty() ? 0 : static_cast<uint8_t>(bytes_[place_++]); }
  // Mostly an amount as a shop has it; some as no shop has.
  int64_t Amount();
  int Small(int count) { return Byte() % count; }

 private:
  std::string_view bytes_;
  size_t place_ = 0;
};
