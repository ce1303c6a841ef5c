// Messages in Italian, for users whose environment asks for it; no such locale is installed.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "program_run.h"

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

namespace {

ProgramSetting italian() { return {.environment = {{"LANG", "it_IT.UTF-8"}}}; }

ProgramRun run_italian(const std::vector<std::string>& arguments) {
  return run_console(arguments, italian());
}

// The language that the environment gets a help text in.
bool answers_italian(const std::map<std::string, std::string>& environment) {
  const ProgramRun run = run_console({"words", "--help"}, {.environment = environment});
  EXPECT_EQ(run.exit_code, 0);
  const bool is_italian = run.output.find("Codici di uscita:") != std::string::npos;
  EXPECT_NE(is_italian, run.output.find("Exit codes:") != std::string::npos) << run.output;
  return is_italian;
}

}  // namespace

TEST(MessageLanguage, ComesFromTheFirstVariableThatIsSet) {
  EXPECT_FALSE(answers_italian({}));
  EXPECT_TRUE(answers_italian({{"LANG", "it_IT.UTF-8"}}));
  EXPECT_TRUE(answers_italian({{"LC_MESSAGES", "it_IT.UTF-8"}, {"LANG", "en_US.UTF-8"}}));
  EXPECT_TRUE(answers_italian({{"LC_ALL", "it_CH"}, {"LC_MESSAGES", "C"}, {"LANG", "C"}}));
  EXPECT_FALSE(answers_italian({{"LC_ALL", "C"}, {"LANG", "it_IT.UTF-8"}}));
  EXPECT_FALSE(answers_italian({{"LC_ALL", "en_GB.UTF-8"}, {"LC_MESSAGES", "it_IT.UTF-8"}}));
  EXPECT_FALSE(answers_italian({{"LC_MESSAGES", "C"}, {"LANG", "it_IT.UTF-8"}}));
}

TEST(MessageLanguage, AnEmptyVariableCountsAsNotSet) {
  EXPECT_TRUE(answers_italian({{"LC_ALL", ""}, {"LC_MESSAGES", ""}, {"LANG", "it"}}));
}

TEST(MessageLanguage, OnlyItalianIsItalian) {
  EXPECT_TRUE(answers_italian({{"LANG", "it@euro"}}));
  EXPECT_TRUE(answers_italian({{"LANG", "it.UTF-8"}}));
  EXPECT_FALSE(answers_italian({{"LANG", "ita"}}));
  EXPECT_FALSE(answers_italian({{"LANG", "iu_CA"}}));
  EXPECT_FALSE(answers_italian({{"LANG", "i"}}));
}

TEST(MessageLanguage, RunTellsFailingLinesInItalianAndKeepsTheLibrarysAnswer) {
  TestFolder folder;
  const std::string lines = folder.write("lines.cmd", std::string("VNED\n\0SUBT\n", 11));
  const ProgramRun run = run_italian({"run", "--terse", lines});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.errors,
            lines + ":1: codice 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND\n" +
                "    VNED\n" + lines +
                ":2: non eseguita: c'è un byte NUL nella colonna 1, e la libreria leggerebbe la "
                "riga solo fin lì\n    \\x00SUBT\nlorimat: righe fallite: 2 su 2\n");
}

TEST(MessageLanguage, RunNotesAnOpenReceiptInItalian) {
  TestFolder folder;
  const std::string lines = folder.write("lines.cmd", "VEND REP=1, PRE=1\n");
  const ProgramRun run = run_italian({"run", lines});
  EXPECT_THAT(run.errors, HasSubstr("lorimat: nota: " + lines +
                                    " finisce con un documento aperto: scontrino, con 1 articolo e "
                                    "un subtotale di 1,00; va perso con il registratore in "
                                    "memoria\n"));
}

