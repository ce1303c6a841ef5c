; Receipts paid in parts. A payment that does not cover the total leaves the receipt open: the
; next one pays on, and the one that covers the rest closes it.

; A meal ticket, then the rest by card. Without IMP a payment takes what is left.
VEND REP=2, PRE=9.50, DES='PRANZO'
VEND REP=2, PRE=2.00, DES='ACQUA'
CHIU TEND=TICKET, IMP=7.00
CHIU TEND=CARTA

; A part by card, the rest in cash with change.
VEND REP=1, PRE=30.00, DES='LAMPADA'
CHIU TEND=CARTA, IMP=10.00
CHIU TEND=CONTANTI, IMP=30.00

; The customer pays later: nothing is collected.
VEND REP=3, PRE=12.00, DES='CONSULENZA'
CHIU TEND=CREDITO
