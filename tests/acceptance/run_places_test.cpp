// The files that a run writes: none of them replaces a file that the run needs, and none of them
// is lost because another one failed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <filesystem>
#include <string>
#include <vector>

#include "shop.h"

using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

namespace fs = std::filesystem;

constexpr const char* kReceipt = "VEND REP=1, PRE=1.00\nCHIU\n";
constexpr const char* kReplace = " would replace it\n";
const std::vector<std::string> kOutputs = {"--paper", "--png", "--pdf", "--trace"};

// Runs the program by bash, with what the script puts around it.
ProgramRun ByShell(const TestFolder& folder, const std::string& script) {
  const std::string program = std::string(LORIMAT_BIN_FOLDER) + "/lorimat";
  return RunProgram("/bin/bash", {"-c", script, "bash", program}, {.folder = folder.path()});
}

// A folder with lines, a definition file, a library and a register of one receipt.
class Places : public testing::Test {
 protected:
  Places() {
    folder_.Write("lines.cmd", kReceipt);
    folder_.Write("words.ini", ReadFile(SourceFile("language/merkelin.ini")));
    fs::copy_file(std::string(LORIMAT_LIB_FOLDER) + "/liblorimatrt.so", folder_.Path("lib.so"));
    EXPECT_EQ(Run({}).exit_code, 0);
  }
  ProgramRun Run(const std::vector<std::string>& more, const std::string& lines = "lines.cmd") {
    std::vector<std::string> arguments = {"run",       lines,        "--register", "shop.reg",
                                          "--clock",   Shop::kClock, "--language", "words.ini",
                                          "--library", "./lib.so"};
    arguments.insert(arguments.end(), more.begin(), more.end());
    return RunConsole(arguments, {.folder = folder_.path()});
  }
  std::string documents() {
    const ProgramRun status = RunConsole({"status", "--register", folder_.Path("shop.reg")});
    return status.output.substr(std::min(status.output.find("Documents"), status.output.size()));
  }

  TestFolder folder_;
};

using OutputNames = Places;
using OutputFailures = Places;

}  // namespace

TEST_F(OutputNames, NoneReplacesAFileThatTheRunNeeds) {
  fs::create_hard_link(folder_.Path("shop.reg"), folder_.Path("other.reg"));
  fs::create_symlink("lines.cmd", folder_.Path("link.cmd"));
  const std::string words = folder_.Read("words.ini");
  const std::string library = folder_.Read("lib.so");
  for (const std::string& option : kOutputs) {
    for (const std::string name :
         {"lines.cmd", "./lines.cmd", "link.cmd", "shop.reg", "other.reg", "words.ini", "lib.so"}) {
      const ProgramRun refused = Run({option, name});
      EXPECT_EQ(refused.exit_code, 2) << option << " " << name;
      EXPECT_THAT(refused.errors, StartsWith("lorimat: " + name + ": is the ")) << option;
      EXPECT_THAT(refused.errors, EndsWith(kReplace)) << option << " " << name;
      EXPECT_THAT(refused.output, IsEmpty()) << option << " " << name;
    }
  }
  EXPECT_EQ(folder_.Read("lines.cmd"), kReceipt);
  EXPECT_TRUE(folder_.Read("words.ini") == words);
  EXPECT_TRUE(folder_.Read("lib.so") == library);
  // A register of two names is not even read.
  fs::remove(folder_.Path("other.reg"));
  EXPECT_THAT(documents(), StartsWith("Documents       1\n"));
}

TEST_F(OutputNames, NoneIsAFileThatTheRegisterMakesBesideItsOwn) {
  fs::create_directory(folder_.Path("under"));
  fs::create_symlink("shop.reg", folder_.Path("link.reg"));
  for (const std::string& option : kOutputs) {
    for (const std::string end : {"-wal", "-shm", "-journal"}) {
      for (const std::string& name : {"shop.reg" + end, "under/../shop.reg" + end}) {
        const ProgramRun refused = Run({option, name});
        EXPECT_EQ(refused.exit_code, 2) << option << " " << name;
        EXPECT_THAT(refused.errors, EndsWith(kReplace)) << option << " " << name;
        EXPECT_FALSE(fs::exists(folder_.Path(name))) << option << " " << name;
      }
      // The register's own name may be a link: its log stands beside what the link means.
      const ProgramRun linked =
          RunConsole({"run", "lines.cmd", "--register", "link.reg", option, "shop.reg" + end},
                     {.folder = folder_.path()});
      EXPECT_EQ(linked.exit_code, 2) << option << end;
      EXPECT_THAT(linked.errors, EndsWith(kReplace)) << option << end;
    }
    const ProgramRun link = RunConsole(
        {"paper", "--register", "shop.reg", "--paper", "shop.reg-wal"}, {.folder = folder_.path()});
    EXPECT_EQ(link.exit_code, 2);
    EXPECT_THAT(link.errors, EndsWith(kReplace));
  }
  EXPECT_THAT(documents(), StartsWith("Documents       1\n"));
}

