#include <array>

#include "console/message/italian.h"

namespace lorimat::console {

// The backup of a register's tables, and its way back.
std::span<const ItalianText> ItalianBackupTexts() {
  static constexpr auto kTexts = std::to_array<ItalianText>({
      {"{}: there is no such folder; \"lorimat backup {}\" makes one",
       "{}: questa cartella non c'è; \"lorimat backup {}\" la crea"},
      {"{}: is no folder of a backup: {}", "{}: non è la cartella di un backup: {}"},
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
      {"no file in memory: {}", "nessun file in memoria: {}"},
      {"{}: cannot be written: {}", "{}: non si può scrivere: {}"},
      {"{}: cannot work in this folder: {}", "{}: non si può lavorare in questa cartella: {}"},
      {"{}: the backup is there and whole, and its name may not have reached the disk: {}",
       "{}: la copia c'è ed è intera, ma il suo nome potrebbe non essere arrivato sul disco: {}"},
      {"{}: the backup is there and whole, and its report is missing: {}",
       "{}: la copia c'è ed è intera, ma manca il rapporto: {}"},
      {"stopped by {}; there is no backup", "fermato con {}; non c'è nessuna copia"},
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
  1  the backup was made and is whole; what failed behind it, such as its report, is told
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
  1  la copia è stata fatta ed è intera; ciò che è fallito dopo, come il rapporto, viene detto
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
      {"{}: {} restored, {} not restored, and the report is missing: {}",
       "{}: ricaricate: {}; non ricaricate: {}; manca il rapporto: {}"},
      {"{}: not restored: {}", "{}: non ricaricato: {}"},
      {"{}: what was loaded could not be read back: {}",
       "{}: ciò che è stato caricato non si è potuto rileggere: {}"},
      {"{}:{}: not restored: {}", "{}:{}: non ricaricata: {}"},
      {"an empty text does not clear the one of the register",
       "un testo vuoto non cancella quello del registratore"},
      {"the register keeps another value", "il registratore conserva un altro valore"},
      {"not loaded yet", "non ancora caricata"},
      {"stopped by {}", "fermato con {}"},
      {"stopped by {}; nothing was changed", "fermato con {}; non è cambiato niente"},
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
  1  some rows could not be restored, and each is named with its cause; or all were, and the report
     could not be written; or they were loaded, and could not be read back
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
  1  alcune righe non si sono potute ricaricare, e ognuna è indicata con la causa; o tutte lo sono,
     e il rapporto non si è potuto scrivere; o sono state caricate, e non si sono potute rileggere
  2  uso sbagliato, o nulla è stato ricaricato
  130  fermato con Ctrl-C; ciò che è stato ricaricato fino a lì viene mostrato
)"},
  });
  return kTexts;
}

}  // namespace lorimat::console
