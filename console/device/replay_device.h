// A device that answers as a recording does.
#pragma once

#include <memory>
#include <vector>

#include "console/device/device.h"
#include "console/device/open_device.h"

namespace lorimat::console {

// Options: "file", the recording or a conversation; "order", strict (as it is without it) or
// lenient; "damaged", refused or taken, of a recording that is cut off or was edited. Throws
// Failure with what is wrong with the recording.
std::unique_ptr<Device> OpenReplay(const DeviceRequest& request, Streams& streams);
std::vector<KeptFile> FilesOfReplay(const DeviceRequest& request);

}  // namespace lorimat::console
