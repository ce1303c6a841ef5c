// "run --register": a register that is kept in a file, from one run to the next.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <nlohmann/json.hpp>

#include "shop.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

const char* const kReceipt = "VEND REP=1, PRE=1.00\nCHIU\n";

int CountOf(const std::string& text, const std::string& what) {
  int count = 0;
  for (size_t at = text.find(what); at != text.npos; at = text.find(what, at + 1)) ++count;
  return count;
}

nlohmann::json StatusOf(const Shop& shop) {
  const ProgramRun run = shop.Run({"status", "--json"});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  return nlohmann::json::parse(run.output, nullptr, false);
}

}  // namespace

TEST(RegisterRun, MakesTheFileAndSaysSo) {
  const Shop shop;
  const ProgramRun first = shop.Sell(kReceipt);
  EXPECT_EQ(first.exit_code, 0);
  EXPECT_EQ(first.errors, "lorimat: note: " + shop.file() + ": a new register was made\n");
  EXPECT_THAT(first.output, HasSubstr("DOCUMENTO N. 0001-0001\n"));
  const ProgramRun second = shop.Sell(kReceipt);
  EXPECT_EQ(second.exit_code, 0);
  EXPECT_THAT(second.errors, IsEmpty());
}

TEST(RegisterRun, AClockBehindTheLastClosingIsToldAndSellsNothing) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(std::string(kReceipt) + "AZZGIO\n", "2026-11-20 18:05").exit_code, 0);
  const std::string lines = shop.folder().Write("later.cmd", kReceipt);
  const std::vector<std::string> arguments = {"run",       lines,     "--register",
                                              shop.file(), "--clock", "2024-03-15 10:30"};
  const ProgramRun run = RunConsole(arguments);
  EXPECT_EQ(run.exit_code, 1);
  const std::string sentence =
      "The clock shows 15/03/2024 10:30, more than an hour before the last document or closing, "
      "20/11/2026 18:05: put the computer's clock right, or set the register's own with DIRECTIO "
      "CMD=2, OPT=149, DATI='DDMMYYYYHHMM', which the journal keeps.\n";
  EXPECT_THAT(run.errors, HasSubstr("lorimat: note: " + shop.file() + ": " + sentence));
  EXPECT_THAT(run.errors, HasSubstr(lines + ":1: code 1233: "));
  EXPECT_THAT(run.errors, HasSubstr("\n  " + sentence));
  EXPECT_THAT(run.output, Not(HasSubstr("DOCUMENTO N.")));
  const ProgramRun italian = RunConsole(arguments, {.environment = {{"LANG", "it_IT.UTF-8"}}});
  const std::string frase =
      "L'orologio segna 15/03/2024 10:30, più di un'ora prima dell'ultimo documento o chiusura, "
      "20/11/2026 18:05: va corretto l'orologio del computer, o impostato quello del registratore "
      "con DIRECTIO CMD=2, OPT=149, DATI='GGMMAAAAHHMM', e il giornale lo conserva.\n";
  EXPECT_THAT(italian.errors, HasSubstr("lorimat: nota: " + shop.file() + ": " + frase));
  EXPECT_THAT(italian.errors, HasSubstr("\n  " + frase));
  EXPECT_EQ(StatusOf(shop)["documents"], 1);
}

TEST(RegisterRun, TheNextRunGoesOnWhereTheLastOneEnded) {
  const Shop shop;
  ASSERT_EQ(shop.Sell("PREP REP=7, DES='FIORI', PRE=3.50\n" + std::string(kReceipt)).exit_code, 0);
  const ProgramRun run = shop.Sell("VEND REP=7\nCHIU\n");
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("FIORI                      22%        3,50\n"));
  EXPECT_THAT(run.output, HasSubstr("DOCUMENTO N. 0001-0002\n"));
  // The paper of this run alone.
  EXPECT_THAT(run.output, Not(HasSubstr("0001-0001")));
}

