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
void require_backup_folder(const std::string& folder) {
  struct stat status;
  const int cause = stat(folder.c_str(), &status) != 0 ? errno
                    : !S_ISDIR(status.st_mode)         ? ENOTDIR
                                                       : 0;
  if (cause == ENOENT) {
    throw Failure(tr("{}: there is no such folder; \"lorimat backup {}\" makes one", shown(folder),
                     shown(folder)));
  }
  if (cause != 0) {
    throw Failure(tr("{}: is no folder of a backup: {}", shown(folder), system_message(cause)));
  }
}

Backup read_backup(const std::string& folder, const Language& language) {
  Backup backup;
  backup.manifest = read_manifest(folder);
  for (size_t i = 0; i < backup.manifest.files.size(); ++i) {
    const BackupTable& table = backup_tables()[i];
    TableBackup one;
    one.table = &table;
    one.text = read_backup_file(folder, backup.manifest.files[i]);
    one.rows = dump_rows(table, folder + "/" + table.file, one.text, language);
    backup.tables.push_back(std::move(one));
  }
  return backup;
}

// --- The comparison.

using Differences = std::vector<RowDifference>;

// Shows how far it is. A signal stops it where `stops` is set: nobody is to use the answer then.
Differences compare(const Backup& backup, TableSession& session, Streams& streams, bool stops) {
  Differences all;
  Progress progress(streams, true, backup.tables.size());
  uint64_t done = 0;
  for (const TableBackup& one : backup.tables) {
    if (stops && interrupted) break;
    const std::string text = dump_table(*one.table, one.table->file, session.library());
    const auto rows = dump_rows(*one.table, one.table->file, text, session.language());
    const Differences some = compare_rows(*one.table, one.rows, rows);
    all.insert(all.end(), some.begin(), some.end());
    progress.update(++done);
  }
  return all;
}

bool are_articles(const BackupTable& table) { return table.number == 0; }

// Rows that only the register has stay, but for articles, whose table is emptied first.
bool stays(const RowDifference& one) { return one.line == 0 && !are_articles(*one.table); }

// A row as it may be seen.
std::string seen(const std::string& row, const Language& language) {
  return without_passwords(&language, row);
}

std::string difference_text(const RowDifference& one, const Language& language, bool colours) {
  std::string out = one.line == 0 ? std::string(one.table->file)
                                  : fmt::format("{}:{}", one.table->file, one.line);
  if (stays(one)) {
    out += tr(": not in the backup; stays as it is\n");
  } else if (one.in_backup.empty()) {
    out += tr(": not in the backup; is taken away\n");
  } else if (one.in_register.empty()) {
    out += tr(": not in the register\n");
  } else {
    out += tr(": different\n");
  }
  if (!one.in_register.empty()) {
    out += styled(fmt::format("  - {}", shown(seen(one.in_register, language))), Style::kError,
                  colours) +
           "\n";
  }
  if (!one.in_backup.empty()) {
    out +=
        styled(fmt::format("  + {}", shown(seen(one.in_backup, language))), Style::kGood, colours) +
        "\n";
  }
  return out;
}

Json difference_json(const RowDifference& one, const Language& language) {
  Json json = {{"table", one.table->name}, {"file", one.table->file}};
  if (one.line != 0) json["line"] = one.line;
  if (!one.in_register.empty()) json["in_register"] = seen(one.in_register, language);
  if (!one.in_backup.empty()) json["in_backup"] = seen(one.in_backup, language);
  json["stays"] = stays(one);
  return json;
}

// --- The loading.

// What the library refused: file and line, with its answer.
using Refusals = std::map<std::pair<std::string, uint64_t>, std::string>;

std::string code_text(long code, const std::string& answer) {
  return fmt::format("code {}: {}", code, shown(without_trailing_blanks(answer)));
}

void write_file(const std::string& path, const std::string& text) {
  Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  if (!file.is_open() || !write_all(file.get(), text) || close(file.release()) != 0) {
    throw Failure(tr("{}: cannot be written: {}", shown(path), system_message(errno)));
  }
}

// Replaces the articles. Works in the scratch folder, with the bytes that were checked.
void load_articles(const TableBackup& articles, TableSession& session, Refusals* refusals) {
  constexpr const char* kErrors = "errors.txt";
  write_file(articles.table->file, articles.text);
  write_file(kErrors, "");
  std::string answer;
  const long code = session.library().run_line(
      fmt::format("#30 #1='UA', #2='{}', #3='{}', #4", articles.table->file, kErrors), &answer);
  if (code == 0) return;
  (*refusals)[{articles.table->file, 0}] = code_text(code, answer);
  // One message for each refused row, in their order, with its line.
  for (const BatchError& error : read_batch_errors(kErrors)) {
    (*refusals)[{articles.table->file, error.line}] = code_text(error.code, error.text);
  }
}

class Loader {
 public:
  Loader(const Backup& backup, TableSession& session, Streams& streams)
      : backup_(backup), session_(session), streams_(streams) {}

