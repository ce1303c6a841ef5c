// What a line was answered, in words.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

#include "console/check/finding.h"
#include "console/check/language.h"

namespace lorimat::console {

// The class and the causes of a code as "lorimat explain" has them, a sentence or two each.
std::vector<std::string> Causes(long code);

// The same in lines of at most so many columns.
std::string CausesText(long code, size_t columns);

// Where the parser stops in a line that it refuses, with what is wrong there; none for a line that
// it reads. No command runs.
std::optional<Finding> ParserFinding(const Language& language, const std::string& line);

// The same, if it is what the line is refused for with this code, and not another thing that is
// wrong in it.
std::optional<Finding> ParserFinding(const Language& language, const std::string& line, long code);

// The first of these in words, with the place marked in the line and a better word; empty for a
// line that it reads.
std::string ParserHint(const Language& language, const std::string& line, size_t columns);

}  // namespace lorimat::console
