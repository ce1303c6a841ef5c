// Backups of a register's tables, of registers that chance has programmed, loaded into others:
//
// - what was restored and is backed up again is the same to the byte;
// - what is not restored is told: an empty text of the header clears none;
// - a restore that troubles of the disk or the end of the process cut off leaves each row as it was
//   or as the backup has it, and nothing else is changed; what it tells of the rows is what a later
//   look finds;
// - a backup in which a byte is another is refused, and the register keeps all its rows; or the
// byte
//   says nothing, and all is restored.
#include <fcntl.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <optional>

#include "console/command/backup/table_loading.h"
#include "console/command/subcommand.h"
#include "console/device/register_device.h"
#include "console/host/batch_request.h"
#include "console/message/failure.h"
#include "day/trouble.h"
#include "properties/table_generators.h"
#include "register/inspect/register_file.h"
#include "support/temporary_folder.h"
#include "unit/register/database_dump.h"

namespace lorimat {
namespace {

namespace fs = std::filesystem;
namespace gen = rc::gen;
using console::Backup;
using console::Differences;
using console::RowDifference;
using console::TableSession;

constexpr const char* kLanguage = LORIMAT_SOURCE_DIR "/language/merkelin.ini";

int Below(int count) { return *gen::resize(rc::kNominalSize, gen::inRange(0, count)); }

// The standard streams lead to nowhere while it stands: the library writes to them.
class Quiet {
 public:
  Quiet() {
    std::fflush(nullptr);
    const int nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    for (const int fd : {STDOUT_FILENO, STDERR_FILENO}) {
      before_[fd] = dup(fd);
      dup2(nowhere, fd);
    }
    close(nowhere);
    streams_.emplace();
  }
  ~Quiet() {
    streams_.reset();
    std::fflush(nullptr);
    for (const int fd : {STDOUT_FILENO, STDERR_FILENO}) {
      dup2(before_[fd], fd);
      close(before_[fd]);
    }
  }
  Quiet(const Quiet&) = delete;
  Quiet& operator=(const Quiet&) = delete;

  console::Streams& streams() { return *streams_; }

 private:
  int before_[STDERR_FILENO + 1] = {};
  std::optional<console::Streams> streams_;
};

// No settings of an installation.
class NoRegistry {
 public:
  explicit NoRegistry(const fs::path& folder) {
    if (const char* registry = std::getenv("LORIMATRT_REGISTRY")) before_ = registry;
    setenv("LORIMATRT_REGISTRY", (folder / "none").c_str(), 1);
  }
  ~NoRegistry() {
    if (before_) {
      setenv("LORIMATRT_REGISTRY", before_->c_str(), 1);
    } else {
      unsetenv("LORIMATRT_REGISTRY");
    }
  }
  NoRegistry(const NoRegistry&) = delete;
  NoRegistry& operator=(const NoRegistry&) = delete;

