; A simple receipt: four sales, paid in cash.
;
;   lorimat run examples/receipt.cmd
;
; The departments of the virtual register stand for VAT rates:
;   1 is 22%, 2 is 10%, 3 is 5%, 4 is 4%, 5 is exempt; the others are 22%.
; The first sale opens the receipt, the payment closes it.

VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'''      ; a quote in a text is doubled
VEND REP=2, QTA=3, PRE=1.50, DES='CORNETTO'
VEND REP=4, QTA=0.750, PRE=3.90, DES='PANE'     ; 750 grams at 3.90 the kilo
VEND REP=1, PRE=8.00, DES='TAZZA'               ; without QTA the price is the line's

CHIU TEND=CONTANTI, IMP=20.00                   ; the register gives the change
