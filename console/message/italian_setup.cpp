#include <array>

#include "console/message/italian.h"

namespace lorimat::console {

// What a shop sets of its register: "init" and "set".
std::span<const ItalianText> ItalianSetupTexts() {
  static constexpr auto kTexts = std::to_array<ItalianText>({
      {"Set up a register", "Preparare un registratore"},
      {"Make a new register in a file", "Crea un nuovo registratore in un file"},
      {"Change what a register was set up with", "Cambia le impostazioni di un registratore"},
      {"The register's file, which must not be there",
       "Il file del registratore, che non deve esistere"},
      {"Serial number, 11 to 32 capital letters and digits",
       "Matricola, da 11 a 32 lettere maiuscole e cifre"},
      {"VAT number of the shop, 11 digits", "Partita IVA del negozio, 11 cifre"},
      {"A line of the header, up to 42 characters; once for each of up to 6 lines",
       "Una riga dell'intestazione, fino a 42 caratteri; una volta per ognuna delle righe, al più "
       "6"},
      {"Rate of an entry of the VAT table, such as 1=22 or 3=5,50; or the rates from entry 1 on, "
       "such as \"22 10 5 4 0\"",
       "Aliquota di una voce della tabella IVA, come 1=22 o 3=5,50; o le aliquote dalla voce 1 in "
       "poi, come \"22 10 5 4 0\""},
      {"Name of a department, its VAT entry and its price, such as 1=PANE:4 or 1=PANE:4:2,50; once "
       "for each",
       "Nome di un reparto, la sua voce IVA e il suo prezzo, come 1=PANE:4 o 1=PANE:4:2,50; una "
       "volta per ognuno"},
      {"Folder into which summaries and lottery documents are sent",
       "Cartella in cui si inviano i corrispettivi e i documenti della lotteria"},
      {"In training: documents print, and nothing is registered",
       "In addestramento: i documenti si stampano, e non si registra niente"},
      {"Not yet put into service with the revenue agency",
       "Non ancora messo in servizio presso l'agenzia delle entrate"},
      {"Send into no folder any more", "Non inviare più in una cartella"},
      {"End the training", "Termina l'addestramento"},
      {"Put it into service", "Lo mette in servizio"},
      {"A serial number has 11 to 32 capital letters and digits, such as 99LRM0000001VR",
       "Una matricola ha da 11 a 32 lettere maiuscole e cifre, come 99LRM0000001VR"},
      {"A VAT number has 11 digits, the last of which checks the others, such as 01234567897",
       "Una partita IVA ha 11 cifre, l'ultima delle quali controlla le altre, come 01234567897"},
      {"A header has up to 6 lines of 42 characters, each with a --header of its own, such as "
       "--header \"BAR SPORT\"; an accented letter counts two",
       "Un'intestazione ha al più 6 righe di 42 caratteri, ognuna con un suo --header, come "
       "--header \"BAR SPORT\"; una lettera accentata conta per due"},
      {"A rate is an entry of the table and a percentage from 0 to 99.99 with two decimals at "
       "most, "
       "such as 1=22 or 3=5.5; several stand between blanks, as \"22 10 5,5\", from entry 1 on",
       "Un'aliquota è una voce della tabella e una percentuale da 0 a 99,99 con al più due "
       "decimali, come 1=22 o 3=5,5; più d'una si separano con spazi, come \"22 10 5,5\", dalla "
       "voce 1 in poi"},
      {"A department is its number from 1 to 40, a name of up to 32 characters, and if need be its "
       "VAT entry and a price, such as 1=PANE, 1=PANE:4 or 1=PANE:4:2,50; a name with a colon "
       "takes "
       "both",
       "Un reparto è il suo numero da 1 a 40, un nome di al più 32 caratteri e, se occorre, la "
       "voce IVA e un prezzo, come 1=PANE, 1=PANE:4 o 1=PANE:4:2,50; un nome con i due punti li "
       "vuole entrambi"},
      {"The outbox is a folder that is there, such as /srv/outbox",
       "La cartella d'invio deve esistere, come /srv/invio"},
      {"{} {}: {} {}", "{} {}: {} {}"},
      {"There is no rate in it.", "Non contiene aliquote."},
      {"One rate, or two? Write {} for one rate, or --vat {} --vat {}.",
       "Un'aliquota o due? Si scriva {} per una sola, oppure --vat {} --vat {}."},
      {"That is no rate.", "Non è un'aliquota."},
      {"Entry {} is given twice.", "La voce {} è indicata due volte."},
      {"That is no department.", "Non è un reparto."},
      {"Department {} is given twice.", "Il reparto {} è indicato due volte."},
      {"-: standard input is no register; a file of this name is ./-",
       "-: lo standard input non è un registratore; un file con questo nome è ./-"},
      {"{}: is there already, and stays as it is; \"lorimat set\" changes a register",
       "{}: esiste già, e resta com'è; \"lorimat set\" cambia un registratore"},
      {"{}: a new register, serial number {}\n", "{}: un nuovo registratore, matricola {}\n"},
      {"{}: the register is there and whole, and its name may not have reached the disk: {}",
       "{}: il registratore c'è ed è intero, ma il suo nome potrebbe non essere arrivato sul "
       "disco: "
       "{}"},
      {"{}: the register is there and whole, and its report is missing: {}",
       "{}: il registratore c'è ed è intero, ma manca il rapporto: {}"},
      {"Folder of a backup, whose tables the register gets",
       "Cartella di un backup, le cui tabelle vanno nel registratore"},
      {"stopped by {}; no register was made", "fermato con {}; non c'è nessun registratore"},
      // copy
      {"Copy a whole register, at any moment", "Copia un intero registratore, in ogni momento"},
      {"The copy, a file that must not be there", "La copia, un file che non deve esistere"},
      {"{}: is the register {} itself", "{}: è proprio il registratore {}"},
      {"{}: the journal of the copy is not that of the register, and there is no copy: {}",
       "{}: il giornale della copia non è quello del registratore, e non c'è nessuna copia: {}"},
      {"{}: the copy is there and whole, and its name may not have reached the disk: {}",
       "{}: il registratore copiato c'è ed è intero, ma il suo nome potrebbe non essere arrivato "
       "sul disco: {}"},
      {"{}: is the same register, serial number {}: only one of the two may go on selling",
       "{}: è lo stesso registratore, matricola {}: solo uno dei due può continuare a vendere"},
      {"{}: no line of the header names the VAT number {}, and the header stays as it was; "
       "--header "
       "sets another",
       "{}: nessuna riga dell'intestazione riporta la partita IVA {}, e l'intestazione resta "
       "com'era; "
       "--header ne imposta un'altra"},
      {"{}: copy of {}, the journal is good: {}, {}\n",
       "{}: copia di {}, il giornale è in ordine: {}, {}\n"},
      {"{}: copy of {}, whose journal has findings\n",
       "{}: copia di {}, il cui giornale ha delle osservazioni\n"},
      {"{}: the copy is there and whole, and its report is missing: {}",
       "{}: il registratore copiato c'è ed è intero, ma manca il rapporto: {}"},
      {"stopped by {}; there is no copy", "fermato con {}; non c'è nessuna copia"},
      {"what is to be set? Name it, as --header \"BAR SPORT\"; \"lorimat set --help\" lists all",
       "che cosa va impostato? Lo si indichi, come --header \"BAR SPORT\"; \"lorimat set --help\" "
       "elenca tutto"},
      {"{}: nothing was set: {}", "{}: non si è impostato niente: {}"},
      {"{}: set: {}\n", "{}: impostato: {}\n"},
      {"{}: it was set, and the report is missing: {}", "{}: impostato, ma manca il rapporto: {}"},
      {"is there already, and is not overwritten", "esiste già, e non viene sovrascritto"},
      {"is not there, and {} is, which would be taken for a part of it: put the register back "
       "beside it, or move it away",
       "non c'è, mentre c'è {}, che passerebbe per una sua parte: vi si rimetta accanto il "
       "registratore, o lo si sposti"},
      {"is left of a register that was not finished, or another one is being made; remove it",
       "è rimasto da un registratore non finito, o se ne sta creando un altro; va rimosso"},
      {R"(Examples:
  lorimat init shop.register
      A register to try things with, in the name of a shop that does not exist.
  lorimat init bar.register --serial 99LRM0000042VR --vat-number 01234567897 \
      --header "BAR SPORT" --header "Via Roma 1 - 00100 ROMA" --header "P.IVA 01234567897"
      One with the shop's own numbers and header.
  lorimat init stall.register --vat "22 10 5,50 4 0" --departments 1=PANE:4 \
      --departments 2=CAFFE:2:1,20 --not-in-service
      The rates of the VAT entries 1 to 5, and two departments with their VAT entry and price.
  lorimat init second.register --from tables --serial 99LRM0000043VR
      One with the tables of another register, as "lorimat backup" wrote them.

What is not given is that of the shop that does not exist: 22, 10, 5, 4 % and exempt, forty
departments. The file appears when all of it is written; one that is there is not touched.
"lorimat set" changes the same later.

Exit codes:
  0  the register was made
  1  it was made and is whole; rows of the backup that could not be loaded, and what failed behind
     it, are told
  2  wrong use, or it could not be made; then there is no file
  130  stopped by Ctrl-C; there is no file
)",
       R"(Esempi:
  lorimat init shop.register
      Un registratore per le prove, intestato a un negozio che non esiste.
  lorimat init bar.register --serial 99LRM0000042VR --vat-number 01234567897 \
      --header "BAR SPORT" --header "Via Roma 1 - 00100 ROMA" --header "P.IVA 01234567897"
      Uno con i numeri e l'intestazione del negozio.
  lorimat init stall.register --vat "22 10 5,50 4 0" --departments 1=PANE:4 \
      --departments 2=CAFFE:2:1,20 --not-in-service
      Le aliquote delle voci IVA da 1 a 5, e due reparti con la voce IVA e il prezzo.
  lorimat init second.register --from tables --serial 99LRM0000043VR
      Uno con le tabelle di un altro registratore, come le ha scritte "lorimat backup".

Quello che non si indica è del negozio che non esiste: 22, 10, 5, 4 % ed esente, quaranta
reparti. Il file compare quando è scritto per intero; uno che c'è già non si tocca.
"lorimat set" cambia le stesse cose più tardi.

Codici di uscita:
  0  il registratore è stato creato
  1  è stato creato ed è intero; le righe della copia che non si sono potute caricare, e quello
     che è fallito dopo, vengono dette
  2  uso sbagliato, o non si è potuto creare; allora il file non c'è
  130  fermato con Ctrl-C; il file non c'è
)"},
      {R"(Examples:
  lorimat set shop.register --header "BAR SPORT" --header "Via Roma 1 - 00100 ROMA"
      Another header: these lines, and no others.
  lorimat set shop.register --vat 3=5,50 --departments 7=GELATO:3
      The rate of VAT entry 3, and the name and the VAT entry of department 7.
  lorimat set shop.register --no-training
      Ends the training.

All of it is set, or nothing. What is set goes into the journal's chain, but for header lines,
which the journal has with each document. Serial number and VAT number are fixed once the register
has made a document; VAT rates and the state of service change while no day is open.

Exit codes:
  0  all of it was set
  1  it was set; what failed behind that is told
  2  wrong use, or nothing was set
)",
       R"(Esempi:
  lorimat set shop.register --header "BAR SPORT" --header "Via Roma 1 - 00100 ROMA"
      Un'altra intestazione: queste righe, e nessun'altra.
  lorimat set shop.register --vat 3=5,50 --departments 7=GELATO:3
      L'aliquota della voce IVA 3, e nome e voce IVA del reparto 7.
  lorimat set shop.register --no-training
      Termina l'addestramento.

Si imposta tutto, o niente. Quello che si imposta entra nella catena del giornale, tranne le
righe d'intestazione, che il giornale ha con ogni documento. Matricola e partita IVA non
cambiano più dal primo documento; aliquote e messa in servizio cambiano a giornata chiusa.

Codici di uscita:
  0  tutto è impostato
  1  è impostato; quello che è fallito dopo viene detto
  2  uso sbagliato, o non si è impostato niente
)"},
      {R"(Examples:
  lorimat copy shop.register home.register
      A copy of the whole register: tables, documents, totals, journal, roll.

The register may be at work meanwhile: the copy is of one moment, and the seller does not wait.
Its journal is verified before the copy gets its name; a name that is taken is refused. The copy is
the same register, with its serial number: only one of the two may go on selling.

Exit codes:
  0  the copy is there, and its journal is good
  1  the copy is there, and its journal has findings, as that of the register has; or what failed
     behind the copy is told
  2  wrong use, or it could not be made; then there is no copy
  130  stopped by Ctrl-C; there is no copy
)",
       R"(Esempi:
  lorimat copy shop.register home.register
      Una copia dell'intero registratore: tabelle, documenti, totali, giornale, rotolo.

Il registratore può lavorare nel frattempo: la copia è di un solo momento, e chi vende non aspetta.
Il giornale si verifica prima che la copia abbia il suo nome; un nome già preso si rifiuta. La copia
è lo stesso registratore, con la sua matricola: solo uno dei due può continuare a vendere.

Codici di uscita:
  0  la copia c'è, e il suo giornale è in ordine
  1  la copia c'è, e il suo giornale ha delle osservazioni, come quello del registratore; o si dice
     quello che è fallito dopo la copia
  2  uso sbagliato, o non si è potuta fare; allora la copia non c'è
  130  fermato con Ctrl-C; la copia non c'è
)"},
  });
  return kTexts;
}

}  // namespace lorimat::console
