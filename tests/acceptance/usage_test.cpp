// Options, help, exit codes, and the streams that belong to the paper.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "program_run.h"

using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

TEST(Usage, HelpGoesToStandardOutputWithExamplesAndExitCodes) {
  const ProgramRun run = RunConsole({"run", "--help"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.errors, IsEmpty());
  EXPECT_THAT(run.output, HasSubstr("--language"));
  EXPECT_THAT(run.output, HasSubstr("Examples:"));
  EXPECT_THAT(run.output, HasSubstr("Exit codes:"));
}

TEST(Usage, TheProgramsHelpNamesTheSubcommand) {
  const ProgramRun run = RunConsole({"--help"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, HasSubstr("run"));
}

TEST(Usage, VersionIsTheProjects) {
  const ProgramRun run = RunConsole({"--version"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.output, "lorimat " LORIMAT_VERSION "\n");
  EXPECT_THAT(run.errors, IsEmpty());
}

TEST(Usage, TheVersionHasALetterAndAWord) {
  for (const char* word : {"-V", "version"}) {
    const ProgramRun run = RunConsole({word});
    EXPECT_EQ(run.exit_code, 0) << word;
    EXPECT_EQ(run.output, "lorimat " LORIMAT_VERSION "\n") << word;
    EXPECT_THAT(run.errors, IsEmpty()) << word;
  }
}

TEST(Usage, HelpBehindTheWordHelpIsThatOfTheOption) {
  const std::vector<std::vector<std::string>> commands = {
      {}, {"run"}, {"journal"}, {"journal", "show"}, {"help"}, {"version"}};
  for (std::vector<std::string> words : commands) {
    std::vector<std::string> asked = {"help"};
    asked.insert(asked.end(), words.begin(), words.end());
    words.emplace_back("--help");
    const ProgramRun run = RunConsole(asked);
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    EXPECT_EQ(run.output, RunConsole(words).output);
    EXPECT_THAT(run.output, HasSubstr("\nExit codes:\n"));
  }
}

TEST(Usage, HelpOfAnUnknownCommandNamesTheNearestOne) {
  const ProgramRun word = RunConsole({"help", "rnu"});
  EXPECT_EQ(word.exit_code, 2);
  EXPECT_EQ(word.errors, "lorimat: no subcommand is called 'rnu'; did you mean run?\n");
  EXPECT_THAT(word.output, IsEmpty());
  EXPECT_EQ(RunConsole({"help", "journal", "shwo"}).errors,
            "lorimat: no subcommand is called 'shwo'; did you mean show?\n");
  const ProgramRun option = RunConsole({"rnu", "--help"});
  EXPECT_EQ(option.exit_code, 2);
  EXPECT_THAT(option.errors,
              StartsWith("lorimat: no subcommand is called 'rnu'; did you mean run?\n"));
}

TEST(Usage, NoSubcommandIsWrongUse) {
  const ProgramRun run = RunConsole({});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.output, IsEmpty());
  EXPECT_THAT(run.errors, StartsWith("lorimat: "));
}

TEST(Usage, AnUnknownSubcommandIsNamedWithTheNearestOne) {
  const ProgramRun run = RunConsole({"chek", "x.cmd"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors,
            "lorimat: no subcommand is called 'chek'; did you mean check?\n"
            "Run with --help for more information.\n");
}

TEST(Usage, AnUnknownOptionIsNamedAlsoWhereSomethingIsMissing) {
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {"--papper"}, {"check", "--papper"}, {"backup", "--papper"}}) {
    const ProgramRun run = RunConsole(arguments);
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_EQ(run.errors,
              "lorimat: no option is called '--papper'\n"
              "Run with --help for more information.\n");
  }
}

TEST(Usage, AnUnknownOptionIsNamedFirstAndTheNearestOneIsOffered) {
  struct {
    std::vector<std::string> arguments;
    const char* told;
  } const cases[] = {
      {{"run", "--papper"}, "'--papper'; did you mean --paper?"},
      {{"run", "x.cmd", "--papper", "y"}, "'--papper'; did you mean --paper?"},
      {{"run", "many.cmd", "--registr", "x"}, "'--registr'; did you mean --register?"},
      {{"run", "many.cmd", "--registr=x"}, "'--registr'; did you mean --register?"},
      {{"run", "--regster", "x", "many.cmd"}, "'--regster'; did you mean --register?"},
      {{"journal", "verify", "--registre", "x"}, "'--registre'; did you mean --register?"},
      {{"--versoin"}, "'--versoin'; did you mean --version?"},
      {{"run", "x.cmd", "-q"}, "'-q'"},
      {{"run", "x.cmd", "--zzzzzz"}, "'--zzzzzz'"},
      {{"run", "x.cmd", "--pa\x1b[2Jper"}, "'--pa\\x1B[2Jper'"},
  };
  for (const auto& one : cases) {
    const ProgramRun run = RunConsole(one.arguments);
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_EQ(run.errors, std::string("lorimat: no option is called ") + one.told +
                              "\nRun with --help for more information.\n");
  }
}

TEST(Usage, AnOptionInFrontOfItsSubcommandIsToldWhereItStands) {
  for (const std::vector<std::string>& arguments : std::vector<std::vector<std::string>>{
           {"--register", "d.reg", "status"}, {"--register=d.reg", "status", "--json"}}) {
    const ProgramRun run = RunConsole(arguments);
    EXPECT_EQ(run.exit_code, 2);
    EXPECT_EQ(run.errors,
              "lorimat: the option --register stands behind the subcommand: lorimat status "
              "--register ...\n"
              "Run with --help for more information.\n");
  }
  const ProgramRun alone = RunConsole({"--register", "d.reg"});
  EXPECT_EQ(alone.exit_code, 2);
  EXPECT_EQ(alone.errors,
            "lorimat: the option --register stands behind a subcommand, and none was given\n"
            "Run with --help for more information.\n");
}

TEST(Usage, AnArgumentTooManyIsNamed) {
  const ProgramRun run = RunConsole({"run", "x.cmd", "y.cmd", "z.cmd"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors,
            "lorimat: The following argument was not expected: y.cmd\n"
            "Run with --help for more information.\n");
}

TEST(Usage, RunNeedsAFile) {
  const ProgramRun run = RunConsole({"run"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("FILE"));
}

TEST(Usage, StopOnErrorDoesNotGoWithBatch) {
  const ProgramRun run = RunConsole({"run", "x.cmd", "--batch", "--stop-on-error"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("--stop-on-error"));
}

TEST(Usage, EachKindOfWrongUseIsToldInBothLanguages) {
  const struct {
    std::vector<std::string> arguments;
    const char* english;
    const char* italian;
  } cases[] = {
      {{}, "A subcommand is required", "Manca il sottocomando"},
      {{"run"}, "FILE is required", "Manca FILE"},
      {{"journal", "show"}, "PLACE is required", "Manca POSTO"},
      {{"run", "{}%s", "--paper"},
       "--paper: 1 required FILE missing",
       "--paper: valori mancanti: 1 di tipo FILE"},
      {{"run", "x", "--paper="},
       "--paper: 1 required FILE missing",
       "--paper: valori mancanti: 1 di tipo FILE"},
      {{"run", "x", "--clock", "a", "--clock", "b"},
       "--clock: At Most 1 required but received 2",
       "--clock: al massimo 1, indicati 2"},
      {{"journal", "--register", "a", "verify", "--register", "b"},
       "--register: At Most 1 required but received 2",
       "--register: al massimo 1, indicati 2"},
      {{"status", "--json={0}%s\x1b"},
       "Could not convert: --json = {0}%s\\x1B",
       "Valore non valido: --json = {0}%s\\x1B"},
      {{"fault", "busy", "--on", "OpenDrawer", "--nth", "{}"},
       "Could not convert: --nth = {}",
       "Valore non valido: --nth = {}"},
      {{"fault", "busy", "--nth", "1", "--every"},
       "--nth excludes --every",
       "--nth esclude --every"},
      {{"fault", "--nth", "1"}, "--nth requires FAULT", "--nth richiede GUASTO"},
      {{"paper", "--last", "0"},
       "--last: Value 0 not in range 1 to 1000000",
       "--last: il valore 0 non è tra 1 e 1000000"},
      {{"journal", "show", "{}%s\x1b"},
       "PLACE: Value {}%s\\x1B not in range 1 to 999999999",
       "POSTO: il valore {}%s\\x1B non è tra 1 e 999999999"},
      {{"run", "x", "--register", ""},
       "--register: must not be empty",
       "--register: non può essere vuoto"},
      {{"explain", "--json", "--json=x", "1"},
       "Could not convert: --json = true,x",
       "Valore non valido: --json = true,x"},
  };
  const ProgramSetting italian = {.environment = {{"LANG", "it_IT.UTF-8"}}};
  for (const auto& one : cases) {
    EXPECT_THAT(RunConsole(one.arguments).errors,
                StartsWith(std::string("lorimat: ") + one.english + "\n"));
    EXPECT_THAT(RunConsole(one.arguments, italian).errors,
                StartsWith(std::string("lorimat: ") + one.italian + "\n"));
  }
}

TEST(Usage, AClockThatIsNoDateIsRefused) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "");
  for (const char* clock :
       {"yesterday", "2024-02-30 10:00", "2024-13-01 10:00", "2024-01-01", "2024-01-01 24:00",
        "2024-01-01 10:60", "2024-01-01 10:00:60", "01/01/2024", "12/31/2024 10:00"}) {
    const ProgramRun run = RunConsole({"run", lines, "--clock", clock});
    EXPECT_EQ(run.exit_code, 2) << clock;
    EXPECT_THAT(run.errors, HasSubstr("YYYY-MM-DD HH:MM")) << clock;
    EXPECT_THAT(run.output, IsEmpty()) << clock;
  }
}

TEST(Usage, AClockIsTakenInEveryFormThatIsShown) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VEND REP=1, PRE=1.00\nCHIU\n");
  for (const char* clock : {"2024-03-15 10:30", "2024-03-15T10:30", "15/03/2024 10:30",
                            "15/03/2024T10:30:59", "2024-03-15 10:30:00", "150320241030"}) {
    const ProgramRun run = RunConsole({"run", lines, "--clock", clock});
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("             15/03/2024 10:30\n")) << clock;
  }
}

