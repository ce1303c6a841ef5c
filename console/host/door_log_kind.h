// What makes a file the log of jobs of lorimatd.
#pragma once

#include "register/storage/database.h"

namespace lorimat::console {

inline constexpr lorimat::DatabaseKind kDoorLogKind = {0x4C4D444C, 3};

// What tells a copy of a log from the log itself, whose jobs have gone on since.
inline constexpr lorimat::SqlText kMarkDoorLogCopied =
    "INSERT OR REPLACE INTO value (name, value) VALUES ('copied', 'yes')";

}  // namespace lorimat::console
