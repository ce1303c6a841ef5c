// "backup" and "restore": the tables of a register, written as dumps and loaded back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <algorithm>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "shop.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;
using testing::StartsWith;
using testing::UnorderedElementsAre;

namespace fs = std::filesystem;

namespace {

const char* const kProgramming =
    "PROG\n"
    "PREP REP=1, DES='L''ORO \"FINO\"', LIMITE=100.00, IVA=2, PRE=12.50, GRU=3\n"
    "PIVA IVA=1, ALIQ=21\n"
    "PINT RIGA1='BAR ''SPORT'''\n"
    "POPZ CASSETTO=SI\n"
    "PGRU GRU=2, DES='L''ORTO'\n"
    "POPER OPE=3, DES='ANNA', PASS='1234'\n"
    "PSTEN ST=1, DES='BUONO', FLAG=1\n"
    "PTAST POS=42, COD=MACRO01, MACRO='N1 REP01 '\n"
    "ENDPROG\n";

const char* const kArticles = "'8001','LATTE',4,1.50\r\n'8002','PANE',4,0.00\r\n";

// A shop with every table programmed, and a backup of it.
class BackupCommand : public testing::Test {
 protected:
  void SetUp() override {
    const std::string articles = shop_.folder().write("rows", kArticles);
    ASSERT_EQ(
        shop_.sell(std::string(kProgramming) + "EMLINK CMD='UA', FILE='" + articles + "', AZZERA\n")
            .exit_code,
        0);
    fs::remove(articles);
  }

  std::string tables() const { return shop_.folder().path("tables"); }
  std::string in_tables(const std::string& name) const {
    return shop_.folder().read("tables/" + name);
  }
  // The backup of the shop, made in SetUp's state.
  void back_up() const {
    const ProgramRun run = shop_.run({"backup", tables()});
    ASSERT_EQ(run.exit_code, 0) << run.errors;
  }
  // Replaces a file of the backup, and tells the manifest.
  void forge(const std::string& name, const std::string& content) const {
    nlohmann::json manifest = nlohmann::json::parse(in_tables("manifest.json"));
    const std::string path = shop_.folder().write("tables/" + name, content);
    for (nlohmann::json& file : manifest["files"]) {
      if (file["name"] != name) continue;
      file["bytes"] = content.size();
      file["sha256"] = run_program("/usr/bin/sha256sum", {path}).output.substr(0, 64);
    }
    shop_.folder().write("tables/manifest.json", manifest.dump());
  }
  // A register fresh from the factory.
  static void make(const Shop& shop) { ASSERT_EQ(shop.sell("").exit_code, 0); }

  Shop shop_;
};

}  // namespace

TEST_F(BackupCommand, WritesADumpForEachTableAndAManifest) {
  const ProgramRun run = shop_.run({"backup", tables()});
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
  EXPECT_EQ(in_tables("vat.txt"),
            "PROG INIZIO\r\nPIVA IVA=1, ALIQ=21.00\r\nPIVA IVA=2, ALIQ=10.00\r\n"
            "PIVA IVA=3, ALIQ=5.00\r\nPIVA IVA=4, ALIQ=4.00\r\nPIVA IVA=5, ALIQ=0.00\r\n"
            "ENDPROG\r\n");
  EXPECT_THAT(in_tables("departments.txt"),
              StartsWith("PROG INIZIO\r\nPREP REP=1, DES='L''ORO \"FINO\"', LIMITE=100.00, "));
  EXPECT_THAT(in_tables("keyboards.txt"),
              HasSubstr("\nPTAST POS=42, COD=MACRO01, MACRO='N1 REP01 ', TIPO=0\r\n"));
  EXPECT_EQ(in_tables("articles.txt"), kArticles);

  const nlohmann::json manifest = nlohmann::json::parse(in_tables("manifest.json"));
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
  EXPECT_EQ(shop_.run({"backup", tables() + "/"}).exit_code, 0);
  const std::string manifest = in_tables("manifest.json");
  const ProgramRun again = shop_.run({"backup", tables()});
  EXPECT_EQ(again.exit_code, 2);
  EXPECT_THAT(again.output, IsEmpty());
  EXPECT_EQ(again.errors,
            "lorimat: " + tables() + ": is not empty; a backup goes into a new folder\n");
  EXPECT_EQ(in_tables("manifest.json"), manifest);
  const std::string file = shop_.folder().write("file", "mine");
  EXPECT_THAT(shop_.run({"backup", file}).errors, HasSubstr("is there already, and is no folder"));
  EXPECT_EQ(shop_.folder().read("file"), "mine");
  const ProgramRun missing = shop_.run({"backup", shop_.folder().path("none/tables")});
  EXPECT_EQ(missing.exit_code, 2);
  EXPECT_THAT(missing.errors, HasSubstr("none/tables.part: cannot be made: No such file"));
}

