// Dates and times as options give them: in every form that this program, a register's paper or an
// answer shows them in.
#pragma once

#include <ctime>
#include <optional>
#include <string_view>

namespace lorimat::console {

struct GivenDate {
  std::tm time = {};      // 00:00 where no time was given
  bool has_time = false;  // of the day
};

// YYYY-MM-DD, DD/MM/YYYY or DDMMYYYY, and behind it the time of the day, which may be left out:
// HH:MM or HH:MM:SS behind a blank or a T, or HHMM and HHMMSS behind the eight digits. Nothing when
// the text has none of these forms, or when there is no such day or time.
std::optional<GivenDate> ParseDate(std::string_view text);

}  // namespace lorimat::console
