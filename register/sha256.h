// SHA-256 (FIPS 180-4): closes signed report files and checks firmware files.
#pragma once

#include <string>
#include <string_view>

namespace lorimat {

// The digest of the bytes as 64 hexadecimal digits, small letters.
std::string Sha256(std::string_view bytes);

}  // namespace lorimat
