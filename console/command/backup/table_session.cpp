#include "console/command/backup/table_session.h"

#include "console/host/installed_files.h"
#include "console/host/library_start.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"

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
  device_->Wrap([this](RtfClientInterface& inner) {
    auto refusals = std::make_unique<TableRefusals>(inner);
    refusals_ = refusals.get();
    return refusals;
  });
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

TableSession::Dump TableSession::ReadTable(const BackupTable& table, const std::string& path) {
  const auto lacks = [&] {
    return Failure(Tr("the {} cannot be read: the device '{}' does not have {}",
                      Translated(table.text), Shown(device_->name()), Shown(refusals_->first())));
  };
  refusals_->Begin();
  Dump dump = {.text = DumpTable(table, path, *library_), .rows = {}};
  if (!refusals_->unanswered().empty()) {
    throw Failure(Tr("the {} cannot be read: the device '{}' answered {} to {}",
                     Translated(table.text), Shown(device_->name()), refusals_->unanswered_result(),
                     Shown(refusals_->unanswered())));
  }
  if (refusals_->lacks_all()) throw lacks();
  try {
    dump.rows = DumpRows(table, path, dump.text, *language_);
  } catch (const Failure&) {
    // The library leaves out what the device refuses.
    if (!refusals_->first().empty()) throw lacks();
    throw;
  }
  return dump;
}

}  // namespace lorimat::console
