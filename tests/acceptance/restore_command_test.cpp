// "restore": a backup, compared with a register and loaded back.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "backup_shop.h"

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

class RestoreCommand : public BackupShop {};

}  // namespace

TEST_F(RestoreCommand, ATableThatIsAsItWasNeedsNothing) {
  BackUp();
  const ProgramRun run = shop_.Run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.output, shop_.file() + ": no row differs from the backup\n");
  EXPECT_THAT(run.errors, IsEmpty());
}

TEST_F(RestoreCommand, AFolderThatIsNotThereIsToldBeforeAnythingElse) {
  // Neither a register nor a document that is open in it comes first.
  const std::string none = shop_.folder().Path("none");
  const std::string told =
      "lorimat: " + none + ": there is no such folder; \"lorimat backup " + none + "\" makes one\n";
  const ProgramRun without = RunConsole({"restore", none});
  EXPECT_EQ(without.exit_code, 2);
  EXPECT_EQ(without.errors, told);
  ASSERT_EQ(shop_.Sell("VEND REP=1\n").exit_code, 0);
  EXPECT_EQ(shop_.Run({"restore", none}).errors, told);
  const std::string file = shop_.folder().Write("file", "");
  EXPECT_EQ(shop_.Run({"restore", file}).errors,
            "lorimat: " + file + ": is no folder of a backup: Not a directory\n");
}

TEST_F(RestoreCommand, PasswordsOfOperatorsAreNotShown) {
  BackUp();
  ASSERT_EQ(shop_.Sell("PROG\nPOPER OPE=3, DES='ANNA', PASS='98765'\nENDPROG\n").exit_code, 0);
  const std::vector<std::vector<std::string>> forms = {
      {"restore", tables(), "--dry-run"}, {"restore", tables(), "--dry-run", "--json"}};
  for (const std::vector<std::string>& form : forms) {
    const std::string output = shop_.Run(form).output;
    EXPECT_THAT(output, AllOf(HasSubstr("PASS='****'"), HasSubstr("PASS='*****'")));
    EXPECT_THAT(output, AllOf(Not(HasSubstr("PASS='1234'")), Not(HasSubstr("98765"))));
  }
  const ProgramRun failing = RunConsole({"run", "-"}, {.input = "POPRE OPE=3, PASS='98765'\n"});
  EXPECT_THAT(failing.errors, HasSubstr("POPRE OPE=3, PASS='*****'\n"));
  // What is restored is the password.
  EXPECT_EQ(shop_.Run({"restore", tables()}).exit_code, 0);
  EXPECT_THAT(shop_.Run({"restore", tables()}).output, HasSubstr("no row differs"));
}

TEST_F(RestoreCommand, ADryRunShowsTheDifferencesAndChangesNothing) {
  BackUp();
  ASSERT_EQ(shop_.Sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n").exit_code, 0);
  const ProgramRun run = shop_.Run({"restore", tables(), "--dry-run"});
  EXPECT_EQ(run.exit_code, 0);
  // The groups' dump: a line around them, then group 1, then group 2.
  EXPECT_EQ(run.output,
            "groups.txt:3: different\n"
            "  - PGRU GRU=2, DES='FRUTTA'\n"
            "  + PGRU GRU=2, DES='L''ORTO'\n" +
                shop_.file() + ": 1 row would be restored\n");
  EXPECT_EQ(shop_.Run({"restore", tables(), "--dry-run"}).output, run.output);
  const nlohmann::json json =
      nlohmann::json::parse(shop_.Run({"restore", tables(), "--dry-run", "--json"}).output);
  EXPECT_EQ(json["differences"],
            nlohmann::json::array({{{"table", "groups"},
                                    {"file", "groups.txt"},
                                    {"line", 3},
                                    {"in_register", "PGRU GRU=2, DES='FRUTTA'"},
                                    {"in_backup", "PGRU GRU=2, DES='L''ORTO'"},
                                    {"stays", false}}}));
  EXPECT_EQ(json["restored_rows"], 0);
}

TEST_F(RestoreCommand, RestoresWhatWasChanged) {
  BackUp();
  ASSERT_EQ(shop_
                .Sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nPREP REP=1, PRE=1.00\nENDPROG\n"
                      "VEND REP=1\nCHIU\n")
                .exit_code,
            0);
  const ProgramRun run = shop_.Run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, AllOf(HasSubstr("groups.txt:3: different\n"),
                                HasSubstr("departments.txt:2: different\n"),
                                EndsWith(shop_.file() + ": 2 rows restored\n")));
  EXPECT_THAT(shop_.Sell("VEND REP=1\nCHIU\n").output,
              HasSubstr("L'ORO \"FINO\"               10%       12,50\n"));
  EXPECT_EQ(shop_.Run({"restore", tables()}).output,
            shop_.file() + ": no row differs from the backup\n");
}

