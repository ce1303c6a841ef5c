// A shop with all its tables programmed, for tests of "backup" and "restore".
#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>
#include <string>

#include "shop.h"

class BackupShop : public testing::Test {
 protected:
  static constexpr const char* kProgramming =
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
  static constexpr const char* kArticles = "'8001','LATTE',4,1.50\r\n'8002','PANE',4,0.00\r\n";

  void SetUp() override {
    const std::string articles = shop_.folder().Write("rows", kArticles);
    ASSERT_EQ(
        shop_.Sell(std::string(kProgramming) + "EMLINK CMD='UA', FILE='" + articles + "', AZZERA\n")
            .exit_code,
        0);
    std::filesystem::remove(articles);
  }

  std::string tables() const { return shop_.folder().Path("tables"); }
  std::string InTables(const std::string& name) const {
    return shop_.folder().Read("tables/" + name);
  }
  // The backup of the shop, made in SetUp's state.
  void BackUp() const {
    const ProgramRun run = shop_.Run({"backup", tables()});
    ASSERT_EQ(run.exit_code, 0) << run.errors;
  }
  // Replaces a file of the backup, and tells the manifest.
  void Forge(const std::string& name, const std::string& content) const {
    nlohmann::json manifest = nlohmann::json::parse(InTables("manifest.json"));
    const std::string path = shop_.folder().Write("tables/" + name, content);
    for (nlohmann::json& file : manifest["files"]) {
      if (file["name"] != name) continue;
      file["bytes"] = content.size();
      file["sha256"] = RunProgram("/usr/bin/sha256sum", {path}).output.substr(0, 64);
    }
    shop_.folder().Write("tables/manifest.json", manifest.dump());
  }
  // A register fresh from the factory.
  static void Make(const Shop& shop) { ASSERT_EQ(shop.Sell("").exit_code, 0); }

  Shop shop_;
};
