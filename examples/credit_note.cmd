; A credit note: goods of an earlier receipt come back. The reference is the closure's number and
; the document's number, ZZZZNNNN, with the date; the register that sold them stands in MATR.

NOTACRED DOC='01230045', DATA='150124', MATR='99LRM0000002'
VEND REP=1, PRE=15.00, DES='VASO'
CHIU
