// "lorimat backup": the programmable tables of a register's file, as dumps in a folder.

#include <fcntl.h>
#include <fmt/format.h>
#include <sys/stat.h>
#include <unistd.h>

#include <CLI/CLI.hpp>
#include <cerrno>
#include <cstdio>
#include <ctime>
#include <filesystem>
#include <optional>
#include <string>
#include <utility>

#include "console/command/backup/backup_manifest.h"
#include "console/command/backup/backup_tables.h"
#include "console/command/backup/table_session.h"
#include "console/command/record_options.h"
#include "console/command/subcommand.h"
#include "console/host/device_options.h"
#include "console/host/installed_files.h"
#include "console/host/register_options.h"
#include "console/message/failure.h"
#include "console/message/json_text.h"
#include "console/message/register_text.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "console/terminal/interrupt.h"
#include "console/terminal/notices.h"
#include "console/terminal/progress.h"
#include "console/terminal/remove_folder.h"
#include "register/value/digest.h"
#include "register/value/planted_link.h"

namespace lorimat::console {
namespace {

struct BackupOptions {
  DeviceOptions device;
  std::string folder;
  std::string language;
  std::string library;
  RecordOptions record;
  bool json = false;
};

constexpr std::string_view kBackupExamples = TR_TEXT(R"(Examples:
  lorimat backup tables --register shop.register
      Writes the tables into the new folder "tables".
  lorimat restore tables --register shop.register --dry-run
      Shows what of them is different now.

A backup has a dump of the command language for each table (VAT rates, header lines, options,
groups, operators, departments, subtenders, keyboards, articles) and a manifest with their
digests. Documents, totals, logos and the numbering of invoices are not in it. The folder has to
be new or empty; it appears when all of it is written.

Exit codes:
  0  the backup was made
  1  the backup was made and is whole; what failed behind it, such as its report, is told
  2  wrong use, or it could not be made; then there is none
  130  stopped by Ctrl-C; there is no backup
)");

namespace fs = std::filesystem;

// --- The folder: filled under another name, and renamed when it is whole.

[[noreturn]] void Refuse(const fs::path& path, const std::string& cause) {
  throw Failure(fmt::format("{}: {}", Shown(path.string()), cause));
}

// The errno value of what failed; 0 when the disk has it.
int SyncPath(const fs::path& path, int flags) {
  const Descriptor file(open(path.c_str(), flags | O_CLOEXEC));
  return file.is_open() && fsync(file.get()) == 0 ? 0 : errno;
}

void RequireSynced(const fs::path& path, int flags) {
  const int error = SyncPath(path, flags);
  if (error != 0) Refuse(path, Tr("cannot be written: {}", SystemMessage(error)));
}

class NewFolder {
 public:
  explicit NewFolder(const std::string& folder) {
    std::error_code error;
    target_ = fs::absolute(folder, error).lexically_normal();
    if (!error && !target_.has_filename()) target_ = target_.parent_path();
    if (error || !target_.has_filename()) Refuse(folder, Tr("is no name for a new folder"));
    const fs::file_status status = fs::status(target_, error);
    if (fs::exists(status)) {
      if (!fs::is_directory(status)) Refuse(folder, Tr("is there already, and is no folder"));
      if (lorimat::IsPlantedLink(target_.string())) Refuse(folder, SystemMessage(ELOOP));
      // A link stays, and leads to the backup.
      if (fs::is_symlink(fs::symlink_status(target_, error))) target_ = fs::canonical(target_);
      const bool empty = fs::is_empty(target_, error);
      if (error) Refuse(folder, SystemMessage(error.value()));
      if (!empty) Refuse(folder, Tr("is not empty; a backup goes into a new folder"));
    }
    part_ = target_;
    part_ += ".part";
    if (mkdir(part_.c_str(), 0777) == 0) {
      made_ = true;
      return;
    }
    const int cause = errno;
    if (cause == EEXIST) {
      Refuse(part_,
             Tr("is left of a backup that was cut off, or another one is at work; remove it"));
    }
    Refuse(part_, Tr("cannot be made: {}", SystemMessage(cause)));
  }
  ~NewFolder() {
    if (made_) RemoveFolder(part_.native());
  }
  NewFolder(const NewFolder&) = delete;
  NewFolder& operator=(const NewFolder&) = delete;

  std::string path() const { return part_.string(); }

  void Write(const std::string& name, const std::string& text) {
    const fs::path path = part_ / name;
    Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666));
    if (!file.is_open() || !WriteAll(file.get(), text) || close(file.release()) != 0) {
      Refuse(path, Tr("cannot be written: {}", SystemMessage(errno)));
    }
  }