TEST_F(OutputNames, ANameThatIsNotThereYetCountsToo) {
  fs::create_directory(folder_.Path("under"));
  fs::create_symlink("new.reg", folder_.Path("dangling"));
  for (const std::string& option : kOutputs) {
    for (const std::string name : {"new.reg", "under/../new.reg", "dangling", "new.reg-wal"}) {
      const ProgramRun refused = RunConsole(
          {"run", "lines.cmd", "--register", "new.reg", option, name}, {.folder = folder_.path()});
      EXPECT_EQ(refused.exit_code, 2) << option << " " << name;
      EXPECT_THAT(refused.errors, EndsWith(kReplace)) << option << " " << name;
      EXPECT_FALSE(fs::exists(folder_.Path("new.reg"))) << option << " " << name;
    }
  }
}

TEST_F(OutputNames, TwoDoNotGoToOnePlace) {
  fs::create_symlink("out", folder_.Path("link"));
  for (const std::string& one : kOutputs) {
    for (const std::string& other : kOutputs) {
      if (one == other) continue;
      const ProgramRun refused = Run({one, "out", other, "link"});
      EXPECT_EQ(refused.exit_code, 2) << one << other;
      EXPECT_THAT(refused.errors, HasSubstr(" goes there already\n")) << one << other;
      EXPECT_FALSE(fs::exists(folder_.Path("out"))) << one << other;
    }
  }
  const ProgramRun redirected = ByShell(folder_, "\"$1\" run lines.cmd --png out.png > out.png");
  EXPECT_EQ(redirected.exit_code, 2);
  EXPECT_THAT(redirected.errors, HasSubstr(" goes there already\n"));
}

TEST_F(OutputNames, LinesThatComeByStandardInputCountToo) {
  for (const std::string& option : kOutputs) {
    const ProgramRun refused =
        ByShell(folder_, "\"$1\" run - " + option + " lines.cmd < lines.cmd");
    EXPECT_EQ(refused.exit_code, 2) << option;
    EXPECT_THAT(refused.errors, HasSubstr("lines.cmd: is the file of lines; ")) << option;
    EXPECT_EQ(folder_.Read("lines.cmd"), kReceipt) << option;
  }
}

TEST_F(OutputNames, DevicesAndTheStandardStreamsMayBeNamedTwice) {
  EXPECT_EQ(Run({"--paper", "/dev/null", "--trace", "/dev/null"}).exit_code, 0);
  const ProgramRun both =
      ByShell(folder_, "\"$1\" run lines.cmd --trace - --clock '2024-03-15 10:30' > log 2>&1");
  EXPECT_EQ(both.exit_code, 0);
  EXPECT_THAT(folder_.Read("log"), HasSubstr("TradEcr Cmd<CHIU>\n"));
  EXPECT_THAT(folder_.Read("log"), HasSubstr("DOCUMENTO N. 0001-0001\n"));
}

// --- A place that fails.

TEST_F(OutputFailures, TheOtherPlacesAreWritten) {
  for (const std::string output : {"> /dev/full", ">&-"}) {
    const ProgramRun ran =
        ByShell(folder_, "\"$1\" run lines.cmd --png x.png --pdf x.pdf " + output);
    EXPECT_EQ(ran.exit_code, 2) << output;
    EXPECT_THAT(ran.errors, HasSubstr("lorimat: cannot write to standard output: ")) << output;
    EXPECT_THAT(folder_.Read("x.png"), StartsWith("\x89PNG")) << output;
    EXPECT_THAT(folder_.Read("x.pdf"), StartsWith("%PDF-")) << output;
    fs::remove(folder_.Path("x.png"));
    fs::remove(folder_.Path("x.pdf"));
  }
  const ProgramRun paper =
      RunConsole({"paper", "--register", folder_.Path("shop.reg"), "--png", "/dev/full", "--pdf",
                  folder_.Path("k.pdf"), "--paper", folder_.Path("k.txt")});
  EXPECT_EQ(paper.exit_code, 2);
  EXPECT_EQ(paper.errors, "lorimat: /dev/full: cannot write the paper: No space left on device\n");
  EXPECT_THAT(folder_.Read("k.pdf"), StartsWith("%PDF-"));
  EXPECT_THAT(folder_.Read("k.txt"), HasSubstr("DOCUMENTO N. 0001-0001\n"));
}

