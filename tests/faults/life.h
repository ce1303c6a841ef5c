// One fault, and the life of a host that it strikes: in a process of its own, behind which another
// looks at the file.
#pragma once

#include <string>
#include <vector>

#include "host.h"
#include "report.h"
#include "strike.h"

namespace lorimat {

// What the register does when it is struck.
enum class Part {
  kDay,    // it is at work, on a file of its own that begins with the day
  kLines,  // the same, by way of the translator
  kNew,    // its file is made
  kCut,    // it starts on what a process left behind that died in the middle of a receipt
};

// How a call fails.
struct Manner {
  const char* name;
  unsigned kinds;               // of calls that fail so (rows.cpp)
  long run;                     // so many in a row
  bool half = false;            // half of it gets through first
  bool kill = false;            // the process dies in the call
  bool dies_at_answer = false;  // and when the host has its answer
  bool ends_struck = false;     // the fault lasts until the host ends
  bool disk = false;            // with it all that stores
  bool power = false;           // with the process the computer dies
};

struct Trouble {
  Part part = Part::kDay;
  strike::Kind kind = strike::kMemory;
  const Manner* manner = nullptr;  // null: the answer of an operation is lost
  long place = 0;                  // the call or operation, from 1; 0 for no fault
};

// The whole life, in this process. The folder is ready; `undisturbed` is for lost answers alone:
// what the register looks like behind each call of a day without faults. With `looks` it gets
// those of this day.
void Live(const Trouble& trouble, const std::string& folder, const std::vector<Look>& undisturbed,
          Report* report, std::vector<Look>* looks = nullptr);

// The same in a process of its own; and what came out, by the one that calls it, which must not
// have opened anything so far.
void Try(const Trouble& trouble, const std::string& folder, const std::vector<Look>& undisturbed,
         Report* report);

// Leaves a register behind in the middle of a receipt, as a process does that dies.
void LeaveHalf(const std::string& folder, Report* report);

}  // namespace lorimat
