#include <array>

#include "console/message/italian.h"

namespace lorimat::console {

// The help of the command line, and what is wrong with one.
std::span<const ItalianText> ItalianHelpTexts() {
  static constexpr auto kTexts = std::to_array<ItalianText>({
      {"A subcommand is required", "Manca il sottocomando"},
      {"no subcommand is called '{}'", "nessun sottocomando si chiama '{}'"},
      {"The following argument was not expected: {}", "Argomento non previsto: {}"},
      {"no option is called '{}'", "nessuna opzione si chiama '{}'"},
      {"the option {} stands behind the subcommand: lorimat {} {} ...",
       "l'opzione {} va dopo il sottocomando: lorimat {} {} ..."},
      {"the option {} stands behind a subcommand, and none was given",
       "l'opzione {} va dopo un sottocomando, che manca"},
      {"{} was given a disallowed flag override", "{} non prende un valore"},
      {"{}: too many inputs for a flag", "{}: troppi valori per un'opzione senza valore"},
      {"{}: Should be true/false or a number", "{}: ci vuole true/false o un numero"},
      {"{}: At least {} required but received {}", "{}: ce ne vogliono almeno {} e sono {}"},
      {"{}: At Most {} required but received {}", "{}: ce ne vogliono al massimo {} e sono {}"},
      {"{}: {} required {} missing", "{}: valori mancanti: {} di tipo {}"},
      {"Expected exactly {} arguments to {}, got {}",
       "Ci vogliono esattamente {} valori per {}, sono {}"},
      {"Expected at least {} arguments to {}, got {}",
       "Ci vogliono almeno {} valori per {}, sono {}"},
      {"Could not convert: {} = {}", "Valore non valido: {} = {}"},
      {"{}: Value {} not in range {} to {}", "{}: il valore {} non è tra {} e {}"},
      {"{}: Number less or equal to 0: {}", "{}: ci vuole un numero maggiore di 0, non {}"},
      {"{}: Number less than 0: {}", "{}: ci vuole un numero non negativo, non {}"},
      {"{}: {} not in {}", "{}: {} non è tra {}"},
      {"{} is required", "{} è obbligatorio"},
      {"{} excludes {}", "{} esclude {}"},
      {"{} requires {}", "{} richiede {}"},
      {"Run with --help for more information.\n", "Con --help se ne sa di più.\n"},
      {"must not be empty", "non può essere vuoto"},
      {"Run lines", "Eseguire righe"},
      {"Look into lines, words and codes", "Esaminare righe, parole e codici"},
      {"Look at a register", "Guardare un registratore"},
      {"Look after a register", "Curare un registratore"},
      {"Look up the program", "Informarsi sul programma"},
      {"Show the help of the program or of a command",
       "Mostra l'aiuto del programma o di un comando"},
      {"A command, such as run or journal show", "Un comando, come run o journal show"},
      {"Show the version", "Mostra la versione"},
      {"Options", "Opzioni"},
      {"Usage", "Uso"},
      {"OPTIONS", "OPZIONI"},
      {"SUBCOMMAND", "SOTTOCOMANDO"},
      {"Positionals", "Argomenti"},
      {"REQUIRED", "OBBLIGATORIO"},
      {"Env", "Ambiente"},
      {"Needs", "Richiede"},
      {"Excludes", "Esclude"},
      {"TEXT", "TESTO"},
      {"INT", "INTERO"},
      {"UINT", "INTERO"},
      {"NAME", "NOME"},
      {"KIND", "TIPO"},
      {"OPERATION", "OPERAZIONE"},
      {"N|DATE", "N|DATA"},
      {"\"YYYY-MM-DD HH:MM\"", "\"AAAA-MM-GG HH:MM\""},
      {"Subcommands", "Sottocomandi"},
      {"Runs, checks and explains lines of the cash register command language.",
       "Esegue, controlla e spiega righe del linguaggio di comandi dei registratori di cassa."},
      {"Print this help message and exit", "Mostra questo aiuto ed esce"},
      {"Print the version and exit", "Mostra la versione ed esce"},
      {"Run a file of command lines on a virtual register and print the paper",
       "Esegue un file di righe di comando su un registratore virtuale e ne mostra la stampa"},
      {"Lines to run, one command each; - is standard input",
       "Righe da eseguire, un comando per riga; - è lo standard input"},
      {"Definition file with the words of the language (default: the merkelin.ini beside the "
       "program)",
       "File di definizione con le parole del linguaggio (se manca: il merkelin.ini accanto al "
       "programma)"},
      {"Write the paper to FILE (default: standard output)",
       "Scrive la stampa su FILE (se manca: standard output)"},
      {"Write a picture of the paper to FILE", "Scrive un'immagine della stampa su FILE"},
      {"Write the paper to FILE as a PDF, a page for each document",
       "Scrive la stampa su FILE in PDF, una pagina per documento"},
      {"Run the file as one \"@\" batch; its name must not have capital letters, which the library "
       "would lower-case",
       "Esegue il file come un unico batch \"@\"; il nome non deve avere maiuscole, che la "
       "libreria cambierebbe in minuscole"},
      {"End the run at the first failing line", "Si ferma alla prima riga che fallisce"},
      {"Set the register's clock", "Imposta l'orologio del registratore"},
      {"Write the library's own lines and the lines it was given to FILE; - is standard error "
       "(default: they are discarded)",
       "Scrive su FILE le righe proprie della libreria e quelle che le vengono date; - è lo "
       "standard error (se manca: vanno perse)"},
      {"Show the files in use and the answer of every line",
       "Mostra i file in uso e la risposta di ogni riga"},
      {"The shared library (default: liblorimatrt.so beside the program)",
       "La libreria condivisa (se manca: liblorimatrt.so accanto al programma)"},
      {"Tell what a result code is and what causes it",
       "Dice che cos'è un codice di risultato e da che cosa dipende"},
      {"Result codes: 265, 1/9 as an answer shows it, or the text of an answer",
       "Codici di risultato: 265, 1/9 come lo mostra una risposta, o il testo di una risposta"},
      {"Show each failing line by place, code, answer and line alone, without explanation and "
       "summary",
       "Mostra di ogni riga fallita solo posto, codice, risposta e riga, senza spiegazione e "
       "riepilogo"},
      {"As a pipe: show each failing line by place, code, answer and line alone, without "
       "explanation and summary",
       "In una pipe: mostra di ogni riga fallita solo posto, codice, risposta e riga, senza "
       "spiegazione e riepilogo"},
      {"Write JSON", "Scrive JSON"},
      {"Show the commands and fields of a definition file",
       "Mostra i comandi e i campi di un file di definizione"},
      {"Definition file (default: the one that a host would read)",
       "File di definizione (se manca: quello che leggerebbe un'applicazione)"},
      {"Show this command alone", "Mostra solo questo comando"},
      {"Write a Markdown table", "Scrive una tabella Markdown"},
      {"Look for faults in definition files and batch files",
       "Cerca i difetti in file di definizione e file batch"},
      {"Files to check; - is standard input", "File da controllare; - è lo standard input"},
      {"Definition file with the words of batch files (default: the one that a host would read)",
       "File di definizione con le parole dei file batch (se manca: quello che leggerebbe "
       "un'applicazione)"},
      {"Take every FILE for a definition file", "Prende ogni FILE per un file di definizione"},
      {"Take every FILE for a batch file", "Prende ogni FILE per un file batch"},
      {"Tell also of aliases, which are no fault",
       "Segnala anche gli alias, che non sono un difetto"},
  });
  return kTexts;
}

}  // namespace lorimat::console