TEST_F(OutputFailures, EachIsNamed) {
  const ProgramRun ran = Run({"--png", "/dev/full", "--pdf", "/dev/full", "--paper", "/dev/full"});
  EXPECT_EQ(ran.exit_code, 2);
  const std::string failure =
      "lorimat: /dev/full: cannot write the paper: No space left on device\n";
  EXPECT_THAT(ran.errors, StartsWith(failure + failure + failure));
}

TEST_F(OutputFailures, APngThatIsTooLongLeavesThePdfAndNoEmptyFile) {
  std::string many;
  for (int i = 0; i < 1800; ++i) many += "VEND REP=1, PRE=1.00\n" + std::string(kReceipt);
  folder_.Write("many.cmd", many);
  const ProgramRun ran =
      RunConsole({"run", "many.cmd", "--paper", "x.txt", "--png", "x.png", "--pdf", "x.pdf"},
                 {.folder = folder_.path()});
  EXPECT_EQ(ran.exit_code, 2);
  EXPECT_THAT(ran.errors, HasSubstr("x.png: the paper is "));
  EXPECT_THAT(folder_.names(), Not(Contains("x.png")));
  EXPECT_THAT(folder_.Read("x.pdf"), StartsWith("%PDF-"));
  EXPECT_THAT(folder_.Read("x.txt"), HasSubstr("0001-1800"));
  // One that was there before is left as it was.
  folder_.Write("x.png", "an older picture");
  EXPECT_EQ(RunConsole({"run", "many.cmd", "--paper", "x.txt", "--png", "x.png"},
                       {.folder = folder_.path()})
                .exit_code,
            2);
  EXPECT_TRUE(folder_.Read("x.png") == "an older picture");
}

TEST_F(OutputFailures, ARunThatDoesNotStartLeavesNoEmptyFile) {
  const ProgramRun ran = Run({"--paper", "x.txt", "--pdf", "none/x.pdf"});
  EXPECT_EQ(ran.exit_code, 2);
  EXPECT_THAT(folder_.names(), Not(Contains("x.txt")));
}

TEST_F(OutputFailures, WithARegisterTheRunSaysThatTheLinesAreDone) {
  const std::string note =
      "lorimat: note: shop.reg has what the lines did, and they are not to be run again; \"lorimat "
      "paper --register shop.reg\" writes the paper\n";
  const ProgramRun png = Run({"--png", "/dev/full"});
  EXPECT_EQ(png.exit_code, 2);
  EXPECT_THAT(png.errors, HasSubstr(note));
  const ProgramRun full = ByShell(folder_, "\"$1\" run lines.cmd --register shop.reg > /dev/full");
  EXPECT_EQ(full.exit_code, 2);
  EXPECT_THAT(full.errors, HasSubstr(note));
  EXPECT_THAT(documents(), StartsWith("Documents       3\n"));
  const ProgramRun memory = ByShell(folder_, "\"$1\" run lines.cmd > /dev/full");
  EXPECT_EQ(memory.errors, "lorimat: cannot write to standard output: No space left on device\n");
}

TEST_F(OutputFailures, AReaderThatHasGoneTakesNothingElseWithIt) {
  folder_.Write("open.cmd", "VEND REP=1, PRE=1.00\n");
  // A pipe that is open both ways has a reader, so that it can be opened for writing.
  const std::string unread = "mkfifo pipe; exec 8<>pipe; exec 9>pipe; exec 8<&-; rm pipe\n";
  const ProgramRun ran =
      ByShell(folder_, unread +
                           "env --default-signal=PIPE \"$1\" run open.cmd --register shop.reg "
                           "--png x.png --pdf x.pdf >&9");
  EXPECT_EQ(ran.exit_code, 141);
  EXPECT_THAT(ran.errors, HasSubstr("lorimat: note: shop.reg keeps a receipt of "));
  EXPECT_THAT(ran.errors, HasSubstr("shop.reg has what the lines did"));
  EXPECT_THAT(folder_.Read("x.png"), StartsWith("\x89PNG"));
  EXPECT_THAT(folder_.Read("x.pdf"), StartsWith("%PDF-"));

  const ProgramRun paper =
      ByShell(folder_, unread +
                           "env --default-signal=PIPE \"$1\" paper --register shop.reg "
                           "--paper - --png y.png --pdf y.pdf >&9");
  EXPECT_EQ(paper.exit_code, 141);
  EXPECT_THAT(paper.errors, IsEmpty());
  EXPECT_THAT(folder_.Read("y.png"), StartsWith("\x89PNG"));
  EXPECT_THAT(folder_.Read("y.pdf"), StartsWith("%PDF-"));

  const ProgramRun shell =
      ByShell(folder_, unread +
                           "env --default-signal=PIPE \"$1\" shell --register new.reg "
                           ">&9 < open.cmd");
  EXPECT_EQ(shell.exit_code, 2);
  EXPECT_THAT(shell.errors, HasSubstr("lorimat: cannot write to standard output: Broken pipe\n"));
  EXPECT_THAT(shell.errors, HasSubstr("lorimat: note: new.reg keeps a receipt of "));
}

