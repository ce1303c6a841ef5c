#include <array>

#include "console/message/italian.h"

namespace lorimat::console {

// What result codes are and what causes them.
std::span<const ItalianText> ItalianCodesTexts() {
  static constexpr auto kTexts = std::to_array<ItalianText>({
      {"state and file errors of the translator", "errori di stato e di file del traduttore"},
      {"syntax and command errors", "errori di sintassi e di comando"},
      {"results of the device client below 200", "risultati del client del dispositivo sotto 200"},
      {"results of the device client of 200 and above",
       "risultati del client del dispositivo da 200 in su"},
      {"data errors of the device", "errori del dispositivo sui dati"},
      {"errors of the device", "errori del dispositivo"},
      {"article exchange", "scambio degli articoli"},
      {"lines of an article exchange file", "righe di un file di scambio degli articoli"},
      {"errors of the device at a report", "errori del dispositivo in un rapporto"},
      {"wrong answers of the device; the index is a character",
       "risposte errate del dispositivo; l'indice è un carattere"},
      {"A code of the older protocol: the table has its text, this library never gives it.",
       "Un codice del protocollo precedente: la tabella ne ha il testo, questa libreria non lo dà "
       "mai."},
      {"The command SELEZ (opcode 5) answers this always; it has no effect.",
       "Il comando SELEZ (opcode 5) risponde sempre così; non ha effetto."},
      {"The definition file was not read: it is missing, or has a line that stops the reading. "
       "\"lorimat check\" names the line.",
       "Il file di definizione non è stato letto: manca, o ha una riga che ferma la lettura. "
       "\"lorimat check\" indica la riga."},
      {"FATTURA (opcode 23) wants 2 in its field 1; odd as the text reads, this is the answer to "
       "anything else.",
       "FATTURA (opcode 23) vuole 2 nel campo 1; per quanto strano sia il testo, questa è la "
       "risposta a ogni altro valore."},
      {"An \"@\" line names no file, has a quote in the wrong place, or stands inside a batch: "
       "batches do not nest.",
       "Una riga \"@\" non indica un file, ha un apice nel posto sbagliato o sta dentro un batch: "
       "i batch non si annidano."},
      {"A file cannot be opened: the batch file (its name is made small letters), or the file that "
       "a command is to write its answer or table to.",
       "Un file non si può aprire: il file batch (il nome viene messo in minuscole), o il file in "
       "cui un comando deve scrivere la risposta o la tabella."},
      {"The error file of an \"@\" line cannot be created, or its name is too long for \".tmp\" "
       "behind it.",
       "Il file degli errori di una riga \"@\" non si può creare, o il suo nome è troppo lungo per "
       "aggiungervi \".tmp\"."},
      {"A batch counts no errors, so its answer is 0; look into its error file.",
       "Un batch non conta gli errori, perciò risponde 0; si guardi nel suo file degli errori."},
      {"No command gives it; its text is \"NON OK.\" alone.",
       "Nessun comando lo dà; il suo testo è soltanto \"NON OK.\"."},
      {"SETP (opcode 48) got its working directory without a value.",
       "SETP (opcode 48) ha ricevuto la cartella di lavoro senza valore."},
      {"GETP (opcode 49) asked for the working directory with a value, or there is none, or its "
       "name is too long.",
       "GETP (opcode 49) ha chiesto la cartella di lavoro con un valore, oppure non ce n'è una o "
       "il suo nome è troppo lungo."},
      {"There is no device client: the host gave none when the library was initialised.",
       "Non c'è un client del dispositivo: l'applicazione non ne ha dato uno quando la libreria è "
       "stata inizializzata."},
      {"No command of the definition file has the name that the line begins with.",
       "Nessun comando del file di definizione ha il nome con cui comincia la riga."},
      {"The shortened command fits more than one name, or two commands have this very name.",
       "Il comando abbreviato corrisponde a più di un nome, o due comandi hanno proprio questo "
       "nome."},
      {"The command lacks a field, or joins fields that do not go together: a lottery or journal "
       "request without its file or documents, say.",
       "Al comando manca un campo, o unisce campi che non vanno insieme: per esempio una richiesta "
       "della lotteria o del giornale senza il file o i documenti."},
      {"The command has no field of this name, or of this number behind \"#\".",
       "Il comando non ha un campo con questo nome, o con questo numero dopo \"#\"."},
      {"A comma begins the next field: decimals stand behind a point.",
       "Una virgola comincia il campo che segue: i decimali stanno dopo un punto."},
      {"The shortened field name fits more than one field of the command.",
       "Il nome abbreviato corrisponde a più di un campo del comando."},
      {"A quote stands in a field's name, ahead of the \"=\". Only values take quotes.",
       "C'è un apice nel nome di un campo, prima di \"=\". Gli apici sono solo per i valori."},
      {"A value in bare letters is no word for a value. A text needs quotes; capitals count in the "
       "words for values.",
       "Un valore senza apici non è una parola che indichi un valore. Un testo va tra apici; nelle "
       "parole per i valori maiuscole e minuscole contano."},
      {"A quote is not closed, or stands behind the beginning of a value.",
       "Un apice non è chiuso, oppure non sta all'inizio di un valore."},
      {"A field has a value that the command does not take, or two fields exclude each other. Also "
       "a value of more than 2048 characters.",
       "Un campo ha un valore che il comando non accetta, o due campi si escludono a vicenda. "
       "Anche un valore di più di 2048 caratteri."},
      {"A field that the command needs is missing or empty.",
       "Un campo necessario al comando manca o è vuoto."},
      {"For CHKSUB (opcode 73) it is no number, as '1,00' is none.",
       "Per CHKSUB (opcode 73) non è un numero, e '1,00' non lo è."},
      {"The line ends where a field is due.", "La riga finisce dove ci vuole un campo."},
      {"The command's number has no command in this library.",
       "Al numero del comando non corrisponde un comando di questa libreria."},
      {"A sale has neither a department nor an article, or has both.",
       "Una vendita non ha né un reparto né un articolo, oppure li ha tutti e due."},
      {"There is no table of this number to read.",
       "Non c'è una tabella da leggere con questo numero."},
      {"The line has more than 2046 characters. It was not run.",
       "La riga ha più di 2046 caratteri. Non è stata eseguita."},
      {"There is no report of this number.", "Non c'è un rapporto con questo numero."},
      {"The device did not answer when the article table was to be emptied (EMLINK, opcode 30).",
       "Il dispositivo non ha risposto quando c'era da svuotare la tabella degli articoli (EMLINK, "
       "opcode 30)."},
      {"The device refused rows of an article upload; the others were sent. The error file has the "
       "rows.",
       "Il dispositivo ha rifiutato delle righe di un invio di articoli; le altre sono state "
       "inviate. Il file degli errori ha le righe."},
      {"EMLINK (opcode 30) wants a direction: UA to send, DA to fetch.",
       "EMLINK (opcode 30) vuole una direzione: UA per inviare, DA per ricevere."},
      {"The file of the articles cannot be opened or written, or its name is too long.",
       "Il file degli articoli non si può aprire o scrivere, o il suo nome è troppo lungo."},
      {"The error file of an article exchange cannot be created, its name is too long, or it is "
       "the file of the articles.",
       "Il file degli errori di uno scambio degli articoli non si può creare, ha un nome troppo "
       "lungo o è il file degli articoli stesso."},
      {"The device is closed; it has to be opened first.",
       "Il dispositivo è chiuso; prima va aperto."},
      {"Another program holds the device.", "Il dispositivo è in uso a un altro programma."},
      {"The device has to be claimed before it is used.",
       "Prima dell'uso va chiesto il possesso del dispositivo."},
      {"The driver of the device cannot be reached.",
       "Il driver del dispositivo non è raggiungibile."},
      {"The device is not enabled.", "Il dispositivo non è abilitato."},
      {"The device does not know the operation, or one of its values is not allowed.",
       "Il dispositivo non conosce l'operazione, o uno dei suoi valori non è ammesso."},
      {"The device is not connected, or is switched off.",
       "Il dispositivo non è collegato, o è spento."},
      {"The device is off line.", "Il dispositivo non è in linea."},
      {"What the command names does not exist on the device.",
       "Quello che il comando indica non esiste nel dispositivo."},
      {"What the command is to make exists already.",
       "Quello che il comando deve creare esiste già."},
      {"The device is there but cannot do what it was asked.",
       "Il dispositivo c'è, ma non può fare quello che gli è stato chiesto."},
      {"The device did not answer in time.", "Il dispositivo non ha risposto in tempo."},
      {"The device is busy with something else.", "Il dispositivo è occupato con altro."},
      {"The device has a further code that says what went wrong.",
       "Il dispositivo ha un altro codice che dice che cosa è andato storto."},
      {"The operation is out of use and no longer offered.",
       "L'operazione è superata e non è più offerta."},
      {"The cover of the printer is open.", "Il coperchio della stampante è aperto."},
      {"The journal has no paper or no room.", "Il giornale non ha più carta o più posto."},
      {"The receipt paper is at its end.", "La carta dello scontrino è finita."},
      {"There is no form in the slip station.", "Non c'è un modulo nella stazione slip."},
      {"A form is still in the slip station.", "C'è ancora un modulo nella stazione slip."},
      {"A part of the device is missing.", "Manca una parte del dispositivo."},
      {"The printer is in another state than the command needs: no receipt is open, say, or one "
       "is.",
       "La stampante non è nello stato che serve al comando: per esempio non c'è uno scontrino "
       "aperto, o ce n'è uno."},
      {"A sale that finds nothing open: behind DOCANNULLO AUTO, a CHKSUB that differed, a key that "
       "paid or voided, or a document that was refused, the translator counts one as open, and no "
       "sale opens a receipt until CLEAR (opcode 8), RESPRN (74) or CHIU (11). A sale behind a "
       "payment in part: pay the rest. With the key turned away: CHIAVE REG (15).",
       "Una vendita che non trova niente di aperto: dopo DOCANNULLO AUTO, un CHKSUB che non torna, "
       "un tasto che ha pagato o annullato, o un documento rifiutato, per il traduttore ce n'è uno "
       "aperto, e nessuna vendita apre uno scontrino fino a CLEAR (opcode 8), RESPRN (74) o CHIU "
       "(11). Una vendita dopo un pagamento parziale: si paghi il resto. Con la chiave girata: "
       "CHIAVE REG (15)."},
      {"The printer needs the technical service.",
       "La stampante ha bisogno dell'assistenza tecnica."},
      {"The clock of the printer is wrong or broken.",
       "L'orologio della stampante è sbagliato o guasto."},
      {"The fiscal memory is full.", "La memoria fiscale è piena."},
      {"The fiscal memory is not connected.", "La memoria fiscale non è collegata."},
      {"The totals do not agree with what was expected.", "I totali non sono quelli attesi."},
      {"Behind CHKSUB (opcode 73) the receipt is given up, and no sale opens one until CLEAR (8), "
       "RESPRN (74) or CHIU (11).",
       "Dopo CHKSUB (opcode 73) lo scontrino si abbandona, e nessuna vendita ne apre uno fino a "
       "CLEAR (8), RESPRN (74) o CHIU (11)."},
      {"The quantity is not allowed.", "La quantità non è ammessa."},
      {"The amount is not allowed.", "L'importo non è ammesso."},
      {"The description is too long or not allowed.",
       "La descrizione è troppo lunga o non è ammessa."},
      {"The total would become too high.", "Il totale diventerebbe troppo alto."},
      {"The VAT entry or the department does not exist.",
       "L'aliquota IVA o il reparto non esiste."},
      {"The price is not allowed.", "Il prezzo non è ammesso."},
      {"The date is not allowed.", "La data non è ammessa."},
      {"The total would become negative.", "Il totale diventerebbe negativo."},
      {"A text holds a word that must not be printed.",
       "Un testo contiene una parola che non si può stampare."},
      {"A text has not the length that it needs.", "Un testo non ha la lunghezza che ci vuole."},
      {"The currency of the printer is not set.", "La valuta della stampante non è impostata."},
      {"The day has to be closed first.", "Prima va fatta la chiusura giornaliera."},
      {"The automatic cash drawer cannot be reached.",
       "Il cassetto automatico non è raggiungibile."},
      {"The automatic cash drawer broke the payment off.",
       "Il cassetto automatico ha interrotto il pagamento."},
      {"The automatic cash drawer does not allow it.", "Il cassetto automatico non lo consente."},
      {"Too many day closings wait to be sent.", "Troppe chiusure giornaliere attendono l'invio."},
      {"The total of one VAT entry would become negative.",
       "Il totale di un'aliquota IVA diventerebbe negativo."},
      {"Too many day closings wait to be sent; the newer devices' code.",
       "Troppe chiusure giornaliere attendono l'invio; il codice dei dispositivi più recenti."},
      {"The total of one VAT entry would become negative; the newer devices' code.",
       "Il totale di un'aliquota IVA diventerebbe negativo; il codice dei dispositivi più "
       "recenti."},
      {"The statistics of the device cannot be reset or updated.",
       "Le statistiche del dispositivo non si possono azzerare o aggiornare."},
      {"Statistics depend on others that were not named.",
       "Delle statistiche dipendono da altre che non sono state indicate."},
      {"The firmware file is missing, damaged or not for this device.",
       "Il file del firmware manca, è danneggiato o non è per questo dispositivo."},
      {"The device is open already.", "Il dispositivo è già aperto."},
      {"The device's name is not registered on this computer.",
       "Il nome del dispositivo non è registrato su questo computer."},
      {"The registered name of the driver cannot be read.",
       "Il nome registrato del driver non si può leggere."},
      {"The driver cannot be started.", "Il driver non si può avviare."},
      {"The driver lacks an operation that it must have.",
       "Al driver manca un'operazione che deve avere."},
      {"The driver failed to open the device.",
       "Il driver non è riuscito ad aprire il dispositivo."},
      {"The driver is of a version that does not fit.",
       "Il driver è di una versione che non va bene."},
      {"The port of the device cannot be opened.", "La porta del dispositivo non si può aprire."},
      {"The driver does not know this device.", "Il driver non conosce questo dispositivo."},
      {"The configuration of the device is wrong.",
       "La configurazione del dispositivo è sbagliata."},
      {"The driver failed to open the device for a reason of its own.",
       "Il driver non è riuscito ad aprire il dispositivo per un motivo suo."},
      {"The device client's own result, which has no common name.",
       "Un risultato proprio del client del dispositivo, senza un nome comune."},
      {"The line ran, or held nothing to run.",
       "La riga è stata eseguita, o non aveva niente da eseguire."},
      {"The translator's sign for a batch request (\"@\"). A host never sees it.",
       "Il segno del traduttore per la richiesta di un batch (\"@\"). Un'applicazione non lo vede "
       "mai."},
      {"The translator's sign for a line that holds nothing: empty, blank or a comment. A host "
       "never sees it. A client result of -2 is taken for it, and reads as success.",
       "Il segno del traduttore per una riga che non contiene niente: vuota, di soli spazi o di "
       "commento. Un'applicazione non lo vede mai. Un risultato -2 del client viene scambiato per "
       "questo, e vale come successo."},
      {"A negative result of the device client, which passes as it is.",
       "Un risultato negativo del client del dispositivo, che passa così com'è."},
      {"The device client gave no answer, or there is none.",
       "Il client del dispositivo non ha risposto, o non c'è."},
      {"The state of the device cannot be read, or INFO (opcode 71) was asked for a value that "
       "does not exist.",
       "Lo stato del dispositivo non si può leggere, o a INFO (opcode 71) è stato chiesto un "
       "valore che non esiste."},
      {"{}: is no result code; give a number such as 265, class and index such as 1/9, or the "
       "text of an answer",
       "{}: non è un codice di risultato; si indichi un numero come 265, classe e indice come "
       "1/9, o il testo di una risposta"},
      {"success", "successo"},
      {"outside the scheme of classes", "fuori dallo schema delle classi"},
      {"given by the library", "dato dalla libreria"},
      {"not given by this library", "non dato da questa libreria"},
      {"the library's own code {}, then taken for a result of the device client",
       "il codice {} della libreria stessa, poi preso per un risultato del client del dispositivo"},
      {"no answer of the device client (-1)", "nessuna risposta del client del dispositivo (-1)"},
      {"result {} of the device client, {}", "risultato {} del client del dispositivo, {}"},
      {"result {} of the device client", "risultato {} del client del dispositivo"},
      {"passed twice: {}", "passato due volte: {}"},
      {"passed once or twice, which gives the same",
       "passato una o due volte, il che dà lo stesso codice"},
      {"passed once", "passato una volta"},
      {"{}: class {}, index {}", "{}: classe {}, indice {}"},
      {"Text", "Testo"},
      {"Class", "Classe"},
      {"Bits of several classes: no table of texts belongs to them, so the answer ends behind the "
       "numbers.",
       "Bit di più classi: non c'è una tabella di testi per loro, perciò la risposta finisce dopo "
       "i numeri."},
      {"From", "Origine"},
      {"nothing that is known: the library does not give this code",
       "niente di noto: la libreria non dà questo codice"},
  });
  return kTexts;
}

}  // namespace lorimat::console
