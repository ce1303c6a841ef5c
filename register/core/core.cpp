#include "register/core/core.h"

#include <algorithm>
#include <initializer_list>
#include <type_traits>
#include <utility>

#include "register/storage/schema.h"
#include "register/storage/store_tables.h"
#include "register/value/device_clock.h"
#include "register/value/refusal.h"

namespace lorimat {

namespace {

// The roll keeps so many lines; it is cut when it has grown by some more.
constexpr size_t kRollLines = 20000;
constexpr size_t kRollSpare = 2000;

// Whether anything is programmed that is none of these.
bool Changes(const Tables& tables, std::initializer_list<Tables::Part> others) {
  return std::any_of(tables.changes().begin(), tables.changes().end(),
                     [others](const Tables::Change& change) {
                       return std::find(others.begin(), others.end(), change.part) == others.end();
                     });
}

// A new register is made in a unit of work that the core commits when all of it is there.
Tables OpenTables(Database& database, RegisterSettings settings) {
  if (database.version() != 0) {
    Migrate(database);
    return LoadTables(database, settings);
  }
  database.Begin(true);
  MakeSchema(database);
  return Tables(std::move(settings));
}

}  // namespace

RegisterCore::RegisterCore(RegisterSettings settings)
    : database(settings.file, Database::Open::kCreate, kRegisterKind),
      tables(OpenTables(database, std::move(settings))),
      store(database) {
  if (database.in_unit()) {
    Make();
  } else {
    LoadSettings(database, this);
    store.LoadLedger();
    if (!database.in_memory()) paper = LoadRoll(database);
    kept_has_open_ = LoadOpenDocument(database).has_value();
    stored_paper_ = paper.extent();
  }
}

void RegisterCore::Make() {
  const RegisterSettings& given = tables.settings();
  firmware_version = given.firmware_version;
  if (given.open_drawer_at_end) device_options.Write(kDrawerAtEnd, "1");
  setup.fiscal_id = given.vat_number;
  setup.round_cash = given.round_cash;
  setup.commissioning = given.commissioned ? Commissioning::kInService : Commissioning::kNew;
  InsertTables(database, tables);
  StoreSettings(database, *this, RegisterState{});
  store.MakeLedger(given.last_closure, given.last_invoice);
  store.BeginChain(Now());
  database.Commit();
}

void RegisterCore::Mark() {
  kept_ = *this;
  kept_notes_ = document;
  store.Mark();
  document.receipt.Mark();
  kept_service_ = service;
  kept_paper_ = paper.extent();
  replaced_.reset();
}

void RegisterCore::Keep(bool behind) {
  // The rows of a transfer are waited for at its end, all at once.
  if (kept_.session.article_transfer && !session.article_transfer) database.WaitForDisk();
  if (state == PrinterState::kMonitor) {
    document.begun = {};
  } else if (document.begun.tm_mday == 0) {
    document.begun = Now();
  }
  // What is in memory goes with the process, whole.
  const bool stores_open = !database.in_memory() || state == PrinterState::kMonitor;
  std::string open_record;
  if (stores_open) open_record = OpenDocumentRecord(*this, document, paper);
  const bool open_moved =
      open_record != kept_open_record_ || (open_record.empty() && kept_has_open_);
  const bool printed = stores_open && paper.lines().size() != stored_paper_.lines;
  // Not by answer_due, which is set below.
  const bool set = SettingsDiffer(*this, kept_) || ChainedSettingsChange(tables);
  const bool programmed = Changes(tables, {Tables::Part::kNotes});
  const bool row =
      session.article_transfer && !Changes(tables, {Tables::Part::kNotes, Tables::Part::kArticle});
  size_t torn_off = 0;
  if (open_moved || printed || set || programmed || store.Changed() || database.in_unit()) {
    // Of what is printed and not registered nothing is lost that counts.
    const bool fiscal = set || (programmed && !row) || store.Changed() || document.id != 0;
    // Of the rows of a transfer a full disk takes none, and there may be 60,000 of them.
    if (programmed && !fiscal) database.RefuseStillFull();
    if (!database.in_unit()) database.Begin(fiscal);
    if (programmed && !fiscal) database.OweWaiting();
    // A document that was held and ends now has been registered before.
    const bool ended = replaced_ && replaced_->id != 0;
    answer_due = store.Registered() || ended ? AnswerDue::kDocument
                 : store.ClosedDay()         ? AnswerDue::kClosure
                 : behind || unanswered_left_ || state != PrinterState::kMonitor ? kept_.answer_due
                                                                                 : AnswerDue::kNone;
    const bool chained = ChainedTablesChange(tables);
    const ProgrammedTexts before = ProgrammedValues(database, set, chained);
    if (programmed) StoreTables(database, tables);
    if (set || answer_due != kept_.answer_due) StoreSettings(database, *this, kept_);
    if (set || chained) {
      store.NoteProgrammed(before, ProgrammedValues(database, set, chained), Now());
    }
    store.Keep();
    if (open_moved) StoreOpenDocument(database, *this, document, open_record);
    if (printed) StoreRoll(database, paper, stored_paper_);
    if (state == PrinterState::kMonitor && paper.lines().size() > kRollLines + kRollSpare) {
      torn_off = TrimRoll(database, paper, kRollLines) - paper.dropped();
    }
    database.Commit();
  }
  // It is stored: from here on nothing may fail.
  [&]() noexcept {
    tables.Keep();
    if (torn_off > 0) paper.Drop(torn_off);
    kept_open_record_.swap(open_record);
    kept_has_open_ = !kept_open_record_.empty();
    if (stores_open) stored_paper_ = paper.extent();
  }();
}

void RegisterCore::StoreOpen() {
  if (!database.in_memory() || state == PrinterState::kMonitor) return;
  Transaction unit(database);
  const std::string record = OpenDocumentRecord(*this, document, paper);
  StoreOpenDocument(database, *this, document, record);
  StoreRoll(database, paper, stored_paper_);
  unit.Commit();
  kept_has_open_ = true;
  stored_paper_ = paper.extent();
}

void RegisterCore::TakeBack() noexcept {
  static_assert(std::is_nothrow_move_assignable_v<RegisterState>);
  static_assert(std::is_nothrow_move_assignable_v<OpenDocument>);
  if (database.in_unit()) database.Rollback();
  tables.TakeBack();
  store.TakeBack();
  paper.TakeBack(kept_paper_);
  static_cast<RegisterState&>(*this) = std::move(kept_);
  service = kept_service_;
  if (replaced_) document = *std::move(replaced_);
  replaced_.reset();
  static_cast<DocumentNotes&>(document) = std::move(kept_notes_);
  document.receipt.TakeBack();
}

void RegisterCore::NoteAnswered() noexcept {
  if (answer_due == AnswerDue::kNone || unanswered_left_) return;
  // Where it fails the next start tells of it, though nothing was amiss.
  try {
    Mark();
    try {
      database.Begin(false);
      Keep();
    } catch (...) {
      TakeBack();
    }
  } catch (...) {
  }
}

void RegisterCore::Replace(OpenDocument next) noexcept {
  if (!replaced_) replaced_.emplace(std::move(document));
  document = std::move(next);
}

const std::string& RegisterCore::outbox() const {
  const std::string& given = tables.settings().outbox;
  return given.empty() ? setup.outbox : given;
}

std::tm RegisterCore::Now() const { return seen_ = LaterBy(SystemTime(), setup.clock_offset); }

std::tm RegisterCore::SystemTime() const {
  return tables.settings().clock ? tables.settings().clock() : ComputerTime();
}

bool RegisterCore::Allows(Operation operation) const {
  const auto refuse = [](RefusalCause cause, std::initializer_list<int64_t> numbers = {}) {
    Refuse(RTF_EFPTR_WRONG_STATE, cause, numbers);
    return false;
  };
  const auto position = static_cast<int64_t>(key);
  if (operation == Operation::kBeginDocument && key != KeyPosition::kRegister) {
    return refuse(RefusalCause::kKeyForDocument, {position});
  }
  if (operation == Operation::kProgram && tables.settings().programming_needs_key &&
      key != KeyPosition::kProgram) {
    return refuse(RefusalCause::kKeyForProgramming, {position});
  }
  if (setup.training && (operation == Operation::kReport || operation == Operation::kProgram)) {
    return refuse(RefusalCause::kTraining);
  }
  const bool moves_cash = document.cash != CashMove::kNone;
  switch (operation) {
    case Operation::kLine:
    case Operation::kAdjustment:
    case Operation::kSubtotal:
    case Operation::kTaxId:
    case Operation::kLottery:
      if (moves_cash) return refuse(RefusalCause::kMovesCash);
      break;
    case Operation::kCash:
      if (!moves_cash && state == PrinterState::kReceipt) {
        return refuse(RefusalCause::kMovesNoCash);
      }
      break;
    default:
      break;
  }
  if (lorimat::Allows(state, operation)) return true;
  const Receipt& receipt = document.receipt;
  const bool paying = state == PrinterState::kTotal;
  return refuse(RefusalCause::kState,
                {static_cast<int64_t>(state), static_cast<int64_t>(operation),
                 static_cast<int64_t>(receipt.kind()), static_cast<int64_t>(receipt.lines().size()),
                 paying ? receipt.remaining() : receipt.total()});
}

}  // namespace lorimat