// 900 closings of 24 lines, and an extract of them all: 21600 lines at once.
TEST(RegisterRun, PrintsAllThatWasPrintedHoweverLongAReportIs) {
  const Shop shop;
  std::string lines;
  for (int closing = 0; closing < 900; ++closing) lines += "AZZGIO TIPO=0\n";
  lines += "DGFE DAZETA=1, AZETA=900\n" + std::string(kReceipt);
  const std::string file = shop.folder().Write("long.cmd", lines);
  const ProgramRun memory = RunConsole({"run", file, "--clock", Shop::kClock});
  const ProgramRun kept = shop.Sell(lines);
  for (const ProgramRun* run : {&memory, &kept}) {
    EXPECT_EQ(run->exit_code, 0) << run->errors;
    EXPECT_EQ(CountOf(run->output, "CHIUSURA N. 0001\n"), 2);
    EXPECT_EQ(CountOf(run->output, "CHIUSURA N. "), 1800);
    EXPECT_EQ(CountOf(run->output, "DOCUMENTO N. 0901-0001\n"), 1);
  }
  EXPECT_TRUE(memory.output == kept.output);
  // The roll has its end.
  const ProgramRun roll = shop.Run({"paper"});
  EXPECT_EQ(roll.exit_code, 0) << roll.errors;
  EXPECT_GE(CountOf(roll.output, "\n"), 20000);
  ASSERT_LT(roll.output.size(), kept.output.size());
  EXPECT_TRUE(kept.output.ends_with(roll.output));
}

TEST(RegisterRun, TheEnvironmentMayNameTheRegister) {
  const Shop shop;
  const std::string lines = shop.folder().Write("lines.cmd", kReceipt);
  const ProgramSetting setting = {.environment = {{"LORIMAT_REGISTER", shop.file()}}};
  EXPECT_EQ(RunConsole({"run", lines}, setting).exit_code, 0);
  const ProgramRun status = RunConsole({"status", "--json"}, setting);
  EXPECT_EQ(status.exit_code, 0) << status.errors;
  EXPECT_EQ(nlohmann::json::parse(status.output)["documents"], 1);
  // The option goes before it.
  const std::string other = shop.folder().Path("other.register");
  EXPECT_EQ(RunConsole({"run", lines, "--register", other}, setting).exit_code, 0);
  EXPECT_EQ(StatusOf(shop)["documents"], 1);
}

TEST(RegisterRun, RunsABatchOnItToo) {
  const Shop shop;
  const std::string lines = shop.folder().Write("lines.cmd", kReceipt);
  EXPECT_EQ(shop.Run({"run", lines, "--batch"}).exit_code, 0);
  EXPECT_EQ(StatusOf(shop)["documents"], 1);
}

TEST(RegisterRun, AnOpenReceiptIsKeptAndNamedAndTheNextStartVoidsIt) {
  const Shop shop;
  const ProgramRun cut = shop.Sell("VEND REP=1, PRE=1234.50\nVEND REP=2, PRE=2.00\n");
  EXPECT_EQ(cut.exit_code, 0);
  EXPECT_THAT(cut.errors, HasSubstr("lorimat: note: " + shop.file() +
                                    " keeps a receipt of 15/03/2024 10:30, 2 lines, subtotal "
                                    "1.236,50, not paid: the next start voids it\n"));
  const nlohmann::json before = StatusOf(shop);
  EXPECT_EQ(before["open_document"]["kind"], "receipt");
  EXPECT_EQ(before["open_document"]["lines"], 2);
  EXPECT_EQ(before["open_document"]["subtotal_cents"], 123650);
  EXPECT_EQ(before["open_document"]["registered"], false);
  EXPECT_EQ(before["open_document"]["begun"], "2024-03-15T10:30");
  EXPECT_EQ(before["day"]["abandoned"], 0);

  const ProgramRun next = shop.Sell("");
  EXPECT_EQ(next.exit_code, 0);
  EXPECT_EQ(next.errors, "lorimat: note: " + shop.file() +
                             ": a receipt of 15/03/2024 10:30, 2 lines, subtotal 1.236,50, was cut "
                             "off: not paid, and has been voided\n");
  const nlohmann::json after = StatusOf(shop);
  EXPECT_TRUE(after["open_document"].is_null());
  EXPECT_EQ(after["day"]["abandoned"], 1);
  EXPECT_EQ(after["day"]["total_cents"], 0);
  EXPECT_EQ(after["documents"], 0);
  // Once is enough.
  EXPECT_THAT(shop.Sell("").errors, IsEmpty());
  EXPECT_EQ(StatusOf(shop)["day"]["abandoned"], 1);
}

