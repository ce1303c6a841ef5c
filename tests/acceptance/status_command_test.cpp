// "status": a register's file, looked at.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "shop.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::MatchesRegex;
using testing::Not;

namespace {

const char* const kDay =
    "VEND REP=1, PRE=1234.56\nCHIU\n"
    "FATTURA TIPO=2, RIGA1='ROSSI SRL'\nVEND REP=2, PRE=10.00\nCHIU\n"
    "VEND REP=1, PRE=9.99\nRESPRN\n";

// The text without the line of this name.
std::string Without(std::string text, const std::string& name) {
  const size_t at = text.find("\n" + name) + 1;
  return text.erase(at, text.find('\n', at) + 1 - at);
}

// JSON without what goes on with the time; any other text as it is.
std::string WithoutTime(const std::string& text) {
  if (!text.starts_with('{')) return text;
  nlohmann::json json = nlohmann::json::parse(text);
  json["clock"].erase("now");
  return json.dump();
}

std::string LineOf(const std::string& text, const std::string& name) {
  const size_t at = text.find("\n" + name) + 1;
  return text.substr(at, text.find('\n', at) - at);
}

}  // namespace

TEST(StatusCommand, TellsTheRegisterInWords) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kDay).exit_code, 0);
  const ProgramRun run = shop.Run({"status"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_THAT(LineOf(run.output, "Journal"),
              MatchesRegex("Journal         3 entries, last hash [0-9a-f]+"));
  EXPECT_EQ(LineOf(run.output, "Journal").size(), 37u + 64u);
  EXPECT_EQ(Without(run.output, "Journal"),
            "Register        " + shop.file() +
                "\n"
                "Serial number   99LRM0000001VR\n"
                "Firmware        1.00\n"
                "Key             registering\n"
                "Operator        1\n"
                "Note            the day of 15/03/2024 has not been "
                "closed\n"
                "Last closing    none yet\n"
                "Day             open\n"
                "  receipts      1\n"
                "  invoices      1\n"
                "  credit notes  0\n"
                "  voids         0\n"
                "  abandoned     1\n"
                "  non-fiscal    0\n"
                "  total         1.244,56\n"
                "Grand total     1.244,56\n"
                "Next invoice    2\n"
                "Not sent        0 summaries\n"
                "Documents       2\n"
                "Open document   none\n"
                "Faults          none\n");
}

TEST(StatusCommand, TellsAProgramInCents) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kDay).exit_code, 0);
  const ProgramRun run = shop.Run({"status", "--json"});
  EXPECT_EQ(run.exit_code, 0);
  const nlohmann::json status = nlohmann::json::parse(run.output);
  EXPECT_EQ(status["file"], shop.file());
  EXPECT_EQ(status["serial_number"], "99LRM0000001VR");
  EXPECT_EQ(status["key_position"], 1);
  EXPECT_EQ(status["key"], "registering");
  EXPECT_EQ(status["last_closure"], 0);
  EXPECT_EQ(status["day"]["open"], true);
  EXPECT_EQ(status["day"]["last_document"], 1);
  EXPECT_EQ(status["day"]["receipts"], 1);
  EXPECT_EQ(status["day"]["invoices"], 1);
  EXPECT_EQ(status["day"]["abandoned"], 1);
  EXPECT_EQ(status["day"]["total_cents"], 124456);
  EXPECT_EQ(status["grand_total_cents"], 124456);
  EXPECT_EQ(status["next_invoice"], 2);
  EXPECT_EQ(status["documents"], 2);
  EXPECT_EQ(status["journal_entries"], 3);
  EXPECT_TRUE(status["open_document"].is_null());
  EXPECT_EQ(status["faults"], nlohmann::json::array());
}

TEST(StatusCommand, ADayClosedIsNotOpen) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=2.50\nCHIU\nAZZGIO\n").exit_code, 0);
  const nlohmann::json status = nlohmann::json::parse(shop.Run({"status", "--json"}).output);
  EXPECT_EQ(status["last_closure"], 1);
  EXPECT_EQ(status["day"]["open"], false);
  EXPECT_EQ(status["day"]["receipts"], 0);
  EXPECT_EQ(status["day"]["total_cents"], 0);
  EXPECT_EQ(status["grand_total_cents"], 250);
  const ProgramRun text = shop.Run({"status"});
  EXPECT_THAT(text.output, HasSubstr("Last closing    1\nDay             not begun\n"));
}

TEST(StatusCommand, LookingChangesNothing) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=1.00\n").exit_code, 0);
  const ProgramRun first = shop.Run({"status"});
  EXPECT_THAT(first.output, HasSubstr("Open document   a receipt of 15/03/2024 10:30, 1 line, "
                                      "subtotal 1,00, not paid: the next start voids it\n"));
  EXPECT_EQ(shop.Run({"status"}).output, first.output);
}

