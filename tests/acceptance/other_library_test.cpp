// --library with a library that is not the one that the console checks and explains lines by.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "program_run.h"

using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char* kOwnVersion = "3001011";

ProgramRun RunWith(const char* version, const std::string& lines, const char* language = "C") {
  TestFolder folder;
  folder.Write("inner.cmd", "VEND REP=1, PRE=1.00\nCHIU\n");
  return RunConsole({"run", folder.Write("lines.cmd", lines), "--library", LORIMAT_OTHER_LIBRARY},
                    {.folder = folder.path(),
                     .environment = {{"LORIMAT_TEST_VERSION", version}, {"LANG", language}}});
}

}  // namespace

TEST(OtherLibrary, OfAnotherVersionIsWarnedOfWithBothVersions) {
  const ProgramRun run = RunWith("4002000", "; nothing\n");
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.errors,
            "lorimat: warning: the library is version 4.2.0, and this program checks and explains "
            "lines by version 3.1.11: what it says of them may not be what the library does\n");
  EXPECT_THAT(RunWith("-1", "").errors, HasSubstr("the library is version -1, "));
  EXPECT_THAT(RunWith("4002000", "", "it_IT.UTF-8").errors,
              HasSubstr("la libreria è la versione 4.2.0, e questo programma controlla e spiega le "
                        "righe secondo la versione 3.1.11"));
}

TEST(OtherLibrary, OfTheSameVersionThatAnswersOtherwiseIsWarnedOf) {
  const ProgramRun run = RunWith(kOwnVersion, "; nothing\n");
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.errors,
            "lorimat: warning: the library calls itself version 3.1.11, as this program does, and "
            "answers otherwise: what is said of lines may not be what the library does\n");
}

TEST(OtherLibrary, OfThisProgramIsNotWarnedOf) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "; nothing\n");
  for (const char* command : {"run", "shell"}) {
    std::vector<std::string> arguments = {command};
    if (command == std::string("run")) arguments.push_back(lines);
    EXPECT_THAT(RunConsole(arguments, {.input = ""}).errors, IsEmpty()) << command;
  }
}