TEST(RegisterRun, ARegisteredReceiptThatWasNotEndedIsNamedSoAndEndsAtTheNextStart) {
  const Shop shop;
  // Data item 600: a settled document waits to be closed.
  const ProgramRun cut =
      shop.Sell("DIRECTIO CMD=2, OPT=600, DATI='1'\nVEND REP=1, PRE=5.00\nCHIU\n");
  EXPECT_EQ(cut.exit_code, 0) << cut.errors;
  EXPECT_THAT(cut.errors, HasSubstr(" keeps a receipt of 15/03/2024 10:30, 1 line, total 5,00, "
                                    "registered with number 0001: the next start ends it\n"));
  const nlohmann::json before = StatusOf(shop);
  EXPECT_EQ(before["open_document"]["registered"], true);
  EXPECT_EQ(before["open_document"]["number"], 1);
  EXPECT_EQ(before["day"]["total_cents"], 500);

  const ProgramRun next = shop.Sell("");
  EXPECT_THAT(next.output, HasSubstr("DOCUMENTO N. 0001-0001\n"));
  EXPECT_EQ(next.errors, "lorimat: note: " + shop.file() +
                             ": a receipt of 15/03/2024 10:30, 1 line, total 5,00, was cut off: "
                             "registered with number 0001, and has been ended\n");
  const nlohmann::json after = StatusOf(shop);
  EXPECT_TRUE(after["open_document"].is_null());
  EXPECT_EQ(after["day"]["receipts"], 1);
  EXPECT_EQ(after["day"]["total_cents"], 500);
  EXPECT_EQ(after["day"]["abandoned"], 0);
}

TEST(RegisterRun, CtrlCInAReceiptKeepsItAndSaysSo) {
  const Shop shop;
  const ProgramRun run =
      RunConsole({"run", "-", "--register", shop.file(), "--clock", Shop::kClock, "-v"},
                 {.input = "VEND REP=1, PRE=1.50\nVEND REP=2, PRE=2.00\n",
                  .interrupt_at = "standard input:2: answer"});
  EXPECT_EQ(run.exit_code, 130);
  EXPECT_THAT(run.errors, HasSubstr("stopped by Ctrl-C behind line 2\n"));
  EXPECT_THAT(run.errors, HasSubstr(" keeps a receipt of 15/03/2024 10:30, 2 lines, subtotal 3,50, "
                                    "not paid: the next start voids it\n"));
  EXPECT_THAT(run.output, HasSubstr("REPARTO 2                  10%        2,00\n"));
  EXPECT_EQ(StatusOf(shop)["open_document"]["lines"], 2);
}

// The library runs a batch to its end; the lines behind Ctrl-C must not reach the receipt.
TEST(RegisterRun, CtrlCInABatchKeepsTheReceiptAndSaysSo) {
  const Shop shop;
  const TestFolder scratch;
  std::string lines;
  for (int sale = 0; sale < 6000; ++sale) lines += "; a sale\n\nVEND REP=1, PRE=0.01\n";
  const std::string file = shop.folder().Write("long.cmd", lines + "CHIU\n");
  const ProgramRun run = RunConsole(
      {"run", file, "--batch", "--register", shop.file(), "--clock", Shop::kClock, "--trace", "-"},
      {.environment = {{"TMPDIR", scratch.path()}}, .interrupt_at = "PRE=0.01"});
  EXPECT_EQ(run.exit_code, 130);
  const std::string stopped = "stopped by Ctrl-C behind line ";
  const size_t at = run.errors.find(stopped);
  ASSERT_NE(at, std::string::npos);
  const int last = std::stoi(run.errors.substr(at + stopped.size()));
  EXPECT_LT(last, 3 * 6000);
  EXPECT_THAT(run.errors, HasSubstr(" keeps a receipt of 15/03/2024 10:30, "));
  EXPECT_THAT(run.errors, Not(HasSubstr(": code ")));
  EXPECT_THAT(run.output, Not(HasSubstr("TOTALE")));
  EXPECT_EQ(StatusOf(shop)["open_document"]["lines"], last / 3);
  EXPECT_THAT(scratch.names(), IsEmpty());
}

TEST(RegisterRun, AFileThatIsNoRegisterStaysAsItIs) {
  const Shop shop;
  for (const std::string& content :
       {std::string("VEND REP=1, PRE=1.00\n"), std::string(10000, '\xAB'), std::string(1, 'x')}) {
    shop.folder().Write("shop.register", content);
    const ProgramRun run = shop.Sell(kReceipt);
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, HasSubstr("lorimat: " + shop.file() + ": "));
    EXPECT_TRUE(shop.folder().Read("shop.register") == content) << content.size();
  }
}

