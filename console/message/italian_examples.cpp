#include <array>

#include "console/message/italian.h"

namespace lorimat::console {

// The examples and exit codes behind each command's options.
std::span<const ItalianText> ItalianExamplesTexts() {
  static constexpr auto kTexts = std::to_array<ItalianText>({
      {R"(Examples:
  lorimat run examples/receipt.cmd
      Runs the lines of a file and prints the receipt.
  lorimat check receipt.cmd
      Looks for faults in them; runs nothing.
  lorimat explain 257
      Tells what a result code is.

"lorimat help run" tells more of run, with examples; so for each subcommand.

Exit codes:
  0  all is well
  1  something was found: a line failed, a file has errors, a code is unknown
  2  wrong use, or what was asked for could not be done
  130  stopped by Ctrl-C; 143 by SIGTERM, 129 by SIGHUP
)",
       R"(Esempi:
  lorimat run examples/receipt.cmd
      Esegue le righe di un file e stampa lo scontrino.
  lorimat check receipt.cmd
      Vi cerca i difetti; non esegue niente.
  lorimat explain 257
      Dice che cos'è un codice di risultato.

"lorimat help run" dice di più su run, con esempi; così per ogni sottocomando.

Codici di uscita:
  0  tutto bene
  1  trovato qualcosa: una riga è fallita, un file ha errori, un codice è sconosciuto
  2  uso sbagliato, o quello che era chiesto non si è potuto fare
  130  fermato con Ctrl-C; 143 con SIGTERM, 129 con SIGHUP
)"},

      {R"(Examples:
  lorimat help run
      What "lorimat run --help" shows.
  lorimat help journal show
      The same for a command below another.
  lorimat help
      What "lorimat --help" shows.

Exit codes:
  0  the help was shown
  2  wrong use, or there is no such command
)",
       R"(Esempi:
  lorimat help run
      Quello che mostra "lorimat run --help".
  lorimat help journal show
      Lo stesso per un comando sotto un altro.
  lorimat help
      Quello che mostra "lorimat --help".

Codici di uscita:
  0  l'aiuto è stato mostrato
  2  uso sbagliato, o non c'è un tale comando
)"},

      {R"(Examples:
  lorimat version
      What "lorimat --version" shows.

Exit codes:
  0  the version was shown
  2  wrong use
)",
       R"(Esempi:
  lorimat version
      Quello che mostra "lorimat --version".

Codici di uscita:
  0  la versione è stata mostrata
  2  uso sbagliato
)"},

      {R"(Examples:
  lorimat run examples/receipt.cmd
      Runs the lines and prints the receipt.
  lorimat run receipt.cmd --paper receipt.txt --clock "2024-03-15 10:30"
      Keeps the paper in a file, with a clock that gives the same paper each time.
  lorimat run receipt.cmd --paper receipt.txt --png receipt.png --pdf receipt.pdf
      Draws it besides, with its barcodes and logos.
  lorimat run receipt.cmd --batch
      Lets the library run the file itself, as one "@" line.
  printf 'VEND REP=1, PRE=2.50\nCHIU\n' | lorimat run -
      Reads the lines from standard input.
  lorimat run receipt.cmd --register shop.register
      On a register that is kept in a file, which is made when it is not there.

The paper goes to standard output, everything else to standard error. A failing line does not
end the run, as it does not in a host. Each is shown with its number, result code and text, with
the place where the line is wrong, and with what causes the code:
  receipt.cmd:7: code 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND
      VNED REP=1, PRE=1.00
      ^
    no command is called 'VNED'; did you mean VEND?
Of one code 20 lines are shown, and all are counted in the table at the end. --terse shows every
line without its cause.

Exit codes:
  0  every line ran
  1  at least one line failed
  2  wrong use, or the run, its paper or its register could not be done
  130  stopped by Ctrl-C; 143 by SIGTERM, 129 by SIGHUP; the paper is written
  141  nobody reads standard output any more
)",
       R"(Esempi:
  lorimat run examples/receipt.cmd
      Esegue le righe e stampa lo scontrino.
  lorimat run receipt.cmd --paper receipt.txt --clock "2024-03-15 10:30"
      Conserva la stampa in un file, con un orologio che ogni volta dà la stessa stampa.
  lorimat run receipt.cmd --paper receipt.txt --png receipt.png --pdf receipt.pdf
      La disegna anche, con i codici a barre e i logo.
  lorimat run receipt.cmd --batch
      Fa eseguire il file alla libreria stessa, come un'unica riga "@".
  printf 'VEND REP=1, PRE=2.50\nCHIU\n' | lorimat run -
      Legge le righe dallo standard input.
  lorimat run receipt.cmd --register shop.register
      Su un registratore tenuto in un file, che viene creato se non c'è.

La stampa va sullo standard output, tutto il resto sullo standard error. Una riga che fallisce non
ferma l'esecuzione, come in un'applicazione. Di ognuna si mostrano numero, codice e testo, il
punto in cui la riga è sbagliata e la causa del codice:
  receipt.cmd:7: codice 257: ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND
      VNED REP=1, PRE=1.00
      ^
    nessun comando si chiama 'VNED'; forse VEND?
Di uno stesso codice si mostrano 20 righe, e si contano tutte nella tabella alla fine. --terse
mostra ogni riga senza la causa.

Codici di uscita:
  0  tutte le righe eseguite
  1  almeno una riga è fallita
  2  uso sbagliato, o l'esecuzione, la stampa o il registratore non è stato possibile
  130  fermato con Ctrl-C; 143 con SIGTERM, 129 con SIGHUP; la stampa viene scritta
  141  nessuno legge più lo standard output
)"},

      {R"(Examples:
  lorimat explain 265
      Class, index, text and cause of a result code.
  lorimat explain 6/107 1231
      Several codes; the first as an answer shows it, class and index.
  lorimat explain "ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND"
      An answer as it was read somewhere; the quotes may be left out.
  lorimat explain --json 1643
      The same for a program.

A code of the device client bears the bit of a class, and some commands add it twice: 107 (no
hardware) reads 619 once and 1643 twice. The answer shows the bits as a sum, 6 for 2 and 4.

Exit codes:
  0  every code was explained
  1  a code is none that the library gives
  2  wrong use, or a text that is no code
)",
       R"(Esempi:
  lorimat explain 265
      Classe, indice, testo e causa di un codice di risultato.
  lorimat explain 6/107 1231
      Più codici; il primo come lo mostra una risposta, classe e indice.
  lorimat explain "ERROR 1/1 : SINTAX ERROR 1 : INSTRUCTION NOT FOUND"
      Una risposta così come la si è letta; le virgolette si possono omettere.
  lorimat explain --json 1643
      Lo stesso per un programma.

