// The options that name a device, which all commands share that set one to work: --device,
// --device-option, --device-timeout, and those that are short for options of the virtual register.
#pragma once

#include <string>
#include <vector>

#include "console/device/open_device.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct DeviceOptions {
  std::string device = std::string(kRegisterName);
  std::vector<std::string> options = {};  // "KEY=VALUE" each
  std::string register_file = {};         // --register: the register's option "file"
  std::string clock = {};                 // --clock: its option "clock"
  int timeout = static_cast<int>(kDeviceTimeout.count());  // seconds
};

// Adds --register too.
void AddDeviceOptions(CLI::App* command, DeviceOptions* options);
// Adds --device-option and --device-timeout alone, for a command that takes the device's file
// itself.
void AddPluginOptions(CLI::App* command, DeviceOptions* options);
void AddClockOption(CLI::App* command, DeviceOptions* options);

// What they ask for. Throws Failure for an option without a value, for one that is named in two
// ways, and for one of the register's that was given for another device. The environment variable
// LORIMAT_REGISTER counts for the register alone, where nothing else names its file.
DeviceRequest RequestOf(const DeviceOptions& options);

}  // namespace lorimat::console
