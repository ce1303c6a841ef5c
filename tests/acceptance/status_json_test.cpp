// "status --json": all that a register is, with its settings as "init" and "set" take them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "shop.h"

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

namespace {

json StatusOf(const std::string& file) {
  const ProgramRun run = RunConsole({"status", "--json", "--register", file});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  return json::parse(run.output);
}

// The options that set what the settings say.
std::vector<std::string> OptionsOf(const json& settings) {
  std::vector<std::string> options;
  const auto add = [&options](const std::string& name, const std::string& value) {
    options.push_back("--" + name + "=" + value);
  };
  for (const auto& [key, value] : settings.items()) {
    std::string name = key;
    std::replace(name.begin(), name.end(), '_', '-');
    if (value.is_array()) {
      for (const json& one : value) add(name, one);
    } else if (value.is_boolean()) {
      if (value.get<bool>()) options.push_back("--" + name);
    } else if (!value.get<std::string>().empty()) {
      add(name, value);
    }
  }
  return options;
}

}  // namespace

TEST(StatusJson, TheSettingsMakeTheSameRegister) {
  const TestFolder folder;
  const std::string first = folder.Path("first");
  const std::string second = folder.Path("second");
  std::filesystem::create_directory(folder.Path("sent"));
  ASSERT_EQ(RunConsole({"init",
                        first,
                        "--serial",
                        "99LRM0000042VR",
                        "--vat-number",
                        "12345678903",
                        "--header",
                        "BAR \"SPORT\"",
                        "--header",
                        " ",
                        "--header",
                        "PERCHÉ NO",
                        "--vat",
                        "21 10 5,5 N2 0",
                        "--departments",
                        "1=A:B:4:99999,99",
                        "--departments",
                        "40=:5:0,01",
                        "--outbox",
                        folder.Path("sent"),
                        "--round-cash",
                        "--training",
                        "--not-in-service"})
                .exit_code,
            0);
  const json settings = StatusOf(first)["settings"];
  EXPECT_EQ(settings["serial"], "99LRM0000042VR");
  EXPECT_EQ(settings["vat_number"], "12345678903");
  EXPECT_EQ(settings["header"], (json{"BAR \"SPORT\"", " ", "PERCHÉ NO"}));
  EXPECT_EQ(settings["vat"], (json{"21", "10", "5.5", "N2", "0"}));
  EXPECT_EQ(settings["departments"][0], "1=A:B:4:99999.99");
  EXPECT_EQ(settings["departments"][1], "2=REPARTO 2:2:0.00");
  EXPECT_EQ(settings["departments"][39], "40=:5:0.01");
  EXPECT_EQ(settings["outbox"], folder.Path("sent"));
  EXPECT_EQ(settings["round_cash"], true);
  EXPECT_EQ(settings["training"], true);
  EXPECT_EQ(settings["not_in_service"], true);

  std::vector<std::string> arguments = {"init", second};
  for (const std::string& option : OptionsOf(settings)) arguments.push_back(option);
  const ProgramRun made = RunConsole(arguments);
  ASSERT_EQ(made.exit_code, 0) << made.errors;
  EXPECT_EQ(StatusOf(second)["settings"], settings);
  EXPECT_EQ(StatusOf(second)["tables"], StatusOf(first)["tables"]);

  // And "set" takes them for another register.
  const std::string third = folder.Path("third");
  ASSERT_EQ(RunConsole({"init", third}).exit_code, 0);
  arguments[0] = "set";
  arguments[1] = third;
  const ProgramRun set = RunConsole(arguments);
  ASSERT_EQ(set.exit_code, 0) << set.errors;
  EXPECT_EQ(StatusOf(third)["settings"], settings);
}

TEST(StatusJson, TheSettingsAreTheOptions) {
  const Shop shop;
  ASSERT_EQ(RunConsole({"init", shop.file()}).exit_code, 0);
  const std::string help = RunConsole({"init", "--help"}).output;
  const json status = StatusOf(shop.file());
  for (const auto& [key, value] : status["settings"].items()) {
    std::string name = key;
    std::replace(name.begin(), name.end(), '_', '-');
    EXPECT_THAT(help, HasSubstr("\n  --" + name + " ")) << key;
  }
}

TEST(StatusJson, TellsTheSumsOfTheDay) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=10.00\nVEND REP=2, QTA=2, PRE=1.50\n"
                      "CHIU TEND=CONTANTI, IMP=20.00\n"
                      "FATTURA TIPO=2, RIGA1='ROSSI SRL'\nVEND REP=1, PRE=5.00\n"
                      "CHIU TEND=CARTA\n")
                .exit_code,
            0);
  const json totals = StatusOf(shop.file())["day"]["totals"];
  EXPECT_EQ(totals["sales_cents"], 1800);
  EXPECT_EQ(totals["invoices_cents"], 500);
  EXPECT_EQ(totals["credit_notes_cents"], 0);
  EXPECT_EQ(totals["by_vat"],
            json::parse(R"([{"entry": 1, "cents": 1500, "documents": 2, "discounts": 0,
                             "surcharges": 0, "refund_lines": 0},
                            {"entry": 2, "cents": 300, "documents": 1, "discounts": 0,
                             "surcharges": 0, "refund_lines": 0}])"));
  EXPECT_EQ(totals["by_department"],
            json::parse(R"([{"number": 1, "quantity_thousandths": 2000, "cents": 1500},
                            {"number": 2, "quantity_thousandths": 2000, "cents": 300}])"));
  json paid = 0;
  for (const json& one : totals["by_tender"]) paid = paid.get<int>() + one["cents"].get<int>();
  EXPECT_EQ(paid, 1800);
  for (const json& one : totals["by_tender"]) EXPECT_EQ(one["payments"], 1);
}

