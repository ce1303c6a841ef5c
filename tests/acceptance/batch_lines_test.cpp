// "@" lines that a user types or has in a file of lines: the library answers OK whatever the lines
// of the batch did, and the console shows which of them failed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <string>
#include <vector>

#include "program_run.h"
#include "terminal_run.h"

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

namespace {

// Four lines, of which the second and the third fail.
const char* const kInner = "VEND REP=1, PRE=1.00\nWRONG\nVEND PRE=3.00\nCHIU\n";
const char* const kFailures =
    "inner.cmd:2: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND\n"
    "    WRONG\n"
    "inner.cmd:3: code 269: ERROR 1/13 : SINTAX ERROR 13 : NO DPT NUMBER OR ARTICLE CODE\n"
    "    VEND PRE=3.00\n";

// A folder with the batch, and another one for what is temporary.
class BatchLines : public testing::Test {
 protected:
  BatchLines() { folder_.Write("inner.cmd", kInner); }

  ProgramSetting Setting(const std::string& input = {}) const {
    return {
        .folder = folder_.path(), .input = input, .environment = {{"TMPDIR", temporary_.path()}}};
  }
  ProgramRun Run(const std::string& lines) const {
    folder_.Write("lines.cmd", lines);
    return RunConsole({"run", "lines.cmd", "--terse"}, Setting());
  }

  TestFolder folder_;
  TestFolder temporary_;
};

}  // namespace

TEST_F(BatchLines, WithoutAnErrorFileShowTheirFailures) {
  const ProgramRun result = Run("; a batch\n@inner.cmd\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.errors, std::string(kFailures) +
                               "lines.cmd:2: answer: OK.(4 Lines   0 msec)\n"
                               "lorimat: 2 of 6 lines failed\n");
  EXPECT_THAT(result.output, HasSubstr("DOCUMENTO N. 0001-0001"));
  EXPECT_THAT(temporary_.names(), IsEmpty());
  EXPECT_THAT(folder_.names(), UnorderedElementsAre("inner.cmd", "lines.cmd"));
}

TEST_F(BatchLines, WithoutFailuresShowNone) {
  folder_.Write("inner.cmd", "VEND REP=1, PRE=1.00\nCHIU\n");
  const ProgramRun result = Run("@inner.cmd\n");
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.errors, "lines.cmd:1: answer: OK.(2 Lines   0 msec)\n");
  EXPECT_THAT(temporary_.names(), IsEmpty());
}

// A pipe is read to its end ahead of the first line, which then is looked at as those of a file.
TEST_F(BatchLines, OfAPipeShowTheirFailures) {
  folder_.Write("lines.cmd", "@pipe\n");
  const ProgramRun result =
      RunProgram("/bin/bash",
                 {"-c", "mkfifo pipe; cat inner.cmd >pipe & \"$1\" run lines.cmd --terse", "bash",
                  std::string(LORIMAT_BIN_FOLDER) + "/lorimat"},
                 Setting());
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.errors,
            "pipe:2: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND\n"
            "    WRONG\n"
            "pipe:3: code 269: ERROR 1/13 : SINTAX ERROR 13 : NO DPT NUMBER OR ARTICLE CODE\n"
            "    VEND PRE=3.00\n"
            "lines.cmd:1: answer: OK.(4 Lines   0 msec)\n"
            "lorimat: 2 of 5 lines failed\n");
  EXPECT_THAT(result.output, HasSubstr("DOCUMENTO N. 0001-0001"));
  EXPECT_THAT(temporary_.names(), IsEmpty());
}

TEST_F(BatchLines, OfAPipeHaveTheErrorFileOfTheUser) {
  folder_.Write("lines.cmd", "@pipe, errors.txt\n");
  const ProgramRun result =
      RunProgram("/bin/bash",
                 {"-c", "mkfifo pipe; cat inner.cmd >pipe & \"$1\" run lines.cmd --terse", "bash",
                  std::string(LORIMAT_BIN_FOLDER) + "/lorimat"},
                 Setting());
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_THAT(folder_.Read("errors.txt"), HasSubstr("ERROR 1/1 in line 2 : "));
  EXPECT_THAT(temporary_.names(), IsEmpty());
}

