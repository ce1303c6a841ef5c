#include <array>

#include "italian.h"

// The commands that look at a register's file and after it.
std::span<const ItalianText> italian_register_texts() {
  static constexpr auto kTexts = std::to_array<ItalianText>({
      // The option, and the file.
      {"The register's file", "Il file del registratore"},
      {"the register's file", "il file del registratore"},
      {"which register? Name its file with --register FILE or in the environment variable "
       "LORIMAT_REGISTER",
       "quale registratore? Si indichi il suo file con --register FILE o nella variabile "
       "d'ambiente LORIMAT_REGISTER"},
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
      The same for a program: amounts in cents.

The register is looked at and not switched on: an open document stays open, and nothing prints.
While a program works with the register its file cannot be read.

Exit codes:
  0  the status was shown
  2  wrong use, or the file cannot be read
)",
       R"(Esempi:
  lorimat status --register shop.register
      Chiave, giornata, contatori e totali di un registratore, e un documento interrotto.
  lorimat status --register shop.register --json
      Lo stesso per un programma: importi in centesimi.

Il registratore viene guardato e non acceso: un documento aperto resta aperto e nulla si stampa.
Mentre un programma lavora con il registratore, il suo file non si può leggere.

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
  lorimat paper --register shop.register --output roll.txt --pdf roll.pdf
      The roll as text in a file, and as a PDF with a page for each document.

The register keeps the end of its roll; "lorimat journal" has every document. With --png or --pdf
the text is written only if --output asks for it; "-" is standard output.

Exit codes:
  0  the paper was written
  2  wrong use, or the file cannot be read or the paper not be written
)",
       R"(Esempi:
  lorimat paper --register shop.register
      Il rotolo come testo.
  lorimat paper --register shop.register --last 1 --png receipt.png
      L'ultimo documento come immagine.
  lorimat paper --register shop.register --output roll.txt --pdf roll.pdf
      Il rotolo come testo in un file, e come PDF con una pagina per ogni documento.

Il registratore conserva la fine del rotolo; "lorimat journal" ha tutti i documenti. Con --png o
--pdf il testo si scrive solo se lo chiede --output; "-" è lo standard output.

Codici di uscita:
  0  la stampa è stata scritta
  2  uso sbagliato, o il file non si può leggere o la stampa non si può scrivere
)"},

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
      {"{} {}: is neither the number of a closing nor a date of the form YYYY-MM-DD or "
       "\"YYYY-MM-DD "
       "HH:MM\"",
       "{} {}: non è né il numero di una chiusura né una data nella forma YYYY-MM-DD o "
       "\"YYYY-MM-DD HH:MM\""},
      {"--from {} --to {}: both are closings, or both are dates",
       "--from {} --to {}: o sono entrambi chiusure, o entrambi date"},
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
      {"stopped by Ctrl-C behind entry {}", "fermato con Ctrl-C dopo la voce {}"},
      {"the journal is good: {}, {}", "il giornale è integro: {}, {}"},
      {"the journal was changed: {}, {}, {}", "il giornale è stato cambiato: {}, {}, {}"},
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
  1  something was changed; each finding stands on standard output
  2  wrong use, or the file cannot be read
  130  stopped by Ctrl-C
)",
       R"(Esempi:
  lorimat journal verify --register shop.register
      Segue la catena degli hash dalla prima voce all'ultima, e confronta il giornale con i
      documenti registrati e con i totali.

