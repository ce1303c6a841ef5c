// The commands that README.md, docs/console.md and the manual pages show are run as a person would
// type them, and what a page shows below one is what comes out. The lines of the language in
// docs/language.md are run by tests/unit/register/client/language_examples_test.cpp.
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <regex>
#include <sstream>
#include <string>
#include <vector>

#include "program_run.h"

namespace {

constexpr const char* kClock = " --clock '2024-03-15 10:30'";

// A command line, and what the page shows below it.
struct Example {
  std::string command;
  std::string output = {};
  bool shows_output = false;
};

// Examples that follow one another in one place.
using Block = std::vector<Example>;

std::vector<std::string> LinesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

bool IsCommand(const std::string& line) {
  static const std::regex command("(build/release/bin/)?lorimat .*|printf .*\\| lorimat .*|cat .*");
  return std::regex_match(line, command);
}

// Between fences commands stand behind "$ ", with what they write below, or alone; else they are
// indented.
std::vector<Block> BlocksOfMarkdown(const std::string& file) {
  std::vector<Block> blocks;
  std::string fence;
  for (const std::string& line : LinesOf(ReadFile(SourceFile(file)))) {
    if (line.rfind("```", 0) == 0) {
      fence = fence.empty() ? line : "";
      blocks.emplace_back();
    } else if (fence == "```text" && line.rfind("$ ", 0) == 0) {
      blocks.back().push_back({line.substr(2), "", true});
    } else if (fence == "```text" && !blocks.back().empty()) {
      blocks.back().back().output += line + "\n";
    } else if (fence == "```sh") {
      blocks.back().push_back({line});
    } else if (fence.empty() && line.rfind("    ", 0) == 0 && IsCommand(line.substr(4))) {
      blocks.push_back({{line.substr(4)}});
    }
  }
  std::erase_if(blocks, [](const Block& block) { return block.empty(); });
  return blocks;
}

std::vector<Block> BlocksOfManual(const std::string& file) {
  std::vector<Block> blocks;
  bool in_example = false;
  for (std::string line : LinesOf(ReadFile(SourceFile(file)))) {
    if (line == ".nf" || line == ".fi") {
      in_example = line == ".nf";
      if (in_example) blocks.emplace_back();
    } else if (in_example) {
      line = std::regex_replace(line, std::regex("\\\\-"), "-");
      line = std::regex_replace(line, std::regex("\\\\e"), "\\");
      if (IsCommand(line)) blocks.back().push_back({line});
    }
  }
  std::erase_if(blocks, [](const Block& block) { return block.empty(); });
  return blocks;
}

ProgramRun RunCommandLine(const std::string& command, const TestFolder& folder) {
  const char* path = std::getenv("PATH");
  return RunProgram("/bin/sh", {"-c", command},
                    {.folder = folder.path(),
                     .environment = {{"PATH", std::string(LORIMAT_BIN_FOLDER) + ":" +
                                                  (path != nullptr ? path : "/bin:/usr/bin")}}});
}

// Lines on the register that the pages call shop.register.
void Sell(const TestFolder& folder, const std::string& lines) {
  folder.Write("before.cmd", lines);
  const ProgramRun run = RunCommandLine(
      std::string("lorimat run before.cmd --register shop.register") + kClock, folder);
  ASSERT_EQ(run.exit_code, 0) << run.errors;
}

// What has happened ahead of a command whose output the page shows.
void SetScene(const std::string& command, const TestFolder& folder) {
  static const std::map<std::string, std::function<void(const TestFolder&)>> kScenes = {
      {"lorimat check receipt.cmd",
       [](const TestFolder& place) {
         place.Write("receipt.cmd", "VEND REP=1, PRE=2.00\nVNED REP=1, PRE=1.00\nCHIU\n");
       }},
      {"printf \"INFO TIPO=1, FILE='shop.register'\\n\" | lorimat run - --register shop.register "
       "--terse --clock \"2024-03-15 10:30\"",
       [](const TestFolder& place) { Sell(place, "VEND REP=1, PRE=1.00\nCHIU\n"); }},
      {"lorimat status --register shop.register",
       [](const TestFolder& place) {
         Sell(place,
              "VEND REP=1, PRE=1234.56\nCHIU\n"
              "FATTURA TIPO=2, RIGA1='ROSSI SRL'\nVEND REP=2, PRE=10.00\nCHIU\n"
              "VEND REP=1, PRE=9.99\nRESPRN\n");
       }},
      {"lorimat copy shop.register home.register",
       [](const TestFolder& place) { Sell(place, "VEND REP=1, PRE=1.00\nCHIU\n"); }},
      {"lorimat fault paper-end --register shop.register",
       [](const TestFolder& place) { Sell(place, ""); }},
      {"lorimat journal --register shop.register --kind receipt --kind closing",
       [](const TestFolder& place) {
         Sell(place,
              "VEND REP=1, PRE=1.00\nCHIU\n"
              "NOFIS INIZIO\nNOFIS MSG='NOTA'\nNOFIS FINE\nAZZGIO\n");
       }},
      {"lorimat restore tables --register shop.register",
       [](const TestFolder& place) {
         Sell(place, "PROG INIZIO\nPGRU GRU=2, DES='ORTO'\nENDPROG\n");
         const ProgramRun run =
             RunCommandLine("lorimat backup tables --register shop.register", place);
         ASSERT_EQ(run.exit_code, 0) << run.errors;
         Sell(place, "PROG INIZIO\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n");
       }},
  };
  const auto found = kScenes.find(command);
  if (found != kScenes.end()) found->second(folder);
}

// A place where the files are that the pages name.
void WriteFiles(const TestFolder& folder) {
  std::filesystem::copy(SourceFile("examples"), folder.Path("examples"));
  folder.Write("receipt.cmd", "VEND REP=1, PRE=2.00\nCHIU\n");
  folder.Write("open.cmd", "VEND REP=1, PRE=2.00\n");
  folder.Write("sales.cmd", "VEND REP=2, PRE=1.50\nVNED REP=2, PRE=1.20\nCHIU\n");
  folder.Write("words.ini", ReadFile(SourceFile("language/merkelin.ini")));
}

// What differs from register to register is the digest, which a page cuts: "0e8c...". Carriage
// returns are not seen.
std::string AsSeen(const std::string& text) {
  const std::string seen = std::regex_replace(text, std::regex("\r\n"), "\n");
  return std::regex_replace(seen, std::regex("last hash [0-9a-f]+(\\.\\.\\.)?"), "last hash");
}

void RunExamples(const std::vector<Block>& blocks) {
  for (const Block& block : blocks) {
    const TestFolder folder;
    WriteFiles(folder);
    for (const Example& example : block) {
      SCOPED_TRACE(example.command);
      // A person at a terminal: tests/acceptance/shell_terminal_test.cpp.
      if (example.shows_output && example.command == "lorimat shell") continue;
      ASSERT_TRUE(IsCommand(example.command));
      SetScene(example.command, folder);
      const std::string command =
          std::regex_replace(example.command, std::regex("build/release/bin/"), "");
      const ProgramRun run =
          RunCommandLine(example.shows_output ? command + " 2>&1" : command, folder);
      if (example.shows_output) {
        EXPECT_EQ(AsSeen(run.output), AsSeen(example.output));
      } else {
        EXPECT_EQ(run.exit_code, 0) << run.errors;
      }
    }
  }
}

// The text between two fences that begins with this line.
std::string Fenced(const std::string& page, const std::string& first) {
  const size_t begin = page.find("```" + first);
  EXPECT_NE(begin, std::string::npos) << first;
  if (begin == std::string::npos) return {};
  const size_t text = page.find('\n', begin) + 1;
  return page.substr(text, page.find("```\n", text) - text);
}

}  // namespace

