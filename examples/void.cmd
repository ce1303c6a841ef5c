; A void: a receipt of the same day that should not have been. It refers to the document, here the
; last one of this register, and takes its lines back by itself (AUTO).

VEND REP=2, QTA=3, PRE=1.50, DES='CORNETTO'
CHIU
DOCANNULLO AUTO
CLEAR                   ; the void has ended by itself: without this no sale opens a receipt
