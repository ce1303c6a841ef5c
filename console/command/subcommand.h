// A subcommand of the program is a row, which stands in the file of its name: "lorimat copy" in
// copy_command.cpp. subcommands.inc lists the rows.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "console/terminal/streams.h"

namespace CLI {
class App;
}

namespace lorimat::console {

// What a subcommand is for: the program's help lists them under headings.
enum class HelpGroup {
  kSetUpRegister,
  kRunLines,
  kLookIntoLines,
  kLookAtRegister,
  kLookAfterRegister,
  kUseDoor,
  kLookUpProgram,
};

// Runs a subcommand whose options have been read. Returns one of ExitCode. Throws Failure or
// RegisterError when it could not be done.
using SubcommandRun = std::function<int(Streams&)>;

struct Subcommand {
  std::string_view name;
  HelpGroup group;
  std::string_view purpose;   // in English, marked with TR_TEXT; so is the next
  std::string_view examples;  // the end of its help, with the exit codes
  // Gives the command its options; what comes back runs it with them.
  SubcommandRun (*prepare)(CLI::App* command);
};

// The last member of a row, made from the struct of the options and from two functions: one adds
// them to the command, the other runs it.
template <typename Options, void (*add_options)(CLI::App*, Options*),
          int (*run)(const Options&, Streams&)>
SubcommandRun Prepare(CLI::App* command) {
  const auto options = std::make_shared<Options>();
  add_options(command, options.get());
  return [options](Streams& streams) { return run(*options, streams); };
}

#define SUBCOMMAND(Name) extern const Subcommand k##Name##Subcommand;
#include "console/command/subcommands.inc"

}  // namespace lorimat::console