TEST(MessageLanguage, RunNamesTheCauseOfTheSystemInItalian) {
  TestFolder folder;
  const std::string lines = folder.path("none.cmd");
  const ProgramRun run = run_italian({"run", lines});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors,
            "lorimat: " + lines + ": non si può aprire: Il file o la cartella non esiste\n");
}

TEST(MessageLanguage, RunRefusesABatchInItalian) {
  TestFolder folder;
  const ProgramRun run = run_italian({"run", "--batch", folder.write("Lines.cmd", "SUBT\n")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, AllOf(HasSubstr("--batch non può eseguire un file con maiuscole"),
                                HasSubstr("cercherebbe lines.cmd;")));
}

TEST(MessageLanguage, CheckFindsInItalian) {
  TestFolder folder;
  const std::string lines = folder.write("lines.cmd", "VNED REP=1\n");
  const ProgramRun run = run_italian({"check", lines});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.output, lines +
                            ":1:1: errore: nessun comando si chiama 'VNED'; forse VEND? (codice "
                            "257)\n    VNED REP=1\n    ^\n" +
                            lines + ": file batch, 1 comando: 1 errore, 0 avvisi\n");
}

TEST(MessageLanguage, CheckFindsFaultsOfADefinitionFileInItalian) {
  TestFolder folder;
  const std::string words = folder.write("words.ini", "[OPCOD]\n10=SELL\n151=LATE\n");
  const ProgramRun run = run_italian({"check", words});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output,
              HasSubstr(words + ":3: errore: la voce 151 è oltre la 150, l'ultima dei comandi: la "
                                "libreria smette qui di leggere e risponde 2\n"));
}

TEST(MessageLanguage, JsonStaysEnglish) {
  TestFolder folder;
  const std::string lines = folder.write("lines.cmd", "VNED REP=1\n");
  const std::string words = folder.write("words.ini", "[OPCOD]\n10=SELL\n151=LATE\n[10]\n1=A\n");
  const std::vector<std::vector<std::string>> commands = {
      {"check", "--json", lines, words},
      {"explain", "--json", "265", "1643", "-1", "99999"},
      {"words", "--json"},
  };
  for (const auto& command : commands) {
    const ProgramRun english = run_console(command);
    EXPECT_THAT(english.output, Not(IsEmpty()));
    EXPECT_EQ(run_italian(command).output, english.output) << command[0];
  }
  const ProgramSetting from_input = {.input = "VNED\n", .environment = {{"LANG", "it"}}};
  EXPECT_THAT(run_console({"check", "--json", "-"}, from_input).output,
              HasSubstr("\"file\": \"standard input\""));
}