TEST(Usage, AnEmptyOptionIsNotTakenForOneLeftOut) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "");
  for (const char* option : {"--clock", "--language", "--paper", "--trace", "--library"}) {
    const ProgramRun run = RunConsole({"run", lines, option, ""});
    EXPECT_EQ(run.exit_code, 2) << option;
    EXPECT_THAT(run.errors, HasSubstr(option)) << option;
  }
}

TEST(Usage, AMissingLibraryIsNamed) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "");
  const ProgramRun run = RunConsole({"run", lines, "--library", folder.Path("none.so")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr(folder.Path("none.so")));
}

TEST(Usage, AFileThatIsNoLibraryIsRefusedWithItsCause) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "");
  const std::string wrong = folder.Write("wrong.so", "no library at all");
  const ProgramRun run = RunConsole({"run", lines}, {.environment = {{"LORIMAT_LIBRARY", wrong}}});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("cannot be loaded"));
  EXPECT_THAT(run.errors, HasSubstr(wrong));
}

TEST(Usage, WhyALibraryIsNotLoadedIsToldInItalianAsFarAsItIsKnown) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "");
  const std::string wrong = folder.Write("wrong.so", "no library at all");
  const ProgramSetting italian = {.environment = {{"LANG", "it_IT.UTF-8"}}};
  EXPECT_EQ(
      RunConsole({"run", lines, "--library", wrong}, italian).errors,
      "lorimat: la libreria non si può caricare: " + wrong + " non è una libreria condivisa\n");
  const std::string none = folder.Path("none.so");
  EXPECT_EQ(
      RunConsole({"run", lines, "--library", none}, italian).errors,
      "lorimat: la libreria non si può caricare: " + none + ": Il file o la cartella non esiste\n");
}

