// The one door to devices: by its name one that is built in, by its file a plug-in
// (include/lorimatrt/device.h).
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console/check/kept_files.h"
#include "console/device/device.h"
#include "console/terminal/streams.h"

namespace lorimat::console {

inline constexpr std::string_view kRegisterName = "register";
inline constexpr std::string_view kReplayName = "replay";
inline constexpr std::chrono::seconds kDeviceTimeout{120};

// What is asked for on the command line.
struct DeviceRequest {
  // A name of the list of built-in devices, behind it perhaps ':' and a file, which is its option
  // "file"; or the file of a plug-in. A file in this folder that bears such a name is "./register".
  std::string device = std::string(kRegisterName);
  std::vector<std::pair<std::string, std::string>> options = {};  // in the order they were given
  // How long a plug-in may take for a call.
  std::chrono::seconds timeout = kDeviceTimeout;
  // A plug-in that a trial in a process of its own has loaded once: it is opened without another.
  bool was_tried = false;
  // For its tables alone: a device with an open document, or with faults that wait, is refused, and
  // what a host has to be told at its start waits for that host.
  bool for_tables = false;
  // Told ahead of each call of a plug-in, by the thread that waits for it; may be null.
  std::function<void()> at_call = nullptr;

  // The last one of this key; empty when it was not given.
  std::string Option(std::string_view key) const;
};

// The built-in device of a row; what OpenDevice hands to it has its options taken apart.
struct BuiltInDevice {
  std::string_view name;
  // Throws Failure, lorimat::RegisterError or what stands behind; then nothing is open.
  std::unique_ptr<Device> (*open)(const DeviceRequest& request, Streams& streams);
  // The files that nothing may write over while it is at work.
  std::vector<KeptFile> (*files)(const DeviceRequest& request);
  // Throws Failure, with a hint, when it is not there; null for one that opens in any case.
  void (*require)(const DeviceRequest& request);
};

// The row of the name that the request has; null for the file of a plug-in.
const BuiltInDevice* FindBuiltInDevice(const DeviceRequest& request);

// Throws Failure, with a hint, when the device is not there: for commands that make none.
void RequireDevice(const DeviceRequest& request);

// The file of the register that is asked for, in whichever way; empty for one in memory.
std::string FileOfRegister(const DeviceRequest& request);

// Opens it. Tells on standard error what there is to be told at its start. Throws Failure with the
// cause, DeviceAway where that may pass.
std::unique_ptr<Device> OpenDevice(const DeviceRequest& request, Streams& streams);

// The files that nothing may write over while the device is at work, whether they are there or not.
std::vector<KeptFile> FilesOfDevice(const DeviceRequest& request);

}  // namespace lorimat::console