TEST(StatusCommand, SpeaksItalian) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=1.00\n").exit_code, 0);
  const ProgramRun run = shop.Run({"status"}, {.environment = {{"LANG", "it_IT.UTF-8"}}});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, HasSubstr("Chiave             registrazione\n"));
  EXPECT_THAT(run.output,
              HasSubstr("Documento aperto   uno scontrino del 15/03/2024 10:30, 1 riga, "
                        "subtotale 1,00, senza pagamento: al prossimo avvio si annulla\n"));
  // A program reads the same in every language.
  EXPECT_EQ(WithoutTime(
                shop.Run({"status", "--json"}, {.environment = {{"LANG", "it_IT.UTF-8"}}}).output),
            WithoutTime(shop.Run({"status", "--json"}).output));
}

TEST(StatusCommand, AMissingRegisterIsNamedWithAHintAndNotMade) {
  const Shop shop;
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"status"},
                                                    {"paper"},
                                                    {"journal"},
                                                    {"journal", "show", "1"},
                                                    {"journal", "verify"},
                                                    {"fault"},
                                                    {"fault", "paper-end"},
                                                    {"fault", "--clear"},
                                                    {"backup", shop.folder().Path("tables")},
                                                    {"restore", shop.folder().Path(".")}}) {
    const ProgramRun run = shop.Run(arguments);
    EXPECT_EQ(run.exit_code, 2) << arguments[0];
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_EQ(run.errors, "lorimat: " + shop.file() +
                              ": there is no such register; \"lorimat run --register " +
                              shop.file() + " FILE\" makes one\n");
    EXPECT_THAT(shop.folder().names(), IsEmpty()) << arguments[0];
  }
}

TEST(StatusCommand, WithoutARegisterTheOptionIsNamed) {
  for (const char* command : {"status", "paper", "journal"}) {
    const ProgramRun run = RunConsole({command});
    EXPECT_EQ(run.exit_code, 2) << command;
    EXPECT_THAT(run.errors, HasSubstr("--register")) << command;
    EXPECT_THAT(run.errors, HasSubstr("LORIMAT_REGISTER")) << command;
  }
}

TEST(StatusCommand, FilesThatAreNoRegisterStayAsTheyAre) {
  const Shop shop;
  for (const std::string& content :
       {std::string(), std::string("a text\n"), std::string("SQLite format 3\0", 16),
        std::string(100000, '\0')}) {
    shop.folder().Write("shop.register", content);
    for (const char* command : {"status", "paper", "journal", "fault"}) {
      const ProgramRun run = shop.Run({command});
      EXPECT_EQ(run.exit_code, 2) << command;
      EXPECT_THAT(run.output, IsEmpty()) << command;
      EXPECT_THAT(run.errors, HasSubstr(shop.file() + ": ")) << command;
    }
    EXPECT_TRUE(shop.folder().Read("shop.register") == content) << content.size();
  }
}

TEST(StatusCommand, AFileThatCannotBeWrittenIsReadAllTheSame) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kDay).exit_code, 0);
  const std::string before = shop.folder().Read("shop.register");
  std::filesystem::permissions(shop.folder().path(), std::filesystem::perms::all);
  const std::vector<std::vector<std::string>> commands = {
      {"status"},  {"status", "--json"},     {"paper"},
      {"journal"}, {"journal", "show", "1"}, {"journal", "verify"},
      {"fault"}};
  std::vector<std::string> answers;
  for (const auto& command : commands) answers.push_back(shop.Run(command).output);
  for (const bool folder : {false, true}) {
    std::filesystem::permissions(shop.file(), std::filesystem::perms(folder ? 0666 : 0444));
    std::filesystem::permissions(shop.folder().path(),
                                 std::filesystem::perms(folder ? 0555 : 0777));
    for (size_t i = 0; i < commands.size(); ++i) {
      const ProgramRun run = shop.Run(commands[i], {.as_nobody = true});
      EXPECT_EQ(run.exit_code, 0) << commands[i].back() << ": " << run.errors;
      EXPECT_EQ(WithoutTime(run.output), WithoutTime(answers[i])) << commands[i].back();
      EXPECT_EQ(shop.folder().names().size(), 2u) << commands[i].back();
    }
    EXPECT_EQ(shop.Run({"fault", "paper-end"}, {.as_nobody = true}).errors,
              "lorimat: " + shop.file() +
                  (folder ? ": its folder cannot be written: Permission denied\n"
                          : ": cannot be written: Permission denied\n"));
  }
  EXPECT_TRUE(shop.folder().Read("shop.register") == before);
  std::filesystem::permissions(shop.folder().path(), std::filesystem::perms::all);
}