Codici di uscita:
  0  il giornale è integro
  1  qualcosa è stato cambiato; ogni osservazione è sullo standard output
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

      // backup
      {"Write the tables of a register into a new folder",
       "Scrive le tabelle di un registratore in una nuova cartella"},
      {"The folder, new or empty", "La cartella, nuova o vuota"},
      {"VAT rates", "aliquote IVA"},
      {"header lines", "intestazione"},
      {"options", "opzioni"},
      {"groups", "gruppi"},
      {"operators", "operatori"},
      {"departments", "reparti"},
      {"subtenders", "pagamenti"},
      {"keyboards", "tastiere"},
      {"articles", "articoli"},
      {"{} row", "{} riga"},
      {"{} rows", "{} righe"},
      {"{}: backup of {}, {}\n", "{}: copia di {}, {}\n"},
      {"{}: holds {}. End it first, by a run on this register",
       "{}: contiene {}. Prima va chiuso, lavorando con questo registratore"},
      {"{}: faults wait in it, which would strike now; \"lorimat fault --clear\" takes them away",
       "{}: vi aspettano dei guasti, che colpirebbero adesso; \"lorimat fault --clear\" li toglie"},
      {"is no name for a new folder", "non è un nome per una nuova cartella"},
      {"is there already, and is no folder", "esiste già, e non è una cartella"},
      {"is not empty; a backup goes into a new folder",
       "non è vuota; una copia va in una nuova cartella"},
      {"is left of a backup that was cut off, or another one is at work; remove it",
       "è rimasta da una copia interrotta, o ce n'è un'altra in corso; va rimossa"},
      {"cannot be made: {}", "non si può creare: {}"},
      {"cannot be written: {}", "non si può scrivere: {}"},
      {"{}: cannot be written: {}", "{}: non si può scrivere: {}"},
      {"{}: cannot work in this folder: {}", "{}: non si può lavorare in questa cartella: {}"},
      {"stopped by Ctrl-C; there is no backup", "fermato con Ctrl-C; non c'è nessuna copia"},
      {"the {} cannot be read: code {}: {}", "impossibile leggere: {}: codice {}: {}"},
      {R"(Examples:
  lorimat backup tables --register shop.register
      Writes the tables into the new folder "tables".
  lorimat restore tables --register shop.register --dry-run
      Shows what of them is different now.

A backup has a dump of the command language for each table (VAT rates, header lines, options,
groups, operators, departments, subtenders, keyboards, articles) and a manifest with their
digests. Documents, totals, logos and the numbering of invoices are not in it. The folder has to
be new or empty; it appears when all of it is written.

Exit codes:
  0  the backup was made
  2  wrong use, or it could not be made; then there is none
  130  stopped by Ctrl-C; there is no backup
)",
       R"(Esempi:
  lorimat backup tables --register shop.register
      Scrive le tabelle nella nuova cartella "tables".
  lorimat restore tables --register shop.register --dry-run
      Mostra che cosa ora è diverso.

Una copia ha per ogni tabella (aliquote IVA, intestazione, opzioni, gruppi, operatori, reparti,
pagamenti, tastiere, articoli) un file di righe del linguaggio, e un indice con i loro digest. Non
vi sono documenti, totali, loghi e la numerazione delle fatture. La cartella dev'essere nuova o
vuota; appare quando è scritta per intero.

