// Completion in bash: the function asked as the shell asks it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <sstream>

#include "program_run.h"

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;
using testing::UnorderedElementsAre;

namespace {

// What is offered for the last of the words behind the program's name.
std::vector<std::string> Completions(const std::vector<std::string>& words,
                                     const std::string& folder = "") {
  const std::string script =
      "source \"$1\"; shift\n"
      "COMP_WORDS=(\"$@\")\n"
      "COMP_CWORD=$((${#COMP_WORDS[@]} - 1))\n"
      "_lorimat\n"
      "for word in \"${COMPREPLY[@]}\"; do printf '%s\\n' \"$word\"; done\n"
      "complete -p lorimat | grep -q -- '-F _lorimat' || echo 'not registered'\n";
  std::vector<std::string> arguments = {"--norc",
                                        "-c",
                                        script,
                                        "bash",
                                        SourceFile("completion/lorimat"),
                                        std::string(LORIMAT_BIN_FOLDER) + "/lorimat"};
  arguments.insert(arguments.end(), words.begin(), words.end());
  const ProgramRun run = RunProgram("/bin/bash", arguments, {.folder = folder});
  EXPECT_EQ(run.errors, "");
  std::vector<std::string> found;
  std::istringstream lines(run.output);
  for (std::string line; std::getline(lines, line);) found.push_back(line);
  return found;
}

// The names at the left edge of a help text; options with dashes, else commands.
std::vector<std::string> NamesInHelp(std::vector<std::string> command, bool options) {
  command.push_back("--help");
  std::vector<std::string> names;
  std::istringstream lines(RunConsole(command).output);
  std::string group;
  for (std::string line; std::getline(lines, line) && line != "Examples:";) {
    if (!line.empty() && line.front() != ' ') group = line;
    if (line.substr(0, 2) != "  " || line.substr(0, 3) == "   " || group == "Positionals:")
      continue;
    std::string name = line.substr(2, line.find(' ', 2) - 2);
    if ((name.front() == '-') != options) continue;
    // "-v,--verbose"
    if (options) name = name.substr(name.find("--"));
    names.push_back(name);
  }
  return names;
}

}  // namespace

TEST(Completion, OffersTheCommandsThatTheHelpNames) {
  const std::vector<std::string> commands = NamesInHelp({}, false);
  ASSERT_THAT(commands, Contains("run"));
  EXPECT_THAT(Completions({""}), testing::UnorderedElementsAreArray(commands));
  EXPECT_THAT(Completions({"wo"}), ElementsAre("words"));
  EXPECT_THAT(Completions({"xyz"}), IsEmpty());
}

TEST(Completion, OffersTheCommandsToHelp) {
  EXPECT_THAT(Completions({"help", ""}),
              testing::UnorderedElementsAreArray(NamesInHelp({}, false)));
  EXPECT_THAT(Completions({"help", "run", ""}), IsEmpty());
}

TEST(Completion, OffersTheOptionsThatTheHelpNames) {
  for (const std::string& command : NamesInHelp({}, false)) {
    const std::vector<std::string> options = NamesInHelp({command}, true);
    ASSERT_THAT(options, Contains("--help")) << command;
    EXPECT_THAT(Completions({command, "-"}), testing::UnorderedElementsAreArray(options))
        << command;
  }
  EXPECT_THAT(Completions({"--v"}), ElementsAre("--version"));
  EXPECT_THAT(Completions({"check", "--language-"}), ElementsAre("--language-file"));
}

TEST(Completion, OffersTheCommandsBelowAnotherWithTheirOptions) {
  for (const char* command : {"journal", "token"}) {
    const std::vector<std::string> below = NamesInHelp({command}, false);
    ASSERT_THAT(below, Not(IsEmpty()));
    EXPECT_THAT(Completions({command, ""}), testing::UnorderedElementsAreArray(below));
    for (const std::string& name : below) {
      EXPECT_THAT(Completions({command, name, "--"}),
                  testing::UnorderedElementsAreArray(NamesInHelp({command, name}, true)))
          << name;
    }
  }
}

