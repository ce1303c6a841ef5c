// A device at work for its tables: opened, with the library and its words.
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "console/check/language.h"
#include "console/command/backup/backup_tables.h"
#include "console/command/backup/table_refusals.h"
#include "console/device/device.h"
#include "console/device/open_device.h"
#include "console/host/library.h"
#include "console/host/line_recording.h"
#include "console/terminal/streams.h"

namespace lorimat::console {

class TableSession {
 public:
  using DeviceOpener = std::function<std::unique_ptr<Device>()>;

  // Of a quiet device. `language`, `library` and `record` are the options of these
  // names.
  TableSession(DeviceRequest request, const std::string& language, const std::string& library,
               Streams& streams, const RecordOptions& record);
  // Of one that is opened when the library is there.
  TableSession(const DeviceOpener& open, const std::string& language, const std::string& library,
               Streams& streams, const RecordOptions& record = {});

  // As they were at the start.
  const DeviceFacts& facts() const { return facts_; }
  const Language& language() const { return *language_; }
  Library& library() { return *library_; }
  Device& device() { return *device_; }

  // A table as the library dumps it, and its rows; `path` names the file that it is for. Throws
  // Failure when that is not whole, and says so of a table that the device does not have.
  struct Dump {
    std::string text;
    std::vector<DumpRow> rows;
  };
  Dump ReadTable(const BackupTable& table, const std::string& path);

 private:
  DeviceFacts facts_;
  std::optional<Language> language_;
  TableRefusals* refusals_ = nullptr;       // of the device, which keeps it
  std::unique_ptr<Device> device_;          // outlives the library, which holds on to it
  std::optional<LineRecording> recording_;  // so does it, and tells at its end what it lacks
  std::optional<Library> library_;
};

}  // namespace lorimat::console