TEST(StatusCommand, ARefusedRegisterHasNothingLeftBesideIt) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kDay).exit_code, 0);
  constexpr size_t kVersionAt = 63;  // of the head of the file
  std::string content = shop.folder().Read("shop.register");
  const std::vector<std::string> names = shop.folder().names();
  // None, the one behind today's, and 99.
  for (const char version : {'\0', static_cast<char>(content[kVersionAt] + 1), '\143'}) {
    content[kVersionAt] = version;
    shop.folder().Write("shop.register", content);
    for (const char* command : {"status", "paper", "journal", "fault"}) {
      const ProgramRun run = shop.Run({command});
      EXPECT_EQ(run.exit_code, 2) << command;
      EXPECT_THAT(run.errors,
                  HasSubstr(version == 0 ? "its version makes no sense" : "a newer version"));
      EXPECT_EQ(shop.folder().names(), names) << command;
    }
    EXPECT_EQ(shop.Sell("SUBT\n").exit_code, 2);
    EXPECT_EQ(shop.folder().names(), names);
    EXPECT_TRUE(shop.folder().Read("shop.register") == content);
  }
}

TEST(StatusCommand, AFolderIsNoRegister) {
  const TestFolder folder;
  for (const char* command : {"status", "paper", "journal", "fault"}) {
    const ProgramRun run = RunConsole({command, "--register", folder.path()});
    EXPECT_EQ(run.exit_code, 2) << command;
    EXPECT_EQ(run.errors, "lorimat: " + folder.path() + ": is a directory, not a register\n");
    EXPECT_EQ(RunConsole({command, "--register", folder.path()}, {.environment = {{"LANG", "it"}}})
                  .errors,
              "lorimat: " + folder.path() + ": è una cartella, non un registratore\n");
  }
}

TEST(StatusCommand, AFullStandardOutputIsAnError) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kDay).exit_code, 0);
  for (const std::vector<std::string>& arguments : {std::vector<std::string>{"status"},
                                                    {"status", "--json"},
                                                    {"paper"},
                                                    {"journal"},
                                                    {"journal", "--json"},
                                                    {"journal", "show", "1"},
                                                    {"journal", "verify"},
                                                    {"fault"}}) {
    const ProgramRun run = shop.Run(arguments, {.output_file = "/dev/full"});
    EXPECT_EQ(run.exit_code, 2) << arguments[0];
    EXPECT_THAT(run.errors, HasSubstr("No space left")) << arguments[0];
  }
  EXPECT_EQ(shop.Run({"journal", "verify"}).exit_code, 0);
}

TEST(StatusCommand, EveryCommandOnARegisterHasHelpWithExamplesAndExitCodes) {
  for (const std::vector<std::string>& command : {std::vector<std::string>{"status"},
                                                  {"paper"},
                                                  {"journal"},
                                                  {"journal", "show"},
                                                  {"journal", "verify"},
                                                  {"fault"},
                                                  {"backup"},
                                                  {"restore"}}) {
    std::vector<std::string> arguments = command;
    arguments.push_back("--help");
    const ProgramRun run = RunConsole(arguments);
    EXPECT_EQ(run.exit_code, 0) << command.back();
    EXPECT_THAT(run.output, HasSubstr("--register")) << command.back();
    EXPECT_THAT(run.output, HasSubstr("Examples:")) << command.back();
    EXPECT_THAT(run.output, HasSubstr("Exit codes:")) << command.back();
  }
}

// Nothing can be registered then: whoever looks finds out why.
TEST(StatusCommand, TellsOfAClockThatIsBehind) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=1.00\nCHIU\n").exit_code, 0);
  EXPECT_THAT(shop.Run({"status"}).output, Not(HasSubstr("Clock")));
  EXPECT_EQ(nlohmann::json::parse(shop.Run({"status", "--json"}).output)["clock"]["behind"], false);
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=1.00\nCHIU\n", "2099-12-31 10:30").exit_code, 0);
  EXPECT_THAT(LineOf(shop.Run({"status"}).output, "Clock"),
              MatchesRegex("Clock +shows ../../.... ..:.., more than an hour before the last "
                           "document or closing, 31/12/2099 10:30: nothing is registered before it "
                           "is right"));
  const nlohmann::json status = nlohmann::json::parse(shop.Run({"status", "--json"}).output);
  EXPECT_EQ(status["clock"]["behind"], true);
  EXPECT_EQ(status["clock"]["last_document"], "2099-12-31T10:30");
}

// What follows goes to standard output alone, and is a list's.
TEST(Follow, IsNotForFilesNorForEntriesByThemselves) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=1.00\nCHIU\n").exit_code, 0);
  for (const char* option : {"--paper", "--png", "--pdf"}) {
    const ProgramRun run = shop.Run({"paper", "--follow", option, shop.folder().Path("x")});
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.errors, HasSubstr(std::string(option) +
                                      ": --follow writes text to standard output, and no file"));
    EXPECT_FALSE(std::filesystem::exists(shop.folder().Path("x")));
  }
  EXPECT_THAT(shop.Run({"journal", "--follow", "verify"}).errors,
              HasSubstr("--follow: selects entries of the list"));
}
