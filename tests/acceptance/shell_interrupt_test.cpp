// Ctrl-C while an "@" line is at work in the shell: the batch ends, and what it has done stays.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <stdexcept>
#include <string>
#include <vector>

#include "program_run.h"
#include "terminal_run.h"

using testing::Contains;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kCtrlC = "\x03";
constexpr const char* kStopped = ": stopped by Ctrl-C behind line ";

// Two pipes that a batch writes to, so that the test knows where it is: the first one gets its line
// when the batch has come so far; the second one is full, and its line waits for the test.
class Rendezvous {
 public:
  explicit Rendezvous(const TestFolder& folder)
      : begun_(Make(folder.Path("begun"))), held_(Make(folder.Path("held"))) {
    const std::array<char, 4096> page{};
    while (write(held_, page.data(), page.size()) > 0) {
    }
  }
  ~Rendezvous() {
    GoOn();
    close(begun_);
    close(held_);
  }
  Rendezvous(const Rendezvous&) = delete;
  Rendezvous& operator=(const Rendezvous&) = delete;

  void Wait() const {
    pollfd input = {begun_, POLLIN, 0};
    if (poll(&input, 1, 60000) != 1) throw std::runtime_error("the batch does not begin");
  }
  void GoOn() const {
    std::array<char, 4096> page;
    while (read(held_, page.data(), page.size()) > 0) {
    }
  }

 private:
  static int Make(const std::string& name) {
    const int pipe =
        mkfifo(name.c_str(), 0600) != 0 ? -1 : open(name.c_str(), O_RDWR | O_NONBLOCK | O_CLOEXEC);
    if (pipe < 0) throw std::runtime_error("no pipe " + name);
    return pipe;
  }

  int begun_;
  int held_;
};

// Three sales and the lines of the pipes, then what must not run.
std::string Batch(const std::string& more) {
  std::string text =
      "VEND REP=1, PRE=1.00\n; a comment\nVEND REP=1, PRE=2.00\nWRONG\n"
      "INFO TIPO=1, FILE='begun'\nINFO TIPO=1, FILE='held'\n";
  for (int i = 0; i < 10; ++i) text += "VEND REP=1, PRE=4.00\n";
  return text + more;
}

int NumberBehind(const std::string& text, const std::string& mark) {
  const size_t at = text.find(mark);
  return at == std::string::npos ? -1 : std::stoi(text.substr(at + mark.size()));
}

class ShellInterrupt : public testing::Test {
 protected:
  TerminalSetting setting() const {
    return {.folder = folder_.path(), .environment = {{"HOME", folder_.path()}}, .columns = 100};
  }
  static std::vector<std::string> shell() { return {"shell", "--clock", "2026-11-20 11:03"}; }

  TestFolder folder_;
};

std::string Joined(const std::vector<std::string>& rows) {
  std::string text;
  for (const std::string& row : rows) text += row + "\n";
  return text;
}

// Types the line and Ctrl-C while its batch is at work; what the shell shows up to its prompt.
std::string Stop(TerminalRun& run, Rendezvous& places, const std::string& line) {
  run.Type(line + "\r");
  places.Wait();
  run.Type(kCtrlC);
  run.WaitFor("^C");
  places.GoOn();
  return Joined(run.TypeForPrompt(""));
}

TEST_F(ShellInterrupt, ABatchLineEndsAndTheReceiptStaysOpen) {
  folder_.Write("long.cmd", Batch("CHIU\n"));
  Rendezvous places(folder_);
  TerminalRun run(shell(), setting());
  run.Enter("VEND REP=1, PRE=8.00");
  const std::string shown = Stop(run, places, "@long.cmd");
  const int last = NumberBehind(shown, std::string("\n@long.cmd") + kStopped);
  // The line at work, or the one behind it.
  EXPECT_GE(last, 6) << shown;
  EXPECT_LE(last, 7) << shown;
  EXPECT_THAT(shown, Not(HasSubstr("TOTALE")));
  EXPECT_THAT(shown, Not(HasSubstr("\nok")));
  const std::string open =
      last < 7 ? "3 items and a subtotal of 11,00" : "4 items and a subtotal of 15,00";
  EXPECT_THAT(shown, HasSubstr("Ctrl-C: the receipt is open, with " + open + ".\n"));
  // The shell goes on, and so does the receipt.
  EXPECT_THAT(run.Enter("VEND REP=1, PRE=16.00"),
              Contains(HasSubstr(last < 7 ? "subtotal 27,00" : "subtotal 31,00")));
  EXPECT_THAT(run.Enter("CHIU"), Contains(HasSubstr("DOCUMENTO N. 0001-0001")));
  EXPECT_THAT(run.Enter("@long.cmd"), Contains("ok (16 Lines   0 msec)"));
}

