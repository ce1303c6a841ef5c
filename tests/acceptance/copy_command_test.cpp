// "copy": a whole register in another file, whole or not at all.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "shop.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

namespace fs = std::filesystem;

namespace {

class CopyCommand : public testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(shop_
                  .Sell("VEND REP=1, PRE=12.34\nCHIU\nAZZGIO\n"
                        "FATTURA TIPO=2, RIGA1='ROSSI SRL'\nVEND REP=2, PRE=10.00\nCHIU\n")
                  .exit_code,
              0);
  }

  std::string to() const { return shop_.folder().Path("copy.register"); }
  ProgramRun Copy(const std::string& from, const std::string& target,
                  const ProgramSetting& setting = {}) const {
    return RunConsole({"copy", from, target}, setting);
  }
  ProgramRun copy() const { return Copy(shop_.file(), to()); }
  // What a program reads of a register, but for its name and the time.
  static nlohmann::json StatusOf(const std::string& file) {
    const ProgramRun run = RunConsole({"status", "--json", "--register", file});
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    nlohmann::json status = nlohmann::json::parse(run.output);
    status.erase("file");
    status["clock"].erase("now");
    status["memory"].erase("file_bytes");
    return status;
  }

  Shop shop_;
};

}  // namespace

TEST_F(CopyCommand, IsTheSameRegisterAndSaysSo) {
  const ProgramRun run = copy();
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.output,
            to() + ": copy of " + shop_.file() + ", the journal is good: 3 entries, 2 documents\n");
  EXPECT_EQ(run.errors, "lorimat: note: " + to() +
                            ": is the same register, serial number 99LRM0000001VR: only one of the "
                            "two may go on selling\n");
  EXPECT_EQ(StatusOf(to()), StatusOf(shop_.file()));
  for (const std::vector<std::string>& command :
       {std::vector<std::string>{"paper"}, {"journal"}, {"journal", "show", "1"}}) {
    std::vector<std::string> arguments = command;
    arguments.insert(arguments.end(), {"--register", to()});
    EXPECT_EQ(RunConsole(arguments).output, shop_.Run(command).output) << command[0];
  }
  // It goes on where the register is, and the register knows nothing of it.
  const std::string bytes = shop_.folder().Read("shop.register");
  EXPECT_THAT(RunConsole({"run", "-", "--register", to(), "--clock", "2024-03-15 11:00"},
                         {.input = "VEND REP=1, PRE=1.00\nCHIU\n"})
                  .output,
              HasSubstr("DOCUMENTO N. 0002-0001"));
  EXPECT_TRUE(shop_.folder().Read("shop.register") == bytes);
}

TEST_F(CopyCommand, TakesAnOpenDocumentAlong) {
  ASSERT_EQ(shop_.Sell("VEND REP=1, PRE=1.00\n").exit_code, 0);
  ASSERT_EQ(copy().exit_code, 0);
  EXPECT_EQ(StatusOf(to())["open_document"]["lines"], 1);
  EXPECT_EQ(StatusOf(shop_.file())["open_document"]["lines"], 1);
}

TEST_F(CopyCommand, NothingIsCopiedOntoItself) {
  const std::string link = shop_.folder().Path("link");
  const std::string hard = shop_.folder().Path("hard");
  fs::create_symlink("shop.register", link);
  fs::create_hard_link(shop_.file(), hard);
  const std::string bytes = shop_.folder().Read("shop.register");
  for (const std::string& target :
       {shop_.file(), link, hard, shop_.folder().Path("./shop.register")}) {
    const ProgramRun run = Copy(shop_.file(), target);
    EXPECT_EQ(run.exit_code, 2) << target;
    EXPECT_EQ(run.errors, "lorimat: " + target + ": is the register " + shop_.file() + " itself\n");
  }
  EXPECT_EQ(Copy(link, shop_.file()).exit_code, 2);
  EXPECT_TRUE(shop_.folder().Read("shop.register") == bytes);
}

