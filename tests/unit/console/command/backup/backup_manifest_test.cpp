// The files of a backup as they should not be: each is refused with its name and what is wrong of
// it, and nothing is taken of it.
#include "console/command/backup/backup_manifest.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <string>

#include "console/command/backup/backup_tables.h"
#include "console/message/failure.h"
#include "register/value/digest.h"
#include "support/temporary_folder.h"

namespace lorimat::console {
namespace {

namespace fs = std::filesystem;

class BackupManifestTest : public testing::Test {
 protected:
  ~BackupManifestTest() override { fs::remove_all(folder_); }

  std::string path() const { return (folder_ / BackupManifest::kFileName).string(); }

  void Write(const std::string& text) const { std::ofstream(path(), std::ios::binary) << text; }

  // What the reader says, without the name of the file; empty when it takes it.
  std::string Refusal() const {
    try {
      ReadManifest(folder_.string());
    } catch (const Failure& failure) {
      const std::string said = failure.what();
      EXPECT_EQ(said.rfind(path() + ": ", 0), 0u) << said;
      return said.substr(said.find(": ") + 2);
    }
    return {};
  }

  std::string RefusalOf(const std::function<void(Json&)>& change) const {
    Json manifest = Good();
    change(manifest);
    Write(manifest.dump());
    return Refusal();
  }

  static Json Good() {
    BackupManifest manifest;
    manifest.serial_number = "99LRM0000001VR";
    manifest.firmware_version = "1.00";
    manifest.made = "2026-11-20T11:03";
    for (const BackupTable& table : BackupTables()) {
      manifest.files.push_back({table.name, table.file, 1, 2, std::string(64, 'a')});
    }
    return ManifestJson(manifest);
  }

