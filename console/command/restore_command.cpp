// "lorimat restore": the tables of a backup, compared with a register and loaded back into it.

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "console/check/password_mask.h"
#include "console/command/backup/table_loading.h"
#include "console/command/record_options.h"
#include "console/command/subcommand.h"
#include "console/host/batch_request.h"
#include "console/host/device_options.h"
#include "console/host/installed_files.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"
#include "console/terminal/progress.h"
#include "console/terminal/styles.h"

namespace lorimat::console {
namespace {

struct RestoreOptions {
  DeviceOptions device;
  std::string folder;
  std::string language;
  std::string library;
  RecordOptions record;
  bool dry_run = false;
  bool json = false;
};

constexpr std::string_view kRestoreExamples = TR_TEXT(R"(Examples:
  lorimat restore tables --register shop.register --dry-run
      Shows what is different in the backup and in the register.
  lorimat restore tables --register shop.register
      Loads what is different, and shows it.

Rows with a minus are those of the register, rows with a plus those of the backup. Each table is
loaded by the library, row by row; the articles are replaced as a whole. Everything is checked
before anything is changed: the files of the backup, their words, the state of the register. VAT
rates that differ want a closed day.

Exit codes:
  0  the register holds the tables of the backup; with --dry-run: they were compared
  1  some rows could not be restored, and each is named with its cause; or all were, and the report
     could not be written; or they were loaded, and could not be read back
  2  wrong use, or nothing was restored
  130  stopped by Ctrl-C; what was restored up to there is shown
)");

// A row as it may be seen.
std::string Seen(const std::string& row, const Language& language) {
  return WithoutPasswords(&language, row);
}

std::string DifferenceText(const RowDifference& one, const Language& language, bool colours) {
  std::string out = one.line == 0 ? std::string(one.table->file)
                                  : fmt::format("{}:{}", one.table->file, one.line);
  if (Stays(one)) {
    out += Tr(": not in the backup; stays as it is\n");
  } else if (one.in_backup.empty()) {
    out += Tr(": not in the backup; is taken away\n");
  } else if (one.in_register.empty()) {
    out += Tr(": not in the register\n");
  } else {
    out += Tr(": different\n");
  }
  if (!one.in_register.empty()) {
    out += Styled(fmt::format("  - {}", Shown(Seen(one.in_register, language))), Style::kError,
                  colours) +
           "\n";
  }
  if (!one.in_backup.empty()) {
    out +=
        Styled(fmt::format("  + {}", Shown(Seen(one.in_backup, language))), Style::kGood, colours) +
        "\n";
  }
  return out;
}

Json DifferenceJson(const RowDifference& one, const Language& language) {
  Json json = {{"table", one.table->name}, {"file", one.table->file}};
  if (one.line != 0) json["line"] = one.line;
  if (!one.in_register.empty()) json["in_register"] = Seen(one.in_register, language);
  if (!one.in_backup.empty()) json["in_backup"] = Seen(one.in_backup, language);
  json["stays"] = Stays(one);
  return json;
}

std::string RowsText(uint64_t count) { return TrCount(count, "{} row", "{} rows"); }

// --- The answer.

struct Outcome {
  Differences before;
  Differences after;  // as far as they were to be loaded
  RowRefusals refusals;
  bool stopped = false;
};

Json DifferencesJson(const Differences& differences, const Language& language) {
  Json json = Json::array();
  for (const RowDifference& one : differences) json.push_back(DifferenceJson(one, language));
  return json;
}

void ShowDifferences(const RestoreOptions& options, const std::string& place,
                     const Differences& differences, const Language& language, Streams& streams) {
  const bool colours = streams.output_has_colours();
  std::string text;
  for (const RowDifference& one : differences) text += DifferenceText(one, language, colours);
  if (options.dry_run || differences.empty()) {
    text += differences.empty() ? Tr("{}: no row differs from the backup\n", Shown(place))
                                : Tr("{}: {} would be restored\n", Shown(place),
                                     RowsText(CountToLoad(differences)));
  }
  streams.Output(text);
}

int ShowOutcome(const RestoreOptions& options, const std::string& place, const Outcome& outcome,
                const Language& language, Streams& streams) {
  const uint64_t left = CountToLoad(outcome.after);
  const uint64_t wanted = CountToLoad(outcome.before);
  const uint64_t restored = wanted - std::min(wanted, left);
  std::string text;
  if (options.json) {
    const EnglishMessages english;
    Json failed = Json::array();
    for (const RowDifference& one : outcome.after) {
      if (Stays(one)) continue;
      Json json = DifferenceJson(one, language);
      json["cause"] = CauseOf(one, outcome.refusals, outcome.stopped);
      failed.push_back(std::move(json));
    }
    text = JsonText({{"register", place},
                     {"differences", DifferencesJson(outcome.before, language)},
                     {"restored_rows", restored},
                     {"not_restored", std::move(failed)}});
  } else {
    for (const RowDifference& one : outcome.after) {
      if (Stays(one)) continue;
      text += Tr("{}:{}: not restored: {}", one.table->file, one.line,
                 Shown(CauseOf(one, outcome.refusals, outcome.stopped))) +
              "\n";
    }
    text += left == 0
                ? Tr("{}: {} restored\n", Shown(place), RowsText(restored))
                : Tr("{}: {} restored, {} not restored\n", Shown(place), RowsText(restored), left);
  }
  int code = left == 0 ? kExitGood : kExitFaults;
  // What is in the register by now stays there.
  try {
    streams.Output(text);
  } catch (const Failure& failure) {
    TellError(streams, Tr("{}: {} restored, {} not restored, and the report is missing: {}",
                          Shown(place), RowsText(restored), left, failure.what()));
    code = kExitFaults;
  }
  if (outcome.stopped) {
    TellError(streams, Tr("stopped by {}", InterruptName()));
    code = InterruptExit();
  }
  return code;
}

void RequireClosedDay(const Differences& differences, TableSession& session) {
  if (!session.facts().day_open) return;
  for (const RowDifference& one : differences) {
    if (std::string_view(one.table->name) != "vat" || Stays(one)) continue;
    throw Failure(
        Tr("{}: a day is open, and the VAT rates differ, which only change between two days: close "
           "the day first; nothing was changed",
           Shown(session.device().place())));
  }
}

void AddOptions(CLI::App* restore, RestoreOptions* options) {
  restore->add_option("DIR", options->folder, Tr("The folder of the backup"))->required();
  AddDeviceOptions(restore, &options->device);
  restore->add_flag("--dry-run", options->dry_run, Tr("Only show what is different"));
  AddLanguageOptions(restore, &options->language, &options->library);
  AddRecordOptions(restore, &options->record);
  restore->add_flag("--json", options->json, Tr("Write JSON"));
}

// Returns one of ExitCode. Throws Failure or RegisterError when nothing could be restored.
int RunRestore(const RestoreOptions& options, Streams& streams) {
  RequireBackupFolder(options.folder);
  const DeviceRequest request = RequestOf(options.device);
  RequireDevice(request);
  RequireApartFromWork(options.record, FilesOfDevice(request), DefinitionPath(options.language),
                       FindLibrary(options.library));
  TableSession session(request, options.language, options.library, streams, options.record);
  const std::string place = session.device().place();
  const Backup backup = ReadBackup(options.folder, session.language());
  if (backup.manifest.serial_number != session.facts().serial_number) {
    TellNote(streams,
             Tr("the backup is of {}, and this is {}", Shown(backup.manifest.serial_number),
                Shown(session.facts().serial_number)));
  }
  // A signal leaves no scratch folder behind, but while a reader lets the program wait.
  std::optional<InterruptWatch> watch(std::in_place);
  const ScratchFolder scratch;
  const FolderStay stay(scratch.path());
  Outcome outcome;
  outcome.before = CompareTables(backup, session, streams, true);
  if (interrupted) {
    TellError(streams, Tr("stopped by {}; nothing was changed", InterruptName()));
    return InterruptExit();
  }
  watch.reset();
  const bool to_load = CountToLoad(outcome.before) != 0;
  if (options.dry_run || !to_load) {
    if (options.json) {
      streams.Output(JsonText({{"register", place},
                               {"differences", DifferencesJson(outcome.before, session.language())},
                               {"restored_rows", 0},
                               {"not_restored", Json::array()}}));
    } else {
      ShowDifferences(options, place, outcome.before, session.language(), streams);
    }
    return kExitGood;
  }
  RequireClosedDay(outcome.before, session);
  if (!options.json) ShowDifferences(options, place, outcome.before, session.language(), streams);

  watch.emplace();
  TableLoader loader(backup, session, streams);
  outcome.stopped = !loader.Run(outcome.before);
  outcome.refusals = loader.refusals();
  session.device().TellFailure(streams);
  if (!loader.key_failure().empty()) {
    TellError(streams, Tr("the key could not be turned back to position {}: {}",
                          session.facts().key_position.value_or(0), loader.key_failure()));
  }
  try {
    // What was restored is to be told, whatever comes.
    outcome.after = CompareTables(backup, session, streams, false);
  } catch (const Failure& failure) {
    for (const auto& [row, cause] : outcome.refusals) {
      const auto& [file, line] = row;
      TellError(streams, Tr("{}: not restored: {}",
                            line == 0 ? file : fmt::format("{}:{}", file, line), cause.text()));
    }
    TellError(streams,
              Tr("{}: what was loaded could not be read back: {}", Shown(place), failure.what()));
    if (outcome.stopped) return InterruptExit();
    return kExitFaults;
  }
  watch.reset();
  return ShowOutcome(options, place, outcome, session.language(), streams);
}

}  // namespace

const Subcommand kRestoreSubcommand = {
    "restore", HelpGroup::kLookAfterRegister,
    TR_TEXT("Compare the tables of a backup with a register and load them back"), kRestoreExamples,
    &Prepare<RestoreOptions, AddOptions, RunRestore>};

}  // namespace lorimat::console
