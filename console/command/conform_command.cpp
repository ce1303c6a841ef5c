// "lorimat conform": a device put through its paces, and what it does against its contract.

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <optional>
#include <string>

#include "console/command/record_options.h"
#include "console/command/subcommand.h"
#include "console/conform/conform_process.h"
#include "console/conform/conform_progress.h"
#include "console/conform/conformance.h"
#include "console/device/open_device.h"
#include "console/host/device_options.h"
#include "console/host/line_recording.h"
#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/load_failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"
#include "console/terminal/progress.h"
#include "console/terminal/shell_text.h"

namespace lorimat::console {
namespace {

struct ConformOptions {
  DeviceOptions device;
  RecordOptions record;
  bool for_real = false;
  bool json = false;
};

constexpr std::string_view kConformExamples = TR_TEXT(R"(Examples:
  lorimat conform --device ./libprinter.so --device-option port=/dev/ttyS0
      What the device has, what it lacks, and what it does against its contract.
  lorimat conform --device ./libprinter.so --json --record printer.rec
      For a program, with a recording of all calls.
  lorimat conform --for-real
      The virtual register in memory, where nothing that counts is lost.

The device has to say that it is in training; --for-real tries one that does not: then its
documents count, a day is closed, and header, options and numbering may be written over. Some 100
documents are printed either way. Each operation is tried in each state of the printer, each
refusal and each reading by itself; behind each the device is brought back to rest. It works in a
process of its own: where it ends that, its row says so, and the other rows go on in a new one.

fits     it does what docs/devices.md has of it
missing  the device says that it does not have it
against  it does something else: what, stands below
not tried  what goes ahead of it is missing, the device hangs, or a signal came

Exit codes:
  0  nothing is against the contract
  1  something is
  2  wrong use, or the device cannot be opened or tried, or the recording could not be written
  130  stopped by Ctrl-C; 143 by SIGTERM, 129 by SIGHUP; what was tried is shown
)");

constexpr ConformVerdict kVerdicts[] = {ConformVerdict::kFits, ConformVerdict::kMissing,
                                        ConformVerdict::kAgainst, ConformVerdict::kNotTried};

std::string HeadingOf(std::string_view group) {
  struct Heading {
    std::string_view group;
    const char* text;
  };
  static constexpr Heading kHeadings[] = {
      {"readings", TR_TEXT("What it is asked")},
      {"states", TR_TEXT("The states of the printer")},
      {"operations", TR_TEXT("Operations, each in each state")},
      {"refusals", TR_TEXT("What has to be refused")},
      {"again", TR_TEXT("What it is asked once more")},
  };
  for (const Heading& heading : kHeadings) {
    if (heading.group == group) return std::string(Translated(heading.text));
  }
  return std::string(group);
}

std::string AsText(const ConformReport& report) {
  size_t width = 0;
  for (const ConformVerdict verdict : kVerdicts) {
    width = std::max(width, ColumnsOf(VerdictText(verdict)));
  }
  std::string text;
  std::string_view group;
  for (const ConformRow& row : report.rows) {
    if (row.group != group)
      text += fmt::format("{}{}:\n", text.empty() ? "" : "\n", HeadingOf(row.group));
    group = row.group;
    const std::string verdict = VerdictText(row.verdict);
    text +=
        fmt::format("  {}{}  {}", verdict, std::string(width - ColumnsOf(verdict), ' '), row.name);
    if (!row.what.empty()) text += fmt::format(" ({})", Translated(row.what));
    text += "\n";
    for (const ConformFinding& finding : row.findings) {
      text += fmt::format("  {}    {}\n", std::string(width, ' '), FindingText(finding));
    }
  }
  return text + "\n" +
         Tr("{} fit, {} are missing, {} are against the contract, {} were not tried\n",
            report.Count(ConformVerdict::kFits), report.Count(ConformVerdict::kMissing),
            report.Count(ConformVerdict::kAgainst), report.Count(ConformVerdict::kNotTried));
}

Json FindingJson(const ConformFinding& finding) {
  return {{"cause", NameOf(finding.cause)},
          {"operation", finding.operation},
          {"state", finding.state == kStates ? Json() : Json(NameOfState(finding.state).name)},
          {"expected", finding.expected},
          {"got", finding.got},
          {"text", finding.text},
          {"message", FindingText(finding)}};
}

Json AsJson(const TriedDevice& device, const ConformReport& report) {
  Json rows = Json::array();
  for (const ConformRow& row : report.rows) {
    Json findings = Json::array();
    for (const ConformFinding& finding : row.findings) findings.push_back(FindingJson(finding));
    rows.push_back({{"group", row.group},
                    {"row", row.name},
                    {"what", row.what},
                    {"verdict", NameOf(row.verdict)},
                    {"findings", findings}});
  }
  Json counts;
  for (const ConformVerdict verdict : kVerdicts) {
    counts[std::string(NameOf(verdict))] = report.Count(verdict);
  }
  return {{"device", device.name},     {"version", device.version}, {"training", device.training},
          {"stopped", report.stopped}, {"counts", counts},          {"rows", rows}};
}

void AddOptions(CLI::App* conform, ConformOptions* options) {
  AddDeviceOptions(conform, &options->device);
  AddClockOption(conform, &options->device);
  AddRecordOptions(conform, &options->record);
  conform->add_flag("--for-real", options->for_real,
                    Tr("Try a device that does not say that it is in training"));
  conform->add_flag("--json", options->json, Tr("Write JSON"));
}

// Throws Failure for a device that is not to be tried. One that ended its process may have left a
// document open.
bool RequireTrial(const ConformOptions& options, Device& device, bool resumed) {
  const DeviceState state = device.state();
  const bool training = state.training.value_or(false);
  if (!training && !options.for_real) {
    throw Failure(
        Tr("the device '{}' does not say that it is in training. What is tried counts "
           "then: --for-real tries it all the same",
           Shown(device.name())));
  }
  if (!state.ready() && !resumed) {
    throw Failure(Tr("{}: a document is open on the device. End it first", Shown(device.place())));
  }
  return training;
}

// The work of the process that the device is tried in. Throws Failure when it cannot be tried.
void TryDevice(const ConformOptions& options, ConformProcess& process, ConformProgress& progress,
               Streams& streams) {
  const bool resumed = progress.resumed > 0;
  const std::unique_ptr<Device> device = OpenDevice(RequestOf(options.device), streams);
  const bool training = RequireTrial(options, *device, resumed);
  process.TellDevice({device->name(), device->version(), training});
  WatchedClient client(*device->client(), process.watch());
  // It has one end, which is where the first process ended.
  LineRecording recording(resumed ? RecordOptions() : options.record, *device, streams);
  Conformance(*device, progress,
              {.training = training,
               .recorder = recording.recorder(),
               .client = &client,
               .behind = [&](size_t piece) { process.TellPiece(progress, piece); }})
      .Run();
  process.TellWhole(recording.Finish());
  device->TellFailure(streams);
}

// Goes on in a process of its own: true there, when all is done.
bool TryApart(const ConformOptions& options, ConformProcess& process, ConformProgress& progress,
              Streams& streams) {
  if (!process.Begin()) return false;
  try {
    TryDevice(options, process, progress, streams);
  } catch (...) {
    process.TellFailed();
    throw;
  }
  return true;
}

// Returns one of ExitCode. Throws Failure when the device cannot be tried.
int ConformCommand(const ConformOptions& options, Streams& streams) {
  RequireApart({RecordingName(options.record)}, FilesOfDevice(RequestOf(options.device)));
  streams.StartTrace({});
  const InterruptWatch watch;
  ConformProgress progress;
  ConformProcess process;
  ConformProcess::Outcome outcome = {};
  do {
    if (TryApart(options, process, progress, streams)) return kExitGood;
    Progress bar(streams, true, ConformPieces().size());
    outcome = process.Follow(
        &progress, [&bar](size_t tried) { bar.Update(tried); }, [&bar] { bar.Clear(); });
    if (outcome != ConformProcess::Outcome::kEnded) break;
    if (!process.device()) {
      throw Failure(Tr("the device ended the process that opened it: {}", process.end().Text()));
    }
    progress.NoteEnd(process.end(), process.operation());
  } while (interrupted == 0);
  // It has said why.
  if (!process.device()) return kExitNotDone;
  ConformReport report = progress.Report(process.device()->training);
  report.stopped = interrupted != 0;
  {
    const EnglishMessages english(options.json);
    streams.Output(options.json ? JsonText(AsJson(*process.device(), report)) : AsText(report));
  }
  if (progress.resumed > 0 && !options.record.file.empty()) {
    TellWarning(streams, Tr("{}: the recording ends where the device ended the process",
                            Shown(options.record.file)));
  }
  if (report.stopped) {
    TellError(streams, Tr("stopped by {}", InterruptName()));
    return InterruptExit();
  }
  if (!process.recorded()) return kExitNotDone;
  if (outcome == ConformProcess::Outcome::kAtClose) {
    TellError(streams,
              Tr("the device ended the process when it was closed: {}", process.end().Text()));
    return kExitFaults;
  }
  return report.Count(ConformVerdict::kAgainst) == 0 ? kExitGood : kExitFaults;
}

}  // namespace

const Subcommand kConformSubcommand = {
    "conform", HelpGroup::kLookUpProgram,
    TR_TEXT("Put a device through its paces, and tell what is against its contract"),
    kConformExamples, &Prepare<ConformOptions, AddOptions, ConformCommand>};

}  // namespace lorimat::console