TEST_F(RestoreCommand, RestoresAllTablesIntoAnotherRegister) {
  BackUp();
  const Shop other;
  Make(other);
  const ProgramRun run = other.Run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 0) << run.output << run.errors;
  // One row of each table, two articles and the key.
  EXPECT_THAT(run.output, EndsWith(other.file() + ": 10 rows restored\n"));
  EXPECT_THAT(run.output, HasSubstr("articles.txt:1: not in the register\n"
                                    "  + '8001','LATTE',4,1.50\n"));
  const std::string again = other.folder().Path("tables");
  ASSERT_EQ(other.Run({"backup", again}).exit_code, 0);
  for (const auto& entry : fs::directory_iterator(tables())) {
    const std::string name = entry.path().filename();
    if (name == "manifest.json") continue;
    EXPECT_EQ(other.folder().Read("tables/" + name), InTables(name)) << name;
  }
  // The key is where it was, and the register sells.
  const ProgramRun sale = other.Sell("VEND ART='8001'\nCHIU\n");
  EXPECT_EQ(sale.exit_code, 0);
  EXPECT_THAT(sale.output, HasSubstr("             BAR 'SPORT'\n"));
  EXPECT_THAT(sale.output, HasSubstr("LATTE                       4%        1,50\n"));
}

TEST_F(RestoreCommand, ArticlesThatTheBackupDoesNotHaveAreTakenAway) {
  BackUp();
  const std::string rows = shop_.folder().Write("rows", "'8003','VINO',1,9.00\r\n");
  ASSERT_EQ(shop_.Sell("EMLINK CMD='UA', FILE='" + rows + "'\n").exit_code, 0);
  const ProgramRun run = shop_.Run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output,
            "articles.txt: not in the backup; is taken away\n  - '8003','VINO',1,9.00\n" +
                shop_.file() + ": 1 row restored\n");
  EXPECT_NE(shop_.Sell("VEND ART='8003'\nRESPRN\n").exit_code, 0);
  EXPECT_EQ(shop_.Sell("VEND ART='8001'\nCHIU\n").exit_code, 0);
}

TEST_F(RestoreCommand, TheKeyGoesBackToItsPosition) {
  BackUp();
  ASSERT_EQ(shop_.Sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nCHIAVE POS=3\n").exit_code, 0);
  ASSERT_EQ(shop_.Run({"restore", tables()}).exit_code, 0);
  EXPECT_EQ(nlohmann::json::parse(shop_.Run({"status", "--json"}).output)["key_position"], 3);
}

TEST_F(RestoreCommand, WhatCannotBeRestoredIsNamedWithLineAndCause) {
  // Header line 5 is empty in the backup, and an empty text clears nothing.
  BackUp();
  ASSERT_EQ(shop_.Sell("PINT RIGA5='AUGURI'\nPGRU GRU=2, DES='FRUTTA'\n").exit_code, 0);
  const ProgramRun run = shop_.Run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output,
              EndsWith("header.txt:2: not restored: an empty text does not clear the one of the "
                       "register\n" +
                       shop_.file() + ": 1 row restored, 1 not restored\n"));
  const ProgramRun json = shop_.Run({"restore", tables(), "--json"});
  EXPECT_EQ(json.exit_code, 1);
  const nlohmann::json answer = nlohmann::json::parse(json.output);
  ASSERT_EQ(answer["not_restored"].size(), 1u);
  EXPECT_EQ(answer["not_restored"][0]["file"], "header.txt");
  EXPECT_EQ(answer["not_restored"][0]["line"], 2);
  EXPECT_EQ(answer["restored_rows"], 0);
}

