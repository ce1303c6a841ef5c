#include "console/command/backup/table_loading.h"

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <optional>

#include "console/host/batch_request.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/progress.h"

namespace lorimat::console {
namespace {

bool AreArticles(const BackupTable& table) { return table.number == 0; }

LoadRefusal Answered(long code, const std::string& answer) {
  return {code, std::string(WithoutTrailingBlanks(answer))};
}

void WriteFile(const std::string& path, const std::string& text) {
  Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600));
  if (!file.is_open() || !WriteAll(file.get(), text) || close(file.release()) != 0) {
    throw Failure(Tr("{}: cannot be written: {}", Shown(path), SystemMessage(errno)));
  }
}

// Replaces the articles. Works in the scratch folder, with the bytes that were checked.
void LoadArticles(const TableBackup& articles, TableSession& session, RowRefusals* refusals) {
  constexpr const char* kErrors = "errors.txt";
  WriteFile(articles.table->file, articles.text);
  WriteFile(kErrors, "");
  std::string answer;
  const long code = session.library().RunLine(
      fmt::format("#30 #1='UA', #2='{}', #3='{}', #4", articles.table->file, kErrors), &answer);
  if (code == 0) return;
  (*refusals)[{articles.table->file, 0}] = Answered(code, answer);
  // One message for each refused row, in their order, with its line.
  for (const BatchError& error : ReadBatchErrors(kErrors)) {
    (*refusals)[{articles.table->file, error.line}] = Answered(error.code, error.text);
  }
}

}  // namespace

std::string LoadRefusal::text() const {
  return code == 0 ? answer : Tr("code {}: {}", code, answer);
}

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

Differences CompareTables(const Backup& backup, TableSession& session, Streams& streams,
                          bool stops) {
  Differences all;
  Progress progress(streams, true, backup.tables.size());
  uint64_t done = 0;
  for (const TableBackup& one : backup.tables) {
    if (stops && interrupted) break;
    const auto dump = session.ReadTable(*one.table, one.table->file);
    const Differences some = CompareRows(*one.table, one.rows, dump.rows);
    all.insert(all.end(), some.begin(), some.end());
    progress.Update(++done);
  }
  return all;
}

bool Stays(const RowDifference& one) { return one.line == 0 && !AreArticles(*one.table); }

uint64_t CountToLoad(const Differences& differences) {
  return static_cast<uint64_t>(std::count_if(differences.begin(), differences.end(),
                                             [](const RowDifference& one) { return !Stays(one); }));
}

bool TableLoader::Run(const Differences& differences) {
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
      refusals_[{articles.table->file, 0}] = {.answer = failure.what()};
    }
  }
  TurnBack();
  return !interrupted;
}

void TableLoader::Load(const RowDifference& one) {
  std::string answer;
  const long code = session_.library().RunLine(one.in_backup, &answer);
  if (code != 0) refusals_[{one.table->file, one.line}] = Answered(code, answer);
}

void TableLoader::TurnBack() {
  // Of a device that does not tell where its key was, ENDPROG is the way back.
  const std::optional<int>& key = session_.facts().key_position;
  std::string answer;
  const long code =
      session_.library().RunLine(key ? fmt::format("#15 #1={}", *key) : "#2", &answer);
  if (code != 0) key_failure_ = Answered(code, answer);
}

std::string CauseOf(const RowDifference& one, const RowRefusals& refusals, bool stopped) {
  const auto found = refusals.find({one.table->file, one.line});
  if (found != refusals.end()) return found->second.text();
  const auto whole = refusals.find({one.table->file, 0});
  if (whole != refusals.end()) return whole->second.text();
  if (stopped) return Tr("not loaded yet");
  if (one.in_backup.find("=''") != std::string::npos) {
    return Tr("an empty text does not clear the one of the register");
  }
  return Tr("the register keeps another value");
}

LoadedTables LoadTables(const std::string& folder, TableSession& session, Streams& streams) {
  RequireBackupFolder(folder);
  const Backup backup = ReadBackup(folder, session.language());
  LoadedTables loaded;
  loaded.serial_number = backup.manifest.serial_number;
  // A signal leaves no scratch folder behind.
  const InterruptWatch watch;
  const ScratchFolder scratch;
  const FolderStay stay(scratch.path());
  const Differences before = CompareTables(backup, session, streams, true);
  TableLoader loader(backup, session, streams);
  if (!interrupted) loader.Run(before);
  if (!loader.key_failure().empty()) loaded.not_restored.push_back(Shown(loader.key_failure()));
  const Differences after = CompareTables(backup, session, streams, true);
  loaded.stopped = interrupted != 0;
  for (const RowDifference& one : after) {
    if (Stays(one)) continue;
    loaded.not_restored.push_back(Tr("{}:{}: not restored: {}", one.table->file, one.line,
                                     Shown(CauseOf(one, loader.refusals(), loaded.stopped))));
  }
  loaded.rows = CountToLoad(before) - std::min(CountToLoad(before), CountToLoad(after));
  return loaded;
}

}  // namespace lorimat::console
