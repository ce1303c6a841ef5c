// The commands that README.md, docs/console.md and the manual pages show are run as a person would
// type them, and what a page shows below one is what comes out. The lines of the language in
// docs/language.md are run by tests/unit/register/language_examples_test.cpp.
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
  std::string output;
  bool shows_output = false;
};

// Examples that follow one another in one place.
using Block = std::vector<Example>;

std::vector<std::string> lines_of(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream stream(text);
  for (std::string line; std::getline(stream, line);) lines.push_back(line);
  return lines;
}

bool is_command(const std::string& line) {
  static const std::regex command("(build/release/bin/)?lorimat .*|printf .*\\| lorimat .*|cat .*");
  return std::regex_match(line, command);
}

// Between fences commands stand behind "$ ", with what they write below, or alone; else they are
// indented.
std::vector<Block> blocks_of_markdown(const std::string& file) {
  std::vector<Block> blocks;
  std::string fence;
  for (const std::string& line : lines_of(read_file(source_file(file)))) {
    if (line.rfind("```", 0) == 0) {
      fence = fence.empty() ? line : "";
      blocks.emplace_back();
    } else if (fence == "```text" && line.rfind("$ ", 0) == 0) {
      blocks.back().push_back({line.substr(2), "", true});
    } else if (fence == "```text" && !blocks.back().empty()) {
      blocks.back().back().output += line + "\n";
    } else if (fence == "```sh") {
      blocks.back().push_back({line});
    } else if (fence.empty() && line.rfind("    ", 0) == 0 && is_command(line.substr(4))) {
      blocks.push_back({{line.substr(4)}});
    }
  }
  std::erase_if(blocks, [](const Block& block) { return block.empty(); });
  return blocks;
}

std::vector<Block> blocks_of_manual(const std::string& file) {
  std::vector<Block> blocks;
  bool in_example = false;
  for (std::string line : lines_of(read_file(source_file(file)))) {
    if (line == ".nf" || line == ".fi") {
      in_example = line == ".nf";
      if (in_example) blocks.emplace_back();
    } else if (in_example) {
      line = std::regex_replace(line, std::regex("\\\\-"), "-");
      line = std::regex_replace(line, std::regex("\\\\e"), "\\");
      if (is_command(line)) blocks.back().push_back({line});
    }
  }
  std::erase_if(blocks, [](const Block& block) { return block.empty(); });
  return blocks;
}

ProgramRun run_command_line(const std::string& command, const TestFolder& folder) {
  const char* path = std::getenv("PATH");
  return run_program("/bin/sh", {"-c", command},
                     {.folder = folder.path(),
                      .environment = {{"PATH", std::string(LORIMAT_BIN_FOLDER) + ":" +
                                                   (path != nullptr ? path : "/bin:/usr/bin")}}});
}

// Lines on the register that the pages call shop.register.
void sell(const TestFolder& folder, const std::string& lines) {
  folder.write("before.cmd", lines);
  const ProgramRun run = run_command_line(
      std::string("lorimat run before.cmd --register shop.register") + kClock, folder);
  ASSERT_EQ(run.exit_code, 0) << run.errors;
}

// What has happened ahead of a command whose output the page shows.
void set_scene(const std::string& command, const TestFolder& folder) {
  static const std::map<std::string, std::function<void(const TestFolder&)>> kScenes = {
      {"lorimat check receipt.cmd",
       [](const TestFolder& place) {
         place.write("receipt.cmd", "VEND REP=1, PRE=2.00\nVNED REP=1, PRE=1.00\nCHIU\n");
       }},
      {"lorimat status --register shop.register",
       [](const TestFolder& place) {
         sell(place,
              "VEND REP=1, PRE=1234.56\nCHIU\n"
              "FATTURA TIPO=2, RIGA1='ROSSI SRL'\nVEND REP=2, PRE=10.00\nCHIU\n"
              "VEND REP=1, PRE=9.99\nRESPRN\n");
       }},
      {"lorimat copy shop.register home.register",
       [](const TestFolder& place) { sell(place, "VEND REP=1, PRE=1.00\nCHIU\n"); }},
      {"lorimat fault paper-end --register shop.register",
       [](const TestFolder& place) { sell(place, ""); }},
      {"lorimat journal --register shop.register --kind receipt --kind closing",
       [](const TestFolder& place) {
         sell(place,
              "VEND REP=1, PRE=1.00\nCHIU\n"
              "NOFIS INIZIO\nNOFIS MSG='NOTA'\nNOFIS FINE\nAZZGIO\n");
       }},
      {"lorimat restore tables --register shop.register",
       [](const TestFolder& place) {
         sell(place, "PROG INIZIO\nPGRU GRU=2, DES='ORTO'\nENDPROG\n");
         const ProgramRun run =
             run_command_line("lorimat backup tables --register shop.register", place);
         ASSERT_EQ(run.exit_code, 0) << run.errors;
         sell(place, "PROG INIZIO\nPGRU GRU=2, DES='FRUTTA'\nENDPROG\n");
       }},
  };
  const auto found = kScenes.find(command);
  if (found != kScenes.end()) found->second(folder);
}

