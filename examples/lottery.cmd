; The receipt lottery: the key announces the customer's code, which follows with the next key. Then
; texts behind the receipt: the automatic cut is switched off, and the receipt ends by hand.

ALLEG INIZIO                                    ; the receipt stays open behind its end
VEND REP=1, PRE=12.20, DES='LIBRO'
INP TASTO=LOTTERIA
INP LOTTERIA='ABCD1234', TASTO=CONFERMA
CHIU TEND=CARTA
ALLEG MSG='Grazie e arrivederci'
ALLEG FINE
