// The manual pages name every command and option that --help does, and no other.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <sstream>

#include "program_run.h"

using testing::IsEmpty;
using testing::Not;

namespace {

// A command, such as "run" or "journal show", or "" for the program; and its options.
using OptionsOfCommands = std::map<std::string, std::set<std::string>>;

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

std::set<std::string> NamesIn(const std::string& text) {
  static const std::regex name("(^|[ ,\"])(--?[A-Za-z][A-Za-z-]*)");
  std::set<std::string> names;
  for (std::sregex_iterator found(text.begin(), text.end(), name), end; found != end; ++found) {
    names.insert((*found)[2]);
  }
  return names;
}

// What the help of a command and of those below it shows.
void ReadHelp(const std::string& command, OptionsOfCommands* all) {
  std::vector<std::string> arguments;
  std::istringstream words(command);
  for (std::string word; words >> word;) arguments.push_back(word);
  arguments.push_back("--help");
  const ProgramRun run = RunConsole(arguments);
  ASSERT_EQ(run.exit_code, 0) << command;
  std::set<std::string>& options = (*all)[command];
  std::vector<std::string> below;
  std::string group;
  for (const std::string& line : LinesOf(run.output)) {
    if (line == "Examples:") break;
    if (!line.empty() && line.front() != ' ') group = line;
    if (line.substr(0, 2) != "  " || line.substr(0, 3) == "   ") continue;
    const std::string entry = line.substr(2, line.find(' ', 2) - 2);
    if (entry.front() == '-') {
      for (const std::string& name : NamesIn(entry)) options.insert(name);
    } else if (group != "Positionals:") {
      below.push_back(entry);
    }
  }
  // The pages tell of it once, for all.
  if (!command.empty()) {
    EXPECT_EQ(options.erase("-h") + options.erase("--help"), 2u) << command;
  }
  for (const std::string& name : below) {
    ReadHelp(command.empty() ? name : command + " " + name, all);
  }
}

OptionsOfCommands OptionsInHelp() {
  OptionsOfCommands all;
  ReadHelp("", &all);
  return all;
}

// The sections of a page below the heading of its commands, by their tagged paragraphs.
OptionsOfCommands OptionsInPage(const std::string& file) {
  OptionsOfCommands all;
  std::string command;
  bool tag = false;
  bool in_commands = false;
  for (std::string line : LinesOf(ReadFile(SourceFile(file)))) {
    line = std::regex_replace(line, std::regex("\\\\-"), "-");
    if (line.rfind(".SH ", 0) == 0) {
      in_commands = line == ".SH OPTIONS" || line == ".SH OPZIONI" || line == ".SH COMMANDS" ||
                    line == ".SH COMANDI";
      command.clear();
    } else if (line.rfind(".SS lorimat ", 0) == 0) {
      command = line.substr(12, line.find(" [") - 12);
      all[command];
    } else if (tag && in_commands) {
      const std::set<std::string> names = NamesIn(line);
      EXPECT_THAT(names, Not(IsEmpty())) << line;
      for (const std::string& name : names) {
        EXPECT_TRUE(all[command].insert(name).second) << command << " has " << name << " twice";
      }
    }
    tag = line == ".TP";
  }
  return all;
}

}  // namespace

TEST(ManPage, NamesWhatTheHelpNames) {
  const OptionsOfCommands help = OptionsInHelp();
  ASSERT_GE(help.size(), 5u);
  EXPECT_EQ(help.at("explain"), std::set<std::string>{"--json"});
  EXPECT_TRUE(help.at("run").count("-v") && help.at("run").count("--verbose"));
  for (const char* file : {"docs/man/lorimat.1", "docs/man/it/lorimat.1"}) {
    EXPECT_EQ(OptionsInPage(file), help) << file;
  }
}

TEST(ManPage, EveryHelpHasExamplesAndExitCodes) {
  for (const auto& [command, options] : OptionsInHelp()) {
    std::vector<std::string> arguments;
    std::istringstream words(command);
    for (std::string word; words >> word;) arguments.push_back(word);
    arguments.push_back("--help");
    const ProgramRun run = RunConsole(arguments);
    EXPECT_THAT(run.output, testing::HasSubstr("\nExamples:\n  lorimat ")) << command;
    EXPECT_THAT(run.output, testing::HasSubstr("\nExit codes:\n  0  ")) << command;
    EXPECT_THAT(run.output, testing::HasSubstr("\n  2  ")) << command;
  }
}

TEST(ManPage, NamesTheVariablesThatTheProgramReads) {
  for (const char* file : {"docs/man/lorimat.1", "docs/man/it/lorimat.1"}) {
    const std::string page = ReadFile(SourceFile(file));
    for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG", "LORIMAT_LIBRARY", "LORIMAT_REGISTER",
                             "LORIMAT_TOKEN", "LORIMAT_TOKENS", "LORIMATRT_REGISTRY", "NO_COLOR",
                             "PAGER", "TERM", "TMPDIR", "XDG_STATE_HOME"}) {
      EXPECT_THAT(page, testing::HasSubstr(name)) << file;
    }
  }
}

TEST(ManPage, CommandsStandByPurposeInTheProgramsHelp) {
  const std::string help = RunConsole({"--help"}).output;
  EXPECT_THAT(help, testing::HasSubstr("\nRun lines:\n  run "));
  EXPECT_THAT(help, testing::HasSubstr("\nLook into lines, words and codes:\n  check "));
  EXPECT_THAT(help, Not(testing::HasSubstr("\nSubcommands:")));
}
