// Times as ISO 8601 has them, with their distance from UTC: "2026-11-22T18:03:07+01:00".
#pragma once

#include <cstdint>
#include <ctime>
#include <string>

namespace lorimat::door {

// A local time of this computer.
std::string IsoTime(std::tm local);
// Milliseconds since 1970, UTC, in local time.
std::string IsoTime(int64_t milliseconds);

}  // namespace lorimat::door
