// The digest that shows a change: of reports, of firmware, of the journal's entries.
#pragma once

#include <string>
#include <string_view>

namespace lorimat {

// The SHA-256 digest (FIPS 180-4) as 64 hexadecimal digits, small letters.
std::string Sha256(std::string_view bytes);

}  // namespace lorimat