// The wait for a pipe that has no end is ended by a signal: in "run", and in the shell. More is
// written than the pipe holds, so that it is being read when the signal is sent.
TEST_F(BatchLines, OfAPipeThatDoesNotEndCanBeStopped) {
  folder_.Write("lines.cmd", "@pipe\nVEND REP=1, PRE=7.00\n");
  for (const std::string command : {"run lines.cmd --terse", "shell --terse"}) {
    const ProgramRun result =
        RunProgram("/bin/bash",
                   {"-c",
                    "mkfifo pipe; exec 7<>pipe\n"
                    "timeout -s KILL 60 \"$1\" $2 < lines.cmd 7>&- & pid=$!\n"
                    "head -c 500000 /dev/zero | tr '\\0' '\\n' >&7\n"
                    "kill -TERM $pid; wait $pid; code=$?; rm pipe; exit $code",
                    "bash", std::string(LORIMAT_BIN_FOLDER) + "/lorimat", command},
                   Setting());
    EXPECT_EQ(result.exit_code, 128 + SIGTERM) << command << result.errors;
    EXPECT_THAT(result.errors, HasSubstr("pipe: stopped by SIGTERM ahead of its first line\n"));
    EXPECT_THAT(result.output, IsEmpty()) << command;
    EXPECT_THAT(temporary_.names(), IsEmpty()) << command;
  }
}

// Such as the one that never ends.
TEST_F(BatchLines, OfADeviceAreNotRun) {
  for (const std::string device : {"/dev/zero", "/dev/null"}) {
    for (const std::string more : {"", ", errors.txt"}) {
      const ProgramRun result = Run("@" + device + more + "\n");
      EXPECT_EQ(result.exit_code, 1) << device;
      EXPECT_THAT(result.errors, HasSubstr("lines.cmd:1: not run: " + device +
                                           ": is neither a regular file nor a pipe\n"));
    }
  }
}

TEST_F(BatchLines, OfABatchThatWouldChangeItselfAreNotRun) {
  const std::string lines = "WRONG\nDIRECTIO CMD=1, FILE='inner.cmd'\n";
  folder_.Write("inner.cmd", lines);
  const ProgramRun result = RunConsole({"run", "--batch", "inner.cmd", "--terse"}, Setting());
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.errors,
            "inner.cmd: not run: inner.cmd:2: field FILE: 'inner.cmd' is the file of lines: the "
            "line would write over it\n");
  EXPECT_EQ(folder_.Read("inner.cmd"), lines);
}

TEST_F(BatchLines, LeaveAnErrorFileOfTheUserToTheLibrary) {
  const ProgramRun result = Run("@inner.cmd, errors.txt\n");
  EXPECT_EQ(result.exit_code, 0);
  EXPECT_EQ(result.errors, "lines.cmd:1: answer: OK.(4 Lines   0 msec)\n");
  // Each error twice: that is the library's way.
  const std::string first = "ERROR 1/1 in line 2 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND\r\n";
  const std::string second =
      "ERROR 1/13 in line 3 : SINTAX ERROR 13 : NO DPT NUMBER OR ARTICLE CODE \r\n";
  EXPECT_EQ(folder_.Read("errors.txt"), first + first + second + second);
}

// The library looks for it in the folder that the batch has gone to.
TEST_F(BatchLines, TellOfAnErrorFileOfTheUserThatIsNotThere) {
  std::filesystem::create_directory(std::filesystem::path(folder_.path()) / "sub");
  folder_.Write("moves.cmd", "SETP DIR='sub'\nWRONG\n");
  const ProgramRun result = Run("@moves.cmd, errors.txt\n");
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_THAT(result.errors, HasSubstr("which lines of the batch failed is not known for sure"));
  EXPECT_THAT(result.errors, HasSubstr("errors.txt"));
}

TEST_F(BatchLines, AreReadAsTheLibraryReadsThem) {
  folder_.Write("it's, a; file.cmd", "WRONG\n");
  folder_.Write(" a.cmd", "WRONG\n");
  folder_.Write("a.cmd", "VEND REP=1, PRE=1.00\n");
  for (const auto& [line, place] : std::vector<std::pair<std::string, std::string>>{
           {"\t @inner.cmd ; a comment", "inner.cmd:2:"},
           {"@INNER.CMD", "INNER.CMD:2:"},
           {"@'inner.cmd',,log.txt", "inner.cmd:2:"},
           {"@inner.cmd,''", "inner.cmd:2:"},
           {"@'it''s, a; file.cmd'", "it's, a; file.cmd:1:"},
           {"@' a.cmd'", " a.cmd:1:"}}) {
    const ProgramRun result = Run(line + "\n");
    EXPECT_EQ(result.exit_code, 1) << line;
    EXPECT_EQ(result.errors.substr(0, place.size()), place) << line;
  }
}