TEST(Completion, OffersFilesByTheirKind) {
  TestFolder folder;
  for (const char* name : {"lines.cmd", "words.ini", "MORE.INI", "old.png", "two words.ini"}) {
    folder.Write(name, "");
  }
  EXPECT_THAT(Completions({"run", "--language", ""}, folder.path()),
              UnorderedElementsAre("words.ini", "MORE.INI", "two words.ini"));
  EXPECT_THAT(Completions({"run", "--png", ""}, folder.path()), ElementsAre("old.png"));
  EXPECT_THAT(Completions({"run", "l"}, folder.path()), ElementsAre("lines.cmd"));
  EXPECT_THAT(Completions({"run", "lines.cmd", ""}, folder.path()), IsEmpty());
  EXPECT_THAT(Completions({"check", "lines.cmd", "w"}, folder.path()), ElementsAre("words.ini"));
  EXPECT_THAT(Completions({"run", "--language", folder.Path("wo")}),
              ElementsAre(folder.Path("words.ini")));
  // As bash parts "--language=wo".
  EXPECT_THAT(Completions({"run", "--language", "=", "wo"}, folder.path()),
              ElementsAre("words.ini"));
  EXPECT_THAT(Completions({"run", "--png", "="}, folder.path()), ElementsAre("old.png"));
}

TEST(Completion, OffersNothingForAValueOfNoKind) {
  EXPECT_THAT(Completions({"run", "--clock", ""}), IsEmpty());
}

TEST(Completion, ValuesAreNotTakenForArguments) {
  TestFolder folder;
  folder.Write("lines.cmd", "");
  EXPECT_THAT(Completions({"run", "--clock", "x", "--paper", "y", "--batch", "l"}, folder.path()),
              ElementsAre("lines.cmd"));
  EXPECT_THAT(Completions({"--language", "x", "words", "--m"}, folder.path()),
              ElementsAre("--markdown"));
}

TEST(Completion, OffersTheCommandNamesOfTheDefinitionFile) {
  EXPECT_THAT(Completions({"words", "--command", "VE"}), ElementsAre("VEND"));
  TestFolder folder;
  folder.Write("words.ini", "[OPCOD]\n10=SELL\n11=PAY\n12=A$(>x)\n[10]\n1=DEP\n2=PLU\n");
  EXPECT_THAT(Completions({"words", "--language", "words.ini", "--command", ""}, folder.path()),
              ElementsAre("SELL", "PAY", "A\\$\\(\\>x\\)"));
  EXPECT_THAT(folder.names(), ElementsAre("words.ini"));
  EXPECT_THAT(Completions({"words", "--language", "none.ini", "--command", ""}, folder.path()),
              IsEmpty());
}

TEST(Completion, OffersCodesThatExplainKnows) {
  const std::vector<std::string> codes = Completions({"explain", ""});
  EXPECT_THAT(codes, Contains("265"));
  std::vector<std::string> arguments = {"explain"};
  arguments.insert(arguments.end(), codes.begin(), codes.end());
  const ProgramRun run = RunConsole(arguments);
  EXPECT_EQ(run.exit_code, 0) << run.output;
  EXPECT_THAT(run.output, Not(testing::HasSubstr("not given by this library")));
  EXPECT_THAT(Completions({"explain", "265", "819"}),
              UnorderedElementsAre("8193", "8194", "8195", "8196"));
}

TEST(Completion, OffersTheFaultsThatTheProgramKnows) {
  const nlohmann::json known = nlohmann::json::parse(RunConsole({"fault", "--json"}).output);
  std::vector<std::string> names = {"code"};
  for (const auto& fault : known.at("kinds")) names.push_back(fault.at("name"));
  ASSERT_GT(names.size(), 5u);
  EXPECT_THAT(Completions({"fault", ""}), testing::UnorderedElementsAreArray(names));
  EXPECT_THAT(Completions({"fault", "busy", ""}), IsEmpty());
}

TEST(Completion, OffersTheOperationsThatAFaultStrikes) {
  const nlohmann::json known = nlohmann::json::parse(RunConsole({"fault", "--json"}).output);
  const std::vector<std::string> names = known.at("operations");
  ASSERT_GT(names.size(), 50u);
  EXPECT_THAT(Completions({"fault", "--on", ""}), testing::UnorderedElementsAreArray(names));
  EXPECT_THAT(Completions({"fault", "busy", "--on", "PrintRecItemE"}),
              ElementsAre("PrintRecItemEx"));
}

TEST(Completion, OffersTheKindsOfEntriesThatTheJournalKnows) {
  const std::vector<std::string> kinds = Completions({"journal", "--kind", ""});
  std::string listed;
  for (const std::string& kind : kinds) listed += (listed.empty() ? "" : ", ") + kind;
  const ProgramRun run = RunConsole({"journal", "--kind", "qqqqqqqq", "--register", "/dev/null"});
  EXPECT_THAT(run.errors, testing::HasSubstr("the kinds are " + listed + "\n"));
}
