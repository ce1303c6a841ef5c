// "backup": the tables of a register, written as dumps.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "backup_shop.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

namespace {

class BackupCommand : public BackupShop {};

}  // namespace

TEST_F(BackupCommand, WritesADumpForEachTableAndAManifest) {
  const ProgramRun run = shop_.Run({"backup", tables()});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_THAT(run.output, StartsWith("VAT rates     5 rows\n"
                                     "header lines  1 row\n"
                                     "options       1 row\n"
                                     "groups        10 rows\n"
                                     "operators     10 rows\n"
                                     "departments   40 rows\n"
                                     "subtenders    20 rows\n"));
  EXPECT_THAT(run.output, HasSubstr("articles      2 rows\n"));
  EXPECT_THAT(run.output, HasSubstr("\n" + tables() + ": backup of 99LRM0000001VR, "));
  std::vector<std::string> names;
  for (const auto& entry : fs::directory_iterator(tables()))
    names.push_back(entry.path().filename());
  EXPECT_THAT(names, UnorderedElementsAre("manifest.json", "vat.txt", "header.txt", "options.txt",
                                          "groups.txt", "operators.txt", "departments.txt",
                                          "subtenders.txt", "keyboards.txt", "articles.txt"));
  EXPECT_EQ(InTables("vat.txt"),
            "PROG INIZIO\r\nPIVA IVA=1, ALIQ=21.00\r\nPIVA IVA=2, ALIQ=10.00\r\n"
            "PIVA IVA=3, ALIQ=5.00\r\nPIVA IVA=4, ALIQ=4.00\r\nPIVA IVA=5, ALIQ=0.00\r\n"
            "ENDPROG\r\n");
  EXPECT_THAT(InTables("departments.txt"),
              StartsWith("PROG INIZIO\r\nPREP REP=1, DES='L''ORO \"FINO\"', LIMITE=100.00, "));
  EXPECT_THAT(InTables("keyboards.txt"),
              HasSubstr("\nPTAST POS=42, COD=MACRO01, MACRO='N1 REP01 ', TIPO=0\r\n"));
  EXPECT_EQ(InTables("articles.txt"), kArticles);

  const nlohmann::json manifest = nlohmann::json::parse(InTables("manifest.json"));
  EXPECT_EQ(manifest["format"], "lorimat-backup");
  EXPECT_EQ(manifest["version"], 1);
  EXPECT_EQ(manifest["serial_number"], "99LRM0000001VR");
  EXPECT_THAT(manifest["made"].get<std::string>(),
              MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}"));
  ASSERT_EQ(manifest["files"].size(), 9u);
  EXPECT_EQ(manifest["files"][0]["name"], "vat.txt");
  EXPECT_EQ(manifest["files"][0]["rows"], 5);
  // 13 bytes, five lines of 24, 24, 23, 23 and 23, and 9 bytes at the end.
  EXPECT_EQ(manifest["files"][0]["bytes"], 13 + 24 + 24 + 23 + 23 + 23 + 9);
  // sha256sum of the articles above.
  EXPECT_EQ(manifest["files"][8]["sha256"],
            "b66a4b6a9e03622623a3a4e0d9c3909ea868af40702c37a58661861cfa6ade64");
}

TEST_F(BackupCommand, GoesIntoAnEmptyFolderAndNoOther) {
  fs::create_directory(tables());
  EXPECT_EQ(shop_.Run({"backup", tables() + "/"}).exit_code, 0);
  const std::string manifest = InTables("manifest.json");
  const ProgramRun again = shop_.Run({"backup", tables()});
  EXPECT_EQ(again.exit_code, 2);
  EXPECT_THAT(again.output, IsEmpty());
  EXPECT_EQ(again.errors,
            "lorimat: " + tables() + ": is not empty; a backup goes into a new folder\n");
  EXPECT_EQ(InTables("manifest.json"), manifest);
  const std::string file = shop_.folder().Write("file", "mine");
  EXPECT_THAT(shop_.Run({"backup", file}).errors, HasSubstr("is there already, and is no folder"));
  EXPECT_EQ(shop_.folder().Read("file"), "mine");
  const ProgramRun missing = shop_.Run({"backup", shop_.folder().Path("none/tables")});
  EXPECT_EQ(missing.exit_code, 2);
  EXPECT_THAT(missing.errors, HasSubstr("none/tables.part: cannot be made: No such file"));
}

TEST_F(BackupCommand, GoesWhereALinkToAnEmptyFolderLeads) {
  const std::string real = shop_.folder().Path("real");
  const std::string link = shop_.folder().Path("link");
  fs::create_directory(real);
  fs::create_symlink("real", link);
  const ProgramRun run = shop_.Run({"backup", link});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_TRUE(fs::is_symlink(link));
  EXPECT_TRUE(fs::exists(real + "/manifest.json"));
  EXPECT_FALSE(fs::exists(link + ".part"));
  EXPECT_EQ(shop_.Run({"restore", link}).exit_code, 0);
}

