// A register's file, looked at without switching the register on: an open document stays open,
// nothing prints and nothing is counted.
//
//   lorimat::RegisterFile file("shop.register");   // throws RegisterError
//   lorimat::RegisterStatus status = file.Status();
//
// Every member throws RegisterError when the file cannot be read or written. While a register
// is at work on the file it cannot be opened. A file that cannot be written, or whose folder
// cannot, is only read, and nothing is made beside it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <ctime>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "register/fault/faults.h"
#include "register/inspect/journal_verdict.h"
#include "register/paper/paper.h"
#include "register/state/interrupted.h"
#include "register/totals/closures.h"
#include "register/totals/journal.h"
#include "register/value/money.h"

namespace lorimat {

struct RegisterStatus {
  std::string file;
  int schema_version = 0;
  std::string serial_number;
  std::string firmware_version;
  int key_position = 1;  // 1 registering, 2 reading, 3 closing, 4 programming
  int current_operator = 1;
  int closures = 0;        // number of the last day closing
  DailyCounters counters;  // of the day that is open
  bool day_open = false;
  Amount day_total = 0;
  Amount grand_total = 0;
  int next_invoice = 1;
  int pending_summaries = 0;
  uint64_t documents = 0;  // registered, of all days
  uint64_t journal_entries = 0;
  std::string journal_hash;  // of the chain's last link, 64 hexadecimal digits
  std::optional<CutOffDocument> open_document;
  FaultPlan faults;
};

class RegisterFile {
 public:
  // The file has to be there.
  explicit RegisterFile(const std::string& file);
  ~RegisterFile();
  RegisterFile(const RegisterFile&) = delete;
  RegisterFile& operator=(const RegisterFile&) = delete;

  RegisterStatus Status() const;
  // The end of the roll, with that of an open document. `documents` counts back from the end, a
  // document from cut to cut; 0 takes all that is kept.
  Paper Roll(size_t documents = 0) const;
  // The entries of a selection, oldest first, with their place in the journal (from 1), until
  // `each` answers false.
  void ReadJournal(const JournalSelection& selection,
                   const std::function<bool(uint64_t place, const JournalEntry&)>& each) const;
  // The entry in this place, without reading those before it.
  std::optional<JournalEntry> Entry(uint64_t place) const;
  // Follows the chain of hashes from the first entry to the last, and compares documents,
  // journal and totals. Damage of the file is a finding, too, and ends the check. `progress` is
  // told again and again how many entries of all have been read; it answers false to stop, also
  // where no entries are read, and may be null.
  JournalCheck VerifyJournal(
      const std::function<bool(uint64_t done, uint64_t all)>& progress) const;

  FaultPlan Faults() const;
  void SetFaults(const FaultPlan& plan);

 private:
  class Contents;
  std::unique_ptr<Contents> contents_;
};

}  // namespace lorimat
