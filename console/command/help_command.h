// "lorimat help" and "lorimat version": the words that people type before they know the options.
#pragma once

#include <string>
#include <vector>

#include "console/terminal/streams.h"

namespace CLI {
class App;
}

namespace lorimat::console {

struct HelpOptions {
  std::vector<std::string> command;  // "run", or "journal" and "show"; empty is the program
};

void add_help(CLI::App& app, HelpOptions* options);
void add_version(CLI::App& app);

// What "--help" of the command shows. Returns one of ExitCode. Throws Failure when there is no such
// command.
int help_command(const HelpOptions& options, CLI::App& app, Streams& streams);
int version_command(Streams& streams);

}  // namespace lorimat::console
