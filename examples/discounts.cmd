; Discounts and surcharges: on the line above, by percentage or by amount, and on the subtotal.

VEND REP=2, QTA=2, PRE=1.20, DES='CAFFE'
PERCA PERC=10                                   ; 10% off the line above: 0.24
VEND REP=1, PRE=20.00, DES='VASO'
SCONTO IMP=2.50, DES='SCONTO FEDELTA'           ; an amount, with a text of its own
VEND REP=1, PRE=5.00, DES='CANDELA'
MAGGIORAZ IMP=0.50, DES='CONFEZIONE'            ; a surcharge
CHKSUB IMP=25.16                                ; another subtotal would give the receipt up
SCONTO IMP=1.16, SUBTOT                         ; off the subtotal, spread over the VAT rates
CHIU TEND=CARTA
