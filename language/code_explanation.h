// What a result code means, in sentences: its class and what causes it.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace language {

// Gives a message in the reader's language, with the fields of the English, "{}" or "{1}"; what it
// answers is used at once.
using Translation = std::string_view (*)(std::string_view english);

// The class of a code above 0, then each way in which it comes about, the likelier one first: a
// sentence or two each. Empty for a number that is no result code.
std::vector<std::string> ExplainCode(long code, Translation translated);

}  // namespace language
