// The shell in windows of any width: nothing is cut, and no word is torn apart. In a pipe there is
// no window, and no line is wrapped.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <signal.h>

#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "program_run.h"
#include "terminal_run.h"

using testing::Contains;
using testing::HasSubstr;
using testing::Not;

namespace {

constexpr const char* kSale = "VEND REP=1,PRE=2";
constexpr const char* kCtrlD = "\x04";
constexpr size_t kWide = 300;

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::vector<std::string> WordsOf(const std::string& text) {
  std::istringstream stream(text);
  return {std::istream_iterator<std::string>(stream), {}};
}

std::vector<std::string> WordsOf(const std::vector<std::string>& rows) {
  std::string text;
  for (const std::string& row : rows) text += row + "\n";
  return WordsOf(text);
}

// What came to the screen, without colours and carriage returns.
std::string Plain(const TerminalRun& run) {
  return std::regex_replace(run.raw(), std::regex("\x1b\\[[0-9;]*m|\r"), "");
}

std::vector<std::string> Shell() { return {"shell", "--clock", "2026-11-20 11:03"}; }

// The paper of some lines, as a pipe gets it.
std::vector<std::string> PaperOf(const std::string& lines) {
  return LinesOf(RunConsole(Shell(), {.input = lines}).output);
}

class ShellInWindow : public testing::TestWithParam<size_t> {
 protected:
  TerminalSetting Setting(size_t columns) const {
    return {.folder = folder_.path(),
            .environment = {{"HOME", folder_.path()}},
            .columns = columns,
            .height = 60};
  }

  TestFolder folder_;
};

TEST_P(ShellInWindow, HelpFaultsAndAnswersKeepTheirWords) {
  TerminalRun narrow(Shell(), Setting(GetParam()));
  TerminalRun wide(Shell(), Setting(kWide));
  EXPECT_EQ(WordsOf(wide.screen().text()), WordsOf(narrow.screen().text()));
  for (const char* line : {"?", ".help", ".fault", "? SUBT", "? zzz", ".status", ".papre", "CHIU",
                           "INFO TIPO=1", ".fault busy nth 2", ".fault"}) {
    EXPECT_EQ(WordsOf(wide.Enter(line)), WordsOf(narrow.Enter(line))) << line;
  }
}

TEST_P(ShellInWindow, ThePlaceWhereTheParserStopsIsMarked) {
  TerminalRun run(Shell(), Setting(GetParam()));
  const std::vector<std::string> rows = run.Enter("VNED REP=1");
  EXPECT_THAT(rows, Contains("  VNED REP=1"));
  EXPECT_THAT(rows, Contains("  ^"));
}

TEST_P(ShellInWindow, ThePaperHasAFrameWhereThereIsRoomForIt) {
  const std::string sale = std::string(kSale) + "\n";
  const std::vector<std::string> paper = PaperOf(sale);
  ASSERT_THAT(paper, Contains("REPARTO 1                  22%        2,00"));
  std::string expected;
  for (std::string line : paper) {
    if (GetParam() >= 46) {
      expected += "  |" + line + std::string(42 - line.size(), ' ') + "|\n";
      continue;
    }
    // Every character of a line that is wider than the window, too.
    line.resize(line.find_last_not_of(' ') + 1);
    for (; line.size() > GetParam(); line.erase(0, GetParam())) {
      expected += line.substr(0, GetParam()) + "\n";
    }
    expected += line + "\n";
  }
  TerminalRun run(Shell(), Setting(GetParam()));
  run.Enter(kSale);
  EXPECT_THAT(Plain(run), HasSubstr("ok\n" + expected));
  const size_t before = Plain(run).size();
  run.Enter(".paper");
  EXPECT_THAT(Plain(run).substr(before), HasSubstr(".paper\n" + expected));
}

TEST_P(ShellInWindow, NotesKeepTheirWords) {
  const auto notes_in = [](size_t columns) {
    const TestFolder folder;
    folder.Write("bad.cmd", "WRONG\nSUBT\nWRONG\n");
    std::vector<std::string> arguments = Shell();
    arguments.insert(arguments.end(), {"--register", "r"});
    TerminalRun run(arguments, {.folder = folder.path(),
                                .environment = {{"XDG_STATE_HOME", "/proc"}},
                                .columns = columns});
    run.Enter(".batch bad.cmd");
    run.Enter("VEND REP=4,PRE=2");
    run.Type(kCtrlD);
    run.WaitFor("(y/n)");
    run.Type(kCtrlD);
    EXPECT_EQ(0, run.WaitForEnd());
    std::string text;
    for (const std::string& row : run.screen().rows()) text += row + " ";
    return text;
  };
  std::string text;
  for (const std::string& word : WordsOf(notes_in(GetParam()))) text += word + " ";
  for (const char* note :
       {"lorimat: note: r: a new register was made ",
        "lorimat: note: the lines typed are not kept: /proc/lorimat/history: No such file or "
        "directory ",
        " bad.cmd:1: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND ",
        "lorimat: 3 of 3 lines failed ",
        " Note: the receipt is open, with 1 item and a subtotal of 2,00. It is not paid: the next "
        "start of the register voids it. ",
        "lorimat: note: r keeps a receipt of 20/11/2026 11:03, 1 line, subtotal 2,00, not paid: "
        "the next start voids it "}) {
    EXPECT_THAT(text, HasSubstr(note));
  }
}

INSTANTIATE_TEST_SUITE_P(Columns, ShellInWindow, testing::Values(30, 40, 46, 80));

}  // namespace

TEST(ShellWindow, ANewWidthIsTakenForThePaperToo) {
  TestFolder folder;
  TerminalRun run(Shell(), {.folder = folder.path(), .environment = {{"HOME", folder.path()}}});
  EXPECT_THAT(run.Enter(kSale), Contains("  |REPARTO 1                  22%        2,00|"));
  run.Resize(45, 24);
  run.SendSignal(SIGWINCH);
  EXPECT_EQ("REPARTO 1                  22%        2,00", run.Enter(".paper 1").front());
}

TEST(ShellWindow, APipeHasNoneAndEveryTextIsALine) {
  const ProgramRun run = RunConsole(
      {"shell"}, {.input = "?\n.help\n.fault\n? VEND\n", .environment = {{"COLUMNS", "30"}}});
  EXPECT_EQ(0, run.exit_code);
  EXPECT_THAT(run.output, Not(HasSubstr("...\n")));
  const std::vector<std::string> lines = LinesOf(run.output);
  EXPECT_THAT(lines, Contains("  CHIU        CHIU        Pays, and closes the receipt when the "
                              "payment covers it."));
  EXPECT_THAT(lines, Contains("  .fault NAME ...   plans one: .fault code 123 nth 2 on "
                              "PrintRecItemEx; also next, every, times N"));
  EXPECT_THAT(lines, Contains("  off-line            the device does not answer: switched off or "
                              "not connected"));
  EXPECT_THAT(lines, Contains("Sells one line. The first sale opens the receipt, when the printer "
                              "has no document open."));
}
