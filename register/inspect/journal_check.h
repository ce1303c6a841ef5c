// The check of a register's journal against its documents, closings and totals.
#pragma once

#include <functional>
#include <optional>

#include "register/inspect/journal_verdict.h"
#include "register/storage/database.h"
#include "register/storage/store.h"
#include "register/storage/store_tables.h"

namespace lorimat {

// `open` is the document that was cut off, if there is one. As RegisterFile::VerifyJournal.
JournalCheck CheckJournal(Database& database, const RegisterStore& store,
                          const std::optional<StoredOpenDocument>& open,
                          const std::function<bool(uint64_t done, uint64_t all)>& progress);

}  // namespace lorimat
