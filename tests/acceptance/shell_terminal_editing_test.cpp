// Lines as they are typed in the shell: editing, the history, what Tab completes.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>
#include <sys/stat.h>

#include <algorithm>
#include <string>
#include <vector>

#include "shell_terminal_fixture.h"

using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

TEST_F(ShellOnTerminal, TheLineIsEditedBeforeItRuns) {
  TerminalRun run(shell(), setting());
  run.Type("VEND REP=1, PRE=2.5");
  run.WaitForTyped("VEND REP=1, PRE=2.5");
  run.Type("\b1");
  run.WaitForTyped("VEND REP=1, PRE=2.1");
  run.Type("\x01");  // to the beginning
  run.WaitForTyped("");
  run.Type("  ");
  run.WaitForTyped("  ");
  EXPECT_THAT(run.TypeForPrompt("\r"), Contains(HasSubstr("subtotal 2,10")));
  run.Type("SUBX");
  run.Type(kLeft);
  run.WaitForTyped("SUB");
  run.Type("T\x0b");  // and cut the rest
  run.WaitForTyped("SUBT");
  EXPECT_EQ("ok", run.TypeForPrompt("\r").front());
}

TEST_F(ShellOnTerminal, TheUpKeyBringsLinesBackAlsoInTheNextSession) {
  {
    TerminalRun run(shell(), setting());
    run.Enter("VEND REP=1, PRE=1.00");
    run.Enter("SUBT");
    run.Type(kUp);
    run.WaitForTyped("SUBT");
    run.Type(kUp);
    run.WaitForTyped("VEND REP=1, PRE=1.00");
    run.Type(kDown);
    run.WaitForTyped("SUBT");
    run.TypeForPrompt("\r");
    run.Enter(" PRMSG MSG='A SECRET'");
    run.Enter("POPER OPE=3, PASS='A SECRET'");
    run.Enter("CHIU");
    run.Type(kCtrlD);
    EXPECT_EQ(0, run.WaitForEnd());
  }
  EXPECT_EQ("VEND REP=1, PRE=1.00\nSUBT\nCHIU\n", ReadFile(history()));
  struct stat status {};
  ASSERT_EQ(0, stat(history().c_str(), &status));
  EXPECT_EQ(0600u, status.st_mode & 0777);
  TerminalRun run(shell(), setting());
  run.Type(kUp);
  run.WaitForTyped("CHIU");
}

TEST_F(ShellOnTerminal, CtrlRSearchesTheHistory) {
  TerminalRun run(shell(), setting());
  run.Enter("VEND REP=1, PRE=1.00");
  run.Enter("SUBT");
  run.Enter("CHIU");
  run.Type("\x12VEN");
  run.WaitFor("VEND REP=1, PRE=1.00");
  EXPECT_THAT(run.TypeForPrompt("\x1b\r"), Contains(HasSubstr("subtotal 1,00")));
}

TEST_F(ShellOnTerminal, TheFolderOfTheHistoryMayBeNamed) {
  TerminalSetting named = setting();
  named.environment["XDG_STATE_HOME"] = folder_.Path("state");
  TerminalRun run(shell(), named);
  run.Enter("SUBT");
  EXPECT_EQ("SUBT\n", folder_.Read("state/lorimat/history"));
}

TEST_F(ShellOnTerminal, AHistoryThatCannotBeKeptIsANote) {
  TerminalSetting none = setting();
  none.environment["HOME"] = "/proc/none";
  none.columns = 200;
  TerminalRun run(shell(), none);
  EXPECT_THAT(run.Enter("SUBT"),
              Contains(StartsWith("lorimat: note: the lines typed are not kept: /proc/none/")));
  EXPECT_THAT(run.Enter("CHIU"), Not(Contains(HasSubstr("not kept"))));
  run.Type(kUp);
  run.WaitForTyped("CHIU");
}

TEST_F(ShellOnTerminal, TabCompletesCommandsFieldsAndValues) {
  TerminalRun run(shell(), setting());
  run.Type("ve\t");
  run.WaitForTyped("VEND ");
  run.Type("rep\t");
  run.WaitForTyped("VEND REP=");
  run.Type("1, de\t");
  run.WaitForTyped("VEND REP=1, DES=");
  run.Type("'X', pre\t5.00");
  run.WaitForTyped("VEND REP=1, DES='X', PRE=5.00");
  EXPECT_THAT(run.TypeForPrompt("\r"), Contains("  |X                          22%        5,00|"));
  run.Type("chiu ten\tcon\t");
  run.WaitForTyped("chiu TEND=CONTANTI");
  EXPECT_EQ(kReady, run.TypeForPrompt("\r").back());
}

TEST_F(ShellOnTerminal, SeveralCandidatesAreListedBelowTheLine) {
  TerminalRun run(shell(), setting());
  run.Type("perc\t");
  run.WaitFor("PERCA  PERCB");
  run.WaitForTyped("PERC");
  run.Type("a\t");
  run.WaitForTyped("PERCA ");
}

TEST_F(ShellOnTerminal, TabCompletesNamesOfFiles) {
  folder_.Write("tuesday.cmd", "VEND REP=1, PRE=3.00\nCHIU\n");
  TerminalRun run(shell(), setting());
  run.Type("@tue\t");
  run.WaitForTyped("@tuesday.cmd");
  EXPECT_THAT(run.TypeForPrompt("\r"), Contains("ok (2 Lines   0 msec)"));
  run.Type(".ba\t");
  run.WaitForTyped(".batch ");
  run.Type("tu\t");
  run.WaitForTyped(".batch tuesday.cmd");
  EXPECT_THAT(run.TypeForPrompt("\r"), Contains("ok: 2 lines"));
}

}  // namespace
