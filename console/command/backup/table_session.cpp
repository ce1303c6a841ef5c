#include "console/command/backup/table_session.h"

#include "console/host/installed_files.h"
#include "console/host/library_start.h"

namespace lorimat::console {

TableSession::TableSession(const DeviceOpener& open, const std::string& language,
                           const std::string& library, Streams& streams) {
  const std::string library_file = FindLibrary(library);
  language_.emplace(DefinitionPath(language));
  streams.StartTrace("");
  library_.emplace(library_file, streams);
  device_ = open();
  facts_ = device_->facts();
  StartLibrary(language, false, *library_, *device_, streams);
}

TableSession::TableSession(DeviceRequest request, const std::string& language,
                           const std::string& library, Streams& streams)
    : TableSession(
          [&] {
            request.for_tables = true;
            return OpenDevice(request, streams);
          },
          language, library, streams) {}

}  // namespace lorimat::console
