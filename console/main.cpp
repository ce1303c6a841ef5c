// lorimat: the program a person runs. Each subcommand has a file of its own, and one of them runs.

#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <csignal>
#include <exception>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "console/command/help.h"
#include "console/command/subcommand.h"
#include "console/command/usage_error.h"
#include "console/device/device_thread.h"
#include "console/host/broken_pipe.h"
#include "console/host/installed_files.h"
#include "console/host/register_options.h"
#include "console/message/catalogs.h"
#include "console/message/failure.h"
#include "console/message/register_failure_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "console/terminal/pager.h"
#include "console/terminal/streams.h"

namespace lorimat::console {
namespace {

constexpr const Subcommand* kSubcommands[] = {
#define SUBCOMMAND(Name) &k##Name##Subcommand,
#include "console/command/subcommands.inc"
};

int ParseAndRun(int argc, char** argv, Streams& streams) {
  CLI::App app(Tr("Runs, checks and explains lines of the cash register command language."),
               "lorimat");
  app.set_help_flag("-h,--help", Tr("Print this help message and exit"));
  app.set_version_flag("-V,--version", "lorimat " LORIMAT_VERSION,
                       Tr("Print the version and exit"));
  app.require_subcommand(1);
  std::vector<std::pair<const CLI::App*, SubcommandRun>> subcommands;
  for (const Subcommand* row : kSubcommands) {
    CLI::App* command =
        app.add_subcommand(std::string(row->name), std::string(Translated(row->purpose)));
    subcommands.emplace_back(command, row->prepare(command));
    RefuseEmptyTexts(command);
    command->group(HelpHeading(row->group));
    command->footer(std::string(Translated(row->examples)));
  }
  TranslateHelp(app);
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    const std::string unknown = UnknownCommand(app);
    if (error.get_exit_code() == 0 && unknown.empty()) {
      std::ostringstream output;
      app.exit(error, output, output);
      ShowHelp(streams, output.str());
      return kExitGood;
    }
    const std::vector<std::string> arguments(argv + std::min(argc, 1), argv + argc);
    TellError(streams, unknown.empty() ? UsageError(app, error, arguments) : unknown);
    streams.Error(Tr("Run with --help for more information.\n"));
    return kExitNotDone;
  }
  for (const auto& [command, run] : subcommands) {
    if (app.got_subcommand(command)) return run(streams);
  }
  return kExitNotDone;
}

// What is left to tell when there are neither streams nor memory for a notice: the cause by itself,
// from where it stands.
void TellBare(const char* cause) {
  for (const std::string_view part : {"lorimat: ", cause, "\n"}) WriteAll(STDERR_FILENO, part);
}

// The whole program, without what has to be in the global namespace.
int RunProgram(int argc, char** argv) {
  // A limit of file sizes is an error like a full disk.
  std::signal(SIGXFSZ, SIG_IGN);
  int code = kExitNotDone;
  try {
    Streams streams;
    try {
      OpenCatalogs(FindCatalogs());
      code = ParseAndRun(argc, argv, streams);
    } catch (const Failure& failure) {
      TellError(streams, failure.what());
    } catch (const std::exception& error) {
      TellError(streams, ErrorText(error));
    }
  } catch (const Failure& failure) {
    TellBare(failure.what());
  } catch (const std::exception&) {
    TellBare("there is not enough memory");
  }
  // What the end of a program does could wait for a device that hangs.
  if (DeviceThread::AnyGivenUp()) _exit(code);
  if (code == kExitReaderGone) EndByBrokenPipe();
  return code;
}

}  // namespace
}  // namespace lorimat::console

int main(int argc, char** argv) { return lorimat::console::RunProgram(argc, argv); }
