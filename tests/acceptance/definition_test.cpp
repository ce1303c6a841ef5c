// The definition file: where it comes from, and what is told when the library refuses it.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>

#include "program_run.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

namespace {

const char* const kWords =
    "[OPCOD]\n10=SELL\n11=PAY\n"
    "[10]\n1=DEP\n2=PLU\n3=QTY\n4=PRICE\n"
    "[11]\n1=TENDER\n2=AMOUNT\n";

ProgramRun RunWith(const std::string& lines, const std::string& language,
                   const ProgramSetting& setting = {}) {
  return RunConsole({"run", lines, "--language", language}, setting);
}

std::string RegistryText(const std::string& installation) {
  return "[Software\\Velmora\\Drivers\\Tessaloom\\FirmwareA]\nInstallationDir=" + installation +
         "\n";
}

}  // namespace

TEST(Definition, TheWordsComeFromTheGivenFile) {
  TestFolder folder;
  const std::string words = folder.Write("words.ini", kWords);
  const std::string lines = folder.Write("lines.cmd", "SELL DEP=1, PRICE=2.00\nPAY\n");
  const ProgramRun run = RunWith(lines, words);
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_THAT(run.output, HasSubstr("2,00"));
}

TEST(Definition, WithoutTheOptionTheShippedWordsCount) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VEND REP=1, PRE=2.00\nCHIU\n");
  const ProgramRun run = RunConsole({"run", lines}, {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
}

TEST(Definition, AMissingFileIsNamedWithItsCause) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "");
  const ProgramRun run = RunWith(lines, folder.Path("none.ini"));
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr(folder.Path("none.ini")));
  EXPECT_THAT(run.errors, HasSubstr("No such file or directory"));
}

TEST(Definition, AMissingFileIsNotReplacedByOneOfTheCurrentFolder) {
  TestFolder folder;
  folder.Write("merkelin.ini", kWords);
  const std::string lines = folder.Write("lines.cmd", "");
  const ProgramRun run = RunWith(lines, "none.ini", {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("none.ini"));
}

TEST(Definition, AFolderIsRefused) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "");
  const ProgramRun run = RunWith(lines, folder.path());
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("is no regular file"));
}

TEST(Definition, ARefusedFileIsShownWithLineAndCause) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "");
  const struct {
    const char* text;
    const char* place;
    const char* cause;
  } cases[] = {
      {"; words\n[OPCOD]\n10=SELL\nVEND\n", ":4:", "an entry needs a '='"},
      {"[OPCOD]\n=SELL\n", ":2:", "nothing stands before the '='"},
      {"[OPCOD]\n151=SELL\n", ":2:", "row 151 is above 150"},
      {"[OPCOD]\n10=SELL\n\n[10]\nx=DEP\n", ":5:", "'x' is no row number"},
      {"[OPCOD]\n0=SELL\n", ":2:", "'0' is no row number"},
  };
  for (const auto& one : cases) {
    const std::string words = folder.Write("words.ini", one.text);
    const ProgramRun run = RunWith(lines, words);
    EXPECT_EQ(run.exit_code, 2) << one.text;
    EXPECT_THAT(run.errors, HasSubstr(words + one.place)) << one.text;
    EXPECT_THAT(run.errors, HasSubstr(one.cause)) << one.text;
    EXPECT_THAT(run.output, IsEmpty()) << one.text;
  }
}

TEST(Definition, AFileWithoutCommandsIsWarnedOf) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VEND\n");
  const ProgramRun run = RunWith(lines, folder.Write("empty.ini", ""));
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("empty.ini names no commands"));
  EXPECT_THAT(run.errors, HasSubstr("code 257"));
}

TEST(Definition, APathLongerThanTheLibraryTakesStillReachesIt) {
  TestFolder folder;
  const std::string deep(90, 'd');
  std::filesystem::create_directory(folder.Path(deep));
  const std::string words = folder.Write(deep + "/words.ini", kWords);
  const std::string lines = folder.Write("lines.cmd", "SELL DEP=1, PRICE=2.00\nPAY\n");
  const ProgramRun run = RunWith(lines, words);
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
}

