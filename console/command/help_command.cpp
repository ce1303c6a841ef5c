#include "console/command/help_command.h"

#include <CLI/CLI.hpp>
#include <string_view>

#include "console/command/help.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/translate.h"
#include "console/terminal/pager.h"

namespace lorimat::console {
namespace {

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

constexpr std::string_view kVersionExamples = TR_TEXT(R"(Examples:
  lorimat version
      What "lorimat --version" shows.

Exit codes:
  0  the version was shown
  2  wrong use
)");

}  // namespace

void AddHelp(CLI::App& app, HelpOptions* options) {
  CLI::App* help = app.add_subcommand("help", Tr("Show the help of the program or of a command"));
  help->add_option("COMMAND", options->command, Tr("A command, such as run or journal show"));
  RefuseEmptyTexts(help);
  help->footer(std::string(Translated(kHelpExamples)));
}

void AddVersion(CLI::App& app) {
  CLI::App* version = app.add_subcommand("version", Tr("Show the version"));
  version->footer(std::string(Translated(kVersionExamples)));
}

int HelpCommand(const HelpOptions& options, CLI::App& app, Streams& streams) {
  CLI::App* command = &app;
  std::string in_front;
  for (const std::string& name : options.command) {
    const std::vector<CLI::App*> found =
        command->get_subcommands([&](const CLI::App* one) { return one->get_name() == name; });
    if (found.empty()) throw Failure(NoSuchCommand(*command, name));
    in_front += (in_front.empty() ? "" : " ") + command->get_name();
    command = found.front();
  }
  // A program that has read its arguments shows the help of the command that they named.
  app.clear();
  ShowHelp(streams, command->help(in_front));
  return kExitGood;
}

int VersionCommand(Streams& streams) {
  streams.Output("lorimat " LORIMAT_VERSION "\n");
  return kExitGood;
}

}  // namespace lorimat::console