TEST(RegisterRun, AFolderAndAMissingFolderAreRefusedWithTheirNames) {
  const TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", kReceipt);
  for (const std::string& file : {folder.path(), folder.Path("none/shop.register")}) {
    const ProgramRun run = RunConsole({"run", lines, "--register", file});
    EXPECT_EQ(run.exit_code, 2) << file;
    EXPECT_THAT(run.errors, HasSubstr(file + ": ")) << file;
    EXPECT_THAT(run.output, IsEmpty()) << file;
  }
}

TEST(RegisterRun, AReadOnlyFolderIsRefused) {
  const TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", kReceipt);
  std::filesystem::create_directory(folder.Path("closed"));
  chmod(folder.Path("closed").c_str(), 0555);
  const std::string file = folder.Path("closed/shop.register");
  const ProgramRun run = RunConsole({"run", lines, "--register", file}, {.as_nobody = true});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr(file + ": "));
  EXPECT_FALSE(std::filesystem::exists(file));
}

TEST(RegisterRun, ARegisterOfANewerProgramIsRefused) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kReceipt).exit_code, 0);
  // The version of a database's schema stands in the four bytes from the 60th, highest first.
  std::string content = shop.folder().Read("shop.register");
  ASSERT_GT(content.size(), 100u);
  content.replace(60, 4, std::string("\0\0\x27\x0F", 4));  // 9999
  shop.folder().Write("shop.register", content);
  for (const ProgramRun& run : {shop.Sell(kReceipt), shop.Run({"status"})}) {
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.errors, HasSubstr(shop.file() + ": "));
    EXPECT_THAT(run.errors, HasSubstr("9999"));
    EXPECT_THAT(run.output, IsEmpty());
  }
  EXPECT_TRUE(shop.folder().Read("shop.register") == content);
}

TEST(RegisterRun, ATruncatedRegisterIsRefused) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kReceipt).exit_code, 0);
  const std::string content = shop.folder().Read("shop.register");
  shop.folder().Write("shop.register", content.substr(0, content.size() / 2));
  for (const ProgramRun& run : {shop.Sell(kReceipt), shop.Run({"status"})}) {
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.errors, HasSubstr(shop.file() + ": "));
    EXPECT_THAT(run.output, IsEmpty());
  }
}

TEST(RegisterRun, OneProgramAtATime) {
  const Shop shop;
  const std::string lines = shop.folder().Path("pipe");
  ASSERT_EQ(mkfifo(lines.c_str(), 0600), 0);
  // Opened both ways, so that neither side waits for the other.
  const int pipe = open(lines.c_str(), O_RDWR | O_CLOEXEC);
  ASSERT_GE(pipe, 0);
  const std::string command = std::string(LORIMAT_BIN_FOLDER) + "/lorimat run " + lines +
                              " --stop-on-error --register " + shop.file() + " 2>&1 >/dev/null";
  FILE* first = popen(command.c_str(), "r");
  ASSERT_NE(first, nullptr);
  // It tells that it made the register, and from then on has it.
  char text[512] = {};
  ASSERT_NE(fgets(text, sizeof text, first), nullptr);
  EXPECT_THAT(text, HasSubstr("a new register was made"));

  // Looking is for everybody.
  for (const ProgramRun& run : {shop.Run({"status"}), shop.Run({"paper"}), shop.Run({"journal"}),
                                shop.Run({"journal", "verify"}), shop.Run({"fault"})}) {
    EXPECT_EQ(run.exit_code, 0) << run.errors;
  }
  for (const ProgramRun& run : {shop.Sell(kReceipt), shop.Run({"fault", "paper-end"})}) {
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_THAT(run.output, IsEmpty());
    EXPECT_THAT(run.errors, HasSubstr(shop.file() + ": "));
    EXPECT_THAT(run.errors, HasSubstr("in use"));
  }
  // A line that fails ends the first program.
  ASSERT_EQ(write(pipe, "WRONG\n", 6), 6);
  while (fgets(text, sizeof text, first) != nullptr) {
  }
  EXPECT_EQ(WEXITSTATUS(pclose(first)), 1);
  close(pipe);
  EXPECT_EQ(shop.Sell(kReceipt).exit_code, 0);
}

