#include "console/command/backup/backup_manifest.h"

#include <algorithm>
#include <string_view>

#include "console/command/backup/backup_tables.h"
#include "console/message/failure.h"
#include "console/message/shown_text.h"
#include "console/message/translate.h"
#include "register/value/digest.h"

namespace lorimat::console {
namespace {

constexpr const char* kFormat = "lorimat-backup";
constexpr size_t kLargestManifest = size_t{1024} * 1024;

// What a manifest has to have. nlohmann's own messages would tell of the JSON library.
class ManifestReader {
 public:
  explicit ManifestReader(std::string path) : path_(std::move(path)) {}

  [[noreturn]] void Refuse(const std::string& cause) const {
    throw Failure(fmt::format("{}: {}", Shown(path_), cause));
  }

  const Json& Member(const Json& object, const char* name) const {
    if (!object.is_object() || !object.contains(name)) Refuse(Tr("\"{}\" is missing", name));
    return object.at(name);
  }
  std::string Text(const Json& object, const char* name) const {
    const Json& value = Member(object, name);
    if (!value.is_string()) Refuse(Tr("\"{}\" is no text", name));
    return value.get<std::string>();
  }
  uint64_t Number(const Json& object, const char* name) const {
    const Json& value = Member(object, name);
    if (!value.is_number_unsigned()) Refuse(Tr("\"{}\" is no number", name));
    return value.get<uint64_t>();
  }

 private:
  std::string path_;
};

}  // namespace

Json ManifestJson(const BackupManifest& manifest) {
  Json files = Json::array();
  for (const BackupFile& file : manifest.files) {
    files.push_back({{"table", file.table},
                     {"name", file.name},
                     {"rows", file.rows},
                     {"bytes", file.bytes},
                     {"sha256", file.sha256}});
  }
  return {{"format", kFormat},
          {"version", BackupManifest::kVersion},
          {"program", "lorimat " LORIMAT_VERSION},
          {"serial_number", manifest.serial_number},
          {"firmware_version", manifest.firmware_version},
          {"made", manifest.made},
          {"files", std::move(files)}};
}

BackupManifest ReadManifest(const std::string& folder) {
  const std::string path = folder + "/" + BackupManifest::kFileName;
  const ManifestReader reader(path);
  const Json json = Json::parse(ReadWholeFile(path, kLargestManifest), nullptr, false);
  if (json.is_discarded() || !json.is_object() || !json.contains("format") ||
      json.at("format") != kFormat) {
    reader.Refuse(Tr("is no manifest of a backup"));
  }
  const uint64_t version = reader.Number(json, "version");
  if (version != BackupManifest::kVersion) {
    reader.Refuse(Tr("the backup has version {}, and this program reads version {}", version,
                     BackupManifest::kVersion));
  }
  BackupManifest manifest;
  manifest.serial_number = reader.Text(json, "serial_number");
  manifest.firmware_version = reader.Text(json, "firmware_version");
  manifest.made = reader.Text(json, "made");
  const Json& files = reader.Member(json, "files");
  if (!files.is_array()) reader.Refuse(Tr("\"{}\" is no list", "files"));
  for (const BackupTable& table : BackupTables()) {
    // Of its own tables alone, so that no name leads out of the folder.
    const auto found = std::find_if(files.begin(), files.end(), [&](const Json& file) {
      return file.is_object() && file.contains("name") && file.at("name") == table.file;
    });
    if (found == files.end()) reader.Refuse(Tr("{} is missing in it", table.file));
    manifest.files.push_back({table.name, table.file, reader.Number(*found, "rows"),
                              reader.Number(*found, "bytes"), reader.Text(*found, "sha256")});
  }
  if (files.size() != manifest.files.size()) {
    reader.Refuse(Tr("it names files that are none of a backup"));
  }
  return manifest;
}

std::string ReadBackupFile(const std::string& folder, const BackupFile& file) {
  const std::string path = folder + "/" + file.name;
  constexpr size_t kLargest = size_t{64} * 1024 * 1024;
  std::string text = ReadWholeFile(path, kLargest);
  if (text.size() != file.bytes) {
    throw Failure(Tr("{}: is damaged: it has {} bytes, and had {} when the backup was made",
                     Shown(path), text.size(), file.bytes));
  }
  if (lorimat::Sha256(text) != file.sha256) {
    throw Failure(Tr("{}: is damaged: its SHA-256 is not the one of the manifest", Shown(path)));
  }
  return text;
}

}  // namespace lorimat::console
