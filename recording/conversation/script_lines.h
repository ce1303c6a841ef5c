// The lines of a conversation file with its tables written out: every %repeat once for each row,
// every %use as the part that it names. HACKING.md tells how they are written.
#pragma once

#include <string>
#include <vector>

namespace conversation {

struct ScriptLine {
  std::string text;
  // In the conversation's own file: of the table's row, or else of the %use, that made the line;
  // where it stands, when nothing did.
  int line = 0;
  // Where the line is written and with which values, for a line that a table or a part made.
  std::string made_by;
};

// Throws Failure, with the line of the conversation's own file and the cause.
std::vector<ScriptLine> ReadScriptLines(const std::string& path);
// The same of a text that was read already; the path tells the folder of its parts.
std::vector<ScriptLine> ReadScriptLines(const std::string& path, const std::string& text);

}  // namespace conversation