TEST(MessageLanguage, AFailureBesideJsonIsItalian) {
  const ProgramRun run = run_italian({"check", "--json", "/nonexistent.cmd"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("/nonexistent.cmd: non si può aprire: "));
  EXPECT_EQ(run.output, "{\n  \"files\": []\n}\n");
}

TEST(MessageLanguage, ExplainExplainsInItalianAroundTheLibrarysText) {
  const ProgramRun run = run_italian({"explain", "265"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_EQ(run.output,
            "265: classe 1, indice 9\n"
            "  Testo   \"ERROR 1/9 : SINTAX ERROR 9 : ILLEGAL VALUE\"\n"
            "  Classe  1: errori di sintassi e di comando\n"
            "  Origine dato dalla libreria\n"
            "          Un campo ha un valore che il comando non accetta, o due campi si\n"
            "          escludono a vicenda. Anche un valore di più di 2048 caratteri.\n");
}

TEST(MessageLanguage, ExplainRefusesATextInItalian) {
  const ProgramRun run = run_italian({"explain", "abc"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, StartsWith("lorimat: abc: non è un codice di risultato; "));
}

TEST(MessageLanguage, WordsHasItalianHeadingsAndRemarks) {
  const ProgramRun run = run_italian({"words"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, StartsWith("  N.  Comando     Abbrev.     Campo  Nome        Abbrev.\n"));
  EXPECT_THAT(run.output, HasSubstr("QUANT       Q           come QTA\n"));
  EXPECT_THAT(run_italian({"words", "--markdown"}).output,
              StartsWith("| N. | Comando | Abbrev. | Campo | Nome | Abbrev. | Nota |\n"));
}

TEST(MessageLanguage, WordsNamesNoCommandInItalian) {
  const ProgramRun run = run_italian({"words", "--command", "VEMD"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.errors, "lorimat: VEMD: nessun comando ha questo nome; forse VEND?\n");
}

TEST(MessageLanguage, HelpHasItalianHeadings) {
  const ProgramRun run = run_italian({"run", "--help"});
  EXPECT_EQ(run.exit_code, 0);
  for (const char* text : {"Uso: lorimat run [OPZIONI] FILE\n", "\nArgomenti:\n", "\nOpzioni:\n",
                           "OBBLIGATORIO", "Esclude: --batch", "Ambiente:LORIMAT_LIBRARY",
                           "\nEsempi:\n", "\nCodici di uscita:\n", "Mostra questo aiuto ed esce"}) {
    EXPECT_THAT(run.output, HasSubstr(text));
  }
  for (const char* text : {"Usage", "Options", "Positionals", "REQUIRED", "Excludes", "Examples"}) {
    EXPECT_THAT(run.output, Not(HasSubstr(text)));
  }
}

TEST(MessageLanguage, WrongUseIsToldInItalian) {
  const std::string end = "\nCon --help se ne sa di più.\n";
  EXPECT_EQ(run_italian({}).errors, "lorimat: Manca il sottocomando" + end);
  EXPECT_EQ(run_italian({"run"}).errors, "lorimat: FILE è obbligatorio" + end);
  EXPECT_EQ(run_italian({"run", "x", "--papper", "y"}).errors,
            "lorimat: nessuna opzione si chiama '--papper'; forse --paper?" + end);
  EXPECT_EQ(run_italian({"run", "x", "--png", ""}).errors,
            "lorimat: --png: non può essere vuoto" + end);
  EXPECT_EQ(run_italian({"run", "x", "--png"}).errors,
            "lorimat: --png: valori mancanti: 1 di tipo FILE" + end);
  EXPECT_EQ(run_italian({"words", "--json", "--markdown"}).errors,
            "lorimat: --markdown esclude --json" + end);
}

// --- The commands on a register.

namespace {

class RegisterInItalian : public testing::Test {
 protected:
  RegisterInItalian() {
    const std::string lines = folder_.write("lines.cmd", "VEND REP=1, PRE=1\nCHIU\n");
    const ProgramRun made = run_on({"run", lines, "--clock", "2024-03-15 10:30"});
    EXPECT_EQ(made.exit_code, 0) << made.errors;
    EXPECT_EQ(made.errors, "lorimat: nota: " + file_ + ": creato un nuovo registratore\n");
  }

  ProgramRun run_on(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--register", file_});
    return run_italian(arguments);
  }

  TestFolder folder_;
  const std::string file_ = folder_.path("shop.register");
};

}  // namespace

TEST_F(RegisterInItalian, StatusAndItsJson) {
  const ProgramRun run = run_on({"status"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, AllOf(HasSubstr("\nGran totale        1,00\n"),
                                HasSubstr("\nGiornata           aperta\n")));
  EXPECT_EQ(run_on({"status", "--json"}).output,
            run_console({"status", "--json", "--register", file_}).output);
}

TEST_F(RegisterInItalian, JournalAndItsCheck) {
  const ProgramRun list = run_on({"journal"});
  EXPECT_EQ(list.exit_code, 0);
  EXPECT_THAT(list.output, AllOf(HasSubstr("Prime parole"), HasSubstr("scontrino")));
  EXPECT_EQ(run_on({"journal", "verify"}).output,
            file_ + ": il giornale è integro: 1 voce, 1 documento\n");
  EXPECT_EQ(run_on({"journal", "show", "99"}).errors,
            "lorimat: il giornale non ha la voce 99; ne ha 1\n");
  EXPECT_EQ(run_on({"journal", "--json"}).output,
            run_console({"journal", "--json", "--register", file_}).output);
}

TEST_F(RegisterInItalian, FaultsAndTheirNames) {
  EXPECT_THAT(run_italian({"fault"}).output, HasSubstr("la carta è finita\n"));
  EXPECT_THAT(run_on({"fault", "paper-end"}).output,
              HasSubstr("paper-end (203), alla prossima operazione\n"));
  EXPECT_EQ(run_on({"fault", "xyz"}).errors,
            "lorimat: xyz: nessun guasto ha questo nome; \"lorimat fault\" li elenca\n");
}

TEST_F(RegisterInItalian, PaperThatCannotBeWritten) {
  const std::string nowhere = folder_.path("none/paper.txt");
  const ProgramRun run = run_on({"paper", "--paper", nowhere});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors, "lorimat: " + nowhere +
                            ": non si riesce a scrivere la stampa: Il file o la cartella non "
                            "esiste\n");
}

TEST_F(RegisterInItalian, BackupAndRestore) {
  const std::string tables = folder_.path("tables");
  const ProgramRun backup = run_on({"backup", tables});
  EXPECT_EQ(backup.exit_code, 0) << backup.errors;
  EXPECT_THAT(backup.output, HasSubstr("\n" + tables + ": copia di 99LRM0000001VR, "));
  EXPECT_EQ(run_on({"restore", tables}).output, file_ + ": nessuna riga è diversa dalla copia\n");
}

TEST_F(RegisterInItalian, WhatTheRegisterSaysOfItsFile) {
  const std::string wrong = folder_.write("wrong.register", std::string(4096, 'x'));
  const ProgramRun run = run_italian({"status", "--register", wrong});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors, "lorimat: " + wrong +
                            ": non è un registratore di questo programma: non è una base di dati "
                            "SQLite\n");
  EXPECT_EQ(
      run_console({"status", "--register", wrong}).errors,
      "lorimat: " + wrong + ": is not a register of this program: it is no SQLite database\n");
}

TEST_F(RegisterInItalian, WhatTheSystemSaysOfItsFile) {
  const std::string nowhere = folder_.path("none: here/shop.register");
  EXPECT_EQ(run_italian({"run", folder_.write("more.cmd", "SUBT\n"), "--register", nowhere}).errors,
            "lorimat: " + nowhere + ": non si può aprire: Il file o la cartella non esiste\n");
  EXPECT_EQ(run_italian({"status", "--register", folder_.path()}).errors,
            "lorimat: " + folder_.path() + ": è una cartella, non un registratore\n");
}

TEST_F(RegisterInItalian, ABackupWhoseReportCannotBeWritten) {
  ProgramSetting full = italian();
  full.output_file = "/dev/full";
  const std::string tables = folder_.path("tables");
  EXPECT_EQ(run_console({"backup", tables, "--register", file_}, full).errors,
            "lorimat: " + tables +
                ": la copia c'è ed è intera, ma manca il rapporto: non si riesce a scrivere sullo "
                "standard output: Spazio esaurito sul dispositivo\n");
}

TEST_F(RegisterInItalian, NoRegisterNamed) {
  EXPECT_THAT(run_italian({"status"}).errors,
              StartsWith("lorimat: quale registratore? Si indichi il suo file"));
}

TEST(MessageLanguage, TheShellAsAPipeIsItalian) {
  const ProgramRun run =
      run_console({"shell"}, {.input = "VNED\n.xyz\n", .environment = {{"LANG", "it"}}});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors,
              AllOf(HasSubstr("standard input:1: codice 257: ERROR 1/1 : SINTAX ERROR 1 : "),
                    HasSubstr("lorimat: righe fallite: 2 su 2\n")));
}