TEST(PageExamples, OfTheReadme) {
  const std::vector<Block> blocks = BlocksOfMarkdown("README.md");
  EXPECT_GE(blocks.size(), 2u);
  RunExamples(blocks);
}

TEST(PageExamples, OfTheReadmeShowTheReceiptAndTheHost) {
  const std::string page = ReadFile(SourceFile("README.md"));
  const ProgramRun run =
      RunConsole({"run", SourceFile("examples/receipt.cmd"), "--clock", "2026-11-20 11:03"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(Fenced(page, "text\n             NEGOZIO"), run.output);
  EXPECT_EQ(Fenced(page, "cpp\n"), ReadFile(SourceFile("examples/host.cpp")));
}

TEST(PageExamples, OfTheConsole) {
  const std::vector<Block> blocks = BlocksOfMarkdown("docs/console.md");
  EXPECT_GE(blocks.size(), 7u);
  RunExamples(blocks);
}

TEST(PageExamples, OfTheConsoleShowWhatBecomesOfAnOpenDocument) {
  const TestFolder folder;
  Sell(folder, "");
  folder.Write("open.cmd", "VEND REP=1, PRE=2.00\nVEND REP=1, PRE=1.50\n");
  const std::string command =
      "lorimat run open.cmd --register shop.register"
      " --clock '2026-11-20 11:03'";
  const std::string told = RunCommandLine(command, folder).errors;
  folder.Write("open.cmd", "");
  EXPECT_EQ(told + RunCommandLine(command, folder).errors,
            Fenced(ReadFile(SourceFile("docs/console.md")), "text\nlorimat: note"));
}

TEST(PageExamples, OfTheShellForPrograms) {
  const std::vector<Block> blocks = BlocksOfMarkdown("docs/json.md");
  EXPECT_EQ(blocks.size(), 1u);
  RunExamples(blocks);
}

TEST(PageExamples, OfBatches) {
  for (const char* page : {"docs/batches.md", "docs/batches.it.md"}) {
    const std::vector<Block> blocks = BlocksOfMarkdown(page);
    EXPECT_EQ(blocks.size(), 2u) << page;
    RunExamples(blocks);
  }
}

TEST(PageExamples, OfTheManualPages) {
  const std::vector<Block> english = BlocksOfManual("docs/man/lorimat.1");
  const std::vector<Block> italian = BlocksOfManual("docs/man/it/lorimat.1");
  EXPECT_GE(english.size(), 5u);
  EXPECT_EQ(english.size(), italian.size());
  RunExamples(english);
  RunExamples(italian);
}
