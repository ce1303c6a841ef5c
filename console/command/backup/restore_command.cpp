#include "console/command/backup/restore_command.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cerrno>
#include <map>
#include <optional>
#include <utility>
#include <vector>

#include "console/check/password_mask.h"
#include "console/command/backup/backup_manifest.h"
#include "console/command/backup/backup_tables.h"
#include "console/command/backup/table_session.h"
#include "console/host/batch_request.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"
#include "console/terminal/progress.h"
#include "console/terminal/styles.h"

namespace lorimat::console {
namespace {

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

// --- A backup, read and checked as a whole.

struct TableBackup {
  const BackupTable* table = nullptr;
  std::string text;
  std::vector<DumpRow> rows;
};

struct Backup {
  BackupManifest manifest;
  std::vector<TableBackup> tables;
};

// Before the register is asked for, and switched on.
void RequireBackupFolder(const std::string& folder) {
  struct stat status;
  const int cause = stat(folder.c_str(), &status) != 0 ? errno
                    : !S_ISDIR(status.st_mode)         ? ENOTDIR
                                                       : 0;
  if (cause == ENOENT) {
    throw Failure(Tr("{}: there is no such folder; \"lorimat backup {}\" makes one", Shown(folder),
                     Shown(folder)));
  }
  if (cause != 0) {
    throw Failure(Tr("{}: is no folder of a backup: {}", Shown(folder), SystemMessage(cause)));
  }
}

Backup ReadBackup(const std::string& folder, const Language& language) {
  Backup backup;
  backup.manifest = ReadManifest(folder);
  for (size_t i = 0; i < backup.manifest.files.size(); ++i) {
    const BackupTable& table = BackupTables()[i];
    TableBackup one;
    one.table = &table;
    one.text = ReadBackupFile(folder, backup.manifest.files[i]);
    one.rows = DumpRows(table, folder + "/" + table.file, one.text, language);
    backup.tables.push_back(std::move(one));
  }
  return backup;
}

// --- The comparison.

using Differences = std::vector<RowDifference>;

// Shows how far it is. A signal stops it where `stops` is set: nobody is to use the answer then.
Differences Compare(const Backup& backup, TableSession& session, Streams& streams, bool stops) {
  Differences all;
  Progress progress(streams, true, backup.tables.size());
  uint64_t done = 0;
  for (const TableBackup& one : backup.tables) {
    if (stops && interrupted) break;
    const std::string text = DumpTable(*one.table, one.table->file, session.library());
    const auto rows = DumpRows(*one.table, one.table->file, text, session.language());
    const Differences some = CompareRows(*one.table, one.rows, rows);
    all.insert(all.end(), some.begin(), some.end());
    progress.Update(++done);
  }
  return all;
}

bool AreArticles(const BackupTable& table) { return table.number == 0; }

// Rows that only the register has stay, but for articles, whose table is emptied first.
bool Stays(const RowDifference& one) { return one.line == 0 && !AreArticles(*one.table); }

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

// --- The loading.

// What the library refused: file and line, with its answer.
using Refusals = std::map<std::pair<std::string, uint64_t>, std::string>;

std::string CodeText(long code, const std::string& answer) {
  return fmt::format("code {}: {}", code, Shown(WithoutTrailingBlanks(answer)));
}

void WriteFile(const std::string& path, const std::string& text) {
  Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  if (!file.is_open() || !WriteAll(file.get(), text) || close(file.release()) != 0) {
    throw Failure(Tr("{}: cannot be written: {}", Shown(path), SystemMessage(errno)));
  }
}

// Replaces the articles. Works in the scratch folder, with the bytes that were checked.
void LoadArticles(const TableBackup& articles, TableSession& session, Refusals* refusals) {
  constexpr const char* kErrors = "errors.txt";
  WriteFile(articles.table->file, articles.text);
  WriteFile(kErrors, "");
  std::string answer;
  const long code = session.library().RunLine(
      fmt::format("#30 #1='UA', #2='{}', #3='{}', #4", articles.table->file, kErrors), &answer);
  if (code == 0) return;
  (*refusals)[{articles.table->file, 0}] = CodeText(code, answer);
  // One message for each refused row, in their order, with its line.
  for (const BatchError& error : ReadBatchErrors(kErrors)) {
    (*refusals)[{articles.table->file, error.line}] = CodeText(error.code, error.text);
  }
}

class Loader {
 public:
  Loader(const Backup& backup, TableSession& session, Streams& streams)
      : backup_(backup), session_(session), streams_(streams) {}