TEST(Usage, DatesHaveTheSameFormInTheHelpAndInErrors) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "");
  const ProgramSetting italian = {.environment = {{"LANG", "it_IT.UTF-8"}}};
  EXPECT_THAT(RunConsole({"run", "--help"}, italian).output, HasSubstr("AAAA-MM-GG HH:MM"));
  EXPECT_THAT(RunConsole({"run", lines, "--clock", "x"}, italian).errors,
              HasSubstr("AAAA-MM-GG HH:MM"));
  const std::string shop = folder.Path("shop.register");
  ASSERT_EQ(RunConsole({"run", lines, "--register", shop}).exit_code, 0);
  const ProgramRun journal = RunConsole({"journal", "--from", "x", "--register", shop}, italian);
  EXPECT_THAT(journal.errors, HasSubstr("AAAA-MM-GG HH:MM"));
  EXPECT_THAT(journal.errors, Not(HasSubstr("YYYY")));
}

TEST(Usage, ALibraryWithoutTheExportsIsRefused) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "");
  const ProgramRun run = RunConsole({"run", lines, "--library", "/lib/x86_64-linux-gnu/libm.so.6"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("it lacks TradInit"));
}

TEST(Usage, TheLibraryMayBeNamedByOptionOrEnvironment) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "; nothing to do\n");
  const std::string library = std::string(LORIMAT_LIB_FOLDER) + "/liblorimatrt.so";
  EXPECT_EQ(RunConsole({"run", lines, "--library", library}).exit_code, 0);
  EXPECT_EQ(RunConsole({"run", lines}, {.environment = {{"LORIMAT_LIBRARY", library}}}).exit_code,
            0);
}