TEST_F(OutputFailures, AReaderOfErrorsThatHasGoneDoesNotEndTheRun) {
  folder_.Write("wrong.cmd", std::string("WRONG\n") + kReceipt);
  const ProgramRun ran =
      ByShell(folder_,
              "mkfifo pipe; exec 8<>pipe; exec 9>pipe; exec 8<&-; rm pipe\n"
              "env --default-signal=PIPE \"$1\" run wrong.cmd --register shop.reg 2>&9");
  EXPECT_EQ(ran.exit_code, 1);
  EXPECT_THAT(ran.output, HasSubstr("DOCUMENTO N. 0001-0002\n"));
}

TEST_F(OutputFailures, ATraceThatIsLostIsTold) {
  const ProgramRun ran = Run({"--trace", "/dev/full"});
  EXPECT_EQ(ran.exit_code, 2);
  EXPECT_THAT(ran.errors, HasSubstr("lorimat: /dev/full: cannot write the trace: No space left on "
                                    "device\n"));
  EXPECT_THAT(ran.output, HasSubstr("DOCUMENTO N. 0001-0002\n"));
  EXPECT_THAT(ran.errors, HasSubstr("shop.reg has what the lines did"));
  EXPECT_EQ(Run({"--trace", "trace.txt"}).exit_code, 0);
}

// --- The largest file that a program may write.

TEST_F(OutputFailures, ALimitOfFileSizesIsAnErrorLikeAFullDisk) {
  std::string many;
  for (int i = 0; i < 200; ++i) many += kReceipt;
  folder_.Write("many.cmd", many);
  const ProgramRun paper = ByShell(
      folder_, "ulimit -f 4; exec \"$1\" run many.cmd --paper x.txt --clock '2024-03-15 10:30'");
  EXPECT_EQ(paper.exit_code, 2);
  EXPECT_EQ(paper.errors, "lorimat: x.txt: cannot write the paper: File too large\n");
  const std::string size = std::to_string(fs::file_size(folder_.Path("shop.reg")) / 1024);
  const ProgramRun kept =
      ByShell(folder_, "ulimit -f " + size + "; exec \"$1\" run many.cmd --register shop.reg");
  EXPECT_EQ(kept.exit_code, 2);
  EXPECT_THAT(kept.errors, HasSubstr("lorimat: the register could not be kept: shop.reg: "));
  for (const std::string command :
       {"backup tables", "fault paper-end", "shell", "paper --paper p.txt", "paper"}) {
    const ProgramRun ran = ByShell(
        folder_, "ulimit -f 0; exec \"$1\" " + command + " --register shop.reg > out < lines.cmd");
    EXPECT_EQ(ran.exit_code, 2) << command;
    EXPECT_THAT(ran.errors, HasSubstr("lorimat: ")) << command;
  }
}

// The pipe lets the second line wait until the file has been cut behind it.
TEST_F(OutputFailures, AFileOfLinesThatIsCutMeanwhileIsTold) {
  std::string lines = "INFO TIPO=1, FILE='begun'\nINFO TIPO=1, FILE='held'\n";
  // More than is read at once.
  while (lines.size() < 200000) lines += "; a comment that fills the file\n";
  folder_.Write("long.cmd", lines + "CHIU\n");
  const ProgramRun run = ByShell(folder_,
                                 "mkfifo begun held; exec 8<>begun 9<>held\n"
                                 "dd if=/dev/zero of=held oflag=nonblock bs=4096 2>/dev/null\n"
                                 "\"$1\" run long.cmd & pid=$!\n"
                                 "read -r -t 60 line <&8; truncate -s 60 long.cmd\n"
                                 "dd if=held iflag=nonblock of=/dev/null 2>/dev/null; wait $pid");
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("lorimat: long.cmd: the file was changed meanwhile\n"));
}

TEST_F(OutputNames, AFileOfSeveralNamesKeepsThemAll) {
  for (const std::string option : {"--paper", "--png", "--pdf"}) {
    folder_.Write("one", std::string(100000, 'x'));
    fs::create_hard_link(folder_.Path("one"), folder_.Path("other"));
    EXPECT_EQ(Run({option, "one"}).exit_code, 0) << option;
    EXPECT_EQ(fs::hard_link_count(folder_.Path("other")), 2U) << option;
    EXPECT_TRUE(folder_.Read("one") == folder_.Read("other")) << option;
    EXPECT_THAT(folder_.Read("other"), Not(HasSubstr("xxx"))) << option;
    EXPECT_FALSE(folder_.Read("other").empty()) << option;
    fs::remove(folder_.Path("one"));
    fs::remove(folder_.Path("other"));
  }
}
