// The table of commands and fields.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <nlohmann/json.hpp>
#include <string>

#include "program_run.h"

using nlohmann::json;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

// A command with an alias field and a mandatory one, a second name of it, a command without
// fields, and a number that is no command of the library.
const char* const kWords =
    "; a small language\n"
    "[OPCOD]\n10=SELL\n11=PAY\n18=SUBTOTAL\n90=VENDE,10\n99=DANCE\n"
    "[10]\n1=DEP\n2=PLU\n4=PRICE,O\n5=PRINT\n20=COST,4\n"
    "[99]\n1=STEPS\n";

}  // namespace

TEST(Words, ATableShowsCommandsFieldsShortFormsAndRemarks) {
  TestFolder folder;
  const ProgramRun run = RunConsole({"words", "--language", folder.Write("words.ini", kWords)});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_EQ(run.output, ExpectedPaper("words.txt"));
}

TEST(Words, TheTableMayBeMarkdown) {
  TestFolder folder;
  const ProgramRun run =
      RunConsole({"words", "--markdown", "--language", folder.Write("words.ini", kWords)});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.output, ExpectedPaper("words.md"));
}

TEST(Words, JsonHoldsTheSame) {
  TestFolder folder;
  const ProgramRun run =
      RunConsole({"words", "--json", "--language", folder.Write("words.ini", kWords)});
  EXPECT_EQ(run.exit_code, 0);
  const json all = json::parse(run.output);
  ASSERT_EQ(all.size(), 5u);
  EXPECT_EQ(all[0].at("opcode"), 10);
  EXPECT_EQ(all[0].at("name"), "SELL");
  EXPECT_EQ(all[0].at("short"), "SE");
  EXPECT_EQ(all[0].at("supported"), true);
  const json price = {
      {"number", 4}, {"name", "PRICE"}, {"short", "PRIC"}, {"row", 4}, {"mandatory", true}};
  EXPECT_EQ(all[0].at("fields").at(2), price);
  EXPECT_EQ(all[0].at("fields").at(4).at("number"), 4);
  EXPECT_EQ(all[0].at("fields").at(4).at("row"), 20);
  EXPECT_EQ(all[3].at("name"), "VENDE");
  EXPECT_EQ(all[3].at("opcode"), 10);
  EXPECT_EQ(all[4].at("supported"), false);
}

TEST(Words, OneCommandIsFoundByAShortenedNameOrItsNumber) {
  const std::string by_name = RunConsole({"words", "--command", "chiu"}).output;
  EXPECT_THAT(by_name, HasSubstr("CHIU"));
  EXPECT_THAT(by_name, HasSubstr("TEND"));
  EXPECT_THAT(by_name, Not(HasSubstr("VEND")));
  EXPECT_EQ(RunConsole({"words", "--command", "#11"}).output, by_name);
}

TEST(Words, AnUnknownCommandIsToldWithTheNearestName) {
  const ProgramRun run = RunConsole({"words", "--command", "VNED"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_EQ(run.errors, "lorimat: VNED: no command has this name; did you mean VEND?\n");
  const ProgramRun far = RunConsole({"words", "--command", "XXXXXX"});
  EXPECT_EQ(far.errors, "lorimat: XXXXXX: no command has this name\n");
}

TEST(Words, AnAmbiguousCommandIsTold) {
  const ProgramRun run = RunConsole({"words", "--command", "P"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors, HasSubstr("fits more than one command"));
}

TEST(Words, AFileThatTheLibraryRefusesIsNamedWithLineAndCause) {
  TestFolder folder;
  const std::string words = folder.Write("words.ini", "[OPCOD]\n10=SELL\nSELL\n");
  const ProgramRun run = RunConsole({"words", "--language", words});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(run.errors, HasSubstr(words + ":3: an entry needs a '='"));
}

TEST(Words, MissingFilesAndFoldersAreNamed) {
  TestFolder folder;
  const ProgramRun missing = RunConsole({"words", "--language", folder.Path("none.ini")});
  EXPECT_EQ(missing.exit_code, 2);
  EXPECT_THAT(missing.errors, HasSubstr("none.ini: cannot be opened: No such file"));
  const ProgramRun directory = RunConsole({"words", "--language", folder.path()});
  EXPECT_EQ(directory.exit_code, 2);
  EXPECT_THAT(directory.errors, HasSubstr("is no regular file"));
}

TEST(Words, AMissingFileIsNotReplacedByOneOfTheCurrentFolder) {
  TestFolder folder;
  folder.Write("merkelin.ini", kWords);
  const ProgramRun run = RunConsole({"words", "--language", "none.ini"}, {.folder = folder.path()});
  EXPECT_EQ(run.exit_code, 2);
}

TEST(Words, NamesOfAnyBytesDoNotSpoilTheTable) {
  TestFolder folder;
  const std::string words =
      folder.Write("words.ini", "[OPCOD]\n10=A\x1b|\xff\n[10]\n1=\xc3\xa8\\\n");
  const ProgramRun text = RunConsole({"words", "--language", words});
  EXPECT_EQ(text.exit_code, 0) << text.errors;
  EXPECT_THAT(text.output, HasSubstr("A\\x1B|"));
  EXPECT_THAT(text.output, Not(HasSubstr("\x1b")));
  const ProgramRun markdown = RunConsole({"words", "--language", words, "--markdown"});
  EXPECT_EQ(markdown.exit_code, 0);
  EXPECT_THAT(markdown.output, HasSubstr("\\|"));
  const ProgramRun as_json = RunConsole({"words", "--language", words, "--json"});
  EXPECT_EQ(as_json.exit_code, 0);
  EXPECT_EQ(json::parse(as_json.output).at(0).at("opcode"), 10);
}

TEST(Words, AFileWithoutCommandsGivesAnEmptyTable) {
  TestFolder folder;
  const std::string words = folder.Write("words.ini", "");
  EXPECT_THAT(RunConsole({"words", "--language", words}).output, StartsWith("  No  Command"));
  EXPECT_EQ(RunConsole({"words", "--language", words, "--json"}).output, "[]\n");
}

TEST(Words, MarkdownAndJsonExcludeEachOther) {
  const ProgramRun run = RunConsole({"words", "--markdown", "--json"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("--json"));
}
