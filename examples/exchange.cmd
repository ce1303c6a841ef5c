; A receipt with a barcode, for goods that may be brought back: the automatic cut is switched off,
; the barcode follows behind the payment, and the receipt ends by hand.

ALLEG INIZIO                                    ; the receipt stays open behind its payment
VEND REP=1, QTA=2, PRE=9.90, DES='MAGLIETTA'
VEND REP=1, PRE=24.50, DES='PANTALONE'
CHIU TEND=CONTANTI, IMP=50.00
ALLEG MSG='Cambio entro 30 giorni'
ALLEG BARCODE=CODE128, MSG='CAMBIO 0001-0001'
ALLEG FINE
