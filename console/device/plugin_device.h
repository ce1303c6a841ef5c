// A device from a file.
#pragma once

#include <memory>

#include "console/device/device.h"
#include "console/device/open_device.h"

namespace lorimat::console {

// Opens the plug-in of the file. Throws Failure with the cause.
std::unique_ptr<Device> OpenPlugin(const DeviceRequest& request, Streams& streams);

}  // namespace lorimat::console
