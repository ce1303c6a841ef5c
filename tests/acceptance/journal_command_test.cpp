// "journal": listed, shown, and verified against its chain of hashes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "shop.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

// Two days: a receipt, an abandoned one and the closing, then an invoice and a credit note.
void SellTwoDays(const Shop& shop) {
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=2.50, DES='MELE'\nCHIU\n"
                      "VEND REP=1, PRE=9.00\nRESPRN\n"
                      "AZZGIO\n")
                .exit_code,
            0);
  ASSERT_EQ(shop.Sell("FATTURA TIPO=2, RIGA1='ROSSI SRL'\nVEND REP=1, PRE=10.00\nCHIU\n",
                      "2024-03-16 09:05")
                .exit_code,
            0);
}

const char* const kHead = "   Place  Kind         Number     Time              First words\n";
const char* const kReceipt =
    "       1  receipt      0001-0001  15/03/2024 10:30  DOCUMENTO COMMERCIALE\n";
const char* const kAbandoned =
    "       2  abandoned    0001       15/03/2024 10:30  DOCUMENTO COMMERCIALE\n";
const char* const kClosing =
    "       3  closing      0001       15/03/2024 10:30  CHIUSURA GIORNALIERA\n";
const char* const kInvoice = "       4  invoice      0002-0001  16/03/2024 09:05  FATTURA\n";

}  // namespace

