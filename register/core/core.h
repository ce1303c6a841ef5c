// The register's parts in one place: tables, store, paper, state and the document in progress, and
// the unit of work on them. The classes that carry out the operations work on this.
#pragma once

#include <atomic>
#include <ctime>
#include <optional>
#include <string>
#include <vector>

#include "register/paper/paper.h"
#include "register/state/register_state.h"
#include "register/storage/database.h"
#include "register/storage/store.h"
#include "register/tables/tables.h"
#include "register/value/register_failure.h"

namespace lorimat {

struct RegisterCore : RegisterState {
  // Opens the register's file, or makes it; an open document stays open (register/desk/recovery.h).
  // Throws RegisterError.
  explicit RegisterCore(RegisterSettings settings);

  // The device's clock, and the one that it was set by.
  std::tm Now() const;
  // What it showed when it was read last.
  const std::tm& seen() const { return seen_; }
  std::tm SystemTime() const;
  // Whether an operation is allowed now; documents want the key in the registering position,
  // and programming may want it in its own. In training nothing is reported or programmed, and a
  // document that moves cash sells nothing.
  bool Allows(Operation operation) const;
  // The folder of what is sent: the one that the host gave, else the shop's own; empty for none.
  const std::string& outbox() const;
  // The rates of the open document: of the sale that goes back, else those in force.
  const std::vector<VatRate>& rates() const {
    return document.rates != nullptr ? *document.rates : tables.settings().vat_rates;
  }
  // Put into service with the revenue agency: documents carry the number of the closure.
  bool in_service() const { return setup.commissioning == Commissioning::kInService; }

  // --- A unit of work: Mark, what is done in it, then Keep, or TakeBack where anything has failed.
  // Notes all as it is: the state to go back to. Where this fails, nothing has changed.
  void Mark();
  // Stores all that has changed since then, as one unit: it is there whole, or this throws and
  // nothing of it is. All that can fail comes before the commit; behind it nothing fails any more.
  // An operation is not answered with success before.
  void Keep() { Keep(false); }
  // The same for what follows an operation that is stored, before it is answered.
  void Keep(bool behind);
  // Takes back all that has changed since Mark, here and in the file. Needs no memory.
  void TakeBack() noexcept;
  // A register in memory stores a document and its paper as it ends. This stores the open one, for
  // whoever copies the database. Throws RegisterError.
  void StoreOpen();
  // Before an orderly switching off.
  void NoteAnswered() noexcept;
  // From here on whoever works on the register is not the one whose answer is due: what is stored
  // and the switching off leave that as it is.
  void LeaveUnanswered() noexcept { unanswered_left_ = true; }
  // Puts another document in the place of the open one.
  void Replace(OpenDocument next) noexcept;

  // Read by other threads while an operation runs.
  std::atomic<ServiceState> service{ServiceState::kEnabled};
  Database database;
  Tables tables;
  RegisterStore store;
  Paper paper;
  OpenDocument document;
  // Why the last operation that could not be stored failed, and the same as an English sentence.
  RegisterFailure failure;
  std::string last_failure;

 private:
  void Make();

  mutable std::tm seen_ = {};
  // As all of it was at the mark.
  RegisterState kept_;
  ServiceState kept_service_ = ServiceState::kEnabled;
  DocumentNotes kept_notes_;
  // The document of the mark and its receipt, once another one has taken its place.
  std::optional<OpenDocument> replaced_;
  Paper::Extent kept_paper_;
  // What the database has of the open document, and of the paper.
  std::string kept_open_record_;
  bool kept_has_open_ = false;
  Paper::Extent stored_paper_;
  bool unanswered_left_ = false;
};

}  // namespace lorimat
