// The library answers one number when it refuses a definition file, and no place. This reads the
// file once more, by the same rules, and finds the line.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace lorimat::console {

struct DefinitionReport {
  uint64_t fault_line = 0;  // the line at which the library stops reading; 0 when there is none
  std::string fault;        // what is wrong with it
  int commands = 0;         // entries of the OPCOD section up to there
};

// Throws Failure when the file cannot be read.
DefinitionReport InspectDefinition(const std::string& path);

// The pieces of that reading, for whoever looks at more than the first fault.

// The library cuts a line of the file there.
constexpr size_t kDefinitionLineLimit = 254;

// The text without its comment and the blanks at its edges, up to the first NUL byte.
std::string CleanedDefinitionLine(const std::string& text);
// The section that a header line names.
std::string SectionName(const std::string& line);
// What stops the library at an entry of a section; empty when it reads on.
std::string StoppingFault(const std::string& section, const std::string& line);

}  // namespace lorimat::console
