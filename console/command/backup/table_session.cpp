#include "console/command/backup/table_session.h"

#include "console/host/installed_files.h"
#include "console/host/library_start.h"

namespace lorimat::console {

TableSession::TableSession(const DeviceOpener& open, const std::string& language,
                           const std::string& library, Streams& streams,
                           const RecordOptions& record) {
  const std::string library_file = FindLibrary(library);
  const std::string words = DefinitionPath(language);
  language_.emplace(words);
  streams.StartTrace("");
  library_.emplace(library_file, streams);
  device_ = open();
  facts_ = device_->facts();
  recording_.emplace(record, *library_, *device_, words, streams);
  StartLibrary(language, false, *library_, *device_, streams);
}

TableSession::TableSession(DeviceRequest request, const std::string& language,
                           const std::string& library, Streams& streams,
                           const RecordOptions& record)
    : TableSession(
          [&] {
            request.for_tables = true;
            return OpenDevice(request, streams);
          },
          language, library, streams, record) {}

}  // namespace lorimat::console