  // All that it holds reaches the disk before the folder gets its name. Answers the errno value of
  // what failed behind that, when the folder is there, or 0.
  int Finish(const std::vector<std::string>& names) {
    for (const std::string& name : names) RequireSynced(part_ / name, O_RDONLY);
    RequireSynced(part_, O_RDONLY | O_DIRECTORY);
    if (std::rename(part_.c_str(), target_.c_str()) != 0) {
      Refuse(target_, Tr("cannot be made: {}", SystemMessage(errno)));
    }
    made_ = false;
    return SyncPath(target_.parent_path(), O_RDONLY | O_DIRECTORY);
  }

 private:
  fs::path target_;
  fs::path part_;
  bool made_ = false;
};

std::string NowForPrograms() {
  const std::time_t now = std::time(nullptr);
  std::tm time = {};
  localtime_r(&now, &time);
  return TimeForPrograms(time);
}

void Show(const BackupOptions& options, const BackupManifest& manifest, Streams& streams) {
  if (options.json) {
    streams.Output(JsonText({{"folder", options.folder}, {"manifest", ManifestJson(manifest)}}));
    return;
  }
  std::vector<std::pair<std::string, std::string>> rows;
  uint64_t count = 0;
  for (size_t i = 0; i < manifest.files.size(); ++i) {
    const uint64_t in_file = manifest.files[i].rows;
    rows.emplace_back(std::string(Translated(BackupTables()[i].text)),
                      TrCount(in_file, "{} row", "{} rows"));
    count += in_file;
  }
  streams.Output(PairedRows(rows) + Tr("{}: backup of {}, {}\n", Shown(options.folder),
                                       Shown(manifest.serial_number),
                                       TrCount(count, "{} row", "{} rows")));
}

void AddOptions(CLI::App* backup, BackupOptions* options) {
  backup->add_option("DIR", options->folder, Tr("The folder, new or empty"))->required();
  AddDeviceOptions(backup, &options->device);
  AddLanguageOptions(backup, &options->language, &options->library);
  AddRecordOptions(backup, &options->record);
  backup->add_flag("--json", options->json, Tr("Write JSON"));
}

// Returns one of ExitCode. Throws Failure or RegisterError: then, and then alone, there is
// no backup.
int RunBackup(const BackupOptions& options, Streams& streams) {
  const DeviceRequest request = RequestOf(options.device);
  RequireDevice(request);
  RequireApartFromWork(options.record, FilesOfDevice(request), DefinitionPath(options.language),
                       FindLibrary(options.library));
  // From before there is a folder until it is gone or has its name.
  std::optional<InterruptWatch> watch(std::in_place);
  NewFolder folder(options.folder);
  TableSession session(request, options.language, options.library, streams, options.record);

  BackupManifest manifest;
  manifest.serial_number = session.facts().serial_number;
  manifest.firmware_version = session.facts().firmware_version;
  manifest.made = NowForPrograms();
  std::vector<std::string> names = {BackupManifest::kFileName};
  {
    Progress progress(streams, true, BackupTables().size());
    for (const BackupTable& table : BackupTables()) {
      if (interrupted) break;
      const std::string path = folder.path() + "/" + table.file;
      const TableSession::Dump dump = session.ReadTable(table, path);
      folder.Write(table.file, dump.text);
      manifest.files.push_back(
          {table.name, table.file, dump.rows.size(), dump.text.size(), lorimat::Sha256(dump.text)});
      names.emplace_back(table.file);
      progress.Update(manifest.files.size());
    }
  }
  if (interrupted) {
    TellError(streams, Tr("stopped by {}; there is no backup", InterruptName()));
    return InterruptExit();
  }
  folder.Write(BackupManifest::kFileName, JsonText(ManifestJson(manifest)));
  // What fails once the folder is finished leaves a backup.
  int code = kExitGood;
  if (const int error = folder.Finish(names)) {
    TellWarning(streams, Tr("{}: the backup is there and whole, and its name may not have reached "
                            "the disk: {}",
                            Shown(options.folder), SystemMessage(error)));
    code = kExitFaults;
  }
  watch.reset();
  try {
    Show(options, manifest, streams);
  } catch (const Failure& failure) {
    TellError(streams, Tr("{}: the backup is there and whole, and its report is missing: {}",
                          Shown(options.folder), failure.what()));
    code = kExitFaults;
  }
  return code;
}

}  // namespace

const Subcommand kBackupSubcommand = {"backup", HelpGroup::kLookAfterRegister,
                                      TR_TEXT("Write the tables of a register into a new folder"),
                                      kBackupExamples,
                                      &Prepare<BackupOptions, AddOptions, RunBackup>};

}  // namespace lorimat::console
