// What a line was answered, in words.
#pragma once

#include <cstddef>
#include <optional>
#include <string>

#include "finding.h"
#include "language.h"

// The causes of a code as "lorimat explain" has them, each in lines of at most so many columns.
std::string causes_text(long code, size_t columns);

// Where the parser stops in a line that it refuses, with what is wrong there; none for a line that
// it reads. No command runs.
std::optional<Finding> parser_finding(const Language& language, const std::string& line);

// The same in words, with the place marked in the line and a better word; empty for a line that it
// reads.
std::string parser_hint(const Language& language, const std::string& line, size_t columns);