  // Loads what differs, with the key in its position for programming meanwhile. False when
  // a signal stopped it.
  bool Run(const Differences& differences) {
    const InterruptWatch watch;
    Progress progress(streams_, true, differences.size());
    std::string ignored;
    session_.library().RunLine("#1", &ignored);
    bool articles_differ = false;
    uint64_t done = 0;
    for (const RowDifference& one : differences) {
      if (interrupted) break;
      if (AreArticles(*one.table)) {
        articles_differ = true;
      } else if (!Stays(one)) {
        Load(one);
      }
      progress.Update(++done);
    }
    if (articles_differ && !interrupted) {
      const TableBackup& articles = backup_.tables.back();
      // The rows of the other tables are loaded by now.
      try {
        LoadArticles(articles, session_, &refusals_);
      } catch (const Failure& failure) {
        refusals_[{articles.table->file, 0}] = failure.what();
      }
    }
    TurnBack();
    return !interrupted;
  }

  const Refusals& refusals() const { return refusals_; }
  // Empty when the key has its position again.
  const std::string& key_failure() const { return key_failure_; }

 private:
  void Load(const RowDifference& one) {
    std::string answer;
    const long code = session_.library().RunLine(one.in_backup, &answer);
    if (code != 0) refusals_[{one.table->file, one.line}] = CodeText(code, answer);
  }

  void TurnBack() {
    std::string answer;
    const long code = session_.library().RunLine(
        fmt::format("#15 #1={}", session_.status().key_position), &answer);
    if (code != 0) key_failure_ = CodeText(code, answer);
  }

  const Backup& backup_;
  TableSession& session_;
  Streams& streams_;
  Refusals refusals_;
  std::string key_failure_;
};

// Why a row is still different.
std::string CauseOf(const RowDifference& one, const Refusals& refusals, bool stopped) {
  const auto found = refusals.find({one.table->file, one.line});
  if (found != refusals.end()) return found->second;
  const auto whole = refusals.find({one.table->file, 0});
  if (whole != refusals.end()) return whole->second;
  if (stopped) return Tr("not loaded yet");
  if (one.in_backup.find("=''") != std::string::npos) {
    return Tr("an empty text does not clear the one of the register");
  }
  return Tr("the register keeps another value");
}

std::string RowsText(uint64_t count) {
  return TrCount(count, TR_TEXT("{} row"), TR_TEXT("{} rows"));
}

// --- The answer.

struct Outcome {
  Differences before;
  Differences after;  // as far as they were to be loaded
  Refusals refusals;
  bool stopped = false;
};

uint64_t CountToLoad(const Differences& differences) {
  return static_cast<uint64_t>(std::count_if(differences.begin(), differences.end(),
                                             [](const RowDifference& one) { return !Stays(one); }));
}

Json DifferencesJson(const Differences& differences, const Language& language) {
  Json json = Json::array();
  for (const RowDifference& one : differences) json.push_back(DifferenceJson(one, language));
  return json;
}

void ShowDifferences(const RestoreOptions& options, const Differences& differences,
                     const Language& language, Streams& streams) {
  const bool colours = streams.output_has_colours();
  std::string text;
  for (const RowDifference& one : differences) text += DifferenceText(one, language, colours);
  if (options.dry_run || differences.empty()) {
    text += differences.empty()
                ? Tr("{}: no row differs from the backup\n", Shown(options.register_file))
                : Tr("{}: {} would be restored\n", Shown(options.register_file),
                     RowsText(CountToLoad(differences)));
  }
  streams.Output(text);
}

int ShowOutcome(const RestoreOptions& options, const Outcome& outcome, const Language& language,
                Streams& streams) {
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
    text = JsonText({{"register", options.register_file},
                     {"differences", DifferencesJson(outcome.before, language)},
                     {"restored_rows", restored},
                     {"not_restored", std::move(failed)}});
  } else {
    for (const RowDifference& one : outcome.after) {
      if (Stays(one)) continue;
      text += Tr("{}:{}: not restored: {}", one.table->file, one.line,
                 CauseOf(one, outcome.refusals, outcome.stopped)) +
              "\n";
    }
    text += left == 0 ? Tr("{}: {} restored\n", Shown(options.register_file), RowsText(restored))
                      : Tr("{}: {} restored, {} not restored\n", Shown(options.register_file),
                           RowsText(restored), left);
  }
  int code = left == 0 ? kExitGood : kExitFaults;
  // What is in the register by now stays there.
  try {
    streams.Output(text);
  } catch (const Failure& failure) {
    TellError(streams, Tr("{}: {} restored, {} not restored, and the report is missing: {}",
                          Shown(options.register_file), RowsText(restored), left, failure.what()));
    code = kExitFaults;
  }
  if (outcome.stopped) {
    TellError(streams, Tr("stopped by {}", InterruptName()));
    code = InterruptExit();
  }
  return code;
}

void RequireClosedDay(const RestoreOptions& options, const Differences& differences,
                      const lorimat::RegisterStatus& status) {
  if (!status.day_open) return;
  for (const RowDifference& one : differences) {
    if (std::string_view(one.table->name) != "vat" || Stays(one)) continue;
    throw Failure(
        Tr("{}: a day is open, and the VAT rates differ, which only change between two days: close "
           "the day first; nothing was changed",
           Shown(options.register_file)));
  }
}

}  // namespace

