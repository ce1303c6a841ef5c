// A check of a long file: stopped by a signal at any place, and nothing is said of a file that was
// not read to its end.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>
#include <vector>

#include "bar_signal.h"

using testing::EndsWith;
using testing::IsEmpty;
using testing::StartsWith;

namespace {

struct Ending {
  int signal;
  const char* name;
};

constexpr Ending kEndings[] = {{SIGINT, "Ctrl-C"}, {SIGTERM, "SIGTERM"}, {SIGHUP, "SIGHUP"}};

// A thousand lines of 28 bytes: each hundredth part is ten lines.
std::string ThousandLines(const std::string& first) {
  std::string text = first + std::string(27 - first.size(), ' ') + "\n";
  for (int line = 2; line <= 1000; ++line) text += "; a comment of a long file.\n";
  return text;
}

}  // namespace

TEST(CheckStop, ASignalEndsItBehindTheLineAtWork) {
  TestFolder folder;
  // The first bar stands at 0 %, behind the first line, and each of the others a hundredth further.
  const struct {
    int bar;
    int line;
  } places[] = {{1, 1}, {2, 10}, {51, 500}, {101, 1000}};
  for (const std::string& file : {folder.Write("words.ini", ThousandLines("[OPCOD]")),
                                  folder.Write("lines.cmd", ThousandLines("WRONG"))}) {
    for (const auto& [bar, line] : places) {
      const auto& [signal, name] = kEndings[bar % 3];
      const ProgramRun run = RunConsole({"check", file}, WithSignalAtBar(signal, bar));
      EXPECT_EQ(run.exit_code, 128 + signal) << file << bar;
      EXPECT_EQ(BarsOf(run), bar) << file;
      EXPECT_THAT(run.errors, EndsWith("\r\x1b[Klorimat: " + file + ": stopped by " + name +
                                       " behind line " + std::to_string(line) + "\n"));
      EXPECT_THAT(run.output, IsEmpty()) << file << bar;
    }
  }
}

TEST(CheckStop, TheFilesBeforeItAreShownAndNoneBehindIt) {
  TestFolder folder;
  const std::string first = folder.Write("first.cmd", "CHIU\n");
  const std::string second = folder.Write("second.cmd", ThousandLines("CHIU"));
  const std::vector<std::string> arguments = {"check", first, second, first};
  const ProgramRun run = RunConsole(arguments, WithSignalAtBar(SIGINT, 3));
  EXPECT_EQ(run.exit_code, 130);
  EXPECT_EQ(run.output, RunConsole({"check", first}).output);
  // Half an object is none.
  std::vector<std::string> json = arguments;
  json.push_back("--json");
  EXPECT_THAT(RunConsole(json, WithSignalAtBar(SIGINT, 3)).output, IsEmpty());
}
