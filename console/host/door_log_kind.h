// What makes a file the log of jobs of lorimatd.
#pragma once

#include "register/storage/database.h"

namespace lorimat::console {

inline constexpr lorimat::DatabaseKind kDoorLogKind = {0x4C4D444C, 3};

}  // namespace lorimat::console
