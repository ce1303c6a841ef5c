// The file of --record: what passes between the library and its device (recording/recorder.h).
#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

#include "console/check/language.h"
#include "console/device/device.h"
#include "console/host/library.h"
#include "console/terminal/streams.h"
#include "recording/recorder.h"

namespace lorimat::console {

// What --record, --record-limit and --record-secrets say.
struct RecordOptions {
  std::string file;     // empty for none
  uint64_t limit = 64;  // mebibytes
  bool secrets = false;
};

// Records from its making on, ahead of Library::Init; nothing without a file. It has to outlive the
// library, and the device all calls.
class LineRecording {
 public:
  // Throws Failure when the file cannot be made.
  // Of secrets, the definition file's words tell where in a line they stand.
  LineRecording(const RecordOptions& options, Library& library, const Device& device,
                const std::string& definition_file, Streams& streams);
  // The same of a device that is called without the library.
  LineRecording(const RecordOptions& options, const Device& device, Streams& streams);
  ~LineRecording();
  LineRecording(const LineRecording&) = delete;
  LineRecording& operator=(const LineRecording&) = delete;

  // Null without a file.
  recording::Recorder* recorder() { return recorder_ ? &*recorder_ : nullptr; }

  // Writes its end, and tells what it does not have. Whether it has everything, or is at its limit;
  // the library is gone by then.
  bool Finish();

 private:
  class FileSink;

  void Begin(const Device& device, std::string library);

  const RecordOptions options_;
  Streams& streams_;
  std::optional<Language> words_;
  std::unique_ptr<FileSink> sink_;
  std::optional<recording::Recorder> recorder_;
  bool finished_ = false;
};

}  // namespace lorimat::console
