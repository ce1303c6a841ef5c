#include "register/inspect/register_file.h"

#include <algorithm>
#include <utility>
#include <variant>

#include "register/core/core.h"
#include "register/desk/recovery.h"
#include "register/inspect/journal_check.h"
#include "register/storage/schema.h"
#include "register/storage/store.h"
#include "register/storage/store_tables.h"
#include "register/value/cancellation.h"

namespace lorimat {
namespace {

std::string SerialNumber(Database& database) {
  Statement row = database.Prepare("SELECT value FROM setting WHERE name = 'serial_number'");
  return row.Step() ? row.String(0) : std::string();
}

// The lines from one on, with their rows.
Paper Tail(const Paper& roll, size_t from) {
  Paper tail;
  tail.StartAt(roll.dropped() + from);
  for (size_t index = from; index < roll.lines().size(); ++index) tail.Line(roll.lines()[index]);
  for (PaperRow row : roll.rows()) {
    if (row.line < from) continue;
    row.line -= from;
    tail.Row(std::move(row));
  }
  return tail;
}

}  // namespace

// Nothing changes while it is open but the faults.
class RegisterFile::Contents {
 public:
  explicit Contents(const std::string& file)
      : database(file, Database::Open::kLook, kRegisterKind), store(database) {
    Migrate(database);
    serial_number = SerialNumber(database);
    LoadSettings(database, &state);
    store.LoadLedger();
    open = LoadOpenDocument(database);
  }

  Database database;
  RegisterStore store;
  RegisterState state;
  std::string serial_number;
  std::optional<StoredOpenDocument> open;
};

RegisterFile::RegisterFile(const std::string& file) {
  // An empty name is no file.
  if (file.empty()) throw RegisterError("the register's file has no name");
  const CancellationDelay whole;
  contents_ = std::make_unique<Contents>(file);
}

RegisterFile::~RegisterFile() = default;

RegisterStatus RegisterFile::Status() const {
  const RegisterStore& store = contents_->store;
  const RegisterState& state = contents_->state;
  RegisterStatus status;
  status.file = contents_->database.file();
  status.schema_version = contents_->database.version();
  status.serial_number = contents_->serial_number;
  status.firmware_version = state.firmware_version;
  status.key_position = static_cast<int>(state.key);
  status.current_operator = state.current_operator;
  status.closures = store.last_closure();
  status.counters = store.counters();
  status.day_open = store.day_open();
  status.day_total = store.daily().net();
  status.grand_total = store.grand_total();
  status.next_invoice = store.next_invoice();
  status.pending_summaries = store.pending_closures();
  status.documents = static_cast<uint64_t>(store.document_count());
  status.journal_entries = store.journal_count();
  status.journal_hash = store.journal_hash();
  if (contents_->open) status.open_document = DescribeCutOff(state, *contents_->open);
  status.faults = state.faults;
  return status;
}

Paper RegisterFile::Roll(size_t documents) const {
  Paper roll = LoadRoll(contents_->database);
  if (documents == 0) return roll;
  // A document reaches up to a cut; the last one may lack it.
  size_t begin = roll.lines().size();
  size_t left = documents;
  for (size_t index = roll.rows().size(); index-- > 0;) {
    const PaperRow& row = roll.rows()[index];
    if (!std::holds_alternative<CutRow>(row.content)) continue;
    const size_t behind = row.line + 1;
    if (behind < begin && --left == 0) return Tail(roll, behind);
    begin = std::min(begin, behind);
  }
  return roll;
}

void RegisterFile::ReadJournal(
    const JournalSelection& selection,
    const std::function<bool(uint64_t place, const JournalEntry&)>& each) const {
  contents_->store.ForEachEntry(selection, each);
}

std::optional<JournalEntry> RegisterFile::Entry(uint64_t place) const {
  return contents_->store.FindEntry(place);
}

JournalCheck RegisterFile::VerifyJournal(
    const std::function<bool(uint64_t done, uint64_t all)>& progress) const {
  return CheckJournal(contents_->database, contents_->store, contents_->open, progress);
}

FaultPlan RegisterFile::Faults() const { return contents_->state.faults; }

void RegisterFile::SetFaults(const FaultPlan& plan) {
  const CancellationDelay whole;
  RegisterState changed = contents_->state;
  changed.faults = plan;
  Transaction transaction(contents_->database);
  StoreSettings(contents_->database, changed, contents_->state);
  transaction.Commit();
  contents_->state = std::move(changed);
}

}  // namespace lorimat
