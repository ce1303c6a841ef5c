#include <array>

#include "console/message/italian.h"

namespace lorimat::console {

// The commands that look at a register's file, and its faults.
std::span<const ItalianText> ItalianRegisterTexts() {
  static constexpr auto kTexts = std::to_array<ItalianText>({
      // The option, and the file.
      {"The register's file", "Il file del registratore"},
      {"the register's file", "il file del registratore"},
      {"a part of the register's file", "una parte del file del registratore"},
      {"--register -: standard input is no register; a file of this name is ./-",
       "--register -: lo standard input non è un registratore; un file con questo nome è ./-"},
      {"which register? Name its file with --register FILE or in the environment variable "
       "LORIMAT_REGISTER",
       "quale registratore? Si indichi il suo file con --register FILE o nella variabile "
       "d'ambiente LORIMAT_REGISTER"},
      {"{}: there is no such register; \"lorimat init {}\" makes one",
       "{}: il registratore non esiste; \"lorimat init {}\" ne crea uno"},
      {"{}: there is no such register; \"lorimat run --register {} FILE\" makes one",
       "{}: il registratore non esiste; \"lorimat run --register {} FILE\" ne crea uno"},
      {"{}: the register cannot be reached: {}", "{}: il registratore non è raggiungibile: {}"},
      {"{}: a new register was made", "{}: creato un nuovo registratore"},
      {"the register could not be kept: {}", "il registratore non si è potuto salvare: {}"},
      {"{} keeps {}", "{} conserva {}"},

      // Documents.
      {"a receipt", "uno scontrino"},
      {"an invoice", "una fattura"},
      {"a credit note", "una nota di credito"},
      {"a void document", "un documento di annullo"},
      {"a non-fiscal document", "un documento non fiscale"},
      {"a training document", "un documento di addestramento"},
      {"receipt", "scontrino"},
      {"invoice", "fattura"},
      {"credit note", "nota di credito"},
      {"void", "annullo"},
      {"abandoned", "abbandonato"},
      {"closing", "chiusura"},
      {"non-fiscal", "non fiscale"},
      {"{} of {}", "{} del {}"},
      {"{} {} of {}, total {}, was stored last, and the register was switched off behind it: its "
       "answer may not have gone out",
       "{} {} del {}, totale {}, è l'ultimo documento registrato prima che il registratore fosse "
       "spento: la sua risposta può non essere arrivata"},
      {"{} line", "{} riga"},
      {"{} lines", "{} righe"},
      {"{}: the next start ends it", "{}: al prossimo avvio viene chiuso"},
      {"{}, {}, total {}, registered with number {:04}: the next start ends it",
       "{}, {}, totale {}, registrato con il numero {:04}: al prossimo avvio viene chiuso"},
      {"{}, {}, subtotal {}, not paid: the next start voids it",
       "{}, {}, subtotale {}, non pagato: al prossimo avvio viene annullato"},
      {"{} was cut off, and has been ended", "{} è stato interrotto, ed è stato chiuso"},
      {"{}, {}, total {}, was cut off: registered with number {:04}, and has been ended",
       "{}, {}, totale {}, interrotto: registrato con il numero {:04}, ed è stato chiuso"},
      {"{}, {}, subtotal {}, was cut off: not paid, and has been voided",
       "{}, {}, subtotale {}, interrotto: non pagato, ed è stato annullato"},

      // status
      {"Show what a register's file holds: key, day, totals",
       "Mostra il contenuto del file di un registratore: chiave, giornata, totali"},
      {"Register", "Registratore"},
      {"Serial number", "Matricola"},
      {"Firmware", "Firmware"},
      {"Key", "Chiave"},
      {"registering", "registrazione"},
      {"reading", "lettura"},
      {"programming", "programmazione"},
      {"Operator", "Operatore"},
      {"Clock", "Orologio"},
      {"shows {}, more than an hour before the last document or closing, {}: nothing is registered "
       "before it is right",
       "segna {}, più di un'ora prima dell'ultimo documento o chiusura, {}: finché non è giusto "
       "non "
       "si registra nulla"},
      {"Go on with what comes, until Ctrl-C or the file is gone",
       "Continua con quanto arriva, fino a Ctrl-C o alla scomparsa del file"},
      {"{}: is not there any more, or is another file by now: nothing more can come",
       "{}: non c'è più, o ormai è un altro file: non può arrivare altro"},
      {"{}: --follow writes text to standard output, and no file",
       "{}: --follow scrive testo sullo standard output, e nessun file"},
      {"{} line is missing: the register has torn it off",
       "manca {} riga: il registratore l'ha strappata"},
      {"{} lines are missing: the register has torn them off",
       "mancano {} righe: il registratore le ha strappate"},
      {"Last closing", "Ultima chiusura"},
      {"none", "nessuno"},
      {"none yet", "ancora nessuna"},
      {"Day", "Giornata"},
      {"open", "aperta"},
      {"not begun", "non iniziata"},
      {"  receipts", "  scontrini"},
      {"  invoices", "  fatture"},
      {"  credit notes", "  note di credito"},
      {"  voids", "  annulli"},
      {"  abandoned", "  abbandonati"},
      {"  non-fiscal", "  non fiscali"},
      {"  total", "  totale"},
      {"Grand total", "Gran totale"},
      {"Next invoice", "Prossima fattura"},
      {"Not sent", "Da inviare"},
      {"{} summary", "{} riepilogo"},
      {"{} summaries", "{} riepiloghi"},
      {"Documents", "Documenti"},
      {"Journal", "Giornale"},
      {"{} entry", "{} voce"},
      {"{} entries", "{} voci"},
      {"{}, last hash {}", "{}, ultimo hash {}"},
      {"Open document", "Documento aperto"},
      {"Faults", "Guasti"},
      {R"(Examples:
  lorimat status --register shop.register
      Key, day, counters and totals of a register, and a document that was cut off.
  lorimat status --register shop.register --json
      All that the register is, for a program: settings, tables, totals, memory, clock; amounts
      in cents.
  lorimat status --register shop.register --follow
      Again behind each change, until Ctrl-C.

The register is looked at and not switched on: an open document stays open, and nothing prints. A
program may be selling on it meanwhile. With --follow, --json writes an object a line.

Exit codes:
  0  the status was shown
  2  wrong use, or the file cannot be read
)",
       R"(Esempi:
  lorimat status --register shop.register
      Chiave, giornata, contatori e totali di un registratore, e un documento interrotto.
  lorimat status --register shop.register --json
      Tutto quello che il registratore è, per un programma: impostazioni, tabelle, totali,
      memoria, orologio; importi in centesimi.
  lorimat status --register shop.register --follow
      Di nuovo dopo ogni cambiamento, fino a Ctrl-C.

Il registratore viene guardato e non acceso: un documento aperto resta aperto e nulla si stampa.
Intanto un programma può venderci sopra. Con --follow, --json scrive un oggetto per riga.

Codici di uscita:
  0  lo stato è stato mostrato
  2  uso sbagliato, o il file non si può leggere
)"},

      // paper
      {"Write the roll of a register's file", "Scrive il rotolo del file di un registratore"},
      {"Only the last N documents", "Solo gli ultimi N documenti"},
      {"Write the text to FILE", "Scrive il testo in FILE"},
      {R"(Examples:
  lorimat paper --register shop.register
      The roll as text.
  lorimat paper --register shop.register --last 1 --png receipt.png
      The last document as a picture.
  lorimat paper --register shop.register --paper roll.txt --pdf roll.pdf
      The roll as text in a file, and as a PDF with a page for each document.
  lorimat paper --register shop.register --last 1 --follow
      The last document, and what is printed from now on, until Ctrl-C.

The register keeps the end of its roll; "lorimat journal" has every document. With --png or --pdf
the text is written only if --paper asks for it; "-" is standard output.

Exit codes:
  0  the paper was written
  2  wrong use, or the file cannot be read or the paper not be written
  130  stopped by Ctrl-C; 143 by SIGTERM, 129 by SIGHUP
)",
       R"(Esempi:
  lorimat paper --register shop.register
      Il rotolo come testo.
  lorimat paper --register shop.register --last 1 --png receipt.png
      L'ultimo documento come immagine.
  lorimat paper --register shop.register --paper roll.txt --pdf roll.pdf
      Il rotolo come testo in un file, e come PDF con una pagina per ogni documento.
  lorimat paper --register shop.register --last 1 --follow
      L'ultimo documento, e quanto si stampa da adesso in poi, fino a Ctrl-C.

Il registratore conserva la fine del rotolo; "lorimat journal" ha tutti i documenti. Con --png o
--pdf il testo si scrive solo se lo chiede --paper; "-" è lo standard output.

Codici di uscita:
  0  la stampa è stata scritta
  2  uso sbagliato, o il file non si può leggere o la stampa non si può scrivere
  130  fermato con Ctrl-C; 143 con SIGTERM, 129 con SIGHUP
)"},
      {"{}: not written, stopped by {}", "{}: non scritto, fermato con {}"},
      {"{}: the paper is there and whole, and its name may not have reached the disk: {}",
       "{}: la stampa c'è ed è intera, ma il suo nome potrebbe non essere arrivato sul disco: {}"},
      {"{} of {} lines", "{} di {} righe"},
      {"{} left", "ancora {}"},

      // journal
      {"List, show and verify a register's journal",
       "Elenca, mostra e verifica il giornale di un registratore"},
      {"From this closing or date on", "Da questa chiusura o data in poi"},
      {"Up to this closing or date", "Fino a questa chiusura o data"},
      {"Entries of this kind alone; may be given again",
       "Solo le voci di questo tipo; si può ripetere"},
      {"Show an entry as it was printed", "Mostra una voce come è stata stampata"},
      {"Its place in the list", "Il suo posto nell'elenco"},
      {"Look whether anything in the journal was changed",
       "Controlla se nel giornale è stato cambiato qualcosa"},
      {"{} {}: is neither the number of a closing nor a date, such as YYYY-MM-DD or DD/MM/YYYY, "
       "with or without the time: \"YYYY-MM-DD HH:MM\"",
       "{} {}: non è né il numero di una chiusura né una data, come AAAA-MM-GG o GG/MM/AAAA, con o "
       "senza l'ora: \"AAAA-MM-GG HH:MM\""},
      {"--from {} --to {}: both are closings, or both are dates",
       "--from {} --to {}: o sono entrambi chiusure, o entrambi date"},
      {"--from {} --to {}: the range ends before it begins",
       "--from {} --to {}: l'intervallo finisce prima di cominciare"},
      {"--kind {}: no entries have this kind; did you mean {}?",
       "--kind {}: nessuna voce è di questo tipo; si intendeva {}?"},
      {"--kind {}: no entries have this kind; the kinds are {}",
       "--kind {}: nessuna voce è di questo tipo; i tipi sono {}"},
      {"Place", "Posto"},
      {"Kind", "Tipo"},
      {"Number", "Numero"},
      {"Time", "Data e ora"},
      {"First words", "Prime parole"},
      {"the journal has no such entries", "il giornale non ha voci simili"},
      {"the journal has no entry {}; it has {}", "il giornale non ha la voce {}; ne ha {}"},
      {"{}: selects entries of the list, and \"journal {}\" shows no list",
       "{}: sceglie voci dell'elenco, e \"journal {}\" non mostra un elenco"},
      {"stopped by {} behind entry {}", "fermato con {} dopo la voce {}"},
      {"the journal is good: {}, {}", "il giornale è integro: {}, {}"},
      {"the journal was changed: {}, {}, {}", "il giornale è stato cambiato: {}, {}, {}"},
      {"the file is damaged: {}, {}, {}", "il file è danneggiato: {}, {}, {}"},
      {"{}: {} more findings are not shown\n", "{}: altre {} osservazioni non sono mostrate\n"},
      {"{} finding", "{} osservazione"},
      {"{} findings", "{} osservazioni"},
      {"{} document", "{} documento"},
      {"{} documents", "{} documenti"},
      {R"(Examples:
  lorimat journal --register shop.register
      The entries of the journal, one a line.
  lorimat journal --register shop.register --from 12 --to 14 --kind closing
      By the number of the closing; kinds: receipt, invoice, credit-note, void, abandoned,
      closing, non-fiscal.
  lorimat journal --register shop.register --from 2026-11-01 --to "2026-11-20 18:00" --json
      By date, for a program.
  lorimat journal show 42 --register shop.register
      An entry as it was printed.
  lorimat journal verify --register shop.register
      Whether anything in it was changed.
  lorimat journal --register shop.register --follow
      The entries, and those that come, until Ctrl-C; with --json an object a line.

A program may be selling on the register meanwhile.

Exit codes:
  0  the entries were shown
  2  wrong use, or the file cannot be read
)",
       R"(Esempi:
  lorimat journal --register shop.register
      Le voci del giornale, una per riga.
  lorimat journal --register shop.register --from 12 --to 14 --kind closing
      Per numero di chiusura; tipi: receipt, invoice, credit-note, void, abandoned, closing,
      non-fiscal.
  lorimat journal --register shop.register --from 2026-11-01 --to "2026-11-20 18:00" --json
      Per data, per un programma.
  lorimat journal show 42 --register shop.register
      Una voce come è stata stampata.
  lorimat journal verify --register shop.register
      Se vi è stato cambiato qualcosa.
  lorimat journal --register shop.register --follow
      Le voci, e quelle che arrivano, fino a Ctrl-C; con --json un oggetto per riga.

Intanto un programma può vendere sul registratore.

Codici di uscita:
  0  le voci sono state mostrate
  2  uso sbagliato, o il file non si può leggere
)"},
      {R"(Examples:
  lorimat journal show 42 --register shop.register
      The entry in place 42, which "lorimat journal" lists.

Exit codes:
  0  the entry was shown
  1  there is no such entry
  2  wrong use, or the file cannot be read
)",
       R"(Esempi:
  lorimat journal show 42 --register shop.register
      La voce al posto 42, che "lorimat journal" elenca.

Codici di uscita:
  0  la voce è stata mostrata
  1  la voce non c'è
  2  uso sbagliato, o il file non si può leggere
)"},
      {R"(Examples:
  lorimat journal verify --register shop.register
      Follows the chain of hashes from the first entry to the last, and compares the journal with
      the registered documents and the totals.

Exit codes:
  0  the journal is good
  1  something was changed or is damaged; each finding stands on standard output
  2  wrong use, or the file cannot be read
  130  stopped by Ctrl-C
)",
       R"(Esempi:
  lorimat journal verify --register shop.register
      Segue la catena degli hash dalla prima voce all'ultima, e confronta il giornale con i
      documenti registrati e con i totali.

