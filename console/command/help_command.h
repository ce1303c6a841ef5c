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

void AddHelp(CLI::App& app, HelpOptions* options);
void AddVersion(CLI::App& app);

// What "--help" of the command shows. Returns one of ExitCode. Throws Failure when there is no such
// command.
int HelpCommand(const HelpOptions& options, CLI::App& app, Streams& streams);
int VersionCommand(Streams& streams);

}  // namespace lorimat::console