TEST_F(BackupCommand, WhatACutOffBackupLeftIsNamedAndStays) {
  fs::create_directory(tables() + ".part");
  const ProgramRun run = shop_.run({"backup", tables()});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr(tables() + ".part: is left of a backup that was cut off"));
  EXPECT_TRUE(fs::exists(tables() + ".part"));
  EXPECT_FALSE(fs::exists(tables()));
}

TEST_F(BackupCommand, CapitalsAndBlanksMayStandInTheFoldersName) {
  const std::string folder = shop_.folder().path("My Tables; 'x'");
  ASSERT_EQ(shop_.run({"backup", folder}).exit_code, 0);
  EXPECT_TRUE(fs::exists(folder + "/vat.txt"));
  const ProgramRun restored = shop_.run({"restore", folder});
  EXPECT_EQ(restored.exit_code, 0) << restored.errors;
}

TEST_F(BackupCommand, NamesRelativeToTheFolderOfTheStart) {
  const ProgramRun run = run_console({"backup", "tables", "--register", "shop.register"},
                                     {.folder = shop_.folder().path()});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  const ProgramRun restored = run_console({"restore", "./tables", "--register", "shop.register"},
                                          {.folder = shop_.folder().path()});
  EXPECT_EQ(restored.exit_code, 0) << restored.errors;
  EXPECT_EQ(restored.output, "shop.register: no row differs from the backup\n");
}

TEST_F(BackupCommand, AFailingDumpLeavesNoFolder) {
  // A definition file without the words that programme departments.
  std::string words = read_file(source_file("language/merkelin.ini"));
  const size_t at = words.find("PREP");
  ASSERT_NE(at, words.npos);
  words.replace(at, 4, "    ");
  const std::string language = shop_.folder().write("words.ini", words);
  const ProgramRun run = shop_.run({"backup", tables(), "--language", language});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(run.errors, HasSubstr("departments.txt:2: "));
  EXPECT_FALSE(fs::exists(tables()));
  EXPECT_FALSE(fs::exists(tables() + ".part"));
}

TEST_F(BackupCommand, AFullDiskLeavesNoBackup) {
  // The largest file that this program may write stands in for the disk: room for the small
  // tables, and none for the keyboards. dash counts in blocks of 512 bytes.
  const ProgramRun run = run_program(
      "/bin/sh", {"-c", "trap '' XFSZ; ulimit -f 8; exec " + std::string(LORIMAT_BIN_FOLDER) +
                            "/lorimat backup " + tables() + " --register " + shop_.file()});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr(".txt"));
  EXPECT_FALSE(fs::exists(tables()));
  EXPECT_FALSE(fs::exists(tables() + ".part"));
}

TEST_F(BackupCommand, ATableThatIsAsItWasNeedsNothing) {
  back_up();
  const ProgramRun run = shop_.run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.output, shop_.file() + ": no row differs from the backup\n");
  EXPECT_THAT(run.errors, IsEmpty());
}

TEST_F(BackupCommand, ADryRunShowsTheDifferencesAndChangesNothing) {
  back_up();
  ASSERT_EQ(shop_.sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n").exit_code, 0);
  const ProgramRun run = shop_.run({"restore", tables(), "--dry-run"});
  EXPECT_EQ(run.exit_code, 0);
  // The groups' dump: a line around them, then group 1, then group 2.
  EXPECT_EQ(run.output,
            "groups.txt:3: different\n"
            "  - PGRU GRU=2, DES='FRUTTA'\n"
            "  + PGRU GRU=2, DES='L''ORTO'\n" +
                shop_.file() + ": 1 row would be restored\n");
  EXPECT_EQ(shop_.run({"restore", tables(), "--dry-run"}).output, run.output);
  const nlohmann::json json =
      nlohmann::json::parse(shop_.run({"restore", tables(), "--dry-run", "--json"}).output);
  EXPECT_EQ(json["differences"],
            nlohmann::json::array({{{"table", "groups"},
                                    {"file", "groups.txt"},
                                    {"line", 3},
                                    {"in_register", "PGRU GRU=2, DES='FRUTTA'"},
                                    {"in_backup", "PGRU GRU=2, DES='L''ORTO'"},
                                    {"stays", false}}}));
  EXPECT_EQ(json["restored_rows"], 0);
}

TEST_F(BackupCommand, RestoresWhatWasChanged) {
  back_up();
  ASSERT_EQ(shop_
                .sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nPREP REP=1, PRE=1.00\nENDPROG\n"
                      "VEND REP=1\nCHIU\n")
                .exit_code,
            0);
  const ProgramRun run = shop_.run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, AllOf(HasSubstr("groups.txt:3: different\n"),
                                HasSubstr("departments.txt:2: different\n"),
                                EndsWith(shop_.file() + ": 2 rows restored\n")));
  EXPECT_THAT(shop_.sell("VEND REP=1\nCHIU\n").output,
              HasSubstr("L'ORO \"FINO\"               10%       12,50\n"));
  EXPECT_EQ(shop_.run({"restore", tables()}).output,
            shop_.file() + ": no row differs from the backup\n");
}

