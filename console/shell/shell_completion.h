// What the TAB key of the shell may put behind the cursor: names of commands, of a command's
// fields and of values from the definition file, names of files for "@" lines, and the shell's own
// words.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "console/check/language.h"

namespace lorimat::console {

struct Completion {
  struct Candidate {
    std::string text;   // what replaces the word, with its mark: "VEND ", "PRE=", "'my file'"
    std::string label;  // what a list shows: "VEND", "PRE=", "my file"
  };
  size_t begin = 0;  // of the word that is replaced, in bytes
  std::vector<Candidate> candidates;

  // How the texts begin, all of them; letters that differ only in their case count as the same.
  std::string common_beginning() const;
};

class ShellCompleter {
 public:
  // The language has to outlive this object. own_words are those of the shell, ".help" and
  // others, and fault_words what may stand behind ".fault".
  ShellCompleter(const Language& language, std::vector<std::string> own_words,
                 std::vector<std::string> fault_words);

  // Looks at what stands in front of the cursor (in bytes) alone.
  Completion Complete(std::string_view line, size_t cursor) const;

 private:
  Completion CompleteOwn(std::string_view text) const;
  Completion CompleteCommand(std::string_view text, size_t begin, bool with_mark) const;
  Completion CompleteField(std::string_view text, size_t fields) const;
  Completion CompleteValue(std::string_view text, size_t begin, int opcode) const;

  const Language& language_;
  std::vector<CommandWord> commands_;
  std::vector<std::string> symbols_;
  std::vector<std::string> own_words_;
  std::vector<std::string> fault_words_;
};

// The names of files that begin like the path at `begin`, up to the end of the text. `plain` takes
// names as they are; otherwise they are put as operands of an "@" line, quoted where that is
// needed, and those with capital letters, which such a line cannot name, are left out.
Completion CompleteFile(std::string_view text, size_t begin, bool plain);

}  // namespace lorimat::console
