// A register's file at work for its tables: switched on, with the library and its words.
#pragma once

#include <functional>
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

// What a register's file holds. Throws Failure for a register that a start would change: one with
// an open document, or with faults that wait.
lorimat::RegisterStatus RequireQuietRegister(const std::string& file);

class TableSession {
 public:
  // Of a quiet register. `language` and `library` are the options of these names.
  TableSession(const std::string& register_file, const std::string& language,
               const std::string& library, Streams& streams);
  // Of a new register in memory.
  TableSession(const lorimat::RegisterSettings& settings, const std::string& language,
               const std::string& library, Streams& streams);

  // As it was before the start.
  const lorimat::RegisterStatus& status() const { return status_; }
  const Language& language() const { return *language_; }
  Library& library() { return *library_; }
  lorimat::VirtualRegister& device() { return client_->device(); }
  // Why the register could not be kept; empty when nothing failed.
  std::string last_failure() const { return client_->last_failure(); }

 private:
  // `switch_on` makes the client.
  void Start(const std::string& language, const std::string& library, Streams& streams,
             const std::function<void()>& switch_on);

  lorimat::RegisterStatus status_;
  std::optional<Language> language_;
  std::optional<RegisterClient> client_;  // outlives the library, which holds on to it
  std::optional<Library> library_;
};

}  // namespace lorimat::console