TEST_F(BackupCommand, RestoresAllTablesIntoAnotherRegister) {
  back_up();
  const Shop other;
  make(other);
  const ProgramRun run = other.run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 0) << run.output << run.errors;
  // One row of each table, two articles and the key.
  EXPECT_THAT(run.output, EndsWith(other.file() + ": 10 rows restored\n"));
  EXPECT_THAT(run.output, HasSubstr("articles.txt:1: not in the register\n"
                                    "  + '8001','LATTE',4,1.50\n"));
  const std::string again = other.folder().path("tables");
  ASSERT_EQ(other.run({"backup", again}).exit_code, 0);
  for (const auto& entry : fs::directory_iterator(tables())) {
    const std::string name = entry.path().filename();
    if (name == "manifest.json") continue;
    EXPECT_EQ(other.folder().read("tables/" + name), in_tables(name)) << name;
  }
  // The key is where it was, and the register sells.
  const ProgramRun sale = other.sell("VEND ART='8001'\nCHIU\n");
  EXPECT_EQ(sale.exit_code, 0);
  EXPECT_THAT(sale.output, HasSubstr("             BAR 'SPORT'\n"));
  EXPECT_THAT(sale.output, HasSubstr("LATTE                       4%        1,50\n"));
}

TEST_F(BackupCommand, ArticlesThatTheBackupDoesNotHaveAreTakenAway) {
  back_up();
  const std::string rows = shop_.folder().write("rows", "'8003','VINO',1,9.00\r\n");
  ASSERT_EQ(shop_.sell("EMLINK CMD='UA', FILE='" + rows + "'\n").exit_code, 0);
  const ProgramRun run = shop_.run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output,
            "articles.txt: not in the backup; is taken away\n  - '8003','VINO',1,9.00\n" +
                shop_.file() + ": 1 row restored\n");
  EXPECT_NE(shop_.sell("VEND ART='8003'\nRESPRN\n").exit_code, 0);
  EXPECT_EQ(shop_.sell("VEND ART='8001'\nCHIU\n").exit_code, 0);
}

TEST_F(BackupCommand, TheKeyGoesBackToItsPosition) {
  back_up();
  ASSERT_EQ(shop_.sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nCHIAVE POS=3\n").exit_code, 0);
  ASSERT_EQ(shop_.run({"restore", tables()}).exit_code, 0);
  EXPECT_EQ(nlohmann::json::parse(shop_.run({"status", "--json"}).output)["key_position"], 3);
}

TEST_F(BackupCommand, WhatCannotBeRestoredIsNamedWithLineAndCause) {
  // Header line 5 is empty in the backup, and an empty text clears nothing.
  back_up();
  ASSERT_EQ(shop_.sell("PINT RIGA5='AUGURI'\nPGRU GRU=2, DES='FRUTTA'\n").exit_code, 0);
  const ProgramRun run = shop_.run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output,
              EndsWith("header.txt:2: not restored: an empty text does not clear the one of the "
                       "register\n" +
                       shop_.file() + ": 1 row restored, 1 not restored\n"));
  const ProgramRun json = shop_.run({"restore", tables(), "--json"});
  EXPECT_EQ(json.exit_code, 1);
  const nlohmann::json answer = nlohmann::json::parse(json.output);
  ASSERT_EQ(answer["not_restored"].size(), 1u);
  EXPECT_EQ(answer["not_restored"][0]["file"], "header.txt");
  EXPECT_EQ(answer["not_restored"][0]["line"], 2);
  EXPECT_EQ(answer["restored_rows"], 0);
}

