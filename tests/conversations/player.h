// Plays a conversation against the shared library.
#pragma once

#include <string>

#include "script.h"

namespace conversation {

struct Stage {
  std::string library;   // path of the shared library
  std::string language;  // path of the definition file that is used by default
};

struct Count {
  int steps = 0;  // lines sent and exports called, TradInit among them
  int calls = 0;  // client calls compared
};

// Loads the library in a temporary folder of its own, plays every step, unloads it.
// Throws Failure at the first difference.
Count Play(const Conversation& conversation, const Stage& stage);

}  // namespace conversation