TEST_F(BatchLines, ThatTheLibraryRefusesAnswerAsTheyDid) {
  for (const auto& [line, code] :
       std::vector<std::pair<std::string, std::string>>{{"@", "10"},
                                                        {"@none.cmd", "11"},
                                                        {"@inner.cmd, none/errors.txt", "12"},
                                                        {"@inner.cmd, inner.cmd", "12"},
                                                        {"@'inner.cmd", "10"},
                                                        {"@''", "11"}}) {
    const ProgramRun result = Run(line + "\n");
    EXPECT_EQ(result.exit_code, 1) << line;
    EXPECT_THAT(result.errors, HasSubstr("lines.cmd:1: code " + code + ": ")) << line;
    EXPECT_THAT(result.output, IsEmpty()) << line;
    EXPECT_THAT(temporary_.names(), IsEmpty()) << line;
  }
}

TEST_F(BatchLines, WithANameThatTheLongerLineWouldChangeRunAsTheyStand) {
  folder_.Write("inner.cmd ", "VEND REP=1, PRE=2.00\nCHIU\nWRONG\n");
  const ProgramRun result = Run("@'inner.cmd '\n");
  EXPECT_EQ(result.exit_code, 2);
  EXPECT_THAT(result.output, HasSubstr("2,00"));
  EXPECT_EQ(result.errors,
            "lorimat: note: lines.cmd:1: which lines of the batch failed is not known for sure: "
            "the line has no room for an error file\n"
            "lines.cmd:1: answer: OK.(3 Lines   0 msec)\n");
}

TEST_F(BatchLines, AreLookedUpInTheFolderThatTheyStartIn) {
  folder_.Write("inner.cmd", "SETP DIR='/'\nWRONG\n");
  const ProgramRun result = Run("@inner.cmd\n");
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_THAT(result.errors, HasSubstr("inner.cmd:2: code 257"));
  EXPECT_THAT(result.errors, HasSubstr("    WRONG\n"));
}

TEST_F(BatchLines, TellWhenTheErrorFileMayBeCut) {
  folder_.Write("lines.cmd", "@inner.cmd\n");
  const ProgramRun result = RunProgram(
      "/bin/sh",
      {"-c", "ulimit -f 0; exec " + std::string(LORIMAT_BIN_FOLDER) + "/lorimat run lines.cmd"},
      Setting());
  EXPECT_THAT(result.output, HasSubstr("DOCUMENTO N. 0001-0001"));
  EXPECT_THAT(result.errors, HasSubstr("lines.cmd:1: which lines of the batch failed is not known "
                                       "for sure: " +
                                       temporary_.path()));
  EXPECT_THAT(result.errors, HasSubstr("File too large"));
  EXPECT_THAT(temporary_.names(), IsEmpty());
}

TEST_F(BatchLines, OfWhichItIsNotKnownWhetherTheyFailedAreNoSuccess) {
  const ProgramSetting setting = {.folder = folder_.path(),
                                  .input = "@inner.cmd\n",
                                  .environment = {{"TMPDIR", temporary_.Path("none")}}};
  for (const std::vector<std::string>& how :
       {std::vector<std::string>{"run", "-", "--terse"}, {"shell", "--terse"}}) {
    const ProgramRun result = RunConsole(how, setting);
    EXPECT_EQ(result.exit_code, 2);
    EXPECT_THAT(result.output, HasSubstr("DOCUMENTO N. 0001-0001"));
    EXPECT_THAT(result.errors, HasSubstr("standard input:1: which lines of the batch failed is not "
                                         "known for sure: " +
                                         temporary_.Path("none")));
  }
  // A file of its own is not begun.
  const ProgramRun batch = RunConsole({"run", "inner.cmd", "--batch"}, setting);
  EXPECT_EQ(batch.exit_code, 2);
  EXPECT_THAT(batch.errors, HasSubstr("no folder for the error file"));
  EXPECT_THAT(batch.output, IsEmpty());
}