LoadedTables LoadTables(const std::string& folder, TableSession& session, Streams& streams) {
  RequireBackupFolder(folder);
  const Backup backup = ReadBackup(folder, session.language());
  LoadedTables loaded;
  loaded.serial_number = backup.manifest.serial_number;
  // A signal leaves no scratch folder behind.
  const InterruptWatch watch;
  const ScratchFolder scratch;
  const FolderStay stay(scratch.path());
  const Differences before = Compare(backup, session, streams, true);
  Loader loader(backup, session, streams);
  if (!interrupted) loader.Run(before);
  if (!loader.key_failure().empty()) loaded.not_restored.push_back(loader.key_failure());
  const Differences after = Compare(backup, session, streams, true);
  loaded.stopped = interrupted != 0;
  for (const RowDifference& one : after) {
    if (Stays(one)) continue;
    loaded.not_restored.push_back(Tr("{}:{}: not restored: {}", one.table->file, one.line,
                                     CauseOf(one, loader.refusals(), loaded.stopped)));
  }
  loaded.rows = CountToLoad(before) - std::min(CountToLoad(before), CountToLoad(after));
  return loaded;
}

void AddRestore(CLI::App& app, RestoreOptions* options) {
  CLI::App* restore = app.add_subcommand(
      "restore", Tr("Compare the tables of a backup with a register and load them back"));
  restore->add_option("DIR", options->folder, Tr("The folder of the backup"))->required();
  AddRegisterOption(restore, &options->register_file);
  restore->add_flag("--dry-run", options->dry_run, Tr("Only show what is different"));
  AddLanguageOptions(restore, &options->language, &options->library);
  restore->add_flag("--json", options->json, Tr("Write JSON"));
  RefuseEmptyTexts(restore);
  restore->footer(std::string(Translated(kRestoreExamples)));
}

int RunRestore(const RestoreOptions& options, Streams& streams) {
  RequireBackupFolder(options.folder);
  RequireRegister(options.register_file);
  TableSession session(options.register_file, options.language, options.library, streams);
  const Backup backup = ReadBackup(options.folder, session.language());
  if (backup.manifest.serial_number != session.status().serial_number) {
    TellNote(streams,
             Tr("the backup is of {}, and this is {}", Shown(backup.manifest.serial_number),
                Shown(session.status().serial_number)));
  }
  // A signal leaves no scratch folder behind, but while a reader lets the program wait.
  std::optional<InterruptWatch> watch(std::in_place);
  const ScratchFolder scratch;
  const FolderStay stay(scratch.path());
  Outcome outcome;
  outcome.before = Compare(backup, session, streams, true);
  if (interrupted) {
    TellError(streams, Tr("stopped by {}; nothing was changed", InterruptName()));
    return InterruptExit();
  }
  watch.reset();
  const bool to_load = CountToLoad(outcome.before) != 0;
  if (options.dry_run || !to_load) {
    if (options.json) {
      streams.Output(JsonText({{"register", options.register_file},
                               {"differences", DifferencesJson(outcome.before, session.language())},
                               {"restored_rows", 0},
                               {"not_restored", Json::array()}}));
    } else {
      ShowDifferences(options, outcome.before, session.language(), streams);
    }
    return kExitGood;
  }
  RequireClosedDay(options, outcome.before, session.status());
  if (!options.json) ShowDifferences(options, outcome.before, session.language(), streams);

  watch.emplace();
  Loader loader(backup, session, streams);
  outcome.stopped = !loader.Run(outcome.before);
  outcome.refusals = loader.refusals();
  if (!session.last_failure().empty()) {
    TellError(streams, Tr("the register could not be kept: {}", session.last_failure()));
  }
  if (!loader.key_failure().empty()) {
    TellError(streams, Tr("the key could not be turned back to position {}: {}",
                          session.status().key_position, loader.key_failure()));
  }
  try {
    // What was restored is to be told, whatever comes.
    outcome.after = Compare(backup, session, streams, false);
  } catch (const Failure& failure) {
    for (const auto& [place, cause] : outcome.refusals) {
      const auto& [file, line] = place;
      TellError(streams, Tr("{}: not restored: {}",
                            line == 0 ? file : fmt::format("{}:{}", file, line), cause));
    }
    TellError(streams, Tr("{}: what was loaded could not be read back: {}",
                          Shown(options.register_file), failure.what()));
    if (outcome.stopped) return InterruptExit();
    return kExitFaults;
  }
  watch.reset();
  return ShowOutcome(options, outcome, session.language(), streams);
}

}  // namespace lorimat::console