TEST_F(RestoreCommand, ARefusedLineIsNamedWithTheAnswerToIt) {
  BackUp();
  std::string groups = InTables("groups.txt");
  const size_t at = groups.find("L''ORTO");
  ASSERT_NE(at, groups.npos);
  groups.replace(at, 7, std::string(33, 'x'));  // a group's text has 32 characters at most
  Forge("groups.txt", groups);
  const ProgramRun run = shop_.Run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 1);
  // 222, bad length, passed twice.
  EXPECT_THAT(run.output, HasSubstr("groups.txt:3: not restored: code 1246: ERROR 4/222 : "));
  EXPECT_THAT(run.output, EndsWith(": 0 rows restored, 1 not restored\n"));
}

TEST_F(RestoreCommand, RefusedArticlesAreNamedAndTheOthersGoIn) {
  BackUp();
  // No register has a department 41.
  Forge("articles.txt",
        "'8001','LATTE',4,1.50\r\n'8009','VINO',41,5.00\r\n'8010','OLIO',1,9.00\r\n");
  const ProgramRun run = shop_.Run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, HasSubstr("articles.txt: not in the backup; is taken away\n"
                                    "  - '8002','PANE',4,0.00\n"));
  // 217, bad VAT entry or department.
  EXPECT_THAT(run.output, HasSubstr("articles.txt:2: not restored: code 1241: ERROR 4/217 : "));
  EXPECT_THAT(run.output, EndsWith(": 2 rows restored, 1 not restored\n"));
  // The row is still another one. For programs its cause is English.
  const ProgramSetting italian = {.environment = {{"LC_ALL", "it_IT.UTF-8"}}};
  EXPECT_THAT(shop_.Run({"restore", tables()}, italian).output,
              HasSubstr("articles.txt:2: non ricaricata: codice 1241: ERROR 4/217 : "));
  EXPECT_THAT(shop_.Run({"restore", tables(), "--json"}, italian).output,
              HasSubstr("\"code 1241: ERROR 4/217 : "));
  EXPECT_EQ(shop_.Sell("VEND ART='8010'\nVEND ART='8001'\nCHIU\n").exit_code, 0);
}

TEST_F(RestoreCommand, DumpsThatAreNoneAreRefusedWithTheirLine) {
  BackUp();
  ASSERT_EQ(shop_.Sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n").exit_code, 0);
  const std::string groups = InTables("groups.txt");
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
    Forge("groups.txt", one.content);
    const ProgramRun run = shop_.Run({"restore", tables()});
    EXPECT_EQ(run.exit_code, 2) << one.message;
    EXPECT_THAT(run.output, IsEmpty()) << one.message;
    EXPECT_THAT(run.errors, HasSubstr(one.message));
  }
  Forge("groups.txt", groups);
  EXPECT_THAT(shop_.Run({"restore", tables(), "--dry-run"}).output,
              HasSubstr("  - PGRU GRU=2, DES='FRUTTA'\n"));
}

TEST_F(RestoreCommand, VatRatesWantAClosedDayAndNothingChangesWithoutOne) {
  BackUp();
  ASSERT_EQ(shop_
                .Sell("PROG\nPIVA IVA=1, ALIQ=20\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n"
                      "VEND REP=2, PRE=1.00\nCHIU\n")
                .exit_code,
            0);
  const ProgramRun open = shop_.Run({"restore", tables()});
  EXPECT_EQ(open.exit_code, 2);
  EXPECT_THAT(open.output, IsEmpty());
  EXPECT_THAT(open.errors, HasSubstr("a day is open, and the VAT rates differ"));
  const ProgramRun dry = shop_.Run({"restore", tables(), "--dry-run"});
  EXPECT_EQ(dry.exit_code, 0);
  EXPECT_THAT(dry.output, HasSubstr("2 rows would be restored\n"));

  ASSERT_EQ(shop_.Sell("AZZGIO\n").exit_code, 0);
  const ProgramRun closed = shop_.Run({"restore", tables()});
  EXPECT_EQ(closed.exit_code, 0);
  EXPECT_THAT(closed.output, EndsWith(": 2 rows restored\n"));
}

