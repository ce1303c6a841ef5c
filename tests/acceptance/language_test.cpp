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

ProgramSetting Italian() { return {.environment = {{"LANG", "it_IT.UTF-8"}}}; }

ProgramRun RunItalian(const std::vector<std::string>& arguments) {
  return RunConsole(arguments, Italian());
}

// The language that the environment gets a help text in.
bool AnswersItalian(const std::map<std::string, std::string>& environment) {
  const ProgramRun run = RunConsole({"words", "--help"}, {.environment = environment});
  EXPECT_EQ(run.exit_code, 0);
  const bool is_italian = run.output.find("Codici di uscita:") != std::string::npos;
  EXPECT_NE(is_italian, run.output.find("Exit codes:") != std::string::npos) << run.output;
  return is_italian;
}

}  // namespace

TEST(MessageLanguage, ComesFromTheFirstVariableThatIsSet) {
  EXPECT_FALSE(AnswersItalian({}));
  EXPECT_TRUE(AnswersItalian({{"LANG", "it_IT.UTF-8"}}));
  EXPECT_TRUE(AnswersItalian({{"LC_MESSAGES", "it_IT.UTF-8"}, {"LANG", "en_US.UTF-8"}}));
  EXPECT_TRUE(AnswersItalian({{"LC_ALL", "it_CH"}, {"LC_MESSAGES", "C"}, {"LANG", "C"}}));
  EXPECT_FALSE(AnswersItalian({{"LC_ALL", "C"}, {"LANG", "it_IT.UTF-8"}}));
  EXPECT_FALSE(AnswersItalian({{"LC_ALL", "en_GB.UTF-8"}, {"LC_MESSAGES", "it_IT.UTF-8"}}));
  EXPECT_FALSE(AnswersItalian({{"LC_MESSAGES", "C"}, {"LANG", "it_IT.UTF-8"}}));
}

TEST(MessageLanguage, AnEmptyVariableCountsAsNotSet) {
  EXPECT_TRUE(AnswersItalian({{"LC_ALL", ""}, {"LC_MESSAGES", ""}, {"LANG", "it"}}));
}

TEST(MessageLanguage, OnlyItalianIsItalian) {
  EXPECT_TRUE(AnswersItalian({{"LANG", "it@euro"}}));
  EXPECT_TRUE(AnswersItalian({{"LANG", "it.UTF-8"}}));
  EXPECT_FALSE(AnswersItalian({{"LANG", "ita"}}));
  EXPECT_FALSE(AnswersItalian({{"LANG", "iu_CA"}}));
  EXPECT_FALSE(AnswersItalian({{"LANG", "i"}}));
}

TEST(MessageLanguage, RunTellsFailingLinesInItalianAndKeepsTheLibrarysAnswer) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", std::string("VNED\n\0SUBT\n", 11));
  const ProgramRun run = RunItalian({"run", "--terse", lines});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.errors,
            lines + ":1: codice 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND\n" +
                "    VNED\n" + lines +
                ":2: non eseguita: c'è un byte NUL nella colonna 1, e la libreria leggerebbe la "
                "riga solo fin lì\n    \\x00SUBT\nlorimat: righe fallite: 2 su 2\n");
}

TEST(MessageLanguage, RunNotesAnOpenReceiptInItalian) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VEND REP=1, PRE=1\n");
  const ProgramRun run = RunItalian({"run", lines});
  EXPECT_THAT(run.errors, HasSubstr("lorimat: nota: " + lines +
                                    ": alla fine c'è un documento aperto: scontrino, con 1 "
                                    "articolo e un subtotale di 1,00; va perso con il "
                                    "registratore in memoria\n"));
}

TEST(MessageLanguage, RunNotesADocumentThatIsNoReceiptInItalian) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "NOFIS INIZIO\n");
  EXPECT_EQ(RunItalian({"run", lines}).errors,
            "lorimat: nota: " + lines +
                ": alla fine c'è un documento aperto (NON FISCALE); va perso con il registratore "
                "in memoria\n");
}

TEST(MessageLanguage, RunNamesTheCauseOfTheSystemInItalian) {
  TestFolder folder;
  const std::string lines = folder.Path("none.cmd");
  const ProgramRun run = RunItalian({"run", lines});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors,
            "lorimat: " + lines + ": non si può aprire: Il file o la cartella non esiste\n");
}

