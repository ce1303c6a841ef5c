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

#include "register/closures.h"
#include "register/faults.h"
#include "register/finding.h"
#include "register/journal.h"
#include "register/money.h"
#include "register/paper.h"

namespace lorimat {

// A document that was cut off: begun and not ended when the register was switched off.
struct CutOffDocument {
  std::string kind;  // "receipt", "invoice", "credit note", "void", "non-fiscal", "training"
  std::tm begun = {};
  int lines = 0;  // of items
  Amount subtotal = 0;
  bool registered = false;  // paid: it has its number, and only its end is missing
  int number = 0;           // once it is registered
};

// What was registered last when the register was switched off, if its answer may not have gone out.
struct UnansweredDocument {
  std::string kind;  // "receipt", "invoice", "credit note", "void", "closing"
  int closure = 0;   // that it falls under
  int number = 0;    // of a document
  std::tm time = {};
  Amount total = 0;  // of a closing: of its day

  // "0001-0002"; of a closing "0001", of an invoice "12".
  std::string number_text() const;
};

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

// What a check of the journal found.
struct JournalCheck {
  uint64_t entries = 0;    // that were read
  uint64_t documents = 0;  // registered documents that were compared
  // A hash that does not fit, an entry that is missing, a document without an entry, totals that
  // are not the sum of the documents and the like. At most kMostFindings; `findings_left_out`
  // counts the rest.
  static constexpr size_t kMostFindings = 100;
  std::vector<Finding> findings;
  uint64_t findings_left_out = 0;
  // What is in order and worth knowing: times that go backwards. At most kMostFindings of them.
  std::vector<Finding> notes;
  uint64_t notes_left_out = 0;
  bool damaged = false;  // pages of the file cannot be read, or do not fit one another

  bool good() const { return findings.empty(); }
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
  // told how many entries of all have been read; it answers false to stop, and may be null.
  JournalCheck VerifyJournal(
      const std::function<bool(uint64_t done, uint64_t all)>& progress) const;

  FaultPlan Faults() const;
  void SetFaults(const FaultPlan& plan);

 private:
  class Contents;
  std::unique_ptr<Contents> contents_;
};

}  // namespace lorimat
