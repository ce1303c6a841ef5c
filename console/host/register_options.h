// The option --register FILE, which all commands that work on a register share, and checks of
// options that more than one command makes.
#pragma once

#include <string>

#include "console/device/register_name.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace lorimat::console {

// Adds --register; without it the environment variable LORIMAT_REGISTER names the file.
CLI::Option* AddRegisterOption(CLI::App* command, std::string* file);

// Adds --language and --library, for commands that set the library to work.
void AddLanguageOptions(CLI::App* command, std::string* language, std::string* library);

// Adds --paper, which names the file of the paper's text, and its older name --output, which no
// help shows.
void AddPaperOption(CLI::App* command, std::string* file, const std::string& description);

// Lets no option of the command, and of those below it, take an empty text: an unset variable of a
// script must not pass for an option left out.
void RefuseEmptyTexts(CLI::App* command);

}  // namespace lorimat::console