  // Loads what differs, with the key in its position for programming meanwhile. False when
  // a signal stopped it.
  bool run(const Differences& differences) {
    const InterruptWatch watch;
    Progress progress(streams_, true, differences.size());
    std::string ignored;
    session_.library().run_line("#1", &ignored);
    bool articles_differ = false;
    uint64_t done = 0;
    for (const RowDifference& one : differences) {
      if (interrupted) break;
      if (are_articles(*one.table)) {
        articles_differ = true;
      } else if (!stays(one)) {
        load(one);
      }
      progress.update(++done);
    }
    if (articles_differ && !interrupted) {
      const TableBackup& articles = backup_.tables.back();
      // The rows of the other tables are loaded by now.
      try {
        load_articles(articles, session_, &refusals_);
      } catch (const Failure& failure) {
        refusals_[{articles.table->file, 0}] = failure.what();
      }
    }
    turn_back();
    return !interrupted;
  }

  const Refusals& refusals() const { return refusals_; }
  // Empty when the key has its position again.
  const std::string& key_failure() const { return key_failure_; }

 private:
  void load(const RowDifference& one) {
    std::string answer;
    const long code = session_.library().run_line(one.in_backup, &answer);
    if (code != 0) refusals_[{one.table->file, one.line}] = code_text(code, answer);
  }

  void turn_back() {
    std::string answer;
    const long code = session_.library().run_line(
        fmt::format("#15 #1={}", session_.status().key_position), &answer);
    if (code != 0) key_failure_ = code_text(code, answer);
  }

  const Backup& backup_;
  TableSession& session_;
  Streams& streams_;
  Refusals refusals_;
  std::string key_failure_;
};

// Why a row is still different.
std::string cause_of(const RowDifference& one, const Refusals& refusals, bool stopped) {
  const auto found = refusals.find({one.table->file, one.line});
  if (found != refusals.end()) return found->second;
  const auto whole = refusals.find({one.table->file, 0});
  if (whole != refusals.end()) return whole->second;
  if (stopped) return tr("not loaded yet");
  if (one.in_backup.find("=''") != std::string::npos) {
    return tr("an empty text does not clear the one of the register");
  }
  return tr("the register keeps another value");
}

std::string rows_text(uint64_t count) {
  return tr_count(count, TR_TEXT("{} row"), TR_TEXT("{} rows"));
}

// --- The answer.

struct Outcome {
  Differences before;
  Differences after;  // as far as they were to be loaded
  Refusals refusals;
  bool stopped = false;
};

uint64_t count_to_load(const Differences& differences) {
  return static_cast<uint64_t>(std::count_if(differences.begin(), differences.end(),
                                             [](const RowDifference& one) { return !stays(one); }));
}

Json differences_json(const Differences& differences, const Language& language) {
  Json json = Json::array();
  for (const RowDifference& one : differences) json.push_back(difference_json(one, language));
  return json;
}

void show_differences(const RestoreOptions& options, const Differences& differences,
                      const Language& language, Streams& streams) {
  const bool colours = streams.output_has_colours();
  std::string text;
  for (const RowDifference& one : differences) text += difference_text(one, language, colours);
  if (options.dry_run || differences.empty()) {
    text += differences.empty()
                ? tr("{}: no row differs from the backup\n", shown(options.register_file))
                : tr("{}: {} would be restored\n", shown(options.register_file),
                     rows_text(count_to_load(differences)));
  }
  streams.output(text);
}

int show_outcome(const RestoreOptions& options, const Outcome& outcome, const Language& language,
                 Streams& streams) {
  const uint64_t left = count_to_load(outcome.after);
  const uint64_t wanted = count_to_load(outcome.before);
  const uint64_t restored = wanted - std::min(wanted, left);
  std::string text;
  if (options.json) {
    const EnglishMessages english;
    Json failed = Json::array();
    for (const RowDifference& one : outcome.after) {
      if (stays(one)) continue;
      Json json = difference_json(one, language);
      json["cause"] = cause_of(one, outcome.refusals, outcome.stopped);
      failed.push_back(std::move(json));
    }
    text = json_text({{"register", options.register_file},
                      {"differences", differences_json(outcome.before, language)},
                      {"restored_rows", restored},
                      {"not_restored", std::move(failed)}});
  } else {
    for (const RowDifference& one : outcome.after) {
      if (stays(one)) continue;
      text += tr("{}:{}: not restored: {}", one.table->file, one.line,
                 cause_of(one, outcome.refusals, outcome.stopped)) +
              "\n";
    }
    text += left == 0 ? tr("{}: {} restored\n", shown(options.register_file), rows_text(restored))
                      : tr("{}: {} restored, {} not restored\n", shown(options.register_file),
                           rows_text(restored), left);
  }
  int code = left == 0 ? kExitGood : kExitFaults;
  // What is in the register by now stays there.
  try {
    streams.output(text);
  } catch (const Failure& failure) {
    tell_error(streams,
               tr("{}: {} restored, {} not restored, and the report is missing: {}",
                  shown(options.register_file), rows_text(restored), left, failure.what()));
    code = kExitFaults;
  }
  if (outcome.stopped) {
    tell_error(streams, tr("stopped by {}", interrupt_name()));
    code = interrupt_exit();
  }
  return code;
}