Un codice del client del dispositivo porta il bit di una classe, e certi comandi lo aggiungono
due volte: 107 (dispositivo non collegato) diventa 619 la prima volta e 1643 la seconda. La
risposta mostra la somma dei bit, 6 per 2 e 4.

Codici di uscita:
  0  ogni codice è stato spiegato
  1  un codice non è tra quelli che la libreria dà
  2  uso sbagliato, o un testo che non è un codice
)"},

      {R"(Examples:
  lorimat words
      The commands and fields of the definition file beside the program.
  lorimat words --command VEND
      One command; the name may be shortened, or be #10.
  lorimat words --markdown > words.md
      The table for a page.

"Short" is how far a word may be cut.

Exit codes:
  0  the words were shown
  1  there is no such command
  2  wrong use, or the definition file cannot be read
)",
       R"(Esempi:
  lorimat words
      I comandi e i campi del file di definizione accanto al programma.
  lorimat words --command VEND
      Un comando; il nome si può abbreviare, o essere #10.
  lorimat words --markdown > words.md
      La tabella per una pagina.

"Abbrev." è fin dove si può accorciare una parola.

Codici di uscita:
  0  le parole sono state mostrate
  1  il comando non esiste
  2  uso sbagliato, o il file di definizione non si può leggere
)"},

      {R"(Examples:
  lorimat check words.ini
      Each fault of a definition file, and what the library would do with it.
  lorimat check receipt.cmd --language words.ini
      Each line of a batch file against the words of a definition file. Nothing runs.
  lorimat check --json *.cmd
      The same for a program.

A file is a definition file when its name ends in .ini or when it begins with a section such as
[OPCOD]. Findings stand on standard output, with file, line and column:
  receipt.cmd:7:1: error: no command is called 'VNED'; did you mean VEND? (code 257)

Exit codes:
  0  no errors; there may be warnings
  1  at least one error
  2  wrong use, or a file that cannot be read
  130  stopped by Ctrl-C; 143 by SIGTERM, 129 by SIGHUP
)",
       R"(Esempi:
  lorimat check words.ini
      Ogni difetto di un file di definizione, e che cosa ne farebbe la libreria.
  lorimat check receipt.cmd --language words.ini
      Ogni riga di un file batch con le parole di un file di definizione. Non esegue niente.
  lorimat check --json *.cmd
      Lo stesso per un programma.

Un file è un file di definizione se il nome finisce in .ini o se comincia con una sezione come
[OPCOD]. I difetti vanno sullo standard output, con file, riga e colonna:
  receipt.cmd:7:1: errore: nessun comando si chiama 'VNED'; forse VEND? (codice 257)

Codici di uscita:
  0  nessun errore; possono esserci avvisi
  1  almeno un errore
  2  uso sbagliato, o un file che non si può leggere
  130  fermato con Ctrl-C; 143 con SIGTERM, 129 con SIGHUP
)"},
  });
  return kTexts;
}

}  // namespace lorimat::console