TEST_F(ShellInterrupt, TheNextSaleOpensAReceiptWhenNoneIsOpen) {
  folder_.Write("long.cmd",
                "INFO TIPO=1, FILE='begun'\nINFO TIPO=1, FILE='held'\n; nothing\nVEND REP=1, "
                "PRE=1.00\nVEND REP=1, PRE=1.00\n");
  Rendezvous places(folder_);
  TerminalRun run(shell(), setting());
  EXPECT_THAT(Stop(run, places, "@long.cmd"), HasSubstr("Ctrl-C: no document is open.\n"));
  EXPECT_EQ("RECEIPT OPEN  1 item  subtotal 3,00  key registering",
            run.Enter("VEND REP=1, PRE=3.00").back());
}

// The library takes a document for open that was refused, and the shell follows it there.
TEST_F(ShellInterrupt, ADocumentBehindTheStopIsTakenForOpenAndToldSo) {
  folder_.Write("long.cmd",
                "INFO TIPO=1, FILE='begun'\nINFO TIPO=1, FILE='held'\n; nothing\nFATTURA TIPO=2\n");
  Rendezvous places(folder_);
  TerminalRun run(shell(), setting());
  const std::string shown = Stop(run, places, "@long.cmd");
  EXPECT_THAT(shown, HasSubstr("Ctrl-C: no document is open.\n"));
  EXPECT_THAT(shown, HasSubstr("the next sale opens no receipt: CLEAR, CHIU or RESPRN"));
  run.Enter("CLEAR");
  EXPECT_EQ("RECEIPT OPEN  1 item  subtotal 3,00  key registering",
            run.Enter("VEND REP=1, PRE=3.00").back());
}

TEST_F(ShellInterrupt, FaultsThatWaitAreNotUsedUp) {
  folder_.Write("long.cmd", Batch("CHIU\n"));
  Rendezvous places(folder_);
  TerminalRun run(shell(), setting());
  run.Enter(".fault code 123 every on Release");
  run.Enter(".fault code 124 next on Claim");
  run.Enter(".fault code 125 next on SetDeviceEnabled");
  EXPECT_THAT(Stop(run, places, "@long.cmd"), HasSubstr(kStopped));
  EXPECT_THAT(Joined(run.Enter(".status")), HasSubstr("code (124), at the next Claim\n"));
  EXPECT_THAT(Joined(run.Enter("CHIU")), HasSubstr("DOCUMENTO N. 0001-0001"));
}

TEST_F(ShellInterrupt, ABatchLineInAFileEndsBoth) {
  folder_.Write("long.cmd", Batch("CHIU\n"));
  folder_.Write("outer.cmd", "VEND REP=1, PRE=8.00\n@long.cmd\nCHIU\n");
  Rendezvous places(folder_);
  TerminalRun run(shell(), setting());
  const std::string shown = Stop(run, places, ".batch outer.cmd");
  EXPECT_THAT(shown, HasSubstr(std::string("\n@long.cmd") + kStopped));
  EXPECT_THAT(shown, HasSubstr("\nouter.cmd: stopped by Ctrl-C behind line 2\n"));
  // All of it begins below the ^C: what failed, the summary, and where it stopped.
  EXPECT_THAT(shown, Not(HasSubstr("^C ")));
  EXPECT_THAT(shown, HasSubstr("^C\n"));
  const size_t summary = shown.find("times  code  first line");
  ASSERT_NE(std::string::npos, summary);
  EXPECT_LT(shown.find("^C\n"), summary);
  EXPECT_THAT(shown, HasSubstr("Ctrl-C: the receipt is open, with "));
}

