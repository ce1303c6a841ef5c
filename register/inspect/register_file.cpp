#include "register/inspect/register_file.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <variant>

#include "register/core/core.h"
#include "register/desk/clock_check.h"
#include "register/desk/day_notice.h"
#include "register/desk/recovery.h"
#include "register/inspect/journal_check.h"
#include "register/inspect/register_profile.h"
#include "register/storage/schema.h"
#include "register/storage/store.h"
#include "register/storage/store_tables.h"
#include "register/value/cancellation.h"
#include "register/value/device_clock.h"

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

// As it was at the last look.
class RegisterFile::Contents {
 public:
  explicit Contents(const std::string& file)
      : database(file, Database::Open::kRead, kRegisterKind), store(database) {
    Migrate(database);  // of a copy
    const Moment moment(database);
    Load();
  }
  explicit Contents(const PartFile& part) : database(part, kRegisterKind), store(database) {
    const Moment moment(database);
    Load();
  }

  // Within a moment.
  void Load() {
    serial_number = SerialNumber(database);
    state = RegisterState();
    LoadSettings(database, &state);
    store.LoadLedger();
    open = LoadOpenDocument(database);
    database.CheckUndisturbed();
  }

  Database database;
  RegisterStore store;
  RegisterState state;
  std::string serial_number;
  std::optional<StoredOpenDocument> open;
};

RegisterFile::RegisterFile(const std::string& file) {
  // An empty name is no file.
  if (file.empty()) throw RegisterError(MakeFailure(FailureCause::kNoName));
  const CancellationDelay whole;
  contents_ = std::make_unique<Contents>(file);
}

RegisterFile::RegisterFile(const PartFile& part) {
  const CancellationDelay whole;
  contents_ = std::make_unique<Contents>(part);
}

RegisterFile::~RegisterFile() = default;

RegisterStatus RegisterFile::Status(const std::function<std::tm()>& clock) const {
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
  const std::tm now = LaterBy(clock ? clock() : ComputerTime(), state.setup.clock_offset);
  if (const std::optional<ClockBehind> behind = FindClockBehind(state.setup, store, now)) {
    status.clock_now = behind->now;
    status.clock_latest = behind->latest;
  }
  status.notice = FindDayNotice(store, now);
  return status;
}

RegisterProfile RegisterFile::Profile() const {
  const CancellationDelay whole;
  RegisterProfile profile = [this] {
    const Moment moment(contents_->database);
    contents_->Load();
    return MakeProfile(contents_->database, contents_->store, contents_->state);
  }();
  contents_->database.CheckUndisturbed();
  return profile;
}

RegisterFile::News RegisterFile::Look() {
  const CancellationDelay whole;
  Database& database = contents_->database;
  switch (database.FindNews()) {
    case Database::News::kNone:
      return News::kNone;
    case Database::News::kGone:
      return News::kGone;
    case Database::News::kAnew:
      contents_ = std::make_unique<Contents>(std::string(database.file()));
      return News::kChanged;
    case Database::News::kChanged:
      break;
  }
  const Moment moment(database);
  contents_->Load();
  return News::kChanged;
}

Paper RegisterFile::Roll(size_t documents) const {
  const CancellationDelay whole;
  Paper roll = [this] {
    const Moment moment(contents_->database);
    return LoadRoll(contents_->database);
  }();
  contents_->database.CheckUndisturbed();
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

// What is registered stays as it is: a moment for the places, and one for each entry. Whoever reads
// slowly keeps no moment open.
void RegisterFile::ReadJournal(
    const JournalSelection& selection,
    const std::function<bool(uint64_t place, const JournalEntry&)>& each) const {
  constexpr auto kAll = static_cast<size_t>(std::numeric_limits<int64_t>::max());
  ReadPlaces(contents_->store.FindPlaces(selection, 0, kAll), selection, each);
}

std::optional<uint64_t> RegisterFile::ReadJournalPart(
    const JournalSelection& selection, uint64_t behind, size_t most,
    const std::function<void(uint64_t place, const JournalEntry&)>& each) const {
  const std::vector<uint64_t> places = contents_->store.FindPlaces(selection, behind, most);
  contents_->database.CheckUndisturbed();
  ReadPlaces(places, selection, [&each](uint64_t place, const JournalEntry& entry) {
    each(place, entry);
    return true;
  });
  if (places.size() < most) return std::nullopt;
  return places.back();
}

void RegisterFile::ReadPlaces(
    const std::vector<uint64_t>& places, const JournalSelection& selection,
    const std::function<bool(uint64_t place, const JournalEntry&)>& each) const {
  for (const uint64_t place : places) {
    const std::optional<JournalEntry> entry = contents_->store.FindEntry(place);
    contents_->database.CheckUndisturbed();
    if (!entry) contents_->database.Damaged("journal");
    if (Selects(selection, *entry) && !each(place, *entry)) return;
  }
}

std::optional<JournalEntry> RegisterFile::Entry(uint64_t place) const {
  std::optional<JournalEntry> entry = contents_->store.FindEntry(place);
  contents_->database.CheckUndisturbed();
  return entry;
}

std::vector<StoredDocument> RegisterFile::FindDocuments(const DocumentSpan& span) const {
  std::vector<StoredDocument> found = [&] {
    const Moment moment(contents_->database);
    return contents_->store.FindDocuments(span);
  }();
  contents_->database.CheckUndisturbed();
  return found;
}

std::vector<KeptDocument> RegisterFile::FindKept(int closure, int number) const {
  std::vector<KeptDocument> found = [&] {
    const Moment moment(contents_->database);
    return contents_->store.FindKept(closure, number);
  }();
  contents_->database.CheckUndisturbed();
  return found;
}

JournalCheck RegisterFile::VerifyJournal(
    const std::function<bool(uint64_t done, uint64_t all)>& progress) const {
  const Moment moment(contents_->database);
  contents_->Load();
  JournalCheck check =
      CheckJournal(contents_->database, contents_->store, contents_->open, progress);
  contents_->database.CheckUndisturbed();
  return check;
}

bool RegisterFile::CopyTo(PartFile& part,
                          const std::function<bool(uint64_t done, uint64_t all)>& progress) const {
  const CancellationDelay whole;
  return contents_->database.CopyTo(part, progress);
}

FaultPlan RegisterFile::Faults() const { return contents_->state.faults; }

FaultPlan RegisterFile::ChangeFaults(const std::string& file,
                                     const std::function<void(FaultPlan*)>& change) {
  const CancellationDelay whole;
  Database database(file, Database::Open::kChange, kRegisterKind);
  Migrate(database);
  RegisterState before;
  LoadSettings(database, &before);
  RegisterState changed = before;
  change(&changed.faults);
  Transaction transaction(database);
  StoreSettings(database, changed, before);
  transaction.Commit();
  return changed.faults;
}

}  // namespace lorimat
