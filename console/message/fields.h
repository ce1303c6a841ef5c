// The fields of the texts that {fmt} fills: "{}", "{1}", "{:04}", "{entry}".
#pragma once

#include <string_view>

namespace lorimat::console {

// Whether a translation has the fields of its original, each as often and written alike, in any
// order: "{1:x} of {0}" for "{}: {:x}". What {fmt} fills one with, it then fills the other with.
// A brace that opens or closes no field, and a field within a field, fit nothing.
bool HasSameFields(std::string_view original, std::string_view translation);

}  // namespace lorimat::console
