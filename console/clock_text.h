// Times as options give them.
#pragma once

#include <ctime>
#include <optional>
#include <string_view>

// "YYYY-MM-DD HH:MM"; nothing when it is no such time of the calendar.
std::optional<std::tm> parse_clock(std::string_view text);