TEST(RegisterRun, AFullDiskNamesFileAndCauseAndLeavesNoHalfReceipt) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kReceipt).exit_code, 0);
  std::string lines;
  for (int i = 0; i < 2000; ++i) lines += kReceipt;
  const std::string file = shop.folder().Write("many.cmd", lines);
  // The largest file that this program may write stands in for the disk: the register's size
  // with some room. dash counts in blocks of 512 bytes.
  const auto blocks = std::filesystem::file_size(shop.file()) / 512 + 400;
  const std::string command = "trap '' XFSZ; ulimit -f " + std::to_string(blocks) + "; exec " +
                              LORIMAT_BIN_FOLDER + "/lorimat run " + file + " --register " +
                              shop.file() + " --clock '" + Shop::kClock + "'";
  const ProgramRun run = RunProgram("/bin/sh", {"-c", command});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("code 623"));  // the device's failure, 111
  EXPECT_THAT(run.errors, HasSubstr("lorimat: the register could not be kept: " + shop.file()));
  EXPECT_THAT(run.errors,
              HasSubstr("\n  The register could not store it, and nothing was changed: " +
                        shop.file() + ": "));

  const ProgramRun next = shop.Sell(kReceipt);
  EXPECT_EQ(next.exit_code, 0) << next.errors;
  EXPECT_EQ(shop.Run({"journal", "verify"}).exit_code, 0);
  const nlohmann::json status = StatusOf(shop);
  const int documents = status["documents"].get<int>();
  EXPECT_GT(documents, 2);
  EXPECT_LT(documents, 2002);
  EXPECT_EQ(status["day"]["receipts"], documents);
  // What was answered with success is on paper, and that is what is stored.
  const std::string number = "          DOCUMENTO N. 0001-";
  EXPECT_EQ(1 + CountOf(run.output, number) + CountOf(next.output, number), documents);
  EXPECT_TRUE(status["open_document"].is_null());
}

TEST(RegisterRun, ThePaperNeverReplacesTheRegister) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kReceipt).exit_code, 0);
  const std::string lines = shop.folder().Write("lines.cmd", kReceipt);
  for (const char* option : {"--paper", "--png", "--pdf"}) {
    const ProgramRun run = shop.Run({"run", lines, option, shop.folder().Path("./shop.register")});
    EXPECT_EQ(run.exit_code, 2) << option;
    EXPECT_THAT(run.errors, HasSubstr("is the register's file; the paper would replace it"));
  }
  EXPECT_EQ(StatusOf(shop)["documents"], 1);
}

