// One conversation with one fault in it, and what has to hold of it.
#pragma once

#include <string>
#include <vector>

#include "player.h"
#include "script_device.h"

namespace lorimat {

// How something fails: a client call, or else a call of the system that the library makes.
struct CallManner {
  const char* name;
  CallFault fault = CallFault::kNone;
  bool traces = false;  // of the calls of the trace too
  strike::Kind kind = strike::kMemory;
  int error = 0;  // errno; 0 takes what is likely
  bool half = false;
};

// A conversation without a fault.
struct Undisturbed {
  long calls = 0;                    // that can be struck
  long traces = 0;                   // and those of the trace with them
  long system[strike::kKinds] = {};  // calls of the system that the library makes
  bool again = false;                // it plays the same once more with the same library
  std::vector<long> codes;           // of each step; -1 where it is no line
  std::vector<MadeCall> made;
};

// How many places a manner has in it.
long PlacesOf(const CallManner& manner, const Undisturbed& undisturbed);

// What is found wrong; empty for nothing.
using Wrong = std::string;

// Plays it without a fault. The library may allocate nothing while a line runs.
Wrong Measure(const conversation::Conversation& conversation, const conversation::Stage& stage,
              Undisturbed* undisturbed);

// Plays it with the fault; `struck` tells whether it came to it. What has to hold, beside what the
// player looks at in any case (a result that has its end within its room, a host's line that stays,
// a library that can be unloaded):
// - the code of each line is one of the table and no inner sign, and one that is not 0 has a text;
// - the struck line does not answer 0 when an effect in it was refused, unless the conversation's
//   sweep says so, it is one of the few that lines pass over, or the line is one of a batch, whose
//   failures are in a file;
// - within the struck line no effect is tried more often than without the fault, nor, when the
//   call itself is an effect that was refused, accepted more often in all lines;
// - behind TradClose and TradInit the whole conversation goes as it is written, unless a file was
//   not opened or read.
Wrong Try(const conversation::Conversation& conversation, const conversation::Stage& stage,
          const Undisturbed& undisturbed, const CallManner& manner, long place, bool* struck);

}  // namespace lorimat