Codici di uscita:
  0  il giornale è integro
  1  qualcosa è stato cambiato o è danneggiato; ogni osservazione è sullo standard output
  2  uso sbagliato, o il file non si può leggere
  130  fermato con Ctrl-C
)"},

      // fault
      {"List the faults of a register, plan one or clear the plan",
       "Elenca i guasti di un registratore, ne prepara uno o li toglie"},
      {"The fault to plan", "Il guasto da preparare"},
      {"The result code, for the fault \"code\"", "Il codice di esito, per il guasto \"code\""},
      {"At the next operation (the default)", "Alla prossima operazione (se non si dice altro)"},
      {"At the Nth operation from now", "All'N-esima operazione da adesso"},
      {"At every operation", "A ogni operazione"},
      {"At the next N operations", "Alle prossime N operazioni"},
      {"Only at this operation of the device, such as PrintRecItemEx",
       "Solo a questa operazione del dispositivo, come PrintRecItemEx"},
      {"Take all faults off the plan", "Toglie tutti i guasti preparati"},
      {"List as JSON", "Elenca in JSON"},
      {"Faults\n", "Guasti\n"},
      {"strikes: {}", "colpisce: {}"},
      {"any result code, by its number", "un codice di esito qualsiasi, per numero"},
      {"No fault waits in {}\n", "Nessun guasto aspetta in {}\n"},
      {"In {} wait\n", "In {} aspettano\n"},
      {"{}: no fault has this name; \"lorimat fault\" lists them",
       "{}: nessun guasto ha questo nome; \"lorimat fault\" li elenca"},
      {"{}: no fault has this name; did you mean {}?",
       "{}: nessun guasto ha questo nome; si intendeva {}?"},
      {"--on {}: no operation of the device has this name{}",
       "--on {}: nessuna operazione del dispositivo ha questo nome{}"},
      {"fault code: which? Give the number of a result code behind it",
       "fault code: quale? Si indichi dopo il numero di un codice di esito"},
      {"{} {}: only the fault \"code\" takes a number",
       "{} {}: solo il guasto \"code\" prende un numero"},
      {"at the next operation", "alla prossima operazione"},
      {"at the next {}", "al prossimo {}"},
      {"at operation {} from now", "all'operazione {} da adesso"},
      {"at {} number {} from now", "al {} numero {} da adesso"},
      {"at every operation", "a ogni operazione"},
      {"at every {}", "a ogni {}"},
      {"at the next operations, {} times", "alle prossime operazioni, {} volte"},
      {"at the next {}, {} times", "ai prossimi {}, {} volte"},
      {"the roll of paper is at its end", "la carta è finita"},
      {"the roll is near its end; printing goes on", "la carta sta per finire; la stampa continua"},
      {"the cover is open", "il coperchio è aperto"},
      {"the device does not answer: switched off or not connected",
       "il dispositivo non risponde: spento o non collegato"},
      {"the device is busy; polls of its state count",
       "il dispositivo è occupato; contano le letture del suo stato"},
      {"the fiscal memory is full", "la memoria fiscale è piena"},
      {"the day has to be closed first", "prima va chiusa la giornata"},
      {"the totals do not agree", "i totali non concordano"},
      {"the operation gets lost on its way, and nothing is done",
       "l'operazione si perde per strada, e nulla viene fatto"},
      {"the operation is carried out, and its answer gets lost",
       "l'operazione viene eseguita, e la risposta si perde"},
      {"what prints", "ciò che stampa"},
      {"everything", "tutto"},
      {"all but reading", "tutto tranne la lettura"},
      {"openings of fiscal documents, payments, day closings",
       "aperture di documenti fiscali, pagamenti, chiusure giornaliere"},
      {"openings of fiscal documents", "aperture di documenti fiscali"},
      {"subtotals and payments", "subtotali e pagamenti"},
      {R"(Examples:
  lorimat fault --register shop.register
      The faults there are, and those that wait in the register.
  lorimat fault paper-end --register shop.register
      The next operation that prints finds no paper.
  lorimat fault busy --times 3 --register shop.register
      The next three polls find the printer busy.
  lorimat fault code 123 --nth 2 --on PrintRecItemEx --register shop.register
      The second sale from now answers 123.
  lorimat fault --clear --register shop.register
      No fault waits any longer.

The plan is kept in the register's file, and what programs do with the register uses it up. A
struck operation changes nothing. Without a register the faults alone are listed.

Exit codes:
  0  the faults were listed or the plan was changed
  2  wrong use, or the file cannot be read or written
)",
       R"(Esempi:
  lorimat fault --register shop.register
      I guasti che esistono, e quelli che aspettano nel registratore.
  lorimat fault paper-end --register shop.register
      La prossima operazione che stampa non trova carta.
  lorimat fault busy --times 3 --register shop.register
      Le prossime tre letture dello stato trovano la stampante occupata.
  lorimat fault code 123 --nth 2 --on PrintRecItemEx --register shop.register
      La seconda vendita da adesso risponde 123.
  lorimat fault --clear --register shop.register
      Nessun guasto aspetta più.

I guasti preparati stanno nel file del registratore, e li consuma ciò che i programmi fanno con
esso. Un'operazione colpita non cambia nulla. Senza registratore si elencano solo i guasti.

Codici di uscita:
  0  i guasti sono stati elencati o preparati
  2  uso sbagliato, o il file non si può leggere o scrivere
)"},
  });
  return kTexts;
}

}  // namespace lorimat::console
