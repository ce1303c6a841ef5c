// The help of the command line, and what is wrong with one, in the user's language.
#pragma once

#include <string>

#include "console/command/subcommand.h"

namespace CLI {
class App;
class Error;
}  // namespace CLI

namespace lorimat::console {

// What stands above the subcommands of a group.
std::string HelpHeading(HelpGroup group);

// Gives the headings and marks of all help texts their words. Called when all options and
// subcommands are there.
void TranslateHelp(CLI::App& app);

// That the program, or a command with others below it, has none of this name; with one that is
// spelt like it.
std::string NoSuchCommand(const CLI::App& app, const std::string& name);

// The same where the command line names a command, and it is none of the program's; else empty.
std::string UnknownCommand(const CLI::App& app);

// What is wrong with the command line that app has refused, in one line without its end.
std::string UsageError(const CLI::App& app, const CLI::Error& error);

}  // namespace lorimat::console