TEST_F(BackupCommand, WhatACutOffBackupLeftIsNamedAndStays) {
  fs::create_directory(tables() + ".part");
  const ProgramRun run = shop_.Run({"backup", tables()});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr(tables() + ".part: is left of a backup that was cut off"));
  EXPECT_TRUE(fs::exists(tables() + ".part"));
  EXPECT_FALSE(fs::exists(tables()));
}

TEST_F(BackupCommand, CapitalsAndBlanksMayStandInTheFoldersName) {
  const std::string folder = shop_.folder().Path("My Tables; 'x'");
  ASSERT_EQ(shop_.Run({"backup", folder}).exit_code, 0);
  EXPECT_TRUE(fs::exists(folder + "/vat.txt"));
  const ProgramRun restored = shop_.Run({"restore", folder});
  EXPECT_EQ(restored.exit_code, 0) << restored.errors;
}

TEST_F(BackupCommand, NamesRelativeToTheFolderOfTheStart) {
  const ProgramRun run = RunConsole({"backup", "tables", "--register", "shop.register"},
                                    {.folder = shop_.folder().path()});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  const ProgramRun restored = RunConsole({"restore", "./tables", "--register", "shop.register"},
                                         {.folder = shop_.folder().path()});
  EXPECT_EQ(restored.exit_code, 0) << restored.errors;
  EXPECT_EQ(restored.output, "shop.register: no row differs from the backup\n");
}

TEST_F(BackupCommand, AFailingDumpLeavesNoFolder) {
  // A definition file without the words that programme departments.
  std::string words = ReadFile(SourceFile("language/merkelin.ini"));
  const size_t at = words.find("PREP");
  ASSERT_NE(at, words.npos);
  words.replace(at, 4, "    ");
  const std::string language = shop_.folder().Write("words.ini", words);
  const ProgramRun run = shop_.Run({"backup", tables(), "--language", language});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(run.errors, HasSubstr("departments.txt:2: "));
  EXPECT_FALSE(fs::exists(tables()));
  EXPECT_FALSE(fs::exists(tables() + ".part"));
}

TEST_F(BackupCommand, ALimitOfFileSizesLeavesNoBackupAndIsNamed) {
  std::string rows;
  for (int number = 0; number < 2000; ++number) {
    rows += "'" + std::to_string(9000 + number) + "','A CHE NON FINISCE',4,1.50\r\n";
  }
  const std::string articles = shop_.folder().Write("rows", rows);
  ASSERT_EQ(shop_.Sell("EMLINK CMD='UA', FILE='" + articles + "', AZZERA\n").exit_code, 0);
  // Room for the small tables, and none for the articles; and not even for the index of the
  // register's log, which takes 32 KB. sh counts in blocks of 512 bytes.
  for (const auto& [limit, cause] : std::vector<std::pair<std::string, std::string>>{
           {"64", tables() + ".part/articles.txt: cannot be written: File too large"},
           {"0", shop_.file() + ": cannot be read or written to its end: File too large"}}) {
    for (const char* signal : {"trap '' XFSZ; ", ""}) {
      const ProgramRun run =
          RunProgram("/bin/sh", {"-c", signal + ("ulimit -f " + limit) + "; exec " +
                                           std::string(LORIMAT_BIN_FOLDER) + "/lorimat backup " +
                                           tables() + " --register " + shop_.file()});
      EXPECT_EQ(run.exit_code, 2);
      EXPECT_THAT(run.errors, MatchesRegex("lorimat: " + cause + "\n"));
      EXPECT_FALSE(fs::exists(tables()));
      EXPECT_FALSE(fs::exists(tables() + ".part"));
    }
  }
}

// On a small disk of its own, which goes with the program.
TEST_F(BackupCommand, AFullDiskLeavesNoBackupAndIsNamed) {
  const std::string disk = shop_.folder().Path("disk");
  fs::create_directory(disk);
  const std::string mount = "mount -t tmpfs -o size=16k tmpfs " + disk;
  const std::vector<std::string> namespaces = {"-r", "-m", "/bin/sh", "-c"};
  const auto on_disk = [&](const std::string& command) {
    std::vector<std::string> arguments = namespaces;
    arguments.push_back(mount + " && " + command);
    return RunProgram("/usr/bin/unshare", arguments);
  };
  if (on_disk("true").exit_code != 0) GTEST_SKIP() << "no mount without root here";
  const ProgramRun run =
      on_disk(std::string(LORIMAT_BIN_FOLDER) + "/lorimat backup " + disk + "/tables --register " +
              shop_.file() + "; code=$?; ls -A " + disk + "; exit $code");
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, MatchesRegex("lorimat: " + disk +
                                       "/tables.part/[a-z]+.txt: cannot be written: "
                                       "No space left on device\n"));
  EXPECT_THAT(run.output, IsEmpty());
}