Codici di uscita:
  0  la copia è stata fatta
  2  uso sbagliato, o non si è potuta fare; allora non c'è
  130  fermato con Ctrl-C; non c'è nessuna copia
)"},

      // restore
      {"Compare the tables of a backup with a register and load them back",
       "Confronta le tabelle di una copia con un registratore e le ricarica"},
      {"The folder of the backup", "La cartella della copia"},
      {"Only show what is different", "Mostra soltanto che cosa è diverso"},
      {"is no manifest of a backup", "non è l'indice di una copia"},
      {"the backup has version {}, and this program reads version {}",
       "la copia è della versione {}, e questo programma legge la versione {}"},
      {"\"{}\" is missing", "manca \"{}\""},
      {"\"{}\" is no text", "\"{}\" non è un testo"},
      {"\"{}\" is no number", "\"{}\" non è un numero"},
      {"\"{}\" is no list", "\"{}\" non è un elenco"},
      {"{} is missing in it", "non vi compare {}"},
      {"it names files that are none of a backup", "indica file che non sono di una copia"},
      {"{}: is damaged: it has {} bytes, and had {} when the backup was made",
       "{}: è rovinato: ha {} byte, e ne aveva {} quando la copia fu fatta"},
      {"{}: is damaged: its SHA-256 is not the one of the manifest",
       "{}: è rovinato: il suo SHA-256 non è quello dell'indice"},
      {"it is no file", "non è un file"},
      {"it is larger than {} bytes", "è più grande di {} byte"},
      {"the line has no end", "la riga non ha fine"},
      {"a NUL byte in the row of an article", "un byte NUL nella riga di un articolo"},
      {"this is not the first line of a dump", "non è la prima riga di una tabella"},
      {"this is not the last line of a dump", "non è l'ultima riga di una tabella"},
      {"this is no row of the table", "non è una riga della tabella"},
      {"the backup is of {}, and this is {}", "la copia è di {}, e questo è {}"},
      {": not in the backup; stays as it is\n", ": manca nella copia; resta com'è\n"},
      {": not in the backup; is taken away\n", ": manca nella copia; viene tolto\n"},
      {": not in the register\n", ": manca nel registratore\n"},
      {": different\n", ": diverso\n"},
      {"{}: no row differs from the backup\n", "{}: nessuna riga è diversa dalla copia\n"},
      {"{}: {} would be restored\n", "{}: da ricaricare: {}\n"},
      {"{}: {} restored\n", "{}: ricaricate: {}\n"},
      {"{}: {} restored, {} not restored\n", "{}: ricaricate: {}; non ricaricate: {}\n"},
      {"{}:{}: not restored: {}\n", "{}:{}: non ricaricata: {}\n"},
      {"an empty text does not clear the one of the register",
       "un testo vuoto non cancella quello del registratore"},
      {"the register keeps another value", "il registratore conserva un altro valore"},
      {"not loaded yet", "non ancora caricata"},
      {"stopped by Ctrl-C", "fermato con Ctrl-C"},
      {"the key could not be turned back to position {}: {}",
       "la chiave non si è potuta riportare alla posizione {}: {}"},
      {"{}: a day is open, and the VAT rates differ, which only change between two days: close the "
       "day first; nothing was changed",
       "{}: la giornata è aperta e le aliquote IVA sono diverse, e si cambiano solo tra due "
       "giornate: prima va chiusa la giornata; nulla è stato cambiato"},
      {R"(Examples:
  lorimat restore tables --register shop.register --dry-run
      Shows what is different in the backup and in the register.
  lorimat restore tables --register shop.register
      Loads what is different, and shows it.

Rows with a minus are those of the register, rows with a plus those of the backup. Each table is
loaded by the library, row by row; the articles are replaced as a whole. Everything is checked
before anything is changed: the files of the backup, their words, the state of the register. VAT
rates that differ want a closed day.

Exit codes:
  0  the register holds the tables of the backup; with --dry-run: they were compared
  1  some rows could not be restored; each is named with its cause
  2  wrong use, or nothing was restored
  130  stopped by Ctrl-C; what was restored up to there is shown
)",
       R"(Esempi:
  lorimat restore tables --register shop.register --dry-run
      Mostra che cosa è diverso nella copia e nel registratore.
  lorimat restore tables --register shop.register
      Carica ciò che è diverso, e lo mostra.

Le righe con il meno sono quelle del registratore, quelle con il più della copia. Ogni tabella
viene caricata dalla libreria, riga per riga; gli articoli si sostituiscono per intero. Tutto è
controllato prima di cambiare qualcosa: i file della copia, le loro parole, lo stato del
registratore. Aliquote IVA diverse vogliono una giornata chiusa.

Codici di uscita:
  0  il registratore ha le tabelle della copia; con --dry-run: sono state confrontate
  1  alcune righe non si sono potute ricaricare; ognuna è indicata con la causa
  2  uso sbagliato, o nulla è stato ricaricato
  130  fermato con Ctrl-C; ciò che è stato ricaricato fino a lì viene mostrato
)"},
  });
  return kTexts;
}
