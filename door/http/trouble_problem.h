// What keeps a new job from being taken, as clients are told of it.
#pragma once

#include <optional>
#include <string_view>

#include "door/http/api.h"
#include "door/job/worker.h"

namespace lorimat::door {

// "document_open"; empty for a device that is ready.
std::string_view TroubleCode(DeviceTrouble trouble);
// Nothing for a device that is ready.
std::optional<Reply> TroubleProblem(DeviceTrouble trouble);
// The log cannot be written or read.
inline constexpr std::string_view kDiskFull = "disk_full";
Reply StorageProblem();

}  // namespace lorimat::door