TEST_F(BackupCommand, ARefusedLineIsNamedWithTheAnswerToIt) {
  back_up();
  std::string groups = in_tables("groups.txt");
  const size_t at = groups.find("L''ORTO");
  ASSERT_NE(at, groups.npos);
  groups.replace(at, 7, std::string(33, 'x'));  // a group's text has 32 characters at most
  forge("groups.txt", groups);
  const ProgramRun run = shop_.run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 1);
  // 222, bad length, passed twice.
  EXPECT_THAT(run.output, HasSubstr("groups.txt:3: not restored: code 1246: ERROR 4/222 : "));
  EXPECT_THAT(run.output, EndsWith(": 0 rows restored, 1 not restored\n"));
}

TEST_F(BackupCommand, RefusedArticlesAreNamedAndTheOthersGoIn) {
  back_up();
  // No register has a department 41.
  forge("articles.txt",
        "'8001','LATTE',4,1.50\r\n'8009','VINO',41,5.00\r\n'8010','OLIO',1,9.00\r\n");
  const ProgramRun run = shop_.run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, HasSubstr("articles.txt: not in the backup; is taken away\n"
                                    "  - '8002','PANE',4,0.00\n"));
  // 217, bad VAT entry or department.
  EXPECT_THAT(run.output, HasSubstr("articles.txt:2: not restored: code 1241: ERROR 4/217 : "));
  EXPECT_THAT(run.output, EndsWith(": 2 rows restored, 1 not restored\n"));
  EXPECT_EQ(shop_.sell("VEND ART='8010'\nVEND ART='8001'\nCHIU\n").exit_code, 0);
}

TEST_F(BackupCommand, DumpsThatAreNoneAreRefusedWithTheirLine) {
  back_up();
  ASSERT_EQ(shop_.sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n").exit_code, 0);
  const std::string groups = in_tables("groups.txt");
  const struct {
    std::string content;
    const char* message;
  } cases[] = {
      {"", "groups.txt:1: this is not the first line of a dump"},
      {groups.substr(0, groups.rfind("ENDPROG")), "groups.txt:11: this is not the last line"},
      {groups.substr(groups.find("PGRU")), "groups.txt:1: this is not the first line of a dump"},
      {groups.substr(0, groups.size() - 2), "groups.txt:12: the line has no end"},
      {"PROG INIZIO\r\n" + std::string(5000, 'x') + "\r\nENDPROG\r\n", "groups.txt:2: "},
      {"PROG INIZIO\r\nPGRU GRU=1" + std::string(1, '\0') + "\r\nENDPROG\r\n", "groups.txt:2: "},
      {"PROG INIZIO\r\n@evil\r\nENDPROG\r\n", "groups.txt:2: "},
      {"PROG INIZIO\r\nAZZGIO\r\nENDPROG\r\n", "groups.txt:2: this is no row"},
      {"PROG INIZIO\r\nPREP REP=1, PRE=9.00\r\nENDPROG\r\n",
       "groups.txt:2: this is no row of the table"},
  };
  for (const auto& one : cases) {
    forge("groups.txt", one.content);
    const ProgramRun run = shop_.run({"restore", tables()});
    EXPECT_EQ(run.exit_code, 2) << one.message;
    EXPECT_THAT(run.output, IsEmpty()) << one.message;
    EXPECT_THAT(run.errors, HasSubstr(one.message));
  }
  forge("groups.txt", groups);
  EXPECT_THAT(shop_.run({"restore", tables(), "--dry-run"}).output,
              HasSubstr("  - PGRU GRU=2, DES='FRUTTA'\n"));
}

TEST_F(BackupCommand, VatRatesWantAClosedDayAndNothingChangesWithoutOne) {
  back_up();
  ASSERT_EQ(shop_
                .sell("PROG\nPIVA IVA=1, ALIQ=20\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n"
                      "VEND REP=2, PRE=1.00\nCHIU\n")
                .exit_code,
            0);
  const ProgramRun open = shop_.run({"restore", tables()});
  EXPECT_EQ(open.exit_code, 2);
  EXPECT_THAT(open.output, IsEmpty());
  EXPECT_THAT(open.errors, HasSubstr("a day is open, and the VAT rates differ"));
  const ProgramRun dry = shop_.run({"restore", tables(), "--dry-run"});
  EXPECT_EQ(dry.exit_code, 0);
  EXPECT_THAT(dry.output, HasSubstr("2 rows would be restored\n"));

  ASSERT_EQ(shop_.sell("AZZGIO\n").exit_code, 0);
  const ProgramRun closed = shop_.run({"restore", tables()});
  EXPECT_EQ(closed.exit_code, 0);
  EXPECT_THAT(closed.output, EndsWith(": 2 rows restored\n"));
}

TEST_F(BackupCommand, AnOpenDocumentIsLeftAloneAndNamed) {
  back_up();
  ASSERT_EQ(shop_.sell("VEND REP=1, PRE=1.50\n").exit_code, 0);
  for (const std::vector<std::string>& arguments :
       {std::vector<std::string>{"restore", tables()}, {"backup", shop_.folder().path("more")}}) {
    const ProgramRun run = shop_.run(arguments);
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, HasSubstr(shop_.file() + ": holds a receipt of 15/03/2024 10:30, "
                                                     "1 line, subtotal 1,50, not paid"));
  }
  const nlohmann::json status = nlohmann::json::parse(shop_.run({"status", "--json"}).output);
  EXPECT_EQ(status["open_document"]["lines"], 1);
  EXPECT_FALSE(fs::exists(shop_.folder().path("more")));
  EXPECT_FALSE(fs::exists(shop_.folder().path("more.part")));
}