TEST(Tree, TheProgramFindsItsFilesWhereverTheTreeStands) {
  namespace fs = std::filesystem;
  TestFolder folder;
  for (const char* part : {"bin", "lib", "share/lorimat"})
    fs::create_directories(folder.Path(part));
  const std::string program = folder.Path("bin/lorimat");
  fs::copy_file(std::string(LORIMAT_BIN_FOLDER) + "/lorimat", program);
  const std::string lines = folder.Write("lines.cmd", "VEND REP=1, PRE=1.00\nCHIU\n");

  const ProgramRun no_library = RunProgram(program, {"run", lines});
  EXPECT_EQ(no_library.exit_code, 2);
  EXPECT_THAT(no_library.errors, HasSubstr(folder.Path("lib/liblorimatrt.so")));
  EXPECT_THAT(no_library.errors, HasSubstr("--library"));

  fs::copy_file(std::string(LORIMAT_LIB_FOLDER) + "/liblorimatrt.so",
                folder.Path("lib/liblorimatrt.so"));
  const ProgramRun no_words = RunProgram(program, {"run", lines});
  EXPECT_EQ(no_words.exit_code, 2);
  EXPECT_THAT(no_words.errors, HasSubstr(folder.Path("share/lorimat/merkelin.ini")));

  fs::copy_file(SourceFile("language/merkelin.ini"), folder.Path("share/lorimat/merkelin.ini"));
  const ProgramRun whole = RunProgram(program, {"run", lines}, {.folder = "/"});
  EXPECT_EQ(whole.exit_code, 0) << whole.errors;
  EXPECT_THAT(whole.output, HasSubstr("1,00"));
}