void require_closed_day(const RestoreOptions& options, const Differences& differences,
                        const lorimat::RegisterStatus& status) {
  if (!status.day_open) return;
  for (const RowDifference& one : differences) {
    if (std::string_view(one.table->name) != "vat" || stays(one)) continue;
    throw Failure(
        tr("{}: a day is open, and the VAT rates differ, which only change between two days: close "
           "the day first; nothing was changed",
           shown(options.register_file)));
  }
}

}  // namespace

LoadedTables LoadTables(const std::string& folder, TableSession& session, Streams& streams) {
  require_backup_folder(folder);
  const Backup backup = read_backup(folder, session.language());
  LoadedTables loaded;
  loaded.serial_number = backup.manifest.serial_number;
  // A signal leaves no scratch folder behind.
  const InterruptWatch watch;
  const ScratchFolder scratch;
  const FolderStay stay(scratch.path());
  const Differences before = compare(backup, session, streams, true);
  Loader loader(backup, session, streams);
  if (!interrupted) loader.run(before);
  if (!loader.key_failure().empty()) loaded.not_restored.push_back(loader.key_failure());
  const Differences after = compare(backup, session, streams, true);
  loaded.stopped = interrupted != 0;
  for (const RowDifference& one : after) {
    if (stays(one)) continue;
    loaded.not_restored.push_back(tr("{}:{}: not restored: {}", one.table->file, one.line,
                                     cause_of(one, loader.refusals(), loaded.stopped)));
  }
  loaded.rows = count_to_load(before) - std::min(count_to_load(before), count_to_load(after));
  return loaded;
}

void add_restore(CLI::App& app, RestoreOptions* options) {
  CLI::App* restore = app.add_subcommand(
      "restore", tr("Compare the tables of a backup with a register and load them back"));
  restore->add_option("DIR", options->folder, tr("The folder of the backup"))->required();
  add_register_option(restore, &options->register_file);
  restore->add_flag("--dry-run", options->dry_run, tr("Only show what is different"));
  add_language_options(restore, &options->language, &options->library);
  restore->add_flag("--json", options->json, tr("Write JSON"));
  refuse_empty_texts(restore);
  restore->footer(std::string(translated(kRestoreExamples)));
}

int restore_command(const RestoreOptions& options, Streams& streams) {
  require_backup_folder(options.folder);
  require_register(options.register_file);
  TableSession session(options.register_file, options.language, options.library, streams);
  const Backup backup = read_backup(options.folder, session.language());
  if (backup.manifest.serial_number != session.status().serial_number) {
    tell_note(streams,
              tr("the backup is of {}, and this is {}", shown(backup.manifest.serial_number),
                 shown(session.status().serial_number)));
  }
  // A signal leaves no scratch folder behind, but while a reader lets the program wait.
  std::optional<InterruptWatch> watch(std::in_place);
  const ScratchFolder scratch;
  const FolderStay stay(scratch.path());
  Outcome outcome;
  outcome.before = compare(backup, session, streams, true);
  if (interrupted) {
    tell_error(streams, tr("stopped by {}; nothing was changed", interrupt_name()));
    return interrupt_exit();
  }
  watch.reset();
  const bool to_load = count_to_load(outcome.before) != 0;
  if (options.dry_run || !to_load) {
    if (options.json) {
      streams.output(
          json_text({{"register", options.register_file},
                     {"differences", differences_json(outcome.before, session.language())},
                     {"restored_rows", 0},
                     {"not_restored", Json::array()}}));
    } else {
      show_differences(options, outcome.before, session.language(), streams);
    }
    return kExitGood;
  }
  require_closed_day(options, outcome.before, session.status());
  if (!options.json) show_differences(options, outcome.before, session.language(), streams);

  watch.emplace();
  Loader loader(backup, session, streams);
  outcome.stopped = !loader.run(outcome.before);
  outcome.refusals = loader.refusals();
  if (!session.last_failure().empty()) {
    tell_error(streams, tr("the register could not be kept: {}", session.last_failure()));
  }
  if (!loader.key_failure().empty()) {
    tell_error(streams, tr("the key could not be turned back to position {}: {}",
                           session.status().key_position, loader.key_failure()));
  }
  try {
    // What was restored is to be told, whatever comes.
    outcome.after = compare(backup, session, streams, false);
  } catch (const Failure& failure) {
    for (const auto& [place, cause] : outcome.refusals) {
      const auto& [file, line] = place;
      tell_error(streams, tr("{}: not restored: {}",
                             line == 0 ? file : fmt::format("{}:{}", file, line), cause));
    }
    tell_error(streams, tr("{}: what was loaded could not be read back: {}",
                           shown(options.register_file), failure.what()));
    if (outcome.stopped) return interrupt_exit();
    return kExitFaults;
  }
  watch.reset();
  return show_outcome(options, outcome, session.language(), streams);
}

}  // namespace lorimat::console
