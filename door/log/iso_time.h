// Times as ISO 8601 has them, with their distance from UTC: "2026-11-22T18:03:07+01:00".
#pragma once

#include <cstdint>
#include <ctime>
#include <optional>
#include <string>
#include <string_view>

namespace lorimat::door {

// A local time of this computer.
std::string IsoTime(std::tm local);
// Milliseconds since 1970, UTC, in local time.
std::string IsoTime(int64_t milliseconds);

// A local time as a number that reads as YYYYMMDDHHMMSS, of "2026-11-22", the day's first second or
// its last one, or "2026-11-22T18:03", with seconds and a distance from UTC ("Z", "+01:00") or
// without. Nothing for other texts and days that are none, and before 1970.
std::optional<int64_t> ReadIsoTime(std::string_view text, bool to_end);

}  // namespace lorimat::door