 private:
  std::optional<std::string> before_;
};

void MakeRegister(const std::string& file, bool programmed, Seen* seen) {
  for (const char* beside : {"", "-wal", "-shm", "-journal"}) fs::remove(file + beside);
  RegisterSettings settings = programmed ? TablesByChance() : RegisterSettings();
  settings.file = file;
  VirtualRegister device(settings);
  if (programmed) ProgramByChance(device, seen);
}

Backup BackUp(TableSession& session) {
  Backup backup;
  for (const console::BackupTable& table : console::BackupTables()) {
    console::TableBackup one;
    one.table = &table;
    one.text = console::DumpTable(table, table.file, session.library());
    one.rows = console::DumpRows(table, table.file, one.text, session.language());
    backup.tables.push_back(std::move(one));
  }
  return backup;
}

console::DeviceRequest RequestFor(const std::string& file) {
  console::DeviceRequest request;
  request.options.emplace_back("file", file);
  request.for_tables = true;
  return request;
}

Backup BackUp(const std::string& file, Quiet& quiet) {
  TableSession session(RequestFor(file), kLanguage, "", quiet.streams(), {});
  return BackUp(session);
}

std::string Told(const Differences& differences) {
  std::string text;
  for (const RowDifference& one : differences) {
    text += std::string(one.table->file) + ":" + std::to_string(one.line) + " " + one.in_backup +
            " | " + one.in_register + "\n";
  }
  return text;
}

Trouble AnyDiskTrouble() {
  Trouble trouble;
  trouble.kind = *gen::element(TroubleKind::kDiskFull, TroubleKind::kDiskWrite,
                               TroubleKind::kDiskHalf, TroubleKind::kDiskSync, TroubleKind::kKilled,
                               TroubleKind::kKilledAtSync, TroubleKind::kPowerCut);
  const bool at_sync =
      trouble.kind == TroubleKind::kDiskSync || trouble.kind == TroubleKind::kKilledAtSync;
  trouble.place = 1 + Below(*gen::element(10, at_sync ? 40 : 400));
  trouble.lasting = Below(2) == 0;
  return trouble;
}

struct Restored {
  bool struck = false;
  bool doubtful = false;
  std::optional<Differences> after;  // that the restore tells of; none of one that was killed
  size_t to_load = 0;
};

Restored Restore(const Backup& backup, const std::string& file, const Trouble& trouble,
                 FailingDisk& disk, Quiet& quiet) {
  Restored restored;
  std::optional<TableSession> session;
  session.emplace(RequestFor(file), kLanguage, "", quiet.streams(), console::RecordOptions{});
  const console::ScratchFolder scratch;
  const console::FolderStay stay(scratch.path());
  const Differences before = console::CompareTables(backup, *session, quiet.streams(), true);
  restored.to_load = console::CountToLoad(before);
  console::TableLoader loader(backup, *session, quiet.streams());
  Arm(disk, trouble);
  loader.Run(before);
  restored.struck = HasStruck(disk, trouble);
  const bool killed = restored.struck && trouble.ends_the_process();
  if (!killed) HealAll(disk);
  restored.doubtful =
      dynamic_cast<console::RegisterDevice&>(session->device()).machine().failure().doubtful;
  if (!killed) {
    restored.after = console::CompareTables(backup, *session, quiet.streams(), false);
  }
  session.reset();
  HealAll(disk);
  return restored;
}

// An empty text clears none: such a row keeps the one of the register, and is told.
bool HasEmptyText(const RowDifference& one) {
  return one.in_backup.find("=''") != one.in_backup.npos;
}

// A row that is not as in the backup is as it was before. The header and the options are one row,
// of which each field is so.
bool IsAsBefore(const RowDifference& one, const Backup& before) {
  if (one.in_register.empty() || one.table->one_row || HasEmptyText(one)) return true;
  for (const console::TableBackup& table : before.tables) {
    if (table.table != one.table) continue;
    for (const console::DumpRow& row : table.rows) {
      if (row.text == one.in_register) return true;
    }
  }
  return false;
}

TEST(BackupProperty, WhatIsRestoredIsTheSameAndWhatIsNotIsTold) {
  const PropertyRun run = RunOf(80);
  Seen seen("restores");
  const fs::path folder = MakeTemporaryFolder();
  const NoRegistry none(folder);
  const std::string from = (folder / "from").string(), to = (folder / "to").string();
  Holds(run, [&] {
    FailingDisk disk;
    FailingDisk::Remember();
    MakeRegister(from, true, &seen);
    MakeRegister(to, Below(3) != 0, &seen);
    const Trouble trouble = Below(3) == 0 ? Trouble() : AnyDiskTrouble();
    RC_LOG() << NameOf(trouble.kind) << " at " << trouble.place << " " << trouble.lasting << "\n";
    Quiet quiet;
    const Backup backup = BackUp(from, quiet);
    const Backup before = BackUp(to, quiet);
    const Restored restored = Restore(backup, to, trouble, disk, quiet);
    TableSession session(RequestFor(to), kLanguage, "", quiet.streams(), {});
    const Backup now = BackUp(session);
    const Differences differences = console::CompareTables(backup, session, quiet.streams(), false);
    RC_LOG() << Told(differences);
    seen.Add("rows to load", static_cast<int64_t>(restored.to_load));
    for (const RowDifference& one : differences) RC_ASSERT(IsAsBefore(one, before));
    RC_ASSERT(RegisterFile(to).VerifyJournal({}).good());
    if (restored.after && !restored.doubtful) {
      seen.Add("told");
      RC_ASSERT(Told(*restored.after) == Told(differences));
    }
    if (restored.struck) {
      seen.Add(std::string("struck: ") + NameOf(trouble.kind));
      const size_t left = console::CountToLoad(differences);
      seen.Add(left == 0                 ? "struck, and all is there"
               : left < restored.to_load ? "struck, and a part is there"
                                         : "struck, and nothing is there");
      return;
    }
    // An empty text clears none, as the restore says of the row.
    for (const RowDifference& one : differences) {
      RC_ASSERT(console::Stays(one) || HasEmptyText(one));
    }
    if (console::CountToLoad(differences) != 0) {
      seen.Add("empty texts that clear nothing");
      return;
    }
    bool stays = false;
    for (size_t table = 0; table < now.tables.size(); ++table) {
      stays = stays || now.tables[table].rows.size() != backup.tables[table].rows.size();
    }
    if (stays) {
      seen.Add("rows that only the register has");
      return;
    }
    seen.Add("restored whole");
    for (size_t table = 0; table < now.tables.size(); ++table) {
      RC_ASSERT(now.tables[table].text == backup.tables[table].text);
    }
  });
  fs::remove_all(folder);
  seen.Require(run, {{"rows to load", 500},
                     {"restored whole", 10},
                     {"told", 20},
                     {"struck: killed", 2},
                     {"struck: power cut", 2},
                     {"struck, and a part is there", 10}});
}

// Runs a subcommand as a person does; its exit code, 2 for one that could not be done.
int RunCommand(const console::Subcommand& subcommand, std::vector<std::string> arguments,
               Quiet& quiet) {
  CLI::App app;
  const console::SubcommandRun command = subcommand.prepare(&app);
  arguments.insert(arguments.end(), {"--language", kLanguage});
  std::reverse(arguments.begin(), arguments.end());  // as CLI11 takes them
  try {
    app.parse(arguments);
    return command(quiet.streams());
  } catch (const console::Failure&) {
    return 2;
  }
}

TEST(BackupProperty, AChangedByteIsRefusedAndChangesNothing) {
  const PropertyRun run = RunOf(40);
  Seen seen("changed backups");
  const fs::path folder = MakeTemporaryFolder();
  const NoRegistry none(folder);
  const std::string from = (folder / "from").string(), to = (folder / "to").string();
  const fs::path tables = folder / "tables";
  Holds(run, [&] {
    const FailingDisk disk;
    fs::remove_all(tables);
    MakeRegister(from, true, &seen);
    MakeRegister(to, Below(3) != 0, &seen);
    Quiet quiet;
    RC_ASSERT(
        RunCommand(console::kBackupSubcommand, {tables.string(), "--register", from}, quiet) == 0);
    const std::string before = DumpDatabase(to);
    std::vector<fs::path> files;
    for (const auto& file : fs::directory_iterator(tables)) files.push_back(file.path());
    std::sort(files.begin(), files.end());
    const fs::path file = files[static_cast<size_t>(Below(static_cast<int>(files.size())))];
    std::ifstream in(file, std::ios::binary);
    std::string bytes(std::istreambuf_iterator<char>(in), {});
    in.close();
    if (bytes.empty()) return;
    const auto at = static_cast<size_t>(Below(static_cast<int>(bytes.size())));
    if (Below(4) == 0) {
      bytes.resize(at);
    } else {
      bytes[at] = static_cast<char>(bytes[at] ^ static_cast<char>(1 + Below(255)));
    }
    std::ofstream(file, std::ios::binary) << bytes;
    RC_LOG() << file.filename().string() << " at " << at;
    const int code =
        RunCommand(console::kRestoreSubcommand, {tables.string(), "--register", to}, quiet);
    if (code == 2) {
      seen.Add("refused");
      RC_ASSERT(DumpDatabase(to) == before);
      return;
    }
    // What the manifest says beside the tables.
    seen.Add("restored");
    RC_ASSERT(code == 0);
    RC_ASSERT(file.filename() == "manifest.json");
    const Backup backup = BackUp(from, quiet);
    const Backup now = BackUp(to, quiet);
    for (size_t table = 0; table < now.tables.size(); ++table) {
      RC_ASSERT(now.tables[table].text == backup.tables[table].text);
    }
  });
  fs::remove_all(folder);
  seen.Require(run, {{"refused", 20}});
}

}  // namespace
}  // namespace lorimat