TEST(MessageLanguage, RunRefusesABatchInItalian) {
  TestFolder folder;
  const ProgramRun run = RunItalian({"run", "--batch", folder.Write("Lines.cmd", "SUBT\n")});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, AllOf(HasSubstr("--batch non può eseguire un file con maiuscole"),
                                HasSubstr("cercherebbe lines.cmd;")));
}

TEST(MessageLanguage, CheckFindsInItalian) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VNED REP=1\n");
  const ProgramRun run = RunItalian({"check", lines});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.output, lines +
                            ":1:1: errore: nessun comando si chiama 'VNED'; forse VEND? (codice "
                            "257)\n    VNED REP=1\n    ^\n" +
                            lines + ": file batch, 1 comando: 1 errore, 0 avvisi\n");
}

TEST(MessageLanguage, CheckFindsFaultsOfADefinitionFileInItalian) {
  TestFolder folder;
  const std::string words = folder.Write("words.ini", "[OPCOD]\n10=SELL\n151=LATE\n");
  const ProgramRun run = RunItalian({"check", words});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.output,
              HasSubstr(words + ":3: errore: la voce 151 è oltre la 150, l'ultima dei comandi: la "
                                "libreria smette qui di leggere e risponde 2\n"));
}

TEST(MessageLanguage, JsonStaysEnglish) {
  TestFolder folder;
  const std::string lines = folder.Write("lines.cmd", "VNED REP=1\n");
  const std::string words = folder.Write("words.ini", "[OPCOD]\n10=SELL\n151=LATE\n[10]\n1=A\n");
  const std::vector<std::vector<std::string>> commands = {
      {"check", "--json", lines, words},
      {"explain", "--json", "265", "1643", "-1", "99999"},
      {"words", "--json"},
  };
  for (const auto& command : commands) {
    const ProgramRun english = RunConsole(command);
    EXPECT_THAT(english.output, Not(IsEmpty()));
    EXPECT_EQ(RunItalian(command).output, english.output) << command[0];
  }
  const ProgramSetting from_input = {.input = "VNED\n", .environment = {{"LANG", "it"}}};
  EXPECT_THAT(RunConsole({"check", "--json", "-"}, from_input).output,
              HasSubstr("\"file\": \"standard input\""));
}

