; What a customer paid for on an earlier receipt lowers this one: a deposit (ACCONTO), a
; single-use voucher (MONOUSO). A coupon (COUPON) takes off too. RIGASOPRA prints a heading above.

VEND REP=1, PRE=120.00, DES='TAVOLO'
VEND REP=1, PRE=30.00, DES='ACCONTO DEL 2 MARZO', ACCONTO, RIGASOPRA
VEND REP=1, PRE=15.00, DES='BUONO 0042', MONOUSO, RIGASOPRA
VEND REP=1, PRE=5.00, DES='COUPON DI MARZO', COUPON
CHIU TEND=CARTA
