#include <array>

#include "console/message/italian.h"

namespace lorimat::console {

// The shell.
std::span<const ItalianText> ItalianShellTexts() {
  static constexpr auto kTexts = std::to_array<ItalianText>({
      {"Take lines from a terminal, or a pipe, and show answers and paper",
       "Prende righe da un terminale, o da una pipe, e mostra risposte e carta"},
      {R"(Examples:
  lorimat shell
      Lines for a register in memory, which is gone with the shell.
  lorimat shell --register shop.register
      A register that keeps what it is told.
  printf 'VEND REP=1, PRE=2.50\nCHIU\n' | lorimat shell
      The same as a pipe: no prompt; the paper goes to standard output as it is printed, failing
      lines to standard error as with "lorimat run".
  lorimat shell --json --register shop.register
      For a program: requests such as {"id": 1, "line": "VEND REP=1, PRE=2.50"} on standard input,
      a line each, and an answer in a line of JSON for each on standard output.

"?" lists the commands of the language, "? VEND" tells of one, ".help" of the shell itself. TAB
completes names. The lines typed are kept in $XDG_STATE_HOME/lorimat/history or
~/.local/state/lorimat/history.

Exit codes:
  0  the shell was left; as a pipe: every line ran; with --json: the input has ended
  1  as a pipe: at least one line failed
  2  wrong use, or the shell or its output could not be done
  130  as a pipe: stopped by Ctrl-C; 143 by SIGTERM, 129 by SIGHUP
)",
       R"(Esempi:
  lorimat shell
      Righe per un registratore in memoria, che finisce con la shell.
  lorimat shell --register shop.register
      Un registratore che conserva quanto gli si dice.
  printf 'VEND REP=1, PRE=2.50\nCHIU\n' | lorimat shell
      Lo stesso da una pipe: nessun invito; la carta va sull'uscita standard man mano che è
      stampata, le righe fallite sull'errore standard come con "lorimat run".
  lorimat shell --json --register shop.register
      Per un programma: richieste come {"id": 1, "line": "VEND REP=1, PRE=2.50"} sull'ingresso
      standard, una per riga, e per ognuna una risposta in una riga di JSON sull'uscita standard.

"?" elenca i comandi del linguaggio, "? VEND" ne spiega uno, ".help" spiega la shell. TAB completa
i nomi. Le righe scritte restano in $XDG_STATE_HOME/lorimat/history o in
~/.local/state/lorimat/history.

Codici d'uscita:
  0  si è usciti dalla shell; da una pipe: ogni riga è andata a buon fine; con --json: l'ingresso è
     finito
  1  da una pipe: almeno una riga è fallita
  2  uso sbagliato, o la shell o la sua uscita non riesce
  130  da una pipe: fermata da Ctrl-C; 143 da SIGTERM, 129 da SIGHUP
)"},
      {"For programs: take a request in JSON on each line of standard input, and write "
       "an answer in JSON for each",
       "Per i programmi: prende una richiesta JSON per ogni riga dell'ingresso standard, "
       "e a ognuna risponde in JSON"},
      {"lorimat {}: a virtual register, {}.", "lorimat {}: un registratore virtuale, {}."},
      {"in memory", "in memoria"},
      {"kept in {}", "conservato in {}"},
      {"\"?\" lists the commands, \".help\" tells of the shell, Ctrl-D leaves it.",
       "\"?\" elenca i comandi, \".help\" spiega la shell, Ctrl-D ne esce."},
      {"the lines typed are not kept: {}", "le righe scritte non sono conservate: {}"},
      {"neither HOME nor XDG_STATE_HOME names a folder",
       "né HOME né XDG_STATE_HOME indicano una cartella"},
      {"it is no regular file", "non è un file normale"},
      {"the line editor cannot start: {}", "l'editor di riga non parte: {}"},
      {"and {} more", "e altri {}"},
      {"The line was dropped; no document is open.",
       "La riga è stata lasciata; nessun documento è aperto."},
      {"The line was dropped; {}.", "La riga è stata lasciata; {}."},
      {"Ctrl-C: no document is open.", "Ctrl-C: nessun documento è aperto."},
      {"Ctrl-C: {}.", "Ctrl-C: {}."},
      {"Note: {}.", "Nota: {}."},
      {"It is gone with the shell.", "Con la shell va perso."},
      {"It is not paid: the next start of the register voids it.",
       "Non è pagato: il prossimo avvio del registratore lo annulla."},
      {"The next start of the register ends it.", "Il prossimo avvio del registratore lo chiude."},
      {"Leave? (y/n) ", "Uscire? (s/n) "},
      {"y", "s"},
      {"That is neither y nor n; the shell goes on.", "Non è né s né n; la shell continua."},
      // Answers.
      {"ok", "ok"},
      {"code {}: {}", "codice {}: {}"},
      {"{}: answer: {}", "{}: risposta: {}"},
      {"class {}: {}", "classe {}: {}"},
      {"Result {} of the device, {}.", "Risultato {} del dispositivo, {}."},
      {"Result {} of the device.", "Risultato {} del dispositivo."},
      {"No answer of the device.", "Nessuna risposta dal dispositivo."},
      {"Passed twice: {}.", "Passato due volte: {}."},
      {"Or: {}", "Oppure: {}"},
      {"{}: stopped by {} behind line {}", "{}: fermato da {} dopo la riga {}"},
      // The state of the register.
      {"READY", "PRONTO"},
      {"RECEIPT OPEN", "SCONTRINO APERTO"},
      {"PAYING", "PAGAMENTO"},
      {"ENDING", "CHIUSURA"},
      {"FISCAL DOCUMENT", "DOCUMENTO FISCALE"},
      {"FIXED OUTPUT", "STAMPA FISSA"},
      {"ITEM LIST", "ELENCO ARTICOLI"},
      {"LOCKED", "BLOCCATO"},
      {"NON-FISCAL", "NON FISCALE"},
      {"REPORT", "RAPPORTO"},
      {"TRAINING", "ADDESTRAMENTO"},
      {"{} item", "{} articolo"},
      {"{} items", "{} articoli"},
      {"subtotal {}", "subtotale {}"},
      {"to pay {}", "da pagare {}"},
      {"key {}", "chiave {}"},
      {"fault waiting: {}", "guasto in attesa: {}"},
      {"the receipt", "scontrino"},
      {"the invoice", "fattura"},
      {"the credit note", "nota di credito"},
      {"the void document", "annullo"},
      {"a document is open ({})", "un documento è aperto ({})"},
      {"{} is open, with {} and a subtotal of {}",
       "documento aperto: {}, con {} e un subtotale di {}"},
      {"State", "Stato"},
      {"Training", "Addestramento"},
      {"yes", "sì"},
      {"no", "no"},
      {"Items", "Articoli"},
      {"Subtotal", "Subtotale"},
      {"Paid", "Pagato"},
      {"To pay", "Da pagare"},
      {"Drawer opened", "Cassetto aperto"},
      {"Next sale", "Prossima vendita"},
      {"opens a receipt", "apre uno scontrino"},
      {"goes into what is open", "va in quello che è aperto"},
      {"opens no receipt, code {}; the way out is {}",
       "non apre uno scontrino, codice {}; se ne esce con {}"},
      {"not known: a line ran that was too long to be followed",
       "non si sa: è stata eseguita una riga troppo lunga da seguire"},
      {"the next sale opens no receipt: {}", "la prossima vendita non apre uno scontrino: {}"},
      {"No sale opens a receipt now: the library takes one for open, and the printer has none. The "
       "way out is {}.",
       "Ora nessuna vendita apre uno scontrino: per la libreria ce n'è uno aperto, per la "
       "stampante "
       "no. Se ne esce con {}."},
      {"{} or {}", "{} o {}"},
      {"a start of the library", "un avvio della libreria"},
      {"{} time", "{} volta"},
      {"{} times", "{} volte"},
      {"Paper", "Carta"},
      {"in memory, gone with the shell", "in memoria, finisce con la shell"},
      {"The paper is blank.", "La carta è bianca."},
      {"{} printed; see \".paper {}\"", "{} di carta; si veda \".paper {}\""},
      // The shell's own words.
      {"lists the commands of the language", "elenca i comandi del linguaggio"},
      {"tells of one: its fields and what they take", "ne spiega uno: i campi e che cosa prendono"},
      {"runs a file line by line; Ctrl-C ends it behind a line",
       "esegue un file riga per riga; Ctrl-C lo ferma dopo una riga"},
      {"lists the faults there are, and those that wait",
       "elenca i guasti che ci sono, e quelli in attesa"},
      {"plans one: .fault code 123 nth 2 on PrintRecItemEx; also next, every, times N",
       "ne prepara uno: .fault code 123 nth 2 on PrintRecItemEx; anche next, every, times N"},
      {"takes all faults off the plan", "toglie tutti i guasti preparati"},
      {"shows this; .help VEND is ? VEND", "mostra questo testo; .help VEND è ? VEND"},
      {"the same, where no command has such a name",
       "lo stesso, dove nessun comando si chiama così"},
      {"shows the paper again, or its last N lines",
       "mostra di nuovo la carta, o le sue ultime N righe"},
      {"ends the shell, as Ctrl-D does", "esce dalla shell, come Ctrl-D"},
      {"shows the state of the register", "mostra lo stato del registratore"},
      {"TAB completes names of commands, fields, values and files; the up key and Ctrl-R bring "
       "lines back; Ctrl-C drops the line being typed. A line that begins with a blank is not kept "
       "in the history.",
       "TAB completa i nomi di comandi, campi, valori e file; la freccia in su e Ctrl-R riportano "
       "righe scritte prima; Ctrl-C lascia la riga che si sta scrivendo. Una riga che comincia con "
       "uno spazio non resta nella storia."},
      {"the shell has no word '{}'; .help lists them",
       "la shell non ha una parola '{}'; .help le elenca"},
      {"the shell has no word '{}'; did you mean {}?",
       "la shell non ha una parola '{}'; forse {}?"},
      {"nothing may stand behind {}", "dopo {} non ci va niente"},
      {".paper takes a number of lines, not '{}'", ".paper vuole un numero di righe, non '{}'"},
      {"which file? Its name has to stand behind .batch",
       "quale file? Il nome va scritto dopo .batch"},
      {"{}: is no regular file", "{}: non è un file normale"},
      {"a number has to stand behind '{}'", "dopo '{}' ci vuole un numero"},
      {"no fault is called '{}'", "nessun guasto si chiama '{}'"},
      {"no operation of the device is called '{}'",
       "nessuna operazione del dispositivo si chiama '{}'"},
      {"'{}' has no place there", "'{}' lì non ci va"},
      {"No fault waits.\n", "Nessun guasto è in attesa.\n"},
      {"Waiting:\n", "In attesa:\n"},
      // Help on the language.
      {"The definition file names no commands.\n", "Il file di definizione non ha comandi.\n"},
      {"No command of the library; answers 268.", "Non è un comando della libreria; risponde 268."},
      {"Others", "Altri"},
      {"\"? NAME\" tells more of a command, \".help\" of the shell.",
       "\"? NOME\" dice di più di un comando, \".help\" della shell."},
      {"no command is called '{}'; \"?\" lists them",
       "nessun comando si chiama '{}'; \"?\" li elenca"},
      {"no command is called '{}'; did you mean {}?", "nessun comando si chiama '{}'; forse {}?"},
      {"{}: command {}, short {}", "{}: comando {}, abbreviato {}"},
      {", also {}", ", anche {}"},
      {"not read", "non letto"},
      {"No fields.", "Nessun campo."},
      {"Takes", "Prende"},
      {"Value", "Valore"},
      {"Word", "Parola"},
      {"These texts call {} and its fields as the definition file that ships does.",
       "Questi testi chiamano {} e i suoi campi come fa il file di definizione fornito."},
      {"Examples", "Esempi"},
      {"Answers, besides those that any line may get",
       "Risposte, oltre a quelle che ogni riga può avere"},
  });
  return kTexts;
}

}  // namespace lorimat::console
