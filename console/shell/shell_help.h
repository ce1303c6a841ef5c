// "?" in the shell: the commands of the definition file, and one command's fields.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "console/check/language.h"

namespace lorimat::console {

struct HelpText {
  bool found = false;  // else the text says so, in one line
  std::string text;
};

class ShellHelp {
 public:
  // The language has to outlive this object.
  explicit ShellHelp(const Language& language);

  // All commands by groups, in lines of at most so many columns; 0 gives each one line.
  std::string Overview(size_t columns) const;
  // The command that a word finds: its fields, what they take, and what the page on the language
  // says of it. A word that finds none gets a suggestion.
  HelpText Command(const std::string& word, size_t columns) const;

 private:
  std::string Page(const CommandWord& command, size_t columns) const;

  const Language& language_;
  std::vector<CommandWord> commands_;
};

}  // namespace lorimat::console
