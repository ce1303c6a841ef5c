// What a fuzzer has been through beside its executions. The program tells it as it ends, for
// script/fuzz to add up.
#pragma once

#include <cstdint>

struct Tally {
  uint64_t lines = 0;    // that the translator was given
  uint64_t files = 0;    // of the input, that were read
  uint64_t answers = 0;  // of a device, each to one call, out of the input
};

// The program's own. It is written to standard error as the program ends:
// "TALLY lines files answers".
Tally& TheTally();
