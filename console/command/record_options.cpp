#include "console/command/record_options.h"

#include <CLI/CLI.hpp>
#include <vector>

#include "console/command/usage_error.h"
#include "console/message/failure.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

constexpr uint64_t kMostMebibytes = 1024;

}  // namespace

void AddRecordOptions(CLI::App* command, RecordOptions* options) {
  CLI::Option* record =
      command
          ->add_option("--record", options->file,
                       Tr("Record lines, calls of the device and answers in FILE"))
          ->type_name("FILE");
  command
      ->add_option("--record-limit", options->limit,
                   Tr("End the recording at so many MiB (default: 64)"))
      ->type_name("N")
      ->check(WholeNumberIn(1, kMostMebibytes))
      ->needs(record);
  command
      ->add_flag("--record-secrets", options->secrets,
                 Tr("Leave passwords, fiscal and lottery codes and customers' names in the "
                    "recording as they are"))
      ->needs(record);
}

OutputName RecordingName(const RecordOptions& options) {
  if (options.file == "-") throw Failure(Tr("--record -: a recording needs a file"));
  return {options.file, "--record", Tr("the recording"), false, true};
}

void RequireApartFromWork(const RecordOptions& options, std::vector<KeptFile> of_device,
                          const std::string& definition_file, const std::string& library_file) {
  of_device.push_back({definition_file, TR_TEXT("the definition file")});
  of_device.push_back({library_file, TR_TEXT("the library")});
  RequireApart({RecordingName(options)}, of_device);
}

}  // namespace lorimat::console