// A place where the files are that the pages name.
void write_files(const TestFolder& folder) {
  std::filesystem::copy(source_file("examples"), folder.path("examples"));
  folder.write("receipt.cmd", "VEND REP=1, PRE=2.00\nCHIU\n");
  folder.write("open.cmd", "VEND REP=1, PRE=2.00\n");
  folder.write("sales.cmd", "VEND REP=2, PRE=1.50\nVNED REP=2, PRE=1.20\nCHIU\n");
  folder.write("words.ini", read_file(source_file("language/merkelin.ini")));
}

// What differs from register to register is the digest, which a page cuts: "0e8c...". Carriage
// returns are not seen.
std::string as_seen(const std::string& text) {
  const std::string seen = std::regex_replace(text, std::regex("\r\n"), "\n");
  return std::regex_replace(seen, std::regex("last hash [0-9a-f]+(\\.\\.\\.)?"), "last hash");
}

void run_examples(const std::vector<Block>& blocks) {
  for (const Block& block : blocks) {
    const TestFolder folder;
    write_files(folder);
    for (const Example& example : block) {
      SCOPED_TRACE(example.command);
      // A person at a terminal: tests/acceptance/shell_terminal_test.cpp.
      if (example.shows_output && example.command == "lorimat shell") continue;
      ASSERT_TRUE(is_command(example.command));
      set_scene(example.command, folder);
      const std::string command =
          std::regex_replace(example.command, std::regex("build/release/bin/"), "");
      const ProgramRun run =
          run_command_line(example.shows_output ? command + " 2>&1" : command, folder);
      if (example.shows_output) {
        EXPECT_EQ(as_seen(run.output), as_seen(example.output));
      } else {
        EXPECT_EQ(run.exit_code, 0) << run.errors;
      }
    }
  }
}

// The text between two fences that begins with this line.
std::string fenced(const std::string& page, const std::string& first) {
  const size_t begin = page.find("```" + first);
  EXPECT_NE(begin, std::string::npos) << first;
  if (begin == std::string::npos) return {};
  const size_t text = page.find('\n', begin) + 1;
  return page.substr(text, page.find("```\n", text) - text);
}

}  // namespace

TEST(PageExamples, OfTheReadme) {
  const std::vector<Block> blocks = blocks_of_markdown("README.md");
  EXPECT_GE(blocks.size(), 2u);
  run_examples(blocks);
}

TEST(PageExamples, OfTheReadmeShowTheReceiptAndTheHost) {
  const std::string page = read_file(source_file("README.md"));
  const ProgramRun run =
      run_console({"run", source_file("examples/receipt.cmd"), "--clock", "2026-11-20 11:03"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(fenced(page, "text\n             NEGOZIO"), run.output);
  EXPECT_EQ(fenced(page, "cpp\n"), read_file(source_file("examples/host.cpp")));
}

TEST(PageExamples, OfTheConsole) {
  const std::vector<Block> blocks = blocks_of_markdown("docs/console.md");
  EXPECT_GE(blocks.size(), 7u);
  run_examples(blocks);
}

TEST(PageExamples, OfTheConsoleShowWhatBecomesOfAnOpenDocument) {
  const TestFolder folder;
  sell(folder, "");
  folder.write("open.cmd", "VEND REP=1, PRE=2.00\nVEND REP=1, PRE=1.50\n");
  const std::string command =
      "lorimat run open.cmd --register shop.register"
      " --clock '2026-11-20 11:03'";
  const std::string told = run_command_line(command, folder).errors;
  folder.write("open.cmd", "");
  EXPECT_EQ(told + run_command_line(command, folder).errors,
            fenced(read_file(source_file("docs/console.md")), "text\nlorimat: note"));
}

TEST(PageExamples, OfTheShellForPrograms) {
  const std::vector<Block> blocks = blocks_of_markdown("docs/json.md");
  EXPECT_EQ(blocks.size(), 1u);
  run_examples(blocks);
}

TEST(PageExamples, OfBatches) {
  for (const char* page : {"docs/batches.md", "docs/batches.it.md"}) {
    const std::vector<Block> blocks = blocks_of_markdown(page);
    EXPECT_EQ(blocks.size(), 2u) << page;
    run_examples(blocks);
  }
}

TEST(PageExamples, OfTheManualPages) {
  const std::vector<Block> english = blocks_of_manual("docs/man/lorimat.1");
  const std::vector<Block> italian = blocks_of_manual("docs/man/it/lorimat.1");
  EXPECT_GE(english.size(), 5u);
  EXPECT_EQ(english.size(), italian.size());
  run_examples(english);
  run_examples(italian);
}
