#include <array>

#include "console/message/italian.h"

namespace lorimat::console {

// What the register says of failures.
std::span<const ItalianText> ItalianMessagesTexts() {
  static constexpr auto kTexts = std::to_array<ItalianText>({
      {"the register's file has no name", "il file del registratore non ha un nome"},
      {"no regular file", "non è un file normale"},
      {"is a directory, not a register", "è una cartella, non un registratore"},
      {"the file is empty", "il file è vuoto"},
      {"the database of another program", "è la base di dati di un altro programma"},
      {"in use by another program", "in uso a un altro programma"},
      {"has {} names (hard links), and its log goes by one of them: keep one name, that with the "
       "log beside it, and copy with lorimat copy",
       "ha {} nomi (hard link), e il suo log va con uno di essi: tenere un solo nome, quello con "
       "accanto il log, e copiare con lorimat copy"},
      {"has {} names (hard links), and no log lies beside this one: what was stored last may stand "
       "beside another; read it by that name, or keep one name",
       "ha {} nomi (hard link), e accanto a questo non c'è alcun log: quanto è stato registrato "
       "per "
       "ultimo può stare accanto a un altro; leggerlo con quel nome, o tenerne uno solo"},
      {"was written by another program meanwhile; nothing more is stored until it is opened again",
       "nel frattempo è stato scritto da un altro programma; non si registra altro finché non "
       "viene riaperto"},
      {"another program has begun to work with it meanwhile; read it again",
       "nel frattempo un altro programma ha cominciato a lavorarci; lo si legga di nuovo"},
      {"has to be put in order by the program that writes it, before it is read",
       "prima di essere letto va messo in ordine dal programma che lo scrive"},
      {"cannot be kept here: its log cannot be shared between programs",
       "non si può tenere qui: il suo log non si può condividere tra programmi"},
      {"is not a register of this program: it is no SQLite database",
       "non è un registratore di questo programma: non è una base di dati SQLite"},
      {"made by a newer version: its tables are of version {}, known are those up to {}",
       "creato da una versione più recente: le sue tabelle sono della versione {}, si "
       "conoscono quelle fino alla {}"},
      {"the file is cut short: {} bytes are left of {}",
       "il file è troncato: restano {} byte su {}"},
      {"the file is damaged", "il file è danneggiato"},
      {"the register is damaged: its version makes no sense",
       "il registratore è danneggiato: la sua versione non ha senso"},
      {"the register is damaged: {} makes no sense",
       "il registratore è danneggiato: {} non ha senso"},
      {"the register is damaged ({})", "il registratore è danneggiato ({})"},
      {"cannot be opened", "non si può aprire"},
      {"cannot be opened: {}", "non si può aprire: {}"},
      {"cannot be written", "non si può scrivere"},
      {"its folder cannot be written: {}", "nella sua cartella non si può scrivere: {}"},
      {"is not there, or empty, and {} is: what was stored last stands in it alone. Put the "
       "register "
       "back beside it, or move it away",
       "non c'è, o è vuoto, e {} c'è: quanto è stato registrato per ultimo sta solo lì. Rimettere "
       "accanto il registratore, o spostarlo via"},
      {"cannot be written here, and {} has to be taken over into it: copy both to a folder where "
       "they can be written",
       "qui non si può scrivere, e va completato con {}: si copino entrambi in una cartella dove "
       "si "
       "può scrivere"},
      {"the disk is full", "il disco è pieno"},
      {"its log cannot be put in order after a failure, and nothing more is stored until it is",
       "il suo log non si può rimettere in ordine dopo un guasto, e fino ad allora non si registra "
       "altro"},
      {"was removed, moved or replaced while the register worked on it",
       "è stato tolto, spostato o sostituito mentre il registratore ci lavorava"},
      {"its log was removed, moved or replaced while the register worked on it",
       "il suo log è stato tolto, spostato o sostituito mentre il registratore ci lavorava"},
      {"there is not enough memory", "la memoria non basta"},
      {"for an unknown cause", "per una causa sconosciuta"},
      {"; whether it is stored is not known until the next start",
       "; se sia registrato si saprà solo al prossimo avvio"},
      {"cannot be read or written to its end", "non si può leggere o scrivere fino in fondo"},
      {"cannot be read or written to its end: {}",
       "non si può leggere o scrivere fino in fondo: {}"},
      {"SQLite failed ({})", "errore di SQLite ({})"},
      {"the register is at an operation", "il registratore sta eseguendo un'operazione"},
      {"{} faults wait already", "aspettano già {} guasti"},
      {"a result code is 1 to {}, not {}", "un codice di risultato va da 1 a {}, non {}"},
      {"a number of operations is 1 to {}, not {}", "un numero di operazioni va da 1 a {}, non {}"},
      {"{} answers no result code", "{} non risponde un codice di risultato"},
      {"{} cannot strike {}", "{} non può colpire {}"},
      {"the picture cannot be drawn: {}", "l'immagine non si può disegnare: {}"},
      {"the paper is {} dots long, and a PNG takes {} at most; a PDF has pages",
       "la stampa è lunga {} punti, e un PNG ne ha al massimo {}; un PDF ha pagine"},
      {"there is no memory for the picture", "non c'è memoria per l'immagine"},
  });
  return kTexts;
}

}  // namespace lorimat::console
