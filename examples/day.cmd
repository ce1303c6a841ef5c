; A day from opening to closing: receipts of several kinds, a look at the day, the closing, and
; what can be asked for afterwards.
;
;   lorimat run examples/day.cmd --clock '2024-03-15 10:30'      (the date of the credit note)

; In the morning
VEND REP=2, PRE=1.20, DES='CAFFE'
CHIU
VEND REP=4, QTA=2, PRE=1.50, DES='PANE'
VEND REP=1, PRE=8.00, DES='TAZZA'
CHIU TEND=CARTA
REPORT TIPO=XGIORNO                     ; the day so far; nothing is closed

; In the afternoon
FATTURA TIPO=2, RIGA1='BIANCHI SRL', RIGA2='P.IVA 01234567897'
VEND REP=1, PRE=24.40, DES='SERVIZIO'
CHIU TEND=NRFATTURE
NOTACRED DOC=00010002, DATA=150324      ; the cup comes back
VEND REP=1, PRE=8.00, DES='TAZZA'
CHIU
VEND REP=5, PRE=5.00, DES='LEZIONE'
CHIU TEND=TICKET

; In the evening: the reading of everything, then the closing
AZZGIO TIPO=1

; Behind it: the closure as the fiscal memory has it, an invoice out of the journal, and the
; closure off to the agency
REPORT TIPO=MEMNUM, DANUM=1, ANUM=1
DGFE DAZETA=1, FATTURE
RTEJ INVIA

; The next day begins with document 0002-0001
VEND REP=2, PRE=1.20, DES='CAFFE'
CHIU
