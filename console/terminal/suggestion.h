// "Did you mean ...": the word that is nearest to a misspelt one.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace lorimat::console {

// The candidate with the fewest slips (a character too many, missing, wrong, or two swapped),
// case not counting; empty when none is near. Of several the first.
std::string NearestWord(std::string_view word, const std::vector<std::string>& candidates);

}  // namespace lorimat::console