TEST(JournalCommand, ListsItsEntries) {
  const Shop shop;
  SellTwoDays(shop);
  const ProgramRun run = shop.Run({"journal"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_EQ(run.output, std::string(kHead) + kReceipt + kAbandoned + kClosing + kInvoice);
}

TEST(JournalCommand, SelectsByClosureDateAndKind) {
  const Shop shop;
  SellTwoDays(shop);
  const std::string head = kHead;
  const struct {
    std::vector<std::string> options;
    std::string rows;
  } cases[] = {
      {{"--from", "2"}, std::string() + kInvoice},
      {{"--to", "1"}, std::string() + kReceipt + kAbandoned + kClosing},
      {{"--from", "1", "--to", "1", "--kind", "closing"}, kClosing},
      {{"--kind", "receipt", "--kind", "invoice"}, std::string() + kReceipt + kInvoice},
      {{"--from", "2024-03-16"}, kInvoice},
      {{"--to", "2024-03-15"}, std::string() + kReceipt + kAbandoned + kClosing},
      {{"--from", "2024-03-15 10:31"}, kInvoice},
      {{"--from", "2024-03-15 10:30", "--to", "2024-03-16 09:04", "--kind", "receipt"}, kReceipt},
      // As the list, the paper, JSON and an answer show them.
      {{"--from", "16/03/2024"}, kInvoice},
      {{"--from", "15/03/2024 10:31"}, kInvoice},
      {{"--to", "15/03/2024"}, std::string() + kReceipt + kAbandoned + kClosing},
      {{"--from", "2024-03-16T09:05", "--to", "2024-03-16T09:05:59"}, kInvoice},
      {{"--from", "15032024", "--to", "160320240904"},
       std::string() + kReceipt + kAbandoned + kClosing},
  };
  for (const auto& one : cases) {
    std::vector<std::string> arguments = {"journal"};
    arguments.insert(arguments.end(), one.options.begin(), one.options.end());
    const ProgramRun run = shop.Run(arguments);
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    EXPECT_EQ(run.output, head + one.rows) << testing::PrintToString(one.options);
  }
}

TEST(JournalCommand, AnEmptySelectionSaysSoOnStandardError) {
  const Shop shop;
  SellTwoDays(shop);
  const ProgramRun run = shop.Run({"journal", "--from", "2030-01-01"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_EQ(run.errors, "lorimat: note: the journal has no such entries\n");
  EXPECT_EQ(shop.Run({"journal", "--from", "2030-01-01", "--json"}).output, "[]\n");
}

TEST(JournalCommand, ListsAsJson) {
  const Shop shop;
  SellTwoDays(shop);
  const ProgramRun run = shop.Run({"journal", "--json"});
  const nlohmann::json list = nlohmann::json::parse(run.output);
  ASSERT_EQ(list.size(), 4u);
  EXPECT_EQ(list[0], nlohmann::json({{"place", 1},
                                     {"kind", "receipt"},
                                     {"closure", 1},
                                     {"number", 1},
                                     {"time", "2024-03-15T10:30"},
                                     {"first_words", "DOCUMENTO COMMERCIALE"}}));
  EXPECT_EQ(list[2]["kind"], "closing");
  EXPECT_TRUE(list[2]["number"].is_null());
}

TEST(JournalCommand, WrongSelectionsAreNamed) {
  const Shop shop;
  SellTwoDays(shop);
  const struct {
    std::vector<std::string> options;
    const char* message;
  } cases[] = {
      {{"--from", "yesterday"}, "--from yesterday: is neither the number of a closing nor a date"},
      {{"--to", "2024-02-30"}, "--to 2024-02-30: is neither"},
      {{"--from", "2024-03-15 24:00"}, "is neither"},
      {{"--from", "03/15/2024"}, "--from 03/15/2024: is neither"},
      {{"--from", "12345"}, "--from 12345: is neither"},
      {{"--from", "1", "--to", "2024-03-15"}, "both are closings, or both are dates"},
      {{"--kind", "reciept"}, "--kind reciept: no entries have this kind; did you mean receipt?"},
      {{"--kind", "xyzxyzxyz"}, "the kinds are receipt, invoice"},
      {{"--from", ""}, "--from"},
  };
  for (const auto& one : cases) {
    std::vector<std::string> arguments = {"journal"};
    arguments.insert(arguments.end(), one.options.begin(), one.options.end());
    const ProgramRun run = shop.Run(arguments);
    EXPECT_EQ(run.exit_code, 2) << one.message;
    EXPECT_THAT(run.output, IsEmpty()) << one.message;
    EXPECT_THAT(run.errors, HasSubstr(one.message));
  }
}

TEST(JournalCommand, ShowsAnEntryAsItWasPrinted) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(ReadFile(SourceFile("examples/receipt.cmd"))).exit_code, 0);
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=1.00\nCHIU\n").exit_code, 0);
  const ProgramRun run = shop.Run({"journal", "show", "1"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_EQ(run.output, ExpectedPaper("receipt.txt"));
  const nlohmann::json entry =
      nlohmann::json::parse(shop.Run({"journal", "show", "2", "--json"}).output);
  EXPECT_EQ(entry["place"], 2);
  EXPECT_EQ(entry["number"], 2);
  EXPECT_EQ(entry["lines"][4], "          DOCUMENTO COMMERCIALE");
}

TEST(JournalCommand, ThereIsNoEntryBehindTheLastOne) {
  const Shop shop;
  SellTwoDays(shop);
  const ProgramRun run = shop.Run({"journal", "show", "5"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_EQ(run.errors, "lorimat: the journal has no entry 5; it has 4\n");
  for (const char* place : {"0", "-1", "x"}) {
    const ProgramRun refused = shop.Run({"journal", "show", place});
    EXPECT_EQ(refused.exit_code, 2) << place;
    EXPECT_LT(refused.errors.size(), 120u) << refused.errors;
  }
}

TEST(JournalCommand, OptionsOfTheListAreRefusedByShowAndVerify) {
  const Shop shop;
  SellTwoDays(shop);
  const struct {
    std::vector<std::string> arguments;
    const char* message;
  } cases[] = {
      {{"journal", "--kind", "closing", "show", "1"},
       "--kind: selects entries of the list, and \"journal show\" shows no list"},
      {{"journal", "--from", "1", "show", "1"}, "--from: selects entries of the list"},
      {{"journal", "--to", "2024-03-15", "verify"},
       "--to: selects entries of the list, and \"journal verify\" shows no list"},
  };
  for (const auto& one : cases) {
    const ProgramRun run = shop.Run(one.arguments);
    EXPECT_EQ(run.exit_code, 2) << one.message;
    EXPECT_THAT(run.output, IsEmpty()) << one.message;
    EXPECT_THAT(run.errors, HasSubstr(one.message));
  }
}

TEST(JournalCommand, TheHelpOfShowAndVerifyNamesTheVariable) {
  const std::string option = "  --register FILE (Env:LORIMAT_REGISTER)\n";
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"journal"}, {"journal", "show"}, {"journal", "verify"}}) {
    std::vector<std::string> arguments = command;
    arguments.push_back("--help");
    EXPECT_THAT(RunConsole(arguments).output, HasSubstr(option)) << command.back();
  }
  EXPECT_THAT(RunConsole({"journal", "show", "--help"}, {.environment = {{"LANG", "it"}}}).output,
              HasSubstr("(Ambiente:LORIMAT_REGISTER)\n"));
}

TEST(JournalCommand, TheRegisterIsNamedOnce) {
  const Shop shop;
  SellTwoDays(shop);
  const ProgramSetting variable = {.environment = {{"LORIMAT_REGISTER", shop.file()}}};
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"verify"}, {"show", "1"}}) {
    std::vector<std::string> arguments = {"journal", "--register", shop.file()};
    arguments.insert(arguments.end(), command.begin(), command.end());
    EXPECT_EQ(RunConsole(arguments, variable).exit_code, 0) << command[0];
    const ProgramRun run = shop.Run(arguments, variable);
    EXPECT_EQ(run.exit_code, 2) << command[0];
    EXPECT_THAT(run.output, IsEmpty()) << command[0];
    EXPECT_EQ(run.errors,
              "lorimat: --register: At Most 1 required but received 2\n"
              "Run with --help for more information.\n")
        << command[0];
  }
}