TEST_F(CopyCommand, NothingIsOverwritten) {
  shop_.folder().Write("copy.register", "mine");
  fs::create_symlink("nowhere", shop_.folder().Path("dangling"));
  for (const std::string& target : {to(), shop_.folder().Path("dangling"), shop_.folder().path()}) {
    const ProgramRun run = Copy(shop_.file(), target);
    EXPECT_EQ(run.exit_code, 2) << target;
    EXPECT_EQ(run.errors, "lorimat: " + target + ": is there already, and is not overwritten\n");
  }
  EXPECT_EQ(shop_.folder().Read("copy.register"), "mine");
  fs::remove(to());
  shop_.folder().Write("copy.register-wal", "of another");
  EXPECT_THAT(copy().errors, HasSubstr("copy.register-wal is, which would be taken for"));
  EXPECT_FALSE(fs::exists(to()));
}

TEST_F(CopyCommand, WhatIsNoRegisterIsNotCopied) {
  const std::string text = shop_.folder().Write("text", "no register\n");
  const std::vector<std::string> before = shop_.folder().names();
  EXPECT_THAT(Copy(text, to()).errors, StartsWith("lorimat: " + text + ": "));
  EXPECT_THAT(Copy(shop_.folder().Path("none"), to()).errors, HasSubstr("no such register"));
  EXPECT_THAT(Copy(shop_.folder().path(), to()).errors, HasSubstr("is a directory"));
  for (const ProgramRun& dash : {Copy("-", shop_.folder().Path("copy")), Copy(shop_.file(), "-")}) {
    EXPECT_EQ(dash.exit_code, 2);
    EXPECT_EQ(
        dash.errors,
        "lorimat: -: standard input and output are no register; a file of this name is ./-\n");
  }
  EXPECT_THAT(Copy(shop_.file(), shop_.folder().Path("none/copy")).errors,
              HasSubstr("none/copy: cannot be made: No such file or directory"));
  EXPECT_EQ(shop_.folder().names(), before);
}

TEST_F(CopyCommand, AFullDiskLeavesNothing) {
  const std::vector<std::string> before = shop_.folder().names();
  // Of 512 bytes; a register has some 270. A reader's index of the log takes 64.
  for (const int blocks : {65, 128, 200}) {
    const ProgramRun run = RunProgram(
        "/bin/sh",
        {"-c", "ulimit -f " + std::to_string(blocks) + "; exec \"$0\" copy \"$1\" \"$2\"",
         std::string(LORIMAT_BIN_FOLDER) + "/lorimat", shop_.file(), to()});
    EXPECT_EQ(run.exit_code, 2) << blocks;
    EXPECT_EQ(run.errors, "lorimat: " + to() + ": cannot be written: File too large\n");
    EXPECT_EQ(shop_.folder().names(), before) << blocks;
  }
}

TEST_F(CopyCommand, ARegisterWithFindingsIsCopiedWithThem) {
  // The total of the first document, a digit of its printed form.
  std::fstream file(shop_.file(), std::ios::in | std::ios::out | std::ios::binary);
  std::string bytes = shop_.folder().Read("shop.register");
  const size_t at = bytes.find("TOTALE COMPLESSIVO                   12,34");
  ASSERT_NE(at, std::string::npos);
  for (size_t place = at; place != std::string::npos;
       place = bytes.find("TOTALE COMPLESSIVO                   12,34", place + 1)) {
    file.seekp(static_cast<std::streamoff>(place + 41));
    file.put('5');
  }
  file.close();
  ASSERT_EQ(shop_.Run({"journal", "verify"}).exit_code, 1);
  const ProgramRun run = copy();
  EXPECT_EQ(run.exit_code, 1) << run.errors;
  EXPECT_THAT(run.output, HasSubstr("whose journal has findings\n"));
  const std::string verified = shop_.Run({"journal", "verify"}).output;
  EXPECT_THAT(verified, HasSubstr(run.output.substr(0, run.output.find('\n'))));
  EXPECT_EQ(StatusOf(to()), StatusOf(shop_.file()));
}

