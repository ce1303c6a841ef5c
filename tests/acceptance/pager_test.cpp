// Long help on a terminal, which a pager shows.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <string>
#include <vector>

#include "program_run.h"
#include "terminal_run.h"

using testing::Contains;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

namespace {

constexpr const char* kReady = "READY  key registering";

class PagerOnTerminal : public testing::Test {
 protected:
  // Shows the first line, and ends with the next line that is typed, however long its input is.
  PagerOnTerminal() {
    folder_.Write("pager",
                  "#!/bin/sh\nhead -n 1\nprintf 'more> '\nread key < /dev/tty\n"
                  "echo \"told $1 $key\"\n");
    chmod(folder_.Path("pager").c_str(), 0755);
  }
  TerminalSetting Setting(const std::string& pager) const {
    return {.folder = folder_.path(),
            .environment = {{"HOME", folder_.path()}, {"PAGER", pager}},
            .height = 20};
  }
  static std::vector<std::string> shell() { return {"shell", "--clock", "2026-11-20 11:03"}; }

  TestFolder folder_;
};

TEST_F(PagerOnTerminal, ItShowsHelpThatIsLongerThanTheWindow) {
  TerminalRun run(shell(), Setting("./pager now"));
  run.Type("? VEND\r");
  run.WaitFor("more>");
  EXPECT_THAT(run.TypeForPrompt("key\r"), Contains("told now key"));
  EXPECT_THAT(run.screen().text(), HasSubstr("\nVEND: command 10, short VE\n"));
  EXPECT_THAT(run.screen().text(), Not(HasSubstr("Sells one line.")));
  // What fits, and what is no help, is not for the pager.
  EXPECT_EQ(kReady, run.Enter(".help").back());
  EXPECT_EQ("ok", run.Enter("VEND REP=1, PRE=1.00").front());
  run.Enter("CHIU");
  EXPECT_EQ(kReady, run.Enter(".paper").back());
}

// The C library is told of the languages that there are catalogs of, and the pager of those that
// the user likes.
TEST_F(PagerOnTerminal, ItHasTheLanguagesOfTheUser) {
  folder_.Write("pager",
                "#!/bin/sh\nprintf 'likes <%s>\\n' \"${LANGUAGE-nothing}\"\nprintf 'more> '\n"
                "read key < /dev/tty\n");
  // Each is another list for the C library: without gaps, and that of the locale.
  for (const char* language : {"fr::it:", ""}) {
    TerminalSetting setting = Setting("./pager");
    setting.environment["LC_ALL"] = "it_IT.UTF-8";
    setting.environment["LANGUAGE"] = language;
    TerminalRun run(shell(), setting);
    run.Type("? VEND\r");
    run.WaitFor("more>");
    EXPECT_THAT(run.screen().text(), HasSubstr(std::string("likes <") + language + ">"));
    run.TypeForPrompt("key\r");
  }
}

// The pager ends by the signal wherever it is then: a shell that catches it would miss it between
// its look at what came and its wait for a key.
TEST_F(PagerOnTerminal, CtrlCIsForThePagerAlone) {
  folder_.Write("pager", "#!/bin/sh\nprintf 'more> '\nexec cat /dev/tty\n");
  TerminalRun run(shell(), Setting("./pager"));
  run.Enter("VEND REP=1, PRE=1.00");
  run.Type("?\r");
  run.WaitFor("more>");
  const std::vector<std::string> rows = run.TypeForPrompt("\x03");
  EXPECT_THAT(rows, Contains("more> ^CRECEIPT OPEN  1 item  subtotal 1,00  key registering"));
  EXPECT_THAT(rows, Not(Contains(HasSubstr("Ctrl-C"))));
  EXPECT_EQ("ok", run.Enter("SUBT").front());
}

TEST_F(PagerOnTerminal, AHelpOfTheCommandLineGoesTheSameWay) {
  for (const std::vector<std::string>& arguments :
       std::vector<std::vector<std::string>>{{"run", "--help"}, {"help", "run"}}) {
    TerminalSetting paged = Setting("./pager");
    paged.prompt = "more> ";
    TerminalRun run(arguments, paged);
    run.Type("x\r");
    EXPECT_EQ(0, run.WaitForEnd());
    EXPECT_THAT(run.screen().text(), HasSubstr("Run a file of command lines on a"));
    EXPECT_THAT(run.screen().text(), Not(HasSubstr("Exit codes:")));
  }
}

TEST_F(PagerOnTerminal, OneThatIsNotThereLeavesTheHelpAsItIs) {
  for (const char* pager : {"none-such-pager", "./none -x", "", "  ", "cat", "/dev/null"}) {
    TerminalRun run(shell(), Setting(pager));
    EXPECT_THAT(run.Enter("? SUBT"), Contains("SUBT: command 18, short SU")) << pager;
    EXPECT_THAT(run.Enter("? VEND"), Contains(StartsWith("Sells one line."))) << pager;
    EXPECT_THAT(run.screen().text(), Not(HasSubstr("not found"))) << pager;
  }
  TerminalSetting dumb = Setting("./pager");
  dumb.environment["TERM"] = "dumb";
  TerminalRun run(shell(), dumb);
  EXPECT_THAT(run.Enter("? VEND"), Contains(StartsWith("Sells one line.")));
}

TEST_F(PagerOnTerminal, APipeHasNone) {
  const ProgramRun help = RunConsole(
      {"help", "run"}, {.folder = folder_.path(), .environment = {{"PAGER", "./pager"}}});
  EXPECT_EQ(0, help.exit_code);
  EXPECT_THAT(help.output, HasSubstr("Exit codes:"));
  const ProgramRun piped = RunConsole(
      {"shell"},
      {.folder = folder_.path(), .input = "? VEND\n", .environment = {{"PAGER", "./pager"}}});
  EXPECT_THAT(piped.output, HasSubstr("Sells one line."));
  EXPECT_THAT(piped.output, Not(HasSubstr("more>")));
}

}  // namespace
