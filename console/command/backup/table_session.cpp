#include "console/command/backup/table_session.h"

#include <utility>

#include "console/host/installed_files.h"
#include "console/host/library_start.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "register/client/virtual_register.h"
#include "register/storage/database.h"
#include "register/storage/schema.h"

namespace lorimat::console {

lorimat::RegisterStatus RequireQuietRegister(const std::string& file) {
  lorimat::RegisterStatus status = lorimat::RegisterFile(RequireRegister(file)).Status();
  if (status.open_document) {
    // Who sells on it, or may not write it, has no use for that advice.
    const lorimat::Database probe(file, lorimat::Database::Open::kChange, lorimat::kRegisterKind);
    throw Failure(Tr("{}: holds {}. End it first, by a run on this register", Shown(file),
                     OpenDocumentText(*status.open_document)));
  }
  if (!status.faults.faults().empty()) {
    throw Failure(
        Tr("{}: faults wait in it, which would strike now; \"lorimat fault --clear\" takes them "
           "away",
           Shown(file)));
  }
  return status;
}

TableSession::TableSession(const std::string& register_file, const std::string& language,
                           const std::string& library, Streams& streams)
    : status_(RequireQuietRegister(register_file)) {
  Start(language, library, streams, [&] {
    client_.emplace("", register_file, streams);
    // The host has to be told at its own start.
    client_->device().LeaveUnanswered();
  });
}

TableSession::TableSession(const lorimat::RegisterSettings& settings, const std::string& language,
                           const std::string& library, Streams& streams) {
  Start(language, library, streams, [&] { client_.emplace(settings, streams); });
}

void TableSession::Start(const std::string& language, const std::string& library, Streams& streams,
                         const std::function<void()>& switch_on) {
  const std::string library_file = FindLibrary(library);
  language_.emplace(DefinitionPath(language));
  streams.StartTrace("");
  library_.emplace(library_file, streams);
  switch_on();
  StartLibrary(language, false, *library_, *client_, streams);
}

}  // namespace lorimat::console