TEST(RegisterRun, NothingIsMadeWhenTheLibraryIsNotThere) {
  const Shop shop;
  const std::string lines = shop.folder().Write("lines.cmd", kReceipt);
  const ProgramRun run = shop.Run({"run", lines, "--library", shop.folder().Path("none.so")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_FALSE(std::filesystem::exists(shop.file()));
}

TEST(RegisterRun, AnEmptyNameIsNotTakenForOneLeftOut) {
  const TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", kReceipt);
  const ProgramRun run = RunConsole({"run", lines, "--register", ""});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("--register"));
}

TEST(RegisterRun, ANameThatIsAFoldersIsRefusedAndNothingIsMade) {
  const Shop shop;
  const std::string lines = shop.folder().Write("lines.cmd", kReceipt);
  const auto run_on = [&](const std::string& name) {
    return RunConsole({"run", lines, "--register", name}, {.folder = shop.folder().path()});
  };
  for (const std::string end : {"/", "/.", "/../shop.register"}) {
    const ProgramRun run = run_on("shop.register" + end);
    EXPECT_EQ(run.exit_code, 2) << end;
    EXPECT_THAT(run.errors, HasSubstr("lorimat: shop.register" + end + ": ")) << end;
    EXPECT_THAT(run.errors, Not(HasSubstr("was made"))) << end;
    EXPECT_FALSE(std::filesystem::exists(shop.file())) << end;
  }
  ASSERT_EQ(shop.Sell(kReceipt).exit_code, 0);
  for (const std::string name :
       {"shop.register/", "shop.register/.", "none/../shop.register", "./shop.register/"}) {
    const ProgramRun run = run_on(name);
    EXPECT_EQ(run.exit_code, 2) << name;
    EXPECT_THAT(run.errors, HasSubstr("lorimat: " + name + ": ")) << name;
    EXPECT_THAT(run.errors, Not(HasSubstr("was made"))) << name;
    EXPECT_THAT(run.output, IsEmpty()) << name;
  }
  EXPECT_EQ(StatusOf(shop)["documents"], 1);
}

TEST(RegisterRun, StandardInputIsNoRegister) {
  const TestFolder folder;
  folder.Write("lines.cmd", kReceipt);
  for (const std::vector<std::string>& command : std::vector<std::vector<std::string>>{
           {"run", "lines.cmd"}, {"shell"}, {"status"}, {"paper"}, {"journal"}}) {
    std::vector<std::string> arguments = command;
    arguments.insert(arguments.end(), {"--register", "-"});
    const ProgramRun run = RunConsole(arguments, {.folder = folder.path()});
    EXPECT_EQ(run.exit_code, 2) << command.front();
    EXPECT_EQ(run.errors,
              "lorimat: -: standard input and output are no register; a file of this name is ./-\n")
        << command.front();
  }
  EXPECT_THAT(folder.names(), testing::ElementsAre("lines.cmd"));
  EXPECT_EQ(
      RunConsole({"run", "lines.cmd", "--register", "./-"}, {.folder = folder.path()}).exit_code,
      0);
  EXPECT_THAT(folder.names(), testing::Contains("-"));
}

TEST(RegisterRun, NamesThatADatabaseTakesForMoreAreFileNames) {
  const TestFolder folder;
  folder.Write("lines.cmd", kReceipt);
  for (const std::string name : {":memory:", "file:x?mode=ro", "file::memory:"}) {
    for (const std::string number : {"0001-0001", "0001-0002"}) {
      const ProgramRun run =
          RunConsole({"run", "lines.cmd", "--register", name}, {.folder = folder.path()});
      EXPECT_EQ(run.exit_code, 0) << run.errors;
      EXPECT_THAT(run.output, HasSubstr("DOCUMENTO N. " + number + "\n")) << name;
    }
    EXPECT_THAT(folder.names(), testing::Contains(name));
  }
}

// A receipt that goes out without its lottery code succeeds, and is noted, in a file and at the
// prompt.
TEST(RegisterRun, ALotteryCodeThatIsLeftOutIsNoted) {
  const Shop shop;
  ASSERT_EQ(shop.Sell(kReceipt).exit_code, 0);
  const std::string lines =
      "VEND REP=1, PRE=1.00\nINP TASTO=LOTTERIA\nINP LOTTERIA='ABCD1234', TASTO=CONFERMA\n";
  const ProgramRun card = shop.Sell(lines + "CHIU TEND=CARTA\n");
  EXPECT_EQ(card.exit_code, 0);
  EXPECT_THAT(card.errors, Not(HasSubstr("note")));
  const std::string note =
      "lorimat: note: receipt 0001-0003 went out without its lottery code: not all of it was paid "
      "electronically\n";
  const ProgramRun cash = shop.Sell(lines + "CHIU\n");
  EXPECT_EQ(cash.exit_code, 0);
  EXPECT_THAT(cash.errors, HasSubstr(note));
  EXPECT_EQ(CountOf(cash.errors, "lottery"), 1);
  const ProgramRun shell = RunConsole({"shell"}, {.input = lines + "CHIU\n"});
  EXPECT_THAT(shell.errors, HasSubstr("note: receipt 0001-0001 went out without its lottery code"));
}

// It is no other program that has the file.
TEST(RegisterRun, AFileSystemWithoutLocksIsToldAndLeavesNoFile) {
  const Shop shop;
  const std::string lines = shop.folder().Write("receipt.cmd", kReceipt);
  const std::vector<std::string> arguments = {"run", lines, "--register", shop.file()};
  const ProgramSetting setting = WithPreload(LORIMAT_NO_LOCKS);
  const std::string told = "lorimat: " + shop.file() + ": cannot be opened: No locks available\n";
  const ProgramRun made = RunConsole(arguments, setting);
  EXPECT_EQ(made.exit_code, 2);
  EXPECT_EQ(made.errors, told);
  EXPECT_FALSE(std::filesystem::exists(shop.file()));
  // One that is there stays.
  ASSERT_EQ(shop.Sell(kReceipt).exit_code, 0);
  const ProgramRun there = RunConsole(arguments, setting);
  EXPECT_EQ(there.exit_code, 2);
  EXPECT_EQ(there.errors, told);
  EXPECT_EQ(StatusOf(shop)["documents"], 1);
}
