// What becomes of the program when nobody reads on: "lorimat words | head".
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "program_run.h"

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

// Runs the program by bash with its standard output going to a pipe without a reader.
ProgramRun RunUnread(const std::string& signal, const std::string& arguments) {
  const TestFolder folder;
  folder.Write("lines", "VEND REP=1, PRE=1.00\nCHIU\n");
  // A pipe that is open both ways has a reader, so that it can be opened for writing.
  const std::string script = "mkfifo pipe; exec 8<>pipe; exec 9>pipe; exec 8<&-\nenv --" + signal +
                             "-signal=PIPE \"$1\" " + arguments + " >&9 < lines";
  return RunProgram("/bin/bash",
                    {"-c", script, "bash", std::string(LORIMAT_BIN_FOLDER) + "/lorimat"},
                    {.folder = folder.path()});
}

}  // namespace

TEST(ReaderGone, TheSignalEndsTheProgramAsItEndsOthers) {
  for (const char* arguments : {"words", "run lines", "--help"}) {
    const ProgramRun run = RunUnread("default", arguments);
    EXPECT_EQ(141, run.exit_code) << arguments;
    EXPECT_THAT(run.errors, IsEmpty()) << arguments;
  }
}

TEST(ReaderGone, WhatTheRegisterHasDoneIsKept) {
  const TestFolder folder;
  const std::string file = folder.Path("shop.register");
  EXPECT_EQ(141, RunUnread("default", "run lines --register " + file).exit_code);
  const ProgramRun status = RunConsole({"status", "--register", file});
  EXPECT_EQ(0, status.exit_code) << status.errors;
  EXPECT_THAT(status.output, HasSubstr("  receipts      1\n"));
}

TEST(ReaderGone, WhoIgnoresTheSignalGetsAnError) {
  const ProgramRun run = RunUnread("ignore", "words");
  EXPECT_EQ(2, run.exit_code);
  EXPECT_EQ("lorimat: cannot write to standard output: Broken pipe\n", run.errors);
}

TEST(ReaderGone, AFollowerTellsItAsOthersDo) {
  const TestFolder folder;
  const std::string file = folder.Path("shop.register");
  ASSERT_EQ(0, RunConsole({"init", file}).exit_code);
  for (const char* command : {"paper", "status", "journal"}) {
    const std::string follow = std::string(command) + " --follow --register " + file;
    const ProgramRun error = RunUnread("ignore", follow);
    EXPECT_EQ(2, error.exit_code) << command;
    EXPECT_EQ("lorimat: cannot write to standard output: Broken pipe\n", error.errors) << command;
    const ProgramRun ended = RunUnread("default", follow);
    EXPECT_EQ(141, ended.exit_code) << command;
    EXPECT_THAT(ended.errors, IsEmpty()) << command;
  }
}

TEST(ReaderGone, TheShellTellsAnErrorAndSwitchesTheRegisterOff) {
  const ProgramRun run = RunUnread("default", "shell");
  EXPECT_EQ(2, run.exit_code);
  EXPECT_THAT(run.errors, HasSubstr("cannot write to standard output: Broken pipe\n"));
}
