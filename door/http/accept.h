// Which form of an answer a request wants (RFC 9110, Accept).
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lorimat::door {

// The best of the types that there are, "text/plain", by the quality that the header gives them; of
// equal ones the first, which is that of an empty header too. Empty where none is wanted. A part of
// the header that cannot be read counts for nothing.
std::string_view ChooseType(std::string_view accept, const std::vector<std::string_view>& types);

}  // namespace lorimat::door
