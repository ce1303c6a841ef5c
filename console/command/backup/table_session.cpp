#include "console/command/backup/table_session.h"

#include <utility>

#include "console/host/library_start.h"
#include "console/host/places.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/register_text.h"
#include "console/message/text.h"
#include "console/message/translate.h"

namespace lorimat::console {

TableSession::TableSession(const std::string& register_file, const std::string& language,
                           const std::string& library, Streams& streams)
    : status_(lorimat::RegisterFile(require_register(register_file)).Status()) {
  if (status_.open_document) {
    throw Failure(tr("{}: holds {}. End it first, by a run on this register", shown(register_file),
                     open_document_text(*status_.open_document)));
  }
  if (!status_.faults.faults().empty()) {
    throw Failure(
        tr("{}: faults wait in it, which would strike now; \"lorimat fault --clear\" takes them "
           "away",
           shown(register_file)));
  }
  const std::string library_file = find_library(library);
  language_.emplace(definition_path(language));
  streams.start_trace("");
  library_.emplace(library_file, streams);
  client_.emplace("", register_file, streams);
  start_library(language, false, *library_, *client_, streams);
}

}  // namespace lorimat::console
