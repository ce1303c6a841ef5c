#include "console/host/device_options.h"

#include <CLI/CLI.hpp>
#include <cstdlib>

#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

constexpr int kLongestTimeout = 24 * 60 * 60;
constexpr size_t kShownOption = 60;

// An option of the command line that is short for one of the register's.
struct ShortOption {
  const char* option;
  const char* key;
  const std::string DeviceOptions::*value;
  const char* variable;  // of the environment; null for none
};

constexpr ShortOption kShortOptions[] = {
    {"--register", "file", &DeviceOptions::register_file, "LORIMAT_REGISTER"},
    {"--clock", "clock", &DeviceOptions::clock, nullptr},
};

// Whether the value is there because a variable has it.
bool ComesFromVariable(const ShortOption& option, const std::string& value) {
  const char* set = option.variable != nullptr ? std::getenv(option.variable) : nullptr;
  return set != nullptr && value == set;
}

void TakeShortOption(const ShortOption& row, const std::string& value, DeviceRequest* request) {
  if (value.empty()) return;
  const bool given = !ComesFromVariable(row, value);
  if (request->device.substr(0, request->device.find(':')) != kRegisterName) {
    if (!given) return;
    throw Failure(Tr("{}: the device '{}' has no such option; it is one of the device '{}'",
                     row.option, Shown(request->device, kShownOption), kRegisterName));
  }
  const bool in_name = std::string_view(row.key) == "file" && request->device != kRegisterName;
  if (in_name || !request->Option(row.key).empty()) {
    if (!given) return;
    throw Failure(
        Tr("{}: the same is said by --device or --device-option {}=", row.option, row.key));
  }
  request->options.emplace_back(row.key, value);
}

}  // namespace

void AddPluginOptions(CLI::App* command, DeviceOptions* options) {
  command
      ->add_option("--device-option", options->options,
                   Tr("What the device is told when it is opened; may be given several times"))
      ->type_name("KEY=VALUE")
      ->expected(1)
      ->take_all();
  command
      ->add_option("--device-timeout", options->timeout,
                   Tr("How many seconds a device from a file may take for a call (default: 120)"))
      ->type_name("SECONDS")
      ->check(CLI::Range(1, kLongestTimeout));
}

void AddDeviceOptions(CLI::App* command, DeviceOptions* options) {
  command
      ->add_option("--device", options->device,
                   Tr("The device: its name, or the file of its plug-in (default: register, the "
                      "virtual one)"))
      ->type_name("DEVICE");
  AddPluginOptions(command, options);
  AddRegisterOption(command, &options->register_file);
}

void AddClockOption(CLI::App* command, DeviceOptions* options) {
  command->add_option("--clock", options->clock, Tr("Set the register's clock"))
      ->type_name("\"YYYY-MM-DD HH:MM\"");
}

DeviceRequest RequestOf(const DeviceOptions& options) {
  DeviceRequest request;
  request.device = options.device;
  request.timeout = std::chrono::seconds(options.timeout);
  for (const std::string& option : options.options) {
    const size_t equals = option.find('=');
    if (equals == option.npos || equals == 0) {
      throw Failure(Tr("--device-option {}: has to be KEY=VALUE", Shown(option, kShownOption)));
    }
    request.options.emplace_back(option.substr(0, equals), option.substr(equals + 1));
  }
  for (const ShortOption& row : kShortOptions) TakeShortOption(row, options.*row.value, &request);
  return request;
}

}  // namespace lorimat::console
