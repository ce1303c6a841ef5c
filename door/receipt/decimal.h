// Numbers that clients write as texts with a point, so that nothing makes them binary fractions on
// the way.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace lorimat::door {

// "3.90", with 4 places, is 39000. Nothing but digits and at most one point between digits: no
// sign, no exponent, no blank. At most `whole` digits ahead of the point and `decimals` behind it;
// `decimals` are `places` at most. Nothing for other texts.
std::optional<int64_t> ReadDecimal(std::string_view text, int places, int decimals, int whole);

// 39000 with 4 places is "3.90" with 2 decimals at least: more of them where they are needed.
std::string DecimalText(int64_t value, int places, int least);

// An amount in ten-thousandths: "2.00".
std::string MoneyText(int64_t amount);

}  // namespace lorimat::door