TEST_F(RestoreCommand, ADamagedBackupIsRefusedBeforeAnythingChanges) {
  BackUp();
  ASSERT_EQ(shop_.Sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n").exit_code, 0);
  const std::string manifest = InTables("manifest.json");
  const std::string groups = InTables("groups.txt");
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
    shop_.folder().Write(std::string("tables/") + one.file, one.content);
    const ProgramRun run = shop_.Run({"restore", tables()});
    EXPECT_EQ(run.exit_code, 2) << one.message;
    EXPECT_THAT(run.output, IsEmpty()) << one.message;
    EXPECT_THAT(run.errors, StartsWith("lorimat: " + tables() + "/")) << one.message;
    EXPECT_THAT(run.errors, HasSubstr(one.message));
    shop_.folder().Write("tables/manifest.json", manifest);
    shop_.folder().Write("tables/groups.txt", groups);
  }
  fs::remove(tables() + "/groups.txt");
  EXPECT_THAT(shop_.Run({"restore", tables()}).errors,
              HasSubstr("tables/groups.txt: cannot be read: No such file"));
  fs::create_directory(tables() + "/groups.txt");
  EXPECT_THAT(shop_.Run({"restore", tables()}).errors,
              HasSubstr("tables/groups.txt: cannot be read: it is no file"));
  std::filesystem::create_directory(shop_.folder().Path("empty"));
  EXPECT_THAT(shop_.Run({"restore", shop_.folder().Path("empty")}).errors,
              HasSubstr("empty/manifest.json: cannot be read: No such file"));
  fs::remove(tables() + "/groups.txt");
  shop_.folder().Write("tables/groups.txt", groups);
  EXPECT_THAT(shop_.Run({"restore", tables(), "--dry-run"}).output,
              HasSubstr("  - PGRU GRU=2, DES='FRUTTA'\n"));
}

TEST_F(RestoreCommand, WordsThatTheLanguageDoesNotHaveAreRefusedBeforeAnythingChanges) {
  BackUp();
  ASSERT_EQ(shop_.Sell("PROG\nPIVA IVA=1, ALIQ=20\nENDPROG\n").exit_code, 0);
  std::string words = ReadFile(SourceFile("language/merkelin.ini"));
  const size_t at = words.find("PGRU");
  ASSERT_NE(at, words.npos);
  words.replace(at, 4, "GRPP");
  const std::string language = shop_.folder().Write("words.ini", words);
  const ProgramRun run = shop_.Run({"restore", tables(), "--language", language});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(run.errors, HasSubstr(tables() + "/groups.txt:2: no command is called 'PGRU'"));
  EXPECT_THAT(shop_.Run({"restore", tables(), "--dry-run"}).output,
              StartsWith("vat.txt:2: different\n  - PIVA IVA=1, ALIQ=20.00\n"
                         "  + PIVA IVA=1, ALIQ=21.00\n"));
}

TEST_F(RestoreCommand, AnotherSerialNumberIsNotedAndNoObstacle) {
  BackUp();
  std::string manifest = InTables("manifest.json");
  const size_t at = manifest.find("99LRM0000001VR");
  manifest.replace(at, 14, "99LRM0000002VR");
  shop_.folder().Write("tables/manifest.json", manifest);
  const ProgramRun run = shop_.Run({"restore", tables()});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.errors,
            "lorimat: note: the backup is of 99LRM0000002VR, and this is 99LRM0000001VR\n");
}