TEST(Tree, TheHelpOfAnInstalledProgramNamesExamplesThatRun) {
  namespace fs = std::filesystem;
  TestFolder folder;
  const ProgramRun installed =
      RunProgram(LORIMAT_CMAKE, {"--install", std::string(LORIMAT_BUILD_FOLDER) + "/examples",
                                 "--prefix", folder.Path("tree")});
  ASSERT_EQ(installed.exit_code, 0) << installed.errors;
  const std::string examples = folder.Path("tree/share/lorimat/examples");
  for (const auto& entry : fs::directory_iterator(SourceFile("examples"))) {
    if (entry.path().extension() != ".cmd") continue;
    EXPECT_TRUE(fs::exists(fs::path(examples) / entry.path().filename())) << entry;
  }
  for (const char* part : {"tree/bin", "tree/lib"}) fs::create_directories(folder.Path(part));
  const std::string program = folder.Path("tree/bin/lorimat");
  fs::copy_file(std::string(LORIMAT_BIN_FOLDER) + "/lorimat", program);
  fs::copy_file(std::string(LORIMAT_LIB_FOLDER) + "/liblorimatrt.so",
                folder.Path("tree/lib/liblorimatrt.so"));
  fs::copy_file(SourceFile("language/merkelin.ini"),
                folder.Path("tree/share/lorimat/merkelin.ini"));
  const std::string line = "  lorimat run " + examples + "/receipt.cmd\n";
  EXPECT_THAT(RunProgram(program, {"--help"}).output, HasSubstr(line));
  EXPECT_THAT(RunProgram(program, {"run", "--help"}).output, HasSubstr(line));
  EXPECT_THAT(RunConsole({"run", "--help"}).output, HasSubstr("  lorimat run examples/receipt"));
  EXPECT_EQ(RunProgram(program, {"run", examples + "/receipt.cmd"}, {.folder = "/"}).exit_code, 0);
}

TEST(Streams, TheLibrarysOwnLinesStayOutOfOutputAndErrors) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VEND REP=1, PRE=1, ACCONTO\nCHIU\n");
  const ProgramRun run = RunConsole({"run", lines});
  for (const std::string& text : {run.output, run.errors}) {
    EXPECT_THAT(text, Not(HasSubstr("oad working...")));
    EXPECT_THAT(text, Not(HasSubstr("library destroy")));
    EXPECT_THAT(text, Not(HasSubstr("PrintRecRedeem")));
  }
}

TEST(Streams, TheTraceFileHoldsTheLibrarysLinesAndTheLinesItWasGiven) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "SUBT\n");
  const ProgramRun run = RunConsole({"run", lines, "--trace", folder.Path("trace.txt")});
  const std::string trace = folder.Read("trace.txt");
  EXPECT_THAT(trace, StartsWith("Load working...\n"));
  EXPECT_THAT(trace, HasSubstr("TradEcr Cmd<SUBT>\n"));
  EXPECT_THAT(trace, HasSubstr("Unload working...\n"));
  EXPECT_THAT(trace, HasSubstr("library destroy\n"));
  EXPECT_THAT(run.output, Not(HasSubstr("working...")));
}

TEST(Streams, TheTraceMayGoToStandardError) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "SUBT\n");
  const ProgramRun run = RunConsole({"run", lines, "--trace", "-"});
  EXPECT_THAT(run.errors, HasSubstr("Load working...\n"));
  EXPECT_THAT(run.errors, HasSubstr("TradEcr Cmd<SUBT>\n"));
  EXPECT_THAT(run.output, Not(HasSubstr("working...")));
}

TEST(Streams, ATraceThatCannotBeWrittenIsRefused) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "");
  const ProgramRun run = RunConsole({"run", lines, "--trace", folder.Path("none/trace.txt")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("none/trace.txt"));
  EXPECT_THAT(run.errors, HasSubstr("No such file"));
}

