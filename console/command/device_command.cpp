// "lorimat device": what the file of a device is.

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <CLI/CLI.hpp>
#include <string>
#include <utility>
#include <vector>

#include "console/command/subcommand.h"
#include "console/device/plugin_file.h"
#include "console/host/device_options.h"
#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

struct DeviceCommandOptions {
  DeviceOptions device;
  bool json = false;
};

constexpr std::string_view kDeviceExamples = TR_TEXT(R"(Examples:
  lorimat device ./libprinter.so
      What the device calls itself, what it can do, and whether it can be opened.
  lorimat device ./libprinter.so --device-option port=/dev/ttyS0 --json
      With an option that it needs, for a program.

The file is loaded in a process of its own, where the device is opened, asked for its state and
closed again: a file that is damaged, or whose code fails, ends that process alone. Each command
with --device does the same ahead of its work.

Exit codes:
  0  it is a device, and was opened
  1  it is a device, and cannot be opened now: the cause is shown
  2  wrong use, or it is no device, or fails when it is opened or closed
)");

std::string KindText(uint32_t kind) {
  if (kind == LORIMAT_DEVICE_C) return Tr("functions of C");
  return kind == LORIMAT_DEVICE_CPP ? Tr("an object of C++") : std::to_string(kind);
}

std::string AsText(const std::string& file, const PluginFacts& facts, const std::string& refusal) {
  const std::vector<std::string> can = AbilityTexts(facts.can);
  std::vector<std::pair<std::string, std::string>> rows = {{Tr("File"), Shown(file)}};
  const auto add = [&rows](std::string name, std::string value) {
    if (!value.empty()) rows.emplace_back(std::move(name), std::move(value));
  };
  add(Tr("Device"), Shown(facts.name));
  add(Tr("Version"), Shown(facts.version));
  add(Tr("Contract"), std::to_string(facts.abi));
  if (facts.is_open()) {
    add(Tr("Client"), KindText(facts.kind));
    add(Tr("Can"), can.empty() ? Tr("nothing more than sell and report")
                               : fmt::format("{}", fmt::join(can, ", ")));
  }
  add(Tr("Opens"), refusal.empty() ? Tr("yes") : Tr("no"));
  return PairedRows(rows) + (refusal.empty() ? "" : refusal + "\n");
}

Json KindJson(uint32_t kind) {
  if (kind == LORIMAT_DEVICE_C) return "c";
  return kind == LORIMAT_DEVICE_CPP ? Json("c++") : Json();
}

Json AsJson(const std::string& file, const PluginFacts& facts, const std::string& refusal) {
  return {{"file", file},
          {"name", facts.name},
          {"version", facts.version},
          {"abi", facts.abi},
          {"kind", KindJson(facts.kind)},
          {"can", AbilityNames(facts.can)},
          {"opens", refusal.empty()},
          {"cause", refusal.empty() ? Json() : Json(refusal)}};
}

void AddOptions(CLI::App* device, DeviceCommandOptions* options) {
  device->add_option("FILE", options->device.device, Tr("The file of the device"))->required();
  AddPluginOptions(device, &options->device);
  device->add_flag("--json", options->json, Tr("Write JSON"));
}

// Returns one of ExitCode. Throws Failure when it is no device.
int DeviceCommand(const DeviceCommandOptions& options, Streams& streams) {
  DeviceRequest request = RequestOf(options.device);
  // A file, whatever its name is.
  request.device = LoadPath(request.device);
  const std::string& file = options.device.device;
  const PluginTrial trial = TryPlugin(request);
  if (trial.failure) throw Failure(LoadFailureText(file, trial.failure, LoadedFile::kDevice));
  const EnglishMessages english(options.json);
  const std::string refusal = RefusalOf(file, trial.facts);
  streams.Output(options.json ? JsonText(AsJson(file, trial.facts, refusal))
                              : AsText(file, trial.facts, refusal));
  return refusal.empty() ? kExitGood : kExitFaults;
}

}  // namespace

const Subcommand kDeviceSubcommand = {"device", HelpGroup::kLookUpProgram,
                                      TR_TEXT("Tell what the file of a device is"), kDeviceExamples,
                                      &Prepare<DeviceCommandOptions, AddOptions, DeviceCommand>};

}  // namespace lorimat::console
