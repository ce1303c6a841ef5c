#include "console/message/italian.h"

#include <array>

namespace lorimat::console {
namespace {

// Messages of more than one job, and of those without a file of their own.
std::span<const ItalianText> GeneralTexts() {
  static constexpr auto kTexts = std::to_array<ItalianText>({
      {"{}: no folder for the error file: {}", "{}: nessuna cartella per il file degli errori: {}"},
      {"{}: --batch cannot run a file whose name has capital letters: the library lower-cases the "
       "names of batch files and would look for {}; rename the file, or run it without --batch",
       "{}: --batch non può eseguire un file con maiuscole nel nome: la libreria mette in "
       "minuscole i nomi dei file batch e cercherebbe {}; si rinomini il file, o lo si esegua "
       "senza --batch"},
      {"{}: --batch cannot run a file whose name has control characters: the library cannot be "
       "given such a name; rename the file, or run it without --batch",
       "{}: --batch non può eseguire un file con caratteri di controllo nel nome: alla libreria "
       "non si può dare un nome del genere; si rinomini il file, o lo si esegua senza --batch"},
      {"'{}': --batch cannot run a file whose name ends in a blank: the library drops that blank; "
       "rename the file, or run it without --batch",
       "'{}': --batch non può eseguire un file il cui nome finisce con uno spazio: la libreria "
       "toglie quello spazio; si rinomini il file, o lo si esegua senza --batch"},
      {"definition file {}: cannot be opened: {}", "file di definizione {}: non si può aprire: {}"},
      {"definition file {}: is no regular file", "file di definizione {}: non è un file normale"},
      {"definition file {}:{}: {}", "file di definizione {}:{}: {}"},
      {"definition file {}: the library cannot read it",
       "file di definizione {}: la libreria non riesce a leggerlo"},
      {"no room for the words in memory: {}", "non c'è posto in memoria per le parole: {}"},
      {"the library refuses the words", "la libreria rifiuta le parole"},
      {"the library cannot be loaded: {}: {}", "la libreria non si può caricare: {}: {}"},
      {"the library cannot be loaded ({})", "la libreria non si può caricare ({})"},
      {"{}: is not the lorimatrt library: it lacks {}",
       "{}: non è la libreria lorimatrt: le manca {}"},
      {"standard input", "standard input"},
      {"{}: cannot be opened: {}", "{}: non si può aprire: {}"},
      {"{}: cannot be read: {}", "{}: non si può leggere: {}"},
      {"{}: is a directory, not a file of lines", "{}: è una cartella, non un file di righe"},
      {"{}:{}: cannot be read: {}", "{}:{}: non si può leggere: {}"},
      {"cannot find the folder of the program: {}", "non si trova la cartella del programma: {}"},
      {"the library is not beside the program: neither {} nor {} exists; name it with --library",
       "la libreria non è accanto al programma: non esistono né {} né {}; la si indichi con "
       "--library"},
      {"cannot keep the standard streams apart: {}",
       "non si riesce a tenere separati i flussi standard: {}"},
      {"cannot write to standard output: {}", "non si riesce a scrivere sullo standard output: {}"},
      {"{}: cannot write the trace: {}", "{}: non si riesce a scrivere la traccia: {}"},
      {"No such file or directory", "Il file o la cartella non esiste"},
      {"Permission denied", "Permesso negato"},
      {"Operation not permitted", "Operazione non permessa"},
      {"No space left on device", "Spazio esaurito sul dispositivo"},
      {"Disk quota exceeded", "Quota del disco superata"},
      {"Read-only file system", "File system in sola lettura"},
      {"Is a directory", "È una cartella"},
      {"Not a directory", "Non è una cartella"},
      {"File exists", "Il file esiste già"},
      {"File name too long", "Nome di file troppo lungo"},
      {"File too large", "File troppo grande"},
      {"Bad file descriptor", "Descrittore di file non valido"},
      {"Too many open files", "Troppi file aperti"},
      {"Too many levels of symbolic links", "Troppi livelli di collegamenti simbolici"},
      {"Input/output error", "Errore di input/output"},
      {"Broken pipe", "Pipe interrotta"},
      {"Invalid argument", "Argomento non valido"},
      {"No such device or address", "Il dispositivo o l'indirizzo non esiste"},
      {"Device or resource busy", "Dispositivo o risorsa occupata"},
      {"Text file busy", "Il file è in esecuzione"},
      {"Resource temporarily unavailable", "Risorsa momentaneamente non disponibile"},
      {"Cannot allocate memory", "Memoria esaurita"},
      {"{}: cannot write the paper: {}", "{}: non si riesce a scrivere la stampa: {}"},
      {"the same as {}", "come {}"},
      {"no command of the library, answers 268", "non è un comando della libreria, risponde 268"},
      {"must be given", "obbligatorio"},
      {"No", "N."},
      {"Command", "Comando"},
      {"Short", "Abbrev."},
      {"Field", "Campo"},
      {"Name", "Nome"},
      {"Remark", "Nota"},
      {"{}: fits more than one command", "{}: corrisponde a più di un comando"},
      {"{}: no command has this name", "{}: nessun comando ha questo nome"},
      {"{}: answer: {}\n", "{}: risposta: {}\n"},
      {"code {}", "codice {}"},
      {"not run", "non eseguita"},
      {"a NUL byte stands in column {}, and the library would read the line only up to there",
       "c'è un byte NUL nella colonna {}, e la libreria leggerebbe la riga solo fin lì"},
      {"A NUL byte in the line: it was not run.", "Un byte NUL nella riga: non è stata eseguita."},
      {"further lines that are not run are counted and not shown; --terse shows all",
       "le altre righe non eseguite si contano senza mostrarle; --terse le mostra tutte"},
      {"further lines with code {} are counted and not shown; --terse shows all",
       "le altre righe con codice {} si contano senza mostrarle; --terse le mostra tutte"},
      {"times", "volte"},
      {"code", "codice"},
      {"first line", "prima riga"},
      {"what it means", "che cosa significa"},
      {"stopped by {} behind line {}", "fermato con {} dopo la riga {}"},
      {"(further lines like this one are not told of)",
       "(di altre righe come questa non si avvisa)"},
      {"{}: stopped: there is not enough memory", "{}: interrotto: la memoria non basta"},
      {"stopped at line {}, which failed", "fermato alla riga {}, che è fallita"},
      {"{} of {} lines failed", "righe fallite: {} su {}"},
      {"{}: which lines of the batch failed is not known for sure: {}",
       "{}: non si sa con certezza quali righe del batch sono fallite: {}"},
      {"the line has no room for an error file", "nella riga non c'è posto per un file di errori"},
      {"{}: the file is cut", "{}: il file è troncato"},
      {"{}: the file cannot be written", "{}: il file non si può scrivere"},
      {"{}:{}: a NUL byte stands in column {}: with --batch the library would run the line only up "
       "to there; nothing was run",
       "{}:{}: c'è un byte NUL nella colonna {}: con --batch la libreria eseguirebbe la riga solo "
       "fin lì; non è stato eseguito niente"},
      {"{}: cannot work in its folder: {}", "{}: non si riesce a lavorare nella sua cartella: {}"},
      {"cannot return to the folder of the start: {}",
       "non si riesce a tornare nella cartella di partenza: {}"},
      {"{}: the batch was refused: code {}: {}", "{}: il batch è stato rifiutato: codice {}: {}"},
      {"{}: --batch needs a file, which the library opens by its name",
       "{}: a --batch serve un file, che la libreria apre con il suo nome"},
      {"{} ends, and {}: it is gone with the register in memory",
       "{} finisce con un {}; va perso con il registratore in memoria"},
      {"the shell", "la shell"},
      {"InstallationDir={} in the registry {} overrides {}: the definition file is {}",
       "InstallationDir={} nel registro {} prevale su {}: il file di definizione è {}"},
      {"the default", "il predefinito"},
      {"definition file {}", "file di definizione {}"},
      {" (named by InstallationDir in the registry {}; set LORIMATRT_REGISTRY to another file to "
       "leave it out)",
       " (indicato da InstallationDir nel registro {}; per escluderlo si indichi un altro file in "
       "LORIMATRT_REGISTRY)"},
      {"definition file {}: its path is longer than the {} characters that the library takes{}",
       "file di definizione {}: il percorso è più lungo dei {} caratteri che la libreria "
       "accetta{}"},
      {": the library answered {}", ": la libreria ha risposto {}"},
      {"definition file {} names no commands (section [OPCOD]), so every line will fail{}",
       "il file di definizione {} non ha comandi (sezione [OPCOD]), perciò ogni riga fallirà{}"},
      {"--clock {}: is no date and time, such as YYYY-MM-DD HH:MM or DD/MM/YYYY HH:MM",
       "--clock {}: non è una data e ora, come AAAA-MM-GG HH:MM o GG/MM/AAAA HH:MM"},
      {"library {}", "libreria {}"},
      {"{}: is {}; the paper would replace it", "{}: è {}; la stampa lo sostituirebbe"},
      {"{}: is {}; the trace would replace it", "{}: è {}; la traccia lo sostituirebbe"},
      {"the file of lines", "il file delle righe"},
      {"{} {}: {} goes there already", "{} {}: vi va già {}"},
      {"the paper's text", "il testo della stampa"},
      {"the PNG", "il PNG"},
      {"the PDF", "il PDF"},
      {"the trace", "la traccia"},
      {"the definition file", "il file di definizione"},
      {"the library", "la libreria"},
      {"{} has what the lines did, and they are not to be run again; \"lorimat paper --register "
       "{}\" writes the paper",
       "{} ha quanto hanno fatto le righe, che non vanno eseguite di nuovo; \"lorimat paper "
       "--register {}\" scrive la stampa"},
  });
  return kTexts;
}

}  // namespace

std::vector<std::span<const ItalianText>> ItalianTexts() {
  return {GeneralTexts(),        ItalianBackupTexts(),   ItalianCheckTexts(),
          ItalianCodesTexts(),   ItalianHelpTexts(),     ItalianRegisterTexts(),
          ItalianJournalTexts(), ItalianMessagesTexts(), ItalianExamplesTexts(),
          ItalianShellTexts(),   ItalianTrapsTexts(),    ItalianRefusalTexts(),
          ItalianSetupTexts()};
}

}  // namespace lorimat::console
