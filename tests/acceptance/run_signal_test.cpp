// SIGTERM, SIGHUP and a Ctrl-C that comes twice: the run ends behind its line, with its paper.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "shop.h"

using testing::HasSubstr;
using testing::Not;

namespace {

struct Ending {
  int signal;
  const char* name;
};

constexpr Ending kEndings[] = {{SIGTERM, "SIGTERM"}, {SIGHUP, "SIGHUP"}};

constexpr const char* kKeeps =
    " keeps a receipt of 15/03/2024 10:30, 2 lines, subtotal 3,50, not paid: the next start voids "
    "it\n";

// Runs a script with the program as $1 and the pipes "lines" (7) and "errors" (8), in the shop's
// folder, and then waits for the process $pid, which has its errors go to the second.
ProgramRun Scripted(const Shop& shop, const std::string& script) {
  return RunProgram("/bin/bash",
                    {"-c",
                     "mkfifo lines errors; exec 7<>lines 8<>errors\n"
                     "wait_for() { while read -r -t 60 line <&8; do echo \"$line\" >&2\n"
                     "case $line in *$1*) return;; esac; done; }\n" +
                         script + "\nwait $pid; code=$?; echo END >&8; wait_for END; exit $code",
                     "bash", std::string(LORIMAT_BIN_FOLDER) + "/lorimat"},
                    {.folder = shop.folder().path()});
}

}  // namespace

TEST(RunSignal, EndsTheRunBehindItsLineWithThePaper) {
  for (const Ending& ending : kEndings) {
    const Shop shop;
    const ProgramRun run =
        RunConsole({"run", "-", "--register", shop.file(), "--clock", Shop::kClock, "-v", "--pdf",
                    shop.folder().Path("x.pdf")},
                   {.input = "VEND REP=1, PRE=1.50\nVEND REP=2, PRE=2.00\nVEND REP=1, PR",
                    .interrupt_at = "standard input:2: answer",
                    .signal = ending.signal});
    EXPECT_EQ(run.exit_code, 128 + ending.signal);
    EXPECT_THAT(run.errors,
                HasSubstr(std::string("stopped by ") + ending.name + " behind line 2\n"));
    EXPECT_THAT(run.errors, HasSubstr(kKeeps));
    EXPECT_THAT(run.output, HasSubstr("REPARTO 2                  10%        2,00\n"));
    EXPECT_THAT(shop.folder().Read("x.pdf"), testing::StartsWith("%PDF-"));
  }
}

TEST(RunSignal, EndsABatchBehindItsLineWithThePaper) {
  for (const Ending& ending : kEndings) {
    const Shop shop;
    std::string lines;
    for (int line = 0; line < 6000; ++line) lines += "VEND REP=1, PRE=0.01\n";
    const std::string file = shop.folder().Write("long.cmd", lines + "CHIU\n");
    const ProgramRun run = RunConsole({"run", file, "--batch", "--register", shop.file(), "--clock",
                                       Shop::kClock, "--trace", "-"},
                                      {.interrupt_at = "PRE=0.01", .signal = ending.signal});
    EXPECT_EQ(run.exit_code, 128 + ending.signal);
    EXPECT_THAT(run.errors, HasSubstr(std::string("stopped by ") + ending.name + " behind line "));
    EXPECT_THAT(run.errors, HasSubstr(" keeps a receipt of 15/03/2024 10:30, "));
    EXPECT_THAT(run.output, HasSubstr(" 0,01\n"));
    EXPECT_THAT(run.output, Not(HasSubstr("TOTALE")));
  }
}

TEST(RunSignal, EndsTheShellInAPipe) {
  for (const Ending& ending : kEndings) {
    const Shop shop;
    const ProgramRun run =
        RunConsole({"shell", "--register", shop.file(), "--clock", Shop::kClock},
                   {.input = "VEND REP=1, PRE=1.50\nVEND REP=2, PRE=2.00\nWRONG\nVEND REP=1, PR",
                    .interrupt_at = "standard input:3: code 257",
                    .signal = ending.signal});
    EXPECT_EQ(run.exit_code, 128 + ending.signal);
    EXPECT_THAT(run.errors,
                HasSubstr(std::string("stopped by ") + ending.name + " behind line 3\n"));
    EXPECT_THAT(run.errors, HasSubstr(kKeeps));
    EXPECT_THAT(run.output, HasSubstr("REPARTO 2                  10%        2,00\n"));
  }
}

// The paper goes to a pipe that is full until the signal has come again.
TEST(RunSignal, ASecondOneDoesNotTakeThePaper) {
  for (const std::string signal : {"INT", "TERM", "HUP"}) {
    const Shop shop;
    const ProgramRun run = Scripted(
        shop,
        "mkfifo paper; exec 9<>paper\n"
        "dd if=/dev/zero of=paper oflag=nonblock bs=4096 2>/dev/null\n"
        "\"$1\" run lines --register shop.register --clock '2024-03-15 10:30' -v --paper paper "
        "2>errors & pid=$!\n"
        "printf 'VEND REP=1, PRE=1.50\\nVEND REP=2, PRE=2.00\\n' >&7\n"
        "wait_for ':2: answer'; kill -" +
            signal +
            " $pid\n"
            "wait_for 'behind line 2'; kill -" +
            signal +
            " $pid\n"
            "exec 6<paper 9<&-; tr -d '\\0' <&6");
    EXPECT_THAT(run.errors, HasSubstr(kKeeps)) << signal;
    EXPECT_THAT(run.output, HasSubstr("REPARTO 2                  10%        2,00\n")) << signal;
    EXPECT_GT(run.exit_code, 128) << signal;
  }
}

TEST(RunSignal, OneThatTheCallerIgnoresDoesNotEndTheRun) {
  for (const std::string signal : {"TERM", "HUP"}) {
    const Shop shop;
    const ProgramRun run =
        Scripted(shop, "trap '' " + signal +
                           "\n\"$1\" run lines -v --stop-on-error 2>errors & pid=$!\n"
                           "echo SUBT >&7; wait_for ':1: '; kill -" +
                           signal + " $pid; echo WRONG >&7");
    EXPECT_EQ(run.exit_code, 1) << signal;
  }
}