TEST(JournalCommand, ARangeThatEndsBeforeItBeginsIsRefused) {
  const Shop shop;
  SellTwoDays(shop);
  const std::vector<std::pair<std::string, std::string>> reversed = {
      {"5", "2"}, {"2024-03-16", "2024-03-15"}, {"2024-03-15 10:31", "2024-03-15 10:30"}};
  for (const auto& [from, to] : reversed) {
    const ProgramRun run = shop.Run({"journal", "--from", from, "--to", to});
    EXPECT_EQ(run.exit_code, 2) << from;
    EXPECT_THAT(run.output, IsEmpty()) << from;
    EXPECT_EQ(run.errors,
              "lorimat: --from " + from + " --to " + to + ": the range ends before it begins\n");
  }
  EXPECT_EQ(shop.Run({"journal", "--from", "2", "--to", "2"}).exit_code, 0);
  EXPECT_EQ(shop.Run({"journal", "--from", "2024-03-15", "--to", "2024-03-15"}).exit_code, 0);
}

TEST(JournalCommand, TheRegisterMayBeNamedInFrontOfShowAndVerify) {
  const Shop shop;
  SellTwoDays(shop);
  EXPECT_EQ(RunConsole({"journal", "--register", shop.file(), "verify"}).exit_code, 0);
  const ProgramSetting other = {.environment = {{"LORIMAT_REGISTER", "/nonexistent"}}};
  EXPECT_EQ(shop.Run({"journal", "verify"}, other).exit_code, 0);
  EXPECT_EQ(RunConsole({"journal", "--register", shop.file(), "verify"}, other).exit_code, 0);
  const ProgramSetting named = {.environment = {{"LORIMAT_REGISTER", shop.file()}}};
  EXPECT_EQ(RunConsole({"journal", "verify"}, named).exit_code, 0);
}

