// A register in a file that lives through a day of troubles, and what it promises in each step: an
// answer of 0 is stored, and stays; any other changed nothing; what was refused for certain and is
// tried again is done once. Only where the register says that it does not know whether something
// is stored may it be there, once, at the next start.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

#include "day/day_register.h"
#include "day/operations.h"
#include "day/trouble.h"

namespace lorimat {

struct DayStep {
  int minutes = 0;  // that pass before it
  int operation = kDayGetItem;
  std::string values = {};  // for OperateDay
  Trouble trouble = {};
  bool restart = false;  // in place of the operation
};

class TroubledDay {
 public:
  // What was seen, to know that it was.
  struct Counts {
    int64_t steps = 0;
    int64_t done = 0;  // answered 0
    int64_t documents = 0;
    int64_t refused = 0;
    int64_t struck[kTroubleKinds] = {};
    int64_t lost_answers = 0;    // of what was carried out
    int64_t unknown = 0;         // answers
    int64_t unknown_stored = 0;  // that were there at the next start
    int64_t tried_again = 0;
    int64_t restarts = 0;
  };

  // A new file, which is not there, or lies in memory where no name is given. The disk is the one
  // that the day's troubles are of, and is null for a day without them. It counts on.
  TroubledDay(const std::string& file, FailingDisk* disk, Counts* counts);

  // A step; false when a promise does not hold: see wrong().
  bool Do(const DayStep& step);
  bool Restart();
  // Ends the register, and looks at what its file holds.
  bool End();

  VirtualRegister& device() { return *device_; }
  // Of the values that the last step had.
  size_t values_used() const { return values_used_; }
  const std::string& wrong() const { return wrong_; }
  // Documents that were answered, and the fewest entries that the journal has to have.
  int64_t documents() const { return documents_; }
  uint64_t least_entries() const { return least_entries_; }

 private:
  // What a start has to find again.
  struct Stored {
    int64_t documents = 0;
    int64_t grand_total = 0;
    std::string day;
    int closure = 0;

    bool operator==(const Stored&) const = default;
  };
  Stored StoredNow() const;
  bool Wrong(const std::string& what);
  bool Start();
  // The register is off and starts.
  bool StartAgain(const Stored& expected);
  // Orders the fault of a step, if it has one; its answer where it strikes.
  int OrderFault(const Trouble& trouble);
  bool Once(const DayStep& step);
  bool CheckDone(const DayStep& step, const Stored& before, int state_before, int abandoned_before);

  std::string file_;
  FailingDisk* disk_;
  Counts& counts_;
  std::unique_ptr<VirtualRegister> device_;
  std::string wrong_;
  int64_t documents_ = 0;
  uint64_t least_entries_ = 0;
  size_t values_used_ = 0;
  bool unknown_ = false;         // something may be stored that nobody knows of
  bool refused_surely_ = false;  // the last step was struck, and nothing has happened
  bool in_journal_ = false;      // the non-fiscal document that is open
};

std::string DescribeStep(const DayStep& step);

}  // namespace lorimat