TEST(Streams, APaperThatCannotBeWrittenIsAnErrorAndNamesTheFile) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VEND REP=1, PRE=1\nCHIU\n");
  const ProgramRun missing = RunConsole({"run", lines, "--paper", folder.Path("none/paper.txt")});
  EXPECT_EQ(missing.exit_code, 2);
  EXPECT_THAT(missing.errors, HasSubstr("none/paper.txt"));
  const ProgramRun full = RunConsole({"run", lines, "--paper", "/dev/full"});
  EXPECT_EQ(full.exit_code, 2);
  EXPECT_THAT(full.errors, HasSubstr("/dev/full: cannot write the paper: No space left"));
}

TEST(Streams, AFullStandardOutputIsAnError) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VEND REP=1, PRE=1\nCHIU\n");
  const ProgramRun run = RunConsole({"run", lines}, {.output_file = "/dev/full"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("No space left"));
}

TEST(Streams, AClosedStandardOutputIsAnErrorAndNoOtherFileTakesItsPlace) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VEND REP=1, PRE=1\nCHIU\n");
  const ProgramRun run = RunConsole({"run", lines}, {.close_output = true});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("cannot write to standard output"));
  EXPECT_EQ(folder.Read("lines.cmd"), "VEND REP=1, PRE=1\nCHIU\n");
}

TEST(Streams, ThePaperNeverReplacesTheFileOfLines) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "SUBT\n");
  const ProgramRun run = RunConsole({"run", lines, "--paper", folder.Path("./lines.cmd")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("the paper would replace it"));
  EXPECT_EQ(folder.Read("lines.cmd"), "SUBT\n");
}

TEST(Usage, TheOppositeOfAnOptionIsNoSuggestion) {
  const ProgramRun run = RunConsole({"init", "x.register", "--no-training"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("no option is called '--no-training'\n"));
  EXPECT_THAT(RunConsole({"set", "x.register", "--no-trainin"}).errors,
              HasSubstr("did you mean --no-training?"));
}

TEST(Usage, AFileWhoseNameBeginsWithADashStandsBehindTwo) {
  const TestFolder folder;
  folder.Write("-x", "VEND REP=1, PRE=1.00\nCHIU\n");
  for (const std::vector<std::string>& how : {std::vector<std::string>{"run", "--", "-x"},
                                              {"run", "--batch", "--", "-x"},
                                              {"run", "./-x"}}) {
    const ProgramRun run = RunConsole(how, {.folder = folder.path()});
    EXPECT_EQ(run.exit_code, 0) << run.errors;
    EXPECT_THAT(run.output, HasSubstr("1,00"));
  }
}

TEST(Usage, WhatIsNoDefinitionFileIsRefusedAlikeByAll) {
  const TestFolder folder;
  folder.Write("lines.cmd", "SUBT\n");
  for (const auto& [file, cause] : std::vector<std::pair<std::string, std::string>>{
           {".", "definition file .: is no regular file\n"},
           {"/dev/null", "definition file /dev/null: is no regular file\n"},
           {"-",
            "definition file -: standard input is no definition file; a file of this name is "
            "./-\n"},
           {"none.ini",
            "definition file none.ini: cannot be opened: No such file or directory\n"}}) {
    for (const std::vector<std::string>& command : {std::vector<std::string>{"run", "lines.cmd"},
                                                    {"run", "lines.cmd", "--terse"},
                                                    {"shell"},
                                                    {"check", "lines.cmd"},
                                                    {"words"}}) {
      std::vector<std::string> arguments = command;
      arguments.insert(arguments.end(), {"--language", file});
      const ProgramRun run = RunConsole(arguments, {.folder = folder.path()});
      EXPECT_EQ(run.exit_code, 2) << command.front() << " " << file;
      EXPECT_EQ(run.errors, "lorimat: " + cause) << command.front();
    }
  }
}
