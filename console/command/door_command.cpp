// "lorimat door backup": the log of a door in another file.

#include <CLI/CLI.hpp>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "console/command/subcommand.h"
#include "console/host/door_log_kind.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"
#include "console/terminal/progress.h"
#include "register/storage/change_copy.h"
#include "register/storage/part_file.h"

namespace lorimat::console {
namespace {

struct DoorOptions {
  std::string log;
  std::string to;
};

constexpr std::string_view kDoorExamples = TR_TEXT(R"(Examples:
  lorimat door backup shop.register.door monday.door
      A copy of the log of jobs, at any moment.

lorimatd may be at work meanwhile: the copy is of one moment, and no job waits for it. All of it is
looked through before it gets its name; a name that is taken is refused.

A copy that is put back does not know the keys that came behind it: a till that sends one of those
again would sell twice. Look at the register's journal first.

Exit codes:
  0  the copy is there, and is good
  1  the copy is there, and what failed behind it is told
  2  wrong use, or it could not be made; then there is no copy
  130  stopped by Ctrl-C; there is no copy
)");

// Throws Failure for one whose pages do not fit together.
void RequireWhole(lorimat::Database& copy, const std::string& name) {
  lorimat::Statement row = copy.Prepare("PRAGMA integrity_check(1)");
  row.With();
  const std::string found = row.Step() ? row.String(0) : std::string();
  if (found != "ok") {
    throw Failure(Tr("{}: the copy is damaged, and there is none: {}", Shown(name), Shown(found)));
  }
}

uint64_t CountJobs(lorimat::Database& copy) {
  lorimat::Statement row = copy.Prepare("SELECT count(*) FROM job");
  row.With();
  row.Step();
  return static_cast<uint64_t>(row.Integer(0));
}

std::string SerialNumber(lorimat::Database& copy) {
  lorimat::Statement row = copy.Prepare("SELECT value FROM value WHERE name = 'serial'");
  row.With();
  return row.Step() ? row.String(0) : std::string();
}

void AddOptions(CLI::App* door, DoorOptions* options) {
  door->require_subcommand(1);
  CLI::App* backup = door->add_subcommand("backup", Tr("Copy the log of jobs, at any moment"));
  backup->add_option("LOG", options->log, Tr("The file of the log"))->required();
  backup->add_option("FILE", options->to, Tr("The copy, a file that must not be there"))
      ->required();
  backup->footer(std::string(Translated(kDoorExamples)));
}

// Returns one of ExitCode. Throws Failure or RegisterError: then there is no copy.
int DoorCommand(const DoorOptions& options, Streams& streams) {
  RequireNoStream(options.log);
  RequireNoStream(options.to);
  const InterruptWatch watch;
  lorimat::Database log(options.log, lorimat::Database::Open::kRead, kDoorLogKind);
  lorimat::PartFile part(options.to);
  {
    std::optional<Progress> bar;
    const auto watched = [&bar, &streams](uint64_t done, uint64_t all) {
      if (!bar) bar.emplace(streams, true, all);
      bar->Update(done);
      return interrupted == 0;
    };
    if (!log.CopyTo(part, watched)) {
      bar.reset();
      TellError(streams, Tr("stopped by {}; there is no copy", InterruptName()));
      return InterruptExit();
    }
  }
  // A door that opens it begins none of the jobs that waited: they may have run since.
  lorimat::ChangeCopy(part, kMarkDoorLogCopied);
  lorimat::Database copy(part, kDoorLogKind);
  RequireWhole(copy, options.to);
  const uint64_t jobs = CountJobs(copy);
  const std::string serial = SerialNumber(copy);
  int code = kExitGood;
  if (const int error = part.Finish()) {
    TellWarning(streams, Tr("{}: the copy is there and whole, and its name may not have reached "
                            "the disk: {}",
                            Shown(options.to), SystemMessage(error)));
    code = kExitFaults;
  }
  const auto missing = [&options](const char* cause) {
    return Tr("{}: the copy is there and whole, and its report is missing: {}", Shown(options.to),
              cause);
  };
  const std::string text =
      Tr("{}: copy of {}, the log of {}: {}\n", Shown(options.to), Shown(options.log),
         Shown(serial), TrCount(jobs, "{} job", "{} jobs"));
  return WriteReport(streams, text, missing) ? code : kExitFaults;
}

}  // namespace

const Subcommand kDoorSubcommand = {"door", HelpGroup::kLookAfterRegister,
                                    TR_TEXT("Copy the log of a door"), kDoorExamples,
                                    &Prepare<DoorOptions, AddOptions, DoorCommand>};

}  // namespace lorimat::console
