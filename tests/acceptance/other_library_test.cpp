// --library with a library that is not the one that the console checks and explains lines by.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <string>

#include "program_run.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

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

// It differs behind the device alone, in one price.
TEST(OtherLibrary, ThatSellsOtherwiseIsWarnedOf) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "; nothing\n");
  const auto errors = [&](const char* price) {
    return RunConsole({"run", lines, "--library", LORIMAT_OTHER_LIBRARY},
                      {.environment = {{"LORIMAT_TEST_FORWARD", LORIMAT_OWN_LIBRARY},
                                       {"LORIMAT_TEST_PRICE", price}}})
        .errors;
  };
  EXPECT_THAT(errors(""), Not(HasSubstr("warning")));
  EXPECT_THAT(errors("1.20"), HasSubstr("answers otherwise"));
}

// Each ended this program, by a signal that named nothing.
TEST(OtherLibrary, ThatEndsTheProcessIsRefusedByName) {
  const struct {
    const char* end;
    const char* told;
  } rows[] = {
      {"load", " ended the process that tried to load it (SIGBUS)\n"},
      {"exit", " ended the process that tried to load it\n"},
      {"line", " ended the process that tried some lines (SIGSEGV)\n"},
  };
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "; nothing\n");
  for (const auto& row : rows) {
    for (const char* command : {"run", "shell"}) {
      std::vector<std::string> arguments = {command, "--library", LORIMAT_OTHER_LIBRARY};
      if (command == std::string("run")) arguments.push_back(lines);
      const ProgramRun run =
          RunConsole(arguments, {.input = "", .environment = {{"LORIMAT_TEST_END", row.end}}});
      EXPECT_EQ(run.exit_code, 2) << row.end;
      EXPECT_EQ(run.errors, std::string("lorimat: the library is not loaded: ") +
                                LORIMAT_OTHER_LIBRARY + row.told);
      EXPECT_THAT(run.output, IsEmpty()) << row.end;
    }
  }
}

TEST(OtherLibrary, ThatIsNoneOrHalfOfOneIsRefusedByName) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "; nothing\n");
  const std::string whole = ReadFile(LORIMAT_OWN_LIBRARY);
  const std::string cut = folder.Write("cut.so", whole.substr(0, whole.size() / 2));
  const std::string text = folder.Write("text.so", "no library\n");
  const auto errors = [&](const std::string& library) {
    const ProgramRun run = RunConsole({"run", lines, "--library", library});
    EXPECT_EQ(run.exit_code, 2);
    return run.errors;
  };
  EXPECT_THAT(errors(cut), HasSubstr("cut.so is cut short: " + std::to_string(whole.size() / 2) +
                                     " bytes are left of "));
  EXPECT_THAT(errors(text), HasSubstr("text.so is no shared library\n"));
  EXPECT_THAT(errors(folder.path()), HasSubstr(" is no regular file\n"));
  EXPECT_THAT(errors(folder.path() + "/none.so"), HasSubstr("No such file or directory\n"));
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

// Neither the program stays nor the process that tries the library: the pipe has an end.
TEST(OtherLibrary, ThatHangsWhenItIsLoadedCanBeStopped) {
  for (const std::string command : {"run lines.cmd", "shell"}) {
    TestFolder folder;
    folder.Write("lines.cmd", "; nothing\n");
    const ProgramRun run = RunProgram(
        "/bin/bash",
        {"-c",
         "mkfifo pipe; \"$1\" $2 --library \"$3\" < /dev/null & pid=$!\n"
         "exec 7<pipe; read -r line <&7; echo $line; kill -TERM $pid; wait $pid; code=$?\n"
         "cat <&7; exit $code",
         "bash", std::string(LORIMAT_BIN_FOLDER) + "/lorimat", command, LORIMAT_OTHER_LIBRARY},
        {.folder = folder.path(),
         .environment = {{"LORIMAT_TEST_END", "hang"},
                         {"LORIMAT_TEST_PIPE", folder.Path("pipe")}}});
    EXPECT_EQ(run.exit_code, 128 + SIGTERM) << command << run.errors;
    EXPECT_EQ(run.output, "hangs\n") << command;
  }
}
