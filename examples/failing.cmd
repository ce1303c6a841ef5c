; Lines that fail, each with the code that it answers. The run goes on behind each of them, as a
; host does, and the receipt at the end is good:
;
;   lorimat run examples/failing.cmd

; Lines that the language refuses
SELL REP=1                      ; 257: no such command
P REP=1                         ; 258: more than one command begins with P
VEND PRE=1.00, COLORE=3         ; 260: the command has no such field
VEND R=1, PRE=1.00              ; 261: REP, RESO and RIGASOPRA begin with R
VEND 'REP'=1                    ; 262: a quote in a field's name
VEND REP=BANANA                 ; 263: no such word for a value; a text needs quotes
VEND REP=1, DES='CAFFE          ; 264: the quote is not closed
VEND REP=1, ACCONTO, COUPON     ; 265: a line is of one kind only
CHKSUB                          ; 266: the amount is missing
VEND PRE=1.00                   ; 269: neither department nor article
@                               ; 10: a batch line without a file

; Lines that the register refuses: 1024 and its own code from 200 on, 512 and its own code below
VEND REP=99, PRE=1.00           ; 1241: it has no department 99 (217); the receipt is open now
VEND REP=1, PRE=1.00, STORNO    ; 1238: there is no such line to take back (214)
CHIU                            ; 1231: there is nothing to pay yet (207)
VEND REP=1, PRE=3.00, DES='ALLA FINE'
CHIU TEND='BONUS'               ; 621: it has no tender of this name (109)
CHIU TEND=CARTA, IMP=1.00
VEND REP=1, PRE=1.00            ; 1231: no sale behind a payment (207)
CHIU
