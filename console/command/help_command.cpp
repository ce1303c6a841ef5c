// "lorimat help": the word that people type before they know the options.

#include <CLI/CLI.hpp>
#include <string>
#include <string_view>
#include <vector>

#include "console/command/help.h"
#include "console/command/subcommand.h"
#include "console/command/usage_error.h"
#include "console/message/failure.h"
#include "console/message/translate.h"
#include "console/terminal/pager.h"

namespace lorimat::console {
namespace {

struct HelpOptions {
  CLI::App* program = nullptr;
  std::vector<std::string> command;  // "run", or "journal" and "show"; empty is the program
};

constexpr std::string_view kHelpExamples = TR_TEXT(R"(Examples:
  lorimat help run
      What "lorimat run --help" shows.
  lorimat help journal show
      The same for a command below another.
  lorimat help
      What "lorimat --help" shows.

Exit codes:
  0  the help was shown
  2  wrong use, or there is no such command
)");

void AddOptions(CLI::App* help, HelpOptions* options) {
  options->program = help->get_parent();
  help->add_option("COMMAND", options->command, Tr("A command, such as run or journal show"));
}

// What "--help" of the command shows. Throws Failure when there is no such command.
int HelpCommand(const HelpOptions& options, Streams& streams) {
  CLI::App* command = options.program;
  std::string in_front;
  for (const std::string& name : options.command) {
    const std::vector<CLI::App*> found =
        command->get_subcommands([&](const CLI::App* one) { return one->get_name() == name; });
    if (found.empty()) throw Failure(NoSuchCommand(*command, name));
    in_front += (in_front.empty() ? "" : " ") + command->get_name();
    command = found.front();
  }
  // A program that has read its arguments shows the help of the command that they named.
  options.program->clear();
  ShowHelp(streams, command->help(in_front));
  return kExitGood;
}

}  // namespace

const Subcommand kHelpSubcommand = {"help", HelpGroup::kLookUpProgram,
                                    TR_TEXT("Show the help of the program or of a command"),
                                    kHelpExamples, &Prepare<HelpOptions, AddOptions, HelpCommand>};

}  // namespace lorimat::console