TEST_F(ShellInterrupt, AnItalianReadsItToo) {
  folder_.Write("long.cmd", Batch("CHIU\n"));
  Rendezvous places(folder_);
  TerminalSetting italian = setting();
  italian.environment["LC_MESSAGES"] = "it_IT.UTF-8";
  italian.environment["LC_ALL"] = "";
  italian.environment["LC_CTYPE"] = "C.UTF-8";
  TerminalRun run(shell(), italian);
  EXPECT_THAT(Stop(run, places, "@long.cmd"),
              HasSubstr("\n@long.cmd: fermato con Ctrl-C dopo la riga "));
}

// The receipt is kept in a file, and the shell as a pipe ends.
TEST_F(ShellInterrupt, InAPipeItEndsTheShellWithTheReceiptKept) {
  folder_.Write("long.cmd", Batch("CHIU\n"));
  folder_.Write("lines", "VEND REP=1, PRE=8.00\n@long.cmd\nCHIU\n");
  const TestFolder temporary;
  ASSERT_EQ(0, mkfifo(folder_.Path("begun").c_str(), 0600));
  ASSERT_EQ(0, mkfifo(folder_.Path("held").c_str(), 0600));
  const std::string program = std::string(LORIMAT_BIN_FOLDER) + "/lorimat";
  const ProgramRun run = RunProgram(
      "/bin/bash",
      {"-c",
       "exec 8<>begun 9<>held\n"
       "dd if=/dev/zero of=held oflag=nonblock bs=4096 2>/dev/null\n"
       "\"$1\" shell --register shop.register --clock '2026-11-20 11:03' < lines & pid=$!\n"
       "read -r -t 60 line <&8; kill -INT $pid\n"
       "dd if=held iflag=nonblock of=/dev/null 2>/dev/null; wait $pid",
       "bash", program},
      {.folder = folder_.path(), .environment = {{"TMPDIR", temporary.path()}}});
  EXPECT_EQ(130, run.exit_code);
  // What had failed is shown, and the error file of it is gone.
  EXPECT_THAT(run.errors, HasSubstr("long.cmd:4: code 257: "));
  EXPECT_THAT(temporary.names(), IsEmpty());
  EXPECT_THAT(run.errors, HasSubstr(std::string("\n@long.cmd") + kStopped));
  EXPECT_THAT(run.errors, HasSubstr("lorimat: stopped by Ctrl-C behind line 2\n"));
  const int last = NumberBehind(run.errors, std::string("\n@long.cmd") + kStopped);
  EXPECT_THAT(run.errors,
              HasSubstr(last < 7 ? " 3 lines, subtotal 11,00, " : " 4 lines, subtotal 15,00, "));
  EXPECT_THAT(run.output, HasSubstr(" 8,00\n"));
  EXPECT_THAT(run.output, HasSubstr(" 2,00\n"));
  EXPECT_THAT(run.output, Not(HasSubstr("TOTALE")));
}

TEST_F(ShellInterrupt, ABatchThatIsNotStoppedRunsToItsEnd) {
  folder_.Write("three.cmd", "VEND REP=1, PRE=1.00\nSUBT\nCHIU\n");
  const ProgramRun run = RunConsole(
      shell(), {.folder = folder_.path(), .input = "@three.cmd\n@three.cmd\n@none.cmd\n"});
  EXPECT_EQ(1, run.exit_code);
  EXPECT_THAT(run.errors, HasSubstr("standard input:1: answer: OK.(3 Lines   0 msec)\n"
                                    "standard input:2: answer: OK.(3 Lines   0 msec)\n"
                                    "standard input:3: code 11: "));
  EXPECT_THAT(run.output, EndsWith("\n"));
  EXPECT_THAT(run.output, HasSubstr("DOCUMENTO N. 0001-0002"));
}

}  // namespace