TEST(JournalCommand, AJournalThatIsGoodVerifies) {
  const Shop shop;
  SellTwoDays(shop);
  const ProgramRun run = shop.Run({"journal", "verify"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_EQ(run.output, shop.file() + ": the journal is good: 4 entries, 2 documents\n");
  const nlohmann::json json =
      nlohmann::json::parse(shop.Run({"journal", "verify", "--json"}).output);
  EXPECT_EQ(json["good"], true);
  EXPECT_EQ(json["entries"], 4);
  EXPECT_EQ(json["documents"], 2);
  EXPECT_EQ(json["findings"], nlohmann::json::array());
}

TEST(JournalCommand, AChangedByteShows) {
  const Shop shop;
  SellTwoDays(shop);
  std::string content = shop.folder().Read("shop.register");
  // Every place where the receipt's description is stored.
  size_t found = 0;
  for (size_t at = content.find("MELE"); at != content.npos; at = content.find("MELE", at + 1)) {
    content.replace(at, 4, "PERE");
    ++found;
  }
  ASSERT_GT(found, 0u);
  shop.folder().Write("shop.register", content);
  const ProgramRun run = shop.Run({"journal", "verify"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, HasSubstr(shop.file() + ": "));
  EXPECT_THAT(run.output, HasSubstr("the journal was changed: 4 entries, 2 documents, "));
  EXPECT_THAT(run.output, Not(HasSubstr("is good")));
  const ProgramRun json = shop.Run({"journal", "verify", "--json"});
  EXPECT_EQ(json.exit_code, 1);
  const nlohmann::json check = nlohmann::json::parse(json.output);
  EXPECT_EQ(check["good"], false);
  EXPECT_GE(check["findings"].size(), 1u);
}

TEST(JournalCommand, FindingsAreToldInTheReadersLanguage) {
  const Shop shop;
  SellTwoDays(shop);
  std::string content = shop.folder().Read("shop.register");
  for (size_t at = content.find("MELE"); at != content.npos; at = content.find("MELE", at + 1)) {
    content.replace(at, 4, "PERE");
  }
  shop.folder().Write("shop.register", content);
  const std::string name = shop.file() + ": ";
  EXPECT_EQ(shop.Run({"journal", "verify"}).output,
            name +
                "entry 1, receipt 0001-0001: its hash does not fit: the entry, or what it stands "
                "for, was changed\n" +
                name + "the journal was changed: 4 entries, 2 documents, 1 finding\n");
  const ProgramSetting italian = {.environment = {{"LANG", "it_IT.UTF-8"}}};
  const ProgramRun run = shop.Run({"journal", "verify"}, italian);
  EXPECT_THAT(run.output,
              HasSubstr(name + "voce 1, scontrino 0001-0001: l'hash non corrisponde: la voce, o "
                               "quello che rappresenta, è stata cambiata\n"));
  EXPECT_THAT(run.output, Not(HasSubstr("receipt")));
  EXPECT_THAT(run.output, Not(HasSubstr("entry")));
  // For programs in English, with a code that stays.
  const nlohmann::json check =
      nlohmann::json::parse(shop.Run({"journal", "verify", "--json"}, italian).output);
  EXPECT_EQ(check["findings"][0],
            "entry 1, receipt 0001-0001: its hash does not fit: the entry, or what it stands for, "
            "was changed");
  EXPECT_EQ(check["finding_codes"], nlohmann::json::array({"entry-hash"}));
}

TEST(JournalCommand, AClockThatWasSetBackIsANoteAndTheJournalIsGood) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("VEND REP=1, PRE=2.50\nCHIU\nAZZGIO\n", "2099-12-31 23:59").exit_code, 0);
  ASSERT_EQ(shop.Sell("DIRECTIO CMD=2, OPT=149, DATI='150320241030'\n"
                      "VEND REP=1, PRE=2.50\nCHIU\nAZZGIO\n")
                .exit_code,
            0);
  const ProgramRun run = shop.Run({"journal", "verify"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, HasSubstr(": the clock was set back from 31/12/2099 23:59 to 15/03/2024 "
                                    "10:30\n"));
  EXPECT_THAT(run.output, HasSubstr("the journal is good: 4 entries, 2 documents\n"));
  const ProgramSetting italian = {.environment = {{"LANG", "it_IT.UTF-8"}}};
  EXPECT_THAT(shop.Run({"journal", "verify"}, italian).output,
              HasSubstr("l'orologio è stato rimesso indietro da 31/12/2099 23:59 a 15/03/2024 "
                        "10:30\n"));
  const nlohmann::json check =
      nlohmann::json::parse(shop.Run({"journal", "verify", "--json"}, italian).output);
  EXPECT_EQ(check["good"], true);
  EXPECT_EQ(check["note_codes"], nlohmann::json::array({"clock-set-back"}));
  EXPECT_THAT(check["notes"][0].get<std::string>(), HasSubstr("the clock was set back from"));
  EXPECT_EQ(check["findings"], nlohmann::json::array());
}

TEST(JournalCommand, DamageIsNamedWithTheFileOnce) {
  constexpr size_t kPage = 4096;
  const Shop shop;
  SellTwoDays(shop);
  const std::string whole = shop.folder().Read("shop.register");
  const std::string name = shop.file() + ": ";
  int damaged = 0;
  // Each page in its turn becomes nonsense; some of them the check alone reads.
  for (size_t at = kPage; at < whole.size(); at += kPage) {
    std::string content = whole;
    content.replace(at, kPage, kPage, 'Z');
    shop.folder().Write("shop.register", content);
    const ProgramRun run = shop.Run({"journal", "verify"});
    EXPECT_NE(run.exit_code, 0) << at;
    if (run.output.find(": the file is damaged\n") != std::string::npos) ++damaged;
    if (run.output.find("the file is damaged") != std::string::npos) {
      EXPECT_THAT(run.output, HasSubstr(name + "the file is damaged: ")) << at;
      EXPECT_THAT(run.output, Not(HasSubstr("the journal was changed"))) << at;
    }
    EXPECT_THAT(run.output, Not(HasSubstr(name + name))) << at;
  }
  EXPECT_GT(damaged, 0);
}

TEST(JournalCommand, ATerminalSeesHowFarItIs) {
  const Shop shop;
  SellTwoDays(shop);
  const ProgramRun run = shop.Run({"journal", "verify"}, {.errors_to_terminal = true});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, HasSubstr("100%"));
  EXPECT_EQ(run.output, shop.file() + ": the journal is good: 4 entries, 2 documents\n");
}
