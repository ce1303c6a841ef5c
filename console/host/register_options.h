// The option --register FILE, which all commands that work on a register share, and checks of
// options that more than one command makes.
#pragma once

#include <string>

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

// Throws Failure when the text cannot name a register's file, be it there or not: "-", a name in a
// folder that is not there, a folder's ("shop.register/"), and one that leads through another
// user's link in a folder where everybody writes. The database would read some of them as another
// name.
void RequireRegisterName(const std::string& file);
// The part of it that asks no disk: "-" is no file here, neither a register nor a copy of one.
void RequireNoStream(const std::string& file);

// The file that was named. Throws Failure, with a hint, when none was, or when nothing is there:
// these commands make no register. The hint for one that is to be set up is "init".
const std::string& RequireRegister(const std::string& file, bool set_up = false);

// Lets no option of the command, and of those below it, take an empty text: an unset variable of a
// script must not pass for an option left out.
void RefuseEmptyTexts(CLI::App* command);

}  // namespace lorimat::console