TEST(Registry, AnInstallationOverridesTheLanguageAndItIsSaid) {
  TestFolder folder;
  std::filesystem::create_directory(folder.Path("Drivers"));
  folder.Write("Drivers/MERKELIN.INI", kWords);
  const std::string registry = folder.Write("registry.ini", RegistryText(folder.path()));
  const std::string lines = folder.Write("lines.cmd", "SELL DEP=1, PRICE=2.00\nPAY\n");
  const ProgramRun run = RunWith(lines, SourceFile("language/merkelin.ini"),
                                 {.environment = {{"LORIMATRT_REGISTRY", registry}}});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, HasSubstr("InstallationDir=" + folder.path()));
  EXPECT_THAT(run.errors, HasSubstr(registry));
  EXPECT_THAT(run.errors, HasSubstr("overrides --language"));
  EXPECT_THAT(run.errors, HasSubstr(folder.Path("Drivers/MERKELIN.INI")));
  EXPECT_THAT(run.output, Not(HasSubstr("InstallationDir")));
}

TEST(Registry, WithoutTheOptionOnlyTheVerboseRunSpeaksOfIt) {
  TestFolder folder;
  std::filesystem::create_directory(folder.Path("Drivers"));
  folder.Write("Drivers/MERKELIN.INI", kWords);
  const std::string registry = folder.Write("registry.ini", RegistryText(folder.path()));
  const std::string lines = folder.Write("lines.cmd", "SELL DEP=1, PRICE=2.00\nPAY\n");
  const ProgramSetting setting{.environment = {{"LORIMATRT_REGISTRY", registry}}};
  EXPECT_THAT(RunConsole({"run", lines}, setting).errors, IsEmpty());
  EXPECT_THAT(RunConsole({"run", lines, "--verbose"}, setting).errors,
              HasSubstr("InstallationDir=" + folder.path()));
}

TEST(Registry, AnInstallationWithoutADefinitionFileIsAnErrorThatNamesTheRegistry) {
  TestFolder folder;
  const std::string registry = folder.Write("registry.ini", RegistryText(folder.path()));
  const std::string lines = folder.Write("lines.cmd", "");
  const ProgramRun run = RunWith(lines, SourceFile("language/merkelin.ini"),
                                 {.environment = {{"LORIMATRT_REGISTRY", registry}}});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr(folder.Path("Drivers/MERKELIN.INI")));
  EXPECT_THAT(run.errors, HasSubstr("No such file"));
  EXPECT_THAT(run.errors, HasSubstr("named by InstallationDir in the registry " + registry));
}

TEST(Registry, ARegistryWithoutAnInstallationLeavesTheLanguage) {
  TestFolder folder;
  const std::string registry = folder.Write(
      "registry.ini", "[Software\\Velmora\\Drivers\\Tessaloom\\FirmwareA]\nWaitIdle=1\n");
  const std::string words = folder.Write("words.ini", kWords);
  const std::string lines = folder.Write("lines.cmd", "SELL DEP=1, PRICE=2.00\nPAY\n");
  const ProgramRun run = RunWith(lines, words, {.environment = {{"LORIMATRT_REGISTRY", registry}}});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
}

TEST(Registry, APathThatTheLibraryWouldCutIsAnError) {
  TestFolder folder;
  // 79 characters of InstallationDir fit the registry query; the file's path behind it does not.
  std::string installation = folder.Path("i");
  installation.append(79 - installation.size(), 'i');
  std::filesystem::create_directories(installation + "/Drivers");
  std::filesystem::copy_file(folder.Write("words.ini", kWords),
                             installation + "/Drivers/MERKELIN.INI");
  const std::string registry = folder.Write("registry.ini", RegistryText(installation));
  const std::string lines = folder.Write("lines.cmd", "");
  const ProgramRun run =
      RunConsole({"run", lines}, {.environment = {{"LORIMATRT_REGISTRY", registry}}});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("longer than the 79 characters"));
}
