// A register's file at work for its tables: switched on, with the library and its words.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "console/check/language.h"
#include "console/command/backup/backup_tables.h"
#include "console/host/library.h"
#include "console/host/register_client.h"
#include "console/terminal/streams.h"
#include "register/inspect/register_file.h"

namespace lorimat::console {

class TableSession {
 public:
  // Refuses, by Failure, a register that the start would change: one with an open document, or
  // with faults that wait. `language` and `library` are the options of these names.
  TableSession(const std::string& register_file, const std::string& language,
               const std::string& library, Streams& streams);

  // As it was before the start.
  const lorimat::RegisterStatus& status() const { return status_; }
  const Language& language() const { return *language_; }
  Library& library() { return *library_; }
  // Why the register could not be kept; empty when nothing failed.
  std::string last_failure() const { return client_->last_failure(); }

 private:
  lorimat::RegisterStatus status_;
  std::optional<Language> language_;
  std::optional<RegisterClient> client_;  // outlives the library, which holds on to it
  std::optional<Library> library_;
};

}  // namespace lorimat::console