TEST(StatusJson, TellsTablesAndSetUp) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("PROG\nPOPER OPE=3, DES='ANNA', PASS='segreto'\nPGRU GRU=2, DES='ORTO'\n"
                      "PSTEN ST=1, DES='BUONO', FLAG=1\nPOPZ CASSETTO=SI\n"
                      "PTAST POS=42, COD=MACRO01, MACRO='N1 REP01 '\nENDPROG\n")
                .exit_code,
            0);
  const ProgramRun run = shop.Run({"status", "--json"});
  EXPECT_THAT(run.output, Not(HasSubstr("segreto")));
  const json status = json::parse(run.output);
  const json& tables = status["tables"];
  EXPECT_EQ(tables["vat"][4],
            json::parse(R"({"entry": 5, "rate": "0", "mark": "ES*", "nature": "N4"})"));
  EXPECT_EQ(tables["departments"].size(), 40u);
  EXPECT_EQ(tables["groups"].size(), 10u);
  EXPECT_EQ(tables["groups"][1]["description"], "ORTO");
  EXPECT_EQ(tables["operators"].size(), 10u);
  EXPECT_EQ(tables["operators"][2]["description"], "ANNA");
  EXPECT_EQ(tables["operators"][2]["has_password"], true);
  EXPECT_EQ(tables["operators"][3]["has_password"], false);
  EXPECT_EQ(tables["subtenders"][0]["description"], "BUONO");
  EXPECT_THAT(tables["articles"], IsEmpty());
  const json& setup = status["setup"];
  EXPECT_EQ(setup["commissioning"], "in-service");
  EXPECT_EQ(setup["options"][0], json::parse(R"({"item": 459, "value": "1"})"));
  EXPECT_EQ(setup["keys"].size(), 1u);
  EXPECT_EQ(setup["keys"][0]["position"], 42);
  EXPECT_THAT(setup["keys"][0]["macro"], Not(IsEmpty()));
}

TEST(StatusJson, TellsHowFullTheMemoryIs) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=1\nCHIU\nAZZGIO\nVEND REP=1, PRE=1\nCHIU\n"
                      "VEND REP=1, PRE=1\nCHIU\n")
                .exit_code,
            0);
  const json memory = StatusOf(shop.file())["memory"];
  EXPECT_EQ(memory["closings"], json::parse(R"({"used": 1, "most": 9999})"));
  EXPECT_EQ(memory["documents_of_day"], json::parse(R"({"used": 2, "most": 9999})"));
  EXPECT_EQ(memory["articles"], json::parse(R"({"used": 0, "most": 60000})"));
  const std::string roll = shop.Run({"paper"}).output;
  EXPECT_EQ(memory["roll_lines"], std::count(roll.begin(), roll.end(), '\n'));
  EXPECT_EQ(memory["file_bytes"], std::filesystem::file_size(shop.file()));
}

TEST(StatusJson, TellsTheClock) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=1\nCHIU\n", "2024-03-15 10:30").exit_code, 0);
  ASSERT_EQ(shop.Sell("AZZGIO\n", "2024-03-15 18:00").exit_code, 0);
  json clock = StatusOf(shop.file())["clock"];
  EXPECT_THAT(clock["now"].get<std::string>(),
              MatchesRegex("[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}"));
  EXPECT_EQ(clock["ahead_of_computer_seconds"], 0);
  EXPECT_EQ(clock["last_document"], "2024-03-15T10:30");
  EXPECT_EQ(clock["last_closing"], "2024-03-15T18:00");
  EXPECT_EQ(clock["behind"], false);
  EXPECT_TRUE(clock["set_back"].is_null());
  // A closing by a wrong clock, and the operator's word that puts it right.
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=1\nCHIU\nAZZGIO\n", "2099-01-01 12:00").exit_code, 0);
  EXPECT_EQ(StatusOf(shop.file())["clock"]["behind"], true);
  ASSERT_EQ(
      shop.Sell("DIRECTIO CMD=2, OPT=149, DATI='150320241900'\n", "2024-03-15 18:30").exit_code, 0);
  clock = StatusOf(shop.file())["clock"];
  EXPECT_EQ(clock["ahead_of_computer_seconds"], 1800);
  EXPECT_EQ(clock["behind"], false);
  EXPECT_EQ(clock["set_back"],
            json::parse(R"({"from": "2099-01-01T12:00", "to": "2024-03-15T19:00"})"));
}