TEST_F(RestoreCommand, WhatIsUnansweredIsToldToTheHostBehindBackupAndRestore) {
  const std::string told = "1,00, was stored last, and the register was switched off behind it";
  const Shop other;  // opens no drawer behind its payments
  Make(other);
  const std::string folder = other.folder().Path("tables");
  ASSERT_EQ(other.Run({"backup", folder}).exit_code, 0);
  ASSERT_EQ(other.Sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n").exit_code, 0);
  ASSERT_EQ(other.SellAndDie("VEND REP=2, PRE=1.00\nCHIU\n").exit_code, -1);
  EXPECT_THAT(other.Run({"backup", other.folder().Path("again")}).errors, HasSubstr(told));
  const ProgramRun restored = other.Run({"restore", folder});
  EXPECT_THAT(restored.errors, HasSubstr(told));
  EXPECT_THAT(restored.output, HasSubstr("FRUTTA"));
  EXPECT_THAT(other.Run({"shell"}).errors, HasSubstr(told));
  EXPECT_THAT(other.Run({"shell"}).errors, Not(HasSubstr(told)));
}

TEST_F(RestoreCommand, DifferencesAreColouredOnATerminalAlone) {
  BackUp();
  ASSERT_EQ(shop_.Sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n").exit_code, 0);
  const std::vector<std::string> arguments = {"restore", tables(), "--dry-run"};
  const std::string plain = shop_.Run(arguments).output;
  EXPECT_THAT(plain, Not(HasSubstr("\x1B")));
  EXPECT_THAT(shop_.Run(arguments, {.output_to_terminal = true}).output, HasSubstr("\x1B["));
  EXPECT_EQ(
      shop_.Run(arguments, {.environment = {{"NO_COLOR", "1"}}, .output_to_terminal = true}).output,
      plain);
}

TEST_F(RestoreCommand, AReportThatCannotBeWrittenTakesNothingBack) {
  BackUp();
  ASSERT_EQ(shop_.Sell("PROG\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n").exit_code, 0);
  // In words the differences come first, and nothing is loaded behind them.
  const ProgramRun words = shop_.Run({"restore", tables()}, {.output_file = "/dev/full"});
  EXPECT_EQ(words.exit_code, 2);
  EXPECT_EQ(words.errors, "lorimat: cannot write to standard output: No space left on device\n");
  EXPECT_THAT(shop_.Run({"restore", tables(), "--dry-run"}).output,
              HasSubstr("  - PGRU GRU=2, DES='FRUTTA'\n"));

  const ProgramRun json = shop_.Run({"restore", tables(), "--json"}, {.output_file = "/dev/full"});
  EXPECT_EQ(json.exit_code, 1);
  EXPECT_EQ(json.errors, "lorimat: " + shop_.file() +
                             ": 1 row restored, 0 not restored, and the report is missing: cannot "
                             "write to standard output: No space left on device\n");
  EXPECT_EQ(shop_.Run({"restore", tables()}).output,
            shop_.file() + ": no row differs from the backup\n");
}

// The program writes more differences than a pipe holds before it loads them; meanwhile it may open
// no more files, which a dump needs.
TEST_F(RestoreCommand, RowsThatCannotBeReadBackAreLoadedAllTheSame) {
  std::string rows;
  for (int i = 0; i < 1000; ++i) {
    rows += "'9" + std::to_string(10000 + i) + "','ARTICOLO CON UN NOME LUNGO',4,1.50\r\n";
  }
  const std::string articles = shop_.folder().Write("rows", rows);
  ASSERT_EQ(shop_.Sell("EMLINK CMD='UA', FILE='" + articles + "', AZZERA\n").exit_code, 0);
  BackUp();
  const Shop other;
  Make(other);
  const TestFolder scratch;
  const std::string errors = scratch.Path("errors");
  const std::string command =
      "exec env LORIMATRT_REGISTRY=/nonexistent ASAN_OPTIONS=verify_asan_link_order=0 "
      "LD_PRELOAD='" LORIMAT_NO_DESCRIPTORS "' LORIMAT_TEST_NO_DESCRIPTORS='" +
      scratch.Path("none") + "' '" LORIMAT_BIN_FOLDER "/lorimat' restore '" + tables() +
      "' --register '" + other.file() + "' 2>'" + errors + "'";
  FILE* output = popen(command.c_str(), "r");
  ASSERT_NE(output, nullptr);
  EXPECT_NE(std::fgetc(output), EOF);
  scratch.Write("none", "");
  while (std::fgetc(output) != EOF) {
  }
  const int status = pclose(output);
  EXPECT_TRUE(WIFEXITED(status));
  EXPECT_EQ(WEXITSTATUS(status), 1);
  EXPECT_THAT(ReadFile(errors), AllOf(HasSubstr("lorimat: articles.txt: not restored: "),
                                      HasSubstr("lorimat: " + other.file() +
                                                ": what was loaded could not be read back: no "
                                                "file in memory: Too many open files\n")));
  EXPECT_THAT(other.Sell("VEND REP=1\nCHIU\n").output,
              HasSubstr("L'ORO \"FINO\"               10%       12,50\n"));
}