TEST_F(BackupCommand, FaultsThatWaitAreNotUsedUp) {
  ASSERT_EQ(shop_.run({"fault", "off-line"}).exit_code, 0);
  const ProgramRun run = shop_.run({"backup", tables()});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("\"lorimat fault --clear\""));
  EXPECT_THAT(shop_.run({"fault"}).output, HasSubstr("off-line"));
  EXPECT_FALSE(fs::exists(tables()));
}

TEST_F(BackupCommand, ADamagedBackupIsRefusedBeforeAnythingChanges) {
  back_up();
  ASSERT_EQ(shop_.sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n").exit_code, 0);
  const std::string manifest = in_tables("manifest.json");
  const std::string groups = in_tables("groups.txt");
  const auto replaced = [](std::string text, const std::string& from, const std::string& to) {
    const size_t at = text.find(from);
    EXPECT_NE(at, text.npos) << from;
    return at == text.npos ? text : text.replace(at, from.size(), to);
  };
  const struct {
    const char* file;
    std::string content;
    const char* message;
  } cases[] = {
      {"groups.txt", replaced(groups, "ORTO", "ORSO"), "groups.txt: is damaged: its SHA-256"},
      {"groups.txt", groups.substr(0, groups.size() / 2), "groups.txt: is damaged: it has "},
      {"groups.txt", "", "groups.txt: is damaged: it has 0 bytes"},
      {"manifest.json", manifest.substr(0, manifest.size() / 2),
       "manifest.json: is no manifest of a backup"},
      {"manifest.json", "", "manifest.json: is no manifest of a backup"},
      {"manifest.json", std::string(100, '\0'), "manifest.json: is no manifest of a backup"},
      {"manifest.json", "{\"format\":\"other\"}", "manifest.json: is no manifest of a backup"},
      {"manifest.json", "[]", "manifest.json: is no manifest of a backup"},
      {"manifest.json", std::string(50000, '['), "manifest.json: is no manifest of a backup"},
      {"manifest.json", replaced(manifest, "\"version\": 1", "\"version\": 2"),
       "manifest.json: the backup has version 2, and this program reads version 1"},
      {"manifest.json", replaced(manifest, "\"version\": 1", "\"version\": \"1\""),
       "manifest.json: \"version\" is no number"},
      {"manifest.json", replaced(manifest, "\"groups.txt\"", "\"../groups.txt\""),
       "manifest.json: groups.txt is missing in it"},
      {"manifest.json", replaced(manifest, "\"made\"", "\"mode\""),
       "manifest.json: \"made\" is missing"},
      {"manifest.json", replaced(manifest, "\"files\": [", "\"files\": [ {\"name\": \"/etc/x\"},"),
       "manifest.json: it names files that are none of a backup"},
  };
  for (const auto& one : cases) {
    shop_.folder().write(std::string("tables/") + one.file, one.content);
    const ProgramRun run = shop_.run({"restore", tables()});
    EXPECT_EQ(run.exit_code, 2) << one.message;
    EXPECT_THAT(run.output, IsEmpty()) << one.message;
    EXPECT_THAT(run.errors, StartsWith("lorimat: " + tables() + "/")) << one.message;
    EXPECT_THAT(run.errors, HasSubstr(one.message));
    shop_.folder().write("tables/manifest.json", manifest);
    shop_.folder().write("tables/groups.txt", groups);
  }
  fs::remove(tables() + "/groups.txt");
  EXPECT_THAT(shop_.run({"restore", tables()}).errors,
              HasSubstr("tables/groups.txt: cannot be read: No such file"));
  fs::create_directory(tables() + "/groups.txt");
  EXPECT_THAT(shop_.run({"restore", tables()}).errors,
              HasSubstr("tables/groups.txt: cannot be read: it is no file"));
  EXPECT_THAT(shop_.run({"restore", shop_.folder().path("none")}).errors,
              HasSubstr("none/manifest.json: cannot be read: No such file"));
  fs::remove(tables() + "/groups.txt");
  shop_.folder().write("tables/groups.txt", groups);
  EXPECT_THAT(shop_.run({"restore", tables(), "--dry-run"}).output,
              HasSubstr("  - PGRU GRU=2, DES='FRUTTA'\n"));
}

TEST_F(BackupCommand, WordsThatTheLanguageDoesNotHaveAreRefusedBeforeAnythingChanges) {
  back_up();
  ASSERT_EQ(shop_.sell("PROG\nPIVA IVA=1, ALIQ=20\nENDPROG\n").exit_code, 0);
  std::string words = read_file(source_file("language/merkelin.ini"));
  const size_t at = words.find("PGRU");
  ASSERT_NE(at, words.npos);
  words.replace(at, 4, "GRPP");
  const std::string language = shop_.folder().write("words.ini", words);
  const ProgramRun run = shop_.run({"restore", tables(), "--language", language});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(run.errors, HasSubstr(tables() + "/groups.txt:2: no command is called 'PGRU'"));
  EXPECT_THAT(shop_.run({"restore", tables(), "--dry-run"}).output,
              StartsWith("vat.txt:2: different\n  - PIVA IVA=1, ALIQ=20.00\n"
                         "  + PIVA IVA=1, ALIQ=21.00\n"));
}

TEST_F(BackupCommand, AnotherSerialNumberIsNotedAndNoObstacle) {
  back_up();
  std::string manifest = in_tables("manifest.json");
  const size_t at = manifest.find("99LRM0000001VR");
  manifest.replace(at, 14, "99LRM0000002VR");
  shop_.folder().write("tables/manifest.json", manifest);
  const ProgramRun run = shop_.run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.errors,
            "lorimat: note: the backup is of 99LRM0000002VR, and this is 99LRM0000001VR\n");
}