// Behind each receipt of a seller that goes on a copy is made, which has just these.
TEST_F(CopyCommand, ARegisterThatIsSoldOnIsCopiedAtEachReceipt) {
  const TestFolder folder;
  const std::string script = R"(
    mkfifo in out
    "$0" shell --register shop --clock '2024-03-15 10:30' <in >out 2>/dev/null &
    exec 3>in 4<out
    for n in 1 2 3 4 5 6 7 8; do
      printf 'VEND REP=1, PRE=1.00\nCHIU\n' >&3
      while read -r line <&4; do
        case $line in *"DOCUMENTO N. 0001-000$n"*) break ;; esac
      done
      "$0" copy shop "copy$n" 2>/dev/null || exit 1
    done
    exec 3>&-
    cat <&4 >/dev/null
    wait)";
  const ProgramRun run =
      RunProgram("/bin/bash", {"-c", script, std::string(LORIMAT_BIN_FOLDER) + "/lorimat"},
                 {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 0) << run.errors;
  for (int number = 1; number <= 8; ++number) {
    const nlohmann::json status = StatusOf(folder.Path("copy" + std::to_string(number)));
    EXPECT_EQ(status["documents"], number);
    EXPECT_EQ(status["day"]["total_cents"], number * 100);
    EXPECT_EQ(status["grand_total_cents"], number * 100);
  }
  EXPECT_EQ(StatusOf(folder.Path("shop"))["documents"], 8);
}

// A seller that does not wait, and copies all the time: each is of one moment, and the seller loses
// nothing.
TEST_F(CopyCommand, WhileASellerGoesOnEveryCopyIsOfOneMoment) {
  const TestFolder folder;
  std::string lines;
  constexpr int kReceipts = 300;
  for (int n = 0; n < kReceipts; ++n) lines += "VEND REP=1, PRE=1.00\nVEND REP=2, PRE=0.50\nCHIU\n";
  folder.Write("lines.cmd", lines);
  const std::string script = R"(
    "$0" run - --register shop --clock '2024-03-15 10:30' </dev/null >/dev/null 2>&1
    { "$0" run lines.cmd --register shop --clock '2024-03-15 10:30' --paper paper
      echo $? >done; } &
    n=0
    while [ ! -s done ]; do
      n=$((n + 1))
      "$0" copy shop "copy$n" 2>>errors >>output || exit 1
    done
    wait
    cat done)";
  const ProgramRun run =
      RunProgram("/bin/bash", {"-c", script, std::string(LORIMAT_BIN_FOLDER) + "/lorimat"},
                 {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 0) << folder.Read("errors");
  EXPECT_EQ(run.output, "0\n");
  int64_t last = 0;
  for (int number = 1; fs::exists(folder.Path("copy" + std::to_string(number))); ++number) {
    const nlohmann::json status = StatusOf(folder.Path("copy" + std::to_string(number)));
    const int64_t documents = status["documents"];
    EXPECT_GE(documents, last);
    EXPECT_EQ(status["grand_total_cents"], documents * 150);
    EXPECT_EQ(status["day"]["total_cents"], documents * 150);
    last = documents;
  }
  EXPECT_EQ(StatusOf(folder.Path("shop"))["documents"], kReceipts);
}

// Wherever the kill comes, there is a whole copy or none.
TEST_F(CopyCommand, AKillLeavesNothingHalfMade) {
  const std::vector<std::string> before = shop_.folder().names();
  for (int round = 0; round < 5; ++round) {
    Copy(shop_.file(), to(), {.errors_to_terminal = true, .interrupt_at = "[", .signal = SIGKILL});
    if (fs::exists(to())) {
      EXPECT_EQ(StatusOf(to()), StatusOf(shop_.file()));
      fs::remove(to());
    }
    EXPECT_EQ(shop_.folder().names(), before);
  }
}

TEST_F(CopyCommand, WhatFailsBehindTheCopyLeavesIt) {
  const ProgramRun run = Copy(shop_.file(), to(), {.output_file = "/dev/full"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("the copy is there and whole, and its report is missing: "));
  EXPECT_EQ(StatusOf(to()), StatusOf(shop_.file()));
}

TEST_F(CopyCommand, SpeaksItalian) {
  const ProgramRun run = Copy(shop_.file(), to(), {.environment = {{"LANG", "it_IT.UTF-8"}}});
  EXPECT_THAT(run.output, HasSubstr("il giornale è integro: 3 voci, 2 documenti\n"));
  EXPECT_THAT(run.errors, HasSubstr("è lo stesso registratore, matricola 99LRM0000001VR"));
}