TEST_F(BackupCommand, AnOpenDocumentIsLeftAloneAndNamed) {
  BackUp();
  ASSERT_EQ(shop_.Sell("VEND REP=1, PRE=1.50\n").exit_code, 0);
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"restore", tables()}, {"backup", shop_.folder().Path("more")}}) {
    const ProgramRun run = shop_.Run(arguments);
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, HasSubstr(shop_.file() + ": holds a receipt of 15/03/2024 10:30, "
                                                     "1 line, subtotal 1,50, not paid"));
  }
  const nlohmann::json status = nlohmann::json::parse(shop_.Run({"status", "--json"}).output);
  EXPECT_EQ(status["open_document"]["lines"], 1);
  EXPECT_FALSE(fs::exists(shop_.folder().Path("more")));
  EXPECT_FALSE(fs::exists(shop_.folder().Path("more.part")));
}

TEST_F(BackupCommand, FaultsThatWaitAreNotUsedUp) {
  ASSERT_EQ(shop_.Run({"fault", "off-line"}).exit_code, 0);
  const ProgramRun run = shop_.Run({"backup", tables()});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("\"lorimat fault --clear\""));
  EXPECT_THAT(shop_.Run({"fault"}).output, HasSubstr("off-line"));
  EXPECT_FALSE(fs::exists(tables()));
}

TEST_F(BackupCommand, ATerminalSeesHowFarItIs) {
  const ProgramRun run = shop_.Run({"backup", tables()}, {.errors_to_terminal = true});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, HasSubstr("100%"));
}

TEST_F(BackupCommand, SpeaksToPrograms) {
  const ProgramRun run = shop_.Run({"backup", tables(), "--json"});
  EXPECT_EQ(run.exit_code, 0);
  const nlohmann::json json = nlohmann::json::parse(run.output);
  EXPECT_EQ(json["folder"], tables());
  EXPECT_EQ(json["manifest"], nlohmann::json::parse(InTables("manifest.json")));
}

TEST_F(BackupCommand, ReadsTheRegisterAsItStandsAndLeavesItSo) {
  BackUp();
  ASSERT_EQ(shop_.Run({"restore", tables(), "--dry-run"}).exit_code, 0);
  const nlohmann::json status = nlohmann::json::parse(shop_.Run({"status", "--json"}).output);
  EXPECT_EQ(status["documents"], 0);
  EXPECT_EQ(status["key_position"], 1);
  EXPECT_THAT(shop_.Run({"paper"}).output, IsEmpty());
}

TEST_F(BackupCommand, AReportThatCannotBeWrittenLeavesTheBackup) {
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"backup", tables()}, {"backup", tables(), "--json"}}) {
    const ProgramRun run = shop_.Run(arguments, {.output_file = "/dev/full"});
    EXPECT_EQ(run.exit_code, 1);
    EXPECT_EQ(run.errors, "lorimat: " + tables() +
                              ": the backup is there and whole, and its report is missing: cannot "
                              "write to standard output: No space left on device\n");
    const ProgramRun restored = shop_.Run({"restore", tables()});
    EXPECT_EQ(restored.exit_code, 0) << restored.errors;
    EXPECT_EQ(restored.output, shop_.file() + ": no row differs from the backup\n");
    fs::remove_all(tables());
  }
}

TEST_F(BackupCommand, AFolderThatCannotBeReadStillTakesTheBackup) {
  // The name of the backup goes into a folder that cannot be opened to wait for the disk.
  const std::string inbox = shop_.folder().Path("inbox");
  fs::create_directory(inbox);
  fs::permissions(shop_.folder().path(), fs::perms::all);
  fs::permissions(shop_.file(), fs::perms::all);
  fs::permissions(inbox, fs::perms(0333));
  const ProgramRun run = shop_.Run({"backup", inbox + "/tables"}, {.as_nobody = true});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.errors, "lorimat: warning: " + inbox +
                            "/tables: the backup is there and whole, and its name may not have "
                            "reached the disk: Permission denied\n");
  EXPECT_THAT(run.output, HasSubstr(inbox + "/tables: backup of 99LRM0000001VR, "));
  fs::permissions(inbox, fs::perms::all);
  EXPECT_EQ(shop_.Run({"restore", inbox + "/tables"}).exit_code, 0);
}

TEST_F(BackupCommand, ARegisterThatCannotBeWrittenIsRefused) {
  // The library dumps the tables of a register at work.
  fs::permissions(shop_.folder().path(), fs::perms::all);
  fs::permissions(shop_.file(), fs::perms(0444));
  const ProgramRun run = shop_.Run({"backup", tables()}, {.as_nobody = true});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors, "lorimat: " + shop_.file() + ": cannot be written: Permission denied\n");
  EXPECT_FALSE(fs::exists(tables()));
  EXPECT_FALSE(fs::exists(tables() + ".part"));
}
