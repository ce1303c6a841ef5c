// A register's file, looked at without switching the register on: an open document stays open,
// nothing prints and nothing is counted, and the file does not change.
//
//   lorimat::RegisterFile file("shop.register");   // throws RegisterError
//   lorimat::RegisterStatus status = file.Status();
//
// A register may be at work on the file, in this program or another one: it does not notice. What
// is shown is of one moment each time: Status, Faults and the check of the journal of the last
// look, at which the file was opened or Look saw news, or of a later one.
//
// Every member throws RegisterError when the file cannot be read. Where the reader may not make
// anything beside the file, and no register is at work on it or was killed, it is read without the
// knowledge of a register that begins to work; then the members throw as well.
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
#include "register/state/day_state.h"
#include "register/state/interrupted.h"
#include "register/totals/closures.h"
#include "register/totals/journal.h"
#include "register/value/money.h"

namespace lorimat {

class PartFile;
struct DocumentSpan;
struct KeptDocument;
struct RegisterProfile;
struct StoredDocument;

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
  // Where the register would register nothing, as its clock is too far behind: what it shows, and
  // the last document or closing, as numbers that read as YYYYMMDDHHMMSS. 0 when all is well.
  int64_t clock_now = 0;
  int64_t clock_latest = 0;
  DayNotice notice;  // what is to be told of the day
  FaultPlan faults;
};

class RegisterFile {
 public:
  // The file has to be there.
  explicit RegisterFile(const std::string& file);
  // A copy that has no name yet.
  explicit RegisterFile(const PartFile& part);
  ~RegisterFile();
  RegisterFile(const RegisterFile&) = delete;
  RegisterFile& operator=(const RegisterFile&) = delete;

  // Whether anything was stored since the last look; then what is shown is of now. kGone: the name
  // leads to another file by now, or to none, and nothing more will come.
  enum class News { kNone, kChanged, kGone };
  News Look();

  // `clock` is what the register's clock goes by; null is the computer's.
  RegisterStatus Status(const std::function<std::tm()>& clock = nullptr) const;
  // What the status leaves out (register_profile.h), as it is now; a status behind it is of the
  // same moment.
  RegisterProfile Profile() const;
  // The end of the roll, with that of an open document. `documents` counts back from the end, a
  // document from cut to cut; 0 takes all that is kept.
  Paper Roll(size_t documents = 0) const;
  // The entries of a selection, oldest first, with their place in the journal (from 1), until
  // `each` answers false. It may take its time: the log of a register at work does not wait for it.
  void ReadJournal(const JournalSelection& selection,
                   const std::function<bool(uint64_t place, const JournalEntry&)>& each) const;
  // The same of those behind a place (0 for all), at most so many: at least 1, and as `most` counts
  // by closings and times alone, `each` may be told of fewer. Answers the place to go on behind, or
  // nothing when these were the last.
  std::optional<uint64_t> ReadJournalPart(
      const JournalSelection& selection, uint64_t behind, size_t most,
      const std::function<void(uint64_t place, const JournalEntry&)>& each) const;
  // The entry in this place, without reading those before it.
  std::optional<JournalEntry> Entry(uint64_t place) const;
  // Registered documents, as they are now (register/storage/store.h): a part of them in the order
  // of their times, without lines and payments, and those of a day and a number.
  std::vector<StoredDocument> FindDocuments(const DocumentSpan& span) const;
  std::vector<KeptDocument> FindKept(int closure, int number) const;
  // Follows the chain of hashes from the first entry to the last, and compares documents,
  // journal and totals. Damage of the file is a finding, too, and ends the check. `progress` is
  // told again and again how many entries of all have been read; it answers false to stop, also
  // where no entries are read, and may be null.
  JournalCheck VerifyJournal(
      const std::function<bool(uint64_t done, uint64_t all)>& progress) const;

  // Copies the whole register, as it is at this moment, into a new file. `progress` is told how
  // many pages of all are there; it answers false to stop, and may be null. False when it was
  // stopped.
  bool CopyTo(PartFile& part,
              const std::function<bool(uint64_t done, uint64_t all)>& progress) const;

  FaultPlan Faults() const;
  // Changes the plan in a file and answers the new one. Refused while a register is at work on it.
  static FaultPlan ChangeFaults(const std::string& file,
                                const std::function<void(FaultPlan*)>& change);

 private:
  class Contents;
  void ReadPlaces(const std::vector<uint64_t>& places, const JournalSelection& selection,
                  const std::function<bool(uint64_t place, const JournalEntry&)>& each) const;

  std::unique_ptr<Contents> contents_;
};

}  // namespace lorimat