TEST(MessageLanguage, AFailureBesideJsonIsItalian) {
  const ProgramRun run = RunItalian({"check", "--json", "/nonexistent.cmd"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, HasSubstr("/nonexistent.cmd: non si può aprire: "));
  EXPECT_EQ(run.output, "{\n  \"files\": []\n}\n");
}

TEST(MessageLanguage, ExplainExplainsInItalianAroundTheLibrarysText) {
  const ProgramRun run = RunItalian({"explain", "265"});
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
  const ProgramRun run = RunItalian({"explain", "abc"});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_THAT(run.errors, StartsWith("lorimat: abc: non è un codice di risultato; "));
}

TEST(MessageLanguage, WordsHasItalianHeadingsAndRemarks) {
  const ProgramRun run = RunItalian({"words"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, StartsWith("  N.  Comando     Abbrev.     Campo  Nome        Abbrev.\n"));
  EXPECT_THAT(run.output, HasSubstr("QUANT       Q           come QTA\n"));
  EXPECT_THAT(RunItalian({"words", "--markdown"}).output,
              StartsWith("| N. | Comando | Abbrev. | Campo | Nome | Abbrev. | Nota |\n"));
}

TEST(MessageLanguage, WordsNamesNoCommandInItalian) {
  const ProgramRun run = RunItalian({"words", "--command", "VEMD"});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_EQ(run.errors, "lorimat: VEMD: nessun comando ha questo nome; forse VEND?\n");
}

TEST(MessageLanguage, HelpHasItalianHeadings) {
  const ProgramRun run = RunItalian({"run", "--help"});
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

TEST(MessageLanguage, HelpNamesValuesAndArgumentsInItalian) {
  const struct {
    std::vector<std::string> command;
    const char* usage;
    const char* option;
  } rows[] = {
      {{"set"}, "Uso: lorimat set [OPZIONI] FILE\n", " --vat VOCE=ALIQUOTA"},
      {{"init"}, "\n", " --departments NUMERO=NOME[:IVA[:PREZZO]]"},
      {{"init"}, "\n", " --from CARTELLA"},
      {{"backup"}, "Uso: lorimat backup [OPZIONI] CARTELLA\n", "\n  CARTELLA "},
      {{"copy"}, "Uso: lorimat copy [OPZIONI] DA A\n", "\n  DA "},
      {{"door", "backup"}, "Uso: lorimat door backup [OPZIONI] REGISTRO FILE\n", "\n  REGISTRO "},
      {{"fault"}, "Uso: lorimat fault [OPZIONI] [GUASTO] [CODICE]\n", "\n  CODICE "},
      {{"journal", "show"}, "Uso: lorimat journal show [OPZIONI] POSTO\n", "\n  POSTO "},
  };
  for (const auto& row : rows) {
    std::vector<std::string> arguments = row.command;
    arguments.push_back("--help");
    const std::string help = RunItalian(arguments).output;
    EXPECT_THAT(help, HasSubstr(row.usage));
    EXPECT_THAT(help, HasSubstr(row.option));
  }
}

TEST(MessageLanguage, WrongUseIsToldInItalian) {
  const std::string end = "\nPer saperne di più: --help.\n";
  EXPECT_EQ(RunItalian({}).errors, "lorimat: Manca il sottocomando" + end);
  EXPECT_EQ(RunItalian({"run"}).errors, "lorimat: Manca FILE" + end);
  EXPECT_EQ(RunItalian({"backup"}).errors, "lorimat: Manca CARTELLA" + end);
  EXPECT_EQ(RunItalian({"run", "x", "--papper", "y"}).errors,
            "lorimat: nessuna opzione si chiama '--papper'; forse --paper?" + end);
  EXPECT_EQ(RunItalian({"run", "x", "--png", ""}).errors,
            "lorimat: --png: non può essere vuoto" + end);
  EXPECT_EQ(RunItalian({"run", "x", "--png"}).errors,
            "lorimat: --png: valori mancanti: 1 di tipo FILE" + end);
  EXPECT_EQ(RunItalian({"words", "--json", "--markdown"}).errors,
            "lorimat: --markdown esclude --json" + end);
}

// --- The commands on a register.

namespace {

class RegisterInItalian : public testing::Test {
 protected:
  RegisterInItalian() {
    const std::string lines = folder_.Write("lines.cmd", "VEND REP=1, PRE=1\nCHIU\n");
    const ProgramRun made = RunOn({"run", lines, "--clock", "2024-03-15 10:30"});
    EXPECT_EQ(made.exit_code, 0) << made.errors;
    EXPECT_EQ(made.errors, "lorimat: nota: " + file_ + ": creato un nuovo registratore\n");
  }

  ProgramRun RunOn(std::vector<std::string> arguments) const {
    arguments.insert(arguments.end(), {"--register", file_});
    return RunItalian(arguments);
  }

  TestFolder folder_;
  const std::string file_ = folder_.Path("shop.register");
};

}  // namespace

TEST_F(RegisterInItalian, StatusAndItsJson) {
  const ProgramRun run = RunOn({"status"});
  EXPECT_EQ(run.exit_code, 0);
  EXPECT_THAT(run.output, AllOf(HasSubstr("\nGran totale        1,00\n"),
                                HasSubstr("\nGiornata           aperta\n")));
  EXPECT_EQ(RunOn({"status", "--json"}).output,
            RunConsole({"status", "--json", "--register", file_}).output);
}

// An invoice is feminine where a receipt is not.
TEST_F(RegisterInItalian, AnInvoiceThatWasCutOff) {
  const std::string lines = folder_.Write("more.cmd", "FATTURA TIPO=2\nVEND REP=1, PRE=5\n");
  const std::string clock = "2024-03-15 10:30";
  EXPECT_EQ(RunOn({"run", lines, "--clock", clock}).errors,
            "lorimat: nota: " + file_ +
                " conserva una fattura del 15/03/2024 10:30, 1 riga, subtotale 5,00, senza "
                "pagamento: al prossimo avvio si annulla\n");
  EXPECT_EQ(RunOn({"run", folder_.Write("none.cmd", ""), "--clock", clock}).errors,
            "lorimat: nota: " + file_ +
                ": una fattura del 15/03/2024 10:30, 1 riga, subtotale 5,00: documento interrotto, "
                "non pagato e ora annullato\n");
}

TEST_F(RegisterInItalian, JournalAndItsCheck) {
  const ProgramRun list = RunOn({"journal"});
  EXPECT_EQ(list.exit_code, 0);
  EXPECT_THAT(list.output, AllOf(HasSubstr("Prime parole"), HasSubstr("scontrino")));
  EXPECT_EQ(RunOn({"journal", "verify"}).output,
            file_ + ": il giornale è integro: 1 voce, 1 documento\n");
  EXPECT_EQ(RunOn({"journal", "show", "99"}).errors,
            "lorimat: il giornale non ha la voce 99; ne ha 1\n");
  EXPECT_EQ(RunOn({"journal", "--json"}).output,
            RunConsole({"journal", "--json", "--register", file_}).output);
}

TEST_F(RegisterInItalian, FaultsAndTheirNames) {
  EXPECT_THAT(RunItalian({"fault"}).output, HasSubstr("la carta è finita\n"));
  EXPECT_THAT(RunOn({"fault", "paper-end"}).output,
              HasSubstr("paper-end (203), alla prossima operazione\n"));
  EXPECT_EQ(RunOn({"fault", "xyz"}).errors,
            "lorimat: xyz: nessun guasto ha questo nome; \"lorimat fault\" li elenca\n");
}

TEST_F(RegisterInItalian, PaperThatCannotBeWritten) {
  const std::string nowhere = folder_.Path("none/paper.txt");
  const ProgramRun run = RunOn({"paper", "--paper", nowhere});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors, "lorimat: " + nowhere +
                            ": non si riesce a scrivere la stampa: Il file o la cartella non "
                            "esiste\n");
}

TEST_F(RegisterInItalian, BackupAndRestore) {
  const std::string tables = folder_.Path("tables");
  const ProgramRun backup = RunOn({"backup", tables});
  EXPECT_EQ(backup.exit_code, 0) << backup.errors;
  EXPECT_THAT(backup.output, HasSubstr("\n" + tables + ": backup di 99LRM0000001VR, "));
  EXPECT_EQ(RunOn({"restore", tables}).output, file_ + ": nessuna riga è diversa dal backup\n");
}

TEST_F(RegisterInItalian, WhatTheRegisterSaysOfItsFile) {
  const std::string wrong = folder_.Write("wrong.register", std::string(4096, 'x'));
  const ProgramRun run = RunItalian({"status", "--register", wrong});
  EXPECT_EQ(run.exit_code, 2);
  EXPECT_EQ(run.errors, "lorimat: " + wrong +
                            ": non è un registratore di questo programma: non è una base di dati "
                            "SQLite\n");
  EXPECT_EQ(
      RunConsole({"status", "--register", wrong}).errors,
      "lorimat: " + wrong + ": is not a register of this program: it is no SQLite database\n");
}

TEST_F(RegisterInItalian, WhatTheSystemSaysOfItsFile) {
  const std::string nowhere = folder_.Path("none: here/shop.register");
  EXPECT_EQ(RunItalian({"run", folder_.Write("more.cmd", "SUBT\n"), "--register", nowhere}).errors,
            "lorimat: " + nowhere + ": non si può aprire: Il file o la cartella non esiste\n");
  EXPECT_EQ(RunItalian({"status", "--register", folder_.path()}).errors,
            "lorimat: " + folder_.path() + ": è una cartella, non un registratore\n");
}

TEST_F(RegisterInItalian, ABackupWhoseReportCannotBeWritten) {
  ProgramSetting full = Italian();
  full.output_file = "/dev/full";
  const std::string tables = folder_.Path("tables");
  EXPECT_EQ(
      RunConsole({"backup", tables, "--register", file_}, full).errors,
      "lorimat: " + tables +
          ": il backup c'è ed è completo, ma manca il resoconto: non si riesce a scrivere sullo "
          "standard output: Spazio esaurito sul dispositivo\n");
}

TEST_F(RegisterInItalian, NoRegisterNamed) {
  EXPECT_THAT(RunItalian({"status"}).errors,
              StartsWith("lorimat: quale registratore? Si indichi il suo file"));
}

TEST(MessageLanguage, TheShellAsAPipeIsItalian) {
  const ProgramRun run =
      RunConsole({"shell"}, {.input = "VNED\n.xyz\n", .environment = {{"LANG", "it"}}});
  EXPECT_EQ(run.exit_code, 1);
  EXPECT_THAT(run.errors,
              AllOf(HasSubstr("standard input:1: codice 257: ERROR 1/1 : SINTAX ERROR 1 : "),
                    HasSubstr("lorimat: righe fallite: 2 su 2\n")));
}
