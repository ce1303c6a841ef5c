// The manifest of a backup: which register it is of, and what its files hold.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "console/message/json_text.h"

namespace lorimat::console {

struct BackupFile {
  std::string table;  // the name of a BackupTable
  std::string name;
  uint64_t rows = 0;
  uint64_t bytes = 0;
  std::string sha256;  // 64 hexadecimal digits
};

struct BackupManifest {
  static constexpr const char* kFileName = "manifest.json";
  static constexpr int kVersion = 1;

  std::string serial_number;
  std::string firmware_version;
  std::string made;  // "2026-11-20T11:03"
  std::vector<BackupFile> files;
};

Json ManifestJson(const BackupManifest& manifest);

// Reads the manifest of a folder. Throws Failure with file and cause: no manifest, none of a
// backup, one of a newer program, a table that is missing or unknown.
BackupManifest ReadManifest(const std::string& folder);

// The content of a file of the backup. Throws Failure when it is not as the manifest says.
std::string ReadBackupFile(const std::string& folder, const BackupFile& file);

}  // namespace lorimat::console
