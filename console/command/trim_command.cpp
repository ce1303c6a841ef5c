// "lorimat trim": cuts a recording down to the lines that matter, and makes a conversation of it.

#include <CLI/CLI.hpp>
#include <climits>
#include <string>
#include <string_view>
#include <vector>

#include "console/command/subcommand.h"
#include "console/command/usage_error.h"
#include "console/message/failure.h"
#include "console/message/recording_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/notices.h"
#include "recording/recording.h"
#include "recording/trim.h"

namespace lorimat::console {
namespace {

struct TrimOptions {
  std::string file;
  std::vector<int> lines;
};

constexpr std::string_view kTrimExamples = TR_TEXT(R"(Examples:
  lorimat trim day.rec > refused.txt
      The lines that failed, each with those of its document ahead of it.
  lorimat trim day.rec --line 320 --line 411
      The lines that stand in the file at 320 and 411 in their place.

The conversation goes to standard output. It has the calls of the lines that are left, the answers
of the device, and what its start read. Lines that called nothing are left too: they may have set
how others are read. A recording that is cut off or was edited is taken, and told.

Exit codes:
  0  the conversation was written
  2  wrong use, or the file is no recording, or no line in it failed and none was named
)");

void AddOptions(CLI::App* trim, TrimOptions* options) {
  trim->add_option("FILE", options->file, Tr("The recording"))->required();
  trim->add_option("--line", options->lines,
                   Tr("A line that matters, by its number in the file; may be given several times"))
      ->type_name("N")
      ->check(WholeNumberIn(1, INT_MAX))
      ->expected(1)
      ->multi_option_policy(CLI::MultiOptionPolicy::TakeAll);
}

int TrimCommand(const TrimOptions& options, Streams& streams) {
  const recording::Recording read = recording::ReadRecording(options.file);
  const std::string fault = RecordingFaultText(options.file, read.fault);
  if (!read.readable()) throw Failure(fault);
  if (read.fault) TellWarning(streams, fault);
  const recording::Trimmed trimmed = recording::Trim(read, options.lines);
  switch (trimmed.cause) {
    case recording::TrimCause::kNothingFailed:
      throw Failure(
          Tr("{}: no line failed; name those that matter by --line", Shown(options.file)));
    case recording::TrimCause::kNoLine:
      throw Failure(Tr("{}:{}: no line that was sent and answered stands there",
                       Shown(options.file), trimmed.number));
    default:
      break;
  }
  streams.Output(trimmed.text);
  return kExitGood;
}

}  // namespace

const Subcommand kTrimSubcommand = {
    "trim", HelpGroup::kLookIntoLines,
    TR_TEXT("Make a conversation of the lines of a recording that matter"), kTrimExamples,
    &Prepare<TrimOptions, AddOptions, TrimCommand>};

}  // namespace lorimat::console