TEST_F(BackupCommand, ATerminalSeesHowFarItIs) {
  const ProgramRun run = shop_.run({"backup", tables()}, {.errors_to_terminal = true});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, HasSubstr("100%"));
}

TEST_F(BackupCommand, DifferencesAreColouredOnATerminalAlone) {
  back_up();
  ASSERT_EQ(shop_.sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n").exit_code, 0);
  const std::vector<std::string> arguments = {"restore", tables(), "--dry-run"};
  const std::string plain = shop_.run(arguments).output;
  EXPECT_THAT(plain, Not(HasSubstr("\x1B")));
  EXPECT_THAT(shop_.run(arguments, {.output_to_terminal = true}).output, HasSubstr("\x1B["));
  EXPECT_EQ(
      shop_.run(arguments, {.environment = {{"NO_COLOR", "1"}}, .output_to_terminal = true}).output,
      plain);
}

TEST_F(BackupCommand, SpeaksToPrograms) {
  const ProgramRun run = shop_.run({"backup", tables(), "--json"});
  EXPECT_EQ(run.exit_code, 0);
  const nlohmann::json json = nlohmann::json::parse(run.output);
  EXPECT_EQ(json["folder"], tables());
  EXPECT_EQ(json["manifest"], nlohmann::json::parse(in_tables("manifest.json")));
}

TEST_F(BackupCommand, ReadsTheRegisterAsItStandsAndLeavesItSo) {
  back_up();
  ASSERT_EQ(shop_.run({"restore", tables(), "--dry-run"}).exit_code, 0);
  const nlohmann::json status = nlohmann::json::parse(shop_.run({"status", "--json"}).output);
  EXPECT_EQ(status["documents"], 0);
  EXPECT_EQ(status["key_position"], 1);
  EXPECT_THAT(shop_.run({"paper"}).output, IsEmpty());
}
