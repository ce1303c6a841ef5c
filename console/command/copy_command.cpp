// "lorimat copy": a whole register in another file.

#include <fmt/format.h>
#include <sys/stat.h>

#include <CLI/CLI.hpp>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

#include "console/command/subcommand.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/journal_finding.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"
#include "console/terminal/progress.h"
#include "register/inspect/register_file.h"
#include "register/storage/part_file.h"

namespace lorimat::console {
namespace {

struct CopyOptions {
  std::string from;
  std::string to;
};

constexpr std::string_view kCopyExamples = TR_TEXT(R"(Examples:
  lorimat copy shop.register home.register
      A copy of the whole register: tables, documents, totals, journal, roll.

The register may be at work meanwhile: the copy is of one moment, and the seller does not wait.
Its journal is verified before the copy gets its name; a name that is taken is refused. The copy is
the same register, with its serial number: only one of the two may go on selling.

Exit codes:
  0  the copy is there, and its journal is good
  1  the copy is there, and its journal has findings, as that of the register has; or what failed
     behind the copy is told
  2  wrong use, or it could not be made; then there is no copy
  130  stopped by Ctrl-C; there is no copy
)");

void RefuseItself(const std::string& from, const std::string& to) {
  struct stat source;
  struct stat target;
  if (stat(from.c_str(), &source) != 0 || stat(to.c_str(), &target) != 0) return;
  if (source.st_dev != target.st_dev || source.st_ino != target.st_ino) return;
  throw Failure(Tr("{}: is the register {} itself", Shown(to), Shown(from)));
}

// For a part of the work: moves its bar, and tells whether to go on.
std::function<bool(uint64_t, uint64_t)> Watched(std::optional<Progress>& bar, Streams& streams) {
  return [&bar, &streams](uint64_t done, uint64_t all) {
    if (!bar) bar.emplace(streams, true, all);
    bar->Update(done);
    return interrupted == 0;
  };
}

lorimat::JournalCheck Verify(const lorimat::RegisterFile& file, Streams& streams) {
  std::optional<Progress> bar;
  return file.VerifyJournal(Watched(bar, streams));
}

std::string FindingLines(const lorimat::JournalCheck& check) {
  std::string text;
  for (const lorimat::Finding& finding : check.findings) text += JournalFindingText(finding) + "\n";
  return text;
}

int Stopped(Streams& streams) {
  TellError(streams, Tr("stopped by {}; there is no copy", InterruptName()));
  return InterruptExit();
}

void AddOptions(CLI::App* copy, CopyOptions* options) {
  copy->add_option("FROM", options->from, Tr("The register's file"))->required();
  copy->add_option("TO", options->to, Tr("The copy, a file that must not be there"))->required();
}

// Returns one of ExitCode. Throws Failure or RegisterError: then there is no copy.
int CopyCommand(const CopyOptions& options, Streams& streams) {
  RequireRegister(options.from);
  RequireNoStream(options.to);
  RefuseItself(options.from, options.to);
  const InterruptWatch watch;
  lorimat::RegisterFile source(options.from);
  lorimat::PartFile part(options.to);
  {
    std::optional<Progress> bar;
    if (!source.CopyTo(part, Watched(bar, streams))) {
      bar.reset();
      return Stopped(streams);
    }
  }
  const lorimat::RegisterFile copy(part);
  const lorimat::RegisterStatus status = copy.Status();
  const lorimat::JournalCheck check = Verify(copy, streams);
  if (interrupted != 0) return Stopped(streams);
  int code = kExitGood;
  if (!check.good()) {
    // What the register has the copy has, too; anything else is none.
    const lorimat::JournalCheck original = Verify(source, streams);
    if (interrupted != 0) return Stopped(streams);
    if (original.good()) {
      throw Failure(
          Tr("{}: the journal of the copy is not that of the register, and there is no "
             "copy: {}",
             Shown(options.to), Shown(FindingLines(check))));
    }
    code = kExitFaults;
  }
  if (const int error = part.Finish()) {
    TellWarning(streams, Tr("{}: the copy is there and whole, and its name may not have reached "
                            "the disk: {}",
                            Shown(options.to), SystemMessage(error)));
    code = kExitFaults;
  }
  TellNote(streams,
           Tr("{}: is the same register, serial number {}: only one of the two may go on selling",
              Shown(options.to), Shown(status.serial_number)));
  std::string text = FindingLines(check);
  text += check.good() ? Tr("{}: copy of {}, the journal is good: {}, {}\n", Shown(options.to),
                            Shown(options.from), TrCount(check.entries, "{} entry", "{} entries"),
                            TrCount(check.documents, "{} document", "{} documents"))
                       : Tr("{}: copy of {}, whose journal has findings\n", Shown(options.to),
                            Shown(options.from));
  const auto missing = [&options](const char* cause) {
    return Tr("{}: the copy is there and whole, and its report is missing: {}", Shown(options.to),
              cause);
  };
  return WriteReport(streams, text, missing) ? code : kExitFaults;
}

}  // namespace

const Subcommand kCopySubcommand = {"copy", HelpGroup::kLookAfterRegister,
                                    TR_TEXT("Copy a whole register, at any moment"), kCopyExamples,
                                    &Prepare<CopyOptions, AddOptions, CopyCommand>};

}  // namespace lorimat::console