// By whatever name: the library compares names alone, and would write over its lines.
TEST_F(BatchLines, WhoseErrorFileIsTheBatchAreNotRun) {
  std::filesystem::create_directory(folder_.Path("sub"));
  std::filesystem::create_symlink("inner.cmd", folder_.Path("soft.txt"));
  std::filesystem::create_hard_link(folder_.Path("inner.cmd"), folder_.Path("hard.txt"));
  std::filesystem::create_symlink("inner.cmd", folder_.Path("errors.txt.tmp"));
  for (const std::string name :
       {"./inner.cmd", "sub/../inner.cmd", "./INNER.CMD", "soft.txt", "hard.txt", "errors.txt"}) {
    const ProgramRun result = Run("@inner.cmd, " + name + "\n");
    EXPECT_EQ(result.exit_code, 1) << name;
    EXPECT_THAT(result.output, IsEmpty()) << name;
    EXPECT_THAT(result.errors, HasSubstr("lines.cmd:1: not run: the error file ")) << name;
    EXPECT_THAT(result.errors, HasSubstr(" is the batch file inner.cmd by another name")) << name;
    EXPECT_EQ(folder_.Read("inner.cmd"), kInner) << name;
    EXPECT_THAT(RunConsole({"shell", "--terse"}, Setting("@inner.cmd, " + name + "\n")).errors,
                HasSubstr("standard input:1: not run: the error file "))
        << name;
  }
  // An old error file is another file.
  folder_.Write("old.txt", kInner);
  EXPECT_EQ(Run("@inner.cmd, old.txt\n").exit_code, 0);
}

TEST_F(BatchLines, StopARunThatIsToStop) {
  folder_.Write("lines.cmd", "@inner.cmd\nVEND REP=1, PRE=7.00\n");
  const ProgramRun result =
      RunConsole({"run", "lines.cmd", "--stop-on-error", "--terse"}, Setting());
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_THAT(result.errors, HasSubstr("stopped at line 1, which failed"));
  EXPECT_THAT(result.output, Not(HasSubstr("7,00")));
}

TEST_F(BatchLines, InABatchAreRefused) {
  folder_.Write("outer.cmd", "@inner.cmd\n");
  for (const std::string how : {"run", "line"}) {
    folder_.Write("lines.cmd", "@outer.cmd\n");
    const ProgramRun result =
        how == "run" ? RunConsole({"run", "outer.cmd", "--batch", "--terse"}, Setting())
                     : RunConsole({"run", "lines.cmd", "--terse"}, Setting());
    EXPECT_EQ(result.exit_code, 1);
    EXPECT_THAT(result.errors, HasSubstr("outer.cmd:1: code 10: ERROR 0/10 : INVALID BATCH LINE"));
  }
}

TEST_F(BatchLines, InTheShellShowTheirFailuresInAPipe) {
  const ProgramRun result = RunConsole({"shell", "--terse"}, Setting("@inner.cmd\n"));
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_EQ(result.errors, "standard input:1: answer: OK.(4 Lines   0 msec)\n" +
                               std::string(kFailures) + "lorimat: 2 of 5 lines failed\n");
  EXPECT_THAT(temporary_.names(), IsEmpty());
}

TEST_F(BatchLines, InAFileOfTheShellShowTheirFailures) {
  folder_.Write("lines.cmd", "; a batch\n@inner.cmd\n");
  const ProgramRun result = RunConsole({"shell", "--terse"}, Setting(".batch lines.cmd\n"));
  EXPECT_EQ(result.exit_code, 1);
  EXPECT_THAT(result.errors, HasSubstr(kFailures));
  EXPECT_THAT(result.errors, HasSubstr("lorimat: 2 of 6 lines failed\n"));
}

TEST_F(BatchLines, OnATerminalShowTheirFailures) {
  TerminalRun shell({"shell"},
                    {.folder = folder_.path(),
                     .environment = {{"HOME", folder_.path()}, {"TMPDIR", temporary_.path()}}});
  shell.Enter("@inner.cmd");
  const std::string screen = shell.screen().text();
  EXPECT_THAT(screen, HasSubstr("lorimat: 2 of 4 lines failed\n"));
  EXPECT_THAT(screen, HasSubstr("inner.cmd:2: code 257: ERROR 1/1 : SINTAX ERROR 1"));
  EXPECT_THAT(screen, HasSubstr("    VEND PRE=3.00\n"));
  EXPECT_THAT(temporary_.names(), IsEmpty());
  shell.Type("\x04");
  EXPECT_EQ(0, shell.WaitForEnd());
}
