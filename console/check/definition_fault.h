// The library answers one number when it refuses a definition file, and no place. Its own reader,
// asked once more, tells the line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>

#include "console/message/finding.h"
#include "console/terminal/line_reader.h"
#include "pal/protocols/lorimat/front/definition_reader.h"

namespace lorimat::console {

struct DefinitionReport {
  std::optional<Finding> fault;  // at the line where the library stops reading
  int commands = 0;              // of the OPCOD section, up to there
};

// Throws Failure, with the file, when it is none that is read as a definition file: it is missing,
// a folder or a device, or "-".
void RequireDefinitionFile(const std::string& path);

// Throws Failure when the file cannot be read.
DefinitionReport InspectDefinition(const std::string& path);

// What stops the library's reading; nothing when it reads on.
std::optional<Finding> StoppingFault(const DefinitionNote& note);

// The line as the library has it in hand: cut to the characters that it takes.
std::string CutDefinitionLine(const SourceLine& line);

// The text without its comment and the blanks at its edges, up to the first NUL byte.
std::string CleanedDefinitionLine(const std::string& text);

}  // namespace lorimat::console