  const fs::path folder_ = MakeTemporaryFolder();
};

TEST_F(BackupManifestTest, WhatWasWrittenIsReadAgain) {
  Write(Good().dump());
  const BackupManifest manifest = ReadManifest(folder_.string());
  EXPECT_EQ(manifest.serial_number, "99LRM0000001VR");
  EXPECT_EQ(manifest.made, "2026-11-20T11:03");
  ASSERT_EQ(manifest.files.size(), BackupTables().size());
  EXPECT_EQ(manifest.files[0].name, BackupTables()[0].file);
  EXPECT_EQ(manifest.files[0].bytes, 2u);
}

TEST_F(BackupManifestTest, WhatIsNoManifestIsRefused) {
  for (const char* text : {"", "{", "[]", "1", "null", "{}", "{\"format\": 1}",
                           "{\"format\": \"other\"}", "\xFF\xFE"}) {
    Write(text);
    EXPECT_EQ(Refusal(), "is no manifest of a backup") << text;
  }
}

TEST_F(BackupManifestTest, ANewerOneIsRefusedWithBothVersions) {
  EXPECT_EQ(RefusalOf([](Json& json) { json["version"] = 2; }),
            "the backup has version 2, and this program reads version 1");
}

TEST_F(BackupManifestTest, AMemberThatIsMissingOrOfAnotherKindIsNamed) {
  for (const char* name : {"serial_number", "firmware_version", "made", "version", "files"}) {
    EXPECT_EQ(RefusalOf([name](Json& json) { json.erase(name); }),
              std::string("\"") + name + "\" is missing");
  }
  for (const char* name : {"serial_number", "firmware_version", "made"}) {
    EXPECT_EQ(RefusalOf([name](Json& json) { json[name] = 7; }),
              std::string("\"") + name + "\" is no text");
  }
  for (const Json& version : {Json("1"), Json(-1), Json(1.5), Json(nullptr)}) {
    EXPECT_EQ(RefusalOf([&](Json& json) { json["version"] = version; }),
              "\"version\" is no number");
  }
  EXPECT_EQ(RefusalOf([](Json& json) { json["files"] = "all"; }), "\"files\" is no list");
}

TEST_F(BackupManifestTest, AMemberOfAFileThatIsMissingOrOfAnotherKindIsNamed) {
  for (const char* name : {"rows", "bytes", "sha256"}) {
    EXPECT_EQ(RefusalOf([name](Json& json) { json["files"].back().erase(name); }),
              std::string("\"") + name + "\" is missing");
  }
  EXPECT_EQ(RefusalOf([](Json& json) { json["files"][0]["rows"] = "1"; }), "\"rows\" is no number");
  EXPECT_EQ(RefusalOf([](Json& json) { json["files"][0]["bytes"] = -2; }),
            "\"bytes\" is no number");
  EXPECT_EQ(RefusalOf([](Json& json) { json["files"][0]["sha256"] = 2; }), "\"sha256\" is no text");
}

TEST_F(BackupManifestTest, ATableThatIsNotListedIsNamed) {
  const std::string last = BackupTables().back().file;
  const std::string missing = last + " is missing in it";
  EXPECT_EQ(RefusalOf([](Json& json) { json["files"].erase(json["files"].size() - 1); }), missing);
  EXPECT_EQ(RefusalOf([](Json& json) { json["files"].back() = "text"; }), missing);
  EXPECT_EQ(RefusalOf([](Json& json) { json["files"].back().erase("name"); }), missing);
  EXPECT_EQ(RefusalOf([](Json& json) { json["files"].back()["name"] = 4; }), missing);
  EXPECT_EQ(RefusalOf([&](Json& json) { json["files"].back()["name"] = "../" + last; }), missing);
}

TEST_F(BackupManifestTest, AFileThatIsNoneOfABackupIsRefused) {
  const char* const foreign = "it names files that are none of a backup";
  EXPECT_EQ(RefusalOf([](Json& json) { json["files"].push_back(json["files"][0]); }), foreign);
  EXPECT_EQ(RefusalOf([](Json& json) {
              json["files"].push_back({{"name", "/etc/passwd"}});
            }),
            foreign);
}

TEST_F(BackupManifestTest, WhatCannotBeReadIsToldWithTheCause) {
  EXPECT_EQ(Refusal(), "cannot be read: No such file or directory");
  fs::create_directory(path());
  EXPECT_EQ(Refusal(), "cannot be read: it is no file");
  fs::remove(path());
  // Nobody writes into this one; it is not waited for.
  ASSERT_EQ(mkfifo(path().c_str(), 0600), 0);
  EXPECT_EQ(Refusal(), "cannot be read: it is no file");
  fs::remove(path());
  Write(std::string(size_t{1024} * 1024 + 1, ' '));
  EXPECT_EQ(Refusal(), "cannot be read: it is larger than 1048576 bytes");
}

std::string FileRefusal(const fs::path& folder, const BackupFile& file) {
  try {
    ReadBackupFile(folder.string(), file);
  } catch (const Failure& failure) {
    return failure.what();
  }
  return {};
}

TEST_F(BackupManifestTest, AFileIsHeldAgainstWhatTheManifestSaysOfIt) {
  const std::string name = (folder_ / "vat.cmd").string();
  const BackupFile file = {"vat", "vat.cmd", 1, 4, Sha256("one\n")};
  const auto write = [&](const char* text) { std::ofstream(name, std::ios::binary) << text; };
  EXPECT_EQ(FileRefusal(folder_, file), name + ": cannot be read: No such file or directory");
  write("one\n");
  EXPECT_EQ(ReadBackupFile(folder_.string(), file), "one\n");
  write("one");
  EXPECT_EQ(FileRefusal(folder_, file),
            name + ": is damaged: it has 3 bytes, and had 4 when the backup was made");
  write("one\n\n");
  EXPECT_EQ(FileRefusal(folder_, file),
            name + ": is damaged: it has 5 bytes, and had 4 when the backup was made");
  write("onE\n");
  EXPECT_EQ(FileRefusal(folder_, file),
            name + ": is damaged: its SHA-256 is not the one of the manifest");
}

}  // namespace
}  // namespace lorimat::console
