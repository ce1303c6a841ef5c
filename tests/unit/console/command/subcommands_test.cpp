// The rows of the subcommands: what the program is made of, and what has to tell of each.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <CLI/CLI.hpp>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "console/command/subcommand.h"

namespace lorimat::console {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::StartsWith;

constexpr const Subcommand* kRows[] = {
#define SUBCOMMAND(Name) &k##Name##Subcommand,
#include "console/command/subcommands.inc"
};

std::string SourceText(const std::string& file) {
  std::ifstream stream(std::string(LORIMAT_SOURCE_DIR) + "/" + file);
  EXPECT_TRUE(stream) << file;
  return {std::istreambuf_iterator<char>(stream), {}};
}

TEST(Subcommands, EachHasAFileOfItsNameAndEachSuchFileARow) {
  std::vector<std::string> files;
  for (const auto& entry :
       std::filesystem::directory_iterator(LORIMAT_SOURCE_DIR "/console/command")) {
    const std::string name = entry.path().filename();
    constexpr std::string_view kEnd = "_command.cpp";
    if (name.ends_with(kEnd)) files.push_back(name.substr(0, name.size() - kEnd.size()));
  }
  std::vector<std::string> names;
  for (const Subcommand* row : kRows) names.emplace_back(row->name);
  EXPECT_THAT(names, testing::UnorderedElementsAreArray(files));
}

TEST(Subcommands, HelpEndsInExamplesOfThisOneAndInExitCodes) {
  for (const Subcommand* row : kRows) {
    EXPECT_THAT(row->examples, StartsWith("Examples:\n  lorimat " + std::string(row->name)));
    EXPECT_THAT(row->examples, HasSubstr("\nExit codes:\n  0  "));
  }
}

TEST(Subcommands, ManualPagesAndCompletionTellOfEach) {
  for (const char* file : {"docs/man/lorimat.1", "docs/man/it/lorimat.1"}) {
    const std::string page = SourceText(file);
    for (const Subcommand* row : kRows) {
      const std::string section = "\n.SS lorimat " + std::string(row->name);
      EXPECT_THAT(page, AnyOf(HasSubstr(section + "\n"), HasSubstr(section + " "))) << file;
    }
  }
  const std::string completion = SourceText("completion/lorimat");
  for (const Subcommand* row : kRows) {
    const std::string name(row->name);
    EXPECT_THAT(completion, AnyOf(HasSubstr(" " + name + ")"), HasSubstr(" " + name + " | ")))
        << "no options of " << name;
  }
}

TEST(Subcommands, EachIsReadyToRunOnceItHasItsOptions) {
  for (const Subcommand* row : kRows) {
    CLI::App program;
    CLI::App* command = program.add_subcommand(std::string(row->name));
    EXPECT_TRUE(row->prepare(command)) << row->name;
  }
}

}  // namespace
}  // namespace lorimat::console
