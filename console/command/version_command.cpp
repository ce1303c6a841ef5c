// "lorimat version": the word that people type before they know the options.

#include <string_view>

#include "console/command/subcommand.h"
#include "console/message/failure.h"
#include "console/message/translate.h"

namespace lorimat::console {
namespace {

struct VersionOptions {};

constexpr std::string_view kVersionExamples = TR_TEXT(R"(Examples:
  lorimat version
      What "lorimat --version" shows.

Exit codes:
  0  the version was shown
  2  wrong use
)");

void AddOptions(CLI::App*, VersionOptions*) {}

int VersionCommand(const VersionOptions&, Streams& streams) {
  streams.Output("lorimat " LORIMAT_VERSION "\n");
  return kExitGood;
}

}  // namespace

const Subcommand kVersionSubcommand = {"version", HelpGroup::kLookUpProgram,
                                       TR_TEXT("Show the version"), kVersionExamples,
                                       &Prepare<VersionOptions, AddOptions, VersionCommand>};

}  // namespace lorimat::console
