// The options --record, --record-limit and --record-secrets, which all commands share that set the
// library to work.
#pragma once

#include <string>
#include <vector>

#include "console/command/output_names.h"
#include "console/host/line_recording.h"

namespace CLI {
class App;
}  // namespace CLI

namespace lorimat::console {

void AddRecordOptions(CLI::App* command, RecordOptions* options);

// The recording among the outputs of a command. Throws Failure for "-", which is no file here.
OutputName RecordingName(const RecordOptions& options);

// For a command without other outputs: throws Failure when the recording is a file that the command
// works with.
void RequireApartFromWork(const RecordOptions& options, std::vector<KeptFile> of_device,
                          const std::string& definition_file, const std::string& library_file);

}  // namespace lorimat::console
