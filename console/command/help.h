// The help of the command line, and what is wrong with one, in the user's language.
#pragma once

#include <string>

#include "console/command/subcommand.h"

namespace CLI {
class App;
class Error;
class Option;
}  // namespace CLI

namespace lorimat::console {

// What stands above the subcommands of a group.
std::string HelpHeading(HelpGroup group);

// What stands for a value, such as "FILE", and the name of an option or of an argument, as the help
// has them.
std::string ShownValue(const std::string& value);
std::string ShownName(const CLI::Option& option);

// Gives the headings and marks of all help texts their words. Called when all options and
// subcommands are there.
void TranslateHelp(CLI::App& app);

}  // namespace lorimat::console
